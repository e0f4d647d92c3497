// Where results are kept: behind the attributes of an element, behind the body of a leaf of a derived class.
#include "tree/query_result.h"

#include "foundation/errors.h"
#include "tree/attribute_array.h"
#include "tree/node_access.h"

namespace norvask {
namespace {

const std::uint32_t FIRST_RESULT_CAPACITY = 2;

}  // namespace

SQueryResult& ResultOfDerivedLeaf(SNodeBody* body) noexcept {
    return body->kind == CXMLNode::NODE_TEXT ? static_cast<SDerivedTextBody*>(body)->result
                                             : static_cast<SDerivedBinaryBody*>(body)->result;
}

void StartResult(CArena& arena, SQueryResult& result) {
    if (result.slots == nullptr) {
        result.slots = NewSlots<CXMLNode>(arena, FIRST_RESULT_CAPACITY);
        result.capacity = FIRST_RESULT_CAPACITY;
    }
    result.slots[0] = nullptr;
    result.used = 1;
}

void GrowResult(CArena& arena, SQueryResult& result) {
    const std::uint32_t capacity = CapacityFor(result.capacity, result.capacity);
    CXMLNode** const grown = NewSlots<CXMLNode>(arena, capacity);
    MoveSlots(grown, result.slots, result.used);
    FreeSlots(arena, result.slots, result.capacity);
    result.slots = grown;
    result.capacity = capacity;
}

void FreeResult(CArena& arena, SQueryResult& result) noexcept {
    if (result.slots != nullptr) {
        FreeSlots(arena, result.slots, result.capacity);
    }
}

SQueryResult* ResultOrNull(const CXMLNode* node) noexcept {
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
