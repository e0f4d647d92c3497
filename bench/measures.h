// The measurements that are the same for every library.
#ifndef NORVASK_BENCH_MEASURES_H
#define NORVASK_BENCH_MEASURES_H

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <string>

#include "sink.h"

namespace norvask_bench {

// What one iteration reads or writes.
inline void SetBytes(benchmark::State& state, std::size_t bytes) {
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) *
                            static_cast<std::int64_t>(bytes));
}

// The time of one object's life, whose constructor reads the document.
template <class Reader>
void RunLoad(benchmark::State& state, const std::string& text) {
    for (auto _ : state) {
        Reader reader(text);
        benchmark::DoNotOptimize(&reader);
    }
    SetBytes(state, text.size());
}

template <class Tree>
void RunSave(benchmark::State& state, const std::string& text, bool format) {
    const Tree tree(text);
    std::size_t bytes = 0;
    for (auto _ : state) {
        CSink sink;
        tree.Save(sink, format);
        bytes = sink.Bytes();
    }
    SetBytes(state, bytes);
}

template <class Tree>
void RunClone(benchmark::State& state, const std::string& text) {
    const Tree tree(text);
    for (auto _ : state) {
        Tree copy(tree);
        benchmark::DoNotOptimize(&copy);
    }
}

}  // namespace norvask_bench

#endif
