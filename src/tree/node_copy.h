// Internal. Copying what an element holds.
#ifndef NORVASK_TREE_NODE_COPY_H
#define NORVASK_TREE_NODE_COPY_H

#include "norvask/node.h"

namespace norvask {

// Copies the attributes of an element and everything below it to a new element, which may lie below
// the source only when it is the copy that CopyChild is making. What was copied before a failure
// stays.
void CopyContent(CXMLNode* source, CXMLNode* copy);

}  // namespace norvask

#endif
