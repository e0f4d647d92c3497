// What the examples need to print for people: colours, columns that line up, text that is safe to
// print. All strings are UTF-8.
#ifndef NORVASK_EXAMPLES_TERMINAL_H
#define NORVASK_EXAMPLES_TERMINAL_H

#include <sys/ioctl.h>
#include <unistd.h>

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <string>

namespace terminal {

// Colours appear on a terminal only, and not if the user has set NO_COLOR (https://no-color.org).
// Programs print to standard output, and to standard error what is wrong.
inline bool HasColours(int output = STDOUT_FILENO) {
    static const bool allowed = [] {
        const char* refused = std::getenv("NO_COLOR");
        const char* kind = std::getenv("TERM");
        return (refused == nullptr || *refused == '\0') && kind != nullptr &&
               std::strcmp(kind, "dumb") != 0;
    }();
    static const bool isTerminal[] = {isatty(STDOUT_FILENO) == 1, isatty(STDERR_FILENO) == 1};
    return allowed && isTerminal[output == STDERR_FILENO];
}

inline constexpr const char* kBold = "1";
inline constexpr const char* kFaint = "2";
inline constexpr const char* kRed = "31";
inline constexpr const char* kGreen = "32";
inline constexpr const char* kYellow = "33";
inline constexpr const char* kCyan = "36";

// The text in a colour: `style` is one of the codes above or several joined with ";".
inline std::string Paint(const std::string& style, const std::string& text,
                         int output = STDOUT_FILENO) {
    return HasColours(output) && !text.empty() ? "\x1b[" + style + "m" + text + "\x1b[0m" : text;
}

// The columns of the terminal, 72 if it is narrower; 100 for a file or a pipe, so that their
// content is always the same.
inline std::size_t Columns(int output = STDOUT_FILENO) {
    winsize size{};
    if (isatty(output) == 1 && ioctl(output, TIOCGWINSZ, &size) == 0 && size.ws_col > 0) {
        return size.ws_col < 72 ? 72 : size.ws_col;
    }
    return 100;
}

// Takes the character that begins at `at`, which moves behind it. An invalid byte is U+FFFD.
inline char32_t NextCharacter(const std::string& text, std::size_t& at) {
    const auto byte = [&text](std::size_t i) {
        return i < text.size() ? static_cast<unsigned char>(text[i]) : 0U;
    };
    const unsigned lead = byte(at++);
    const int tail = lead < 0x80 ? 0 : lead < 0xC2 ? -1 : lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : 3;
    if (tail < 0 || lead > 0xF4) return 0xFFFD;
    char32_t character = tail == 0 ? lead : lead & (0x3FU >> tail);
    for (int i = 0; i < tail; ++i) {
        if ((byte(at) & 0xC0U) != 0x80) return 0xFFFD;
        character = (character << 6) | (byte(at++) & 0x3FU);
    }
    return character;
}

// How many columns a character takes: 0 for combining marks, 2 for East Asian and emoji.
inline std::size_t WidthOf(char32_t c) {
    struct SRange {
        char32_t first, last;
    };
    for (const SRange& none : {SRange{0x300, 0x36F}, {0x200B, 0x200F}, {0xFE00, 0xFE0F}}) {
        if (none.first <= c && c <= none.last) return 0;
    }
    for (const SRange& wide : {SRange{0x1100, 0x115F},
                               {0x2E80, 0xA4CF},
                               {0xAC00, 0xD7A3},
                               {0xF900, 0xFAFF},
                               {0xFE30, 0xFE6F},
                               {0xFF00, 0xFF60},
                               {0x1F300, 0x1FAFF},
                               {0x20000, 0x3FFFD}}) {
        if (wide.first <= c && c <= wide.last) return 2;
    }
    return 1;
}

inline std::size_t Width(const std::string& text) {
    std::size_t width = 0;
    for (std::size_t at = 0; at < text.size();) {
        width += WidthOf(NextCharacter(text, at));
    }
    return width;
}

// The character that begins at `begin` and ends before `end`, with a dot for one that could steer
// the terminal or turn the direction of the text, and U+FFFD for what is no UTF-8: a document has
// no power over the terminal of whoever looks at it.
inline std::string Harmless(char32_t c, const std::string& text, std::size_t begin,
                            std::size_t end) {
    const bool isControl = c < 0x20 || (c >= 0x7F && c < 0xA0) || c == 0x061C ||
                           (c >= 0x200B && c <= 0x200F) || (c >= 0x2028 && c <= 0x202E) ||
                           (c >= 0x2066 && c <= 0x2069);
    return isControl ? "·" : c == 0xFFFD ? "\uFFFD" : text.substr(begin, end - begin);
}

// The text on one line and harmless, with runs of blanks and line ends as one blank.
inline std::string OneLine(const std::string& text) {
    std::string line;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t begin = at;
        const char32_t c = NextCharacter(text, at);
        if (c == ' ' || c == '\t' || c == '\r' || c == '\n') {
            if (!line.empty() && line.back() != ' ') line += ' ';
        } else {
            line += Harmless(c, text, begin, at);
        }
    }
    if (!line.empty() && line.back() == ' ') line.pop_back();
    return line;
}

// The text in at most that many columns, with "…" where something was left out.
inline std::string Cut(const std::string& text, std::size_t columns) {
    std::size_t width = 0;
    std::size_t fits = 0;  // the bytes that leave a column for the "…"
    for (std::size_t at = 0; at < text.size();) {
        width += WidthOf(NextCharacter(text, at));
        if (width > columns) return text.substr(0, fits) + "…";
        if (width < columns) fits = at;
    }
    return text;
}

// The same with the end of the text, for paths.
inline std::string CutFront(const std::string& text, std::size_t columns) {
    std::size_t width = Width(text);
    if (width <= columns) return text;
    std::size_t at = 0;
    while (width >= columns) {
        width -= WidthOf(NextCharacter(text, at));
    }
    return "…" + text.substr(at);
}

// The text in exactly that many columns.
inline std::string Left(const std::string& text, std::size_t columns) {
    const std::string cut = Cut(text, columns);
    return cut + std::string(columns - Width(cut), ' ');
}
inline std::string Right(const std::string& text, std::size_t columns) {
    const std::string cut = Cut(text, columns);
    return std::string(columns - Width(cut), ' ') + cut;
}

// "1 234 567", the blanks being narrow enough to keep the number together and wide enough to read.
inline std::string Grouped(std::size_t number) {
    std::string digits = std::to_string(number);
    for (std::size_t at = digits.size(); at > 3;) {
        at -= 3;
        digits.insert(at, 1, ' ');
    }
    return digits;
}

// A count with its noun: "1 book", "2 books".
inline std::string Count(std::size_t number, const std::string& noun) {
    return Grouped(number) + " " + noun + (number == 1 ? "" : "s");
}

// printf's "%.Nf".
inline std::string Fixed(double number, int decimals) {
    char text[64];
    std::snprintf(text, sizeof text, "%.*f", decimals, number);
    return text;
}

// "0.42 ms", "3.10 s"
inline std::string Duration(double seconds) {
    return seconds < 1 ? Fixed(1000 * seconds, 2) + " ms" : Fixed(seconds, 2) + " s";
}

// "312.4 MB"
inline std::string Megabytes(std::size_t bytes) {
    return Fixed(static_cast<double>(bytes) / 1e6, 1) + " MB";
}

}  // namespace terminal

#endif
