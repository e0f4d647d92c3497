// CSourcePlaces against a slow and simple count of lines, units and characters.
#include "load/watch/source_places.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "load/source/byte_source.h"
#include "norvask/error.h"
#include "support/random_text.h"

namespace norvask {
namespace {

using norvask_test::RandomText;

// A place as the parser tells it, and as it should be told.
struct SPlace {
    std::uint64_t line;
    std::uint64_t units;       // from 1
    std::uint64_t characters;  // from 1
};

// The place in front of each character, and behind the last. CR LF are one character, and so is
// each of them alone.
std::vector<SPlace> PlacesOf(const std::u32string& text) {
    std::vector<SPlace> places;
    SPlace now = {1, 1, 1};
    for (std::size_t i = 0; i < text.size(); ++i) {
        places.push_back(now);
        const bool isEnd = text[i] == U'\n' || text[i] == U'\r';
        if (text[i] == U'\r' && i + 1 < text.size() && text[i + 1] == U'\n') ++i;
        if (isEnd) {
            now = {now.line + 1, 1, 1};
        } else {
            now.units += text[i] > 0xFFFF ? 2 : 1;
            ++now.characters;
        }
    }
    places.push_back(now);
    return places;
}

enum class EForm { UTF8, UTF16LE, UTF16BE };

std::string Encoded(const std::u32string& text, EForm form) {
    std::string bytes;
    const auto unit = [&](char32_t value) {
        const char low = static_cast<char>(value & 0xFF);
        const char high = static_cast<char>(value >> 8);
        bytes += form == EForm::UTF16LE ? low : high;
        bytes += form == EForm::UTF16LE ? high : low;
    };
    for (const char32_t c : text) {
        if (form != EForm::UTF8 && c > 0xFFFF) {
            unit(0xD800 + ((c - 0x10000) >> 10));
            unit(0xDC00 + ((c - 0x10000) & 0x3FF));
        } else if (form != EForm::UTF8) {
            unit(c);
        } else if (c < 0x80) {
            bytes += static_cast<char>(c);
        } else {
            const int more = c < 0x800 ? 1 : c < 0x10000 ? 2 : 3;
            bytes += static_cast<char>((0xF00 >> (more + 1) & 0xFF) | (c >> 6 * more));
            for (int i = more - 1; i >= 0; --i)
                bytes += static_cast<char>(0x80 | (c >> 6 * i & 0x3F));
        }
    }
    return bytes;
}

std::u32string Generated(RandomText& random, std::size_t length) {
    static const char32_t CHARACTERS[] = {U'\n',   U'\r',   U'\t',    U'x',   0xE4,   0x20AC,
                                          0x10000, 0x1F600, 0x10FFFF, 0xFFFD, 0xD7FF, 0xE000,
                                          0x301,   U'<',    U'\n',    0x1F601};
    std::u32string text;
    while (text.size() < length) {
        if (random.Number(8) == 0) text += U"\r\n";
        text += CHARACTERS[random.Number(sizeof CHARACTERS / sizeof CHARACTERS[0])];
    }
    return text;
}

// In pieces of any size, and none may be the last.
void FeedPieces(CSourcePlaces& places, const std::string& bytes, RandomText& random,
                std::size_t most) {
    for (std::size_t at = 0; at < bytes.size();) {
        const std::size_t count = std::min(random.Number(most + 1), bytes.size() - at);
        places.Feed(bytes.data() + at, count);
        at += count;
    }
    places.End();
}

void ExpectCorrected(const std::u32string& text, const std::string& bytes, RandomText& random,
                     std::size_t most) {
    const std::vector<SPlace> expected = PlacesOf(text);
    std::vector<SXMLProblem> problems;
    for (const SPlace& place : expected) {
        problems.emplace_back();
        problems.back().line = place.line;
        problems.back().column = place.units;
    }
    std::vector<SXMLProblem*> pointers;
    for (SXMLProblem& problem : problems)
        pointers.push_back(&problem);
    // In any order.
    for (std::size_t i = pointers.size() - 1; i > 0; --i)
        std::swap(pointers[i], pointers[random.Number(i + 1)]);
    CSourcePlaces places;
    places.Correct(pointers);
    FeedPieces(places, bytes, random, most);
    for (std::size_t i = 0; i < expected.size(); ++i) {
        ASSERT_EQ(problems[i].line, expected[i].line);
        ASSERT_EQ(problems[i].column, expected[i].characters)
            << "place " << i << " of line " << expected[i].line;
    }
    EXPECT_EQ(places.Line(), expected.back().line);
    EXPECT_EQ(places.HasPairs(),
              std::any_of(text.begin(), text.end(), [](char32_t c) { return c > 0xFFFF; }));
    EXPECT_FALSE(places.IsIllFormed());
}

TEST(SourcePlaces, ColumnsAreCharactersOfGeneratedText) {
    for (unsigned int seed = 0; seed < 150; ++seed) {
        SCOPED_TRACE(seed);
        RandomText random(seed);
        const std::u32string text = U"<a>" + Generated(random, 1 + random.Number(2500));
        const std::size_t most = seed % 3 == 0 ? 1 : seed % 3 == 1 ? 7 : 5000;
        ExpectCorrected(text, Encoded(text, EForm::UTF8), random, most);
        ExpectCorrected(text, "\xEF\xBB\xBF" + Encoded(text, EForm::UTF8), random, most);
        ExpectCorrected(text, Encoded(text, EForm::UTF16LE), random, most);
        ExpectCorrected(text, Encoded(text, EForm::UTF16BE), random, most);
        ExpectCorrected(text, "\xFF\xFE" + Encoded(text, EForm::UTF16LE), random, most);
        ExpectCorrected(text, "\xFE\xFF" + Encoded(text, EForm::UTF16BE), random, most);
        if (::testing::Test::HasFailure()) return;
    }
}

// Of these the units are the characters, whatever the bytes.
TEST(SourcePlaces, OtherEncodingsAreLeftAlone) {
    for (const char* const encoding : {"ISO-8859-1", "US-ASCII", "windows-1252", "utf-88", "x"}) {
        const std::string bytes = std::string("<?xml version='1.0' encoding='") + encoding +
                                  "'?>\n\xF0\x9F\x98\x80\xFF\r\n\x80<a>";
        SXMLProblem problem;
        problem.line = 2;
        problem.column = 5;
        CSourcePlaces places;
        places.Correct({&problem});
        places.Feed(bytes.data(), bytes.size());
        places.End();
        EXPECT_EQ(problem.column, 5U) << encoding;
        EXPECT_FALSE(places.IsIllFormed()) << encoding;
        EXPECT_FALSE(places.HasPairs()) << encoding;
        EXPECT_EQ(places.Line(), 3U) << encoding;
    }
}

TEST(SourcePlaces, Utf8IsToldByItsNames) {
    for (const char* const declaration :
         {"<?xml version='1.0'?>", "<?xml version='1.0' encoding='UTF-8'?>",
          "<?xml version='1.0' encoding = \"utf-8\" ?>", "<?xml version='1.0' encoding='utf8'?>",
          "<?xml", "<?xml encoding", "<?xml encoding=", "<?xml encoding='", "",
          "<!--encoding='x'-->"}) {
        SCOPED_TRACE(declaration);
        const std::string bytes = std::string(declaration) + "\n\xFF";
        CSourcePlaces places;
        places.Feed(bytes.data(), bytes.size());
        places.End();
        // An encoding that goes on behind the end of the declaration is another.
        const bool isOpen = std::string(declaration) == "<?xml encoding='";
        EXPECT_EQ(places.IsIllFormed(), !isOpen);
    }
}

// The length of the character at the front, 0 for none: by the table of the standard.
std::size_t LengthAt(const std::string& text, std::size_t at) {
    const auto byte = [&](std::size_t i) {
        return at + i < text.size() ? static_cast<unsigned char>(text[at + i]) : 0U;
    };
    const auto isIn = [&](std::size_t i, unsigned from, unsigned to) {
        return byte(i) >= from && byte(i) <= to;
    };
    const unsigned first = byte(0);
    if (first < 0x80) return 1;
    if (first >= 0xC2 && first <= 0xDF) return isIn(1, 0x80, 0xBF) ? 2 : 0;
    if (first >= 0xE0 && first <= 0xEF) {
        const bool isGood = isIn(1, first == 0xE0 ? 0xA0 : 0x80, first == 0xED ? 0x9F : 0xBF);
        return isGood && isIn(2, 0x80, 0xBF) ? 3 : 0;
    }
    if (first >= 0xF0 && first <= 0xF4) {
        const bool isGood = isIn(1, first == 0xF0 ? 0x90 : 0x80, first == 0xF4 ? 0x8F : 0xBF);
        return isGood && isIn(2, 0x80, 0xBF) && isIn(3, 0x80, 0xBF) ? 4 : 0;
    }
    return 0;
}

TEST(SourcePlaces, TheFirstIllFormedBytesAreFoundInGeneratedText) {
    int bad = 0;
    int cut = 0;
    for (unsigned int seed = 0; seed < 3000; ++seed) {
        SCOPED_TRACE(seed);
        RandomText random(seed);
        std::string text = "<a>" + random.Bytes(1 + random.Number(seed % 20 == 0 ? 3000 : 60));
        if (seed % 5 == 0) text += "\n\xF0\x9F\x98";
        std::uint64_t line = 1;
        std::uint64_t column = 1;
        std::size_t at = 0;
        for (std::size_t length = 0; at < text.size(); at += length) {
            length = LengthAt(text, at);
            if (length == 0) break;
            if (text[at] == '\n' || text[at] == '\r') {
                const bool isSecond = text[at] == '\n' && text[at - 1] == '\r';
                line += isSecond ? 0 : 1;
                column = 1;
            } else {
                ++column;
            }
        }
        CSourcePlaces places;
        FeedPieces(places, text, random, seed % 2 == 0 ? 1 : 100);
        ASSERT_EQ(places.IsIllFormed(), at < text.size());
        if (at == text.size()) continue;
        ++bad;
        cut += at + 4 > text.size() ? 1 : 0;
        ASSERT_EQ(places.BadLine(), line);
        ASSERT_EQ(places.BadColumn(), column);
        std::string told;
        for (std::size_t i = at; i < text.size() && i < at + 4; ++i) {
            const auto byte = static_cast<unsigned char>(text[i]);
            if (i > at && (byte < 0x80 || byte > 0xBF)) break;
            char hexadecimal[8];
            std::snprintf(hexadecimal, sizeof hexadecimal, "%s0x%02X", i == at ? "" : " ",
                          static_cast<unsigned>(byte));
            told += hexadecimal;
        }
        ASSERT_EQ(places.BadBytes(), told);
    }
    EXPECT_GT(bad, 1000);
    EXPECT_GT(cut, 100);
}

TEST(SourcePlaces, ASourceIsReadToItsEndOrSoFar) {
    std::string text = "<a>";
    while (text.size() < 200000)
        text += "x\xF0\x9F\x98\x80\n";
    const auto* const bytes = reinterpret_cast<const unsigned char*>(text.data());
    CMemoryBytes source(bytes, text.size());
    CSourcePlaces whole;
    whole.FeedAll(source);
    EXPECT_EQ(whole.Line(),
              1U + static_cast<std::uint64_t>(std::count(text.begin(), text.end(), '\n')));
    source.Rewind();
    CSourcePlaces part;
    part.FeedAll(source, 9 + 6 * 20000);
    EXPECT_EQ(part.Line(), 20002U);
    source.Rewind();
    CSourcePlaces nothing;
    nothing.FeedAll(source, 0);
    EXPECT_EQ(nothing.Line(), 1U);
    EXPECT_FALSE(nothing.IsIllFormed());
}

}  // namespace
}  // namespace norvask
