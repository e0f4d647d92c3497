// A client with nothing but the installed library: what crosses the library's boundary is a
// document, an exception caught by its type, and a class derived from one of the library's.
#include <norvask/norvask.h>

#include <cstddef>
#include <cstring>
#include <iostream>
#include <sstream>
#include <string>

namespace {

class ShoutingConverter : public norvask::CWideCharToString {
public:
    char* Convert(const char16_t* source, std::size_t length) override {
        char* text = CWideCharToString::Convert(source, length);
        for (char* c = text; *c != '\0'; ++c) {
            if (*c >= 'a' && *c <= 'z') *c = static_cast<char>(*c - 'a' + 'A');
        }
        return text;
    }
};

int failures = 0;

void expect(bool condition, const char* what) {
    if (!condition) {
        std::cerr << "failed: " << what << '\n';
        ++failures;
    }
}

std::string saved(norvask::CXMLDocument& document) {
    std::ostringstream out;
    document.Save(out, false);
    return out.str();
}

}  // namespace

int main() {
    norvask::CXMLManager& manager = norvask::CXMLManager::GetInstance();

    norvask::CXMLDocument* document = manager.CreateDocument(nullptr, nullptr);
    document->CreateRoot("shelf")->CreateChild("book", nullptr)->SetAttribute("year", "1883");
    expect(saved(*document).find("<book year=\"1883\"/>") != std::string::npos, "saving");

    bool caught = false;
    try {
        document->GetRoot()->CreateChild("no name", nullptr);
    } catch (norvask::CXMLException& e) {
        caught = e.GetID() == 3 && std::strstr(e.GetMessage(), "no name") != nullptr;
    }
    expect(caught, "catching an exception by its type");
    document->Delete();

    ShoutingConverter converter;
    manager.SetWideCharToStringConverter(&converter);
    unsigned char xml[] = "<shelf><book/></shelf>";
    document = manager.LoadDocument(xml, sizeof xml - 1, false, false, nullptr, false, false);
    manager.SetWideCharToStringConverter(nullptr);
    expect(saved(*document).find("<BOOK/>") != std::string::npos, "calling an override");
    document->Delete();

    std::cout << (failures == 0 ? "ok" : "failed") << '\n';
    return failures == 0 ? 0 : 1;
}
