// What is wrong with a document, printed as compilers print it:
//
//     orders.xml:14:26: error: attribute 'wrapped' is not declared for element 'gift'
//         14 |     <gift wrapped="yes"/>
//            |                          ^
//            | in /orders/order[3]/gift[1]/@wrapped
//
// The document may be anybody's, and so may be all that errors quote from it: what is printed is
// bounded, and harmless to a terminal.
#ifndef NORVASK_EXAMPLES_PROBLEMS_H
#define NORVASK_EXAMPLES_PROBLEMS_H

#include <norvask/norvask.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

#include "terminal.h"

// The part of a line of a file that is around a column.
class CSourceLine {
public:
    // Empty where there is none: no such line, or a file that is no text in UTF-8 or the like.
    // Columns are counted in characters, from 1; 0 is none.
    CSourceLine(const std::string& fileName, std::uint64_t line, std::uint64_t column) {
        std::error_code unknown;
        if (line == 0 || !std::filesystem::is_regular_file(fileName, unknown)) return;
        std::ifstream file(fileName, std::ios::binary);
        if (!file) return;
        std::streambuf& bytes = *file.rdbuf();
        if (!SkipMark(bytes)) return;
        for (std::uint64_t at = 1; at < line;) {
            const int byte = NextByte(bytes);
            if (byte < 0) return;
            if (byte == '\n') ++at;
        }
        std::uint64_t characters = 0;
        for (int byte = NextByte(bytes); byte >= 0 && byte != '\n'; byte = NextByte(bytes)) {
            if ((byte & 0xC0) != 0x80) ++characters;
            std::string& part = characters < column ? m_Before : m_After;
            part += static_cast<char>(byte);
            if (m_Before.size() > 2 * kMost) m_Before.erase(0, kMost);
            if (m_After.size() > kMost) break;
        }
        m_HasColumn = column > 0;
    }

    bool IsEmpty() const { return m_Before.empty() && m_After.empty(); }

    // The line and the one with the caret, in so many columns. A TAB stands in both of them, so
    // that the caret is where it should be however wide TABs are.
    std::string Text(std::size_t columns) const {
        std::string text;
        for (const SCell& cell : Around(columns)) {
            text += cell.shown;
        }
        return text;
    }
    std::string Caret(std::size_t columns) const {
        if (!m_HasColumn) return "";
        std::string blanks;
        for (const SCell& cell : Around(columns)) {
            if (cell.isBehind) break;
            blanks += cell.shown == "\t" ? "\t" : std::string(cell.width, ' ');
        }
        return blanks + '^';
    }

private:
    static constexpr std::size_t kMost = 4096;

    struct SCell {
        std::string shown;
        std::size_t width;
        bool isBehind;  // the column
    };

    // Passes over a byte order mark of UTF-8. Returns false for UTF-16 and UTF-32.
    static bool SkipMark(std::streambuf& bytes) {
        char front[4] = {' ', ' ', ' ', ' '};
        const std::streamsize count = bytes.sgetn(front, sizeof front);
        for (std::streamsize i = 0; i < count; ++i) {
            if (front[i] == '\0' || front[i] == '\xFE' || front[i] == '\xFF') return false;
        }
        const bool hasMark = std::string(front, 3) == "\xEF\xBB\xBF";
        bytes.pubseekpos(hasMark ? 3 : 0, std::ios::in);
        return true;
    }

    // The next byte, '\n' for each end of a line; -1 at the end.
    static int NextByte(std::streambuf& bytes) {
        const int byte = bytes.sbumpc();
        if (byte != '\r') return byte;
        if (bytes.sgetc() == '\n') bytes.sbumpc();
        return '\n';
    }

    static void Append(const std::string& text, bool isBehind, std::vector<SCell>& cells) {
        for (std::size_t at = 0; at < text.size();) {
            const std::size_t begin = at;
            const char32_t c = terminal::NextCharacter(text, at);
            if (c == '\t') {
                cells.push_back({"\t", 8, isBehind});
                continue;
            }
            const std::string shown = terminal::Harmless(c, text, begin, at);
            cells.push_back({shown, terminal::Width(shown), isBehind});
        }
    }

