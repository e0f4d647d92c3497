// edit_catalog [FILE [OUTPUT]]: loads a document, shows it, edits it, saves it, shows what changed.
//
// Without FILE it takes the catalogue that lies beside this source. A catalogue of that kind gets a
// bookseller's edits; any other document only an element "edited" with today's date at its end.
// OUTPUT is where the result goes; without it, a new file in the folder for temporary files.
#include <norvask/norvask.h>
#include <unistd.h>

#include <chrono>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <ctime>
#include <exception>
#include <filesystem>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

#include "support/book_table.h"
#include "support/difference.h"
#include "support/outline.h"
#include "support/outline_table.h"
#include "support/problems.h"
#include "support/report.h"
#include "support/terminal.h"

namespace {

using namespace norvask;

class CStopwatch {
public:
    std::string Milliseconds() const {
        const auto passed = std::chrono::steady_clock::now() - m_Start;
        return terminal::Fixed(std::chrono::duration<double, std::milli>(passed).count(), 2) +
               " ms";
    }

private:
    std::chrono::steady_clock::time_point m_Start = std::chrono::steady_clock::now();
};

// Now, in UTC. SOURCE_DATE_EPOCH stands in for the clock where output has to be reproducible.
std::tm Now() {
    const char* fixed = std::getenv("SOURCE_DATE_EPOCH");
    const std::time_t seconds =
        fixed != nullptr ? static_cast<std::time_t>(std::atoll(fixed)) : std::time(nullptr);
    std::tm now{};
    gmtime_r(&seconds, &now);
    return now;
}

// --- Loading and saving

// With prefixes, so that a name in the copy is what it was in the original.
CXMLDocumentPtr Load(const std::string& name) {
    return XMLLoadFile(name, SXMLLoadOptions().KeepPrefixes());
}

std::string NewTemporaryFile(const std::string& like) {
    const std::string stem = std::filesystem::path(like).stem().string();
    std::string name = (std::filesystem::temp_directory_path() / (stem + "-XXXXXX.xml")).string();
    const int handle = mkstemps(name.data(), 4);
    if (handle < 0) throw std::runtime_error("no temporary file '" + name + "'");
    close(handle);
    return name;
}

// --- Showing a document

// A catalogue as a list of its books, any other document as the outline of its upper levels.
class CView {
public:
    explicit CView(CXMLNode* root) : m_IsCatalog(*root->GetNodes("bk:book") != nullptr) {
        if (!m_IsCatalog) m_Outline.emplace_back(COutline(root).Rows());
    }

    bool IsCatalog() const { return m_IsCatalog; }

    std::string Head() const {
        return m_IsCatalog ? CBookTable().Head() : m_Outline.front().Head();
    }

