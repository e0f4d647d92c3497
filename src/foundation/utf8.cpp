// UTF-8: what is well-formed, and how far. Of UTF-16 only what needs no conversion; the rest is in
// utf16_to_utf8.cpp.
#include "foundation/utf8.h"

#include <cstdint>
#include <cstring>

#include "foundation/byte_block.h"

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

namespace {

// Whether anything in a block is wrong, given the bytes that are one, two and three places before
// each: a continuation where there must be none or none where there must be one, a byte that no
// character has, or a second byte with which the first one is overlong, a surrogate or too large.
bool HasMistake(ByteBlock block, ByteBlock one, ByteBlock two, ByteBlock three) noexcept {
    using B = std::uint8_t;
    const auto isContinuation = (block & B{0xC0}) == B{0x80};
    const auto mustContinue = (one >= B{0xC0}) | (two >= B{0xE0}) | (three >= B{0xF0});
    const auto isNever = (block == B{0xC0}) | (block == B{0xC1}) | (block >= B{0xF5});
    const auto isWrong =
        ((one == B{0xE0}) & (block < B{0xA0})) | ((one == B{0xED}) & (block >= B{0xA0})) |
        ((one == B{0xF0}) & (block < B{0x90})) | ((one == B{0xF4}) & (block >= B{0x90}));
    return MaskOf(reinterpret_cast<ByteBlock>((isContinuation ^ mustContinue) | isNever |
                                              isWrong)) != 0;
}

bool IsAsciiBlock(ByteBlock block) noexcept { return MaskOf(block) == 0; }

// How many bytes from `text`, the beginning of a character, on are well-formed for sure, in whole
// blocks up to one of ASCII only. The last character may be cut off.
std::size_t FormedBlocks(const char* text, std::size_t length) noexcept {
    if (length < BLOCK_BYTES) {
        return 0;
    }
    char first[BLOCK_BYTES + 3] = {};
    std::memcpy(first + 3, text, BLOCK_BYTES);
    const char* at = first + 3;
    std::size_t formed = 0;
    for (;;) {
        const ByteBlock block = LoadBlock(at);
        if (HasMistake(block, LoadBlock(at - 1), LoadBlock(at - 2), LoadBlock(at - 3))) {
            return formed;
        }
        formed += BLOCK_BYTES;
        if (IsAsciiBlock(block) || length - formed < BLOCK_BYTES) {
            return formed;
        }
        at = text + formed;
    }
}

}  // namespace

std::size_t Utf8Length(const char* text, std::size_t length) noexcept {
    const std::size_t BLOCK = 32;
    std::size_t i = 0;
    std::size_t formed = 0;
    do {
        i += formed;
        while (length - i >= BLOCK && IsAscii(text + i, BLOCK)) {
            i += BLOCK;
        }
        formed = FormedBlocks(text + i, length - i);
    } while (formed != 0 && IsAscii(text + i + formed - BLOCK_BYTES, BLOCK_BYTES));
    i += formed;
    // Back to the beginning of a character, if the last one is cut off.
    for (std::size_t back = 1; back <= 3 && back <= i; ++back) {
        if (Byte(text[i - back]) >= 0xC0) {
            i -= back;
            break;
        }
    }
    while (i < length) {
        // Nothing behind the end is read.
        char last[4] = {};
        const char* at = text + i;
        if (length - i < sizeof(last)) {
            std::memcpy(last, at, length - i);
            at = last;
        }
        const std::size_t sequence = Utf8SequenceLength(at);
        if (sequence == 0) {
            return i;
        }
        i += sequence;
    }
    return length;
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
