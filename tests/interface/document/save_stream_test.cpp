// Saving to streams that are bad, become bad, throw, or have formatting flags set, and names that
// are refused in the middle of a document.
#include <fstream>
#include <iomanip>
#include <ios>
#include <locale>
#include <ostream>
#include <stdexcept>

#include "support/streams.h"
#include "support/testing.h"

using namespace norvask_test;

namespace {

Document Sample() {
    return LoadMemory(
        "<r k='&amp;'><a>text &lt;</a><b><c/></b><![CDATA[AAECAw==]]><d l='1' m='2'/></r>");
}

// A node with a name that nothing has checked.
class CNamedNode : public CXMLNode {
public:
    explicit CNamedNode(const char* name) : CXMLNode(name, nullptr) {}
};

// Both formats of a document that is refused: the exception, and what is in the stream.
void ExpectRefused(CXMLDocument& document, const std::string& name, const std::string& plain,
                   const std::string& formatted) {
    for (const bool format : {false, true}) {
        std::ostringstream out;
        EXPECT_INVALID_NAME(document.Save(out, format), name);
        EXPECT_EQ(out.str(), format ? formatted : plain);
        EXPECT_TRUE(out.good());
    }
}

}  // namespace

TEST(SaveToStream, RefusesAStreamThatIsNotGoodAndWritesNothing) {
    Document document = Sample();
    for (const auto state : {std::ios::badbit, std::ios::failbit, std::ios::eofbit}) {
        std::ostringstream out;
        out.setstate(state);
        EXPECT_SAVING_ERROR(document->Save(out, true), "Stream");
        EXPECT_EQ(out.str(), "");
        EXPECT_EQ(out.rdstate(), state);
    }
    std::ostream nowhere(nullptr);
    EXPECT_SAVING_ERROR(document->Save(nowhere, false), "Stream");
    std::ofstream closed("/nonexistent/r.xml");
    EXPECT_SAVING_ERROR(document->Save(closed, false), "Stream");
}

TEST(SaveToStream, RefusesADocumentWithoutARootAndWritesNothing) {
    for (const bool format : {false, true}) {
        Document document = NewDocument("r", "r.dtd");
        std::ostringstream out;
        out << std::setw(30);
        EXPECT_INVALID_PARAMETER(document->Save(out, format));
        EXPECT_EQ(out.str(), "");
        EXPECT_TRUE(out.good());
        EXPECT_EQ(out.width(), 30);
        out.setstate(std::ios::badbit);
        EXPECT_SAVING_ERROR(document->Save(out, format), "Stream");
    }
}

TEST(SaveToStream, RefusesADtdNameBehindTheDeclaration) {
    Document document = NewDocument("1dtd", "r.dtd");
    document->CreateRoot("r");
    ExpectRefused(*document, "1dtd", DECLARATION, DECLARATION);
}

TEST(SaveToStream, RefusesATagNameInFrontOfItsElement) {
    Document document = LoadMemory("<r><a/><b><c k='v'/></b>text<d/></r>");
    CXMLNode* root = document->GetRoot();
    *root->GetChildren()[3] = CNamedNode("not a name");
    ExpectRefused(*document, "not a name", DECLARATION + "<r><a/><b><c k=\"v\"/></b>text",
                  DECLARATION + "\r\n<r>\r\n\t<a/>\r\n\t<b>\r\n\t\t<c k=\"v\"/>\r\n\t</b>text");
    *root->GetChildren()[1]->GetFirstChild() = CNamedNode("<");
    ExpectRefused(*document, "<", DECLARATION + "<r><a/><b>",
                  DECLARATION + "\r\n<r>\r\n\t<a/>\r\n\t<b>\r\n\t\t");
    *root->GetFirstChild() = CNamedNode("");
    ExpectRefused(*document, "", DECLARATION + "<r>", DECLARATION + "\r\n<r>\r\n\t");
    *root = CNamedNode("1");
    ExpectRefused(*document, "1", DECLARATION, DECLARATION + "\r\n");
}

TEST(SaveToStream, RefusesAnAttributeNameBehindTheAttributesBeforeIt) {
    Document document = LoadMemory("<r><a k='&lt;' l='2' m='3'>text</a></r>");
    CXMLAttribut** attributes = document->GetRoot()->GetFirstChild()->GetAttributes();
    for (const char* name : {"", "1", "a b", "=", "k\x01"}) {
        attributes[1]->SetName(name);
        ExpectRefused(*document, name, DECLARATION + "<r><a k=\"&#x3c;\"",
                      DECLARATION + "\r\n<r>\r\n\t<a k=\"&#x3c;\"");
    }
    attributes[1]->SetName(nullptr);
    attributes[0]->SetName("-");
    ExpectRefused(*document, "-", DECLARATION + "<r><a", DECLARATION + "\r\n<r>\r\n\t<a");
}

