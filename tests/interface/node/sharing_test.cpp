// Copies of nodes: they show the same content, and it goes with the last of them.
#include "support/derived.h"
#include "support/testing.h"
#include "support/tree_fixture.h"

using namespace norvask_test;

namespace {

constexpr const char* XML = "<r a='1'><p b='2'>text<x/><![CDATA[QUJD]]></p><q><y/></q></r>";
constexpr const char* P = "<p b=\"2\">text<x/><![CDATA[QUJD\n]]></p>";

class NodeSharing : public CTreeFixture {
protected:
    NodeSharing() : CTreeFixture(Load(XML)) {}

    CXMLNode& m_P = *m_Root.GetChildren()[0];
    CXMLNode& m_Q = *m_Root.GetChildren()[1];
    CXMLTextNode& m_Text = static_cast<CXMLTextNode&>(*m_P.GetChildren()[0]);
    CXMLBinNode& m_Binary = static_cast<CXMLBinNode&>(*m_P.GetChildren()[2]);
};

}  // namespace

TEST_F(NodeSharing, CopiesShowTheVerySameContent) {
    m_P.GetNodes("x");
    CElementProbe copy(m_P);
    EXPECT_TRUE(Same(copy.GetTagName(), m_P.GetTagName()));
    EXPECT_TRUE(Same(copy.GetChildren(), m_P.GetChildren()));
    EXPECT_TRUE(Same(copy.GetAttributes(), m_P.GetAttributes()));
    EXPECT_EQ(copy.GetParentNode(), &m_Root);
    EXPECT_EQ(copy.GetNodeType(), CXMLNode::NODE_ELEMENT);
    EXPECT_EQ(SavedNode(copy), P);
    EXPECT_TRUE(Same(copy.GetNodes("x"), m_P.GetNodes("x")));
}

TEST_F(NodeSharing, CopiesShowEachOthersChanges) {
    CElementProbe copy(m_P);
    copy.SetTagName("renamed");
    copy.SetAttribute("b", "");
    copy.SetAttribute("c", "3");
    for (int i = 0; i < 20; ++i)
        m_P.CreateChild("new", nullptr);
    while (copy.GetFirstChild() && *copy.GetFirstChild()->GetTagName() != 'n')
        copy.DeleteChild(copy.GetFirstChild());
    EXPECT_EQ(Count(m_P.GetChildren()), 20u);
    EXPECT_EQ(Attributes(m_P), "c=3");
    EXPECT_STREQ(m_P.GetTagName(), "renamed");
    EXPECT_EQ(SavedNode(copy) + "<q><y/></q>", Body().substr(9, Body().size() - 13));
}

TEST_F(NodeSharing, CopiesMayEndBeforeTheirSource) {
    const std::string before = Body();
    {
        CElementProbe copy(m_P);
        CElementProbe second(copy);
        copy.CreateChild("new", nullptr);
    }
    m_P.DeleteChild(m_P.GetChildren()[3]);
    EXPECT_EQ(Body(), before);
}

TEST_F(NodeSharing, CopiesOutliveTheDocument) {
    CElementProbe p(m_P);
    CElementProbe root(m_Root);
    CTextProbe text(m_Text);
    CBinaryProbe binary(m_Binary);
    m_Document.reset();
    EXPECT_EQ(SavedNode(p), P);
    EXPECT_EQ(SavedNode(root), std::string("<r a=\"1\">") + P + "<q><y/></q></r>");
    EXPECT_STREQ(text.GetText(), "text");
    EXPECT_EQ(Bytes(binary), "ABC");
    p.CreateChild("new", nullptr)->SetTextChildValue("content");
    text.SetText("changed");
    SetBytes(binary, "changed");
    root.SetAttribute("a", "2");
    EXPECT_EQ(Listed(root.GetNodes("p/new")), "new");
    EXPECT_EQ(Count(p.GetChildren()), 4u);
    EXPECT_STREQ(root.GetAttributeValue("a"), "2");
}

