#include "foundation/parser_text.h"

#include <cstring>
#include <new>
#include <type_traits>
#include <xercesc/util/Base64.hpp>

namespace norvask {
namespace {

// The public headers show the parser's strings as char16_t so that clients need no parser header.
static_assert(std::is_same<XMLCh, char16_t>::value, "the parser's strings are char16_t strings");

}  // namespace

bool g_bLocalEncodingIsUtf8 = false;

void ProbeLocalEncoding() {
    // One character of each length: e with acute accent, the euro sign, a smiling face.
    const char narrow[] = "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80";
    const XMLCh wide[] = {0x61, 0xE9, 0x20AC, 0xD83D, 0xDE00, 0};
    const CParserString parsed(narrow);
    char* back = xercesc::XMLString::transcode(wide);
    g_bLocalEncodingIsUtf8 = xercesc::XMLString::equals(parsed.Get(), wide) && back != nullptr &&
                             std::strcmp(back, narrow) == 0;
    xercesc::XMLString::release(&back);
}

CBase64Text::CBase64Text(const unsigned char* data, std::size_t length)
    : m_pText(nullptr), m_nLength(0) {
    if (data != nullptr && length != 0) {
        m_pText = xercesc::Base64::encode(data, length, &m_nLength);
        if (m_pText == nullptr) {
            m_nLength = 0;
        }
    }
}

// Without a memory manager the encoder allocates with the general operator new.
CBase64Text::~CBase64Text() { ::operator delete(m_pText); }

}  // namespace norvask
