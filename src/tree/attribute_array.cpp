#include "tree/attribute_array.h"

#include <cstring>
#include <new>

#include "foundation/text_rules.h"
#include "tree/attribute_access.h"
#include "tree/attribute_index.h"

namespace norvask {
namespace {

const std::uint32_t FIRST_ATTRIBUTE_CAPACITY = 1;
const std::uint32_t FIRST_RESULT_CAPACITY = 2;
const std::uint32_t LARGEST_CAPACITY = 1U << 31;

CXMLAttribut* const NO_ATTRIBUTES[] = {nullptr};

std::size_t ArrayBytes(std::uint32_t capacity) noexcept {
    return sizeof(SAttributeArray) + capacity * sizeof(CXMLAttribut*);
}

void SetCapacity(SElementBody* body, std::uint32_t capacity) {
    CTreeMemory& memory = MemoryOf(body);
    SAttributeArray* grown = new (memory.AllocatePlain(ArrayBytes(capacity))) SAttributeArray();
    SAttributeArray* old = body->m_pAttributes;
    if (old == nullptr) {
        grown->m_nUsed = 1;
        grown->Slots()[0] = nullptr;
    } else {
        *grown = *old;
        std::memcpy(grown->Slots(), old->Slots(), old->m_nUsed * sizeof(CXMLAttribut*));
        memory.FreePlain(old, ArrayBytes(old->m_nCapacity));
    }
    grown->m_nCapacity = capacity;
    body->m_pAttributes = grown;
}

}  // namespace

CXMLAttribut** NoAttributes() noexcept { return const_cast<CXMLAttribut**>(NO_ATTRIBUTES); }

namespace {

// `known` is the name in the tree's memory, NULL when there is none.
CXMLAttribut* Find(SElementBody* body, const char* known, const char* name,
                   std::size_t length) noexcept {
    const std::uint32_t count = AttributeCount(body);
    if (count >= INDEX_FROM) {
        try {
            return FindInIndex(UpToDateIndex(body), name, length);
        } catch (const std::bad_alloc&) {
            // No memory to be fast with; the search below needs none.
        }
    }
    CXMLAttribut** slots = AttributeSlots(body);
    for (std::uint32_t i = 0; i < count; ++i) {
        const char* own = CAttributeAccess::Name(slots[i]);
        if (own == known) {
            return slots[i];
        }
        // A name that the attribute holds may lie outside of the tree and need a look at its characters.
        if (CAttributeAccess::Holds(slots[i]) && std::strncmp(own, name, length) == 0 &&
            own[length] == '\0') {
            return slots[i];
        }
    }
    return nullptr;
}

}  // namespace

CXMLAttribut* FindAttribute(SElementBody* body, const char* name, std::size_t length) noexcept {
    if (AttributeCount(body) == 0) {
        return nullptr;
    }
    return Find(body, MemoryOf(body).Names().Find(name, length), name, length);
}

void ReserveAttributes(SElementBody* body, std::size_t count) {
    const bool fresh = body->m_pAttributes == nullptr;
    std::uint32_t capacity = fresh ? FIRST_ATTRIBUTE_CAPACITY : body->m_pAttributes->m_nCapacity;
    while (capacity <= count) {
        if (capacity == LARGEST_CAPACITY) {
            throw std::bad_alloc();
        }
        capacity *= 2;
    }
    if (fresh || capacity != body->m_pAttributes->m_nCapacity) {
        SetCapacity(body, capacity);
    }
}

void AppendAttribute(SElementBody* body, const char* name, const char* value, std::size_t length,
                     bool isUtf8) {
    CTreeMemory& memory = MemoryOf(body);
    ReserveAttributes(body, static_cast<std::size_t>(AttributeCount(body)) + 1);
    const char* copy = NewTreeString(memory, value, length, isUtf8);
    CXMLAttribut* attribute = nullptr;
    try {
        attribute = CAttributeAccess::New(memory, name, copy);
    } catch (...) {
        FreeTreeString(memory, copy);
        throw;
    }
    SAttributeArray& attributes = *body->m_pAttributes;
    attributes.Slots()[attributes.m_nUsed - 1] = attribute;
    attributes.Slots()[attributes.m_nUsed] = nullptr;
    ++attributes.m_nUsed;
    AddToIndex(body, attribute);
}

void RemoveAttribute(SElementBody* body, CXMLAttribut* attribute) noexcept {
    SAttributeArray& attributes = *body->m_pAttributes;
    CXMLAttribut** slots = attributes.Slots();
    std::uint32_t index = 0;
    while (slots[index] != attribute) {
        ++index;
    }
    RemoveFromIndex(body, attribute);
    std::memmove(slots + index, slots + index + 1,
                 (attributes.m_nUsed - index - 1) * sizeof(CXMLAttribut*));
    --attributes.m_nUsed;
    CAttributeAccess::End(MemoryOf(body), attribute);
}

void SetNamedAttribute(SElementBody* body, const char* name, const char* value, std::size_t length,
                       bool isUtf8) {
    CXMLAttribut* attribute = Find(body, name, name, CNameTable::Length(name));
    if (attribute == nullptr && length != 0) {
        AppendAttribute(body, name, value, length, isUtf8);
        return;
    }
    CTreeMemory& memory = MemoryOf(body);
    if (attribute != nullptr && length != 0) {
        attribute->SetValue(value);
    } else if (attribute != nullptr) {
        RemoveAttribute(body, attribute);
    }
    memory.Names().Release(memory, name);
}

void SetValidAttribute(SElementBody* body, const char* name, std::size_t nameLength,
                       const char* value, std::size_t valueLength) {
    CXMLAttribut* attribute = FindAttribute(body, name, nameLength);
    if (valueLength == 0) {
        if (attribute != nullptr) {
            RemoveAttribute(body, attribute);
        }
        return;
    }
    if (attribute != nullptr) {
        attribute->SetValue(value);
        return;
    }
    CTreeMemory& memory = MemoryOf(body);
    const char* known = memory.Names().Acquire(memory, name, nameLength);
    try {
        AppendAttribute(body, known, value, valueLength, IsKnownUtf8(value));
    } catch (...) {
        memory.Names().Release(memory, known);
        throw;
    }
    AddFlag(known, STRING_VALID);
}

SNodeExtras* NewExtras(CTreeMemory& memory) {
    return new (memory.AllocatePlain(sizeof(SNodeExtras))) SNodeExtras();
}

SNodeExtras& ExtrasOf(SElementBody* body) {
    if (body->m_pAttributes == nullptr) {
        SetCapacity(body, FIRST_ATTRIBUTE_CAPACITY);
    }
    SNodeExtras*& extras = body->m_pAttributes->m_pExtras;
    if (extras == nullptr) {
        extras = NewExtras(MemoryOf(body));
    }
    return *extras;
}

void MakeResult(CTreeMemory& memory, SNodeExtras& extras) {
    extras.m_pResult =
        static_cast<CXMLNode**>(memory.AllocatePlain(FIRST_RESULT_CAPACITY * sizeof(CXMLNode*)));
    extras.m_pResult[0] = nullptr;
    extras.m_nResultCapacity = FIRST_RESULT_CAPACITY;
    extras.m_nResultUsed = 1;
}

void GrowResult(CTreeMemory& memory, SNodeExtras& extras) {
    if (extras.m_nResultCapacity == LARGEST_CAPACITY) {
        throw std::bad_alloc();
    }
    const std::uint32_t capacity = 2 * extras.m_nResultCapacity;
    CXMLNode** grown = static_cast<CXMLNode**>(memory.AllocatePlain(capacity * sizeof(CXMLNode*)));
    std::memcpy(grown, extras.m_pResult, extras.m_nResultUsed * sizeof(CXMLNode*));
    memory.FreePlain(extras.m_pResult, extras.m_nResultCapacity * sizeof(CXMLNode*));
    extras.m_pResult = grown;
    extras.m_nResultCapacity = capacity;
}

void FreeExtras(CTreeMemory& memory, SNodeExtras* extras) noexcept {
    if (extras == nullptr) {
        return;
    }
    if (extras->m_pResult != nullptr) {
        memory.FreePlain(extras->m_pResult, extras->m_nResultCapacity * sizeof(CXMLNode*));
    }
    FreeIndex(memory, extras->m_pIndex);
    memory.FreePlain(extras, sizeof(SNodeExtras));
}

void FreeAttributes(SElementBody* body) noexcept {
    SAttributeArray* attributes = body->m_pAttributes;
    if (attributes == nullptr) {
        return;
    }
    CTreeMemory& memory = MemoryOf(body);
    for (std::uint32_t i = 0; i < attributes->Count(); ++i) {
        CAttributeAccess::End(memory, attributes->Slots()[i]);
    }
    FreeExtras(memory, attributes->m_pExtras);
    memory.FreePlain(attributes, ArrayBytes(attributes->m_nCapacity));
    body->m_pAttributes = nullptr;
}

}  // namespace norvask
