// CDOMString: what it makes of the parser's strings by either converter, and what is known of that.
#include "load/parser/dom_string.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "norvask/wide_char_to_string.h"
#include "support/converters.h"

using norvask_test::CPlainConverter;
using norvask_test::CRecordingConverter;

namespace norvask {
namespace {

std::string Transcoded(const std::u16string& text) {
    const std::unique_ptr<char[]> narrow(CWideCharToString().Convert(text.c_str(), text.size()));
    return narrow.get();
}

void Expect(const SKnownText& text, const std::string& expected, unsigned int known) {
    EXPECT_TRUE(text.text == expected) << text.text;
    EXPECT_EQ(text.length, expected.size());
    EXPECT_EQ(text.known, known) << expected;
}

}  // namespace

// Both ways to give a text, of lengths around those at which another way of conversion begins.
TEST(DOMString, KnowsWhatTheLibrarysOwnConverterGives) {
    CDOMString narrow;
    for (const std::size_t units :
         {0u, 1u, 7u, 8u, 9u, 15u, 16u, 17u, 127u, 128u, 129u, 1000u, 100000u}) {
        const std::u16string ascii(units, 'a');
        const std::string bytes(units, 'a');
        Expect(narrow.Convert(ascii.c_str()), bytes, KNOWN_UTF8 | KNOWN_ASCII);
        Expect(narrow.Convert(ascii.c_str(), units), bytes, KNOWN_UTF8 | KNOWN_ASCII);
        for (const std::u16string& odd :
             {u"\u00E4" + ascii, ascii + u"\u20AC", ascii + u"\U0001F600" + ascii}) {
            Expect(narrow.Convert(odd.c_str()), Transcoded(odd), KNOWN_UTF8);
            Expect(narrow.Convert(odd.c_str(), odd.size()), Transcoded(odd), KNOWN_UTF8);
        }
    }
}

// The parser's transcoder decides what they become, and they stand behind others like any text.
TEST(DOMString, TakesTextsThatAreNoUtf16) {
    CDOMString texts;
    const std::size_t before = texts.Append(u"before", 6);
    for (const std::u16string& odd : {std::u16string(u"a\xD800z"), std::u16string(5000, 0xDC00)}) {
        EXPECT_EQ(texts.At(texts.Append(odd.c_str(), odd.size())), Transcoded(odd));
        EXPECT_EQ(texts.At(texts.Append(odd.c_str())), Transcoded(odd));
        CDOMString other;
        Expect(other.Convert(odd.c_str()), Transcoded(odd), 0);
    }
    const std::size_t after = texts.Append(u"after");
    EXPECT_STREQ(texts.At(before), "before");
    EXPECT_STREQ(texts.At(after), "after");
    EXPECT_EQ(texts.End(), after + sizeof("after"));
}

TEST(DOMString, KeepsNullApart) {
    CDOMString narrow;
    EXPECT_EQ(narrow.GetString(), nullptr);
    EXPECT_EQ(CDOMString(nullptr).GetString(), nullptr);
    Expect(narrow.Convert(nullptr), "", 0);
    EXPECT_EQ(narrow.GetString(), nullptr);
    narrow.Convert(u"");
    EXPECT_STREQ(narrow.GetString(), "");
    EXPECT_STREQ(CDOMString(u"text").GetString(), "text");
    CRecordingConverter converter(CRecordingConverter::Instead("a", nullptr));
    EXPECT_EQ(CDOMString(nullptr).GetString(), nullptr);
    EXPECT_EQ(converter.Count(), 0u);
    Expect(narrow.Convert(u"a", 1), "", 0);
    EXPECT_EQ(narrow.GetString(), nullptr);
    EXPECT_STREQ(CDOMString(u"b").GetString(), "b");
}

TEST(DOMString, AsksTheConverterInForceForEachString) {
    CDOMString narrow;
    CRecordingConverter converter(CRecordingConverter::Instead("a", "\xE4"));
    EXPECT_FALSE(CDOMString::IsOwnInForce());
    for (int round = 0; round < 2; ++round) {
        Expect(narrow.Convert(u"a"), "\xE4", 0);
        Expect(narrow.Convert(u"a", 1), "\xE4", 0);
        Expect(narrow.ConvertByOwn(u"a", 1), "a", KNOWN_UTF8 | KNOWN_ASCII);
    }
    narrow.Clear();
    const std::size_t first = narrow.Append(u"a");
    CPlainConverter::Remove();
    EXPECT_TRUE(CDOMString::IsOwnInForce());
    const std::size_t second = narrow.Append(u"a");
    EXPECT_STREQ(narrow.At(first), "\xE4");
    EXPECT_STREQ(narrow.At(second), "a");
    EXPECT_EQ(converter.Asked(), "[a][a][a][a][a]");
}

}  // namespace norvask
