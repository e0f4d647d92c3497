// The reading half of convert.h and the parsers of CXMLSaxHandler, which are the same functions.
#include <array>
#include <cfloat>
#include <climits>
#include <cmath>

#include "support/testing.h"

using namespace norvask_test;

namespace {

// What the outputs hold before a call; a row shows it where nothing may be stored.
constexpr int OLD = 777;

struct SDateRow {
    const char* text;
    bool answer;
    std::array<int, 3> fields;
};

const SDateRow DATES[] = {
    {"2024-05-17", true, {2024, 5, 17}},
    {"2024-05", true, {2024, 5, -1}},
    {"2024", true, {2024, -1, -1}},
    {"--05-17", true, {-1, 5, 17}},
    {"--05", true, {-1, 5, -1}},
    {"---17", true, {-1, -1, 17}},
    // What follows the last field is not looked at, but a field more is a field.
    {"2024-05-17T10:00:00", true, {2024, 5, 17}},
    {"2024-05-17Z", true, {2024, 5, 17}},
    {"2024-05x", true, {2024, 5, -1}},
    {"2024-05-", true, {2024, 5, -1}},
    {"2024-", true, {2024, -1, -1}},
    {"2024-x", true, {2024, -1, -1}},
    {"2024x", true, {2024, -1, -1}},
    {"2024.5", true, {2024, -1, -1}},
    {"--05-", true, {-1, 5, -1}},
    {"--05-x", true, {-1, 5, -1}},
    {"---17x", true, {-1, -1, 17}},
    // No ranges, no widths.
    {"0-0-0", true, {0, 0, 0}},
    {"99999-99-99", true, {99999, 99, 99}},
    {"1-2-3", true, {1, 2, 3}},
    {"0000002024-00005-00017", true, {2024, 5, 17}},
    // Blanks in front of numbers, but not in front of separators.
    {" 2024-05-17", true, {2024, 5, 17}},
    {"\t\r\n 2024- 05-\t17", true, {2024, 5, 17}},
    {"2024 -05-17", true, {2024, -1, -1}},
    {"2024-05 -17", true, {2024, 5, -1}},
    {"-- 05- 17", true, {-1, 5, 17}},
    {"--- 17", true, {-1, -1, 17}},
    {" --05-17", false, {0, 0, 0}},
    {" ---17", false, {0, 0, 0}},
    // Signs.
    {"+2024-+05-+17", true, {2024, 5, 17}},
    {"-5-3-2", true, {-5, 3, 2}},
    {"-5-3", true, {-5, 3, -1}},
    {"-5", true, {-5, -1, -1}},
    {"2024--05", true, {2024, -5, -1}},
    {"2024--05--17", true, {2024, -5, -17}},
    {"---17-3", true, {-1, -17, 3}},  // a sign and two fields come before three dashes
    {"----5", true, {-1, -1, -5}},
    {"--+5-+6", true, {-1, 5, 6}},
    // The nearest int of a number that is too large.
    {"99999999999-99999999999-99999999999", true, {INT_MAX, INT_MAX, INT_MAX}},
    {"-99999999999-1-1", true, {INT_MIN, 1, 1}},
    {"2147483647-1-1", true, {INT_MAX, 1, 1}},
    {"2147483645--2147483646", true, {INT_MAX - 2, INT_MIN + 2, -1}},
    {"-2147483648-1-1", true, {INT_MIN, 1, 1}},
    {"2147483648", true, {INT_MAX, -1, -1}},
    {"99999999999999999999999999999999", true, {INT_MAX, -1, -1}},
    // Nothing to read; the outputs may then hold anything, except where the text is empty.
    {"", false, {OLD, OLD, OLD}},
    {" ", false, {0, 0, 0}},
    {"abc", false, {0, 0, 0}},
    {"-", false, {0, 0, 0}},
    {"--", false, {0, 0, 0}},
    {"---", false, {0, 0, 0}},
    {"-----5", false, {0, 0, 0}},
    {"x2024", false, {0, 0, 0}},
    {"+-5", false, {0, 0, 0}},
};

struct SDateTimeRow {
    const char* text;
    bool answer;
    std::array<int, 6> fields;
};

const SDateTimeRow DATE_TIMES[] = {
    {"2024-05-17T10:30:05", true, {2024, 5, 17, 10, 30, 5}},
    {"2024-05-17T10:30:05Z", true, {2024, 5, 17, 10, 30, 5}},
    {"2024-05-17T10:30:05.25+01:00", true, {2024, 5, 17, 10, 30, 5}},
    {" 2024-05-17T10:30:05", true, {2024, 5, 17, 10, 30, 5}},
    {"2024-05-17T 10: 30:\n5", true, {2024, 5, 17, 10, 30, 5}},
    {"-5-1-2T3:4:5", true, {-5, 1, 2, 3, 4, 5}},
    {"+1-+2-+3T+4:+5:+6", true, {1, 2, 3, 4, 5, 6}},
    {"99-99-99T99:99:99", true, {99, 99, 99, 99, 99, 99}},
    {"1-1-1T-1:-2:-3", true, {1, 1, 1, -1, -2, -3}},
    {"1-1-1T1:1:99999999999", true, {1, 1, 1, 1, 1, INT_MAX}},
    // The fields read so far stay.
    {"2024-05-17T10:30", false, {2024, 5, 17, 10, 30, OLD}},
    {"2024-05-17T10:30:", false, {2024, 5, 17, 10, 30, OLD}},
    {"2024-05-17T10", false, {2024, 5, 17, 10, OLD, OLD}},
    {"2024-05-17T", false, {2024, 5, 17, OLD, OLD, OLD}},
    {"2024-05-17", false, {2024, 5, 17, OLD, OLD, OLD}},
    {"2024-05-17t10:30:05", false, {2024, 5, 17, OLD, OLD, OLD}},
    {"2024-05-17 10:30:05", false, {2024, 5, 17, OLD, OLD, OLD}},
    {"2024-05-17 T10:30:05", false, {2024, 5, 17, OLD, OLD, OLD}},
    {"2024-05", false, {2024, 5, OLD, OLD, OLD, OLD}},
    {"2024", false, {2024, OLD, OLD, OLD, OLD, OLD}},
    {"--05-17T10:30:05", false, {OLD, OLD, OLD, OLD, OLD, OLD}},
    {"10:30:05", false, {10, OLD, OLD, OLD, OLD, OLD}},
    {"abc", false, {OLD, OLD, OLD, OLD, OLD, OLD}},
    {"", false, {OLD, OLD, OLD, OLD, OLD, OLD}},
};

const SDateRow TIMES[] = {
    {"10:30:05", true, {10, 30, 5}},    {"10:30:05Z", true, {10, 30, 5}},
    {"10:30:05.5", true, {10, 30, 5}},  {"1:2:3", true, {1, 2, 3}},
    {"99:99:99", true, {99, 99, 99}},   {"-1:-2:+3", true, {-1, -2, 3}},
    {" 10: 30:\t5", true, {10, 30, 5}}, {"99999999999:0:-99999999999", true, {INT_MAX, 0, INT_MIN}},
    {"10:30", false, {10, 30, OLD}},    {"10:30:", false, {10, 30, OLD}},
    {"10:30:x", false, {10, 30, OLD}},  {"10 :30:05", false, {10, OLD, OLD}},
    {"10", false, {10, OLD, OLD}},      {"2024-05-17T10:30:05", false, {2024, OLD, OLD}},
    {"x", false, {OLD, OLD, OLD}},      {":1:2", false, {OLD, OLD, OLD}},
    {"", false, {OLD, OLD, OLD}},
};

struct SDoubleRow {
    const char* text;
    double value;
};

const SDoubleRow DOUBLES[] = {
    {"1.5", 1.5},
    {"-1.5", -1.5},
    {"+1.5", 1.5},
    {" \t\r\n1.5", 1.5},
    {"1.5abc", 1.5},
    {"1.5 2", 1.5},
    {"1,5", 1.0},
    {"1.000,5", 1.0},
    {".5", 0.5},
    {"-.5", -0.5},
    {"5.", 5.0},
    {"1e3", 1000.0},
    {"1E3", 1000.0},
    {"1e+3", 1000.0},
    {"1e-3", 0.001},
    {"1e", 1.0},
    {"1e+", 1.0},
    {"1ex", 1.0},
    {"1.5.5", 1.5},
    {"0.1", 0.1},
    {"0.1000000000000000055511151231257827", 0.1},
    {"123456789012345678901234567890", 123456789012345678901234567890.0},
    {"1.7976931348623157e308", DBL_MAX},
    {"4.9406564584124654e-324", 4.9406564584124654e-324},
    {"1e-400", 0.0},
    {"1e400", HUGE_VAL},
    {"-1e400", -HUGE_VAL},
    {"-0", -0.0},
    // No numbers, which read as 0.
    {"abc", 0.0},
    {" ", 0.0},
    {".", 0.0},
    {"-", 0.0},
    {"--1", 0.0},
    {"- 1", 0.0},
    {"+-1", 0.0},
    {"e5", 0.0},
    {".e5", 0.0},
    {"0x10", 0.0},
    {"0x1p3", 0.0},
    {"inf", 0.0},
    {"-inf", 0.0},
    {"infinity", 0.0},
    {"INF", 0.0},
    {"nan", 0.0},
    {"NaN", 0.0},
    {"-nan", 0.0},
    {"nan(1)", 0.0},
};

struct SLongRow {
    const char* text;
    long value;
};

const SLongRow LONGS[] = {
    {"12", 12},
    {"-12", -12},
    {"+12", 12},
    {" \t\r\n12", 12},
    {"12abc", 12},
    {"12 13", 12},
    {"12.9", 12},
    {"1e3", 1},
    {"010", 10},
    {"0x10", 0},
    {"5-3", 5},
    {"2147483647", 2147483647L},
    {"-2147483648", -2147483647L - 1},
#if LONG_MAX > 2147483647L
    {"2147483648", 2147483648L},
    {"-2147483649", -2147483649L},
    {"9223372036854775805", LONG_MAX - 2},
    {"-9223372036854775806", LONG_MIN + 2},
    {"9223372036854775807", LONG_MAX},
    {"-9223372036854775808", LONG_MIN},
#endif
    {"9223372036854775808", LONG_MAX},
    {"-9223372036854775809", LONG_MIN},
    {"99999999999999999999999999", LONG_MAX},
    {"-99999999999999999999999999", LONG_MIN},
    {"0000000000000000000000000000007", 7},
    {"abc", 0},
    {" ", 0},
    {"-", 0},
    {"--5", 0},
    {"- 5", 0},
    {"+-5", 0},
    {"\xC3\xBC", 0},
};

}  // namespace

