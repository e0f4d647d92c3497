// Text nodes: the text, its typed forms, and what a leaf refuses.
#include <climits>

#include "support/testing.h"

using namespace norvask;
using namespace norvask_test;

namespace {

class TextNode : public ::testing::Test {
protected:
    Document m_Document = NewDocumentWithRoot("r");
    CXMLNode& m_Root = *m_Document->GetRoot();
    CXMLTextNode& m_Text = *m_Root.CreateTextChild("old");
};

}  // namespace

TEST_F(TextNode, CopiesTheTextItIsGiven) {
    char text[] = "text";
    m_Text.SetText(text);
    text[0] = 'X';
    EXPECT_STREQ(m_Text.GetText(), "text");
}

TEST_F(TextNode, AnswersAnEmptyTextForNullAndEmpty) {
    EXPECT_STREQ(m_Root.CreateTextChild(nullptr)->GetText(), "");
    EXPECT_STREQ(m_Root.CreateTextChild("")->GetText(), "");
    m_Text.SetText(nullptr);
    EXPECT_STREQ(m_Text.GetText(), "");
    m_Text.SetText("again");
    m_Text.SetText("");
    EXPECT_STREQ(m_Text.GetText(), "");
}

TEST_F(TextNode, KeepsEveryTextAsItIs) {
    const std::string texts[] = {"a<b",
                                 "<&>'\"",
                                 " a ",
                                 "   ",
                                 "\t\r\n",
                                 "&#x3c;",
                                 "]]>",
                                 "\xC3\xBC\xE2\x82\xAC\xF0\x9F\x98\x80",
                                 "\x01\x08\x0B\x0C\x1F",
                                 "\x7F",
                                 "\xFF",
                                 "\xC3",
                                 "a\xED\xA0\x80z",
                                 "%s%n"};
    for (const std::string& text : texts) {
        m_Text.SetText(text.c_str());
        EXPECT_EQ(m_Text.GetText(), text);
        EXPECT_EQ(m_Root.CreateTextChild(text.c_str())->GetText(), text);
    }
}

TEST_F(TextNode, KeepsTextsOfEveryLength) {
    for (std::size_t length = 0; length < 300; ++length) {
        const std::string text(length, 't');
        m_Text.SetText(text.c_str());
        ASSERT_EQ(m_Text.GetText(), text);
        ASSERT_EQ(m_Root.CreateTextChild(text.c_str())->GetText(), text);
    }
    const std::string large(3000000, 't');
    m_Text.SetText(large.c_str());
    EXPECT_EQ(m_Text.GetText(), large);
}

TEST_F(TextNode, LeavesOutControlCharactersOnlyWhenItIsSaved) {
    m_Text.SetText("a\x01<\x1F\x7Fz");
    EXPECT_STREQ(m_Text.GetText(), "a\x01<\x1F\x7Fz");
    EXPECT_EQ(SavedBody(*m_Document), "<r>a&#x3c;\x7Fz</r>");
}

TEST_F(TextNode, WritesTheReplacementCharacterForInvalidBytes) {
    m_Text.SetText("a\xFFz");
    EXPECT_EQ(SavedBody(*m_Document), "<r>a\xEF\xBF\xBDz</r>");
}

TEST_F(TextNode, HasNoNameNoAttributesAndNoChildren) {
    EXPECT_STREQ(m_Text.GetTagName(), "");
    ASSERT_NE(m_Text.GetChildren(), nullptr);
    EXPECT_EQ(m_Text.GetChildren()[0], nullptr);
    EXPECT_EQ(m_Text.GetFirstChild(), nullptr);
    ASSERT_NE(m_Text.GetAttributes(), nullptr);
    EXPECT_EQ(m_Text.GetAttributes()[0], nullptr);
    EXPECT_STREQ(m_Text.GetAttributeValue("a"), "");
    EXPECT_STREQ(m_Text.GetAttributeValue(nullptr), "");
    EXPECT_EQ(m_Text.GetNodeType(), CXMLNode::NODE_TEXT);
    EXPECT_EQ(m_Text.GetParentNode(), &m_Root);
}

TEST_F(TextNode, RefusesWhatOnlyElementsCanDo) {
    CXMLNode& node = m_Text;
    for (const char* argument : {"x", "1x", "", static_cast<const char*>(nullptr)}) {
        EXPECT_NOT_SUPPORTED(node.SetTagName(argument));
        EXPECT_NOT_SUPPORTED(node.CreateChild(argument, nullptr));
        EXPECT_NOT_SUPPORTED(node.CreateChild(argument, &m_Root));
        EXPECT_NOT_SUPPORTED(node.CreateTextChild(argument));
        EXPECT_NOT_SUPPORTED(node.SetAttribute(argument, "v"));
        EXPECT_NOT_SUPPORTED(node.SetAttribute("a", argument));
        EXPECT_NOT_SUPPORTED(node.SetTextChildValue(argument));
    }
    EXPECT_NOT_SUPPORTED(node.CreateBinChild());
    EXPECT_NOT_SUPPORTED(node.GetTextChildValue());
    EXPECT_STREQ(m_Text.GetText(), "old");
    EXPECT_EQ(Children(m_Root), "'old'");
    EXPECT_STREQ(m_Text.GetTagName(), "");
    EXPECT_EQ(m_Text.GetFirstChild(), nullptr);
    EXPECT_EQ(m_Text.GetAttributes()[0], nullptr);
}

