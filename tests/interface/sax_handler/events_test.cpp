// Which callbacks a document gives, with which strings, in which order: elements, attributes, text
// and CDATA sections. Namespaces and document types are in names_test.cpp.
#include "support/recording_handler.h"
#include "support/sanitizers.h"
#include "support/testing.h"

using namespace norvask_test;

namespace {

// Counts, and keeps the longest text; for documents whose transcript nobody reads.
class CCountingHandler : public CXMLSaxHandler {
public:
    void StartElement(const char*, const char*, const char*, CXMLSaxAttribut**) override {
        ++m_nElements;
    }
    void EndElement(const char*, const char*, const char*) override { ++m_nEnds; }
    void Characters(const char* text) override {
        ++m_nTexts;
        if (m_Longest.size() <= std::string(text).size()) m_Longest = text;
    }

    int m_nElements = 0;
    int m_nEnds = 0;
    int m_nTexts = 0;
    std::string m_Longest;
};

}  // namespace

TEST(CallbackEvents, FrameADocument) {
    ExpectEvents({
        {"<r/>", InRoot("")},
        {"<r></r>", InRoot("")},
        {"<r ></r >", InRoot("")},
        {"<?xml version='1.0' encoding='UTF-8' standalone='yes'?>\n<r/>\n", InRoot("")},
        {"<r><a/><b><c/></b><a/></r>",
         InRoot("StartElement a\nEndElement a\nStartElement b\nStartElement c\nEndElement c\n"
                "EndElement b\nStartElement a\nEndElement a\n")},
    });
}

TEST(CallbackEvents, GiveAttributesInTheirOrderWithTheirValues) {
    ExpectEvents({
        {"<r z='1' a='2' m='3'/>", "StartElement r z=\"1\" a=\"2\" m=\"3\"\nEndElement r\n"},
        {"<r k=''/>", "StartElement r k=\"\"\nEndElement r\n"},
        {"<r k=' a  b '/>", "StartElement r k=\" a  b \"\nEndElement r\n"},
        {"<r k='a\r\n\tb'/>", "StartElement r k=\"a  b\"\nEndElement r\n"},
        {"<r k='&#10;&#9;&#13;'/>", "StartElement r k=\"\\n\\t\\r\"\nEndElement r\n"},
        {"<r k='&lt;&amp;&quot;&apos;>'/>", "StartElement r k=\"<&\\\"'>\"\nEndElement r\n"},
        {"<r k='\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80'/>",
         "StartElement r k=\"\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80\"\nEndElement r\n"},
    });
}

// A recorder that finds a NULL writes "!", so this says it once more for the smallest case.
TEST(CallbackEvents, NeverGiveNullForAnArrayOrANamespace) {
    class CProbe : public CXMLSaxHandler {
    public:
        void StartElement(const char* uri, const char* localName, const char* qName,
                          CXMLSaxAttribut** attributes) override {
            ++m_nCalls;
            EXPECT_STREQ(uri, "");
            EXPECT_STREQ(localName, "r");
            EXPECT_STREQ(qName, "r");
            ASSERT_NE(attributes, nullptr);
            EXPECT_EQ(attributes[0], nullptr);
        }
        void EndElement(const char* uri, const char* localName, const char* qName) override {
            ++m_nCalls;
            EXPECT_STREQ(uri, "");
            EXPECT_STREQ(localName, "r");
            EXPECT_STREQ(qName, "r");
        }
        int m_nCalls = 0;
    } probe;
    LoadMemory("<r/>", probe);
    EXPECT_EQ(probe.m_nCalls, 2);
}

