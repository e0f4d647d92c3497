// Elements as they stand: names, children, parents, kinds.
#include <type_traits>

#include "support/names.h"
#include "support/testing.h"
#include "support/tree_fixture.h"

using namespace norvask_test;

namespace {

class Node : public CTreeFixture {};

}  // namespace

TEST_F(Node, HasNeitherChildrenNorAttributesAtFirst) {
    for (CXMLNode* node : {&m_Root, m_Root.CreateChild("c", nullptr)}) {
        ASSERT_NE(node->GetAttributes(), nullptr);
        EXPECT_EQ(node->GetAttributes()[0], nullptr);
        if (node == &m_Root) continue;
        ASSERT_NE(node->GetChildren(), nullptr);
        EXPECT_EQ(node->GetChildren()[0], nullptr);
        EXPECT_EQ(node->GetFirstChild(), nullptr);
    }
}

TEST_F(Node, NumbersItsKinds) {
    EXPECT_EQ(CXMLNode::NODE_ELEMENT, 0);
    EXPECT_EQ(CXMLNode::NODE_TEXT, 1);
    EXPECT_EQ(CXMLNode::NODE_BINARY, 2);

    const Document document = NewDocumentWithRoot("r");
    CXMLNode* root = document->GetRoot();
    EXPECT_EQ(root->GetNodeType(), CXMLNode::NODE_ELEMENT);
    EXPECT_EQ(root->CreateChild("c", nullptr)->GetNodeType(), CXMLNode::NODE_ELEMENT);
    EXPECT_EQ(root->CreateTextChild("t")->GetNodeType(), CXMLNode::NODE_TEXT);
    EXPECT_EQ(root->CreateBinChild()->GetNodeType(), CXMLNode::NODE_BINARY);
}

TEST_F(Node, KnowsItsParent) {
    CXMLNode* child = m_Root.CreateChild("c", nullptr);
    EXPECT_EQ(m_Root.GetParentNode(), nullptr);
    EXPECT_EQ(child->GetParentNode(), &m_Root);
    EXPECT_EQ(child->CreateChild("d", nullptr)->GetParentNode(), child);
    EXPECT_EQ(child->CreateTextChild("t")->GetParentNode(), child);
    EXPECT_EQ(child->CreateBinChild()->GetParentNode(), child);
}

TEST_F(Node, EndsItsChildrenWithNullHoweverManyThereAre) {
    for (const char* kind : {"element", "text", "binary"}) {
        const Document document = NewDocumentWithRoot("r");
        CXMLNode* root = document->GetRoot();
        std::vector<CXMLNode*> made;
        for (std::size_t count = 1; count <= 70; ++count) {
            if (*kind == 'e') made.push_back(root->CreateChild("c", nullptr));
            if (*kind == 't') made.push_back(root->CreateTextChild("t"));
            if (*kind == 'b') made.push_back(root->CreateBinChild());
            CXMLNode** children = root->GetChildren();
            ASSERT_EQ(std::vector<CXMLNode*>(children, children + count), made);
            ASSERT_EQ(children[count], nullptr) << count << " children of kind " << kind;
            ASSERT_EQ(root->GetFirstChild(), made[0]);
        }
    }
}

TEST_F(Node, ShowsTheSameChildArrayUntilAChildComesOrGoes) {
    m_Root.CreateChild("a", nullptr);
    CXMLNode** children = m_Root.GetChildren();
    m_Root.SetAttribute("p", "1");
    m_Root.SetTagName("renamed");
    m_Root.GetFirstChild()->CreateChild("b", nullptr);
    m_Root.GetNodes("a/b");
    EXPECT_EQ(m_Root.GetChildren(), children);
    EXPECT_EQ(Listed(children), "a");
}

TEST_F(Node, ShowsTheSameAttributeArrayUntilAnAttributeComesOrGoes) {
    m_Root.SetAttribute("p", "1");
    CXMLAttribut** attributes = m_Root.GetAttributes();
    m_Root.SetAttribute("p", "2");
    m_Root.CreateChild("a", nullptr);
    m_Root.SetTagName("renamed");
    EXPECT_EQ(m_Root.GetAttributes(), attributes);
    EXPECT_STREQ(attributes[0]->GetValue(), "2");
}

