// CXMLAttribut by itself: strings and typed values. Attributes of elements are in
// node/attributes_test.cpp, copies in sharing_test.cpp.
#include <type_traits>

#include "support/testing.h"
#include "support/typed_values.h"

using namespace norvask_test;

namespace {

const STypedCalls<CXMLAttribut> CALLS = {
    &CXMLAttribut::GetValue,       &CXMLAttribut::SetValue,         &CXMLAttribut::GetDateValue,
    &CXMLAttribut::SetDateValue,   &CXMLAttribut::GetDateTimeValue, &CXMLAttribut::SetDateTimeValue,
    &CXMLAttribut::GetTimeValue,   &CXMLAttribut::SetTimeValue,     &CXMLAttribut::GetDoubleValue,
    &CXMLAttribut::SetDoubleValue, &CXMLAttribut::GetLongValue,     &CXMLAttribut::SetLongValue,
    &CXMLAttribut::GetBoolValue,   &CXMLAttribut::SetBoolValue};

class Attribute : public ::testing::Test {
protected:
    CXMLAttribut m_Attribute{"n", "old"};
    CTypedValue<CXMLAttribut> m_Typed{m_Attribute, CALLS};
};

}  // namespace

namespace {}  // namespace

TEST_F(Attribute, CopiesBothStrings) {
    char name[] = "name";
    char value[] = "value";
    CXMLAttribut attribute(name, value);
    name[0] = value[0] = 'X';
    EXPECT_STREQ(attribute.GetName(), "name");
    EXPECT_STREQ(attribute.GetValue(), "value");
}

TEST_F(Attribute, StoresAnEmptyStringForNull) {
    CXMLAttribut attribute(nullptr, nullptr);
    EXPECT_STREQ(attribute.GetName(), "");
    EXPECT_STREQ(attribute.GetValue(), "");

    CXMLAttribut filled("n", "v");
    filled.SetName(nullptr);
    filled.SetValue(nullptr);
    EXPECT_STREQ(filled.GetName(), "");
    EXPECT_STREQ(filled.GetValue(), "");
}

TEST_F(Attribute, TakesAnyNameAndAnyValue) {
    const std::string texts[] = {
        "",      "1a",   " ",        "a b",      "<&>'\"",           "\t\r\n",
        "\x01x", "\xFF", "\xC3\xBC", "a=\"b\"/", std::string(5, '%')};
    for (const std::string& text : texts) {
        CXMLAttribut made(text.c_str(), text.c_str());
        EXPECT_EQ(made.GetName(), text);
        EXPECT_EQ(made.GetValue(), text);
        CXMLAttribut changed("n", "v");
        changed.SetName(text.c_str());
        changed.SetValue(text.c_str());
        EXPECT_EQ(changed.GetName(), text);
        EXPECT_EQ(changed.GetValue(), text);
    }
}

TEST_F(Attribute, KeepsStringsOfEveryLength) {
    for (std::size_t length = 0; length < 300; ++length) {
        const std::string name(length, 'n');
        const std::string value(length, 'v');
        CXMLAttribut attribute(name.c_str(), value.c_str());
        ASSERT_EQ(attribute.GetName(), name) << "length " << length;
        ASSERT_EQ(attribute.GetValue(), value) << "length " << length;
    }
    const std::string large(1000000, 'x');
    CXMLAttribut attribute(large.c_str(), "v");
    attribute.SetValue(large.c_str());
    EXPECT_EQ(attribute.GetName(), large);
    EXPECT_EQ(attribute.GetValue(), large);
}

TEST_F(Attribute, AnswersTheSamePointersUntilItChanges) {
    CXMLAttribut attribute("n", "v");
    const char* name = attribute.GetName();
    const char* value = attribute.GetValue();
    EXPECT_TRUE(Same(attribute.GetName(), name));
    EXPECT_TRUE(Same(attribute.GetValue(), value));
    attribute.SetValue("other");
    EXPECT_TRUE(Same(attribute.GetName(), name));
    attribute.SetName("another");
    EXPECT_STREQ(attribute.GetValue(), "other");
}

TEST_F(Attribute, HasNoVirtualOperations) {
    EXPECT_FALSE(std::is_polymorphic<CXMLAttribut>::value);
    EXPECT_TRUE(std::is_nothrow_copy_constructible<CXMLAttribut>::value);
    EXPECT_TRUE(std::is_nothrow_copy_assignable<CXMLAttribut>::value);
}

TEST_F(Attribute, StoresDatesInTheFormOfTheirComponents) { m_Typed.ExpectDatesStored(); }

TEST_F(Attribute, StoresTimesAndDateTimes) { m_Typed.ExpectTimesStored(); }

TEST_F(Attribute, StoresNumbers) {
    m_Typed.ExpectDoubleStored(1.0 / 3.0, "0.33333333333333", 0.33333333333333);
    m_Typed.ExpectLongsStored();
}

TEST_F(Attribute, StoresTruthAsWordsOrDigits) { m_Typed.ExpectTruthStored(); }

TEST_F(Attribute, KeepsItsValueWhenAComponentIsOutOfRange) {
    m_Typed.ExpectKeptWhenOutOfRange();
    EXPECT_STREQ(m_Attribute.GetValue(), "old");
}

TEST_F(Attribute, CopiesATypedValueOutOfTheSharedBuffer) {
    CXMLAttribut first("n", "");
    CXMLAttribut second("n", "");
    first.SetLongValue(1);
    second.SetLongValue(2);
    XMLConvertLong2Text(3);
    EXPECT_STREQ(first.GetValue(), "1");
    EXPECT_STREQ(second.GetValue(), "2");
}

TEST_F(Attribute, ReadsTypedValuesAsTheParsersDo) { m_Typed.ExpectReadAsTheParsersDo(); }

TEST_F(Attribute, AnswersFalseForAnEmptyValueAndLeavesTheOutputs) {
    m_Typed.ExpectNothingInAnEmptyText();
}
