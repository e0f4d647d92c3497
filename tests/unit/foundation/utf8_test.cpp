// The fast ways of converting text give what the parser's transcoders give, wherever they say yes.
#include "foundation/utf8.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <xercesc/util/XMLString.hpp>

#include "foundation/parser_state.h"
#include "foundation/parser_text.h"
#include "support/random_text.h"
#include "support/sanitizers.h"

namespace norvask {
namespace {

std::string TranscodedByParser(const std::u16string& text) {
    char* bytes = xercesc::XMLString::transcode(text.c_str());
    const std::string result(bytes);
    xercesc::XMLString::release(&bytes);
    return result;
}

std::string Converted(const std::u16string& text, bool& accepted) {
    std::string out(Utf8Capacity(text.size()), '?');
    const std::size_t bytes = Utf16ToUtf8(text.data(), text.size(), &out[0]);
    accepted = bytes != NOT_UTF16;
    out.resize(accepted ? bytes : 0);
    return out;
}

std::u16string Utf16Of(char32_t point) {
    if (point < 0x10000) {
        return std::u16string(1, static_cast<char16_t>(point));
    }
    const char32_t rest = point - 0x10000;
    return {static_cast<char16_t>(0xD800 + (rest >> 10)),
            static_cast<char16_t>(0xDC00 + (rest & 0x3FF))};
}

TEST(Utf8, TheParserOfThisSystemSpeaksUtf8) { EXPECT_TRUE(LocalEncodingIsUtf8()); }

TEST(Utf8, EveryCodePointIsConvertedAsTheParserDoesAndRecognised) {
    // Beyond the table of 64 Ki some stand for all where every allocation is watched.
    for (char32_t point = 1; point < 0x110000;
         point += norvask_test::IS_SANITIZED && point >= 0x10000 ? 61 : 1) {
        if (point >= 0xD800 && point < 0xE000) {
            continue;
        }
        bool accepted = false;
        const std::string bytes = Converted(Utf16Of(point), accepted);
        ASSERT_TRUE(accepted) << std::hex << static_cast<unsigned int>(point);
        ASSERT_EQ(bytes, TranscodedByParser(Utf16Of(point)));
        ASSERT_EQ(Utf8SequenceLength(bytes.c_str()), bytes.size());
        ASSERT_TRUE(IsUtf8(bytes.c_str()));
    }
}

TEST(Utf8, GeneratedUtf16IsConvertedAsTheParserDoesOrRefused) {
    norvask_test::RandomText random(1);
    int refused = 0;
    for (int i = 0; i < 3000; ++i) {
        const std::u16string text = random.Units(random.Number(80));
        bool accepted = false;
        const std::string bytes = Converted(text, accepted);
        if (accepted) {
            ASSERT_EQ(bytes, TranscodedByParser(text)) << "text " << i;
        } else {
            ++refused;
            ASSERT_NE(TranscodedByParser(text).find("\xEF\xBF\xBD"), std::string::npos);
        }
    }
    EXPECT_GT(refused, 100);
    EXPECT_LT(refused, 2900);
}

// Text is taken eight units at a time, each kind of mixture in its own way.
TEST(Utf8, EveryMixtureOfEightUnitsConvertsLikeByTheParserIntoTheRoomThatIsAskedFor) {
    const std::u16string kinds[] = {u"a", u"\u00E9", u"\u07FF", u"\u20AC"};
    for (unsigned int mixture = 0; mixture < 65536; ++mixture) {
        std::u16string text;
        for (unsigned int unit = 0; unit < 8; ++unit) {
            text += kinds[mixture >> (2 * unit) & 3U];
        }
        const std::unique_ptr<char[]> room(new char[Utf8Capacity(text.size())]);
        const std::size_t bytes = Utf16ToUtf8(text.data(), text.size(), room.get());
        ASSERT_EQ(std::string(room.get(), bytes), TranscodedByParser(text)) << mixture;
    }
}

TEST(Utf8, PairsAndLimitsOfLengthConvertAtEveryPlaceOfALongText) {
    for (const char16_t* character : {u"\u007F", u"\u0080", u"\u07FF", u"\u0800", u"\uD7FF",
                                      u"\uE000", u"\uFFFF", u"\U00010000", u"\U0010FFFF"}) {
        for (const char16_t filler : {u'a', u'\u0436', u'\u4E2D'}) {
            for (std::size_t at = 0; at <= 20; ++at) {
                std::u16string text(20, filler);
                text.insert(at, character);
                const std::unique_ptr<char[]> room(new char[Utf8Capacity(text.size())]);
                const std::size_t bytes = Utf16ToUtf8(text.data(), text.size(), room.get());
                ASSERT_EQ(std::string(room.get(), bytes), TranscodedByParser(text)) << at;
            }
        }
    }
}

TEST(Utf8, AsciiIsToldAtEveryLengthAndPlace) {
    for (std::size_t length = 0; length <= 40; ++length) {
        const std::string ascii(length, '\x7F');
        EXPECT_TRUE(IsAscii(ascii.data(), length)) << length;
        for (std::size_t at = 0; at < length; ++at) {
            std::string other = ascii;
            other[at] = '\x80';
            EXPECT_FALSE(IsAscii(other.data(), length)) << length << " at " << at;
        }
    }
}

TEST(Utf8, LeadingAsciiIsCopiedUpToTheEndTheLimitOrTheFirstOther) {
    for (std::size_t length = 0; length <= 20; ++length) {
        for (std::size_t limit = 0; limit <= 20; ++limit) {
            for (const char16_t end : {u'\0', u'\u0080', u'\xD800'}) {
                const std::u16string text = std::u16string(length, u'x') + end;
                const std::unique_ptr<char[]> room(new char[limit]);
                const std::size_t copied = CopyAscii(text.c_str(), limit, room.get());
                EXPECT_EQ(copied, std::min(length, limit));
                EXPECT_EQ(std::string(room.get(), copied), std::string(copied, 'x'));
            }
        }
    }
}

TEST(Utf8, AnUnpairedSurrogateIsRefusedWhereverItStands) {
    const std::u16string ascii(40, u'a');
    for (std::size_t at = 0; at <= ascii.size(); ++at) {
        for (const char16_t surrogate : {u'\xD800', u'\xDBFF', u'\xDC00', u'\xDFFF'}) {
            std::u16string text = ascii;
            text.insert(at, 1, surrogate);
            bool accepted = true;
            Converted(text, accepted);
            EXPECT_FALSE(accepted) << "at " << at;
        }
    }
}

TEST(Utf8, GeneratedBytesAreAcceptedOnlyWhenTheParserKeepsThem) {
    norvask_test::RandomText random(2);
    int accepted = 0;
    for (int i = 0; i < 3000; ++i) {
        const std::string text = random.Bytes(random.Number(60));
        const CParserString parsed(text.c_str());
        const bool kept = TranscodedByParser(parsed.Get()) == text;
        ASSERT_EQ(IsUtf8(text.c_str()), kept) << "text " << i;
        accepted += kept ? 1 : 0;
    }
    EXPECT_GT(accepted, 100);
    EXPECT_LT(accepted, 2900);
}

TEST(Utf8, ACutNeverSplitsACharacter) {
    struct Row {
        const char* text;
        std::size_t limit;
        std::size_t cut;
    };
    const Row rows[] = {
        {"abcd", 3, 3},
        {"ab\xC3\xA9", 3, 2},
        {"a\xC3\xA9z", 3, 3},
        {"\xE2\x82\xACz", 1, 0},
        {"\xE2\x82\xACz", 2, 0},
        {"\xE2\x82\xACz", 3, 3},
        {"a\xF0\x9F\x98\x80z", 4, 1},
        {"a\xF0\x9F\x98\x80z", 5, 5},
        {"ab\xFFz", 3, 3},
        {"a\x80\x80\x80\x80z", 4, 4},
        {"a\xC3z", 2, 2},
        {"\xF0\x9F\x98\x80", 0, 0},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(CutAtCharacter(row.text, row.limit), row.cut) << row.text << " at " << row.limit;
    }
}

// What lies behind the text must not be read, so the text is the whole block.
std::size_t LengthOfBlock(const std::string& text) {
    const std::unique_ptr<char[]> block(new char[text.size()]);
    text.copy(block.get(), text.size());
    return Utf8Length(block.get(), text.size());
}

std::size_t LengthSlowly(const std::string& text) {
    std::size_t i = 0;
    while (i < text.size()) {
        const std::size_t length = Utf8SequenceLength(text.c_str() + i);
        if (length == 0) {
            break;
        }
        i += length;
    }
    return i;
}

TEST(Utf8, BlocksFindTheSameWellFormedBeginningAsSingleCharacters) {
    norvask_test::RandomText random(3);
    int wellFormed = 0;
    for (int i = 0; i < 30000; ++i) {
        std::string text;
        // Long stretches of ASCII, of others, and of both.
        for (std::size_t part = random.Number(4); part != 0; --part) {
            const std::size_t length = random.Number(80);
            switch (random.Number(4)) {
                case 0:
                    text.append(length, 'x');
                    break;
                case 1:
                    text += random.Bytes(length);
                    break;
                default:
                    static const char* const CHARACTERS[] = {"\xC3\xA9", "\xE2\x82\xAC",
                                                             "\xF0\x9F\x98\x80", "y"};
                    while (text.size() < length) {
                        text += CHARACTERS[random.Number(4)];
                    }
            }
        }
        text.resize(text.size() - (text.empty() ? 0 : random.Number(2)));
        ASSERT_EQ(LengthOfBlock(text), LengthSlowly(text));
        wellFormed += LengthSlowly(text) == text.size() ? 1 : 0;
    }
    EXPECT_GT(wellFormed, 5000);
    EXPECT_LT(wellFormed, 25000);
}

TEST(Utf8, BlocksFindEachIllFormedSequenceAtEachPlace) {
    const std::string sequences[] = {"\x80",
                                     "\xBF",
                                     "\xC0\x80",
                                     "\xC1\xBF",
                                     "\xC3",
                                     "\xC3x",
                                     "\xC3\xC3",
                                     "\xE0\x9F\xBF",
                                     "\xE0\xA0",
                                     "\xE0\xA0x",
                                     "\xE0\xA0\xC3",
                                     "\xE2\x82",
                                     "\xE2\x82x",
                                     "\xE2x\x82",
                                     "\xED\xA0\x80",
                                     "\xED\xBF\xBF",
                                     "\xF0\x8F\xBF\xBF",
                                     "\xF0\x9F\x98",
                                     "\xF0\x9F\x98x",
                                     "\xF0\x90x\x80",
                                     "\xF0\x90\x80x",
                                     "\xF4\x8F\xBFx",
                                     "\xF4\x90\x80\x80",
                                     "\xF5\x80\x80\x80",
                                     "\xFE",
                                     "\xFF"};
    for (const std::string& sequence : sequences) {
        for (std::size_t place = 0; place < 70; ++place) {
            for (const char* const around : {"x", "\xC3\xA9", "\xE2\x82\xAC"}) {
                std::string text;
                while (text.size() < place) {
                    text += around;
                }
                const std::size_t length = text.size();
                text += sequence + std::string(20, 'x');
                ASSERT_EQ(LengthOfBlock(text), length);
            }
        }
    }
}

}  // namespace
}  // namespace norvask
