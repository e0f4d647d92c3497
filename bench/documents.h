// The documents that everything is measured on: three real ones from Debian packages, and generated
// ones that each stress one thing.
#ifndef NORVASK_BENCH_DOCUMENTS_H
#define NORVASK_BENCH_DOCUMENTS_H

#include <string>
#include <vector>

namespace norvask_bench {

struct SDocument {
    std::string name;
    std::string text;
    // So small that only its load is worth measuring.
    bool small;
};

// Throws std::runtime_error, which names the missing files and their packages.
std::vector<SDocument> MakeDocuments();

// A root with 100,000 children, of which a query of one step selects every one: list/item is the
// root's one child and the 100,000 below it.
std::string MakeOneLongList();

// A root with 100,000 children of three children each: a query of two steps selects one of the three
// below every child.
std::string MakeManyRecords();

}  // namespace norvask_bench

#endif
