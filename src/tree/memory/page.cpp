// Pages come from the general allocator, each with its content in one block.
#include "tree/memory/page.h"

#include <new>

#if defined(NORVASK_POISONS_MEMORY)
#include <sanitizer/asan_interface.h>
#endif

namespace norvask {

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
    return new (page) SPage{nullptr, nullptr, nullptr, bytes, false, 0, {1}};
}

void RetainPage(SPage* page) noexcept { page->retained.fetch_add(1, std::memory_order_relaxed); }

void ReleasePage(SPage* page) noexcept {
    if (page->retained.fetch_sub(1, std::memory_order_acq_rel) == 1) {
        UnpoisonMemory(ContentOf(page), page->bytes);
        ::operator delete(page);
    }
}

}  // namespace norvask
