// The writing half of convert.h: text forms of dates, times, numbers and truth values.
#include <cfloat>
#include <climits>
#include <clocale>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <limits>
#include <locale>

#include "support/testing.h"

using namespace norvask_test;

namespace {

struct SDateRow {
    int year, month, day;
    const char* text;  // nullptr: out of range or without a form
};

const SDateRow DATES[] = {
    // Every combination of present and absent components.
    {2024, 5, 17, "2024-05-17"},
    {2024, 5, -1, "2024-05"},
    {2024, -1, 17, nullptr},
    {2024, -1, -1, "2024"},
    {-1, 5, 17, "--05-17"},
    {-1, 5, -1, "--05"},
    {-1, -1, 17, "---17"},
    {-1, -1, -1, nullptr},
    // Widths.
    {0, 1, 1, "0000-01-01"},
    {0, -1, -1, "0000"},
    {7, 5, -1, "0007-05"},
    {999, 12, 31, "0999-12-31"},
    {-1, -1, 7, "---07"},
    {-1, 1, 1, "--01-01"},
    // Negative years have no lower bound; only -1 means absent.
    {-2, -1, -1, "-002"},
    {-5, -1, -1, "-005"},
    {-5, 1, 2, "-005-01-02"},
    {-12345, 1, -1, "-12345-01"},
    {INT_MIN, 12, 31, "-2147483648-12-31"},
    // The edges of each range.
    {9999, 12, 31, "9999-12-31"},
    {10000, 1, 1, nullptr},
    {10000, -1, -1, nullptr},
    {INT_MAX, 1, 1, nullptr},
    {2024, 1, 1, "2024-01-01"},
    {2024, 0, 1, nullptr},
    {2024, 0, -1, nullptr},
    {2024, 13, 1, nullptr},
    {2024, 13, -1, nullptr},
    {2024, -2, -1, nullptr},
    {2024, INT_MIN, 1, nullptr},
    {2024, 1, 0, nullptr},
    {2024, 1, 32, nullptr},
    {2024, 1, -2, nullptr},
    {2024, 1, INT_MAX, nullptr},
    {-1, 0, 1, nullptr},
    {-1, 13, -1, nullptr},
    {-1, -1, 0, nullptr},
    {-1, -1, 32, nullptr},
    {-1, -1, 31, "---31"},
    // No calendar is consulted.
    {2023, 2, 31, "2023-02-31"},
    {-1, 2, 30, "--02-30"},
};

// NULL: refused.
template <typename Convert>
void ExpectText(const Convert& convert, const char* text) {
    if (text)
        EXPECT_STREQ(convert(), text);
    else
        EXPECT_NO_CONVERSION(convert());
}

struct STimeRow {
    int hour, minute, second;
    const char* text;
};

const STimeRow TIMES[] = {
    {0, 0, 0, "00:00:00"},    {10, 30, 5, "10:30:05"},  {23, 59, 59, "23:59:59"},
    {24, 0, 0, nullptr},      {-1, 0, 0, nullptr},      {0, 60, 0, nullptr},
    {0, -1, 0, nullptr},      {0, 0, 60, nullptr},      {0, 0, -1, nullptr},
    {INT_MAX, 0, 0, nullptr}, {0, INT_MIN, 0, nullptr}, {0, 0, INT_MAX, nullptr},
};

struct SDoubleRow {
    double value;
    const char* text;
};

const SDoubleRow DOUBLES[] = {
    {0.0, "0"},
    {-0.0, "-0"},
    {1.0, "1"},
    {-1.5, "-1.5"},
    {0.1, "0.1"},
    {1.0 / 3.0, "0.33333333333333"},
    {2.0 / 3.0, "0.66666666666667"},
    {100.0, "100"},
    {1e13, "10000000000000"},
    {1e14, "1e+14"},
    {99999999999999.0, "99999999999999"},
    {123456789012345.0, "1.2345678901234e+14"},  // the tie goes to the even digit
    {1e20, "1e+20"},
    {1e-4, "0.0001"},
    {1e-5, "1e-05"},
    {1e100, "1e+100"},
    {-2.5e-300, "-2.5e-300"},
    {DBL_MAX, "1.7976931348623e+308"},
    {DBL_MIN, "2.2250738585072e-308"},
    {5e-324, "4.9406564584125e-324"},
};

struct CCommaPunctuation : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

// Puts a numeric locale with a decimal comma in force. Few machines have one installed, so it is
// made with localedef where that is possible.
class CCommaLocale {
public:
    CCommaLocale() : m_Before(std::setlocale(LC_NUMERIC, nullptr)) {
        for (const char* name : {"de_DE.UTF-8", "fr_FR.UTF-8"}) {
            if (!m_bInForce) m_bInForce = std::setlocale(LC_NUMERIC, name) != nullptr;
        }
        if (m_bInForce) return;
        std::string folder = ::testing::TempDir() + "norvask_locale_XXXXXX";
        if (!mkdtemp(&folder[0])) return;
        const std::string make =
            "localedef -i de_DE -f UTF-8 " + folder + "/de_DE.UTF-8 >/dev/null 2>&1";
        if (std::system(make.c_str()) == 0) {
            setenv("LOCPATH", folder.c_str(), 1);
            m_bInForce = std::setlocale(LC_NUMERIC, "de_DE.UTF-8") != nullptr;
            unsetenv("LOCPATH");
        }
        std::filesystem::remove_all(folder);
    }
    CCommaLocale(const CCommaLocale&) = delete;
    CCommaLocale& operator=(const CCommaLocale&) = delete;
    ~CCommaLocale() { std::setlocale(LC_NUMERIC, m_Before.c_str()); }

