// Whole documents while allocations fail: built by hand, saved, read and deleted; and the objects
// that stand alone, attributes and exceptions.
#include <new>
#include <ostream>
#include <string_view>

#include "allocation/sample_tree.h"
#include "allocation/sweep.h"
#include "support/testing.h"

using namespace norvask_test;

TEST(AllocationFailureDocument, LeavesNothingOfATreeBuiltByHand) {
    const auto build = [](int size) {
        Document document = NewDocument("r", "r.dtd");
        if (!document) throw std::bad_alloc();
        CXMLNode* node = document->CreateRoot("r");
        for (int i = 0; i < size; ++i) {
            node->SetAttribute("a", "1");
            node->SetAttribute("\xC3\xA9", LONG.c_str());
            node->CreateTextChild("text");
            node->CreateBinChild()->SetData(reinterpret_cast<const unsigned char*>("data"), 4);
            node = node->CreateChild("e", node->GetFirstChild());
            node->CreateChild("f", nullptr)->SetTextChildValue("value");
        }
        return document;
    };
    const std::string whole = TreeText(build(30));
    for (const Failing failing : {Failing::One, Failing::AllFromThere}) {
        EXPECT_GT(Sweep([&](long n) {
                      Document document;
                      const SAttempt attempt = Attempt([&] { document = build(30); }, n, failing);
                      EXPECT_TRUE(attempt.known) << attempt.told;
                      if (document) {
                          EXPECT_EQ(TreeText(document), whole);
                      }
                      return attempt.refused;
                  }),
                  18);
    }
}

TEST(AllocationFailureDocument, MakesCreateDocumentAnswerNull) {
    EXPECT_GE(Sweep([](long n) {
                  CXMLDocument* document = nullptr;
                  const SAttempt attempt =
                      Attempt([&] { document = Manager().CreateDocument("r", LONG.c_str()); }, n);
                  EXPECT_FALSE(attempt.thrown);
                  EXPECT_EQ(document == nullptr, attempt.refused);
                  if (document) document->Delete();
                  return attempt.refused;
              }),
              3);
}

TEST(AllocationFailureDocument, GivesAStreamTheBeginningOfTheDocument) {
    STree tree(50);
    tree.text->SetText(LONGER.c_str());
    tree.target->SetAttribute("\xC3\xA9\xFF", LONGER.c_str());
    CXMLNode* node = tree.root;
    for (int i = 0; i < 200; ++i)
        node = node->CreateChild("deep", nullptr);
    const std::string before = Whole(tree);
    for (const bool format : {false, true}) {
        const std::string whole = Saved(tree.document, format);
        for (const Failing failing : {Failing::One, Failing::AllFromThere}) {
            const auto save = [&](std::ostream& out) { tree.document->Save(out, format); };
            EXPECT_GT(SweepWriting(whole, failing, save), 3) << "hardly anything was refused";
        }
    }
    EXPECT_EQ(Whole(tree), before);
}

// Nothing that takes away, and nothing that reads, may need memory.
TEST(AllocationFailureDocument, DoesNotStopWhatEndsOrReads) {
    const long live = LiveBlocks();
    {
        STree tree(400);
        std::size_t filled = 0;
        bool same = false;
        {
            CFailAllocation fail(1, Callers::Everything, Failing::AllFromThere);
            CXMLNode** children = tree.root->GetChildren();
            while (children[filled])
                ++filled;
            same = tree.root->GetFirstChild() == children[0] &&
                   std::string_view(tree.target->GetAttributeValue("b")) == "2" &&
                   tree.target->GetAttributes()[2] == nullptr &&
                   std::string_view(tree.simple->GetTextChildValue()) == "simple text";
            tree.target->SetAttribute("a", nullptr);
            tree.target->SetAttribute("absent", "");
            tree.target->DeleteChild(tree.simple);
            tree.target->DeleteChild(tree.binary);
            tree.root->DeleteChild(tree.root->GetFirstChild());
            tree.document->SetDTDRef(nullptr, nullptr);
        }
        EXPECT_EQ(filled, 102u);  // with the text in front and the target
        EXPECT_TRUE(same);
        EXPECT_EQ(TreeText(tree.target), "target b=\"2\"(c k=\"v\"(), \"text\")");
        EXPECT_EQ(tree.document->GetDTDName(), nullptr);
    }
    {
        CXMLDocument* document = Manager().CreateDocument(nullptr, nullptr);
        CXMLNode* node = document->CreateRoot("r");
        for (int i = 0; i < 100000; ++i)
            node = node->CreateChild("e", nullptr);
        CFailAllocation fail(1, Callers::Everything, Failing::AllFromThere);
        document->Delete();
    }
    EXPECT_EQ(LiveBlocks(), live);
}

TEST(AllocationFailureDocument, LeavesAttributesAndExceptionsThatStandAlone) {
    const std::string name(700, 'n');
    EXPECT_GE(Sweep([&](long n) {
                  CXMLAttribut attribute("old", "value");
                  const auto work = [&] {
                      CXMLAttribut made(name.c_str(), name.c_str());
                      CXMLAttribut copy(made);
                      attribute.SetName(name.c_str());
                      attribute.SetValue(name.c_str());
                      CXMLException exception(3, 6, name.c_str());
                      CXMLException other(exception);
                  };
                  const SAttempt attempt = Attempt(work, n);
                  EXPECT_STREQ(attempt.told, attempt.thrown ? "bad_alloc" : "");
                  const std::string nowName = attribute.GetName();
                  const std::string nowValue = attribute.GetValue();
                  EXPECT_TRUE(nowName == "old" || nowName == name);
                  EXPECT_TRUE(nowValue == "value" || (nowValue == name && nowName == name));
                  return attempt.refused;
              }),
              4);
}