TEST_F(TextNode, IgnoresTheDeletionOfChildren) {
    m_Text.DeleteChild(nullptr);
    m_Text.DeleteChild(&m_Text);
    m_Text.DeleteChild(&m_Root);
    EXPECT_EQ(Children(m_Root), "'old'");
}

TEST_F(TextNode, StoresAndReadsDates) {
    const int forms[][3] = {{2024, 5, 17}, {2024, 5, -1}, {2024, -1, -1},
                            {-1, 5, 17},   {-1, 5, -1},   {-1, -1, 17}};
    const char* const texts[] = {"2024-05-17", "2024-05", "2024", "--05-17", "--05", "---17"};
    for (int i = 0; i < 6; ++i) {
        m_Text.SetDateText(forms[i][0], forms[i][1], forms[i][2]);
        EXPECT_STREQ(m_Text.GetText(), texts[i]);
        int year = 0, month = 0, day = 0;
        EXPECT_TRUE(m_Text.GetDateText(year, month, day)) << texts[i];
        EXPECT_EQ(year, forms[i][0]) << texts[i];
        EXPECT_EQ(month, forms[i][1]) << texts[i];
        EXPECT_EQ(day, forms[i][2]) << texts[i];
    }
}

TEST_F(TextNode, StoresAndReadsTimesAndDateTimes) {
    int f[6] = {};
    m_Text.SetDateTimeText(2024, 2, 0, 7, 8, 9);
    EXPECT_STREQ(m_Text.GetText(), "2024-02-00T07:08:09");
    EXPECT_TRUE(m_Text.GetDateTimeText(f[0], f[1], f[2], f[3], f[4], f[5]));
    const int expected[6] = {2024, 2, 0, 7, 8, 9};
    for (int i = 0; i < 6; ++i)
        EXPECT_EQ(f[i], expected[i]) << "field " << i;

    m_Text.SetTimeText(23, 59, 58);
    EXPECT_STREQ(m_Text.GetText(), "23:59:58");
    EXPECT_TRUE(m_Text.GetTimeText(f[0], f[1], f[2]));
    EXPECT_EQ(f[0], 23);
    EXPECT_EQ(f[1], 59);
    EXPECT_EQ(f[2], 58);
}

TEST_F(TextNode, StoresAndReadsNumbersAndTruth) {
    m_Text.SetDoubleText(1e20);
    EXPECT_STREQ(m_Text.GetText(), "1e+20");
    double number = 0;
    EXPECT_TRUE(m_Text.GetDoubleText(number));
    EXPECT_EQ(number, 1e20);

    for (const long value : {0L, -1L, LONG_MAX, LONG_MIN}) {
        m_Text.SetLongText(value);
        EXPECT_EQ(m_Text.GetText(), std::to_string(value));
        long read = 5;
        EXPECT_TRUE(m_Text.GetLongText(read));
        EXPECT_EQ(read, value);
    }

    const char* const texts[] = {"false", "0", "true", "1"};
    for (int i = 0; i < 4; ++i) {
        m_Text.SetBoolText(i >= 2, i % 2 == 1);
        EXPECT_STREQ(m_Text.GetText(), texts[i]);
        bool read = i < 2;
        EXPECT_TRUE(m_Text.GetBoolText(read)) << texts[i];
        EXPECT_EQ(read, i >= 2) << texts[i];
    }
}

TEST_F(TextNode, KeepsTheOldTextWhenAComponentIsOutOfRange) {
    const char* before = m_Text.GetText();
    EXPECT_NO_CONVERSION(m_Text.SetDateText(2024, 0, 1));
    EXPECT_NO_CONVERSION(m_Text.SetDateText(2024, -1, 1));
    EXPECT_NO_CONVERSION(m_Text.SetDateText(-1, -1, -1));
    EXPECT_NO_CONVERSION(m_Text.SetDateTimeText(2024, 1, 1, 24, 0, 0));
    EXPECT_NO_CONVERSION(m_Text.SetDateTimeText(10000, 1, 1, 0, 0, 0));
    EXPECT_NO_CONVERSION(m_Text.SetTimeText(0, 0, 60));
    EXPECT_STREQ(m_Text.GetText(), "old");
    EXPECT_TRUE(Same(m_Text.GetText(), before));
}

