#include "tree/name_table.h"

#include <cstring>
#include <exception>
#include <new>
#include <random>

#include "foundation/utf8.h"
#include "tree/tree_memory.h"
#include "tree/tree_string.h"

namespace norvask {
namespace {

const std::uint32_t FIRST_BUCKETS = 16;

// Drawn once for the process, so that nobody can prepare a document whose names all fall into one bucket.
std::uint64_t MakeSeed() noexcept {
    try {
        std::random_device random;
        return (static_cast<std::uint64_t>(random()) << 32) ^ random();
    } catch (const std::exception&) {
        // Without a source of randomness, wherever the system has put us must do.
        static const char s_Anywhere = 0;
        return reinterpret_cast<std::uintptr_t>(&s_Anywhere);
    }
}

std::uint64_t Seed() noexcept {
    static const std::uint64_t s_Seed = MakeSeed();
    return s_Seed;
}

// The upper and the lower half of the product, folded into one: every bit of the result depends on all of both.
std::uint64_t Fold(std::uint64_t a, std::uint64_t b) noexcept {
#if defined(__SIZEOF_INT128__)
    __extension__ using Product = unsigned __int128;
    const Product product = static_cast<Product>(a) * b;
    return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
#else
    const std::uint64_t LOW = 0xFFFFFFFFU;
    const std::uint64_t low = (a & LOW) * (b & LOW);
    const std::uint64_t middle = (a >> 32) * (b & LOW) + (low >> 32);
    const std::uint64_t other = (a & LOW) * (b >> 32) + (middle & LOW);
    const std::uint64_t high = (a >> 32) * (b >> 32) + (middle >> 32) + (other >> 32);
    return high ^ ((other << 32) | (low & LOW));
#endif
}

}  // namespace

// The multiplier is a secret of the process: with a known one, names could be made to collide.
std::uint32_t CNameTable::Hash(const char* text, std::size_t length) noexcept {
    const std::uint64_t seed = Seed();
    const std::uint64_t multiplier = (seed * 0x9E3779B97F4A7C15U) | 0x8000000000000001U;
    std::uint64_t hash = seed ^ length;
    while (length >= sizeof(std::uint64_t)) {
        std::uint64_t chunk = 0;
        std::memcpy(&chunk, text, sizeof(chunk));
        hash = Fold(hash ^ chunk, multiplier) + chunk;
        text += sizeof(chunk);
        length -= sizeof(chunk);
    }
    std::uint64_t rest = 0;
    for (std::size_t i = 0; i < length; ++i) {
        rest = (rest << 8) | static_cast<unsigned char>(text[i]);
    }
    hash = Fold(hash ^ rest, multiplier);
    return static_cast<std::uint32_t>(hash ^ (hash >> 32));
}

CNameTable::SName* CNameTable::FindIn(std::uint32_t hash, const char* text,
                                      std::size_t length) const noexcept {
    if (m_nBuckets == 0) {
        return nullptr;
    }
    for (SName* name = m_ppBuckets[hash & (m_nBuckets - 1)]; name != nullptr;
         name = name->m_pNext) {
        if (name->m_nHash == hash && name->m_nLength == length &&
            std::memcmp(name->Characters(), text, length) == 0) {
            return name;
        }
    }
    return nullptr;
}

const char* CNameTable::Find(const char* text, std::size_t length) const noexcept {
    SName* name = FindIn(Hash(text, length), text, length);
    return name == nullptr ? nullptr : name->Characters();
}

void CNameTable::Grow(CTreeMemory& memory) {
    const std::uint32_t buckets = m_nBuckets == 0 ? FIRST_BUCKETS : 2 * m_nBuckets;
    SName** grown = static_cast<SName**>(memory.AllocatePlain(buckets * sizeof(SName*)));
    std::memset(grown, 0, buckets * sizeof(SName*));
    for (std::uint32_t i = 0; i < m_nBuckets; ++i) {
        for (SName* name = m_ppBuckets[i]; name != nullptr;) {
            SName* next = name->m_pNext;
            SName*& bucket = grown[name->m_nHash & (buckets - 1)];
            name->m_pNext = bucket;
            bucket = name;
            name = next;
        }
    }
    if (m_ppBuckets != nullptr) {
        memory.FreePlain(m_ppBuckets, m_nBuckets * sizeof(SName*));
    }
    m_ppBuckets = grown;
    m_nBuckets = buckets;
}

const char* CNameTable::Acquire(CTreeMemory& memory, const char* text, std::size_t length) {
    const std::uint32_t hash = Hash(text, length);
    if (SName* known = FindIn(hash, text, length)) {
        ++known->m_nUses;
        return known->Characters();
    }
    if (length > UINT32_MAX) {
        throw std::bad_alloc();
    }
    if (m_nNames >= m_nBuckets) {
        Grow(memory);
    }
    SPage* page = nullptr;
    void* block = memory.AllocateTagged(sizeof(SName) + length + 1, page);
    SName* name = new (block) SName;
    SName*& bucket = m_ppBuckets[hash & (m_nBuckets - 1)];
    name->m_pNext = bucket;
    name->m_nHash = hash;
    name->m_nUses = 1;
    name->m_nLength = static_cast<std::uint32_t>(length);
    new (&name->m_nTag) SStringTag{
        DistanceTo(page, &name->m_nTag),
        FlagsWithLength(STRING_NAME | (IsAscii(text, length) ? STRING_ASCII | STRING_UTF8 : 0),
                        length)};
    std::memcpy(name->Characters(), text, length);
    name->Characters()[length] = '\0';
    bucket = name;
    ++m_nNames;
    return name->Characters();
}

void CNameTable::Release(CTreeMemory& memory, const char* characters) noexcept {
    SName* name = NameOf(characters);
    // A name that is held outside of the tree stays, and serves again when it is asked for.
    if (--name->m_nUses != 0 || !IsReusable(characters)) {
        return;
    }
    SName** link = &m_ppBuckets[name->m_nHash & (m_nBuckets - 1)];
    while (*link != name) {
        link = &(*link)->m_pNext;
    }
    *link = name->m_pNext;
    --m_nNames;
    memory.FreeTagged(name, name->Bytes(), PageOf(characters));
}

}  // namespace norvask
