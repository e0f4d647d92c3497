// Documents of strangers: what a plain load does with them, and what one does that does not trust.
#include <norvask/norvask.h>

#include <cstdint>
#include <fstream>
#include <iostream>
#include <string>

using namespace norvask;

namespace {

//! [untrusted]
// What somebody uploaded, or NULL. Who sent it hears why not, and nothing of this machine: what()
// would name the file.
CXMLDocumentPtr Accept(const std::string& upload, std::ostream& reply) {
    try {
        return XMLLoadFile(upload, SXMLLoadOptions().Untrusted());
    } catch (const CXMLError& e) {
        if (e.Problems().empty()) throw;
        const SXMLProblem& problem = e.Problems().front();
        reply << "line " << problem.line << ": " << problem.text << '\n';
        return nullptr;
    }
}
//! [untrusted]

void Uploads() {
    std::ofstream("upload.xml") << "<order><item/></order>";
    std::cout << (Accept("upload.xml", std::cout) ? "accepted" : "refused") << '\n';
    std::ofstream("upload.xml")
        << "<?xml version='1.0'?>\n<!DOCTYPE a [<!ENTITY e 'x'>]><a>&e;</a>";
    std::cout << (Accept("upload.xml", std::cout) ? "accepted" : "refused") << '\n';
    std::ofstream("upload.xml") << "<order>\n<item></order>";
    std::cout << (Accept("upload.xml", std::cout) ? "accepted" : "refused") << '\n';
}

//! [drawing]
// Drawings often begin with a declaration that names the DTD of SVG and declares nothing itself.
// Whatever this takes away or overlooks, the load judges what is left.
std::string WithoutDoctype(std::string drawing) {
    const std::size_t begin = drawing.find("<!DOCTYPE");
    const std::size_t end = drawing.find_first_of("[>", begin);
    if (begin < drawing.find("<svg") && end != std::string::npos && drawing[end] == '>') {
        drawing.erase(begin, end + 1 - begin);
    }
    return drawing;
}
//! [drawing]

void Drawings() {
    const std::string svg = "<svg xmlns='http://www.w3.org/2000/svg'/>";
    const char* const doctypes[] = {
        R"(<!DOCTYPE svg PUBLIC "-//W3C//DTD SVG 1.1//EN" "http://dtd.example/svg11.dtd">)",
        "<!DOCTYPE svg [<!ENTITY e SYSTEM 'secret.txt'>]>"};
    for (const char* doctype : doctypes) {
        try {
            XMLLoadText(WithoutDoctype(doctype + svg), SXMLLoadOptions().Untrusted());
            std::cout << "a drawing\n";
        } catch (const CXMLError& e) {
            std::cout << e.Problems().front().text << '\n';
        }
    }
}

void More() {
    std::ofstream("atlas.xml") << "<atlas/>";
    //! [limits]
    SXMLUntrusted limits;                        // the defaults
    limits.maxBytes = std::uint64_t{500} << 20;  // of a file
    limits.maxDepth = 1000;                      // elements in elements
    limits.maxSeconds = 0;                       // as long as it takes
    XMLLoadFile("atlas.xml", SXMLLoadOptions().Untrusted(limits));
    //! [limits]
    std::cout << "an atlas\n";
}

void BySchema(const std::string& text) {
    //! [schema]
    // By our schema, whatever the document names.
    XMLLoadText(text, SXMLLoadOptions().Untrusted().ValidateBySchema("order.xsd"));
    //! [schema]
    std::cout << "valid by our schema\n";
}

void Classes(const std::string& text) {
    //! [refused]
    try {
        XMLLoadText(text, SXMLLoadOptions().Untrusted());
    } catch (const CXMLError& e) {
        std::cout << (e.GetID() == 9 ? "too much: " : "no XML: ") << e.Problems().front().text
                  << '\n';
    }
    //! [refused]
}

// The tree as it is saved, unless it is large.
std::string Shown(CXMLDocument& document) {
    const std::string saved = XMLToString(document);
    if (saved.size() > 200) return std::to_string(saved.size()) + " bytes";
    return saved.substr(saved.find("<a"));
}

std::string Outcome(const std::string& text, const SXMLLoadOptions& options) {
    try {
        return Shown(*XMLLoadText(text, options));
    } catch (const CXMLError& e) {
        return e.Problems().front().text;
    }
}

// What becomes of a document by a plain load and by one that does not trust it.
void Try(const char* what, const std::string& text) {
    std::cout << what << "\n  plain:     " << Outcome(text, SXMLLoadOptions())
              << "\n  untrusted: " << Outcome(text, SXMLLoadOptions().Untrusted()) << '\n';
}

std::string Repeated(const std::string& text, int times) {
    std::string all;
    for (int i = 0; i < times; ++i)
        all += text;
    return all;
}

// ASCII in two bytes a character.
std::string Wide(const std::string& text) {
    std::string wide = "\xFF\xFE";
    for (const char c : text) {
        wide += c;
        wide += '\0';
    }
    return wide;
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

// Names that have one hash value with the parser, as "ah" and "bB" have.
std::string Colliding(int pairs) {
    std::string tag = "<a";
    for (int n = 0; n < 1 << pairs; ++n) {
        tag += ' ';
        for (int pair = 0; pair < pairs; ++pair)
            tag += (n >> pair) % 2 == 0 ? "ah" : "bB";
        tag += "=''";
    }
    return tag + "/>";
}

}  // namespace

int main() {
    std::ofstream("secret.txt") << "the secret";
    std::ofstream("outside.dtd") << "<!ATTLIST a added CDATA 'from outside'>";
    std::ofstream("outside.xsd") << R"(<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema">
<xs:element name="a"><xs:complexType><xs:attribute name="added" default="by a schema"/>
</xs:complexType></xs:element></xs:schema>)";
    std::ofstream("order.xsd") << R"(<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema">
<xs:element name="order"/></xs:schema>)";

    Uploads();
    Drawings();
    More();
    BySchema("<order><item/></order>");
    Classes(Repeated("<a>", 300) + Repeated("</a>", 300));
    Classes("<a><b></a>");
    std::cout << '\n';

    Try("harmless", "<a>text</a>");
    Try("harmless, with a declaration that declares nothing", "<!DOCTYPE a><a>text</a>");
    Try("file as entity", "<!DOCTYPE a [<!ENTITY e SYSTEM 'secret.txt'>]><a>&e;</a>");
    Try("DTD elsewhere", "<!DOCTYPE a SYSTEM 'outside.dtd'><a/>");
    Try("reference to nothing, with a DTD elsewhere",
        "<!DOCTYPE a SYSTEM 'outside.dtd'><a>not &nowhere; here</a>");
    Try("reference to nothing, without", "<a>not &nowhere; here</a>");
    Try("DTD elsewhere, by a parameter entity",
        "<!DOCTYPE a [<!ENTITY % p SYSTEM 'outside.dtd'>%p;]><a/>");
    Try("DTD elsewhere, in UTF-7",
        "<?xml version='1.0' encoding='UTF-7'?>+ADwAIQ-DOCTYPE a SYSTEM 'outside.dtd'><a/>");
    Try("DTD elsewhere, in UTF-16", Wide("<!DOCTYPE a SYSTEM 'outside.dtd'><a/>"));
    Try("schema of the document's own",
        "<a xmlns:x='http://www.w3.org/2001/XMLSchema-instance' "
        "x:noNamespaceSchemaLocation='outside.xsd'/>");
    Try("entities of entities", Laughs(4));
    Try("one entity many times", "<!DOCTYPE a [<!ENTITY e '" + std::string(1000, 'x') + "'>]><a>" +
                                     Repeated("&e;", 1000) + "</a>");
    Try("one default attribute many times", "<!DOCTYPE a [<!ATTLIST b c CDATA '" +
                                                std::string(1000, 'x') + "'>]><a>" +
                                                Repeated("<b/>", 1000) + "</a>");
    Try("content model", "<!DOCTYPE a [<!ELEMENT a ((b|c)*,b" + Repeated(",(b|c)", 8) +
                             ")><!ELEMENT b EMPTY><!ELEMENT c EMPTY>]><a/>");
    Try("3000 levels", Repeated("<a>", 3000) + Repeated("</a>", 3000));
    Try("names made to collide", Colliding(14));
    Try("name of 1 MB", "<a" + std::string(1 << 20, 'n') + "/>");
    Try("blanks of 1 MB", "<a>" + std::string(1 << 20, ' ') + "</a>");
    Try("2 million elements", "<a>" + Repeated("<elements/>", 2000000) + "</a>");
    return 0;
}
