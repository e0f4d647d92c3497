// The same work in several processes, each watched by the first: one that crashes, or does not get
// on, leaves the document that it was at. SIGTERM ends one early, and what it did counts.
#ifndef NORVASK_TESTS_DIFFERENTIAL_PROCESSES_H
#define NORVASK_TESTS_DIFFERENTIAL_PROCESSES_H

#include <signal.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>
#include <vector>

#include "findings.h"
#include "support/plain_lane/comparison.h"

namespace norvask_differential {

using norvask_test::SLaneCounts;

// What a process and the first one share.
struct SShared {
    static constexpr std::size_t MOST_BYTES = 1 << 20;

    std::atomic<std::uint64_t> beats{0};
    std::size_t length = 0;
    SLaneCounts counts;
    std::size_t differences = 0;
    char document[MOST_BYTES];

    void At(const std::string& text) {
        length = std::min(text.size(), MOST_BYTES);
        std::memcpy(document, text.data(), length);
        beats.fetch_add(1, std::memory_order_relaxed);
    }
};

struct SRun {
    SLaneCounts counts;
    std::size_t differences = 0;
};

// Calls `work` with the number of the process in each of them, and adds up.
template <typename Work>
SRun InProcesses(unsigned count, const std::string& folder, Work work) {
    const int SECONDS_WITHOUT_PROGRESS = 120;
    std::vector<SShared*> shared;
    std::vector<pid_t> processes;
    for (unsigned i = 0; i < count; ++i) {
        void* const block = mmap(nullptr, sizeof(SShared), PROT_READ | PROT_WRITE,
                                 MAP_SHARED | MAP_ANONYMOUS, -1, 0);
        if (block == MAP_FAILED) {
            std::perror("mmap");
            std::exit(2);
        }
        shared.push_back(new (block) SShared);
        std::fflush(nullptr);
        const pid_t process = fork();
        if (process < 0) {
            std::perror("fork");
            std::exit(2);
        }
        if (process == 0) {
            work(i, *shared.back());
            std::fflush(nullptr);
            _exit(0);
        }
        processes.push_back(process);
    }
    SRun run;
    for (unsigned i = 0; i < count; ++i) {
        int status = 0;
        int idle = 0;
        std::uint64_t beats = 0;
        while (waitpid(processes[i], &status, WNOHANG) == 0) {
            usleep(100000);
            const std::uint64_t now = shared[i]->beats.load(std::memory_order_relaxed);
            idle = now == beats ? idle + 1 : 0;
            beats = now;
            if (idle == 10 * SECONDS_WITHOUT_PROGRESS) kill(processes[i], SIGKILL);
        }
        const bool isStopped = WIFSIGNALED(status) && WTERMSIG(status) == SIGTERM;
        if (!isStopped && (!WIFEXITED(status) || WEXITSTATUS(status) != 0)) {
            const std::string document(shared[i]->document, shared[i]->length);
            CFindings(folder, "ended-" + std::to_string(processes[i]))
                .Write(document, document,
                       "The process ended (status " + std::to_string(status) +
                           ") or did not get on with this document.\n");
            ++run.differences;
        }
        run.counts.Add(shared[i]->counts);
        run.differences += shared[i]->differences;
    }
    return run;
}

}  // namespace norvask_differential

#endif
