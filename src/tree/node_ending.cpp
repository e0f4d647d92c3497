// Destroying nodes. Objects share bodies by copy and assignment, so an object and the body that was
// made behind it in one block may end at different times:
//
//   object       shows            others too?   is destroyed
//   derived      any body         -             by its destructor, which leaves the body
//   in a block   any body         yes           by leaving the body
//   in a block   its own body     no            with the children and the content
//   in a block   another's body   no            with the children and the content of that body
//
// The block of an object goes with the object, or, if somebody shows the body in it, with that
// body.
//
// A body keeps its last owner until its children are destroyed: the objects that go on the way may
// include the one in whose block the body lies (BODY_OBJECT_GONE), and then the block goes last.
// They may also be of derived classes and share the body once more, and then it stays.
//
// Children are destroyed in the order of the array, each with what is below it, before their
// parent. The walk goes down and comes up again through the parent pointers, and takes each child
// out of the array before it touches it; so it needs no memory, whatever the depth, and nobody
// meets a child that is being destroyed.
#include "tree/node_ending.h"

#include "tree/attribute_array.h"
#include "tree/attribute_strings.h"
#include "tree/child_array.h"
#include "tree/node_result.h"

namespace norvask {
namespace {

// What may have happened to a tree that its memory cannot simply be dropped.
const unsigned int NEEDS_WALK = CTree::CHILDREN_SHOWN | CTree::HOLDS_OTHERS;

void FreeBlock(CXMLNode* node, const SNodeBody* own) noexcept {
    TreeOf(own).Arena().FreePaged(node, CNodeAccess::BlockSize(own->kind), PageOf(own));
}

// Children of which the parent is destroyed, while copies of it go on showing them.
void Orphan(SNodeBody* body, const CXMLNode* parent) noexcept {
    if (body->kind != CXMLNode::NODE_ELEMENT) {
        return;
    }
    for (CXMLNode** slots = ChildSlots(static_cast<SElementBody*>(body)); *slots != nullptr;
         ++slots) {
        SNodeBody* const child = CNodeAccess::BodyOf(*slots);
        if (child->parent == parent) {
            child->parent = nullptr;
        }
    }
}

// The memory of a body that nobody shows any more; of one in a block only if its object is gone
// too.
void FreeBody(SNodeBody* body) noexcept {
    if (!HasFlag(body, BODY_IN_BLOCK)) {
        TreeOf(body).Arena().FreePaged(body, CNodeAccess::DerivedBodySize(body->kind),
                                       PageOf(body));
    } else if (HasFlag(body, BODY_OBJECT_GONE)) {
        FreeBlock(CNodeAccess::BlockOf(body), body);
    }
}

// The block of an object that is destroyed, if nobody shows the body in it.
void LeaveOwnBlock(CXMLNode* node, SNodeBody* own, const CTree* dying) noexcept {
    SetFlag(own, BODY_OBJECT_GONE);
    if (own->owners == 0 && &TreeOf(own) != dying) {
        FreeBlock(node, own);
    }
}

// An object in a block stops showing a body that lies in another tree than its own.
void LeaveTree(CTree& shown, const SNodeBody* own) noexcept {
    if (&shown != &TreeOf(own)) {
        shown.Release();
    }
}

// Destroys a node that a walk cannot step into: an object of a derived class, or one whose body
// others show too. Returns false for a node that it can.
bool DestroyAtOnce(CXMLNode* node, const CTree* dying) noexcept {
    if (CNodeAccess::ObjectOf(node) == EObject::DERIVED) {
        CNodeAccess::Destroy(node);
        return true;
    }
    SNodeBody* const shown = CNodeAccess::BodyOf(node);
    if (shown->owners == 1) {
        return false;
    }
    SNodeBody* const own = CNodeAccess::OwnBodyOf(node);
    CTree& tree = TreeOf(shown);
    shown->parent = nullptr;  // the parent may be going too, and the copies go on
    LeaveBody(shown, node, dying);
    LeaveTree(tree, own);
    LeaveOwnBlock(node, own, dying);
    return true;
}

// What a body holds besides its children.
void DestroyContent(SNodeBody* body, const CTree* dying) noexcept {
    CTree& tree = TreeOf(body);
    const bool goesOn = dying == nullptr || &tree != dying;
    switch (body->kind) {
        case CXMLNode::NODE_ELEMENT: {
            SElementBody* const element = static_cast<SElementBody*>(body);
            if (goesOn) {
                FreeAttributes(element);
                FreeChildArray(element);
                CNameUse::Release(element->name);
            } else if (tree.Happened(CTree::HOLDS_OTHERS)) {
                for (CXMLAttribut** slots = AttributeSlots(element); *slots != nullptr; ++slots) {
                    ReleaseHeld(*slots);
                }
            }
            break;
        }
        case CXMLNode::NODE_TEXT:
            if (goesOn) {
                FreeTreeString(static_cast<STextBody*>(body)->text);
            }
            break;
        default: {
            const SBinaryBody* const binary = static_cast<SBinaryBody*>(body);
            if (goesOn && binary->data != nullptr) {
                tree.Arena().FreePlain(binary->data, binary->length);
            }
            break;
        }
    }
    if (goesOn && body->kind != CXMLNode::NODE_ELEMENT && !HasFlag(body, BODY_IN_BLOCK)) {
        FreeResult(tree.Arena(), ResultOfDerivedLeaf(body));
    }
}

// The end of a node of which the children are destroyed.
void DestroyStepped(CXMLNode* node, const CTree* dying) noexcept {
    SNodeBody* const shown = CNodeAccess::BodyOf(node);
    SNodeBody* const own = CNodeAccess::OwnBodyOf(node);
    CTree& tree = TreeOf(shown);
    if (--shown->owners == 0) {
        DestroyContent(shown, dying);
        if (shown != own) {
            FreeBody(shown);
        }
    } else {
        shown->parent = nullptr;  // which this walk has set
    }
    LeaveTree(tree, own);
    LeaveOwnBlock(node, own, dying);
}

CXMLNode* TakeChildOf(SNodeBody* body) noexcept {
    return body->kind == CXMLNode::NODE_ELEMENT ? TakeFirstChild(static_cast<SElementBody*>(body))
                                                : nullptr;
}

void Destroy(CXMLNode* top, const CTree* dying) noexcept {
    if (DestroyAtOnce(top, dying)) {
        return;
    }
    CXMLNode* node = top;
    for (;;) {
        SNodeBody* const body = CNodeAccess::BodyOf(node);
        CXMLNode* const child = TakeChildOf(body);
        if (child == nullptr) {
            CXMLNode* const above = node == top ? nullptr : body->parent;
            DestroyStepped(node, dying);
            if (above == nullptr) {
                return;
            }
            node = above;
        } else if (!DestroyAtOnce(child, dying)) {
            CNodeAccess::BodyOf(child)->parent = node;
            node = child;
        }
    }
}

}  // namespace

void LeaveBody(SNodeBody* body, const CXMLNode* object, const CTree* dying) noexcept {
    if (body->owners != 1) {
        --body->owners;
        if (CNodeAccess::IsParent(object)) {
            Orphan(body, object);
        }
        return;
    }
    while (CXMLNode* child = TakeChildOf(body)) {
        Destroy(child, dying);
    }
    if (--body->owners == 0) {
        DestroyContent(body, dying);
        FreeBody(body);
    }
}

void DestroyNode(CXMLNode* node) noexcept { Destroy(node, nullptr); }

void DestroyRoot(CXMLNode* root) noexcept {
    CTree& tree = TreeOf(CNodeAccess::OwnBodyOf(root));
    const bool isLast = tree.HasOneOwner();
    if (!isLast || tree.Happened(NEEDS_WALK)) {
        Destroy(root, isLast ? &tree : nullptr);
    }
    tree.Release();
}

CXMLNode::~CXMLNode() {
    SNodeBody* const body = CNodeAccess::BodyOf(this);
    CTree& tree = TreeOf(body);
    const bool isLast = tree.HasOneOwner();
    if (!isLast || body->owners != 1 || tree.Happened(NEEDS_WALK)) {
        LeaveBody(body, this, isLast ? &tree : nullptr);
    }
    tree.Release();
}

}  // namespace norvask
