#include "callbacks.h"

#include <stdexcept>

namespace norvask_bench {

namespace {

void Expect(std::uint64_t expected, std::uint64_t found, const std::string& what) {
    if (expected == found) return;
    throw std::runtime_error("callbacks, " + what + ": " + std::to_string(found) + " instead of " +
                             std::to_string(expected));
}

void ExpectSame(const SReading& expected, const SReading& found, const std::string& where) {
    Expect(expected.elements, found.elements, where + ", elements");
    Expect(expected.localNames, found.localNames, where + ", sum of the local names");
    Expect(expected.uris, found.uris, where + ", sum of the namespaces");
    Expect(expected.values, found.values, where + ", sum of the values");
    Expect(expected.text, found.text, where + ", sum of the text");
}

}  // namespace

void CheckCallbacks(const SDocument& document, std::size_t elements) {
    const SReading expected = ReadByParserInUtf8(document.text);
    Expect(elements, expected.elements, document.name + ", parser, elements");
    ExpectSame(expected, CNorvaskReading(document.text).Sums(), document.name + ", Norvask");
    ExpectSame(expected, CLibxml2Reading(document.text).Sums(), document.name + ", libxml2");
}

}  // namespace norvask_bench
