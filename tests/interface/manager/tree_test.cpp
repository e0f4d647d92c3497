// What a loaded tree looks like: text and whitespace, references, CDATA sections, comments, size.
#include "support/testing.h"
#include "support/threads.h"

using namespace norvask_test;

namespace {

// The one child of the root if it is of this type, else NULL.
CXMLNode* OnlyChild(const Document& document, CXMLNode::NodeType type) {
    CXMLNode** children = document->GetRoot()->GetChildren();
    if (!children[0] || children[1] || children[0]->GetNodeType() != type) return nullptr;
    return children[0];
}

std::string OnlyText(const Document& document) {
    CXMLNode* child = OnlyChild(document, CXMLNode::NODE_TEXT);
    return child ? static_cast<CXMLTextNode*>(child)->GetText() : "no single text";
}

}  // namespace

TEST(LoadTree, MakesElementsInDocumentOrder) {
    ExpectTrees({
        {"<r/>", "r()"},
        {"<r></r>", "r()"},
        {"<r ></r >", "r()"},
        {"<r><a/><b><c/></b><a/></r>", "r(a(), b(c()), a())"},
        {"<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\r\n<r/>\r\n\r\n", "r()"},
        {"\n \t<r/>\n ", "r()"},
    });
}

TEST(LoadTree, DropsTextThatIsOnlyLayout) {
    ExpectTrees({
        {"<r>\n</r>", "r()"},
        {"<r>\t</r>", "r()"},
        {"<r>\r\n</r>", "r()"},
        {"<r> \t </r>", "r()"},
        {"<r>\n    \n</r>", "r()"},
        {"<r>\n\t<a/>\n\t<b/>\n</r>", "r(a(), b())"},
        {"<r>&#13;</r>", "r()"},
        {"<r>&#10;</r>", "r()"},
        {"<r> &#9; </r>", "r()"},
        {"<r>\n<a>\n</a>\n</r>", "r(a())"},
    });
}

TEST(LoadTree, KeepsBlanksThatStandWithoutALineEndOrTab) {
    ExpectTrees({
        {"<r> </r>", "r(\" \")"},
        {"<r>   </r>", "r(\"   \")"},
        {"<r>&#32;</r>", "r(\" \")"},
        {"<r> <a/> <b/>  </r>", "r(\" \", a(), \" \", b(), \"  \")"},
        {"<r>\n<a/> <b/>\n</r>", "r(a(), \" \", b())"},
    });
}

TEST(LoadTree, KeepsTextUntrimmedWithItsWhitespace) {
    ExpectTrees({
        {"<r>text</r>", "r(\"text\")"},
        {"<r>  x </r>", "r(\"  x \")"},
        {"<r>\n\tx\n</r>", "r(\"\\n\\tx\\n\")"},
        {"<r>\n.</r>", "r(\"\\n.\")"},
        {"<r>\xC2\xA0</r>", "r(\"\xC2\xA0\")"},
        {"<r>\n&#xA0;</r>", "r(\"\\n\xC2\xA0\")"},
        {"<r>\xE3\x80\x80\n</r>", "r(\"\xE3\x80\x80\\n\")"},
        {"<r>\xE2\x80\xA8</r>", "r(\"\xE2\x80\xA8\")"},
        {"<r>\xC2\x85</r>", "r(\"\xC2\x85\")"},
        {"<r>\x7F</r>", "r(\"\\x7f\")"},
    });
}

TEST(LoadTree, SeesLineEndsAsTheParserNormalisesThem) {
    ExpectTrees({
        {"<r>a\r\nb\rc\nd\r\r\ne</r>", "r(\"a\\nb\\nc\\nd\\n\\ne\")"},
        {"<r>a&#13;&#10;b</r>", "r(\"a\\r\\nb\")"},
        {"<?xml version=\"1.1\"?><r>a\xC2\x85"
         "b\xE2\x80\xA8"
         "c</r>",
         "r(\"a\\nb\\nc\")"},
        {"<?xml version=\"1.1\"?><r>\xC2\x85</r>", "r()"},
        {"<?xml version=\"1.1\"?><r>&#x85;</r>", "r(\"\xC2\x85\")"},
    });
}

TEST(LoadTree, MakesOneTextOfEachRunOfMixedContent) {
    ExpectTrees({
        {"<r>one<a/>two<b>three</b>four</r>", "r(\"one\", a(), \"two\", b(\"three\"), \"four\")"},
        {"<r>\n one<a/>\n<b/>two</r>", "r(\"\\n one\", a(), b(), \"two\")"},
        {"<r><a/>x</r>", "r(a(), \"x\")"},
        {"<r>x<a/></r>", "r(\"x\", a())"},
    });
}

