// Internal. CStringStack: the names of the open elements of a streaming writer.
//
//   stack := (name 0 length)*        one block; the length, behind each name, leads back to its beginning
//
// One block instead of one for each name: an element costs no allocation, and a million levels need little more
// than their names.
#ifndef NORVASK_WRITE_STRING_STACK_H
#define NORVASK_WRITE_STRING_STACK_H

#include <cstddef>
#include <cstring>
#include <memory>
#include <new>

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
    void Push(const char* name, std::size_t length) {
        Reserve(length);
        char* end = m_pBlock.get() + m_nUsed;
        std::memcpy(end, name, length);
        end[length] = '\0';
        std::memcpy(end + length + 1, &length, sizeof(length));
        m_nUsed += length + OVERHEAD;
    }

    // The topmost name, terminated, until the next Push, Pop or Reserve. Not to be asked when there is none,
    // like the two below.
    const char* Top() const noexcept { return m_pBlock.get() + m_nUsed - OVERHEAD - TopLength(); }
    std::size_t TopLength() const noexcept {
        std::size_t length = 0;
        std::memcpy(&length, m_pBlock.get() + m_nUsed - sizeof(length), sizeof(length));
        return length;
    }
    void Pop() noexcept {
        m_nUsed -= TopLength() + OVERHEAD;
        if (m_nUsed == 0 && m_nCapacity > KEPT) {
            m_pBlock.reset();
            m_nCapacity = 0;
        }
    }

private:
    static const std::size_t OVERHEAD = 1 + sizeof(std::size_t);
    // A block up to this size stays for the next document.
    static const std::size_t KEPT = 4096;

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