TEST(CallbackEvents, DivideTextAtTagsAndCdataSectionsOnly) {
    ExpectEvents({
        {"<r>x<![CDATA[y]]>z</r>",
         InRoot("Characters \"x\"\nStartCDATA\nCharacters \"y\"\nEndCDATA\nCharacters \"z\"\n")},
        {"<r>one<a/>two<b>three</b>four</r>",
         InRoot("Characters \"one\"\nStartElement a\nEndElement a\nCharacters \"two\"\n"
                "StartElement b\nCharacters \"three\"\nEndElement b\nCharacters \"four\"\n")},
        {"<r>one<!-- c -->two<?p i?>three</r>", InRoot("Characters \"onetwothree\"\n")},
        {"<!-- a --><?p i?><r><!-- b --><?p i?></r><!-- c --><?p?>", InRoot("")},
        {"<r>a<![CDATA[b]]><!-- c --><![CDATA[d]]>e</r>",
         InRoot("Characters \"a\"\nStartCDATA\nCharacters \"b\"\nEndCDATA\nStartCDATA\n"
                "Characters \"d\"\nEndCDATA\nCharacters \"e\"\n")},
    });
}

TEST(CallbackEvents, ResolveReferencesIntoOneText) {
    ExpectEvents({
        {"<r>a&amp;b&lt;&gt;&apos;&quot;</r>", InRoot("Characters \"a&b<>'\\\"\"\n")},
        {"<r>&#65;&#x42;C&#x1F600;</r>", InRoot("Characters \"ABC\xF0\x9F\x98\x80\"\n")},
        {"<r>&amp;lt;</r>", InRoot("Characters \"&lt;\"\n")},
        {"<r>a\r\nb\rc&#13;</r>", InRoot("Characters \"a\\nb\\nc\\r\"\n")},
    });
}

TEST(CallbackEvents, DeliverTextUntrimmedAndNoLayout) {
    ExpectEvents({
        {"<r>\n\t<a/>\n  <b/>\r\n</r>",
         InRoot("StartElement a\nEndElement a\nStartElement b\nEndElement b\n")},
        {"<r>\n</r>", InRoot("")},
        {"<r>\t</r>", InRoot("")},
        {"<r>&#13;</r>", InRoot("")},
        {"<r> &#9; </r>", InRoot("")},
        {"<r>   </r>", InRoot("Characters \"   \"\n")},
        {"<r> <a/> <b/>\n</r>", InRoot("Characters \" \"\nStartElement a\nEndElement a\n"
                                       "Characters \" \"\nStartElement b\nEndElement b\n")},
        {"<r>\n x\t</r>", InRoot("Characters \"\\n x\\t\"\n")},
        {"<r>\xC2\xA0\n</r>", InRoot("Characters \"\xC2\xA0\\n\"\n")},
        {"<r> <!-- c --> </r>", InRoot("Characters \"  \"\n")},
        {"<r> <!-- c -->\n</r>", InRoot("")},
        {"<r>\n<!-- c -->x</r>", InRoot("Characters \"\\nx\"\n")},
    });
}

TEST(CallbackEvents, DeliverNothingFromBehindTheRoot) {
    ExpectEvents({
        {"<r/> ", InRoot("")},
        {"<r/>   \n \t ", InRoot("")},
        {"  \n<r/>", InRoot("")},
        {"\n <!-- c -->  <r/>  <!-- c -->  ", InRoot("")},
    });
}