TEST(LoadTree, JoinsTheRunsAtReferences) {
    ExpectTrees({
        {"<r>a&amp;b</r>", "r(\"a&b\")"},
        {"<r>&lt;&gt;&amp;&apos;&quot;</r>", "r(\"<>&'\\\"\")"},
        {"<r>&#65;&#x42;C</r>", "r(\"ABC\")"},
        {"<r>&#x1F600;&#128512;</r>", "r(\"\xF0\x9F\x98\x80\xF0\x9F\x98\x80\")"},
        {"<r>&#x10FFFF;</r>", "r(\"\xF4\x8F\xBF\xBF\")"},
        {"<r>&amp;lt;</r>", "r(\"&lt;\")"},
        {"<r>x&amp;<a/>&amp;y</r>", "r(\"x&\", a(), \"&y\")"},
        {"<r> &#32; </r>", "r(\"   \")"},
        {"<r> &#x9;&#32;</r>", "r()"},
        {"<r> &amp; </r>", "r(\" & \")"},
        {"<?xml version=\"1.1\"?><r>&#1;&#31;</r>", "r(\"\\x01\\x1f\")"},
    });
}

TEST(LoadTree, LeavesNoTraceOfCommentsAndInstructionsAndJoinsTheTextAroundThem) {
    ExpectTrees({
        {"<!-- a --><?p i?><r/><!-- b --><?p?>", "r()"},
        {"<r><!-- a --></r>", "r()"},
        {"<r>one<!-- a -->two<?p i?>three</r>", "r(\"onetwothree\")"},
        {"<r>one <!-- a --> two</r>", "r(\"one  two\")"},
        {"<r>\n<!-- a -->\n</r>", "r()"},
        {"<r> <!-- a --> </r>", "r(\"  \")"},
        {"<r> <!-- a -->\t</r>", "r()"},
        {"<r><!-- <a/> & --><?p <a/> & ?></r>", "r()"},
    });
}

TEST(LoadTree, DecodesCdataSectionsThatHoldBase64) {
    ExpectTrees({
        {"<r><![CDATA[AAECAw==]]></r>", "r(#00010203)"},
        {"<r><![CDATA[/+8=]]></r>", "r(#ffef)"},
        {"<r><![CDATA[ABCD]]></r>", "r(#001083)"},
        {"<r><![CDATA[QQ==\n]]></r>", "r(#41)"},
        {"<r><![CDATA[\r\n\tQQ==\r\n]]></r>", "r(#41)"},
        {"<r><![CDATA[Q Q = =]]></r>", "r(#41)"},
        {"<r><![CDATA[AAAA\nBBBB]]></r>", "r(#000000041041)"},
        // Words that happen to be Base64 are decoded like everything else.
        {"<r><![CDATA[word]]></r>", "r(#c28add)"},
        {"<r><![CDATA[1234]]></r>", "r(#d76df8)"},
    });
}

TEST(LoadTree, KeepsCdataSectionsThatHoldNoBase64AsText) {
    ExpectTrees({
        {"<r><![CDATA[a<b>&amp;c]]></r>", "r(\"a<b>&amp;c\")"},
        {"<r><![CDATA[word!]]></r>", "r(\"word!\")"},
        {"<r><![CDATA[words]]></r>", "r(\"words\")"},
        {"<r><![CDATA[QQ=]]></r>", "r(\"QQ=\")"},
        {"<r><![CDATA[QQ]]></r>", "r(\"QQ\")"},
        {"<r><![CDATA[=]]></r>", "r(\"=\")"},
        {"<r><![CDATA[====]]></r>", "r(\"====\")"},
        {"<r><![CDATA[QR==]]></r>", "r(\"QR==\")"},
        {"<r><![CDATA[QQ==QQ==]]></r>", "r(\"QQ==QQ==\")"},
        {"<r><![CDATA[AA-_]]></r>", "r(\"AA-_\")"},
        {"<r><![CDATA[ x\n]]></r>", "r(\" x\\n\")"},
    });
}

TEST(LoadTree, KeepsCdataSectionsOfWhitespaceWhateverTheyHold) {
    ExpectTrees({
        {"<r><![CDATA[ ]]></r>", "r(\" \")"},
        {"<r><![CDATA[\n]]></r>", "r(\"\\n\")"},
        {"<r><![CDATA[\n\t ]]></r>", "r(\"\\n\\t \")"},
        {"<r>\n<![CDATA[\n]]>\n</r>", "r(\"\\n\")"},
    });
}

TEST(LoadTree, MakesNoChildOfAnEmptyCdataSection) {
    ExpectTrees({
        {"<r><![CDATA[]]></r>", "r()"},
        {"<r><![CDATA[]]><![CDATA[]]></r>", "r()"},
        {"<r>a<![CDATA[]]>b</r>", "r(\"a\", \"b\")"},
        {"<r><a/><![CDATA[]]><b/></r>", "r(a(), b())"},
    });
}

