// A document as callbacks: counting with a lambda, a handler with state, stopping early, progress.
#include <norvask/norvask.h>

#include <cstdint>
#include <iostream>
#include <string>

using namespace norvask;

namespace {

void Make() {
    CXMLDocumentPtr list = XMLNewDocument("books");
    for (long n = 1; n <= 1000; ++n) {
        CXMLNode* book = list->GetRoot()->CreateChild("book", nullptr);
        book->SetAttribute("sku", XMLConvertLong2Text(n));
        book->CreateChild("title", nullptr)->SetTextChildValue("Wolken");
        book->CreateChild("price", nullptr)->CreateTextChild("")->SetLongText(n % 7);
    }
    list->Save("books.xml", true);
}

void Count() {
    //! [count]
    int books = 0;
    CXMLLambdaHandler handler;
    handler.onStartElement = [&](const SXMLStartTag& tag) { books += tag.Is("book"); };
    XMLLoadFile("books.xml", handler);
    //! [count]
    std::cout << books << " books\n";
}

//! [handler]
// Adds up the prices. What belongs together arrives in several calls, so a handler keeps state.
class CPrices : public CXMLSaxHandler {
public:
    double Sum() const { return m_Sum; }

    void StartElement(const char* /*uri*/, const char* localName, const char* /*qName*/,
                      CXMLSaxAttribut** /*attributes*/) override {
        m_InPrice = std::string(localName) == "price";
    }
    void Characters(const char* text) override {
        double price = 0;
        if (m_InPrice && GetDouble(text, price)) m_Sum += price;
    }
    void EndElement(const char* /*uri*/, const char* /*localName*/,
                    const char* /*qName*/) override {
        m_InPrice = false;
    }

private:
    bool m_InPrice = false;
    double m_Sum = 0;
};
//! [handler]

void Add() {
    //! [use]
    CPrices prices;
    XMLLoadFile("books.xml", prices);
    std::cout << prices.Sum() << " together\n";
    //! [use]
}

//! [stop]
// Whatever a callback throws ends the load and arrives where the load was started.
struct SFound {
    std::string sku;
};

std::string FirstWithPrice(const std::string& wanted) {
    std::string sku, open;
    CXMLLambdaHandler handler;
    handler.onStartElement = [&](const SXMLStartTag& tag) {
        open = tag.localName;
        if (!tag.Is("book")) return;
        if (CXMLSaxAttribut* given = XMLFindAttribute(tag.attributes, "sku")) {
            sku = given->GetValue();  // copied: it is gone after the callback
        }
    };
    handler.onCharacters = [&](const char* text) {
        if (open == "price" && text == wanted) throw SFound{sku};
    };
    try {
        XMLLoadFile("books.xml", handler);
    } catch (SFound& found) {
        return found.sku;
    }
    return "";
}
//! [stop]

void Progress() {
    std::uint64_t last = 0;
    CXMLLambdaHandler handler;
    //! [progress]
    const auto show = [&](std::uint64_t read, std::uint64_t total) {
        last = 100 * read / total;  // total is 0 where nobody knows it, as for a pipe
    };
    XMLLoadFile("books.xml", handler, SXMLLoadOptions().Progress(show));
    //! [progress]
    std::cout << "in the end " << last << " %\n";
}

void Offset() {
    //! [offset]
    CXMLManager::GetInstance().SetCalculateSourceOffsets(true);  // before the load; costs time
    int elements = 0;
    std::uint64_t offset = 0;
    CXMLLambdaHandler handler;
    handler.onStartElement = [&](const SXMLStartTag&) {
        if (++elements % 1000 == 0) offset = handler.GetSourceOffset();  // in bytes
    };
    XMLLoadFile("books.xml", handler);
    //! [offset]
    std::cout << "at element 3000: byte " << offset << '\n';
}

}  // namespace

int main() {
    Make();
    Count();
    Add();
    std::cout << "the first for 6: " << FirstWithPrice("6") << '\n';
    Progress();
    Offset();
    return 0;
}
