// GetNodes of elements, leaves and documents: what a path selects, and how long the answer holds.
#include "support/testing.h"

using namespace norvask_test;

namespace {

struct SRow {
    const char* path;
    const char* found;
};

// r holds p, q, p, a text and a binary node; each p holds s and a text; each has an attribute id.
class Query : public ::testing::Test {
protected:
    static std::string Found(CXMLNode** nodes) {
        std::string line;
        for (; *nodes; ++nodes) {
            if (!line.empty()) line += ' ';
            const char* id = (*nodes)->GetAttributeValue("id");
            line += *id ? id : Described(**nodes);
        }
        return line;
    }

    Document m_Document = Load(
        "<r id='r'><p id='p1'><s id='s1'/>one</p><q id='q'><s id='s2'/></q>"
        "<p id='p2'><s id='s3'><t id='t1'/></s>two<s id='s4'/></p>text<![CDATA[QUJD]]></r>");
    CXMLNode& m_Root = *m_Document->GetRoot();
    CXMLNode& m_First = *m_Root.GetChildren()[0];
};

}  // namespace

TEST_F(Query, SelectsFromANodeDownwardsInDocumentOrder) {
    const SRow rows[] = {
        {"p", "p1 p2"},
        {"q", "q"},
        {"p/s", "s1 s3 s4"},
        {"q/s", "s2"},
        {"p/s/t", "t1"},
        {"r", ""},
        {"r/p", ""},
        {"s", ""},
        {"p/p", ""},
        {"p/s/t/u", ""},
        {"x", ""},
        {"x/s", ""},
        {"p/x", ""},
        // A slash at the end changes nothing; an empty step selects texts and binary nodes.
        {"p/", "p1 p2"},
        {"p/s/", "s1 s3 s4"},
        {"/", "'text' [ABC]"},
        {"p//", "'one' 'two'"},
        {"//", ""},
        {"/p", ""},
        {"p//s", ""},
        // Names are names.
        {"P", ""},
        {" p", ""},
        {"p ", ""},
        {"p /s", ""},
        {"*", ""},
        {".", ""},
        {"./p", ""},
        {"..", ""},
        {"p/..", ""},
        {"p[1]", ""},
        {"@id", ""},
        {"p|q", ""},
        {"", ""},
        {nullptr, ""},
    };
    for (const SRow& row : rows) {
        CXMLNode** nodes = m_Root.GetNodes(row.path);
        ASSERT_NE(nodes, nullptr);
        EXPECT_EQ(Found(nodes), row.found) << (row.path ? row.path : "NULL");
    }
}

TEST_F(Query, SelectsFromADocumentWithTheRootAsTheFirstStep) {
    const SRow rows[] = {
        {"r", "r"},
        {"r/", "r"},
        {"r/p", "p1 p2"},
        {"r/p/", "p1 p2"},
        {"r/p/s", "s1 s3 s4"},
        {"r/p/s/t", "t1"},
        {"r//", "'text' [ABC]"},
        {"r/x", ""},
        {"p", ""},
        {"p/s", ""},
        {"x/p", ""},
        {"/", ""},
        {"/r", ""},
        {"//r", ""},
        {"R", ""},
        {"r ", ""},
        {"*", ""},
        {"", ""},
        {nullptr, ""},
    };
    for (const SRow& row : rows) {
        CXMLNode** nodes = m_Document->GetNodes(row.path);
        ASSERT_NE(nodes, nullptr);
        EXPECT_EQ(Found(nodes), row.found) << (row.path ? row.path : "NULL");
    }
}

TEST_F(Query, OfADocumentWithoutARootIsEmpty) {
    const Document empty = NewDocument();
    for (const char* path : {"r", "r/p", "/", "", static_cast<const char*>(nullptr)}) {
        ASSERT_NE(empty->GetNodes(path), nullptr);
        EXPECT_EQ(empty->GetNodes(path)[0], nullptr);
    }
}

