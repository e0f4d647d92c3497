#ifndef NORVASK_BENCH_CPU_TIME_H
#define NORVASK_BENCH_CPU_TIME_H

#include <time.h>

namespace norvask_bench {

// What this thread has used so far.
inline double CpuSeconds() {
    timespec now = {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

}  // namespace norvask_bench

#endif
