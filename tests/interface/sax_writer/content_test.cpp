// What a streaming writer puts between tags: text, Base64 and typed values.
#include <climits>
#include <limits>

#include "support/testing.h"
#include "support/unicode.h"
#include "support/writing.h"

using namespace norvask_test;

namespace {

// What the work writes between the tags of an element.
std::string Content(const Step& work) {
    const auto inElement = [&](CXMLSaxWriter& writer) {
        writer.StartElement("r", nullptr);
        work(writer);
        writer.EndElement();
    };
    const std::string body = Written(inElement, true);
    const std::string begin = "\r\n<r>";
    const std::string end = "</r>";
    if (body.size() < begin.size() + end.size() || body.compare(0, begin.size(), begin) != 0 ||
        body.compare(body.size() - end.size(), end.size(), end) != 0) {
        return "not between tags: " + body;
    }
    return body.substr(begin.size(), body.size() - begin.size() - end.size());
}

std::string TextContent(const std::string& text) {
    return Content([&](CXMLSaxWriter& writer) { writer.Characters(text.c_str()); });
}

struct SValue {
    const char* text;
    Step write;
};

std::vector<SValue> Values() {
    return {
        {"2024-05-17", [](CXMLSaxWriter& w) { w.Date(2024, 5, 17); }},
        {"2024-05", [](CXMLSaxWriter& w) { w.Date(2024, 5, -1); }},
        {"2024", [](CXMLSaxWriter& w) { w.Date(2024, -1, -1); }},
        {"--05-17", [](CXMLSaxWriter& w) { w.Date(-1, 5, 17); }},
        {"--05", [](CXMLSaxWriter& w) { w.Date(-1, 5, -1); }},
        {"---07", [](CXMLSaxWriter& w) { w.Date(-1, -1, 7); }},
        {"0000-01-01", [](CXMLSaxWriter& w) { w.Date(0, 1, 1); }},
        {"-005", [](CXMLSaxWriter& w) { w.Date(-5, -1, -1); }},
        {"2024-05-17T10:30:59", [](CXMLSaxWriter& w) { w.DateTime(2024, 5, 17, 10, 30, 59); }},
        {"2024-02-00T00:00:00", [](CXMLSaxWriter& w) { w.DateTime(2024, 2, 0, 0, 0, 0); }},
        {"-001-12-31T23:59:59", [](CXMLSaxWriter& w) { w.DateTime(-1, 12, 31, 23, 59, 59); }},
        {"-2147483648-01-01T00:00:00",
         [](CXMLSaxWriter& w) { w.DateTime(INT_MIN, 1, 1, 0, 0, 0); }},
        {"01:02:03", [](CXMLSaxWriter& w) { w.Time(1, 2, 3); }},
        {"23:59:59", [](CXMLSaxWriter& w) { w.Time(23, 59, 59); }},
        {"0.1", [](CXMLSaxWriter& w) { w.Double(0.1); }},
        {"1e+20", [](CXMLSaxWriter& w) { w.Double(1e20); }},
        {"0.33333333333333", [](CXMLSaxWriter& w) { w.Double(1.0 / 3.0); }},
        {"-0", [](CXMLSaxWriter& w) { w.Double(-0.0); }},
        {"-inf", [](CXMLSaxWriter& w) { w.Double(-std::numeric_limits<double>::infinity()); }},
        {"4.9406564584125e-324", [](CXMLSaxWriter& w) { w.Double(5e-324); }},
        {"0", [](CXMLSaxWriter& w) { w.Long(0); }},
        {"-1234567", [](CXMLSaxWriter& w) { w.Long(-1234567); }},
        {"-9223372036854775808", [](CXMLSaxWriter& w) { w.Long(LONG_MIN); }},
        {"9223372036854775807", [](CXMLSaxWriter& w) { w.Long(LONG_MAX); }},
        {"true", [](CXMLSaxWriter& w) { w.Bool(true, false); }},
        {"false", [](CXMLSaxWriter& w) { w.Bool(false, false); }},
        {"1", [](CXMLSaxWriter& w) { w.Bool(true, true); }},
        {"0", [](CXMLSaxWriter& w) { w.Bool(false, true); }},
    };
}

std::vector<Step> ValuesOutOfRange() {
    static const int dates[][3] = {{10000, 1, 1}, {2024, 0, 1},  {2024, 13, 1}, {2024, 1, 0},
                                   {2024, 1, 32}, {2024, -1, 7}, {-1, -1, -1},  {2024, -2, 1}};
    static const int dateTimes[][6] = {
        {10000, 1, 1, 0, 0, 0}, {2024, 0, 1, 0, 0, 0},  {2024, 13, 1, 0, 0, 0},
        {2024, 1, -1, 0, 0, 0}, {2024, 1, 32, 0, 0, 0}, {2024, 1, 1, 24, 0, 0},
        {2024, 1, 1, -1, 0, 0}, {2024, 1, 1, 0, 60, 0}, {2024, 1, 1, 0, -1, 0},
        {2024, 1, 1, 0, 0, 60}, {2024, 1, 1, 0, 0, -1}};
    static const int times[][3] = {{24, 0, 0}, {-1, 0, 0}, {0, 60, 0},
                                   {0, -1, 0}, {0, 0, 60}, {0, 0, -1}};
    std::vector<Step> steps;
    for (const auto& d : dates)
        steps.push_back([&d](CXMLSaxWriter& w) { w.Date(d[0], d[1], d[2]); });
    for (const auto& d : dateTimes)
        steps.push_back([&d](CXMLSaxWriter& w) { w.DateTime(d[0], d[1], d[2], d[3], d[4], d[5]); });
    for (const auto& t : times)
        steps.push_back([&t](CXMLSaxWriter& w) { w.Time(t[0], t[1], t[2]); });
    return steps;
}

// Shows what reaches its Characters, in brackets.
class CBracketWriter : public CXMLSaxWriter {
public:
    void Characters(const char* text) override {
        m_Received.push_back(text ? text : "NULL");
        CXMLSaxWriter::Characters(("[" + m_Received.back() + "]").c_str());
    }
    std::vector<std::string> m_Received;
};

// Keeps it.
class CSilentWriter : public CXMLSaxWriter {
public:
    void Characters(const char* text) override { m_Received.push_back(text); }
    std::vector<std::string> m_Received;
};

}  // namespace

