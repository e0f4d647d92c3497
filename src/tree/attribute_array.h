// Internal. The attributes of an element body: NULL-terminated array, capacity 1, 2, 4, ..., never shrinking,
// and the rare things that share its block.
#ifndef NORVASK_TREE_ATTRIBUTE_ARRAY_H
#define NORVASK_TREE_ATTRIBUTE_ARRAY_H

#include "tree/node_body.h"

namespace norvask {

// The slots of an element without attributes: one NULL entry. Never written.
CXMLAttribut** NoAttributes() noexcept;

inline CXMLAttribut** AttributeSlots(const SElementBody* body) noexcept {
    return body->m_pAttributes == nullptr ? NoAttributes() : body->m_pAttributes->Slots();
}
inline std::uint32_t AttributeCount(const SElementBody* body) noexcept {
    return body->m_pAttributes == nullptr ? 0 : body->m_pAttributes->Count();
}

// The first attribute with this name, NULL when there is none.
CXMLAttribut* FindAttribute(SElementBody* body, const char* name, std::size_t length) noexcept;

// Makes room for `count` attributes in all. Throws std::bad_alloc.
void ReserveAttributes(SElementBody* body, std::size_t count);

// Appends an attribute that the element does not have. `name` is a name of the tree's memory of which the
// use is taken over when the call succeeds; `isUtf8` tells whether the value is known to be well-formed.
// Throws std::bad_alloc.
void AppendAttribute(SElementBody* body, const char* name, const char* value, std::size_t length,
                     bool isUtf8);

void RemoveAttribute(SElementBody* body, CXMLAttribut* attribute) noexcept;

// Sets, adds or removes, as CXMLNode::SetAttribute does for a valid name.
void SetValidAttribute(SElementBody* body, const char* name, std::size_t nameLength,
                       const char* value, std::size_t valueLength);

// The same for a name of the tree's memory, of which the use is taken over when the call succeeds.
void SetNamedAttribute(SElementBody* body, const char* name, const char* value, std::size_t length,
                       bool isUtf8);

// The extras, made when there are none. Throws std::bad_alloc.
SNodeExtras& ExtrasOf(SElementBody* body);

// Ends all attributes and frees the array with the extras.
void FreeAttributes(SElementBody* body) noexcept;

// The extras and their query result array, for elements and for leaves of derived classes: made empty, made
// with the first capacity, doubled, freed. All but the last throw std::bad_alloc.
SNodeExtras* NewExtras(CTreeMemory& memory);
void MakeResult(CTreeMemory& memory, SNodeExtras& extras);
void GrowResult(CTreeMemory& memory, SNodeExtras& extras);
void FreeExtras(CTreeMemory& memory, SNodeExtras* extras) noexcept;

}  // namespace norvask

#endif
