// Replacing and freeing the strings of an attribute.
#include "tree/attribute_strings.h"

#include "tree/attribute_index.h"

namespace norvask {
namespace {

std::uintptr_t Number(CTreeString string) noexcept {
    return reinterpret_cast<std::uintptr_t>(string.Text());
}

}  // namespace

void CAttributeAccess::FreeName(CTreeString name, bool held) noexcept {
    if (held) {
        ReleaseString(name);
    } else {
        CNameUse::Adopt(name);
    }
}

void CAttributeAccess::FreeValue(CTreeString value, bool held) noexcept {
    if (held) {
        ReleaseString(value);
    } else {
        FreeTreeString(value);
    }
}

void CAttributeAccess::Destroy(CTree& tree, CXMLAttribut* attribute) noexcept {
    const bool held = Holds(attribute);
    FreeName(Name(attribute), held);
    FreeValue(Value(attribute), held);
    tree.Arena().FreePlain(attribute, sizeof(CXMLAttribut));
}

// The attribute keeps the use of the new name, or with `holds` has retained it.
void CAttributeAccess::ReplaceName(CXMLAttribut* attribute, CTreeString name, bool holds) noexcept {
    const CTreeString old = Name(attribute);
    const bool held = Holds(attribute);
    const bool indexed = IsIndexed(attribute);
    attribute->m_nName = Number(name) | (holds ? HOLDS : 0) | (indexed ? INDEXED : 0);
    if (!held) {
        CTree& tree = old.Tree();
        tree.Note(CTree::ATTRIBUTE_RENAMED);
        if (holds) {
            tree.Note(CTree::HOLDS_OTHERS);
        }
        if (indexed) {
            tree.Index()->Renamed(attribute);
        }
    } else if (indexed) {
        CAttributeIndex::NoteRenamedElsewhere();
    }
    FreeName(old, held);
}

void CAttributeAccess::ReplaceValue(CXMLAttribut* attribute, CTreeString value,
                                    bool held) noexcept {
    const CTreeString old = Value(attribute);
    attribute->m_nValue = Number(value);
    FreeValue(old, held);
}

void CAttributeAccess::SetValue(CXMLAttribut* attribute, const SKnownText& value) {
    if (Holds(attribute)) {
        attribute->m_nValue = Number(ReplaceOuterString(Value(attribute), value));
    } else {
        ReplaceValue(attribute, NewTreeString(Name(attribute).Tree(), value), false);
    }
}

}  // namespace norvask
