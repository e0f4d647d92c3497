// The libraries that are compared, each as a row of functions, and what is measured on them.
#ifndef NORVASK_BENCH_PEERS_H
#define NORVASK_BENCH_PEERS_H

#include <benchmark/benchmark.h>

#include <cstddef>
#include <string>
#include <vector>

#include "documents.h"

namespace norvask_bench {

// The names that tie together what is registered, what is aimed at and what the tables show.
constexpr const char* kLoad = "load + delete";
constexpr const char* kSavePlain = "save";
constexpr const char* kSaveFormatted = "save, formatted";
constexpr const char* kClone = "clone + delete";
constexpr const char* kHeap = "heap";
constexpr const char* kQuery = "query";
constexpr const char* kCallbacksIdle = "callbacks, idle";
constexpr const char* kCallbacksReading = "callbacks, reading";
constexpr const char* LEFT = "left at the end";
constexpr const char* LEFT_CALLBACKS = "callbacks, left";
constexpr const char* DEPTH = "depth 100,000";
constexpr const char* kWriter = "writer";
constexpr const char* kCallbackHeap = "heap, callbacks";

constexpr const char* kNorvask = "Norvask";
constexpr const char* kParser = "parser";
constexpr const char* kXercesDom = "Xerces DOM";
constexpr const char* kLibxml2 = "libxml2";
constexpr const char* kTinyXml2 = "TinyXML-2";
constexpr const char* kPugixml = "pugixml";
constexpr const char* kQt = "Qt";
constexpr const char* kLoop = "loop";
constexpr const char* PARSER_READING = "reading parser";
constexpr const char* AT_ONCE = "left at once";

struct SPeer {
    const char* name;
    // Throws std::runtime_error unless the library holds `elements` elements after a load, after a
    // copy and, if it can save the document at all, after saving in both formats and loading again.
    void (*check)(const char* name, const SDocument& document, std::size_t elements);
    void (*load)(benchmark::State& state, const std::string& text);
    // The rest is NULL for the parser alone.
    void (*save)(benchmark::State& state, const std::string& text, bool format);
    void (*clone)(benchmark::State& state, const std::string& text);
    // The bytes of heap that a loaded tree occupies.
    std::size_t (*heap)(const std::string& text);
};

const std::vector<SPeer>& Peers();

// Documents read as callbacks (callbacks.h), by a client that does nothing and by one that reads
// all.
struct SReader {
    const char* name;
    void (*idle)(benchmark::State& state, const std::string& text);  // may be NULL
    void (*reading)(benchmark::State& state, const std::string& text);
};

const std::vector<SReader>& Readers();

// A plain document in two forms that the fast lane leaves to the parser, which differ in nothing
// but their declarations: it shows in the last element, or in the first line already.
struct SLeftDocument {
    std::string name;
    std::string atEnd;
    std::string atOnce;
};

std::vector<SLeftDocument> MakeLeftDocuments(const std::vector<SDocument>& documents);
// Throws std::runtime_error unless both give the same tree and callbacks, with as many elements as
// the parser reports.
void CheckLeft(const SLeftDocument& document);

// Loads of MakeDepth().
struct SDeepLoad {
    const char* how;  // names the row
    const char* peer;
    // Throws std::runtime_error unless the library takes the document with all of its elements.
    void (*check)(const std::string& text);
    void (*run)(benchmark::State& state, const std::string& text);
    // For a library that takes so long, instead of both: one load, which is checked as well;
    // CPU seconds.
    double (*once)(const std::string& text);
    // Why it cannot be measured; NULL if it can.
    const char* reasonNotTo;
};

const std::vector<SDeepLoad>& DeepLoads();
void CheckDeepLoad(const SDeepLoad& load, const std::string& text);

// Writers of the same records.
struct SWriter {
    const char* input;  // what is at hand before the measurement; it names the row
    const char* name;
    // Throws std::runtime_error unless what is written is well-formed and holds the records.
    void (*check)(const char* name, const std::vector<SRecord>& records);
    void (*run)(benchmark::State& state, const std::vector<SRecord>& records);
};

const std::vector<SWriter>& Writers();

// How far the heap rises above what it was while Norvask reads a generated document of this size as
// callbacks, from a temporary file; bytes.
std::size_t MeasureCallbackHeap(unsigned long long documentBytes);

// Why a library's save of a document is left out; NULL if it is not.
const char* ReasonNotToSave(const char* peer, const std::string& document);

// Two queries of two steps over 100,000 children each.
struct SQuery {
    const char* name;
    std::string text;
    const char* path;
    const char* firstStep;
    const char* secondStep;
};

std::vector<SQuery> Queries();
// Throws std::runtime_error unless the query and the loop find the same 100,000 nodes.
void CheckQuery(const SQuery& query);
void RunQuery(benchmark::State& state, const SQuery& query);
void RunLoop(benchmark::State& state, const SQuery& query);

}  // namespace norvask_bench

#endif
