// Reading the arguments of a program.
#ifndef NORVASK_EXAMPLES_OPTIONS_H
#define NORVASK_EXAMPLES_OPTIONS_H

#include <charconv>
#include <cstring>

// A count from 0 to `most`; false for any other text, and for none.
inline bool ReadCount(const char* text, long most, long& count) {
    if (text == nullptr || *text < '0' || *text > '9') return false;
    const char* end = text + std::strlen(text);
    long value = 0;
    const std::from_chars_result read = std::from_chars(text, end, value);
    if (read.ec != std::errc() || read.ptr != end || value > most) return false;
    count = value;
    return true;
}

#endif
