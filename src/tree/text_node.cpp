#include "norvask/text_node.h"

#include <cstring>
#include <new>

#include "foundation/errors.h"
#include "foundation/parser_text.h"
#include "foundation/text_rules.h"
#include "foundation/value_text.h"
#include "norvask/sax_handler.h"
#include "tree/node_access.h"
#include "tree/tree_string.h"

namespace norvask {

CXMLTextNode::CXMLTextNode(std::uintptr_t body) noexcept : CXMLNode(body) {}

CXMLTextNode::CXMLTextNode(const char* text, CXMLNode* parent)
    : CXMLNode(CNodeAccess::Number(CNodeAccess::NewDerivedLeaf(NODE_TEXT, parent))) {
    CXMLTextNode::SetText(text);
}

CXMLTextNode::CXMLTextNode(const CXMLTextNode& other) noexcept
    : CXMLNode(CNodeAccess::Number(CNodeAccess::ShareBody(&other))) {}
CXMLTextNode& CXMLTextNode::operator=(const CXMLTextNode&) noexcept = default;
CXMLTextNode::~CXMLTextNode() = default;

void CXMLTextNode::SetTagName(const char*) { ThrowNotSupportedByLeaf(); }
CXMLNode* CXMLTextNode::CreateChild(const char*, CXMLNode*) { ThrowNotSupportedByLeaf(); }
CXMLTextNode* CXMLTextNode::CreateTextChild(const char*) { ThrowNotSupportedByLeaf(); }
CXMLBinNode* CXMLTextNode::CreateBinChild() { ThrowNotSupportedByLeaf(); }
void CXMLTextNode::SetAttribute(const char*, const char*) { ThrowNotSupportedByLeaf(); }
CXMLNode::NodeType CXMLTextNode::GetNodeType() { return NODE_TEXT; }
const char* CXMLTextNode::GetTextChildValue() { ThrowNotSupportedByLeaf(); }
void CXMLTextNode::SetTextChildValue(const char*) { ThrowNotSupportedByLeaf(); }
CXMLNode** CXMLTextNode::GetNodes(const char*) { return CXMLNode::GetNodes(nullptr); }

void CXMLTextNode::SetText(const char* text) {
    STextBody* body = CNodeAccess::TextOf(this);
    CTreeMemory& memory = MemoryOf(body);
    const char* old = body->m_pText;
    if (text == nullptr || *text == '\0') {
        body->m_pText = EmptyString();
        FreeTreeString(memory, old);
        return;
    }
    bool isUtf8 = false;
    try {
        isUtf8 = CheckWritable(text);
    } catch (const std::bad_alloc&) {
        throw;
    } catch (...) {  // a text that the parser cannot carry to UTF-8 is not kept
        body->m_pText = EmptyString();
        FreeTreeString(memory, old);
        throw;
    }
    // The text may be a part of the old one, which goes last.
    body->m_pText = NewTreeString(memory, text, std::strlen(text), isUtf8);
    FreeTreeString(memory, old);
}

void CXMLTextNode::SetDateTimeText(int year, int month, int day, int hour, int minute, int second) {
    SValueText text;
    SetText(FormatDateTime(text, year, month, day, hour, minute, second));
}

void CXMLTextNode::SetDateText(int year, int month, int day) {
    SValueText text;
    SetText(FormatDate(text, year, month, day));
}

void CXMLTextNode::SetTimeText(int hour, int minute, int second) {
    SValueText text;
    SetText(FormatTime(text, hour, minute, second));
}

void CXMLTextNode::SetDoubleText(const double& value) {
    SValueText text;
    SetText(FormatDouble(text, value));
}

void CXMLTextNode::SetLongText(long value) {
    SValueText text;
    SetText(FormatLong(text, value));
}

void CXMLTextNode::SetBoolText(bool value, bool numeric) { SetText(FormatBool(value, numeric)); }

void CXMLTextNode::SetBinaryText(const unsigned char* data, long length) {
    const CBase64Text text(data, length < 1 ? 0 : static_cast<std::size_t>(length));
    SetText(text.Get() == nullptr ? "" : text.Get());
}

const char* CXMLTextNode::GetText() { return CNodeAccess::TextOf(this)->m_pText; }

bool CXMLTextNode::GetDateText(int& year, int& month, int& day) {
    return CXMLSaxHandler::GetDate(GetText(), year, month, day);
}

bool CXMLTextNode::GetDateTimeText(int& year, int& month, int& day, int& hour, int& minute,
                                   int& second) {
    return CXMLSaxHandler::GetDateTime(GetText(), year, month, day, hour, minute, second);
}

bool CXMLTextNode::GetTimeText(int& hour, int& minute, int& second) {
    return CXMLSaxHandler::GetTime(GetText(), hour, minute, second);
}

bool CXMLTextNode::GetDoubleText(double& value) {
    return CXMLSaxHandler::GetDouble(GetText(), value);
}

bool CXMLTextNode::GetLongText(long& value) { return CXMLSaxHandler::GetLong(GetText(), value); }

bool CXMLTextNode::GetBoolText(bool& value) { return CXMLSaxHandler::GetBool(GetText(), value); }

bool CXMLTextNode::GetBinaryText(unsigned char*& data, std::size_t& length) {
    return CXMLSaxHandler::GetData(GetText(), data, length);
}

}  // namespace norvask
