// Internal. Runs: characters that stand for themselves, one behind the other.
//
// A run ends at the first byte that does not stand for itself in its place. Bytes beyond ASCII do;
// whether they are characters is looked at for the whole run.
#ifndef NORVASK_LOAD_PLAIN_RUNS_H
#define NORVASK_LOAD_PLAIN_RUNS_H

#include <cstddef>

namespace norvask {

enum class ERun {
    TEXT,   // CharData: not '<', '&', ']', CR or forbidden
    CDATA,  // CData: not ']', CR or forbidden
    VALUE,  // AttValue: not '<', '&', a quote, TAB, LF, CR or forbidden
};

// The end of the run at `text`; `isAscii` becomes false if there is anything beyond ASCII in it. A
// zero, which ends every run, must follow, and behind it as many bytes must be readable as a block
// has.
template <ERun RUN>
char* EndOfRun(char* text, bool& isAscii) noexcept;

// The same byte by byte.
template <ERun RUN>
char* EndOfRunSlowly(char* text, bool& isAscii) noexcept;

// The length of the beginning of a run that consists of whole characters which are not forbidden; a
// zero must follow. If `isUtf8`, it is known to be well-formed.
std::size_t CharsLength(const char* text, std::size_t length, bool isUtf8) noexcept;

}  // namespace norvask

#endif
