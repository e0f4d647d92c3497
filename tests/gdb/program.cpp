// The program that the test of the debugger's views stops: one function for each place to look.
#include <norvask/norvask.h>

#include <cstdio>
#include <sstream>
#include <string>

using namespace norvask;

namespace {

// A class of an application.
class CPrice : public CXMLNode {
public:
    explicit CPrice(const char* text) : CXMLNode("price", nullptr) { CreateTextChild(text); }
    ~CPrice() override = default;
};

class CSaxValue : public CXMLSaxAttribut {
public:
    CSaxValue(const char* uri, const char* name, const char* value)
        : CXMLSaxAttribut(uri, "isbn", name, value) {}
    ~CSaxValue() override = default;
};

volatile int g_nStops = 0;

// The debugger stops here and goes up.
__attribute__((noinline)) void Stop() { g_nStops = g_nStops + 1; }

}  // namespace

CXMLDocument* MakeCatalog() {
    CXMLDocument* document =
        CXMLManager::GetInstance().CreateDocument("catalog", "catalog \"1\".dtd");
    CXMLNode* root = document->CreateRoot("bk:catalog");
    CXMLNode* book = root->CreateChild("bk:book", nullptr);
    book->SetAttribute("isbn", "978-0");
    book->SetAttribute("note", "a \"quote\",\na line");
    book->CreateChild("bk:title", nullptr)->CreateTextChild("Walden");
    book->CreateChild("bk:empty", nullptr);
    book->CreateTextChild("tail\twith\\ \x01 and \xc3\xa9");
    const unsigned char bytes[20] = {0xde, 0xad, 0xbe, 0xef};
    book->CreateBinChild()->SetData(bytes, sizeof(bytes));
    book->CreateBinChild()->SetData(bytes, 1);
    book->CreateBinChild();
    return document;
}

void Trees(CXMLDocument* document, CXMLDocument* nothing, CXMLNode* null) {
    CXMLNode* root = document->GetRoot();
    CXMLNode* book = root->GetFirstChild();
    CXMLNode& reference = *book;
    CXMLNode** children = book->GetChildren();
    CXMLNode* title = children[0];
    CXMLTextNode* text = static_cast<CXMLTextNode*>(children[2]);
    const CXMLBinNode* binary = static_cast<CXMLBinNode*>(children[3]);
    CPrice price("1.50");
    CXMLNode* derived = &price;
    CXMLAttribut* attribute = book->GetAttributes()[1];
    CXMLAttribut own("own", "value");
    CXMLAttribut blank("", nullptr);
    Stop();
    std::printf("%d\n", root && title && text && binary && derived && attribute &&
                            null == nullptr && nothing && &reference == book && own.GetName() &&
                            blank.GetName());
}

void Others() {
    try {
        CXMLManager::GetInstance().CreateDocument(nullptr, nullptr)->CreateRoot("a b");
    } catch (CXMLException& e) {
        CXMLException other(-2, "text");
        CSaxValue value("urn:x", "bk:isbn", "978");
        CXMLSaxAttribut* inNamespace = &value;
        CSaxValue plainValue(nullptr, "isbn", "");
        CXMLSaxAttribut* plain = &plainValue;
        std::ostringstream out;
        CXMLSaxWriter idle;
        CXMLSaxWriter busy;
        CXMLSaxWriter* first = &idle;
        CXMLSaxWriter* second = &busy;
        busy.StartDocument(&out, false, false);
        busy.StartElement("list", nullptr);
        busy.StartElement("item", nullptr);
        Stop();
        std::printf("%d\n", e.GetID() + other.GetID() + (inNamespace && plain && first && second));
    }
}

// Sizes at which nobody would wait for all of it.
void Large() {
    CXMLDocument* document = CXMLManager::GetInstance().CreateDocument(nullptr, nullptr);
    CXMLNode* wide = document->CreateRoot("wide");
    for (int i = 0; i < 1000000; ++i) {
        wide->CreateChild("leaf", nullptr);
    }
    CXMLNode* deep = wide->GetFirstChild();
    for (int i = 0; i < 1000000; ++i) {
        deep = deep->CreateChild("deep", nullptr);
    }
    deep = wide->GetFirstChild();
    CXMLNode* many = deep->GetFirstChild();
    for (int i = 0; i < 1000; ++i) {
        many->SetAttribute(("a" + std::to_string(i)).c_str(), "v");
    }
    // The 60th byte is the first of a character of two.
    CXMLTextNode* longText =
        many->CreateTextChild((std::string(59, 'x') + std::string(10000000, '\xc3')).c_str());
    CXMLBinNode* binary = many->CreateBinChild();
    const std::string zeros(10000000, '\0');
    binary->SetData(reinterpret_cast<const unsigned char*>(zeros.data()), zeros.size());
    std::string accents(59, 'x');
    for (int i = 0; i < 100; ++i) {
        accents += "\xc3\xa9";
    }
    longText->SetText(accents.c_str());
    Stop();
    std::printf("%d\n", longText && binary);
    document->Delete();
}

void Garbage(CXMLDocument* document) {
    CXMLNode* root = document->GetRoot();
    CXMLNode* ended = root->GetFirstChild()->GetFirstChild();
    root->GetFirstChild()->DeleteChild(ended);
    CXMLNode* unreadable = reinterpret_cast<CXMLNode*>(8);
    CXMLDocument* unreadableDocument = reinterpret_cast<CXMLDocument*>(16);
    static const char noise[256] = "no object at all, but memory that can be read";
    const void* somewhere = noise;
    const CXMLNode* noNode = static_cast<const CXMLNode*>(somewhere);
    const CXMLDocument* noDocument = static_cast<const CXMLDocument*>(somewhere);
    const CXMLAttribut* noAttribute = static_cast<const CXMLAttribut*>(somewhere);
    const CXMLException* noException = static_cast<const CXMLException*>(somewhere);
    const CXMLSaxWriter* noWriter = static_cast<const CXMLSaxWriter*>(somewhere);
    document->Delete();
    Stop();
    std::printf("%d\n", ended && unreadable && unreadableDocument && noNode && noDocument &&
                            noAttribute && noException && noWriter);
}

int main() {
    CXMLDocument* document = MakeCatalog();
    CXMLDocument* nothing = CXMLManager::GetInstance().CreateDocument("d", "d.dtd");
    Trees(document, nothing, nullptr);
    Others();
    Large();
    Garbage(document);
    nothing->Delete();
}
