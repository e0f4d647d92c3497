#include "tree/tree_memory.h"

#include <algorithm>
#include <new>

#if defined(NORVASK_POISONS_MEMORY)
#include <sanitizer/asan_interface.h>
#endif

namespace norvask {
namespace {

// The first page is small, since many documents are, and stays below the size from which the general allocator
// starts to tidy up its free blocks.
const std::size_t FIRST_PAGE = 960;
const std::size_t SECOND_PAGE = 4096;
const std::size_t LARGEST_PAGE = 32768;

const std::size_t HEADER = sizeof(SPage);
static_assert(HEADER % 8 == 0, "blocks are aligned to eight bytes");

char* Content(SPage* page) noexcept { return reinterpret_cast<char*>(page) + HEADER; }

}  // namespace

#if defined(NORVASK_POISONS_MEMORY)
void PoisonMemory(void* memory, std::size_t bytes) noexcept {
    ASAN_POISON_MEMORY_REGION(memory, bytes);
}
void UnpoisonMemory(void* memory, std::size_t bytes) noexcept {
    ASAN_UNPOISON_MEMORY_REGION(memory, bytes);
}
#endif

template <typename Block>
Block* CTreeMemory::Take(SFreeBlock*& list, std::size_t bytes) noexcept {
    static_assert(sizeof(Block) <= SMALLEST_TAGGED, "a free block fits into the smallest one");
    Block* block = static_cast<Block*>(list);
    UnpoisonMemory(block, bytes);
    list = block->m_pNext;
    return block;
}

SPage* NewPage(std::size_t bytes) {
    SPage* page = static_cast<SPage*>(::operator new(HEADER + bytes));
    new (page) SPage{nullptr, nullptr, nullptr, bytes, false, {1}};
    return page;
}

void HoldPage(SPage* page) noexcept { page->m_nHolders.fetch_add(1, std::memory_order_relaxed); }

void ReleasePage(SPage* page) noexcept {
    if (page->m_nHolders.fetch_sub(1, std::memory_order_acq_rel) == 1) {
        UnpoisonMemory(Content(page), page->m_nBytes);
        ::operator delete(page);
    }
}

CTreeMemory* CTreeMemory::Create() {
    SPage* page = NewPage(FIRST_PAGE - HEADER);
    return new (Content(page)) CTreeMemory(page);
}

CTreeMemory::CTreeMemory(SPage* firstPage) noexcept
    : m_nOwners(1),
      m_nEvents(0),
      m_pFirst(firstPage),
      m_pLast(firstPage),
      m_pCurrent(firstPage),
      m_pCursor(Content(firstPage) + PlainSize(sizeof(CTreeMemory))),
      m_pEnd(Content(firstPage) + firstPage->m_nBytes),
      m_nNextPage(SECOND_PAGE),
      m_ppFreeTagged(nullptr),
      m_ppFreePlain(nullptr) {
    firstPage->m_pTree = this;
    PoisonMemory(m_pCursor, static_cast<std::size_t>(m_pEnd - m_pCursor));
}

void CTreeMemory::ReleaseOwner() noexcept {
    if (--m_nOwners != 0) {
        return;
    }
    // The oldest page first: freed one behind the other, pages become one large block for the general
    // allocator, which then gives it back to the system once.
    SPage* page = m_pFirst;
    this->~CTreeMemory();
    while (page != nullptr) {
        SPage* next = page->m_pNext;
        ReleasePage(page);
        page = next;
    }
}

SPage* CTreeMemory::AddPage(std::size_t bytes) {
    SPage* page = NewPage(bytes);
    page->m_pTree = this;
    page->m_pPrevious = m_pLast;
    m_pLast->m_pNext = page;
    m_pLast = page;
    return page;
}

void* CTreeMemory::AllocateFromNewPage(std::size_t bytes, SPage*& page) {
    if (bytes > LARGEST_PLAIN) {
        page = AddPage(bytes);
        page->m_bSingle = true;
        return Content(page);
    }
    m_pCurrent = AddPage(m_nNextPage - HEADER);
    if (m_nNextPage < LARGEST_PAGE) {
        m_nNextPage *= 2;
    }
    m_pCursor = Content(m_pCurrent);
    m_pEnd = m_pCursor + m_pCurrent->m_nBytes;
    PoisonMemory(m_pCursor, m_pCurrent->m_nBytes);
    page = m_pCurrent;
    return TakeFromCursor(bytes);
}

void* CTreeMemory::AllocateTaggedSlowly(std::size_t bytes, SPage*& page) {
    if (bytes <= LARGEST_TAGGED && HasFreeTagged(bytes)) {
        SFreeTagged* block = Take<SFreeTagged>(m_ppFreeTagged[ClassOf(bytes)], bytes);
        page = block->m_pPage;
        return block;
    }
    return AllocateFromNewPage(bytes, page);
}

void* CTreeMemory::AllocatePlainSlowly(std::size_t bytes) {
    if (bytes <= LARGEST_PLAIN && HasFreePlain(bytes)) {
        return Take<SFreeBlock>(m_ppFreePlain[ClassOf(bytes)], bytes);
    }
    SPage* page = nullptr;
    return AllocateFromNewPage(bytes, page);
}

// Lists come with the first block that is freed: most trees are built, read and dropped. Without memory for
// them, freed blocks lie idle until the tree ends.
bool CTreeMemory::MakeFreeLists(SFreeBlock**& lists, std::size_t classes) noexcept {
    if (lists == nullptr) {
        try {
            void* content = Content(AddPage(classes * sizeof(SFreeBlock*)));
            lists = static_cast<SFreeBlock**>(content);
            std::fill_n(lists, classes, nullptr);
        } catch (const std::bad_alloc&) {
            return false;
        }
    }
    return true;
}

void CTreeMemory::FreeTagged(void* block, std::size_t bytes, SPage* page) noexcept {
    if (page->m_bSingle) {
        // Never the first page, so there is one before.
        page->m_pPrevious->m_pNext = page->m_pNext;
        (page->m_pNext == nullptr ? m_pLast : page->m_pNext->m_pPrevious) = page->m_pPrevious;
        ReleasePage(page);
        return;
    }
    bytes = TaggedSize(bytes);
    if (MakeFreeLists(m_ppFreeTagged, TAGGED_CLASSES)) {
        SFreeBlock*& list = m_ppFreeTagged[ClassOf(bytes)];
        SFreeTagged* freed = new (block) SFreeTagged;
        freed->m_pNext = list;
        freed->m_pPage = page;
        list = freed;
        PoisonMemory(block, bytes);
    }
}

void CTreeMemory::FreePlain(void* block, std::size_t bytes) noexcept {
    bytes = PlainSize(bytes);
    if (bytes > LARGEST_PLAIN) {
        FreeTagged(block, bytes, reinterpret_cast<SPage*>(static_cast<char*>(block) - HEADER));
        return;
    }
    if (MakeFreeLists(m_ppFreePlain, PLAIN_CLASSES)) {
        SFreeBlock*& list = m_ppFreePlain[ClassOf(bytes)];
        SFreeBlock* freed = new (block) SFreeBlock;
        freed->m_pNext = list;
        list = freed;
        PoisonMemory(block, bytes);
    }
}

}  // namespace norvask
