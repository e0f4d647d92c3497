// CStringConverter: every step asks the parser.
#include "foundation/string_converter.h"

#include <cstdint>
#include <cstring>
#include <memory>
#include <vector>
#include <xercesc/util/TransService.hpp>
#include <xercesc/util/XMLChar.hpp>
#include <xercesc/util/XMLUTF8Transcoder.hpp>
#include <xercesc/util/XMLUniDefs.hpp>

#include "foundation/markup.h"
#include "foundation/parser_text.h"

namespace norvask {
namespace {

char* NewCopy(const char* text) {
    const std::size_t size = text == nullptr ? 1 : std::strlen(text) + 1;
    char* copy = new char[size];
    std::memcpy(copy, text == nullptr ? "" : text, size);
    return copy;
}

void Append(std::vector<XMLCh>& out, const char* ascii) {
    while (*ascii != '\0') {
        out.push_back(static_cast<XMLCh>(*ascii++));
    }
}

std::vector<XMLCh> Escaped(const XMLCh* text) {
    std::vector<XMLCh> out;
    out.reserve(2 * xercesc::XMLString::stringLen(text) + 12);
    for (; *text != 0; ++text) {
        const XMLCh unit = *text;
        const EMarkup markup =
            unit < 0x80 ? MarkupOf(static_cast<unsigned char>(unit)) : EMarkup::PLAIN;
        if (markup == EMarkup::PLAIN) {
            out.push_back(unit);
        } else if (markup != EMarkup::DROPPED) {
            Append(out, ReferenceFor(markup));
        }
    }
    return out;
}

}  // namespace

CStringConverter::CStringConverter() : CStringConverter(nullptr) {}

CStringConverter::CStringConverter(const char* text)
    : m_pText(NewCopy(text)), m_pEncoded(nullptr) {}

CStringConverter::CStringConverter(const CStringConverter& other)
    : CStringConverter(other.m_pText) {}

CStringConverter::~CStringConverter() {
    delete[] m_pText;
    delete[] m_pEncoded;
}

void CStringConverter::SetString(const char* text) {
    char* copy = NewCopy(text);
    delete[] m_pText;
    m_pText = copy;
    delete[] m_pEncoded;
    m_pEncoded = nullptr;
}

bool CStringConverter::IsValidName() {
    if (*m_pText == '\0') {
        return false;
    }
    const CParserString name(m_pText);
    return name.Get() != nullptr && xercesc::XMLChar1_0::isValidName(name.Get());
}

// Layout is mostly a line end and blanks, which are passed eight at a time.
bool CStringConverter::IsFormattingWhitespace(const char* text, std::size_t length) noexcept {
    const std::uint64_t BLANKS = 0x2020202020202020U;
    bool hasLineOrTab = false;
    for (std::size_t i = 0; i < length;) {
        std::uint64_t next = 0;
        if (length - i >= sizeof(next)) {
            std::memcpy(&next, text + i, sizeof(next));
        }
        if (next == BLANKS) {
            i += sizeof(next);
            continue;
        }
        const char c = text[i];
        if (c != ' ') {
            if (c != '\n' && c != '\t' && c != '\r') {
                return false;
            }
            hasLineOrTab = true;
        }
        ++i;
    }
    return length == 0 || hasLineOrTab;
}

const char* CStringConverter::GetString() { return m_pText; }

void CStringConverter::GetEscapedUTF8(char*& data, std::size_t& bytes) {
    static const XMLCh UTF8_NAME[] = {xercesc::chLatin_U, xercesc::chLatin_T, xercesc::chLatin_F,
                                      xercesc::chDigit_8, xercesc::chNull};
    const XMLSize_t BLOCK_SIZE = 16384;
    delete[] m_pEncoded;
    m_pEncoded = nullptr;
    data = nullptr;
    bytes = 0;

    std::vector<XMLCh> escaped;
    {
        const CParserString text(m_pText);
        if (text.Get() != nullptr) {
            escaped = Escaped(text.Get());
        }
    }
    const std::size_t capacity = 4 * escaped.size() + 4;
    std::unique_ptr<char[]> encoded(new char[capacity]);
    xercesc::XMLUTF8Transcoder transcoder(UTF8_NAME, BLOCK_SIZE);
    std::size_t done = 0;
    std::size_t length = 0;
    while (done < escaped.size()) {
        XMLSize_t eaten = 0;
        length +=
            transcoder.transcodeTo(escaped.data() + done, escaped.size() - done,
                                   reinterpret_cast<XMLByte*>(encoded.get()) + length,
                                   capacity - length, eaten, xercesc::XMLTranscoder::UnRep_Throw);
        if (eaten == 0) {
            break;  // half a surrogate pair at the very end, which the transcoder leaves unread
        }
        done += eaten;
    }
    m_pEncoded = encoded.release();
    data = m_pEncoded;
    bytes = length;
}

}  // namespace norvask
