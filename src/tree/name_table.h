// Internal. CNameTable: the element and attribute names of one tree, each kept once.
//
//   name := next hash uses length tag characters 0
//
// Names of nodes and attributes of one tree are equal exactly when they are the same pointer, save for
// attributes whose names lie outside of the tree (attribute_access.h). A name goes when its last user goes.
#ifndef NORVASK_TREE_NAME_TABLE_H
#define NORVASK_TREE_NAME_TABLE_H

#include <cstddef>
#include <cstdint>

namespace norvask {

class CTreeMemory;

class CNameTable {
public:
    CNameTable() noexcept : m_ppBuckets(nullptr), m_nBuckets(0), m_nNames(0) {}
    CNameTable(const CNameTable&) = delete;
    CNameTable& operator=(const CNameTable&) = delete;

    static std::uint32_t Hash(const char* text, std::size_t length) noexcept;

    // The name with these characters, NULL when the tree has none. No use is counted.
    const char* Find(const char* text, std::size_t length) const noexcept;

    // The name with these characters, added when it is new, with one more use. Throws std::bad_alloc.
    const char* Acquire(CTreeMemory& memory, const char* text, std::size_t length);

    // One more or one less use of a name of this table.
    static void AddUse(const char* name) noexcept { ++NameOf(name)->m_nUses; }
    void Release(CTreeMemory& memory, const char* name) noexcept;

    static std::size_t Length(const char* name) noexcept { return NameOf(name)->m_nLength; }
    static std::uint32_t HashOf(const char* name) noexcept { return NameOf(name)->m_nHash; }

private:
    struct SName {
        SName* m_pNext;
        std::uint32_t m_nHash;
        std::uint32_t m_nUses;
        std::uint32_t m_nLength;
        std::uint32_t m_nTag;  // an SStringTag

        char* Characters() noexcept { return reinterpret_cast<char*>(this + 1); }
        std::size_t Bytes() const noexcept { return sizeof(SName) + m_nLength + 1; }
    };
    static SName* NameOf(const char* characters) noexcept {
        const std::uintptr_t address = reinterpret_cast<std::uintptr_t>(characters);
        return reinterpret_cast<SName*>(address - sizeof(SName));
    }
    SName* FindIn(std::uint32_t hash, const char* text, std::size_t length) const noexcept;
    void Grow(CTreeMemory& memory);

    SName** m_ppBuckets;
    std::uint32_t m_nBuckets;
    std::uint32_t m_nNames;
};

}  // namespace norvask

#endif
