// Documents that the fast lane leaves to the parser, at the first byte or when it has read nearly
// all of it: what was read by then was for nothing.

#include <stdexcept>
#include <string>

#include "callbacks.h"
#include "norvask/norvask.h"
#include "peers.h"
#include "sink.h"
#include "trees.h"

namespace norvask_bench {

namespace {

// A name of UTF-8 that the lane does not know. The parser reads as with the other one.
constexpr const char* DECLARATION = "<?xml version=\"1.0\" encoding=\"UTF8\"?>";
// It is allowed to declare this prefix, but the lane takes no declaration of it.
constexpr const char* LAST_ELEMENT = "<left xmlns:xml=\"http://www.w3.org/XML/1998/namespace\"/>";

std::string Saved(const std::string& text) {
    std::string saved;
    CSink sink(&saved);
    CNorvaskTree(text).Save(sink, false);
    return saved;
}

bool IsSame(const SReading& first, const SReading& second) {
    return first.elements == second.elements && first.localNames == second.localNames &&
           first.uris == second.uris && first.values == second.values &&
           first.text == second.text && first.others == second.others;
}

void Expect(bool holds, const SLeftDocument& document, const char* what) {
    if (!holds) throw std::runtime_error("left, " + document.name + ": " + what);
}

}  // namespace

std::vector<SLeftDocument> MakeLeftDocuments(const std::vector<SDocument>& documents) {
    std::vector<SLeftDocument> made;
    for (const SDocument& document : documents) {
        if (document.name == DOCTYPE_DOCUMENT) continue;
        std::string text = document.text;
        text.insert(text.rfind("</"), LAST_ELEMENT);
        // Each has a declaration, and one a byte order mark in front of it.
        const std::size_t behind = text.find("?>") + 2;
        made.push_back({document.name, text, DECLARATION + text.substr(behind)});
    }
    return made;
}

void CheckLeft(const SLeftDocument& document) {
    const std::size_t elements = CountReportedElements(document.atEnd);
    Expect(CountReportedElements(document.atOnce) == elements, document, "other elements");
    Expect(Saved(document.atEnd) == Saved(document.atOnce), document, "another tree");
    const SReading atEnd = CNorvaskReading(document.atEnd).Sums();
    Expect(atEnd.elements == elements, document, "Norvask has other elements");
    Expect(IsSame(atEnd, CNorvaskReading(document.atOnce).Sums()), document, "other callbacks");
}

}  // namespace norvask_bench
