// What saving writes, token by token and with or without formatting, to a stream and to a file.
#include "support/testing.h"

using namespace norvask_test;

namespace {

struct SLayout {
    const char* xml;
    const char* plain;
    const char* formatted;
};

void ExpectLayouts(const std::vector<SLayout>& rows) {
    for (const SLayout& row : rows) {
        SCOPED_TRACE(row.xml);
        Document document = LoadMemory(row.xml);
        EXPECT_EQ(Saved(document, false), DECLARATION + row.plain);
        EXPECT_EQ(Saved(document, true), DECLARATION + "\r\n" + row.formatted);
    }
}

}  // namespace

TEST(Save, WritesElementsAttributesAndContent) {
    ExpectLayouts({
        {"<doc/>", "<doc/>", "<doc/>"},
        {"<doc a='1' b='2'/>", "<doc a=\"1\" b=\"2\"/>", "<doc a=\"1\" b=\"2\"/>"},
        {"<doc>text</doc>", "<doc>text</doc>", "<doc>text</doc>"},
        {"<doc a='1'>text</doc>", "<doc a=\"1\">text</doc>", "<doc a=\"1\">text</doc>"},
        {"<doc>  two  </doc>", "<doc>  two  </doc>", "<doc>  two  </doc>"},
        {"<doc>a\nb\tc</doc>", "<doc>a\nb\tc</doc>", "<doc>a\nb\tc</doc>"},
        {"<doc><![CDATA[AAECAw==]]></doc>", "<doc><![CDATA[AAECAw==\n]]></doc>",
         "<doc><![CDATA[AAECAw==\n]]></doc>"},
        {"<doc><![CDATA[<&>]]></doc>", "<doc>&#x3c;&#x26;&#x3e;</doc>",
         "<doc>&#x3c;&#x26;&#x3e;</doc>"},
    });
}

TEST(Save, PutsElementsOnLinesOfTheirOwn) {
    ExpectLayouts({
        {"<doc><a/></doc>", "<doc><a/></doc>", "<doc>\r\n\t<a/>\r\n</doc>"},
        {"<doc><a/><b/></doc>", "<doc><a/><b/></doc>", "<doc>\r\n\t<a/>\r\n\t<b/>\r\n</doc>"},
        {"<doc><a><b><c/></b></a><d/></doc>", "<doc><a><b><c/></b></a><d/></doc>",
         "<doc>\r\n\t<a>\r\n\t\t<b>\r\n\t\t\t<c/>\r\n\t\t</b>\r\n\t</a>\r\n\t<d/>\r\n</doc>"},
        {"<doc a='v'><item/><name>N</name></doc>", "<doc a=\"v\"><item/><name>N</name></doc>",
         "<doc a=\"v\">\r\n\t<item/>\r\n\t<name>N</name>\r\n</doc>"},
    });
}

TEST(Save, AddsNoWhitespaceFromTheFirstContentChildOn) {
    ExpectLayouts({
        {"<doc><a/>text<b/></doc>", "<doc><a/>text<b/></doc>", "<doc>\r\n\t<a/>text<b/></doc>"},
        {"<doc>text<a/><b/></doc>", "<doc>text<a/><b/></doc>", "<doc>text<a/><b/></doc>"},
        {"<doc><a/><b/>text</doc>", "<doc><a/><b/>text</doc>",
         "<doc>\r\n\t<a/>\r\n\t<b/>text</doc>"},
        {"<doc><a/> </doc>", "<doc><a/> </doc>", "<doc>\r\n\t<a/> </doc>"},
        {"<doc><a/><![CDATA[QQ==]]><b/></doc>", "<doc><a/><![CDATA[QQ==\n]]><b/></doc>",
         "<doc>\r\n\t<a/><![CDATA[QQ==\n]]><b/></doc>"},
        // The elements below a mixed one are laid out by their own children.
        {"<doc>text<a><b/></a></doc>", "<doc>text<a><b/></a></doc>",
         "<doc>text<a>\r\n\t\t<b/>\r\n\t</a></doc>"},
        {"<doc><a>x<b><c/></b></a><d/></doc>", "<doc><a>x<b><c/></b></a><d/></doc>",
         "<doc>\r\n\t<a>x<b>\r\n\t\t\t<c/>\r\n\t\t</b></a>\r\n\t<d/>\r\n</doc>"},
    });
}

