// Gathers what was measured and prints it as three tables: the figures, the ratios with their
// aims, and the ranges of the ratios.
#ifndef NORVASK_BENCH_RESULTS_H
#define NORVASK_BENCH_RESULTS_H

#include <benchmark/benchmark.h>

#include <iosfwd>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace norvask_bench {

struct SLimit;

class CResults {
public:
    // The name of a measurement, "what/document/peer".
    static std::string Name(const std::string& what, const std::string& document,
                            const std::string& peer);

    // Announces a measurement and answers its name. Rows are printed in the order in which they are
    // first announced.
    std::string Announce(const std::string& what, const std::string& document,
                         const std::string& peer);

    // Keeps the smallest value for a name: whatever else the machine does can only add to a time.
    // `value` is in seconds, of one item where a measurement counts items, or for the heap in bytes
    // per byte, for that of callbacks in bytes; `speed` in bytes per second, 0 when it says
    // nothing.
    void Add(const std::string& name, double value, double speed);

    // False when nothing was measured.
    bool Any() const;
    void PrintFigures(std::ostream& out) const;
    void PrintRatios(std::ostream& out) const;
    // The least and the greatest ratio of each measure that runs over all documents.
    void PrintRanges(std::ostream& out) const;

private:
    struct SCell {
        double value;
        double speed;
    };
    struct SRow {
        std::string what;
        std::string document;
        std::map<std::string, SCell> cells;
    };

    static std::string Figure(const SRow& row, const SCell& cell);
    static std::string Ratio(const SRow& row, const std::string& peer);
    // Empty when that was not measured.
    static std::optional<double> Reached(const SRow& row, const SLimit& limit);
    static std::string Verdict(const SRow& row);
    std::string Range(const std::string& what, bool plainOnly, const std::string& peer) const;

    template <class PrintCells>
    void PrintRows(std::ostream& out, PrintCells printCells) const;

    std::vector<SRow> m_Rows;
    std::map<std::string, std::pair<std::size_t, std::string>> m_Places;
};

// Passes every repetition on to the results and prints nothing but the machine and errors.
class CCollector : public benchmark::BenchmarkReporter {
public:
    explicit CCollector(CResults& results) : m_Results(results) {}

    bool ReportContext(const Context& context) override;
    void ReportRuns(const std::vector<Run>& runs) override;

    // Whether anything was measured; not so when the names are only listed or none is chosen.
    bool Started() const { return m_bStarted; }
    bool Failed() const { return m_bFailed; }

private:
    CResults& m_Results;
    bool m_bStarted = false;
    bool m_bFailed = false;
};

}  // namespace norvask_bench

#endif
