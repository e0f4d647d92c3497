// Strings are UTF-8, whatever the locale and whatever encoding a document is in.
#include <norvask/norvask.h>

#include <clocale>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <string>

using namespace norvask;

namespace {

std::string Bytes(const char* text) {
    std::string shown;
    for (; *text != '\0'; ++text) {
        char hex[4];
        std::snprintf(hex, sizeof hex, "%02X ",
                      static_cast<unsigned>(static_cast<unsigned char>(*text)));
        shown += hex;
    }
    return shown;
}

void In() {
    //! [in]
    // "é" as one byte of Latin-1, as two of UTF-8, as a reference: the same two bytes in the tree.
    for (const char* text : {"<?xml version='1.0' encoding='ISO-8859-1'?><a>\xE9</a>",
                             "<a>\xC3\xA9</a>", "<a>&#233;</a>"}) {
        std::cout << Bytes(XMLLoadText(text)->GetRoot()->GetTextChildValue()) << '\n';
    }
    //! [in]
}

void Out() {
    //! [out]
    CXMLDocumentPtr document = XMLNewDocument("a");
    CXMLTextNode* text = document->GetRoot()->CreateTextChild("😀 < é");
    std::cout << XMLToString(*document) << '\n';

    text->SetText("bell \a, half \xC3");          // no XML character; no UTF-8
    std::cout << Bytes(text->GetText()) << '\n';  // kept as it is ...
    std::cout << XMLToString(*document) << '\n';  // ... and written as XML can hold it
    //! [out]
}

void Names() {
    //! [names]
    CXMLDocumentPtr document = XMLNewDocument("größe");
    for (const char* name : {"ok", "also:ok", "1st", "no blank", "", "\U00010400"}) {
        try {
            document->GetRoot()->CreateChild(name, nullptr);
            std::cout << "taken: " << name << '\n';
        } catch (CXMLException& e) {
            std::cout << e.GetID() << ": " << e.GetMessage() << '\n';
        }
    }
    //! [names]
}

//! [converter]
// For a program whose strings are Latin-1: what has no place there becomes a question mark.
class CToLatin1 : public CWideCharToString {
public:
    char* Convert(const char16_t* source, std::size_t length) override {
        char* narrow = AllocString(length + 1);
        for (std::size_t i = 0; i < length; ++i) {
            narrow[i] = source[i] < 256 ? static_cast<char>(source[i]) : '?';
        }
        narrow[length] = '\0';
        return narrow;
    }
};

void Install() {
    static CToLatin1 converter;  // it must live as long as it is installed
    CXMLManager::GetInstance().SetWideCharToStringConverter(&converter);
    CXMLDocumentPtr document = XMLLoadText("<a>é€</a>");
    std::cout << Bytes(document->GetRoot()->GetTextChildValue()) << '\n';
    CXMLManager::GetInstance().SetWideCharToStringConverter(nullptr);
}
//! [converter]

}  // namespace

int main() {
    std::setlocale(LC_ALL, "C");  // and under any other it is the same
    In();
    Out();
    Names();
    Install();
    return 0;
}