// Such a unit has a low byte that looks like a Base64 digit or lies behind the digits' table.
TEST(LoadTree, TakesACdataSectionWithAnythingOutsideAsciiAsText) {
    ExpectTrees({
        {"<r><![CDATA[\xC3\xA4\xC3\xB6\xC3\xBC\xC3\x9F]]></r>",
         "r(\"\xC3\xA4\xC3\xB6\xC3\xBC\xC3\x9F\")"},
        {"<r><![CDATA[\xC5\x81\xC5\x81\xC5\x81\xC5\x81]]></r>",
         "r(\"\xC5\x81\xC5\x81\xC5\x81\xC5\x81\")"},
        {"<r><![CDATA[AAA\xC5\x81]]></r>", "r(\"AAA\xC5\x81\")"},
        {"<r><![CDATA[QQ\xE2\x84\xBD\xE2\x84\xBD]]></r>", "r(\"QQ\xE2\x84\xBD\xE2\x84\xBD\")"},
        {"<r><![CDATA[AAAA\xC4\xA0]]></r>", "r(\"AAAA\xC4\xA0\")"},
        {"<r><![CDATA[AA\xF0\x9F\x98\x80]]></r>", "r(\"AA\xF0\x9F\x98\x80\")"},
        {"<r><![CDATA[\xEF\xBF\xBD]]></r>", "r(\"\xEF\xBF\xBD\")"},
        {"<r><![CDATA[\xC2\xA0]]></r>", "r(\"\xC2\xA0\")"},
        {"<r><![CDATA[AAA\x7F]]></r>", "r(\"AAA\\x7f\")"},
    });
}

TEST(LoadTree, NeverMergesACdataSectionWithWhatStandsBesideIt) {
    ExpectTrees({
        {"<r>a<![CDATA[!]]>b</r>", "r(\"a\", \"!\", \"b\")"},
        {"<r><![CDATA[!]]><![CDATA[?]]></r>", "r(\"!\", \"?\")"},
        {"<r><![CDATA[AAAA]]><![CDATA[QQ==]]></r>", "r(#000000, #41)"},
        {"<r>x<![CDATA[AAAA]]>y<a/><![CDATA[<]]></r>", "r(\"x\", #000000, \"y\", a(), \"<\")"},
        {"<r>\n<![CDATA[AAAA]]>\n</r>", "r(#000000)"},
        {"<r> <![CDATA[AAAA]]> </r>", "r(\" \", #000000, \" \")"},
        // Together these would be Base64, or an entity.
        {"<r>AA<![CDATA[AA]]></r>", "r(\"AA\", \"AA\")"},
        {"<r>&amp;<![CDATA[lt;]]></r>", "r(\"&\", \"lt;\")"},
    });
}

TEST(LoadTree, ReadsTheBracketsAroundTheEndOfACdataSection) {
    ExpectTrees({
        {"<r><![CDATA[]]]></r>", "r(\"]\")"},
        {"<r><![CDATA[]]]]></r>", "r(\"]]\")"},
        {"<r><![CDATA[]>]]></r>", "r(\"]>\")"},
        {"<r><![CDATA[a]]]]><![CDATA[>b]]></r>", "r(\"a]]\", \">b\")"},
        {"<r><![CDATA[]] >]]></r>", "r(\"]] >\")"},
        {"<r><![CDATA[<![CDATA[]]></r>", "r(\"<![CDATA[\")"},
        {"<r>]]&gt;</r>", "r(\"]]>\")"},
        {"<r>] ]></r>", "r(\"] ]>\")"},
    });
}

// The parser hands long texts over in pieces, which may fall between the halves of a pair.
TEST(LoadTree, KeepsALongTextWholeWhereverThePartsOfTheParserEnd) {
    const std::string face = "\xF0\x9F\x98\x80";
    for (std::size_t ahead = 0; ahead < 4; ++ahead) {
        std::string text(ahead, 'a');
        for (int i = 0; i < 50000; ++i)
            text += face;
        EXPECT_TRUE(OnlyText(LoadMemory("<r>" + text + "</r>")) == text) << ahead << " ahead";
        EXPECT_TRUE(OnlyText(LoadMemory("<r><![CDATA[" + text + "]]></r>")) == text)
            << ahead << " ahead in CDATA";
        Document value = LoadMemory("<r k=\"" + text + "\"/>");
        EXPECT_TRUE(value->GetRoot()->GetAttributeValue("k") == text)
            << ahead << " ahead in a value";
    }
}

