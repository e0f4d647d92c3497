// Loading from files and memory, with and without prefixes, and what a failure tells.
#include <fcntl.h>
#include <norvask/norvask.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

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

void FromElsewhere() {
    std::istringstream stream("<list/>");
    const int descriptor = open("list.xml", O_RDONLY);
    //! [sources]
    CXMLDocumentPtr first = XMLLoadStream(stream);
    CXMLDocumentPtr second = XMLLoadFile(std::filesystem::path("list.xml"));  // never a URL
    CXMLDocumentPtr third = XMLLoadDescriptor(descriptor);                    // stays open
    //! [sources]
    close(descriptor);
    std::cout << XMLToString(*first) << XMLToString(*second) << XMLToString(*third) << '\n';

    //! [reader]
    // What comes in pieces: a part of an archive, an answer of a server.
    std::vector<std::string> pieces{"<list>\n<item", "/></lost>"};
    std::size_t next = 0;
    const auto read = [&](char* to, std::size_t room) -> std::ptrdiff_t {
        if (next == pieces.size()) return 0;  // the end
        std::string& piece = pieces[next];
        const std::size_t count = std::min(room, piece.size());
        std::memcpy(to, piece.data(), count);
        piece.erase(0, count);
        if (piece.empty()) ++next;
        return static_cast<std::ptrdiff_t>(count);
    };
    try {
        XMLLoadReader(read, SXMLLoadOptions().Name("list.zip/list.xml"));
    } catch (const CXMLError& e) {
        std::cout << e.Problems().front().file << ": " << e.Problems().front().text << '\n';
    }
    //! [reader]
}

void Stopped() {
    std::string text = "<list>";
    for (int i = 0; i < 100000; ++i)
        text += "<item/>";
    text += "</list>";
    const bool isCancelled = true;
    //! [stopped]
    try {
        XMLLoadText(text, SXMLLoadOptions().Stop([&] { return !isCancelled; }));
    } catch (const CXMLError& e) {
        if (e.GetID() != 9) throw;  // a limit, or this
        std::cout << e.Problems().front().text << '\n';
    }
    //! [stopped]
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
    } catch (const CXMLError& e) {
        std::cout << what << ": class " << e.GetID() << "\n" << e.what() << "\n\n";
        return false;
    }
}
//! [failures]

void Fields() {
    //! [fields]
    try {
        XMLLoadFile("broken.xml");
    } catch (const CXMLError& e) {
        for (const SXMLProblem& problem : e.Problems()) {
            std::cout << "file:   " << problem.file << "\nline:   " << problem.line
                      << "\ncolumn: " << problem.column << "\ntext:   " << problem.text
                      << "\npath:   " << problem.path << '\n';
        }
    }
    //! [fields]
}

bool CheckFile(const char* name) {
    try {
        XMLLoadFile(name);
        return true;
    } catch (const CXMLError& e) {
        std::cout << "file: class " << e.GetID() << "\n" << e.what() << "\n\n";
        return false;
    }
}

}  // namespace

int main() {
    FromFile();
    FromMemory();
    FromElsewhere();
    Stopped();
    WithPrefixes();
    WithoutConveniences();
    std::cout << '\n';
    std::ofstream("broken.xml") << "<list>\n  <item>\n</list>\n";
    Fields();
    std::cout << '\n';
    bool fine = Check("good", "<list/>");
    fine = !Check("wrong tag", "<list>\n<item>\n</list>") && fine;
    fine = !Check("empty", "") && fine;
    fine = !Check("no XML", "hello") && fine;
    fine = !Check("encoding", "<?xml version='1.0' encoding='no-such'?><list/>") && fine;
    fine = !Check("bytes", "<list>caf\xE9</list>") && fine;
    fine = !Check("name", "<list \U00010400='1'/>") && fine;
    fine = !CheckFile("broken.xml") && fine;
    fine = !CheckFile("missing.xml") && fine;
    return fine ? 0 : 1;
}
