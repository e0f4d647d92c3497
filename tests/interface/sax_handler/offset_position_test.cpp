// CXMLSaxHandler::GetSourceOffset: where the positions are that it answers.
#include <cstdint>

#include "support/random_text.h"
#include "support/recording_handler.h"
#include "support/sanitizers.h"
#include "support/source_offsets.h"
#include "support/testing.h"

using namespace norvask_test;

namespace {

// From memory and from a file.
void ExpectOffsets(const std::string& xml, const std::string& expected) {
    const CSourceOffsets on;
    const TemporaryFile file(".xml", xml);
    COffsetHandler fromMemory, fromFile;
    LoadMemory(xml, fromMemory);
    LoadFile(file.Name(), fromFile);
    EXPECT_EQ(fromMemory.m_Lines, expected);
    EXPECT_EQ(fromFile.m_Lines, expected);
}

// Notes the positions of elements only, of documents that are too large for a transcript.
class CElementOffsets : public CXMLSaxHandler {
public:
    void StartElement(const char*, const char*, const char*, CXMLSaxAttribut**) override {
        m_Offsets.push_back(GetSourceOffset());
    }
    void EndElement(const char*, const char*, const char*) override {
        m_Offsets.push_back(GetSourceOffset());
    }
    std::vector<std::uint64_t> m_Offsets;
};

// A document, and where each of its tags ends.
struct STags {
    std::string xml;
    std::vector<std::uint64_t> ends;

    void Tag(const std::string& tag) {
        xml += tag;
        ends.push_back(xml.size());
    }
};

STags Generated(std::size_t elements, unsigned seed) {
    static const char* const PIECES[] = {
        "text ",    "\xC3\xA9\xC3\xA8", "\xE2\x82\xAC",     "\r\n", "\xF0\x9F\x98\x80", "&amp;",
        "&#x20AC;", "<!-- c -->",       "<![CDATA[ ]] ]]>", "\n\t", "<?p i?>",          "x"};
    RandomText random(seed);
    STags tags;
    tags.Tag("<r>");
    for (std::size_t i = 0; i < elements; ++i) {
        const std::string name = "e" + std::to_string(random.Number(100));
        tags.Tag("<" + name + " k='" + std::string(random.Number(40), 'v') + "\xC3\xA9'>");
        for (std::size_t n = random.Number(12); n > 0; --n)
            tags.xml += PIECES[random.Number(sizeof(PIECES) / sizeof(PIECES[0]))];
        tags.Tag("</" + name + ">");
        if (random.Number(3) == 0) tags.xml += "\r\n";
    }
    tags.Tag("</r>");
    return tags;
}

// The bytes of UTF-16 without a byte order mark.
std::string Utf16Bytes(const std::u16string& units, bool bigEndian) {
    std::string bytes;
    for (const char16_t unit : units) {
        const char high = static_cast<char>(unit >> 8);
        const char low = static_cast<char>(unit & 0xFF);
        bytes += bigEndian ? high : low;
        bytes += bigEndian ? low : high;
    }
    return bytes;
}

}  // namespace

TEST(CallbackOffsetPosition, IsBehindWhatIsReported) {
    const std::string xml = "<r><a/>text<b k='v'>x</b> <![CDATA[y]]></r>\n";
    const std::string expected =
        "0 StartDocument\n3 StartElement r\n7 StartElement a\n7 EndElement a\n"
        "20 Characters \"text\"\n20 StartElement b k=\"v\"\n25 Characters \"x\"\n25 EndElement b\n"
        "39 Characters \" \"\n39 StartCDATA\n39 Characters \"y\"\n39 EndCDATA\n43 EndElement r\n"
        "44 EndDocument\n";
    ExpectOffsets(xml, expected);
}

TEST(CallbackOffsetPosition, CountsBytesRatherThanCharacters) {
    const std::string xml =
        "<?xml version='1.0'?>\n<!-- c -->\n<r xmlns:p='u'>\xC3\xA9<p:a/>\xF0\x9F\x98\x80\r\n"
        "&amp;<b/></r>\n<!-- c -->  ";
    ASSERT_EQ(xml.size(), 88u);
    const std::string expected =
        "0 StartDocument\n48 StartNamespace \"p\"=\"u\"\n48 StartElement r\n"
        "56 Characters \"\xC3\xA9\"\n56 StartElement {u}a=p:a\n56 EndElement {u}a=p:a\n"
        "71 Characters \"\xF0\x9F\x98\x80\\n&\"\n71 StartElement b\n71 EndElement b\n"
        "75 EndElement r\n75 EndNamespace \"p\"\n88 EndDocument\n";
    ExpectOffsets(xml, expected);
}

TEST(CallbackOffsetPosition, CountsBytesInOtherEncodings) {
    const std::string latin = "<?xml version='1.0' encoding='ISO-8859-1'?><r k='\xE9'>\xFC<a/></r>";
    ExpectOffsets(latin,
                  "0 StartDocument\n52 StartElement r k=\"\xC3\xA9\"\n57 Characters \"\xC3\xBC\"\n"
                  "57 StartElement a\n57 EndElement a\n61 EndElement r\n61 EndDocument\n");
    for (const bool bigEndian : {false, true}) {
        const std::string mark = bigEndian ? "\xFE\xFF" : "\xFF\xFE";
        // A byte order mark is none of the document, and is not counted.
        ExpectOffsets(mark + Utf16Bytes(u"<r>\x20AC\xD83D\xDE00<a/></r>", bigEndian),
                      "0 StartDocument\n6 StartElement r\n"
                      "20 Characters \"\xE2\x82\xAC\xF0\x9F\x98\x80\"\n20 StartElement a\n"
                      "20 EndElement a\n28 EndElement r\n28 EndDocument\n");
    }
    ExpectOffsets("\xEF\xBB\xBF<r><a/></r>",
                  "0 StartDocument\n3 StartElement r\n7 StartElement a\n7 EndElement a\n"
                  "11 EndElement r\n11 EndDocument\n");
}

