// Internal. Strings that carry a tag: names and values of attributes, names of elements.
//
//   tag := distance flags length     in the four bytes before the first character
//
// The distance leads to the page (tree_memory.h), so a string can be held beyond the life of its tree. The
// length is there for the short strings that nearly all are.
#ifndef NORVASK_TREE_TREE_STRING_H
#define NORVASK_TREE_TREE_STRING_H

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "tree/tree_memory.h"

namespace norvask {

enum EStringFlag : std::uint16_t {
    STRING_STATIC = 1,  // a constant: nobody holds or releases it
    STRING_SHOWN = 2,   // was held from outside of its tree, and may still be
    STRING_NAME = 4,    // in a name table
    STRING_VALID = 8,   // known to be an XML name
    STRING_ASCII = 16,  // a name of ASCII characters only
    STRING_UTF8 = 32,   // known to be well-formed UTF-8
};
const unsigned int LENGTH_SHIFT = 6;
const std::uint16_t LENGTH_UNKNOWN = 0xFFFF >> LENGTH_SHIFT;

// The flags belong to the thread of the tree; copies of attributes on other threads only look at STRING_STATIC and
// STRING_SHOWN of strings that are shown already.
struct SStringTag {
    std::uint16_t m_nDistance;
    std::atomic<std::uint16_t> m_nFlags;
};
static_assert(sizeof(SStringTag) == 4, "a tag has four bytes");

// The flags of a string of this length.
inline std::uint16_t FlagsWithLength(unsigned int flags, std::size_t length) noexcept {
    const std::size_t known = length < LENGTH_UNKNOWN ? length : LENGTH_UNKNOWN;
    return static_cast<std::uint16_t>(flags | (known << LENGTH_SHIFT));
}

inline SStringTag& TagOf(const char* text) noexcept {
    const std::uintptr_t address = reinterpret_cast<std::uintptr_t>(text);
    return *reinterpret_cast<SStringTag*>(address - sizeof(SStringTag));
}

inline std::uint16_t FlagsOf(const char* text) noexcept {
    return TagOf(text).m_nFlags.load(std::memory_order_relaxed);
}
inline bool HasFlag(const char* text, EStringFlag flag) noexcept {
    return (FlagsOf(text) & flag) != 0;
}
inline void AddFlag(const char* text, EStringFlag flag) noexcept {
    const std::uint16_t flags = FlagsOf(text);
    if ((flags & flag) == 0) {
        TagOf(text).m_nFlags.store(static_cast<std::uint16_t>(flags | flag),
                                   std::memory_order_relaxed);
    }
}

inline SPage* PageOf(const char* text) noexcept {
    return PageAt(&TagOf(text), TagOf(text).m_nDistance);
}

inline std::size_t LengthOf(const char* text) noexcept {
    const std::size_t known = FlagsOf(text) >> LENGTH_SHIFT;
    return known == LENGTH_UNKNOWN ? std::strlen(text) : known;
}

// The constant "".
const char* EmptyString() noexcept;

// A copy in the tree's memory. `isUtf8` tells whether the text is known to be well-formed UTF-8. Throws
// std::bad_alloc.
const char* NewTreeString(CTreeMemory& memory, const char* text, std::size_t length, bool isUtf8);
// Whether the block of a string of a tree may be used again: nobody outside of the tree holds its page, or it is
// the page's only block and goes with the page.
bool IsReusable(const char* text) noexcept;
// Ends such a string. While it is held outside, its block lies idle.
void FreeTreeString(CTreeMemory& memory, const char* text) noexcept;

// A copy outside of any tree; the caller holds it. `flags` tells what is known of it. Throws std::bad_alloc.
const char* NewHeldString(const char* text, unsigned int flags);

// The same in the place of `old`, a held string that ends: in its block, if nobody else shows it and the copy
// fits, else in a new one. `text` may lie in `old`. Throws std::bad_alloc, then `old` is as it was.
const char* ReplaceHeldString(const char* old, const char* text, unsigned int flags);

// Shows any tagged string outside of its tree, and ends that.
void HoldString(const char* text) noexcept;
void ReleaseHeldString(const char* text) noexcept;

}  // namespace norvask

#endif
