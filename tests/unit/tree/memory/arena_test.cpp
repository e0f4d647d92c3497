// The memory of a tree: blocks, and how they serve again.
#include "tree/memory/arena.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "tree/memory/tree.h"

namespace norvask {
namespace {

class Arena : public ::testing::Test {
protected:
    struct SBlock {
        char* at;
        std::size_t bytes;
        SPage* page;  // NULL for a plain one
        char fill;
    };

    void SetUp() override { m_pTree = CTree::Create(); }
    void TearDown() override { m_pTree->Release(); }
    CArena& Of() { return m_pTree->Arena(); }

    SBlock Allocate(std::size_t bytes, bool paged, char fill = 'x') {
        SPage* page = nullptr;
        void* const at = paged ? Of().AllocatePaged(bytes, page) : Of().AllocatePlain(bytes);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(at) % 8, 0U);
        std::memset(at, fill, bytes);
        return {static_cast<char*>(at), bytes, page, fill};
    }
    void Free(const SBlock& block) {
        if (block.page != nullptr) {
            Of().FreePaged(block.at, block.bytes, block.page);
        } else {
            Of().FreePlain(block.at, block.bytes);
        }
    }
    static bool IsWhole(const SBlock& block) {
        return std::string(block.at, block.bytes) == std::string(block.bytes, block.fill);
    }
    std::size_t Pages() {
        std::size_t count = 0;
        for (const SPage* page = Of().FirstPage(); page != nullptr; page = page->next) {
            ++count;
        }
        return count;
    }

    CTree* m_pTree = nullptr;
};

const std::size_t SIZES[] = {1, 8, 9, 16, 24, 40, 64, 511, 512, 513, 1000, 5000, 40000, 200000};

TEST_F(Arena, BlocksAreAlignedAndDoNotOverlap) {
    std::vector<SBlock> blocks;
    for (int round = 0; round < 40; ++round) {
        for (const std::size_t bytes : SIZES) {
            blocks.push_back(Allocate(bytes, round % 2 != 0, static_cast<char>(blocks.size())));
        }
    }
    for (const SBlock& block : blocks) {
        ASSERT_TRUE(IsWhole(block));
    }
}

TEST_F(Arena, AFreedBlockServesAgain) {
    for (const std::size_t bytes : {16U, 64U, 512U}) {
        const SBlock paged = Allocate(bytes, true);
        const SBlock plain = Allocate(bytes, false);
        Free(paged);
        Free(plain);
        const SBlock again = Allocate(bytes, true);
        EXPECT_EQ(again.at, paged.at) << bytes;
        EXPECT_EQ(again.page, paged.page) << bytes;
        EXPECT_EQ(Allocate(bytes, false).at, plain.at) << bytes;
    }
}

TEST_F(Arena, LargeBlocksComeAndGoInAnyOrder) {
    std::vector<SBlock> blocks;
    for (int i = 0; i < 6; ++i) {
        blocks.push_back(Allocate(10000, false, static_cast<char>(i)));
    }
    for (const std::size_t i : {2U, 0U, 5U, 3U}) {
        Free(blocks[i]);
    }
    EXPECT_TRUE(IsWhole(blocks[1]));
    EXPECT_TRUE(IsWhole(blocks[4]));
}

// All pages are full of small blocks; when those are freed, blocks of other sizes need no new page.
TEST_F(Arena, FreedNeighboursServeAllOtherSizes) {
    for (const bool paged : {true, false}) {
        std::vector<SBlock> blocks;
        for (int i = 0; i < 8000; ++i) {
            blocks.push_back(Allocate(24, paged));
        }
        const std::size_t before = Pages();
        for (const SBlock& block : blocks) {
            Free(block);
        }
        std::size_t used = 0;
        for (const std::size_t bytes : {16U, 32U, 40U, 200U, 480U}) {
            for (int i = 0; i < 60; ++i, used += bytes) {
                Allocate(bytes, true);
                Allocate(bytes, false);
            }
        }
        EXPECT_LT(used, 8000U * 24 / 2);
        EXPECT_LE(Pages(), before) << paged;
    }
}

TEST_F(Arena, PagesWithoutABlockAreReleased) {
    std::vector<SBlock> blocks;
    for (int i = 0; i < 100000; ++i) {
        blocks.push_back(Allocate(32, i % 2 != 0));
    }
    const std::size_t before = Pages();
    for (const SBlock& block : blocks) {
        Free(block);
    }
    Allocate(2000, true);  // nothing of that size has been freed
    EXPECT_GT(before, 90U);
    EXPECT_LT(Pages(), 10U);
}

TEST_F(Arena, APageThatIsRetainedOutsideStays) {
    std::vector<SBlock> blocks;
    std::set<SPage*> pages;
    for (int i = 0; i < 20000; ++i) {
        blocks.push_back(Allocate(32, true));
        pages.insert(blocks.back().page);
    }
    SPage* const retained = blocks[10000].page;
    RetainPage(retained);
    for (const SBlock& block : blocks) {
        Free(block);
    }
    Allocate(2000, true);
    bool isThere = false;
    for (const SPage* page = Of().FirstPage(); page != nullptr; page = page->next) {
        isThere = isThere || page == retained;
    }
    EXPECT_TRUE(isThere);
    ReleasePage(retained);
}

// Whatever comes and goes in whatever order, no block touches another.
TEST_F(Arena, RandomBlocksStayWhole) {
    std::mt19937 random(7);
    for (const std::size_t most : {40U, 600U, 3000U}) {
        std::vector<SBlock> blocks;
        for (int step = 0; step < 60000; ++step) {
            const std::size_t wanted = step % 20000 < 10000 ? 800 : 100;
            if (blocks.size() < wanted || random() % 2 == 0) {
                blocks.push_back(
                    Allocate(1 + random() % most, random() % 2 == 0, static_cast<char>(random())));
            }
            if (blocks.size() > wanted) {
                std::swap(blocks[random() % blocks.size()], blocks.back());
                ASSERT_TRUE(IsWhole(blocks.back()));
                Free(blocks.back());
                blocks.pop_back();
            }
        }
        for (const SBlock& block : blocks) {
            ASSERT_TRUE(IsWhole(block));
            Free(block);
        }
    }
}

}  // namespace
}  // namespace norvask
