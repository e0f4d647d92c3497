// Operations on trees in which an allocation fails, for every one of them, the parser's included:
// the exception passes, the tree is as it was or as the operation promises, everything still works,
// and no block is left behind when the document ends.
//
// Each operation runs on trees that are filled to different degrees, so that the arrays and the
// memory of the tree have to grow in the middle of it once here and once there.
#include <functional>

#include "allocation/sample_tree.h"
#include "allocation/sweep.h"
#include "support/testing.h"

using namespace norvask_test;

namespace {

// How a tree may look after the operation has failed: it gets the texts from before and after it.
using Promise =
    std::function<bool(const std::string& now, const std::string& before, const std::string& done)>;

bool Unchanged(const std::string& now, const std::string& before, const std::string&) {
    return now == before;
}

// Everything still works behind a failure; the operation itself gives `done` now, unless that is
// "".
template <typename Operation>
void ExpectUsable(STree& tree, Operation& operation, const std::string& done) {
    if (!done.empty()) {
        operation(tree);
        EXPECT_EQ(Whole(tree), done);
    }
    tree.document->GetRoot()->SetAttribute("still", "works");
    tree.document->GetRoot()->CreateChild("still", nullptr)->CreateTextChild("works");
    tree.document->SetDTDRef(nullptr, nullptr);
    EXPECT_EQ(TreeText(Load(Saved(tree.document, false))),
              TreeText(Load(Saved(tree.document, true))));
}

// Runs the operation on fresh trees until no allocation is refused any more.
template <typename Operation>
void ExpectSafe(Operation operation, const Promise& promise = Unchanged) {
    {
        STree tree(0);
        operation(tree);  // what is made once for the process is made now
    }
    long refusals = 0;
    for (int filled = 0; filled < 200 || (refusals < 2 && filled < 1000); ++filled) {
        std::string before;
        std::string done;
        {
            STree tree(filled);
            before = Whole(tree);
            operation(tree);
            done = Whole(tree);
        }
        for (const Failing failing : {Failing::One, Failing::AllFromThere}) {
            SCOPED_TRACE(std::to_string(filled) + " filled");
            Sweep([&](long n) {
                STree tree(filled);
                const SAttempt attempt = Attempt([&] { operation(tree); }, n, failing);
                EXPECT_TRUE(attempt.known) << attempt.told;
                EXPECT_TRUE(attempt.refused || !attempt.thrown);
                const std::string now = Whole(tree);
                if (attempt.thrown) {
                    ++refusals;
                    EXPECT_TRUE(promise(now, before, done)) << now << "\nbefore:\n" << before;
                    ExpectUsable(tree, operation, now == before ? done : "");
                } else {
                    EXPECT_EQ(now, done);
                }
                return attempt.refused;
            });
            if (::testing::Test::HasFailure()) return;
        }
    }
    EXPECT_GE(refusals, 2) << "hardly anything was refused";
}

}  // namespace

TEST(AllocationFailure, LeavesTheElementWhenAChildIsCreated) {
    ExpectSafe([](STree& tree) { tree.target->CreateChild("new", nullptr); });
    ExpectSafe([](STree& tree) { tree.target->CreateChild("new", tree.text); });
    ExpectSafe([](STree& tree) { tree.target->CreateChild(LONG.c_str(), nullptr); });
    ExpectSafe([](STree& tree) { tree.target->CreateTextChild(LONG.c_str()); });
    ExpectSafe([](STree& tree) { tree.target->CreateTextChild("short"); });
    ExpectSafe([](STree& tree) { tree.target->CreateTextChild(LONGER.c_str()); });
    ExpectSafe([](STree& tree) { tree.target->CreateBinChild(); });
}

TEST(AllocationFailure, LeavesTheAttributesWhenOneIsSet) {
    ExpectSafe([](STree& tree) { tree.target->SetAttribute("new", "v"); });
    ExpectSafe([](STree& tree) { tree.target->SetAttribute(LONG.c_str(), "v"); });
    ExpectSafe([](STree& tree) { tree.target->SetAttribute("new", LONG.c_str()); });
    ExpectSafe([](STree& tree) { tree.target->SetAttribute("a", LONG.c_str()); });
    ExpectSafe([](STree& tree) { tree.target->SetAttribute("n\xC3\xA9w\xFF", LONGER.c_str()); });
    ExpectSafe([](STree& tree) { tree.target->GetAttributes()[0]->SetName(LONG.c_str()); });
    ExpectSafe([](STree& tree) { tree.target->GetAttributes()[1]->SetValue(LONG.c_str()); });
}

