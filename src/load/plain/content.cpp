// CContent: one function for each production. A loop over characters runs over ASCII of the right
// kind, and stops at anything else to find out what it is: the end of what was read, too.
#include "load/plain/content.h"

#include <strings.h>

#include "foundation/utf8.h"
#include "load/plain/references.h"

namespace norvask {

bool CContent::IsUtf8() {
    if (m_Window.SourceBytes() != nullptr) {
        m_bIsUtf8 =
            Utf8Length(m_Window.SourceBytes(), m_Window.SourceSize()) == m_Window.SourceSize();
        return m_bIsUtf8;
    }
    for (;;) {
        m_Window.GoTo(m_Window.At() + Utf8Length(m_Window.At(), m_Window.Unread()));
        m_Window.BeginToken();
        if (m_Window.Unread() >= MOST_CHAR_BYTES || !m_Window.More()) {
            // What is read once more may have changed.
            m_bIsUtf8 = m_Window.IsAtEnd() && m_Window.IsWhole();
            return m_Window.IsAtEnd() && m_Window.Restart();
        }
    }
}

bool CContent::SkipS() {
    do {
        m_Window.GoTo(EndOfKind(m_Window.At(), BYTE_SPACE));
    } while (IsByte(m_Window.Peek(), BYTE_SPACE));
    return true;
}

bool CContent::ReadMisc() {
    for (;;) {
        m_Window.BeginToken();
        while (IsByte(m_Window.Peek(), BYTE_SPACE)) {
            m_Window.GoTo(EndOfKind(m_Window.At(), BYTE_SPACE));
            m_Window.BeginToken();
        }
        const bool isPI = IsNext("<?", 2);
        if (!isPI && !IsNext("<!--", 4)) {
            return true;
        }
        if (!(isPI ? ReadPI() : ReadComment())) {
            return false;
        }
    }
}

bool CContent::ReadNCName(bool& isAscii) {
    bool isFirst = true;
    for (;;) {
        char* const begin = m_Window.At();
        char* const end = EndOfKind(begin, isFirst ? BYTE_NAME_START : BYTE_NAME);
        m_Window.GoTo(end);
        if (end != begin) {
            isFirst = false;
        } else if (!IsAsciiByte(*end)) {
            if (m_Window.Unread() < MOST_CHAR_BYTES && m_Window.More()) {
                continue;
            }
            const std::size_t length = NameCharLength(end, isFirst);
            if (length == 0) {
                return false;
            }
            m_Window.GoTo(end + length);
            isFirst = false;
            isAscii = false;
        } else if (m_Window.Unread() != 0 || !m_Window.More()) {
            return !isFirst;
        }
    }
}

// The characters are not kept.
bool CContent::ReadCharsUpTo(char stop) {
    for (;;) {
        char* at = m_Window.At();
        while (IsByte(*at, BYTE_CHAR) && *at != stop) {
            ++at;
        }
        m_Window.GoTo(at);
        m_Window.BeginToken();
        if (*at == stop) {
            return true;
        }
        if (m_Window.Unread() < MOST_CHAR_BYTES && m_Window.More()) {
            continue;
        }
        const std::size_t length = IsAsciiByte(*at) ? 0 : CharLength(at);
        if (length == 0) {
            return false;
        }
        m_Window.GoTo(at + length);
    }
}

bool CContent::ReadComment() {
    m_Window.GoTo(m_Window.At() + std::strlen("<!--"));
    do {
        m_Window.BeginToken();
        if (!ReadCharsUpTo('-') || !m_Window.Has(3)) {
            return false;
        }
        m_Window.GoTo(m_Window.At() + 1);
    } while (*m_Window.At() != '-');
    m_Window.GoTo(m_Window.At() + 1);
    return m_Window.Skip('>');
}

bool CContent::ReadPI() {
    m_Window.GoTo(m_Window.At() + 2);
    m_Window.BeginToken();
    bool isAscii = true;
    if (!ReadNCName(isAscii)) {
        return false;
    }
    if (m_Window.InToken(m_Window.At()) == 3 && strncasecmp(m_Window.Token(), "xml", 3) == 0) {
        return false;
    }
    if (!IsByte(m_Window.Peek(), BYTE_SPACE)) {
        return m_Window.Skip("?>", 2);
    }
    do {
        m_Window.BeginToken();
        if (!ReadCharsUpTo('?') || !m_Window.Has(2)) {
            return false;
        }
        m_Window.GoTo(m_Window.At() + 1);
    } while (*m_Window.At() != '>');
    m_Window.GoTo(m_Window.At() + 1);
    return true;
}

// Reads runs, of which `add` receives each, one before each other character; it may be empty.
// `other` treats the other characters.
template <ERun RUN, typename Add, typename Other>
bool CContent::ReadRuns(bool& isAscii, Add add, Other other) {
    for (;;) {
        char* const begin = m_Window.At();
        bool isRunAscii = true;
        char* end = EndOfRun<RUN>(begin, isRunAscii);
        if (!isRunAscii) {
            isAscii = false;
            end = begin + CharsLength(begin, static_cast<std::size_t>(end - begin), m_bIsUtf8);
        }
        m_Window.GoTo(end);
        add(begin, static_cast<std::size_t>(end - begin));
        EStep step = EStep::ON;
        if (*end != '\0' && IsAsciiByte(*end)) {
            step = other(*end);
        } else if (m_Window.Unread() >= MOST_CHAR_BYTES || !m_Window.More()) {
            // Not the end of what was read, nor a character that is cut off there.
            step = EStep::LEAVE;
        }
        if (step != EStep::ON) {
            return step == EStep::DONE;
        }
    }
}

// CR LF is one, and so is a CR alone.
template <typename Add>
CContent::EStep CContent::ReplaceLineEnd(char by, Add add) {
    const bool isPair = IsNext("\r\n", 2);
    char* const at = m_Window.At();
    *at = by;
    add(at, 1);
    m_Window.GoTo(at + (isPair ? 2 : 1));
    return EStep::ON;
}

template <typename Add>
CContent::EStep CContent::ReplaceReference(bool& isAscii, Add add) {
    m_Window.Has(MOST_REFERENCE_BYTES);
    char* const at = m_Window.At();
    const SReference reference = ReadReference(at);
    if (reference.length == 0) {
        return EStep::LEAVE;
    }
    isAscii = isAscii && reference.bytes == 1;
    std::memcpy(at, reference.character, reference.bytes);
    add(at, reference.bytes);
    m_Window.GoTo(at + reference.length);
    return EStep::ON;
}

template <typename Add>
CContent::EStep CContent::KeepCharacter(Add add) {
    char* const at = m_Window.At();
    add(at, 1);
    m_Window.GoTo(at + 1);
    return EStep::ON;
}

void CContent::AddToPiece(SPiece& piece, const char* characters, std::size_t length) noexcept {
    char* const end = m_Window.Token() + piece.begin + piece.length;
    if (end != characters) {
        std::memmove(end, characters, length);
    }
    piece.length += length;
}

bool CContent::ReadText() {
    const auto add = [this](const char* characters, std::size_t length) {
        m_Window.AddText(characters, length);
        m_Window.BeginToken();
    };
    return ReadRuns<ERun::TEXT>(m_bTextIsAscii, add, [&](char character) {
        switch (character) {
            case '<':
                return EStep::DONE;
            case '&':
                return ReplaceReference(m_bTextIsAscii, add);
            case '\r':
                return ReplaceLineEnd('\n', add);
            case ']':
                return IsNext("]]>", 3) ? EStep::LEAVE : KeepCharacter(add);
            default:
                return EStep::LEAVE;
        }
    });
}

bool CContent::ReadCDSect(SPiece& content) {
    m_Window.GoTo(m_Window.At() + std::strlen("<![CDATA["));
    content = {m_Window.InToken(m_Window.At()), 0, true};
    const auto add = [&](const char* characters, std::size_t length) {
        AddToPiece(content, characters, length);
    };
    const bool isRead = ReadRuns<ERun::CDATA>(content.isAscii, add, [&](char character) {
        switch (character) {
            case ']':
                return IsNext("]]>", 3) ? EStep::DONE : KeepCharacter(add);
            case '\r':
                return ReplaceLineEnd('\n', add);
            default:
                return EStep::LEAVE;
        }
    });
    return isRead && m_Window.Skip("]]>", 3);
}

// White space that stands for itself becomes blanks, each line end one. A quote of the other kind
// is a character like any other.
bool CContent::ReadAttValue(SPiece& value) {
    const char quote = m_Window.Peek();
    if (quote != '"' && quote != '\'') {
        return false;
    }
    m_Window.GoTo(m_Window.At() + 1);
    value = {m_Window.InToken(m_Window.At()), 0, true};
    const auto add = [&](const char* characters, std::size_t length) {
        AddToPiece(value, characters, length);
    };
    const bool isRead = ReadRuns<ERun::VALUE>(value.isAscii, add, [&](char character) {
        if (character == quote) {
            return EStep::DONE;
        }
        switch (character) {
            case '&':
                return ReplaceReference(value.isAscii, add);
            case '\r':
            case '\n':
            case '\t':
                return ReplaceLineEnd(' ', add);
            case '"':
            case '\'':
                return KeepCharacter(add);
            default:
                return EStep::LEAVE;
        }
    });
    return isRead && m_Window.Skip(quote);
}

}  // namespace norvask
