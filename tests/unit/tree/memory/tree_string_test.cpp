// Strings of trees, strings that outlive them, and strings outside of any.
#include "tree/memory/tree_string.h"

#include <gtest/gtest.h>

#include <string>

#include "tree/memory/tree.h"

namespace norvask {
namespace {

class TreeString : public ::testing::Test {
protected:
    void SetUp() override { m_pTree = CTree::Create(); }
    void TearDown() override { m_pTree->Release(); }
    CTreeString New(const std::string& text) {
        return m_pTree->Strings().New(JudgeText(text.c_str()));
    }

    CTree* m_pTree = nullptr;
};

TEST_F(TreeString, KnowsItsPageItsLengthAndWhatIsKnownOfIt) {
    for (const std::size_t length : {1U, 30U, 600U, 1022U, 1023U, 1024U, 100000U}) {
        const std::string text(length, 'v');
        const CTreeString copy = New(text);
        EXPECT_EQ(copy.Text(), text);
        EXPECT_EQ(copy.Length(), length);
        EXPECT_EQ(copy.Known().length, length);
        EXPECT_EQ(copy.Known().known, KNOWN_UTF8 | KNOWN_ASCII);
        EXPECT_EQ(&copy.Tree(), m_pTree);
        FreeTreeString(copy);
    }
    EXPECT_EQ(New("\xC3\xA9").Known().known, KNOWN_UTF8);
    EXPECT_EQ(New("\xFF").Known().known, 0U);
}

TEST_F(TreeString, WhatIsShownOutsideIsNotUsedAgain) {
    const CTreeString text = New("value");
    RetainString(text);
    FreeTreeString(text);
    EXPECT_NE(New("other"), text);
    EXPECT_STREQ(text.Text(), "value");
    ReleaseString(text);
}

TEST_F(TreeString, WhatWasShownOutsideServesAgainWhenItIsNot) {
    const std::string value(500, 'v');
    const CTreeString shown = New(value);
    RetainString(shown);
    const CTreeString first = New(value);
    RetainString(first);
    FreeTreeString(first);
    ReleaseString(shown);
    ReleaseString(first);
    bool isUsedAgain = false;
    for (int i = 0; i < 200; ++i) {
        // Each lies idle for a while.
        const CTreeString next = New(value);
        isUsedAgain = isUsedAgain || next == first;
        RetainString(next);
        FreeTreeString(next);
        ReleaseString(next);
    }
    EXPECT_TRUE(isUsedAgain);
}

TEST(OuterString, OutlivesItsTree) {
    for (const std::size_t length : {5U, 100000U}) {
        CTree* const tree = CTree::Create();
        const std::string text(length, 'v');
        const CTreeString shown = tree->Strings().New(JudgeText(text.c_str()));
        RetainString(shown);
        RetainString(shown);
        tree->Release();
        EXPECT_EQ(shown.Text(), text);
        ReleaseString(shown);
        EXPECT_EQ(shown.Text(), text);
        ReleaseString(shown);
    }
}

TEST(OuterString, AnEmptyOneIsTheConstant) {
    EXPECT_EQ(NewOuterString(Unjudged(nullptr)), CTreeString());
    EXPECT_EQ(NewOuterString(Unjudged("")), CTreeString());
    RetainString(CTreeString());
    ReleaseString(CTreeString());
    ReleaseString(CTreeString());
    EXPECT_STREQ(CTreeString().Text(), "");
    EXPECT_EQ(CTreeString().Length(), 0U);
}

TEST(OuterString, TheConstantLeavesTheLowBitsOfItsAddressFree) {
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(CTreeString().Text()) % CTreeString::ALIGNMENT, 0U);
}

TEST(OuterString, IsReplacedInItsPlaceOnlyWhileNobodyElseShowsIt) {
    const CTreeString first = NewOuterString(JudgeText("some text"));
    const CTreeString second = ReplaceOuterString(first, JudgeText(first.Text() + 5));
    EXPECT_EQ(second, first);
    EXPECT_STREQ(second.Text(), "text");
    RetainString(second);
    const CTreeString third = ReplaceOuterString(second, JudgeText("other"));
    EXPECT_NE(third, second);
    EXPECT_STREQ(second.Text(), "text");
    ReleaseString(second);
    ReleaseString(third);
}

}  // namespace
}  // namespace norvask
