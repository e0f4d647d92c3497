// Internal. Finds the attributes of an element with very many of them by hash.
//
// An index is made when an element has INDEX_FROM attributes or more and a name is looked for. Clients can rename
// attributes behind its back (CXMLAttribut::SetName, assignment); every rename of an indexed attribute is
// counted in the process, and an index that has not seen the last count is made anew.
#ifndef NORVASK_TREE_ATTRIBUTE_INDEX_H
#define NORVASK_TREE_ATTRIBUTE_INDEX_H

#include "tree/node_body.h"

namespace norvask {

const std::uint32_t INDEX_FROM = 32;

// The index of the element, made or made anew when there is none that can be used. Throws std::bad_alloc.
SAttributeIndex* UpToDateIndex(SElementBody* body);

CXMLAttribut* FindInIndex(const SAttributeIndex* index, const char* name,
                          std::size_t length) noexcept;

// Keep the index of an element, if it has one, in step with the array. Adding may drop the index instead.
void AddToIndex(SElementBody* body, CXMLAttribut* attribute) noexcept;
void RemoveFromIndex(SElementBody* body, const CXMLAttribut* attribute) noexcept;

void FreeIndex(CTreeMemory& memory, SAttributeIndex* index) noexcept;

}  // namespace norvask

#endif
