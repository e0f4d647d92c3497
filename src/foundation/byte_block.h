// Internal. SByteBlock: sixteen bytes that are compared at once.
//
// Written with the compilers' vector types rather than with the instructions of one processor: they
// are compiled for every processor, if need be to plain code. Whoever uses blocks has a loop over
// single bytes beside them, for what is left over, and for comparison in tests.
#ifndef NORVASK_FOUNDATION_BYTE_BLOCK_H
#define NORVASK_FOUNDATION_BYTE_BLOCK_H

#include <cstddef>
#include <cstdint>

namespace norvask {

const std::size_t BLOCK_BYTES = 16;

// Comparisons give 0xFF in each byte for which they hold, and 0 in the others.
using ByteBlock = std::uint8_t __attribute__((vector_size(16)));

inline ByteBlock LoadBlock(const char* text) noexcept {
    using Unaligned = std::uint8_t __attribute__((vector_size(16), aligned(1), may_alias));
    return *reinterpret_cast<const Unaligned*>(text);
}

// The same bytes as two numbers.
using Halves = std::uint64_t __attribute__((vector_size(16)));

inline bool IsZero(Halves halves) noexcept { return (halves[0] | halves[1]) == 0; }

// The first byte of a half, in the order of addresses, that is not zero. There is one.
inline unsigned int FirstByte(std::uint64_t half) noexcept {
#if __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
    return static_cast<unsigned int>(__builtin_ctzll(half)) / 8;
#else
    return static_cast<unsigned int>(__builtin_clzll(half)) / 8;
#endif
}

// The first byte of a block that is not zero. There is one.
inline unsigned int FirstByte(Halves halves) noexcept {
    return halves[0] != 0 ? FirstByte(halves[0]) : 8 + FirstByte(halves[1]);
}

// A mask of the first bytes of a half, less than eight.
inline std::uint64_t FirstBytes(unsigned int count) noexcept {
    const std::uint64_t all = ~std::uint64_t{0};
#if __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
    return ~(all << (8 * count));
#else
    return count == 0 ? 0 : all << (64 - 8 * count);
#endif
}

const std::uint64_t HIGH_BITS = 0x8080808080808080U;

}  // namespace norvask

#endif
