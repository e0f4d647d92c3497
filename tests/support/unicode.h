// Encodings, written out once more for the tests: code points to UTF-8 and UTF-16, and what a
// reader that replaces every invalid sequence by U+FFFD makes of arbitrary bytes.
#ifndef NORVASK_TESTS_SUPPORT_UNICODE_H
#define NORVASK_TESTS_SUPPORT_UNICODE_H

#include <cstddef>
#include <string>

namespace norvask_test {

inline constexpr char32_t LAST_CODE_POINT = 0x10FFFF;
inline constexpr const char* REPLACEMENT = "\xEF\xBF\xBD";

inline bool IsSurrogate(char32_t c) { return c >= 0xD800 && c <= 0xDFFF; }

// What XML 1.0 allows as a character of a document.
inline bool IsXmlCharacter(char32_t c) {
    return c == 9 || c == 10 || c == 13 || (c >= 0x20 && c <= 0xD7FF) ||
           (c >= 0xE000 && c <= 0xFFFD) || (c >= 0x10000 && c <= LAST_CODE_POINT);
}

inline void AppendUtf8(std::string& bytes, char32_t c) {
    const auto add = [&bytes](char32_t byte) { bytes += static_cast<char>(byte); };
    if (c < 0x80) {
        add(c);
    } else if (c < 0x800) {
        add(0xC0 | (c >> 6));
        add(0x80 | (c & 63));
    } else if (c < 0x10000) {
        add(0xE0 | (c >> 12));
        add(0x80 | ((c >> 6) & 63));
        add(0x80 | (c & 63));
    } else {
        add(0xF0 | (c >> 18));
        add(0x80 | ((c >> 12) & 63));
        add(0x80 | ((c >> 6) & 63));
        add(0x80 | (c & 63));
    }
}
inline std::string Utf8(char32_t c) {
    std::string bytes;
    AppendUtf8(bytes, c);
    return bytes;
}

inline void AppendUtf16(std::u16string& units, char32_t c) {
    if (c < 0x10000) {
        units += static_cast<char16_t>(c);
    } else {
        units += static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10));
        units += static_cast<char16_t>(0xDC00 + ((c - 0x10000) & 0x3FF));
    }
}

// Unpaired surrogates become U+FFFD.
inline std::string Utf8OfUtf16(const std::u16string& units) {
    std::string bytes;
    for (std::size_t i = 0; i < units.size(); ++i) {
        const char32_t unit = units[i];
        const char32_t next = i + 1 < units.size() ? units[i + 1] : 0;
        if (unit >= 0xD800 && unit <= 0xDBFF && next >= 0xDC00 && next <= 0xDFFF) {
            AppendUtf8(bytes, 0x10000 + ((unit - 0xD800) << 10) + (next - 0xDC00));
            ++i;
        } else {
            AppendUtf8(bytes, IsSurrogate(unit) ? 0xFFFD : unit);
        }
    }
    return bytes;
}

// The bytes with U+FFFD in place of each invalid sequence. A sequence ends in front of the first
// byte that cannot continue it, so "E2 82 41" is one replacement and an "A", and "ED A0 80", a
// surrogate, is three.
inline std::string ValidUtf8(const std::string& bytes) {
    std::string valid;
    std::size_t i = 0;
    while (i < bytes.size()) {
        const std::size_t start = i;
        const auto lead = static_cast<unsigned char>(bytes[i++]);
        unsigned low = 0x80;
        unsigned high = 0xBF;
        int more = 0;
        if (lead >= 0x80) {
            if (lead >= 0xC2 && lead <= 0xDF) more = 1;
            if (lead >= 0xE0 && lead <= 0xEF) more = 2;
            if (lead >= 0xF0 && lead <= 0xF4) more = 3;
            if (lead == 0xE0) low = 0xA0;
            if (lead == 0xED) high = 0x9F;
            if (lead == 0xF0) low = 0x90;
            if (lead == 0xF4) high = 0x8F;
        }
        bool complete = lead < 0x80 || more > 0;
        for (; more > 0; --more) {
            const unsigned next = i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0u;
            if (next < low || next > high) {
                complete = false;
                break;
            }
            ++i;
            low = 0x80;
            high = 0xBF;
        }
        valid += complete ? bytes.substr(start, i - start) : std::string(REPLACEMENT);
    }
    return valid;
}

// What saving makes of a text or a value.
inline std::string Escaped(const std::string& bytes) {
    std::string escaped;
    for (const char c : ValidUtf8(bytes)) {
        const auto byte = static_cast<unsigned char>(c);
        switch (c) {
            case '<':
                escaped += "&#x3c;";
                break;
            case '>':
                escaped += "&#x3e;";
                break;
            case '&':
                escaped += "&#x26;";
                break;
            case '\'':
                escaped += "&#x27;";
                break;
            case '"':
                escaped += "&#x22;";
                break;
            default:
                if (byte >= 32 || c == '\t' || c == '\n' || c == '\r') escaped += c;
        }
    }
    return escaped;
}

}  // namespace norvask_test

#endif
