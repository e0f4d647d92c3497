// Changing a tree: adding, renaming, removing, copying within and between documents.
#include <norvask/norvask.h>

#include <cstring>
#include <iostream>

using namespace norvask;

namespace {

void Show(const char* what, CXMLDocument& document) {
    std::cout << what << ":\n" << XMLToString(document, true) << "\n";
}

void Add(CXMLDocument& list) {
    //! [add]
    CXMLNode* root = list.GetRoot();
    CXMLNode* last = root->CreateChild("book", nullptr);                 // behind all others
    CXMLNode* first = root->CreateChild("book", root->GetFirstChild());  // in front of that one
    first->SetAttribute("sku", "1");
    last->SetAttribute("sku", "3");
    last->SetTextChildValue("Regen");
    //! [add]
}

void Change(CXMLDocument& list) {
    //! [change]
    for (CXMLNode* book : XMLElements(list.GetRoot(), "book")) {
        book->SetTagName("title");
        book->SetAttribute("sku", nullptr);  // NULL and "" remove an attribute
        book->SetAttribute("kind", "paper");
        if (book->GetFirstChild() == nullptr) book->SetTextChildValue("Wolken");
    }
    //! [change]
}

void Remove(CXMLDocument& list) {
    //! [remove]
    CXMLNode* root = list.GetRoot();
    for (CXMLNode* title : XMLElements(root, "title")) {
        if (std::strcmp(title->GetTextChildValue(), "Regen") == 0) root->DeleteChild(title);
    }
    //! [remove]
}

void Copy(CXMLDocument& list) {
    //! [copy]
    CXMLDocumentPtr archive = XMLNewDocument("archive");
    for (CXMLNode* title : XMLElements(list.GetRoot())) {
        archive->GetRoot()->CopyChild(title, nullptr);  // whole, into another document
    }
    CXMLDocumentPtr snapshot = XMLClone(*archive);  // a copy of everything

    // A node never changes its parent. To move it, copy it and delete the original.
    CXMLNode* root = archive->GetRoot();
    CXMLNode* box = root->CreateChild("box", nullptr);
    CXMLNode* title = XMLFirstElement(root, "title");
    box->CopyChild(title, nullptr);
    root->DeleteChild(title);
    //! [copy]
    Show("snapshot", *snapshot);
    Show("archive", *archive);
}

void Mixed() {
    //! [mixed]
    CXMLDocumentPtr page = XMLNewDocument("p");
    CXMLNode* p = page->GetRoot();
    p->CreateTextChild("Read ");
    p->CreateChild("em", nullptr)->SetTextChildValue("this");
    p->CreateTextChild(" & more");
    std::cout << XMLToString(*page, true) << '\n';
    //! [mixed]
}

void Refused(CXMLDocument& list) {
    //! [refused]
    try {
        list.GetRoot()->CreateChild("2nd book", nullptr);
    } catch (CXMLException& e) {
        std::cout << e.GetID() << ": " << e.GetMessage() << '\n';  // and the tree is as it was
    }
    //! [refused]
}

}  // namespace

int main() {
    CXMLDocumentPtr list = XMLLoadText("<list><book sku='2'/></list>");
    Add(*list);
    Show("added", *list);
    Change(*list);
    Show("changed", *list);
    Remove(*list);
    Show("removed", *list);
    Copy(*list);
    Mixed();
    Refused(*list);
    return 0;
}
