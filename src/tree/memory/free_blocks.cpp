// Free blocks, last in first out in each class. A class is found by a search in two words of bits.
#include "tree/memory/free_blocks.h"

#include <new>

namespace norvask {

void CFreeBlocks::Put(void* block, std::size_t bytes, const SPage* page) noexcept {
    const std::size_t of = ClassOf(bytes);
    const std::uint16_t distance = page == nullptr ? std::uint16_t{0} : DistanceTo(page, block);
    UnpoisonMemory(block, sizeof(SFreeBlock));
    m_pFirst[of] =
        new (block) SFreeBlock{m_pFirst[of], static_cast<std::uint32_t>(bytes), distance};
    PoisonMemory(block, bytes);
    m_nFilled[of / WORD] |= std::uint64_t{1} << (of % WORD);
}

// The first class from this one on that may have blocks; CLASSES when there is none.
std::size_t CFreeBlocks::NextFilled(std::size_t from) const noexcept {
    for (std::size_t word = from / WORD; word < 2; ++word) {
        std::uint64_t bits = m_nFilled[word];
        if (word == from / WORD) {
            bits &= ~std::uint64_t{0} << (from % WORD);
        }
        if (bits != 0) {
            return word * WORD + static_cast<std::size_t>(__builtin_ctzll(bits));
        }
    }
    return CLASSES;
}

// The first block of a class, unless what would be left of it is too small for a block.
SFreeBlock* CFreeBlocks::TakeFirst(std::size_t of, std::size_t bytes) noexcept {
    SFreeBlock* const block = m_pFirst[of];
    if (block == nullptr) {
        m_nFilled[of / WORD] &= ~(std::uint64_t{1} << (of % WORD));
        return nullptr;
    }
    const COpenBlock open(block);
    if (open->bytes < bytes || (open->bytes != bytes && open->bytes - bytes < SMALLEST_BLOCK)) {
        return nullptr;
    }
    m_pFirst[of] = open->next;
    return block;
}

SFreeBlock* CFreeBlocks::Take(std::size_t bytes, bool larger) noexcept {
    const std::size_t least = ClassOf(bytes);
    if (SFreeBlock* block = TakeFirst(least, bytes)) {
        return block;
    }
    for (std::size_t of = least; larger && (of = NextFilled(of + 1)) < CLASSES;) {
        if (SFreeBlock* block = TakeFirst(of, bytes)) {
            return block;
        }
    }
    return nullptr;
}

}  // namespace norvask
