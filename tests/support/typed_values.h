// What attributes and text nodes do with typed values is the same, under names of their own.
#ifndef NORVASK_TESTS_SUPPORT_TYPED_VALUES_H
#define NORVASK_TESTS_SUPPORT_TYPED_VALUES_H

#include <gtest/gtest.h>

#include <array>
#include <climits>
#include <string>

#include "support/errors.h"
#include "support/tree.h"

namespace norvask_test {

using Fields = std::array<int, 3>;

// The operations of a class.
template <typename T>
struct STypedCalls {
    const char* (T::*get)();
    void (T::*set)(const char*);
    bool (T::*getDate)(int&, int&, int&);
    void (T::*setDate)(int, int, int);
    bool (T::*getDateTime)(int&, int&, int&, int&, int&, int&);
    void (T::*setDateTime)(int, int, int, int, int, int);
    bool (T::*getTime)(int&, int&, int&);
    void (T::*setTime)(int, int, int);
    bool (T::*getDouble)(double&);
    void (T::*setDouble)(const double&);
    bool (T::*getLong)(long&);
    void (T::*setLong)(long);
    bool (T::*getBool)(bool&);
    void (T::*setBool)(bool, bool);
};

// An object that holds a value.
template <typename T>
class CTypedValue {
public:
    CTypedValue(T& object, const STypedCalls<T>& calls) : m_Object(object), m_Calls(calls) {}

    void ExpectDatesStored() {
        const struct {
            Fields date;
            const char* text;
        } rows[] = {{{2024, 5, 17}, "2024-05-17"}, {{2024, 5, -1}, "2024-05"},
                    {{2024, -1, -1}, "2024"},      {{-1, 5, 17}, "--05-17"},
                    {{-1, 5, -1}, "--05"},         {{-1, -1, 17}, "---17"}};
        for (const auto& row : rows) {
            (m_Object.*m_Calls.setDate)(row.date[0], row.date[1], row.date[2]);
            EXPECT_STREQ(Text(), row.text);
            ExpectDate(row.date);
        }
    }
    void ExpectTimesStored() {
        (m_Object.*m_Calls.setDateTime)(2024, 2, 0, 7, 8, 9);
        EXPECT_STREQ(Text(), "2024-02-00T07:08:09");
        std::array<int, 6> f = {};
        EXPECT_TRUE((m_Object.*m_Calls.getDateTime)(f[0], f[1], f[2], f[3], f[4], f[5]));
        EXPECT_EQ(f, (std::array<int, 6>{2024, 2, 0, 7, 8, 9}));
        (m_Object.*m_Calls.setTime)(23, 59, 58);
        EXPECT_STREQ(Text(), "23:59:58");
        ExpectTime(true, {23, 59, 58});
    }
    void ExpectDoubleStored(double value, const char* text, double read) {
        (m_Object.*m_Calls.setDouble)(value);
        EXPECT_STREQ(Text(), text);
        ExpectDouble(read);
    }
    void ExpectLongsStored() {
        for (const long value : {0L, -1L, 2147483648L, LONG_MAX, LONG_MIN}) {
            (m_Object.*m_Calls.setLong)(value);
            EXPECT_EQ(Text(), std::to_string(value));
            ExpectLong(value);
        }
    }
    void ExpectTruthStored() {
        const char* const texts[] = {"false", "0", "true", "1"};
        for (int i = 0; i < 4; ++i) {
            (m_Object.*m_Calls.setBool)(i >= 2, i % 2 == 1);
            EXPECT_STREQ(Text(), texts[i]);
            bool read = i < 2;
            EXPECT_TRUE((m_Object.*m_Calls.getBool)(read)) << texts[i];
            EXPECT_EQ(read, i >= 2) << texts[i];
        }
    }
    void ExpectKeptWhenOutOfRange() {
        const std::string old = Text();
        const char* before = Text();
        const auto date = m_Calls.setDate;
        const auto dateTime = m_Calls.setDateTime;
        const auto time = m_Calls.setTime;
        EXPECT_NO_CONVERSION((m_Object.*date)(2024, 13, 1));
        EXPECT_NO_CONVERSION((m_Object.*date)(2024, 0, 1));
        EXPECT_NO_CONVERSION((m_Object.*date)(2024, -1, 1));
        EXPECT_NO_CONVERSION((m_Object.*date)(-1, -1, -1));
        EXPECT_NO_CONVERSION((m_Object.*dateTime)(10000, 1, 1, 0, 0, 0));
        EXPECT_NO_CONVERSION((m_Object.*dateTime)(2024, 1, 1, 24, 0, 0));
        EXPECT_NO_CONVERSION((m_Object.*dateTime)(2024, 1, 1, 0, 0, 60));
        EXPECT_NO_CONVERSION((m_Object.*time)(24, 0, 0));
        EXPECT_NO_CONVERSION((m_Object.*time)(0, 0, 60));
        EXPECT_EQ(Text(), old);
        EXPECT_TRUE(Same(Text(), before));
    }
    void ExpectReadAsTheParsersDo() {
        Set("word");
        ExpectNoDates();
        bool truth = true;
        EXPECT_FALSE((m_Object.*m_Calls.getBool)(truth));
        EXPECT_TRUE(truth);
        ExpectDouble(0);
        ExpectLong(0);
        Set("12.75kg");
        ExpectDouble(12.75);
        ExpectLong(12);
        Set("10:30");
        ExpectTime(false, {10, 30, 7});
        Set("2024-05-17T10:00:00");
        ExpectDate({2024, 5, 17});
    }
    // Nothing is read from an empty text, and the outputs stay.
    void ExpectNothingInAnEmptyText() {
        Set("");
        ExpectNoDates();
        double number = 7;
        long whole = 7;
        bool truth = true;
        EXPECT_FALSE((m_Object.*m_Calls.getDouble)(number));
        EXPECT_FALSE((m_Object.*m_Calls.getLong)(whole));
        EXPECT_FALSE((m_Object.*m_Calls.getBool)(truth));
        EXPECT_EQ(number, 7.0);
        EXPECT_EQ(whole, 7);
        EXPECT_TRUE(truth);
    }

private:
    const char* Text() { return (m_Object.*m_Calls.get)(); }
    void Set(const char* text) { (m_Object.*m_Calls.set)(text); }

