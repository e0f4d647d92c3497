// Internal. SQueryResult: the array in which a node keeps the result of its last query (slots.h);
// its first capacity is two.
#ifndef NORVASK_TREE_QUERY_RESULT_H
#define NORVASK_TREE_QUERY_RESULT_H

#include <cstdint>

#include "norvask/node.h"
#include "tree/slots.h"

namespace norvask {

struct SQueryResult {
    CXMLNode** slots;  // NULL before the first query
    std::uint32_t capacity;
    std::uint32_t used;
};

// Empty, with the first capacity when there is no array yet. Throws std::bad_alloc.
void StartResult(CArena& arena, SQueryResult& result);

// Doubles the capacity. Throws std::bad_alloc.
void GrowResult(CArena& arena, SQueryResult& result);

void FreeResult(CArena& arena, SQueryResult& result) noexcept;

}  // namespace norvask

#endif
