// Internal. CNamePredictor: the names of one load, and what was made for each when it first came.
//
// A document repeats few names very often, and mostly in the same order. Each name remembers the
// two that came after it most recently, behind its start and behind its end; a name that is among
// them is found without a search, all others through a hash table.
//
// A key is a name as it is read, with Hash(), Size() and a class CKept: made of a key, it outlives
// what the key shows, and Is(key) tells whether a key is the same name. The hash must be one that
// nobody outside can foresee.
#ifndef NORVASK_LOAD_RECEIVER_NAME_PREDICTOR_H
#define NORVASK_LOAD_RECEIVER_NAME_PREDICTOR_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <forward_list>
#include <optional>
#include <utility>
#include <vector>

namespace norvask {

template <typename Key, typename Payload>
class CNamePredictor {
public:
    struct SName {
        SName(const Key& key, std::uint32_t keyHash, Payload&& made)
            : payload(std::move(made)), kept(key), hash(keyHash) {}

        Payload payload;
        typename Key::CKept kept;
        std::uint32_t hash;
        SName* afterStart[2] = {nullptr, nullptr};  // the later one first
        SName* afterEnd[2] = {nullptr, nullptr};
    };

    static const std::size_t NO_BOUND = static_cast<std::size_t>(-1);

    // Keeps at most so many names, of this size in all.
    explicit CNamePredictor(std::size_t mostNames = NO_BOUND, std::size_t mostSize = NO_BOUND)
        : m_nMostNames(mostNames), m_nMostSize(mostSize) {}
    CNamePredictor(const CNamePredictor&) = delete;
    CNamePredictor& operator=(const CNamePredictor&) = delete;

    // The name with this key, valid until Clear; NULL for a new one beyond the bounds. `make` makes
    // the payload of a new one. Throws std::bad_alloc and what `make` throws, then the name is not
    // kept.
    template <typename Make>
    SName* Find(const Key& key, Make make) {
        SName* const likely = FindLikely(key);
        return likely != nullptr ? likely : Search(key, make);
    }

    // The same for the two likeliest names only; NULL if it is another. Whatever a kept name can be
    // compared with will do for a key.
    template <typename Likely>
    SName* FindLikely(const Likely& key) noexcept {
        SName* likely = m_ppNext[0];
        if (likely == nullptr || !likely->kept.Is(key)) {
            likely = m_ppNext[1];
            if (likely == nullptr || !likely->kept.Is(key)) {
                return nullptr;
            }
            std::swap(m_ppNext[0], m_ppNext[1]);
        }
        m_ppNext = likely->afterStart;
        return likely;
    }

    // What came last, and going back to it.
    using PlaceInDocument = SName**;
    PlaceInDocument Place() const noexcept { return m_ppNext; }
    void GoTo(PlaceInDocument place) noexcept { m_ppNext = place; }

    // An element of this name ended.
    void Ended(SName* name) noexcept { m_ppNext = name->afterEnd; }

    // Forgets all names.
    void Clear() noexcept {
        m_Chunks.clear();
        m_nNames = 0;
        m_nRoom = 0;
        m_Slots.clear();
        m_nSize = 0;
        m_pFirst[0] = nullptr;
        m_pFirst[1] = nullptr;
        m_ppNext = m_pFirst;
    }

private:
    // Names that are allocated at once: general allocators are fastest up to some hundred bytes.
    static const std::size_t CHUNK_NAMES = 960 / sizeof(std::optional<SName>);
    struct SChunk {
        SChunk() noexcept {}  // leaves the memory of the names alone
        std::array<std::optional<SName>, CHUNK_NAMES> names;
    };

    template <typename Make>
    SName* Search(const Key& key, Make& make) {
        SName* const name = SearchTable(key, make);
        if (name == nullptr) {
            return nullptr;
        }
        m_ppNext[1] = m_ppNext[0];
        m_ppNext[0] = name;
        m_ppNext = name->afterStart;
        return name;
    }

    template <typename Make>
    SName* SearchTable(const Key& key, Make& make) {
        if (2 * m_nNames >= m_Slots.size()) {
            Grow();
        }
        const std::uint32_t hash = key.Hash();
        const std::size_t mask = m_Slots.size() - 1;
        std::size_t slot = hash & mask;
        while (m_Slots[slot] != nullptr) {
            if (m_Slots[slot]->hash == hash && m_Slots[slot]->kept.Is(key)) {
                return m_Slots[slot];
            }
            slot = (slot + 1) & mask;
        }
        const std::size_t size = key.Size();
        if (m_nNames >= m_nMostNames || size > m_nMostSize - m_nSize) {
            return nullptr;
        }
        if (m_nNames == m_nRoom) {
            m_Chunks.emplace_front();
            m_nRoom += CHUNK_NAMES;
        }
        m_Slots[slot] = &m_Chunks.front().names[m_nNames % CHUNK_NAMES].emplace(key, hash, make());
        ++m_nNames;
        m_nSize += size;
        return m_Slots[slot];
    }

    void Grow() {
        const std::size_t FIRST_SLOTS = 32;
        std::vector<SName*> grown(m_Slots.empty() ? FIRST_SLOTS : 2 * m_Slots.size());
        const std::size_t mask = grown.size() - 1;
        for (SName* const name : m_Slots) {
            if (name == nullptr) {
                continue;
            }
            std::size_t slot = name->hash & mask;
            while (grown[slot] != nullptr) {
                slot = (slot + 1) & mask;
            }
            grown[slot] = name;
        }
        m_Slots.swap(grown);
    }

    const std::size_t m_nMostNames;
    const std::size_t m_nMostSize;
    std::forward_list<SChunk> m_Chunks;  // the last one first
    std::size_t m_nNames = 0;
    std::size_t m_nRoom = 0;      // for names
    std::vector<SName*> m_Slots;  // open addressing
    std::size_t m_nSize = 0;
    SName* m_pFirst[2] = {nullptr, nullptr};
    SName** m_ppNext = m_pFirst;  // what came after the last event
};

}  // namespace norvask

#endif
