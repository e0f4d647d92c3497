// Internal. SQueryResult: the array in which a node keeps the result of its last query (slots.h); its first capacity
// is two.
#ifndef NORVASK_TREE_QUERY_RESULT_H
#define NORVASK_TREE_QUERY_RESULT_H

#include <cstdint>

#include "norvask/node.h"
#include "tree/slots.h"

namespace norvask {

struct SNodeBody;

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

// Where a leaf of a derived class has its result.
SQueryResult& ResultOfDerivedLeaf(SNodeBody* body) noexcept;

// The result of a node; NULL for one that has none yet, and for leaves in blocks, which never have one.
SQueryResult* ResultOrNull(const CXMLNode* node) noexcept;

// The result of a node, made when there is none. Throws std::bad_alloc, and CXMLException (not supported) for an object
// that shows the body of a leaf in a block.
SQueryResult& MadeResult(CXMLNode* node);

}  // namespace norvask

#endif