TEST(SaveToStream, GivesEachStreamThatFailsItsBeginningAndReportsNothing) {
    Document document = Sample();
    for (const bool format : {false, true}) {
        const std::string whole = Saved(document, format);
        for (std::size_t room = 0; room < whole.size(); ++room) {
            for (const bool throws : {false, true}) {
                CLimitedBuffer buffer(room, throws);
                std::ostream out(&buffer);
                document->Save(out, format);
                EXPECT_EQ(buffer.Bytes(), whole.substr(0, room));
                EXPECT_TRUE(out.bad());
            }
        }
        CLimitedBuffer buffer(whole.size());
        std::ostream out(&buffer);
        document->Save(out, format);
        EXPECT_EQ(buffer.Bytes(), whole);
        EXPECT_TRUE(out.good());
    }
}

TEST(SaveToStream, LetsTheExceptionsOfAStreamThrough) {
    Document document = Sample();
    const std::string tree = TreeText(document);
    for (const bool format : {false, true}) {
        const std::string whole = Saved(document, format);
        for (std::size_t room = 0; room < whole.size(); ++room) {
            CLimitedBuffer full(room, false);
            std::ostream out(&full);
            out.exceptions(std::ios::badbit | std::ios::failbit);
            EXPECT_THROW(document->Save(out, format), std::ios_base::failure) << room;
            EXPECT_EQ(full.Bytes(), whole.substr(0, room));
            CLimitedBuffer throwing(room, true);
            std::ostream other(&throwing);
            other.exceptions(std::ios::badbit);
            EXPECT_THROW(document->Save(other, format), std::runtime_error) << room;
            EXPECT_EQ(throwing.Bytes(), whole.substr(0, room));
        }
    }
    EXPECT_EQ(TreeText(document), tree);
}

TEST(SaveToStream, StopsAtARefusedNameInAStreamThatHasFailedBefore) {
    Document document = NewDocumentWithRoot("r");
    *document->GetRoot()->CreateChild("a", nullptr) = CNamedNode("1");
    CLimitedBuffer buffer(5);
    std::ostream out(&buffer);
    EXPECT_INVALID_NAME(document->Save(out, false), "1");
    EXPECT_EQ(buffer.Bytes(), "<?xml");
    EXPECT_TRUE(out.bad());
}

TEST(SaveToStream, PadsTheFirstTokenLikeAnyOtherStringAndNothingElse) {
    Document document = Sample();
    for (const bool format : {false, true}) {
        const std::string whole = Saved(document, format);
        const std::string behind = whole.substr(DECLARATION.size());
        for (const int width : {1, 21, 22, 30, 5000}) {
            for (const auto adjustment : {std::ios::left, std::ios::right, std::ios::internal}) {
                std::ostringstream expected;
                expected.setf(adjustment, std::ios::adjustfield);
                expected << std::setfill('*') << std::setw(width) << DECLARATION << behind;
                std::ostringstream out;
                out.setf(adjustment, std::ios::adjustfield);
                out << std::setfill('*') << std::setw(width);
                document->Save(out, format);
                EXPECT_EQ(out.str(), expected.str()) << "width " << width;
                EXPECT_EQ(out.width(), 0);
                EXPECT_EQ(out.fill(), '*');
            }
        }
    }
}

TEST(SaveToStream, WritesTheSameBytesWhateverTheFlagsAndTheLocale) {
    struct SGrouping : std::numpunct<char> {
        char do_thousands_sep() const override { return '\''; }
        std::string do_grouping() const override { return "\1"; }
        char do_decimal_point() const override { return ','; }
    };
    Document document = Sample();
    for (const bool format : {false, true}) {
        std::ostringstream out;
        out.imbue(std::locale(std::locale::classic(), new SGrouping));
        out << std::hex << std::showbase << std::showpos << std::uppercase << std::boolalpha
            << std::scientific << std::unitbuf << std::setprecision(2) << std::setfill('0');
        const auto flags = out.flags();
        document->Save(out, format);
        EXPECT_EQ(out.str(), Saved(document, format));
        EXPECT_EQ(out.flags(), flags);
        EXPECT_EQ(out.precision(), 2);
    }
}

TEST(SaveToStream, AppendsToWhatTheStreamHoldsAndCanBeRepeated) {
    Document document = NewDocumentWithRoot("r");
    std::ostringstream out;
    out << "before";
    document->Save(out, false);
    document->Save(out, false);
    out << "behind";
    EXPECT_EQ(out.str(), "before" + DECLARATION + "<r/>" + DECLARATION + "<r/>behind");
}

TEST(SaveToStream, ReportsAFullDeviceToTheOwnerOfTheStream) {
    Document document = NewDocumentWithRoot("r");
    document->GetRoot()->CreateTextChild(std::string(1000000, 'x').c_str());
    std::ofstream out("/dev/full", std::ios::binary);
    document->Save(out, false);
    out.close();
    EXPECT_FALSE(out.good());
}
