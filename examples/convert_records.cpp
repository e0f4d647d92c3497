// convert_records IN OUT: reads one document and writes another while it goes.
//
// IN holds measurements, such as write_report makes. OUT lists those with an alarm: flat rows, with
// other names, with the date and the time as one value. However large IN is, one measurement is all
// that is ever in memory.
#include <norvask/norvask.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <exception>
#include <filesystem>
#include <iostream>
#include <stdexcept>
#include <string>

#include "support/checked_writer.h"
#include "support/peak_memory.h"
#include "support/problems.h"
#include "support/terminal.h"

namespace {

using namespace norvask;

struct SMeasurement {
    std::string number;
    std::string station;
    int year = -1, month = -1, day = -1;
    int hour = -1, minute = -1, second = -1;
    double level = 0;
    int highest = -1;  // of the trace; -1 if it has none
    bool isAlarm = false;
};

class CConverter : public CXMLSaxHandler {
public:
    CConverter(CXMLSaxWriter& writer, const char* outName) : m_Writer(writer), m_OutName(outName) {}

    std::size_t Measurements() const { return m_Measurements; }
    std::size_t Alarms() const { return m_Alarms; }

    // OUT is opened as late as here, so that an IN that is missing or no XML leaves it as it is.
    void StartElement(const char* uri, const char* localName, const char* /*qName*/,
                      CXMLSaxAttribut** attributes) override {
        if (m_Depth++ == 0) StartList();
        if (IsMeasurement(uri, localName)) {
            m_Row = SMeasurement();
            m_Row.number = XMLAttributeValue(attributes, "number");
            m_Row.station = XMLAttributeValue(attributes, "station");
        }
        m_Text.clear();
    }

    // May come more than once for one element: a CDATA section arrives on its own.
    void Characters(const char* text) override { m_Text += text; }

    void EndElement(const char* uri, const char* localName, const char* /*qName*/) override {
        --m_Depth;
        if (IsMeasurement(uri, localName)) {
            ++m_Measurements;
            if (m_Row.isAlarm) WriteAlarm();
        } else {
            TakeValue(localName);
        }
        m_Text.clear();
    }

    // Comes only if all of IN was well-formed. Otherwise the list stays open, and the writer's end
    // removes its file.
    void EndDocument() override {
        m_Writer.EndElement();
        m_Writer.EndDocument();
    }

private:
    static bool IsMeasurement(const char* uri, const char* localName) {
        return std::strcmp(localName, "measurement") == 0 &&
               std::strcmp(uri, "urn:example:gauges") == 0;
    }

    void TakeValue(const std::string& name) {
        const char* text = m_Text.c_str();
        if (name == "date") {
            GetDate(text, m_Row.year, m_Row.month, m_Row.day);
        } else if (name == "time") {
            GetTime(text, m_Row.hour, m_Row.minute, m_Row.second);
        } else if (name == "level") {
            GetDouble(text, m_Row.level);
        } else if (name == "alarm") {
            if (!GetBool(text, m_Row.isAlarm)) Refuse("'" + m_Text + "' is neither true nor false");
        } else if (name == "trace") {
            unsigned char* samples = nullptr;  // the library's, until the next GetData
            std::size_t count = 0;
            if (GetData(text, samples, count)) {
                m_Row.highest = 2 * *std::max_element(samples, samples + count);
            }
        }
    }

    void StartList() {
        m_Writer.StartDocument(m_OutName, /*format=*/true);
        CXMLAttribut space("xmlns", "urn:example:alarms");
        CXMLAttribut* attributes[] = {&space, nullptr};
        m_Writer.StartElement("alarms", attributes);
    }

    void WriteAlarm() {
        ++m_Alarms;
        m_Writer.StartElement("alarm", nullptr);
        XMLWriteElement(m_Writer, "reference", m_Row.number);
        XMLWriteElement(m_Writer, "place", m_Row.station);
        XMLWriteElement(m_Writer, "at", [this] { WriteTime(); });
        XMLWriteElement(m_Writer, "metres", m_Row.level);
        if (m_Row.highest >= 0) XMLWriteElement(m_Writer, "highest", m_Row.highest / 100.0);
        m_Writer.EndElement();
    }

    // The readers of values check no ranges, the writer does.
    void WriteTime() {
        try {
            m_Writer.DateTime(m_Row.year, m_Row.month, m_Row.day, m_Row.hour, m_Row.minute,
                              m_Row.second);
        } catch (CXMLException& e) {
            if (e.GetID() != 7) throw;  // "Error during conversion."
            Refuse("no valid date and time");
        }
    }

    // A callback may throw what it likes: the load ends, and its caller gets it.
    [[noreturn]] void Refuse(const std::string& why) const {
        throw std::runtime_error("measurement " + m_Row.number + ": " + why);
    }

    CXMLSaxWriter& m_Writer;
    const char* m_OutName;
    SMeasurement m_Row;
    std::string m_Text;  // since the last tag
    std::size_t m_Depth = 0;
    std::size_t m_Measurements = 0;
    std::size_t m_Alarms = 0;
};

void Convert(const char* in, const char* out) {
    std::error_code unknown;  // the names may be URLs, and OUT need not exist
    if (std::filesystem::equivalent(in, out, unknown)) {
        throw std::runtime_error("IN and OUT are the same file");
    }
    const std::size_t memoryBefore = PeakMemory();
    CCheckedWriter writer;
    CConverter converter(writer, out);
    try {
        XMLLoadFile(in, converter);
    } catch (std::ios_base::failure&) {   // from the writer, through a callback and the load
        throw CXMLException(1, 4U, out);  // "Error saving '%s'."
    }
    std::cout << "  read     " << terminal::Count(converter.Measurements(), "measurement")
              << " from " << terminal::OneLine(in) << '\n'
              << "  wrote    " << terminal::Count(converter.Alarms(), "alarm") << " to "
              << terminal::OneLine(out) << '\n'
              << "  memory   " << MemorySince(memoryBefore) << std::endl;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::cerr << "usage: convert_records IN OUT\n";
        return 2;
    }
    try {
        Convert(argv[1], argv[2]);
    } catch (const CXMLError& e) {  // of a load
        PrintProblems("convert_records", e);
        return 1;
    } catch (CXMLException& e) {
        std::cerr << "convert_records: " << terminal::OneLine(e.GetMessage()) << '\n';
        return 1;
    } catch (std::exception& e) {
        std::cerr << "convert_records: " << terminal::OneLine(e.what()) << '\n';
        return 1;
    }
    if (!std::cout) {
        std::cerr << "convert_records: the summary could not be written\n";
        return 1;
    }
    return 0;
}
