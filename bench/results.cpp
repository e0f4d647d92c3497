#include "results.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <iterator>
#include <limits>
#include <ostream>

#include "documents.h"
#include "edits.h"
#include "peers.h"

namespace norvask_bench {

// At most `most` times what `peer` takes; without a peer, at most `most` of the unit. With `base`,
// of what Norvask takes only that counts which is more than in the cell of that name.
struct SLimit {
    const char* peer;
    double most;
    const char* base = nullptr;
};

namespace {

constexpr int kWhatWidth = 20;
constexpr int kDocumentWidth = 20;
constexpr int kFigureWidth = 15;
constexpr int kRatioWidth = 11;

// The limits of a measure on one document; without a document, on all that are not named.
struct SAim {
    const char* what;
    const char* document;
    std::vector<SLimit> limits;
};

// Less than the peer, by the digits that are shown.
constexpr double FASTER = 0.99;

const SAim AIMS[] = {
    {kLoad, DOCTYPE_DOCUMENT, {{kParser, 1.15}}},
    {kLoad, SMALL_DOCUMENT, {{kParser, 0.08}, {kLibxml2, FASTER}, {kTinyXml2, FASTER}}},
    {kLoad, nullptr, {{kParser, 0.25}, {kLibxml2, FASTER}, {kTinyXml2, FASTER}}},
    {kSavePlain, nullptr, {{kPugixml, 1}}},
    {kSaveFormatted, nullptr, {{kPugixml, 1}}},
    {kClone, nullptr, {{kPugixml, 1}}},
    {kQuery, nullptr, {{kLoop, 1.5}}},
    {kCallbacksIdle, DOCTYPE_DOCUMENT, {{kParser, 1.15}}},
    {kCallbacksIdle, nullptr, {{kParser, 0.15}, {kLibxml2, FASTER}}},
    {kCallbacksReading, DOCTYPE_DOCUMENT, {{kParser, 1.15}, {PARSER_READING, 1.15}}},
    {kCallbacksReading, nullptr, {{kParser, 0.2}, {PARSER_READING, 0.2}, {kLibxml2, FASTER}}},
    {LEFT, nullptr, {{kParser, 0.3, AT_ONCE}}},
    {LEFT_CALLBACKS, nullptr, {{kParser, 0.3, AT_ONCE}}},
    {DEPTH, nullptr, {{nullptr, 10}}},
    {kWriter, nullptr, {{nullptr, 45}}},
    {kHeap, nullptr, {{kPugixml, 1}}},
    {kCallbackHeap, nullptr, {{nullptr, 8}}},
    {GROWTH, nullptr, {{nullptr, 2}}},
    {CHURN_KEPT, nullptr, {{nullptr, 2}}},
};

const SAim* AimOf(const std::string& what, const std::string& document) {
    const auto aim = std::find_if(std::begin(AIMS), std::end(AIMS), [&](const SAim& known) {
        return what == known.what && (known.document == nullptr || document == known.document);
    });
    return aim == std::end(AIMS) ? nullptr : aim;
}

// What is not told as a time that fits the value.
struct SUnit {
    const char* what;
    const char* name;
    double size;
};

constexpr SUnit kUnits[] = {
    {DEPTH, "ms", 1e-3}, {kWriter, "ns", 1e-9},
    {kHeap, "B/B", 1},   {kCallbackHeap, "MiB", 1024 * 1024},
    {GROWTH, "x", 1},    {GROWTH_INSIDE, "x", 1},
    {CHURN, "ns", 1e-9}, {CHURN_KEPT, "x", 1},
};

const SUnit* UnitOf(const std::string& what) {
    for (const SUnit& unit : kUnits) {
        if (what == unit.what) return &unit;
    }
    return nullptr;
}

constexpr const char* kColumns[] = {kNorvask,  kParser,  kXercesDom, kLibxml2,
                                    kTinyXml2, kPugixml, kQt};

// What few rows are compared with has no column and is shown behind them.
constexpr const char* ASIDES[] = {kLoop, PARSER_READING, AT_ONCE};

constexpr const char* RANGE_COLUMNS[] = {kParser,  PARSER_READING, kXercesDom,
                                         kLibxml2, kTinyXml2,      kPugixml};

bool HasColumn(const std::string& peer) {
    return std::find(std::begin(kColumns), std::end(kColumns), peer) != std::end(kColumns);
}

std::string Format(const char* format, double value) {
    char text[64];
    std::snprintf(text, sizeof(text), format, value);
    return text;
}

// Three significant digits.
std::string Short(double value) {
    return Format(value < 10 ? "%.2f" : value < 100 ? "%.1f" : "%.0f", value);
}

std::string Time(double seconds) {
    if (seconds < 1e-3) return Short(seconds * 1e6) + " us";
    return Short(seconds * 1e3) + " ms";
}

std::string Padded(const std::string& text, int width, bool right) {
    const std::size_t wide = static_cast<std::size_t>(width);
    // The texts are ASCII, so bytes are columns.
    const std::string blanks(text.size() < wide ? wide - text.size() : 0, ' ');
    return right ? blanks + text : text + blanks;
}

std::string Heading() {
    return Padded("what", kWhatWidth, false) + Padded("document", kDocumentWidth, false);
}

}  // namespace

std::string CResults::Name(const std::string& what, const std::string& document,
                           const std::string& peer) {
    return what + "/" + document + "/" + peer;
}

std::string CResults::Announce(const std::string& what, const std::string& document,
                               const std::string& peer) {
    const std::string name = Name(what, document, peer);
    const auto row = std::find_if(m_Rows.begin(), m_Rows.end(), [&](const SRow& known) {
        return known.what == what && known.document == document;
    });
    m_Places[name] = {static_cast<std::size_t>(row - m_Rows.begin()), peer};
    if (row == m_Rows.end()) m_Rows.push_back({what, document, {}});
    return name;
}

void CResults::Add(const std::string& name, double value, double speed) {
    const auto& [row, peer] = m_Places.at(name);
    const auto [cell, added] = m_Rows[row].cells.insert({peer, {value, speed}});
    if (!added && value < cell->second.value) cell->second = {value, speed};
}

bool CResults::Any() const {
    return std::any_of(m_Rows.begin(), m_Rows.end(),
                       [](const SRow& row) { return !row.cells.empty(); });
}

std::string CResults::Figure(const SRow& row, const SCell& cell) {
    const SUnit* unit = UnitOf(row.what);
    const std::string figure =
        unit == nullptr ? Time(cell.value) : Short(cell.value / unit->size) + " " + unit->name;
    if (cell.speed == 0) return figure;
    return figure + Padded(Format("%.0f", cell.speed / 1e6), 6, true);
}

std::string CResults::Ratio(const SRow& row, const std::string& peer) {
    const auto ours = row.cells.find(kNorvask);
    const auto theirs = row.cells.find(peer);
    if (ours == row.cells.end() || theirs == row.cells.end()) return "-";
    return Short(ours->second.value / theirs->second.value);
}

std::optional<double> CResults::Reached(const SRow& row, const SLimit& limit) {
    const auto ours = row.cells.find(kNorvask);
    const auto theirs = limit.peer == nullptr ? ours : row.cells.find(limit.peer);
    const auto base = limit.base == nullptr ? ours : row.cells.find(limit.base);
    if (ours == row.cells.end() || theirs == row.cells.end() || base == row.cells.end()) {
        return std::nullopt;
    }
    const double value = ours->second.value - (limit.base == nullptr ? 0 : base->second.value);
    const double unit = limit.peer == nullptr ? UnitOf(row.what)->size : theirs->second.value;
    // Judged by the digits that are shown: the third one is noise.
    return std::round(value / unit * 100) / 100;
}

std::string CResults::Verdict(const SRow& row) {
    const SAim* aim = AimOf(row.what, row.document);
    if (aim == nullptr) return "";
    std::string limits;
    std::string missed;
    bool complete = true;
    for (const SLimit& limit : aim->limits) {
        const char* beside = limit.peer == nullptr ? UnitOf(row.what)->name : limit.peer;
        const std::optional<double> reached = Reached(row, limit);
        limits += (limits.empty() ? "" : ", ") + Format("%.3g ", limit.most) + beside;
        if (limit.base != nullptr) limits += std::string(" more than ") + limit.base;
        if (!reached.has_value()) {
            limits += " (not measured)";
            complete = false;
        } else if (limit.base != nullptr || !HasColumn(beside)) {
            limits += Format(" (%.2f)", *reached);
        }
        if (reached.has_value() && *reached > limit.most) {
            missed += (missed.empty() ? " (" : ", ") + std::string(beside);
        }
    }
    if (missed.empty()) return limits + (complete ? ": met" : "");
    return limits + ": MISSED" + (aim->limits.size() == 1 ? "" : missed + ")");
}

template <class PrintCells>
void CResults::PrintRows(std::ostream& out, PrintCells printCells) const {
    const std::string* what = nullptr;
    for (const SRow& row : m_Rows) {
        if (row.cells.empty()) continue;
        // A blank line sets each measure apart.
        if (what != nullptr && *what != row.what) out << "\n";
        what = &row.what;
        out << Padded(row.what, kWhatWidth, false) << Padded(row.document, kDocumentWidth, false);
        printCells(row);
        out << "\n";
    }
}

void CResults::PrintFigures(std::ostream& out) const {
    out << "\nFigures: CPU time, the best repetition, and MB/s (of what is read or written);"
           "\nwriter: time of one element; heap: bytes of heap per byte of input; heap, callbacks:"
           "\nheap above the start; growth: time of 8 n in times of n, divided by 8; churn: time of"
           "\none change; churn, kept: the most kept in the most live\n\n"
        << Heading();
    for (const char* peer : kColumns) {
        out << Padded(peer, kFigureWidth, true);
    }
    out << "\n";
    PrintRows(out, [&](const SRow& row) {
        for (const char* peer : kColumns) {
            const auto cell = row.cells.find(peer);
            out << Padded(cell == row.cells.end() ? "-" : Figure(row, cell->second), kFigureWidth,
                          true);
        }
        for (const char* aside : ASIDES) {
            const auto cell = row.cells.find(aside);
            if (cell != row.cells.end()) {
                out << "   " << aside << ": " << Figure(row, cell->second);
            }
        }
    });
}

void CResults::PrintRatios(std::ostream& out) const {
    out << "\nRatios: Norvask / peer; below 1 Norvask needs less\n\n" << Heading();
    for (const char* peer : kColumns) {
        if (peer != kNorvask) out << Padded(peer, kRatioWidth, true);
    }
    out << "   aim: at most\n";
    PrintRows(out, [&](const SRow& row) {
        for (const char* peer : kColumns) {
            if (peer != kNorvask) out << Padded(Ratio(row, peer), kRatioWidth, true);
        }
        out << "   " << Verdict(row);
    });
}

std::string CResults::Range(const std::string& what, bool plainOnly,
                            const std::string& peer) const {
    double least = std::numeric_limits<double>::infinity();
    double most = 0;
    for (const SRow& row : m_Rows) {
        if (row.what != what || row.document == SMALL_DOCUMENT ||
            (plainOnly && row.document == DOCTYPE_DOCUMENT)) {
            continue;
        }
        const std::optional<double> ratio = Reached(row, {peer.c_str(), 0});
        if (!ratio.has_value()) continue;
        least = std::min(least, *ratio);
        most = std::max(most, *ratio);
    }
    return most == 0 ? "" : Short(least) + " to " + Short(most);
}

void CResults::PrintRanges(std::ostream& out) const {
    out << "\nRanges of the ratios over the documents but for the small one\n\n" << Heading();
    for (const char* peer : RANGE_COLUMNS) {
        out << Padded(peer, kFigureWidth, true);
    }
    out << "\n";
    for (const char* what : {kLoad, kSavePlain, kSaveFormatted, kClone, kHeap, kCallbacksIdle,
                             kCallbacksReading, LEFT, LEFT_CALLBACKS}) {
        for (const bool plainOnly : {true, false}) {
            std::string cells;
            bool any = false;
            for (const char* peer : RANGE_COLUMNS) {
                const std::string range = Range(what, plainOnly, peer);
                any = any || !range.empty();
                cells += Padded(range.empty() ? "-" : range, kFigureWidth, true);
            }
            if (!any) continue;
            out << Padded(what, kWhatWidth, false)
                << Padded(plainOnly ? "without a DOCTYPE" : "all", kDocumentWidth, false) << cells
                << "\n";
        }
    }
}

bool CCollector::ReportContext(const Context& context) {
    m_bStarted = true;
    GetErrorStream() << "Running on " << context.cpu_info.num_cpus << " CPUs of "
                     << Format("%.0f", context.cpu_info.cycles_per_second / 1e6) << " MHz, load";
    for (const double load : context.cpu_info.load_avg) {
        GetErrorStream() << Format(" %.2f", load);
    }
    GetErrorStream() << "\n";
    return true;
}

void CCollector::ReportRuns(const std::vector<Run>& runs) {
    for (const Run& run : runs) {
        if (run.error_occurred) {
            GetErrorStream() << run.benchmark_name() << ": " << run.error_message << "\n";
            m_bFailed = true;
        } else if (run.run_type == Run::RT_Iteration && run.iterations > 0) {
            const auto speed = run.counters.find("bytes_per_second");
            const auto items = run.counters.find("items_per_second");
            m_Results.Add(run.run_name.function_name,
                          items == run.counters.end()
                              ? run.cpu_accumulated_time / static_cast<double>(run.iterations)
                              : 1 / items->second.value,
                          speed == run.counters.end() ? 0.0 : speed->second.value);
        }
    }
}

}  // namespace norvask_bench
