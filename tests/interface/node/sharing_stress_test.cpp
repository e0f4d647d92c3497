// Sharing taken to its limits: cycles, chains of shared nodes, and random assignments between the
// nodes of several documents that end in any order. What counts is what the sanitizers say.
#include <functional>

#include "support/derived.h"
#include "support/random_text.h"
#include "support/small_stack.h"
#include "support/testing.h"

using namespace norvask_test;

namespace {

// Three small elements, each with attributes, a text and a binary node.
Document SmallDocument(int number) {
    const std::string n = std::to_string(number);
    const Document made = NewDocumentWithRoot("r");
    for (const char* name : {"a", "b", "c"}) {
        CXMLNode* child = made->GetRoot()->CreateChild(name, nullptr);
        child->SetAttribute("p", (n + " and a value that is long enough").c_str());
        child->SetAttribute("q", n.c_str());
        child->CreateTextChild(("text " + n + " that is long enough as well").c_str());
        SetBytes(*child->CreateBinChild(), "bytes of document " + n);
    }
    return Document(made->Clone());
}

struct SCopies {
    std::vector<std::unique_ptr<CElementProbe>> elements;
    std::vector<std::unique_ptr<CTextProbe>> texts;
    std::vector<std::unique_ptr<CBinaryProbe>> binaries;
    std::vector<std::unique_ptr<CDocumentProbe>> documents;
    std::vector<CXMLAttribut> attributes;
};

template <typename T>
void EraseAny(std::vector<T>& all, RandomText& random) {
    if (all.size() > 8)
        all.erase(all.begin() + static_cast<std::ptrdiff_t>(random.Number(all.size())));
}

}  // namespace

TEST(SharingStress, ANodeThatShowsTheOneAboveItEndsWithTheDocument) {
    Document document = Load("<r a='1'><p><q>text</q></p><s/></r>");
    CXMLNode* p = document->GetRoot()->GetFirstChild();
    *p = *document->GetRoot();
    EXPECT_STREQ(p->GetTagName(), "r");
    EXPECT_EQ(p->GetFirstChild(), p);
    document.reset();
}

TEST(SharingStress, ANodeThatShowsTheOneAboveItIsDeleted) {
    const Document document = Load("<r a='1'><p><q>text</q></p><s/></r>");
    CXMLNode* root = document->GetRoot();
    CXMLNode* p = root->GetFirstChild();
    *p = *root;
    root->DeleteChild(p);
    EXPECT_EQ(SavedBody(*document), "<r a=\"1\"><s/></r>");
}

TEST(SharingStress, ANodeThatShowsTheOneAboveItGoesWithAReplacedRoot) {
    const Document document = Load("<r a='1'><p><q>text</q></p><s/></r>");
    *document->GetRoot()->GetFirstChild() = *document->GetRoot();
    document->CreateRoot("new");
    EXPECT_EQ(SavedBody(*document), "<new/>");
}

TEST(SharingStress, AChainOfAssignmentsKeepsTheLastContent) {
    const Document document = NewDocumentWithRoot("r");
    CXMLNode* root = document->GetRoot();
    for (int i = 0; i < 100; ++i)
        root->CreateChild("n", nullptr)->SetTextChildValue(std::to_string(i).c_str());
    for (int i = 0; i + 1 < 100; ++i)
        *root->GetChildren()[i] = *root->GetChildren()[i + 1];
    for (int i = 98; i >= 0; --i)
        *root->GetChildren()[i] = *root->GetChildren()[i + 1];
    for (int i = 0; i < 100; ++i)
        EXPECT_STREQ(root->GetChildren()[i]->GetTextChildValue(), "99") << i;
    root->GetChildren()[50]->SetTextChildValue("all");
    for (int i = 0; i < 99; ++i)
        root->DeleteChild(root->GetFirstChild());
    EXPECT_EQ(SavedBody(*document), "<r><n>all</n></r>");
}

