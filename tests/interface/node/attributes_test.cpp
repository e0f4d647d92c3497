// The attributes of an element: SetAttribute, GetAttributeValue and GetAttributes.
#include "support/names.h"
#include "support/testing.h"
#include "support/tree_fixture.h"

using namespace norvask_test;

namespace {

class ElementAttributes : public CTreeFixture {
protected:
    void Set(const char* name, const char* value) { m_Root.SetAttribute(name, value); }
    // p, q and so on, with the values 1, 2 and so on.
    void SetFirst(int count) {
        for (int i = 0; i < count; ++i)
            Set(std::string(1, static_cast<char>('p' + i)).c_str(), std::to_string(i + 1).c_str());
    }
    std::string List() { return Attributes(m_Root); }
};

}  // namespace

TEST_F(ElementAttributes, AreNoneAtFirst) {
    ASSERT_NE(m_Root.GetAttributes(), nullptr);
    EXPECT_EQ(m_Root.GetAttributes()[0], nullptr);
    EXPECT_STREQ(m_Root.GetAttributeValue("a"), "");
}

TEST_F(ElementAttributes, KeepTheOrderInWhichTheyWereAdded) {
    Set("q", "1");
    Set("p", "2");
    Set("r", "3");
    EXPECT_EQ(List(), "q=1 p=2 r=3");
    EXPECT_EQ(m_Root.GetAttributes()[3], nullptr);
}

TEST_F(ElementAttributes, KeepTheirPlaceAndTheirObjectWhenTheValueChanges) {
    SetFirst(3);
    CXMLAttribut* first = m_Root.GetAttributes()[0];
    Set("p", "a longer value than before");
    EXPECT_EQ(List(), "p=a longer value than before q=2 r=3");
    EXPECT_EQ(m_Root.GetAttributes()[0], first);
}

TEST_F(ElementAttributes, AreRemovedByAnEmptyValueOrNull) {
    for (const char* nothing : {"", static_cast<const char*>(nullptr)}) {
        for (const char* name : {"p", "q", "r"}) {
            for (const char* all : {"p", "q", "r"})
                Set(all, nullptr);
            SetFirst(3);
            CXMLAttribut* const before[] = {m_Root.GetAttributes()[0], m_Root.GetAttributes()[1],
                                            m_Root.GetAttributes()[2]};
            Set(name, nothing);
            const std::string left = List();
            EXPECT_EQ(left, *name == 'p' ? "q=2 r=3" : *name == 'q' ? "p=1 r=3" : "p=1 q=2");
            EXPECT_EQ(m_Root.GetAttributes()[2], nullptr);
            EXPECT_EQ(m_Root.GetAttributes()[0], *name == 'p' ? before[1] : before[0]);
            EXPECT_EQ(m_Root.GetAttributes()[1], *name == 'r' ? before[1] : before[2]);
            EXPECT_STREQ(m_Root.GetAttributeValue(name), "");
        }
    }
}

TEST_F(ElementAttributes, GoBehindTheOthersWhenAddedAgain) {
    SetFirst(2);
    Set("p", "");
    Set("p", "3");
    EXPECT_EQ(List(), "q=2 p=3");
}

TEST_F(ElementAttributes, AreNotMissedWhenAnAbsentOneIsRemoved) {
    Set("absent", "");
    Set("absent", nullptr);
    EXPECT_EQ(List(), "");
    Set("p", "1");
    Set("absent", "");
    EXPECT_EQ(List(), "p=1");
}

TEST_F(ElementAttributes, AreFoundByTheirExactName) {
    Set("name", "1");
    Set("Name", "2");
    Set("n\xC3\xA4me", "3");
    EXPECT_STREQ(m_Root.GetAttributeValue("name"), "1");
    EXPECT_STREQ(m_Root.GetAttributeValue("Name"), "2");
    EXPECT_STREQ(m_Root.GetAttributeValue("n\xC3\xA4me"), "3");
    for (const char* other : {"nam", "name ", "names", "NAME", " name", "", "n\xC3\x84me"})
        EXPECT_STREQ(m_Root.GetAttributeValue(other), "") << other;
}

TEST_F(ElementAttributes, AnswerAnEmptyStringForNull) {
    Set("p", "1");
    ASSERT_NE(m_Root.GetAttributeValue(nullptr), nullptr);
    EXPECT_STREQ(m_Root.GetAttributeValue(nullptr), "");
}

TEST_F(ElementAttributes, ShowTheirOwnValue) {
    Set("p", "1");
    EXPECT_TRUE(Same(m_Root.GetAttributeValue("p"), m_Root.GetAttributes()[0]->GetValue()));
}

TEST_F(ElementAttributes, AreCopiesOfTheStringsGiven) {
    char name[] = "p";
    char value[] = "1";
    Set(name, value);
    name[0] = 'x';
    value[0] = 'x';
    EXPECT_EQ(List(), "p=1");
}

