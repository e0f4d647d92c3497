// One element in the other, 100,000 times. At each start tag the parser walks through all that are
// open, so a load by it takes 20 to 30 seconds.

#include <stdexcept>
#include <string>

#include "callbacks.h"
#include "cpu_time.h"
#include "measures.h"
#include "peers.h"
#include "trees.h"

namespace norvask_bench {

namespace {

constexpr const char* HOW_TREE = "load + delete";
constexpr const char* HOW_CALLBACKS = "callbacks, idle";

void Expect(std::size_t found) {
    if (found == DEPTH_LEVELS) return;
    throw std::runtime_error("depth: " + std::to_string(found) + " elements instead of " +
                             std::to_string(DEPTH_LEVELS));
}

template <class Tree>
void CheckTree(const std::string& text) {
    Expect(Tree(text).CountElements());
}

template <class Reader>
void CheckReader(const std::string& text) {
    Expect(Reader(text).Sums().elements);
}

// The two rows have the same figure. The handler that counts does hardly more than nothing.
double LoadByParser(const std::string& text) {
    static const double seconds = [&] {
        const double start = CpuSeconds();
        const std::size_t elements = CountReportedElements(text);
        const double end = CpuSeconds();
        Expect(elements);
        return end - start;
    }();
    return seconds;
}

double LoadByXercesDom(const std::string& text) {
    double start = CpuSeconds();
    double seconds = 0;
    {
        const CXercesTree tree(text);
        seconds = CpuSeconds() - start;
        Expect(tree.CountElements());
        start = CpuSeconds();
    }
    return seconds + CpuSeconds() - start;
}

}  // namespace

const std::vector<SDeepLoad>& DeepLoads() {
    static const std::vector<SDeepLoad> loads = {
        {HOW_TREE, kNorvask, CheckTree<CNorvaskTree>, RunLoad<CNorvaskTree>, nullptr, nullptr},
        {HOW_TREE, kParser, nullptr, nullptr, LoadByParser, nullptr},
        {HOW_TREE, kXercesDom, nullptr, nullptr, LoadByXercesDom, nullptr},
        {HOW_TREE, kLibxml2, CheckTree<CLibxml2Tree>, RunLoad<CLibxml2Tree>, nullptr, nullptr},
        {HOW_TREE, kTinyXml2, CheckTree<CTinyXml2Tree>, nullptr, nullptr,
         "it refuses more than 100 levels"},
        {HOW_TREE, kPugixml, CheckTree<CPugixmlTree>, RunLoad<CPugixmlTree>, nullptr, nullptr},
        {HOW_CALLBACKS, kNorvask, CheckReader<CNorvaskReading>, RunLoad<CNorvaskIdle>, nullptr,
         nullptr},
        {HOW_CALLBACKS, kParser, nullptr, nullptr, LoadByParser, nullptr},
        {HOW_CALLBACKS, kLibxml2, CheckReader<CLibxml2Reading>, nullptr, nullptr,
         "the interface that is measured refuses more than 256 levels"},
    };
    return loads;
}

void CheckDeepLoad(const SDeepLoad& load, const std::string& text) {
    if (load.check == nullptr) return;
    const std::string where = std::string(load.peer) + ", depth";
    bool reads = true;
    try {
        load.check(text);
    } catch (const std::runtime_error&) {
        if (load.reasonNotTo == nullptr) throw;
        reads = false;
    }
    if (reads && load.reasonNotTo != nullptr) {
        throw std::runtime_error(where + ": it does load this document");
    }
}

}  // namespace norvask_bench
