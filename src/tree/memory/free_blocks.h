// Internal. CFreeBlocks: the freed blocks of an arena, in lists by their size.
//
//   class := size / 8                    below 512 bytes: one size each
//          | 64 + (size - 512) / 128     from there on: all sizes up to that of the next class
//          | 76                          2048 bytes and more
//
// A block of a class is at least as large as a request of that class (CArena rounds requests). A
// free block has 16 bytes at least, so that it can tell its size and, if that is known, where its
// page begins; what is cut off a block must have them too.
#ifndef NORVASK_TREE_MEMORY_FREE_BLOCKS_H
#define NORVASK_TREE_MEMORY_FREE_BLOCKS_H

#include <cstddef>
#include <cstdint>

#include "tree/memory/page.h"

namespace norvask {

struct SFreeBlock {
    SFreeBlock* next;
    std::uint32_t bytes;
    std::uint16_t distance;  // to the page; 0 when that is not known
};
static_assert(sizeof(SFreeBlock) <= SMALLEST_BLOCK, "a free block tells of itself in itself");

// Reads and writes what a free block tells of itself, which is poisoned at all other times.
class COpenBlock {
public:
    explicit COpenBlock(void* block) noexcept : m_pBlock(static_cast<SFreeBlock*>(block)) {
        UnpoisonMemory(m_pBlock, sizeof(SFreeBlock));
    }
    COpenBlock(const COpenBlock&) = delete;
    COpenBlock& operator=(const COpenBlock&) = delete;
    ~COpenBlock() { PoisonMemory(m_pBlock, sizeof(SFreeBlock)); }

    SFreeBlock* operator->() const noexcept { return m_pBlock; }

private:
    SFreeBlock* const m_pBlock;
};

class CFreeBlocks {
public:
    static const std::size_t BLOCK_UNIT = 8;
    static const std::size_t LARGER_FROM = 512;
    static const std::size_t LARGER_UNIT = 128;
    static const std::size_t LARGEST = 2048;

    static std::size_t ClassOf(std::size_t bytes) noexcept {
        if (bytes <= LARGER_FROM) {
            return bytes / BLOCK_UNIT;
        }
        const std::size_t larger = (bytes - LARGER_FROM) / LARGER_UNIT;
        return LARGER_CLASS +
               (larger < CLASSES - LARGER_CLASS ? larger : CLASSES - 1 - LARGER_CLASS);
    }

    // Whether there is a block of the class of this request.
    bool Has(std::size_t bytes) const noexcept { return m_pFirst[ClassOf(bytes)] != nullptr; }

    // Adds a block of at least SMALLEST_BLOCK bytes. `page` is NULL when it is not known.
    void Put(void* block, std::size_t bytes, const SPage* page) noexcept;

    // Takes a block for a request: one of its class, or with `larger` of any class from there on.
    // NULL when there is none that fits. The block is still poisoned and may be larger than the
    // request, then by SMALLEST_BLOCK at least.
    SFreeBlock* Take(std::size_t bytes, bool larger) noexcept;

    // Calls `visit` with each block, which stays.
    template <typename Visit>
    void ForEach(Visit visit) const {
        for (SFreeBlock* block : m_pFirst) {
            for (; block != nullptr; block = COpenBlock(block)->next) {
                visit(block);
            }
        }
    }

    // The same, and is empty.
    template <typename Visit>
    void TakeAll(Visit visit) noexcept {
        for (SFreeBlock*& first : m_pFirst) {
            while (SFreeBlock* block = first) {
                first = COpenBlock(block)->next;
                visit(block);
            }
        }
        m_nFilled[0] = 0;
        m_nFilled[1] = 0;
    }

private:
    static const std::size_t LARGER_CLASS = LARGER_FROM / BLOCK_UNIT;
    static const std::size_t CLASSES = LARGER_CLASS + (LARGEST - LARGER_FROM) / LARGER_UNIT + 1;
    static const std::size_t WORD = 64;

    std::size_t NextFilled(std::size_t from) const noexcept;
    SFreeBlock* TakeFirst(std::size_t of, std::size_t bytes) noexcept;

    SFreeBlock* m_pFirst[CLASSES] = {};
    std::uint64_t m_nFilled[2] = {};  // a bit for each class that may have blocks
};

}  // namespace norvask

#endif
