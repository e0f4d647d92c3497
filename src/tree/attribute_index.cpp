// The index of attributes, an ordered map of the standard library: nothing here takes longer than
// the logarithm of the number of attributes, in whatever order they are renamed and removed.
#include "tree/attribute_index.h"

#include <atomic>
#include <cstring>
#include <new>
#include <tuple>

#include "tree/attribute_access.h"

namespace norvask {
namespace {

std::atomic<std::uint64_t> s_nRenamesElsewhere(0);

std::uint32_t HashOfName(const CXMLAttribut* attribute) noexcept {
    const CTreeString name = CAttributeAccess::Name(attribute);
    return name.Is(STRING_IN_TABLE) ? CNameTable::HashOf(name)
                                    : CNameTable::Hash(name.Text(), name.Length());
}

}  // namespace

CAttributeIndex* CAttributeIndex::Of(CTree& tree) noexcept {
    return static_cast<CAttributeIndex*>(tree.Attachment());
}

CAttributeIndex& CAttributeIndex::MadeFor(CTree& tree) {
    if (tree.Attachment() == nullptr) {
        tree.Attach(std::make_unique<CAttributeIndex>());
    }
    return *Of(tree);
}

bool CAttributeIndex::SKey::operator<(const SKey& other) const noexcept {
    return std::tie(element, hash, order) < std::tie(other.element, other.hash, other.order);
}

CXMLAttribut* CAttributeIndex::Find(const SElementBody* element, const SNameLookUp& name) noexcept {
    if ((!m_Assigned.empty() || m_bAllAssigned) &&
        m_nRenamesSeen != s_nRenamesElsewhere.load(std::memory_order_relaxed)) {
        LookAgain();
    }
    for (auto entry = m_Entries.lower_bound({element, name.hash, 0});
         entry != m_Entries.end() && entry->first.element == element &&
         entry->first.hash == name.hash;
         ++entry) {
        if (CAttributeAccess::Name(entry->second).Equals(name.text, name.length)) {
            return entry->second;
        }
    }
    return nullptr;
}

void CAttributeIndex::Add(const SElementBody* element, std::uint32_t order,
                          CXMLAttribut* attribute) {
    const SKey key = {element, HashOfName(attribute), order};
    const bool assigned = CAttributeAccess::Holds(attribute);
    if (assigned) {
        m_Assigned.insert(attribute);
    }
    try {
        m_Keys.emplace(attribute, key);
        m_Entries.emplace(key, attribute);
    } catch (...) {
        m_Keys.erase(attribute);
        m_Assigned.erase(attribute);
        throw;
    }
    CAttributeAccess::SetIndexed(attribute, true);
}

void CAttributeIndex::Remove(CXMLAttribut* attribute) noexcept {
    const auto found = m_Keys.find(attribute);
    m_Entries.erase(found->second);
    m_Keys.erase(found);
    m_Assigned.erase(attribute);
    CAttributeAccess::SetIndexed(attribute, false);
}

// Moves the entry; nothing is allocated for that.
void CAttributeIndex::Rename(CXMLAttribut* attribute, SKey& key) noexcept {
    auto entry = m_Entries.extract(key);
    key.hash = HashOfName(attribute);
    entry.key() = key;
    m_Entries.insert(std::move(entry));
}

void CAttributeIndex::Renamed(CXMLAttribut* attribute) noexcept {
    Rename(attribute, m_Keys.find(attribute)->second);
    if (CAttributeAccess::Holds(attribute)) {
        try {
            m_Assigned.insert(attribute);
        } catch (const std::bad_alloc&) {
            m_bAllAssigned = true;
        }
    }
}

void CAttributeIndex::NoteRenamedElsewhere() noexcept {
    s_nRenamesElsewhere.fetch_add(1, std::memory_order_relaxed);
}

void CAttributeIndex::LookAgain() noexcept {
    m_nRenamesSeen = s_nRenamesElsewhere.load(std::memory_order_relaxed);
    if (m_bAllAssigned) {
        for (auto& [attribute, key] : m_Keys) {
            Rename(attribute, key);
        }
        return;
    }
    for (CXMLAttribut* attribute : m_Assigned) {
        Rename(attribute, m_Keys.find(attribute)->second);
    }
}

}  // namespace norvask
