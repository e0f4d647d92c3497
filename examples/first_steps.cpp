// The program of the README: what stands between the two marks is there word for word.
//
//     first_steps catalog.xml edited.xml
//
// [first steps]
#include <norvask/norvask.h>

#include <iostream>

using namespace norvask;

int main(int argc, char** argv) {
    if (argc != 3) return 2;
    try {
        CXMLDocumentPtr list = XMLLoadFile(argv[1], SXMLLoadOptions().KeepPrefixes());
        for (CXMLNode* price : XMLQuery(*list, "bk:catalog/bk:book/bk:price")) {
            std::cout << price->GetTextChildValue() << '\n';
            price->SetAttribute("currency", "EUR");
        }
        CXMLNode* checked = list->GetRoot()->CreateChild("bk:checked", nullptr);
        checked->CreateTextChild("")->SetDateText(2024, 5, 17);
        XMLNameDefaultNamespaces(*list);      // or no parser reads kept ones back
        XMLSaveSafely(*list, argv[2], true);  // the old file stays until the new one is complete
    } catch (CXMLException& e) {
        std::cerr << e.GetMessage() << '\n';
        return 1;
    }
}
// [/first steps]
