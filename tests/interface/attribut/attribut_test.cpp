// CXMLAttribut by itself: strings and typed values. Attributes of elements are in
// node/attributes_test.cpp, copies in sharing_test.cpp.
#include <climits>
#include <cmath>
#include <type_traits>

#include "support/testing.h"

using namespace norvask;
using namespace norvask_test;

namespace {}  // namespace

TEST(Attribute, CopiesBothStrings) {
    char name[] = "name";
    char value[] = "value";
    CXMLAttribut attribute(name, value);
    name[0] = value[0] = 'X';
    EXPECT_STREQ(attribute.GetName(), "name");
    EXPECT_STREQ(attribute.GetValue(), "value");
}

TEST(Attribute, StoresAnEmptyStringForNull) {
    CXMLAttribut attribute(nullptr, nullptr);
    EXPECT_STREQ(attribute.GetName(), "");
    EXPECT_STREQ(attribute.GetValue(), "");

    CXMLAttribut filled("n", "v");
    filled.SetName(nullptr);
    filled.SetValue(nullptr);
    EXPECT_STREQ(filled.GetName(), "");
    EXPECT_STREQ(filled.GetValue(), "");
}

TEST(Attribute, TakesAnyNameAndAnyValue) {
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

TEST(Attribute, KeepsStringsOfEveryLength) {
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

TEST(Attribute, AnswersTheSamePointersUntilItChanges) {
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

TEST(Attribute, HasNoVirtualOperations) {
    EXPECT_FALSE(std::is_polymorphic<CXMLAttribut>::value);
    EXPECT_TRUE(std::is_nothrow_copy_constructible<CXMLAttribut>::value);
    EXPECT_TRUE(std::is_nothrow_copy_assignable<CXMLAttribut>::value);
}

TEST(Attribute, StoresDatesInTheFormOfTheirComponents) {
    CXMLAttribut attribute("n", "");
    const struct {
        int year, month, day;
        const char* text;
    } rows[] = {{2024, 5, 17, "2024-05-17"}, {2024, 5, -1, "2024-05"}, {2024, -1, -1, "2024"},
                {-1, 5, 17, "--05-17"},      {-1, 5, -1, "--05"},      {-1, -1, 17, "---17"}};
    for (const auto& row : rows) {
        attribute.SetDateValue(row.year, row.month, row.day);
        EXPECT_STREQ(attribute.GetValue(), row.text);
        int year = 0, month = 0, day = 0;
        EXPECT_TRUE(attribute.GetDateValue(year, month, day)) << row.text;
        EXPECT_EQ(year, row.year) << row.text;
        EXPECT_EQ(month, row.month) << row.text;
        EXPECT_EQ(day, row.day) << row.text;
    }
}

TEST(Attribute, StoresTimesAndDateTimes) {
    CXMLAttribut attribute("n", "");
    int f[6] = {};
    attribute.SetDateTimeValue(2024, 2, 0, 7, 8, 9);
    EXPECT_STREQ(attribute.GetValue(), "2024-02-00T07:08:09");
    EXPECT_TRUE(attribute.GetDateTimeValue(f[0], f[1], f[2], f[3], f[4], f[5]));
    EXPECT_EQ(f[0], 2024);
    EXPECT_EQ(f[1], 2);
    EXPECT_EQ(f[2], 0);
    EXPECT_EQ(f[3], 7);
    EXPECT_EQ(f[4], 8);
    EXPECT_EQ(f[5], 9);

    attribute.SetTimeValue(23, 59, 58);
    EXPECT_STREQ(attribute.GetValue(), "23:59:58");
    EXPECT_TRUE(attribute.GetTimeValue(f[0], f[1], f[2]));
    EXPECT_EQ(f[0], 23);
    EXPECT_EQ(f[1], 59);
    EXPECT_EQ(f[2], 58);
}

TEST(Attribute, StoresNumbers) {
    CXMLAttribut attribute("n", "");
    attribute.SetDoubleValue(1.0 / 3.0);
    EXPECT_STREQ(attribute.GetValue(), "0.33333333333333");
    double number = 0;
    EXPECT_TRUE(attribute.GetDoubleValue(number));
    EXPECT_EQ(number, 0.33333333333333);

    for (const long value : {0L, -1L, 2147483648L, LONG_MAX, LONG_MIN}) {
        attribute.SetLongValue(value);
        EXPECT_EQ(attribute.GetValue(), std::to_string(value));
        long read = 5;
        EXPECT_TRUE(attribute.GetLongValue(read));
        EXPECT_EQ(read, value);
    }
}

TEST(Attribute, StoresTruthAsWordsOrDigits) {
    CXMLAttribut attribute("n", "");
    const struct {
        bool value, numeric;
        const char* text;
    } rows[] = {
        {true, false, "true"}, {false, false, "false"}, {true, true, "1"}, {false, true, "0"}};
    for (const auto& row : rows) {
        attribute.SetBoolValue(row.value, row.numeric);
        EXPECT_STREQ(attribute.GetValue(), row.text);
        bool read = !row.value;
        EXPECT_TRUE(attribute.GetBoolValue(read)) << row.text;
        EXPECT_EQ(read, row.value) << row.text;
    }
}

TEST(Attribute, KeepsItsValueWhenAComponentIsOutOfRange) {
    CXMLAttribut attribute("n", "old");
    const char* before = attribute.GetValue();
    EXPECT_NO_CONVERSION(attribute.SetDateValue(2024, 13, 1));
    EXPECT_NO_CONVERSION(attribute.SetDateValue(2024, -1, 1));
    EXPECT_NO_CONVERSION(attribute.SetDateValue(-1, -1, -1));
    EXPECT_NO_CONVERSION(attribute.SetDateTimeValue(10000, 1, 1, 0, 0, 0));
    EXPECT_NO_CONVERSION(attribute.SetDateTimeValue(2024, 1, 1, 0, 0, 60));
    EXPECT_NO_CONVERSION(attribute.SetTimeValue(24, 0, 0));
    EXPECT_STREQ(attribute.GetValue(), "old");
    EXPECT_TRUE(Same(attribute.GetValue(), before));
}

TEST(Attribute, CopiesATypedValueOutOfTheSharedBuffer) {
    CXMLAttribut first("n", "");
    CXMLAttribut second("n", "");
    first.SetLongValue(1);
    second.SetLongValue(2);
    XMLConvertLong2Text(3);
    EXPECT_STREQ(first.GetValue(), "1");
    EXPECT_STREQ(second.GetValue(), "2");
}

TEST(Attribute, ReadsTypedValuesAsTheParsersDo) {
    int a = 7, b = 7, c = 7, d = 7, e = 7, f = 7;
    double number = 7;
    long whole = 7;
    bool truth = true;

    CXMLAttribut word("n", "word");
    EXPECT_FALSE(word.GetDateValue(a, b, c));
    EXPECT_FALSE(word.GetDateTimeValue(a, b, c, d, e, f));
    EXPECT_FALSE(word.GetTimeValue(a, b, c));
    EXPECT_FALSE(word.GetBoolValue(truth));
    EXPECT_TRUE(truth);
    EXPECT_TRUE(word.GetDoubleValue(number));
    EXPECT_EQ(number, 0.0);
    EXPECT_TRUE(word.GetLongValue(whole));
    EXPECT_EQ(whole, 0);

    CXMLAttribut mixed("n", "12.75kg");
    EXPECT_TRUE(mixed.GetDoubleValue(number));
    EXPECT_EQ(number, 12.75);
    EXPECT_TRUE(mixed.GetLongValue(whole));
    EXPECT_EQ(whole, 12);

    CXMLAttribut partial("n", "10:30");
    a = b = c = 7;
    EXPECT_FALSE(partial.GetTimeValue(a, b, c));
    EXPECT_EQ(a, 10);
    EXPECT_EQ(b, 30);
    EXPECT_EQ(c, 7);

    CXMLAttribut dateTime("n", "2024-05-17T10:00:00");
    EXPECT_TRUE(dateTime.GetDateValue(a, b, c));
    EXPECT_EQ(a, 2024);
    EXPECT_EQ(b, 5);
    EXPECT_EQ(c, 17);
}

TEST(Attribute, AnswersFalseForAnEmptyValueAndLeavesTheOutputs) {
    CXMLAttribut empty("n", "");
    int f[6] = {7, 7, 7, 7, 7, 7};
    double number = 7;
    long whole = 7;
    bool truth = true;
    EXPECT_FALSE(empty.GetDateValue(f[0], f[1], f[2]));
    EXPECT_FALSE(empty.GetDateTimeValue(f[0], f[1], f[2], f[3], f[4], f[5]));
    EXPECT_FALSE(empty.GetTimeValue(f[0], f[1], f[2]));
    EXPECT_FALSE(empty.GetDoubleValue(number));
    EXPECT_FALSE(empty.GetLongValue(whole));
    EXPECT_FALSE(empty.GetBoolValue(truth));
    for (const int field : f)
        EXPECT_EQ(field, 7);
    EXPECT_EQ(number, 7.0);
    EXPECT_EQ(whole, 7);
    EXPECT_TRUE(truth);
}