TEST(WriterContent, EscapesText) {
    EXPECT_EQ(TextContent("a<b & 'c'"), "a&#x3c;b &#x26; &#x27;c&#x27;");
    EXPECT_EQ(TextContent("]]>\""), "]]&#x3e;&#x22;");
    EXPECT_EQ(TextContent(" \t\r\n \x7f"), " \t\r\n \x7f");
    EXPECT_EQ(TextContent("\x01\x08\x0b\x0c\x0e\x1f|"), "|");
    EXPECT_EQ(TextContent("\xC3\xA9\xF0\x9F\x98\x80\xFF"), "\xC3\xA9\xF0\x9F\x98\x80\xEF\xBF\xBD");
    for (int c = 1; c < 256; ++c) {
        const std::string text = std::string("x") + static_cast<char>(c) + "y";
        EXPECT_EQ(TextContent(text), Escaped(text)) << c;
    }
}

TEST(WriterContent, EscapesTextsOfEveryLength) {
    std::string text;
    for (std::size_t length = 0; length < 700; ++length) {
        EXPECT_EQ(TextContent(text), Escaped(text)) << length;
        text += length % 37 == 36 ? '&' : static_cast<char>('a' + length % 26);
    }
    EXPECT_EQ(TextContent(std::string(10000, '&')).size(), 60000u);
}

TEST(WriterContent, EscapesEachTextOnItsOwn) {
    // A character that is cut in two is invalid in both parts.
    EXPECT_EQ(Content([](CXMLSaxWriter& w) {
                  w.Characters("\xC3");
                  w.Characters("\xA9");
              }),
              std::string(REPLACEMENT) + REPLACEMENT);
    EXPECT_EQ(Content([](CXMLSaxWriter& w) {
                  w.Characters("]]");
                  w.Characters(nullptr);
                  w.Characters(">");
              }),
              "]]&#x3e;");
}

TEST(WriterContent, WritesBytesAsBase64InLinesOf60Characters) {
    EXPECT_EQ(Base64("ABC"), "QUJD\n");
    EXPECT_EQ(Base64(std::string(46, '\0')), std::string(60, 'A') + "\nAA==\n");
    const std::string bytes = AllByteValues(456);
    for (std::size_t length = 1; length <= 200; ++length) {
        for (const std::size_t start : {0u, 100u, 200u, 256u}) {
            const std::string part = bytes.substr(start, length);
            EXPECT_EQ(Content([&](CXMLSaxWriter& w) { WriteData(w, part, true); }),
                      "<![CDATA[" + Base64(part) + "]]>");
            EXPECT_EQ(Content([&](CXMLSaxWriter& w) { WriteData(w, part, false); }), Base64(part));
        }
    }
    const std::string large = AllByteValues(1000001);
    EXPECT_TRUE(Content([&](CXMLSaxWriter& w) { WriteData(w, large, true); }) ==
                "<![CDATA[" + Base64(large) + "]]>");
}

TEST(WriterContent, WritesNoBytesForNullOrALengthThatIsNotPositive) {
    const unsigned char bytes[] = {'A', 'B', 'C'};
    const struct {
        const unsigned char* data;
        long length;
    } rows[] = {{nullptr, 0}, {nullptr, 3}, {nullptr, -1},
                {bytes, 0},   {bytes, -1},  {bytes, LONG_MIN}};
    for (const auto& row : rows) {
        EXPECT_EQ(Content([&](CXMLSaxWriter& w) { w.Data(row.data, row.length, true); }),
                  "<![CDATA[]]>");
        EXPECT_EQ(Content([&](CXMLSaxWriter& w) { w.Data(row.data, row.length, false); }), "");
    }
}