TEST_F(ElementAttributes, TakeAnyValueAsItIs) {
    for (const char* value : {" ", "<&>'\"", "\t\r\n", "\x01", "\xFF\xC3", "\xC3\xBC", "a=b"}) {
        Set("v", value);
        EXPECT_STREQ(m_Root.GetAttributeValue("v"), value);
    }
}

TEST_F(ElementAttributes, TakeEveryXmlName) {
    for (const std::string& name : ValidNames()) {
        Set(name.c_str(), "v");
        EXPECT_STREQ(m_Root.GetAttributeValue(name.c_str()), "v") << name;
        EXPECT_EQ(List(), name + "=v");
        Set(name.c_str(), "");
        EXPECT_EQ(List(), "");
    }
}

TEST_F(ElementAttributes, StayUnchangedWhenTheNameIsInvalid) {
    Set("p", "1");
    for (const std::string& name : InvalidNames()) {
        for (const char* value : {"v", "", static_cast<const char*>(nullptr)})
            EXPECT_INVALID_NAME(Set(name.c_str(), value), name);
        EXPECT_EQ(List(), "p=1") << name;
    }
    for (const char* value : {"v", "", static_cast<const char*>(nullptr)})
        EXPECT_INVALID_NAME(Set(nullptr, value), "");
    EXPECT_EQ(List(), "p=1");
}

TEST_F(ElementAttributes, MayBeEmptiedThroughTheAttributeItself) {
    SetFirst(2);
    m_Root.GetAttributes()[0]->SetValue("");
    EXPECT_EQ(List(), "p= q=2");
    EXPECT_STREQ(m_Root.GetAttributeValue("p"), "");
    EXPECT_EQ(Body(), "<r p=\"\" q=\"2\"/>");
    Set("p", "3");
    EXPECT_EQ(List(), "p=3 q=2");
    m_Root.GetAttributes()[0]->SetValue("");
    Set("p", "");
    EXPECT_EQ(List(), "q=2");
}

TEST_F(ElementAttributes, AreFoundUnderTheNameGivenThroughTheAttributeItself) {
    SetFirst(2);
    m_Root.GetAttributes()[0]->SetName("renamed");
    EXPECT_STREQ(m_Root.GetAttributeValue("p"), "");
    EXPECT_STREQ(m_Root.GetAttributeValue("renamed"), "1");
    Set("renamed", "3");
    EXPECT_EQ(List(), "renamed=3 q=2");
    Set("p", "4");
    EXPECT_EQ(List(), "renamed=3 q=2 p=4");
    Set("renamed", "");
    EXPECT_EQ(List(), "q=2 p=4");
}

TEST_F(ElementAttributes, AnswerTheFirstOfTwoWithOneName) {
    SetFirst(2);
    m_Root.GetAttributes()[1]->SetName("p");
    EXPECT_STREQ(m_Root.GetAttributeValue("p"), "1");
    Set("p", "3");
    EXPECT_EQ(List(), "p=3 p=2");
    Set("p", "");
    EXPECT_EQ(List(), "p=2");
    Set("p", "");
    EXPECT_EQ(List(), "");
}

TEST_F(ElementAttributes, MayBeGivenAnInvalidNameWhichSavingRefuses) {
    SetFirst(2);
    for (const char* name : {"", "1a", "a b"}) {
        m_Root.GetAttributes()[1]->SetName(name);
        EXPECT_STREQ(m_Root.GetAttributes()[1]->GetName(), name);
        std::ostringstream out;
        EXPECT_INVALID_NAME(m_Document->Save(out, false), name);
        EXPECT_EQ(out.str(), DECLARATION + "<r p=\"1\"");
    }
    EXPECT_STREQ(m_Root.GetAttributeValue("a b"), "2");
    m_Root.GetAttributes()[1]->SetName(nullptr);
    EXPECT_STREQ(m_Root.GetAttributeValue(""), "2");
    EXPECT_STREQ(m_Root.GetAttributeValue(nullptr), "");
}

TEST_F(ElementAttributes, CarryTypedValues) {
    Set("when", "x");
    m_Root.GetAttributes()[0]->SetDateValue(2024, 5, 17);
    EXPECT_STREQ(m_Root.GetAttributeValue("when"), "2024-05-17");
}

TEST_F(ElementAttributes, StayInOrderThroughManyChanges) {
    std::string expected;
    for (int i = 0; i < 100; ++i)
        Set(("a" + std::to_string(i)).c_str(), "v");
    for (int i = 0; i < 100; ++i) {
        if (i % 3 == 0) Set(("a" + std::to_string(i)).c_str(), "");
        if (i % 3 == 1) Set(("a" + std::to_string(i)).c_str(), "w");
    }
    for (int i = 0; i < 100; ++i) {
        if (i % 3 == 0) continue;
        expected += (expected.empty() ? "a" : " a") + std::to_string(i);
        expected += i % 3 == 1 ? "=w" : "=v";
    }
    EXPECT_EQ(List(), expected);
    EXPECT_EQ(Count(m_Root.GetAttributes()), 66u);
}
