// Internal. Where nodes keep the results of their queries: an element with its attributes, a leaf
// of a derived class behind its body.
#ifndef NORVASK_TREE_NODE_RESULT_H
#define NORVASK_TREE_NODE_RESULT_H

#include "tree/attribute_array.h"
#include "tree/node_access.h"

namespace norvask {

// Where a leaf of a derived class has its result.
SQueryResult& ResultOfDerivedLeaf(SNodeBody* body) noexcept;

// The result of a node; NULL for one that has none yet, and for leaves in blocks, which never have
// one.
inline SQueryResult* ResultOrNull(const CXMLNode* node) noexcept {
    SNodeBody* const body = CNodeAccess::BodyOf(node);
    SQueryResult* result = nullptr;
    if (body->kind == CXMLNode::NODE_ELEMENT) {
        SElementExtras* const extras = ExtrasOrNull(static_cast<SElementBody*>(body));
        result = extras == nullptr ? nullptr : &extras->result;
    } else if (!HasFlag(body, BODY_IN_BLOCK)) {
        result = &ResultOfDerivedLeaf(body);
    }
    return result == nullptr || result->slots == nullptr ? nullptr : result;
}

// The result of a node, made when there is none. Throws std::bad_alloc, and CXMLException (not
// supported) for an object that shows the body of a leaf in a block.
SQueryResult& MadeResult(CXMLNode* node);

}  // namespace norvask

#endif
