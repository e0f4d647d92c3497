// What each operation makes of NULL and of an empty text, found by calling it. The output is the
// table of the manual: each line is one operation, with what happens or what is answered.
#include <norvask/norvask.h>

#include <cstddef>
#include <fstream>
#include <functional>
#include <iostream>
#include <sstream>
#include <string>
#include <string_view>

using namespace norvask;

namespace {

using Call = std::function<std::string(const char*)>;

// The error class and the beginning of the message, as far as it is the same for every document.
std::string Of(const Call& call, const char* argument) {
    try {
        return call(argument);
    } catch (CXMLException& e) {
        const std::string message = e.GetMessage();
        const std::size_t end = message.find_first_of(":'.\n");
        return "throws " + std::to_string(e.GetID()) + ", " +
               message.substr(0,
                              end != std::string::npos && message[end - 1] == ' ' ? end - 1 : end);
    }
}

void Row(const char* operation, const Call& call) {
    std::cout << "| `" << operation << "` | " << Of(call, nullptr) << " | " << Of(call, "")
              << " |\n";
}

// For what takes no text: there is only one outcome.
void Row(const char* operation, const std::function<std::string()>& call) {
    std::cout << "| `" << operation << "` | " << Of([&](const char*) { return call(); }, nullptr)
              << " | |\n";
}

std::string Shown(const char* text) {
    return text == nullptr ? "NULL" : "`\"" + std::string(text) + "\"`";
}

std::string Shown(CXMLDocument& document) {
    const std::string saved = XMLToString(document);
    return "`" + saved.substr(saved.find("?>") + 2) + "`";
}

std::string Shown(bool answer) { return answer ? "true" : "false"; }

// A new document <a b="1">t</a>, changed by `change`.
std::string Changed(const std::function<void(CXMLDocument&, CXMLNode*)>& change) {
    CXMLDocumentPtr document = XMLLoadText("<a b='1'>t</a>");
    change(*document, document->GetRoot());
    return Shown(*document);
}

std::string Written(const std::function<void(CXMLSaxWriter&)>& write) {
    std::ostringstream out;
    CXMLSaxWriter writer;
    writer.StartDocument(&out, false, false);
    writer.StartElement("a", nullptr);
    write(writer);
    writer.EndElement();
    writer.EndDocument();
    return "`" + out.str().substr(out.str().find("?>") + 2) + "`";
}

void Loading() {
    CXMLManager& m = CXMLManager::GetInstance();
    static CXMLSaxHandler ignore;
    Row("LoadDocument(fileName, ...)", [&](const char* t) {
        m.LoadDocument(t, &ignore, false, false, nullptr, false, false);
        return "";
    });
    Row("LoadDocument(buffer, length, ...)", [&](const char* t) {
        m.LoadDocument(reinterpret_cast<unsigned char*>(const_cast<char*>(t)), 0, &ignore, false,
                       false, nullptr, false, false);
        return "";
    });
    Row("LoadDocument(..., handler, ...)", [&] {
        unsigned char text[] = "<a/>";
        m.LoadDocument(text, 4, static_cast<CXMLSaxHandler*>(nullptr), false, false, nullptr, false,
                       false);
        return "";
    });
    Row("LoadDocument(..., schemaLocation, ...)", [&](const char* t) {
        unsigned char text[] = "<a/>";
        m.LoadDocument(text, 4, &ignore, true, true, t, false, false);
        return "loads";
    });
    Row("SetWideCharToStringConverter(converter)", [&] {
        m.SetWideCharToStringConverter(nullptr);
        return Shown(XMLLoadText("<a>&#228;</a>")->GetRoot()->GetTextChildValue()) +
               ": the library's own";
    });
    Row("CreateDocument(name, \"a.dtd\")", [&](const char* t) {
        CXMLDocumentPtr document(m.CreateDocument(t, "a.dtd"));
        return "no DTD: " + Shown(document->GetDTDPath());
    });
}

void Documents() {
    const auto dtd = [](const char* name, const char* path) {
        return Changed([&](CXMLDocument& d, CXMLNode*) {
            d.SetDTDRef("a", "a.dtd");
            d.SetDTDRef(name, path);
        });
    };
    Row("CXMLDocument::SetDTDRef(name, \"a.dtd\")", [&](const char* t) { return dtd(t, "a.dtd"); });
    Row("CXMLDocument::SetDTDRef(\"a\", path)", [&](const char* t) { return dtd("a", t); });
    Row("CXMLDocument::GetDTDName(), without one",
        [] { return Shown(XMLNewDocument("a")->GetDTDName()); });
    Row("CXMLDocument::GetRoot(), without one",
        [] { return XMLNewDocument()->GetRoot() == nullptr ? "NULL" : "a root"; });
    Row("CXMLDocument::CreateRoot(name)", [](const char* t) {
        return Changed([&](CXMLDocument& d, CXMLNode*) { d.CreateRoot(t); });
    });
    Row("CXMLDocument::GetNodes(path)", [](const char* t) {
        return *XMLLoadText("<a/>")->GetNodes(t) == nullptr ? "nothing found" : "something";
    });
    Row("CXMLDocument::Save(fileName, ...)", [](const char* t) {
        XMLNewDocument("a")->Save(t, false);
        return "no failure";
    });
    Row("CXMLDocument::Save(fileName, ...), without a root", [] {
        XMLNewDocument()->Save("norvask-null.xml", false);
        return std::string(std::ifstream("norvask-null.xml") ? "a file" : "no failure, no file");
    });
    Row("CXMLDocument::Save(out, ...), without a root", [] {
        std::ostringstream out;
        XMLNewDocument()->Save(out, false);
        return out.str();
    });
}

void Nodes() {
    Row("CXMLNode::SetTagName(name)", [](const char* t) {
        return Changed([&](CXMLDocument&, CXMLNode* a) { a->SetTagName(t); });
    });
    Row("CXMLNode::CreateChild(name, ...)", [](const char* t) {
        return Changed([&](CXMLDocument&, CXMLNode* a) { a->CreateChild(t, nullptr); });
    });
    Row("CXMLNode::CreateChild(\"b\", before)",
        [] { return Changed([](CXMLDocument&, CXMLNode* a) { a->CreateChild("b", nullptr); }); });
    Row("CXMLNode::CopyChild(source, ...)",
        [] { return Changed([](CXMLDocument&, CXMLNode* a) { a->CopyChild(nullptr, nullptr); }); });
    Row("CXMLNode::DeleteChild(child)",
        [] { return Changed([](CXMLDocument&, CXMLNode* a) { a->DeleteChild(nullptr); }); });
    Row("CXMLNode::CreateTextChild(text)", [](const char* t) {
        CXMLDocumentPtr document = XMLNewDocument("a");
        document->GetRoot()->CreateTextChild(t);
        return Shown(*document);
    });
    Row("CXMLNode::SetAttribute(name, \"1\")", [](const char* t) {
        return Changed([&](CXMLDocument&, CXMLNode* a) { a->SetAttribute(t, "1"); });
    });
    Row("CXMLNode::SetAttribute(\"b\", value)", [](const char* t) {
        return Changed([&](CXMLDocument&, CXMLNode* a) { a->SetAttribute("b", t); });
    });
    Row("CXMLNode::GetAttributeValue(name)", [](const char* t) {
        return Shown(XMLLoadText("<a b='1'/>")->GetRoot()->GetAttributeValue(t));
    });
    Row("CXMLNode::SetTextChildValue(text)", [](const char* t) {
        return Changed([&](CXMLDocument&, CXMLNode* a) { a->SetTextChildValue(t); });
    });
    Row("CXMLNode::GetTextChildValue(), without children",
        [] { return Shown(XMLLoadText("<a/>")->GetRoot()->GetTextChildValue()); });
    Row("CXMLNode::GetFirstChild(), without children", [] {
        return XMLLoadText("<a/>")->GetRoot()->GetFirstChild() == nullptr ? "NULL" : "a child";
    });
    Row("CXMLNode::GetParentNode(), of a root", [] {
        return XMLLoadText("<a/>")->GetRoot()->GetParentNode() == nullptr ? "NULL" : "a parent";
    });
    Row("CXMLNode::GetNodes(path)", [](const char* t) {
        return *XMLLoadText("<a><b/></a>")->GetRoot()->GetNodes(t) == nullptr ? "nothing found"
                                                                              : "something";
    });
}

void Leaves() {
    const auto text = [](const std::function<void(CXMLTextNode*)>& change) {
        return Changed([&](CXMLDocument&, CXMLNode* a) { change(XMLAsText(a->GetFirstChild())); });
    };
    Row("CXMLTextNode::SetText(text)",
        [&](const char* t) { return text([&](CXMLTextNode* n) { n->SetText(t); }); });
    Row("CXMLTextNode::SetBinaryText(data, 1)",
        [&] { return text([](CXMLTextNode* n) { n->SetBinaryText(nullptr, 1); }); });
    Row("CXMLTextNode::GetText(), of an empty one", [] {
        CXMLDocumentPtr document = XMLNewDocument("a");
        return Shown(document->GetRoot()->CreateTextChild(nullptr)->GetText());
    });
    Row("CXMLTextNode::GetLongText(...), of an empty one", [] {
        CXMLDocumentPtr document = XMLNewDocument("a");
        long number = 7;
        const bool found = document->GetRoot()->CreateTextChild("")->GetLongText(number);
        return Shown(found) + ", still " + std::to_string(number);
    });
    Row("CXMLBinNode::SetData(data, 1)", [] {
        CXMLDocumentPtr document = XMLNewDocument("a");
        document->GetRoot()->CreateBinChild()->SetData(nullptr, 1);
        return Shown(*document);
    });
    Row("CXMLBinNode::GetData(...), of an empty one", [] {
        CXMLDocumentPtr document = XMLNewDocument("a");
        const unsigned char* data = nullptr;
        std::size_t length = 7;
        document->GetRoot()->CreateBinChild()->GetData(data, length);
        return std::string(data == nullptr ? "NULL" : "bytes") + ", length " +
               std::to_string(length);
    });
    Row("CXMLAttribut(name, \"1\")",
        [](const char* t) { return Shown(CXMLAttribut(t, "1").GetName()); });
    Row("CXMLAttribut(\"b\", value)",
        [](const char* t) { return Shown(CXMLAttribut("b", t).GetValue()); });
    Row("CXMLException(7, text)",
        [](const char* t) { return Shown(CXMLException(7, t).GetMessage()); });
}

void Values() {
    Row("XMLConvertText2Long(text, ...) and the like", [](const char* t) {
        long number = 7;
        const bool found = XMLConvertText2Long(t, number);
        return Shown(found) + ", still " + std::to_string(number);
    });
    Row("CXMLSaxHandler::GetData(text, ...)", [](const char* t) {
        unsigned char* data = nullptr;
        std::size_t length = 7;
        const bool found = CXMLSaxHandler::GetData(t, data, length);
        return Shown(found) + ", still " + std::to_string(length);
    });
}

void Writing() {
    Row("CXMLSaxWriter::StartDocument(stream, ...)", [] {
        CXMLSaxWriter().StartDocument(static_cast<std::ostream*>(nullptr), false, false);
        return "";
    });
    Row("CXMLSaxWriter::StartDocument(fileName, ...)", [](const char* t) {
        CXMLSaxWriter().StartDocument(t, false);
        return "";
    });
    Row("CXMLSaxWriter::StartElement(name, ...)", [](const char* t) {
        return Written([&](CXMLSaxWriter& w) { w.StartElement(t, nullptr); });
    });
    Row("CXMLSaxWriter::StartElement(\"b\", attributes)", [] {
        return Written([](CXMLSaxWriter& w) {
            w.StartElement("b", nullptr);
            w.EndElement();
        });
    });
    Row("CXMLSaxWriter, an attribute's name", [](const char* t) {
        return Written([&](CXMLSaxWriter& w) {
            CXMLAttribut attribute(t, "1");
            CXMLAttribut* attributes[] = {&attribute, nullptr};
            w.StartElement("b", attributes);
            w.EndElement();
        });
    });
    Row("CXMLSaxWriter, an attribute's value", [](const char* t) {
        return Written([&](CXMLSaxWriter& w) {
            CXMLAttribut attribute("c", t);
            CXMLAttribut* attributes[] = {&attribute, nullptr};
            w.StartElement("b", attributes);
            w.EndElement();
        });
    });
    Row("CXMLSaxWriter::Characters(text)",
        [](const char* t) { return Written([&](CXMLSaxWriter& w) { w.Characters(t); }); });
    Row("CXMLSaxWriter::Data(data, 1, true)",
        [] { return Written([](CXMLSaxWriter& w) { w.Data(nullptr, 1, true); }); });
}

void Conveniences() {
    Row("XMLNewDocument(rootName)", [](const char* t) { return Shown(*XMLNewDocument(t)); });
    Row("XMLLoadFile(fileName)", [](const char* t) { return Shown(*XMLLoadFile(t)); });
    Row("XMLLoadText(text)", [](const char* t) { return Shown(*XMLLoadText(t)); });
    Row("XMLSaveSafely(document, fileName, ...)", [](const char* t) {
        XMLSaveSafely(*XMLNewDocument("a"), t, false);
        return "";
    });
    Row("XMLToString(document), without a root", [] { return XMLToString(*XMLNewDocument()); });
    Row("XMLChildren(node) and the other ranges",
        [] { return std::string(XMLChildren(nullptr).empty() ? "an empty range" : "a range"); });
    Row("XMLElements(node, name)", [](const char* t) {
        CXMLDocumentPtr document = XMLLoadText("<a><b/></a>");
        return XMLElements(document->GetRoot(), t).empty() ? "none" : "all elements";
    });
    Row("XMLAsText(node) and the like",
        [] { return std::string(XMLAsText(nullptr) == nullptr ? "NULL" : "a node"); });
    Row("XMLNameDefaultNamespaces(node)",
        [] { return std::to_string(XMLNameDefaultNamespaces(static_cast<CXMLNode*>(nullptr))); });
    Row("XMLAttributeValue(attributes, name)", [](const char* t) {
        std::string answer;
        CXMLLambdaHandler handler;
        handler.onStartElement = [&](const SXMLStartTag& tag) { answer = Shown(tag.Value(t)); };
        XMLLoadText("<a b='1'/>", handler);
        return answer;
    });
}

}  // namespace

int main() {
    std::cout << "| Operation | with NULL | with \"\" |\n| --- | --- | --- |\n";
    Loading();
    Documents();
    Nodes();
    Leaves();
    Values();
    Writing();
    Conveniences();
    return 0;
}
