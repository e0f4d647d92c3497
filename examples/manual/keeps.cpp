// What a load keeps: one document with everything in it, the tree that comes of it, what is saved.
#include <norvask/norvask.h>

#include <cstddef>
#include <fstream>
#include <iostream>
#include <string>

using namespace norvask;

namespace {

//! [document]
const char* const kDocument = R"(<?xml version="1.0" encoding="ISO-8859-1"?>
<!-- a comment -->
<!DOCTYPE list PUBLIC "-//Example//List" "list.dtd" [<!ENTITY who "Ida">]>
<?process this?>
<list xmlns="urn:example:list" xmlns:s="urn:example:stock" kind='short' empty="">
  <s:item>  two  words  </s:item>
  <item>&who; &amp; Jo<!-- inside -->han &#228;</item>
  <item> </item>
  <item>
  </item>
  <item>before<![CDATA[ <as it is> ]]>after</item>
  <item><![CDATA[AAEC]]></item>
  <item><![CDATA[]]></item>
</list>
)";
//! [document]

//! [tree]
// Each node on a line of its own.
void Show(CXMLNode* node, std::size_t depth) {
    std::cout << std::string(2 * depth, ' ');
    if (CXMLTextNode* text = XMLAsText(node)) {
        std::cout << "text \"" << text->GetText() << "\"\n";
    } else if (CXMLBinNode* binary = XMLAsBinary(node)) {
        const unsigned char* data = nullptr;
        std::size_t length = 0;
        binary->GetData(data, length);
        std::cout << "binary, " << length << " bytes\n";
    } else if (CXMLNode* element = XMLAsElement(node)) {
        std::cout << element->GetTagName();
        for (CXMLAttribut* a : XMLAttributes(element)) {
            std::cout << "  " << a->GetName() << "=\"" << a->GetValue() << '"';
        }
        std::cout << '\n';
        for (CXMLNode* child : XMLChildren(element))
            Show(child, depth + 1);
    }
}
//! [tree]

}  // namespace

int main() {
    std::ofstream("list.dtd") << "<!ATTLIST item lang CDATA 'en'>";
    for (const bool keepPrefixes : {false, true}) {
        SXMLLoadOptions options;
        options.keepPrefixes = keepPrefixes;
        CXMLDocumentPtr list = XMLLoadText(kDocument, options);
        std::cout << (keepPrefixes ? "with" : "without") << " prefixes\n"
                  << "DTD " << list->GetDTDName() << " at " << list->GetDTDPath() << '\n';
        Show(list->GetRoot(), 0);
        XMLNameDefaultNamespaces(*list);
        std::cout << "saved:\n" << XMLToString(*list, true) << "\n\n";
    }
    return 0;
}
