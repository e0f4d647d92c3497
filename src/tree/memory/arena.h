// Internal. CArena: allocates the blocks of one tree from pages that belong to it.
//
// Building is a matter of moving a cursor, and a whole tree is freed by releasing its pages. A
// block that is freed earlier goes to a list (free_blocks.h) and serves again. When nothing there
// serves and much was freed since, free blocks are merged with their neighbours, and pages without
// a block in use are released, before a new page is made: so a tree that is edited for hours keeps
// less than twice the most that it ever had in use.
//
//   block := paged | plain
//   paged:  nodes and strings; whoever allocates one learns its page and holds the distance
//   plain:  arrays and attributes, of which nobody needs to find the page
//
// Blocks above a limit have a page of their own: plain ones above LARGEST_PLAIN, paged ones above
// LARGEST_PAGED, and paged ones above LARGEST_PLAIN already when the current page has no room for
// them.
#ifndef NORVASK_TREE_MEMORY_ARENA_H
#define NORVASK_TREE_MEMORY_ARENA_H

#include <cstddef>
#include <memory>
#include <vector>

#include "tree/memory/free_blocks.h"
#include "tree/memory/page.h"

namespace norvask {

class CArena {
public:
    // Takes over a page, of which the first `used` bytes are in use as long as the arena.
    CArena(CTree* tree, SPage* first, std::size_t used) noexcept;
    CArena(const CArena&) = delete;
    CArena& operator=(const CArena&) = delete;
    ~CArena() = default;

    // Releases pages that an arena had; `first` is what FirstPage returned. The arena may lie in
    // one of them.
    static void ReleasePages(SPage* first) noexcept;
    SPage* FirstPage() const noexcept { return m_pFirst; }

    // A paged block; `page` is where it lies. Throw std::bad_alloc.
    void* AllocatePaged(std::size_t bytes, SPage*& page) {
        bytes = PagedSize(bytes);
        if (FitsCursor(bytes, LARGEST_PAGED) &&
            (m_pFree == nullptr || !m_pFree->paged.Has(bytes))) {
            page = m_pCurrent;
            return TakeFromCursor(bytes);
        }
        return AllocatePagedSlowly(bytes, page);
    }
    void* AllocatePlain(std::size_t bytes) {
        bytes = PlainSize(bytes);
        if (FitsCursor(bytes, LARGEST_PLAIN) &&
            (m_pFree == nullptr || !m_pFree->plain.Has(bytes))) {
            return TakeFromCursor(bytes);
        }
        return AllocatePlainSlowly(bytes);
    }
    // `bytes` as allocated.
    void FreePaged(void* block, std::size_t bytes, SPage* page) noexcept;
    void FreePlain(void* block, std::size_t bytes) noexcept;

private:
    static const std::size_t LARGEST_PLAIN = CFreeBlocks::LARGER_FROM;
    static const std::size_t LARGEST_PAGED = CFreeBlocks::LARGEST;

    static std::size_t RoundUp(std::size_t bytes, std::size_t unit) noexcept {
        return (bytes + unit - 1) / unit * unit;
    }
    static std::size_t PlainSize(std::size_t bytes) noexcept {
        return bytes <= SMALLEST_BLOCK ? SMALLEST_BLOCK : RoundUp(bytes, CFreeBlocks::BLOCK_UNIT);
    }
    static std::size_t PagedSize(std::size_t bytes) noexcept {
        return bytes <= LARGEST_PLAIN ? PlainSize(bytes) : RoundUp(bytes, CFreeBlocks::LARGER_UNIT);
    }

    // Made when the first block is freed: most trees are built, read and dropped.
    struct SFree {
        CFreeBlocks paged;           // with their pages
        CFreeBlocks plain;           // without
        std::size_t bytesSince = 0;  // freed since blocks were merged
    };

    bool FitsCursor(std::size_t bytes, std::size_t largest) const noexcept {
        return bytes <= largest && bytes <= CursorRoom();
    }
    std::size_t CursorRoom() const noexcept { return static_cast<std::size_t>(m_pEnd - m_pCursor); }
    void* TakeFromCursor(std::size_t bytes) noexcept {
        void* block = m_pCursor;
        m_pCursor += bytes;
        UnpoisonMemory(block, bytes);
        return block;
    }
    void* AllocatePagedSlowly(std::size_t bytes, SPage*& page);
    void* AllocatePlainSlowly(std::size_t bytes);
    void* AllocateSingle(std::size_t bytes, SPage*& page);
    void* AllocateFromNewPage(std::size_t bytes, SPage*& page);
    void* TakeFree(CFreeBlocks& blocks, std::size_t bytes, bool larger, SPage*& page) noexcept;
    void* TakeAnyFree(std::size_t bytes, bool paged, SPage*& page) noexcept;

    SPage* AddPage(std::size_t bytes);
    void RemovePage(SPage* page) noexcept;
    void MoveCursor(SPage* page, char* from, std::size_t bytes) noexcept;
    bool KeepsFree() noexcept;
    bool IsMergeDue() const noexcept;
    using FreeBlocks = std::vector<SFreeBlock*>;
    bool TakeAllFree(std::vector<SPage*>& pages, FreeBlocks& blocks) noexcept;
    void MergeFree() noexcept;
    void PutMerged(FreeBlocks::const_iterator first, FreeBlocks::const_iterator last,
                   const SPage* page) noexcept;

    CTree* const m_pTree;
    SPage* m_pFirst;  // of the pages, in the order in which they came
    SPage* m_pLast;
    SPage* m_pCurrent;  // the one with the cursor
    char* m_pCursor;
    char* m_pEnd;
    std::size_t m_nNextPage;
    std::size_t m_nShared;  // bytes of all pages but the single ones
    std::unique_ptr<SFree> m_pFree;
};

}  // namespace norvask

#endif
