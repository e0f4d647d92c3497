// Escaping and handing over to the stream.
#include "write/output.h"

#include <cxxabi.h>

#include <cstdint>
#include <cstring>

#include "foundation/base64.h"
#include "foundation/markup.h"
#include "foundation/parser_state.h"
#include "foundation/string_converter.h"
#include "foundation/utf8.h"
#include "write/suspects.h"

namespace norvask {
namespace {

bool IsPlain(char c) noexcept {
    const unsigned char byte = static_cast<unsigned char>(c);
    return byte >= 0x80 || MarkupOf(byte) == EMarkup::PLAIN;
}

// Copies the leading bytes that are written as they stand and returns how many. `out` has room for
// all.
std::size_t CopyPlainSlowly(const char* text, std::size_t length, char* out) noexcept {
    std::size_t i = 0;
    for (; i != length && IsPlain(text[i]); ++i) {
        out[i] = text[i];
    }
    return i;
}

#if defined(__SSE2__)
// The same, a register at a time; what is left at the end is read together with what comes before
// it.
std::size_t CopyPlain(const char* text, std::size_t length, char* out) noexcept {
    if (length < 4) {
        return CopyPlainSlowly(text, length, out);
    }
    if (length < 8) {
        std::int32_t first = 0;
        std::int32_t last = 0;
        std::memcpy(&first, text, 4);
        std::memcpy(&last, text + length - 4, 4);
        const __m128i bytes = _mm_unpacklo_epi32(_mm_cvtsi32_si128(first), _mm_cvtsi32_si128(last));
        if ((SuspectBytes(bytes) & 0xFF) != 0) {
            return CopyPlainSlowly(text, length, out);
        }
        std::memcpy(out, &first, 4);
        std::memcpy(out + length - 4, &last, 4);
        return length;
    }
    std::size_t i = 0;
    for (; i + 16 <= length; i += 16) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text + i));
        if (SuspectBytes(bytes) != 0) {
            return i + CopyPlainSlowly(text + i, length - i, out + i);
        }
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out + i), bytes);
    }
    for (; i < length; i += 8) {
        const std::size_t at = i + 8 <= length ? i : length - 8;
        const __m128i bytes = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(text + at));
        if ((SuspectBytes(bytes) & 0xFF) != 0) {
            return i + CopyPlainSlowly(text + i, length - i, out + i);
        }
        _mm_storel_epi64(reinterpret_cast<__m128i*>(out + at), bytes);
    }
    return length;
}
#else
std::size_t CopyPlain(const char* text, std::size_t length, char* out) noexcept {
    return CopyPlainSlowly(text, length, out);
}
#endif

}  // namespace

void COutput::Flush() {
    if (m_pEnd != m_pBuffer) {
        const std::streamsize length = m_pEnd - m_pBuffer;
        m_pEnd = m_pBuffer;  // also when the stream throws, so that nothing is written twice
        Write(m_pBuffer, length);
    }
}

// What std::ostream::write does, without its preparations where there is nothing to prepare.
void COutput::Write(const char* bytes, std::streamsize length) {
    if (!m_Out.good() || m_Out.tie() != nullptr || (m_Out.flags() & std::ios::unitbuf) != 0 ||
        m_Out.exceptions() != std::ios::goodbit) {
        m_Out.write(bytes, length);
        return;
    }
    try {
        if (m_Out.rdbuf()->sputn(bytes, length) == length) {
            return;
        }
    } catch (const abi::__forced_unwind&) {  // the end of a thread is not the stream's to stop
        m_Out.setstate(std::ios::badbit);
        throw;
    } catch (...) {  // a stream without exceptions keeps those of its buffer to itself
    }
    m_Out.setstate(std::ios::badbit);
}

void COutput::BytesBeyondRoom(const char* bytes, std::size_t length) {
    Flush();
    if (length > Room()) {
        Write(bytes, static_cast<std::streamsize>(length));
        return;
    }
    std::memcpy(m_pEnd, bytes, length);
    m_pEnd += length;
}

void COutput::LiteralSlowly(const char* token) {
    if (!m_bPads) {
        Bytes(token, std::strlen(token));
        return;
    }
    Flush();
    m_Out << token;
    Resume();
}

void COutput::NameSlowly(const char* token, const SKnownText& name, bool isPlain) {
    LiteralSlowly(token);
    if (isPlain) {
        Bytes(name.text, name.length);
    } else {
        Text(name);
    }
}

// An ASCII character that is not written as it stands.
void COutput::EscapeCharacter(unsigned char ascii) {
    const EMarkup markup = MarkupOf(ascii);
    if (markup != EMarkup::DROPPED) {
        Bytes(ReferenceFor(markup), REFERENCE_LENGTH);
    }
}

void COutput::EscapeUtf8(const char* text, std::size_t length) {
    while (length != 0) {
        if (Room() == 0) {
            Flush();
        }
        const std::size_t piece = length < Room() ? length : Room();
        const std::size_t plain = CopyPlain(text, piece, m_pEnd);
        m_pEnd += plain;
        text += plain;
        length -= plain;
        if (plain != piece) {
            EscapeCharacter(static_cast<unsigned char>(*text));
            ++text;
            --length;
        }
    }
}

void COutput::Escape(const char* text) {
    const char* end = text;
    if (LocalEncodingIsUtf8()) {
        const std::size_t length = std::strlen(text);
        if (IsAscii(text, length)) {
            EscapeUtf8(text, length);
            return;
        }
        // The well-formed beginning, then whatever is left.
        end = EndOfUtf8(text);
        EscapeUtf8(text, static_cast<std::size_t>(end - text));
    }
    if (*end != '\0') {
        EscapeByParser(end);
    }
}

// The rest of a text that is not well-formed UTF-8, or not UTF-8 at all.
void COutput::EscapeByParser(const char* text) {
    Flush();
    CStringConverter converter(text);
    char* data = nullptr;
    std::size_t bytes = 0;
    converter.GetEscapedUTF8(data, bytes);
    Bytes(data, bytes);
}

void COutput::Base64(const unsigned char* data, std::size_t length, bool cdata) {
    Base64(CBase64Text(data, length), cdata);
}

void COutput::Base64(const CBase64Text& text, bool cdata) {
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
    if (*indent != '\0') {
        Text(indent);
    }
    Tabs(tabs);
}

void COutput::Tabs(std::size_t tabs) {
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
