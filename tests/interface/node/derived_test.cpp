// Classes derived from the tree classes: they work by themselves, and what is virtual is called
// virtually. Copying into and out of derived nodes is in derived_copy_test.cpp.
#include <cstdint>
#include <new>

#include "support/derived.h"
#include "support/sanitizers.h"
#include "support/testing.h"

using namespace norvask_test;

namespace {

// Logs the growth of the query result and what is added to it.
class CQueryProbe : public CElementProbe {
public:
    using CElementProbe::CElementProbe;
    void IncQueryResult() override {
        ++m_nGrown;
        CElementProbe::IncQueryResult();
    }
    void AddToQueryResult(CXMLNode* node) override {
        m_Added.push_back(node);
        CElementProbe::AddToQueryResult(node);
    }
    int m_nGrown = 0;
    std::vector<CXMLNode*> m_Added;
};

// Finds elements with the attribute "wanted" only.
class CFilterProbe : public CElementProbe {
public:
    using CElementProbe::CElementProbe;
    void AddToQueryResult(CXMLNode* node) override {
        if (*node->GetAttributeValue("wanted")) CElementProbe::AddToQueryResult(node);
    }
};

class CNestedProbe : public CElementProbe {
public:
    using CElementProbe::CElementProbe;
    CXMLNode** GetNodes(const char* path) override {
        m_Paths.push_back(path ? path : "NULL");
        return CElementProbe::GetNodes(path);
    }
    const char* GetTagName() override { return m_pAlias ? m_pAlias : CElementProbe::GetTagName(); }
    Log m_Paths;
    const char* m_pAlias = nullptr;
};

class CSavingProbe : public CElementProbe {
public:
    using CElementProbe::CElementProbe;
    void Save(std::ostream& out, bool format, char* indent) override {
        out << "{" << (format ? "format" : "plain") << "," << indent << "}";
    }
};

class CSavingText : public CTextProbe {
public:
    using CTextProbe::CTextProbe;
    void Save(std::ostream& out, bool, char*) override { out << "{text}"; }
};

class CRecordingText : public CTextProbe {
public:
    using CTextProbe::CTextProbe;
    void SetText(const char* text) override {
        m_Set.push_back(text ? text : "NULL");
        CTextProbe::SetText(text);
    }
    const char* GetText() override {
        ++m_nGet;
        return CTextProbe::GetText();
    }
    Log m_Set;
    int m_nGet = 0;
};

class CCounted : public CElementProbe {
public:
    CCounted(const char* name, int& ended) : CElementProbe(name), m_nEnded(ended) {}
    ~CCounted() override { ++m_nEnded; }

private:
    int& m_nEnded;
};

class CRecordingBinary : public CBinaryProbe {
public:
    using CBinaryProbe::CBinaryProbe;
    void DeleteData() override { m_Deleted.push_back(Bytes(*this)); }
    Log m_Deleted;
};

}  // namespace

TEST(DerivedNode, WorksAsTheTopOfATree) {
    CElementProbe top("top");
    EXPECT_STREQ(top.GetTagName(), "top");
    EXPECT_EQ(top.GetNodeType(), CXMLNode::NODE_ELEMENT);
    EXPECT_EQ(top.GetParentNode(), nullptr);
    EXPECT_EQ(top.GetFirstChild(), nullptr);
    EXPECT_EQ(top.GetAttributes()[0], nullptr);
    EXPECT_STREQ(top.GetTextChildValue(), "");
    CXMLNode* child = top.CreateChild("c", nullptr);
    EXPECT_EQ(child->GetParentNode(), &top);
    top.CreateChild("b", child)->SetTextChildValue("text");
    SetBytes(*top.CreateBinChild(), "ABC");
    top.SetAttribute("a", "1");
    top.SetTagName("renamed");
    EXPECT_EQ(Children(top), "b c [ABC]");
    EXPECT_EQ(Listed(top.GetNodes("b")), "b");
    EXPECT_EQ(SavedNode(top), "<renamed a=\"1\"><b>text</b><c/><![CDATA[QUJD\n]]></renamed>");
    top.DeleteChild(child);
    EXPECT_EQ(Children(top), "b [ABC]");
}

