// How much heap something occupies, to the byte that malloc hands out.
#ifndef NORVASK_BENCH_HEAP_H
#define NORVASK_BENCH_HEAP_H

#include <cstddef>
#include <memory>
#include <string>
#include <thread>

namespace norvask_bench {

// What malloc has handed out and not got back, in all the process. A thread's own cache of released
// blocks counts as handed out until the thread ends, hence the threads below.
std::size_t HeapInUse();

// Everything that runs between the two readings runs on threads that end before the second one, so
// no cache hides a block. Measure times first: once a process has had a second thread, malloc
// locks.
template <class Tree>
std::size_t MeasureHeap(const std::string& text) {
    std::unique_ptr<Tree> tree;
    // What a library sets up once in a process is no part of a tree.
    std::thread([] { const Tree first("<once/>"); }).join();
    const std::size_t before = HeapInUse();
    std::thread([&] { tree = std::make_unique<Tree>(text); }).join();
    const std::size_t after = HeapInUse();
    std::thread([&] { tree.reset(); }).join();
    return after - before;
}

}  // namespace norvask_bench

#endif