TEST_F(Query, OfALeafIsEmptyForEveryPath) {
    CXMLNode* text = m_Root.GetChildren()[3];
    CXMLNode* binary = m_Root.GetChildren()[4];
    ASSERT_EQ(text->GetNodeType(), CXMLNode::NODE_TEXT);
    ASSERT_EQ(binary->GetNodeType(), CXMLNode::NODE_BINARY);
    for (CXMLNode* leaf : {text, binary}) {
        for (const char* path : {"p", "/", "", "p/s", static_cast<const char*>(nullptr)}) {
            ASSERT_NE(leaf->GetNodes(path), nullptr);
            EXPECT_EQ(leaf->GetNodes(path)[0], nullptr);
        }
    }
}

TEST_F(Query, AnswersTheNodesThemselves) {
    CXMLNode** nodes = m_Document->GetNodes("r");
    EXPECT_EQ(nodes[0], &m_Root);
    nodes = m_Root.GetNodes("p");
    EXPECT_EQ(nodes[0], m_Root.GetChildren()[0]);
    EXPECT_EQ(nodes[1], m_Root.GetChildren()[2]);
    EXPECT_EQ(nodes[2], nullptr);
}

TEST_F(Query, EndsItsAnswerWithNullHoweverManyNodesThereAre) {
    for (std::size_t count = 1; count <= 70; ++count) {
        m_First.CreateChild("n", nullptr);
        CXMLNode** nodes = m_Root.GetNodes("p/n");
        ASSERT_EQ(Count(nodes), count);
        for (std::size_t i = 0; i < count; ++i)
            ASSERT_EQ(nodes[i], m_First.GetChildren()[i + 2]) << i << " of " << count;
    }
}

TEST_F(Query, SeesEveryChangeOfTheTree) {
    EXPECT_EQ(Found(m_Root.GetNodes("p/s")), "s1 s3 s4");
    m_First.SetTagName("q");
    EXPECT_EQ(Found(m_Root.GetNodes("p/s")), "s3 s4");
    EXPECT_EQ(Found(m_Root.GetNodes("q/s")), "s1 s2");
    m_Root.DeleteChild(&m_First);
    EXPECT_EQ(Found(m_Root.GetNodes("q/s")), "s2");
    m_Root.CreateChild("q", m_Root.GetFirstChild())->CreateChild("s", nullptr);
    EXPECT_EQ(Found(m_Root.GetNodes("q/s")), "s s2");
    m_Root.SetTagName("root");
    EXPECT_EQ(Found(m_Document->GetNodes("r/q")), "");
    EXPECT_EQ(Found(m_Document->GetNodes("root/q")), "q q");
    m_Document->CreateRoot("new");
    EXPECT_EQ(Found(m_Document->GetNodes("root")), "");
    EXPECT_EQ(Found(m_Document->GetNodes("new")), "new");
}

TEST_F(Query, ComparesNamesByteForByte) {
    m_Root.CreateChild("\xC3\xA9t\xC3\xA9", nullptr)->CreateChild("n\xFF", nullptr);
    EXPECT_EQ(Count(m_Root.GetNodes("\xC3\xA9t\xC3\xA9/n\xFF")), 1u);
    EXPECT_EQ(Count(m_Root.GetNodes("\xC3\xA9t\xC3\xA9/n\xFE")), 0u);
    EXPECT_EQ(Count(m_Root.GetNodes("\xC3\x89t\xC3\x89")), 0u);
    m_Root.CreateChild("x:p", nullptr);
    EXPECT_EQ(Count(m_Root.GetNodes("x:p")), 1u);
    EXPECT_EQ(Count(m_Root.GetNodes("p")), 2u);
}

TEST_F(Query, ReusesTheArrayOfTheNodeThatIsAsked) {
    CXMLNode** large = m_Root.GetNodes("p/s");
    EXPECT_EQ(Found(large), "s1 s3 s4");
    CXMLNode** small = m_Root.GetNodes("q");
    EXPECT_EQ(small, large);
    EXPECT_EQ(Found(large), "q");
    EXPECT_EQ(m_Root.GetNodes(nullptr), large);
    EXPECT_EQ(Found(large), "");
}

