#include "load/narrow_text.h"

#include <cstring>

#include "foundation/parser_text.h"
#include "foundation/utf8.h"
#include "norvask/wide_char_to_string.h"

namespace norvask {

void CNarrowText::Reserve(std::size_t bytes) {
    if (bytes > m_nCapacity) {
        const std::size_t FIRST_CAPACITY = 512;
        const std::size_t least = m_nCapacity == 0 ? FIRST_CAPACITY : 2 * m_nCapacity;
        const std::size_t capacity = bytes < least ? least : bytes;
        m_nCapacity = 0;
        m_pBuffer.reset();
        m_pBuffer.reset(new char[capacity]);
        m_nCapacity = capacity;
    }
}

const char* CNarrowText::Convert(const char16_t* text, std::size_t units) {
    Reserve(Utf8Capacity(units) + 1);
    std::size_t bytes =
        LocalEncodingIsUtf8() ? Utf16ToUtf8(text, units, m_pBuffer.get()) : NOT_UTF16;
    m_bIsUtf8 = bytes != NOT_UTF16;
    if (!m_bIsUtf8) {
        const std::unique_ptr<char[]> converted(CWideCharToString().Convert(text, units));
        bytes = std::strlen(converted.get());
        Reserve(bytes + 1);
        std::memcpy(m_pBuffer.get(), converted.get(), bytes);
    }
    m_pBuffer[bytes] = '\0';
    m_nLength = bytes;
    return m_pBuffer.get();
}

}  // namespace norvask