TEST(ValueReading, ReadsADateInTheFirstFormThatFits) {
    for (const auto read : {&CXMLSaxHandler::GetDate, &XMLConvertText2Date}) {
        for (const SDateRow& row : DATES) {
            SCOPED_TRACE(Quoted(row.text));
            std::array<int, 3> f = {OLD, OLD, OLD};
            EXPECT_EQ(read(row.text, f[0], f[1], f[2]), row.answer);
            if (row.answer || !*row.text) {
                EXPECT_EQ(f, row.fields);
            }
        }
    }
}

TEST(ValueReading, ReadsADateTimeAndKeepsTheFieldsReadSoFar) {
    for (const auto read : {&CXMLSaxHandler::GetDateTime, &XMLConvertText2DateTime}) {
        for (const SDateTimeRow& row : DATE_TIMES) {
            SCOPED_TRACE(Quoted(row.text));
            std::array<int, 6> f = {OLD, OLD, OLD, OLD, OLD, OLD};
            EXPECT_EQ(read(row.text, f[0], f[1], f[2], f[3], f[4], f[5]), row.answer);
            EXPECT_EQ(f, row.fields);
        }
    }
}

TEST(ValueReading, ReadsATimeAndKeepsTheFieldsReadSoFar) {
    for (const auto read : {&CXMLSaxHandler::GetTime, &XMLConvertText2Time}) {
        for (const SDateRow& row : TIMES) {
            SCOPED_TRACE(Quoted(row.text));
            std::array<int, 3> f = {OLD, OLD, OLD};
            EXPECT_EQ(read(row.text, f[0], f[1], f[2]), row.answer);
            EXPECT_EQ(f, row.fields);
        }
    }
}

