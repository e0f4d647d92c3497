// The streaming writer and files: what is on disk, and which names are refused.
#include <norvask/norvask.h>

#include <sys/stat.h>

#include <fstream>
#include <ostream>
#include <sstream>
#include <string>

#include "support/files.h"
#include "support/tree.h"
#include "support/vocabulary.h"
#include "support/writing.h"

using namespace norvask;
using namespace norvask_test;

namespace {

const std::string kDocument = std::string(kDeclaration) + "\r\n<a/>";

void ExpectRefused(CXMLSaxWriter& writer, const std::string& name) {
    EXPECT_XML_ERROR(writer.StartDocument(name.c_str(), true), 1, "Error saving '" + name + "'.");
    EXPECT_NOT_OPEN(writer.EndDocument());
}

}  // namespace

TEST(WriterFile, HoldsTheDocumentByteForByte) {
    TemporaryFile file;
    CXMLSaxWriter writer;
    for (const bool format : {true, false}) {
        writer.StartDocument(file.Name(), format);
        writer.StartElement("r", CAttributes{{"k", "\xC3\xA9\r\n"}}.Get());
        writer.StartElement("a", nullptr);
        writer.Characters("1\n2");
        writer.EndElement();
        WriteData(writer, "ABC", true);
        writer.EndElement();
        writer.EndDocument();
        const std::string line = format ? "\r\n" : "";
        const std::string tab = format ? "\t" : "";
        EXPECT_EQ(file.Content(), kDeclaration + line + "<r k=\"\xC3\xA9\r\n\">" + line + tab +
                                      "<a>1\n2</a><![CDATA[QUJD\n]]></r>");
    }
}

TEST(WriterFile, IsEmptiedAtTheStartAndKeptByEndDocument) {
    TemporaryFile file(".xml", std::string(100000, 'x'));
    {
        CXMLSaxWriter writer;
        writer.StartDocument(file.Name(), true);
        EXPECT_LT(file.Content().size(), 100u);
        writer.StartElement("a", nullptr);
        writer.EndElement();
        writer.EndDocument();
        EXPECT_EQ(file.Content(), kDocument);
    }
    EXPECT_EQ(file.Content(), kDocument);
}

TEST(WriterFile, MayBeWrittenAndReadByOthersMeanwhile) {
    TemporaryFile file;
    CXMLSaxWriter writer;
    writer.StartDocument(file.Name(), true);
    CXMLSaxWriter other;
    other.StartDocument(file.Name(), true);
    std::ifstream in(file.Name());
    EXPECT_TRUE(in.good());
}

TEST(WriterFile, KeepsACopyOfItsName) {
    TemporaryFile file;
    std::string name = file.Name();
    {
        CXMLSaxWriter writer;
        writer.StartDocument(name.c_str(), true);
        name.assign(name.size(), 'x');
        EXPECT_TRUE(Exists(file.Name()));
    }
    EXPECT_FALSE(Exists(file.Name()));
}

TEST(WriterFile, IsRefusedWithItsNameWhenItCannotBeOpened) {
    CTemporaryDirectory directory;
    CXMLSaxWriter writer;
    EXPECT_XML_ERROR(writer.StartDocument(nullptr, true), 1, "Error saving ''.");
    EXPECT_NOT_OPEN(writer.EndDocument());
    ExpectRefused(writer, "");
    ExpectRefused(writer, directory.Name());
    ExpectRefused(writer, directory.Inside("missing/r.xml"));
    ExpectRefused(writer, directory.Inside("\xC3\xA9/%s%n"));
    {
        std::ofstream(directory.Inside("first")) << "kept";
        const CUnopenable unopenable(directory.Inside("first"));
        ExpectRefused(writer, directory.Inside("first"));
    }
    EXPECT_EQ(ReadFile(directory.Inside("first")), "kept");
    // The message shows 255 bytes of an argument.
    const std::string name = directory.Name() + "/" + std::string(300, 'n');
    EXPECT_XML_ERROR(writer.StartDocument(name.c_str(), true), 1,
                     "Error saving '" + name.substr(0, 255) + "'.");
    TemporaryFile file;
    writer.StartDocument(file.Name(), true);
    writer.StartElement("a", nullptr);
    writer.EndElement();
    writer.EndDocument();
    EXPECT_EQ(file.Content(), kDocument);
    EXPECT_TRUE(IsKind(directory.Name(), S_IFDIR));
}

