// Judging texts. ASCII, which nearly all names and most texts are, is judged in one pass over the
// characters; UTF-8 in a second; for anything else the parser's transcoders and character tables
// are asked (string_converter.h).
#include "foundation/known_text.h"

#include "foundation/errors.h"
#include "foundation/parser_state.h"
#include "foundation/string_converter.h"
#include "foundation/utf8.h"

namespace norvask {
namespace {

// The classes of ASCII characters in names; 0 for all others, those beyond ASCII too.
const unsigned char NAME_START = 1;
const unsigned char NAME_REST = 2;

struct SNameTable {
    constexpr SNameTable() : of() {
        for (unsigned char c = 0; c < 128; ++c) {
            const bool letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
            const bool digit = c >= '0' && c <= '9';
            if (letter || c == '_' || c == ':') {
                of[c] = NAME_START;
            } else if (digit || c == '-' || c == '.') {
                of[c] = NAME_REST;
            }
        }
    }

    unsigned char of[256];
};
constexpr SNameTable NAMES;

// What is known of a text of this length that is not looked at as a name.
unsigned int KnownOf(const char* text, std::size_t length) noexcept {
    if (!LocalEncodingIsUtf8()) {
        return 0;
    }
    if (IsAscii(text, length)) {
        return KNOWN_UTF8 | KNOWN_ASCII;
    }
    return IsUtf8(text) ? KNOWN_UTF8 : 0U;
}

}  // namespace

SKnownText JudgeText(const char* text) noexcept {
    SKnownText judged = Unjudged(text);
    judged.known = KnownOf(judged.text, judged.length);
    return judged;
}

SKnownText JudgeName(const char* text) {
    if (text == nullptr) {
        return Unjudged(nullptr);
    }
    const unsigned char* const start = reinterpret_cast<const unsigned char*>(text);
    const unsigned char* p = start;
    if (NAMES.of[*p] == NAME_START) {
        do {
            ++p;
        } while (NAMES.of[*p] != 0);
    }
    const std::size_t length = static_cast<std::size_t>(p - start);
    if (*p == '\0') {
        return {text, length,
                length == 0 ? 0U : KNOWN_PLAIN_NAME | (LocalEncodingIsUtf8() ? KNOWN_UTF8 : 0U)};
    }
    SKnownText judged = Unjudged(text);
    if (*p >= 0x80) {
        judged.known = KnownOf(text, judged.length);
        if (CStringConverter(text).IsValidName()) {
            judged.known |= KNOWN_NAME;
        }
    }
    return judged;
}

SKnownText RequireName(const char* text) {
    const SKnownText name = JudgeName(text);
    if (!name.Is(KNOWN_NAME)) {
        ThrowInvalidName(text);
    }
    return name;
}

SKnownText RequireWritable(const char* text) {
    const SKnownText judged = JudgeText(text);
    if (!judged.Is(KNOWN_UTF8)) {
        char* data = nullptr;
        std::size_t bytes = 0;
        CStringConverter(judged.text).GetEscapedUTF8(data, bytes);
    }
    return judged;
}

}  // namespace norvask
