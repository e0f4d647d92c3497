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

// A tree that was built in the order of its document lies in memory in that order too, so what is
// copied soon lies a little behind the node that is copied now.
void PrefetchBehind(const CXMLNode* node) noexcept {
    const std::size_t DISTANCE = 960;
    const std::size_t LINE = 64;
    const char* const behind = reinterpret_cast<const char*>(node) + DISTANCE;
    __builtin_prefetch(behind);
    __builtin_prefetch(behind + LINE);
    __builtin_prefetch(behind + 2 * LINE);
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
    explicit CNameMemo(CTree& tree) noexcept : m_Tree(tree) {}

    // The name in the copy's tree, where it is in use, if it is known; else the constant "". `name`
    // is one of the source's tree.
    CTreeString Find(CTreeString name) const noexcept {
        if (m_pEntries == nullptr) {
            return CTreeString();
        }
        const SEntry& entry = m_pEntries[IndexOf(name)];
        return entry.source == name ? entry.copy : CTreeString();
    }

    // One use of the name in the copy's tree. Throws as UseValidName.
    CNameUse Use(CTreeString name) {
        const CTreeString found = Find(name);
        return found != CTreeString() ? CNameUse::Another(found) : UseNew(name);
    }
    CNameUse UseNew(CTreeString name) {
        if (m_pEntries == nullptr) {
            m_pEntries.reset(new SEntry[ENTRIES]());
        }
        SEntry& entry = m_pEntries[IndexOf(name)];
        CNameUse use = name.Is(KNOWN_NAME) ? CNameUse(m_Tree, name.Known())
                                           : UseValidName(m_Tree, name.Text());
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

    static std::size_t IndexOf(CTreeString name) noexcept {
        return (reinterpret_cast<std::uintptr_t>(name.Text()) >> 4) % ENTRIES;
    }

    struct SEntry {
        CTreeString source;  // the constant "", which is no name of a tree, where there is none
        CTreeString copy;
    };
    CTree& m_Tree;
    std::unique_ptr<SEntry[]> m_pEntries;  // not on the stack, where copies of derived objects nest
};

// Attributes that an element was given by SetAttribute: no two have one name, and all are names of
// the tree. The copy has none yet.
void CopyPlainAttributes(CTree& tree, SElementBody* copy, const SElementBody* source,
                         CNameMemo& names) {
    const std::uint32_t count = AttributeCount(source);
    if (count == 0) {
        return;
    }
    ReserveAttributes(copy, count);
    for (CXMLAttribut** slots = AttributeSlots(source); *slots != nullptr; ++slots) {
        const CTreeString value = CAttributeAccess::Value(*slots);
        if (!value.IsEmpty()) {
            AppendCopiedAttribute(tree, *copy->attributes,
                                  names.Use(CAttributeAccess::Name(*slots)), value);
        }
    }
}

class CSubtreeCopy {
public:
    explicit CSubtreeCopy(CTree& tree) noexcept
        : m_Tree(tree), m_Names(tree), m_pUnderWay(SCopyUnderWay::s_pInnermost) {}

    // Copies the children of the source below the copy, and everything below them.
    void CopyBelow(CXMLNode* source, CXMLNode* copy);
    void CopyAttributes(CXMLNode* source, CXMLNode* copy);

private:
    using Walk = CWalk<CXMLNode*>;  // through the source; each level with its copy

    bool CanEnter(CXMLNode* source, CXMLNode* copy);
    CXMLNode* Next(Walk::SLevel& level);
    bool IsLeftOut(const CXMLNode* node) const noexcept {
        return m_pUnderWay != nullptr && SCopyUnderWay::Has(m_pUnderWay, node);
    }
    void CopyOne(CXMLNode* source, Walk::SLevel& level);
    void CopyElement(CXMLNode* source, Walk::SLevel& level);
    void CopyText(CXMLNode* source, CXMLNode* parent);
    void CopyOther(CXMLNode* source, CXMLNode* parent);

    CTree& m_Tree;
    CNameMemo m_Names;
    const SCopyUnderWay* const m_pUnderWay;
    Walk m_Walk;  // the levels outside of the innermost one
};

void CSubtreeCopy::CopyAttributes(CXMLNode* source, CXMLNode* copy) {
    if (IsOwn(source, EObject::ELEMENT) && IsOwn(copy, EObject::ELEMENT)) {
        const SElementBody* const from = CNodeAccess::ElementOf(source);
        SElementBody* const to = CNodeAccess::ElementOf(copy);
        // An override may have given the copy attributes already.
        if (!TreeOf(from).Happened(CTree::ATTRIBUTE_RENAMED) && AttributeCount(to) == 0) {
            CopyPlainAttributes(m_Tree, to, from, m_Names);
            return;
        }
    }
    for (CXMLAttribut** slots = source->GetAttributes(); *slots != nullptr; ++slots) {
        copy->SetAttribute((*slots)->GetName(), (*slots)->GetValue());
    }
    m_Names.Forget();
}

// Whether the walk is to go through the children of the source; those of a copy that is of a
// derived class are copied by its operation, at once.
bool CSubtreeCopy::CanEnter(CXMLNode* source, CXMLNode* copy) {
    if (IsOwn(copy, EObject::ELEMENT)) {
        if (IsOwn(source, EObject::ELEMENT)) {
            const std::uint32_t count = ChildCount(CNodeAccess::ElementOf(source));
            if (count >= FIRST_CHILD_CAPACITY) {
                ReserveChildren(CNodeAccess::ElementOf(copy), count);
            }
            return count != 0;
        }
        return true;
    }
    for (std::uint32_t i = 0; CXMLNode* child = source->GetChildren()[i]; ++i) {
        if (!IsLeftOut(child)) {
            copy->CopyChild(child, nullptr);
        }
    }
    m_Names.Forget();
    return false;
}

// The next child to be copied; a derived class is asked for it, and may do anything then.
inline CXMLNode* CSubtreeCopy::Next(Walk::SLevel& level) {
    CXMLNode* child = nullptr;
    if (IsOwn(level.node, EObject::ELEMENT)) {
        child = Walk::ChildOf(level);
    } else {
        CXMLNode** const children = level.node->GetChildren();
        m_Names.Forget();
        child = children[level.next];
    }
    if (child != nullptr) {
        ++level.next;
    }
    return child;
}

// Copies one node. The parent is an element of the library.
inline void CSubtreeCopy::CopyOne(CXMLNode* source, Walk::SLevel& level) {
    switch (CNodeAccess::ObjectOf(source)) {
        case EObject::ELEMENT:
            CopyElement(source, level);
            break;
        case EObject::TEXT:
            CopyText(source, level.own);
            break;
        default:
            CopyOther(source, level.own);
            break;
    }
}

// An element with children becomes the innermost level, unless all it has is one text.
inline void CSubtreeCopy::CopyElement(CXMLNode* source, Walk::SLevel& level) {
    SElementBody* const from = CNodeAccess::ElementOf(source);
    SElementBody* const parent = CNodeAccess::ElementOf(level.own);
    ReserveLastChild(parent);
    const CTreeString name = m_Names.Find(from->name);
    CXMLNode* const copy =
        name != CTreeString()
            ? CNodeAccess::NewElement(m_Tree, name, level.own)
            : CNodeAccess::NewElement(m_Tree, m_Names.UseNew(from->name), level.own);
    PutLastChild(parent, copy);
    if (from->attributes != nullptr) {
        CopyAttributes(source, copy);
    }
    CXMLNode* const* const children = ChildSlots(from);
    if (children[0] == nullptr) {
        return;
    }
    if (children[1] == nullptr) {
        if (IsOwn(children[0], EObject::TEXT)) {
            CopyText(children[0], copy);
            return;
        }
    } else {
        ReserveChildren(CNodeAccess::ElementOf(copy), ChildCount(from));
    }
    m_Walk.Put(level);
    level.node = source;
    level.next = 0;
    level.own = copy;
}

inline void CSubtreeCopy::CopyText(CXMLNode* source, CXMLNode* parent) {
    SElementBody* const body = CNodeAccess::ElementOf(parent);
    ReserveLastChild(body);
    PutLastChild(body, CNodeAccess::NewText(m_Tree, CNodeAccess::TextOf(source)->text, parent));
}

void CSubtreeCopy::CopyOther(CXMLNode* source, CXMLNode* parent) {
    if (IsOwn(source, EObject::BINARY)) {
        const SBinaryBody* const from = CNodeAccess::BinaryOf(source);
        AddBinary(parent)->SetData(from->data, from->length);
    } else {
        parent->CopyChild(source, nullptr);
        m_Names.Forget();
    }
}

void CSubtreeCopy::CopyBelow(CXMLNode* source, CXMLNode* copy) {
    if (!CanEnter(source, copy)) {
        return;
    }
    CNodeAccess::SetParent(copy);
    Walk::SLevel level(source, copy);
    for (;;) {
        CXMLNode* const child = Next(level);
        if (child == nullptr) {
            if (m_Walk.IsDone()) {
                return;
            }
            m_Walk.Take(level);
        } else if (!IsLeftOut(child)) {
            PrefetchBehind(child);
            CopyOne(child, level);
        }
    }
}

}  // namespace

void CopyContent(CXMLNode* source, CXMLNode* copy) {
    CSubtreeCopy copying(TreeOf(CNodeAccess::BodyOf(copy)));
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
