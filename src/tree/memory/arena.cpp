// Allocating and freeing where the cursor does not serve: free blocks, their merging, new pages.
#include "tree/memory/arena.h"

#include <algorithm>
#include <functional>
#include <new>
#include <vector>

namespace norvask {
namespace {

const std::size_t SECOND_PAGE = 4096;
const std::size_t LARGEST_PAGE = 32768;

// Merging looks at every free block, so it waits until much was freed: a quarter of what the pages
// hold.
const std::size_t MERGE_FROM = 8192;
const std::size_t MERGE_SHARE = 4;

// A rest of a block from this size on is allocated from with the cursor.
const std::size_t CURSOR_FROM = 1024;

}  // namespace

CArena::CArena(CTree* tree, SPage* first, std::size_t used) noexcept
    : m_pTree(tree),
      m_pFirst(first),
      m_pLast(first),
      m_pCurrent(first),
      m_pCursor(ContentOf(first) + RoundUp(used, CFreeBlocks::BLOCK_UNIT)),
      m_pEnd(ContentOf(first) + first->bytes),
      m_nNextPage(SECOND_PAGE),
      m_nShared(first->bytes) {
    first->tree = tree;
    PoisonMemory(m_pCursor, CursorRoom());
}

// The oldest page first: freed one behind the other, pages become one large block for the general
// allocator, which then gives it back to the system once.
void CArena::ReleasePages(SPage* first) noexcept {
    while (first != nullptr) {
        SPage* const next = first->next;
        ReleasePage(first);
        first = next;
    }
}

SPage* CArena::AddPage(std::size_t bytes) {
    SPage* const page = NewPage(bytes);
    page->tree = m_pTree;
    page->previous = m_pLast;
    m_pLast->next = page;
    m_pLast = page;
    return page;
}

// Takes a page out of the arena. There is always another: the one in which the tree lies.
void CArena::RemovePage(SPage* page) noexcept {
    (page->previous == nullptr ? m_pFirst : page->previous->next) = page->next;
    (page->next == nullptr ? m_pLast : page->next->previous) = page->previous;
    ReleasePage(page);
}

// What is left in front of the old end of the cursor becomes a free block, if it is large enough
// and anybody looks for free blocks.
void CArena::MoveCursor(SPage* page, char* from, std::size_t bytes) noexcept {
    if (m_pFree != nullptr && CursorRoom() >= SMALLEST_BLOCK) {
        m_pFree->paged.Put(m_pCursor, CursorRoom(), m_pCurrent);
    } else if (CursorRoom() != 0) {
        m_pCurrent->unused = static_cast<std::uint16_t>(m_pCurrent->unused + CursorRoom());
    }
    m_pCurrent = page;
    m_pCursor = from;
    m_pEnd = from + bytes;
    PoisonMemory(m_pCursor, bytes);
}

void* CArena::AllocateSingle(std::size_t bytes, SPage*& page) {
    page = AddPage(bytes);
    page->isSingle = true;
    return ContentOf(page);
}

void* CArena::AllocateFromNewPage(std::size_t bytes, SPage*& page) {
    page = AddPage(m_nNextPage - sizeof(SPage));
    m_nShared += page->bytes;
    if (m_nNextPage < LARGEST_PAGE) {
        m_nNextPage *= 2;
    }
    MoveCursor(page, ContentOf(page), page->bytes);
    return TakeFromCursor(bytes);
}

// What is left of a larger block stays free, or is where the cursor goes on.
void* CArena::TakeFree(CFreeBlocks& blocks, std::size_t bytes, bool larger, SPage*& page) noexcept {
    SFreeBlock* const block = blocks.Take(bytes, larger);
    if (block == nullptr) {
        return nullptr;
    }
    std::size_t rest = 0;
    {
        const COpenBlock open(block);
        rest = open->bytes - bytes;
        page = open->distance == 0 ? nullptr : PageAt(block, open->distance);
    }
    char* const behind = reinterpret_cast<char*>(block) + bytes;
    if (rest >= CURSOR_FROM && rest > CursorRoom() && page != nullptr) {
        MoveCursor(page, behind, rest);
    } else if (rest != 0) {
        blocks.Put(behind, rest, page);
    }
    UnpoisonMemory(block, bytes);
    return block;
}

// Any free block that serves. A plain request may also have a block whose page is known.
void* CArena::TakeAnyFree(std::size_t bytes, bool paged, SPage*& page) noexcept {
    if (m_pFree == nullptr) {
        return nullptr;
    }
    void* block = paged ? nullptr : TakeFree(m_pFree->plain, bytes, true, page);
    return block != nullptr ? block : TakeFree(m_pFree->paged, bytes, true, page);
}

void* CArena::AllocatePagedSlowly(std::size_t bytes, SPage*& page) {
    if (bytes > LARGEST_PAGED) {
        return AllocateSingle(bytes, page);
    }
    if (m_pFree != nullptr) {
        if (void* block = TakeFree(m_pFree->paged, bytes, false, page)) {
            return block;
        }
    }
    if (FitsCursor(bytes, LARGEST_PAGED)) {
        page = m_pCurrent;
        return TakeFromCursor(bytes);
    }
    if (void* block = TakeAnyFree(bytes, true, page)) {
        return block;
    }
    if (IsMergeDue()) {
        MergeFree();
        if (void* block = TakeAnyFree(bytes, true, page)) {
            return block;
        }
    }
    return bytes > LARGEST_PLAIN ? AllocateSingle(bytes, page) : AllocateFromNewPage(bytes, page);
}

void* CArena::AllocatePlainSlowly(std::size_t bytes) {
    SPage* page = nullptr;
    if (bytes > LARGEST_PLAIN) {
        return AllocateSingle(bytes, page);
    }
    if (m_pFree != nullptr) {
        if (void* block = TakeFree(m_pFree->plain, bytes, false, page)) {
            return block;
        }
    }
    if (FitsCursor(bytes, LARGEST_PLAIN)) {
        return TakeFromCursor(bytes);
    }
    if (void* block = TakeAnyFree(bytes, false, page)) {
        return block;
    }
    if (IsMergeDue()) {
        MergeFree();
        if (void* block = TakeAnyFree(bytes, false, page)) {
            return block;
        }
    }
    return AllocateFromNewPage(bytes, page);
}

// Without memory for the lists, freed blocks lie idle until the tree goes.
bool CArena::KeepsFree() noexcept {
    if (m_pFree == nullptr) {
        m_pFree.reset(new (std::nothrow) SFree());
    }
    return m_pFree != nullptr;
}

void CArena::FreePaged(void* block, std::size_t bytes, SPage* page) noexcept {
    if (page->isSingle) {
        RemovePage(page);
        return;
    }
    bytes = PagedSize(bytes);
    if (KeepsFree()) {
        m_pFree->paged.Put(block, bytes, page);
        m_pFree->bytesSince += bytes;
    }
}

void CArena::FreePlain(void* block, std::size_t bytes) noexcept {
    bytes = PlainSize(bytes);
    if (bytes > LARGEST_PLAIN) {
        RemovePage(static_cast<SPage*>(block) - 1);
        return;
    }
    if (KeepsFree()) {
        m_pFree->plain.Put(block, bytes, nullptr);
        m_pFree->bytesSince += bytes;
    }
}

bool CArena::IsMergeDue() const noexcept {
    return m_pFree != nullptr &&
           m_pFree->bytesSince >= std::max(MERGE_FROM, m_nShared / MERGE_SHARE);
}

// Free blocks of a page, in the order of their addresses, become free again as what is between
// blocks in use.
void CArena::PutMerged(FreeBlocks::const_iterator first, FreeBlocks::const_iterator last,
                       const SPage* page) noexcept {
    while (first != last) {
        char* const from = reinterpret_cast<char*>(*first);
        char* to = from;
        while (first != last && reinterpret_cast<char*>(*first) == to) {
            to += COpenBlock(*first)->bytes;
            ++first;
        }
        m_pFree->paged.Put(from, static_cast<std::size_t>(to - from), page);
    }
}

// All pages, and all free blocks, which are no longer in their lists, in the order of their
// addresses. Returns false without memory for that, and nothing has changed.
bool CArena::TakeAllFree(std::vector<SPage*>& pages, FreeBlocks& blocks) noexcept {
    try {
        for (SPage* page = m_pFirst; page != nullptr; page = page->next) {
            pages.push_back(page);
        }
        std::size_t count = 0;
        const auto counted = [&count](SFreeBlock*) { ++count; };
        m_pFree->paged.ForEach(counted);
        m_pFree->plain.ForEach(counted);
        blocks.reserve(count);
    } catch (const std::bad_alloc&) {
        return false;
    }
    const auto collect = [&blocks](SFreeBlock* block) { blocks.push_back(block); };
    m_pFree->paged.TakeAll(collect);
    m_pFree->plain.TakeAll(collect);
    std::sort(blocks.begin(), blocks.end(), std::less<>());
    std::sort(pages.begin(), pages.end(), std::less<>());
    return true;
}

// Goes through pages and free blocks together: neighbours become one block, the page of every block
// is known afterwards, and pages without a block in use are released. Only free blocks of the same
// page are merged, so a page is gone through as a whole.
void CArena::MergeFree() noexcept {
    m_pFree->bytesSince = 0;
    MoveCursor(m_pCurrent, m_pEnd, 0);
    std::vector<SPage*> pages;
    FreeBlocks blocks;
    if (!TakeAllFree(pages, blocks)) {
        return;
    }
    auto block = blocks.begin();
    for (SPage* page : pages) {
        char* const end = ContentOf(page) + page->bytes;
        const auto first = block;
        std::size_t bytes = 0;
        for (; block != blocks.end() && reinterpret_cast<char*>(*block) < end; ++block) {
            bytes += COpenBlock(*block)->bytes;
        }
        if (bytes + page->unused != page->bytes || !IsRetainedOnce(page)) {
            PutMerged(first, block, page);
            continue;
        }
        m_nShared -= page->bytes;
        if (page == m_pCurrent) {
            m_pCursor = m_pEnd = nullptr;
            m_pCurrent = nullptr;
        }
        RemovePage(page);
    }
}

}  // namespace norvask
