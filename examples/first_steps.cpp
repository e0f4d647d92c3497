// The program of the README: what stands between the two marks is there word for word.
//
//     first_steps catalog.xml edited.xml
//
// [first steps]
#include <norvask/norvask.h>

#include <iostream>
#include <memory>

using namespace norvask;

struct SDelete {  // a document is ended with its own Delete
    void operator()(CXMLDocument* document) const { document->Delete(); }
};

int main(int argc, char** argv) {
    if (argc != 3) return 2;
    try {
        std::unique_ptr<CXMLDocument, SDelete> list(CXMLManager::GetInstance().LoadDocument(
            argv[1], false, false, nullptr, false, true));  // no validation, keep the prefixes
        for (CXMLNode** price = list->GetNodes("bk:catalog/bk:book/bk:price"); *price; ++price) {
            std::cout << (*price)->GetTextChildValue() << '\n';
            (*price)->SetAttribute("currency", "EUR");
        }
        CXMLNode* checked = list->GetRoot()->CreateChild("bk:checked", nullptr);
        checked->CreateTextChild("")->SetDateText(2024, 5, 17);
        list->Save(argv[2], true);
    } catch (CXMLException& e) {
        std::cerr << e.GetMessage() << '\n';
        return 1;
    }
}
// [/first steps]
