// CXMLTextNode: its text, and what a leaf refuses.
#include "norvask/text_node.h"

#include <new>

#include "foundation/base64.h"
#include "foundation/errors.h"
#include "foundation/known_text.h"
#include "foundation/shared_block.h"
#include "foundation/value_text.h"
#include "tree/node_access.h"

namespace norvask {
namespace {

const char* StoredText(const CXMLTextNode* node) noexcept {
    return CNodeAccess::TextOf(node)->text.Text();
}

}  // namespace

CXMLTextNode::CXMLTextNode(const char* text, CXMLNode* parent)
    : CXMLNode(CNodeAccess::Number(CNodeAccess::NewDerivedText(parent))) {
    CXMLTextNode::SetText(text);
    CNodeAccess::SetParent(parent);
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
    STextBody* const body = CNodeAccess::TextOf(this);
    // Whatever becomes of it, the old text goes last: the new one may be a part of it.
    const CTreeString old = body->text;
    try {
        body->text = TreeOf(body).Strings().New(RequireWritable(text));
    } catch (const std::bad_alloc&) {
        throw;
    } catch (...) {  // a text that the parser cannot carry to UTF-8 is not kept
        body->text = CTreeString();
        FreeTreeString(old);
        throw;
    }
    FreeTreeString(old);
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

const char* CXMLTextNode::GetText() { return StoredText(this); }

// Typed values are read from the stored text, whatever an override of GetText makes of it.
bool CXMLTextNode::GetDateText(int& year, int& month, int& day) {
    return ReadDate(StoredText(this), year, month, day);
}

bool CXMLTextNode::GetDateTimeText(int& year, int& month, int& day, int& hour, int& minute,
                                   int& second) {
    return ReadDateTime(StoredText(this), year, month, day, hour, minute, second);
}

bool CXMLTextNode::GetTimeText(int& hour, int& minute, int& second) {
    return ReadTime(StoredText(this), hour, minute, second);
}

bool CXMLTextNode::GetDoubleText(double& value) { return ReadDouble(StoredText(this), value); }

bool CXMLTextNode::GetLongText(long& value) { return ReadLong(StoredText(this), value); }

bool CXMLTextNode::GetBoolText(bool& value) { return ReadBool(StoredText(this), value); }

bool CXMLTextNode::GetBinaryText(unsigned char*& data, std::size_t& length) {
    return CSharedBlock::Decode(StoredText(this), data, length);
}

}  // namespace norvask
