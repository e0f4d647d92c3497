// Internal. The child array of an element body: NULL-terminated, capacity 2, 4, 8, ..., never shrinking.
#ifndef NORVASK_TREE_CHILD_ARRAY_H
#define NORVASK_TREE_CHILD_ARRAY_H

#include "tree/node_body.h"

namespace norvask {

inline CXMLNode** ChildSlots(SElementBody* body) noexcept {
    return HasFlag(body, BODY_HEAP_CHILDREN) ? body->m_Children.m_Heap.m_pSlots
                                             : body->m_Children.m_Inline;
}
inline std::uint32_t ChildCapacity(const SElementBody* body) noexcept {
    return HasFlag(body, BODY_HEAP_CHILDREN) ? body->m_Children.m_Heap.m_nCapacity
                                             : FIRST_CHILD_CAPACITY;
}
// The used slots, the terminator among them.
inline std::uint32_t ChildrenUsed(const SElementBody* body) noexcept {
    if (HasFlag(body, BODY_HEAP_CHILDREN)) {
        return body->m_Children.m_Heap.m_nUsed;
    }
    return body->m_Children.m_Inline[0] == nullptr ? 1 : 2;
}
inline std::uint32_t ChildCount(const SElementBody* body) noexcept {
    return ChildrenUsed(body) - 1;
}

// Makes room for `count` children in all. Throws std::bad_alloc.
void ReserveChildren(SElementBody* body, std::size_t count);

// Doubles the capacity when the array is full, so that one more child can be added without failing.
inline void ReserveOneChild(SElementBody* body) {
    const std::uint32_t used = ChildrenUsed(body);
    if (used == ChildCapacity(body)) {
        ReserveChildren(body, used);
    }
}

// Appends, or inserts in front of `before`, which when it is no child means in front of all. There is room.
inline void AppendReserved(SElementBody* body, CXMLNode* child) noexcept {
    if (HasFlag(body, BODY_HEAP_CHILDREN)) {
        SHeapChildren& heap = body->m_Children.m_Heap;
        heap.m_pSlots[heap.m_nUsed - 1] = child;
        heap.m_pSlots[heap.m_nUsed] = nullptr;
        ++heap.m_nUsed;
    } else {
        body->m_Children.m_Inline[0] = child;
    }
}
void InsertReserved(SElementBody* body, CXMLNode* child, CXMLNode* before) noexcept;

// Takes the child at this index out of the array.
void RemoveChildAt(SElementBody* body, std::uint32_t index) noexcept;

void FreeChildArray(SElementBody* body) noexcept;

}  // namespace norvask

#endif
