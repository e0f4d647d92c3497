// CWideCharToString: the fast way where narrow strings are UTF-8 and the text is well-formed, the
// parser's transcoder for everything else.
#include "norvask/wide_char_to_string.h"

#include <cstring>
#include <xercesc/util/XMLString.hpp>

#include "foundation/parser_state.h"
#include "foundation/utf8.h"

namespace norvask {

CWideCharToString::CWideCharToString() noexcept = default;
CWideCharToString::CWideCharToString(const CWideCharToString&) noexcept = default;
CWideCharToString::CWideCharToString(CWideCharToString&&) noexcept = default;
CWideCharToString& CWideCharToString::operator=(const CWideCharToString&) noexcept = default;
CWideCharToString& CWideCharToString::operator=(CWideCharToString&&) noexcept = default;

char* CWideCharToString::Convert(const char16_t* source, std::size_t) {
    if (source == nullptr) {
        return nullptr;
    }
    if (LocalEncodingIsUtf8()) {
        const std::size_t units = Utf16Length(source);
        char* text = AllocString(Utf8Capacity(units) + 1);
        const std::size_t bytes = Utf16ToUtf8(source, units, text);
        if (bytes != NOT_UTF16) {
            text[bytes] = '\0';
            return text;
        }
        FreeString(text);
    }
    char* transcoded = xercesc::XMLString::transcode(source);
    char* text = nullptr;
    try {
        const std::size_t size = std::strlen(transcoded) + 1;
        text = AllocString(size);
        std::memcpy(text, transcoded, size);
    } catch (...) {
        xercesc::XMLString::release(&transcoded);
        throw;
    }
    xercesc::XMLString::release(&transcoded);
    return text;
}

char* CWideCharToString::AllocString(std::size_t bytes) { return new char[bytes]; }

void CWideCharToString::FreeString(char* s) { delete[] s; }

}  // namespace norvask
