// The text forms of typed values. Everything here is independent of the process's locale.
#include "foundation/value_text.h"

#include <charconv>
#include <climits>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "foundation/errors.h"

namespace norvask {
namespace {

const int ABSENT = -1;

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

bool IsNothing(const char* text) noexcept { return text == nullptr || *text == '\0'; }

bool IsBlank(char c) noexcept { return c == ' ' || (c >= '\t' && c <= '\r'); }

bool IsDigit(char c) noexcept { return c >= '0' && c <= '9'; }

const char* SkipBlanks(const char* text) noexcept {
    while (IsBlank(*text)) {
        ++text;
    }
    return text;
}

// The leading decimal integer, with blanks and a sign before it; NULL when there is none, else the
// end of it. What does not fit becomes the nearest value that does.
template <typename Integer>
const char* ReadInteger(const char* text, Integer lowest, Integer highest,
                        Integer& value) noexcept {
    text = SkipBlanks(text);
    const bool negative = *text == '-';
    if (negative || *text == '+') {
        ++text;
    }
    if (!IsDigit(*text)) {
        return nullptr;
    }
    Integer result = 0;
    for (; IsDigit(*text); ++text) {
        const Integer digit = static_cast<Integer>(*text - '0');
        if (negative) {
            result = result < (lowest + digit) / 10 ? lowest : result * 10 - digit;
        } else {
            result = result > (highest - digit) / 10 ? highest : result * 10 + digit;
        }
    }
    value = result;
    return text;
}

// Reads a form such as "d-d-dTd:d:d": each 'd' is an integer for the next field, any other
// character stands for itself. Returns whether all fields were read; those before a failure stay
// written.
bool Scan(const char* text, const char* form, int* const* fields) noexcept {
    for (; *form != '\0'; ++form) {
        if (*form == 'd') {
            text = ReadInteger(text, INT_MIN, INT_MAX, **fields++);
            if (text == nullptr) {
                return false;
            }
        } else if (*text++ != *form) {
            return false;
        }
    }
    return true;
}

// The "C" locale for reading numbers, made once.
locale_t NumericLocale() {
    static const locale_t s_Locale = newlocale(LC_ALL_MASK, "C", nullptr);
    return s_Locale;
}

}  // namespace

const char* FormatDateTime(SValueText& out, int year, int month, int day, int hour, int minute,
                           int second) {
    Require(year <= 9999 && IsBetween(month, 1, 12) && IsBetween(day, 0, 31));
    RequireTime(hour, minute, second);
    char* end = PutDate(out.text, year, month, day);
    *end++ = 'T';
    end = PutTime(end, hour, minute, second);
    *end = '\0';
    return out.text;
}

const char* FormatDate(SValueText& out, int year, int month, int day) {
    const bool hasYear = year != ABSENT;
    const bool hasMonth = month != ABSENT;
    const bool hasDay = day != ABSENT;
    Require(!hasYear || year <= 9999);
    Require(!hasMonth || IsBetween(month, 1, 12));
    Require(!hasDay || IsBetween(day, 1, 31));
    Require(hasYear || hasMonth || hasDay);
    Require(!(hasYear && hasDay && !hasMonth));

    // Each absent component in front leaves one dash, the separators stand before what follows.
    char* end = out.text;
    if (hasYear) {
        end = PutYear(end, year);
    } else {
        *end++ = '-';
    }
    if (hasMonth) {
        *end++ = '-';
        end = PutTwo(end, month);
    } else if (hasDay) {
        *end++ = '-';
    }
    if (hasDay) {
        *end++ = '-';
        end = PutTwo(end, day);
    }
    *end = '\0';
    return out.text;
}

const char* FormatTime(SValueText& out, int hour, int minute, int second) {
    RequireTime(hour, minute, second);
    *PutTime(out.text, hour, minute, second) = '\0';
    return out.text;
}

const char* FormatDouble(SValueText& out, double value) noexcept {
    const int SIGNIFICANT_DIGITS = 14;
    // to_chars gives what "%.14lg" gives in the "C" locale, without a locale to switch to.
    const std::to_chars_result end = std::to_chars(out.text, out.text + sizeof(out.text) - 1, value,
                                                   std::chars_format::general, SIGNIFICANT_DIGITS);
    *end.ptr = '\0';
    return out.text;
}

const char* FormatLong(SValueText& out, long value) noexcept {
    const std::to_chars_result end =
        std::to_chars(out.text, out.text + sizeof(out.text) - 1, value);
    *end.ptr = '\0';
    return out.text;
}

const char* FormatBool(bool value, bool numeric) noexcept {
    if (numeric) {
        return value ? "1" : "0";
    }
    return value ? "true" : "false";
}

bool ReadDate(const char* text, int& year, int& month, int& day) noexcept {
    if (IsNothing(text)) {
        return false;
    }
    int* const yearMonthDay[] = {&year, &month, &day};
    int* const monthDay[] = {&month, &day};
    int* const onlyDay[] = {&day};
    if (Scan(text, "d-d-d", yearMonthDay)) {
        return true;
    }
    // An attempt that failed may have written a field, so each form marks what it does not have.
    year = ABSENT;
    if (Scan(text, "--d-d", monthDay)) {
        return true;
    }
    day = ABSENT;
    if (Scan(text, "d-d", yearMonthDay)) {
        return true;
    }
    year = ABSENT;
    month = ABSENT;
    if (Scan(text, "---d", onlyDay)) {
        return true;
    }
    year = ABSENT;
    day = ABSENT;
    if (Scan(text, "--d", monthDay)) {
        return true;
    }
    month = ABSENT;
    day = ABSENT;
    return Scan(text, "d", yearMonthDay);
}

bool ReadDateTime(const char* text, int& year, int& month, int& day, int& hour, int& minute,
                  int& second) noexcept {
    int* const fields[] = {&year, &month, &day, &hour, &minute, &second};
    return !IsNothing(text) && Scan(text, "d-d-dTd:d:d", fields);
}

bool ReadTime(const char* text, int& hour, int& minute, int& second) noexcept {
    int* const fields[] = {&hour, &minute, &second};
    return !IsNothing(text) && Scan(text, "d:d:d", fields);
}

bool ReadDouble(const char* text, double& value) noexcept {
    if (IsNothing(text)) {
        return false;
    }
    // strtod_l also takes hexadecimal numbers, "inf" and "nan", which are no decimal numbers:
    // "nano" is not a value.
    const char* number = SkipBlanks(text);
    if (*number == '-' || *number == '+') {
        ++number;
    }
    const bool decimal = IsDigit(*number) || *number == '.';
    const bool hexadecimal = number[0] == '0' && (number[1] == 'x' || number[1] == 'X');
    value = decimal && !hexadecimal ? strtod_l(text, nullptr, NumericLocale()) : 0.0;
    return true;
}

bool ReadLong(const char* text, long& value) noexcept {
    if (IsNothing(text)) {
        return false;
    }
    if (ReadInteger(text, LONG_MIN, LONG_MAX, value) == nullptr) {
        value = 0;
    }
    return true;
}

bool ReadBool(const char* text, bool& value) noexcept {
    if (IsNothing(text)) {
        return false;
    }
    if (std::strcmp(text, "true") == 0 || std::strcmp(text, "1") == 0) {
        value = true;
        return true;
    }
    if (std::strcmp(text, "false") == 0 || std::strcmp(text, "0") == 0) {
        value = false;
        return true;
    }
    return false;
}

}  // namespace norvask
