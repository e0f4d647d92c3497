// norvask_bench: Norvask beside other XML libraries, all in this one process.
//
// First everybody must have read the same documents; then the times are taken, then the heap; then
// three tables are printed. It takes the options of Google Benchmark, of which
// --benchmark_filter=REGEX chooses by "what/document/peer", and --slow.

#include <benchmark/benchmark.h>
#include <libxml/parser.h>
#include <regex.h>

#include <algorithm>
#include <exception>
#include <initializer_list>
#include <iostream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>
#include <xercesc/util/PlatformUtils.hpp>

#include "callbacks.h"
#include "documents.h"
#include "edits.h"
#include "measures.h"
#include "norvask/exception.h"
#include "peers.h"
#include "results.h"
#include "trees.h"

namespace {

using namespace norvask_bench;

// Every repetition of every measurement takes its turn in random order, so that a machine that
// slows down for a while slows down all alike.
constexpr const char* kDefaults[] = {
    "--benchmark_enable_random_interleaving=true",
    "--benchmark_repetitions=5",
    "--benchmark_min_time=0.1",
};

// What takes minutes is measured only when it is asked for.
constexpr const char* SLOW = "--slow";

// The caller's options come last and so win. The texts stay, since Google Benchmark keeps a pointer
// to the program's name.
// Returns whether they ask for what is slow.
bool Initialize(int argc, char** argv) {
    static std::vector<std::string> texts(argv, argv + 1);
    texts.insert(texts.end(), std::begin(kDefaults), std::end(kDefaults));
    std::remove_copy(argv + 1, argv + argc, std::back_inserter(texts), std::string(SLOW));
    std::vector<char*> arguments;
    for (std::string& text : texts) {
        arguments.push_back(text.data());
    }
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) {
        throw std::runtime_error("see --help");
    }
    return std::find(argv + 1, argv + argc, std::string(SLOW)) != argv + argc;
}

// Google Benchmark's filter, for what Google Benchmark does not do itself.
bool IsSelected(const std::string& name) {
    std::string filter = benchmark::GetBenchmarkFilter();
    if (filter.empty() || filter == "all") return true;
    const bool excludes = filter.front() == '-';
    if (excludes) filter.erase(0, 1);
    regex_t expression;
    if (regcomp(&expression, filter.c_str(), REG_EXTENDED | REG_NOSUB) != 0) {
        throw std::runtime_error("the filter is no extended regular expression");
    }
    const bool matches = regexec(&expression, name.c_str(), 0, nullptr, 0) == 0;
    regfree(&expression);
    return matches != excludes;
}

bool IsAnySelected(std::initializer_list<const char*> measures, const std::string& document,
                   const char* peer) {
    return std::any_of(measures.begin(), measures.end(), [&](const char* what) {
        return IsSelected(CResults::Name(what, document, peer));
    });
}

// What the filter leaves out need not be right.
void Check(const std::vector<SDocument>& documents, const std::vector<SLeftDocument>& left,
           const std::vector<SQuery>& queries, const std::vector<SRecord>& records,
           const std::string& depth) {
    std::cerr << "Checking that all libraries hold the same documents\n";
    for (const SDocument& document : documents) {
        const std::size_t elements = CountReportedElements(document.text);
        for (const SPeer& peer : Peers()) {
            if (IsAnySelected({kLoad, kSavePlain, kSaveFormatted, kClone, kHeap}, document.name,
                              peer.name)) {
                peer.check(peer.name, document, elements);
            }
        }
        if (std::any_of(Readers().begin(), Readers().end(), [&](const SReader& reader) {
                return IsAnySelected({kCallbacksIdle, kCallbacksReading}, document.name,
                                     reader.name);
            })) {
            CheckCallbacks(document, elements);
        }
        std::cerr << "  " << document.name << ": " << document.text.size() << " bytes, " << elements
                  << " elements\n";
    }
    for (const SLeftDocument& document : left) {
        for (const char* peer : {kNorvask, AT_ONCE, kParser}) {
            if (!IsAnySelected({LEFT, LEFT_CALLBACKS}, document.name, peer)) continue;
            CheckLeft(document);
            break;
        }
    }
    for (const SDeepLoad& load : DeepLoads()) {
        if (IsAnySelected({DEPTH}, load.how, load.peer)) CheckDeepLoad(load, depth);
    }
    for (const SQuery& query : queries) {
        if (IsAnySelected({kQuery}, query.name, kNorvask)) CheckQuery(query);
    }
    for (const SWriter& writer : Writers()) {
        if (IsAnySelected({kWriter}, writer.input, writer.name)) {
            writer.check(writer.name, records);
        }
    }
}

