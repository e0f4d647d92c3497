// Internal. CNameCache: the parser's names of one load and the tree's names for them.
//
// A document repeats few names very often, and mostly in the same order. Each is converted and checked once;
// afterwards its UTF-16 form leads straight to the name in the tree's memory: through the name before it, which
// remembers the two that came next most recently, or else through a hash table.
#ifndef NORVASK_LOAD_NAME_CACHE_H
#define NORVASK_LOAD_NAME_CACHE_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "tree/memory/name_use.h"

namespace norvask {

class CNameCache {
public:
    // One use of the tree's name for a parser name. Throws CXMLException (invalid name) for what the
    // parser takes for a name and XML 1.0 does not, and std::bad_alloc.
    CNameUse Use(CTree& tree, const char16_t* parserName);

    // Forgets all names; the load is over.
    void Clear() noexcept;

private:
    struct SEntry {
        std::uint32_t hash;
        std::uint32_t
            next[2];  // positions, counted from 1, of what came after this one; the later one first
        std::size_t length;
        std::size_t start;  // in m_Characters
        CNameUse treeName;
    };

    bool IsSame(const SEntry& entry, const char16_t* parserName) const noexcept;
    CNameUse UseAt(std::uint32_t position) noexcept;
    void Grow();

    std::vector<SEntry> m_Entries;       // in the order in which they came
    std::vector<std::uint32_t> m_Slots;  // open addressing: positions in m_Entries, counted from 1
    std::u16string m_Characters;         // of all parser names, each terminated
    std::uint32_t m_nLast = 0;           // the position of the last name, counted from 1
};

}  // namespace norvask

#endif
