// read_large_file [--texts N] FILE: what is in a document of any size, in a few megabytes.
//
// The document arrives as callbacks and nothing of it is kept but counts and the N largest texts (5
// if not said otherwise). While it is read, a terminal shows how far it has got.
#include <norvask/norvask.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <exception>
#include <filesystem>
#include <iostream>
#include <string>

#include "support/largest_texts.h"
#include "support/name_counts.h"
#include "support/options.h"
#include "support/peak_memory.h"
#include "support/problems.h"
#include "support/progress_bar.h"
#include "support/terminal.h"

namespace {

using norvask::CXMLError;
using norvask::CXMLException;
using norvask::CXMLManager;
using norvask::CXMLSaxAttribut;
using norvask::CXMLSaxHandler;
using norvask::SXMLLoadOptions;
using norvask::XMLLoadFile;

class CReader : public CXMLSaxHandler {
public:
    explicit CReader(std::size_t texts) : m_Texts(texts) {}

    const CNameCounts& Names() const { return m_Names; }
    const CLargestTexts& Texts() const { return m_Texts; }
    std::size_t Levels() const { return m_Levels; }
    std::uint64_t TextBytes() const { return m_TextBytes; }

    void StartElement(const char* /*uri*/, const char* /*localName*/, const char* qName,
                      CXMLSaxAttribut** /*attributes*/) override {
        m_Names.Add(qName);
        if (m_Depth > 0) m_Path += '/';
        m_Path += qName;
        if (++m_Depth > m_Levels) m_Levels = m_Depth;
    }

    void EndElement(const char* /*uri*/, const char* /*localName*/, const char* qName) override {
        m_Path.resize(m_Path.size() - std::strlen(qName));
        if (--m_Depth > 0) m_Path.pop_back();  // the '/'
    }

    void Characters(const char* text) override {
        const std::size_t size = std::strlen(text);
        m_TextBytes += size;
        if (m_Texts.Takes(size)) {
            // The text has just ended, so this is the end of the tag behind it.
            m_Texts.Add(size, GetSourceOffset(), m_Path, text);
        }
    }

private:
    CNameCounts m_Names;
    CLargestTexts m_Texts;
    std::string m_Path;  // the names of the open elements
    std::size_t m_Depth = 0;
    std::size_t m_Levels = 0;
    std::uint64_t m_TextBytes = 0;
};

void PrintNames(const CNameCounts& names) {
    constexpr std::size_t kMost = 16;
    const auto row = [](const std::string& name, std::size_t count) {
        return "  " + terminal::Left(name, 30) + terminal::Right(terminal::Grouped(count), 15);
    };
    std::size_t rest = names.Total();
    for (const auto& [name, count] : names.MostFrequent(kMost)) {
        std::cout << row(terminal::OneLine(name), count) << '\n';
        rest -= count;
    }
    if (rest > 0) std::cout << terminal::Paint(terminal::kFaint, row("… others", rest)) << '\n';
    std::cout << terminal::Paint(terminal::kBold, row("all elements", names.Total())) << "\n\n";
}

void PrintTexts(const CLargestTexts& texts) {
    if (texts.Texts().empty()) return;
    std::cout << "  "
              << terminal::Paint(terminal::kFaint, "largest texts, in bytes      before byte")
              << '\n';
    for (const SLargeText& text : texts.Texts()) {
        const std::size_t columns = terminal::Columns() - 46;
        std::cout << "  " << terminal::Right(terminal::Grouped(text.size), 23)
                  << terminal::Right(terminal::Grouped(text.offset), 17) << "   "
                  << terminal::Cut(terminal::OneLine(text.path), columns) << '\n'
                  << "  " << std::string(43, ' ')
                  << terminal::Paint(terminal::kFaint,
                                     terminal::Cut(terminal::OneLine(text.beginning), columns))
                  << '\n';
    }
    std::cout << '\n';
}

void ReadFile(const char* name, std::size_t texts) {
    std::error_code unknown;  // the name may be a URL
    const std::uintmax_t size = std::filesystem::file_size(name, unknown);
    const std::size_t memoryBefore = PeakMemory();
    const auto start = std::chrono::steady_clock::now();

    CProgressBar bar;
    CReader reader(texts);
    // Offsets are not free, so only if somebody is going to see them.
    CXMLManager::GetInstance().SetCalculateSourceOffsets(texts > 0);
    XMLLoadFile(name, reader,
                SXMLLoadOptions().Progress([&bar](std::uint64_t read, std::uint64_t total) {
                    if (bar.IsDue()) bar.Show(read, total);
                }));
    bar.Clear();

    const double seconds =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    const std::string memory = MemorySince(memoryBefore);
    std::cout << terminal::Paint(terminal::kBold, terminal::OneLine(name)) << "   "
              << (reader.Names().Others() > 0 ? "more than " : "")
              << terminal::Count(reader.Names().Names(), "name") << " of elements, "
              << terminal::Count(reader.Levels(), "level") << " deep\n\n";
    PrintNames(reader.Names());
    PrintTexts(reader.Texts());
    if (!unknown) std::cout << "  file     " << terminal::Count(size, "byte") << '\n';
    std::cout << "  text     " << terminal::Count(reader.TextBytes(), "byte") << '\n'
              << "  time     " << terminal::Duration(seconds);
    if (!unknown) {
        std::cout << "   "
                  << terminal::Fixed(static_cast<double>(size) / 1e6 / seconds, 1) + " MB/s";
    }
    std::cout << "\n  memory   " << memory << '\n';
}

}  // namespace

int main(int argc, char** argv) {
    long texts = 5;
    const bool hasOption = argc == 4 && std::strcmp(argv[1], "--texts") == 0;
    if ((argc != 2 && !hasOption) || (hasOption && !ReadCount(argv[2], 1000, texts))) {
        std::cerr << "usage: read_large_file [--texts N] FILE\n";
        return 2;
    }
    try {
        ReadFile(argv[argc - 1], static_cast<std::size_t>(texts));
        std::cout.flush();
    } catch (const CXMLError& e) {  // of a load
        PrintProblems("read_large_file", e);
        return 1;
    } catch (CXMLException& e) {
        std::cerr << "read_large_file: " << terminal::OneLine(e.GetMessage()) << '\n';
        return 1;
    } catch (std::exception& e) {  // no memory, for example
        std::cerr << "read_large_file: " << terminal::OneLine(e.what()) << '\n';
        return 1;
    }
    if (!std::cout) {
        std::cerr << "read_large_file: the output could not be written\n";
        return 1;
    }
    return 0;
}
