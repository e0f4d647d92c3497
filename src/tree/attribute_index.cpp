#include "tree/attribute_index.h"

#include <cstring>
#include <new>

#include "tree/attribute_access.h"
#include "tree/attribute_array.h"

namespace norvask {

// Open addressing; a removed entry leaves a mark, so that the search goes on behind it.
struct SAttributeIndex {
    std::uint64_t m_nRenamesSeen;
    std::uint32_t m_nSlots;  // a power of two
    std::uint32_t m_nTaken;  // with the marks
    bool m_bHasDuplicates;   // of equal names only the first attribute is here

    CXMLAttribut** Slots() noexcept { return reinterpret_cast<CXMLAttribut**>(this + 1); }
    CXMLAttribut* const* Slots() const noexcept {
        return reinterpret_cast<CXMLAttribut* const*>(this + 1);
    }
};

namespace {

std::size_t IndexBytes(std::uint32_t slots) noexcept {
    return sizeof(SAttributeIndex) + slots * sizeof(CXMLAttribut*);
}

CXMLAttribut* RemovedMark() noexcept {
    static char s_Mark;
    return reinterpret_cast<CXMLAttribut*>(&s_Mark);
}

std::uint32_t HashOfName(const CXMLAttribut* attribute) noexcept {
    const char* name = CAttributeAccess::Name(attribute);
    return HasFlag(name, STRING_NAME) ? CNameTable::HashOf(name)
                                      : CNameTable::Hash(name, std::strlen(name));
}

bool HasName(const CXMLAttribut* attribute, const char* name, std::size_t length) noexcept {
    const char* own = CAttributeAccess::Name(attribute);
    return std::strncmp(own, name, length) == 0 && own[length] == '\0';
}

// The slot of the attribute with this name, or the free slot where it would go.
std::uint32_t SlotFor(const SAttributeIndex* index, std::uint32_t hash, const char* name,
                      std::size_t length) noexcept {
    const std::uint32_t mask = index->m_nSlots - 1;
    std::uint32_t slot = hash & mask;
    while (CXMLAttribut* attribute = index->Slots()[slot]) {
        if (attribute != RemovedMark() && HasName(attribute, name, length)) {
            break;
        }
        slot = (slot + 1) & mask;
    }
    return slot;
}

void Insert(SAttributeIndex* index, CXMLAttribut* attribute) noexcept {
    const char* name = CAttributeAccess::Name(attribute);
    const std::uint32_t slot = SlotFor(index, HashOfName(attribute), name, std::strlen(name));
    CAttributeAccess::MarkIndexed(attribute);
    if (index->Slots()[slot] != nullptr) {
        index->m_bHasDuplicates = true;
        return;
    }
    index->Slots()[slot] = attribute;
    ++index->m_nTaken;
}

bool HasRoom(const SAttributeIndex* index) noexcept {
    return index->m_nTaken < index->m_nSlots / 4 * 3;
}

void DropIndex(SElementBody* body) noexcept {
    SNodeExtras* extras = body->m_pAttributes->m_pExtras;
    FreeIndex(MemoryOf(body), extras->m_pIndex);
    extras->m_pIndex = nullptr;
}

SAttributeIndex* IndexOf(const SElementBody* body) noexcept {
    const SAttributeArray* attributes = body->m_pAttributes;
    return attributes == nullptr || attributes->m_pExtras == nullptr
               ? nullptr
               : attributes->m_pExtras->m_pIndex;
}

}  // namespace

SAttributeIndex* UpToDateIndex(SElementBody* body) {
    SAttributeIndex* index = IndexOf(body);
    if (index != nullptr) {
        if (index->m_nRenamesSeen == CAttributeAccess::RenameCount() && HasRoom(index)) {
            return index;
        }
        DropIndex(body);
    }
    SNodeExtras& extras = ExtrasOf(body);
    const std::uint32_t count = AttributeCount(body);
    std::uint32_t slots = 4 * INDEX_FROM;
    while (slots < 3 * static_cast<std::uint64_t>(count)) {
        slots *= 2;
    }
    index = new (MemoryOf(body).AllocatePlain(IndexBytes(slots))) SAttributeIndex();
    std::memset(index->Slots(), 0, slots * sizeof(CXMLAttribut*));
    index->m_nRenamesSeen = CAttributeAccess::RenameCount();
    index->m_nSlots = slots;
    for (std::uint32_t i = 0; i < count; ++i) {
        Insert(index, AttributeSlots(body)[i]);
    }
    extras.m_pIndex = index;
    return index;
}

CXMLAttribut* FindInIndex(const SAttributeIndex* index, const char* name,
                          std::size_t length) noexcept {
    return index->Slots()[SlotFor(index, CNameTable::Hash(name, length), name, length)];
}

void AddToIndex(SElementBody* body, CXMLAttribut* attribute) noexcept {
    SAttributeIndex* index = IndexOf(body);
    if (index == nullptr) {
        return;
    }
    if (HasRoom(index)) {
        Insert(index, attribute);
    } else {
        DropIndex(body);
    }
}

void RemoveFromIndex(SElementBody* body, const CXMLAttribut* attribute) noexcept {
    SAttributeIndex* index = IndexOf(body);
    if (index == nullptr) {
        return;
    }
    if (index->m_bHasDuplicates || index->m_nRenamesSeen != CAttributeAccess::RenameCount()) {
        DropIndex(body);
        return;
    }
    const char* name = CAttributeAccess::Name(attribute);
    const std::uint32_t slot = SlotFor(index, HashOfName(attribute), name, std::strlen(name));
    if (index->Slots()[slot] == attribute) {
        index->Slots()[slot] = RemovedMark();
    }
}

void FreeIndex(CTreeMemory& memory, SAttributeIndex* index) noexcept {
    if (index != nullptr) {
        memory.FreePlain(index, IndexBytes(index->m_nSlots));
    }
}

}  // namespace norvask
