// The library's path query against the loop that a client would write without it.

#include <cstring>
#include <stdexcept>

#include "norvask/norvask.h"
#include "peers.h"
#include "trees.h"

namespace norvask_bench {

namespace {

using norvask::CXMLNode;

// The vector plays the part of the query's own buffer: both keep their room from run to run.
void Loop(CXMLNode& node, const SQuery& query, std::vector<CXMLNode*>& found) {
    found.clear();
    for (CXMLNode** first = node.GetChildren(); *first != nullptr; ++first) {
        if (std::strcmp((*first)->GetTagName(), query.firstStep) != 0) continue;
        for (CXMLNode** second = (*first)->GetChildren(); *second != nullptr; ++second) {
            if (std::strcmp((*second)->GetTagName(), query.secondStep) == 0) {
                found.push_back(*second);
            }
        }
    }
}

}  // namespace

std::vector<SQuery> Queries() {
    return {
        {"1 x 100,000", MakeOneLongList(), "list/item", "list", "item"},
        {"100,000 x 3", MakeManyRecords(), "record/name", "record", "name"},
    };
}

void CheckQuery(const SQuery& query) {
    const CNorvaskTree tree(query.text);
    CXMLNode& root = *tree.Document().GetRoot();
    std::vector<CXMLNode*> expected;
    Loop(root, query, expected);
    std::vector<CXMLNode*> found;
    for (CXMLNode** node = root.GetNodes(query.path); *node != nullptr; ++node) {
        found.push_back(*node);
    }
    if (expected.size() != 100000 || found != expected) {
        throw std::runtime_error(std::string("query ") + query.path + ": found " +
                                 std::to_string(found.size()) + " nodes, the loop " +
                                 std::to_string(expected.size()));
    }
}

void RunQuery(benchmark::State& state, const SQuery& query) {
    const CNorvaskTree tree(query.text);
    CXMLNode& root = *tree.Document().GetRoot();
    for (auto _ : state) {
        benchmark::DoNotOptimize(root.GetNodes(query.path));
    }
}

void RunLoop(benchmark::State& state, const SQuery& query) {
    const CNorvaskTree tree(query.text);
    CXMLNode& root = *tree.Document().GetRoot();
    std::vector<CXMLNode*> found;
    for (auto _ : state) {
        Loop(root, query, found);
        benchmark::DoNotOptimize(found.data());
    }
}

}  // namespace norvask_bench
