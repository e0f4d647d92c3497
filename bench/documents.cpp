#include "documents.h"

#include <fstream>
#include <iterator>
#include <stdexcept>

namespace norvask_bench {

namespace {

struct SRealDocument {
    const char* name;
    const char* path;
    const char* package;
};

constexpr SRealDocument kRealDocuments[] = {
    {"gl.xml", "/usr/share/khronos-api/gl.xml", "khronos-api"},
    {"Gio-2.0.gir", "/usr/share/gir-1.0/Gio-2.0.gir", "libgirepository1.0-dev"},
    {DOCTYPE_DOCUMENT, "/usr/share/mime/packages/freedesktop.org.xml", "shared-mime-info"},
};

// The same numbers in every run and with every standard library.
class CNumbers {
public:
    unsigned Below(unsigned limit) {
        m_nState = m_nState * 6364136223846793005ULL + 1442695040888963407ULL;
        return static_cast<unsigned>(m_nState >> 33) % limit;
    }

private:
    unsigned long long m_nState = 42;
};

constexpr const char* kWords[] = {"amber",  "bridge", "cobalt", "delta",   "ember",  "falcon",
                                  "garnet", "harbor", "indigo", "juniper", "kernel", "lantern"};
constexpr const char* kForeignWords[] = {"größer", "façade", "niño",      "żółw",   "čeština",
                                         "Ελλάδα", "привет", "мир",       "日本語", "文字",
                                         "हिन्दी",  "עברית",  "українська"};
constexpr const char* kDeclaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

template <std::size_t count>
const char* Pick(CNumbers& numbers, const char* const (&words)[count]) {
    return words[numbers.Below(count)];
}

constexpr const char* kCatalogueStart = "<catalogue>\n";
constexpr const char* kCatalogueEnd = "</catalogue>\n";

std::string Number(unsigned value) { return std::to_string(value); }

// Rows as a database exports them: short texts, few attributes, indented.
std::string MakeCatalogueRecords() {
    CNumbers numbers;
    std::string text;
    for (unsigned i = 0; i < 6000; ++i) {
        text += "  <record id=\"" + Number(i) + "\">\n";
        text += "    <name>" + std::string(Pick(numbers, kWords)) + " " + Pick(numbers, kWords);
        text += "</name>\n    <price>" + Number(numbers.Below(1000)) + "." +
                Number(10 + numbers.Below(90)) + "</price>\n";
        text += "    <since>20" + Number(10 + numbers.Below(15)) + "-0" +
                Number(1 + numbers.Below(9)) + "-" + Number(10 + numbers.Below(18)) + "</since>\n";
        text += "    <stock>" + Number(numbers.Below(5000)) + "</stock>\n";
        text += "    <remark>" + std::string(Pick(numbers, kWords)) + " &amp; " +
                Pick(numbers, kWords) + "</remark>\n  </record>\n";
    }
    return text;
}

std::string MakeRecords() {
    return std::string(kDeclaration) + kCatalogueStart + MakeCatalogueRecords() + kCatalogueEnd;
}

std::string MakeAttributes() {
    CNumbers numbers;
    std::string text = kDeclaration;
    text += "<drawing>\n";
    for (unsigned i = 0; i < 8000; ++i) {
        text += "  <shape id=\"s" + Number(i) + "\" x=\"" + Number(numbers.Below(2000)) +
                "\" y=\"" + Number(numbers.Below(2000)) + "\" width=\"" +
                Number(1 + numbers.Below(300)) + "\" height=\"" + Number(1 + numbers.Below(300)) +
                "\" fill=\"" + Pick(numbers, kWords) + "\" stroke=\"" + Pick(numbers, kWords) +
                "\" layer=\"" + Number(numbers.Below(12)) + "\" title=\"" + Pick(numbers, kWords) +
                " " + Pick(numbers, kWords) + "\"/>\n";
    }
    return text + "</drawing>\n";
}

// Long paragraphs of which hardly a word is ASCII.
std::string MakeForeignText() {
    CNumbers numbers;
    std::string text = kDeclaration;
    text += "<book>\n";
    for (unsigned i = 0; i < 1500; ++i) {
        text += "  <paragraph>";
        for (unsigned word = 0; word < 75; ++word) {
            if (word > 0) text += ' ';
            text += Pick(numbers, kForeignWords);
        }
        text += "</paragraph>\n";
    }
    return text + "</book>\n";
}

std::string MakeChain(unsigned levels) {
    std::string text;
    for (unsigned level = 0; level < levels; ++level) {
        text += "<level" + Number(level % 10) + ">";
    }
    text += "bottom";
    for (unsigned level = levels; level > 0; --level) {
        text += "</level" + Number((level - 1) % 10) + ">";
    }
    return text + "\n";
}

// Chains of 95 levels, which every one of the libraries takes (TinyXML-2 stops at 100).
std::string MakeDeep() {
    std::string text = kDeclaration;
    text += "<deep>\n";
    for (unsigned chain = 0; chain < 600; ++chain) {
        text += MakeChain(95);
    }
    return text + "</deep>\n";
}

constexpr char kSmall[] =
    "<?xml version=\"1.0\"?>\n<order id=\"47110\" date=\"2024-05-17\">\n"
    "  <item count=\"2\">Lantern oil</item>\n  <item count=\"1\">Bridge &amp; Harbor</item>\n"
    "</order>\n";
static_assert(sizeof(kSmall) - 1 == 150, "the name of the document says so");

SDocument LoadRealDocument(const SRealDocument& real, std::string& missing) {
    SDocument document{real.name, std::string(), false};
    std::ifstream file(real.path, std::ios::binary);
    if (file) {
        document.text.assign(std::istreambuf_iterator<char>(file),
                             std::istreambuf_iterator<char>());
    }
    if (document.text.empty()) {
        missing += std::string("\n  ") + real.path + " (package " + real.package + ")";
    }
    return document;
}

}  // namespace

std::vector<SDocument> MakeDocuments() {
    std::vector<SDocument> documents;
    std::string missing;
    for (const SRealDocument& real : kRealDocuments) {
        documents.push_back(LoadRealDocument(real, missing));
    }
    if (!missing.empty()) {
        throw std::runtime_error("the real documents are not all there; missing:" + missing);
    }
    documents.push_back({"records", MakeRecords(), false});
    documents.push_back({"attributes", MakeAttributes(), false});
    documents.push_back({"non-ASCII text", MakeForeignText(), false});
    documents.push_back({"deep", MakeDeep(), false});
    documents.push_back({SMALL_DOCUMENT, kSmall, true});
    return documents;
}

std::string MakeOneLongList() {
    std::string text = "<root><list>";
    for (unsigned i = 0; i < 100000; ++i) {
        text += "<item/>";
    }
    return text + "</list></root>";
}

std::string MakeManyRecords() {
    std::string text = "<root>";
    for (unsigned i = 0; i < 100000; ++i) {
        text += "<record><id/><name/><price/></record>";
    }
    return text + "</root>";
}

std::string MakeDepth() { return kDeclaration + MakeChain(DEPTH_LEVELS); }

std::vector<SRecord> MakeRecordsToWrite() {
    CNumbers numbers;
    std::vector<SRecord> records;
    for (unsigned i = 0; i < 10000; ++i) {
        const char* between = numbers.Below(8) == 0 ? " & " : " ";
        records.push_back({Number(i), Pick(numbers, kWords),
                           Pick(numbers, kWords) + std::string(between) + Pick(numbers, kWords),
                           Number(numbers.Below(1000)) + "." + Number(10 + numbers.Below(90))});
    }
    return records;
}

void WriteLargeDocument(const std::string& fileName, unsigned long long bytes) {
    const std::string records = MakeCatalogueRecords();
    std::ofstream file(fileName, std::ios::binary);
    file << kDeclaration << kCatalogueStart;
    for (unsigned long long written = 0; written < bytes && file; written += records.size()) {
        file << records;
    }
    file << kCatalogueEnd;
    file.close();
    if (!file) throw std::runtime_error("a large document cannot be written to " + fileName);
}

}  // namespace norvask_bench
