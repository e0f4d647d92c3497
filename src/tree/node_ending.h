// Internal. How nodes end: iteratively, without allocating, and each thing once.
#ifndef NORVASK_TREE_NODE_ENDING_H
#define NORVASK_TREE_NODE_ENDING_H

#include "tree/node_access.h"

namespace norvask {

// Ends a node that has been taken out of its child array, with everything below it.
void EndNode(CXMLNode* node) noexcept;

// Ends the root of a document, with everything below it, and the document's ownership of its memory.
void EndRoot(CXMLNode* root) noexcept;

// An object stops showing a body: the last one ends what the body holds. With `reuse` the memory goes on
// living and the blocks are given back to it.
void LeaveBody(SNodeBody* body, const CXMLNode* object, bool reuse) noexcept;

}  // namespace norvask

#endif
