// Compares the fast lane with the parser on very many documents. Ends with 1 if they differ.
//
//   lane_against_parser random [--seed N] [--seconds N] [--count N] [--windows N] [FOLDER...]
//       documents that are made up, and changed ones of those in the folders
//   lane_against_parser systematic
//       small documents, cut and changed at every place, and read with each window; and everything
//       on the edges of the parser's buffers
//   lane_against_parser documents [--every N] [--excerpts N] PATH...
//       all XML documents of the folders, or every Nth, and how much of each folder the lane takes
//
//   --processes N       1 unless given
//   --findings FOLDER   where documents with differences go; the current one unless given
//   --stop N            end after so many differences; 10 unless given
#include <chrono>
#include <cinttypes>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <iterator>
#include <map>
#include <regex>
#include <string>
#include <vector>

#include "findings.h"
#include "processes.h"
#include "support/plain_lane/comparison.h"
#include "support/plain_lane/document_generator.h"
#include "support/plain_lane/mutator.h"
#include "support/plain_lane/systematic.h"

namespace norvask_differential {

using namespace norvask_test;
namespace fs = std::filesystem;

const std::size_t DEFAULT_WINDOW = SLoadOptions().window;

struct SOptions {
    std::uint64_t seed = 1;
    std::uint64_t seconds = 0;
    std::uint64_t count = 0;
    std::uint64_t windows = 2;
    std::uint64_t processes = 1;
    std::uint64_t stop = 10;
    std::uint64_t excerpts = 3;
    std::uint64_t every = 1;
    std::string findings = ".";
    std::vector<std::string> paths;
};

// One process's comparisons: counts, and findings that are made small.
class CJudge {
public:
    CJudge(const SOptions& options, const std::string& name, SShared& shared)
        : m_Options(options), m_Findings(options.findings, name), m_Shared(shared) {}
    ~CJudge() { Tell(); }

    bool IsEnough() const { return m_Findings.Count() >= m_Options.stop; }
    CLaneComparison& Comparison() { return m_Comparison; }

    void Compare(const std::string& document, const std::vector<std::size_t>& windows) {
        Tell();
        m_Shared.At(document);
        if (IsOutOfBounds(document) || m_Comparison.Same(document, windows)) return;
        m_Findings.Add(document, m_Comparison.Difference(),
                       [&](const std::string& smaller, std::string& how) {
                           m_Shared.At(smaller);
                           if (IsOutOfBounds(smaller) || m_Smaller.Same(smaller, windows))
                               return false;
                           how = m_Smaller.Difference();
                           return true;
                       });
    }
    void CompareLoads(const std::string& document, std::uint64_t number) {
        m_Shared.At(document);
        if (IsOutOfBounds(document) || m_Comparison.SameLoadsInSomeWay(document, number)) return;
        m_Findings.Add(
            document, m_Comparison.Difference(), [&](const std::string& smaller, std::string& how) {
                m_Shared.At(smaller);
                if (IsOutOfBounds(smaller) || m_Smaller.SameLoadsInSomeWay(smaller, number))
                    return false;
                how = m_Smaller.Difference();
                return true;
            });
    }

private:
    void Tell() noexcept {
        m_Shared.counts = m_Comparison.Counts();
        m_Shared.differences = m_Findings.Count();
    }