template <class Function>
void Register(CResults& results, const char* what, const std::string& document, const char* peer,
              Function function) {
    const std::string name = results.Announce(what, document, peer);
    benchmark::RegisterBenchmark(name.c_str(), function);
}

void RegisterTimes(CResults& results, const std::vector<SDocument>& documents,
                   const std::vector<SQuery>& queries) {
    for (const SDocument& document : documents) {
        const std::string& text = document.text;
        for (const SPeer& peer : Peers()) {
            Register(results, kLoad, document.name, peer.name,
                     [&](benchmark::State& state) { peer.load(state, text); });
        }
    }
    for (const bool format : {false, true}) {
        for (const SDocument& document : documents) {
            for (const SPeer& peer : Peers()) {
                if (document.small || peer.save == nullptr ||
                    ReasonNotToSave(peer.name, document.name) != nullptr) {
                    continue;
                }
                Register(results, format ? kSaveFormatted : kSavePlain, document.name, peer.name,
                         [&, format](benchmark::State& state) {
                             peer.save(state, document.text, format);
                         });
            }
        }
    }
    for (const SDocument& document : documents) {
        for (const SPeer& peer : Peers()) {
            if (document.small || peer.clone == nullptr) continue;
            Register(results, kClone, document.name, peer.name,
                     [&](benchmark::State& state) { peer.clone(state, document.text); });
        }
    }
    for (const SQuery& query : queries) {
        Register(results, kQuery, query.name, kNorvask,
                 [&](benchmark::State& state) { RunQuery(state, query); });
        Register(results, kQuery, query.name, kLoop,
                 [&](benchmark::State& state) { RunLoop(state, query); });
    }
}

void RegisterCallbacks(CResults& results, const std::vector<SDocument>& documents) {
    for (const bool reading : {false, true}) {
        for (const SDocument& document : documents) {
            for (const SReader& reader : Readers()) {
                if (!reading && reader.idle == nullptr) continue;
                Register(results, reading ? kCallbacksReading : kCallbacksIdle, document.name,
                         reader.name, [&, reading](benchmark::State& state) {
                             (reading ? reader.reading : reader.idle)(state, document.text);
                         });
            }
        }
    }
}

void RegisterLeft(CResults& results, const std::vector<SLeftDocument>& documents) {
    for (const bool callbacks : {false, true}) {
        const char* what = callbacks ? LEFT_CALLBACKS : LEFT;
        const auto load = callbacks ? RunLoad<CNorvaskIdle> : RunLoad<CNorvaskTree>;
        for (const SLeftDocument& document : documents) {
            Register(results, what, document.name, kNorvask,
                     [&, load](benchmark::State& state) { load(state, document.atEnd); });
            Register(results, what, document.name, AT_ONCE,
                     [&, load](benchmark::State& state) { load(state, document.atOnce); });
            Register(results, what, document.name, kParser, [&](benchmark::State& state) {
                RunLoad<CParserAlone>(state, document.atEnd);
            });
        }
    }
}

void RegisterDepth(CResults& results, const std::string& text) {
    for (const SDeepLoad& load : DeepLoads()) {
        if (load.run == nullptr) continue;
        Register(results, DEPTH, load.how, load.peer,
                 [&](benchmark::State& state) { load.run(state, text); });
    }
}

void RegisterWriters(CResults& results, const std::vector<SRecord>& records) {
    for (const SWriter& writer : Writers()) {
        Register(results, kWriter, writer.input, writer.name,
                 [&](benchmark::State& state) { writer.run(state, records); });
    }
}

void RegisterChurns(CResults& results) {
    for (const SChurn& churn : Churns()) {
        Register(results, CHURN, churn.name, kNorvask,
                 [&](benchmark::State& state) { churn.run(state); });
    }
}

void MeasureSlowDepth(CResults& results, const std::string& text) {
    for (const SDeepLoad& load : DeepLoads()) {
        if (load.once == nullptr) continue;
        const std::string name = results.Announce(DEPTH, load.how, load.peer);
        if (!IsSelected(name)) continue;
        std::cerr << "Loading 100,000 levels: " << load.peer << "\n";
        const double seconds = load.once(text);
        results.Add(name, seconds, static_cast<double>(text.size()) / seconds);
    }
}

void MeasureGrowths(CResults& results) {
    for (const SGrowth& growth : Growths()) {
        const std::string name = results.Announce(growth.what, growth.name, kNorvask);
        if (IsSelected(name)) results.Add(name, MeasureGrowth(growth), 0);
    }
}

