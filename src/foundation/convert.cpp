// The text forms of typed values, writing side. Each function fills a static buffer of its own.
#include "norvask/convert.h"

#include <charconv>
#include <cstdio>
#include <cstring>

#include "foundation/errors.h"
#include "norvask/sax_handler.h"

namespace norvask {
namespace {

const int ABSENT = -1;
const std::size_t VALUE_BUFFER = 256;
const std::size_t LONG_BUFFER = 64;

bool IsBetween(int value, int first, int last) noexcept { return value >= first && value <= last; }

void Require(bool holds) {
    if (!holds) {
        ThrowConversionFailed();
    }
}

// Two digits; `value` is 0 to 99.
char* PutTwo(char* out, int value) noexcept {
    *out++ = static_cast<char>('0' + value / 10);
    *out++ = static_cast<char>('0' + value % 10);
    return out;
}

// As "%04d": at least four characters, the sign of a negative year among them.
char* PutYear(char* out, int year) noexcept {
    if (year >= 0) {
        return PutTwo(PutTwo(out, year / 100), year % 100);
    }
    return out + std::snprintf(out, 16, "%04d", year);
}

char* PutDate(char* out, int year, int month, int day) noexcept {
    out = PutYear(out, year);
    *out++ = '-';
    out = PutTwo(out, month);
    *out++ = '-';
    return PutTwo(out, day);
}

char* PutTime(char* out, int hour, int minute, int second) noexcept {
    out = PutTwo(out, hour);
    *out++ = ':';
    out = PutTwo(out, minute);
    *out++ = ':';
    return PutTwo(out, second);
}

void RequireTime(int hour, int minute, int second) {
    Require(IsBetween(hour, 0, 23) && IsBetween(minute, 0, 59) && IsBetween(second, 0, 59));
}

}  // namespace

const char* XMLConvertDateTime2Text(int year, int month, int day, int hour, int minute,
                                    int second) {
    static char s_Text[VALUE_BUFFER];
    Require(year <= 9999 && IsBetween(month, 1, 12) && IsBetween(day, 0, 31));
    RequireTime(hour, minute, second);
    char* out = PutDate(s_Text, year, month, day);
    *out++ = 'T';
    out = PutTime(out, hour, minute, second);
    *out = '\0';
    return s_Text;
}

const char* XMLConvertDate2Text(int year, int month, int day) {
    static char s_Text[VALUE_BUFFER];
    const bool hasYear = year != ABSENT;
    const bool hasMonth = month != ABSENT;
    const bool hasDay = day != ABSENT;
    Require(!hasYear || year <= 9999);
    Require(!hasMonth || IsBetween(month, 1, 12));
    Require(!hasDay || IsBetween(day, 1, 31));
    Require(hasYear || hasMonth || hasDay);
    Require(!(hasYear && hasDay && !hasMonth));

    // Each absent component in front leaves one dash, the separators stand before what follows.
    char* out = s_Text;
    if (hasYear) {
        out = PutYear(out, year);
    } else {
        *out++ = '-';
    }
    if (hasMonth) {
        *out++ = '-';
        out = PutTwo(out, month);
    } else if (hasDay) {
        *out++ = '-';
    }
    if (hasDay) {
        *out++ = '-';
        out = PutTwo(out, day);
    }
    *out = '\0';
    return s_Text;
}

const char* XMLConvertTime2Text(int hour, int minute, int second) {
    static char s_Text[VALUE_BUFFER];
    RequireTime(hour, minute, second);
    *PutTime(s_Text, hour, minute, second) = '\0';
    return s_Text;
}

const char* XMLConvertDouble2Text(const double& value) {
    static char s_Text[VALUE_BUFFER];
    const int SIGNIFICANT_DIGITS = 14;
    // to_chars gives what "%.14lg" gives in the "C" locale, without a locale to switch to.
    const std::to_chars_result end = std::to_chars(s_Text, s_Text + sizeof(s_Text) - 1, value,
                                                   std::chars_format::general, SIGNIFICANT_DIGITS);
    *end.ptr = '\0';
    return s_Text;
}

const char* XMLConvertLong2Text(long value) {
    static char s_Text[LONG_BUFFER];
    const std::to_chars_result end = std::to_chars(s_Text, s_Text + sizeof(s_Text) - 1, value);
    *end.ptr = '\0';
    return s_Text;
}

const char* XMLConvertBool2Text(bool value, bool numeric) {
    if (numeric) {
        return value ? "1" : "0";
    }
    return value ? "true" : "false";
}

bool XMLConvertText2DateTime(const char* text, int& year, int& month, int& day, int& hour,
                             int& minute, int& second) {
    return CXMLSaxHandler::GetDateTime(text, year, month, day, hour, minute, second);
}

bool XMLConvertText2Date(const char* text, int& year, int& month, int& day) {
    return CXMLSaxHandler::GetDate(text, year, month, day);
}

bool XMLConvertText2Time(const char* text, int& hour, int& minute, int& second) {
    return CXMLSaxHandler::GetTime(text, hour, minute, second);
}

bool XMLConvertText2Double(const char* text, double& value) {
    return CXMLSaxHandler::GetDouble(text, value);
}

bool XMLConvertText2Long(const char* text, long& value) {
    return CXMLSaxHandler::GetLong(text, value);
}

bool XMLConvertText2Bool(const char* text, bool& value) {
    return CXMLSaxHandler::GetBool(text, value);
}

}  // namespace norvask
