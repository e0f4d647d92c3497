// Internal. UTF-8 and UTF-16, for the fast paths beside the parser's transcoders.
//
// The rule: what these functions accept is well-formed text, for which every correct transcoder
// gives the same result. For anything else they say no, and the caller asks the parser's
// transcoder.
#ifndef NORVASK_FOUNDATION_UTF8_H
#define NORVASK_FOUNDATION_UTF8_H

#include <cstddef>

namespace norvask {

// The length of the well-formed UTF-8 sequence at `text` (1 to 4 bytes), 0 when there is none.
// Reads no further than the first byte that does not fit, so a terminated string needs no length.
std::size_t Utf8SequenceLength(const char* text) noexcept;

// The end of the well-formed beginning of a terminated string: its terminator, or the first byte
// that is no UTF-8.
const char* EndOfUtf8(const char* text) noexcept;

// The length of the well-formed beginning of `length` bytes. Zeros count as characters.
std::size_t Utf8Length(const char* text, std::size_t length) noexcept;

// Whether all bytes are ASCII.
bool IsAscii(const char* text, std::size_t length) noexcept;

// Whether the whole terminated string is well-formed UTF-8.
inline bool IsUtf8(const char* text) noexcept { return *EndOfUtf8(text) == '\0'; }

// The largest length up to `limit` at which `text`, which has more than `limit` bytes, can be cut
// without splitting a UTF-8 character. Bytes that are no UTF-8 count as characters.
std::size_t CutAtCharacter(const char* text, std::size_t limit) noexcept;

// The number of units before the terminator.
std::size_t Utf16Length(const char16_t* text) noexcept;

// The most bytes of UTF-8 that this many units of UTF-16 can give.
constexpr std::size_t Utf8Capacity(std::size_t units) noexcept { return units * 3; }

const std::size_t NOT_UTF16 = static_cast<std::size_t>(-1);

// Writes UTF-8 for `units` units of UTF-16 to `out`, which has room for Utf8Capacity(units) bytes,
// and returns the number of bytes; NOT_UTF16 when a surrogate is unpaired. No terminator is
// written.
std::size_t Utf16ToUtf8(const char16_t* text, std::size_t units, char* out) noexcept;

// Copies the leading ASCII characters of a terminated string, at most `limit`, and returns how many
// there were. No terminator is written.
std::size_t CopyAscii(const char16_t* text, std::size_t limit, char* out) noexcept;

}  // namespace norvask

#endif