TEST_F(TextNode, ReadsTypedValuesAsTheParsersDo) {
    int a = 7, b = 7, c = 7, d = 7, e = 7, f = 7;
    double number = 7;
    long whole = 7;
    bool truth = true;
    EXPECT_FALSE(m_Text.GetDateText(a, b, c));
    EXPECT_FALSE(m_Text.GetDateTimeText(a, b, c, d, e, f));
    EXPECT_FALSE(m_Text.GetTimeText(a, b, c));
    EXPECT_FALSE(m_Text.GetBoolText(truth));
    EXPECT_TRUE(truth);
    EXPECT_TRUE(m_Text.GetDoubleText(number));
    EXPECT_EQ(number, 0.0);
    EXPECT_TRUE(m_Text.GetLongText(whole));
    EXPECT_EQ(whole, 0);

    m_Text.SetText("12.75kg");
    EXPECT_TRUE(m_Text.GetDoubleText(number));
    EXPECT_EQ(number, 12.75);
    EXPECT_TRUE(m_Text.GetLongText(whole));
    EXPECT_EQ(whole, 12);

    m_Text.SetText("");
    number = 7;
    whole = 7;
    EXPECT_FALSE(m_Text.GetDoubleText(number));
    EXPECT_FALSE(m_Text.GetLongText(whole));
    EXPECT_FALSE(m_Text.GetBoolText(truth));
    EXPECT_EQ(number, 7.0);
    EXPECT_EQ(whole, 7);
}

TEST_F(TextNode, StoresBytesAsBase64) {
    const unsigned char bytes[] = {'A', 'B', 'C'};
    m_Text.SetBinaryText(bytes, 3);
    EXPECT_STREQ(m_Text.GetText(), "QUJD\n");
    m_Text.SetBinaryText(bytes, 1);
    EXPECT_STREQ(m_Text.GetText(), "QQ==\n");
}

TEST_F(TextNode, BreaksBase64IntoLinesOf60Characters) {
    const std::string bytes = AllByteValues(100);
    m_Text.SetBinaryText(reinterpret_cast<const unsigned char*>(bytes.data()), 100);
    const std::string text = m_Text.GetText();
    EXPECT_EQ(text.size(), 139u);
    EXPECT_EQ(text.find('\n'), 60u);
    EXPECT_EQ(text.find('\n', 61), 121u);
    EXPECT_EQ(text.find('\n', 122), 138u);
    EXPECT_EQ(text.find('\r'), std::string::npos);
}

TEST_F(TextNode, ReadsBackTheBytesItStored) {
    for (const std::size_t length : {1u, 2u, 3u, 56u, 57u, 58u, 100u, 256u, 100000u}) {
        const std::string bytes = AllByteValues(length);
        m_Text.SetBinaryText(reinterpret_cast<const unsigned char*>(bytes.data()),
                             static_cast<long>(length));
        unsigned char* data = nullptr;
        std::size_t read = 0;
        ASSERT_TRUE(m_Text.GetBinaryText(data, read)) << length << " bytes";
        EXPECT_EQ(std::string(reinterpret_cast<char*>(data), read), bytes) << length << " bytes";
        EXPECT_TRUE(Same(data, CXMLSaxHandler::m_pBinBlock));
    }
}

TEST_F(TextNode, StoresAnEmptyTextForNoBytes) {
    const unsigned char byte = 'A';
    const struct {
        const unsigned char* data;
        long length;
    } rows[] = {{&byte, 0}, {&byte, -1}, {&byte, LONG_MIN}, {nullptr, 5}, {nullptr, 0}};
    for (const auto& row : rows) {
        m_Text.SetText("old");
        m_Text.SetBinaryText(row.data, row.length);
        EXPECT_STREQ(m_Text.GetText(), "") << "length " << row.length;
        unsigned char* data = nullptr;
        std::size_t read = 77;
        EXPECT_FALSE(m_Text.GetBinaryText(data, read));
        EXPECT_EQ(data, nullptr);
        EXPECT_EQ(read, 77u);
    }
}

TEST_F(TextNode, HoldsNoBytesWhenItsTextIsNoBase64) {
    unsigned char* data = nullptr;
    std::size_t length = 0;
    for (const char* text : {"old", "QUJ", "QUJD=", "\xC3\xBC\xC3\xBC"}) {
        m_Text.SetText(text);
        EXPECT_FALSE(m_Text.GetBinaryText(data, length)) << text;
    }
    m_Text.SetText(" QUJD\r\n");
    EXPECT_TRUE(m_Text.GetBinaryText(data, length));
    EXPECT_EQ(length, 3u);
}