    // What fits. Where something is left out there is "…", and the column has room on either side.
    std::vector<SCell> Around(std::size_t columns) const {
        std::vector<SCell> cells;
        Append(m_Before, false, cells);
        const std::size_t focus = cells.size();
        Append(m_After, true, cells);

        std::size_t first = focus;
        std::size_t last = focus;
        std::size_t width = 1;  // that of the caret, which may stand behind the line
        const auto takeBefore = [&](std::size_t most) {
            while (first > 0 && width + cells[first - 1].width <= most) {
                width += cells[--first].width;
            }
        };
        takeBefore(columns * 2 / 3);
        while (last < cells.size() && width + cells[last].width + 2 <= columns) {
            width += cells[last++].width;
        }
        takeBefore(columns - 2);
        if (first > 0) cells[--first] = {"…", 1, false};
        if (last < cells.size()) cells[last++] = {"…", 1, true};
        return std::vector<SCell>(cells.begin() + static_cast<std::ptrdiff_t>(first),
                                  cells.begin() + static_cast<std::ptrdiff_t>(last));
    }

    std::string m_Before;  // the column; at least as much of it as fits any line
    std::string m_After;
    bool m_HasColumn = false;
};

// As the user may have named it: relative, if it lies in the working directory.
inline std::string ShownFile(const std::string& file) {
    std::error_code unknown;
    const std::string folder = std::filesystem::current_path(unknown).string() + '/';
    const bool isBelow = file.compare(0, folder.size(), folder) == 0;
    return terminal::OneLine(isBelow ? file.substr(folder.size()) : file);
}

// The parser calls a schema by its URL.
inline std::string PathOf(const std::string& file) {
    return file.compare(0, 7, "file://") == 0 ? file.substr(7) : file;
}

inline void PrintProblem(const std::string& program, const norvask::SXMLProblem& problem) {
    const auto paint = [](const char* style, const std::string& text) {
        return terminal::Paint(style, text, STDERR_FILENO);
    };
    std::string place = problem.file.empty() ? program : ShownFile(PathOf(problem.file));
    if (problem.line > 0) place += ':' + std::to_string(problem.line);
    if (problem.line > 0 && problem.column > 0) place += ':' + std::to_string(problem.column);
    const bool isFatal = problem.severity == norvask::EXMLSeverity::FATAL;
    std::cerr << paint(terminal::kBold, place + ':') << ' '
              << paint("1;31", isFatal ? "fatal error:" : "error:") << ' '
              << terminal::Cut(terminal::OneLine(problem.text), 1000) << '\n';

    const std::size_t columns = terminal::Columns(STDERR_FILENO) - 9;
    const auto print = [&](const std::string& number, const std::string& text) {
        std::cerr << paint(terminal::kFaint, terminal::Right(number, 6) + " | ") << text << '\n';
    };
    const CSourceLine line(PathOf(problem.file), problem.line, problem.column);
    if (!line.IsEmpty()) {
        const std::string caret = line.Caret(columns);
        print(std::to_string(problem.line), line.Text(columns));
        if (!caret.empty()) print("", paint("1;32", caret));
    }
    if (!problem.path.empty()) {
        print("", paint(terminal::kCyan,
                        "in " + terminal::CutFront(terminal::OneLine(problem.path), columns - 3)));
    }
}

// All that the error tells; where it is of no document, its text.
inline void PrintProblems(const std::string& program, const norvask::CXMLError& error) {
    for (const norvask::SXMLProblem& problem : error.Problems()) {
        PrintProblem(program, problem);
    }
    if (error.Problems().empty()) {
        std::cerr << program << ": " << terminal::OneLine(error.what()) << '\n';
    }
}

#endif