TEST(CallbackEvents, FrameEachCdataSectionWithItsTextAsItStands) {
    const auto section = [](const std::string& text) {
        return InRoot("StartCDATA\nCharacters " + text + "\nEndCDATA\n");
    };
    ExpectEvents({
        {"<r><![CDATA[]]></r>", InRoot("StartCDATA\nEndCDATA\n")},
        {"<r>a<![CDATA[]]>b</r>",
         InRoot("Characters \"a\"\nStartCDATA\nEndCDATA\nCharacters \"b\"\n")},
        {"<r><![CDATA[]]><![CDATA[]]></r>", InRoot("StartCDATA\nEndCDATA\nStartCDATA\nEndCDATA\n")},
        {"<r><![CDATA[a<b>&amp;c]]></r>", section("\"a<b>&amp;c\"")},
        {"<r><![CDATA[\n]]></r>", section("\"\\n\"")},
        {"<r><![CDATA[ \t ]]></r>", section("\" \\t \"")},
        {"<r>\n<![CDATA[\r\n]]>\n</r>", section("\"\\n\"")},
        {"<r><![CDATA[  x ]]></r>", section("\"  x \"")},
        {"<r><![CDATA[]]]></r>", section("\"]\"")},
        {"<r><![CDATA[]]]]></r>", section("\"]]\"")},
        {"<r><![CDATA[<![CDATA[]]></r>", section("\"<![CDATA[\"")},
        {"<r><![CDATA[]] >]]></r>", section("\"]] >\"")},
        {"<r><![CDATA[a]]]]><![CDATA[>b]]></r>",
         InRoot("StartCDATA\nCharacters \"a]]\"\nEndCDATA\n"
                "StartCDATA\nCharacters \">b\"\nEndCDATA\n")},
        {"<r><![CDATA[\xC3\xA9\xF0\x9F\x98\x80]]></r>", section("\"\xC3\xA9\xF0\x9F\x98\x80\"")},
    });
}

// A tree decodes these.
TEST(CallbackEvents, LeaveBase64InACdataSectionAsText) {
    ExpectEvents({
        {"<r><![CDATA[AAECAw==]]></r>", InRoot("StartCDATA\nCharacters \"AAECAw==\"\nEndCDATA\n")},
        {"<r><![CDATA[\n QQ==\n]]></r>",
         InRoot("StartCDATA\nCharacters \"\\n QQ==\\n\"\nEndCDATA\n")},
        {"<r>AA<![CDATA[AA]]></r>",
         InRoot("Characters \"AA\"\nStartCDATA\nCharacters \"AA\"\nEndCDATA\n")},
    });
}

TEST(CallbackEvents, CarryNamesAndTextBeyondAscii) {
    ExpectEvents({
        {"<\xC3\xA9 \xD0\x96='\xE4\xB8\xAD'>\xE2\x82\xAC</\xC3\xA9>",
         "StartElement \xC3\xA9 \xD0\x96=\"\xE4\xB8\xAD\"\nCharacters \"\xE2\x82\xAC\"\n"
         "EndElement \xC3\xA9\n"},
        {"<r>\xF4\x8F\xBF\xBF\xEF\xBF\xBD</r>",
         InRoot("Characters \"\xF4\x8F\xBF\xBF\xEF\xBF\xBD\"\n")},
        // Such names have no place in a tree, and are no trouble here.
        {"<\xF0\x90\x80\x80 \xF0\x9F\x98\x80='v'/>",
         "StartElement \xF0\x90\x80\x80 \xF0\x9F\x98\x80=\"v\"\nEndElement \xF0\x90\x80\x80\n"},
        {"<?xml version='1.0' encoding='ISO-8859-1'?><r k='\xFC'>\xE9</r>",
         "StartElement r k=\"\xC3\xBC\"\nCharacters \"\xC3\xA9\"\nEndElement r\n"},
        {std::string("\xFE\xFF\0<\0r\0>\x20\xAC\0<\0/\0r\0>", 18),
         InRoot("Characters \"\xE2\x82\xAC\"\n")},
        {"<?xml version=\"1.1\"?><r>&#1;&#31;</r>", InRoot("Characters \"\\x01\\x1f\"\n")},
    });
}

// The parser hands long texts over in pieces, which may fall between the halves of a pair.
TEST(CallbackEvents, GiveALongTextInOneCall) {
    const std::string face = "\xF0\x9F\x98\x80";
    for (std::size_t ahead = 0; ahead < 4; ++ahead) {
        std::string text(ahead, 'a');
        for (int i = 0; i < 50000; ++i)
            text += face;
        for (const std::string& xml :
             {"<r>" + text + "</r>", "<r><![CDATA[" + text + "]]></r>",
              "<r>" + text.substr(0, ahead + 40000) + "<!-- " + text + " --><?p " + text + "?>" +
                  text.substr(ahead + 40000) + "</r>"}) {
            CCountingHandler handler;
            LoadMemory(xml, handler);
            EXPECT_EQ(handler.m_nTexts, 1);
            EXPECT_TRUE(handler.m_Longest == text) << ahead << " ahead";
        }
    }
}

