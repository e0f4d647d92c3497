// write_report [--rows N] [FILE]: a report of a million measurements, written while it is made.
//
// Without FILE it goes to standard output. The gauges are invented and every run measures the same.
#include <norvask/norvask.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <ctime>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <random>
#include <string>
#include <vector>

#include "support/counting_buffer.h"
#include "support/options.h"
#include "support/peak_memory.h"
#include "support/terminal.h"

namespace {

using norvask::CXMLAttribut;
using norvask::CXMLException;
using norvask::CXMLSaxWriter;

class CReport {
public:
    explicit CReport(CXMLSaxWriter& writer) : m_Writer(writer) {}

    void Write(long rows) {
        CXMLAttribut space("xmlns", "urn:example:gauges");
        CXMLAttribut* attributes[] = {&space, nullptr};
        m_Writer.StartElement("report", attributes);
        for (long row = 1; row <= rows; ++row) {
            WriteRow(row);
        }
        m_Writer.EndElement();
    }

private:
    void WriteRow(long row) {
        static const char* const stations[] = {"Hafen", "Insel", "Möhlau", "Schönfeld"};
        static const char* const remarks[] = {
            "ice < 2 cm", "read by hand & eye",
            "The tube was full of mussels again; the level before the 14th may be too low."};
        Measure(row);
        m_Number.SetLongValue(row);
        m_Station.SetValue(stations[row % 4]);
        CXMLAttribut* attributes[] = {&m_Number, &m_Station, nullptr};
        m_Writer.StartElement("measurement", attributes);

        const std::tm at = TimeOf(row * 60);
        const std::tm received = TimeOf(row * 60 + Random(90));
        const int year = at.tm_year + 1900;
        Element("date", [&] { m_Writer.Date(year, at.tm_mon + 1, at.tm_mday); });
        Element("time", [&] { m_Writer.Time(at.tm_hour, at.tm_min, at.tm_sec); });
        Element("received", [&] {
            m_Writer.DateTime(received.tm_year + 1900, received.tm_mon + 1, received.tm_mday,
                              received.tm_hour, received.tm_min, received.tm_sec);
        });
        Element("level", [&] { m_Writer.Double(m_Level / 100.0); });
        Element("battery", [&] { m_Writer.Long(3600 + Random(500)); });
        Element("alarm", [&] { m_Writer.Bool(m_Level >= 400, false); });
        Element("trace", [&] {
            m_Writer.Data(m_Trace.data(), static_cast<long>(m_Trace.size()), /*cdata=*/true);
        });
        if (row % 5 == 3) Element("remark", [&] { m_Writer.Characters(remarks[row / 5 % 3]); });
        m_Writer.EndElement();
    }

    // An element that holds what `write` writes.
    template <typename Write>
    void Element(const char* name, Write write) {
        m_Writer.StartElement(name, nullptr);
        write();
        m_Writer.EndElement();
    }

    // The water rises or falls by up to three centimetres. The trace shows how; every second one is
    // longer, every fourth longer still, and so on.
    void Measure(long row) {
        m_Trace.resize(12);
        for (; row % 2 == 0; row /= 2) {
            m_Trace.resize(m_Trace.size() + 12);
        }
        for (unsigned char& sample : m_Trace) {
            sample = static_cast<unsigned char>(m_Level / 2 + Random(4));
        }
        m_Level = std::clamp(m_Level + Random(7) - 3, 0, 500);
    }

    static std::tm TimeOf(long secondsSinceStart) {
        const std::time_t seconds =
            1704067200 + secondsSinceStart;  // from the first day of 2024 on
        std::tm time{};
        gmtime_r(&seconds, &time);
        return time;
    }

    int Random(unsigned end) { return static_cast<int>(m_Random() % end); }

