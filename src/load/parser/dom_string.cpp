// CDOMString: a fast way for short strings of ASCII, which most are, one for well-formed UTF-16,
// and the converter itself for all others.
#include "load/parser/dom_string.h"

#include <cstring>

#include "foundation/parser_state.h"
#include "foundation/utf8.h"
#include "norvask/manager.h"

namespace norvask {

CDOMString::~CDOMString() = default;

const char* CDOMString::GetString() { return m_bIsNull ? nullptr : At(m_nPlace); }

// One pass finds out that a string is ASCII, finds its end and converts it.
std::size_t CDOMString::Append(const char16_t* text) {
    const std::size_t SHORT = 128;
    if (text == nullptr) {
        AppendCopy(nullptr);
    } else if (!IsOwnInForce()) {
        AppendByClients(text, Utf16Length(text));
    } else {
        Reserve(SHORT + 1);
        const std::size_t copied =
            LocalEncodingIsUtf8() ? CopyAscii(text, SHORT, m_pBlock.get() + m_nUsed) : 0;
        if (text[copied] == 0 && LocalEncodingIsUtf8()) {
            SetLast(copied, KNOWN_UTF8 | KNOWN_ASCII);
        } else {
            AppendByOwn(text, copied + Utf16Length(text + copied));
        }
    }
    return m_nPlace;
}

std::size_t CDOMString::Append(const char16_t* text, std::size_t units) {
    if (IsOwnInForce()) {
        AppendByOwn(text, units);
    } else {
        AppendByClients(text, units);
    }
    return m_nPlace;
}

void CDOMString::AppendByOwn(const char16_t* text, std::size_t units) {
    if (LocalEncodingIsUtf8()) {
        Reserve(Utf8Capacity(units) + 1);
        const std::size_t bytes = Utf16ToUtf8(text, units, m_pBlock.get() + m_nUsed);
        if (bytes != NOT_UTF16) {
            // Only ASCII has as many bytes as units.
            SetLast(bytes, bytes == units ? KNOWN_UTF8 | KNOWN_ASCII : KNOWN_UTF8);
            return;
        }
    }
    const std::unique_ptr<char[]> converted(CWideCharToString().Convert(text, units));
    AppendCopy(converted.get());
}

void CDOMString::AppendByClients(const char16_t* text, std::size_t units) {
    CXMLManager& manager = CXMLManager::GetInstance();
    const std::unique_ptr<char[]> converted(
        manager.GetWideCharToStringConverter()->Convert(text, units));
    AppendCopy(converted.get());
}

void CDOMString::AppendCopy(const char* text) {
    const std::size_t length = text == nullptr ? 0 : std::strlen(text);
    Reserve(length + 1);
    if (length != 0) {
        std::memcpy(m_pBlock.get() + m_nUsed, text, length);
    }
    SetLast(length, 0);
    m_bIsNull = text == nullptr;
}

void CDOMString::SetLast(std::size_t length, unsigned int known) noexcept {
    m_pBlock[m_nUsed + length] = '\0';
    m_nPlace = m_nUsed;
    m_nLength = length;
    m_nKnown = known;
    m_bIsNull = false;
    m_nUsed += length + 1;
}

void CDOMString::Grow(std::size_t bytes) {
    const std::size_t FIRST_CAPACITY = 512;
    const std::size_t least = m_nCapacity == 0 ? FIRST_CAPACITY : 2 * m_nCapacity;
    const std::size_t capacity = m_nUsed + bytes < least ? least : m_nUsed + bytes;
    if (m_nUsed == 0) {
        // Nothing to keep: the old block goes first.
        m_nCapacity = 0;
        m_pBlock.reset();
    }
    std::unique_ptr<char[]> grown(new char[capacity]);
    if (m_nUsed != 0) {
        std::memcpy(grown.get(), m_pBlock.get(), m_nUsed);
    }
    m_pBlock.swap(grown);
    m_nCapacity = capacity;
}

}  // namespace norvask
