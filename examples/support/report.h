// The parts of edit_catalog's report: headed sections, and lines marked with what became of them.
#ifndef NORVASK_EXAMPLES_REPORT_H
#define NORVASK_EXAMPLES_REPORT_H

#include <algorithm>
#include <cstddef>
#include <iostream>
#include <string>
#include <vector>

#include "difference.h"
#include "terminal.h"

namespace report {

inline void Section(const std::string& title, const std::string& subject) {
    const std::string shown = terminal::OneLine(subject);
    const std::size_t used = terminal::Width(title) + terminal::Width(shown) + 4;
    const std::size_t rule = terminal::Columns() > used ? terminal::Columns() - used : 0;
    std::string line;
    for (std::size_t i = 0; i < rule; ++i) {
        line += "─";
    }
    std::cout << '\n'
              << terminal::Paint(std::string(terminal::kBold) + ";" + terminal::kCyan, title)
              << "  " << shown << "  " << terminal::Paint(terminal::kFaint, line) << '\n';
}

inline void Note(const std::string& text) {
    std::cout << "  " << terminal::Paint(terminal::kFaint, text) << '\n';
}

inline const char* StyleOf(char mark) {
    return mark == '-' ? terminal::kRed : mark == '+' ? terminal::kGreen : terminal::kYellow;
}

// A row of a table. The key says which rows before and after are the same one.
struct SRow {
    std::string key;
    std::string text;
};

// The rows after the edits, marked: "+" is new, "~" has changed, and "-" shows a row that is gone.
// Of a run of unmarked rows longer than `most`, only the beginning is shown.
inline void PrintRows(const std::vector<SRow>& before, const std::vector<SRow>& after,
                      std::size_t most) {
    const auto keys = [](const std::vector<SRow>& rows) {
        std::vector<std::string> list;
        for (const SRow& row : rows) {
            list.push_back(row.key);
        }
        return list;
    };
    std::size_t unmarked = 0;
    std::size_t leftOut = 0;
    const auto tellLeftOut = [&leftOut] {
        if (leftOut > 0) Note("  … and " + terminal::Count(leftOut, "more row"));
        leftOut = 0;
    };
    std::size_t old = 0;
    std::size_t now = 0;
    for (const SDifferenceLine& line : Difference(keys(before), keys(after))) {
        char mark = line.mark;
        const SRow& row = mark == '-' ? before[old] : after[now];
        if (mark == ' ' && before[old].text != row.text) mark = '~';
        if (line.mark != '+') ++old;
        if (line.mark != '-') ++now;
        unmarked = mark == ' ' ? unmarked + 1 : 0;
        if (unmarked > most) {
            ++leftOut;
            continue;
        }
        tellLeftOut();
        const std::string text = std::string(1, mark) + " " + row.text;
        std::cout << (mark == ' ' ? text : terminal::Paint(StyleOf(mark), text)) << '\n';
    }
    tellLeftOut();
}

// A line of a saved document as it fits the screen: TABs in front narrowed to two blanks, and if
// the line is too long, the part around the byte `focus`.
inline std::string Excerpt(const std::string& line, std::size_t focus, std::size_t columns) {
    const std::size_t tabs = std::min(line.find_first_not_of('\t'), line.size());
    const std::string indent(std::min<std::size_t>(2 * tabs, columns / 2), ' ');
    const std::size_t room = columns - indent.size();
    std::size_t begin = tabs;
    if (focus > tabs + room / 2) {
        begin = focus - room / 2;
        while (begin < line.size() && (static_cast<unsigned char>(line[begin]) & 0xC0U) == 0x80) {
            ++begin;
        }
    }
    const std::string text =
        (begin > tabs ? "…" : "") + terminal::OneLine(line.substr(begin, 8 * room));
    return indent + terminal::Cut(text, room);
}

// What differs between two saved documents: the changed lines with their numbers, and one line of
// the surroundings on either side. At most `most` lines are shown.
inline void PrintChanges(const std::vector<SDifferenceLine>& lines, std::size_t most) {
    // Where line and partner, the one that it replaces or is replaced by, begin to differ.
    std::vector<std::size_t> focus(lines.size(), 0);
    for (std::size_t i = 0; i + 1 < lines.size(); ++i) {
        if (lines[i].mark == '-' && lines[i + 1].mark == '+') {
            const std::string& a = lines[i].text;
            const std::string& b = lines[i + 1].text;
            const auto ends = std::mismatch(a.begin(), a.end(), b.begin(), b.end());
            focus[i] = focus[i + 1] = static_cast<std::size_t>(ends.first - a.begin());
        }
    }
    std::size_t shown = 0;
    std::size_t changes = 0;
    bool gap = false;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const auto isChanged = [&](std::size_t at) {
            return at < lines.size() && lines[at].mark != ' ';
        };
        const bool near = isChanged(i) || isChanged(i + 1) || (i > 0 && isChanged(i - 1));
        if (isChanged(i)) ++changes;
        if (!near || shown == most) {
            gap = true;
            continue;
        }
        if (gap && shown > 0) Note("    ⋯");
        gap = false;
        ++shown;
        const SDifferenceLine& line = lines[i];
        const std::string number = terminal::Right(std::to_string(line.number), 5) + " ";
        const std::string text = Excerpt(line.text, focus[i], terminal::Columns() - 9);
        std::cout << terminal::Paint(terminal::kFaint, number)
                  << terminal::Paint(isChanged(i) ? StyleOf(line.mark) : terminal::kFaint,
                                     std::string(1, line.mark) + " " + text)
                  << '\n';
    }
    if (changes == 0) Note("no line differs");
    if (shown == most) Note("    … the rest is not shown");
}

}  // namespace report

#endif
