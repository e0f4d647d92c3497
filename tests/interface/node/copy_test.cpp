// Real copies of nodes: CopyChild. Those of documents are in document/clone_test.cpp.
#include "support/testing.h"
#include "support/tree_fixture.h"

using namespace norvask_test;

namespace {

class TreeCopy : public CTreeFixture {};

}  // namespace

TEST_F(TreeCopy, CopiesAnElementWithAllThatIsBelowIt) {
    const Document other =
        Load("<o><s a='1' b='2'>text<e/><![CDATA[AAEC]]><d c='3'><deep>x</deep></d>tail</s></o>");
    CXMLNode* source = other->GetRoot()->GetFirstChild();
    CXMLNode* copy = m_Root.CopyChild(source, nullptr);
    EXPECT_EQ(copy, m_Root.GetFirstChild());
    EXPECT_EQ(copy->GetParentNode(), &m_Root);
    EXPECT_EQ(source->GetParentNode(), other->GetRoot());
    const std::string subtree =
        "<s a=\"1\" b=\"2\">text<e/><![CDATA[AAEC\n]]><d c=\"3\"><deep>x</deep></d>tail</s>";
    EXPECT_EQ(Body(), "<r>" + subtree + "</r>");
    EXPECT_EQ(SavedBody(*other), "<o>" + subtree + "</o>");
}

TEST_F(TreeCopy, SharesNothingWithItsSource) {
    Document other = Load("<o><s a='1'>text<![CDATA[AAEC]]><d/></s></o>");
    CXMLNode* source = other->GetRoot()->GetFirstChild();
    m_Root.CopyChild(source, nullptr);
    const std::string before = Body();
    source->SetTagName("changed");
    source->SetAttribute("a", "changed");
    static_cast<CXMLTextNode*>(source->GetChildren()[0])->SetText("changed");
    SetBytes(static_cast<CXMLBinNode&>(*source->GetChildren()[1]), "changed");
    source->DeleteChild(source->GetChildren()[2]);
    EXPECT_EQ(Body(), before);
    other.reset();
    EXPECT_EQ(Body(), before);
}

TEST_F(TreeCopy, PutsAnElementAtAPlaceAsCreatingOneDoes) {
    CXMLNode* p = m_Root.CreateChild("P", nullptr);
    CXMLNode* q = m_Root.CreateChild("Q", nullptr);
    const Document other = NewDocumentWithRoot("S");
    m_Root.CopyChild(other->GetRoot(), q);
    EXPECT_EQ(Children(m_Root), "P S Q");
    m_Root.CopyChild(other->GetRoot(), p);
    EXPECT_EQ(Children(m_Root), "S P S Q");
    m_Root.CopyChild(other->GetRoot(), nullptr);
    EXPECT_EQ(Children(m_Root), "S P S Q S");
    other->GetRoot()->SetTagName("T");
    m_Root.CopyChild(other->GetRoot(), &m_Root);
    EXPECT_EQ(Children(m_Root), "T S P S Q S");
}

TEST_F(TreeCopy, AlwaysAppendsTextsAndBinaryNodes) {
    CXMLNode* p = m_Root.CreateChild("P", nullptr);
    m_Root.CreateChild("Q", nullptr);
    const Document other = Load("<o>text<![CDATA[QUJD]]></o>");
    CXMLNode* const* source = other->GetRoot()->GetChildren();
    CXMLNode* text = m_Root.CopyChild(source[0], p);
    CXMLNode* binary = m_Root.CopyChild(source[1], p);
    EXPECT_EQ(Children(m_Root), "P Q 'text' [ABC]");
    EXPECT_EQ(m_Root.GetChildren()[2], text);
    EXPECT_EQ(m_Root.GetChildren()[3], binary);
    EXPECT_EQ(text->GetNodeType(), CXMLNode::NODE_TEXT);
    EXPECT_EQ(binary->GetNodeType(), CXMLNode::NODE_BINARY);
    EXPECT_EQ(text->GetParentNode(), &m_Root);
    EXPECT_EQ(binary->GetParentNode(), &m_Root);
}

