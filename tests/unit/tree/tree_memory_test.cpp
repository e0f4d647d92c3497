// The memory of a tree: blocks, their reuse, and strings that outlive it.
#include "tree/tree_memory.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "tree/name_table.h"
#include "tree/tree_string.h"

namespace norvask {
namespace {

class TreeMemory : public ::testing::Test {
protected:
    void SetUp() override { m_pMemory = CTreeMemory::Create(); }
    void TearDown() override { m_pMemory->ReleaseOwner(); }

    CTreeMemory* m_pMemory = nullptr;
};

const std::size_t SIZES[] = {1, 8, 9, 16, 24, 40, 64, 511, 512, 513, 1000, 5000, 40000, 200000};

TEST_F(TreeMemory, BlocksAreAlignedAndDoNotOverlap) {
    struct Block {
        char* at;
        std::size_t bytes;
        char fill;
    };
    std::vector<Block> blocks;
    for (int round = 0; round < 40; ++round) {
        for (const std::size_t bytes : SIZES) {
            SPage* page = nullptr;
            char* at = static_cast<char*>(round % 2 == 0 ? m_pMemory->AllocatePlain(bytes)
                                                         : m_pMemory->AllocateTagged(bytes, page));
            ASSERT_EQ(reinterpret_cast<std::uintptr_t>(at) % 8, 0U);
            const char fill = static_cast<char>(blocks.size());
            std::memset(at, fill, bytes);
            blocks.push_back({at, bytes, fill});
        }
    }
    for (const Block& block : blocks) {
        for (std::size_t i = 0; i < block.bytes; ++i) {
            ASSERT_EQ(block.at[i], block.fill);
        }
    }
}

TEST_F(TreeMemory, AFreedBlockServesAgain) {
    for (const std::size_t bytes : {std::size_t{16}, std::size_t{64}, std::size_t{512}}) {
        SPage* page = nullptr;
        void* tagged = m_pMemory->AllocateTagged(bytes, page);
        void* plain = m_pMemory->AllocatePlain(bytes);
        SPage* const pageOfTagged = page;
        m_pMemory->FreeTagged(tagged, bytes, page);
        m_pMemory->FreePlain(plain, bytes);
        page = nullptr;
        EXPECT_EQ(m_pMemory->AllocateTagged(bytes, page), tagged) << bytes;
        EXPECT_EQ(page, pageOfTagged) << bytes;
        EXPECT_EQ(m_pMemory->AllocatePlain(bytes), plain) << bytes;
    }
}

TEST_F(TreeMemory, LargeBlocksComeAndGoInAnyOrder) {
    std::vector<void*> blocks;
    for (int i = 0; i < 6; ++i) {
        blocks.push_back(m_pMemory->AllocatePlain(10000));
        std::memset(blocks.back(), i, 10000);
    }
    for (const int i : {2, 0, 5, 3}) {
        m_pMemory->FreePlain(blocks[static_cast<std::size_t>(i)], 10000);
    }
    EXPECT_EQ(static_cast<char*>(blocks[1])[9999], 1);
    EXPECT_EQ(static_cast<char*>(blocks[4])[0], 4);
}

TEST_F(TreeMemory, AStringKnowsItsPage) {
    for (const std::size_t length : {1U, 30U, 600U, 100000U}) {
        const std::string text(length, 'v');
        const char* copy = NewTreeString(*m_pMemory, text.data(), text.size(), true);
        EXPECT_EQ(std::string(copy), text);
        EXPECT_EQ(PageOf(copy)->m_pTree, m_pMemory);
        FreeTreeString(*m_pMemory, copy);
    }
}

TEST_F(TreeMemory, AShownStringIsNotUsedAgain) {
    const char* text = NewTreeString(*m_pMemory, "value", 5, true);
    HoldString(text);
    FreeTreeString(*m_pMemory, text);
    const char* next = NewTreeString(*m_pMemory, "other", 5, true);
    EXPECT_NE(next, text);
    EXPECT_STREQ(text, "value");
    ReleaseHeldString(text);
}

TEST(TreeString, OutlivesItsTree) {
    for (const std::size_t length : {5U, 100000U}) {
        CTreeMemory* memory = CTreeMemory::Create();
        const std::string text(length, 'v');
        const char* held = NewTreeString(*memory, text.data(), text.size(), true);
        HoldString(held);
        HoldString(held);
        memory->ReleaseOwner();
        EXPECT_EQ(std::string(held), text);
        ReleaseHeldString(held);
        EXPECT_EQ(std::string(held), text);
        ReleaseHeldString(held);
    }
}

TEST(TreeString, AnEmptyHeldStringIsAConstant) {
    EXPECT_EQ(NewHeldString(nullptr, 0), EmptyString());
    EXPECT_EQ(NewHeldString("", 0), EmptyString());
    HoldString(EmptyString());
    ReleaseHeldString(EmptyString());
    ReleaseHeldString(EmptyString());
    EXPECT_STREQ(EmptyString(), "");
}

TEST_F(TreeMemory, EqualNamesAreOneAndGoWithTheirLastUse) {
    CNameTable& names = m_pMemory->Names();
    EXPECT_EQ(names.Find("item", 4), nullptr);
    const char* first = names.Acquire(*m_pMemory, "item", 4);
    const char* second = names.Acquire(*m_pMemory, "items", 4);
    EXPECT_EQ(first, second);
    EXPECT_STREQ(first, "item");
    EXPECT_EQ(CNameTable::Length(first), 4U);
    names.Release(*m_pMemory, first);
    EXPECT_EQ(names.Find("item", 4), first);
    names.Release(*m_pMemory, first);
    EXPECT_EQ(names.Find("item", 4), nullptr);
}

TEST_F(TreeMemory, ManyNamesAreAllFoundAgain) {
    CNameTable& names = m_pMemory->Names();
    std::vector<const char*> acquired;
    for (int i = 0; i < 5000; ++i) {
        const std::string name = "name" + std::to_string(i * 7919);
        acquired.push_back(names.Acquire(*m_pMemory, name.data(), name.size()));
    }
    for (int i = 0; i < 5000; ++i) {
        const std::string name = "name" + std::to_string(i * 7919);
        ASSERT_EQ(names.Find(name.data(), name.size()), acquired[static_cast<std::size_t>(i)]);
    }
    for (const char* name : acquired) {
        names.Release(*m_pMemory, name);
    }
    EXPECT_EQ(names.Find("name0", 5), nullptr);
}

}  // namespace
}  // namespace norvask
