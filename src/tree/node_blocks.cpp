// Making nodes in blocks of their tree's memory.
#include <cstring>

#include "tree/node_access.h"
#include "tree/tree_string.h"

namespace norvask {

static_assert(sizeof(CXMLNode) == sizeof(CXMLTextNode) && sizeof(CXMLNode) == sizeof(CXMLBinNode),
              "a body lies directly behind its object");
static_assert(sizeof(CXMLNode) % alignof(SElementBody) == 0, "the body must be aligned");

template <typename Node, typename Body>
Node* CNodeAccess::NewBlock(CTreeMemory& memory, EObject object, CXMLNode* parent) {
    SPage* page = nullptr;
    char* block = static_cast<char*>(memory.AllocateTagged(sizeof(Node) + sizeof(Body), page));
    Body* body = new (block + sizeof(Node)) Body();
    body->m_nDistance = DistanceTo(page, body);
    body->m_nKind = static_cast<std::uint8_t>(static_cast<std::uintptr_t>(object) - 1);
    body->m_nFlags = BODY_IN_BLOCK;
    body->m_nOwners = 1;
    body->m_pParent = parent;
    return new (block)
        Node(reinterpret_cast<std::uintptr_t>(body) | static_cast<std::uintptr_t>(object));
}

CXMLNode* CNodeAccess::NewElement(CTreeMemory& memory, const char* name, CXMLNode* parent) {
    CXMLNode* node = NewBlock<CXMLNode, SElementBody>(memory, EObject::ELEMENT, parent);
    ElementOf(node)->m_pName = name;
    return node;
}

CXMLTextNode* CNodeAccess::NewText(CTreeMemory& memory, const char* text, std::size_t length,
                                   bool isUtf8, CXMLNode* parent) {
    const char* copy = length == 0 ? EmptyString() : NewTreeString(memory, text, length, isUtf8);
    try {
        CXMLTextNode* node = NewBlock<CXMLTextNode, STextBody>(memory, EObject::TEXT, parent);
        TextOf(node)->m_pText = copy;
        return node;
    } catch (...) {
        FreeTreeString(memory, copy);
        throw;
    }
}

CXMLBinNode* CNodeAccess::NewBinary(CTreeMemory& memory, CXMLNode* parent) {
    return NewBlock<CXMLBinNode, SBinaryBody>(memory, EObject::BINARY, parent);
}

template <typename Allocated>
SNodeBody* CNodeAccess::NewDerivedBody(CTreeMemory& memory, CXMLNode::NodeType kind,
                                       CXMLNode* parent) {
    SPage* page = nullptr;
    void* block = memory.AllocateTagged(sizeof(Allocated), page);
    // The body is the first member of whatever is allocated for it.
    SNodeBody* body = reinterpret_cast<SNodeBody*>(new (block) Allocated());
    body->m_nDistance = DistanceTo(page, body);
    body->m_nKind = static_cast<std::uint8_t>(kind);
    body->m_nOwners = 1;
    body->m_pParent = parent;
    return body;
}

SNodeBody* CNodeAccess::NewDerivedElement(const char* name, CXMLNode* parent) {
    const char* text = name == nullptr ? "" : name;
    CTreeMemory* memory = CTreeMemory::Create();
    try {
        SNodeBody* body = NewDerivedBody<SElementBody>(*memory, CXMLNode::NODE_ELEMENT, parent);
        static_cast<SElementBody*>(body)->m_pName =
            memory->Names().Acquire(*memory, text, std::strlen(text));
        return body;
    } catch (...) {
        memory->ReleaseOwner();
        throw;
    }
}

SNodeBody* CNodeAccess::NewDerivedLeaf(CXMLNode::NodeType kind, CXMLNode* parent) {
    CTreeMemory* memory = CTreeMemory::Create();
    try {
        SNodeBody* body = NewDerivedBody<SDerivedLeafBody>(*memory, kind, parent);
        if (kind == CXMLNode::NODE_TEXT) {
            static_cast<STextBody*>(body)->m_pText = EmptyString();
        }
        return body;
    } catch (...) {
        memory->ReleaseOwner();
        throw;
    }
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

}  // namespace norvask