TEST_F(TreeCopy, CopiesEmptyLeaves) {
    const Document other = NewDocumentWithRoot("o");
    m_Root.CopyChild(other->GetRoot()->CreateTextChild(nullptr), nullptr);
    m_Root.CopyChild(other->GetRoot()->CreateBinChild(), nullptr);
    EXPECT_EQ(Children(m_Root), "'' []");
}

TEST_F(TreeCopy, RefusesNullOnEveryKindOfNode) {
    CXMLNode* child = m_Root.CreateChild("c", nullptr);
    CXMLNode* text = m_Root.CreateTextChild("t");
    CXMLNode* binary = m_Root.CreateBinChild();
    for (CXMLNode* node : {&m_Root, child, text, binary}) {
        EXPECT_INVALID_PARAMETER(node->CopyChild(nullptr, nullptr));
        EXPECT_INVALID_PARAMETER(node->CopyChild(nullptr, child));
    }
    EXPECT_EQ(Children(m_Root), "c 't' []");
}

TEST_F(TreeCopy, RefusesEverySourceOnALeaf) {
    CXMLNode* child = m_Root.CreateChild("c", nullptr);
    CXMLNode* text = m_Root.CreateTextChild("t");
    CXMLNode* binary = m_Root.CreateBinChild();
    for (CXMLNode* leaf : {text, binary}) {
        for (CXMLNode* source : {&m_Root, child, text, binary}) {
            EXPECT_NOT_SUPPORTED(leaf->CopyChild(source, nullptr));
            EXPECT_NOT_SUPPORTED(leaf->CopyChild(source, child));
        }
        EXPECT_EQ(leaf->GetFirstChild(), nullptr);
    }
    EXPECT_EQ(Children(m_Root), "c 't' []");
}

TEST_F(TreeCopy, DropsAttributesWithAnEmptyValue) {
    CXMLNode* source = m_Root.CreateChild("s", nullptr);
    for (const char* name : {"a", "b", "c"})
        source->SetAttribute(name, "1");
    source->GetAttributes()[0]->SetValue("");
    source->GetAttributes()[2]->SetValue("");
    EXPECT_EQ(Attributes(*m_Root.CopyChild(source, nullptr)), "b=1");
    EXPECT_EQ(Attributes(*source), "a= b=1 c=");
}

TEST_F(TreeCopy, JoinsAttributesOfOneNameAsSettingThemDoes) {
    CXMLNode* source = m_Root.CreateChild("s", nullptr);
    for (const char* name : {"a", "b", "c", "d"})
        source->SetAttribute(name, name);
    source->GetAttributes()[2]->SetName("a");
    EXPECT_EQ(Attributes(*source), "a=a b=b a=c d=d");
    EXPECT_EQ(Attributes(*m_Root.CopyChild(source, nullptr)), "a=c b=b d=d");
    source->GetAttributes()[2]->SetValue("");
    EXPECT_EQ(Attributes(*m_Root.CopyChild(source, nullptr)), "b=b d=d");
}

TEST_F(TreeCopy, KeepsWhatWasCopiedWhenANameIsRefused) {
    const Document other = Load("<s a='1' b='2' c='3'>t<p/><q d='4' e='5'><x/></q><z/></s>");
    CXMLNode* source = other->GetRoot();
    source->GetChildren()[2]->GetAttributes()[1]->SetName("5e");
    EXPECT_INVALID_NAME(m_Root.CopyChild(source, nullptr), "5e");
    EXPECT_EQ(Body(), "<r><s a=\"1\" b=\"2\" c=\"3\">t<p/><q d=\"4\"/></s></r>");

    source->GetAttributes()[1]->SetName("");
    EXPECT_INVALID_NAME(m_Root.CopyChild(source, nullptr), "");
    EXPECT_EQ(Body(), "<r><s a=\"1\" b=\"2\" c=\"3\">t<p/><q d=\"4\"/></s><s a=\"1\"/></r>");

    source->GetAttributes()[1]->SetValue("");
    EXPECT_INVALID_NAME(m_Root.CopyChild(source, nullptr), "");
}

