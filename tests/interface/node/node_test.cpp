// Elements as they stand: names, children, parents, kinds.
#include <type_traits>

#include "support/names.h"
#include "support/testing.h"

using namespace norvask;
using namespace norvask_test;

TEST(Node, HasNeitherChildrenNorAttributesAtFirst) {
    const Document document = NewDocumentWithRoot("r");
    CXMLNode* root = document->GetRoot();
    for (CXMLNode* node : {root, root->CreateChild("c", nullptr)}) {
        ASSERT_NE(node->GetAttributes(), nullptr);
        EXPECT_EQ(node->GetAttributes()[0], nullptr);
        if (node == root) continue;
        ASSERT_NE(node->GetChildren(), nullptr);
        EXPECT_EQ(node->GetChildren()[0], nullptr);
        EXPECT_EQ(node->GetFirstChild(), nullptr);
    }
}

TEST(Node, NumbersItsKinds) {
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

TEST(Node, KnowsItsParent) {
    const Document document = NewDocumentWithRoot("r");
    CXMLNode* root = document->GetRoot();
    CXMLNode* child = root->CreateChild("c", nullptr);
    EXPECT_EQ(root->GetParentNode(), nullptr);
    EXPECT_EQ(child->GetParentNode(), root);
    EXPECT_EQ(child->CreateChild("d", nullptr)->GetParentNode(), child);
    EXPECT_EQ(child->CreateTextChild("t")->GetParentNode(), child);
    EXPECT_EQ(child->CreateBinChild()->GetParentNode(), child);
}

TEST(Node, EndsItsChildrenWithNullHoweverManyThereAre) {
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

TEST(Node, ShowsTheSameChildArrayUntilAChildComesOrGoes) {
    const Document document = NewDocumentWithRoot("r");
    CXMLNode* root = document->GetRoot();
    root->CreateChild("a", nullptr);
    CXMLNode** children = root->GetChildren();
    root->SetAttribute("p", "1");
    root->SetTagName("renamed");
    root->GetFirstChild()->CreateChild("b", nullptr);
    root->GetNodes("a/b");
    EXPECT_EQ(root->GetChildren(), children);
    EXPECT_EQ(Listed(children), "a");
}

TEST(Node, ShowsTheSameAttributeArrayUntilAnAttributeComesOrGoes) {
    const Document document = NewDocumentWithRoot("r");
    CXMLNode* root = document->GetRoot();
    root->SetAttribute("p", "1");
    CXMLAttribut** attributes = root->GetAttributes();
    root->SetAttribute("p", "2");
    root->CreateChild("a", nullptr);
    root->SetTagName("renamed");
    EXPECT_EQ(root->GetAttributes(), attributes);
    EXPECT_STREQ(attributes[0]->GetValue(), "2");
}

TEST(Node, RefusesToBeRenamedToWhatIsNoName) {
    const Document document = NewDocumentWithRoot("r");
    CXMLNode* root = document->GetRoot();
    const char* before = root->GetTagName();
    for (const std::string& name : InvalidNames()) {
        EXPECT_INVALID_NAME(root->SetTagName(name.c_str()), name);
        EXPECT_STREQ(root->GetTagName(), "r") << name;
    }
    EXPECT_INVALID_NAME(root->SetTagName(nullptr), "");
    EXPECT_TRUE(Same(root->GetTagName(), before));
}

TEST(Node, IsRenamedToAnyName) {
    const Document document = NewDocumentWithRoot("r");
    CXMLNode* root = document->GetRoot();
    for (const std::string& name : ValidNames()) {
        root->SetTagName(name.c_str());
        EXPECT_EQ(root->GetTagName(), name);
    }
}

TEST(Node, CopiesTheNameItIsGiven) {
    const Document document = NewDocumentWithRoot("r");
    char name[] = "name";
    document->GetRoot()->SetTagName(name);
    name[0] = 'X';
    EXPECT_STREQ(document->GetRoot()->GetTagName(), "name");
}

TEST(Node, KeepsEachNameApartFromEqualOnes) {
    const Document document = NewDocumentWithRoot("same");
    CXMLNode* root = document->GetRoot();
    CXMLNode* first = root->CreateChild("same", nullptr);
    CXMLNode* second = root->CreateChild("same", nullptr);
    first->SetTagName("other");
    EXPECT_STREQ(root->GetTagName(), "same");
    EXPECT_STREQ(second->GetTagName(), "same");
    EXPECT_STREQ(first->GetTagName(), "other");
}

TEST(Node, KeepsInvalidBytesOfANameAndWritesTheReplacementCharacter) {
    const Document document = NewDocumentWithRoot("a\xFF");
    CXMLNode* root = document->GetRoot();
    root->SetAttribute("\xC3", "v\xFF");
    EXPECT_STREQ(root->GetTagName(), "a\xFF");
    EXPECT_STREQ(root->GetAttributeValue("\xC3"), "v\xFF");
    EXPECT_EQ(SavedBody(*document), "<a\xEF\xBF\xBD \xEF\xBF\xBD=\"v\xEF\xBF\xBD\"/>");
}

TEST(Node, ShortensALongInvalidNameInTheMessageOnly) {
    const Document document = NewDocumentWithRoot("r");
    const std::string name = "1" + std::string(1000, 'n');
    EXPECT_INVALID_NAME(document->GetRoot()->SetTagName(name.c_str()), name.substr(0, 255));
}

TEST(Node, CannotBeMadeOrEndedByClients) {
    EXPECT_FALSE(std::is_destructible<CXMLNode>::value);
    EXPECT_FALSE((std::is_constructible<CXMLNode, const char*, CXMLNode*>::value));
    EXPECT_FALSE(std::is_destructible<CXMLTextNode>::value);
    EXPECT_FALSE(std::is_destructible<CXMLBinNode>::value);
    EXPECT_FALSE(std::is_destructible<CXMLDocument>::value);
    EXPECT_FALSE(std::is_destructible<CXMLManager>::value);
    EXPECT_TRUE((std::is_base_of<CXMLNode, CXMLTextNode>::value));
    EXPECT_TRUE((std::is_base_of<CXMLNode, CXMLBinNode>::value));
}

TEST(Node, FreesATreeOfEveryKind) {
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
