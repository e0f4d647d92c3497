// CXMLNode: construction, copies, and what it returns of itself.
#include "norvask/node.h"

#include <cstring>

#include "foundation/errors.h"
#include "tree/attribute_array.h"
#include "tree/attribute_strings.h"
#include "tree/child_array.h"
#include "tree/node_ending.h"
#include "tree/tree_building.h"

namespace norvask {
namespace {

CXMLNode* const NO_CHILDREN[] = {nullptr};

}  // namespace

CXMLNode::CXMLNode(const char* name, CXMLNode* parent)
    : m_nBody(CNodeAccess::Number(CNodeAccess::NewDerivedElement(name, parent))) {
    CNodeAccess::SetParent(parent);
}

// A copy is an object outside of any block, whatever its source is.
CXMLNode::CXMLNode(const CXMLNode& other)
    : m_nBody(CNodeAccess::Number(
          CNodeAccess::ElementOrNull(&other) != nullptr
              ? CNodeAccess::ShareBody(&other)
              : CNodeAccess::NewDerivedElement("", CNodeAccess::BodyOf(&other)->parent))) {}

// Objects outside of blocks retain the tree of the body that they show, objects in blocks that of a
// body in another tree.
CXMLNode& CXMLNode::operator=(const CXMLNode& other) noexcept {
    SNodeBody* const old = CNodeAccess::BodyOf(this);
    SNodeBody* const shown = CNodeAccess::BodyOf(&other);
    if (old == shown) {
        return *this;
    }
    if (old->kind != shown->kind) {
        old->parent = shown->parent;
        return *this;
    }
    CTree* home = nullptr;
    if (CNodeAccess::ObjectOf(this) != EObject::DERIVED) {
        home = &TreeOf(CNodeAccess::OwnBodyOf(this));
        home->Note(CTree::HOLDS_OTHERS);
    }
    ++shown->owners;
    if (&TreeOf(shown) != home) {
        TreeOf(shown).Retain();
    }
    CNodeAccess::SetBody(this, shown);

    CTree& left = TreeOf(old);
    LeaveBody(old, this, nullptr);
    if (&left != home) {
        left.Release();
    }
    return *this;
}

const char* CXMLNode::GetTagName() {
    const SElementBody* body = CNodeAccess::ElementOrNull(this);
    return body == nullptr ? "" : body->name.Text();
}

CXMLNode** CXMLNode::GetChildren() {
    SElementBody* body = CNodeAccess::ElementOrNull(this);
    if (body == nullptr) {
        return const_cast<CXMLNode**>(NO_CHILDREN);
    }
    TreeOf(body).Note(CTree::CHILDREN_SHOWN);
    return ChildSlots(body);
}

CXMLNode* CXMLNode::GetFirstChild() {
    SElementBody* body = CNodeAccess::ElementOrNull(this);
    return body == nullptr ? nullptr : ChildSlots(body)[0];
}

CXMLAttribut** CXMLNode::GetAttributes() {
    const SElementBody* body = CNodeAccess::ElementOrNull(this);
    return body == nullptr ? NoAttributes() : AttributeSlots(body);
}

const char* CXMLNode::GetAttributeValue(const char* name) {
    SElementBody* body = CNodeAccess::ElementOrNull(this);
    if (body == nullptr || name == nullptr) {
        return "";
    }
    const CXMLAttribut* const attribute = FindAttribute(body, name);
    return attribute == nullptr ? "" : CAttributeAccess::Value(attribute).Text();
}

void CXMLNode::SetAttribute(const char* name, const char* value) {
    SElementBody* const body = RequireElement(this);
    if (name == nullptr) {
        ThrowInvalidName(nullptr);
    }
    const SNameLookUp lookUp = TreeOf(body).Names().LookUp(name, std::strlen(name));
    const unsigned int known = lookUp.IsName() ? 0 : RequireName(name).known;
    norvask::SetAttribute(body, lookUp, known, JudgeText(value));
}

CXMLNode::NodeType CXMLNode::GetNodeType() { return NODE_ELEMENT; }

CXMLNode* CXMLNode::GetParentNode() { return CNodeAccess::BodyOf(this)->parent; }

void CXMLNode::IncreaseChildArray() { ReserveLastChild(RequireElement(this)); }

}  // namespace norvask
