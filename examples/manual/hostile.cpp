// Documents of strangers: what the parser does with them, and a load that refuses them.
#include <norvask/norvask.h>

#include <cstddef>
#include <fstream>
#include <iostream>
#include <string>
#include <string_view>

using namespace norvask;

namespace {

//! [guard]
struct SLimits {
    std::size_t bytes = std::size_t{64} << 20;
    int depth = 200;
};

// Ends the load at a document type declaration, which is reported before anything of it is read,
// and at nesting that is too deep. The ID is the program's own.
class CGuard : public CXMLSaxHandler {
public:
    explicit CGuard(const SLimits& limits) : m_Limits(limits) {}

    void StartDTD(const char*, const char*, const char*) override {
        throw CXMLException(100, "the document has a DTD");
    }
    void StartElement(const char*, const char*, const char*, CXMLSaxAttribut**) override {
        if (++m_nDepth > m_Limits.depth) throw CXMLException(100, "the document is too deep");
    }
    void EndElement(const char*, const char*, const char*) override { --m_nDepth; }

private:
    const SLimits m_Limits;
    int m_nDepth = 0;
};

CXMLDocumentPtr LoadUntrusted(std::string_view text, const SLimits& limits = {}) {
    if (text.size() > limits.bytes) throw CXMLException(100, "the document is too large");

    // Validation without XML Schema: a document without a DTD is loaded as it is, and the schemas
    // that it names are left alone. Without validation they would be fetched.
    const SXMLLoadOptions options = SXMLLoadOptions().KeepPrefixes().Validate();
    CGuard guard(limits);
    XMLLoadText(text, guard, options);
    return XMLLoadText(text, options);
}
//! [guard]

// The tree as it is saved, unless it is large.
std::string Shown(CXMLDocument& document) {
    const std::string saved = XMLToString(document);
    if (saved.size() > 200) return std::to_string(saved.size()) + " bytes";
    return saved.substr(saved.find("<a"));
}

// What becomes of a document by a plain load and by the one above.
void Try(const char* what, const std::string& text) {
    std::cout << what << "\n  plain:   " << Shown(*XMLLoadText(text)) << "\n  guarded: ";
    try {
        std::cout << Shown(*LoadUntrusted(text)) << '\n';
    } catch (CXMLException& e) {
        std::cout << e.GetMessage() << '\n';
    }
}

std::string Laughs(int levels) {
    std::string text = "<!DOCTYPE a [<!ENTITY e0 'lol'>";
    for (int i = 1; i <= levels; ++i) {
        text += "<!ENTITY e" + std::to_string(i) + " '";
        for (int times = 0; times < 10; ++times)
            text += "&e" + std::to_string(i - 1) + ';';
        text += "'>";
    }
    return text + "]><a>&e" + std::to_string(levels) + ";</a>";
}

std::string Deep(int levels) {
    std::string text;
    for (int i = 0; i < levels; ++i)
        text += "<a>";
    for (int i = 0; i < levels; ++i)
        text += "</a>";
    return text;
}

}  // namespace

int main() {
    std::ofstream("secret.txt") << "the secret";
    std::ofstream("outside.dtd") << "<!ATTLIST a added CDATA 'from outside'>";
    std::ofstream("outside.xsd") << R"(<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema">
<xs:element name="a"><xs:complexType><xs:attribute name="added" default="by a schema"/>
</xs:complexType></xs:element></xs:schema>)";

    Try("harmless", "<a>text</a>");
    Try("file as entity", "<!DOCTYPE a [<!ENTITY e SYSTEM 'secret.txt'>]><a>&e;</a>");
    Try("DTD elsewhere", "<!DOCTYPE a SYSTEM 'outside.dtd'><a/>");
    Try("DTD elsewhere, by a parameter entity",
        "<!DOCTYPE a [<!ENTITY % p SYSTEM 'outside.dtd'>%p;]><a/>");
    Try("DTD elsewhere, in UTF-7",
        "<?xml version='1.0' encoding='UTF-7'?>+ADwAIQ-DOCTYPE a SYSTEM 'outside.dtd'><a/>");
    Try("schema of the document's own",
        "<a xmlns:x='http://www.w3.org/2001/XMLSchema-instance' "
        "x:noNamespaceSchemaLocation='outside.xsd'/>");
    Try("entities of entities", Laughs(4));
    Try("3000 levels", Deep(3000));
    return 0;
}