TEST(ValueReading, ReadsTheDecimalNumberThatATextBeginsWith) {
    for (const auto read : {&CXMLSaxHandler::GetDouble, &XMLConvertText2Double}) {
        for (const SDoubleRow& row : DOUBLES) {
            double value = OLD;
            EXPECT_TRUE(read(row.text, value)) << Quoted(row.text);
            EXPECT_EQ(value, row.value) << Quoted(row.text);
        }
    }
    double value = 1;
    EXPECT_TRUE(XMLConvertText2Double("-0", value));
    EXPECT_TRUE(std::signbit(value));
}

TEST(ValueReading, ReadsTheDecimalIntegerThatATextBeginsWith) {
    for (const auto read : {&CXMLSaxHandler::GetLong, &XMLConvertText2Long}) {
        for (const SLongRow& row : LONGS) {
            long value = OLD;
            EXPECT_TRUE(read(row.text, value)) << Quoted(row.text);
            EXPECT_EQ(value, row.value) << Quoted(row.text);
        }
    }
}

TEST(ValueReading, ReadsTruthFromFourTextsOnly) {
    for (const auto read : {&CXMLSaxHandler::GetBool, &XMLConvertText2Bool}) {
        for (const bool before : {true, false}) {
            for (const char* text : {"true", "1", "false", "0"}) {
                bool value = before;
                EXPECT_TRUE(read(text, value)) << text;
                EXPECT_EQ(value, *text == 't' || *text == '1') << text;
            }
            for (const char* text :
                 {"TRUE", "True", " true", "true ", "tru", "truex", "false ", "FALSE", "yes", "no",
                  "2",    "01",   "10",    "00",    "+1",  " 1",    "t",      "f",     " ",   ""}) {
                bool value = before;
                EXPECT_FALSE(read(text, value)) << Quoted(text);
                EXPECT_EQ(value, before) << Quoted(text);
            }
        }
    }
}