void MeasureChurns(CResults& results) {
    for (const SChurn& churn : Churns()) {
        const std::string name = results.Announce(CHURN_KEPT, churn.name, kNorvask);
        if (IsSelected(name)) results.Add(name, churn.kept(), 0);
    }
}

// Half as much as well: the same figure twice shows that the heap does not grow with the document.
void MeasureCallbackHeaps(CResults& results) {
    struct SSize {
        const char* name;
        unsigned long long bytes;
    };
    for (const SSize& size : {SSize{"0.5 GB", 500000000}, SSize{"1 GB", 1000000000}}) {
        const std::string name = results.Announce(kCallbackHeap, size.name, kNorvask);
        if (!IsSelected(name)) continue;
        std::cerr << "Reading a generated document of " << size.name << "\n";
        results.Add(name, static_cast<double>(MeasureCallbackHeap(size.bytes)), 0);
    }
}

void MeasureHeaps(CResults& results, const std::vector<SDocument>& documents) {
    for (const SDocument& document : documents) {
        for (const SPeer& peer : Peers()) {
            if (document.small || peer.heap == nullptr) continue;
            const std::string name = results.Announce(kHeap, document.name, peer.name);
            if (!IsSelected(name)) continue;
            const std::size_t bytes = peer.heap(document.text);
            if (bytes == 0) {
                throw std::runtime_error("malloc does not tell the heap in use (a sanitizer?)");
            }
            results.Add(name,
                        static_cast<double>(bytes) / static_cast<double>(document.text.size()), 0);
        }
    }
}

void PrintNotes(std::ostream& out, const std::vector<SDocument>& documents, bool slow) {
    out << "\n";
    for (const SDocument& document : documents) {
        for (const SPeer& peer : Peers()) {
            const char* reason = ReasonNotToSave(peer.name, document.name);
            if (reason != nullptr) {
                out << "Not measured: " << peer.name << " saving " << document.name << "; "
                    << reason << ".\n";
            }
        }
    }
    for (const SDeepLoad& load : DeepLoads()) {
        if (load.reasonNotTo != nullptr) {
            out << "Not measured: " << load.peer << ", 100,000 levels, " << load.how << "; "
                << load.reasonNotTo << ".\n";
        }
    }
    if (!slow) {
        out << "Not measured without " << SLOW << ": the parser and its DOM, 100,000 levels.\n";
    }
}

bool Run(bool slow) {
    const std::vector<SDocument> documents = MakeDocuments();
    const std::vector<SQuery> queries = Queries();
    const std::vector<SRecord> records = MakeRecordsToWrite();
    const std::vector<SLeftDocument> left = MakeLeftDocuments(documents);
    const std::string depth = MakeDepth();
    Check(documents, left, queries, records, depth);

    CResults results;
    RegisterTimes(results, documents, queries);
    RegisterCallbacks(results, documents);
    RegisterLeft(results, left);
    RegisterDepth(results, depth);
    RegisterWriters(results, records);
    RegisterChurns(results);
    CCollector collector(results);
    std::cerr << "Measuring; by default this takes about six minutes\n";
    const std::size_t chosen = benchmark::RunSpecifiedBenchmarks(&collector);
    if (collector.Failed()) return false;
    const bool listed = chosen > 0 && !collector.Started();
    if (!listed) {
        if (slow) MeasureSlowDepth(results, depth);
        MeasureGrowths(results);
        MeasureHeaps(results, documents);
        MeasureChurns(results);
        MeasureCallbackHeaps(results);
    }

    if (results.Any()) {
        results.PrintFigures(std::cout);
        results.PrintRatios(std::cout);
        results.PrintRanges(std::cout);
        PrintNotes(std::cout, documents, slow);
    }
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    bool done = false;
    try {
        const bool slow = Initialize(argc, argv);
        xercesc::XMLPlatformUtils::Initialize();
        xmlInitParser();
        done = Run(slow);
        benchmark::Shutdown();
        xmlCleanupParser();
        xercesc::XMLPlatformUtils::Terminate();
    } catch (const std::exception& error) {
        std::cerr << "norvask_bench: " << error.what() << "\n";
    } catch (norvask::CXMLException& error) {
        std::cerr << "norvask_bench: Norvask: " << error.GetMessage() << "\n";
    } catch (const xercesc::XMLException&) {
        std::cerr << "norvask_bench: an exception of Xerces-C\n";
    }
    return done ? 0 : 1;
}
