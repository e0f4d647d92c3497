// What changed between two lists of lines.
#ifndef NORVASK_EXAMPLES_DIFFERENCE_H
#define NORVASK_EXAMPLES_DIFFERENCE_H

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

struct SDifferenceLine {
    char mark;           // ' ' in both, '-' only before, '+' only after
    std::size_t number;  // of the line, from 1: in the later list, for '-' in the earlier one
    std::string text;
};

inline std::vector<std::string> SplitLines(const std::string& text) {
    std::vector<std::string> lines;
    for (std::size_t at = 0; at <= text.size();) {
        const std::size_t end = std::min(text.find('\n', at), text.size());
        lines.push_back(text.substr(at, end - at));
        if (!lines.back().empty() && lines.back().back() == '\r') lines.back().pop_back();
        at = end + 1;
    }
    return lines;
}

// All lines of both lists in order. The changes are the fewest possible, found by a table of the
// longest common parts; between ends that differ by too many lines for a table they are simply
// "all of these out, all of those in".
inline std::vector<SDifferenceLine> Difference(const std::vector<std::string>& before,
                                               const std::vector<std::string>& after) {
    constexpr std::size_t kTableLimit = 4'000'000;
    std::size_t head = 0;
    while (head < before.size() && head < after.size() && before[head] == after[head]) {
        ++head;
    }
    std::size_t tail = 0;
    while (tail < before.size() - head && tail < after.size() - head &&
           before[before.size() - 1 - tail] == after[after.size() - 1 - tail]) {
        ++tail;
    }
    const std::size_t rows = before.size() - head - tail;
    const std::size_t columns = after.size() - head - tail;

    // common[i][j]: the lines that before[head + i...] and after[head + j...] have in common.
    const bool tabled = rows == 0 || columns <= kTableLimit / rows;
    std::vector<std::vector<std::size_t>> common;
    if (tabled) {
        common.assign(rows + 1, std::vector<std::size_t>(columns + 1, 0));
        for (std::size_t i = rows; i-- > 0;) {
            for (std::size_t j = columns; j-- > 0;) {
                common[i][j] = before[head + i] == after[head + j]
                                   ? common[i + 1][j + 1] + 1
                                   : std::max(common[i + 1][j], common[i][j + 1]);
            }
        }
    }

    std::vector<SDifferenceLine> lines;
    const auto keep = [&](std::size_t j) { lines.push_back({' ', j + 1, after[j]}); };
    for (std::size_t j = 0; j < head; ++j) {
        keep(j);
    }
    std::size_t i = 0;
    std::size_t j = 0;
    while (i < rows || j < columns) {
        if (tabled && i < rows && j < columns && before[head + i] == after[head + j]) {
            keep(head + j);
            ++i;
            ++j;
        } else if (i < rows && (j == columns || !tabled || common[i + 1][j] >= common[i][j + 1])) {
            lines.push_back({'-', head + i + 1, before[head + i]});
            ++i;
        } else {
            lines.push_back({'+', head + j + 1, after[head + j]});
            ++j;
        }
    }
    for (j = after.size() - tail; j < after.size(); ++j) {
        keep(j);
    }
    return lines;
}

#endif
