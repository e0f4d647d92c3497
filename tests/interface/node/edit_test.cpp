// Growing and shrinking an element: children at a place, leaves, deleting, the one text.
#include "support/names.h"
#include "support/testing.h"
#include "support/tree_fixture.h"

using namespace norvask_test;

namespace {

// A root with the children P, Q and R.
class TreeEdit : public CTreeFixture {
protected:
    CXMLNode* m_pP = m_Root.CreateChild("P", nullptr);
    CXMLNode* m_pQ = m_Root.CreateChild("Q", nullptr);
    CXMLNode* m_pR = m_Root.CreateChild("R", nullptr);
};

}  // namespace

TEST_F(TreeEdit, AppendsAChildWithoutAPlace) {
    CXMLNode* s = m_Root.CreateChild("S", nullptr);
    EXPECT_EQ(Children(m_Root), "P Q R S");
    EXPECT_EQ(m_Root.GetChildren()[3], s);
    EXPECT_EQ(m_Root.GetChildren()[4], nullptr);
}

TEST_F(TreeEdit, PutsAChildInFrontOfEachOther) {
    const struct {
        CXMLNode* before;
        const char* children;
        int place;
    } rows[] = {{m_pP, "S P Q R", 0}, {m_pQ, "P S Q R", 1}, {m_pR, "P Q S R", 2}};
    for (const auto& row : rows) {
        CXMLNode* s = m_Root.CreateChild("S", row.before);
        EXPECT_EQ(Children(m_Root), row.children);
        EXPECT_EQ(m_Root.GetChildren()[row.place], s);
        EXPECT_EQ(s->GetParentNode(), &m_Root);
        m_Root.DeleteChild(s);
        EXPECT_EQ(Children(m_Root), "P Q R");
    }
}

TEST_F(TreeEdit, PutsAChildInFrontOfATextOrABinaryNode) {
    CXMLNode* text = m_Root.CreateTextChild("t");
    CXMLNode* binary = m_Root.CreateBinChild();
    m_Root.CreateChild("S", text);
    m_Root.CreateChild("T", binary);
    EXPECT_EQ(Children(m_Root), "P Q R S 't' T []");
}

TEST_F(TreeEdit, PutsAChildInFrontOfAllWhenThePlaceIsNoChild) {
    CXMLNode* grandchild = m_pP->CreateChild("G", nullptr);
    const Document other = NewDocumentWithRoot("other");
    for (CXMLNode* before : {grandchild, &m_Root, other->GetRoot()}) {
        CXMLNode* s = m_Root.CreateChild("S", before);
        EXPECT_EQ(Children(m_Root), "S P Q R");
        EXPECT_EQ(m_Root.GetFirstChild(), s);
        m_Root.DeleteChild(s);
    }
    EXPECT_EQ(Children(*m_pP), "G");
}

TEST_F(TreeEdit, PutsTheFirstChildInFrontOfAPlaceThatIsNoChild) {
    m_pQ->CreateChild("S", m_pP);
    EXPECT_EQ(Children(*m_pQ), "S");
    m_pQ->CreateChild("T", m_pP);
    EXPECT_EQ(Children(*m_pQ), "T S");
}

TEST_F(TreeEdit, KeepsTheOrderOfManyInsertions) {
    std::string expected = "P Q R";
    for (int i = 0; i < 100; ++i) {
        m_Root.CreateChild("X", m_pQ);
        expected.insert(2, "X ");
        ASSERT_EQ(Children(m_Root), expected);
        ASSERT_EQ(m_Root.GetChildren()[i + 4], nullptr);
    }
}

TEST_F(TreeEdit, ChangesNothingWhenTheNameIsInvalid) {
    for (const std::string& name : InvalidNames()) {
        for (CXMLNode* before : {m_pQ, static_cast<CXMLNode*>(nullptr)})
            EXPECT_INVALID_NAME(m_Root.CreateChild(name.c_str(), before), name);
        EXPECT_EQ(Children(m_Root), "P Q R") << name;
    }
    EXPECT_INVALID_NAME(m_Root.CreateChild(nullptr, nullptr), "");
    EXPECT_EQ(Children(m_Root), "P Q R");
}