TEST(DerivedNode, TakesAnyNameAndRemembersAnyParent) {
    CElementProbe parent("parent");
    for (const char* name : {"1a", "", "a b"}) {
        CElementProbe probe(name, &parent);
        EXPECT_STREQ(probe.GetTagName(), name);
        EXPECT_EQ(probe.GetParentNode(), &parent);
        EXPECT_INVALID_NAME(SavedNode(probe), name);
    }
    CElementProbe unnamed(nullptr);
    EXPECT_STREQ(unnamed.GetTagName(), "");
    EXPECT_EQ(parent.GetFirstChild(), nullptr);
}

TEST(DerivedNode, SavesItselfWithTheIndentationItIsGiven) {
    CElementProbe probe("p");
    EXPECT_EQ(SavedNode(probe, true, "\t\t"), "<p/>");
    probe.CreateChild("c", nullptr)->CreateChild("d", nullptr);
    EXPECT_EQ(SavedNode(probe, true, "\t\t"),
              "<p>\r\n\t\t\t<c>\r\n\t\t\t\t<d/>\r\n\t\t\t</c>\r\n\t\t</p>");
    EXPECT_EQ(SavedNode(probe, true, " <"),
              "<p>\r\n &#x3c;\t<c>\r\n &#x3c;\t\t<d/>\r\n &#x3c;\t</c>\r\n &#x3c;</p>");
    EXPECT_EQ(SavedNode(probe, false, "\t\t"), "<p><c><d/></c></p>");
    char indent[] = "\t\t";
    std::ostringstream out;
    probe.Save(out, true, indent);
    EXPECT_STREQ(indent, "\t\t");
}

TEST(DerivedNode, IsAskedForEveryNodeThatAQueryFinds) {
    CQueryProbe probe("p");
    for (int i = 0; i < 5; ++i)
        probe.CreateChild("c", nullptr)->CreateChild("d", nullptr);
    CXMLNode** nodes = probe.GetNodes("c/d");
    ASSERT_EQ(probe.m_Added.size(), 5u);
    for (std::size_t i = 0; i < 5; ++i) {
        EXPECT_EQ(probe.m_Added[i], probe.GetChildren()[i]->GetFirstChild());
        EXPECT_EQ(nodes[i], probe.m_Added[i]);
    }
    EXPECT_EQ(nodes[5], nullptr);
    probe.m_Added.clear();
    probe.GetNodes("x");
    probe.GetNodes(nullptr);
    EXPECT_TRUE(probe.m_Added.empty());
}

TEST(DerivedNode, IsAskedToDoubleItsQueryResult) {
    // Two slots at first, the terminator among them: the second, fourth, eighth result grows it.
    const struct {
        int results, grown;
    } rows[] = {{0, 0}, {1, 0}, {2, 1}, {3, 1}, {4, 2}, {7, 2}, {8, 3}, {15, 3}, {16, 4}};
    for (const auto& row : rows) {
        CQueryProbe probe("p");
        for (int i = 0; i < row.results; ++i)
            probe.CreateChild("c", nullptr);
        EXPECT_EQ(Count(probe.GetNodes("c")), static_cast<std::size_t>(row.results));
        EXPECT_EQ(probe.m_nGrown, row.grown) << row.results << " results";
        probe.GetNodes("c");
        EXPECT_EQ(probe.m_nGrown, row.grown) << row.results << " results, asked again";
    }
}

TEST(DerivedNode, MayLeaveNodesOutOfItsQueryResult) {
    CFilterProbe probe("p");
    for (int i = 0; i < 6; ++i) {
        CXMLNode* child = probe.CreateChild("c", nullptr);
        if (i % 2) child->SetAttribute("wanted", "yes");
    }
    CXMLNode** nodes = probe.GetNodes("c");
    ASSERT_EQ(Count(nodes), 3u);
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_EQ(nodes[i], probe.GetChildren()[2 * i + 1]);
}

