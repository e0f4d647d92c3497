// xml_outline [OPTION...] FILE: any XML document as an outline, and what loading it cost; or all
// that is wrong with it.
//
//     --validate      by the DTD or the schemas that the document names
//     --schema FILE   by this schema; may be given once for each namespace
//     --untrusted     the document is a stranger's, and may cost only so much
//
// Each row stands for a path of element names, however many elements of the document have it, so a
// document of a million records is as easy to look over as one of three.
#include <malloc.h>
#include <norvask/norvask.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <exception>
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

#include "support/outline.h"
#include "support/outline_table.h"
#include "support/problems.h"
#include "support/terminal.h"

namespace {

using norvask::CXMLDocumentPtr;
using norvask::CXMLError;
using norvask::CXMLException;
using norvask::SXMLLoadOptions;
using norvask::XMLLoadFile;

using Clock = std::chrono::steady_clock;

double MillisecondsSince(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

// The bytes of the heap that are in use; always 0 where the allocator is not the C library's.
std::size_t HeapInUse() {
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

void PrintCost(const std::string& what, const std::string& amount, const std::string& rate) {
    std::cout << "  " << terminal::Left(what, 8) << terminal::Right(amount, 18)
              << (rate.empty() ? "" : "   " + terminal::Paint(terminal::kFaint, rate)) << '\n';
}

void PrintOutline(const std::string& name, const COutline& outline) {
    const std::vector<SOutlineRow> rows = outline.Rows();
    const SOutlineRow total = outline.Total();
    const COutlineTable table(rows);
    std::cout << terminal::Paint(terminal::kBold, terminal::OneLine(name)) << "   "
              << terminal::Count(rows.size(), "path") << " of element names, "
              << terminal::Count(total.depth, "level") << " deep\n\n"
              << "  " << terminal::Paint(terminal::kFaint, table.Head()) << '\n';
    for (const SOutlineRow& row : rows) {
        std::cout << "  " << table.Row(row) << '\n';
    }
    std::cout << "  " << terminal::Paint(terminal::kBold, table.Total(total)) << "\n\n";
}

// The namespace that a schema is for is to be read in the schema.
SXMLLoadOptions AddSchema(const SXMLLoadOptions& options, const char* name) {
    const CXMLDocumentPtr schema = XMLLoadFile(name);
    return options.Schema(schema->GetRoot()->GetAttributeValue("targetNamespace"), name);
}

void OutlineFile(const char* name, const SXMLLoadOptions& options) {
    std::error_code unknown;  // the name may be a URL
    const std::uintmax_t size = std::filesystem::file_size(name, unknown);
    const double bytes = unknown ? 0 : static_cast<double>(size);

    const Clock::time_point start = Clock::now();
    CXMLDocumentPtr document = XMLLoadFile(name, options);
    const double loading = MillisecondsSince(start);

    PrintOutline(name, COutline(document->GetRoot()));

    // What the document held is what its end gives back. The difference that loading makes would
    // also count what the parser keeps for the next document.
    const std::size_t heapBefore = HeapInUse();
    const Clock::time_point end = Clock::now();
    document.reset();
    const double deleting = MillisecondsSince(end);
    const std::size_t heapAfter = HeapInUse();

    if (bytes > 0) PrintCost("file", terminal::Grouped(size) + " bytes", "");
    PrintCost("load", terminal::Fixed(loading, 2) + " ms",
              bytes > 0 ? terminal::Fixed(bytes / 1e3 / loading, 1) + " MB/s" : "");
    if (heapBefore > heapAfter) {
        const std::size_t heap = heapBefore - heapAfter;
        PrintCost("heap", terminal::Grouped(heap) + " bytes",
                  bytes > 0 ? terminal::Fixed(static_cast<double>(heap) / bytes, 2) +
                                  " for each byte of the file"
                            : "");
    } else {
        PrintCost("heap", "not known", "the allocator in use does not say");
    }
    PrintCost("delete", terminal::Fixed(deleting, 2) + " ms", "");
}

}  // namespace

int main(int argc, char** argv) {
    try {
        SXMLLoadOptions options = SXMLLoadOptions().KeepPrefixes().CollectProblems();
        int at = 1;
        for (; at + 1 < argc; ++at) {
            if (std::strcmp(argv[at], "--validate") == 0) {
                options = options.ValidateBySchema().RequireGrammar();
            } else if (std::strcmp(argv[at], "--schema") == 0) {
                options = AddSchema(options, argv[++at]);
            } else if (std::strcmp(argv[at], "--untrusted") == 0) {
                options = options.Untrusted();
            } else {
                break;
            }
        }
        if (at != argc - 1) {
            std::cerr << "usage: xml_outline [--validate] [--schema FILE] [--untrusted] FILE\n";
            return 2;
        }
        OutlineFile(argv[at], options);
        std::cout.flush();
    } catch (const CXMLError& e) {  // of the load
        PrintProblems("xml_outline", e);
        return 1;
    } catch (CXMLException& e) {  // of anything else in the library
        std::cerr << "xml_outline: " << e.GetMessage() << '\n';
        return 1;
    } catch (std::exception& e) {  // no memory, for example
        std::cerr << "xml_outline: " << e.what() << '\n';
        return 1;
    }
    if (!std::cout) {
        std::cerr << "xml_outline: the output could not be written\n";
        return 1;
    }
    return 0;
}
