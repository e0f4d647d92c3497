// Overrides, and destructors of derived classes, that edit the tree while the library walks over
// it.
#include <norvask/norvask.h>

#include <memory>
#include <string>

#include "support/derived.h"
#include "support/tree.h"
#include "support/vocabulary.h"

using namespace norvask;
using namespace norvask_test;

namespace {

// The name that an override takes from a node may be the last of its kind, and its place in memory
// that of the next name.
class CRenamesWhenFound : public CElementProbe {
public:
    CRenamesWhenFound() : CElementProbe("r") {}
    void AddToQueryResult(CXMLNode* node) override {
        if (!m_bRenamed) {
            m_bRenamed = true;
            GetChildren()[0]->SetTagName("b");
            GetChildren()[1]->SetTagName("c");
        }
        CElementProbe::AddToQueryResult(node);
    }

private:
    bool m_bRenamed = false;
};

class CRenamesWhenAsked : public CElementProbe {
public:
    CRenamesWhenAsked() : CElementProbe("s") {}
    CXMLNode** GetChildren() override {
        CXMLNode** children = CElementProbe::GetChildren();
        if (m_nAsked++ == 1) {
            children[0]->SetTagName("x");
            children[1]->SetTagName("y");
        }
        return children;
    }

private:
    int m_nAsked = 0;
};

// Shares a node above it when it is destroyed itself.
class CSharesOnTheWay : public CElementProbe {
public:
    CSharesOnTheWay(CXMLNode* above, std::unique_ptr<CElementProbe>& copy)
        : CElementProbe("k"), m_pAbove(above), m_Copy(copy) {}
    ~CSharesOnTheWay() override { m_Copy = std::make_unique<CElementProbe>(*m_pAbove); }

private:
    CXMLNode* m_pAbove;
    std::unique_ptr<CElementProbe>& m_Copy;
};

}  // namespace

TEST(OverrideEdits, AQueryDoesNotTakeANewNameForTheOneItLooksFor) {
    CRenamesWhenFound top;
    top.CreateChild("a", nullptr);
    top.CreateChild("z", nullptr);
    CXMLNode** found = top.GetNodes("a");
    ASSERT_EQ(Count(found), 1U);
    EXPECT_STREQ(found[0]->GetTagName(), "b");
}

TEST(OverrideEdits, ACopyHasTheNamesThatItsSourceHasThen) {
    CRenamesWhenAsked source;
    source.CreateChild("a", nullptr);
    source.CreateChild("z", nullptr);
    const Document document = NewDocumentWithRoot("root");
    document->GetRoot()->CopyChild(&source, nullptr);
    EXPECT_EQ(Saved(document), DECLARATION + "<root><s><a/><y/></s></root>");
}

TEST(OverrideEdits, WhatIsSharedOnTheWayHasNoParentThatWasDestroyed) {
    std::unique_ptr<CElementProbe> copy;
    const Document document = NewDocumentWithRoot("root");
    CXMLNode* above = document->GetRoot()->CreateChild("p", nullptr);
    CXMLNode* node = above->CreateChild("n", nullptr);
    node->CreateChild("place", nullptr);
    node->GetChildren()[0] = new CSharesOnTheWay(node, copy);
    document->GetRoot()->DeleteChild(above);
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy->GetParentNode(), nullptr);
    EXPECT_STREQ(copy->GetTagName(), "n");
}

// A pointer to the children is to be got anew after each; one that is not goes on showing the
// first.
TEST(OverrideEdits, DeletingThroughAnArrayThatIsHeldComesToAnEnd) {
    for (const int count : {1, 2, 63, 64, 65, 200, 5000}) {
        const Document document = NewDocumentWithRoot("r");
        CXMLNode* root = document->GetRoot();
        for (int i = 0; i < count; ++i)
            root->CreateChild("c", nullptr);
        CXMLNode** children = root->GetChildren();
        int calls = 0;
        for (; *children && calls <= count; ++calls)
            root->DeleteChild(*children);
        EXPECT_EQ(calls, count);
        EXPECT_EQ(root->GetFirstChild(), nullptr);
    }
}

// Attributes that were assigned to no longer lead to their element by their names.
TEST(OverrideEdits, AssignedAttributesOfALongElementAreFoundByTheirNewNames) {
    const Document document = NewDocumentWithRoot("r");
    CXMLNode* root = document->GetRoot();
    CXMLAttribut other("other", "value");
    for (int i = 0; i < 300; ++i)
        root->SetAttribute(("a" + std::to_string(i)).c_str(), "v");
    EXPECT_STREQ(root->GetAttributeValue("a299"), "v");
    for (int i = 0; i < 300; ++i)
        *root->GetAttributes()[i] = other;
    EXPECT_STREQ(root->GetAttributeValue("a299"), "");
    for (int i = 299; i >= 0; --i) {
        const std::string name = "b" + std::to_string(i);
        root->GetAttributes()[i]->SetName(name.c_str());
        root->GetAttributes()[i]->SetValue(name.c_str());
        ASSERT_EQ(root->GetAttributeValue(name.c_str()), name);
    }
    for (int i = 0; i < 300; ++i) {
        const std::string name = "b" + std::to_string(i);
        ASSERT_EQ(root->GetAttributeValue(name.c_str()), name);
        root->SetAttribute(name.c_str(), nullptr);
        ASSERT_STREQ(root->GetAttributeValue(name.c_str()), "");
    }
    EXPECT_EQ(root->GetAttributes()[0], nullptr);
}