TEST(CallbackEvents, JoinHundredsOfThousandsOfReferencesIntoOneText) {
    std::string xml = "<r>";
    std::string text;
    for (int i = 0; i < 400000; ++i) {
        xml += i % 2 ? "&amp;x" : "&#8364;";
        text += i % 2 ? "&x" : "\xE2\x82\xAC";
    }
    CCountingHandler handler;
    LoadMemory(xml + "</r>", handler);
    EXPECT_EQ(handler.m_nTexts, 1);
    EXPECT_TRUE(handler.m_Longest == text);
}

// What is left of a long text must not show in a shorter one behind it.
TEST(CallbackEvents, GiveShortTextsBehindLongOnesAsTheyAre) {
    const std::string text(100000, 'x');
    const std::string xml = "<r k='" + text + "'>" + text + "<a k='v'>short</a><b k=''/></r>";
    EXPECT_EQ(EventsOfMemory(xml),
              Whole("StartElement r k=\"" + text + "\"\nCharacters \"" + text +
                    "\"\nStartElement a k=\"v\"\nCharacters \"short\"\nEndElement a\n"
                    "StartElement b k=\"\"\nEndElement b\nEndElement r\n"));
}

TEST(CallbackEvents, EndEachOfAMillionElements) {
    const int count = IS_SANITIZED ? 100000 : 1000000;
    std::string xml = "<r>";
    for (int i = 0; i < count; ++i)
        xml += "<e/>";
    CCountingHandler handler;
    LoadMemory(xml + "</r>", handler);
    EXPECT_EQ(handler.m_nElements, count + 1);
    EXPECT_EQ(handler.m_nEnds, count + 1);
    EXPECT_EQ(handler.m_nTexts, 0);
}

TEST(CallbackEvents, DoNothingByDefault) {
    CXMLSaxHandler handler;
    LoadMemory("<!DOCTYPE r [<!ENTITY e 'x'>]><r xmlns:p='u' p:k='v'>&e;<![CDATA[y]]><p:a/></r>",
               handler);
    handler.StartDocument();
    handler.EndDocument();
    handler.StartElement(nullptr, nullptr, nullptr, nullptr);
    handler.EndElement(nullptr, nullptr, nullptr);
    handler.Characters(nullptr);
    handler.StartCDATA();
    handler.EndCDATA();
    handler.StartDTD(nullptr, nullptr, nullptr);
    handler.StartNamespace(nullptr, nullptr);
    handler.EndNamespace(nullptr);
    EXPECT_EQ(handler.GetSourceOffset(), 0u);
}

TEST(CallbackEvents, OfOneHandlerServeOneLoadAfterTheOther) {
    CRecordingHandler handler;
    for (int i = 0; i < 3; ++i) {
        LoadMemory("<r>x</r>", handler);
        EXPECT_EQ(handler.Take(), Whole(InRoot("Characters \"x\"\n")));
        LoadMemory("<q/>", handler);
        EXPECT_EQ(handler.Take(), Whole("StartElement q\nEndElement q\n"));
    }
}

TEST(CallbackEvents, ReadTheGivenLengthOnly) {
    std::string xml = "<r>text</r>behind the document";
    const std::string before = xml;
    CRecordingHandler handler;
    LoadFrom(SLoad(), reinterpret_cast<unsigned char*>(&xml[0]), 11u, &handler);
    EXPECT_EQ(handler.Transcript(), Whole(InRoot("Characters \"text\"\n")));
    EXPECT_EQ(xml, before);
}
