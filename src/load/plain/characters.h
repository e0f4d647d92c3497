// Internal. What a byte of a plain document can be, and the characters beyond ASCII.
#ifndef NORVASK_LOAD_PLAIN_CHARACTERS_H
#define NORVASK_LOAD_PLAIN_CHARACTERS_H

#include <cstddef>
#include <cstdint>

namespace norvask {

// The kinds of ASCII characters. A zero is of no kind: it ends every loop, and what it means, the
// end of what was read or a forbidden character, is found out there.
enum EByteKind : std::uint8_t {
    BYTE_NAME_START = 1,  // NCName's first: letters and '_'
    BYTE_NAME = 2,        // NCName's others: digits, '-' and '.' too
    BYTE_SPACE = 4,       // S
    BYTE_CHAR = 8,        // Char
    BYTE_NAME_END = 16,   // what can follow a name in a tag: S, '=', '/' and '>'
};
extern const std::uint8_t BYTE_KINDS[256];

inline bool IsByte(char byte, unsigned int kinds) noexcept {
    return (BYTE_KINDS[static_cast<unsigned char>(byte)] & kinds) != 0;
}
inline bool IsAsciiByte(char byte) noexcept { return static_cast<unsigned char>(byte) < 0x80; }

// The first byte from `text` on that is no ASCII character of the kind. A zero must follow.
inline char* EndOfKind(char* text, unsigned int kind) noexcept {
    while (IsByte(*text, kind)) {
        ++text;
    }
    return text;
}

// The length of the character at `text`, which is not ASCII; 0 where there is no Char: ill-formed,
// cut off or forbidden.
std::size_t CharLength(const char* text) noexcept;

// The same for a character of an NCName, or its first one, as the parser's tables have it; 0 for
// those that they leave open.
std::size_t NameCharLength(const char* text, bool isFirst) noexcept;

// The longest character.
const std::size_t MOST_CHAR_BYTES = 4;

}  // namespace norvask

#endif