TEST_F(TreeEdit, TakesEveryName) {
    for (const std::string& name : ValidNames()) {
        CXMLNode* child = m_Root.CreateChild(name.c_str(), nullptr);
        EXPECT_EQ(child->GetTagName(), name);
    }
}

TEST_F(TreeEdit, AppendsTextsAndBinaryNodes) {
    CXMLTextNode* text = m_Root.CreateTextChild("t");
    CXMLBinNode* binary = m_Root.CreateBinChild();
    EXPECT_EQ(m_Root.GetChildren()[3], static_cast<CXMLNode*>(text));
    EXPECT_EQ(m_Root.GetChildren()[4], static_cast<CXMLNode*>(binary));
    EXPECT_EQ(m_Root.GetChildren()[5], nullptr);
    EXPECT_STREQ(text->GetTagName(), "");
    EXPECT_STREQ(binary->GetTagName(), "");
    EXPECT_STREQ(m_Root.CreateTextChild(nullptr)->GetText(), "");
    EXPECT_STREQ(m_Root.CreateTextChild("")->GetText(), "");
    EXPECT_EQ(Children(m_Root), "P Q R 't' [] '' ''");
}

TEST_F(TreeEdit, DeletesEachChild) {
    m_Root.DeleteChild(m_pQ);
    EXPECT_EQ(Children(m_Root), "P R");
    EXPECT_EQ(m_Root.GetChildren()[0], m_pP);
    EXPECT_EQ(m_Root.GetChildren()[1], m_pR);
    EXPECT_EQ(m_Root.GetChildren()[2], nullptr);
    m_Root.DeleteChild(m_pP);
    EXPECT_EQ(Children(m_Root), "R");
    EXPECT_EQ(m_Root.GetFirstChild(), m_pR);
    m_Root.DeleteChild(m_pR);
    EXPECT_EQ(m_Root.GetChildren()[0], nullptr);
    EXPECT_EQ(m_Root.GetFirstChild(), nullptr);
    m_Root.CreateChild("again", nullptr);
    EXPECT_EQ(Children(m_Root), "again");
}

TEST_F(TreeEdit, DeletesTextsBinaryNodesAndSubtrees) {
    CXMLNode* text = m_Root.CreateTextChild("t");
    CXMLBinNode* binary = m_Root.CreateBinChild();
    SetBytes(*binary, AllByteValues());
    m_pQ->CreateChild("a", nullptr)->CreateChild("b", nullptr)->CreateTextChild("deep");
    m_Root.DeleteChild(text);
    m_Root.DeleteChild(binary);
    m_Root.DeleteChild(m_pQ);
    EXPECT_EQ(Children(m_Root), "P R");
}

TEST_F(TreeEdit, IgnoresTheDeletionOfWhatIsNoChild) {
    CXMLNode* grandchild = m_pP->CreateChild("G", nullptr);
    const Document other = NewDocumentWithRoot("other");
    m_Root.DeleteChild(nullptr);
    m_Root.DeleteChild(grandchild);
    m_Root.DeleteChild(&m_Root);
    m_Root.DeleteChild(other->GetRoot());
    m_pQ->DeleteChild(m_pP);
    m_pQ->DeleteChild(nullptr);
    EXPECT_EQ(Children(m_Root), "P Q R");
    EXPECT_EQ(Children(*m_pP), "G");
    EXPECT_STREQ(other->GetRoot()->GetTagName(), "other");
}

TEST_F(TreeEdit, AlternatesBetweenCreatingAndDeleting) {
    for (int i = 0; i < 1000; ++i) {
        CXMLNode* s = m_Root.CreateChild("S", i % 2 ? m_pP : nullptr);
        m_Root.CreateTextChild("t");
        m_Root.DeleteChild(s);
        m_Root.DeleteChild(m_Root.GetChildren()[3]);
        ASSERT_EQ(Children(m_Root), "P Q R");
    }
}

