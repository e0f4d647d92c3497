// Names by hash, in buckets that grow with their number.
#include "tree/memory/name_table.h"

#include <cstring>
#include <exception>
#include <new>
#include <random>

namespace norvask {
namespace {

const std::uint32_t FIRST_BUCKETS = 16;

// Drawn once for the process, so that nobody can prepare a document whose names all fall into one
// bucket.
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

// The upper and the lower half of the product, folded into one: every bit of the result depends on
// all of both.
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
    for (SName* name = m_ppBuckets[hash & (m_nBuckets - 1)]; name != nullptr; name = name->next) {
        if (name->hash == hash && name->length == length &&
            std::memcmp(name->String().Text(), text, length) == 0) {
            return name;
        }
    }
    return nullptr;
}

SNameLookUp CNameTable::LookUp(const char* text, std::size_t length) const noexcept {
    const std::uint32_t hash = Hash(text, length);
    SName* const name = FindIn(hash, text, length);
    return {text, length, hash, name != nullptr, name == nullptr ? CTreeString() : name->String()};
}

CTreeString CNameTable::Acquire(const SNameLookUp& lookUp, unsigned int known) {
    if (!lookUp.isFound) {
        return Add(lookUp, known)->String();
    }
    lookUp.name.Add(known);
    AddUse(lookUp.name);
    return lookUp.name;
}

// A new name, with one use.
CNameTable::SName* CNameTable::Add(const SNameLookUp& lookUp, unsigned int known) {
    if (lookUp.length > UINT32_MAX) {
        throw std::bad_alloc();
    }
    if (m_nNames >= m_nBuckets) {
        Grow();
    }
    SPage* page = nullptr;
    void* const block = m_Strings.Arena().AllocatePaged(sizeof(SName) + lookUp.length + 1, page);
    SName*& bucket = m_ppBuckets[lookUp.hash & (m_nBuckets - 1)];
    SName* const name =
        new (block) SName{bucket, lookUp.hash, 1, static_cast<std::uint32_t>(lookUp.length), 0};
    WriteString(&name->header, page, {lookUp.text, lookUp.length, known}, STRING_IN_TABLE);
    bucket = name;
    ++m_nNames;
    return name;
}

void CNameTable::Grow() {
    const std::uint32_t buckets = m_nBuckets == 0 ? FIRST_BUCKETS : 2 * m_nBuckets;
    CArena& arena = m_Strings.Arena();
    SName** const grown = static_cast<SName**>(arena.AllocatePlain(buckets * sizeof(SName*)));
    std::memset(grown, 0, buckets * sizeof(SName*));
    for (std::uint32_t i = 0; i < m_nBuckets; ++i) {
        for (SName* name = m_ppBuckets[i]; name != nullptr;) {
            SName* const next = name->next;
            SName*& bucket = grown[name->hash & (buckets - 1)];
            name->next = bucket;
            bucket = name;
            name = next;
        }
    }
    if (m_ppBuckets != nullptr) {
        arena.FreePlain(m_ppBuckets, m_nBuckets * sizeof(SName*));
    }
    m_ppBuckets = grown;
    m_nBuckets = buckets;
}

void CNameTable::Remove(SName* name) noexcept {
    SName** link = &m_ppBuckets[name->hash & (m_nBuckets - 1)];
    while (*link != name) {
        link = &(*link)->next;
    }
    *link = name->next;
    --m_nNames;
    m_Strings.FreeBlock(name->String(), name, name->Bytes());
}

}  // namespace norvask
