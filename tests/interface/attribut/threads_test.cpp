// Copies of a tree's attributes on other threads, while the tree is edited and destroyed, and trees
// of several threads with attributes that were assigned to.
#include <norvask/norvask.h>

#include <cstddef>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "support/tree.h"
#include "support/vocabulary.h"

using namespace norvask;
using namespace norvask_test;

namespace {

void CopyOften(const CXMLAttribut& source) {
    for (int i = 0; i < 50; ++i) {
        CXMLAttribut first(source);
        CXMLAttribut second(first);
        second = source;
        if (i % 7 == 0) second.SetValue("another");
        EXPECT_STRNE(first.GetValue(), "");
    }
}

void AssignToManyAttributes() {
    const CXMLAttribut other("other", "value");
    for (int round = 0; round < 5; ++round) {
        const Document document = NewDocumentWithRoot("r");
        CXMLNode* root = document->GetRoot();
        for (int i = 0; i < 200; ++i)
            root->SetAttribute(("a" + std::to_string(i)).c_str(), "v");
        EXPECT_STREQ(root->GetAttributeValue("a5"), "v");
        for (int i = 0; i < 200; i += 3) {
            CXMLAttribut& attribute = *root->GetAttributes()[i];
            attribute = other;
            attribute.SetName(("x" + std::to_string(i)).c_str());
        }
        EXPECT_STREQ(root->GetAttributeValue("x9"), "value");
    }
}

}  // namespace

TEST(AttributeThreads, CopiesComeAndGoWhileTheTreeIsEditedAndDestroyed) {
    const std::size_t ATTRIBUTES = 40;
    for (int round = 0; round < 20; ++round) {
        std::vector<std::thread> threads;
        {
            const Document document = NewDocumentWithRoot("r");
            CXMLNode* root = document->GetRoot();
            for (std::size_t i = 0; i < ATTRIBUTES; ++i)
                root->SetAttribute(("a" + std::to_string(i)).c_str(), "some value");
            for (std::size_t step = 0; step < 150; ++step) {
                CXMLAttribut& attribute = *root->GetAttributes()[step % ATTRIBUTES];
                if (threads.size() == 4) {
                    threads.front().join();
                    threads.erase(threads.begin());
                }
                auto copy = std::make_shared<CXMLAttribut>(attribute);
                threads.emplace_back([copy] { CopyOften(*copy); });
                attribute.SetValue(("v" + std::to_string(step)).c_str());
                if (step % 3 == 0) attribute.SetName(("n" + std::to_string(step)).c_str());
            }
        }
        for (std::thread& thread : threads)
            thread.join();
    }
}

TEST(AttributeThreads, TreesWithAssignedAttributesDoNotMeet) {
    std::vector<std::thread> threads;
    for (int i = 0; i < 3; ++i)
        threads.emplace_back(AssignToManyAttributes);
    for (std::thread& thread : threads)
        thread.join();
}