TEST_F(Query, LeavesTheAnswersOfOtherNodesAlone) {
    CXMLNode** ofRoot = m_Root.GetNodes("p");
    CXMLNode** ofFirst = m_First.GetNodes("s");
    CXMLNode** ofDocument = m_Document->GetNodes("r");
    EXPECT_EQ(Found(m_Root.GetChildren()[1]->GetNodes("s")), "s2");
    EXPECT_EQ(Found(ofRoot), "p1 p2");
    EXPECT_EQ(Found(ofFirst), "s1");
    EXPECT_EQ(Found(ofDocument), "r");
}

TEST_F(Query, RerunsTheQueryOfEachNodeThatThePathLeadsThrough) {
    m_First.CreateChild("other", nullptr)->SetAttribute("id", "other");
    CXMLNode** nodes = m_First.GetNodes("other");
    EXPECT_EQ(Found(nodes), "other");
    m_Root.GetNodes("p");
    EXPECT_EQ(Found(nodes), "other");
    m_Root.GetNodes("q/s");
    EXPECT_EQ(Found(nodes), "other");
    m_Root.GetNodes("p/s");
    EXPECT_EQ(Found(nodes), "s1");
    m_Root.GetNodes("p/x");
    EXPECT_EQ(Found(nodes), "");
}

TEST_F(Query, OfADocumentFillsTheArrayOfTheRootForTwoStepsOrMore) {
    m_Root.GetNodes("p");
    CXMLNode** ofRoot = m_Root.GetNodes("q");
    EXPECT_EQ(m_Document->GetNodes("r/p"), ofRoot);
    EXPECT_EQ(Found(ofRoot), "p1 p2");

    CXMLNode** ofDocument = m_Document->GetNodes("r");
    EXPECT_NE(ofDocument, ofRoot);
    EXPECT_EQ(Found(ofRoot), "p1 p2");
    EXPECT_EQ(m_Document->GetNodes("x/y"), ofDocument);
    EXPECT_EQ(Found(ofDocument), "");
    EXPECT_EQ(Found(ofRoot), "p1 p2");
    EXPECT_EQ(m_Document->GetNodes(nullptr), ofDocument);
    EXPECT_EQ(m_Document->GetNodes("r"), ofDocument);
    EXPECT_EQ(Found(ofDocument), "r");
}

TEST_F(Query, FindsNodesAfterThoseOfTheLastAnswerWereDeleted) {
    CXMLNode** nodes = m_Root.GetNodes("p/s");
    for (CXMLNode* node : std::vector<CXMLNode*>(nodes, nodes + Count(nodes)))
        node->GetParentNode()->DeleteChild(node);
    EXPECT_EQ(Found(m_Root.GetNodes("p/s")), "");
    EXPECT_EQ(Found(m_Root.GetNodes("p")), "p1 p2");
}

TEST_F(Query, TakesStepsOfEveryLength) {
    for (const std::size_t length : {1u, 15u, 16u, 17u, 255u, 256u, 1000u, 100000u}) {
        const std::string name(length, 'n');
        m_Root.CreateChild(name.c_str(), nullptr)->CreateChild(name.c_str(), nullptr);
        EXPECT_EQ(Count(m_Root.GetNodes(name.c_str())), 1u) << "length " << length;
        EXPECT_EQ(Count(m_Root.GetNodes((name + "/" + name).c_str())), 1u) << "length " << length;
        EXPECT_EQ(Count(m_Root.GetNodes((name + "n").c_str())), 0u) << "length " << length;
    }
}

TEST_F(Query, DoesNotKeepThePathItWasGiven) {
    std::string path = "p/s";
    CXMLNode** nodes = m_Root.GetNodes(path.c_str());
    path.assign(path.size(), 'x');
    EXPECT_EQ(Found(nodes), "s1 s3 s4");
}

TEST_F(Query, MayBeAskedForAgainWhileItsAnswerIsRead) {
    std::string found;
    for (CXMLNode** p = m_Root.GetNodes("p"); *p; ++p) {
        for (CXMLNode** s = (*p)->GetNodes("s"); *s; ++s)
            found += std::string((*s)->GetAttributeValue("id")) + " ";
    }
    EXPECT_EQ(found, "s1 s3 s4 ");
}
