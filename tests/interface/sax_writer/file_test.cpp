// The streaming writer and files: what is on disk, and which names are refused.
#include <sys/stat.h>

#include <fstream>
#include <ostream>

#include "support/files.h"
#include "support/testing.h"
#include "support/writing.h"

using namespace norvask_test;

namespace {

const std::string DOCUMENT = DECLARATION + "\r\n<a/>";

}  // namespace

TEST(WriterFile, HoldsTheDocumentByteForByte) {
    TemporaryFile file;
    CXMLSaxWriter writer;
    for (const bool format : {true, false}) {
        writer.StartDocument(file.Name(), format);
        writer.StartElement("r", CAttributes{{"k", "\xC3\xA9\r\n"}}.Get());
        WriteElement(writer, "a", "1\n2");
        WriteData(writer, "ABC", true);
        writer.EndElement();
        writer.EndDocument();
        const std::string line = format ? "\r\n" : "";
        const std::string tab = format ? "\t" : "";
        EXPECT_EQ(file.Content(), DECLARATION + line + "<r k=\"\xC3\xA9\r\n\">" + line + tab +
                                      "<a>1\n2</a><![CDATA[QUJD\n]]></r>");
    }
}

TEST(WriterFile, IsEmptiedAtTheStartAndKeptByEndDocument) {
    TemporaryFile file(".xml", std::string(100000, 'x'));
    {
        CXMLSaxWriter writer;
        writer.StartDocument(file.Name(), true);
        EXPECT_LT(file.Content().size(), 100u);
        WriteElement(writer, "a");
        writer.EndDocument();
        EXPECT_EQ(file.Content(), DOCUMENT);
    }
    EXPECT_EQ(file.Content(), DOCUMENT);
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
    EXPECT_SAVING_ERROR(writer.StartDocument(nullptr, true), "");
    EXPECT_NOT_OPEN(writer.EndDocument());
    ExpectFileRefused(writer, "");
    ExpectFileRefused(writer, directory.Name());
    ExpectFileRefused(writer, directory.Inside("missing/r.xml"));
    ExpectFileRefused(writer, directory.Inside("\xC3\xA9/%s%n"));
    {
        std::ofstream(directory.Inside("first")) << "kept";
        const CUnopenable unopenable(directory.Inside("first"));
        ExpectFileRefused(writer, directory.Inside("first"));
    }
    EXPECT_EQ(ReadFile(directory.Inside("first")), "kept");
    // The message shows 255 bytes of an argument.
    const std::string name = directory.Name() + "/" + std::string(300, 'n');
    EXPECT_SAVING_ERROR(writer.StartDocument(name.c_str(), true), name.substr(0, 255));
    TemporaryFile file;
    writer.StartDocument(file.Name(), true);
    WriteElement(writer, "a");
    writer.EndDocument();
    EXPECT_EQ(file.Content(), DOCUMENT);
    EXPECT_TRUE(IsKind(directory.Name(), S_IFDIR));
}

TEST(WriterFile, IsNotTouchedWhileADocumentIsOpen) {
    TemporaryFile first;
    TemporaryFile second(".xml", "kept");
    std::ostringstream out;
    {
        CXMLSaxWriter writer;
        writer.StartDocument(&out, true, false);
        EXPECT_NOT_CLOSED(writer.StartDocument(second.Name(), false));
        EXPECT_NOT_CLOSED(writer.StartDocument(nullptr, false));
        writer.StartElement("a", nullptr);
        EXPECT_NOT_CLOSED(writer.StartDocument(second.Name(), false));
        out.setstate(std::ios::badbit);
        EXPECT_NOT_CLOSED(writer.StartDocument(second.Name(), false));
        out.clear();
        WriteElement(writer, "b");
        writer.EndElement();
        EXPECT_EQ(out.str(), DECLARATION + "\r\n<a>\r\n\t<b/>\r\n</a>");
        writer.EndDocument();

        writer.StartDocument(first.Name(), true);
        EXPECT_NOT_CLOSED(writer.StartDocument(second.Name(), true));
        EXPECT_NOT_CLOSED(writer.StartDocument(first.Name(), true));
        // It is the first whose name is stored.
    }
    EXPECT_FALSE(Exists(first.Name()));
    EXPECT_EQ(second.Content(), "kept");
}

TEST(WriterFile, NameOfAFailedStartIsShownByTheNextFailure) {
    CXMLSaxWriter writer;
    ExpectFileRefused(writer, "/nonexistent/r.xml");
    EXPECT_SAVING_ERROR(writer.StartDocument(nullptr, true, false), "/nonexistent/r.xml");
    // EndDocument drops it.
    std::ostringstream out;
    writer.StartDocument(&out, true, false);
    writer.EndDocument();
    EXPECT_SAVING_ERROR(writer.StartDocument(nullptr, true, false), "");
    ExpectFileRefused(writer, "/nonexistent/r.xml");
    EXPECT_SAVING_ERROR(writer.StartDocument(nullptr, true), "");
    EXPECT_SAVING_ERROR(writer.StartDocument(nullptr, true, true), "");
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
    EXPECT_NOT_CLOSED(writer.StartDocument(file.Name(), false));
    writer.EndDocument();
    EXPECT_SAVING_ERROR(writer.StartDocument("/nonexistent/r.xml", true), "/nonexistent/r.xml");
    EXPECT_EQ(writer.m_Calls, "file formatted owned\nfile plain owned\nfile formatted owned\n");
}