    bool InForce() const { return m_bInForce; }

private:
    std::string m_Before;
    bool m_bInForce = false;
};

}  // namespace

TEST(ValueText, WritesADateInTheFormOfItsComponents) {
    for (const SDateRow& row : DATES) {
        SCOPED_TRACE(::testing::Message() << row.year << "," << row.month << "," << row.day);
        ExpectText([&] { return XMLConvertDate2Text(row.year, row.month, row.day); }, row.text);
    }
}

TEST(ValueText, WritesATime) {
    for (const STimeRow& row : TIMES) {
        SCOPED_TRACE(::testing::Message() << row.hour << "," << row.minute << "," << row.second);
        ExpectText([&] { return XMLConvertTime2Text(row.hour, row.minute, row.second); }, row.text);
    }
}

TEST(ValueText, WritesADateTimeWithTheRangesOfItsParts) {
    const auto expect = [](const SDateRow& d, const STimeRow& t) {
        SCOPED_TRACE(::testing::Message() << d.year << "," << d.month << "," << d.day << ","
                                          << t.hour << "," << t.minute << "," << t.second);
        const std::string text =
            d.text && t.text ? std::string(d.text) + "T" + t.text : std::string();
        ExpectText(
            [&] {
                return XMLConvertDateTime2Text(d.year, d.month, d.day, t.hour, t.minute, t.second);
            },
            text.empty() ? nullptr : text.c_str());
    };
    for (const STimeRow& row : TIMES)
        expect({2024, 5, 17, "2024-05-17"}, row);
    const SDateRow dates[] = {
        {9999, 12, 31, "9999-12-31"}, {0, 1, 1, "0000-01-01"},
        {-1, 1, 1, "-001-01-01"},  // nothing is absent here
        {-5, 1, 1, "-005-01-01"},     {INT_MIN, 1, 1, "-2147483648-01-01"},
        {2024, 2, 0, "2024-02-00"},  // day 0 is allowed here
        {10000, 1, 1, nullptr},       {2024, 0, 1, nullptr},
        {2024, 13, 1, nullptr},       {2024, -1, 1, nullptr},
        {2024, 1, 32, nullptr},       {2024, 1, -1, nullptr},
    };
    for (const SDateRow& row : dates)
        expect(row, {1, 2, 3, "01:02:03"});
}

TEST(ValueText, WritesADoubleWithFourteenDigits) {
    for (const SDoubleRow& row : DOUBLES)
        EXPECT_STREQ(XMLConvertDouble2Text(row.value), row.text);
}

TEST(ValueText, WritesInfinitiesAndNotANumberAsWords) {
    const double infinity = std::numeric_limits<double>::infinity();
    const double notANumber = std::numeric_limits<double>::quiet_NaN();
    EXPECT_STREQ(XMLConvertDouble2Text(infinity), "inf");
    EXPECT_STREQ(XMLConvertDouble2Text(-infinity), "-inf");
    EXPECT_STREQ(XMLConvertDouble2Text(std::copysign(notANumber, 1.0)), "nan");
    EXPECT_STREQ(XMLConvertDouble2Text(std::copysign(notANumber, -1.0)), "-nan");
}

TEST(ValueText, WritesTheWholeRangeOfLong) {
    EXPECT_STREQ(XMLConvertLong2Text(0), "0");
    EXPECT_STREQ(XMLConvertLong2Text(-1), "-1");
    EXPECT_STREQ(XMLConvertLong2Text(2147483647L), "2147483647");
    EXPECT_STREQ(XMLConvertLong2Text(-2147483647L - 1), "-2147483648");
    EXPECT_EQ(XMLConvertLong2Text(LONG_MAX), std::to_string(LONG_MAX));
    EXPECT_EQ(XMLConvertLong2Text(LONG_MIN), std::to_string(LONG_MIN));
}

TEST(ValueText, WritesTruthAsWordsOrDigits) {
    EXPECT_STREQ(XMLConvertBool2Text(true, false), "true");
    EXPECT_STREQ(XMLConvertBool2Text(false, false), "false");
    EXPECT_STREQ(XMLConvertBool2Text(true, true), "1");
    EXPECT_STREQ(XMLConvertBool2Text(false, true), "0");
}

