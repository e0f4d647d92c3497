// What long editing costs: how the time of an edit grows with the size of what is edited, and what
// a tree keeps of the memory through which texts and attributes have passed. Norvask only.
#ifndef NORVASK_BENCH_EDITS_H
#define NORVASK_BENCH_EDITS_H

#include <benchmark/benchmark.h>

#include <cstddef>
#include <vector>

namespace norvask_bench {

constexpr const char* GROWTH = "growth";
constexpr const char* GROWTH_INSIDE = "growth, inside";
constexpr const char* CHURN = "churn";
constexpr const char* CHURN_KEPT = "churn, kept";

// An edit of n things. Its time for 8 n, divided by 8 times its time for n, is about 1 when the
// cost of one edit does not depend on how many there are, and about 8 when it grows with them.
struct SGrowth {
    const char* what;  // GROWTH, or GROWTH_INSIDE where an array must move what lies behind
    const char* name;
    std::size_t n;
    // Prepares, edits and looks at the result; only the edits are timed. CPU seconds.
    double (*time)(std::size_t n);
};

const std::vector<SGrowth>& Growths();
double MeasureGrowth(const SGrowth& growth);

// Many texts or attributes whose sizes change from step to step.
struct SChurn {
    const char* name;
    void (*run)(benchmark::State& state);
    // The most that the tree kept, divided by the most that it held live.
    double (*kept)();
};

const std::vector<SChurn>& Churns();

}  // namespace norvask_bench

#endif
