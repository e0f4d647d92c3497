// CSourcePlaces: decoding, as far as lines and columns need it.
#include "load/watch/source_places.h"

#include <strings.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <initializer_list>
#include <iterator>
#include <utility>

#include "foundation/utf8.h"
#include "load/source/byte_source.h"
#include "norvask/error.h"

namespace norvask {
namespace {

// A declaration is not longer; the parser looks no further for its end.
const std::size_t MOST_DECLARATION = 1024;
const std::size_t BLOCK = 65536;
const std::size_t MOST_UTF8 = 4;

bool IsSpace(char c) noexcept { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

// The value of a pseudo-attribute in a declaration at the front; empty for none.
std::string Declared(const std::string& front, const std::string& name) {
    if (front.compare(0, 5, "<?xml") != 0) {
        return "";
    }
    const std::string declaration = front.substr(0, front.find("?>"));
    std::size_t at = declaration.find(name);
    if (at == std::string::npos) {
        return "";
    }
    at += name.size();
    while (at < declaration.size() && (IsSpace(declaration[at]) || declaration[at] == '=')) {
        ++at;
    }
    if (at >= declaration.size()) {
        return "";
    }
    const std::size_t end = declaration.find(declaration[at], at + 1);
    return declaration.substr(at + 1, end == std::string::npos ? end : end - at - 1);
}

bool IsNamed(const std::string& encoding, const char* name) noexcept {
    return strcasecmp(encoding.c_str(), name) == 0;
}

// Of the encodings with one byte a character, those that are met.
bool HasOneByteACharacter(const std::string& encoding) {
    static const char* const BEGINNINGS[] = {"ISO-8859-", "ISO8859-", "windows-12", "US-ASCII",
                                             "ASCII",     "latin",    "KOI8-",      "macintosh"};
    return std::any_of(
        std::begin(BEGINNINGS), std::end(BEGINNINGS), [&encoding](const char* beginning) {
            return strncasecmp(encoding.c_str(), beginning, std::strlen(beginning)) == 0;
        });
}

// The character of a well-formed sequence of two or three bytes.
char32_t DecodedShort(const char* at, std::size_t length) noexcept {
    const auto bits = [at](std::size_t i) {
        return static_cast<char32_t>(static_cast<unsigned char>(at[i]) & 0x3F);
    };
    return length == 2 ? ((bits(0) & 0x1F) << 6) | bits(1)
                       : ((bits(0) & 0x0F) << 12) | (bits(1) << 6) | bits(2);
}

}  // namespace

void CSourcePlaces::Correct(std::vector<SXMLProblem*> problems) {
    m_Problems = std::move(problems);
    std::stable_sort(
        m_Problems.begin(), m_Problems.end(), [](const SXMLProblem* a, const SXMLProblem* b) {
            return std::make_pair(a->line, a->column) < std::make_pair(b->line, b->column);
        });
    m_nNext = 0;
}

void CSourcePlaces::Feed(const char* bytes, std::size_t count) {
    m_Pending.append(bytes, count);
    if (m_Encoding == EEncoding::UNKNOWN) {
        if (m_Pending.size() < MOST_DECLARATION) {
            return;
        }
        Sniff();
    }
    Decode(false);
}

// What is left undecided of the last block is of no interest: there is no End.
void CSourcePlaces::FeedNeeded(CByteSource& source, bool seeksIllFormed) {
    std::vector<char> block(BLOCK);
    for (;;) {
        const std::size_t count = source.Read(block.data(), block.size());
        if (count == 0) {
            End();
            return;
        }
        Feed(block.data(), count);
        if (m_nNext == m_Problems.size() && (IsIllFormed() || !seeksIllFormed)) {
            return;
        }
    }
}

void CSourcePlaces::FeedAll(CByteSource& source, std::uint64_t most) {
    std::vector<char> block(BLOCK);
    while (most != 0) {
        const std::size_t room =
            static_cast<std::size_t>(std::min<std::uint64_t>(most, block.size()));
        const std::size_t count = source.Read(block.data(), room);
        if (count == 0) {
            break;
        }
        Feed(block.data(), count);
        most -= count;
    }
    End();
}

void CSourcePlaces::End() {
    if (m_Encoding == EEncoding::UNKNOWN) {
        Sniff();
    }
    Decode(true);
    Units(1);  // what the parser found at the end
}

// A byte order mark is no character. Four bytes a character and the encodings in which "<" is not
// that of ASCII are not looked at.
void CSourcePlaces::Sniff() {
    const auto begins = [this](std::initializer_list<unsigned char> bytes) {
        return m_Pending.size() >= bytes.size() &&
               std::equal(bytes.begin(), bytes.end(), m_Pending.begin(),
                          [](unsigned char byte, char c) {
                              return byte == static_cast<unsigned char>(c);
                          });
    };
    if (begins({0xFF, 0xFE, 0, 0}) || begins({0, 0, 0xFE, 0xFF}) || begins({'<', 0, 0, 0}) ||
        begins({0, 0, 0, '<'}) || begins({0x4C, 0x6F, 0xA7, 0x94})) {
        m_Encoding = EEncoding::OTHER;
    } else if (begins({0xFF, 0xFE}) || begins({'<', 0})) {
        m_Encoding = EEncoding::UTF16LE;
        m_nAt = m_Pending[0] == '<' ? 0 : 2;
    } else if (begins({0xFE, 0xFF}) || begins({0, '<'})) {
        m_Encoding = EEncoding::UTF16BE;
        m_nAt = m_Pending[0] == '\0' ? 0 : 2;
    } else {
        m_nAt = begins({0xEF, 0xBB, 0xBF}) ? 3 : 0;
        const std::string front = m_Pending.substr(m_nAt, MOST_DECLARATION);
        const std::string encoding = Declared(front, "encoding");
        m_bHasMoreLineEnds = Declared(front, "version") == "1.1";
        if (encoding.empty() || IsNamed(encoding, "UTF-8") || IsNamed(encoding, "UTF8")) {
            m_Encoding = EEncoding::UTF8;
        } else {
            m_Encoding = HasOneByteACharacter(encoding) ? EEncoding::ONE_BYTE : EEncoding::OTHER;
        }
    }
}

void CSourcePlaces::Decode(bool isEnd) {
    if (m_Encoding == EEncoding::UTF8) {
        while (DecodeUtf8(isEnd)) {
        }
    } else if (m_Encoding == EEncoding::OTHER) {
        m_nAt = m_Pending.size();
    } else if (m_Encoding == EEncoding::ONE_BYTE) {
        for (; m_nAt < m_Pending.size(); ++m_nAt) {
            Character(static_cast<unsigned char>(m_Pending[m_nAt]));
        }
    } else {
        while (DecodeUtf16()) {
        }
    }
    m_Pending.erase(0, m_nAt);
    m_nAt = 0;
}

// One character. Behind bytes that are none the places of the parser mean nothing, so they end it.
bool CSourcePlaces::DecodeUtf8(bool isEnd) {
    if (m_nAt == m_Pending.size() || IsIllFormed()) {
        m_nAt = m_Pending.size();
        return false;
    }
    const char* const at = m_Pending.data() + m_nAt;
    const std::size_t left = m_Pending.size() - m_nAt;
    const std::size_t length = Utf8SequenceLength(at);
    if (length > left || length == 0) {
        const auto first = static_cast<unsigned char>(*at);
        if (first == 0) {  // a character that XML does not have, but UTF-8 does
            Character(0);
            ++m_nAt;
            return true;
        }
        if (!isEnd && left < MOST_UTF8) {
            return false;
        }
        Bad(at, left);
        return true;
    }
    if (length == MOST_UTF8) {
        m_bHasPairs = true;
        m_bIsAfterCR = false;
        Units(2);
    } else {
        Character(length == 1 ? static_cast<char32_t>(*at) : DecodedShort(at, length));
    }
    m_nAt += length;
    return true;
}

bool CSourcePlaces::DecodeUtf16() {
    if (m_Pending.size() - m_nAt < 2) {
        return false;
    }
    const auto byte = [this](std::size_t i) {
        return static_cast<unsigned int>(static_cast<unsigned char>(m_Pending[m_nAt + i]));
    };
    const bool isLittle = m_Encoding == EEncoding::UTF16LE;
    const unsigned int unit = isLittle ? byte(0) | (byte(1) << 8) : byte(1) | (byte(0) << 8);
    if (unit >= 0xD800 && unit < 0xDC00) {
        m_bHasPairs = true;
        m_bIsAfterCR = false;
        if (m_Pending.size() - m_nAt < 4) {
            return false;
        }
        Units(2);
        m_nAt += 4;
        return true;
    }
    Character(unit);
    m_nAt += 2;
    return true;
}

// CR LF is one end of a line, and so is a CR alone. XML 1.1 has more.
void CSourcePlaces::Character(char32_t character) {
    const bool isNel = m_bHasMoreLineEnds && character == U'\x85';
    const bool isSecond = m_bIsAfterCR && (character == U'\n' || isNel);
    m_bIsAfterCR = character == U'\r';
    if (isSecond) {
        return;
    }
    Units(1);
    if (character == U'\n' || character == U'\r' || isNel ||
        (m_bHasMoreLineEnds && character == U'\x2028')) {
        ++m_nLine;
        m_nUnits = 0;
        m_nCharacters = 0;
    }
}

// Comes to a character of so many units. The problems in front of it are those of this line whose
// column, counted from 1, is its own or one before it.
void CSourcePlaces::Units(unsigned int units) {
    while (m_nNext < m_Problems.size()) {
        SXMLProblem& problem = *m_Problems[m_nNext];
        if (problem.line > m_nLine ||
            (problem.line == m_nLine && problem.column > m_nUnits + units)) {
            break;
        }
        if (problem.line == m_nLine && problem.column > m_nUnits) {
            problem.column = m_nCharacters + 1;
        }
        ++m_nNext;
    }
    m_nUnits += units;
    ++m_nCharacters;
}

// The bytes up to the next that may begin a character, at most as many as one has.
void CSourcePlaces::Bad(const char* bytes, std::size_t count) {
    m_nBadLine = m_nLine;
    m_nBadColumn = m_nCharacters + 1;
    std::size_t length = 1;
    while (length < count && length < MOST_UTF8 &&
           (static_cast<unsigned char>(bytes[length]) & 0xC0) == 0x80) {
        ++length;
    }
    for (std::size_t i = 0; i < length; ++i) {
        char text[8];
        std::snprintf(text, sizeof text, "%s0x%02X", i == 0 ? "" : " ",
                      static_cast<unsigned int>(static_cast<unsigned char>(bytes[i])));
        m_BadBytes += text;
    }
}

}  // namespace norvask
