// Internal. CPendingText: the character data gathered since the last boundary (my_sax_handler.h).
//
// The parser reports each reference and each filling of its buffer as a run of its own, so the
// block grows geometrically; it is kept for the whole load.
#ifndef NORVASK_LOAD_PARSER_PENDING_TEXT_H
#define NORVASK_LOAD_PARSER_PENDING_TEXT_H

#include <cstddef>
#include <cstring>
#include <memory>
#include <new>

namespace norvask {

class CPendingText {
public:
    CPendingText() noexcept : m_nCapacity(0), m_nLength(0) {}

    void Append(const char16_t* text, std::size_t units) {
        // One unit more than the text, for the terminator.
        if (m_nCapacity - m_nLength <= units) {
            Grow(units);
        }
        std::memcpy(m_pText.get() + m_nLength, text, units * sizeof(char16_t));
        m_nLength += units;
    }

    bool IsEmpty() const noexcept { return m_nLength == 0; }
    std::size_t Length() const noexcept { return m_nLength; }
    void Clear() noexcept { m_nLength = 0; }

    // The text, terminated. There is one.
    const char16_t* Text() noexcept {
        m_pText[m_nLength] = 0;
        return m_pText.get();
    }

private:
    void Grow(std::size_t units) {
        const std::size_t FIRST_CAPACITY = 256;
        std::size_t capacity = m_nCapacity == 0 ? FIRST_CAPACITY : m_nCapacity;
        while (capacity - m_nLength <= units) {
            capacity *= 2;
        }
        std::unique_ptr<char16_t[]> grown(new char16_t[capacity]);
        if (m_nLength != 0) {
            std::memcpy(grown.get(), m_pText.get(), m_nLength * sizeof(char16_t));
        }
        m_pText.swap(grown);
        m_nCapacity = capacity;
    }

    std::unique_ptr<char16_t[]> m_pText;
    std::size_t m_nCapacity;
    std::size_t m_nLength;
};

}  // namespace norvask

#endif
