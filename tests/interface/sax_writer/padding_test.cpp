// A width that is pending on a stream pads the next markup token, as it pads any string, and
// nothing else; flags, precision, locale, ties and unit buffering change no byte.
#include <iomanip>
#include <ios>
#include <locale>

#include "support/testing.h"
#include "support/writing.h"

using namespace norvask_test;

namespace {

// The writer stands where `before` left it; then `step` runs with a width of 12 and a fill of '*'.
struct SRow {
    const char* what;
    bool format;
    std::vector<Step> before;
    Step step;
    std::string front;   // what it writes in front of the first markup token
    std::string token;   // that token; empty when there is none
    std::string behind;  // and what it writes behind it
};

const Step START = [](CXMLSaxWriter& w) { w.StartElement("r", nullptr); };
const Step START_WITH_ATTRIBUTES = [](CXMLSaxWriter& w) {
    w.StartElement("a", CAttributes{{"k", "v"}, {"l", "w"}}.Get());
};
const Step END = [](CXMLSaxWriter& w) { w.EndElement(); };
const Step TEXT = [](CXMLSaxWriter& w) { w.Characters("x<"); };
const Step NO_TEXT = [](CXMLSaxWriter& w) { w.Characters(nullptr); };
const Step LONG = [](CXMLSaxWriter& w) { w.Long(42); };
const Step DOUBLE = [](CXMLSaxWriter& w) { w.Double(1e20); };
const Step SECTION = [](CXMLSaxWriter& w) { WriteData(w, "ABC", true); };
const Step NO_SECTION = [](CXMLSaxWriter& w) { w.Data(nullptr, 0, true); };
const Step BASE64 = [](CXMLSaxWriter& w) { WriteData(w, "ABC", false); };
const Step END_DOCUMENT = [](CXMLSaxWriter& w) { w.EndDocument(); };

std::vector<SRow> Rows() {
    return {
        {"the start of a start tag", false, {}, START, "", "<", "r"},
        {"the same behind a line end", true, {}, START, "\r\n", "<", "r"},
        {"a line end and indentation", true, {START, START, END}, START, "\r\n\t", "<", "r"},
        {"the end of a start tag", false, {START}, START, "", ">", "<r"},
        {"the same in front of a line end", true, {START}, START, "", ">", "\r\n\t<r"},
        {"only one token of an element",
         false,
         {},
         START_WITH_ATTRIBUTES,
         "",
         "<",
         "a k=\"v\" l=\"w\""},
        {"the end of an empty element", false, {START}, END, "", "/>", ""},
        {"an end tag", false, {START, TEXT}, END, "", "</", "r>"},
        {"an end tag behind a line end", true, {START, START, END}, END, "\r\n", "</", "r>"},
        {"the end of a start tag before text", false, {START}, TEXT, "", ">", "x&#x3c;"},
        {"text alone", false, {START, TEXT}, TEXT, "x&#x3c;", "", ""},
        {"no text", false, {START, TEXT}, NO_TEXT, "", "", ""},
        {"a number", false, {START, TEXT}, LONG, "42", "", ""},
        {"a double", false, {START, TEXT}, DOUBLE, "1e+20", "", ""},
        {"the start of a CDATA section",
         false,
         {START, TEXT},
         SECTION,
         "",
         "<![CDATA[",
         "QUJD\n]]>"},
        {"the end of a start tag before one",
         false,
         {START},
         SECTION,
         "",
         ">",
         "<![CDATA[QUJD\n]]>"},
        {"an empty CDATA section", false, {START, TEXT}, NO_SECTION, "", "<![CDATA[", "]]>"},
        {"Base64 alone", false, {START, TEXT}, BASE64, "QUJD\n", "", ""},
        {"the end of a document", false, {START, END}, END_DOCUMENT, "", "", ""},
    };
}
}  // namespace

