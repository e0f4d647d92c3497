// Base64. Both directions are the parser's, so that documents and typed values agree about what is
// Base64 and what is not.
#include "foundation/base64.h"

#include <new>
#include <type_traits>
#include <xercesc/framework/MemoryManager.hpp>
#include <xercesc/util/Base64.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include "foundation/utf8.h"

namespace norvask {
namespace {

static_assert(std::is_same<XMLByte, unsigned char>::value, "the parser's bytes are bytes");

// Allocates the decoded blocks. A manager of our own, because a block may be released after the
// parser has been terminated and has taken its manager with it.
class CBlockMemory : public xercesc::MemoryManager {
public:
    xercesc::MemoryManager* getExceptionMemoryManager() override {
        return xercesc::XMLPlatformUtils::fgMemoryManager;
    }
    void* allocate(XMLSize_t size) override { return ::operator new(size); }
    void deallocate(void* p) override { ::operator delete(p); }
};

// Never destroyed, so that it can serve whatever is destroyed at process exit.
CBlockMemory* BlockMemory() {
    alignas(CBlockMemory) static unsigned char s_Storage[sizeof(CBlockMemory)];
    static CBlockMemory* const s_pBlockMemory = new (s_Storage) CBlockMemory;
    return s_pBlockMemory;
}

}  // namespace

CBase64Text::CBase64Text(const unsigned char* data, std::size_t length)
    : m_pText(nullptr), m_nLength(0) {
    if (data != nullptr && length != 0) {
        XMLSize_t encoded = 0;
        m_pText = xercesc::Base64::encode(data, length, &encoded);
        m_nLength = m_pText == nullptr ? 0 : encoded;
    }
}

// Without a memory manager the encoder allocates with the general operator new.
CBase64Text::~CBase64Text() { ::operator delete(m_pText); }

// Bytes beyond ASCII are no Base64, and the parser's decoder looks bytes up in a table that does
// not reach the last of them.
CBase64Bytes::CBase64Bytes(const char* text, std::size_t length) : m_pBytes(nullptr), m_nLength(0) {
    if (length == 0 || !IsAscii(text, length)) {
        return;
    }
    XMLSize_t decoded = 0;
    XMLByte* const block =
        xercesc::Base64::decode(reinterpret_cast<const XMLByte*>(text), &decoded, BlockMemory());
    if (block != nullptr && decoded == 0) {
        ::operator delete(block);
        return;
    }
    m_pBytes = block;
    m_nLength = block == nullptr ? 0 : decoded;
}

CBase64Bytes::~CBase64Bytes() { ::operator delete(m_pBytes); }

unsigned char* CBase64Bytes::Take() noexcept {
    unsigned char* const block = m_pBytes;
    m_pBytes = nullptr;
    m_nLength = 0;
    return block;
}

}  // namespace norvask
