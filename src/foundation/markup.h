// Internal. The characters of markup, and what becomes of each where text is written.
#ifndef NORVASK_FOUNDATION_MARKUP_H
#define NORVASK_FOUNDATION_MARKUP_H

#include <cstddef>

namespace norvask {

// What becomes of an ASCII character in written text.
enum class EMarkup : unsigned char {
    PLAIN,    // written as it is
    DROPPED,  // a control character that XML cannot hold, 0 included: left out
    LESS,
    GREATER,
    AMPERSAND,
    APOSTROPHE,
    QUOTE,
};

struct SMarkupTable {
    constexpr SMarkupTable() : of() {
        for (unsigned char c = 0; c < ' '; ++c) {
            of[c] = c == '\t' || c == '\n' || c == '\r' ? EMarkup::PLAIN : EMarkup::DROPPED;
        }
        of[static_cast<unsigned char>('<')] = EMarkup::LESS;
        of[static_cast<unsigned char>('>')] = EMarkup::GREATER;
        of[static_cast<unsigned char>('&')] = EMarkup::AMPERSAND;
        of[static_cast<unsigned char>('\'')] = EMarkup::APOSTROPHE;
        of[static_cast<unsigned char>('"')] = EMarkup::QUOTE;
    }

    EMarkup of[128];
};
inline constexpr SMarkupTable MARKUP;

inline EMarkup MarkupOf(unsigned char ascii) noexcept { return MARKUP.of[ascii]; }

// The character reference for one of LESS to QUOTE. All have REFERENCE_LENGTH bytes.
const std::size_t REFERENCE_LENGTH = 6;
inline const char* ReferenceFor(EMarkup markup) noexcept {
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

}  // namespace norvask

#endif