TEST(WriterFile, IsNotTouchedWhileADocumentIsOpen) {
    TemporaryFile first;
    TemporaryFile second(".xml", "kept");
    const char* const message = "The last written document is not closed.";
    std::ostringstream out;
    {
        CXMLSaxWriter writer;
        writer.StartDocument(&out, true, false);
        EXPECT_XML_ERROR(writer.StartDocument(second.Name(), false), 1, message);
        EXPECT_XML_ERROR(writer.StartDocument(nullptr, false), 1, message);
        writer.StartElement("a", nullptr);
        EXPECT_XML_ERROR(writer.StartDocument(second.Name(), false), 1, message);
        out.setstate(std::ios::badbit);
        EXPECT_XML_ERROR(writer.StartDocument(second.Name(), false), 1, message);
        out.clear();
        writer.StartElement("b", nullptr);
        writer.EndElement();
        writer.EndElement();
        EXPECT_EQ(out.str(), std::string(kDeclaration) + "\r\n<a>\r\n\t<b/>\r\n</a>");
        writer.EndDocument();

        writer.StartDocument(first.Name(), true);
        EXPECT_XML_ERROR(writer.StartDocument(second.Name(), true), 1, message);
        EXPECT_XML_ERROR(writer.StartDocument(first.Name(), true), 1, message);
        // It is the first whose name is stored.
    }
    EXPECT_FALSE(Exists(first.Name()));
    EXPECT_EQ(second.Content(), "kept");
}

TEST(WriterFile, NameOfAFailedStartIsShownByTheNextFailure) {
    CXMLSaxWriter writer;
    ExpectRefused(writer, "/nonexistent/r.xml");
    EXPECT_XML_ERROR(writer.StartDocument(nullptr, true, false), 1,
                     "Error saving '/nonexistent/r.xml'.");
    // EndDocument drops it.
    std::ostringstream out;
    writer.StartDocument(&out, true, false);
    writer.EndDocument();
    EXPECT_XML_ERROR(writer.StartDocument(nullptr, true, false), 1, "Error saving ''.");
    ExpectRefused(writer, "/nonexistent/r.xml");
    EXPECT_XML_ERROR(writer.StartDocument(nullptr, true), 1, "Error saving ''.");
    EXPECT_XML_ERROR(writer.StartDocument(nullptr, true, true), 1, "Error saving ''.");
}

TEST(WriterFile, GoesThroughTheStreamVariant) {
    class CCounting : public CXMLSaxWriter {
    public:
        using CXMLSaxWriter::StartDocument;
        void StartDocument(std::ostream* stream, bool format, bool ownStream) override {
            m_Calls += dynamic_cast<std::ofstream*>(stream) ? "file " : "other ";
            m_Calls += format ? "formatted " : "plain ";
            m_Calls += ownStream ? "owned\n" : "lent\n";
            CXMLSaxWriter::StartDocument(stream, format, ownStream);
        }
        std::string m_Calls;
    };
    TemporaryFile file;
    CCounting writer;
    writer.StartDocument(file.Name(), true);
    writer.EndDocument();
    writer.StartDocument(file.Name(), false);
    EXPECT_XML_ERROR(writer.StartDocument(file.Name(), false), 1,
                     "The last written document is not closed.");
    writer.EndDocument();
    EXPECT_XML_ERROR(writer.StartDocument("/nonexistent/r.xml", true), 1,
                     "Error saving '/nonexistent/r.xml'.");
    EXPECT_EQ(writer.m_Calls, "file formatted owned\nfile plain owned\nfile formatted owned\n");
}
