#include "write/output.h"

#include "foundation/parser_text.h"
#include "foundation/string_converter.h"
#include "foundation/text_rules.h"
#include "foundation/utf8.h"

namespace norvask {
void COutput::Flush() {
    if (m_pEnd != m_Buffer) {
        const std::streamsize length = m_pEnd - m_Buffer;
        m_pEnd = m_Buffer;  // also when the stream throws, so that nothing is written twice
        m_Out.write(m_Buffer, length);
    }
}

void COutput::BytesBeyondRoom(const char* bytes, std::size_t length) {
    Flush();
    if (length > SIZE) {
        m_Out.write(bytes, static_cast<std::streamsize>(length));
        return;
    }
    std::memcpy(m_pEnd, bytes, length);
    m_pEnd += length;
}

void COutput::LiteralPadded(const char* token) {
    Flush();
    m_Out << token;
    Resume();
}

void COutput::Escaped(const char* text) {
    if (text == nullptr) {
        return;
    }
    const bool isUtf8 = LocalEncodingIsUtf8();
    for (;;) {
        if (Room() < REFERENCE_LENGTH) {
            Flush();
        }
        // Plain characters, until something else comes or the room ends.
        char* out = m_pEnd;
        char* const limit = m_Buffer + SIZE;
        unsigned char c = static_cast<unsigned char>(*text);
        while (c < 0x80 && MarkupOf(c) == EMarkup::PLAIN && out != limit) {
            *out++ = static_cast<char>(c);
            c = static_cast<unsigned char>(*++text);
        }
        m_pEnd = out;
        if (Room() < REFERENCE_LENGTH) {
            continue;
        }
        if (c < 0x80) {
            if (c == 0) {
                return;
            }
            const EMarkup markup = MarkupOf(c);
            if (markup != EMarkup::DROPPED) {
                Bytes(ReferenceFor(markup), REFERENCE_LENGTH);
            }
            ++text;
            continue;
        }
        const std::size_t length = isUtf8 ? Utf8SequenceLength(text) : 0;
        if (length == 0) {
            EscapedByParser(text);
            return;
        }
        std::memcpy(m_pEnd, text, length);
        m_pEnd += length;
        text += length;
    }
}

// The rest of a text that is not well-formed UTF-8, or not UTF-8 at all.
void COutput::EscapedByParser(const char* text) {
    Flush();
    CStringConverter converter(text);
    char* data = nullptr;
    std::size_t bytes = 0;
    converter.GetEscapedUTF8(data, bytes);
    Bytes(data, bytes);
}

void COutput::Base64(const unsigned char* data, std::size_t length, bool cdata) {
    const CBase64Text text(data, length);
    if (cdata) {
        Literal("<![CDATA[");
    }
    if (text.Length() != 0) {
        Bytes(text.Get(), text.Length());
    }
    if (cdata) {
        Literal("]]>");
    }
}

void COutput::NewLine(const char* indent, std::size_t tabs) {
    Literal("\r\n");
    Escaped(indent);
    while (tabs != 0) {
        if (Room() == 0) {
            Flush();
        }
        const std::size_t piece = tabs < Room() ? tabs : Room();
        std::memset(m_pEnd, '\t', piece);
        m_pEnd += piece;
        tabs -= piece;
    }
}

}  // namespace norvask
