#include "load/name_cache.h"

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

bool CNameCache::IsSame(const SEntry& entry, const char16_t* parserName) const noexcept {
    const char16_t* known = m_Characters.data() + entry.start;
    while (*known == *parserName) {
        if (*known == 0) {
            return true;
        }
        ++known;
        ++parserName;
    }
    return false;
}

// One more use of the name at this position, which comes after the last one.
CNameUse CNameCache::UseAt(std::uint32_t position) noexcept {
    if (m_nLast != 0) {
        SEntry& last = m_Entries[m_nLast - 1];
        if (last.next[0] != position) {
            last.next[1] = last.next[0];
            last.next[0] = position;
        }
    }
    m_nLast = position;
    return CNameUse::Another(m_Entries[position - 1].treeName.Name());
}

CNameUse CNameCache::Use(CTree& tree, const char16_t* parserName) {
    if (m_nLast != 0) {
        for (const std::uint32_t next : m_Entries[m_nLast - 1].next) {
            if (next != 0 && IsSame(m_Entries[next - 1], parserName)) {
                return UseAt(next);
            }
        }
    }
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
        if (entry.hash == hash && entry.length == length && IsSame(entry, parserName)) {
            return UseAt(m_Slots[slot]);
        }
        slot = (slot + 1) & mask;
    }
    CNarrowText narrow;
    CNameUse treeName = UseValidName(tree, narrow.Convert(parserName, length));
    const std::size_t start = m_Characters.size();
    m_Characters.append(parserName, length + 1);
    m_Entries.push_back({hash, {0, 0}, length, start, std::move(treeName)});
    // The use that was acquired stays with the cache, so that the name is there as long as the load.
    m_Slots[slot] = static_cast<std::uint32_t>(m_Entries.size());
    return UseAt(m_Slots[slot]);
}

void CNameCache::Clear() noexcept {
    m_Entries.clear();
    m_Slots.clear();
    m_Characters.clear();
    m_nLast = 0;
}

}  // namespace norvask
