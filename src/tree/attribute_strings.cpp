// Every change of a string of an attribute comes here, so that its tree learns of new names.
#include "tree/attribute_strings.h"

#include "tree/attribute_index.h"

namespace norvask {
namespace {

void FreeName(CTreeString name, bool held) noexcept {
    if (held) {
        ReleaseString(name);
    } else {
        CNameUse::Release(name);
    }
}

void FreeValue(CTreeString value, bool held) noexcept {
    if (held) {
        ReleaseString(value);
    } else {
        FreeTreeString(value);
    }
}

}  // namespace

void ReplaceName(CXMLAttribut* attribute, CTreeString name, bool holds) noexcept {
    const CTreeString old = CAttributeAccess::Name(attribute);
    const bool held = CAttributeAccess::Holds(attribute);
    const bool indexed = CAttributeAccess::IsIndexed(attribute);
    CAttributeAccess::SetName(attribute, name, holds);
    if (!held) {
        CTree& tree = old.Tree();
        tree.Note(CTree::ATTRIBUTE_RENAMED);
        if (holds) {
            tree.Note(CTree::HOLDS_OTHERS);
        }
        if (indexed) {
            CAttributeIndex::Renamed(tree, attribute);
        }
    } else if (indexed) {
        CAttributeIndex::RenamedAssigned(attribute);
    }
    FreeName(old, held);
}

void ReplaceValue(CXMLAttribut* attribute, CTreeString value, bool heldBefore) noexcept {
    const CTreeString old = CAttributeAccess::Value(attribute);
    CAttributeAccess::SetValue(attribute, value);
    FreeValue(old, heldBefore);
}

void SetAttributeValue(CXMLAttribut* attribute, const SKnownText& value) {
    if (CAttributeAccess::Holds(attribute)) {
        CAttributeAccess::SetValue(attribute,
                                   ReplaceOuterString(CAttributeAccess::Value(attribute), value));
    } else {
        CTree& tree = CAttributeAccess::Name(attribute).Tree();
        ReplaceValue(attribute, tree.Strings().New(value), false);
    }
}

void ReleaseHeld(const CXMLAttribut* attribute) noexcept {
    if (CAttributeAccess::Holds(attribute)) {
        ReleaseString(CAttributeAccess::Name(attribute));
        ReleaseString(CAttributeAccess::Value(attribute));
    }
}

void DestroyAttribute(CTree& tree, CXMLAttribut* attribute) noexcept {
    const bool held = CAttributeAccess::Holds(attribute);
    FreeName(CAttributeAccess::Name(attribute), held);
    FreeValue(CAttributeAccess::Value(attribute), held);
    tree.Arena().FreePlain(attribute, sizeof(CXMLAttribut));
}

}  // namespace norvask
