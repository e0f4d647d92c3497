// The text forms of typed values. Each writing function fills a static buffer of its own.
#include "norvask/convert.h"

#include "foundation/value_text.h"

namespace norvask {

const char* XMLConvertDateTime2Text(int year, int month, int day, int hour, int minute,
                                    int second) {
    static SValueText s_Text;
    return FormatDateTime(s_Text, year, month, day, hour, minute, second);
}

const char* XMLConvertDate2Text(int year, int month, int day) {
    static SValueText s_Text;
    return FormatDate(s_Text, year, month, day);
}

const char* XMLConvertTime2Text(int hour, int minute, int second) {
    static SValueText s_Text;
    return FormatTime(s_Text, hour, minute, second);
}

const char* XMLConvertDouble2Text(const double& value) {
    static SValueText s_Text;
    return FormatDouble(s_Text, value);
}

const char* XMLConvertLong2Text(long value) {
    static SValueText s_Text;
    return FormatLong(s_Text, value);
}

const char* XMLConvertBool2Text(bool value, bool numeric) { return FormatBool(value, numeric); }

bool XMLConvertText2DateTime(const char* text, int& year, int& month, int& day, int& hour,
                             int& minute, int& second) {
    return ReadDateTime(text, year, month, day, hour, minute, second);
}

bool XMLConvertText2Date(const char* text, int& year, int& month, int& day) {
    return ReadDate(text, year, month, day);
}

bool XMLConvertText2Time(const char* text, int& hour, int& minute, int& second) {
    return ReadTime(text, hour, minute, second);
}

bool XMLConvertText2Double(const char* text, double& value) { return ReadDouble(text, value); }

bool XMLConvertText2Long(const char* text, long& value) { return ReadLong(text, value); }

bool XMLConvertText2Bool(const char* text, bool& value) { return ReadBool(text, value); }

}  // namespace norvask
