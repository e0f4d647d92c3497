// Internal. The children of an element body (slots.h); their first capacity is two, in the body
// itself.
//
//   array := unused* child* NULL unused*      once they have outgrown the body
//
// A long array may begin later in its block, so that children come and go at both of its sides
// without the others being moved.
#ifndef NORVASK_TREE_CHILD_ARRAY_H
#define NORVASK_TREE_CHILD_ARRAY_H

#include "tree/node_body.h"

namespace norvask {

inline CXMLNode** ChildSlots(SElementBody* body) noexcept {
    return HasFlag(body, BODY_OUTGROWN) ? body->children.many.slots : body->children.few;
}

// The used slots, the NULL among them.
inline std::uint32_t ChildrenUsed(const SElementBody* body) noexcept {
    if (HasFlag(body, BODY_OUTGROWN)) {
        return body->children.many.used;
    }
    return body->children.few[0] == nullptr ? 1 : 2;
}
inline std::uint32_t ChildCount(const SElementBody* body) noexcept {
    return ChildrenUsed(body) - 1;
}

// The two numbers in SChildArray::shape.
const unsigned int SHAPE_FRONT_SHIFT = 5;
const std::uint32_t LARGEST_FRONT = 0xFFFFFFFF >> SHAPE_FRONT_SHIFT;
inline std::uint32_t ArrayCapacity(const SChildArray& array) noexcept {
    return 1U << (array.shape & ((1U << SHAPE_FRONT_SHIFT) - 1));
}
inline std::uint32_t ArrayFront(const SChildArray& array) noexcept {
    return array.shape >> SHAPE_FRONT_SHIFT;
}
inline std::uint32_t ChildCapacity(const SElementBody* body) noexcept {
    return HasFlag(body, BODY_OUTGROWN) ? ArrayCapacity(body->children.many) : FIRST_CHILD_CAPACITY;
}

// Makes room for `count` children in all, for an element that is given them one behind the other.
// Throws std::bad_alloc.
void ReserveChildren(SElementBody* body, std::size_t count);

// Makes room for one more child at this index, so that it can be put there without failing. Throws
// std::bad_alloc.
void ReserveChildSlowly(SElementBody* body, std::uint32_t index);
inline void ReserveLastChild(SElementBody* body) {
    const bool hasRoom = HasFlag(body, BODY_OUTGROWN)
                             ? ArrayFront(body->children.many) + body->children.many.used !=
                                   ArrayCapacity(body->children.many)
                             : body->children.few[0] == nullptr;
    if (!hasRoom) {
        ReserveChildSlowly(body, ChildCount(body));
    }
}

// Puts a child behind the others, or at an index. There is room.
inline void PutLastChild(SElementBody* body, CXMLNode* child) noexcept {
    if (HasFlag(body, BODY_OUTGROWN)) {
        PutSlot(body->children.many.slots, body->children.many.used, child);
    } else {
        body->children.few[0] = child;
    }
}
void PutChild(SElementBody* body, std::uint32_t index, CXMLNode* child) noexcept;

// Takes the child at this index out of the array.
void RemoveChild(SElementBody* body, std::uint32_t index) noexcept;

// Takes the first child out of the array; NULL when there is none. The others stay where they are.
CXMLNode* TakeFirstChild(SElementBody* body) noexcept;

void FreeChildArray(SElementBody* body) noexcept;

}  // namespace norvask

#endif
