// Internal. CNameTable: the element and attribute names of one tree, each kept once and counted.
//
//   name := next hash uses length string
//
// Names of nodes and attributes of one tree are equal exactly when they are the same string, save
// for attributes whose names lie outside of the tree (attribute_access.h). A name is freed with its
// last use. Uses are counted through CNameUse (name_use.h) only.
#ifndef NORVASK_TREE_MEMORY_NAME_TABLE_H
#define NORVASK_TREE_MEMORY_NAME_TABLE_H

#include <cstddef>
#include <cstdint>

#include "tree/memory/tree_strings.h"

namespace norvask {

// What was found out by looking for a name. Good until the next change of the table.
struct SNameLookUp {
    const char* text;
    std::size_t length;
    std::uint32_t hash;
    bool isFound;
    CTreeString name;  // if it was found

    // Whether it was found and is known to be a name.
    bool IsName() const noexcept { return isFound && name.Is(KNOWN_NAME); }
};

class CNameTable {
public:
    explicit CNameTable(CTreeStrings& strings) noexcept
        : m_Strings(strings), m_ppBuckets(nullptr), m_nBuckets(0), m_nNames(0) {}
    CNameTable(const CNameTable&) = delete;
    CNameTable& operator=(const CNameTable&) = delete;

    static std::uint32_t Hash(const char* text, std::size_t length) noexcept;
    static std::uint32_t HashOf(CTreeString name) noexcept;

    // No use is counted.
    SNameLookUp LookUp(const char* text, std::size_t length) const noexcept;

private:
    friend class CNameUse;

    // One use of the name that was looked up, which is added when it is new; `known` is remembered.
    // Throws std::bad_alloc.
    CTreeString Acquire(const SNameLookUp& lookUp, unsigned int known);
    static void AddUse(CTreeString name) noexcept { ++NameAt(name)->uses; }
    void Release(CTreeString name) noexcept {
        SName* const used = NameAt(name);
        if (--used->uses == 0) {
            Remove(used);
        }
    }

    struct SName {
        SName* next;
        std::uint32_t hash;
        std::uint32_t uses;
        std::uint32_t length;
        std::uint32_t header;  // where that of the string is written

        CTreeString String() noexcept { return CTreeString::At(reinterpret_cast<char*>(this + 1)); }
        std::size_t Bytes() const noexcept { return sizeof(SName) + length + 1; }
    };
    static_assert(sizeof(SName) % CTreeString::ALIGNMENT == 0, "the low bits must be free");
    static SName* NameAt(CTreeString name) noexcept {
        return reinterpret_cast<SName*>(reinterpret_cast<std::uintptr_t>(name.Text()) -
                                        sizeof(SName));
    }
    SName* FindIn(std::uint32_t hash, const char* text, std::size_t length) const noexcept;
    SName* Add(const SNameLookUp& lookUp, unsigned int known);
    void Remove(SName* name) noexcept;
    void Grow();

    CTreeStrings& m_Strings;
    SName** m_ppBuckets;
    std::uint32_t m_nBuckets;
    std::uint32_t m_nNames;
};

inline std::uint32_t CNameTable::HashOf(CTreeString name) noexcept { return NameAt(name)->hash; }

}  // namespace norvask

#endif