TEST(DerivedNode, MayAddToItsQueryResultByItself) {
    CElementProbe probe("p");
    CElementProbe other("other");
    for (int i = 0; i < 20; ++i)
        probe.AddToQueryResult(&other);
    probe.CreateChild("c", nullptr);
    EXPECT_EQ(Listed(probe.GetNodes("c")), "c");
    probe.AddToQueryResult(&other);
    EXPECT_EQ(Listed(probe.GetNodes(nullptr)), "");

    CTextProbe text("t");
    for (int i = 0; i < 20; ++i)
        text.AddToQueryResult(&other);
    EXPECT_EQ(text.GetNodes("p")[0], nullptr);
}

TEST(DerivedNode, GrowsItsQueryResultWhenItAsks) {
    CElementProbe probe("p");
    for (int i = 0; i < 3; ++i)
        probe.CreateChild("c", nullptr);
    EXPECT_EQ(Listed(probe.GetNodes("c")), "c c c");
    for (int i = 0; i < 4; ++i)
        probe.IncQueryResult();
    EXPECT_EQ(Listed(probe.GetNodes("c")), "c c c");
}

TEST(DerivedNode, IsAskedForItsNameAndForTheRestOfThePath) {
    const Document document = Load("<r><p/><p><s/></p></r>");
    CXMLNode* root = document->GetRoot();
    CNestedProbe probe("p", root);
    probe.CreateChild("s", nullptr);
    probe.CreateChild("s", nullptr);
    const CSubstitute substitute(*root, 0, probe);

    CXMLNode** nodes = root->GetNodes("p/s");
    ASSERT_EQ(Count(nodes), 3u);
    EXPECT_EQ(nodes[0], probe.GetChildren()[0]);
    EXPECT_EQ(nodes[1], probe.GetChildren()[1]);
    EXPECT_EQ(nodes[2], root->GetChildren()[1]->GetFirstChild());
    EXPECT_EQ(Joined(probe.m_Paths), "s\n");
    root->GetNodes("p/s/t/u/");
    EXPECT_EQ(Joined(probe.m_Paths), "s\ns/t/u/\n");
    EXPECT_EQ(Count(document->GetNodes("r/p")), 2u);
    EXPECT_EQ(probe.m_Paths.size(), 2u);

    probe.m_pAlias = "alias";
    EXPECT_EQ(Count(root->GetNodes("p")), 1u);
    EXPECT_EQ(Count(root->GetNodes("alias")), 1u);
    EXPECT_EQ(Count(document->GetNodes("r/alias/s")), 2u);
}

TEST(DerivedNode, IsAskedToSaveItselfBelowAnElement) {
    const Document document = Load("<r><a><x/></a><b/></r>");
    CXMLNode* root = document->GetRoot();
    CSavingProbe probe("ignored");
    const CSubstitute substitute(*root->GetFirstChild(), 0, probe);
    EXPECT_EQ(SavedBody(*document), "<r><a>{plain,\t\t}</a><b/></r>");
    EXPECT_EQ(Saved(document, true),
              std::string(DECLARATION) +
                  "\r\n<r>\r\n\t<a>\r\n\t\t{format,\t\t}\r\n\t</a>\r\n\t<b/>\r\n</r>");
}

TEST(DerivedNode, IsAskedToSaveItselfAsAText) {
    const Document document = Load("<r><a>x</a></r>");
    CSavingText probe("ignored");
    const CSubstitute substitute(*document->GetRoot()->GetFirstChild(), 0, probe);
    EXPECT_EQ(SavedBody(*document), "<r><a>{text}</a></r>");
    EXPECT_EQ(Saved(document, true), DECLARATION + "\r\n<r>\r\n\t<a>{text}</a>\r\n</r>");
}

