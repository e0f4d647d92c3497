// Internal. The text forms of typed values (convert.h), written and read.
//
// Writing fills a buffer of the caller's, so that writers and documents of different threads do not
// meet in the static buffers of the public functions. Reading keeps nothing.
#ifndef NORVASK_FOUNDATION_VALUE_TEXT_H
#define NORVASK_FOUNDATION_VALUE_TEXT_H

namespace norvask {

// Room for the longest text: a date and time of a year with eleven characters, or a double of 14
// digits.
struct SValueText {
    char text[64];
};

// Write the text and return it. Those for dates and times throw CXMLException (conversion failed)
// for a component out of range, before the buffer is touched.
const char* FormatDateTime(SValueText& out, int year, int month, int day, int hour, int minute,
                           int second);
const char* FormatDate(SValueText& out, int year, int month, int day);
const char* FormatTime(SValueText& out, int hour, int minute, int second);
const char* FormatDouble(SValueText& out, double value) noexcept;
const char* FormatLong(SValueText& out, long value) noexcept;
// A constant.
const char* FormatBool(bool value, bool numeric) noexcept;

// Read a value; sax_handler.h describes the accepted texts. NULL or an empty text returns false and
// leaves the outputs alone.
bool ReadDateTime(const char* text, int& year, int& month, int& day, int& hour, int& minute,
                  int& second) noexcept;
bool ReadDate(const char* text, int& year, int& month, int& day) noexcept;
bool ReadTime(const char* text, int& hour, int& minute, int& second) noexcept;
bool ReadDouble(const char* text, double& value) noexcept;
bool ReadLong(const char* text, long& value) noexcept;
bool ReadBool(const char* text, bool& value) noexcept;

}  // namespace norvask

#endif
