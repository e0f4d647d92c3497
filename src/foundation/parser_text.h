// Internal. CParserString: a narrow string as the parser takes it.
#ifndef NORVASK_FOUNDATION_PARSER_TEXT_H
#define NORVASK_FOUNDATION_PARSER_TEXT_H

#include <type_traits>
#include <xercesc/util/XMLString.hpp>
#include <xercesc/util/XercesDefs.hpp>

namespace norvask {

// The public headers show the parser's strings as char16_t so that clients need no parser header.
static_assert(std::is_same<XMLCh, char16_t>::value, "the parser's strings are char16_t strings");

// By the parser's local transcoder; released at the end of the scope.
class CParserString {
public:
    explicit CParserString(const char* text) : m_pText(xercesc::XMLString::transcode(text)) {}
    CParserString(const CParserString&) = delete;
    CParserString& operator=(const CParserString&) = delete;
    ~CParserString() { xercesc::XMLString::release(&m_pText); }

    // NULL for a text that the transcoder refuses.
    const XMLCh* Get() const noexcept { return m_pText; }

private:
    XMLCh* m_pText;
};

}  // namespace norvask

#endif
