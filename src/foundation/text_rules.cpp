#include "foundation/text_rules.h"

#include <cstdint>
#include <cstring>
#include <type_traits>

#include "foundation/parser_text.h"
#include "foundation/string_converter.h"
#include "foundation/utf8.h"

namespace norvask {
namespace {

// The classes of ASCII characters in names.
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

    unsigned char of[256];  // 0 for everything beyond ASCII too
};
constexpr SNameTable NAMES;

template <typename Char>
bool IsLayoutOf(const Char* text, std::size_t length) noexcept {
    // One bit for each of the first 33 characters.
    const std::uint64_t LINES_AND_TABS = 1U << '\t' | 1U << '\n' | 1U << '\r';
    const std::uint64_t LAYOUT = LINES_AND_TABS | std::uint64_t(1) << ' ';
    std::uint64_t seen = 0;
    for (std::size_t i = 0; i < length; ++i) {
        const std::uint64_t c = static_cast<std::make_unsigned_t<Char>>(text[i]);
        const std::uint64_t bit = c <= ' ' ? std::uint64_t(1) << c : 0;
        if ((bit & LAYOUT) == 0) {
            return false;
        }
        seen |= bit;
    }
    return length == 0 || (seen & LINES_AND_TABS) != 0;
}

}  // namespace

const char* ReferenceFor(EMarkup markup) noexcept {
    switch (markup) {
        case EMarkup::LESS:
            return "&#x3c;";
        case EMarkup::GREATER:
            return "&#x3e;";
        case EMarkup::AMPERSAND:
            return "&#x26;";
        case EMarkup::APOSTROPHE:
            return "&#x27;";
        default:
            return "&#x22;";
    }
}

bool IsXmlName(const char* name) {
    if (name == nullptr) {
        return false;
    }
    const unsigned char* p = reinterpret_cast<const unsigned char*>(name);
    if (NAMES.of[*p] == NAME_START) {
        do {
            ++p;
        } while (NAMES.of[*p] != 0);
    }
    return *p == '\0' ? p != reinterpret_cast<const unsigned char*>(name)
                      : *p >= 0x80 && CStringConverter(name).IsValidName();
}

bool IsLayout(const char* text, std::size_t length) noexcept { return IsLayoutOf(text, length); }

bool IsLayout(const char16_t* text, std::size_t length) noexcept {
    return IsLayoutOf(text, length);
}

bool IsKnownUtf8(const char* text) noexcept {
    return LocalEncodingIsUtf8() && (IsAscii(text, std::strlen(text)) || IsUtf8(text));
}

bool CheckWritable(const char* text) {
    if (IsKnownUtf8(text)) {
        return true;
    }
    char* data = nullptr;
    std::size_t bytes = 0;
    CStringConverter(text).GetEscapedUTF8(data, bytes);
    return false;
}

}  // namespace norvask
