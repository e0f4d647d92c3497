#include "foundation/text_rules.h"

#include "foundation/parser_text.h"
#include "foundation/string_converter.h"
#include "foundation/utf8.h"

namespace norvask {
namespace {

// The classes of ASCII characters in names.
const unsigned char NAME_START = 1;
const unsigned char NAME_REST = 2;

bool IsBetween(unsigned char c, char first, char last) noexcept {
    return c >= static_cast<unsigned char>(first) && c <= static_cast<unsigned char>(last);
}

unsigned char NameClass(unsigned char c) noexcept {
    if (IsBetween(c, 'a', 'z') || IsBetween(c, 'A', 'Z') || c == '_' || c == ':') {
        return NAME_START;
    }
    return IsBetween(c, '0', '9') || c == '-' || c == '.' ? NAME_REST : 0;
}

template <typename Char>
bool IsLayoutOf(const Char* text, std::size_t length) noexcept {
    bool sawLayout = length == 0;
    for (std::size_t i = 0; i < length; ++i) {
        const Char c = text[i];
        if (c == '\t' || c == '\n' || c == '\r') {
            sawLayout = true;
        } else if (c != ' ') {
            return false;
        }
    }
    return sawLayout;
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
    if (name == nullptr || *name == '\0') {
        return false;
    }
    const char* p = name;
    for (; static_cast<unsigned char>(*p) < 0x80; ++p) {
        if (*p == '\0') {
            return true;
        }
        const unsigned char nameClass = NameClass(static_cast<unsigned char>(*p));
        if (nameClass == 0 || (p == name && nameClass != NAME_START)) {
            return false;
        }
    }
    return CStringConverter(name).IsValidName();
}

bool IsLayout(const char* text, std::size_t length) noexcept { return IsLayoutOf(text, length); }

bool IsLayout(const char16_t* text, std::size_t length) noexcept {
    return IsLayoutOf(text, length);
}

bool IsKnownUtf8(const char* text) noexcept { return LocalEncodingIsUtf8() && IsUtf8(text); }

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
