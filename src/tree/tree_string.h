// Internal. Strings that carry a tag: names and values of attributes, names of elements.
//
//   tag := distance flags length     in the four bytes before the first character
//
// The distance leads to the page (tree_memory.h), so a string can be held beyond the life of its tree. The
// length is there for the short strings that nearly all are.
#ifndef NORVASK_TREE_TREE_STRING_H
#define NORVASK_TREE_TREE_STRING_H

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "tree/tree_memory.h"

namespace norvask {

enum EStringFlag : std::uint16_t {
    STRING_STATIC = 1,  // a constant: nobody holds or releases it
    STRING_SHOWN = 2,   // held from outside of its tree: its block is not used again
    STRING_NAME = 4,    // in a name table
    STRING_VALID = 8,   // known to be an XML name
    STRING_ASCII = 16,  // a name of ASCII characters only
    STRING_UTF8 = 32,   // known to be well-formed UTF-8
};
const unsigned int LENGTH_SHIFT = 6;
const std::uint16_t LENGTH_UNKNOWN = 0xFFFF >> LENGTH_SHIFT;

struct SStringTag {
    std::uint16_t m_nDistance;
    std::uint16_t m_nFlags;
};

// The flags of a string of this length.
inline std::uint16_t FlagsWithLength(unsigned int flags, std::size_t length) noexcept {
    const std::size_t known = length < LENGTH_UNKNOWN ? length : LENGTH_UNKNOWN;
    return static_cast<std::uint16_t>(flags | (known << LENGTH_SHIFT));
}

inline SStringTag& TagOf(const char* text) noexcept {
    const std::uintptr_t address = reinterpret_cast<std::uintptr_t>(text);
    return *reinterpret_cast<SStringTag*>(address - sizeof(SStringTag));
}

inline bool HasFlag(const char* text, EStringFlag flag) noexcept {
    return (TagOf(text).m_nFlags & flag) != 0;
}

inline void AddFlag(const char* text, EStringFlag flag) noexcept {
    TagOf(text).m_nFlags = static_cast<std::uint16_t>(TagOf(text).m_nFlags | flag);
}

inline SPage* PageOf(const char* text) noexcept {
    return PageAt(&TagOf(text), TagOf(text).m_nDistance);
}

inline std::size_t LengthOf(const char* text) noexcept {
    const std::size_t known = TagOf(text).m_nFlags >> LENGTH_SHIFT;
    return known == LENGTH_UNKNOWN ? std::strlen(text) : known;
}

// The constant "".
const char* EmptyString() noexcept;

// A copy in the tree's memory. `isUtf8` tells whether the text is known to be well-formed UTF-8. Throws
// std::bad_alloc.
const char* NewTreeString(CTreeMemory& memory, const char* text, std::size_t length, bool isUtf8);
// Ends such a string, unless it is shown outside.
void FreeTreeString(CTreeMemory& memory, const char* text) noexcept;

// A copy outside of any tree; the caller holds it. Throws std::bad_alloc.
const char* NewHeldString(const char* text);

// Shows any tagged string outside of its tree, and ends that.
void HoldString(const char* text) noexcept;
void ReleaseHeldString(const char* text) noexcept;

}  // namespace norvask

#endif