TEST(ValueReading, LeavesTheOutputsAloneForNull) {
    int a = OLD, b = OLD, c = OLD, d = OLD, e = OLD, f = OLD;
    double number = 0.5;
    long whole = 5;
    bool truth = true;
    for (const auto read : {&CXMLSaxHandler::GetDate, &XMLConvertText2Date,
                            &CXMLSaxHandler::GetTime, &XMLConvertText2Time})
        EXPECT_FALSE(read(nullptr, a, b, c));
    for (const auto read : {&CXMLSaxHandler::GetDateTime, &XMLConvertText2DateTime})
        EXPECT_FALSE(read(nullptr, a, b, c, d, e, f));
    for (const auto read : {&CXMLSaxHandler::GetDouble, &XMLConvertText2Double})
        EXPECT_FALSE(read(nullptr, number));
    for (const auto read : {&CXMLSaxHandler::GetLong, &XMLConvertText2Long})
        EXPECT_FALSE(read(nullptr, whole));
    for (const auto read : {&CXMLSaxHandler::GetBool, &XMLConvertText2Bool})
        EXPECT_FALSE(read(nullptr, truth));
    for (const int field : {a, b, c, d, e, f})
        EXPECT_EQ(field, OLD);
    EXPECT_EQ(number, 0.5);
    EXPECT_EQ(whole, 5);
    EXPECT_TRUE(truth);
}

TEST(ValueReading, LeavesTheOutputsAloneForAnEmptyText) {
    double number = 0.5;
    long whole = 5;
    EXPECT_FALSE(CXMLSaxHandler::GetDouble("", number));
    EXPECT_FALSE(CXMLSaxHandler::GetLong("", whole));
    EXPECT_FALSE(XMLConvertText2Double("", number));
    EXPECT_FALSE(XMLConvertText2Long("", whole));
    EXPECT_EQ(number, 0.5);
    EXPECT_EQ(whole, 5);
}

TEST(ValueReading, ReadsBackWhatTheWritersWrite) {
    for (const double value : {0.0, 0.1, -1.5, 1e20, 1e-300, 123456.789, 99999999999999.0}) {
        double read = -1;
        EXPECT_TRUE(XMLConvertText2Double(XMLConvertDouble2Text(value), read));
        EXPECT_EQ(read, value);
    }
    for (const long value : {0L, 1L, -1L, LONG_MAX, LONG_MIN}) {
        long read = 5;
        EXPECT_TRUE(XMLConvertText2Long(XMLConvertLong2Text(value), read));
        EXPECT_EQ(read, value);
    }
    for (const bool numeric : {true, false}) {
        for (const bool value : {true, false}) {
            bool read = !value;
            EXPECT_TRUE(XMLConvertText2Bool(XMLConvertBool2Text(value, numeric), read));
            EXPECT_EQ(read, value);
        }
    }
    const std::array<int, 3> forms[] = {{2024, 5, 17}, {2024, 5, -1}, {2024, -1, -1}, {-1, 5, 17},
                                        {-1, 5, -1},   {-1, -1, 17},  {0, 1, 1},      {-5, 12, 31}};
    for (const auto& form : forms) {
        std::array<int, 3> f = {OLD, OLD, OLD};
        const char* text = XMLConvertDate2Text(form[0], form[1], form[2]);
        EXPECT_TRUE(XMLConvertText2Date(text, f[0], f[1], f[2])) << text;
        EXPECT_EQ(f, form) << text;
    }
}
