// CXMLException. A text lies behind a count of the exceptions that show it, so that assignment can
// share it and the last one releases it.
#include "norvask/exception.h"

#include <atomic>
#include <cstddef>
#include <cstring>
#include <new>

#include "foundation/messages.h"
#include "foundation/utf8.h"

namespace norvask {
namespace {

using OwnerCount = std::atomic<unsigned int>;

const std::size_t MAX_ARGUMENT = 255;
const char PLACE[] = "%s";

OwnerCount* CountOf(char* text) noexcept {
    return reinterpret_cast<OwnerCount*>(text - sizeof(OwnerCount));
}

char* NewText(const char* text, std::size_t length) {
    char* block = static_cast<char*>(::operator new(sizeof(OwnerCount) + length + 1));
    new (block) OwnerCount(1);
    char* copy = block + sizeof(OwnerCount);
    std::memcpy(copy, text, length);
    copy[length] = '\0';
    return copy;
}

char* NewText(const char* text) {
    return text == nullptr ? NewText("", 0) : NewText(text, std::strlen(text));
}

void ReleaseText(char* text) noexcept {
    OwnerCount* count = CountOf(text);
    if (count->fetch_sub(1, std::memory_order_acq_rel) == 1) {
        count->~OwnerCount();
        ::operator delete(count);
    }
}

// At most MAX_ARGUMENT bytes of the argument, never a part of a UTF-8 character.
std::size_t ArgumentLength(const char* argument) noexcept {
    const std::size_t length = std::strlen(argument);
    return length <= MAX_ARGUMENT ? length : CutAtCharacter(argument, MAX_ARGUMENT);
}

// The numbered text with its places filled. The longest text and three arguments stay far below the
// size of the buffer.
char* NewMessage(unsigned int number, const char* const* arguments, std::size_t count) {
    const char* text = MessageText(number);
    if (text == nullptr) {
        return NewText("", 0);
    }
    char result[2048];
    char* out = result;
    std::size_t used = 0;
    while (const char* place = std::strstr(text, PLACE)) {
        const std::size_t before = static_cast<std::size_t>(place - text);
        std::memcpy(out, text, before);
        out += before;
        if (used < count && arguments[used] != nullptr) {
            const std::size_t length = ArgumentLength(arguments[used]);
            std::memcpy(out, arguments[used], length);
            out += length;
        }
        ++used;
        text = place + sizeof(PLACE) - 1;
    }
    const std::size_t rest = std::strlen(text);
    std::memcpy(out, text, rest);
    out += rest;
    return NewText(result, static_cast<std::size_t>(out - result));
}

}  // namespace

CXMLException::CXMLException(int id, const char* text) : m_pMessage(NewText(text)), m_nID(id) {}

CXMLException::CXMLException(int id, unsigned int number)
    : m_pMessage(NewText(MessageText(number))), m_nID(id) {}

CXMLException::CXMLException(int id, unsigned int number, const char* arg1)
    : m_pMessage(nullptr), m_nID(id) {
    const char* const arguments[] = {arg1};
    m_pMessage = NewMessage(number, arguments, 1);
}

CXMLException::CXMLException(int id, unsigned int number, const char* arg1, const char* arg2)
    : m_pMessage(nullptr), m_nID(id) {
    const char* const arguments[] = {arg1, arg2};
    m_pMessage = NewMessage(number, arguments, 2);
}

CXMLException::CXMLException(int id, unsigned int number, const char* arg1, const char* arg2,
                             const char* arg3)
    : m_pMessage(nullptr), m_nID(id) {
    const char* const arguments[] = {arg1, arg2, arg3};
    m_pMessage = NewMessage(number, arguments, 3);
}

CXMLException::CXMLException(CXMLException& other)
    : m_pMessage(NewText(other.m_pMessage)), m_nID(other.m_nID) {}

CXMLException::CXMLException(const SShared& text) noexcept
    : m_pMessage(text.other.m_pMessage), m_nID(text.other.m_nID) {
    CountOf(m_pMessage)->fetch_add(1, std::memory_order_relaxed);
}

CXMLException& CXMLException::operator=(const CXMLException& other) noexcept {
    CountOf(other.m_pMessage)->fetch_add(1, std::memory_order_relaxed);
    ReleaseText(m_pMessage);
    m_pMessage = other.m_pMessage;
    m_nID = other.m_nID;
    return *this;
}

CXMLException::~CXMLException() { ReleaseText(m_pMessage); }

const char* CXMLException::GetMessage() { return m_pMessage; }

int CXMLException::GetID() { return m_nID; }

}  // namespace norvask