TEST(LoadTree, JoinsHundredsOfThousandsOfReferencesIntoOneText) {
    const int count = 400000;
    std::string xml = "<r>";
    std::string text;
    for (int i = 0; i < count; ++i) {
        xml += i % 2 ? "&amp;x" : "&#8364;";
        text += i % 2 ? "&x" : "\xE2\x82\xAC";
    }
    EXPECT_TRUE(OnlyText(LoadMemory(xml + "</r>")) == text);
}

TEST(LoadTree, DecodesALargeBlock) {
    Document document = NewDocumentWithRoot("r");
    std::string bytes;
    unsigned value = 1;
    for (int i = 0; i < 1000003; ++i) {
        value = value * 1664525u + 1013904223u;
        bytes += static_cast<char>(value >> 24);
    }
    document->GetRoot()->CreateBinChild()->SetData(
        reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
    Document loaded = LoadMemory(Saved(document));
    CXMLNode* child = OnlyChild(loaded, CXMLNode::NODE_BINARY);
    ASSERT_NE(child, nullptr);
    const unsigned char* data = nullptr;
    std::size_t length = 0;
    static_cast<CXMLBinNode*>(child)->GetData(data, length);
    EXPECT_TRUE(std::string(reinterpret_cast<const char*>(data), length) == bytes);
}

TEST(LoadTree, LoadsDeepAndWideDocuments) {
    // No deeper: the parser looks for a namespace through all open elements.
    const int deep = 5000;
    std::string xml;
    for (int i = 0; i < deep; ++i)
        xml += "<e>";
    for (int i = 0; i < deep; ++i)
        xml += "</e>";
    Document document = LoadMemory(xml);
    int levels = 0;
    for (CXMLNode* node = document->GetRoot(); node; node = node->GetFirstChild())
        ++levels;
    EXPECT_EQ(levels, deep);

    const int wide = 300000;
    xml = "<r>";
    for (int i = 0; i < wide; ++i)
        xml += "<e/>";
    document = LoadMemory(xml + "</r>");
    int children = 0;
    while (document->GetRoot()->GetChildren()[children])
        ++children;
    EXPECT_EQ(children, wide);

    const int attributes = 20000;
    xml = "<r";
    for (int i = 0; i < attributes; ++i)
        xml += " a" + std::to_string(i) + "=\"v\"";
    document = LoadMemory(xml + "/>");
    int count = 0;
    for (; document->GetRoot()->GetAttributes()[count]; ++count) {
        ASSERT_EQ(document->GetRoot()->GetAttributes()[count]->GetName(),
                  "a" + std::to_string(count));
    }
    EXPECT_EQ(count, attributes);
}

TEST(LoadTree, GivesDocumentsThatAreIndependentOfTheBufferAndOfEachOther) {
    std::string xml = "<r k=\"v\">text<![CDATA[AAAA]]></r>";
    CXMLManager& manager = CXMLManager::GetInstance();
    auto* bytes = reinterpret_cast<unsigned char*>(&xml[0]);
    const auto length = static_cast<unsigned int>(xml.size());
    const std::string before = xml;
    Document first(manager.LoadDocument(bytes, length, false, false, nullptr, false, false));
    Document second(manager.LoadDocument(bytes, length, false, false, nullptr, false, false));
    EXPECT_EQ(xml, before);
    xml.assign(xml.size(), '#');
    first->GetRoot()->SetTagName("changed");
    EXPECT_EQ(TreeText(second), "r k=\"v\"(\"text\", #000000)");
    second.reset();
    EXPECT_EQ(TreeText(first), "changed k=\"v\"(\"text\", #000000)");
}

TEST(LoadTree, LoadsOnSeveralThreadsAtOnce) {
    OnThreads([](int thread) {
        const std::string name = "e" + std::to_string(thread);
        const std::string xml =
            "<" + name + " k='\xC3\xA9'>&amp;<a>text</a><![CDATA[QQ==]]></" + name + ">";
        const std::string tree = name + " k=\"\xC3\xA9\"(\"&\", a(\"text\"), #41)";
        for (int round = 0; round < 300; ++round) {
            const Document document = LoadMemory(xml);
            ASSERT_EQ(TreeText(document), tree);
            ASSERT_EQ(TreeText(LoadMemory(Saved(document, round % 2 == 0))), tree);
            EXPECT_LOAD_ERROR(LoadMemory("<" + name + ">"), "Memfile", 1,
                              "input ended before all started tags were ended; last tag started "
                              "is '" +
                                  name + "'");
        }
    });
}

TEST(LoadTree, ReadsTheGivenLengthOnly) {
    std::string xml = "<r>text</r>behind the document";
    Document document(LoadFrom(SLoad(), reinterpret_cast<unsigned char*>(&xml[0]), 11u));
    EXPECT_EQ(TreeText(document), "r(\"text\")");
}
