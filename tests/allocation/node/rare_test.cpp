// Failing allocations that need a tree of a certain state, or an object of a certain kind.
#include <new>

#include "allocation/sweep.h"
#include "support/derived.h"
#include "support/testing.h"

using namespace norvask_test;

TEST(AllocationFailureRare, DoesNotKeepAnAttributeFromBeingFound) {
    const Document document = NewDocumentWithRoot("root");
    CXMLNode* root = document->GetRoot();
    // So many that the index of them does not fit where the tree has memory.
    for (int i = 0; i < 5000; ++i)
        root->SetAttribute(("a" + std::to_string(i)).c_str(), "v");
    CXMLAttribut* renamed = root->GetAttributes()[4999];
    renamed->SetName("renamed");
    CFailAllocation fail(1, Callers::Everything, Failing::AllFromThere);
    const std::string found = root->GetAttributeValue("renamed");
    const bool failed = fail.Failed();
    fail.Disarm();
    EXPECT_TRUE(failed);
    EXPECT_EQ(found, "v");
    EXPECT_STREQ(root->GetAttributeValue("a4998"), "v");
}

TEST(AllocationFailureRare, LeavesNothingOfATextOfWhichTheNodeDoesNotFit) {
    const Document document = NewDocumentWithRoot("root");
    CXMLNode* root = document->GetRoot();
    int failures = 0;
    for (std::size_t i = 0; i < 4000; ++i) {
        const std::string text(1 + i % 61, 'x');
        CFailAllocation fail(1, Callers::Everything, Failing::One);
        try {
            root->CreateTextChild(text.c_str());
        } catch (const std::bad_alloc&) {
            ++failures;
        }
        fail.Disarm();
        if (i % 3 == 0) root->DeleteChild(root->GetFirstChild());
    }
    EXPECT_GT(failures, 5);
    root->CreateTextChild("works");
    EXPECT_NE(Saved(document, false).find("works"), std::string::npos);
}

TEST(AllocationFailureRare, LeavesNothingOfAnElementOfADerivedClass) {
    const std::string longName(100000, 'n');
    EXPECT_GT(SweepWork([&] { CElementProbe probe(longName.c_str()); }), 1);
}

TEST(AllocationFailureRare, LeavesNothingOfATextThatIsNoUtf16) {
    const std::u16string odd = u"a\xD800z";
    CWideCharToString converter;
    delete[] converter.Convert(odd.c_str(), odd.size());
    EXPECT_GT(SweepWork([&] {
                  const std::unique_ptr<char[]> narrow(converter.Convert(odd.c_str(), odd.size()));
              }),
              1);
}
