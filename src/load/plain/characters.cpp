// One table for ASCII; beyond it UTF-8 is decoded where a rule needs the character.
#include "load/plain/characters.h"

#include <xercesc/util/XMLChar.hpp>

#include "foundation/utf8.h"

namespace norvask {
namespace {

constexpr std::uint8_t KindOf(unsigned int byte) noexcept {
    if (byte == ' ' || byte == '\t' || byte == '\n' || byte == '\r') {
        return BYTE_SPACE | BYTE_NAME_END | BYTE_CHAR;
    }
    if (byte < ' ' || byte > 0x7F) {
        return 0;
    }
    if ((byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || byte == '_') {
        return BYTE_NAME_START | BYTE_NAME | BYTE_CHAR;
    }
    if ((byte >= '0' && byte <= '9') || byte == '-' || byte == '.') {
        return BYTE_NAME | BYTE_CHAR;
    }
    if (byte == '=' || byte == '/' || byte == '>') {
        return BYTE_NAME_END | BYTE_CHAR;
    }
    return BYTE_CHAR;
}

#define ROW_4(b) KindOf(b), KindOf((b) + 1), KindOf((b) + 2), KindOf((b) + 3)
#define ROW_16(b) ROW_4(b), ROW_4((b) + 4), ROW_4((b) + 8), ROW_4((b) + 12)
#define ROW_64(b) ROW_16(b), ROW_16((b) + 16), ROW_16((b) + 32), ROW_16((b) + 48)

unsigned int Bits(char byte, unsigned int mask) noexcept {
    return static_cast<unsigned char>(byte) & mask;
}

// Of a sequence of three bytes.
unsigned int ThreeByteChar(const char* text) noexcept {
    return (Bits(text[0], 0x0F) << 12) | (Bits(text[1], 0x3F) << 6) | Bits(text[2], 0x3F);
}

}  // namespace

const std::uint8_t BYTE_KINDS[256] = {ROW_64(0), ROW_64(64), ROW_64(128), ROW_64(192)};

std::size_t CharLength(const char* text) noexcept {
    const std::size_t length = Utf8SequenceLength(text);
    const bool isForbidden = length == 3 && ThreeByteChar(text) >= 0xFFFE;
    return isForbidden ? 0 : length;
}

std::size_t NameCharLength(const char* text, bool isFirst) noexcept {
    const std::size_t length = Utf8SequenceLength(text);
    if (length != 2 && length != 3) {
        return 0;
    }
    const unsigned int character =
        length == 3 ? ThreeByteChar(text) : (Bits(text[0], 0x1F) << 6) | Bits(text[1], 0x3F);
    const XMLCh unit = static_cast<XMLCh>(character);
    const bool fits = isFirst ? xercesc::XMLChar1_0::isFirstNCNameChar(unit)
                              : xercesc::XMLChar1_0::isNCNameChar(unit);
    return fits ? length : 0;
}

}  // namespace norvask
