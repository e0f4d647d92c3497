/// @file
/// The text forms of typed values: XMLConvertX2Text writes them, XMLConvertText2X reads them.
///
/// The forms follow XML Schema's date, gYearMonth, gYear, gMonthDay, gMonth, gDay, dateTime and
/// time, without time zones and without fractions of seconds.
///
/// **Results:** each writing function owns one static buffer. The pointer that it returns is never
/// NULL, must not be freed, and shows the result until the same function is called again, by any
/// thread. Copy what you keep. XMLConvertBool2Text returns constants.
///
/// **Threads:** because of those buffers no two threads may call the same writing function at once.
/// The reading functions keep nothing and may run on any number of threads.
///
/// **Locale:** none of these functions depends on the process's locale; the decimal separator is
/// ".".
#ifndef NORVASK_CONVERT_H
#define NORVASK_CONVERT_H

#include "norvask/export.h"

namespace norvask {

/// @name Writing
/// Each throws CXMLException (7, "Error during conversion.") for a component out of
/// range, before its buffer is touched.
/// @{

/// "2024-05-17T10:30:00". Year up to 9999, month 1 to 12, day 0 to 31, hour 0 to 23, minute and
/// second 0 to 59. Deliberate: day 0 is accepted here (though not in a date), for records that know
/// the month and the time but not the day, and negative years have no lower bound.
NORVASK_API const char* XMLConvertDateTime2Text(int year, int month, int day, int hour, int minute,
                                                int second);

/// A date of which components may be absent; -1 means absent, and only -1. The present components
/// choose the form: "2024-05-17", "2024-05", "2024", "--05-17", "--05", "---17". Year up to 9999
/// (year 0 is "0000"), month 1 to 12, day 1 to 31. A year with a day but no month, or no component
/// at all, has no form and throws like a component out of range.
NORVASK_API const char* XMLConvertDate2Text(int year, int month, int day);

/// "10:30:00". Hour 0 to 23, minute and second 0 to 59.
NORVASK_API const char* XMLConvertTime2Text(int hour, int minute, int second);

/// Fourteen significant digits, the shorter of the fixed and the exponent form, no trailing zeros:
/// "0.1", "1e+20", "0.33333333333333". Infinities and not-a-number give "inf", "-inf", "nan",
/// "-nan", which are no decimal numbers: XMLConvertText2Double reads them as 0.
NORVASK_API const char* XMLConvertDouble2Text(const double& value);

/// Decimal, "-" in front of negative values; the whole range of the platform's long.
NORVASK_API const char* XMLConvertLong2Text(long value);

/// "true" or "false"; with `numeric` "1" or "0".
NORVASK_API const char* XMLConvertBool2Text(bool value, bool numeric);
/// @}

/// @name Reading
/// The same functions as the static members of CXMLSaxHandler (sax_handler.h), where
/// the accepted texts are described. Each returns whether a value was stored.
/// @{

/// CXMLSaxHandler::GetDateTime.
NORVASK_API bool XMLConvertText2DateTime(const char* text, int& year, int& month, int& day,
                                         int& hour, int& minute, int& second);
/// CXMLSaxHandler::GetDate.
NORVASK_API bool XMLConvertText2Date(const char* text, int& year, int& month, int& day);
/// CXMLSaxHandler::GetTime.
NORVASK_API bool XMLConvertText2Time(const char* text, int& hour, int& minute, int& second);
/// CXMLSaxHandler::GetDouble.
NORVASK_API bool XMLConvertText2Double(const char* text, double& value);
/// CXMLSaxHandler::GetLong.
NORVASK_API bool XMLConvertText2Long(const char* text, long& value);
/// CXMLSaxHandler::GetBool.
NORVASK_API bool XMLConvertText2Bool(const char* text, bool& value);
/// @}

}  // namespace norvask

#endif
