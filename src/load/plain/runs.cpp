// Runs, sixteen bytes at once.
#include "load/plain/runs.h"

#include <cstring>

#include "foundation/byte_block.h"
#include "foundation/utf8.h"

namespace norvask {
namespace {

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

// The length without a character that is cut off at the end.
std::size_t WholeLength(const char* text, std::size_t length) noexcept {
    for (std::size_t back = 1; back <= 3 && back <= length; ++back) {
        const unsigned char byte = static_cast<unsigned char>(text[length - back]);
        if (byte >= 0xC0) {
            const std::size_t needed = byte < 0xE0 ? 2 : byte < 0xF0 ? 3 : 4;
            return needed > back ? length - back : length;
        }
    }
    return length;
}

}  // namespace

template <ERun RUN>
char* EndOfRun(char* text, bool& isAscii) noexcept {
    Halves bits = {0, 0};
    for (;; text += BLOCK_BYTES) {
        const ByteBlock block = LoadBlock(text);
        const Halves bytes = reinterpret_cast<Halves>(block);
        const Halves ends = reinterpret_cast<Halves>(EndsRun<RUN>(block));
        if (!IsZero(ends)) {
            const unsigned int length = FirstByte(ends);
            // The bytes behind the end do not count.
            const std::uint64_t last = length < 8 ? bytes[0] & FirstBytes(length)
                                                  : bytes[0] | (bytes[1] & FirstBytes(length - 8));
            isAscii = isAscii && ((bits[0] | bits[1] | last) & HIGH_BITS) == 0;
            return text + length;
        }
        bits |= bytes;
    }
}

template <ERun RUN>
char* EndOfRunSlowly(char* text, bool& isAscii) noexcept {
    while (!EndsRun<RUN>(static_cast<std::uint8_t>(*text))) {
        isAscii = isAscii && static_cast<unsigned char>(*text) < 0x80;
        ++text;
    }
    return text;
}

template char* EndOfRun<ERun::TEXT>(char*, bool&) noexcept;
template char* EndOfRun<ERun::CDATA>(char*, bool&) noexcept;
template char* EndOfRun<ERun::VALUE>(char*, bool&) noexcept;
template char* EndOfRunSlowly<ERun::TEXT>(char*, bool&) noexcept;
template char* EndOfRunSlowly<ERun::CDATA>(char*, bool&) noexcept;
template char* EndOfRunSlowly<ERun::VALUE>(char*, bool&) noexcept;

// U+FFFE and U+FFFF are the characters beyond ASCII that are forbidden: EF BF BE and EF BF BF.
std::size_t CharsLength(const char* text, std::size_t length, bool isUtf8) noexcept {
    const std::size_t wellFormed = isUtf8 ? WholeLength(text, length) : Utf8Length(text, length);
    const char* const end = text + wellFormed;
    for (const char* at = text; at != end;) {
        at = static_cast<const char*>(std::memchr(at, 0xEF, static_cast<std::size_t>(end - at)));
        if (at == nullptr) {
            break;
        }
        const unsigned char last = static_cast<unsigned char>(at[2]);
        if (static_cast<unsigned char>(at[1]) == 0xBF && last >= 0xBE) {
            return static_cast<std::size_t>(at - text);
        }
        ++at;
    }
    return wellFormed;
}

}  // namespace norvask