// At every tag, wherever the parts in which the parser reads end.
TEST(CallbackOffsetPosition, IsExactInALargeDocument) {
    const CSourceOffsets on;
    for (const unsigned seed : {1u, 2u}) {
        const STags tags = Generated(60000, seed);
        ASSERT_GT(tags.xml.size(), 3000000u);
        CElementOffsets handler;
        LoadMemory(tags.xml, handler);
        EXPECT_TRUE(handler.m_Offsets == tags.ends);
        TemporaryFile file(".xml", tags.xml);
        CElementOffsets again;
        LoadFile(file.Name(), again);
        EXPECT_TRUE(again.m_Offsets == tags.ends);
    }
}

TEST(CallbackOffsetPosition, NeverGoesBackNorBeyondTheEnd) {
    const CSourceOffsets on;
    const STags tags = Generated(5000, 3);
    COffsetHandler handler;
    LoadMemory(tags.xml, handler);
    ASSERT_GT(handler.m_Offsets.size(), 10000u);
    for (std::size_t i = 1; i < handler.m_Offsets.size(); ++i)
        ASSERT_LE(handler.m_Offsets[i - 1], handler.m_Offsets[i]) << i;
    EXPECT_EQ(handler.m_Offsets.back(), tags.xml.size());
    EXPECT_EQ(handler.GetSourceOffset(), 0u);
}

TEST(CallbackOffsetPosition, MayBeAskedOnceOrOften) {
    const CSourceOffsets on;
    const STags tags = Generated(2000, 4);
    std::size_t count = 0;
    CRecordingHandler handler([&](const std::string& line) {
        if (line.compare(0, 12, "StartElement") != 0 && line.compare(0, 10, "EndElement") != 0)
            return;
        if (count % 97 == 0) {
            const std::uint64_t first = handler.GetSourceOffset();
            EXPECT_EQ(first, tags.ends[count]);
            for (int i = 0; i < 10; ++i)
                EXPECT_EQ(handler.GetSourceOffset(), first);
        }
        ++count;
    });
    LoadMemory(tags.xml, handler);
    EXPECT_EQ(count, tags.ends.size());
}

TEST(CallbackOffsetPosition, RepeatsTheLastAnswerInsideOfAnInternalEntity) {
    const std::string xml = "<!DOCTYPE r [<!ENTITY e 'x<a/>y<a/>'>]>\n<r>1&e;2<b/></r>";
    const std::string expected =
        "0 StartDocument\n12 StartDTD \"r\" public NULL system NULL\n43 StartElement r\n"
        "43 Characters \"1x\"\n43 StartElement a\n43 EndElement a\n43 Characters \"y\"\n"
        "43 StartElement a\n43 EndElement a\n52 Characters \"2\"\n52 StartElement b\n"
        "52 EndElement b\n56 EndElement r\n56 EndDocument\n";
    ExpectOffsets(xml, expected);
}

// The entities are longer than the document, so that positions inside of them would show.
TEST(CallbackOffsetPosition, RepeatsTheLastAnswerInsideOfLongAndNestedEntities) {
    const CSourceOffsets on;
    const std::size_t count = IS_SANITIZED ? 3000 : 20000;
    std::string content = "<?xml encoding='UTF-8'?>";
    for (std::size_t i = 0; i < count; ++i)
        content += "<a>&i;</a>\n";
    TemporaryFile entity(".ent", content);
    const std::string head = std::string("<!DOCTYPE r [<!ENTITY i '<i>x</i>'><!ENTITY e SYSTEM '") +
                             entity.Name() + "'>]>";
    const std::string xml = head + "<r>&i;&e;<b/>&e;</r>";
    for (const bool fromFile : {false, true}) {
        TemporaryFile file(".xml", xml);
        CElementOffsets handler;
        if (fromFile) {
            LoadFile(file.Name(), handler);
        } else {
            LoadMemory(xml, handler);
        }
        std::vector<std::uint64_t> expected;
        const auto add = [&expected](std::size_t times, std::uint64_t offset) {
            expected.insert(expected.end(), times, offset);
        };
        add(1 + 2 + 4 * count, head.size() + 3);
        add(2 + 4 * count, head.size() + 13);
        add(1, xml.size());
        EXPECT_TRUE(handler.m_Offsets == expected);
        EXPECT_EQ(handler.GetSourceOffset(), 0u);
    }
}

TEST(CallbackOffsetPosition, IsZeroInAnEntityWhenNothingWasAskedBefore) {
    const CSourceOffsets on;
    std::uint64_t offset = 77;
    CRecordingHandler handler([&](const std::string& line) {
        if (line == "StartElement a") offset = handler.GetSourceOffset();
    });
    LoadMemory("<!DOCTYPE r [<!ENTITY e '<a/>'>]><r>&e;</r>", handler);
    EXPECT_EQ(offset, 0u);
}