TEST_F(Node, RefusesToBeRenamedToWhatIsNoName) {
    const char* before = m_Root.GetTagName();
    for (const std::string& name : InvalidNames()) {
        EXPECT_INVALID_NAME(m_Root.SetTagName(name.c_str()), name);
        EXPECT_STREQ(m_Root.GetTagName(), "r") << name;
    }
    EXPECT_INVALID_NAME(m_Root.SetTagName(nullptr), "");
    EXPECT_TRUE(Same(m_Root.GetTagName(), before));
}

TEST_F(Node, IsRenamedToAnyName) {
    for (const std::string& name : ValidNames()) {
        m_Root.SetTagName(name.c_str());
        EXPECT_EQ(m_Root.GetTagName(), name);
    }
}

TEST_F(Node, CopiesTheNameItIsGiven) {
    const Document document = NewDocumentWithRoot("r");
    char name[] = "name";
    document->GetRoot()->SetTagName(name);
    name[0] = 'X';
    EXPECT_STREQ(document->GetRoot()->GetTagName(), "name");
}

TEST_F(Node, KeepsEachNameApartFromEqualOnes) {
    const Document document = NewDocumentWithRoot("same");
    CXMLNode* root = document->GetRoot();
    CXMLNode* first = root->CreateChild("same", nullptr);
    CXMLNode* second = root->CreateChild("same", nullptr);
    first->SetTagName("other");
    EXPECT_STREQ(root->GetTagName(), "same");
    EXPECT_STREQ(second->GetTagName(), "same");
    EXPECT_STREQ(first->GetTagName(), "other");
}

TEST_F(Node, KeepsInvalidBytesOfANameAndWritesTheReplacementCharacter) {
    const Document document = NewDocumentWithRoot("a\xFF");
    CXMLNode* root = document->GetRoot();
    root->SetAttribute("\xC3", "v\xFF");
    EXPECT_STREQ(root->GetTagName(), "a\xFF");
    EXPECT_STREQ(root->GetAttributeValue("\xC3"), "v\xFF");
    EXPECT_EQ(SavedBody(*document), "<a\xEF\xBF\xBD \xEF\xBF\xBD=\"v\xEF\xBF\xBD\"/>");
}

TEST_F(Node, ShortensALongInvalidNameInTheMessageOnly) {
    const Document document = NewDocumentWithRoot("r");
    const std::string name = "1" + std::string(1000, 'n');
    EXPECT_INVALID_NAME(document->GetRoot()->SetTagName(name.c_str()), name.substr(0, 255));
}

TEST_F(Node, CannotBeMadeOrEndedByClients) {
    EXPECT_FALSE(std::is_destructible<CXMLNode>::value);
    EXPECT_FALSE((std::is_constructible<CXMLNode, const char*, CXMLNode*>::value));
    EXPECT_FALSE(std::is_destructible<CXMLTextNode>::value);
    EXPECT_FALSE(std::is_destructible<CXMLBinNode>::value);
    EXPECT_FALSE(std::is_destructible<CXMLDocument>::value);
    EXPECT_FALSE(std::is_destructible<CXMLManager>::value);
    EXPECT_TRUE((std::is_base_of<CXMLNode, CXMLTextNode>::value));
    EXPECT_TRUE((std::is_base_of<CXMLNode, CXMLBinNode>::value));
}

TEST_F(Node, FreesATreeOfEveryKind) {
    const Document document = NewDocumentWithRoot("r");
    CXMLNode* node = document->GetRoot();
    for (int level = 0; level < 50; ++level) {
        node->SetAttribute("p", std::string(100, 'v').c_str());
        node->CreateTextChild(std::string(100, 't').c_str());
        SetBytes(*node->CreateBinChild(), AllByteValues());
        node->CreateChild("sibling", nullptr);
        node->GetNodes("sibling");
        node = node->CreateChild("n", nullptr);
    }
    EXPECT_STREQ(node->GetTagName(), "n");
}
