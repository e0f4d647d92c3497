// Internal. COutput: the byte-level rules of all XML that the library writes.
//
// Markup tokens are literals; everything else is escaped. Bytes are gathered and handed to the
// stream in larger pieces. The stream receives the same bytes as token by token:
//   - literals behave as if inserted with operator<<, so a width that is pending on the stream pads
//     the next literal, and only that;
//   - whoever is called in between (an override, the parser) finds everything before it written,
//     and so does whoever catches an exception, if the walk calls Flush on its way out.
#ifndef NORVASK_WRITE_OUTPUT_H
#define NORVASK_WRITE_OUTPUT_H

#include <cstddef>
#include <cstring>
#include <ostream>

#include "foundation/known_text.h"
#include "foundation/short_copy.h"

namespace norvask {

class CBase64Text;

class COutput {
public:
    // How much is gathered, for a whole tree and for a few tokens. Pieces below 1024 bytes are
    // gathered once more by file streams of the standard library; larger ones would be a system
    // call each.
    static const std::size_t LARGE = 8192;
    static const std::size_t SMALL = 1000;

    // Gathers in `size` bytes at `buffer`.
    COutput(std::ostream& out, char* buffer, std::size_t size) noexcept
        : m_Out(out),
          m_pBuffer(buffer),
          m_pEnd(buffer),
          m_pLimit(buffer + size),
          m_bPads(out.width() != 0) {}
    COutput(const COutput&) = delete;
    COutput& operator=(const COutput&) = delete;

    // A markup token.
    template <std::size_t N>
    void Literal(const char (&token)[N]) {
        if (m_bPads || Room() < N - 1) {
            LiteralSlowly(token);
            return;
        }
        std::memcpy(m_pEnd, token, N - 1);
        m_pEnd += N - 1;
    }

    // A name, value or text, escaped. Throw the parser's transcoding exception.
    void Text(const SKnownText& text) {
        if (text.Is(KNOWN_UTF8)) {
            EscapeUtf8(text.text, text.length);
        } else {
            Escape(text.text);
        }
    }
    // One of which nothing is known; NULL writes nothing.
    void Text(const char* text) {
        if (text != nullptr) {
            Escape(text);
        }
    }

    // A literal and behind it a name. No character of markup is part of a name, so one that can be
    // written as it stands is not escaped.
    template <std::size_t N>
    void Name(const char (&token)[N], const SKnownText& name) {
        const bool isPlain = name.Is(KNOWN_NAME) && (name.known & (KNOWN_UTF8 | KNOWN_ASCII)) != 0;
        if (!isPlain || m_bPads || Room() < N - 1 + name.length) {
            NameSlowly(token, name, isPlain);
            return;
        }
        std::memcpy(m_pEnd, token, N - 1);
        CopyShort(m_pEnd + N - 1, name.text, name.length);
        m_pEnd += N - 1 + name.length;
    }

    // Base64, unescaped; with the markers of a CDATA section around it or without.
    void Base64(const unsigned char* data, std::size_t length, bool cdata);
    void Base64(const CBase64Text& text, bool cdata);

    // A line end, the indentation `indent` and behind it `tabs` TABs. The line end is a token.
    void NewLine(const char* indent, std::size_t tabs);
    // A line end and `tabs` TABs as one piece that is no token, so that no width pads it.
    void PlainNewLine(std::size_t tabs) {
        if (tabs <= 8 && Room() >= 10) {
            std::memcpy(m_pEnd, "\r\n\t\t\t\t\t\t\t\t", 10);
            m_pEnd += 2 + tabs;
            return;
        }
        Bytes("\r\n", 2);
        Tabs(tabs);
    }

    void Flush();

    // Runs a walk that writes to this output, and flushes when it is done and also when an
    // exception leaves it, which goes on.
    template <typename Walk>
    void FlushAfter(Walk walk) {
        try {
            walk();
        } catch (...) {
            try {
                Flush();
            } catch (...) {  // the stream's own exception; the one under way came first
            }
            throw;
        }
        Flush();
    }

    // The stream, for somebody else to write to; everything before is written. Call Resume
    // afterwards.
    std::ostream& Suspend() {
        Flush();
        return m_Out;
    }
    void Resume() { m_bPads = m_Out.width() != 0; }

private:
    friend class CPen;

    std::size_t Room() const noexcept { return static_cast<std::size_t>(m_pLimit - m_pEnd); }
    void Bytes(const char* bytes, std::size_t length) {
        if (length <= Room()) {
            std::memcpy(m_pEnd, bytes, length);
            m_pEnd += length;
        } else {
            BytesBeyondRoom(bytes, length);
        }
    }
    void Tabs(std::size_t tabs);
    void Write(const char* bytes, std::streamsize length);
    void BytesBeyondRoom(const char* bytes, std::size_t length);
    void LiteralSlowly(const char* token);
    void NameSlowly(const char* token, const SKnownText& name, bool isPlain);
    void Escape(const char* text);
    void EscapeUtf8(const char* text, std::size_t length);
    void EscapeByParser(const char* text);
    void EscapeCharacter(unsigned char ascii);

    std::ostream& m_Out;
    char* const m_pBuffer;
    char* m_pEnd;
    char* const m_pLimit;
    bool m_bPads;
};

}  // namespace norvask

#endif
