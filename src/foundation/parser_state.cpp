// What the library knows of the parser as a whole: plain values, written while the library is
// loaded.
#include "foundation/parser_state.h"

#include <cstring>

#include "foundation/errors.h"
#include "foundation/parser_text.h"

namespace norvask {
namespace {

bool s_bInitialised = false;

}  // namespace

bool g_bLocalEncodingIsUtf8 = false;

void SetParserInitialised(bool initialised) noexcept { s_bInitialised = initialised; }

void RequireParserInitialised() {
    if (!s_bInitialised) {
        ThrowParserNotInitialised();
    }
}

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

}  // namespace norvask
