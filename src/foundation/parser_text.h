// Internal. The seam to the parser's transcoders: what the local encoding of narrow strings is, and
// owners for the blocks that the parser hands out.
#ifndef NORVASK_FOUNDATION_PARSER_TEXT_H
#define NORVASK_FOUNDATION_PARSER_TEXT_H

#include <cstddef>
#include <xercesc/util/XMLString.hpp>
#include <xercesc/util/XercesDefs.hpp>

namespace norvask {

// Asks the parser's local transcoder, once the parser is initialised, whether narrow strings are UTF-8.
void ProbeLocalEncoding();

// The answer of the probe; false before. When it is false the fast paths for UTF-8 stand back and all
// text goes through the parser's transcoders.
inline bool LocalEncodingIsUtf8() noexcept {
    extern bool g_bLocalEncodingIsUtf8;
    return g_bLocalEncodingIsUtf8;
}

// A narrow string as a parser string, released at the end of the scope.
class CParserString {
public:
    explicit CParserString(const char* text) : m_pText(xercesc::XMLString::transcode(text)) {}
    CParserString(const CParserString&) = delete;
    CParserString& operator=(const CParserString&) = delete;
    ~CParserString() { xercesc::XMLString::release(&m_pText); }

    const XMLCh* Get() const noexcept { return m_pText; }

private:
    XMLCh* m_pText;
};

// The bytes that the parser's Base64 encoder makes of a block, line ends included; no bytes for an empty
// block. Released at the end of the scope.
class CBase64Text {
public:
    CBase64Text(const unsigned char* data, std::size_t length);
    CBase64Text(const CBase64Text&) = delete;
    CBase64Text& operator=(const CBase64Text&) = delete;
    ~CBase64Text();

    // Zero-terminated; NULL when there is nothing.
    const char* Get() const noexcept { return reinterpret_cast<const char*>(m_pText); }
    std::size_t Length() const noexcept { return m_nLength; }

private:
    XMLByte* m_pText;
    XMLSize_t m_nLength;
};

}  // namespace norvask

#endif
