// Validation by a DTD and by XML Schema, and what is silently not validated.
#include <norvask/norvask.h>

#include <fstream>
#include <iostream>
#include <string>

using namespace norvask;

namespace {

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
    } catch (CXMLException& e) {
        return e.GetMessage();  // the first error, with its line
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

}  // namespace

int main() {
    std::ofstream("order.xsd") << kSchema;
    std::string inNamespace = kSchema;
    inNamespace.insert(inNamespace.find('>'), " targetNamespace='urn:example:order'");
    std::ofstream("urn-order.xsd") << inNamespace;

    Dtd();
    Schema();
    NotValidated();
    return 0;
}