    std::vector<report::SRow> Rows(CXMLNode* root) const {
        constexpr std::size_t kLevels = 3;
        std::vector<report::SRow> rows;
        if (m_IsCatalog) {
            for (CXMLNode* book : XMLElements(root, "bk:book")) {
                rows.push_back({book->GetAttributeValue("sku"), CBookTable().Row(book)});
            }
            return rows;
        }
        const COutline outline(root);
        for (const SOutlineRow& row : outline.Rows()) {
            if (row.depth >= kLevels) continue;
            rows.push_back({COutlineTable::Key(row), m_Outline.front().Row(row)});
        }
        rows.push_back({"all", m_Outline.front().Total(outline.Total())});
        return rows;
    }

private:
    bool m_IsCatalog;
    std::vector<COutlineTable> m_Outline;  // one, unless it is a catalogue
};

void ShowQueries(CXMLDocument& document) {
    std::size_t bytes = 0;
    std::size_t thumbs = 0;
    for (CXMLNode* thumb : XMLQuery(document, "bk:catalog/bk:book/bk:thumb")) {
        bytes += BytesOf(thumb).size();
        ++thumbs;
    }
    double value = 0;
    std::size_t books = 0;
    for (CXMLNode* book : XMLQuery(document, "bk:catalog/bk:book")) {
        value += PriceOf(book) * static_cast<double>(StockOf(book));
        ++books;
    }
    std::string remarks;
    std::size_t remarkCount = 0;
    for (CXMLNode* remark : XMLQuery(document, "bk:catalog/bk:book/bk:remark")) {
        if (!remarks.empty()) remarks += " / ";
        remarks += terminal::OneLine(remark->GetTextChildValue());
        ++remarkCount;
    }
    const auto row = [](const char* path, std::size_t found, const std::string& answer) {
        std::cout << "  " << terminal::Left(path, 30) << terminal::Right(std::to_string(found), 4)
                  << "   " << terminal::Cut(answer, terminal::Columns() - 39) << '\n';
    };
    row("bk:catalog/bk:book", books, "in stock for " + terminal::Fixed(value, 2) + " EUR together");
    row("bk:catalog/bk:book/bk:remark", remarkCount, remarks);
    row("bk:catalog/bk:book/bk:thumb", thumbs, terminal::Count(bytes, "byte") + " of Base64");
}

// --- Editing

struct SEdit {
    std::string what;
    std::string where;
    std::string detail;
    const char* calls;  // the operations of the library behind it
};
using Edits = std::vector<SEdit>;

// Books from before 2020 become ten percent cheaper.
void LowerPrices(CXMLNode* root, Edits& edits) {
    for (CXMLNode* book : XMLElements(root, "bk:book")) {
        int year = 0, month = 0, day = 0;
        CXMLTextNode* published = TextIn(book, "bk:published");
        CXMLTextNode* price = TextIn(book, "bk:price");
        if (published == nullptr || price == nullptr) continue;
        if (!published->GetDateText(year, month, day) || year >= 2020) continue;
        const double before = PriceOf(book);
        price->SetDoubleText(std::round(before * 90) / 100);
        edits.push_back({"price", book->GetAttributeValue("sku"),
                         terminal::Fixed(before, 2) + " → " + terminal::Fixed(PriceOf(book), 2) +
                             ", published in " + std::to_string(year),
                         "GetDateText, SetDoubleText"});
    }
}

// Books that are sold out leave the list.
void RemoveSoldOut(CXMLNode* root, Edits& edits) {
    for (CXMLNode* book : XMLElements(root, "bk:book")) {
        if (StockOf(book) != 0) continue;
        edits.push_back({"remove", book->GetAttributeValue("sku"),
                         ValueIn(book, "bk:title") + ", sold out", "DeleteChild"});
        root->DeleteChild(book);
    }
}

// A new book, in its place by number.
void AddBook(CXMLNode* root, const std::string& today, Edits& edits) {
    const std::string sku = "BK-1377";
    CXMLNode* before = nullptr;
    for (CXMLNode* other : XMLElements(root, "bk:book")) {
        if (other->GetAttributeValue("sku") == sku) return;
        if (before == nullptr && other->GetAttributeValue("sku") > sku) before = other;
    }
    // A picture of four by two points: the header, then red, green and blue of each point.
    const unsigned char thumb[] = {'P', '6', '\n', '4', ' ', '2', '\n', '2', '5', '5', '\n', 215,
                                   255, 135, 175,  215, 95,  175, 95,   95,  95,  0,   95,   95,
                                   175, 0,   95,   135, 0,   135, 0,    95,  0,   0,   95};
    CXMLNode* book = root->CreateChild("bk:book", before);
    book->SetAttribute("sku", sku.c_str());
    book->SetAttribute("language", "de");
    book->CreateChild("bk:title", nullptr)->SetTextChildValue("Äpfel & Asteroiden");
    book->CreateChild("bk:author", nullptr)->SetTextChildValue("Lene Přibyl");
    book->CreateChild("bk:published", nullptr)->CreateTextChild("")->SetDateText(2024, 4, 12);
    book->CreateChild("bk:price", nullptr)->CreateTextChild("")->SetDoubleText(21.5);
    CXMLNode* stock = book->CreateChild("st:stock", nullptr);
    stock->SetAttribute("counted", today.c_str());
    stock->CreateTextChild("")->SetLongText(20);
    CXMLNode* picture = book->CreateChild("bk:thumb", nullptr);
    picture->SetAttribute("type", "image/x-portable-pixmap");
    picture->CreateBinChild()->SetData(thumb, sizeof thumb);
    edits.push_back({"add", sku, ValueIn(book, "bk:title") + ", with a date and a picture",
                     "CreateChild, SetData"});
}

void RenameRemarks(CXMLNode* root, Edits& edits) {
    std::size_t renamed = 0;
    for (CXMLNode* remark : XMLQuery(root, "bk:book/bk:remark")) {
        remark->SetTagName("bk:note");
        ++renamed;
    }
    if (renamed == 0) return;
    edits.push_back(
        {"rename", terminal::Count(renamed, "element"), "bk:remark → bk:note", "SetTagName"});
}

void Edit(CXMLDocument& document, bool isCatalog, Edits& edits) {
    const std::tm now = Now();
    CXMLNode* root = document.GetRoot();
    if (!isCatalog) {
        CXMLTextNode* date = root->CreateChild("edited", nullptr)->CreateTextChild("");
        date->SetDateText(now.tm_year + 1900, now.tm_mon + 1, now.tm_mday);
        edits.push_back({"add", "edited", date->GetText(), "CreateChild, SetDateText"});
        return;
    }
    const std::string today = XMLConvertDateTime2Text(
        now.tm_year + 1900, now.tm_mon + 1, now.tm_mday, now.tm_hour, now.tm_min, now.tm_sec);
    LowerPrices(root, edits);
    RemoveSoldOut(root, edits);
    AddBook(root, today, edits);
    RenameRemarks(root, edits);
    root->SetAttribute("edited", today.c_str());
    edits.push_back({"set", "edited", today, "SetAttribute"});
}

// --- The report

void ShowSize(const std::string& bytes, const SOutlineRow& total, const std::string& time) {
    std::string line = time + " for " + bytes + ": " + terminal::Count(total.elements, "element") +
                       ", " + terminal::Count(total.attributes, "attribute") + ", " +
                       terminal::Grouped(total.textBytes) + " bytes of text";
    if (total.binaryBytes > 0) line += ", " + terminal::Grouped(total.binaryBytes) + " binary";
    std::cout << "  " << terminal::Cut(line, terminal::Columns() - 2) << '\n';
}

void ShowEdits(const Edits& edits, const std::string& time) {
    const std::size_t columns = terminal::Columns();
    std::cout << "  " << terminal::Count(edits.size(), "edit") << " in " << time << "\n\n";
    for (const SEdit& edit : edits) {
        std::cout << "  " << terminal::Left(edit.what, 9)
                  << terminal::Left(terminal::OneLine(edit.where), 12)
                  << terminal::Left(terminal::OneLine(edit.detail), columns - 51) << "  "
                  << terminal::Paint(terminal::kFaint, edit.calls) << '\n';
    }
}

// Loads what was saved and saves it once more: the two must be the same.
void ReadBack(const std::string& output, CXMLDocument& document, const std::string& saved) {
    const char* dtd = document.GetDTDPath();
    if (dtd != nullptr && dtd[0] != '/' && std::string(dtd).find(':') == std::string::npos) {
        report::Note("not read back: its DTD is to be found beside the original only");
        return;
    }
    const CStopwatch watch;
    const CXMLDocumentPtr again = Load(output);
    const std::string time = watch.Milliseconds();
    XMLNameDefaultNamespaces(*again);
    if (XMLToString(*again, /*format=*/true) == saved) {
        std::cout << "  read back in " << time << ", and saved again byte for byte the same\n";
    } else {
        std::cout << "  read back in " << time
                  << ", but it differs: parsers change its CRs or TABs\n";
    }
}

void Run(const std::string& input, const std::string& givenOutput) {
    const CStopwatch loading;
    const CXMLDocumentPtr document = Load(input);
    const std::string loadTime = loading.Milliseconds();
    CXMLNode* root = document->GetRoot();
    const std::size_t defaultNamespaces = XMLNameDefaultNamespaces(*document);
    std::error_code unknown;  // the name may be a URL
    const std::size_t size = std::filesystem::file_size(input, unknown);

    report::Section("Loaded", input);
    ShowSize(unknown ? "size unknown" : terminal::Count(size, "byte"), COutline(root).Total(),
             loadTime);
    if (defaultNamespaces > 0) {
        report::Note("with " + terminal::Count(defaultNamespaces, "default namespace") +
                     ", renamed from \"xmlns:\" to \"xmlns\" so that the copy can be read");
    }
    std::cout << '\n';
    const CView view(root);
    const std::vector<report::SRow> rowsBefore = view.Rows(root);
    const std::string textBefore = XMLToString(*document, /*format=*/true);
    std::cout << terminal::Paint(terminal::kFaint, "  " + view.Head()) << '\n';
    report::PrintRows(rowsBefore, rowsBefore, 20);

    if (view.IsCatalog()) {
        report::Section("Asked", "with GetNodes");
        ShowQueries(*document);
    }

    report::Section("Edited", "the tree in memory");
    const CStopwatch editing;
    Edits edits;
    Edit(*document, view.IsCatalog(), edits);
    ShowEdits(edits, editing.Milliseconds());

    const std::string output = givenOutput.empty() ? NewTemporaryFile(input) : givenOutput;
    const std::string textAfter = XMLToString(*document, /*format=*/true);
    const CStopwatch saving;
    XMLSaveSafely(*document, output, /*format=*/true);
    const std::string saveTime = saving.Milliseconds();
    report::Section("Saved", output);
    ShowSize(terminal::Count(textAfter.size(), "byte"), COutline(root).Total(), saveTime);
    ReadBack(output, *document, textAfter);

    report::Section("Changed", "the document");
    std::cout << terminal::Paint(terminal::kFaint, "  " + view.Head()) << '\n';
    report::PrintRows(rowsBefore, view.Rows(root), 20);

    report::Section("Changed", "the file, compared with one saved before the edits");
    report::PrintChanges(Difference(SplitLines(textBefore), SplitLines(textAfter)), 60);
    std::cout << std::endl;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc > 3) {
        std::cerr << "usage: edit_catalog [FILE [OUTPUT]]\n";
        return 2;
    }
    try {
        Run(argc > 1 ? argv[1] : NORVASK_EXAMPLE_CATALOG, argc > 2 ? argv[2] : "");
    } catch (const CXMLError& e) {  // of the load or the save
        PrintProblems("edit_catalog", e);
        return 1;
    } catch (CXMLException& e) {
        std::cerr << "edit_catalog: " << e.GetMessage() << '\n';
        return 1;
    } catch (std::exception& e) {
        std::cerr << "edit_catalog: " << e.what() << '\n';
        return 1;
    }
    return std::cout ? 0 : 1;
}
