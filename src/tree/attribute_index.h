// Internal. CAttributeIndex: finds the attributes of elements with very many of them, for all such
// elements of a tree.
//
//   entry := element hash order -> attribute
//
// An element is in the index from the first search on that finds INDEX_FROM attributes in it. Its
// attributes get ascending orders as they come, so that of equal names the first is found, whatever
// was renamed into what and removed in between. Clients rename attributes behind the element's back
// (CXMLAttribut::SetName, assignment). An attribute knows that it is indexed, and its tree by its
// name; one that was assigned to shows strings of others, and its index is kept in a map of the
// process.
#ifndef NORVASK_TREE_ATTRIBUTE_INDEX_H
#define NORVASK_TREE_ATTRIBUTE_INDEX_H

#include <cstddef>
#include <cstdint>
#include <map>
#include <unordered_map>

#include "norvask/attribut.h"
#include "tree/memory/tree.h"

namespace norvask {

struct SElementBody;

// Fewer are searched one by one in as little time, and without the memory that an index takes.
const std::uint32_t INDEX_FROM = 128;

class CAttributeIndex : public CTreeAttachment {
public:
    // The index of a tree; NULL until there is one. MadeFor throws std::bad_alloc.
    static CAttributeIndex* Of(CTree& tree) noexcept;
    static CAttributeIndex& MadeFor(CTree& tree);

    ~CAttributeIndex() override;

    // The first attribute of the element with this name; NULL when there is none. Not to be asked
    // of an index that is not whole: there was no memory to follow a rename.
    CXMLAttribut* Find(const SElementBody* element, const SNameLookUp& name) const noexcept;
    bool IsWhole() const noexcept { return m_bWhole; }

    // `order` must be higher than those of the element so far. Throws std::bad_alloc, then nothing
    // has changed.
    void Add(const SElementBody* element, std::uint32_t order, CXMLAttribut* attribute);
    void Remove(CXMLAttribut* attribute) noexcept;

    // An indexed attribute of this tree, or one that was assigned to, shows another name now.
    static void Renamed(CTree& tree, CXMLAttribut* attribute) noexcept;
    static void RenamedAssigned(CXMLAttribut* attribute) noexcept;

private:
    struct SKey {
        const SElementBody* element;
        std::uint32_t hash;
        std::uint32_t order;

        bool operator<(const SKey& other) const noexcept;
    };

    void Rename(CXMLAttribut* attribute) noexcept;

    std::map<SKey, CXMLAttribut*> m_Entries;
    std::unordered_map<CXMLAttribut*, SKey> m_Keys;
    bool m_bHasAssigned = false;
    bool m_bWhole = true;
};

}  // namespace norvask

#endif
