// Internal. CStringStack: the names of the open elements of a streaming writer.
//
//   stack := (name 0 known length)*    one block; the length, behind each name, leads back to its
//                                      beginning
//
// One block instead of one for each name: an element costs no allocation, and a million levels need
// little more than their names. What is known of a name is kept with it, so that its end tag needs
// no second look at it.
#ifndef NORVASK_WRITE_STRING_STACK_H
#define NORVASK_WRITE_STRING_STACK_H

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <new>

#include "foundation/known_text.h"
#include "foundation/short_copy.h"

namespace norvask {

class CStringStack {
public:
    CStringStack() noexcept : m_nUsed(0), m_nCapacity(0) {}
    CStringStack(const CStringStack&) = delete;
    CStringStack& operator=(const CStringStack&) = delete;

    bool IsEmpty() const noexcept { return m_nUsed == 0; }

    // Makes room for one more name, so that its Push does not fail. Throws std::bad_alloc.
    void Reserve(std::size_t length) {
        if (length > static_cast<std::size_t>(-1) / 4) {
            throw std::bad_alloc();
        }
        if (m_nCapacity - m_nUsed < length + OVERHEAD) {
            Grow(length + OVERHEAD);
        }
    }
    // Throws std::bad_alloc, but not right behind a Reserve.
    void Push(const SKnownText& name) {
        Reserve(name.length);
        CopyShort(m_pBlock.get() + m_nUsed, name.text, name.length + 1);
        m_nUsed += name.length + 1;
        const Known known = static_cast<Known>(name.known);
        Append(&known, sizeof(known));
        Append(&name.length, sizeof(name.length));
    }

    // The topmost name, of which the first eight and the second eight bytes can be read, the latter
    // if the name has so many, however short it is; until the next Push, Pop or Reserve. Not to be
    // asked when there is none, like Pop.
    SKnownText Top() const noexcept {
        const std::size_t length = TopLength();
        const char* const text = m_pBlock.get() + m_nUsed - OVERHEAD - length;
        Known known = 0;
        std::memcpy(&known, text + length + 1, sizeof(known));
        return {text, length, known};
    }
    void Pop() noexcept {
        m_nUsed -= TopLength() + OVERHEAD;
        if (m_nUsed == 0 && m_nCapacity > KEPT) {
            m_pBlock.reset();
            m_nCapacity = 0;
        }
    }

private:
    using Known = std::uint16_t;

    static const std::size_t OVERHEAD = 1 + sizeof(Known) + sizeof(std::size_t);
    // A block up to this size stays for the next document.
    static const std::size_t KEPT = 4096;

    std::size_t TopLength() const noexcept {
        std::size_t length = 0;
        std::memcpy(&length, m_pBlock.get() + m_nUsed - sizeof(length), sizeof(length));
        return length;
    }
    void Append(const void* bytes, std::size_t length) noexcept {
        std::memcpy(m_pBlock.get() + m_nUsed, bytes, length);
        m_nUsed += length;
    }

    void Grow(std::size_t needed) {
        std::size_t capacity = m_nCapacity == 0 ? 256 : 2 * m_nCapacity;
        if (capacity - m_nUsed < needed) {
            capacity = m_nUsed + needed;
        }
        std::unique_ptr<char[]> grown(new char[capacity]);
        if (m_nUsed != 0) {
            std::memcpy(grown.get(), m_pBlock.get(), m_nUsed);
        }
        m_pBlock.swap(grown);
        m_nCapacity = capacity;
    }

    std::unique_ptr<char[]> m_pBlock;
    std::size_t m_nUsed;
    std::size_t m_nCapacity;
};

}  // namespace norvask

#endif
