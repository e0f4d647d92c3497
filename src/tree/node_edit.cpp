// CXMLNode: adding, removing and renaming, and the text of simple elements.
#include <cstring>

#include "foundation/errors.h"
#include "foundation/text_rules.h"
#include "norvask/node.h"
#include "tree/child_array.h"
#include "tree/node_ending.h"
#include "tree/tree_building.h"

namespace norvask {

void CXMLNode::DeleteChild(CXMLNode* child) {
    if (child == nullptr || CNodeAccess::BodyOf(this)->m_nKind != NODE_ELEMENT) {
        return;
    }
    SElementBody* body = CNodeAccess::ElementOf(this);
    CXMLNode** slots = ChildSlots(body);
    for (std::uint32_t i = 0; slots[i] != nullptr; ++i) {
        if (slots[i] == child) {
            // Out of the array first, so that no override meets a child that is ending.
            RemoveChildAt(body, i);
            EndNode(child);
            return;
        }
    }
}

void CXMLNode::SetTagName(const char* name) {
    SElementBody* body = RequireElement(this);
    CTreeMemory& memory = MemoryOf(body);
    const char* renamed = AcquireValidName(memory, name);
    memory.Names().Release(memory, body->m_pName);
    body->m_pName = renamed;
}

CXMLNode* CXMLNode::CreateChild(const char* name, CXMLNode* before) {
    CTreeMemory& memory = MemoryOf(RequireElement(this));
    return AddElement(this, AcquireValidName(memory, name), before);
}

CXMLTextNode* CXMLNode::CreateTextChild(const char* text) {
    RequireElement(this);
    if (text == nullptr) {
        text = "";
    }
    const bool isUtf8 = CheckWritable(text);
    return AddText(this, text, std::strlen(text), isUtf8);
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
