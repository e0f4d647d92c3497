#include "heap.h"

#include <malloc.h>

namespace norvask_bench {

std::size_t HeapInUse() {
    // One arena for all threads, so that one reading sees them all.
    static const bool oneArena = mallopt(M_ARENA_MAX, 1) != 0;
    static_cast<void>(oneArena);
    const struct mallinfo2 information = mallinfo2();
    return information.uordblks + information.hblkhd;
}

}  // namespace norvask_bench
