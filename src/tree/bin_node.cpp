#include "norvask/bin_node.h"

#include "foundation/errors.h"
#include "tree/tree_building.h"

namespace norvask {

CXMLBinNode::CXMLBinNode(std::uintptr_t body) noexcept : CXMLNode(body) {}

CXMLBinNode::CXMLBinNode(CXMLNode* parent)
    : CXMLNode(CNodeAccess::Number(CNodeAccess::NewDerivedLeaf(NODE_BINARY, parent))) {}

CXMLBinNode::CXMLBinNode(const CXMLBinNode& other) noexcept
    : CXMLNode(CNodeAccess::Number(CNodeAccess::ShareBody(&other))) {}
CXMLBinNode& CXMLBinNode::operator=(const CXMLBinNode&) noexcept = default;
CXMLBinNode::~CXMLBinNode() = default;

void CXMLBinNode::SetTagName(const char*) { ThrowNotSupportedByLeaf(); }
CXMLNode* CXMLBinNode::CreateChild(const char*, CXMLNode*) { ThrowNotSupportedByLeaf(); }
CXMLTextNode* CXMLBinNode::CreateTextChild(const char*) { ThrowNotSupportedByLeaf(); }
CXMLBinNode* CXMLBinNode::CreateBinChild() { ThrowNotSupportedByLeaf(); }
void CXMLBinNode::SetAttribute(const char*, const char*) { ThrowNotSupportedByLeaf(); }
CXMLNode::NodeType CXMLBinNode::GetNodeType() { return NODE_BINARY; }
const char* CXMLBinNode::GetTextChildValue() { ThrowNotSupportedByLeaf(); }
void CXMLBinNode::SetTextChildValue(const char*) { ThrowNotSupportedByLeaf(); }
CXMLNode** CXMLBinNode::GetNodes(const char*) { return CXMLNode::GetNodes(nullptr); }

// The copy is made first, since the bytes may lie in the block that goes; whatever fails, the block goes.
void CXMLBinNode::SetData(const unsigned char* data, std::size_t length) {
    CTreeMemory& memory = MemoryOf(CNodeAccess::BodyOf(this));
    const bool nothing = data == nullptr || length == 0;
    unsigned char* copy = nullptr;
    try {
        copy = nothing ? nullptr : NewDataCopy(memory, data, length);
    } catch (...) {
        DeleteData();
        CXMLBinNode::DeleteData();
        throw;
    }
    try {
        DeleteData();
    } catch (...) {
        if (copy != nullptr) {
            memory.FreePlain(copy, length);
        }
        CXMLBinNode::DeleteData();
        throw;
    }
    // An override may have left the block where it was.
    CXMLBinNode::DeleteData();
    SBinaryBody* body = CNodeAccess::BinaryOf(this);
    body->m_pData = copy;
    body->m_nLength = nothing ? 0 : length;
}

void CXMLBinNode::GetData(const unsigned char*& data, std::size_t& length) {
    const SBinaryBody* body = CNodeAccess::BinaryOf(this);
    data = body->m_pData;
    length = body->m_nLength;
}

void CXMLBinNode::DeleteData() {
    SBinaryBody* body = CNodeAccess::BinaryOf(this);
    if (body->m_pData != nullptr) {
        MemoryOf(body).FreePlain(body->m_pData, body->m_nLength);
        body->m_pData = nullptr;
        body->m_nLength = 0;
    }
}

}  // namespace norvask
