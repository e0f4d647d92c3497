#include "load/narrow_text.h"

#include <cstring>

#include "foundation/parser_state.h"
#include "foundation/utf8.h"
#include "norvask/wide_char_to_string.h"

namespace norvask {

void CNarrowText::Grow(std::size_t bytes) {
    const std::size_t FIRST_CAPACITY = 512;
    const std::size_t least = m_nCapacity == 0 ? FIRST_CAPACITY : 2 * m_nCapacity;
    const std::size_t capacity = m_nUsed + bytes < least ? least : m_nUsed + bytes;
    if (m_nUsed == 0) {
        // Nothing to keep: the old block goes first.
        m_nCapacity = 0;
        m_pBuffer.reset();
    }
    std::unique_ptr<char[]> grown(new char[capacity]);
    if (m_nUsed != 0) {
        std::memcpy(grown.get(), m_pBuffer.get(), m_nUsed);
    }
    m_pBuffer.swap(grown);
    m_nCapacity = capacity;
}

std::size_t CNarrowText::Append(const char16_t* text, std::size_t units) {
    Reserve(Utf8Capacity(units) + 1);
    char* out = m_pBuffer.get() + m_nUsed;
    m_nLength = LocalEncodingIsUtf8() ? Utf16ToUtf8(text, units, out) : NOT_UTF16;
    m_bIsUtf8 = m_nLength != NOT_UTF16;
    if (!m_bIsUtf8) {
        const std::unique_ptr<char[]> converted(CWideCharToString().Convert(text, units));
        m_nLength = std::strlen(converted.get());
        Reserve(m_nLength + 1);
        out = m_pBuffer.get() + m_nUsed;
        std::memcpy(out, converted.get(), m_nLength);
    }
    out[m_nLength] = '\0';
    const std::size_t place = m_nUsed;
    m_nUsed += m_nLength + 1;
    return place;
}

// Most strings are short and ASCII: one pass finds that out, finds the end and converts.
std::size_t CNarrowText::Append(const char16_t* text) {
    const std::size_t SHORT = 128;
    Reserve(SHORT + 1);
    char* const out = m_pBuffer.get() + m_nUsed;
    const std::size_t copied = LocalEncodingIsUtf8() ? CopyAscii(text, SHORT, out) : 0;
    if (text[copied] != 0 || !LocalEncodingIsUtf8()) {
        return Append(text, copied + Utf16Length(text + copied));
    }
    out[copied] = '\0';
    m_nLength = copied;
    m_bIsUtf8 = true;
    const std::size_t place = m_nUsed;
    m_nUsed += copied + 1;
    return place;
}

}  // namespace norvask