TEST(Save, TreatsEmptyTextsAndBinaryNodesAsContent) {
    Document document = NewDocumentWithRoot("r");
    document->GetRoot()->CreateChild("a", nullptr);
    document->GetRoot()->CreateTextChild("");
    document->GetRoot()->CreateChild("b", nullptr);
    EXPECT_EQ(Saved(document, false), DECLARATION + "<r><a/><b/></r>");
    EXPECT_EQ(Saved(document, true), DECLARATION + "\r\n<r>\r\n\t<a/><b/></r>");
    document->CreateRoot("r")->CreateBinChild();
    EXPECT_EQ(Saved(document, false), DECLARATION + "<r><![CDATA[]]></r>");
    EXPECT_EQ(Saved(document, true), DECLARATION + "\r\n<r><![CDATA[]]></r>");
    document->CreateRoot("r")->CreateTextChild(nullptr);
    EXPECT_EQ(Saved(document, false), DECLARATION + "<r></r>");
}

TEST(Save, WritesTheDocumentTypeLine) {
    Document document = NewDocument("doc", "the.dtd");
    document->CreateRoot("doc")->CreateChild("a", nullptr);
    EXPECT_EQ(Saved(document, false),
              "<?xml version=\"1.0\"?><!DOCTYPE doc SYSTEM \"the.dtd\"><doc><a/></doc>");
    EXPECT_EQ(Saved(document, true),
              "<?xml version=\"1.0\"?>\r\n<!DOCTYPE doc SYSTEM \"the.dtd\">\r\n"
              "<doc>\r\n\t<a/>\r\n</doc>");
    document->SetDTDRef("p:doc", "../a b/<the>&'\"\x01.dtd");
    EXPECT_EQ(Saved(document, false),
              "<?xml version=\"1.0\"?><!DOCTYPE p:doc SYSTEM "
              "\"../a b/&#x3c;the&#x3e;&#x26;&#x27;&#x22;.dtd\"><doc><a/></doc>");
    document->SetDTDRef("doc", "");
    EXPECT_EQ(Saved(document, false), "<?xml version=\"1.0\"?><doc><a/></doc>");
    document->SetDTDRef(nullptr, "the.dtd");
    EXPECT_EQ(Saved(document, true), "<?xml version=\"1.0\"?>\r\n<doc>\r\n\t<a/>\r\n</doc>");
}

TEST(Save, BreaksBase64AfterEvery60Characters) {
    Document document = NewDocumentWithRoot("r");
    CXMLBinNode* node = document->GetRoot()->CreateBinChild();
    const std::vector<unsigned char> zeros(200, 0);
    struct {
        std::size_t length;
        std::string text;
    } const rows[] = {
        {1, "AA==\n"},
        {2, "AAA=\n"},
        {3, "AAAA\n"},
        {44, std::string(59, 'A') + "=\n"},
        {45, std::string(60, 'A') + "\n"},
        {46, std::string(60, 'A') + "\nAA==\n"},
        {90, std::string(60, 'A') + "\n" + std::string(60, 'A') + "\n"},
        {91, std::string(60, 'A') + "\n" + std::string(60, 'A') + "\nAA==\n"},
    };
    for (const auto& row : rows) {
        node->SetData(zeros.data(), row.length);
        EXPECT_EQ(Saved(document), DECLARATION + "<r><![CDATA[" + row.text + "]]></r>")
            << row.length << " bytes";
    }
}

TEST(Save, ShowsEveryChangeOfTheTreeAndChangesNothing) {
    Document document = LoadMemory("<r a='1'><b>x</b><c/></r>");
    const std::string tree = TreeText(document);
    EXPECT_EQ(Saved(document), Saved(document));
    Saved(document, true);
    EXPECT_EQ(TreeText(document), tree);
    CXMLNode* root = document->GetRoot();
    root->SetTagName("s");
    root->SetAttribute("a", "2");
    root->SetAttribute("d", "3");
    root->GetFirstChild()->SetTextChildValue("y");
    root->DeleteChild(root->GetChildren()[1]);
    root->CreateChild("e", root->GetFirstChild());
    EXPECT_EQ(Saved(document), DECLARATION + "<s a=\"2\" d=\"3\"><e/><b>y</b></s>");
    document->CreateRoot("t");
    EXPECT_EQ(Saved(document), DECLARATION + "<t/>");
}

TEST(Save, WritesAttributesWithoutAValueAsTheyAre) {
    Document document = LoadMemory("<r a='1' b='2'/>");
    document->GetRoot()->GetAttributes()[0]->SetValue("");
    document->GetRoot()->GetAttributes()[1]->SetValue(nullptr);
    EXPECT_EQ(Saved(document), DECLARATION + "<r a=\"\" b=\"\"/>");
}

