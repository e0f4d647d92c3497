#include "foundation/value_text.h"

#include <charconv>
#include <cstdio>

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

}  // namespace norvask
