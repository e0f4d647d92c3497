// Internal. CNarrowText: the library's own conversion of parser strings, into a buffer that is used again.
//
// It gives what the default CWideCharToString gives, without a new block for each string. Where an application
// has installed a converter, that one is asked instead (CDOMString).
#ifndef NORVASK_LOAD_NARROW_TEXT_H
#define NORVASK_LOAD_NARROW_TEXT_H

#include <cstddef>
#include <memory>

#include "foundation/known_text.h"

namespace norvask {

class CNarrowText {
public:
    CNarrowText() noexcept : m_nCapacity(0), m_nUsed(0), m_nLength(0), m_bIsUtf8(false) {}

    // The text as a terminated narrow string, valid until the next call. Throws std::bad_alloc.
    const char* Convert(const char16_t* text, std::size_t units) {
        Clear();
        return At(Append(text, units));
    }
    const char* Convert(const char16_t* text) {
        Clear();
        return At(Append(text));
    }

    // Several texts one behind the other: each is known by the place that Append answers, until Clear. What At
    // answers is valid until the next Append. Throws std::bad_alloc.
    void Clear() noexcept { m_nUsed = 0; }
    std::size_t Append(const char16_t* text, std::size_t units);
    std::size_t Append(const char16_t* text);
    const char* At(std::size_t place) const noexcept { return m_pBuffer.get() + place; }

    // The length of the last result.
    std::size_t Length() const noexcept { return m_nLength; }

    // The last result of Convert, with what is known of it.
    SKnownText Known() const noexcept {
        return {m_pBuffer.get(), m_nLength, m_bIsUtf8 ? KNOWN_UTF8 : 0U};
    }

    // Whether the last result is known to be well-formed UTF-8.
    bool IsUtf8() const noexcept { return m_bIsUtf8; }

private:
    void Reserve(std::size_t bytes) {
        if (m_nCapacity - m_nUsed < bytes) {
            Grow(bytes);
        }
    }
    void Grow(std::size_t bytes);

    std::unique_ptr<char[]> m_pBuffer;
    std::size_t m_nCapacity;
    std::size_t m_nUsed;
    std::size_t m_nLength;
    bool m_bIsUtf8;
};

}  // namespace norvask

#endif
