// Work that several threads do at once.
#ifndef NORVASK_TESTS_SUPPORT_THREADS_H
#define NORVASK_TESTS_SUPPORT_THREADS_H

#include <atomic>
#include <thread>
#include <vector>

namespace norvask_test {

inline constexpr int THREADS = 4;

// Each thread gets its number. They begin together, as far as that can be had. Failed checks inside
// the work count as everywhere.
template <typename Work>
void OnThreads(const Work& work) {
    std::atomic<int> waiting{THREADS};
    std::vector<std::thread> threads;
    for (int i = 0; i < THREADS; ++i) {
        threads.emplace_back([&waiting, &work, i] {
            --waiting;
            while (waiting > 0)
                std::this_thread::yield();
            work(i);
        });
    }
    for (std::thread& thread : threads)
        thread.join();
}

}  // namespace norvask_test

#endif
