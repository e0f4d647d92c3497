// What may run at the same time: loads, and work on different documents.
#include <norvask/norvask.h>

#include <cstddef>
#include <functional>
#include <iostream>

#include <string>
#include <thread>
#include <vector>

using namespace norvask;

namespace {

//! [documents]
// Each thread loads, changes and saves a document of its own. Nothing has to be locked.
void Work(long number, std::string& result) {
    CXMLDocumentPtr document = XMLLoadText("<job><done/></job>");
    CXMLNode* done = XMLFirstElement(document->GetRoot(), "done");
    done->CreateTextChild("")->SetLongText(number);
    result = XMLToString(*document);
}

std::vector<std::string> WorkTogether() {
    std::vector<std::string> results(4);
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < results.size(); ++i) {
        threads.emplace_back(Work, static_cast<long>(i), std::ref(results[i]));
    }
    for (std::thread& thread : threads)
        thread.join();
    return results;
}
//! [documents]

//! [hand over]
// A document may be handed on: the threads take turns, and joining orders them.
std::string LoadElsewhere() {
    CXMLDocumentPtr document;
    std::thread([&] { document = XMLLoadText("<handed/>"); }).join();
    return XMLToString(*document);
}
//! [hand over]

//! [save]
// One document, saved by several threads at once, while nobody does anything else with it.
bool SaveTogether(CXMLDocument& document) {
    std::string first, second;
    std::thread other([&] { first = XMLToString(document); });
    second = XMLToString(document);
    other.join();
    return first == second;
}
//! [save]

}  // namespace

int main() {
    for (const std::string& result : WorkTogether())
        std::cout << result << '\n';
    std::cout << LoadElsewhere() << '\n';
    CXMLDocumentPtr document = XMLLoadText("<shared>text</shared>");
    std::cout << (SaveTogether(*document) ? "the same" : "different") << '\n';
    return 0;
}
