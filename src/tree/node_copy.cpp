// CXMLNode: copying subtrees.
//
// Where both the source and the copy are objects of the library the copy is built directly;
// wherever one of them is of a derived class, its virtual operations are called.
#include "tree/node_copy.h"

#include <algorithm>
#include <memory>

#include "foundation/errors.h"
#include "tree/attribute_array.h"
#include "tree/attribute_strings.h"
#include "tree/tree_building.h"
#include "tree/walk.h"

namespace norvask {
namespace {

bool IsOwn(CXMLNode* node, EObject object) noexcept {
    return CNodeAccess::ObjectOf(node) == object;
}

// A copy below its own source would meet itself on the way. The copies that are being made on this
// thread are remembered, innermost first, and left out: the source is copied as it stood.
struct SCopyUnderWay {
    explicit SCopyUnderWay(const CXMLNode* started) noexcept : copy(started), outer(s_pInnermost) {
        s_pInnermost = this;
    }
    SCopyUnderWay(const SCopyUnderWay&) = delete;
    SCopyUnderWay& operator=(const SCopyUnderWay&) = delete;
    ~SCopyUnderWay() { s_pInnermost = outer; }

    // Whether the node is one of the copies under way, from this one outwards.
    static bool Has(const SCopyUnderWay* innermost, const CXMLNode* node) noexcept {
        while (innermost != nullptr && innermost->copy != node) {
            innermost = innermost->outer;
        }
        return innermost != nullptr;
    }

    const CXMLNode* copy;
    const SCopyUnderWay* outer;
    static thread_local const SCopyUnderWay* s_pInnermost;
};
thread_local const SCopyUnderWay* SCopyUnderWay::s_pInnermost = nullptr;

// Names of the source's tree and the same names of the copy's, so that a repeated name is looked up
// once. Has no use of either, so it must forget them whenever somebody else's code may have
// released a name.
class CNameMemo {
public:
    explicit CNameMemo(CTree* tree) noexcept : m_pTree(tree) {}

    // One use of the name in the copy's tree. `name` is one of the source's tree. Throws as
    // UseValidName.
    CNameUse Use(CTreeString name) {
        if (m_pEntries == nullptr) {
            m_pEntries.reset(new SEntry[ENTRIES]());
        }
        SEntry& entry = m_pEntries[(reinterpret_cast<std::uintptr_t>(name.Text()) >> 4) % ENTRIES];
        if (entry.source == name) {
            return CNameUse::Another(entry.copy);
        }
        CNameUse use = name.Is(KNOWN_NAME) ? CNameUse(*m_pTree, name.Known())
                                           : UseValidName(*m_pTree, name.Text());
        entry = {name, use.Name()};
        return use;
    }

    void Forget() noexcept {
        if (m_pEntries != nullptr) {
            std::fill_n(m_pEntries.get(), ENTRIES, SEntry());
        }
    }

private:
    static const std::size_t ENTRIES = 64;
    struct SEntry {
        CTreeString source;  // the constant "", which is no name of a tree, where there is none
        CTreeString copy;
    };
    CTree* m_pTree;
    std::unique_ptr<SEntry[]> m_pEntries;  // not on the stack, where copies of derived objects nest
};

// Attributes that an element was given by SetAttribute: no two have one name, and all are names of
// the tree.
void CopyPlainAttributes(SElementBody* copy, const SElementBody* source, CNameMemo& names) {
    const std::uint32_t count = AttributeCount(source);
    if (count == 0) {
        return;
    }
    ReserveAttributes(copy, count);
    for (CXMLAttribut** slots = AttributeSlots(source); *slots != nullptr; ++slots) {
        const SKnownText value = CAttributeAccess::Value(*slots).Known();
        if (!value.IsEmpty()) {
            AppendAttribute(copy, names.Use(CAttributeAccess::Name(*slots)), value);
        }
    }
}

class CSubtreeCopy {
public:
    explicit CSubtreeCopy(CTree* tree) noexcept
        : m_Names(tree), m_pUnderWay(SCopyUnderWay::s_pInnermost) {}

    // Copies the children of the source below the copy, and everything below them.
    void CopyBelow(CXMLNode* source, CXMLNode* copy);
    void CopyAttributes(CXMLNode* source, CXMLNode* copy);

private:
    void Descend(CXMLNode* source, CXMLNode* copy);
    void CopyOne(CXMLNode* source, CXMLNode* parent);
    CXMLNode* Next();

