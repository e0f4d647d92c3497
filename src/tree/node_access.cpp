// Making nodes: an object and its body in one block of the tree, or a body alone for an object of a
// derived class.
#include "tree/node_access.h"

#include <cstring>

namespace norvask {

static_assert(sizeof(CXMLNode) == sizeof(CXMLTextNode) && sizeof(CXMLNode) == sizeof(CXMLBinNode),
              "a body lies directly behind its object");
static_assert(sizeof(CXMLNode) % alignof(SElementBody) == 0, "the body must be aligned");

// Here, where nearly all of them run, so that they are inlined.
CXMLNode::CXMLNode(std::uintptr_t body) noexcept : m_nBody(body) {}
CXMLTextNode::CXMLTextNode(std::uintptr_t body) noexcept : CXMLNode(body) {}
CXMLBinNode::CXMLBinNode(std::uintptr_t body) noexcept : CXMLNode(body) {}

template <typename Node, typename Body>
Node* CNodeAccess::NewBlock(CTree& tree, EObject object, CXMLNode* parent) {
    SPage* page = nullptr;
    char* const block =
        static_cast<char*>(tree.Arena().AllocatePaged(sizeof(Node) + sizeof(Body), page));
    Body* const body = new (block + sizeof(Node)) Body();
    body->distance = DistanceTo(page, body);
    body->kind = static_cast<std::uint8_t>(static_cast<std::uintptr_t>(object) - 1);
    body->flags = BODY_IN_BLOCK;
    body->owners = 1;
    body->parent = parent;
    return new (block) Node(Number(body) | static_cast<std::uintptr_t>(object));
}

CXMLNode* CNodeAccess::NewElement(CTree& tree, CNameUse&& name, CXMLNode* parent) {
    CXMLNode* const node = NewBlock<CXMLNode, SElementBody>(tree, EObject::ELEMENT, parent);
    ElementOf(node)->name = name.Keep();
    return node;
}

CXMLTextNode* CNodeAccess::NewText(CTree& tree, const SKnownText& text, CXMLNode* parent) {
    CNewString copy(tree, text);
    CXMLTextNode* const node = NewBlock<CXMLTextNode, STextBody>(tree, EObject::TEXT, parent);
    TextOf(node)->text = copy.Keep();
    return node;
}

CXMLNode* CNodeAccess::NewElement(CTree& tree, CTreeString used, CXMLNode* parent) {
    CXMLNode* const node = NewBlock<CXMLNode, SElementBody>(tree, EObject::ELEMENT, parent);
    ElementOf(node)->name = CNameUse::Another(used).Keep();
    return node;
}

CXMLTextNode* CNodeAccess::NewText(CTree& tree, CTreeString source, CXMLNode* parent) {
    CNewString copy(tree, source);
    CXMLTextNode* const node = NewBlock<CXMLTextNode, STextBody>(tree, EObject::TEXT, parent);
    TextOf(node)->text = copy.Keep();
    return node;
}

CXMLBinNode* CNodeAccess::NewBinary(CTree& tree, CXMLNode* parent) {
    return NewBlock<CXMLBinNode, SBinaryBody>(tree, EObject::BINARY, parent);
}

template <typename Body>
SNodeBody* CNodeAccess::NewDerivedBody(CTree& tree, CXMLNode::NodeType kind, CXMLNode* parent) {
    SPage* page = nullptr;
    Body* const body = new (tree.Arena().AllocatePaged(sizeof(Body), page)) Body();
    body->distance = DistanceTo(page, body);
    body->kind = static_cast<std::uint8_t>(kind);
    body->owners = 1;
    body->parent = parent;
    return body;
}

SNodeBody* CNodeAccess::NewDerivedElement(const char* name, CXMLNode* parent) {
    CTreePtr tree(CTree::Create());
    CNameUse use(*tree, JudgeText(name));
    SNodeBody* const body = NewDerivedBody<SElementBody>(*tree, CXMLNode::NODE_ELEMENT, parent);
    static_cast<SElementBody*>(body)->name = use.Keep();
    static_cast<void>(tree.release());
    return body;
}

template <typename Body>
SNodeBody* CNodeAccess::NewDerivedLeaf(CXMLNode::NodeType kind, CXMLNode* parent) {
    CTreePtr tree(CTree::Create());
    SNodeBody* const body = NewDerivedBody<Body>(*tree, kind, parent);
    static_cast<void>(tree.release());
    return body;
}

SNodeBody* CNodeAccess::NewDerivedText(CXMLNode* parent) {
    return NewDerivedLeaf<SDerivedTextBody>(CXMLNode::NODE_TEXT, parent);
}

SNodeBody* CNodeAccess::NewDerivedBinary(CXMLNode* parent) {
    return NewDerivedLeaf<SDerivedBinaryBody>(CXMLNode::NODE_BINARY, parent);
}

std::size_t CNodeAccess::BlockSize(unsigned int kind) noexcept {
    switch (kind) {
        case CXMLNode::NODE_TEXT:
            return sizeof(CXMLTextNode) + sizeof(STextBody);
        case CXMLNode::NODE_BINARY:
            return sizeof(CXMLBinNode) + sizeof(SBinaryBody);
        default:
            return sizeof(CXMLNode) + sizeof(SElementBody);
    }
}

std::size_t CNodeAccess::DerivedBodySize(unsigned int kind) noexcept {
    switch (kind) {
        case CXMLNode::NODE_TEXT:
            return sizeof(SDerivedTextBody);
        case CXMLNode::NODE_BINARY:
            return sizeof(SDerivedBinaryBody);
        default:
            return sizeof(SElementBody);
    }
}

}  // namespace norvask
