// Random trees: what is saved and loaded is the same tree, and saves to the same bytes again.
#include "support/random_tree.h"
#include "support/testing.h"

using namespace norvask_test;

namespace {

constexpr unsigned TREES = 150;

}  // namespace

TEST(RoundTrip, GivesTheSameTreeAndTheSameBytes) {
    for (const Content content : {Content::ELEMENTS, Content::FAITHFUL}) {
        for (unsigned seed = 0; seed < TREES; ++seed) {
            Document document = CRandomTree(seed, content).Make();
            const std::string tree = TreeText(document);
            for (const bool format : {false, true}) {
                const std::string bytes = Saved(document, format);
                Document loaded = LoadMemory(bytes);
                EXPECT_TRUE(TreeText(loaded) == tree) << "seed " << seed;
                EXPECT_TRUE(Saved(loaded, format) == bytes) << "seed " << seed;
            }
        }
    }
}

TEST(RoundTrip, ReachesTheSameBytesAfterTheFirstRoundWhateverTheTreeHolds) {
    unsigned changed = 0;
    for (unsigned seed = 0; seed < TREES; ++seed) {
        Document document = CRandomTree(seed, Content::ANYTHING).Make();
        Document first = LoadMemory(Saved(document, seed % 2 == 0));
        const std::string bytes = Saved(first);
        Document second = LoadMemory(bytes);
        EXPECT_TRUE(Saved(second) == bytes) << "seed " << seed;
        EXPECT_TRUE(Saved(LoadMemory(Saved(second, true))) == bytes) << "seed " << seed;
        if (TreeText(first) != TreeText(document)) ++changed;
    }
    EXPECT_GT(changed, TREES / 4);
}

TEST(RoundTrip, LoadsBothFormatsToTheSameTree) {
    for (unsigned seed = 0; seed < TREES; ++seed) {
        for (const Content content : {Content::ELEMENTS, Content::FAITHFUL, Content::ANYTHING}) {
            Document document = CRandomTree(seed, content).Make();
            EXPECT_TRUE(TreeText(LoadMemory(Saved(document, true))) ==
                        TreeText(LoadMemory(Saved(document, false))))
                << "seed " << seed;
        }
    }
}

TEST(RoundTrip, SavesAClonePlacedAnywhereLikeItsSource) {
    for (unsigned seed = 0; seed < TREES; ++seed) {
        Document document = CRandomTree(seed, Content::ANYTHING).Make();
        document->SetDTDRef("r", "r.dtd");
        Document clone(document->Clone());
        EXPECT_TRUE(TreeText(clone) == TreeText(document)) << "seed " << seed;
        for (const bool format : {false, true}) {
            const std::string bytes = Saved(document, format);
            EXPECT_TRUE(Saved(clone, format) == bytes) << "seed " << seed;
        }
        Document other = NewDocument();
        other->CreateRoot("o")->CopyChild(document->GetRoot(), nullptr);
        const std::string tree = TreeText(document);
        document.reset();
        EXPECT_TRUE(TreeText(clone) == tree) << "seed " << seed;
        EXPECT_TRUE(TreeText(other) == "o(" + tree + ")") << "seed " << seed;
    }
}

TEST(RoundTrip, LoadsAFileLikeMemory) {
    for (unsigned seed = 0; seed < 100; ++seed) {
        Document document = CRandomTree(seed, Content::ANYTHING).Make();
        TemporaryFile file;
        document->Save(file.Name(), seed % 2 == 0);
        const std::string bytes = Saved(document, seed % 2 == 0);
        EXPECT_TRUE(file.Content() == bytes) << "seed " << seed;
        for (const auto& how : {SLoad(), KeepPrefixes()}) {
            EXPECT_TRUE(TreeText(LoadFile(file.Name(), how)) == TreeText(LoadMemory(bytes, how)))
                << "seed " << seed;
        }
    }
}

TEST(RoundTrip, KeepsPrefixesAndDeclarations) {
    const std::string xml =
        "<?xml version=\"1.0\"?><p:r xmlns:p=\"urn:p\" xmlns:q=\"urn:q\" k=\"v\" p:k=\"w\">"
        "<q:a>text</q:a><a xmlns:q=\"urn:other\" q:l=\"x\"/><b xml:lang=\"en\"/></p:r>";
    EXPECT_EQ(Saved(LoadMemory(xml, KeepPrefixes())), xml);
    EXPECT_EQ(Saved(LoadMemory(Saved(LoadMemory(xml, KeepPrefixes()), true), KeepPrefixes())), xml);
}
