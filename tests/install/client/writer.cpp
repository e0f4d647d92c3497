// A client that names neither the manager nor a document. It needs them all the same: the parser,
// which the manager initialises, converts and checks the names that are not ASCII.
#include <norvask/sax_writer.h>

#include <iostream>
#include <sstream>
#include <string>

int main() {
    std::ostringstream out;
    norvask::CXMLSaxWriter writer;
    writer.StartDocument(&out, false, false);
    writer.StartElement("b\u00fccher", nullptr);
    writer.Characters("caf\u00e9\xff");  // a byte that is not UTF-8 goes through the parser too
    writer.EndElement();
    writer.EndDocument();

    const std::string text = out.str();
    const bool written = text.find("<b\u00fccher>caf\u00e9") != std::string::npos &&
                         text.find("</b\u00fccher>") != std::string::npos;
    std::cout << (written ? "ok" : "failed: " + text) << '\n';
    return written ? 0 : 1;
}
