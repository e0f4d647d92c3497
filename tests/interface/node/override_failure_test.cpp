// Overrides that throw, or do not do what they are called for: the library does it then, and stays
// whole. And what only derived classes can ask for.
#include <new>
#include <stdexcept>

#include "support/derived.h"
#include "support/testing.h"

using namespace norvask_test;

namespace {

class CStubbornBinary : public CXMLBinNode {
public:
    CStubbornBinary() : CXMLBinNode(nullptr) {}

    bool m_bThrows = false;
    int m_nCalls = 0;

private:
    void DeleteData() override {
        ++m_nCalls;
        if (m_bThrows) throw std::runtime_error("not now");
    }
};

// Never makes room for a result.
class CLazyElement : public CXMLNode {
public:
    CLazyElement() : CXMLNode("lazy", nullptr) {}

    int m_nCalls = 0;

protected:
    void IncQueryResult() override { ++m_nCalls; }
};

}  // namespace

TEST(OverrideFailure, OfDeleteDataLeavesTheNodeEmpty) {
    CStubbornBinary node;
    SetBytes(node, "old bytes");
    node.m_bThrows = true;
    EXPECT_THROW(SetBytes(node, "new bytes"), std::runtime_error);
    EXPECT_EQ(Bytes(node), "");
    EXPECT_THROW(node.SetData(nullptr, 0), std::runtime_error);
    EXPECT_EQ(Bytes(node), "");
    node.m_bThrows = false;
    SetBytes(node, "newer bytes");
    EXPECT_EQ(Bytes(node), "newer bytes");
    EXPECT_EQ(node.m_nCalls, 4);
}

TEST(OverrideFailure, OfDeleteDataDoesNotKeepDataThatCannotBeReplaced) {
    CStubbornBinary node;
    SetBytes(node, "old bytes");
    const unsigned char byte = 0;
    // More than there can be; nothing is read.
    EXPECT_THROW(node.SetData(&byte, static_cast<std::size_t>(-1)), std::bad_alloc);
    EXPECT_EQ(Bytes(node), "");
    EXPECT_EQ(node.m_nCalls, 2);
}

TEST(OverrideFailure, OfIncQueryResultLosesNoResult) {
    CLazyElement top;
    for (int i = 0; i < 100; ++i)
        top.CreateChild("child", nullptr)->SetAttribute("n", std::to_string(i).c_str());
    CXMLNode** found = top.GetNodes("child");
    ASSERT_EQ(Count(found), 100u);
    for (int i = 0; i < 100; ++i)
        EXPECT_EQ(found[i]->GetAttributeValue("n"), std::to_string(i));
    EXPECT_GT(top.m_nCalls, 3);
}

TEST(OverrideFailure, NamesOfDerivedClassesAreCheckedWhenTheyAreCopied) {
    CElementProbe right("right");
    CElementProbe wrong("not a name");
    const Document document = NewDocumentWithRoot("root");
    CXMLNode* root = document->GetRoot();
    CXMLNode* child = root->CreateChild("child", nullptr)->CreateChild("inner", nullptr);
    *child = right;  // the child shows what the other object is
    const Document clone(document->Clone());
    EXPECT_EQ(SavedBody(*clone), "<root><child><right/></child></root>");
    *child = wrong;
    EXPECT_INVALID_NAME(Document(document->Clone()), "not a name");
}

TEST(OverrideFailure, OperationsOfElementsAreRefusedByLeavesWhoeverCallsThem) {
    const Document document = NewDocumentWithRoot("root");
    CXMLNode* text = document->GetRoot()->CreateTextChild("text");
    // As an override that calls its base class may do.
    EXPECT_NOT_SUPPORTED(text->CXMLNode::SetTagName("a"));
    EXPECT_NOT_SUPPORTED(text->CXMLNode::CreateChild("a", nullptr));
    EXPECT_NOT_SUPPORTED(text->CXMLNode::CreateTextChild("a"));
    EXPECT_NOT_SUPPORTED(text->CXMLNode::SetAttribute("a", "b"));
    EXPECT_NOT_SUPPORTED(text->CXMLNode::SetTextChildValue("a"));
    EXPECT_EQ(SavedBody(*document), "<root>text</root>");
}

TEST(OverrideFailure, AddToQueryResultIsRefusedWhereThereIsNoRoomForOne) {
    const Document document = NewDocumentWithRoot("root");
    CXMLNode* root = document->GetRoot();
    CTextProbe copy(*root->CreateTextChild("text"));
    EXPECT_NOT_SUPPORTED(copy.AddToQueryResult(root));
    EXPECT_EQ(Count(copy.GetNodes("a")), 0u);
    EXPECT_STREQ(copy.GetText(), "text");
}
