// Internal. CNameTable: the element and attribute names of one tree, each kept once and counted.
//
//   name := next hash uses length string
//
// Names of nodes and attributes of one tree are equal exactly when they are the same string, save for attributes
// whose names lie outside of the tree (attribute_strings.h). A name is freed with its last use.
//
// CNameUse is one use of a name: move-only, it releases itself unless it is kept by a node or an attribute, which then
// release it through Adopt.
#ifndef NORVASK_TREE_MEMORY_NAME_TABLE_H
#define NORVASK_TREE_MEMORY_NAME_TABLE_H

#include <cstddef>
#include <cstdint>
#include <utility>

#include "tree/memory/tree_string.h"

namespace norvask {

class CNameTable;

class CNameUse {
public:
    CNameUse() noexcept = default;
    CNameUse(CNameUse&& other) noexcept : m_Name(std::exchange(other.m_Name, CTreeString())) {}
    CNameUse& operator=(CNameUse&& other) noexcept {
        std::swap(m_Name, other.m_Name);
        return *this;
    }
    ~CNameUse() {
        if (!m_Name.Is(STRING_STATIC)) {
            Release();
        }
    }

    // One more use of a name that is in use, and the use that somebody kept.
    static CNameUse Another(CTreeString name) noexcept;
    static CNameUse Adopt(CTreeString name) noexcept { return CNameUse(name); }

    // The name, as long as this is here or it is kept.
    CTreeString Name() const noexcept { return m_Name; }

    // The name, of which the caller keeps the use.
    CTreeString Keep() noexcept { return std::exchange(m_Name, CTreeString()); }

private:
    friend class CNameTable;
    explicit CNameUse(CTreeString name) noexcept : m_Name(name) {}
    void Release() noexcept;

    CTreeString m_Name;
};

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
    explicit CNameTable(CTree& tree) noexcept
        : m_Tree(tree), m_ppBuckets(nullptr), m_nBuckets(0), m_nNames(0) {}
    CNameTable(const CNameTable&) = delete;
    CNameTable& operator=(const CNameTable&) = delete;

    static std::uint32_t Hash(const char* text, std::size_t length) noexcept;
    static std::uint32_t HashOf(CTreeString name) noexcept;

    // No use is counted.
    SNameLookUp LookUp(const char* text, std::size_t length) const noexcept;

    // One use of the name with these characters, which is added when it is new. What is known of it is remembered.
    // Throw std::bad_alloc.
    CNameUse Use(const SNameLookUp& lookUp, unsigned int known);
    CNameUse Use(const SKnownText& name) { return Use(LookUp(name.text, name.length), name.known); }

private:
    friend class CNameUse;
    struct SName {
        SName* next;
        std::uint32_t hash;
        std::uint32_t uses;
        std::uint32_t length;
        std::uint32_t tag;  // where the tag of the string is written

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

    CTree& m_Tree;
    SName** m_ppBuckets;
    std::uint32_t m_nBuckets;
    std::uint32_t m_nNames;
};

inline std::uint32_t CNameTable::HashOf(CTreeString name) noexcept { return NameAt(name)->hash; }

inline CNameUse CNameUse::Another(CTreeString name) noexcept {
    ++CNameTable::NameAt(name)->uses;
    return CNameUse(name);
}

}  // namespace norvask

#endif
