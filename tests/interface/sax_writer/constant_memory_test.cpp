// Documents without end: a writer keeps the names of the open elements and nothing else. Nothing is
// timed; what is not linear does not end.
#include <ostream>

#include "support/heap.h"
#include "support/sanitizers.h"
#include "support/small_stack.h"
#include "support/streams.h"
#include "support/testing.h"
#include "support/writing.h"

using namespace norvask_test;

namespace {

constexpr int ELEMENTS = IS_SANITIZED ? 300000 : 10000000;
constexpr std::size_t LEVELS = IS_SANITIZED ? 100000 : 1000000;
constexpr int DOCUMENTS = IS_SANITIZED ? 3000 : 100000;
constexpr std::size_t LONG = 10000000;

}  // namespace

TEST(WriterMemory, StaysWhereItIsWhileMillionsOfElementsAreWritten) {
    CAttributes attributes = {{"id", "1"}, {"kind", "x<y"}};
    const unsigned char bytes[] = {'A', 'B', 'C'};
    CCountingBuffer buffer;
    std::ostream out(&buffer);
    CXMLSaxWriter writer;
    writer.StartDocument(&out, true, false);
    writer.StartElement("root", nullptr);
    const std::size_t begin = buffer.Count();
    std::size_t record = 0;
    std::size_t before = 0;
    for (int i = 0; i < ELEMENTS; i += 5) {
        writer.StartElement("record", attributes.Get());
        WriteElement(writer, "name", "a text & more");
        writer.StartElement("number", nullptr);
        writer.Long(100000 + i % 100000);
        writer.EndElement();
        writer.StartElement("data", nullptr);
        writer.Data(bytes, 3, true);
        writer.EndElement();
        WriteElement(writer, "empty");
        writer.EndElement();
        if (i == 0) {
            record = buffer.Count() - begin - 1;  // but for the ">" of the root
            before = HeapInUse();
        }
    }
    ExpectHeapAsBefore(before);
    writer.EndElement();
    writer.EndDocument();
    ExpectHeapAsBefore(before);
    EXPECT_EQ(record, std::string("\r\n\t<record id=\"1\" kind=\"x&#x3c;y\">"
                                  "\r\n\t\t<name>a text &#x26; more</name>"
                                  "\r\n\t\t<number>100000</number>"
                                  "\r\n\t\t<data><![CDATA[QUJD\n]]></data>"
                                  "\r\n\t\t<empty/>\r\n\t</record>")
                          .size());
    EXPECT_EQ(buffer.Count(),
              begin + 1 + record * (ELEMENTS / 5) + std::string("\r\n</root>").size());
}

TEST(WriterMemory, StaysWhereItIsWhileManyDocumentsAreWritten) {
    CCountingBuffer buffer;
    std::ostream out(&buffer);
    std::size_t before = 0;
    CXMLSaxWriter writer;
    for (int i = 0; i < DOCUMENTS; ++i) {
        writer.StartDocument(&out, i % 2 == 0, false);
        writer.StartElement("a", nullptr);
        EXPECT_INVALID_NAME(writer.StartElement("1", nullptr), "1");
        writer.EndElement();
        writer.EndDocument();
        if (i == 100) before = HeapInUse();
    }
    ExpectHeapAsBefore(before);
}

TEST(WriterMemory, HoldsTheNamesOfAMillionLevelsAndGivesThemBack) {
    OnSmallStack([] {
        const std::string name = "level";
        CCountingBuffer buffer;
        std::ostream out(&buffer);
        const std::size_t before = HeapInUse();
        {
            CXMLSaxWriter writer;
            writer.StartDocument(&out, false, false);
            const std::size_t begin = buffer.Count();
            for (std::size_t i = 0; i < LEVELS; ++i)
                writer.StartElement(name.c_str(), nullptr);
            EXPECT_EQ(buffer.Count() - begin, LEVELS * (name.size() + 2) - 1);
            if (!IS_SANITIZED) {
                // With doubling and all, not much more than the names.
                EXPECT_LT(HeapInUse(), before + LEVELS * 64);
            }
            for (std::size_t i = 0; i < LEVELS; ++i)
                writer.EndElement();
            EXPECT_EQ(buffer.Count() - begin, LEVELS * (2 * name.size() + 5) - name.size() - 2);
            EXPECT_WRONG_FORMAT(writer.EndElement(), 1);
            writer.EndDocument();
            ExpectHeapAsBefore(before);
        }
        ExpectHeapAsBefore(before);
    });
}

