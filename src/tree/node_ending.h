// Internal. How nodes are destroyed: without recursion, without allocating, and each thing once.
#ifndef NORVASK_TREE_NODE_ENDING_H
#define NORVASK_TREE_NODE_ENDING_H

#include "tree/node_access.h"

namespace norvask {

// Destroys a node that has been taken out of its child array, with everything below it.
void DestroyNode(CXMLNode* node) noexcept;

// Destroys the root of a document, with everything below it, and releases the document's hold on
// its tree.
void DestroyRoot(CXMLNode* root) noexcept;

// An object stops showing a body; the last one destroys what the body holds. What lies in `dying`,
// a tree that is about to be freed as a whole, is not freed one by one; NULL for none.
void LeaveBody(SNodeBody* body, const CXMLNode* object, const CTree* dying) noexcept;

}  // namespace norvask

#endif
