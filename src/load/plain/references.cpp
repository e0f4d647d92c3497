// CharRef, and EntityRef for the entities that need no declaration.
#include "load/plain/references.h"

#include <cstdint>
#include <cstring>

namespace norvask {
namespace {

const SReference NOT_PLAIN = {0, 0, {0, 0, 0, 0}};

struct SEntity {
    const char* reference;
    char character;
};
const SEntity ENTITIES[] = {
    {"&lt;", '<'}, {"&gt;", '>'}, {"&amp;", '&'}, {"&apos;", '\''}, {"&quot;", '"'}};

SReference ReadEntityRef(const char* text) noexcept {
    for (const SEntity& entity : ENTITIES) {
        const std::size_t length = std::strlen(entity.reference);
        if (std::strncmp(text, entity.reference, length) == 0) {
            return {length, 1, {entity.character, 0, 0, 0}};
        }
    }
    return NOT_PLAIN;
}

const unsigned int NO_DIGIT = 99;

unsigned int Digit(char character, unsigned int base) noexcept {
    unsigned int digit = NO_DIGIT;
    if (character >= '0' && character <= '9') {
        digit = static_cast<unsigned int>(character - '0');
    } else if (character >= 'a' && character <= 'f') {
        digit = static_cast<unsigned int>(character - 'a') + 10;
    } else if (character >= 'A' && character <= 'F') {
        digit = static_cast<unsigned int>(character - 'A') + 10;
    }
    return digit < base ? digit : NO_DIGIT;
}

bool IsChar(std::uint32_t character) noexcept {
    return character >= 0x20 ? character < 0xD800 || (character > 0xDFFF && character < 0xFFFE) ||
                                   (character > 0xFFFF && character <= 0x10FFFF)
                             : character == 0x9 || character == 0xA || character == 0xD;
}

char Part(std::uint32_t character, unsigned int shift) noexcept {
    return static_cast<char>(0x80 | ((character >> shift) & 0x3F));
}

SReference Encoded(std::size_t length, std::uint32_t character) noexcept {
    if (character < 0x80) {
        return {length, 1, {static_cast<char>(character), 0, 0, 0}};
    }
    if (character < 0x800) {
        return {length, 2, {static_cast<char>(0xC0 | (character >> 6)), Part(character, 0), 0, 0}};
    }
    if (character < 0x10000) {
        return {length,
                3,
                {static_cast<char>(0xE0 | (character >> 12)), Part(character, 6),
                 Part(character, 0), 0}};
    }
    return {length,
            4,
            {static_cast<char>(0xF0 | (character >> 18)), Part(character, 12), Part(character, 6),
             Part(character, 0)}};
}

SReference ReadCharRef(const char* text) noexcept {
    const bool isHex = text[2] == 'x';
    const unsigned int base = isHex ? 16 : 10;
    const char* const digits = text + (isHex ? 3 : 2);
    const char* at = digits;
    std::uint32_t character = 0;
    for (unsigned int digit; (digit = Digit(*at, base)) != NO_DIGIT; ++at) {
        character = character * base + digit;
        if (character > 0x10FFFF) {
            return NOT_PLAIN;
        }
    }
    if (at == digits || *at != ';' || !IsChar(character)) {
        return NOT_PLAIN;
    }
    const std::size_t length = static_cast<std::size_t>(at + 1 - text);
    return length <= MOST_REFERENCE_BYTES ? Encoded(length, character) : NOT_PLAIN;
}

}  // namespace

SReference ReadReference(const char* text) noexcept {
    return text[1] == '#' ? ReadCharRef(text) : ReadEntityRef(text);
}

}  // namespace norvask
