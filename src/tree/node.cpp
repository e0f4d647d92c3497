// CXMLNode: its beginning, its copies, and what it answers about itself.
#include "norvask/node.h"

#include <cstring>

#include "foundation/text_rules.h"
#include "tree/attribute_access.h"
#include "tree/attribute_array.h"
#include "tree/child_array.h"
#include "tree/node_ending.h"
#include "tree/tree_building.h"

namespace norvask {
namespace {

CXMLNode* const NO_CHILDREN[] = {nullptr};

// The body if the node is an element, NULL for leaves.
SElementBody* ElementOrNull(const CXMLNode* node) noexcept {
    SNodeBody* body = CNodeAccess::BodyOf(node);
    return body->m_nKind == CXMLNode::NODE_ELEMENT ? static_cast<SElementBody*>(body) : nullptr;
}

}  // namespace

CXMLNode::CXMLNode(std::uintptr_t body) noexcept : m_nBody(body) {}

CXMLNode::CXMLNode(const char* name, CXMLNode* parent)
    : m_nBody(CNodeAccess::Number(CNodeAccess::NewDerivedElement(name, parent))) {}

// A copy is an object outside of any block, whatever its source is.
CXMLNode::CXMLNode(const CXMLNode& other)
    : m_nBody(CNodeAccess::Number(
          ElementOrNull(&other) != nullptr
              ? CNodeAccess::ShareBody(&other)
              : CNodeAccess::NewDerivedElement("", CNodeAccess::BodyOf(&other)->m_pParent))) {}

// Objects outside of blocks own the memory of the body that they show, objects in blocks that of bodies in
// other memories.
CXMLNode& CXMLNode::operator=(const CXMLNode& other) noexcept {
    SNodeBody* old = CNodeAccess::BodyOf(this);
    SNodeBody* shown = CNodeAccess::BodyOf(&other);
    if (old == shown) {
        return *this;
    }
    if (old->m_nKind != shown->m_nKind) {
        old->m_pParent = shown->m_pParent;
        return *this;
    }
    CTreeMemory* home = nullptr;
    if (CNodeAccess::ObjectOf(this) != EObject::DERIVED) {
        home = &MemoryOf(CNodeAccess::OwnBodyOf(this));
        home->Note(CTreeMemory::HOLDS_OTHERS);
    }
    ++shown->m_nOwners;
    if (&MemoryOf(shown) != home) {
        MemoryOf(shown).AddOwner();
    }
    CNodeAccess::SetBody(this, shown);

    CTreeMemory& left = MemoryOf(old);
    LeaveBody(old, this, true);
    if (&left != home) {
        left.ReleaseOwner();
    }
    return *this;
}

const char* CXMLNode::GetTagName() {
    const SElementBody* body = ElementOrNull(this);
    return body == nullptr ? "" : body->m_pName;
}

CXMLNode** CXMLNode::GetChildren() {
    SElementBody* body = ElementOrNull(this);
    if (body == nullptr) {
        return const_cast<CXMLNode**>(NO_CHILDREN);
    }
    MemoryOf(body).Note(CTreeMemory::CHILDREN_SHOWN);
    return ChildSlots(body);
}

CXMLNode* CXMLNode::GetFirstChild() {
    SElementBody* body = ElementOrNull(this);
    return body == nullptr ? nullptr : ChildSlots(body)[0];
}

CXMLAttribut** CXMLNode::GetAttributes() {
    const SElementBody* body = ElementOrNull(this);
    return body == nullptr ? NoAttributes() : AttributeSlots(body);
}

const char* CXMLNode::GetAttributeValue(const char* name) {
    SElementBody* body = ElementOrNull(this);
    if (body == nullptr || name == nullptr) {
        return "";
    }
    const CXMLAttribut* attribute = FindAttribute(body, name, std::strlen(name));
    return attribute == nullptr ? "" : CAttributeAccess::Value(attribute);
}

void CXMLNode::SetAttribute(const char* name, const char* value) {
    SElementBody* body = RequireElement(this);
    RequireValidName(MemoryOf(body), name);
    SetValidAttribute(body, name, std::strlen(name), value,
                      value == nullptr ? 0 : std::strlen(value));
}

CXMLNode::NodeType CXMLNode::GetNodeType() { return NODE_ELEMENT; }

CXMLNode* CXMLNode::GetParentNode() { return CNodeAccess::BodyOf(this)->m_pParent; }

void CXMLNode::IncreaseChildArray() { ReserveOneChild(RequireElement(this)); }

}  // namespace norvask
