#include "callbacks.h"

#include <stdexcept>

namespace norvask_bench {

namespace {

void Expect(std::uint64_t expected, std::uint64_t found, const std::string& document,
            const char* what) {
    if (expected == found) return;
    throw std::runtime_error("callbacks, " + document + ": " + what + " " + std::to_string(found) +
                             " instead of " + std::to_string(expected));
}

}  // namespace

void CheckCallbacks(const SDocument& document, std::size_t elements) {
    const SReading ours = CNorvaskReading(document.text).Sums();
    const SReading theirs = CLibxml2Reading(document.text).Sums();
    Expect(elements, ours.elements, document.name, "Norvask's elements");
    Expect(elements, theirs.elements, document.name, "libxml2's elements");
    Expect(theirs.localNames, ours.localNames, document.name, "sum of the local names");
    Expect(theirs.uris, ours.uris, document.name, "sum of the namespaces");
    Expect(theirs.values, ours.values, document.name, "sum of the values");
    Expect(theirs.text, ours.text, document.name, "sum of the text");
}

}  // namespace norvask_bench
