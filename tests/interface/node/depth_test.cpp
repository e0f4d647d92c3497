// Very deep and very wide trees: a million levels on a stack of 1 MiB, a million children, twenty
// thousand attributes. Nothing is timed; what is not linear does not end.
#include <algorithm>

#include "support/derived.h"
#include "support/small_stack.h"
#include "support/testing.h"
#include "support/tree_fixture.h"

using namespace norvask_test;

namespace {

constexpr std::size_t LEVELS = 1000000;
constexpr std::size_t CHILDREN = 1000000;
constexpr int ATTRIBUTES = 20000;

// `levels` elements, one in the other, the root among them.
Document DeepDocument(std::size_t levels) {
    Document document = NewDocumentWithRoot("n");
    CXMLNode* node = document->GetRoot();
    for (std::size_t level = 1; level < levels; ++level)
        node = node->CreateChild("n", nullptr);
    return document;
}

std::string Repeated(const std::string& part, std::size_t times) {
    std::string whole;
    whole.reserve(part.size() * times);
    for (std::size_t i = 0; i < times; ++i)
        whole += part;
    return whole;
}

// What such a document saves without formatting.
std::string DeepBody(std::size_t levels) {
    return Repeated("<n>", levels - 1) + "<n/>" + Repeated("</n>", levels - 1);
}

CXMLNode* Bottom(CXMLNode* node) {
    while (node->GetFirstChild())
        node = node->GetFirstChild();
    return node;
}

std::size_t Levels(CXMLNode* node) {
    std::size_t levels = 1;
    for (; node->GetFirstChild(); node = node->GetFirstChild())
        ++levels;
    return levels;
}

// A text of megabytes is no use in a failure message.
void ExpectSame(const std::string& got, const std::string& expected) {
    EXPECT_EQ(got.size(), expected.size());
    const auto different = std::mismatch(got.begin(), got.end(), expected.begin(), expected.end());
    EXPECT_TRUE(different.first == got.end() && different.second == expected.end())
        << "they differ at byte " << (different.first - got.begin());
}

std::string Name(int i) { return "a" + std::to_string(i); }

class Width : public CTreeFixture {};

}  // namespace

TEST(Depth, AMillionLevelsAreBuiltClonedSavedAndDeleted) {
    OnSmallStack([] {
        Document document = DeepDocument(LEVELS);
        const std::string expected = DeepBody(LEVELS);
        ExpectSame(SavedBody(*document), expected);
        Document clone(document->Clone());
        document.reset();
        ExpectSame(SavedBody(*clone), expected);
        EXPECT_EQ(Levels(clone->GetRoot()), LEVELS);
    });
}

TEST(Depth, AMillionLevelsAreQueriedThroughAPathOfFiftyThousandSteps) {
    OnSmallStack([] {
        const Document document = DeepDocument(LEVELS);
        constexpr std::size_t steps = 50000;
        const std::string path = Repeated("n/", steps - 1) + "n";
        CXMLNode* expected = document->GetRoot();
        for (std::size_t i = 1; i < steps; ++i)
            expected = expected->GetFirstChild();
        CXMLNode** nodes = document->GetNodes(path.c_str());
        ASSERT_EQ(Count(nodes), 1u);
        EXPECT_EQ(nodes[0], expected);
        EXPECT_EQ(document->GetNodes((path + "/").c_str())[0], expected);
        EXPECT_EQ(document->GetNodes((path + "/n").c_str())[0], expected->GetFirstChild());
        EXPECT_EQ(document->GetNodes((path + "/x").c_str())[0], nullptr);
    });
}

TEST(Depth, AMillionLevelsAreReplacedAndDeletedFromWithin) {
    OnSmallStack([] {
        const Document document = DeepDocument(LEVELS);
        CXMLNode* root = document->GetRoot();
        root->CreateChild("kept", nullptr);
        root->DeleteChild(root->GetFirstChild());
        EXPECT_EQ(SavedBody(*document), "<n><kept/></n>");
        const Document second = DeepDocument(LEVELS);
        const char* name = Bottom(second->GetRoot())->GetTagName();
        EXPECT_STREQ(second->CreateRoot(name)->GetTagName(), "n");
        EXPECT_EQ(SavedBody(*second), "<n/>");
    });
}

