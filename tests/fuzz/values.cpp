// Reads texts as typed values, writes what was read, and expects to read the same again; writes
// values that are in no range.
#include <cmath>
#include <cstring>

#include "fuzz/fuzzing.h"

using namespace norvask;
using namespace norvask_fuzz;

namespace {

bool IsBetween(int value, int first, int last) { return first <= value && value <= last; }

// Runs `write`; true when it gave a text, which goes to `text`.
template <typename Write>
bool Writes(std::string& text, Write write) {
    try {
        text = write();
        return true;
    } catch (CXMLException& e) {
        Require(e.GetID() == 7, "a conversion fails with another error");
        return false;
    }
}

void CheckDate(int year, int month, int day) {
    std::string text;
    const bool written = Writes(text, [&] { return XMLConvertDate2Text(year, month, day); });
    const bool hasYear = year != -1, hasMonth = month != -1, hasDay = day != -1;
    Require(written == ((!hasYear || year <= 9999) && (!hasMonth || IsBetween(month, 1, 12)) &&
                        (!hasDay || IsBetween(day, 1, 31)) && (hasYear || hasMonth || hasDay) &&
                        !(hasYear && hasDay && !hasMonth)),
            "another range of dates");
    if (!written) return;
    int readYear = 0, readMonth = 0, readDay = 0;
    Require(CXMLSaxHandler::GetDate(text.c_str(), readYear, readMonth, readDay), "date not read");
    // The text of a negative year begins like that of a date without one.
    Require(year < -1 || (readYear == year && readMonth == month && readDay == day),
            "another date");
}

void CheckDateTime(int year, int month, int day, int hour, int minute, int second) {
    std::string text;
    const bool written = Writes(
        text, [&] { return XMLConvertDateTime2Text(year, month, day, hour, minute, second); });
    Require(
        written == (year <= 9999 && IsBetween(month, 1, 12) && IsBetween(day, 0, 31) &&
                    IsBetween(hour, 0, 23) && IsBetween(minute, 0, 59) && IsBetween(second, 0, 59)),
        "another range of points in time");
    int values[6] = {};
    if (written && year >= 0) {
        Require(CXMLSaxHandler::GetDateTime(text.c_str(), values[0], values[1], values[2],
                                            values[3], values[4], values[5]),
                "point in time not read");
        const int expected[6] = {year, month, day, hour, minute, second};
        Require(std::memcmp(values, expected, sizeof(values)) == 0, "another point in time");
    }
    if (Writes(text, [&] { return XMLConvertTime2Text(hour, minute, second); })) {
        Require(CXMLSaxHandler::GetTime(text.c_str(), values[0], values[1], values[2]) &&
                    values[0] == hour && values[1] == minute && values[2] == second,
                "another time");
    }
}

void CheckDouble(double value) {
    const std::string text = XMLConvertDouble2Text(value);
    double read = 1;
    Require(CXMLSaxHandler::GetDouble(text.c_str(), read), "number not read");
    if (std::isfinite(value)) {
        Require(std::fabs(read - value) <= 1e-13 * std::fabs(value) || std::isinf(read),
                "another number");
        RequireSame("a number changes", text, XMLConvertDouble2Text(read));
    } else {
        Require(read == 0, "what is no number reads as one");
    }
}

void CheckLong(long value) {
    long read = ~value;
    Require(CXMLSaxHandler::GetLong(XMLConvertLong2Text(value), read) && read == value,
            "another integer");
}

void CheckBytes(const unsigned char* data, std::size_t size) {
    std::ostringstream out;
    CXMLSaxWriter writer;
    writer.StartDocument(&out, false, false);
    const std::string before = out.str();
    writer.Data(data, static_cast<long>(size), false);
    writer.EndDocument();
    unsigned char* read = nullptr;
    std::size_t length = 0;
    const bool found =
        CXMLSaxHandler::GetData(out.str().substr(before.size()).c_str(), read, length);
    Require(found == (size != 0), "bytes not read");
    Require(!found || (length == size && std::memcmp(read, data, size) == 0), "other bytes");
}

void CheckText(const char* text) {
    int values[6] = {};
    if (CXMLSaxHandler::GetDate(text, values[0], values[1], values[2]))
        CheckDate(values[0], values[1], values[2]);
    if (CXMLSaxHandler::GetDateTime(text, values[0], values[1], values[2], values[3], values[4],
                                    values[5]))
        CheckDateTime(values[0], values[1], values[2], values[3], values[4], values[5]);
    CXMLSaxHandler::GetTime(text, values[0], values[1], values[2]);
    double number = 0;
    Require(CXMLSaxHandler::GetDouble(text, number) == (*text != '\0'), "text that is a number");
    CheckDouble(number);
    long integer = 0;
    Require(CXMLSaxHandler::GetLong(text, integer) == (*text != '\0'), "text that is an integer");
    CheckLong(integer);
    bool flag = false;
    if (CXMLSaxHandler::GetBool(text, flag))
        Require(XMLConvertBool2Text(flag, false) == std::string(text) ||
                    XMLConvertBool2Text(flag, true) == std::string(text),
                "another truth");
    unsigned char* data = nullptr;
    std::size_t length = 0;
    if (CXMLSaxHandler::GetData(text, data, length)) {
        const std::vector<unsigned char> bytes(data, data + length);
        CheckBytes(bytes.data(), bytes.size());
    }
}

template <typename Number>
Number Taken(const std::uint8_t* data, std::size_t size, std::size_t index) {
    Number number = 0;
    if ((index + 1) * sizeof(Number) <= size)
        std::memcpy(&number, data + index * sizeof(Number), sizeof(Number));
    return number;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    CheckText(std::string(reinterpret_cast<const char*>(data), size).c_str());
    CheckBytes(data, size);
    CheckDouble(Taken<double>(data, size, 0));
    CheckLong(Taken<long>(data, size, 0));
    int wide[6];
    int narrow[6];
    for (std::size_t i = 0; i < 6; ++i) {
        wide[i] = Taken<int>(data, size, i);
        narrow[i] = Taken<signed char>(data, size, i);
    }
    CheckDate(wide[0], wide[1], wide[2]);
    CheckDate(Taken<short>(data, size, 3), narrow[0], narrow[1]);
    CheckDateTime(wide[0], wide[1], wide[2], wide[3], wide[4], wide[5]);
    CheckDateTime(Taken<short>(data, size, 3), narrow[1], narrow[2], narrow[3], narrow[4],
                  narrow[5]);
    return 0;
}
