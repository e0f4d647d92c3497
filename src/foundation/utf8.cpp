// UTF-8: what is well-formed, and how far. Of UTF-16 only what needs no conversion; the rest is in
// utf16_to_utf8.cpp.
#include "foundation/utf8.h"

#include <cstdint>
#include <cstring>

namespace norvask {
namespace {

unsigned int Byte(char c) noexcept { return static_cast<unsigned char>(c); }

bool IsContinuation(char c) noexcept { return (Byte(c) & 0xC0U) == 0x80U; }

template <typename Word>
Word Load(const char* text) noexcept {
    Word word = 0;
    std::memcpy(&word, text, sizeof(word));
    return word;
}

}  // namespace

// The last word is read together with what comes before it.
bool IsAscii(const char* text, std::size_t length) noexcept {
    std::uint64_t bits = 0;
    if (length >= 8) {
        for (std::size_t i = 0; i + 8 <= length; i += 8) {
            bits |= Load<std::uint64_t>(text + i);
        }
        bits |= Load<std::uint64_t>(text + length - 8);
    } else if (length >= 4) {
        bits = Load<std::uint32_t>(text) | Load<std::uint32_t>(text + length - 4);
    } else {
        for (std::size_t i = 0; i < length; ++i) {
            bits |= Byte(text[i]);
        }
    }
    return (bits & 0x8080808080808080U) == 0;
}

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

std::size_t Utf8Length(const char* text, std::size_t length) noexcept {
    const std::size_t BLOCK = 32;
    std::size_t i = 0;
    for (;;) {
        while (length - i >= BLOCK && IsAscii(text + i, BLOCK)) {
            i += BLOCK;
        }
        while (i < length && Byte(text[i]) < 0x80) {
            ++i;
        }
        while (i < length && Byte(text[i]) >= 0x80) {
            const std::size_t sequence = Utf8SequenceLength(text + i);
            if (sequence == 0) {
                return i;
            }
            i += sequence;
        }
        if (i >= length) {
            return length;
        }
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

std::size_t CopyAscii(const char16_t* text, std::size_t limit, char* out) noexcept {
    std::size_t i = 0;
    while (i < limit && text[i] - 1U < 0x7F) {  // 1 to 127
        out[i] = static_cast<char>(text[i]);
        ++i;
    }
    return i;
}

}  // namespace norvask
