// The index of attributes, an ordered map of the standard library: nothing here takes longer than
// the logarithm of the number of attributes, in whatever order they are renamed and removed.
#include "tree/attribute_index.h"

#include <mutex>
#include <new>
#include <tuple>

#include "tree/attribute_access.h"

namespace norvask {
namespace {

// The indexes of attributes that were assigned to. Trees of several threads share it.
struct SAssigned {
    std::mutex mutex;
    std::unordered_map<const CXMLAttribut*, CAttributeIndex*> indexes;
};

// Never destroyed, since a client's trees may end after everything static.
SAssigned& Assigned() {
    static SAssigned* const s_pAssigned = new SAssigned;
    return *s_pAssigned;
}

void NoteAssigned(const CXMLAttribut* attribute, CAttributeIndex* index) {
    SAssigned& assigned = Assigned();
    const std::lock_guard<std::mutex> lock(assigned.mutex);
    assigned.indexes[attribute] = index;
}

void ForgetAssigned(const CXMLAttribut* attribute) noexcept {
    SAssigned& assigned = Assigned();
    const std::lock_guard<std::mutex> lock(assigned.mutex);
    assigned.indexes.erase(attribute);
}

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

CAttributeIndex::~CAttributeIndex() {
    if (m_bHasAssigned) {
        for (const auto& [attribute, key] : m_Keys) {
            ForgetAssigned(attribute);
        }
    }
}

CXMLAttribut* CAttributeIndex::Find(const SElementBody* element,
                                    const SNameLookUp& name) const noexcept {
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
    const bool wasAssigned = CAttributeAccess::Holds(attribute);
    if (wasAssigned) {
        NoteAssigned(attribute, this);
        m_bHasAssigned = true;
    }
    try {
        m_Keys.emplace(attribute, key);
        m_Entries.emplace(key, attribute);
    } catch (...) {
        m_Keys.erase(attribute);
        if (wasAssigned) {
            ForgetAssigned(attribute);
        }
        throw;
    }
    CAttributeAccess::SetIndexed(attribute, true);
}

void CAttributeIndex::Remove(CXMLAttribut* attribute) noexcept {
    const auto found = m_Keys.find(attribute);
    m_Entries.erase(found->second);
    m_Keys.erase(found);
    if (m_bHasAssigned) {
        ForgetAssigned(attribute);
    }
    CAttributeAccess::SetIndexed(attribute, false);
}

// Moves the entry; nothing is allocated for that.
void CAttributeIndex::Rename(CXMLAttribut* attribute) noexcept {
    SKey& key = m_Keys.find(attribute)->second;
    auto entry = m_Entries.extract(key);
    key.hash = HashOfName(attribute);
    entry.key() = key;
    m_Entries.insert(std::move(entry));
}

void CAttributeIndex::Renamed(CTree& tree, CXMLAttribut* attribute) noexcept {
    CAttributeIndex* const index = Of(tree);
    index->Rename(attribute);
    if (CAttributeAccess::Holds(attribute)) {
        try {
            NoteAssigned(attribute, index);
            index->m_bHasAssigned = true;
        } catch (const std::bad_alloc&) {
            index->m_bWhole = false;
        }
    }
}

void CAttributeIndex::RenamedAssigned(CXMLAttribut* attribute) noexcept {
    CAttributeIndex* index = nullptr;
    {
        SAssigned& assigned = Assigned();
        const std::lock_guard<std::mutex> lock(assigned.mutex);
        const auto found = assigned.indexes.find(attribute);
        index = found == assigned.indexes.end() ? nullptr : found->second;
    }
    if (index != nullptr) {
        index->Rename(attribute);
    }
}

}  // namespace norvask