TEST(Save, IndentsToAnyDepthWithoutAnyOtherByte) {
    Document document = NewDocumentWithRoot("e");
    std::string expected = DECLARATION + "\r\n<e>";
    CXMLNode* node = document->GetRoot();
    const std::size_t depth = 300;
    for (std::size_t level = 1; level < depth; ++level) {
        node = node->CreateChild("e", nullptr);
        expected += "\r\n" + std::string(level, '\t') + (level + 1 < depth ? "<e>" : "<e/>");
    }
    for (std::size_t level = depth - 1; level-- > 0;)
        expected += "\r\n" + std::string(level, '\t') + "</e>";
    EXPECT_EQ(Saved(document, true), expected);
}

TEST(SaveToFile, WritesWhatTheStreamGets) {
    Document document = LoadMemory("<r a='\xC3\xA9'>\n<b>text\nmore</b><c/><![CDATA[QQ==]]></r>");
    for (const bool format : {false, true}) {
        TemporaryFile file;
        document->Save(file.Name(), format);
        EXPECT_EQ(file.Content(), Saved(document, format));
    }
}

TEST(SaveToFile, TakesAnyNameAsItStandsAndSoDoesALoad) {
    for (const char* suffix : {" b c.xml", "%20.xml", "#part.xml", "?query=1", "\xC3\xA9.xml"}) {
        TemporaryFile file(suffix);
        NewDocumentWithRoot("r")->Save(file.Name(), false);
        EXPECT_EQ(file.Content(), DECLARATION + "<r/>") << file.Name();
        EXPECT_EQ(TreeText(LoadFile(file.Name())), "r()") << file.Name();
    }
}

TEST(SaveToFile, ReplacesWhatTheFileHeld) {
    TemporaryFile file(".xml", std::string(10000, 'x'));
    NewDocumentWithRoot("r")->Save(file.Name(), false);
    EXPECT_EQ(file.Content(), DECLARATION + "<r/>");
}

TEST(SaveToFile, DoesNothingWithoutARootOrAName) {
    Document empty = NewDocument("r", "r.dtd");
    TemporaryFile absent;
    empty->Save(absent.Name(), true);
    EXPECT_FALSE(absent.Exists());
    TemporaryFile present(".xml", "as it was");
    empty->Save(present.Name(), true);
    EXPECT_EQ(present.Content(), "as it was");
    empty->Save("/nonexistent/r.xml", true);
    const char* noName = nullptr;
    empty->Save(noName, true);
    NewDocumentWithRoot("r")->Save(noName, true);
}

TEST(SaveToFile, TellsWhichFileCannotBeOpened) {
    Document document = NewDocumentWithRoot("r");
    EXPECT_SAVING_ERROR(document->Save("/nonexistent/r.xml", false), "/nonexistent/r.xml");
    EXPECT_SAVING_ERROR(document->Save("", false), "");
    EXPECT_SAVING_ERROR(document->Save("/", true), "/");
    EXPECT_SAVING_ERROR(document->Save(("/nonexistent/" + std::string(300, 'n')).c_str(), true),
                        "/nonexistent/" + std::string(255 - 13, 'n'));
}

TEST(SaveToFile, DoesNotReportADeviceThatIsFull) {
    Document document = NewDocumentWithRoot("r");
    document->Save("/dev/full", false);
    document->GetRoot()->CreateTextChild(std::string(1000000, 'x').c_str());
    document->Save("/dev/full", true);
    EXPECT_EQ(Saved(document).size(), 1000000 + 28u);
}

TEST(SaveToFile, LeavesAPartOfTheDocumentWhenANameIsRefused) {
    Document document = LoadMemory("<r><a/><b k='v' l='w'/><c/></r>");
    document->GetRoot()->GetChildren()[1]->GetAttributes()[1]->SetName("");
    TemporaryFile file;
    EXPECT_INVALID_NAME(document->Save(file.Name(), false), "");
    EXPECT_EQ(file.Content(), DECLARATION + "<r><a/><b k=\"v\"");
}

namespace {

class CSigningDocument : public CXMLDocument {
public:
    CSigningDocument() : CXMLDocument(nullptr, nullptr) {}
    using CXMLDocument::Save;
    void Save(std::ostream& out, bool format) override {
        CXMLDocument::Save(out, format);
        out << "<!-- signed -->";
    }
};

}  // namespace

TEST(SaveToFile, GoesThroughTheStreamVariantOfADerivedDocument) {
    CSigningDocument document;
    document.CreateRoot("r");
    TemporaryFile file;
    document.Save(file.Name(), false);
    EXPECT_EQ(file.Content(), DECLARATION + "<r/><!-- signed -->");
}
