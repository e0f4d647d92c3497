// Internal. The arrays that nodes return to clients: pointers, terminated by a NULL entry.
//
//   slots := entry* NULL unused*
//   used:     the entries and the NULL
//   capacity: all slots; doubled from a first capacity when a further entry would not fit, never
//   less
//
// Children, attributes and query results are such arrays. Who keeps them keeps `used` and the
// capacity too.
#ifndef NORVASK_TREE_SLOTS_H
#define NORVASK_TREE_SLOTS_H

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>

#include "tree/memory/arena.h"

namespace norvask {

const std::uint32_t LARGEST_CAPACITY = 1U << 31;

// The capacity for `count` entries in an array that has this one. Throws std::bad_alloc.
inline std::uint32_t CapacityFor(std::uint32_t capacity, std::size_t count) {
    while (capacity <= count) {
        if (capacity == LARGEST_CAPACITY) {
            throw std::bad_alloc();
        }
        capacity *= 2;
    }
    return capacity;
}

template <typename T>
T** NewSlots(CArena& arena, std::uint32_t capacity) {
    return static_cast<T**>(arena.AllocatePlain(capacity * sizeof(T*)));
}
template <typename T>
void FreeSlots(CArena& arena, T** slots, std::uint32_t capacity) noexcept {
    arena.FreePlain(slots, capacity * sizeof(T*));
}

template <typename T>
void MoveSlots(T** to, T* const* from, std::uint32_t count) noexcept {
    std::memmove(to, from, count * sizeof(T*));
}

// Appends an entry, for which there is a slot.
template <typename T>
void PutSlot(T** slots, std::uint32_t& used, T* entry) noexcept {
    slots[used - 1] = entry;
    slots[used] = nullptr;
    ++used;
}

// Takes an entry out; those behind it move up.
template <typename T>
void RemoveSlot(T** slots, std::uint32_t& used, std::uint32_t index) noexcept {
    MoveSlots(slots + index, slots + index + 1, used - index - 1);
    --used;
}

// Where an entry is; the place of the NULL when it is not there. The search goes on from both
// sides, since entries are mostly added and removed at one of them.
template <typename T>
std::uint32_t FindSlot(T* const* slots, std::uint32_t used, const T* entry) noexcept {
    std::uint32_t first = 0;
    std::uint32_t last = used - 1;
    while (first < last) {
        if (slots[first] == entry) {
            return first;
        }
        ++first;
        if (slots[last - 1] == entry) {
            return last - 1;
        }
        --last;
    }
    return used - 1;
}

}  // namespace norvask

#endif
