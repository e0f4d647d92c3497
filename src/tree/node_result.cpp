// Making the result of a node.
#include "tree/node_result.h"

#include "foundation/errors.h"

namespace norvask {

SQueryResult& ResultOfDerivedLeaf(SNodeBody* body) noexcept {
    return body->kind == CXMLNode::NODE_TEXT ? static_cast<SDerivedTextBody*>(body)->result
                                             : static_cast<SDerivedBinaryBody*>(body)->result;
}

SQueryResult& MadeResult(CXMLNode* node) {
    SNodeBody* const body = CNodeAccess::BodyOf(node);
    SQueryResult* result = nullptr;
    if (body->kind == CXMLNode::NODE_ELEMENT) {
        result = &MadeExtras(static_cast<SElementBody*>(body)).result;
    } else if (HasFlag(body, BODY_IN_BLOCK)) {
        ThrowNotSupportedByLeaf();
    } else {
        result = &ResultOfDerivedLeaf(body);
    }
    if (result->slots == nullptr) {
        StartResult(TreeOf(body).Arena(), *result);
    }
    return *result;
}

}  // namespace norvask