    CXMLSaxWriter& m_Writer;
    CXMLAttribut m_Number{"number", ""};
    CXMLAttribut m_Station{"station", ""};
    std::mt19937 m_Random{1};  // the same numbers everywhere
    int m_Level = 398;         // in centimetres
    std::vector<unsigned char> m_Trace;
};

// Answers how many bytes were written. An output that fails ends the report at once, as a
// std::ios_base::failure: the writer lets the exceptions of a stream pass.
std::uint64_t WriteTo(std::ostream& target, long rows) {
    CCountingBuffer counted(*target.rdbuf());
    std::ostream out(&counted);
    out.exceptions(std::ios::badbit | std::ios::failbit);
    CXMLSaxWriter writer;
    writer.StartDocument(&out, /*format=*/true, /*ownStream=*/false);
    CReport(writer).Write(rows);
    writer.EndDocument();
    out.flush();
    return counted.Bytes();
}

// A stream of our own and not the writer's, since the writer does not look whether closing the file
// succeeded; and what the writer does for its own files is then ours to do: to remove one that is
// not finished.
std::uint64_t WriteFile(const std::string& name, long rows) {
    std::ofstream file(name, std::ios::binary);
    file.exceptions(std::ios::badbit | std::ios::failbit);  // throws if it was not opened
    try {
        const std::uint64_t bytes = WriteTo(file, rows);
        file.close();
        return bytes;
    } catch (...) {
        std::error_code ignored;
        if (std::filesystem::is_regular_file(std::filesystem::symlink_status(name, ignored))) {
            std::filesystem::remove(name, ignored);
        }
        throw;
    }
}

void Run(const char* fileName, long rows) {
    const std::size_t memoryBefore = PeakMemory();
    const auto start = std::chrono::steady_clock::now();
    const std::string output = fileName != nullptr ? fileName : "standard output";
    std::uint64_t bytes = 0;
    try {
        bytes = fileName != nullptr ? WriteFile(output, rows) : WriteTo(std::cout, rows);
    } catch (std::ios_base::failure&) {
        throw CXMLException(1, 4U, output.c_str());  // "Error saving '%s'."
    }
    const double seconds =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();

    // Beside the report itself there is no place for the summary.
    std::ostream& summary = fileName != nullptr ? std::cout : std::cerr;
    summary << "  wrote    " << terminal::Count(static_cast<std::size_t>(rows), "measurement")
            << ", " << terminal::Count(bytes, "byte") << ", to " << terminal::OneLine(output)
            << '\n';
    if (fileName == nullptr || isatty(STDOUT_FILENO) == 1) {  // a file gets the same each time
        summary << "  time     " << terminal::Duration(seconds) << "   "
                << terminal::Fixed(static_cast<double>(bytes) / 1e6 / seconds, 1) << " MB/s\n";
    }
    summary << "  memory   " << MemorySince(memoryBefore) << std::endl;
}

}  // namespace

int main(int argc, char** argv) {
    constexpr long kMostRows = 1'000'000'000;  // then the year 3925 has come
    long rows = 1'000'000;
    int next = 1;
    bool isUsage = false;
    if (next < argc && std::strcmp(argv[next], "--rows") == 0) {
        isUsage = argc < 3 || !ReadCount(argv[2], kMostRows, rows);
        next = 3;
    }
    if (isUsage || argc > next + 1) {
        std::cerr << "usage: write_report [--rows N] [FILE]\n";
        return 2;
    }
    const char* fileName = next < argc ? argv[next] : nullptr;
    std::ios::sync_with_stdio(false);  // or standard output would take every token for itself
    try {
        Run(fileName, rows);
    } catch (CXMLException& e) {
        std::cerr << "write_report: " << terminal::OneLine(e.GetMessage()) << '\n';
        return 1;
    } catch (std::exception& e) {
        std::cerr << "write_report: " << terminal::OneLine(e.what()) << '\n';
        return 1;
    }
    if (!std::cout) {
        std::cerr << "write_report: the summary could not be written\n";
        return 1;
    }
    return 0;
}