TEST_F(NodeSharing, CopiesOutliveTheDeletionOfTheirSource) {
    CElementProbe copy(m_P);
    m_Root.DeleteChild(&m_P);
    EXPECT_EQ(Body(), "<r a=\"1\"><q><y/></q></r>");
    EXPECT_EQ(SavedNode(copy), P);
    m_Document->CreateRoot("s");
    EXPECT_EQ(SavedNode(copy), P);
    EXPECT_EQ(Listed(copy.GetNodes("x")), "x");
}

TEST_F(NodeSharing, CopiesAnswerNoParentThatHasEnded) {
    CElementProbe p(m_P);
    CTextProbe text(m_Text);
    CElementProbe root(m_Root);
    EXPECT_EQ(text.GetParentNode(), &m_P);
    m_Root.DeleteChild(&m_P);
    EXPECT_EQ(text.GetParentNode(), nullptr);
    m_Document.reset();
    EXPECT_EQ(p.GetParentNode(), nullptr);
    EXPECT_EQ(p.GetFirstChild()->GetParentNode(), nullptr);
    EXPECT_EQ(root.GetParentNode(), nullptr);
    EXPECT_EQ(root.GetFirstChild()->GetParentNode(), nullptr);
}

TEST_F(NodeSharing, AssignedNodesAnswerNoParentThatHasEnded) {
    const Document target = Load("<t><old/></t>");
    CXMLNode* old = target->GetRoot()->GetFirstChild();
    *old = m_P;
    EXPECT_EQ(old->GetParentNode(), &m_Root);
    m_Document.reset();
    EXPECT_EQ(old->GetParentNode(), nullptr);
    EXPECT_EQ(old->GetFirstChild()->GetParentNode(), nullptr);
}

TEST_F(NodeSharing, CopiesKeepDeepContentAlive) {
    std::unique_ptr<CElementProbe> copy;
    {
        const Document deep = NewDocumentWithRoot("r");
        CXMLNode* node = deep->GetRoot();
        for (int i = 0; i < 1000; ++i)
            node = node->CreateChild("n", nullptr);
        node->SetTextChildValue("bottom");
        copy = std::make_unique<CElementProbe>(*deep->GetRoot()->GetFirstChild());
    }
    EXPECT_NE(SavedNode(*copy).find("bottom"), std::string::npos);
    CXMLNode* node = copy.get();
    for (int i = 0; i < 999; ++i)
        node = node->GetFirstChild();
    EXPECT_STREQ(node->GetTextChildValue(), "bottom");
}

TEST_F(NodeSharing, AssignedElementsShowOneContent) {
    m_Q = m_P;
    EXPECT_EQ(Body(), std::string("<r a=\"1\">") + P + P + "</r>");
    EXPECT_TRUE(Same(m_Q.GetChildren(), m_P.GetChildren()));
    m_Q.DeleteChild(m_Q.GetFirstChild());
    EXPECT_EQ(Count(m_P.GetChildren()), 2u);
    m_Root.DeleteChild(&m_P);
    EXPECT_EQ(Body(), "<r a=\"1\"><p b=\"2\"><x/><![CDATA[QUJD\n]]></p></r>");
    EXPECT_EQ(Listed(m_Root.GetNodes("p/x")), "x");
}

TEST_F(NodeSharing, ElementsSurviveAssignmentToThemselves) {
    CXMLNode& same = m_P;
    const std::string before = Body();
    m_P = same;
    EXPECT_EQ(Body(), before);
    CElementProbe copy(m_P);
    m_P = copy;
    EXPECT_EQ(Body(), before);
    EXPECT_EQ(m_P.GetParentNode(), &m_Root);
}

TEST_F(NodeSharing, AnElementMayBeAssignedToTheOneAboveIt) {
    m_Root = m_P;
    EXPECT_EQ(Body(), P);
    EXPECT_EQ(Saved(Document(m_Document->Clone())), DECLARATION + P);
    EXPECT_EQ(Listed(m_Document->GetNodes("p/x")), "x");
    m_Root.CreateChild("new", nullptr);
    EXPECT_EQ(Children(m_Root), "'text' x [ABC] new");
}