TEST(Depth, HalfAMillionLevelsAreCopiedBelowTheirBottom) {
    OnSmallStack([] {
        const Document document = DeepDocument(LEVELS / 2);
        CXMLNode* bottom = Bottom(document->GetRoot());
        CXMLNode* copy = bottom->CopyChild(document->GetRoot(), nullptr);
        EXPECT_EQ(copy->GetParentNode(), bottom);
        EXPECT_EQ(Levels(document->GetRoot()), LEVELS);
        ExpectSame(SavedBody(*document), DeepBody(LEVELS));
    });
}

TEST(Depth, LevelsWithAttributesAndTextsAreClonedAndSaved) {
    OnSmallStack([] {
        constexpr std::size_t levels = 200000;
        const Document document = NewDocumentWithRoot("n");
        CXMLNode* node = document->GetRoot();
        for (std::size_t level = 1; level < levels; ++level) {
            node->SetAttribute("a", "1");
            node->CreateTextChild("t");
            CXMLNode* next = node->CreateChild("n", nullptr);
            node->CreateChild("e", nullptr);
            node = next;
        }
        const std::string expected =
            Repeated("<n a=\"1\">t", levels - 1) + "<n/>" + Repeated("<e/></n>", levels - 1);
        ExpectSame(SavedBody(*document), expected);
        const Document clone(document->Clone());
        ExpectSame(SavedBody(*clone), expected);
    });
}

TEST(Depth, ThousandsOfLevelsAreIndented) {
    OnSmallStack([] {
        constexpr std::size_t levels = 2000;
        const Document document = DeepDocument(levels);
        std::string expected = DECLARATION;
        for (std::size_t level = 0; level < levels; ++level)
            expected += "\r\n" + std::string(level, '\t') + (level + 1 < levels ? "<n>" : "<n/>");
        for (std::size_t level = levels - 1; level-- > 0;)
            expected += "\r\n" + std::string(level, '\t') + "</n>";
        ExpectSame(Saved(document, true), expected);
    });
}

TEST(Depth, LevelsBelowADerivedNodeAreSavedCopiedAndEnded) {
    OnSmallStack([] {
        CElementProbe top("n");
        CXMLNode* node = &top;
        for (std::size_t level = 1; level < LEVELS; ++level)
            node = node->CreateChild("n", nullptr);
        ExpectSame(SavedNode(top), DeepBody(LEVELS));
        const Document target = NewDocumentWithRoot("n");
        target->GetRoot()->CopyChild(&top, nullptr);
        EXPECT_EQ(Levels(target->GetRoot()), LEVELS + 1);
    });
}

TEST(Depth, LevelsOutliveTheirDocumentInACopy) {
    OnSmallStack([] {
        Document document = DeepDocument(LEVELS);
        CElementProbe copy(*document->GetRoot());
        document.reset();
        ExpectSame(SavedNode(copy), DeepBody(LEVELS));
    });
}

TEST_F(Width, AMillionChildrenAreBuiltQueriedClonedAndSaved) {
    Document document = NewDocumentWithRoot("r");
    CXMLNode* root = document->GetRoot();
    for (std::size_t i = 0; i < CHILDREN; ++i)
        root->CreateChild(i % 2 ? "a" : "b", nullptr);
    EXPECT_EQ(Count(root->GetChildren()), CHILDREN);
    CXMLNode** nodes = document->GetNodes("r/a");
    ASSERT_EQ(Count(nodes), CHILDREN / 2);
    EXPECT_EQ(nodes[0], root->GetChildren()[1]);
    EXPECT_EQ(nodes[CHILDREN / 2 - 1], root->GetChildren()[CHILDREN - 1]);
    const std::string expected = "<r>" + Repeated("<b/><a/>", CHILDREN / 2) + "</r>";
    ExpectSame(SavedBody(*document), expected);
    const Document clone(document->Clone());
    document.reset();
    ExpectSame(SavedBody(*clone), expected);
}

TEST_F(Width, AMillionTextsAndBinaryNodesAreBuiltAndCopied) {
    for (std::size_t i = 0; i < CHILDREN / 2; ++i) {
        m_Root.CreateTextChild("t");
        m_Root.CreateBinChild();
    }
    const Document clone(m_Document->Clone());
    ExpectSame(SavedBody(*clone), "<r>" + Repeated("t<![CDATA[]]>", CHILDREN / 2) + "</r>");
}

