// The text forms of typed values, reading side: the static parsers of CXMLSaxHandler.
#include <climits>
#include <clocale>
#include <cstdlib>
#include <cstring>
#include <new>

#include <xercesc/framework/MemoryManager.hpp>
#include <xercesc/util/Base64.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include "foundation/utf8.h"
#include "norvask/sax_handler.h"

namespace norvask {
namespace {

const int ABSENT = -1;

bool IsNothing(const char* text) noexcept { return text == nullptr || *text == '\0'; }

bool IsBlank(char c) noexcept { return c == ' ' || (c >= '\t' && c <= '\r'); }

bool IsDigit(char c) noexcept { return c >= '0' && c <= '9'; }

const char* SkipBlanks(const char* text) noexcept {
    while (IsBlank(*text)) {
        ++text;
    }
    return text;
}

// The leading decimal integer, with blanks and a sign before it; NULL when there is none, else the end of
// it. What does not fit becomes the nearest value that does.
template <typename Integer>
const char* ReadInteger(const char* text, Integer lowest, Integer highest,
                        Integer& value) noexcept {
    text = SkipBlanks(text);
    const bool negative = *text == '-';
    if (negative || *text == '+') {
        ++text;
    }
    if (!IsDigit(*text)) {
        return nullptr;
    }
    Integer result = 0;
    for (; IsDigit(*text); ++text) {
        const Integer digit = static_cast<Integer>(*text - '0');
        if (negative) {
            result = result < (lowest + digit) / 10 ? lowest : result * 10 - digit;
        } else {
            result = result > (highest - digit) / 10 ? highest : result * 10 + digit;
        }
    }
    value = result;
    return text;
}

// Reads a form such as "d-d-dTd:d:d": each 'd' is an integer for the next field, any other character
// stands for itself. Answers whether all fields were read; those before a failure stay written.
bool Scan(const char* text, const char* form, int* const* fields) noexcept {
    for (; *form != '\0'; ++form) {
        if (*form == 'd') {
            text = ReadInteger(text, INT_MIN, INT_MAX, **fields++);
            if (text == nullptr) {
                return false;
            }
        } else if (*text++ != *form) {
            return false;
        }
    }
    return true;
}

// The "C" locale for reading numbers, made once.
locale_t NumericLocale() {
    static const locale_t s_Locale = newlocale(LC_ALL_MASK, "C", nullptr);
    return s_Locale;
}

// Allocates the decoded block. A manager of our own, because the block may be released after the parser
// has been terminated and taken its manager with it.
class CBlockMemory : public xercesc::MemoryManager {
public:
    xercesc::MemoryManager* getExceptionMemoryManager() override {
        return xercesc::XMLPlatformUtils::fgMemoryManager;
    }
    void* allocate(XMLSize_t size) override { return ::operator new(size); }
    void deallocate(void* p) override { ::operator delete(p); }
};

}  // namespace

unsigned char* CXMLSaxHandler::m_pBinBlock = nullptr;
std::size_t CXMLSaxHandler::m_nBinBlockLength = 0;

bool CXMLSaxHandler::GetDate(const char* text, int& year, int& month, int& day) {
    if (IsNothing(text)) {
        return false;
    }
    int* const yearMonthDay[] = {&year, &month, &day};
    int* const monthDay[] = {&month, &day};
    int* const onlyDay[] = {&day};
    if (Scan(text, "d-d-d", yearMonthDay)) {
        return true;
    }
    // An attempt that failed may have written a field, so each form marks what it does not have.
    year = ABSENT;
    if (Scan(text, "--d-d", monthDay)) {
        return true;
    }
    day = ABSENT;
    if (Scan(text, "d-d", yearMonthDay)) {
        return true;
    }
    year = ABSENT;
    month = ABSENT;
    if (Scan(text, "---d", onlyDay)) {
        return true;
    }
    year = ABSENT;
    day = ABSENT;
    if (Scan(text, "--d", monthDay)) {
        return true;
    }
    month = ABSENT;
    day = ABSENT;
    return Scan(text, "d", yearMonthDay);
}

bool CXMLSaxHandler::GetDateTime(const char* text, int& year, int& month, int& day, int& hour,
                                 int& minute, int& second) {
    int* const fields[] = {&year, &month, &day, &hour, &minute, &second};
    return !IsNothing(text) && Scan(text, "d-d-dTd:d:d", fields);
}

bool CXMLSaxHandler::GetTime(const char* text, int& hour, int& minute, int& second) {
    int* const fields[] = {&hour, &minute, &second};
    return !IsNothing(text) && Scan(text, "d:d:d", fields);
}

bool CXMLSaxHandler::GetDouble(const char* text, double& value) {
    if (IsNothing(text)) {
        return false;
    }
    // strtod_l also takes hexadecimal numbers, "inf" and "nan", which are no decimal numbers: "nano" is
    // not a value.
    const char* number = SkipBlanks(text);
    if (*number == '-' || *number == '+') {
        ++number;
    }
    const bool decimal = IsDigit(*number) || *number == '.';
    const bool hexadecimal = number[0] == '0' && (number[1] == 'x' || number[1] == 'X');
    value = decimal && !hexadecimal ? strtod_l(text, nullptr, NumericLocale()) : 0.0;
    return true;
}

bool CXMLSaxHandler::GetLong(const char* text, long& value) {
    if (IsNothing(text)) {
        return false;
    }
    if (ReadInteger(text, LONG_MIN, LONG_MAX, value) == nullptr) {
        value = 0;
    }
    return true;
}

bool CXMLSaxHandler::GetBool(const char* text, bool& value) {
    if (IsNothing(text)) {
        return false;
    }
    if (std::strcmp(text, "true") == 0 || std::strcmp(text, "1") == 0) {
        value = true;
        return true;
    }
    if (std::strcmp(text, "false") == 0 || std::strcmp(text, "0") == 0) {
        value = false;
        return true;
    }
    return false;
}

bool CXMLSaxHandler::GetData(const char* text, unsigned char*& data, std::size_t& length) {
    // Never destroyed, so that it can serve whatever ends at process exit.
    alignas(CBlockMemory) static unsigned char s_Storage[sizeof(CBlockMemory)];
    static CBlockMemory* const s_pBlockMemory = new (s_Storage) CBlockMemory;

    // The text may lie in the block of the call before, which goes when it has been read. Bytes beyond ASCII
    // are no Base64, and the parser's decoder looks bytes up in a table that does not reach the last of them.
    XMLSize_t decoded = 0;
    XMLByte* block = nullptr;
    if (!IsNothing(text) && IsAscii(text, std::strlen(text))) {
        block = xercesc::Base64::decode(reinterpret_cast<const XMLByte*>(text), &decoded,
                                        s_pBlockMemory);
    }
    if (block != nullptr && decoded == 0) {
        ::operator delete(block);
        block = nullptr;
    }
    // Exchanged, since the end of a handler on another thread releases it too.
    ::operator delete(__atomic_exchange_n(&m_pBinBlock, block, __ATOMIC_ACQ_REL));
    __atomic_store_n(&m_nBinBlockLength, block == nullptr ? 0 : decoded, __ATOMIC_RELAXED);
    if (block == nullptr) {
        return false;
    }
    data = block;
    length = decoded;
    return true;
}

}  // namespace norvask
