// CXMLBinNode: its bytes, and what a leaf refuses.
#include "norvask/bin_node.h"

#include "foundation/errors.h"
#include "tree/tree_building.h"

namespace norvask {

CXMLBinNode::CXMLBinNode(CXMLNode* parent)
    : CXMLNode(CNodeAccess::Number(CNodeAccess::NewDerivedBinary(parent))) {
    CNodeAccess::SetParent(parent);
}

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

// The copy is made first, since the bytes may lie in the block that goes; whatever fails, the block
// goes, also where an override has left it.
void CXMLBinNode::SetData(const unsigned char* data, std::size_t length) {
    CTree& tree = TreeOf(CNodeAccess::BodyOf(this));
    const bool isNothing = data == nullptr || length == 0;
    unsigned char* copy = nullptr;
    try {
        copy = isNothing ? nullptr : NewDataCopy(tree, data, length);
    } catch (...) {
        try {
            DeleteData();
        } catch (...) {  // the failure under way came first
        }
        CXMLBinNode::DeleteData();
        throw;
    }
    try {
        DeleteData();
    } catch (...) {
        if (copy != nullptr) {
            tree.Arena().FreePlain(copy, length);
        }
        CXMLBinNode::DeleteData();
        throw;
    }
    CXMLBinNode::DeleteData();
    SBinaryBody* const body = CNodeAccess::BinaryOf(this);
    body->data = copy;
    body->length = isNothing ? 0 : length;
}

void CXMLBinNode::GetData(const unsigned char*& data, std::size_t& length) {
    const SBinaryBody* const body = CNodeAccess::BinaryOf(this);
    data = body->data;
    length = body->length;
}

void CXMLBinNode::DeleteData() {
    SBinaryBody* const body = CNodeAccess::BinaryOf(this);
    if (body->data != nullptr) {
        TreeOf(body).Arena().FreePlain(body->data, body->length);
        body->data = nullptr;
        body->length = 0;
    }
}

}  // namespace norvask