TEST(DerivedNode, IsEndedThroughItsOwnDestructor) {
    int ended = 0;
    Document document = Load("<r><a/><b><c/></b><d/></r>");
    CXMLNode* root = document->GetRoot();
    CXMLNode* probe = new CCounted("probe", ended);
    probe->CreateChild("below", nullptr);
    root->GetChildren()[0] = probe;
    root->GetChildren()[1]->GetChildren()[0] = new CCounted("second", ended);
    EXPECT_EQ(SavedBody(*document), "<r><probe><below/></probe><b><second/></b><d/></r>");
    root->DeleteChild(probe);
    EXPECT_EQ(ended, 1);
    EXPECT_EQ(SavedBody(*document), "<r><b><second/></b><d/></r>");
    document.reset();
    EXPECT_EQ(ended, 2);
}

TEST(DerivedText, IsAskedToStoreEveryTypedValue) {
    CRecordingText text("first");
    EXPECT_TRUE(text.m_Set.empty());
    text.SetDateTimeText(2024, 5, 17, 1, 2, 3);
    text.SetDateText(-1, 5, 17);
    text.SetTimeText(4, 5, 6);
    text.SetDoubleText(0.5);
    text.SetLongText(-7);
    text.SetBoolText(true, false);
    const unsigned char bytes[] = {'A', 'B', 'C'};
    text.SetBinaryText(bytes, 3);
    EXPECT_EQ(Joined(text.m_Set),
              "2024-05-17T01:02:03\n--05-17\n04:05:06\n0.5\n-7\ntrue\nQUJD\n\n");
    EXPECT_STREQ(text.GetText(), "QUJD\n");
    text.m_Set.clear();
    EXPECT_NO_CONVERSION(text.SetTimeText(24, 0, 0));
    EXPECT_TRUE(text.m_Set.empty());
    text.SetBinaryText(nullptr, 0);
    EXPECT_STREQ(text.GetText(), "");
    EXPECT_EQ(text.m_Set.size(), 1u);
}

TEST(DerivedText, IsAskedThroughTheElementAboveIt) {
    const Document document = Load("<r>x</r>");
    CXMLNode* root = document->GetRoot();
    CRecordingText text("own");
    const CSubstitute substitute(*root, 0, text);
    EXPECT_STREQ(root->GetTextChildValue(), "own");
    EXPECT_EQ(text.m_nGet, 1);
    root->SetTextChildValue("new");
    EXPECT_EQ(Joined(text.m_Set), "new\n");
    EXPECT_STREQ(root->GetTextChildValue(), "new");
}

TEST(DerivedText, StandsAloneAndSavesItself) {
    CTextProbe text("a<b");
    EXPECT_STREQ(text.GetText(), "a<b");
    EXPECT_EQ(text.GetParentNode(), nullptr);
    EXPECT_EQ(SavedNode(text, true, "\t"), "a&#x3c;b");
    CTextProbe empty(nullptr);
    EXPECT_STREQ(empty.GetText(), "");
    EXPECT_EQ(SavedNode(empty), "");
}

TEST(DerivedBinary, IsToldBeforeItsBlockGoes) {
    CRecordingBinary binary;
    EXPECT_EQ(SavedNode(binary), "<![CDATA[]]>");
    SetBytes(binary, "one");
    SetBytes(binary, "two");
    EXPECT_EQ(Bytes(binary), "two");
    binary.SetData(nullptr, 5);
    EXPECT_EQ(Bytes(binary), "");
    EXPECT_EQ(Joined(binary.m_Deleted), "\none\ntwo\n");
    SetBytes(binary, "ABC");
    EXPECT_EQ(SavedNode(binary, true, "\t"), "<![CDATA[QUJD\n]]>");
}

TEST(DerivedBinary, IsToldAlsoWhenThereIsNoMemoryForTheNewBlock) {
    if (IS_SANITIZED) GTEST_SKIP() << "the sanitizer ends the program where new would throw";
    CRecordingBinary binary;
    SetBytes(binary, "old");
    binary.m_Deleted.clear();
    const unsigned char byte = 'A';
    EXPECT_THROW(binary.SetData(&byte, SIZE_MAX / 2), std::bad_alloc);
    EXPECT_EQ(Joined(binary.m_Deleted), "old\n");
    EXPECT_EQ(Bytes(binary), "");
}
