// A client that uses every convenience once. It is compiled into the interface tests, which call
// it, and on its own the way other clients are built: without exceptions and RTTI, and as C++20
// (tests/CMakeLists.txt). So it does without GoogleTest.
#include "interface/convenience/client.h"

#include <norvask/norvask.h>

#include <cstring>
#include <filesystem>
#include <sstream>
#include <string>

namespace norvask_test {

using namespace norvask;

namespace {

// All options, with which a document like these loads as without.
SXMLLoadOptions AllOptions(int& told) {
    SXMLUntrusted limits;
    limits.maxDepth = 100;
    return SXMLLoadOptions()
        .KeepPrefixes()
        .Untrusted()
        .Untrusted(limits)
        .CollectProblems()
        .CollectProblems(5)
        .Progress([&told](std::uint64_t, std::uint64_t) { ++told; })
        .Progress([&told](std::uint64_t, std::uint64_t) { return ++told > 0; })
        .Stop([] { return true; })
        .Name("name");
}

// Every source, as trees and as callbacks; returns how many elements there were.
int UseSources(const char* fileName) {
    int told = 0;
    int elements = 0;
    CXMLLambdaHandler handler;
    handler.onStartElement = [&](const SXMLStartTag&) { ++elements; };
    const SXMLLoadOptions options = AllOptions(told);
    const std::filesystem::path path(fileName);
    const auto count = [&](const CXMLDocumentPtr& document) {
        if (document != nullptr && document->GetRoot() != nullptr) ++elements;
    };
    count(XMLLoadFile(path));
    count(XMLLoadFile(path, options));
    XMLLoadFile(path, handler, options);
    std::istringstream stream("<a/>");
    count(XMLLoadStream(stream, options));
    std::istringstream again("<a/>");
    XMLLoadStream(again, handler, options);
    const char* rest = "<a/>";
    const auto read = [&rest](char* to, std::size_t) {
        const std::size_t length = std::strlen(rest);
        std::memcpy(to, rest, length);
        rest += length;
        return static_cast<std::ptrdiff_t>(length);
    };
    count(XMLLoadReader(read, options));
    rest = "<a/>";
    XMLLoadReader(read, handler, options);
    count(XMLLoadText("<!DOCTYPE a [<!ELEMENT a ANY>]><a/>", SXMLLoadOptions().RequireGrammar()));
#if defined(__cpp_exceptions)
    // These fail, in programs that can hear of it.
    try {
        XMLLoadDescriptor(-1, options);
    } catch (const CXMLError& e) {
        if (e.Problems().empty() && *e.what() != '\0' && e.GetID() == 1) ++elements;
    }
    try {
        XMLLoadText("<a/>", SXMLLoadOptions().Schema("urn:a", "/no/such.xsd"));
    } catch (const std::exception&) {
        ++elements;
    }
#endif
    SXMLProblem problem;
    problem.severity = EXMLSeverity::ERROR;
    const CXMLError error(5, "own", {problem});
    const CXMLError copy(error);
    if (std::strcmp(copy.GetMessage(), "own") == 0 && copy.Problems().size() == 1) ++elements;
    return told > 0 ? elements : 0;
}

}  // namespace

std::string UseConveniences(const char* fileName) {
    CXMLDocumentPtr made = XMLNewDocument("list");
    made->GetRoot()->SetAttribute("xmlns:", "urn:example:list");
    made->GetRoot()->CreateChild("book", nullptr)->SetTextChildValue("Äpfel");
    made->GetRoot()->CreateChild("data", nullptr)->CreateBinChild();
    std::string used = std::to_string(XMLNameDefaultNamespaces(*made));

    CXMLDocumentPtr document = XMLLoadText(XMLToString(*made), SXMLLoadOptions().KeepPrefixes());
#if __cplusplus >= 202002L
    document = XMLLoadText(XMLToString(*made), {.keepPrefixes = true});
#endif
    document = XMLClone(*document);
    CXMLNode* root = document->GetRoot();
    for (CXMLNode* child : XMLChildren(root)) {
        used += std::string(" ") + child->GetTagName();
    }
    for (CXMLNode* element : XMLElements(root, "book")) {
        CXMLTextNode* text = XMLAsText(element->GetFirstChild());
        used += std::string(" ") + (text != nullptr ? text->GetText() : "no text");
        if (XMLAsBinary(element->GetFirstChild()) != nullptr) used += " binary";
    }
    for (CXMLAttribut* attribute : XMLAttributes(root)) {
        used += std::string(" ") + attribute->GetName();
    }
    for (CXMLNode* found : XMLQuery(*document, "list/book")) {
        if (found == XMLFirstElement(root, "book")) used += " found";
    }

#if defined(__cpp_exceptions)
    XMLNameDefaultNamespaces(*document);
    XMLSaveSafely(*document, fileName, false);
#else
    made->Save(fileName, false);
#endif
    int elements = 0;
    CXMLLambdaHandler handler;
    handler.onStartElement = [&](const SXMLStartTag& tag) {
        elements += tag.Is("book") || *tag.Value("none") == '\0' ? 1 : 0;
    };
    XMLLoadFile(fileName, handler);
    XMLLoadText("<a/>", handler);
    used += " " + std::to_string(elements);

    CXMLSaxWriter writer;
    writer.StartDocument(fileName, false);
    XMLWriteElement(writer, "row", [&] {
        XMLWriteElement(writer, "name", "Möhlau");
        XMLWriteElement(writer, "level", 2.5);
        XMLWriteElement(writer, "count", 3);
        XMLWriteElement(writer, "alarm", true);
    });
    writer.EndDocument();
    used += " " + std::to_string(UseSources(fileName));
    return used + " " + XMLToString(*XMLLoadFile(fileName));
}

}  // namespace norvask_test