TEST_F(Width, ManyChildrenGoInFrontOfTheLastAndAreDeletedFromBehind) {
    CXMLNode* last = m_Root.CreateChild("last", nullptr);
    for (int i = 0; i < 20000; ++i)
        m_Root.CreateChild("c", last);
    EXPECT_EQ(m_Root.GetChildren()[20000], last);
    for (int i = 19999; i >= 0; --i)
        m_Root.DeleteChild(m_Root.GetChildren()[i]);
    EXPECT_EQ(Children(m_Root), "last");
}

TEST_F(Width, TwentyThousandAttributesAreSetReadAndCopied) {
    std::string expected = "<r";
    for (int i = 0; i < ATTRIBUTES; ++i) {
        m_Root.SetAttribute(Name(i).c_str(), "old");
        expected += " " + Name(i) + "=\"" + std::to_string(i) + "\"";
    }
    expected += "/>";
    for (int i = 0; i < ATTRIBUTES; ++i)
        m_Root.SetAttribute(Name(i).c_str(), std::to_string(i).c_str());
    for (int i = 0; i < ATTRIBUTES; ++i)
        ASSERT_EQ(m_Root.GetAttributeValue(Name(i).c_str()), std::to_string(i));
    EXPECT_STREQ(m_Root.GetAttributeValue("absent"), "");
    EXPECT_EQ(Count(m_Root.GetAttributes()), static_cast<std::size_t>(ATTRIBUTES));
    ExpectSame(Body(), expected);
    const Document clone(m_Document->Clone());
    ExpectSame(SavedBody(*clone), expected);
    m_Root.CopyChild(clone->GetRoot(), nullptr);
    EXPECT_EQ(Count(m_Root.GetFirstChild()->GetAttributes()), static_cast<std::size_t>(ATTRIBUTES));
}

TEST_F(Width, TwentyThousandAttributesAreRemovedFromBothEnds) {
    for (int i = 0; i < ATTRIBUTES; ++i)
        m_Root.SetAttribute(Name(i).c_str(), "v");
    for (int i = 0; i < ATTRIBUTES / 2 - 1; ++i) {
        m_Root.SetAttribute(Name(i).c_str(), "");
        m_Root.SetAttribute(Name(ATTRIBUTES - 1 - i).c_str(), nullptr);
        if (i % 1000 != 0) continue;
        ASSERT_STREQ(m_Root.GetAttributes()[0]->GetName(), Name(i + 1).c_str());
        ASSERT_STREQ(m_Root.GetAttributeValue(Name(i).c_str()), "");
        ASSERT_STREQ(m_Root.GetAttributeValue(Name(i + 1).c_str()), "v");
    }
    EXPECT_EQ(Attributes(m_Root), "a9999=v a10000=v");
}

TEST_F(Width, AttributesAreFoundHoweverTheyWereChanged) {
    for (int i = 0; i < ATTRIBUTES; ++i)
        m_Root.SetAttribute(Name(i).c_str(), "v");
    CXMLAttribut** attributes = m_Root.GetAttributes();
    attributes[ATTRIBUTES - 1]->SetName("renamed");
    EXPECT_STREQ(m_Root.GetAttributeValue("renamed"), "v");
    EXPECT_STREQ(m_Root.GetAttributeValue(Name(ATTRIBUTES - 1).c_str()), "");

    *attributes[5000] = CXMLAttribut("assigned", "w");
    EXPECT_STREQ(m_Root.GetAttributeValue("assigned"), "w");
    EXPECT_STREQ(m_Root.GetAttributeValue("a5000"), "");

    // Two of one name: the first counts, wherever it got its name.
    attributes[100]->SetName("a200");
    attributes[100]->SetValue("first");
    EXPECT_STREQ(m_Root.GetAttributeValue("a200"), "first");
    m_Root.SetAttribute("a200", "");
    EXPECT_STREQ(m_Root.GetAttributeValue("a200"), "v");
    EXPECT_STREQ(m_Root.GetAttributes()[199]->GetName(), "a200");
    m_Root.SetAttribute("a200", "");
    EXPECT_STREQ(m_Root.GetAttributeValue("a200"), "");

    m_Root.GetAttributes()[300]->SetName("");
    EXPECT_STREQ(m_Root.GetAttributeValue(""), "v");
    EXPECT_EQ(Count(m_Root.GetAttributes()), static_cast<std::size_t>(ATTRIBUTES) - 2);
    m_Root.SetAttribute("a100", "new");
    EXPECT_STREQ(m_Root.GetAttributes()[ATTRIBUTES - 2]->GetName(), "a100");
}
