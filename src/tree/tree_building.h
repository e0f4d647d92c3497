// Internal. Adding to a tree without going through the virtual operations: the operations themselves, copying
// and loading are built on these.
#ifndef NORVASK_TREE_TREE_BUILDING_H
#define NORVASK_TREE_TREE_BUILDING_H

#include "tree/node_access.h"

namespace norvask {

// The name of that memory with these characters, with one more use. Throws CXMLException (invalid name) for
// NULL and for what is no XML name, and std::bad_alloc.
const char* AcquireValidName(CTreeMemory& memory, const char* name);

// Throws CXMLException (invalid name) for NULL and for what is no XML name.
void RequireValidName(CTreeMemory& memory, const char* name);

// Add a child to an element, and throw std::bad_alloc with the element unchanged. `name` is a name of the
// element's memory of which the use is taken over, also when the call fails; `isUtf8` tells whether the text is known to be
// well-formed.
CXMLNode* AddElement(CXMLNode* parent, const char* name, CXMLNode* before);
CXMLTextNode* AddText(CXMLNode* parent, const char* text, std::size_t length, bool isUtf8);
CXMLBinNode* AddBinary(CXMLNode* parent);

// A root in a memory of its own, of which the caller is the owner. Throws as AcquireValidName.
CXMLNode* NewRoot(const char* name);

// A copy of at least one byte, for a binary node. Throws std::bad_alloc.
unsigned char* NewDataCopy(CTreeMemory& memory, const unsigned char* data, std::size_t length);

// The body of an element; leaves refuse with CXMLException.
SElementBody* RequireElement(const CXMLNode* node);

}  // namespace norvask

#endif
