// Saving: so that nothing can be lost, to streams and strings, and default namespaces.
#include <norvask/norvask.h>

#include <fstream>
#include <iostream>

using namespace norvask;

namespace {

void Safely(CXMLDocument& list) {
    //! [safely]
    XMLSaveSafely(list, "list.xml", /*format=*/true);
    //! [safely]
    //! [refused]
    try {
        list.GetRoot()->GetAttributes()[0]->SetName("no name");  // an attribute checks nothing
        XMLSaveSafely(list, "list.xml", true);
    } catch (const CXMLError& e) {
        std::cout << e.GetID() << ": " << e.what() << '\n';  // the old file is untouched
    }
    //! [refused]
    list.GetRoot()->GetAttributes()[0]->SetName("kind");
    std::cout << XMLToString(*XMLLoadFile("list.xml")) << '\n';
}

void FullDevice(CXMLDocument& list) {
    //! [full]
    list.Save("/dev/full", true);  // the operation of the class: says nothing
    try {
        XMLSaveSafely(list, "/dev/full", true);
    } catch (const CXMLError& e) {
        std::cout << e.what() << ' ' << e.Problems().front().text << '\n';
    }
    //! [full]
}

bool ToStream(CXMLDocument& list) {
    //! [stream]
    std::ofstream out("copy.xml", std::ios::binary);
    if (!out) return false;  // Save would throw
    list.Save(out, /*format=*/true);
    out.close();
    return !out.fail();  // Save does not look: the program does, after closing
    //! [stream]
}

void ToString(CXMLDocument& list) {
    //! [string]
    std::cout << XMLToString(list) << "\n\n" << XMLToString(list, /*format=*/true) << "\n\n";
    //! [string]
}

void Namespaces() {
    //! [namespaces]
    const SXMLLoadOptions options = SXMLLoadOptions().KeepPrefixes();
    CXMLDocumentPtr feed = XMLLoadText("<feed xmlns='urn:example:feed'><entry/></feed>", options);
    std::cout << XMLToString(*feed) << '\n';  // xmlns:= in it, which no parser reads

    XMLNameDefaultNamespaces(*feed);
    std::cout << XMLToString(*feed) << '\n';  // xmlns= again
    //! [namespaces]
    XMLLoadText(XMLToString(*feed), options);
}

void Doctype() {
    //! [doctype]
    CXMLDocumentPtr page = XMLNewDocument("page", "page", "page.dtd");
    std::cout << XMLToString(*page) << '\n';
    //! [doctype]
}

}  // namespace

int main() {
    CXMLDocumentPtr list = XMLLoadText("<list kind='short'><item>a &amp; b</item><item/></list>");
    Safely(*list);
    FullDevice(*list);
    std::cout << (ToStream(*list) ? "copied" : "not copied") << '\n';
    ToString(*list);
    Namespaces();
    Doctype();
    return 0;
}
