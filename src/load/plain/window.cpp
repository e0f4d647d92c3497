// CWindow: moving what is kept, and reading behind it.
#include "load/plain/window.h"

namespace norvask {
namespace {

// With room for the zero, and for what may be read from there on.
std::unique_ptr<char[]> NewBlock(std::size_t capacity) {
    return std::unique_ptr<char[]>(new char[capacity + CWindow::READABLE_BYTES]);
}

}  // namespace

// A document that is smaller than the window shall need no more than its own size; one byte more
// tells that there is nothing behind it.
CWindow::CWindow(CByteSource& source, std::size_t capacity)
    : m_Source(source),
      m_nCapacity(source.Size() < capacity ? source.Size() + 1 : capacity),
      m_pBlock(NewBlock(m_nCapacity)),
      m_pAt(m_pBlock.get()),
      m_pEnd(m_pAt),
      m_pToken(m_pAt),
      m_pText(m_pAt),
      m_nText(0),
      m_bIsWhole(true),
      m_bIsLast(false),
      m_bIsAhead(false),
      m_Ahead('\0'),
      m_nRead(0) {
    *m_pEnd = '\0';
}

bool CWindow::Restart() noexcept {
    m_pAt = m_pBlock.get();
    m_pToken = m_pAt;
    m_nText = 0;
    if (m_bIsWhole) {
        return true;
    }
    m_nRead = 0;
    m_pEnd = m_pAt;
    *m_pEnd = '\0';
    m_bIsWhole = true;
    m_bIsLast = false;
    m_bIsAhead = false;
    return m_Source.Rewind();
}

bool CWindow::More() {
    if (m_bIsLast) {
        return false;
    }
    MakeRoom();
    const char* const before = m_pEnd;
    if (m_bIsAhead) {
        *m_pEnd = m_Ahead;
        ++m_pEnd;
    }
    const std::size_t room = m_nCapacity - static_cast<std::size_t>(m_pEnd - m_pBlock.get());
    m_pEnd += m_Source.Read(m_pEnd, room);
    *m_pEnd = '\0';
    m_nRead += static_cast<std::size_t>(m_pEnd - before);
    m_bIsAhead = m_pEnd == m_pBlock.get() + m_nCapacity && m_Source.Read(&m_Ahead, 1) == 1;
    m_bIsLast = !m_bIsAhead;
    return m_pEnd != before;
}

void CWindow::MakeRoom() {
    const std::size_t inToken = static_cast<std::size_t>(m_pEnd - m_pToken);
    const std::size_t kept = m_nText + inToken;
    const std::size_t at = m_nText + InToken(m_pAt);
    std::unique_ptr<char[]> grown;
    char* front = m_pBlock.get();
    if (kept > m_nCapacity / 2) {
        grown = NewBlock(2 * m_nCapacity);
        front = grown.get();
    }
    m_bIsWhole = m_bIsWhole && kept == static_cast<std::size_t>(m_pEnd - m_pBlock.get());
    std::memmove(front, m_pText, m_nText);
    std::memmove(front + m_nText, m_pToken, inToken);
    if (grown != nullptr) {
        m_nCapacity *= 2;
        m_pBlock.swap(grown);
    }
    m_pText = front;
    m_pToken = front + m_nText;
    m_pAt = front + at;
    m_pEnd = front + kept;
}

}  // namespace norvask