TEST(ValueText, ReusesTheBufferOfEachFunction) {
    const char* first = XMLConvertTime2Text(1, 2, 3);
    const char* second = XMLConvertTime2Text(4, 5, 6);
    EXPECT_TRUE(Same(first, second));
    EXPECT_STREQ(first, "04:05:06");

    const char* zero = XMLConvertLong2Text(0);
    EXPECT_TRUE(Same(zero, XMLConvertLong2Text(1)));
    const char* half = XMLConvertDouble2Text(0.5);
    EXPECT_TRUE(Same(half, XMLConvertDouble2Text(2)));
    const char* date = XMLConvertDate2Text(1, 1, 1);
    EXPECT_TRUE(Same(date, XMLConvertDate2Text(-1, -1, 2)));
    EXPECT_STREQ(date, "---02");
    const char* both = XMLConvertDateTime2Text(1, 1, 1, 1, 1, 1);
    EXPECT_TRUE(Same(both, XMLConvertDateTime2Text(2, 2, 2, 2, 2, 2)));
}

TEST(ValueText, GivesEachFunctionABufferOfItsOwn) {
    const char* time = XMLConvertTime2Text(1, 2, 3);
    const char* date = XMLConvertDate2Text(2024, 5, 17);
    const char* both = XMLConvertDateTime2Text(2023, 4, 16, 7, 8, 9);
    const char* number = XMLConvertDouble2Text(0.5);
    const char* whole = XMLConvertLong2Text(-12);
    const char* truth = XMLConvertBool2Text(true, false);
    XMLConvertBool2Text(false, false);
    EXPECT_STREQ(time, "01:02:03");
    EXPECT_STREQ(date, "2024-05-17");
    EXPECT_STREQ(both, "2023-04-16T07:08:09");
    EXPECT_STREQ(number, "0.5");
    EXPECT_STREQ(whole, "-12");
    EXPECT_STREQ(truth, "true");
}

TEST(ValueText, LeavesTheBufferAloneWhenAComponentIsOutOfRange) {
    const char* time = XMLConvertTime2Text(1, 2, 3);
    EXPECT_NO_CONVERSION(XMLConvertTime2Text(24, 0, 0));
    EXPECT_STREQ(time, "01:02:03");
    const char* date = XMLConvertDate2Text(2024, 5, 17);
    EXPECT_NO_CONVERSION(XMLConvertDate2Text(2024, 13, 17));
    EXPECT_NO_CONVERSION(XMLConvertDate2Text(2024, -1, 17));
    EXPECT_NO_CONVERSION(XMLConvertDate2Text(-1, -1, -1));
    EXPECT_STREQ(date, "2024-05-17");
    const char* both = XMLConvertDateTime2Text(2023, 4, 16, 7, 8, 9);
    EXPECT_NO_CONVERSION(XMLConvertDateTime2Text(2023, 4, 16, 7, 8, 60));
    EXPECT_STREQ(both, "2023-04-16T07:08:09");
}

TEST(ValueText, LeavesNothingOfALongerTextBehindAShorterOne) {
    XMLConvertDate2Text(-12345, 12, 31);
    EXPECT_STREQ(XMLConvertDate2Text(-1, 1, -1), "--01");
    XMLConvertDouble2Text(-2.2250738585072e-308);
    EXPECT_STREQ(XMLConvertDouble2Text(2), "2");
    XMLConvertLong2Text(LONG_MIN);
    EXPECT_STREQ(XMLConvertLong2Text(3), "3");
}

TEST(ValueText, IgnoresTheGlobalLocaleOfTheStreams) {
    const std::locale before =
        std::locale::global(std::locale(std::locale::classic(), new CCommaPunctuation));
    const std::string number = XMLConvertDouble2Text(1234567.5);
    const std::string whole = XMLConvertLong2Text(1234567);
    double value = 0;
    const bool read = XMLConvertText2Double("1234.5", value);
    std::locale::global(before);
    EXPECT_EQ(number, "1234567.5");
    EXPECT_EQ(whole, "1234567");
    EXPECT_TRUE(read);
    EXPECT_EQ(value, 1234.5);
}

TEST(ValueText, IgnoresTheLocaleOfTheProcess) {
    const CCommaLocale comma;
    if (!comma.InForce()) GTEST_SKIP() << "no locale with a decimal comma, and none could be made";
    ASSERT_EQ(std::localeconv()->decimal_point[0], ',');

    EXPECT_STREQ(XMLConvertDouble2Text(0.5), "0.5");
    EXPECT_STREQ(XMLConvertDouble2Text(-1234567.25), "-1234567.25");
    double value = 0;
    EXPECT_TRUE(XMLConvertText2Double("0.25", value));
    EXPECT_EQ(value, 0.25);
    EXPECT_TRUE(XMLConvertText2Double("1,5", value));
    EXPECT_EQ(value, 1.0);
}
