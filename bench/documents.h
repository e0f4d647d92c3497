// The documents that everything is measured on: three real ones from Debian packages, and generated
// ones that each stress one thing.
#ifndef NORVASK_BENCH_DOCUMENTS_H
#define NORVASK_BENCH_DOCUMENTS_H

#include <string>
#include <vector>

namespace norvask_bench {

// The real document that has a DOCTYPE; all others are plain.
constexpr const char* DOCTYPE_DOCUMENT = "freedesktop.org.xml";
constexpr const char* SMALL_DOCUMENT = "small (150 bytes)";

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

// A root with 100,000 children of three children each: a query of two steps selects one of the
// three below every child.
std::string MakeManyRecords();

constexpr unsigned DEPTH_LEVELS = 100000;

// That many elements, each in the one before.
std::string MakeDepth();

// What the writers write, as text: two attributes and the texts of two children. Some of it needs
// escapes.
struct SRecord {
    std::string id;
    std::string kind;
    std::string name;
    std::string price;
};

std::vector<SRecord> MakeRecordsToWrite();

// The document "records" again and again under one root, until the file has at least `bytes` bytes.
// Throws std::runtime_error.
void WriteLargeDocument(const std::string& fileName, unsigned long long bytes);

}  // namespace norvask_bench

#endif