    void ExpectDate(const Fields& expected) {
        Fields date = {};
        EXPECT_TRUE((m_Object.*m_Calls.getDate)(date[0], date[1], date[2])) << Text();
        EXPECT_EQ(date, expected) << Text();
    }
    void ExpectTime(bool answer, const Fields& expected) {
        Fields time = {7, 7, 7};
        EXPECT_EQ((m_Object.*m_Calls.getTime)(time[0], time[1], time[2]), answer) << Text();
        EXPECT_EQ(time, expected) << Text();
    }
    // A word's outputs may hold anything, an empty text's are left alone.
    void ExpectNoDates() {
        std::array<int, 6> f = {7, 7, 7, 7, 7, 7};
        EXPECT_FALSE((m_Object.*m_Calls.getDate)(f[0], f[1], f[2]));
        EXPECT_FALSE((m_Object.*m_Calls.getDateTime)(f[0], f[1], f[2], f[3], f[4], f[5]));
        EXPECT_FALSE((m_Object.*m_Calls.getTime)(f[0], f[1], f[2]));
        if (!*Text()) {
            EXPECT_EQ(f, (std::array<int, 6>{7, 7, 7, 7, 7, 7}));
        }
    }
    void ExpectDouble(double expected) {
        double read = -7;
        EXPECT_TRUE((m_Object.*m_Calls.getDouble)(read));
        EXPECT_EQ(read, expected);
    }
    void ExpectLong(long expected) {
        long read = -7;
        EXPECT_TRUE((m_Object.*m_Calls.getLong)(read));
        EXPECT_EQ(read, expected);
    }

    T& m_Object;
    const STypedCalls<T>& m_Calls;
};

}  // namespace norvask_test

#endif
