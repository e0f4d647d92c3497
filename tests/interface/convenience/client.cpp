// A client that uses every convenience once. It is compiled into the interface tests, which call
// it, and on its own the way other clients are built: without exceptions and RTTI, and as C++20
// (tests/CMakeLists.txt). So it does without GoogleTest.
#include "interface/convenience/client.h"

#include <norvask/norvask.h>

#include <string>

namespace norvask_test {

using namespace norvask;

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
    return used + " " + XMLToString(*XMLLoadFile(fileName));
}

}  // namespace norvask_test
