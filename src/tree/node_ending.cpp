#include "tree/node_ending.h"

#include "tree/attribute_access.h"
#include "tree/attribute_array.h"
#include "tree/child_array.h"
#include "tree/tree_string.h"

namespace norvask {
namespace {

// What may have happened to a tree that its memory cannot simply be dropped.
const unsigned int NEEDS_WALK = CTreeMemory::CHILDREN_SHOWN | CTreeMemory::HOLDS_OTHERS;

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

// The block of an object that ends while it shows the body of another object.
void LeaveOwnBlock(CXMLNode* node, SNodeBody* own) noexcept {
    SetFlag(own, BODY_OBJECT_GONE);
    if (own->m_nOwners == 0) {
        FreeBlock(node, own);
    }
}

// An object stops showing a body that lies in another memory than its own.
void LeaveMemory(CTreeMemory& shown, const SNodeBody* own) noexcept {
    if (&shown != &MemoryOf(own)) {
        shown.ReleaseOwner();
    }
}

// Ends a node that a walk cannot step into: an object of a derived class, or one whose body others show too.
// Answers false for a node that it can.
bool EndAtOnce(CXMLNode* node) noexcept {
    if (CNodeAccess::ObjectOf(node) == EObject::DERIVED) {
        CNodeAccess::Destroy(node);
        return true;
    }
    SNodeBody* shown = CNodeAccess::BodyOf(node);
    if (shown->m_nOwners == 1) {
        return false;
    }
    SNodeBody* own = CNodeAccess::OwnBodyOf(node);
    shown->m_pParent = nullptr;  // the parent may be ending too, and the copies go on
    LeaveBody(shown, node, true);
    LeaveMemory(MemoryOf(shown), own);
    LeaveOwnBlock(node, own);
    return true;
}

// What a body holds besides its children.
void EndContent(SNodeBody* body, bool reuse) noexcept {
    CTreeMemory& memory = MemoryOf(body);
    switch (body->m_nKind) {
        case CXMLNode::NODE_ELEMENT: {
            SElementBody* element = static_cast<SElementBody*>(body);
            if (reuse) {
                FreeAttributes(element);
                FreeChildArray(element);
                memory.Names().Release(memory, element->m_pName);
            } else if (memory.Happened(CTreeMemory::HOLDS_OTHERS)) {
                for (CXMLAttribut** slots = AttributeSlots(element); *slots != nullptr; ++slots) {
                    CAttributeAccess::ReleaseHeld(*slots);
                }
            }
            break;
        }
        case CXMLNode::NODE_TEXT:
            if (reuse) {
                FreeTreeString(memory, static_cast<STextBody*>(body)->m_pText);
            }
            break;
        default: {
            const SBinaryBody* binary = static_cast<SBinaryBody*>(body);
            if (reuse && binary->m_pData != nullptr) {
                memory.FreePlain(binary->m_pData, binary->m_nLength);
            }
            break;
        }
    }
}

// The end of a node of which the children have ended.
void EndStepped(CXMLNode* node, bool reuse) noexcept {
    SNodeBody* shown = CNodeAccess::BodyOf(node);
    SNodeBody* own = CNodeAccess::OwnBodyOf(node);
    shown->m_nOwners = 0;
    EndContent(shown, reuse);
    if (shown != own) {
        CTreeMemory& memory = MemoryOf(shown);
        FreeBody(shown);
        LeaveMemory(memory, own);
        LeaveOwnBlock(node, own);
    } else if (reuse) {
        FreeBlock(node, own);
    }
}

// Children end in array order, each with what is below it, before their parent. The walk goes down and up
// through the parent pointers and counts in m_nOwners, which is 1 and of no more use, the children that it has
// ended; so it takes no memory, whatever the depth.
void EndWalk(CXMLNode* top, bool reuse) noexcept {
    if (EndAtOnce(top)) {
        return;
    }
    CXMLNode* node = top;
    SNodeBody* body = CNodeAccess::BodyOf(node);
    body->m_nOwners = 0;
    for (;;) {
        CXMLNode* child = nullptr;
        if (body->m_nKind == CXMLNode::NODE_ELEMENT) {
            child = ChildSlots(static_cast<SElementBody*>(body))[body->m_nOwners];
        }
        if (child == nullptr) {
            CXMLNode* above = node == top ? nullptr : body->m_pParent;
            EndStepped(node, reuse);
            if (above == nullptr) {
                return;
            }
            node = above;
            body = CNodeAccess::BodyOf(node);
            continue;
        }
        ++body->m_nOwners;
        if (!EndAtOnce(child)) {
            body = CNodeAccess::BodyOf(child);
            body->m_pParent = node;
            body->m_nOwners = 0;
            node = child;
        }
    }
}

}  // namespace

void LeaveBody(SNodeBody* body, const CXMLNode* object, bool reuse) noexcept {
    if (--body->m_nOwners != 0) {
        Orphan(body, object);
        return;
    }
    if (body->m_nKind == CXMLNode::NODE_ELEMENT) {
        for (CXMLNode** slots = ChildSlots(static_cast<SElementBody*>(body)); *slots != nullptr;
             ++slots) {
            EndWalk(*slots, reuse);
        }
    }
    EndContent(body, reuse);
    FreeBody(body);
}

void EndNode(CXMLNode* node) noexcept { EndWalk(node, true); }

void EndRoot(CXMLNode* root) noexcept {
    CTreeMemory& memory = MemoryOf(CNodeAccess::OwnBodyOf(root));
    const bool last = memory.HasOneOwner();
    if (!last || memory.Happened(NEEDS_WALK)) {
        EndWalk(root, !last);
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