    CNameMemo m_Names;
    const SCopyUnderWay* const m_pUnderWay;
    CWalk<CXMLNode*> m_Walk;  // through the source; each level with its copy
};

void CSubtreeCopy::CopyAttributes(CXMLNode* source, CXMLNode* copy) {
    if (IsOwn(source, EObject::ELEMENT) && IsOwn(copy, EObject::ELEMENT)) {
        const SElementBody* const from = CNodeAccess::ElementOf(source);
        SElementBody* const to = CNodeAccess::ElementOf(copy);
        // An override may have given the copy attributes already.
        if (!TreeOf(from).Happened(CTree::ATTRIBUTE_RENAMED) && AttributeCount(to) == 0) {
            CopyPlainAttributes(to, from, m_Names);
            return;
        }
    }
    for (CXMLAttribut** slots = source->GetAttributes(); *slots != nullptr; ++slots) {
        copy->SetAttribute((*slots)->GetName(), (*slots)->GetValue());
    }
    m_Names.Forget();
}

void CSubtreeCopy::Descend(CXMLNode* source, CXMLNode* copy) {
    if (IsOwn(copy, EObject::ELEMENT)) {
        if (IsOwn(source, EObject::ELEMENT)) {
            const std::uint32_t count = ChildCount(CNodeAccess::ElementOf(source));
            if (count == 0) {
                return;
            }
            if (count >= FIRST_CHILD_CAPACITY) {
                ReserveChildren(CNodeAccess::ElementOf(copy), count);
            }
        }
        m_Walk.Enter(source, copy);
        return;
    }
    for (std::uint32_t i = 0; CXMLNode* child = source->GetChildren()[i]; ++i) {
        if (!SCopyUnderWay::Has(m_pUnderWay, child)) {
            copy->CopyChild(child, nullptr);
        }
    }
    m_Names.Forget();
}

// Copies one node, and prepares for what is below it. The parent is an element of the library.
void CSubtreeCopy::CopyOne(CXMLNode* source, CXMLNode* parent) {
    switch (CNodeAccess::ObjectOf(source)) {
        case EObject::ELEMENT: {
            CXMLNode* const copy =
                AddElement(parent, m_Names.Use(CNodeAccess::ElementOf(source)->name), nullptr);
            CopyAttributes(source, copy);
            Descend(source, copy);
            break;
        }
        case EObject::TEXT:
            AddText(parent, CNodeAccess::TextOf(source)->text.Known());
            break;
        case EObject::BINARY: {
            const SBinaryBody* const from = CNodeAccess::BinaryOf(source);
            AddBinary(parent)->SetData(from->data, from->length);
            break;
        }
        default:
            parent->CopyChild(source, nullptr);
            m_Names.Forget();
            break;
    }
}

// The next child to be copied; a derived class is asked for it, and may do anything then.
CXMLNode* CSubtreeCopy::Next() {
    CXMLNode* const from = m_Walk.Innermost().node;
    if (IsOwn(from, EObject::ELEMENT)) {
        return m_Walk.Next();
    }
    CXMLNode** const children = from->GetChildren();
    m_Names.Forget();
    return m_Walk.Next(children);
}

void CSubtreeCopy::CopyBelow(CXMLNode* source, CXMLNode* copy) {
    Descend(source, copy);
    while (!m_Walk.IsDone()) {
        CXMLNode* const child = Next();
        if (child == nullptr) {
            m_Walk.Leave();
        } else if (!SCopyUnderWay::Has(m_pUnderWay, child)) {
            CopyOne(child, m_Walk.Innermost().own);
        }
    }
}

}  // namespace

void CopyContent(CXMLNode* source, CXMLNode* copy) {
    CSubtreeCopy copying(&TreeOf(CNodeAccess::BodyOf(copy)));
    copying.CopyAttributes(source, copy);
    copying.CopyBelow(source, copy);
}

CXMLNode* CXMLNode::CopyChild(CXMLNode* source, CXMLNode* before) {
    if (source == nullptr) {
        ThrowInvalidParameter();
    }
    // The kind of a body is that of its object's class, and unlike its run-time type it is also
    // there when the class was compiled without type information.
    switch (CNodeAccess::BodyOf(source)->kind) {
        case NODE_TEXT:
            return CreateTextChild(static_cast<CXMLTextNode*>(source)->GetText());
        case NODE_BINARY: {
            CXMLBinNode* const copy = CreateBinChild();
            if (copy != nullptr) {  // an override may have made nothing
                const unsigned char* data = nullptr;
                std::size_t length = 0;
                static_cast<CXMLBinNode*>(source)->GetData(data, length);
                copy->SetData(data, length);
            }
            return copy;
        }
        default:
            break;
    }
    CXMLNode* copy = CreateChild(source->GetTagName(), before);
    if (copy != nullptr) {
        const SCopyUnderWay underWay(copy);
        CopyContent(source, copy);
    }
    return copy;
}

}  // namespace norvask