TEST(WriterContent, MayBeMixedWithoutLineEnds) {
    EXPECT_EQ(Content([](CXMLSaxWriter& w) {
                  WriteData(w, "A", true);
                  w.Characters("<");
                  w.Long(1);
                  WriteData(w, "B", false);
                  w.Data(nullptr, 0, true);
                  w.Bool(true, false);
              }),
              "<![CDATA[QQ==\n]]>&#x3c;1Qg==\n<![CDATA[]]>true");
}

TEST(WriterContent, WritesBytesThatATreeReadsBack) {
    const std::string bytes = AllByteValues();
    const std::string content = Content([&](CXMLSaxWriter& w) { WriteData(w, bytes, true); });
    EXPECT_EQ(Children(*Load("<r>" + content + "</r>")->GetRoot()), "[" + bytes + "]");
}

TEST(WriterContent, WritesTypedValues) {
    for (const SValue& value : Values())
        EXPECT_EQ(Content(value.write), value.text);
    // One after the other: no value shows in the next.
    std::string expected;
    for (const SValue& value : Values())
        expected += value.text;
    EXPECT_EQ(Content([](CXMLSaxWriter& w) {
                  for (const SValue& value : Values())
                      value.write(w);
              }),
              expected);
}

TEST(WriterContent, WritesTypedValuesOutsideTheRoot) {
    for (const SValue& value : Values())
        EXPECT_EQ(Written(value.write, true), value.text);
}

TEST(WriterContent, PassesTypedValuesThroughAnOverrideOfCharacters) {
    for (const SValue& value : Values()) {
        CBracketWriter writer;
        std::ostringstream out;
        CXMLSaxWriter& base = writer;
        base.StartDocument(&out, true, false);
        base.StartElement("r", nullptr);
        value.write(base);
        base.EndElement();
        base.EndDocument();
        EXPECT_EQ(out.str(), DECLARATION + "\r\n<r>[" + value.text + "]</r>");
        EXPECT_EQ(writer.m_Received, std::vector<std::string>{value.text});

        // The override is called before anything is checked or written.
        CSilentWriter silent;
        value.write(silent);
        EXPECT_EQ(silent.m_Received, std::vector<std::string>{value.text});
    }
}

TEST(WriterContent, DoesNotPassBytesThroughAnOverrideOfCharacters) {
    CBracketWriter writer;
    std::ostringstream out;
    writer.StartDocument(&out, false, false);
    WriteData(writer, "ABC", false);
    WriteData(writer, "ABC", true);
    writer.EndDocument();
    EXPECT_EQ(out.str(), DECLARATION + "QUJD\n<![CDATA[QUJD\n]]>");
    EXPECT_TRUE(writer.m_Received.empty());
}

TEST(WriterContent, RefusesValuesOutOfRangeBeforeAnythingElse) {
    for (const Step& write : ValuesOutOfRange()) {
        CXMLSaxWriter closed;
        EXPECT_NO_CONVERSION(write(closed));

        std::ostringstream out;
        CBracketWriter writer;
        writer.StartDocument(&out, true, false);
        writer.StartElement("r", nullptr);
        EXPECT_NO_CONVERSION(write(writer));
        EXPECT_EQ(out.str(), DECLARATION + "\r\n<r");
        EXPECT_TRUE(writer.m_Received.empty());
        out.setstate(std::ios::failbit);
        EXPECT_NO_CONVERSION(write(writer));
        out.clear();
        // No content has been written, so the element is an empty one.
        writer.EndElement();
        writer.EndDocument();
        EXPECT_EQ(out.str(), DECLARATION + "\r\n<r/>");
    }
}

TEST(WriterContent, LeavesTheSharedResultsOfTheConversionsAlone) {
    const char* const date = XMLConvertDate2Text(1999, 12, 31);
    const char* const dateTime = XMLConvertDateTime2Text(1999, 12, 31, 23, 59, 58);
    const char* const time = XMLConvertTime2Text(23, 59, 58);
    const char* const number = XMLConvertDouble2Text(1.5);
    const char* const whole = XMLConvertLong2Text(77);
    Content([](CXMLSaxWriter& w) {
        for (const SValue& value : Values())
            value.write(w);
    });
    EXPECT_STREQ(date, "1999-12-31");
    EXPECT_STREQ(dateTime, "1999-12-31T23:59:58");
    EXPECT_STREQ(time, "23:59:58");
    EXPECT_STREQ(number, "1.5");
    EXPECT_STREQ(whole, "77");
}

TEST(WriterContent, WritesTheResultsOfTheConversionsThemselves) {
    EXPECT_EQ(Content([](CXMLSaxWriter& w) {
                  w.Characters(XMLConvertLong2Text(5));
                  w.Characters(XMLConvertDate2Text(2024, 1, 2));
              }),
              "52024-01-02");
}
