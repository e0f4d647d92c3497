// Internal. CAttributeIndex: finds the attributes of elements with very many of them, for all such
// elements of a tree.
//
//   entry := element hash order -> attribute
//
// An element is in the index from the first search on that finds INDEX_FROM attributes in it. Its
// attributes get ascending orders as they come, so that of equal names the first is found, whatever
// was renamed into what and removed in between. Clients rename attributes behind the element's back
// (CXMLAttribut::SetName, assignment): the attribute knows that it is indexed, and its tree by its
// name. One that was assigned to shows strings of others and no longer leads to its tree; it is
// looked at again when any such attribute of the process was renamed.
#ifndef NORVASK_TREE_ATTRIBUTE_INDEX_H
#define NORVASK_TREE_ATTRIBUTE_INDEX_H

#include <cstddef>
#include <cstdint>
#include <map>
#include <unordered_map>
#include <unordered_set>

#include "norvask/attribut.h"
#include "tree/memory/tree.h"

namespace norvask {

struct SElementBody;

const std::uint32_t INDEX_FROM = 128;

class CAttributeIndex : public CTreeAttachment {
public:
    // The index of a tree; NULL until there is one. MadeFor throws std::bad_alloc.
    static CAttributeIndex* Of(CTree& tree) noexcept;
    static CAttributeIndex& MadeFor(CTree& tree);

    // The first attribute of the element with this name; NULL when there is none.
    CXMLAttribut* Find(const SElementBody* element, const SNameLookUp& name) noexcept;

    // `order` must be higher than those of the element so far. Throws std::bad_alloc, then nothing
    // has changed.
    void Add(const SElementBody* element, std::uint32_t order, CXMLAttribut* attribute);
    void Remove(CXMLAttribut* attribute) noexcept;

    // An attribute of this index shows another name now.
    void Renamed(CXMLAttribut* attribute) noexcept;
    // So does an attribute that no longer leads to its index.
    static void NoteRenamedElsewhere() noexcept;

private:
    struct SKey {
        const SElementBody* element;
        std::uint32_t hash;
        std::uint32_t order;

        bool operator<(const SKey& other) const noexcept;
    };

    void Rename(CXMLAttribut* attribute, SKey& key) noexcept;
    void LookAgain() noexcept;

    std::map<SKey, CXMLAttribut*> m_Entries;
    std::unordered_map<CXMLAttribut*, SKey> m_Keys;
    std::unordered_set<CXMLAttribut*> m_Assigned;  // those that no longer lead here
    bool m_bAllAssigned = false;                   // there was no memory to tell which
    std::uint64_t m_nRenamesSeen = 0;
};

}  // namespace norvask

#endif
