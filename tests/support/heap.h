// How much the process has allocated, for tests of what must not grow.
#ifndef NORVASK_TESTS_SUPPORT_HEAP_H
#define NORVASK_TESTS_SUPPORT_HEAP_H

#include <gtest/gtest.h>

#include <malloc.h>

#include <cstddef>

#include "support/sanitizers.h"

namespace norvask_test {

inline std::size_t HeapInUse() {
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

// But for what stays the same however often a thing is done. A sanitizer has an allocator of its
// own: it keeps what is freed, and mallinfo2 does not see it.
inline void ExpectHeapAsBefore(std::size_t before) {
    if (!IS_SANITIZED) {
        EXPECT_LE(HeapInUse(), before + 64 * 1024);
    }
}

}  // namespace norvask_test

#endif
