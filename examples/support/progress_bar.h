// A line on the terminal that shows how far a long job has come.
#ifndef NORVASK_EXAMPLES_PROGRESS_BAR_H
#define NORVASK_EXAMPLES_PROGRESS_BAR_H

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <string>

#include "terminal.h"

// Drawn on standard error, and only if that is a terminal: redirected output stays clean. The line
// is gone when the bar is, also when an exception ends the job.
class CProgressBar {
public:
    CProgressBar() = default;
    CProgressBar(const CProgressBar&) = delete;
    CProgressBar& operator=(const CProgressBar&) = delete;
    ~CProgressBar() { Clear(); }

    static bool IsOnTerminal() {
        const char* kind = std::getenv("TERM");
        return isatty(STDERR_FILENO) == 1 && kind != nullptr && std::strcmp(kind, "dumb") != 0;
    }

    // Whether the next line should be drawn: ten times a second is as much as an eye can follow.
    bool IsDue() const { return m_IsShown && Clock::now() >= m_Next; }

    // The bytes that are done, and all that there are; 0 if nobody knows.
    void Show(std::uint64_t done, std::uint64_t total) {
        if (!m_IsShown) return;
        std::cerr << '\r' << Line(done, total) << "\x1b[K" << std::flush;
        m_IsDrawn = true;
        m_Next = Clock::now() + std::chrono::milliseconds(100);
    }

    void Clear() {
        if (m_IsDrawn) std::cerr << "\r\x1b[K" << std::flush;
        m_IsDrawn = false;
    }

private:
    using Clock = std::chrono::steady_clock;

    static std::string Line(std::uint64_t done, std::uint64_t total) {
        if (total == 0) return terminal::Megabytes(done);
        const std::uint64_t percent = std::min<std::uint64_t>(100 * done / total, 100);
        const std::string all = terminal::Megabytes(total);
        const std::string text = terminal::Right(std::to_string(percent), 5) + " %   " +
                                 terminal::Right(terminal::Megabytes(done), all.size()) + " of " +
                                 all;
        const std::size_t used = text.size() + 1;
        const std::size_t columns = Columns();
        const std::size_t room = std::min<std::size_t>(columns > used ? columns - used : 0, 40);
        const std::size_t full = room * percent / 100;
        std::string bar;
        for (std::size_t i = 0; i < room; ++i) {
            bar += i < full ? "█" : "░";
        }
        return bar + text;
    }

    static std::size_t Columns() {
        winsize size{};
        return ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : 80;
    }

    bool m_IsShown = IsOnTerminal();
    bool m_IsDrawn = false;
    Clock::time_point m_Next;
};

#endif
