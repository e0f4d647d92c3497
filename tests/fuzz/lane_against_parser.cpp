// Reads a document with the fast lane and with the parser, and expects the same of both. The first
// byte of the input chooses the window and how the document is loaded.
#include <cstdio>
#include <cstdlib>

#include "fuzz/fuzzing.h"
#include "support/plain_lane/comparison.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2 || norvask_fuzz::IsRefused(data + 1, size - 1)) return 0;
    static norvask_test::CLaneComparison comparison;
    const std::string document(reinterpret_cast<const char*>(data + 1), size - 1);
    const std::size_t window = 1 + *data % 64;
    const bool same = comparison.Same(document, {norvask_test::SLoadOptions().window, window}) &&
                      comparison.SameLoadsInSomeWay(document, *data * 0x9E3779B97F4A7C15u >> 1);
    if (!same)
        norvask_fuzz::Fail("the lane and the parser differ", document, comparison.Difference());
    return 0;
}