TEST_F(NodeSharing, AssignmentAcrossDocumentsSurvivesEitherEnd) {
    for (const bool targetFirst : {true, false}) {
        Document source = Load(XML);
        Document target = Load("<t><old>content</old><other/></t>");
        *target->GetRoot()->GetFirstChild() = *source->GetRoot()->GetFirstChild();
        EXPECT_EQ(SavedBody(*target), std::string("<t>") + P + "<other/></t>");
        (targetFirst ? target : source).reset();
        CXMLNode* left = (targetFirst ? source : target)->GetRoot()->GetFirstChild();
        left->CreateChild("new", nullptr)->SetAttribute("a", "1");
        left->SetAttribute("b", "3");
        EXPECT_EQ(Children(*left), "'text' x [ABC] new");
        EXPECT_EQ(Attributes(*left), "b=3");
    }
}

TEST_F(NodeSharing, RootsOfTwoDocumentsMayShowOneTree) {
    for (const bool sourceFirst : {true, false}) {
        Document source = Load(XML);
        Document target = NewDocumentWithRoot("t");
        *target->GetRoot() = *source->GetRoot();
        const std::string saved = Saved(source);
        EXPECT_EQ(Saved(target), saved);
        (sourceFirst ? source : target).reset();
        const Document& left = sourceFirst ? target : source;
        EXPECT_EQ(Saved(left), saved);
        EXPECT_EQ(Saved(Document(left->Clone())), saved);
        EXPECT_EQ(Listed(left->GetNodes("r/q/y")), "y");
        left->CreateRoot("end");
    }
}

TEST_F(NodeSharing, TextsShareTheirTextAndEachOthersChanges) {
    CXMLTextNode& other = *m_Q.CreateTextChild("other");
    other = m_Text;
    EXPECT_TRUE(Same(other.GetText(), m_Text.GetText()));
    EXPECT_EQ(Body(), std::string("<r a=\"1\">") + P + "<q><y/>text</q></r>");
    other.SetText("changed");
    EXPECT_STREQ(m_Text.GetText(), "changed");
    EXPECT_TRUE(Same(other.GetText(), m_Text.GetText()));
    m_P.DeleteChild(&m_Text);
    EXPECT_STREQ(other.GetText(), "changed");
    CXMLTextNode& same = other;
    other = same;
    EXPECT_STREQ(other.GetText(), "changed");
}

TEST_F(NodeSharing, BinaryNodesShareTheirBlockAndEachOthersChanges) {
    CXMLBinNode& other = *m_Q.CreateBinChild();
    SetBytes(other, "other");
    other = m_Binary;
    const unsigned char* first = nullptr;
    const unsigned char* second = nullptr;
    std::size_t length = 0;
    m_Binary.GetData(first, length);
    other.GetData(second, length);
    EXPECT_TRUE(Same(first, second));
    EXPECT_EQ(length, 3u);
    SetBytes(m_Binary, "changed");
    EXPECT_EQ(Bytes(other), "changed");
    m_P.DeleteChild(&m_Binary);
    EXPECT_EQ(Bytes(other), "changed");
    CXMLBinNode& same = other;
    other = same;
    EXPECT_EQ(Bytes(other), "changed");
}

TEST_F(NodeSharing, NodesOfDifferentKindsTakeOverTheParentOnly) {
    CXMLNode& text = *m_Q.CreateTextChild("kept");
    text = *m_P.GetChildren()[1];
    EXPECT_STREQ(static_cast<CXMLTextNode&>(text).GetText(), "kept");
    EXPECT_EQ(text.GetParentNode(), &m_P);
    EXPECT_EQ(text.GetFirstChild(), nullptr);
    CXMLNode& element = *m_Q.GetChildren()[0];
    element = m_Binary;
    EXPECT_STREQ(element.GetTagName(), "y");
    EXPECT_EQ(element.GetParentNode(), &m_P);
    EXPECT_EQ(Bytes(m_Binary), "ABC");
    static_cast<CXMLNode&>(m_Binary) = m_Root;
    EXPECT_EQ(m_Binary.GetParentNode(), nullptr);
    EXPECT_EQ(Bytes(m_Binary), "ABC");
    EXPECT_EQ(Body(), std::string("<r a=\"1\">") + P + "<q><y/>kept</q></r>");
}

