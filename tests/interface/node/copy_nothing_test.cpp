// Copying below an object of a derived class whose operations make no child: such a child is left
// out, with what is below it, and the rest is copied.
#include <norvask/norvask.h>

#include <string>

#include "support/derived.h"
#include "support/tree.h"
#include "support/vocabulary.h"

using namespace norvask;
using namespace norvask_test;

namespace {

// Makes no children of the kinds named.
class CRefusing : public CElementProbe {
public:
    CRefusing(bool elements, bool texts, bool blocks)
        : CElementProbe("p"), m_bElements(elements), m_bTexts(texts), m_bBlocks(blocks) {}

    CXMLNode* CreateChild(const char* name, CXMLNode* before) override {
        return m_bElements ? CElementProbe::CreateChild(name, before) : nullptr;
    }
    CXMLTextNode* CreateTextChild(const char* text) override {
        return m_bTexts ? CElementProbe::CreateTextChild(text) : nullptr;
    }
    CXMLBinNode* CreateBinChild() override {
        return m_bBlocks ? CElementProbe::CreateBinChild() : nullptr;
    }

private:
    const bool m_bElements;
    const bool m_bTexts;
    const bool m_bBlocks;
};

// Returns another element in place of every child that it should make.
class CSending : public CElementProbe {
public:
    explicit CSending(CXMLNode& to) : CElementProbe("from"), m_To(to) {}
    CXMLNode* CreateChild(const char*, CXMLNode*) override { return &m_To; }

private:
    CXMLNode& m_To;
};

class CopyNothing : public ::testing::Test {
protected:
    Document m_Document = Load("<s>text<c><d/></c><![CDATA[QUJD]]>tail<e/></s>");
    CXMLNode& m_Source = *m_Document->GetRoot();
    CXMLNode* const m_pText = m_Source.GetChildren()[0];
    CXMLNode* const m_pElement = m_Source.GetChildren()[1];
    CXMLNode* const m_pBlock = m_Source.GetChildren()[2];
};

}  // namespace

TEST_F(CopyNothing, ReturnsNullWhereNoBinaryNodeIsMade) {
    CRefusing target(true, true, false);
    EXPECT_EQ(target.CopyChild(m_pBlock, nullptr), nullptr);
    EXPECT_EQ(Children(target), "");
    EXPECT_NE(target.CopyChild(m_pText, nullptr), nullptr);
    EXPECT_NE(target.CopyChild(m_pElement, nullptr), nullptr);
    EXPECT_EQ(Children(target), "'text' c");
}

TEST_F(CopyNothing, ReturnsNullWhereNoTextIsMade) {
    CRefusing target(true, false, true);
    EXPECT_EQ(target.CopyChild(m_pText, nullptr), nullptr);
    EXPECT_EQ(Children(target), "");
    EXPECT_NE(target.CopyChild(m_pBlock, nullptr), nullptr);
    EXPECT_EQ(Children(target), "[ABC]");
}

TEST_F(CopyNothing, ReturnsNullWhereNoElementIsMade) {
    CRefusing target(false, true, true);
    EXPECT_EQ(target.CopyChild(m_pElement, nullptr), nullptr);
    EXPECT_EQ(Children(target), "");
    EXPECT_NE(target.CopyChild(m_pBlock, nullptr), nullptr);
    EXPECT_EQ(Children(target), "[ABC]");
}

TEST_F(CopyNothing, LeavesOutWhatIsNotMadeAndCopiesTheRest) {
    const struct {
        bool elements, texts, blocks;
        const char* children;
    } rows[] = {
        {true, true, false, "'text' c 'tail' e"},
        {true, false, true, "c [ABC] e"},
        {false, true, true, "'text' [ABC] 'tail'"},
        {true, false, false, "c e"},
        {false, true, false, "'text' 'tail'"},
        {false, false, true, "[ABC]"},
        {false, false, false, ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.children);
        CRefusing target(row.elements, row.texts, row.blocks);
        CSending top(target);
        EXPECT_EQ(top.CopyChild(&m_Source, nullptr), &target);
        EXPECT_EQ(Children(target), row.children);
    }
}
