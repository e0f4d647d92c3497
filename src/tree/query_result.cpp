// The array of a result.
#include "tree/query_result.h"

namespace norvask {
namespace {

const std::uint32_t FIRST_RESULT_CAPACITY = 2;

}  // namespace

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

}  // namespace norvask