TEST(AllocationFailure, LeavesNamesAndTexts) {
    ExpectSafe([](STree& tree) { tree.target->SetTagName(LONG.c_str()); });
    ExpectSafe([](STree& tree) { tree.target->SetTagName("\xE6\x97\xA5\xFF"); });
    ExpectSafe([](STree& tree) { tree.text->SetText(LONG.c_str()); });
    ExpectSafe([](STree& tree) { tree.simple->SetTextChildValue(LONG.c_str()); });
    ExpectSafe([](STree& tree) { tree.target->GetFirstChild()->SetTextChildValue(LONG.c_str()); });
    ExpectSafe([](STree& tree) { tree.document->SetDTDRef("other", LONG.c_str()); });
}

// Where the parser is asked, its failure counts as that of a transcoder, which empties the text.
TEST(AllocationFailure, LeavesOrEmptiesATextThatTheParserIsAskedAbout) {
    const Promise promise = [](const std::string& now, const std::string& before,
                               const std::string&) {
        std::string emptied = before;
        emptied.replace(emptied.find("\"text\""), 6, "\"\"");
        return now == before || now == emptied;
    };
    ExpectSafe([](STree& tree) { tree.text->SetText(LONGER.c_str()); }, promise);
    ExpectSafe(
        [](STree& tree) {
            tree.text->SetBinaryText(reinterpret_cast<const unsigned char*>(LONG.data()), 3000);
        },
        promise);
}

TEST(AllocationFailure, EmptiesABinaryNode) {
    const Promise promise = [](const std::string& now, const std::string& before,
                               const std::string&) {
        std::string emptied = before;
        return now == emptied.replace(emptied.find("#64617461"), 9, "#");
    };
    ExpectSafe(
        [](STree& tree) {
            tree.binary->SetData(reinterpret_cast<const unsigned char*>(LONG.data()), 3000);
        },
        promise);
}

TEST(AllocationFailure, LeavesTheOldRoot) {
    ExpectSafe([](STree& tree) { tree.document->CreateRoot("new"); });
    ExpectSafe([](STree& tree) { tree.document->CreateRoot(LONG.c_str()); });
}

TEST(AllocationFailure, LeavesTheTreeWhenItIsQueried) {
    ExpectSafe([](STree& tree) {
        ASSERT_NE(tree.document->GetNodes("r/target/simple")[0], nullptr);
        ASSERT_NE(tree.target->GetNodes("c")[0], nullptr);
    });
    // A query that failed does not spoil the next.
    EXPECT_GT(Sweep([](long n) {
                  STree tree(400);
                  const SAttempt attempt = Attempt([&] { tree.root->GetNodes("filling"); }, n);
                  EXPECT_STREQ(attempt.told, attempt.thrown ? "bad_alloc" : "");
                  EXPECT_EQ(Count(tree.root->GetNodes("filling")), 100u);
                  return attempt.refused;
              }),
              1);
}

// What had been copied stays, and is a part of the whole copy.
TEST(AllocationFailure, LeavesAPartOfACopyAtMost) {
    const Promise promise = [](const std::string& now, const std::string& before,
                               const std::string&) {
        // Behind the children of the root there may be one more, which is well formed.
        const std::string kept = before.substr(0, before.size() - 1);
        return now == before ||
               (now.compare(0, kept.size(), kept) == 0 && now.find("!") == std::string::npos);
    };
    ExpectSafe([](STree& tree) { tree.root->CopyChild(tree.target, nullptr); }, promise);
    ExpectSafe([](STree& tree) { tree.root->CopyChild(tree.root, nullptr); }, promise);
    STree source(20);
    source.target->SetAttribute("long", LONG.c_str());
    source.text->SetText(LONG.c_str());
    ExpectSafe([&source](STree& tree) { tree.root->CopyChild(source.root, nullptr); }, promise);
}

TEST(AllocationFailure, LeavesNothingOfAClone) {
    ExpectSafe([](STree& tree) {
        tree.document->SetDTDRef("r", "r.dtd");
        Document clone(tree.document->Clone());
        ASSERT_NE(clone, nullptr);
    });
}
