// A node that shows what stands above it makes the tree a ring: a path leads round it as often as
// it has steps. A node and the one above it then have one query result between them, and what is
// found below must not be passed up into the same array.
#include <norvask/norvask.h>

#include <cstddef>
#include <string>

#include "support/tree.h"
#include "support/vocabulary.h"

using namespace norvask;
using namespace norvask_test;

TEST(RingQuery, FindsWhatThePathNamesHoweverOftenItLeadsRound) {
    for (const std::size_t children : {1u, 2u, 3u, 50u}) {
        const Document document = NewDocumentWithRoot("r");
        CXMLNode* root = document->GetRoot();
        CXMLNode* below = root->CreateChild("p", nullptr);
        for (std::size_t i = 0; i < children; ++i)
            root->CreateChild("x", nullptr);
        *below = *root;
        std::string path = "x";
        for (int rounds = 0; rounds < 5; ++rounds) {
            SCOPED_TRACE(path);
            CXMLNode** nodes = root->GetNodes(path.c_str());
            ASSERT_EQ(Count(nodes), children);
            for (std::size_t i = 0; i < children; ++i)
                EXPECT_EQ(nodes[i], root->GetChildren()[i + 1]);
            path.insert(0, "r/");
        }
        EXPECT_EQ(Count(root->GetNodes("x")), children);
        EXPECT_EQ(Listed(below->GetNodes("r")), "r");
    }
}
