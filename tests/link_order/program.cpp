// Uses what the library keeps as constants: nothing of it may depend on where the linker places it.
#include <norvask/norvask.h>

#include <cstring>
#include <sstream>

using namespace norvask;

namespace {

int s_nWrong = 0;

void Expect(const char* text, const char* expected) {
    if (std::strcmp(text, expected) != 0) ++s_nWrong;
}

void UseAttributes() {
    CXMLAttribut empty(nullptr, nullptr);
    CXMLAttribut copy(empty);
    CXMLAttribut other("name", "value");
    CXMLAttribut assigned("name", "value");
    assigned = copy;
    for (CXMLAttribut* attribute : {&empty, &copy, &assigned}) {
        Expect(attribute->GetName(), "");
        Expect(attribute->GetValue(), "");
    }
    other.SetName("");
    Expect(other.GetName(), "");
    Expect(other.GetValue(), "value");
    other.SetValue(nullptr);
    Expect(other.GetValue(), "");
    other.SetName("again");
    Expect(other.GetName(), "again");
}

void UseTree() {
    CXMLDocument* document = CXMLManager::GetInstance().CreateDocument(nullptr, nullptr);
    CXMLNode* root = document->CreateRoot("r");
    Expect(root->GetAttributeValue("none"), "");
    Expect(root->GetTextChildValue(), "");
    CXMLTextNode* text = root->CreateTextChild(nullptr);
    Expect(text->GetText(), "");
    Expect(text->GetTagName(), "");
    text->SetText("text");
    text->SetText("");
    Expect(text->GetText(), "");
    root->SetAttribute("a", "1");
    root->SetAttribute("b", "2");
    root->GetAttributes()[0]->SetValue("");
    Expect(root->GetAttributeValue("a"), "");
    root->CreateChild("c", nullptr)->SetAttribute("d", "");
    *root->GetAttributes()[1] = CXMLAttribut("b", "");
    Expect(root->GetAttributeValue("b"), "");
    CXMLDocument* clone = document->Clone();
    document->Delete();
    std::ostringstream saved;
    clone->Save(saved, false);
    Expect(saved.str().c_str(), "<?xml version=\"1.0\"?><r><c/></r>");
    clone->Delete();
}

}  // namespace

int main() {
    UseAttributes();
    UseTree();
    return s_nWrong == 0 ? 0 : 1;
}