TEST_F(TreeEdit, FollowsChildrenThatTheClientReorders) {
    CXMLNode** children = m_Root.GetChildren();
    std::swap(children[0], children[2]);
    EXPECT_EQ(Children(m_Root), "R Q P");
    EXPECT_EQ(m_Root.GetFirstChild(), m_pR);
    EXPECT_EQ(Body(), "<r><R/><Q/><P/></r>");
    m_Root.CreateChild("S", m_pP);
    m_Root.DeleteChild(m_pR);
    EXPECT_EQ(Children(m_Root), "Q S P");
    EXPECT_EQ(Listed(m_Root.GetNodes("P")), "P");
}

TEST_F(TreeEdit, AnswersAnEmptyTextForAnElementWithoutChildren) {
    ASSERT_NE(m_pP->GetTextChildValue(), nullptr);
    EXPECT_STREQ(m_pP->GetTextChildValue(), "");
}

TEST_F(TreeEdit, AnswersTheTextOfTheOneTextChild) {
    CXMLTextNode* text = m_pP->CreateTextChild("a<b");
    EXPECT_STREQ(m_pP->GetTextChildValue(), "a<b");
    EXPECT_TRUE(Same(m_pP->GetTextChildValue(), text->GetText()));
}

TEST_F(TreeEdit, RefusesToReadATextWhereThereIsNoSingleOne) {
    const std::string text = "The node 'P' does not contain valid text";
    CXMLNode* child = m_pP->CreateChild("c", nullptr);
    EXPECT_XML_ERROR(m_pP->GetTextChildValue(), 2, text);
    m_pP->DeleteChild(child);
    child = m_pP->CreateBinChild();
    EXPECT_XML_ERROR(m_pP->GetTextChildValue(), 2, text);
    m_pP->CreateTextChild("t");
    EXPECT_XML_ERROR(m_pP->GetTextChildValue(), 2, text);
    m_pP->DeleteChild(child);
    EXPECT_STREQ(m_pP->GetTextChildValue(), "t");
    m_pP->CreateTextChild("t");
    EXPECT_XML_ERROR(m_pP->GetTextChildValue(), 2, text);
}

TEST_F(TreeEdit, CreatesTheTextChildOfAnElementWithoutChildren) {
    m_pP->SetTextChildValue("t");
    EXPECT_EQ(Children(*m_pP), "'t'");
    m_pQ->SetTextChildValue(nullptr);
    EXPECT_EQ(Children(*m_pQ), "''");
    m_pR->SetTextChildValue("");
    EXPECT_EQ(Children(*m_pR), "''");
}

TEST_F(TreeEdit, ChangesTheTextOfTheOneTextChild) {
    CXMLTextNode* text = m_pP->CreateTextChild("old");
    m_pP->SetTextChildValue("new");
    EXPECT_EQ(Children(*m_pP), "'new'");
    EXPECT_EQ(m_pP->GetFirstChild(), static_cast<CXMLNode*>(text));
    m_pP->SetTextChildValue(nullptr);
    EXPECT_EQ(Children(*m_pP), "''");
}

TEST_F(TreeEdit, RefusesToSetATextWhereThereIsNoSingleOne) {
    CXMLNode* child = m_pP->CreateChild("c", nullptr);
    EXPECT_WRONG_FORMAT(m_pP->SetTextChildValue("x"), 6);
    EXPECT_EQ(Children(*m_pP), "c");
    m_pP->DeleteChild(child);
    child = m_pP->CreateBinChild();
    EXPECT_WRONG_FORMAT(m_pP->SetTextChildValue("x"), 6);
    EXPECT_EQ(Children(*m_pP), "[]");
    m_pP->CreateTextChild("t");
    EXPECT_WRONG_FORMAT(m_pP->SetTextChildValue("x"), 6);
    EXPECT_EQ(Children(*m_pP), "[] 't'");
    m_pP->DeleteChild(child);
    m_pP->CreateTextChild("u");
    EXPECT_WRONG_FORMAT(m_pP->SetTextChildValue(nullptr), 6);
    EXPECT_EQ(Children(*m_pP), "'t' 'u'");
}
