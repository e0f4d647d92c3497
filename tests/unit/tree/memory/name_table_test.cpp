// The names of a tree: one of each, as long as it is used.
#include "tree/memory/name_table.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "tree/memory/name_use.h"

namespace norvask {
namespace {

class NameTable : public ::testing::Test {
protected:
    void SetUp() override { m_pTree = CTree::Create(); }
    void TearDown() override { m_pTree->Release(); }
    SNameLookUp LookUp(const std::string& name) {
        return m_pTree->Names().LookUp(name.data(), name.size());
    }
    CNameUse Use(const std::string& name) { return CNameUse(*m_pTree, JudgeName(name.c_str())); }

    CTree* m_pTree = nullptr;
};

TEST_F(NameTable, EqualNamesAreOneAndGoWithTheirLastUse) {
    EXPECT_FALSE(LookUp("item").isFound);
    CNameUse first = Use("item");
    {
        const CNameUse second(*m_pTree, {"items", 4, 0});
        EXPECT_EQ(second.Name(), first.Name());
        EXPECT_STREQ(second.Name().Text(), "item");
        EXPECT_EQ(second.Name().Length(), 4U);
    }
    EXPECT_EQ(LookUp("item").name, first.Name());
    { const CNameUse moved(std::move(first)); }
    EXPECT_FALSE(LookUp("item").isFound);
}

TEST_F(NameTable, AKeptUseIsReleasedByWhoeverAdoptsIt) {
    CNameUse use = Use("item");
    const CTreeString kept = use.Keep();
    { const CNameUse nothing(std::move(use)); }
    EXPECT_TRUE(LookUp("item").isFound);
    { const CNameUse adopted = CNameUse::Adopt(kept); }
    EXPECT_FALSE(LookUp("item").isFound);
}

TEST_F(NameTable, WhatIsKnownOfANameIsRemembered) {
    const CNameUse any(*m_pTree, Unjudged("item"));
    EXPECT_FALSE(LookUp("item").IsName());
    const CNameUse judged = Use("item");
    EXPECT_TRUE(LookUp("item").IsName());
    EXPECT_TRUE(any.Name().Is(KNOWN_PLAIN_NAME));
}

TEST_F(NameTable, ManyNamesAreAllFoundAgain) {
    std::vector<CNameUse> uses;
    for (int i = 0; i < 5000; ++i) {
        uses.push_back(Use("name" + std::to_string(i * 7919)));
    }
    for (int i = 0; i < 5000; ++i) {
        ASSERT_EQ(LookUp("name" + std::to_string(i * 7919)).name,
                  uses[static_cast<std::size_t>(i)].Name());
    }
    uses.clear();
    EXPECT_FALSE(LookUp("name0").isFound);
}

TEST_F(NameTable, ANameThatIsShownOutsideIsNotFoundWithoutAUse) {
    CNameUse use = Use("item");
    const CTreeString shown = use.Name();
    RetainString(shown);
    { const CNameUse last(std::move(use)); }
    EXPECT_FALSE(LookUp("item").isFound);
    EXPECT_STREQ(shown.Text(), "item");
    const CNameUse again = Use("item");
    EXPECT_NE(again.Name(), shown);
    ReleaseString(shown);
}

}  // namespace
}  // namespace norvask
