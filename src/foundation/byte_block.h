// Internal. ByteBlock: sixteen bytes that are compared at once.
//
// Written with the compilers' vector types rather than with the instructions of one processor: they
// are compiled for every processor, if need be to plain code. One instruction of x86 is worth an
// exception. Whoever uses blocks has a loop over single bytes beside them, for what is left over,
// and for comparison in tests.
#ifndef NORVASK_FOUNDATION_BYTE_BLOCK_H
#define NORVASK_FOUNDATION_BYTE_BLOCK_H

#include <cstddef>
#include <cstdint>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace norvask {

const std::size_t BLOCK_BYTES = 16;

// Comparisons give 0xFF in each byte for which they hold, and 0 in the others.
using ByteBlock = std::uint8_t __attribute__((vector_size(16)));

// Wherever it lies. In a type of its own, since not every compiler takes the alignment of an alias.
struct __attribute__((packed, may_alias)) SUnalignedBlock {
    ByteBlock block;
};
inline ByteBlock LoadBlock(const char* text) noexcept {
    return reinterpret_cast<const SUnalignedBlock*>(text)->block;
}

// The highest bits of the bytes: that of the first one in the lowest bit.
inline unsigned int MaskOfPlainly(ByteBlock block) noexcept {
    unsigned int mask = 0;
    for (unsigned int i = 0; i < BLOCK_BYTES; ++i) {
        mask |= (block[i] >> 7 & 1U) << i;
    }
    return mask;
}
inline unsigned int MaskOf(ByteBlock block) noexcept {
#if defined(__SSE2__)
    return static_cast<unsigned int>(_mm_movemask_epi8(reinterpret_cast<__m128i>(block)));
#else
    return MaskOfPlainly(block);
#endif
}

}  // namespace norvask

#endif
