// Dates, times, numbers, truth values and bytes in texts and attributes.
#include <norvask/norvask.h>

#include <cstddef>
#include <iostream>
#include <string>

using namespace norvask;

namespace {

void Write(CXMLNode* order) {
    //! [write]
    const auto text = [order](const char* name) {
        return order->CreateChild(name, nullptr)->CreateTextChild("");
    };
    text("day")->SetDateText(2024, 5, 17);
    text("month")->SetDateText(2024, 5, -1);  // -1: this component is absent
    text("at")->SetDateTimeText(2024, 5, 17, 10, 30, 0);
    text("from")->SetTimeText(8, 0, 0);
    text("total")->SetDoubleText(0.1 + 0.2);  // fourteen digits: "0.3"
    text("items")->SetLongText(-42);
    text("paid")->SetBoolText(true, /*numeric=*/false);

    const unsigned char stamp[] = {0x00, 0xFF, 0x10};
    text("stamp")->SetBinaryText(stamp, sizeof stamp);  // Base64 as text
    order->CreateChild("scan", nullptr)->CreateBinChild()->SetData(stamp, sizeof stamp);  // CDATA
    //! [write]
}

//! [read]
void Read(CXMLNode* order) {
    int year = 0, month = 0, day = 0;
    CXMLTextNode* text = XMLAsText(XMLFirstElement(order, "month")->GetFirstChild());
    if (text != nullptr && text->GetDateText(year, month, day)) {
        std::cout << year << '/' << month << (day == -1 ? ", no day" : "") << '\n';
    }

    CXMLBinNode* scan = XMLAsBinary(XMLFirstElement(order, "scan")->GetFirstChild());
    if (scan != nullptr) {
        const unsigned char* data = nullptr;
        std::size_t length = 0;
        scan->GetData(data, length);  // the node's own bytes: no copy
        std::cout << length << " bytes\n";
    }
}
//! [read]

void Attributes(CXMLNode* order) {
    //! [attributes]
    order->SetAttribute("issued", XMLConvertDate2Text(2024, 5, 17));

    for (CXMLAttribut* a : XMLAttributes(order)) {
        int year = 0, month = 0, day = 0;
        if (a->GetDateValue(year, month, day)) a->SetDateValue(year + 1, month, day);
    }
    //! [attributes]
}

void Refused(CXMLNode* order) {
    //! [refused]
    try {
        order->CreateTextChild("")->SetDateText(2024, 13, 1);
    } catch (CXMLException& e) {
        std::cout << e.GetID() << ": " << e.GetMessage() << '\n';
    }
    //! [refused]
}

//! [lenient]
// Reading is lenient: what follows the value is not looked at, nor are the ranges. A program that
// must know checks what it read.
void Lenient() {
    long number = 0;
    double value = 0;
    int hour = 0, minute = 0, second = 0;
    std::cout << std::boolalpha << XMLConvertText2Long("12 apples", number) << ' ' << number << '\n'
              << XMLConvertText2Double("apples", value) << ' ' << value << '\n'
              << XMLConvertText2Time("99:99:99", hour, minute, second) << ' ' << hour << '\n'
              << XMLConvertText2Double("", value) << '\n';
}
//! [lenient]

//! [strict]
// Accepts only what the library itself would write.
bool ReadExactly(const std::string& text, long& number) {
    return XMLConvertText2Long(text.c_str(), number) && text == XMLConvertLong2Text(number);
}
//! [strict]

}  // namespace

int main() {
    CXMLDocumentPtr document = XMLNewDocument("order");
    CXMLNode* order = document->GetRoot();
    Write(order);
    Read(order);
    Attributes(order);
    std::cout << XMLToString(*document, true) << '\n';
    Refused(order);
    Lenient();
    long number = 0;
    std::cout << ReadExactly("12", number) << ' ' << ReadExactly("12 apples", number) << '\n';
    return 0;
}
