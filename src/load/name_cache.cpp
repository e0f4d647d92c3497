#include "load/name_cache.h"

#include <cstring>

#include "foundation/utf8.h"
#include "load/narrow_text.h"
#include "tree/tree_building.h"

namespace norvask {
namespace {

const std::size_t FIRST_SLOTS = 32;

}  // namespace

void CNameCache::Grow() {
    std::vector<std::uint32_t> grown(m_Slots.empty() ? FIRST_SLOTS : 2 * m_Slots.size());
    const std::size_t mask = grown.size() - 1;
    for (std::uint32_t i = 0; i < m_Entries.size(); ++i) {
        std::size_t slot = m_Entries[i].hash & mask;
        while (grown[slot] != 0) {
            slot = (slot + 1) & mask;
        }
        grown[slot] = i + 1;
    }
    m_Slots.swap(grown);
    m_Entries.reserve(m_Slots.size() / 2);
}

const char* CNameCache::Acquire(CTreeMemory& memory, const char16_t* parserName) {
    if (2 * m_Entries.size() >= m_Slots.size()) {
        Grow();
    }
    const std::size_t length = Utf16Length(parserName);
    const std::uint32_t hash =
        CNameTable::Hash(reinterpret_cast<const char*>(parserName), length * sizeof(char16_t));
    const std::size_t mask = m_Slots.size() - 1;
    std::size_t slot = hash & mask;
    while (m_Slots[slot] != 0) {
        const SEntry& entry = m_Entries[m_Slots[slot] - 1];
        if (entry.hash == hash && entry.length == length &&
            std::memcmp(m_Characters.data() + entry.start, parserName, length * sizeof(char16_t)) ==
                0) {
            CNameTable::AddUse(entry.treeName);
            return entry.treeName;
        }
        slot = (slot + 1) & mask;
    }
    CNarrowText narrow;
    const char* treeName = AcquireValidName(memory, narrow.Convert(parserName, length));
    try {
        const std::size_t start = m_Characters.size();
        m_Characters.append(parserName, length);
        m_Entries.push_back({hash, static_cast<std::uint32_t>(length), start, treeName});
    } catch (...) {
        memory.Names().Release(memory, treeName);
        throw;
    }
    // One use stays with the cache, so that the name is there as long as the load.
    CNameTable::AddUse(treeName);
    m_Slots[slot] = static_cast<std::uint32_t>(m_Entries.size());
    return treeName;
}

void CNameCache::Clear(CTreeMemory& memory) noexcept {
    for (const SEntry& entry : m_Entries) {
        memory.Names().Release(memory, entry.treeName);
    }
    m_Entries.clear();
    m_Slots.clear();
    m_Characters.clear();
}

}  // namespace norvask
