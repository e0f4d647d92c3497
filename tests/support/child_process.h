// Runs something in a process of its own, measures what it costs, and ends it if it costs far too
// much.
#ifndef NORVASK_TESTS_SUPPORT_CHILD_PROCESS_H
#define NORVASK_TESTS_SUPPORT_CHILD_PROCESS_H

#include <gtest/gtest.h>

#include <malloc.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <exception>
#include <fstream>
#include <functional>
#include <string>

#include "support/sanitizers.h"

namespace norvask_test {

// What a process did and what it cost.
struct SCost {
    std::string report;     // what the work returned
    std::string end;        // "" if the work was done, else how the process ended
    double seconds = 0;     // processor time
    double megabytes = -1;  // the most that was held, beyond what was held before; -1: not known
};

// One line of /proc/self/status, in megabytes.
inline double StatusOfProcess(const std::string& key) {
    std::ifstream status("/proc/self/status");
    std::string line;
    while (std::getline(status, line)) {
        if (line.compare(0, key.size() + 1, key + ":") == 0)
            return std::atof(line.c_str() + key.size() + 1) / 1024;
    }
    return -1;
}

inline double ProcessorSeconds() {
    timespec time = {};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

// What was held before counts from here on, and what was released does not serve again unseen.
inline double ForgetPeak() {
    malloc_trim(0);
    std::ofstream("/proc/self/clear_refs") << "5";
    return StatusOfProcess("VmRSS");
}

// The work of the child. Never returns.
[[noreturn]] inline void WorkAndEnd(int pipe, unsigned int ceiling,
                                    const std::function<std::string()>& work) {
    rlimit time = {ceiling, ceiling};
    setrlimit(RLIMIT_CPU, &time);
    rlimit none = {0, 0};
    setrlimit(RLIMIT_CORE, &none);
    alarm(120);  // for who waits and takes no time
    const double before = ForgetPeak();
    const double begin = ProcessorSeconds();
    std::string report;
    try {
        report = work();
    } catch (const std::exception& e) {
        report = std::string("the work threw ") + e.what();
    } catch (...) {
        report = "the work threw";
    }
    report.resize(std::min<std::size_t>(report.size(), 32000));  // what a pipe holds in any case
    const double cost[] = {ProcessorSeconds() - begin,
                           IS_SANITIZED ? -1.0 : StatusOfProcess("VmHWM") - before};
    bool isWritten = write(pipe, cost, sizeof cost) == sizeof cost;
    for (std::size_t at = 0; isWritten && at < report.size();) {
        const ssize_t count = write(pipe, report.data() + at, report.size() - at);
        isWritten = count > 0;
        at += isWritten ? static_cast<std::size_t>(count) : 0;
    }
    _exit(isWritten ? 0 : 1);
}

// Runs the work in a child. `ceiling` are seconds of processor time, after which the system ends
// the child. `meanwhile` is called about every millisecond until then.
inline SCost InChild(const std::function<std::string()>& work, unsigned int ceiling = 30,
                     const std::function<void()>& meanwhile = nullptr) {
    SCost cost;
    int ends[2] = {};
    if (pipe(ends) != 0) {
        cost.end = "no pipe";
        return cost;
    }
    const pid_t child = fork();
    if (child == 0) {
        close(ends[0]);
        WorkAndEnd(ends[1], ceiling, work);
    }
    close(ends[1]);
    int status = 0;
    if (meanwhile) {
        siginfo_t info = {};
        while (waitid(P_PID, static_cast<id_t>(child), &info, WEXITED | WNOHANG | WNOWAIT) == 0 &&
               info.si_pid == 0) {
            meanwhile();
            usleep(1000);
        }
    }
    std::string said;
    char block[4096];
    for (ssize_t count = 1; count > 0;) {
        count = read(ends[0], block, sizeof block);
        if (count > 0) said.append(block, static_cast<std::size_t>(count));
    }
    close(ends[0]);
    waitpid(child, &status, 0);
    double numbers[2] = {0, -1};
    if (WIFSIGNALED(status)) {
        cost.end = std::string("signal ") + strsignal(WTERMSIG(status));
    } else if (WEXITSTATUS(status) != 0 || said.size() < sizeof numbers) {
        cost.end = "exit " + std::to_string(WEXITSTATUS(status));
    } else {
        std::memcpy(numbers, said.data(), sizeof numbers);
        cost.report = said.substr(sizeof numbers);
    }
    cost.seconds = numbers[0];
    cost.megabytes = numbers[1];
    return cost;
}

// The work must be done, report nothing, and stay below the ceilings. The sanitizers multiply time
// and memory.
inline void ExpectCheap(const std::function<std::string()>& work, double seconds = 6,
                        double megabytes = 200, const std::function<void()>& meanwhile = nullptr) {
    const SCost cost = InChild(work, IS_SANITIZED ? 100 : 12, meanwhile);
    EXPECT_EQ(cost.end, "");
    EXPECT_EQ(cost.report, "");
    EXPECT_LE(cost.seconds, IS_SANITIZED ? seconds * 8 : seconds);
    if (!IS_SANITIZED) {
        EXPECT_GE(cost.megabytes, 0) << "what was held is not known";
        EXPECT_LE(cost.megabytes, megabytes);
    }
}

}  // namespace norvask_test

#endif
