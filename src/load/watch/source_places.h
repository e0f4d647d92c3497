// Internal. CSourcePlaces: lines and columns of a document, from its bytes.
//
// The parser counts columns in units of UTF-16, and of bytes that are no UTF-8 it often notices
// only what comes of them. So when a load has failed, the bytes are looked at once more: where a
// line has characters beyond U+FFFF, which are two units, columns are corrected, and the first
// place that is no UTF-8 is found. A source that cannot be read twice is looked at while it is
// read; then nothing can be corrected, but it is known whether there was anything to correct.
//
// The encoding is that of the byte order mark or of the declaration. Of one that is not UTF-8 or
// UTF-16 and has more than one byte a character no columns are known.
#ifndef NORVASK_LOAD_WATCH_SOURCE_PLACES_H
#define NORVASK_LOAD_WATCH_SOURCE_PLACES_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace norvask {

class CByteSource;
struct SXMLProblem;

class CSourcePlaces {
public:
    // Corrects the columns of these problems, which lie in the document, in the order of their
    // lines, as it is fed.
    void Correct(std::vector<SXMLProblem*> problems);

    // The next bytes of the document.
    void Feed(const char* bytes, std::size_t count);
    // Of a source, as far as it can be read, as much as is needed to correct the problems, and, if
    // asked for, to find what is ill-formed.
    void FeedNeeded(CByteSource& source, bool seeksIllFormed);
    // All of a source, as far as it can be read, or as many of its bytes.
    void FeedAll(CByteSource& source, std::uint64_t most = UINT64_MAX);
    // There are no more.
    void End();

    // Where the bytes that were fed end.
    std::uint64_t Line() const noexcept { return m_nLine; }

    // Whether columns can be told in this encoding, once there was an End.
    bool KnowsColumns() const noexcept { return m_Encoding != EEncoding::OTHER; }

    // Whether there was a character beyond U+FFFF.
    bool HasPairs() const noexcept { return m_bHasPairs; }

    // The first bytes that should be UTF-8 and are not: where, counted from 1, and what they are.
    bool IsIllFormed() const noexcept { return m_nBadLine != 0; }
    std::uint64_t BadLine() const noexcept { return m_nBadLine; }
    std::uint64_t BadColumn() const noexcept { return m_nBadColumn; }
    const std::string& BadBytes() const noexcept { return m_BadBytes; }  // "0xC3 0x28"

private:
    enum class EEncoding { UNKNOWN, UTF8, UTF16LE, UTF16BE, ONE_BYTE, OTHER };

    void Sniff();
    void Decode(bool isEnd);
    bool DecodeUtf8(bool isEnd);
    bool DecodeUtf16();
    void Character(char32_t character);
    void Units(unsigned int units);
    void Bad(const char* bytes, std::size_t count);

    EEncoding m_Encoding = EEncoding::UNKNOWN;
    std::string m_Pending;  // bytes that are not decoded yet
    std::size_t m_nAt = 0;  // in them
    std::uint64_t m_nLine = 1;
    std::uint64_t m_nUnits = 0;       // in this line, in front of the next character
    std::uint64_t m_nCharacters = 0;  // the same
    bool m_bIsAfterCR = false;
    bool m_bHasMoreLineEnds = false;  // XML 1.1
    bool m_bHasPairs = false;
    std::uint64_t m_nBadLine = 0;
    std::uint64_t m_nBadColumn = 0;
    std::string m_BadBytes;
    std::vector<SXMLProblem*> m_Problems;
    std::size_t m_nNext = 0;  // of them, the first that is not behind
};

}  // namespace norvask

#endif
