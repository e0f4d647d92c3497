// Texts of the parser that are no UTF-16: the parser's transcoder decides what they become, and they
// stand behind others like any text.
#include "load/narrow_text.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "load/event_names.h"
#include "norvask/wide_char_to_string.h"

namespace norvask {
namespace {

std::string Transcoded(const std::u16string& text) {
    const std::unique_ptr<char[]> narrow(CWideCharToString().Convert(text.c_str(), text.size()));
    return narrow.get();
}

}  // namespace

TEST(NarrowText, TakesTextsThatAreNoUtf16) {
    CNarrowText texts;
    const std::size_t before = texts.Append(u"before", 6);
    EXPECT_TRUE(texts.IsUtf8());
    for (const std::u16string& odd : {std::u16string(u"a\xD800z"), std::u16string(5000, 0xDC00)}) {
        const std::size_t place = texts.Append(odd.c_str(), odd.size());
        EXPECT_FALSE(texts.IsUtf8());
        EXPECT_EQ(texts.At(place), Transcoded(odd));
        EXPECT_EQ(texts.Length(), Transcoded(odd).size());
    }
    const std::size_t after = texts.Append(u"after");
    EXPECT_TRUE(texts.IsUtf8());
    EXPECT_STREQ(texts.At(before), "before");
    EXPECT_STREQ(texts.At(after), "after");
}

TEST(EventNames, KnowsANamespaceWhereverItsNameLies) {
    const std::u16string here = u"urn:a";
    const std::u16string there = here;
    CEventNames names;
    const SEventName* first = names.Find(here.c_str(), u"a", u"p:a");
    ASSERT_NE(first, nullptr);
    for (const char16_t* uri : {there.c_str(), here.c_str(), there.c_str()}) {
        const SEventName* found = names.Find(uri, u"a", u"p:a");
        EXPECT_EQ(found, first);
        names.Ended(found);
    }
}

}  // namespace norvask
