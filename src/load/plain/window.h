// Internal. CWindow: the part of a document that is being read, in a block of its own.
//
//   block := done text gap? token unread zero
//
//   text    the character data since the last boundary, written together where it was read
//   gap     what stood between its parts, as comments
//   token   what is being read: from its first byte to the cursor
//
// When the unread bytes are used up, text and token move to the front and more is read behind them.
// The block grows only for what does not fit into half of it, so a document of any size is read in
// the same memory, each byte is moved a bounded number of times, and whoever reads may change what
// it has read: texts are decoded and terminated where they lie.
//
// Positions in a token are kept as distances from its first byte, since the block may move.
#ifndef NORVASK_LOAD_PLAIN_WINDOW_H
#define NORVASK_LOAD_PLAIN_WINDOW_H

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>

#include "load/source/byte_source.h"

namespace norvask {

class CWindow {
public:
    // So many bytes from any unread one on can be read, for comparing several at once.
    static const std::size_t READABLE_BYTES = 16;

    // Reads nothing yet. Throws std::bad_alloc, as does everything that reads.
    CWindow(CByteSource& source, std::size_t capacity);
    CWindow(const CWindow&) = delete;
    CWindow& operator=(const CWindow&) = delete;

    // Begins again at the first byte of the document. Returns false when that fails.
    bool Restart() noexcept;
    std::size_t SourceSize() const noexcept { return m_Source.Size(); }
    // All the bytes of the document, NULL for one that has to be read.
    const char* SourceBytes() const noexcept { return m_Source.Bytes(); }
    // Whether the block begins with the first byte of the document and holds all that was read.
    bool IsWhole() const noexcept { return m_bIsWhole; }

    // The cursor; it stands in the unread bytes or on the zero behind them.
    char* At() const noexcept { return m_pAt; }
    void GoTo(char* at) noexcept { m_pAt = at; }
    std::size_t Unread() const noexcept { return static_cast<std::size_t>(m_pEnd - m_pAt); }
    // How many bytes of the document lie in front of it.
    std::uint64_t Position() const noexcept { return m_nRead - Unread(); }

    // Reads more, if there is any; then the cursor may have another address. If not, it returns
    // false and nothing has moved.
    bool More();
    // Whether there are this many unread bytes, more being read if need be.
    bool Has(std::size_t bytes) {
        while (Unread() < bytes) {
            if (!More()) {
                return false;
            }
        }
        return true;
    }
    // The byte at the cursor, more being read if need be; a zero at the end of the document.
    char Peek() {
        if (*m_pAt == '\0' && m_pAt == m_pEnd) {
            More();
        }
        return *m_pAt;
    }
    // Goes on behind these characters if they are the next ones.
    bool Skip(const char* characters, std::size_t length) {
        if (!Has(length) || std::memcmp(m_pAt, characters, length) != 0) {
            return false;
        }
        m_pAt += length;
        return true;
    }
    bool Skip(char character) {
        if (Peek() != character) {
            return false;
        }
        ++m_pAt;
        return true;
    }
    // Whether the whole document was read, without an error.
    bool IsAtEnd() { return !Has(1) && m_Source.IsGood(); }

    // The token begins at the cursor.
    void BeginToken() noexcept { m_pToken = m_pAt; }
    char* Token() const noexcept { return m_pToken; }
    std::size_t InToken(const char* at) const noexcept {
        return static_cast<std::size_t>(at - m_pToken);
    }

    // Adds characters to the text that lie behind it and were read. The token must begin anew
    // before more is read.
    void AddText(const char* characters, std::size_t length) noexcept {
        if (m_nText == 0) {
            m_pText = const_cast<char*>(characters);
        } else if (m_pText + m_nText != characters) {
            std::memmove(m_pText + m_nText, characters, length);
        }
        m_nText += length;
    }
    // The text, terminated: the byte behind it is lost, which is at most the first of the token.
    char* Text() noexcept {
        m_pText[m_nText] = '\0';
        return m_pText;
    }
    std::size_t TextLength() const noexcept { return m_nText; }
    void ClearText() noexcept { m_nText = 0; }

private:
    void MakeRoom();

    CByteSource& m_Source;
    std::size_t m_nCapacity;  // without the zero
    std::unique_ptr<char[]> m_pBlock;
    char* m_pAt;
    char* m_pEnd;  // the zero
    char* m_pToken;
    char* m_pText;
    std::size_t m_nText;
    bool m_bIsWhole;  // the block begins with the first byte of the document
    bool m_bIsLast;   // there is nothing more to read
    bool m_bIsAhead;  // the next byte was read already, which tells that there is more
    char m_Ahead;
    std::uint64_t m_nRead;  // bytes that came into the block
};

}  // namespace norvask

#endif
