// Internal. The rules for names, layout and markup characters, shared by everything that checks or writes
// text.
#ifndef NORVASK_FOUNDATION_TEXT_RULES_H
#define NORVASK_FOUNDATION_TEXT_RULES_H

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
const char* ReferenceFor(EMarkup markup) noexcept;

// Whether the string is an XML 1.0 name. NULL is none.
bool IsXmlName(const char* name);

// Whether the characters are layout (see CStringConverter::IsFormattingWhitespace).
bool IsLayout(const char* text, std::size_t length) noexcept;
bool IsLayout(const char16_t* text, std::size_t length) noexcept;

// Whether a narrow string is well-formed UTF-8 and the parser takes narrow strings for UTF-8, so that it can be
// written without asking the parser's transcoders.
bool IsKnownUtf8(const char* text) noexcept;

// Throws the parser's transcoding exception when the text cannot be written; answers IsKnownUtf8.
bool CheckWritable(const char* text);

}  // namespace norvask

#endif
