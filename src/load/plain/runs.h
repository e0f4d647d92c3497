// Internal. Runs: characters that stand for themselves, one behind the other.
//
// A run ends at the first byte that does not stand for itself in its place. Bytes beyond ASCII do;
// whether they are characters is looked at for the whole run.
#ifndef NORVASK_LOAD_PLAIN_RUNS_H
#define NORVASK_LOAD_PLAIN_RUNS_H

#include <cstddef>
#include <cstdint>

#include "foundation/byte_block.h"

namespace norvask {

enum class ERun {
    TEXT,   // CharData: not '<', '&', ']', CR or forbidden
    CDATA,  // CData: not ']', CR or forbidden
    VALUE,  // AttValue: not '<', '&', a quote, TAB, LF, CR or forbidden
};

// Whether a byte ends a run. The same expression serves for a byte and for a block.
template <ERun RUN, typename Bytes>
auto EndsRun(Bytes bytes) noexcept {
    using Byte = std::uint8_t;
    if constexpr (RUN == ERun::TEXT) {
        return (bytes == Byte{'<'}) | (bytes == Byte{'&'}) | (bytes == Byte{']'}) |
               ((bytes < Byte{' '}) & (bytes != Byte{'\t'}) & (bytes != Byte{'\n'}));
    } else if constexpr (RUN == ERun::CDATA) {
        return (bytes == Byte{']'}) |
               ((bytes < Byte{' '}) & (bytes != Byte{'\t'}) & (bytes != Byte{'\n'}));
    } else {
        return (bytes == Byte{'<'}) | (bytes == Byte{'&'}) | (bytes == Byte{'"'}) |
               (bytes == Byte{'\''}) | (bytes < Byte{' '});
    }
}

// The end of the run at `text`; `isAscii` becomes false if there is anything beyond ASCII in it. A
// zero, which ends every run, must follow, and behind it as many bytes must be readable as a block
// has.
template <ERun RUN>
char* EndOfRun(char* text, bool& isAscii) noexcept {
    unsigned int high = 0;
    for (;; text += BLOCK_BYTES) {
        const ByteBlock block = LoadBlock(text);
        const unsigned int bytes = MaskOf(block);
        const unsigned int ends = MaskOf(reinterpret_cast<ByteBlock>(EndsRun<RUN>(block)));
        if (ends != 0) {
            // The bytes behind the end do not count: those up to the lowest bit do.
            high |= bytes & (ends - 1) & ~ends;
            isAscii = isAscii && high == 0;
            return text + __builtin_ctz(ends);
        }
        high |= bytes;
    }
}

// The same byte by byte.
template <ERun RUN>
char* EndOfRunSlowly(char* text, bool& isAscii) noexcept {
    while (!EndsRun<RUN>(static_cast<std::uint8_t>(*text))) {
        isAscii = isAscii && static_cast<unsigned char>(*text) < 0x80;
        ++text;
    }
    return text;
}

// The length of the beginning of a run that consists of whole characters which are not forbidden; a
// zero must follow. If `isUtf8`, it is known to be well-formed.
std::size_t CharsLength(const char* text, std::size_t length, bool isUtf8) noexcept;

}  // namespace norvask

#endif
