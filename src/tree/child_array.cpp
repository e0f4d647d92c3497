#include "tree/child_array.h"

#include <cstring>
#include <new>

namespace norvask {
namespace {

const std::uint32_t LARGEST_CAPACITY = 1U << 31;

void SetUsed(SElementBody* body, std::uint32_t used) noexcept {
    if (HasFlag(body, BODY_HEAP_CHILDREN)) {
        body->m_Children.m_Heap.m_nUsed = used;
    }
}

void SetCapacity(SElementBody* body, std::uint32_t capacity) {
    CXMLNode** grown =
        static_cast<CXMLNode**>(MemoryOf(body).AllocatePlain(capacity * sizeof(CXMLNode*)));
    const std::uint32_t used = ChildrenUsed(body);
    std::memcpy(grown, ChildSlots(body), used * sizeof(CXMLNode*));
    FreeChildArray(body);
    body->m_Children.m_Heap = {grown, capacity, used};
    SetFlag(body, BODY_HEAP_CHILDREN);
}

}  // namespace

void ReserveChildren(SElementBody* body, std::size_t count) {
    std::uint32_t capacity = ChildCapacity(body);
    while (capacity <= count) {
        if (capacity == LARGEST_CAPACITY) {
            throw std::bad_alloc();
        }
        capacity *= 2;
    }
    if (capacity != ChildCapacity(body)) {
        SetCapacity(body, capacity);
    }
}

void InsertReserved(SElementBody* body, CXMLNode* child, CXMLNode* before) noexcept {
    const std::uint32_t used = ChildrenUsed(body);
    CXMLNode** slots = ChildSlots(body);
    std::uint32_t index = used - 1;
    while (index > 0 && slots[index] != before) {
        --index;
    }
    std::memmove(slots + index + 1, slots + index, (used - index) * sizeof(CXMLNode*));
    slots[index] = child;
    SetUsed(body, used + 1);
}

void RemoveChildAt(SElementBody* body, std::uint32_t index) noexcept {
    const std::uint32_t used = ChildrenUsed(body);
    CXMLNode** slots = ChildSlots(body);
    std::memmove(slots + index, slots + index + 1, (used - index - 1) * sizeof(CXMLNode*));
    SetUsed(body, used - 1);
}

void FreeChildArray(SElementBody* body) noexcept {
    if (HasFlag(body, BODY_HEAP_CHILDREN)) {
        const SHeapChildren& heap = body->m_Children.m_Heap;
        MemoryOf(body).FreePlain(heap.m_pSlots, heap.m_nCapacity * sizeof(CXMLNode*));
    }
}

}  // namespace norvask
