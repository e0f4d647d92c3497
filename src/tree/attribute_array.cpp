// Finding, adding and removing attributes of an element.
#include "tree/attribute_array.h"

#include <cstring>
#include <new>

#include "tree/attribute_index.h"
#include "tree/attribute_strings.h"

namespace norvask {
namespace {

const std::uint32_t FIRST_ATTRIBUTE_CAPACITY = 1;

CXMLAttribut* const NO_ATTRIBUTES[] = {nullptr};

std::size_t ArrayBytes(std::uint32_t capacity) noexcept {
    return sizeof(SAttributeArray) + capacity * sizeof(CXMLAttribut*);
}

void SetCapacity(SElementBody* body, std::uint32_t capacity) {
    CArena& arena = TreeOf(body).Arena();
    SAttributeArray* const grown =
        new (arena.AllocatePlain(ArrayBytes(capacity))) SAttributeArray();
    SAttributeArray* const old = body->attributes;
    if (old == nullptr) {
        grown->used = 1;
        grown->Slots()[0] = nullptr;
    } else {
        *grown = *old;
        MoveSlots(grown->Slots(), old->Slots(), old->used);
        arena.FreePlain(old, ArrayBytes(old->capacity));
    }
    grown->capacity = capacity;
    body->attributes = grown;
}

bool IsIndexed(const SElementBody* body) noexcept {
    const SElementExtras* const extras = ExtrasOrNull(body);
    return extras != nullptr && extras->indexed != 0;
}

void LeaveIndex(SElementBody* body) noexcept {
    CAttributeIndex& index = *CAttributeIndex::Of(TreeOf(body));
    for (CXMLAttribut** slots = AttributeSlots(body); *slots != nullptr; ++slots) {
        if (CAttributeAccess::IsIndexed(*slots)) {
            index.Remove(*slots);
        }
    }
    body->attributes->extras->indexed = 0;
}

// Adds the attributes from this one on. Without memory the element does without the index.
bool EnterIndex(SElementBody* body, std::uint32_t first) noexcept {
    try {
        std::uint32_t& order = MadeExtras(body).indexed;
        if (order > UINT32_MAX - body->attributes->Count()) {
            LeaveIndex(body);  // and enters it again when it is searched
            return false;
        }
        CAttributeIndex& index = CAttributeIndex::MadeFor(TreeOf(body));
        for (std::uint32_t i = first; i < body->attributes->Count(); ++i) {
            index.Add(body, ++order, body->attributes->Slots()[i]);
        }
        return true;
    } catch (const std::bad_alloc&) {
        if (IsIndexed(body)) {
            LeaveIndex(body);
        }
        return false;
    }
}

SNameLookUp LookedUp(CTreeString name) noexcept {
    return {name.Text(), name.Length(), CNameTable::HashOf(name), true, name};
}

void RemoveAttribute(SElementBody* body, CXMLAttribut* attribute) noexcept {
    SAttributeArray& attributes = *body->attributes;
    if (CAttributeAccess::IsIndexed(attribute)) {
        CAttributeIndex::Of(TreeOf(body))->Remove(attribute);
    }
    RemoveSlot(attributes.Slots(), attributes.used,
               FindSlot(attributes.Slots(), attributes.used, attribute));
    DestroyAttribute(TreeOf(body), attribute);
    if (IsIndexed(body) && attributes.Count() < INDEX_FROM / 2) {
        LeaveIndex(body);
    }
}

}  // namespace

CXMLAttribut** NoAttributes() noexcept { return const_cast<CXMLAttribut**>(NO_ATTRIBUTES); }

CXMLAttribut* FindAttribute(SElementBody* body, const SNameLookUp& name) noexcept {
    const std::uint32_t count = AttributeCount(body);
    if (count >= INDEX_FROM && (IsIndexed(body) || EnterIndex(body, 0))) {
        const CAttributeIndex& index = *CAttributeIndex::Of(TreeOf(body));
        if (index.IsWhole()) {
            return index.Find(body, name);
        }
    }
    CXMLAttribut** const slots = AttributeSlots(body);
    for (std::uint32_t i = 0; i < count; ++i) {
        const CTreeString own = CAttributeAccess::Name(slots[i]);
        if (name.isFound && own == name.name) {
            return slots[i];
        }
        // A name that the attribute holds may lie outside of the tree.
        if (CAttributeAccess::Holds(slots[i]) && own.Equals(name.text, name.length)) {
            return slots[i];
        }
    }
    return nullptr;
}

void ReserveAttributes(SElementBody* body, std::size_t count) {
    const bool fresh = body->attributes == nullptr;
    const std::uint32_t capacity =
        CapacityFor(fresh ? FIRST_ATTRIBUTE_CAPACITY : body->attributes->capacity, count);
    if (fresh || capacity != body->attributes->capacity) {
        SetCapacity(body, capacity);
    }
}

void AppendAttribute(SElementBody* body, CNameUse&& name, const SKnownText& value) {
    CTree& tree = TreeOf(body);
    const std::uint32_t count = AttributeCount(body);
    ReserveAttributes(body, static_cast<std::size_t>(count) + 1);
    CNewString copy(tree, value);
    CXMLAttribut* const attribute = CAttributeAccess::New(tree, name, copy);
    PutSlot(body->attributes->Slots(), body->attributes->used, attribute);
    if (IsIndexed(body)) {
        EnterIndex(body, count);
    }
}

namespace {

// `makeUse` gives the use of the name to an attribute that is added.
template <typename MakeUse>
void SetFound(SElementBody* body, CXMLAttribut* found, const SKnownText& value, MakeUse makeUse) {
    if (found == nullptr && !value.IsEmpty()) {
        AppendAttribute(body, makeUse(), value);
    } else if (found != nullptr && !value.IsEmpty()) {
        SetAttributeValue(found, value);
    } else if (found != nullptr) {
        RemoveAttribute(body, found);
    }
}

}  // namespace

void SetAttribute(SElementBody* body, const SNameLookUp& name, unsigned int known,
                  const SKnownText& value) {
    SetFound(body, FindAttribute(body, name), value,
             [&] { return CNameUse(TreeOf(body), name, known); });
}

void SetAttribute(SElementBody* body, CNameUse&& name, const SKnownText& value) {
    CXMLAttribut* const found =
        AttributeCount(body) == 0 ? nullptr : FindAttribute(body, LookedUp(name.Name()));
    SetFound(body, found, value, [&]() -> CNameUse&& { return std::move(name); });
}

SElementExtras& MadeExtras(SElementBody* body) {
    if (body->attributes == nullptr) {
        SetCapacity(body, FIRST_ATTRIBUTE_CAPACITY);
    }
    SElementExtras*& extras = body->attributes->extras;
    if (extras == nullptr) {
        extras = new (TreeOf(body).Arena().AllocatePlain(sizeof(SElementExtras))) SElementExtras();
    }
    return *extras;
}

void FreeAttributes(SElementBody* body) noexcept {
    SAttributeArray* const attributes = body->attributes;
    if (attributes == nullptr) {
        return;
    }
    CTree& tree = TreeOf(body);
    if (IsIndexed(body)) {
        LeaveIndex(body);
    }
    for (std::uint32_t i = 0; i < attributes->Count(); ++i) {
        DestroyAttribute(tree, attributes->Slots()[i]);
    }
    if (attributes->extras != nullptr) {
        FreeResult(tree.Arena(), attributes->extras->result);
        tree.Arena().FreePlain(attributes->extras, sizeof(SElementExtras));
    }
    tree.Arena().FreePlain(attributes, ArrayBytes(attributes->capacity));
    body->attributes = nullptr;
}

}  // namespace norvask
