// Internal. Adding to a tree without going through the virtual operations: the operations
// themselves, copying and loading are built on these.
#ifndef NORVASK_TREE_TREE_BUILDING_H
#define NORVASK_TREE_TREE_BUILDING_H

#include "tree/node_access.h"

namespace norvask {

// One use of the name of that tree with these characters. Throws CXMLException (invalid name) for
// NULL and for what is no XML name, and std::bad_alloc.
CNameUse UseValidName(CTree& tree, const char* name);

// Add a child to an element, and throw std::bad_alloc with the element unchanged; a name is moved
// from when it is the child's. `before` is as for CXMLNode::CreateChild.
CXMLNode* AddElement(CXMLNode* parent, CNameUse&& name, const CXMLNode* before);
CXMLTextNode* AddText(CXMLNode* parent, const SKnownText& text);
CXMLBinNode* AddBinary(CXMLNode* parent);

// A root in a tree of its own, of which the caller is the owner. Throws as UseValidName.
CXMLNode* NewRoot(const char* name);

// A copy of at least one byte, for a binary node. Throws std::bad_alloc.
unsigned char* NewDataCopy(CTree& tree, const unsigned char* data, std::size_t length);

// The body of an element; leaves refuse with CXMLException.
SElementBody* RequireElement(const CXMLNode* node);

}  // namespace norvask

#endif
