// Internal. Copying the short texts that names and values mostly are, too short for a call.
#ifndef NORVASK_FOUNDATION_SHORT_COPY_H
#define NORVASK_FOUNDATION_SHORT_COPY_H

#include <cstddef>
#include <cstring>

namespace norvask {

// N to 2 * N bytes: the first N and the last N of them.
template <std::size_t N>
inline void CopyEnds(char* out, const char* bytes, std::size_t length) noexcept {
    char first[N];
    char last[N];
    std::memcpy(first, bytes, N);
    std::memcpy(last, bytes + length - N, N);
    std::memcpy(out, first, N);
    std::memcpy(out + length - N, last, N);
}

// Copies bytes to another place, or towards the front of where they lie.
inline void CopyShort(char* out, const char* bytes, std::size_t length) noexcept {
    if (length > 16) {
        std::memmove(out, bytes, length);
    } else if (length >= 8) {
        CopyEnds<8>(out, bytes, length);
    } else if (length >= 4) {
        CopyEnds<4>(out, bytes, length);
    } else if (length >= 2) {
        CopyEnds<2>(out, bytes, length);
    } else if (length != 0) {
        *out = *bytes;
    }
}

}  // namespace norvask

#endif
