// Internal. CContent: reads what stands between the tags of a plain document.
//
// A function that reads returns false where it meets something that is not plain: then the document
// is left to the parser, and nothing that was read counts.
#ifndef NORVASK_LOAD_PLAIN_CONTENT_H
#define NORVASK_LOAD_PLAIN_CONTENT_H

#include "foundation/known_text.h"
#include "load/plain/characters.h"
#include "load/plain/runs.h"
#include "load/plain/window.h"

namespace norvask {

// A piece of the token, decoded where it lies.
struct SPiece {
    std::size_t begin;  // in the token
    std::size_t length;
    bool isAscii;
};

class CContent {
public:
    CContent(CByteSource& source, std::size_t window) : m_Window(source, window) {}

    CWindow& Window() noexcept { return m_Window; }

    // With the cursor on the first byte: looks through the whole document for anything but UTF-8,
    // and begins again there.
    bool IsUtf8();

    // Each reads a production and leaves the cursor behind it.
    bool ReadMisc();     // Misc*, up to anything else or the end of the document
    bool ReadText();     // CharData and Reference, up to a '<'; adds to the text
    bool ReadComment();  // with the cursor on "<!--"
    bool ReadPI();       // with the cursor on "<?"
    bool ReadS() {       // S; returns whether there was any
        return IsByte(m_Window.Peek(), BYTE_SPACE) && SkipS();
    }

    // Whether these characters come next.
    bool IsNext(const char* characters, std::size_t length) {
        return m_Window.Has(length) && std::memcmp(m_Window.At(), characters, length) == 0;
    }

    // The same within a token.
    bool ReadNCName(bool& isAscii);    // false is written for a name that is not ASCII
    bool ReadAttValue(SPiece& value);  // with the cursor on the quote; normalised
    bool ReadCDSect(SPiece& content);  // with the cursor on "<![CDATA["

    // The text since the last ClearText. Valid until something is read; the first byte of the token
    // is lost.
    bool HasText() const noexcept { return m_Window.TextLength() != 0; }
    SKnownText Text() noexcept {
        return {m_Window.Text(), m_Window.TextLength(), Known(m_bTextIsAscii)};
    }
    void ClearText() noexcept {
        m_Window.ClearText();
        m_bTextIsAscii = true;
    }
    // A piece. Valid until something is read; the byte behind it is lost, which is a delimiter.
    SKnownText Piece(const SPiece& piece) noexcept {
        char* const text = m_Window.Token() + piece.begin;
        text[piece.length] = '\0';
        return {text, piece.length, Known(piece.isAscii)};
    }

private:
    static unsigned int Known(bool isAscii) noexcept {
        return isAscii ? KNOWN_UTF8 | KNOWN_ASCII : KNOWN_UTF8;
    }

    bool SkipS();
    bool ReadCharsUpTo(char stop);

    enum class EStep { ON, DONE, LEAVE };
    template <ERun RUN, typename Add, typename Other>
    bool ReadRuns(bool& isAscii, Add add, Other other);
    template <typename Add>
    EStep ReplaceLineEnd(char by, Add add);
    template <typename Add>
    EStep ReplaceReference(bool& isAscii, Add add);
    template <typename Add>
    EStep KeepCharacter(Add add);
    void AddToPiece(SPiece& piece, const char* characters, std::size_t length) noexcept;

    CWindow m_Window;
    bool m_bTextIsAscii = true;
    bool m_bIsUtf8 = false;  // the whole document is known to be well-formed
};

}  // namespace norvask

#endif
