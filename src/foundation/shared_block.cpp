// CSharedBlock. Pointer and length are exchanged atomically, one by one: handlers are destroyed on
// any thread, and each of them releases the block.
#include "foundation/shared_block.h"

#include <cstring>
#include <new>

#include "foundation/base64.h"

namespace norvask {

unsigned char** CSharedBlock::sm_ppData = nullptr;
std::size_t* CSharedBlock::sm_pLength = nullptr;

void CSharedBlock::SetPlace(unsigned char*& data, std::size_t& length) noexcept {
    sm_ppData = &data;
    sm_pLength = &length;
}

bool CSharedBlock::Decode(const char* text, unsigned char*& data, std::size_t& length) {
    CBase64Bytes decoded(text, text == nullptr ? 0 : std::strlen(text));
    const std::size_t bytes = decoded.Length();
    unsigned char* const block = decoded.Take();
    ::operator delete(__atomic_exchange_n(sm_ppData, block, __ATOMIC_ACQ_REL));
    __atomic_store_n(sm_pLength, bytes, __ATOMIC_RELAXED);
    if (block == nullptr) {
        return false;
    }
    data = block;
    length = bytes;
    return true;
}

void CSharedBlock::Release() noexcept {
    unsigned char* const block = __atomic_exchange_n(sm_ppData, nullptr, __ATOMIC_ACQ_REL);
    if (block != nullptr) {
        __atomic_store_n(sm_pLength, 0, __ATOMIC_RELAXED);
        ::operator delete(block);
    }
}

}  // namespace norvask
