// CXMLNode: adding, removing and renaming, and the text of simple elements.
#include "foundation/errors.h"
#include "norvask/node.h"
#include "tree/child_array.h"
#include "tree/node_ending.h"
#include "tree/tree_building.h"

namespace norvask {

void CXMLNode::DeleteChild(CXMLNode* child) {
    SElementBody* const body = CNodeAccess::ElementOrNull(this);
    if (child == nullptr || body == nullptr) {
        return;
    }
    const std::uint32_t used = ChildrenUsed(body);
    const std::uint32_t index = FindSlot(ChildSlots(body), used, child);
    if (index != used - 1) {
        // Out of the array first, so that no override meets a child that is being destroyed.
        RemoveChild(body, index);
        DestroyNode(child);
    }
}

void CXMLNode::SetTagName(const char* name) {
    SElementBody* const body = RequireElement(this);
    CNameUse renamed = UseValidName(TreeOf(body), name);
    const CNameUse old = CNameUse::Adopt(body->name);
    body->name = renamed.Keep();
}

CXMLNode* CXMLNode::CreateChild(const char* name, CXMLNode* before) {
    CTree& tree = TreeOf(RequireElement(this));
    return AddElement(this, UseValidName(tree, name), before);
}

CXMLTextNode* CXMLNode::CreateTextChild(const char* text) {
    RequireElement(this);
    return AddText(this, RequireWritable(text));
}

CXMLBinNode* CXMLNode::CreateBinChild() {
    RequireElement(this);
    return AddBinary(this);
}

const char* CXMLNode::GetTextChildValue() {
    CXMLNode** slots = ChildSlots(RequireElement(this));
    if (slots[0] == nullptr) {
        return "";
    }
    if (slots[1] != nullptr || slots[0]->GetNodeType() != NODE_TEXT) {
        ThrowNoValidText(GetTagName());
    }
    return static_cast<CXMLTextNode*>(slots[0])->GetText();
}

void CXMLNode::SetTextChildValue(const char* text) {
    CXMLNode** slots = ChildSlots(RequireElement(this));
    if (slots[0] == nullptr) {
        CreateTextChild(text);
        return;
    }
    if (slots[1] != nullptr || slots[0]->GetNodeType() != NODE_TEXT) {
        ThrowTextNotSettable(GetTagName());
    }
    static_cast<CXMLTextNode*>(slots[0])->SetText(text);
}

}  // namespace norvask
