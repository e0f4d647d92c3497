// Internal. Changing the strings of an attribute, and freeing them.
#ifndef NORVASK_TREE_ATTRIBUTE_STRINGS_H
#define NORVASK_TREE_ATTRIBUTE_STRINGS_H

#include "tree/attribute_access.h"

namespace norvask {

// Sets a name, which the attribute retains from now on or of which it keeps the use, or another
// value; the old one is freed. `heldBefore` tells who had the old value.
void ReplaceName(CXMLAttribut* attribute, CTreeString name, bool holds) noexcept;
void ReplaceValue(CXMLAttribut* attribute, CTreeString value, bool heldBefore) noexcept;

// Sets a copy of the value. Throws std::bad_alloc, and then nothing has changed.
void SetAttributeValue(CXMLAttribut* attribute, const SKnownText& value);

// Releases only what an attribute holds outside of its tree.
void ReleaseHeld(const CXMLAttribut* attribute) noexcept;

// Destroys an attribute of an element, and frees its memory too.
void DestroyAttribute(CTree& tree, CXMLAttribut* attribute) noexcept;

}  // namespace norvask

#endif
