// The first ten minutes: a document is made, saved, loaded, asked, changed and saved again.
//! [include]
#include <norvask/norvask.h>

#include <iostream>

using namespace norvask;
//! [include]

namespace {

void Make() {
    //! [make]
    CXMLDocumentPtr list = XMLNewDocument("books");

    CXMLNode* book = list->GetRoot()->CreateChild("book", nullptr);
    book->SetAttribute("sku", "BK-1041");
    book->CreateChild("title", nullptr)->SetTextChildValue("Äpfel & Asteroiden");
    book->CreateChild("price", nullptr)->CreateTextChild("")->SetDoubleText(21.5);
    book->CreateChild("published", nullptr)->CreateTextChild("")->SetDateText(2024, 5, 17);

    XMLSaveSafely(*list, "books.xml", true);
    //! [make]
}

void Ask() {
    //! [ask]
    CXMLDocumentPtr list = XMLLoadFile("books.xml");

    for (CXMLNode* book : XMLQuery(*list, "books/book")) {
        std::cout << book->GetAttributeValue("sku") << ": ";
        std::cout << XMLFirstElement(book, "title")->GetTextChildValue() << '\n';
    }
    //! [ask]
}

void Change() {
    CXMLDocumentPtr list = XMLLoadFile("books.xml");
    //! [change]
    for (CXMLNode* price : XMLQuery(*list, "books/book/price")) {
        double value = 0;
        CXMLTextNode* text = XMLAsText(price->GetFirstChild());
        if (text != nullptr && text->GetDoubleText(value)) text->SetDoubleText(value * 0.9);
        price->SetAttribute("currency", "EUR");
    }
    std::cout << XMLToString(*list, true) << '\n';
    //! [change]
}

void Front() {
    //! [front]
    CXMLDocumentPtr list = XMLLoadFile("books.xml");

    for (CXMLNode* book : XMLQuery(*list, "books/book")) {
        std::cout << XMLFirstElement(book, "title")->GetTextChildValue() << '\n';
        book->CreateChild("checked", nullptr)->CreateTextChild("")->SetDateText(2024, 6, 1);
    }
    XMLSaveSafely(*list, "books.xml", true);
    //! [front]
    std::cout << XMLToString(*XMLLoadFile("books.xml")) << '\n';
}

int Fail() {
    //! [fail]
    try {
        CXMLDocumentPtr list = XMLLoadText("<books><book></books>");
        std::cout << list->GetRoot()->GetTagName() << '\n';
    } catch (const CXMLError& e) {
        std::cerr << e.what() << '\n';
        return 1;
    }
    //! [fail]
    return 0;
}

}  // namespace

int main() {
    Make();
    Ask();
    Change();
    Front();
    return Fail() == 1 ? 0 : 1;
}
