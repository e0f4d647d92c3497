// An outline as lines of text: the names indented, the counts in columns.
#ifndef NORVASK_EXAMPLES_OUTLINE_TABLE_H
#define NORVASK_EXAMPLES_OUTLINE_TABLE_H

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

#include "outline.h"
#include "terminal.h"

class COutlineTable {
public:
    explicit COutlineTable(const std::vector<SOutlineRow>& rows) {
        std::size_t widest = 0;
        for (const SOutlineRow& row : rows) {
            widest = std::max(widest, terminal::Width(Name(row)));
        }
        const std::size_t room = terminal::Columns() - 4 * kNumber - 4;
        m_NameWidth = std::min(std::max<std::size_t>(widest, 16), room);
    }

    std::string Head() const {
        return Line("", {"elements", "attributes", "text bytes", "binary bytes"});
    }

    std::string Row(const SOutlineRow& row) const { return Line(Name(row), Counts(row)); }

    // What tells one row from its neighbours.
    static std::string Key(const SOutlineRow& row) { return Name(row); }

    std::string Total(const SOutlineRow& row) const { return Line("all", Counts(row)); }

private:
    static constexpr std::size_t kNumber = 14;
    static constexpr std::size_t kDeepest = 12;

    // Two blanks for each level. From a depth on the level is written out instead, or the names
    // would leave the screen.
    static std::string Name(const SOutlineRow& row) {
        const std::string name = terminal::OneLine(row.name);
        if (row.depth <= kDeepest) return std::string(2 * row.depth, ' ') + name;
        return std::string(2 * kDeepest, ' ') + "level " + std::to_string(row.depth + 1) + " " +
               name;
    }

    static std::vector<std::string> Counts(const SOutlineRow& row) {
        std::vector<std::string> counts;
        for (const std::size_t n : {row.elements, row.attributes, row.textBytes, row.binaryBytes}) {
            counts.push_back(n == 0 ? "" : terminal::Grouped(n));
        }
        return counts;
    }

    std::string Line(const std::string& name, const std::vector<std::string>& numbers) const {
        std::string line = terminal::Left(name, m_NameWidth);
        for (const std::string& number : numbers) {
            line += terminal::Right(number, kNumber);
        }
        line.erase(line.find_last_not_of(' ') + 1);
        return line;
    }

    std::size_t m_NameWidth = 0;
};

#endif
