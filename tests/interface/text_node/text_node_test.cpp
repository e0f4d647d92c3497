// Text nodes: the text, its typed forms, and what a leaf refuses.
#include <climits>

#include "support/testing.h"
#include "support/tree_fixture.h"
#include "support/typed_values.h"

using namespace norvask_test;

namespace {

const STypedCalls<CXMLTextNode> CALLS = {
    &CXMLTextNode::GetText,       &CXMLTextNode::SetText,         &CXMLTextNode::GetDateText,
    &CXMLTextNode::SetDateText,   &CXMLTextNode::GetDateTimeText, &CXMLTextNode::SetDateTimeText,
    &CXMLTextNode::GetTimeText,   &CXMLTextNode::SetTimeText,     &CXMLTextNode::GetDoubleText,
    &CXMLTextNode::SetDoubleText, &CXMLTextNode::GetLongText,     &CXMLTextNode::SetLongText,
    &CXMLTextNode::GetBoolText,   &CXMLTextNode::SetBoolText};

class TextNode : public CTreeFixture {
protected:
    CXMLTextNode& m_Text = *m_Root.CreateTextChild("old");
    CTypedValue<CXMLTextNode> m_Typed{m_Text, CALLS};
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
    EXPECT_EQ(Body(), "<r>a&#x3c;\x7Fz</r>");
}

TEST_F(TextNode, WritesTheReplacementCharacterForInvalidBytes) {
    m_Text.SetText("a\xFFz");
    EXPECT_EQ(Body(), "<r>a\xEF\xBF\xBDz</r>");
}

TEST_F(TextNode, HasNoNameNoAttributesAndNoChildren) {
    ExpectLeaf(m_Text, CXMLNode::NODE_TEXT, m_Root);
}

TEST_F(TextNode, RefusesWhatOnlyElementsCanDo) {
    ExpectLeafRefusals(m_Text, m_Root);
    EXPECT_EQ(Children(m_Root), "'old'");
}

TEST_F(TextNode, IgnoresTheDeletionOfChildren) {
    ExpectLeafDeletesNothing(m_Text, m_Root);
    EXPECT_EQ(Children(m_Root), "'old'");
}

TEST_F(TextNode, StoresAndReadsDates) { m_Typed.ExpectDatesStored(); }

TEST_F(TextNode, StoresAndReadsTimesAndDateTimes) { m_Typed.ExpectTimesStored(); }

TEST_F(TextNode, StoresAndReadsNumbersAndTruth) {
    m_Typed.ExpectDoubleStored(1e20, "1e+20", 1e20);
    m_Typed.ExpectLongsStored();
    m_Typed.ExpectTruthStored();
}

TEST_F(TextNode, KeepsTheOldTextWhenAComponentIsOutOfRange) {
    m_Typed.ExpectKeptWhenOutOfRange();
    EXPECT_STREQ(m_Text.GetText(), "old");
}

TEST_F(TextNode, ReadsTypedValuesAsTheParsersDo) {
    m_Typed.ExpectReadAsTheParsersDo();
    m_Typed.ExpectNothingInAnEmptyText();
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