TEST_F(TreeCopy, CopiesANodeIntoItselfAsItStoodAtTheCall) {
    m_Root.SetAttribute("a", "1");
    m_Root.CreateChild("P", nullptr)->CreateTextChild("t");
    CXMLNode* q = m_Root.CreateChild("Q", nullptr);
    const std::string content = "<P>t</P><Q/>";
    const std::string copied = "<r a=\"1\">" + content + "</r>";

    CXMLNode* copy = m_Root.CopyChild(&m_Root, nullptr);
    EXPECT_EQ(Body(), "<r a=\"1\">" + content + copied + "</r>");
    m_Root.DeleteChild(copy);

    copy = m_Root.CopyChild(&m_Root, q);
    EXPECT_EQ(Body(), "<r a=\"1\"><P>t</P>" + copied + "<Q/></r>");
    m_Root.DeleteChild(copy);

    copy = m_Root.CopyChild(&m_Root, m_Root.GetFirstChild());
    EXPECT_EQ(Body(), "<r a=\"1\">" + copied + content + "</r>");
}

TEST_F(TreeCopy, CopiesANodeBelowItselfAsItStoodAtTheCall) {
    CXMLNode* p = m_Root.CreateChild("P", nullptr);
    CXMLNode* d = p->CreateChild("D", nullptr);
    m_Root.CreateChild("Q", nullptr);
    d->CopyChild(&m_Root, nullptr);
    EXPECT_EQ(Body(), "<r><P><D><r><P><D/></P><Q/></r></D></P><Q/></r>");
    p->CopyChild(&m_Root, d);
    const std::string inner = "<D><r><P><D/></P><Q/></r></D>";
    EXPECT_EQ(Body(), "<r><P><r><P>" + inner + "</P><Q/></r>" + inner + "</P><Q/></r>");
}

TEST_F(TreeCopy, DoublesATreeThatIsCopiedIntoItselfAgainAndAgain) {
    for (int i = 0; i < 12; ++i)
        m_Root.CopyChild(&m_Root, i % 2 ? m_Root.GetFirstChild() : nullptr);
    std::size_t elements = 0;
    const std::string body = Body();
    for (std::size_t at = body.find("<r"); at != std::string::npos; at = body.find("<r", at + 1))
        ++elements;
    EXPECT_EQ(elements, 4096u);
}

TEST_F(TreeCopy, CopiesChildrenAndSiblingsWithinOneParent) {
    CXMLNode* p = m_Root.CreateChild("P", nullptr);
    p->CreateChild("x", nullptr);
    CXMLNode* copy = m_Root.CopyChild(p, p);
    EXPECT_NE(copy, p);
    EXPECT_EQ(Body(), "<r><P><x/></P><P><x/></P></r>");
    EXPECT_EQ(m_Root.GetFirstChild(), copy);
    m_Root.CopyChild(m_Root.CreateTextChild("t"), nullptr);
    EXPECT_EQ(Body(), "<r><P><x/></P><P><x/></P>tt</r>");
}

TEST_F(TreeCopy, MovesANodeByCopyingAndDeleting) {
    CXMLNode* p = m_Root.CreateChild("P", nullptr);
    CXMLNode* q = m_Root.CreateChild("Q", nullptr);
    p->CreateTextChild("t");
    q->CopyChild(p, nullptr);
    m_Root.DeleteChild(p);
    EXPECT_EQ(Body(), "<r><Q><P>t</P></Q></r>");
}

TEST_F(TreeCopy, KeepsInvalidUtf8AndControlCharacters) {
    CXMLNode* s = m_Root.CreateChild("s\xFF", nullptr);
    s->SetAttribute("a", "\x01\xFF");
    s->CreateTextChild("\x02\xFE");
    CXMLNode* copy = m_Root.CopyChild(s, nullptr);
    EXPECT_STREQ(copy->GetTagName(), "s\xFF");
    EXPECT_STREQ(copy->GetAttributeValue("a"), "\x01\xFF");
    EXPECT_STREQ(copy->GetTextChildValue(), "\x02\xFE");
}
