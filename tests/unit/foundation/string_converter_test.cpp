// CStringConverter, the plain way, and the fast ways beside it: same answers, same bytes.
#include "foundation/string_converter.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "foundation/known_text.h"
#include "support/random_text.h"
#include "write/output.h"

namespace norvask {
namespace {

std::string EscapedPlainly(const std::string& text) {
    CStringConverter converter(text.c_str());
    char* data = nullptr;
    std::size_t bytes = 0;
    converter.GetEscapedUTF8(data, bytes);
    return std::string(data, bytes);
}

std::string EscapedFast(const std::string& text, std::size_t before = 0) {
    std::ostringstream out;
    char buffer[COutput::SMALL];
    COutput output(out, buffer, sizeof(buffer));
    const std::string filler(before, 'x');
    output.Text(JudgeText(filler.c_str()));
    output.Text(text.c_str());
    output.Flush();
    return out.str().substr(before);
}

bool IsName(const char* text) { return JudgeName(text).Is(KNOWN_NAME); }

TEST(StringConverter, EscapesMarkupAndDropsControlCharacters) {
    struct Row {
        const char* text;
        const char* escaped;
    };
    const Row rows[] = {
        {"", ""},
        {"a<b & 'c'", "a&#x3c;b &#x26; &#x27;c&#x27;"},
        {"<>&'\"", "&#x3c;&#x3e;&#x26;&#x27;&#x22;"},
        {"a\x01"
         "b\x08"
         "c\x0b"
         "d\x0c"
         "e\x0e"
         "f\x1f"
         "g",
         "abcdefg"},
        {"\t\n\r", "\t\n\r"},
        {"\x7f", "\x7f"},
        {"\xC3\xBC\xE2\x82\xAC\xF0\x9F\x98\x80", "\xC3\xBC\xE2\x82\xAC\xF0\x9F\x98\x80"},
        {"a\xFF"
         "b",
         "a\xEF\xBF\xBD"
         "b"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(EscapedPlainly(row.text), row.escaped);
        EXPECT_EQ(EscapedFast(row.text), row.escaped);
    }
}

TEST(StringConverter, TenThousandAmpersandsBecomeSixtyThousandBytes) {
    const std::string text(10000, '&');
    const std::string escaped = EscapedPlainly(text);
    EXPECT_EQ(escaped.size(), 60000U);
    EXPECT_EQ(EscapedFast(text), escaped);
}

TEST(StringConverter, TheFastWayWritesTheSameBytesForGeneratedText) {
    norvask_test::RandomText random(3);
    for (int i = 0; i < 4000; ++i) {
        const std::string text = random.Bytes(random.Number(200));
        ASSERT_EQ(EscapedFast(text), EscapedPlainly(text)) << "text " << i;
    }
}

TEST(StringConverter, TheFastWayWritesTheSameBytesWhereverItsBufferEnds) {
    norvask_test::RandomText random(4);
    const std::string text = random.Bytes(64);
    const std::string expected = EscapedPlainly(text);
    for (std::size_t before = 8000; before < 8300; ++before) {
        ASSERT_EQ(EscapedFast(text, before), expected) << "behind " << before << " bytes";
    }
    const std::string longText = random.Bytes(50000);
    EXPECT_EQ(EscapedFast(longText), EscapedPlainly(longText));
}

TEST(StringConverter, JudgesNames) {
    struct Row {
        const char* name;
        bool valid;
    };
    const Row rows[] = {
        {"", false},
        {"1a", false},
        {"a b", false},
        {"a:b", true},
        {"_x-1.2", true},
        {":", true},
        {"-a", false},
        {".a", false},
        {"a<", false},
        {"a/b", false},
        {"\xC3\xA9t\xC3\xA9", true},
        {"a\xC2\xB7", true},
        {"\xC2\xB7"
         "a",
         false},
        {"a\xC3\x97", false},
        {"a\xFF", true},
        {"a\xF0\x9F\x98\x80", false},
        {"a\n", false},
        {"xml", true},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(CStringConverter(row.name).IsValidName(), row.valid) << row.name;
        EXPECT_EQ(IsName(row.name), row.valid) << row.name;
    }
    EXPECT_FALSE(IsName(nullptr));
    EXPECT_FALSE(CStringConverter(nullptr).IsValidName());
}

TEST(StringConverter, TheFastWayJudgesGeneratedNamesAlike) {
    norvask_test::RandomText random(5);
    int valid = 0;
    for (int i = 0; i < 4000; ++i) {
        const std::string name = random.Bytes(1 + random.Number(6));
        const bool plain = CStringConverter(name.c_str()).IsValidName();
        ASSERT_EQ(IsName(name.c_str()), plain) << name;
        valid += plain ? 1 : 0;
    }
    for (int c = 1; c < 128; ++c) {
        const std::string first(1, static_cast<char>(c));
        ASSERT_EQ(IsName(first.c_str()), CStringConverter(first.c_str()).IsValidName()) << c;
        const std::string second = "a" + first;
        ASSERT_EQ(IsName(second.c_str()), CStringConverter(second.c_str()).IsValidName()) << c;
    }
    EXPECT_GT(valid, 400);
    EXPECT_LT(valid, 3900);
}

TEST(StringConverter, TellsLayoutFromContent) {
    struct Row {
        const char* text;
        bool layout;
    };
    const Row rows[] = {
        {"", true},     {"\n", true}, {" \t ", true},        {"\r\n\t", true}, {"   ", false},
        {" x ", false}, {" ", false}, {"\n\xC2\xA0", false}, {"\v", false},    {"\tx", false},
    };
    for (const Row& row : rows) {
        const std::string narrow(row.text);
        EXPECT_EQ(CStringConverter::IsFormattingWhitespace(narrow.data(), narrow.size()),
                  row.layout)
            << row.text;
    }
}

TEST(StringConverter, HoldsACopyOfItsText) {
    char text[] = "first";
    CStringConverter converter(text);
    text[0] = 'F';
    EXPECT_STREQ(converter.GetString(), "first");
    converter.SetString(converter.GetString() + 2);
    EXPECT_STREQ(converter.GetString(), "rst");
    CStringConverter copy(converter);
    converter.SetString(nullptr);
    EXPECT_STREQ(converter.GetString(), "");
    EXPECT_STREQ(copy.GetString(), "rst");
    EXPECT_STREQ(CStringConverter().GetString(), "");
}

}  // namespace
}  // namespace norvask
