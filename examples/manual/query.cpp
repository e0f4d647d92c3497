// Finding things: paths of names, loops over children and attributes, the way up.
#include <norvask/norvask.h>

#include <cstring>
#include <iostream>

using namespace norvask;

namespace {

const char* const kList = R"(<shop>
  <shelf name="left">
    <book lang="de"><title>Wolken</title><price>24.9</price></book>
    <book lang="cs"><title>Ticho</title></book>
  </shelf>
  <shelf name="right">
    <book lang="de"><title>Regen</title><price>39</price></book>
  </shelf>
</shop>)";

//! [path]
void Titles(CXMLDocument& shop) {
    // From the document the path begins with the root, from a node with a child of it.
    for (CXMLNode* title : XMLQuery(shop, "shop/shelf/book/title")) {
        std::cout << title->GetTextChildValue() << '\n';
    }
    for (CXMLNode* shelf : XMLQuery(shop.GetRoot(), "shelf")) {
        std::cout << shelf->GetAttributeValue("name") << ": " << XMLQuery(shelf, "book").size()
                  << '\n';
    }
}
//! [path]

//! [filter]
// Paths select by name alone; anything else is an `if`.
CXMLNode* FirstIn(CXMLDocument& shop, const char* language) {
    for (CXMLNode* book : XMLQuery(shop, "shop/shelf/book")) {
        if (std::strcmp(book->GetAttributeValue("lang"), language) == 0) return book;
    }
    return nullptr;
}
//! [filter]

//! [children]
void Show(CXMLNode* book) {
    for (CXMLAttribut* a : XMLAttributes(book)) {
        std::cout << '@' << a->GetName() << " = " << a->GetValue() << '\n';
    }
    for (CXMLNode* child : XMLElements(book)) {
        std::cout << child->GetTagName() << " = " << child->GetTextChildValue() << '\n';
    }
    if (CXMLNode* price = XMLFirstElement(book, "price")) {
        std::cout << "a price is given: " << price->GetTextChildValue() << '\n';
    }
    std::cout << "stands on the shelf " << book->GetParentNode()->GetAttributeValue("name") << '\n';
}
//! [children]

//! [array]
// The operation underneath: an array that ends with NULL and belongs to the document. It is valid
// until the next query; nothing is allocated when the query is asked again.
void Count(CXMLDocument& shop) {
    int books = 0;
    for (CXMLNode** book = shop.GetNodes("shop/shelf/book"); *book != nullptr; ++book) {
        ++books;
    }
    std::cout << books << " books\n";
}
//! [array]

}  // namespace

int main() {
    CXMLDocumentPtr shop = XMLLoadText(kList);
    Titles(*shop);
    Show(FirstIn(*shop, "cs"));
    Show(FirstIn(*shop, "de"));
    std::cout << "in French: " << (FirstIn(*shop, "fr") == nullptr ? "none" : "some") << '\n';
    Count(*shop);
    return 0;
}
