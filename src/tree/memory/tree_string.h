// Internal. CTreeString: a string that knows its length, its page and what is known of it.
//
//   string := header characters 0
//   header := distance flags length     in the four bytes before the first character
//
// The names of a tree and the values and texts in it are such strings, and so are those of
// attributes outside of any tree. The header leads to the page (page.h), so a string can be
// retained beyond the life of its tree. The length is there for the short strings that nearly all
// are.
//
// A CTreeString is one pointer and owns nothing. Who frees the string is said where it is kept: an
// attribute or a text node of a tree (FreeTreeString), the name table (name_table.h), or whoever
// has retained it (RetainString).
#ifndef NORVASK_TREE_MEMORY_TREE_STRING_H
#define NORVASK_TREE_MEMORY_TREE_STRING_H

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>

#include "foundation/known_text.h"
#include "foundation/short_copy.h"
#include "tree/memory/page.h"

namespace norvask {

// The flags of a header; the lowest are what is known of the text (known_text.h).
enum EStringFlag : unsigned int {
    STRING_KNOWN = KNOWN_UTF8 | KNOWN_ASCII | KNOWN_NAME,
    STRING_STATIC = 8,     // a constant: nobody retains or frees it
    STRING_SHOWN = 16,     // was retained from outside of its tree, and may still be
    STRING_IN_TABLE = 32,  // of a name table
};

// The flags belong to the thread of the tree; copies of attributes on other threads only look at
// STRING_STATIC and STRING_SHOWN of strings that are shown already.
struct SStringHeader {
    std::uint16_t distance;
    std::atomic<std::uint16_t> flags;

    static const unsigned int LENGTH_SHIFT = 6;
    static const unsigned int LENGTH_UNKNOWN = 0xFFFF >> LENGTH_SHIFT;

    // The flags of a string of this length.
    static std::uint16_t With(unsigned int flags, std::size_t length) noexcept {
        const std::size_t known = length < LENGTH_UNKNOWN ? length : LENGTH_UNKNOWN;
        return static_cast<std::uint16_t>(flags | (known << LENGTH_SHIFT));
    }
};
static_assert(sizeof(SStringHeader) == 4, "a header has four bytes");

class CTreeString {
public:
    // The characters lie at multiples of this, so pointers to them have low bits to spare.
    static const std::size_t ALIGNMENT = 4;

    // So many bytes from the first character on lie in the string's block, however short it is, and
    // behind them, up to the terminator, whole eights; of a name of a tree there are whole eights
    // from its first character on.
    static const std::size_t READABLE = SMALLEST_BLOCK - sizeof(SStringHeader);

    // The constant "".
    CTreeString() noexcept : m_pText(s_Empty.text) {}

    // The string with these characters, which are those of a tree string.
    static CTreeString At(const char* characters) noexcept { return CTreeString(characters); }

    const char* Text() const noexcept { return m_pText; }
    bool IsEmpty() const noexcept { return *m_pText == '\0'; }
    std::size_t Length() const noexcept {
        const std::size_t known = Flags() >> SStringHeader::LENGTH_SHIFT;
        return known == SStringHeader::LENGTH_UNKNOWN ? std::strlen(m_pText) : known;
    }
    SKnownText Known() const noexcept {
        const std::uint16_t flags = Flags();
        const std::size_t length = flags >> SStringHeader::LENGTH_SHIFT;
        return {m_pText, length == SStringHeader::LENGTH_UNKNOWN ? std::strlen(m_pText) : length,
                static_cast<unsigned int>(flags & STRING_KNOWN)};
    }
    // The same, but a long one is told to have LENGTH_UNKNOWN characters.
    SKnownText KnownIfShort() const noexcept {
        const unsigned int flags = Flags();
        return {m_pText, flags >> SStringHeader::LENGTH_SHIFT, flags & STRING_KNOWN};
    }
    bool Is(unsigned int flags) const noexcept { return (Flags() & flags) == flags; }
    void Add(unsigned int flags) const noexcept {
        const std::uint16_t old = Flags();
        if ((old & flags) != flags) {
            Header().flags.store(static_cast<std::uint16_t>(old | flags),
                                 std::memory_order_relaxed);
        }
    }

    SPage* Page() const noexcept { return PageAt(&Header(), Header().distance); }
    // The tree in which a string lies that is not STRING_STATIC and not outside of any tree.
    CTree& Tree() const noexcept { return *Page()->tree; }

    SStringHeader& Header() const noexcept {
        return *reinterpret_cast<SStringHeader*>(Address() - sizeof(SStringHeader));
    }

    // Whether both are the same string, not only equal.
    friend bool operator==(CTreeString a, CTreeString b) noexcept { return a.m_pText == b.m_pText; }
    friend bool operator!=(CTreeString a, CTreeString b) noexcept { return a.m_pText != b.m_pText; }
    // Whether the characters are these.
    bool Equals(const char* text, std::size_t length) const noexcept {
        return std::strncmp(m_pText, text, length) == 0 && m_pText[length] == '\0';
    }

private:
    struct SEmpty {
        SStringHeader header;
        char text[READABLE];
    };
    alignas(ALIGNMENT) static SEmpty s_Empty;

    explicit CTreeString(const char* characters) noexcept : m_pText(characters) {}
    std::uintptr_t Address() const noexcept { return reinterpret_cast<std::uintptr_t>(m_pText); }
    std::uint16_t Flags() const noexcept { return Header().flags.load(std::memory_order_relaxed); }

    const char* m_pText;
};

// A copy outside of any tree; the caller has retained it. Throws std::bad_alloc.
CTreeString NewOuterString(const SKnownText& text);

// The same in the place of `old`, a string that the caller has retained and that is released: in
// its block, if nobody else shows it and the copy fits, else in a new one. `text` may lie in `old`.
// Throws std::bad_alloc, then `old` is as it was.
CTreeString ReplaceOuterString(CTreeString old, const SKnownText& text);

// Any string, wherever it lies.
void RetainString(CTreeString string) noexcept;
void ReleaseString(CTreeString string) noexcept;

// The bytes of a string of this length, with header and terminator, and writing it to a block of
// that size.
inline std::size_t StringBytes(std::size_t length) noexcept {
    return sizeof(SStringHeader) + length + 1;
}
inline CTreeString WriteString(void* block, SPage* page, const SKnownText& text,
                               unsigned int flags) noexcept {
    SStringHeader* const header = new (block) SStringHeader{
        DistanceTo(page, block), {SStringHeader::With(flags | text.known, text.length)}};
    char* const characters = reinterpret_cast<char*>(header + 1);
    CopyShort(characters, text.text, text.length);  // maybe a part of the string that it replaces
    characters[text.length] = '\0';
    return CTreeString::At(characters);
}

// The same for the text of another string, which is read and written in pieces of a fixed size, to
// the ends of the blocks.
inline CTreeString CopyShortString(void* block, const SPage* page,
                                   const SKnownText& text) noexcept {
    static_assert(CTreeString::READABLE == 12, "a piece of eight and one of four");
    SStringHeader* const header = new (block)
        SStringHeader{DistanceTo(page, block), {SStringHeader::With(text.known, text.length)}};
    char* const characters = reinterpret_cast<char*>(header + 1);
    std::memcpy(characters, text.text, 8);
    std::memcpy(characters + 8, text.text + 8, 4);
    for (std::size_t i = CTreeString::READABLE; i <= text.length; i += 8) {
        std::memcpy(characters + i, text.text + i, 8);
    }
    return CTreeString::At(characters);
}

}  // namespace norvask

#endif
