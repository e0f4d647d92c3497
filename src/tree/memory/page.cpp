// Pages come from the general allocator, each with its content in one block.
#include "tree/memory/page.h"

#include <new>

#if defined(NORVASK_POISONS_MEMORY)
#include <sanitizer/asan_interface.h>
#endif

namespace norvask {
namespace {

std::atomic<std::uint32_t>& CountOf(SPage* page, const void* block) noexcept {
    const std::ptrdiff_t distance = static_cast<const char*>(block) - ContentOf(page);
    return page->counts[static_cast<std::size_t>(distance) / SMALLEST_BLOCK];
}

}  // namespace

#if defined(NORVASK_POISONS_MEMORY)
void PoisonMemory(void* memory, std::size_t bytes) noexcept {
    ASAN_POISON_MEMORY_REGION(memory, bytes);
}
void UnpoisonMemory(void* memory, std::size_t bytes) noexcept {
    ASAN_UNPOISON_MEMORY_REGION(memory, bytes);
}
#endif

SPage* NewPage(std::size_t bytes) {
    SPage* page = static_cast<SPage*>(::operator new(sizeof(SPage) + bytes));
    return new (page) SPage{nullptr, nullptr, nullptr, bytes, false, 0, {1}, nullptr};
}

void RetainPage(SPage* page) noexcept { page->retained.fetch_add(1, std::memory_order_relaxed); }

void ReleasePage(SPage* page) noexcept {
    if (page->retained.fetch_sub(1, std::memory_order_acq_rel) == 1) {
        delete[] page->counts;
        UnpoisonMemory(ContentOf(page), page->bytes);
        ::operator delete(page);
    }
}

void CountBlocks(SPage* page) noexcept {
    if (page->counts == nullptr && page->tree != nullptr && !page->isSingle &&
        IsRetainedOnce(page)) {
        const std::size_t pieces = page->bytes / SMALLEST_BLOCK + 1;
        page->counts = new (std::nothrow) std::atomic<std::uint32_t>[pieces]();
    }
}

void RetainBlock(SPage* page, const void* block) noexcept {
    RetainPage(page);
    if (page->counts != nullptr) {
        CountOf(page, block).fetch_add(1, std::memory_order_relaxed);
    }
}

void ReleaseBlock(SPage* page, const void* block) noexcept {
    if (page->counts != nullptr) {
        CountOf(page, block).fetch_sub(1, std::memory_order_release);
    }
    ReleasePage(page);
}

bool IsBlockRetained(SPage* page, const void* block) noexcept {
    return page->counts != nullptr ? CountOf(page, block).load(std::memory_order_acquire) != 0
                                   : !IsRetainedOnce(page);
}

}  // namespace norvask
