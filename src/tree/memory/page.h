// Internal. Pages: the memory of trees, and of strings outside of any tree, in pieces that are
// counted.
//
//   page := header block*
//
// A tree retains each of its pages, and every string that is shown outside of the tree retains the
// page that it lies in. Whoever releases a page last frees it, on whatever thread. So that the tree
// knows which of its strings are shown, a page counts that for each of them from the first one on.
// Everything else about a page of a tree belongs to the thread of the tree.
//
// A block that must know its page holds a distance: to the header of the page, in units of
// four bytes.
//
// Under AddressSanitizer, memory that is not allocated is poisoned.
#ifndef NORVASK_TREE_MEMORY_PAGE_H
#define NORVASK_TREE_MEMORY_PAGE_H

#include <atomic>
#include <cstddef>
#include <cstdint>

namespace norvask {

class CTree;

struct SPage {
    CTree* tree;  // NULL for a page outside of any tree
    SPage* previous;
    SPage* next;
    std::size_t bytes;     // behind the header
    bool isSingle;         // the page of one block
    std::uint16_t unused;  // bytes at the end that no block was given
    std::atomic<std::uint32_t> retained;
    // How often each block was retained that begins in a piece of SMALLEST_BLOCK bytes; NULL when
    // none was, or when there was no memory for the counts.
    std::atomic<std::uint32_t>* counts;
};
static_assert(sizeof(SPage) % 8 == 0, "blocks are aligned to eight bytes");

// No block is smaller, so no two of them begin in one piece of so many bytes.
const std::size_t SMALLEST_BLOCK = 16;

inline char* ContentOf(SPage* page) noexcept { return reinterpret_cast<char*>(page + 1); }

const std::size_t DISTANCE_UNIT = 4;

inline SPage* PageAt(const void* block, std::uint16_t distance) noexcept {
    const std::uintptr_t address = reinterpret_cast<std::uintptr_t>(block);
    return reinterpret_cast<SPage*>(address - distance * DISTANCE_UNIT);
}
inline std::uint16_t DistanceTo(const SPage* page, const void* block) noexcept {
    const char* const from = reinterpret_cast<const char*>(page);
    return static_cast<std::uint16_t>((static_cast<const char*>(block) - from) /
                                      static_cast<std::ptrdiff_t>(DISTANCE_UNIT));
}

// A page outside of any tree, with room for `bytes` bytes; the caller has retained it. Throws
// std::bad_alloc.
SPage* NewPage(std::size_t bytes);
void RetainPage(SPage* page) noexcept;
void ReleasePage(SPage* page) noexcept;

// Begins to count what is retained of a page of a tree, if that can be: only while nobody else
// retains it, who could miss the counts, and not for the page of one block, which needs none. On
// the thread of the tree.
void CountBlocks(SPage* page) noexcept;

// Retain and release a page for a block of it, on whatever thread.
void RetainBlock(SPage* page, const void* block) noexcept;
void ReleaseBlock(SPage* page, const void* block) noexcept;
// Whether a block is retained. One of a page without counts is, if anything of that page is.
bool IsBlockRetained(SPage* page, const void* block) noexcept;

// Whether nobody but the tree retains the page, or nobody but the one string outside of any tree.
inline bool IsRetainedOnce(const SPage* page) noexcept {
    return page->retained.load(std::memory_order_acquire) == 1;
}

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define NORVASK_POISONS_MEMORY
#endif
#elif defined(__SANITIZE_ADDRESS__)
#define NORVASK_POISONS_MEMORY
#endif
#if defined(NORVASK_POISONS_MEMORY)
void PoisonMemory(void* memory, std::size_t bytes) noexcept;
void UnpoisonMemory(void* memory, std::size_t bytes) noexcept;
#else
inline void PoisonMemory(void*, std::size_t) noexcept {}
inline void UnpoisonMemory(void*, std::size_t) noexcept {}
#endif

}  // namespace norvask

#endif
