// Failing allocations that need a tree of a certain state, or an object of a certain kind.
#include <new>
#include <string>
#include <vector>

#include "allocation/sweep.h"
#include "support/derived.h"
#include "support/testing.h"

using namespace norvask_test;

// An element with very many attributes has an index of them; without memory for that it does
// without.
TEST(AllocationFailureRare, DoesNotKeepAnAttributeFromBeingFound) {
    int failing = 1;
    for (bool failed = true; failed; ++failing) {
        SCOPED_TRACE("allocation " + std::to_string(failing));
        const Document document = NewDocumentWithRoot("root");
        CXMLNode* root = document->GetRoot();
        std::vector<std::string> names;
        for (int i = 0; i < 180; ++i)
            names.push_back("a" + std::to_string(i));
        const std::string renamed = "renamed";
        CFailAllocation fail(failing, Callers::Everything, Failing::One);
        for (std::string& name : names) {
            try {
                root->SetAttribute(name.c_str(), "v");
                CXMLAttribut** attributes = root->GetAttributes();
                if (name == "a150") attributes[3]->SetName(renamed.c_str());
            } catch (const std::bad_alloc&) {
                name.clear();
            }
        }
        failed = fail.Failed();
        fail.Disarm();
        const std::string saved = Saved(document, false);
        for (const std::string& name : names) {
            if (name.empty()) continue;
            const bool isThere = saved.find(" " + name + "=") != std::string::npos;
            EXPECT_STREQ(root->GetAttributeValue(name.c_str()), isThere ? "v" : "");
        }
    }
    EXPECT_GT(failing, 20);
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
