// What threads may do at once: work on documents of their own, typed values included, hold copies
// of attributes and exceptions, and save one document together.
#include <thread>

#include "support/testing.h"
#include "support/threads.h"

using namespace norvask_test;

namespace {

// Loads, edits, queries, copies and saves; nothing of it goes through the shared buffers.
std::string Worked(int number) {
    const std::string id = std::to_string(number);
    const Document document = Load("<r a='1'><p>text</p><q/><![CDATA[QUJD]]></r>");
    CXMLNode* root = document->GetRoot();
    for (int i = 0; i < 50; ++i)
        root->SetAttribute(("n" + std::to_string(i)).c_str(), id.c_str());
    for (int i = 0; i < 50; ++i)
        root->GetAttributes()[i]->SetName(("m" + std::to_string(i)).c_str());
    for (int i = 0; i < 50; ++i)
        root->SetAttribute(("m" + std::to_string(i)).c_str(), "");
    root->CreateTextChild("")->SetDateTimeText(2000 + number, 1, 2, 3, 4, 5);
    root->CreateTextChild("")->SetDoubleText(number + 0.5);
    root->GetAttributes()[0]->SetDateValue(number, 1, 2);
    CXMLAttribut own("long", "");
    own.SetLongValue(number);
    root->SetAttribute("long", own.GetValue());
    root->CopyChild(root, root->GetFirstChild());
    root->GetNodes("r/p")[0]->SetTextChildValue(id.c_str());
    try {
        root->SetTagName("1a");
    } catch (CXMLException& e) {
        CXMLException kept(0, "");
        kept = e;
        root->CreateTextChild(kept.GetMessage());
    }
    const Document clone(document->Clone());
    return SavedBody(*clone);
}

}  // namespace

TEST(Threads, WorkOnDocumentsOfTheirOwn) {
    std::vector<std::string> expected;
    for (int number = 0; number < THREADS; ++number)
        expected.push_back(Worked(number));
    OnThreads([&](int number) {
        for (int round = 0; round < 100; ++round)
            ASSERT_EQ(Worked(number), expected[static_cast<std::size_t>(number)]);
    });
}

TEST(Threads, SaveOneDocumentTogether) {
    const Document document = Load("<r a='1'><p>text \xC3\xBC</p><q/><![CDATA[QUJD]]></r>");
    const std::string plain = Saved(document, false);
    const std::string formatted = Saved(document, true);
    OnThreads([&](int) {
        for (int round = 0; round < 300; ++round) {
            ASSERT_EQ(Saved(document, false), plain);
            ASSERT_EQ(Saved(document, true), formatted);
        }
    });
}

TEST(Threads, HoldCopiesOfAttributesOfADocumentThatGoesOnChanging) {
    Document document = NewDocumentWithRoot("r");
    CXMLNode* root = document->GetRoot();
    root->SetAttribute("name", "a value that is a good deal longer than a pointer");
    std::vector<CXMLAttribut> copies(THREADS, *root->GetAttributes()[0]);
    std::thread owner([&] {
        for (int i = 0; i < 3000; ++i) {
            root->SetAttribute("other", std::to_string(i).c_str());
            root->GetAttributes()[0]->SetName(i % 2 ? "name" : "renamed");
            CXMLAttribut copy(*root->GetAttributes()[0]);
            root->CreateChild(("c" + std::to_string(i)).c_str(), nullptr);
        }
        document.reset();
    });
    OnThreads([&](int number) {
        CXMLAttribut& mine = copies[static_cast<std::size_t>(number)];
        for (int i = 0; i < 3000; ++i) {
            CXMLAttribut copy(mine);
            CXMLAttribut assigned("a", "b");
            assigned = copy;
            copy.SetName("changed");
            mine = assigned;
        }
    });
    owner.join();
    for (CXMLAttribut& copy : copies) {
        EXPECT_STREQ(copy.GetName(), "name");
        EXPECT_STREQ(copy.GetValue(), "a value that is a good deal longer than a pointer");
    }
}

TEST(Threads, HoldExceptionsThatShareATextWithOthers) {
    CXMLException source(1, "a text that several threads show");
    CXMLException shared[THREADS] = {CXMLException(0, ""), CXMLException(0, ""),
                                     CXMLException(0, ""), CXMLException(0, "")};
    for (CXMLException& mine : shared)
        mine = source;
    OnThreads([&](int number) {
        CXMLException& mine = shared[number];
        for (int i = 0; i < 20000; ++i) {
            CXMLException other(0, "other");
            other = mine;
            mine = other;
        }
    });
    for (CXMLException& mine : shared) {
        EXPECT_TRUE(Same(mine.GetMessage(), source.GetMessage()));
        EXPECT_STREQ(mine.GetMessage(), "a text that several threads show");
    }
}

TEST(Threads, ReadValuesAtOnce) {
    OnThreads([](int number) {
        const std::string date = "20" + std::to_string(10 + number) + "-05-17";
        for (int i = 0; i < 2000; ++i) {
            int year = 0, month = 0, day = 0;
            double value = 0;
            ASSERT_TRUE(CXMLSaxHandler::GetDate(date.c_str(), year, month, day));
            ASSERT_EQ(year, 2010 + number);
            ASSERT_TRUE(CXMLSaxHandler::GetDouble("0.25", value));
            ASSERT_EQ(value, 0.25);
        }
    });
}
