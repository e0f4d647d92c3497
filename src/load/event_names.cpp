#include "load/event_names.h"

#include "foundation/utf8.h"
#include "tree/memory/name_table.h"

namespace norvask {
namespace {

const std::size_t FIRST_SLOTS = 32;

std::uint32_t HashOf(const char16_t* text, std::size_t units) noexcept {
    return CNameTable::Hash(reinterpret_cast<const char*>(text), units * sizeof(char16_t));
}

void Assign(std::string& out, CNarrowText& narrow, const char16_t* text) {
    const char* converted = narrow.Convert(text);
    out.assign(converted, narrow.Length());
}

}  // namespace

void CEventNames::Convert(const char16_t* uri, const char16_t* localName, const char16_t* qName,
                          SEventName& name) {
    Assign(name.uri, m_Narrow, uri);
    Assign(name.localName, m_Narrow, localName);
    Assign(name.qName, m_Narrow, qName);
}

const SEventName* CEventNames::Search(const char16_t* uri, const char16_t* localName,
                                      const char16_t* qName) {
    SEntry* entry = m_pNext[1];
    if (entry == nullptr || !IsSame(*entry, uri, qName)) {
        entry = SearchTable(uri, localName, qName);
        if (entry == nullptr) {
            return nullptr;
        }
    }
    m_pNext[1] = m_pNext[0];
    m_pNext[0] = entry;
    m_pNext = entry->afterStart;
    return entry;
}

CEventNames::SEntry* CEventNames::SearchTable(const char16_t* uri, const char16_t* localName,
                                              const char16_t* qName) {
    if (2 * m_Entries.size() >= m_Slots.size()) {
        Grow();
    }
    // Both decide about the slot: a document may bind one prefix to ever new namespaces.
    const std::uint32_t hash =
        HashOf(qName, Utf16Length(qName)) + 0x9E3779B1U * HashOf(uri, Utf16Length(uri));
    const std::size_t mask = m_Slots.size() - 1;
    std::size_t slot = hash & mask;
    SEntry* entry = m_Slots[slot];
    while (entry != nullptr &&
           !(entry->hash == hash && IsSame(entry->qName16, qName) && IsSame(entry->uri16, uri))) {
        slot = (slot + 1) & mask;
        entry = m_Slots[slot];
    }
    if (entry == nullptr) {
        entry = Add(hash, uri, localName, qName);
        m_Slots[slot] = entry;
    }
    return entry;
}

// NULL beyond the bounds.
CEventNames::SEntry* CEventNames::Add(std::uint32_t hash, const char16_t* uri,
                                      const char16_t* localName, const char16_t* qName) {
    const std::size_t units = Utf16Length(uri) + Utf16Length(qName);
    if (m_Entries.size() >= MOST_NAMES || units > MOST_UNITS - m_nUnits) {
        return nullptr;
    }
    std::unique_ptr<SEntry> entry = std::make_unique<SEntry>();  // no successors yet
    entry->uri16 = uri;
    entry->pUri = uri;
    entry->qName16 = qName;
    entry->hash = hash;
    Convert(uri, localName, qName, *entry);
    m_Entries.push_back(std::move(entry));
    m_nUnits += units;
    return m_Entries.back().get();
}

void CEventNames::Grow() {
    std::vector<SEntry*> grown(m_Slots.empty() ? FIRST_SLOTS : 2 * m_Slots.size());
    const std::size_t mask = grown.size() - 1;
    for (const std::unique_ptr<SEntry>& entry : m_Entries) {
        std::size_t slot = entry->hash & mask;
        while (grown[slot] != nullptr) {
            slot = (slot + 1) & mask;
        }
        grown[slot] = entry.get();
    }
    m_Slots.swap(grown);
}

}  // namespace norvask
