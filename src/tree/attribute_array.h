// Internal. The attributes of an element body (slots.h); their first capacity is one. Rare things
// share their block.
#ifndef NORVASK_TREE_ATTRIBUTE_ARRAY_H
#define NORVASK_TREE_ATTRIBUTE_ARRAY_H

#include "tree/attribute_access.h"
#include "tree/node_body.h"
#include "tree/slots.h"

namespace norvask {

// The slots of an element without attributes: one NULL entry. Never written.
CXMLAttribut** NoAttributes() noexcept;

inline CXMLAttribut** AttributeSlots(const SElementBody* body) noexcept {
    return body->attributes == nullptr ? NoAttributes() : body->attributes->Slots();
}
inline std::uint32_t AttributeCount(const SElementBody* body) noexcept {
    return body->attributes == nullptr ? 0 : body->attributes->Count();
}

// The first attribute with this name, NULL when there is none. `name` was looked up in the
// element's tree.
CXMLAttribut* FindAttribute(SElementBody* body, const SNameLookUp& name) noexcept;
inline CXMLAttribut* FindAttribute(SElementBody* body, const char* name) noexcept {
    return body->attributes == nullptr
               ? nullptr
               : FindAttribute(body, TreeOf(body).Names().LookUp(name, std::strlen(name)));
}

// Makes room for `count` attributes in all. Throws std::bad_alloc.
void ReserveAttributes(SElementBody* body, std::size_t count);

// Appends an attribute that the element does not have. Throws std::bad_alloc.
void AppendAttribute(SElementBody* body, CNameUse&& name, const SKnownText& value);
// The same without a look at the index, in which an element is not that has just been made, for a
// copy of a value; there is room.
inline void AppendCopiedAttribute(CTree& tree, SAttributeArray& attributes, CNameUse&& name,
                                  CTreeString value) {
    CNewString copy(tree, value);
    PutSlot(attributes.Slots(), attributes.used, CAttributeAccess::New(tree, name, copy));
}

// Sets, adds or removes, as CXMLNode::SetAttribute does, by a name that was looked up, of which
// `known` is known, and by one of which the caller has a use. Throw std::bad_alloc.
void SetAttribute(SElementBody* body, const SNameLookUp& name, unsigned int known,
                  const SKnownText& value);
void SetAttribute(SElementBody* body, CNameUse&& name, const SKnownText& value);

// NULL when there are none; made when there are none, which throws std::bad_alloc.
inline SElementExtras* ExtrasOrNull(const SElementBody* body) noexcept {
    return body->attributes == nullptr ? nullptr : body->attributes->extras;
}
SElementExtras& MadeExtras(SElementBody* body);

// Destroys all attributes and frees the array with the extras.
void FreeAttributes(SElementBody* body) noexcept;

}  // namespace norvask

#endif