TEST_F(NodeSharing, AnElementCopiedFromALeafIsAnEmptyElement) {
    CElementProbe fromText(static_cast<CXMLNode&>(m_Text));
    CElementProbe fromBinary(static_cast<CXMLNode&>(m_Binary));
    for (CElementProbe* copy : {&fromText, &fromBinary}) {
        EXPECT_EQ(copy->GetNodeType(), CXMLNode::NODE_ELEMENT);
        EXPECT_STREQ(copy->GetTagName(), "");
        EXPECT_EQ(copy->GetParentNode(), &m_P);
        EXPECT_EQ(copy->GetFirstChild(), nullptr);
        EXPECT_EQ(copy->GetAttributes()[0], nullptr);
        EXPECT_STREQ(copy->GetTextChildValue(), "");
        EXPECT_INVALID_NAME(SavedNode(*copy), "");
        EXPECT_INVALID_NAME(m_Q.CopyChild(copy, nullptr), "");
        copy->SetTagName("e");
        copy->SetAttribute("a", "1");
        copy->CreateChild("c", nullptr);
        copy->CopyChild(&m_Q, nullptr);
        EXPECT_EQ(Listed(copy->GetNodes("q")), "q");
    }
    EXPECT_EQ(m_Text.GetFirstChild(), nullptr);
    EXPECT_EQ(Body(), std::string("<r a=\"1\">") + P + "<q><y/></q></r>");
    m_Document.reset();
    EXPECT_EQ(SavedNode(fromText), "<e a=\"1\"><c/><q><y/></q></e>");
    EXPECT_EQ(SavedNode(fromBinary), "<e a=\"1\"><c/><q><y/></q></e>");
}

TEST_F(NodeSharing, DerivedNodesOfTheirOwnShareAsWell) {
    auto source = std::make_unique<CElementProbe>("own");
    source->CreateChild("c", nullptr);
    CElementProbe copy(*source);
    CElementProbe assigned("other");
    assigned.CreateChild("gone", nullptr);
    assigned = *source;
    m_Q = copy;
    source->SetAttribute("a", "1");
    source.reset();
    EXPECT_EQ(SavedNode(copy), "<own a=\"1\"><c/></own>");
    EXPECT_EQ(SavedNode(assigned), "<own a=\"1\"><c/></own>");
    EXPECT_EQ(Body(), std::string("<r a=\"1\">") + P + "<own a=\"1\"><c/></own></r>");
}

TEST_F(NodeSharing, CopiesAreCopiedDeeplyLikeAnyNode) {
    CElementProbe copy(m_P);
    m_Q.CopyChild(&copy, nullptr);
    copy.CopyChild(&m_P, nullptr);
    m_P.SetTagName("changed");
    EXPECT_EQ(SavedNode(copy),
              "<changed b=\"2\">text<x/><![CDATA[QUJD\n]]>" + std::string(P) + "</changed>");
    EXPECT_EQ(Listed(m_Root.GetNodes("q/p/x")), "x");
}

TEST_F(NodeSharing, CopiesHoldTheQueryResultOfTheirSource) {
    CXMLNode** nodes = m_P.GetNodes("x");
    CElementProbe copy(m_P);
    EXPECT_EQ(Listed(nodes), "x");
    copy.GetNodes(nullptr);
    EXPECT_EQ(Listed(nodes), "");
    for (int i = 0; i < 20; ++i)
        copy.CreateChild("x", nullptr);
    EXPECT_EQ(Count(m_P.GetNodes("x")), 21u);
    m_Document.reset();
    EXPECT_EQ(Count(copy.GetNodes("x")), 21u);
}
