// Room in child arrays: behind the children, where most are added, and in front of long ones.
#include "tree/child_array.h"

#include <cstring>
#include <new>

namespace norvask {
namespace {

// From this length on it matters which side is moved.
const std::uint32_t LONG_FROM = 64;

// How many of the slots may be left when room on one side is made by moving the children rather
// than by doubling the capacity: with fewer, they would be moved too often.
const std::uint32_t MOVE_SHARE = 4;

void SetFront(SChildArray& array, std::uint32_t front) noexcept {
    array.shape = (array.shape & ((1U << SHAPE_FRONT_SHIFT) - 1)) | front << SHAPE_FRONT_SHIFT;
}

CXMLNode** BlockOf(const SChildArray& array) noexcept { return array.slots - ArrayFront(array); }

// A client may go on using a pointer to the array while it removes children, though it must not: at
// the beginning of the block it goes on seeing the first child, elsewhere in front the end, and
// never a child that is gone.
void ShowFirst(const SChildArray& array) noexcept { BlockOf(array)[0] = array.slots[0]; }

// The first slot of the array becomes one in front of it.
void PassFirst(SChildArray& array) noexcept {
    array.slots[0] = nullptr;
    ++array.slots;
    SetFront(array, ArrayFront(array) + 1);
    --array.used;
    ShowFirst(array);
}

std::uint32_t LogarithmOf(std::uint32_t capacity) noexcept {
    return static_cast<std::uint32_t>(__builtin_ctz(capacity));
}

void SetCapacity(SElementBody* body, std::uint32_t capacity, std::uint32_t front) {
    CXMLNode** const grown = NewSlots<CXMLNode>(TreeOf(body).Arena(), capacity);
    const std::uint32_t used = ChildrenUsed(body);
    if (used == 1) {
        grown[front] = nullptr;
    } else {
        MoveSlots(grown + front, ChildSlots(body), used);
    }
    FreeChildArray(body);
    body->children.many = {grown + front, used, LogarithmOf(capacity)};
    SetFront(body->children.many, front);
    SetFlag(body, BODY_OUTGROWN);
}

// Moves the children within their block.
void MoveFront(SChildArray& array, std::uint32_t front) noexcept {
    CXMLNode** const moved = BlockOf(array) + front;
    MoveSlots(moved, array.slots, array.used);
    array.slots = moved;
    SetFront(array, front);
}

// Whether a child at this index is put by moving those in front of it.
bool IsNearFront(std::uint32_t used, std::uint32_t index) noexcept {
    return used > LONG_FROM && index < used / 2;
}

// Half of the free slots, as far as they can be counted.
std::uint32_t HalfFree(std::uint32_t capacity, std::uint32_t used) noexcept {
    const std::uint32_t half = (capacity - used + 1) / 2;
    return half < LARGEST_FRONT ? half : LARGEST_FRONT;
}

}  // namespace

void ReserveChildren(SElementBody* body, std::size_t count) {
    const std::uint32_t capacity = CapacityFor(ChildCapacity(body), count);
    if (capacity != ChildCapacity(body)) {
        SetCapacity(body, capacity, 0);
    }
}

void ReserveChildSlowly(SElementBody* body, std::uint32_t index) {
    const std::uint32_t used = ChildrenUsed(body);
    const std::uint32_t capacity = ChildCapacity(body);
    const bool inFront = IsNearFront(used, index);
    if (HasFlag(body, BODY_OUTGROWN)) {
        SChildArray& array = body->children.many;
        const std::uint32_t front = ArrayFront(array);
        if (inFront ? front != 0 : front + used != capacity) {
            return;
        }
        if (capacity - used >= capacity / MOVE_SHARE) {
            MoveFront(array, inFront ? HalfFree(capacity, used) : 0);
            return;
        }
    } else if (used != capacity) {
        return;
    }
    const std::uint32_t grown = CapacityFor(capacity, capacity);
    SetCapacity(body, grown, inFront ? HalfFree(grown, used) : 0);
}

void PutChild(SElementBody* body, std::uint32_t index, CXMLNode* child) noexcept {
    const std::uint32_t used = ChildrenUsed(body);
    if (HasFlag(body, BODY_OUTGROWN)) {
        SChildArray& array = body->children.many;
        ++array.used;
        if (IsNearFront(used, index)) {
            --array.slots;
            SetFront(array, ArrayFront(array) - 1);
            MoveSlots(array.slots, array.slots + 1, index);
            array.slots[index] = child;
            ShowFirst(array);
            return;
        }
    }
    CXMLNode** const slots = ChildSlots(body);
    MoveSlots(slots + index + 1, slots + index, used - index);
    slots[index] = child;
}

void RemoveChild(SElementBody* body, std::uint32_t index) noexcept {
    std::uint32_t used = ChildrenUsed(body);
    if (HasFlag(body, BODY_OUTGROWN)) {
        SChildArray& array = body->children.many;
        if (IsNearFront(used, index) && ArrayFront(array) != LARGEST_FRONT) {
            MoveSlots(array.slots + 1, array.slots, index);
            PassFirst(array);
        } else {
            RemoveSlot(array.slots, array.used, index);
            ShowFirst(array);
        }
    } else {
        RemoveSlot(body->children.few, used, index);
    }
}

CXMLNode* TakeFirstChild(SElementBody* body) noexcept {
    CXMLNode* const first = ChildSlots(body)[0];
    if (first != nullptr) {
        SChildArray& array = body->children.many;
        if (HasFlag(body, BODY_OUTGROWN) && ArrayFront(array) != LARGEST_FRONT) {
            PassFirst(array);
        } else {
            RemoveChild(body, 0);
        }
    }
    return first;
}

void FreeChildArray(SElementBody* body) noexcept {
    if (HasFlag(body, BODY_OUTGROWN)) {
        const SChildArray& array = body->children.many;
        FreeSlots(TreeOf(body).Arena(), BlockOf(array), ArrayCapacity(array));
    }
}

}  // namespace norvask
