#include "tree/tree_memory.h"

#include <new>

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define NORVASK_POISONS_MEMORY
#endif
#elif defined(__SANITIZE_ADDRESS__)
#define NORVASK_POISONS_MEMORY
#endif
#if defined(NORVASK_POISONS_MEMORY)
#include <sanitizer/asan_interface.h>
#endif

namespace norvask {
namespace {

const std::size_t BLOCK_UNIT = 8;
const std::size_t LARGEST_SMALL_BLOCK = 512;
const std::size_t SIZE_CLASSES = LARGEST_SMALL_BLOCK / BLOCK_UNIT + 1;
const std::size_t FIRST_PAGE = 1024;
const std::size_t LARGEST_PAGE = 32768;

std::size_t RoundUp(std::size_t bytes) noexcept {
    return (bytes + BLOCK_UNIT - 1) / BLOCK_UNIT * BLOCK_UNIT;
}

const std::size_t HEADER = (sizeof(SPage) + BLOCK_UNIT - 1) / BLOCK_UNIT * BLOCK_UNIT;

char* Content(SPage* page) noexcept { return reinterpret_cast<char*>(page) + HEADER; }

#if defined(NORVASK_POISONS_MEMORY)
void Poison(void* memory, std::size_t bytes) noexcept { ASAN_POISON_MEMORY_REGION(memory, bytes); }
void Unpoison(void* memory, std::size_t bytes) noexcept {
    ASAN_UNPOISON_MEMORY_REGION(memory, bytes);
}
#else
void Poison(void*, std::size_t) noexcept {}
void Unpoison(void*, std::size_t) noexcept {}
#endif

// What a free block holds. Tagged blocks keep their page, so they have at least this size.
struct SFreeBlock {
    SFreeBlock* m_pNext;
};
struct SFreeTagged : SFreeBlock {
    SPage* m_pPage;
};

std::size_t TaggedSize(std::size_t bytes) noexcept {
    const std::size_t size = RoundUp(bytes);
    return size < sizeof(SFreeTagged) ? sizeof(SFreeTagged) : size;
}

template <typename Block>
Block* Take(SFreeBlock*& list, std::size_t bytes) noexcept {
    Block* block = static_cast<Block*>(list);
    Unpoison(block, bytes);
    list = block->m_pNext;
    return block;
}

}  // namespace

struct CTreeMemory::SFreeLists {
    SFreeBlock* m_Tagged[SIZE_CLASSES];
    SFreeBlock* m_Plain[SIZE_CLASSES];
};

SPage* NewPage(std::size_t bytes) {
    SPage* page = static_cast<SPage*>(::operator new(HEADER + bytes));
    new (page) SPage{nullptr, nullptr, nullptr, bytes, {1}};
    return page;
}

void HoldPage(SPage* page) noexcept { page->m_nHolders.fetch_add(1, std::memory_order_relaxed); }

void ReleasePage(SPage* page) noexcept {
    if (page->m_nHolders.fetch_sub(1, std::memory_order_acq_rel) == 1) {
        Unpoison(Content(page), page->m_nBytes);
        ::operator delete(page);
    }
}

CTreeMemory* CTreeMemory::Create() {
    SPage* page = NewPage(FIRST_PAGE);
    return new (Content(page)) CTreeMemory(page);
}

CTreeMemory::CTreeMemory(SPage* firstPage) noexcept
    : m_nOwners(1),
      m_nEvents(0),
      m_pPages(firstPage),
      m_pCurrent(firstPage),
      m_pCursor(Content(firstPage) + RoundUp(sizeof(CTreeMemory))),
      m_pEnd(Content(firstPage) + firstPage->m_nBytes),
      m_nNextPage(2 * FIRST_PAGE),
      m_pFreeLists(nullptr) {
    firstPage->m_pTree = this;
    Poison(m_pCursor, static_cast<std::size_t>(m_pEnd - m_pCursor));
}

void CTreeMemory::ReleaseOwner() noexcept {
    if (--m_nOwners != 0) {
        return;
    }
    SPage* page = m_pPages;
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
    page->m_pNext = m_pPages;
    if (m_pPages != nullptr) {
        m_pPages->m_pPrevious = page;
    }
    m_pPages = page;
    return page;
}

void* CTreeMemory::AllocateFromNewPage(std::size_t bytes, SPage*& page) {
    if (bytes > LARGEST_SMALL_BLOCK) {
        page = AddPage(bytes);
        return Content(page);
    }
    m_pCurrent = AddPage(m_nNextPage - HEADER);
    if (m_nNextPage < LARGEST_PAGE) {
        m_nNextPage *= 2;
    }
    m_pCursor = Content(m_pCurrent);
    m_pEnd = m_pCursor + m_pCurrent->m_nBytes;
    Poison(m_pCursor, m_pCurrent->m_nBytes);
    page = m_pCurrent;
    void* block = m_pCursor;
    m_pCursor += bytes;
    Unpoison(block, bytes);
    return block;
}

void* CTreeMemory::AllocateTagged(std::size_t bytes, SPage*& page) {
    bytes = TaggedSize(bytes);
    if (bytes <= LARGEST_SMALL_BLOCK) {
        SFreeBlock** list =
            m_pFreeLists == nullptr ? nullptr : &m_pFreeLists->m_Tagged[bytes / BLOCK_UNIT];
        if (list != nullptr && *list != nullptr) {
            SFreeTagged* block = Take<SFreeTagged>(*list, bytes);
            page = block->m_pPage;
            return block;
        }
        if (static_cast<std::size_t>(m_pEnd - m_pCursor) >= bytes) {
            void* block = m_pCursor;
            m_pCursor += bytes;
            Unpoison(block, bytes);
            page = m_pCurrent;
            return block;
        }
    }
    return AllocateFromNewPage(bytes, page);
}

void* CTreeMemory::AllocatePlain(std::size_t bytes) {
    bytes = RoundUp(bytes);
    if (bytes <= LARGEST_SMALL_BLOCK) {
        SFreeBlock** list =
            m_pFreeLists == nullptr ? nullptr : &m_pFreeLists->m_Plain[bytes / BLOCK_UNIT];
        if (list != nullptr && *list != nullptr) {
            return Take<SFreeBlock>(*list, bytes);
        }
        if (static_cast<std::size_t>(m_pEnd - m_pCursor) >= bytes) {
            void* block = m_pCursor;
            m_pCursor += bytes;
            Unpoison(block, bytes);
            return block;
        }
    }
    SPage* page = nullptr;
    return AllocateFromNewPage(bytes, page);
}

// The lists come with the first block that is freed: most trees are built, read and dropped. Without memory
// for them, freed blocks lie idle until the tree ends.
CTreeMemory::SFreeLists* CTreeMemory::FreeLists() noexcept {
    if (m_pFreeLists == nullptr) {
        try {
            m_pFreeLists = new (AllocatePlain(sizeof(SFreeLists))) SFreeLists();
        } catch (const std::bad_alloc&) {
            return nullptr;
        }
    }
    return m_pFreeLists;
}

void CTreeMemory::FreeTagged(void* block, std::size_t bytes, SPage* page) noexcept {
    bytes = TaggedSize(bytes);
    if (bytes > LARGEST_SMALL_BLOCK) {
        (page->m_pPrevious == nullptr ? m_pPages : page->m_pPrevious->m_pNext) = page->m_pNext;
        if (page->m_pNext != nullptr) {
            page->m_pNext->m_pPrevious = page->m_pPrevious;
        }
        ReleasePage(page);
        return;
    }
    if (SFreeLists* lists = FreeLists()) {
        SFreeBlock*& list = lists->m_Tagged[bytes / BLOCK_UNIT];
        SFreeTagged* freed = new (block) SFreeTagged;
        freed->m_pNext = list;
        freed->m_pPage = page;
        list = freed;
        Poison(block, bytes);
    }
}

void CTreeMemory::FreePlain(void* block, std::size_t bytes) noexcept {
    bytes = RoundUp(bytes);
    if (bytes > LARGEST_SMALL_BLOCK) {
        FreeTagged(block, bytes, reinterpret_cast<SPage*>(static_cast<char*>(block) - HEADER));
        return;
    }
    if (SFreeLists* lists = FreeLists()) {
        SFreeBlock*& list = lists->m_Plain[bytes / BLOCK_UNIT];
        SFreeBlock* freed = new (block) SFreeBlock;
        freed->m_pNext = list;
        list = freed;
        Poison(block, bytes);
    }
}

}  // namespace norvask