TEST(WriterPadding, PadsTheNextMarkupTokenAndNothingElse) {
    for (const SRow& row : Rows()) {
        for (const auto adjustment : {std::ios::left, std::ios::right, std::ios::internal}) {
            SCOPED_TRACE(row.what);
            std::ostringstream out;
            out.setf(adjustment, std::ios::adjustfield);
            out.fill('*');
            CXMLSaxWriter writer;
            writer.StartDocument(&out, row.format, false);
            for (const Step& step : row.before)
                step(writer);
            const std::string before = out.str();
            out.width(12);
            row.step(writer);
            const std::string fill(12 - row.token.size(), '*');
            std::string padded;
            if (!row.token.empty())
                padded = adjustment == std::ios::left ? row.token + fill : fill + row.token;
            EXPECT_EQ(out.str(), before + row.front + padded + row.behind);
            EXPECT_EQ(out.width(), row.token.empty() ? 12 : 0);
            EXPECT_EQ(out.fill(), '*');
        }
    }
}

TEST(WriterPadding, PadsTheDeclaration) {
    for (const int width : {1, 21, 22, 30, 5000}) {
        std::ostringstream expected;
        expected << std::setfill('*') << std::setw(width) << DECLARATION;
        std::ostringstream out;
        out << std::setfill('*') << std::setw(width);
        CXMLSaxWriter writer;
        writer.StartDocument(&out, true, false);
        EXPECT_EQ(out.str(), expected.str());
        EXPECT_EQ(out.width(), 0);
    }
}

TEST(WriterPadding, WaitsForTheNextTokenThroughCallsThatWriteNone) {
    std::ostringstream out;
    CXMLSaxWriter writer;
    out.fill('.');
    EXPECT_SAVING_ERROR(writer.StartDocument(nullptr, true, false), "");
    writer.StartDocument(&out, false, false);
    out.width(4);
    EXPECT_INVALID_NAME(writer.StartElement("1", nullptr), "1");
    EXPECT_WRONG_FORMAT(writer.EndElement(), 1);
    writer.Characters("text");
    writer.Long(1);
    EXPECT_EQ(out.width(), 4);
    writer.StartElement("a", nullptr);
    EXPECT_EQ(out.width(), 0);
    out.width(4);
    EXPECT_INVALID_NAME(writer.StartElement("2", nullptr), "2");
    EXPECT_EQ(out.width(), 0);
    out.width(4);
    writer.EndElement();
    EXPECT_EQ(out.str(), DECLARATION + "text1...<a...>..</a>");
}

TEST(WriterPadding, IsTheSameForFlagsPrecisionAndLocale) {
    struct SGrouping : std::numpunct<char> {
        char do_thousands_sep() const override { return '\''; }
        std::string do_grouping() const override { return "\1"; }
        char do_decimal_point() const override { return ','; }
        std::string do_truename() const override { return "wahr"; }
    };
    const auto write = [](std::ostream& out, bool format) {
        CXMLSaxWriter writer;
        writer.StartDocument(&out, format, false);
        writer.StartElement("r", CAttributes{{"k", "1000000"}}.Get());
        for (int i = 0; i < 3; ++i) {
            writer.StartElement("v", nullptr);
            writer.Long(1234567890);
            writer.Double(1234567.25);
            writer.Double(1e300);
            writer.Bool(true, false);
            writer.Bool(true, true);
            writer.Date(2345, 1, 2);
            writer.DateTime(2024, 1, 2, 3, 4, 5);
            writer.Time(6, 7, 8);
            WriteData(writer, AllByteValues(), true);
            writer.EndElement();
        }
        writer.EndElement();
        writer.EndDocument();
    };
    for (const bool format : {false, true}) {
        std::ostringstream plain;
        write(plain, format);
        EXPECT_NE(plain.str().find("<v>12345678901234567.251e+300true12345-01-02"),
                  std::string::npos);
        for (const auto base : {std::ios::hex, std::ios::oct, std::ios::fmtflags()}) {
            std::ostringstream tied;
            std::ostringstream out;
            out.tie(&tied);
            out.imbue(std::locale(std::locale::classic(), new SGrouping));
            out << std::showbase << std::showpos << std::showpoint << std::uppercase
                << std::boolalpha << std::scientific << std::unitbuf << std::setprecision(2)
                << std::setfill('0');
            out.setf(base, std::ios::basefield);
            const auto flags = out.flags();
            write(out, format);
            EXPECT_EQ(out.str(), plain.str());
            EXPECT_EQ(out.flags(), flags);
            EXPECT_EQ(out.precision(), 2);
            EXPECT_EQ(out.fill(), '0');
            EXPECT_EQ(tied.str(), "");
        }
    }
}
