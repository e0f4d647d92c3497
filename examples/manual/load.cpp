// Loading from files and memory, with and without prefixes, and what a failure tells.
#include <norvask/norvask.h>

#include <fstream>
#include <iostream>
#include <string>

using namespace norvask;

namespace {

void FromFile() {
    std::ofstream("list.xml") << "<list><item/></list>";
    //! [file]
    CXMLDocumentPtr list = XMLLoadFile("list.xml");
    std::cout << list->GetRoot()->GetTagName() << '\n';
    //! [file]
}

void FromMemory() {
    //! [memory]
    const std::string received =
        "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><name>J\xF6rg</name>";
    CXMLDocumentPtr answer = XMLLoadText(received);
    std::cout << answer->GetRoot()->GetTextChildValue() << '\n';  // UTF-8, whatever came in
    //! [memory]
}

void WithPrefixes() {
    //! [prefixes]
    const char* text = "<b:list xmlns:b='urn:books'><b:book/></b:list>";

    CXMLDocumentPtr local = XMLLoadText(text);
    std::cout << XMLToString(*local) << '\n';

    CXMLDocumentPtr whole = XMLLoadText(text, SXMLLoadOptions().KeepPrefixes());
    std::cout << XMLToString(*whole) << '\n';
    //! [prefixes]
}

void WithoutConveniences() {
    //! [classes]
    CXMLManager& manager = CXMLManager::GetInstance();
    CXMLDocument* list = manager.LoadDocument("list.xml",
                                              /*validate=*/false, /*doSchema=*/false,
                                              /*schemaLocation=*/nullptr,
                                              /*schemaHasNamespace=*/false, /*keepPrefixes=*/true);
    std::cout << list->GetRoot()->GetTagName() << '\n';
    list->Delete();
    //! [classes]
}

//! [failures]
// Says what is wrong with a document; true if nothing is.
bool Check(const char* what, const std::string& text) {
    try {
        XMLLoadText(text);
        return true;
    } catch (CXMLException& e) {
        std::cout << what << ": class " << e.GetID() << "\n" << e.GetMessage() << "\n\n";
        return false;
    }
}
//! [failures]

bool CheckFile(const char* name) {
    try {
        XMLLoadFile(name);
        return true;
    } catch (CXMLException& e) {
        std::cout << "file: class " << e.GetID() << "\n" << e.GetMessage() << "\n\n";
        return false;
    }
}

}  // namespace

int main() {
    FromFile();
    FromMemory();
    WithPrefixes();
    WithoutConveniences();
    std::cout << '\n';
    std::ofstream("broken.xml") << "<list>\n  <item>\n</list>\n";
    bool fine = Check("good", "<list/>");
    fine = !Check("wrong tag", "<list>\n<item>\n</list>") && fine;
    fine = !Check("empty", "") && fine;
    fine = !Check("no XML", "hello") && fine;
    fine = !Check("encoding", "<?xml version='1.0' encoding='no-such'?><list/>") && fine;
    fine = !Check("name", "<list \U00010400='1'/>") && fine;
    fine = !CheckFile("broken.xml") && fine;
    fine = !CheckFile("missing.xml") && fine;
    return fine ? 0 : 1;
}
