// Writing a document of any size element by element.
#include <norvask/norvask.h>

#include <fstream>
#include <iostream>
#include <sstream>

using namespace norvask;

namespace {

void Report() {
    //! [report]
    CXMLSaxWriter writer;
    writer.StartDocument("report.xml", /*format=*/true);

    CXMLAttribut station("station", "Möhlau & Schönfeld");
    CXMLAttribut number("number", "");
    CXMLAttribut* attributes[] = {&number, &station, nullptr};

    writer.StartElement("report", nullptr);
    for (long row = 1; row <= 2; ++row) {  // or a billion: nothing is kept
        number.SetLongValue(row);
        writer.StartElement("measurement", attributes);
        XMLWriteElement(writer, "date", [&] { writer.Date(2024, 5, 17); });
        XMLWriteElement(writer, "level", 4.02);
        XMLWriteElement(writer, "alarm", row == 2);
        XMLWriteElement(writer, "remark", "ice < 2 cm");
        writer.EndElement();
    }
    writer.EndElement();
    writer.EndDocument();
    //! [report]
}

//! [checked]
// A file whose every failure is noticed: the stream throws, and the writer removes what it began
// only if it opened the file itself, so here the program keeps or removes it.
void WriteChecked(const char* name) {
    std::ofstream out;
    out.exceptions(std::ios::badbit | std::ios::failbit);
    out.open(name, std::ios::binary);

    CXMLSaxWriter writer;
    writer.StartDocument(&out, /*format=*/true, /*ownStream=*/false);
    writer.StartElement("list", nullptr);
    for (int i = 0; i < 10000; ++i)
        XMLWriteElement(writer, "item", i);
    writer.EndElement();
    writer.EndDocument();  // closes the file, which is when the last bytes arrive
}
//! [checked]

void Misuse() {
    //! [misuse]
    std::ostringstream out;
    CXMLSaxWriter writer;
    writer.StartDocument(&out, /*format=*/false, /*ownStream=*/false);
    writer.StartElement("list", nullptr);
    try {
        writer.EndDocument();
    } catch (CXMLException& e) {
        std::cout << e.GetID() << ": " << e.GetMessage() << '\n';  // an element is open, ...
    }
    writer.EndElement();  // ... which can still be ended
    writer.EndDocument();
    std::cout << out.str() << '\n';
    //! [misuse]
}

void Unfinished() {
    //! [unfinished]
    {
        CXMLSaxWriter writer;
        writer.StartDocument("half.xml", true);
        writer.StartElement("list", nullptr);
    }  // never ended, by an exception perhaps: the file is removed
    //! [unfinished]
    std::cout << "half.xml " << (std::ifstream("half.xml") ? "is there" : "is gone") << '\n';
}

}  // namespace

int main() {
    Report();
    std::cout << std::ifstream("report.xml").rdbuf() << '\n';
    try {
        WriteChecked("/dev/full");
        return 1;
    } catch (std::ios_base::failure&) {
        std::cout << "/dev/full: noticed\n";
    }
    Misuse();
    Unfinished();
    return 0;
}
