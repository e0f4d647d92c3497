// Random trees: what is saved and loaded is the same tree, and saves to the same bytes again.
#include <random>

#include "support/testing.h"

using namespace norvask;
using namespace norvask_test;

namespace {

enum class Content {
    Elements,  // nothing but elements and attributes
    Faithful,  // everything that a document can carry unchanged
    Anything   // also what is merged, dropped or normalised on the way
};

class CRandomTree {
public:
    CRandomTree(unsigned seed, Content content) : m_Random(seed), m_Content(content) {}

    Document Make() {
        Document document = NewDocument();
        CXMLNode* root = document->CreateRoot(Name());
        Fill(root, 0);
        return document;
    }

private:
    int Below(int limit) { return static_cast<int>(m_Random() % static_cast<unsigned>(limit)); }

    const char* Name() {
        static const char* const names[] = {
            "a", "b", "item", "\xC3\xA9l\xC3\xA9ment", "_1", "x.y-z", "\xE6\x97\xA5\xE6\x9C\xAC"};
        return names[Below(7)];
    }

    // Never empty. What is faithful has neither line ends and TABs, nor only blanks.
    std::string Characters(bool faithful) {
        static const char* const pieces[] = {
            "word", " ", "<", "&", "'", "\"", "]]>", "\xC3\xA9", "\xF0\x9F\x98\x80", "\xC2\xA0"};
        static const char* const others[] = {"\r", "\n", "\t", " ", "\x01", "\xFF", "\xE2\x82"};
        std::string text = faithful ? "." : "";
        for (int count = 1 + Below(6); count > 0; --count)
            text += faithful || Below(3) ? pieces[Below(10)] : others[Below(7)];
        if (Below(40) == 0) text += std::string(static_cast<std::size_t>(Below(5000)), 'l');
        return text;
    }

    void Fill(CXMLNode* node, int depth) {
        const bool faithful = m_Content != Content::Anything;
        for (int count = Below(4); count > 0; --count)
            node->SetAttribute(Name(), Characters(faithful).c_str());
        if (depth > 12) return;
        bool afterText = false;
        for (int count = Below(7); count > 0 && m_nNodes > 0; --count, --m_nNodes) {
            const int kind = m_Content == Content::Elements ? 0 : Below(4);
            if (kind == 2 && !(faithful && afterText)) {
                node->CreateTextChild(Characters(faithful).c_str());
                afterText = true;
            } else if (kind == 3) {
                std::vector<unsigned char> bytes(static_cast<std::size_t>(Below(200) + faithful));
                for (unsigned char& byte : bytes)
                    byte = static_cast<unsigned char>(Below(256));
                node->CreateBinChild()->SetData(bytes.data(), bytes.size());
                afterText = false;
            } else {
                Fill(node->CreateChild(Name(), nullptr), depth + 1);
                afterText = false;
            }
        }
    }

    std::mt19937 m_Random;
    Content m_Content;
    int m_nNodes = 150;  // that may still be made
};

constexpr unsigned kTrees = 150;

}  // namespace

TEST(RoundTrip, GivesTheSameTreeAndTheSameBytes) {
    for (const Content content : {Content::Elements, Content::Faithful}) {
        for (unsigned seed = 0; seed < kTrees; ++seed) {
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
    for (unsigned seed = 0; seed < kTrees; ++seed) {
        Document document = CRandomTree(seed, Content::Anything).Make();
        Document first = LoadMemory(Saved(document, seed % 2 == 0));
        const std::string bytes = Saved(first);
        Document second = LoadMemory(bytes);
        EXPECT_TRUE(Saved(second) == bytes) << "seed " << seed;
        EXPECT_TRUE(Saved(LoadMemory(Saved(second, true))) == bytes) << "seed " << seed;
        if (TreeText(first) != TreeText(document)) ++changed;
    }
    EXPECT_GT(changed, kTrees / 4);
}

TEST(RoundTrip, LoadsBothFormatsToTheSameTree) {
    for (unsigned seed = 0; seed < kTrees; ++seed) {
        for (const Content content : {Content::Elements, Content::Faithful, Content::Anything}) {
            Document document = CRandomTree(seed, content).Make();
            EXPECT_TRUE(TreeText(LoadMemory(Saved(document, true))) ==
                        TreeText(LoadMemory(Saved(document, false))))
                << "seed " << seed;
        }
    }
}

TEST(RoundTrip, SavesAClonePlacedAnywhereLikeItsSource) {
    for (unsigned seed = 0; seed < kTrees; ++seed) {
        Document document = CRandomTree(seed, Content::Anything).Make();
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
        Document document = CRandomTree(seed, Content::Anything).Make();
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
