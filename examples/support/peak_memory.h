// How much memory a program has needed: what shows that a document of any size is read in little.
#ifndef NORVASK_EXAMPLES_PEAK_MEMORY_H
#define NORVASK_EXAMPLES_PEAK_MEMORY_H

#include <cstddef>
#include <cstdlib>
#include <fstream>
#include <string>

#include "terminal.h"

// The most memory that the process has held at any time so far, in bytes; 0 if the system does not
// say. (getrusage has such a number too, but it may be that of the program that started this one.)
inline std::size_t PeakMemory() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.compare(0, 6, "VmHWM:") == 0) {
            return 1024 * static_cast<std::size_t>(std::strtoull(&line[6], nullptr, 10));
        }
    }
    return 0;
}

// "6.1 MB before, 6.9 MB at most"
inline std::string MemorySince(std::size_t before) {
    const std::size_t peak = PeakMemory();
    if (before == 0 || peak == 0) return "not known";
    return terminal::Megabytes(before) + " before, " + terminal::Megabytes(peak) + " at most";
}

#endif
