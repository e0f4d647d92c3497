// CXMLNode: copying subtrees.
//
// The walk keeps its own stack. Where both the source and the copy are objects of the library the copy is built
// directly; wherever one of them is of a derived class, its virtual operations are called.
#include "tree/node_copy.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <vector>

#include "foundation/errors.h"
#include "tree/attribute_access.h"
#include "tree/attribute_array.h"
#include "tree/child_array.h"
#include "tree/tree_building.h"

namespace norvask {
namespace {

bool IsOwn(CXMLNode* node, EObject object) noexcept {
    return CNodeAccess::ObjectOf(node) == object;
}

// A copy below its own source would meet itself on the way. The copies that are being made on this thread
// are remembered, innermost first, and left out: the source is copied as it stood.
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

// Names of the source's memory and the same names of the copy's, so that a repeated name is looked up once.
// Holds no use of either, so it must forget them whenever somebody else's code may have released a name.
class CNameMemo {
public:
    explicit CNameMemo(CTreeMemory* memory) noexcept : m_pMemory(memory) {}

    // The name in the copy's memory, with one more use. `name` is a valid name of the source's memory.
    const char* Acquire(const char* name) {
        if (m_pEntries == nullptr) {
            m_pEntries.reset(new SEntry[ENTRIES]());
        }
        SEntry& entry = m_pEntries[(reinterpret_cast<std::uintptr_t>(name) >> 4) % ENTRIES];
        if (entry.source == name) {
            CNameTable::AddUse(entry.copy);
        } else {
            entry.copy = AcquireValidName(*m_pMemory, name);
            entry.source = name;
        }
        return entry.copy;
    }

    void Forget() noexcept {
        if (m_pEntries != nullptr) {
            std::fill_n(m_pEntries.get(), ENTRIES, SEntry());
        }
    }

private:
    static const std::size_t ENTRIES = 64;
    struct SEntry {
        const char* source;
        const char* copy;
    };
    CTreeMemory* m_pMemory;
    std::unique_ptr<SEntry[]> m_pEntries;  // not on the stack, where copies of derived objects nest
};

// Whether an element's attributes can be copied without looking for equal names.
bool HasPlainAttributes(SElementBody* source) noexcept {
    return !MemoryOf(source).Happened(CTreeMemory::ATTRIBUTE_RENAMED);
}

void CopyPlainAttributes(SElementBody* copy, SElementBody* source, CNameMemo& names) {
    const std::uint32_t count = AttributeCount(source);
    if (count == 0) {
        return;
    }
    ReserveAttributes(copy, count);
    CTreeMemory& memory = MemoryOf(copy);
    for (CXMLAttribut** slots = AttributeSlots(source); *slots != nullptr; ++slots) {
        const char* value = CAttributeAccess::Value(*slots);
        if (*value == '\0') {
            continue;
        }
        const char* name = names.Acquire(CAttributeAccess::Name(*slots));
        try {
            AppendAttribute(copy, name, value, LengthOf(value), HasFlag(value, STRING_UTF8));
        } catch (...) {
            memory.Names().Release(memory, name);
            throw;
        }
    }
}

// An element whose children are being copied.
struct SLevel {
    CXMLNode* source;
    CXMLNode* copy;
    std::uint32_t next;
};

class CSubtreeCopy {
public:
    explicit CSubtreeCopy(CTreeMemory* memory) noexcept
        : m_Names(memory), m_pUnderWay(SCopyUnderWay::s_pInnermost) {}

    // Copies the children of the source below the copy, and everything below them.
    void CopyBelow(CXMLNode* source, CXMLNode* copy);
    void CopyAttributes(CXMLNode* source, CXMLNode* copy);

private:
    void Descend(CXMLNode* source, CXMLNode* copy);
    void CopyOne(CXMLNode* source, CXMLNode* parent);

    CNameMemo m_Names;
    const SCopyUnderWay* const m_pUnderWay;
    std::vector<SLevel> m_Levels;
};

void CSubtreeCopy::CopyAttributes(CXMLNode* source, CXMLNode* copy) {
    if (IsOwn(source, EObject::ELEMENT) && IsOwn(copy, EObject::ELEMENT)) {
        SElementBody* from = CNodeAccess::ElementOf(source);
        SElementBody* to = CNodeAccess::ElementOf(copy);
        // An override may have given the copy attributes already.
        if (HasPlainAttributes(from) && AttributeCount(to) == 0) {
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
        m_Levels.push_back({source, copy, 0});
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
            const char* name = CNodeAccess::ElementOf(source)->m_pName;
            CTreeMemory& memory = MemoryOf(CNodeAccess::BodyOf(parent));
            CXMLNode* copy =
                AddElement(parent,
                           HasFlag(name, STRING_VALID) ? m_Names.Acquire(name)
                                                       : AcquireValidName(memory, name),
                           nullptr);
            CopyAttributes(source, copy);
            Descend(source, copy);
            break;
        }
        case EObject::TEXT: {
            const char* text = CNodeAccess::TextOf(source)->m_pText;
            AddText(parent, text, LengthOf(text), HasFlag(text, STRING_UTF8));
            break;
        }
        case EObject::BINARY: {
            const SBinaryBody* from = CNodeAccess::BinaryOf(source);
            AddBinary(parent)->SetData(from->m_pData, from->m_nLength);
            break;
        }
        default:
            parent->CopyChild(source, nullptr);
            m_Names.Forget();
            break;
    }
}

void CSubtreeCopy::CopyBelow(CXMLNode* source, CXMLNode* copy) {
    Descend(source, copy);
    while (!m_Levels.empty()) {
        SLevel& level = m_Levels.back();
        CXMLNode** children = IsOwn(level.source, EObject::ELEMENT)
                                  ? ChildSlots(CNodeAccess::ElementOf(level.source))
                                  : level.source->GetChildren();
        CXMLNode* child = children[level.next];
        if (child == nullptr) {
            m_Levels.pop_back();
            continue;
        }
        ++level.next;
        if (!SCopyUnderWay::Has(m_pUnderWay, child)) {
            CopyOne(child, level.copy);
        }
    }
}

}  // namespace

void CopyContent(CXMLNode* source, CXMLNode* copy) {
    CSubtreeCopy copying(&MemoryOf(CNodeAccess::BodyOf(copy)));
    copying.CopyAttributes(source, copy);
    copying.CopyBelow(source, copy);
}

CXMLNode* CXMLNode::CopyChild(CXMLNode* source, CXMLNode* before) {
    if (source == nullptr) {
        ThrowInvalidParameter();
    }
    // The kind of a body is that of its object's class, and unlike its run-time type it is also there when the
    // class was compiled without type information.
    switch (CNodeAccess::BodyOf(source)->m_nKind) {
        case NODE_TEXT:
            return CreateTextChild(static_cast<CXMLTextNode*>(source)->GetText());
        case NODE_BINARY: {
            CXMLBinNode* copy = CreateBinChild();
            const unsigned char* data = nullptr;
            std::size_t length = 0;
            static_cast<CXMLBinNode*>(source)->GetData(data, length);
            copy->SetData(data, length);
            return copy;
        }
        default:
            break;
    }
    CXMLNode* copy = CreateChild(source->GetTagName(), before);
    if (copy != nullptr) {  // an override may have made nothing
        const SCopyUnderWay underWay(copy);
        CopyContent(source, copy);
    }
    return copy;
}

}  // namespace norvask