TEST(SharingStress, ADeepTreeOfSharedNodesEndsOnASmallStack) {
    OnSmallStack([] {
        constexpr int levels = 200000;
        Document document = NewDocumentWithRoot("r");
        CXMLNode* root = document->GetRoot();
        CXMLNode* top = root->CreateChild("n", nullptr);
        for (int level = 1; level < levels; ++level) {
            // A new element above what is there: its child shows the old top, which then ends.
            CXMLNode* above = root->CreateChild("n", nullptr);
            *above->CreateChild("x", nullptr) = *top;
            root->DeleteChild(top);
            top = above;
        }
        int depth = 0;
        for (CXMLNode* node = root; node->GetFirstChild(); node = node->GetFirstChild())
            ++depth;
        EXPECT_EQ(depth, levels);
        const Document clone(document->Clone());
        EXPECT_EQ(Saved(clone), Saved(document));
        document.reset();
    });
}

TEST(SharingStress, RandomAssignmentsEndInAnyOrder) {
    for (unsigned int seed = 1; seed <= 30; ++seed) {
        RandomText random(seed);
        std::vector<Document> documents;
        for (int i = 0; i < 4; ++i)
            documents.push_back(SmallDocument(i));
        SCopies copies;
        const auto child = [&](std::size_t place) {
            return documents[random.Number(4)]->GetRoot()->GetChildren()[place];
        };
        for (int step = 0; step < 400; ++step) {
            CXMLNode* from = child(random.Number(3));
            CXMLNode* to = child(random.Number(3));
            ASSERT_EQ(Count(from->GetChildren()), 2u);
            auto& text = static_cast<CXMLTextNode&>(*from->GetChildren()[0]);
            auto& binary = static_cast<CXMLBinNode&>(*from->GetChildren()[1]);
            const std::size_t which = random.Number(2);
            const std::function<void()> steps[] = {
                [&] { *to = *from; },
                [&] { static_cast<CXMLTextNode&>(*to->GetChildren()[0]) = text; },
                [&] { static_cast<CXMLBinNode&>(*to->GetChildren()[1]) = binary; },
                [&] { *to->GetAttributes()[which] = *from->GetAttributes()[1 - which]; },
                [&] { copies.elements.push_back(std::make_unique<CElementProbe>(*from)); },
                [&] { copies.texts.push_back(std::make_unique<CTextProbe>(text)); },
                [&] { copies.binaries.push_back(std::make_unique<CBinaryProbe>(binary)); },
                [&] { copies.attributes.push_back(*from->GetAttributes()[which]); },
                [&] {
                    copies.documents.push_back(
                        std::make_unique<CDocumentProbe>(*documents[random.Number(4)]));
                },
                [&] {
                    if (!copies.elements.empty())
                        *to = *copies.elements[random.Number(copies.elements.size())];
                },
                [&] {
                    if (!copies.attributes.empty())
                        *to->GetAttributes()[which] =
                            copies.attributes[random.Number(copies.attributes.size())];
                },
                [&] {
                    text.SetText(random.Bytes(random.Number(100)).c_str());
                    SetBytes(binary, random.Bytes(random.Number(100)));
                },
                [&] {
                    from->GetAttributes()[which]->SetValue(
                        random.Bytes(1 + random.Number(60)).c_str());
                    from->SetTagName(which ? "one" : "other");
                },
                [&] { *documents[random.Number(4)] = *documents[random.Number(4)]; },
                [&] { documents[random.Number(4)] = SmallDocument(step); },
                [&] {
                    EraseAny(copies.elements, random);
                    EraseAny(copies.texts, random);
                    EraseAny(copies.binaries, random);
                    EraseAny(copies.documents, random);
                    EraseAny(copies.attributes, random);
                },
            };
            steps[random.Number(16)]();
            ASSERT_FALSE(Saved(documents[random.Number(4)]).empty());
        }
        documents.resize(random.Number(4));
        for (const auto& element : copies.elements)
            EXPECT_FALSE(SavedNode(*element).empty());
        for (const auto& document : copies.documents)
            EXPECT_FALSE(SavedBody(*document).empty());
        for (const auto& text : copies.texts)
            EXPECT_NE(text->GetText(), nullptr);
        for (const auto& binary : copies.binaries)
            Bytes(*binary);
        for (CXMLAttribut& attribute : copies.attributes)
            EXPECT_NE(attribute.GetValue(), nullptr);
    }
}
