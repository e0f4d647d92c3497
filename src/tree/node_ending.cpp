#include "tree/node_ending.h"

#include "tree/attribute_access.h"
#include "tree/attribute_array.h"
#include "tree/child_array.h"

namespace norvask {
namespace {

// What may have happened to a tree that its memory cannot simply be dropped.
const unsigned int NEEDS_WALK = CTreeMemory::CHILDREN_SHOWN | CTreeMemory::HOLDS_OTHERS;

// A walk over what is to end. Nodes that wait are linked through the parent pointers of their bodies, which
// nobody needs any more, so a walk takes no memory, whatever the depth.
class CEnding {
public:
    explicit CEnding(bool reuse) noexcept : m_pWaiting(nullptr), m_bReuse(reuse) {}

    void Add(CXMLNode* node) noexcept;
    void AddContent(SNodeBody* body) noexcept;
    void Run() noexcept;

private:
    void AddElementContent(SElementBody* body) noexcept;
    static void EndSharing(CXMLNode* node) noexcept;

    CXMLNode* m_pWaiting;
    const bool m_bReuse;
};

void FreeBlock(CXMLNode* node, const SNodeBody* own) noexcept {
    MemoryOf(own).FreeTagged(node, CNodeAccess::BlockSize(own->m_nKind), PageOf(own));
}

// Children of which the parent ends, while copies of it go on showing them.
void Orphan(SNodeBody* body, const CXMLNode* parent) noexcept {
    if (body->m_nKind != CXMLNode::NODE_ELEMENT) {
        return;
    }
    CXMLNode** slots = ChildSlots(static_cast<SElementBody*>(body));
    for (; *slots != nullptr; ++slots) {
        SNodeBody* child = CNodeAccess::BodyOf(*slots);
        if (child->m_pParent == parent) {
            child->m_pParent = nullptr;
        }
    }
}

// The memory of a body that nobody shows any more; of one in a block only if its object has ended too.
void FreeBody(SNodeBody* body) noexcept {
    if (!HasFlag(body, BODY_IN_BLOCK)) {
        CTreeMemory& memory = MemoryOf(body);
        std::size_t size = sizeof(SElementBody);
        if (body->m_nKind != CXMLNode::NODE_ELEMENT) {
            size = sizeof(SDerivedLeafBody);
            FreeExtras(memory, reinterpret_cast<SDerivedLeafBody*>(body)->m_pExtras);
        }
        memory.FreeTagged(body, size, PageOf(body));
    } else if (HasFlag(body, BODY_OBJECT_GONE)) {
        FreeBlock(reinterpret_cast<CXMLNode*>(body) - 1, body);
    }
}

void CEnding::Add(CXMLNode* node) noexcept {
    if (CNodeAccess::ObjectOf(node) == EObject::DERIVED) {
        CNodeAccess::Destroy(node);
        return;
    }
    SNodeBody* own = CNodeAccess::OwnBodyOf(node);
    if (CNodeAccess::BodyOf(node) != own || own->m_nOwners != 1) {
        EndSharing(node);
        return;
    }
    own->m_pParent = m_pWaiting;
    m_pWaiting = node;
}

// A node that shows the body of another, or of which another shows the body.
void CEnding::EndSharing(CXMLNode* node) noexcept {
    SNodeBody* own = CNodeAccess::OwnBodyOf(node);
    SNodeBody* shown = CNodeAccess::BodyOf(node);
    SetFlag(own, BODY_OBJECT_GONE);
    if (shown == own) {
        LeaveBody(shown, node, true);
        return;
    }
    CTreeMemory& memory = MemoryOf(shown);
    LeaveBody(shown, node, true);
    if (&memory != &MemoryOf(own)) {
        memory.ReleaseOwner();
    }
    if (own->m_nOwners == 0) {
        FreeBlock(node, own);
    }
}

void CEnding::AddElementContent(SElementBody* body) noexcept {
    for (CXMLNode** slots = ChildSlots(body); *slots != nullptr; ++slots) {
        Add(*slots);
    }
    CTreeMemory& memory = MemoryOf(body);
    if (m_bReuse) {
        FreeAttributes(body);
        FreeChildArray(body);
        memory.Names().Release(memory, body->m_pName);
    } else if (memory.Happened(CTreeMemory::HOLDS_OTHERS)) {
        for (CXMLAttribut** slots = AttributeSlots(body); *slots != nullptr; ++slots) {
            CAttributeAccess::ReleaseHeld(*slots);
        }
    }
}

void CEnding::AddContent(SNodeBody* body) noexcept {
    if (body->m_nKind == CXMLNode::NODE_ELEMENT) {
        AddElementContent(static_cast<SElementBody*>(body));
    } else if (!m_bReuse) {
        return;
    } else if (body->m_nKind == CXMLNode::NODE_TEXT) {
        FreeTreeString(MemoryOf(body), static_cast<STextBody*>(body)->m_pText);
    } else {
        const SBinaryBody* binary = static_cast<SBinaryBody*>(body);
        if (binary->m_pData != nullptr) {
            MemoryOf(body).FreePlain(binary->m_pData, binary->m_nLength);
        }
    }
}

void CEnding::Run() noexcept {
    while (m_pWaiting != nullptr) {
        CXMLNode* node = m_pWaiting;
        SNodeBody* own = CNodeAccess::OwnBodyOf(node);
        m_pWaiting = own->m_pParent;
        AddContent(own);
        if (m_bReuse) {
            FreeBlock(node, own);
        }
    }
}

}  // namespace

void LeaveBody(SNodeBody* body, const CXMLNode* object, bool reuse) noexcept {
    if (--body->m_nOwners != 0) {
        Orphan(body, object);
        return;
    }
    CEnding ending(reuse);
    ending.AddContent(body);
    ending.Run();
    FreeBody(body);
}

void EndNode(CXMLNode* node) noexcept {
    CEnding ending(true);
    ending.Add(node);
    ending.Run();
}

void EndRoot(CXMLNode* root) noexcept {
    CTreeMemory& memory = MemoryOf(CNodeAccess::OwnBodyOf(root));
    const bool last = memory.HasOneOwner();
    if (!last || memory.Happened(NEEDS_WALK)) {
        CEnding ending(!last);
        ending.Add(root);
        ending.Run();
    }
    memory.ReleaseOwner();
}

CXMLNode::~CXMLNode() {
    SNodeBody* body = CNodeAccess::BodyOf(this);
    CTreeMemory& memory = MemoryOf(body);
    const bool last = memory.HasOneOwner();
    if (!last || body->m_nOwners != 1 || memory.Happened(NEEDS_WALK)) {
        LeaveBody(body, this, !last);
    }
    memory.ReleaseOwner();
}

}  // namespace norvask
