// Attributes that come and go by the hundred on an element that once had many.
#include "support/testing.h"

using namespace norvask_test;

TEST(AttributeChurn, FindsEveryAttributeWhileOthersComeAndGo) {
    const Document document = NewDocumentWithRoot("root");
    CXMLNode* root = document->GetRoot();
    const auto set = [&](int number, bool present) {
        root->SetAttribute(("a" + std::to_string(number)).c_str(),
                           present ? std::to_string(number).c_str() : nullptr);
    };
    for (int i = 0; i < 60; ++i)
        set(i, true);
    EXPECT_STREQ(root->GetAttributeValue("a59"), "59");
    for (int i = 20; i < 60; ++i)
        set(i, false);
    for (int round = 100; round < 400; ++round) {
        set(round, true);
        EXPECT_EQ(root->GetAttributeValue(("a" + std::to_string(round)).c_str()),
                  std::to_string(round));
        set(round, false);
        EXPECT_STREQ(root->GetAttributeValue(("a" + std::to_string(round)).c_str()), "");
    }
    for (int i = 400; i < 500; ++i)
        set(i, true);
    ASSERT_EQ(Count(root->GetAttributes()), 120u);
    for (int i = 0; i < 20; ++i)
        EXPECT_EQ(root->GetAttributeValue(("a" + std::to_string(i)).c_str()), std::to_string(i));
    for (int i = 400; i < 500; ++i)
        EXPECT_EQ(root->GetAttributeValue(("a" + std::to_string(i)).c_str()), std::to_string(i));
}