    const SOptions& m_Options;
    CFindings m_Findings;
    SShared& m_Shared;
    CLaneComparison m_Comparison;
    CLaneComparison m_Smaller;  // so that what is counted is not what is made smaller
};

std::string ReadWhole(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

// Regular files that may hold XML: by their names or by how they begin.
std::vector<fs::path> FilesIn(const std::vector<std::string>& paths) {
    std::vector<fs::path> files;
    const auto consider = [&](const fs::path& path) {
        static const char* const KNOWN[] = {".xml", ".gir", ".svg", ".xsd", ".xsl", ".rng", ".ui"};
        if (std::find(std::begin(KNOWN), std::end(KNOWN), path.extension()) != std::end(KNOWN)) {
            files.push_back(path);
            return;
        }
        std::ifstream in(path, std::ios::binary);
        char start[5] = {};
        in.read(start, sizeof(start));
        if (std::string(start, 5) == "<?xml") files.push_back(path);
    };
    for (const std::string& path : paths) {
        if (fs::is_regular_file(path)) {
            files.push_back(path);
            continue;
        }
        std::error_code failed;
        for (fs::recursive_directory_iterator
                 at(path, fs::directory_options::skip_permission_denied, failed),
             end;
             at != end; at.increment(failed)) {
            if (at->is_regular_file(failed) && !at->is_symlink(failed)) consider(at->path());
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

// Pieces of real documents that are small enough to be changed very often.
std::vector<std::string> SmallOnesOf(const std::vector<std::string>& paths) {
    const std::size_t MOST_BYTES = 3000;
    std::vector<std::string> documents;
    if (paths.empty()) return documents;
    for (const fs::path& file : FilesIn(paths)) {
        std::error_code failed;
        const std::uintmax_t size = fs::file_size(file, failed);
        if (!failed && size > 0 && size <= MOST_BYTES) documents.push_back(ReadWhole(file));
    }
    return documents;
}

std::size_t SomeWindow(CRandom& random) {
    static const std::size_t WINDOWS[] = {1,   2,   3,   4,   5,   6,    7,    8,    11,
                                          15,  16,  17,  23,  32,  33,   48,   64,   65,
                                          100, 128, 200, 256, 512, 1000, 1024, 4096, 16384};
    return random.Once(3) ? 1 + random.Below(150)
                          : WINDOWS[random.Below(sizeof(WINDOWS) / sizeof(WINDOWS[0]))];
}

// Makes up documents until the time is over or there were enough.
void RunRandom(const SOptions& options, unsigned process, SShared& shared) {
    const std::uint64_t LOADS = 64;  // of so many documents one is loaded as callers load
    CJudge judge(options, "random-" + std::to_string(options.seed) + "-" + std::to_string(process),
                 shared);
    CRandom random(options.seed * 1000003 + process);
    CDocumentGenerator generator(random.Next());
    CMutator mutator(random.Next());
    const std::vector<std::string> seeds = SmallOnesOf(options.paths);
    for (const std::string& seed : seeds)
        mutator.Remember(seed);
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(options.seconds);
    const std::uint64_t share = options.count / options.processes;
    std::vector<std::size_t> windows;
    std::string document;
    for (std::uint64_t i = 0; !judge.IsEnough(); ++i) {
        if (options.count != 0 && i >= share) break;
        if (options.seconds != 0 && i % 64 == 0 && std::chrono::steady_clock::now() >= end) break;
        const std::size_t kind = random.Below(16);
        const bool isBehindNames = random.Once(2000);
        if (isBehindNames) {
            do {
                generator.Make(document);
            } while (document.compare(0, 5, "<?xml") == 0 || document[0] != '<');
            document = BehindManyNames(random.Once(8), document);
        } else if (kind < 10 || seeds.empty()) {
            generator.Make(document);
            if (random.Once(16)) mutator.Remember(document);
            if (kind >= 8) mutator.Mutate(document);
        } else {
            document = seeds[random.Below(seeds.size())];
            mutator.Mutate(document);
        }
        windows.assign(1, DEFAULT_WINDOW);
        for (std::uint64_t more = 1; more < options.windows; ++more)
            windows.push_back(SomeWindow(random));
        judge.Compare(document, windows);
        // What was left inside goes through the hand-over in a load, so more of these.
        if (i % LOADS == 0 || (i % 8 == 0 && !judge.Comparison().WasTaken()))
            judge.CompareLoads(document, random.Next() >> 1);
    }
}

void RunSystematic(const SOptions& options, unsigned process, SShared& shared) {
    CJudge judge(options, "systematic-" + std::to_string(process), shared);
    std::uint64_t number = 0;
    const auto isMine = [&] { return number++ % options.processes == process; };
    std::vector<std::size_t> every;
    const auto compare = [&](const std::string& document) {
        if (judge.IsEnough() || !isMine()) return;
        every.assign(1, DEFAULT_WINDOW);
        for (std::size_t window = 1; window <= std::min<std::size_t>(document.size() + 2, 90);
             ++window)
            every.push_back(window);
        judge.Compare(document, every);
        judge.CompareLoads(document, number * 0x9E3779B97F4A7C15u >> 1);
    };
    for (const std::string& document : SmallDocuments()) {
        compare(document);
        ForEachCut(document, compare);
        ForEachGap(document, compare);
        ForEachByte(document, compare);
    }
    // Declared types: changed at every place, with one small window in turn; unchanged with each.
    const auto compareTyped = [&](const std::string& document) {
        if (judge.IsEnough() || !isMine()) return;
        judge.Compare(document, {DEFAULT_WINDOW, 1 + number % (document.size() + 2)});
        if (number % 8 == 0) judge.CompareLoads(document, number * 0x9E3779B97F4A7C15u >> 1);
    };
    const auto compareInEach = [&](const std::string& document) {
        if (judge.IsEnough() || !isMine()) return;
        std::vector<std::size_t> windows(1, DEFAULT_WINDOW);
        for (std::size_t window = 1; window <= document.size() + 2; ++window)
            windows.push_back(window);
        judge.Compare(document, windows);
        for (std::uint64_t way = 0; way < 64; ++way)
            judge.CompareLoads(document, (number * 64 + way) * 0x9E3779B97F4A7C15u >> 1);
    };
    for (const std::string& typed : SmallTypedDocuments()) {
        const auto compareBehind = [&](const std::string& changed) {
            compareTyped(BehindComment(changed));
        };
        ForEachPlaceOfComment(typed, compareInEach);
        ForEachCut(typed, compareBehind);
        ForEachGap(typed, compareBehind);
        ForEachByte(typed, compareBehind);
    }
    for (const std::string& document : SmallDocuments())
        ForEachProlog(document, 40, compare);
    const std::vector<std::size_t> some = {DEFAULT_WINDOW, 1, 100, 5000};
    const auto compareLarge = [&](const std::string& document) {
        if (judge.IsEnough() || !isMine()) return;
        judge.Compare(document, some);
        judge.CompareLoads(document, number * 0x9E3779B97F4A7C15u >> 1);
    };
    // Beyond the names that are kept, too.
    for (const std::string& document : SmallDocuments()) {
        for (const bool bySize : {false, true}) {
            if (document[0] == '<' && document[1] != '?' && document[1] != '!')
                compareLarge(BehindManyNames(bySize, document));
        }
    }
    for (const std::vector<std::string>& all : {Constructs(), TagsOfAllAttributes()}) {
        for (const std::string& construct : all) {
            compare("<a>" + construct + "</a>");
            compareLarge(BehindManyNames(false, construct));
        }
    }
    for (const std::size_t size : TokenSizes())
        ForEachLongToken(size, compareLarge);
    for (const std::size_t count : std::initializer_list<std::size_t>{
             1,   2,   7,   8,   31,  32,   33,   63,   64,   65,  100,
             127, 128, 129, 200, 500, 1000, 4095, 4096, 4097, 4200})
        ForEachCount(count, compareLarge);
    // The whole of a construct is moved over each edge.
    const std::vector<std::size_t> few = {DEFAULT_WINDOW, 16384, 4096, 100};
    for (const std::size_t edge : ParsersEdges()) {
        for (int padding = 0; padding < PAD_KINDS; ++padding) {
            for (const std::string& construct : Constructs()) {
                for (std::size_t before = edge - construct.size() - 1; before <= edge + 1;
                     ++before) {
                    if (judge.IsEnough() || !isMine()) continue;
                    const std::string document =
                        PaddedDocument(static_cast<EPadding>(padding), before, construct);
                    judge.Compare(document, few);
                    if (number % 16 == 0) judge.CompareLoads(document, number * 0x9E3779B97F4A7u);
                }
            }
        }
    }
}

int Finish(const SRun& run, std::chrono::steady_clock::time_point start) {
    const double seconds =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    std::printf("%" PRIu64 " documents in %.0f s, %.1f million an hour\n", run.counts.documents,
                seconds, 0.0036 * static_cast<double>(run.counts.documents) / seconds);
    std::printf("  %" PRIu64 " taken, %" PRIu64 " left inside; %" PRIu64
                " readings by the lane, %" PRIu64 " by the parser; %" PRIu64
                " loads with and without the lane\n",
                run.counts.taken, run.counts.leftInside, run.counts.readings, run.counts.parserRuns,
                run.counts.loads);
    std::printf("  %zu differences\n", run.differences);
    return run.differences == 0 ? 0 : 1;
}

}  // namespace norvask_differential

namespace norvask_differential {

// How much of a folder the lane takes.
struct SFolder {
    std::uint64_t documents = 0;
    std::uint64_t skipped = 0;  // that name addresses in the network
    std::uint64_t plain = 0;    // without a document type, and well-formed
    std::uint64_t taken = 0;
    std::uint64_t bytes = 0;
    std::uint64_t bytesTaken = 0;
    std::uint64_t differences = 0;
    std::map<std::string, std::uint64_t> left;  // plain ones, by where
};

// What stands where the lane left: behind the last event that it told.
std::string PlaceLeft(const std::string& document) {
    CEventLog log;
    const auto told = [&](std::size_t length) {
        const CExactBlock block(document.data(), length);
        CMemoryBytes source(block.Bytes(), block.Length());
        CEventForwarder forwarder(log);
        log.Clear();
        ReadPlainEvents(source, DEFAULT_WINDOW, forwarder);
        return log.Events();
    };
    const std::size_t all = told(document.size());
    std::size_t less = 0;
    std::size_t enough = document.size();
    while (less + 1 < enough) {
        const std::size_t middle = less + (enough - less) / 2;
        (told(middle) < all ? less : enough) = middle;
    }
    return Readable(document.substr(less, 60));
}

// Whether the parser takes a document, and finds no document type in it.
class CPlainProbe : public CXMLSaxHandler {
public:
    static bool IsPlain(const std::string& document) {
        const CExactBlock block(document.data(), document.size());
        SLoadOptions options;
        options.fastLane = false;
        CPlainProbe probe;
        try {
            LoadEvents(block.Bytes(), static_cast<unsigned int>(block.Length()), probe, options);
        } catch (CXMLException&) {
            return false;
        }
        return !probe.m_bHasType;
    }
    void StartDTD(const char*, const char*, const char*) override { m_bHasType = true; }

private:
    bool m_bHasType = false;
};

// The parser would ask the network for what these name.
bool IsRemote(const std::string& document) {
    const bool names = document.find("<!DOCTYPE") != std::string::npos ||
                       document.find("SchemaLocation") != std::string::npos ||
                       document.find("schemaLocation") != std::string::npos;
    return names && document.find("://") != std::string::npos &&
           std::regex_search(document, std::regex("(SYSTEM|PUBLIC|ocation)[^>]{0,500}://"));
}

void AddDocument(const fs::path& path, CLaneComparison& comparison, CFindings& findings,
                 SFolder& folder) {
    const std::string document = ReadWhole(path);
    if (document.empty()) return;
    if (IsRemote(document)) {
        ++folder.skipped;
        return;
    }
    ++folder.documents;
    folder.bytes += document.size();
    bool same = comparison.Same(document, {DEFAULT_WINDOW, 1000});
    const bool taken = comparison.WasTaken();
    SLoadMode modes[4];
    modes[1].kind = SLoadMode::TREE_WITH_PREFIXES;
    modes[2].kind = SLoadMode::TREE;
    modes[3].validation = SLoadMode::DYNAMIC;
    const std::string name = path.string();
    for (SLoadMode& mode : modes) {
        const bool isOfFile = &mode != &modes[2];
        if (isOfFile) mode.fileName = name.c_str();
        same = same && comparison.SameLoads(document, mode, false);
    }
    if (!same) {
        ++folder.differences;
        findings.Write(document, document, name + "\n" + comparison.Difference());
    }
    if (taken) {
        ++folder.taken;
        folder.bytesTaken += document.size();
    }
    if (!CPlainProbe::IsPlain(document)) return;
    ++folder.plain;
    if (!taken) ++folder.left[PlaceLeft(document) + "   (" + name + ")"];
}

int RunDocuments(const SOptions& options) {
    CLaneComparison comparison;
    CFindings findings(options.findings, "document");
    std::printf("%-40s %9s %9s %9s %9s %8s %10s %8s\n", "", "documents", "skipped", "plain",
                "taken", "of plain", "KiB", "taken");
    for (const std::string& path : options.paths) {
        SFolder folder;
        const std::vector<fs::path> files = FilesIn({path});
        if (files.empty()) {
            std::fprintf(stderr, "%s has no documents\n", path.c_str());
            return 2;
        }
        for (std::size_t i = 0; i < files.size(); i += options.every)
            AddDocument(files[i], comparison, findings, folder);
        const auto percent = [](std::uint64_t part, std::uint64_t whole) {
            return whole == 0 ? 0.0
                              : 100.0 * static_cast<double>(part) / static_cast<double>(whole);
        };
        std::printf("%-40s %9" PRIu64 " %9" PRIu64 " %9" PRIu64 " %9" PRIu64 " %7.2f%% %10" PRIu64
                    " %7.2f%%\n",
                    path.c_str(), folder.documents, folder.skipped, folder.plain, folder.taken,
                    percent(folder.taken, folder.plain), folder.bytes / 1024,
                    percent(folder.bytesTaken, folder.bytes));
        std::uint64_t shown = 0;
        for (const auto& left : folder.left) {
            if (shown++ == options.excerpts) break;
            std::printf("    left at: %s\n", left.first.c_str());
        }
        std::fflush(stdout);
    }
    std::printf("%" PRIu64 " loads with and without the lane, %zu differences\n",
                comparison.Counts().loads, findings.Count());
    return findings.Count() == 0 ? 0 : 1;
}

bool ReadOptions(int count, char** arguments, SOptions& options) {
    const std::map<std::string, std::uint64_t*> numbers = {
        {"--seed", &options.seed},           {"--seconds", &options.seconds},
        {"--count", &options.count},         {"--windows", &options.windows},
        {"--processes", &options.processes}, {"--stop", &options.stop},
        {"--excerpts", &options.excerpts},   {"--every", &options.every}};
    for (int i = 0; i < count; ++i) {
        const std::string argument = arguments[i];
        const auto number = numbers.find(argument);
        if (argument.compare(0, 2, "--") != 0) {
            options.paths.push_back(argument);
        } else if (i + 1 == count) {
            return false;
        } else if (number != numbers.end()) {
            *number->second = std::strtoull(arguments[++i], nullptr, 10);
        } else if (argument == "--findings") {
            options.findings = arguments[++i];
        } else {
            return false;
        }
    }
    return options.processes > 0 && options.windows > 0 && options.every > 0;
}

int Run(int count, char** arguments) {
    SOptions options;
    const std::string command = count > 1 ? arguments[1] : "";
    if (!ReadOptions(count - 2, arguments + 2, options) ||
        (command == "random" && options.seconds == 0 && options.count == 0)) {
        std::fprintf(stderr, "the beginning of the source tells how to call this\n");
        return 2;
    }
    const auto start = std::chrono::steady_clock::now();
    const auto processes = static_cast<unsigned>(options.processes);
    if (command == "random") {
        return Finish(InProcesses(processes, options.findings,
                                  [&](unsigned process, SShared& shared) {
                                      RunRandom(options, process, shared);
                                  }),
                      start);
    }
    if (command == "systematic") {
        return Finish(InProcesses(processes, options.findings,
                                  [&](unsigned process, SShared& shared) {
                                      RunSystematic(options, process, shared);
                                  }),
                      start);
    }
    if (command == "documents") return RunDocuments(options);
    std::fprintf(stderr, "random, systematic or documents?\n");
    return 2;
}

}  // namespace norvask_differential

int main(int count, char** arguments) { return norvask_differential::Run(count, arguments); }