TEST(WriterMemory, EndsWithAMillionLevelsOpen) {
    OnSmallStack([] {
        CCountingBuffer buffer;
        std::ostream out(&buffer);
        const std::size_t before = HeapInUse();
        {
            CXMLSaxWriter writer;
            writer.StartDocument(&out, false, false);
            for (std::size_t i = 0; i < LEVELS; ++i)
                writer.StartElement("n", nullptr);
        }
        ExpectHeapAsBefore(before);
    });
}

TEST(WriterMemory, HoldsEveryNameOfADeepDocument) {
    std::string expected = DECLARATION;
    std::ostringstream out;
    CXMLSaxWriter writer;
    writer.StartDocument(&out, false, false);
    const auto name = [](std::size_t i) {
        return "n" + std::to_string(i) + std::string(i % 50, 'x');
    };
    constexpr std::size_t levels = LEVELS / 10;
    for (std::size_t i = 0; i < levels; ++i) {
        writer.StartElement(name(i).c_str(), nullptr);
        expected += "<" + name(i) + (i + 1 < levels ? ">" : "/>");
    }
    for (std::size_t i = levels; i-- > 0;) {
        writer.EndElement();
        if (i + 1 < levels) expected += "</" + name(i) + ">";
    }
    writer.EndDocument();
    EXPECT_TRUE(SameBytes(out.str(), expected));
}

TEST(WriterMemory, IsEnoughForThousandsOfIndentedLevels) {
    constexpr std::size_t levels = 3000;
    std::string expected = DECLARATION;
    std::ostringstream out;
    CXMLSaxWriter writer;
    writer.StartDocument(&out, true, false);
    for (std::size_t i = 0; i < levels; ++i) {
        writer.StartElement("n", nullptr);
        expected += "\r\n" + std::string(i, '\t') + (i + 1 < levels ? "<n>" : "<n/>");
    }
    for (std::size_t i = levels; i-- > 0;) {
        writer.EndElement();
        if (i + 1 < levels) expected += "\r\n" + std::string(i, '\t') + "</n>";
    }
    writer.EndDocument();
    EXPECT_TRUE(SameBytes(out.str(), expected));
}

TEST(WriterMemory, IsEnoughForVeryLongNamesAndTexts) {
    const std::string name(LONG, 'n');
    const std::string text(LONG, 't');
    std::string marked = text;
    for (std::size_t i = 0; i < marked.size(); i += 1000)
        marked[i] = '&';
    std::string escaped;
    for (const char c : marked)
        escaped += c == '&' ? "&#x26;" : std::string(1, c);
    const std::size_t before = HeapInUse();
    {
        std::ostringstream out;
        CXMLSaxWriter writer;
        writer.StartDocument(&out, true, false);
        {
            CAttributes attributes = {{name.c_str(), text.c_str()}};
            writer.StartElement(name.c_str(), attributes.Get());
        }
        writer.Characters(marked.c_str());
        writer.EndElement();
        EXPECT_TRUE(SameBytes(out.str(), DECLARATION + "\r\n<" + name + " " + name + "=\"" + text +
                                             "\">" + escaped + "</" + name + ">"));
        out.str("");
        WriteData(writer, text, true);
        EXPECT_TRUE(SameBytes(out.str(), "<![CDATA[" + Base64(text) + "]]>"));
        out.str("");
        const std::string refused = name + " ";
        EXPECT_INVALID_NAME(writer.StartElement(refused.c_str(), nullptr), name.substr(0, 255));
        EXPECT_EQ(out.str(), "");
        writer.EndDocument();
    }
    ExpectHeapAsBefore(before);
}
