// Validation by a DTD and by XML Schema, and what is silently not validated.
#include <norvask/norvask.h>

#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>

using namespace norvask;

namespace {

const char* const kListSchema = R"(<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema">
  <xs:element name="list">
    <xs:complexType>
      <xs:sequence>
        <xs:element name="entry" maxOccurs="unbounded">
          <xs:complexType><xs:attribute name="id" type="xs:string"/></xs:complexType>
        </xs:element>
      </xs:sequence>
    </xs:complexType>
    <xs:unique name="one"><xs:selector xpath="entry"/><xs:field xpath="@id"/></xs:unique>
  </xs:element>
</xs:schema>)";

const char* const kSchema = R"(<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema">
  <xs:element name="order">
    <xs:complexType>
      <xs:sequence>
        <xs:element name="item" type="xs:positiveInteger" maxOccurs="unbounded"/>
      </xs:sequence>
    </xs:complexType>
  </xs:element>
</xs:schema>)";

//! [answer]
std::string Verdict(const std::string& text, const SXMLLoadOptions& options) {
    try {
        XMLLoadText(text, options);
        return "loaded";
    } catch (const CXMLError& e) {
        return e.what();  // the first error, with its line
    }
}
//! [answer]

void Dtd() {
    //! [dtd]
    const std::string text =
        "<!DOCTYPE order [<!ELEMENT order (item+)><!ELEMENT item (#PCDATA)>]>\n"
        "<order><thing/></order>";
    std::cout << Verdict(text, SXMLLoadOptions()) << '\n';             // not asked for
    std::cout << Verdict(text, SXMLLoadOptions().Validate()) << '\n';  // refused
    //! [dtd]
}

void Schema() {
    //! [schema]
    const SXMLLoadOptions bySchema = SXMLLoadOptions().ValidateBySchema("order.xsd");

    std::cout << Verdict("<order><item>12</item></order>", bySchema) << '\n';
    std::cout << Verdict("<order><item>none</item></order>", bySchema) << '\n';
    //! [schema]

    //! [namespace]
    const SXMLLoadOptions inNamespace =
        SXMLLoadOptions().ValidateBySchema("urn:example:order urn-order.xsd", true);

    std::cout << Verdict("<o:order xmlns:o='urn:example:order'/>", inNamespace) << '\n';
    //! [namespace]
}

void NotValidated() {
    //! [silent]
    // A document that names no grammar is not validated, when it is to be validated by its own.
    std::cout << Verdict("<order><nonsense/></order>", SXMLLoadOptions().Validate()) << '\n';
    // It is an error if you say so.
    std::cout << Verdict("<order><nonsense/></order>", SXMLLoadOptions().RequireGrammar()) << '\n';
    // So is a schema of yours that cannot be read.
    std::cout << Verdict("<order><nonsense/></order>",
                         SXMLLoadOptions().ValidateBySchema("no-such.xsd"))
              << '\n';
    //! [silent]
}

void Named() {
    //! [named]
    const SXMLLoadOptions byBoth = SXMLLoadOptions()
                                       .Schema("urn:example:order", "our schemas/order.xsd")
                                       .Schema("", "order.xsd");

    std::cout << Verdict("<o:order xmlns:o='urn:example:order'><item>1</item></o:order>", byBoth)
              << '\n';
    std::cout << Verdict("<order><item>1</item></order>", byBoth) << '\n';
    std::cout << Verdict("<order/>", SXMLLoadOptions().Schema("", "ordre.xsd")) << '\n';
    //! [named]
}

void Collected() {
    //! [collected]
    try {
        XMLLoadText("<order>\n  <item>12</item>\n  <item>none</item>\n  <gift/>\n</order>",
                    SXMLLoadOptions().ValidateBySchema("order.xsd").CollectProblems());
    } catch (const CXMLError& e) {
        for (const SXMLProblem& problem : e.Problems()) {
            std::cout << "line " << problem.line << ", " << problem.path << ": " << problem.text
                      << '\n';
        }
    }
    //! [collected]
}

void Keys() {
    //! [keys]
    const std::string twice = "<list><entry id='a'/><entry id='a'/></list>";
    const SXMLLoadOptions byList = SXMLLoadOptions().ValidateBySchema("list.xsd");

    std::cout << Verdict(twice, byList) << '\n';                   // loaded
    std::cout << Verdict(twice, byList.RequireGrammar()) << '\n';  // refused
    //! [keys]
}

}  // namespace

int main() {
    std::ofstream("order.xsd") << kSchema;
    std::string inNamespace = kSchema;
    inNamespace.insert(inNamespace.find('>'), " targetNamespace='urn:example:order'");
    std::ofstream("urn-order.xsd") << inNamespace;
    std::filesystem::create_directory("our schemas");
    std::ofstream("our schemas/order.xsd") << inNamespace;
    std::ofstream("list.xsd") << kListSchema;

    Dtd();
    Schema();
    NotValidated();
    Named();
    Collected();
    Keys();
    return 0;
}
