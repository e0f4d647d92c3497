#include "foundation/utf8.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace norvask {
namespace {

unsigned int Byte(char c) noexcept { return static_cast<unsigned char>(c); }

bool IsContinuation(char c) noexcept { return (Byte(c) & 0xC0U) == 0x80U; }

char ToByte(unsigned int value) noexcept { return static_cast<char>(value); }

// How many leading units are ASCII; they are written to `out` as bytes. Sixteen at a time where the
// processor can.
std::size_t CopyAscii(const char16_t* text, std::size_t units, char* out) noexcept {
    std::size_t i = 0;
#if defined(__SSE2__)
    const __m128i high = _mm_set1_epi16(static_cast<short>(0xFF80));
    for (; i + 16 <= units; i += 16) {
        const __m128i a = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text + i));
        const __m128i b = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text + i + 8));
        const __m128i bits = _mm_and_si128(_mm_or_si128(a, b), high);
        if (_mm_movemask_epi8(_mm_cmpeq_epi16(bits, _mm_setzero_si128())) != 0xFFFF) {
            break;
        }
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out + i), _mm_packus_epi16(a, b));
    }
#endif
    for (; i < units && text[i] < 0x80; ++i) {
        out[i] = static_cast<char>(text[i]);
    }
    return i;
}

}  // namespace

std::size_t Utf8SequenceLength(const char* text) noexcept {
    const unsigned int first = Byte(text[0]);
    if (first < 0x80) {
        return 1;
    }
    if (first < 0xC2) {
        return 0;
    }
    if (first < 0xE0) {
        return IsContinuation(text[1]) ? 2 : 0;
    }
    const unsigned int second = Byte(text[1]);
    if (first < 0xF0) {
        // E0 must not be overlong, ED must not reach the surrogates.
        const bool fits = first == 0xE0   ? second >= 0xA0 && second <= 0xBF
                          : first == 0xED ? second >= 0x80 && second <= 0x9F
                                          : IsContinuation(text[1]);
        return fits && IsContinuation(text[2]) ? 3 : 0;
    }
    if (first < 0xF5) {
        // F0 must not be overlong, F4 must not leave Unicode.
        const bool fits = first == 0xF0   ? second >= 0x90 && second <= 0xBF
                          : first == 0xF4 ? second >= 0x80 && second <= 0x8F
                                          : IsContinuation(text[1]);
        return fits && IsContinuation(text[2]) && IsContinuation(text[3]) ? 4 : 0;
    }
    return 0;
}

const char* EndOfUtf8(const char* text) noexcept {
    for (;;) {
        while (Byte(*text) - 1 < 0x7F) {  // 1 to 127
            ++text;
        }
        const std::size_t length = *text == '\0' ? 0 : Utf8SequenceLength(text);
        if (length == 0) {
            return text;
        }
        text += length;
    }
}

std::size_t CutAtCharacter(const char* text, std::size_t limit) noexcept {
    for (std::size_t back = 1; back <= 3 && back <= limit; ++back) {
        const char* start = text + limit - back;
        if (!IsContinuation(*start)) {
            return Utf8SequenceLength(start) > back ? limit - back : limit;
        }
    }
    return limit;
}

std::size_t Utf16Length(const char16_t* text) noexcept {
    std::size_t length = 0;
    while (text[length] != 0) {
        ++length;
    }
    return length;
}

std::size_t Utf16ToUtf8(const char16_t* text, std::size_t units, char* out) noexcept {
    char* p = out;
    std::size_t i = 0;
    while (i < units) {
        const unsigned int c = text[i];
        if (c < 0x80) {
            const std::size_t ascii = CopyAscii(text + i, units - i, p);
            i += ascii;
            p += ascii;
        } else if (c < 0x800) {
            p[0] = ToByte(0xC0U | (c >> 6));
            p[1] = ToByte(0x80U | (c & 0x3FU));
            p += 2;
            ++i;
        } else if (c < 0xD800 || c >= 0xE000) {
            p[0] = ToByte(0xE0U | (c >> 12));
            p[1] = ToByte(0x80U | ((c >> 6) & 0x3FU));
            p[2] = ToByte(0x80U | (c & 0x3FU));
            p += 3;
            ++i;
        } else {
            if (c >= 0xDC00 || i + 1 == units || text[i + 1] < 0xDC00 || text[i + 1] >= 0xE000) {
                return NOT_UTF16;
            }
            const unsigned int point = 0x10000U + ((c - 0xD800U) << 10) + (text[i + 1] - 0xDC00U);
            p[0] = ToByte(0xF0U | (point >> 18));
            p[1] = ToByte(0x80U | ((point >> 12) & 0x3FU));
            p[2] = ToByte(0x80U | ((point >> 6) & 0x3FU));
            p[3] = ToByte(0x80U | (point & 0x3FU));
            p += 4;
            i += 2;
        }
    }
    return static_cast<std::size_t>(p - out);
}

}  // namespace norvask
