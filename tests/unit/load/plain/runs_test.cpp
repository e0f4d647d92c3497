// Sixteen bytes at once give what single bytes give.
#include "load/plain/runs.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "foundation/byte_block.h"
#include "foundation/utf8.h"
#include "support/random_text.h"

namespace norvask {
namespace {

// A copy with a zero and a block behind it, and nothing more.
class CReadable {
public:
    explicit CReadable(const std::string& text)
        : m_Bytes(new char[text.size() + BLOCK_BYTES]()), m_nLength(text.size()) {
        text.copy(m_Bytes.get(), m_nLength);
    }
    char* At(std::size_t i) const noexcept { return m_Bytes.get() + i; }
    std::size_t Length() const noexcept { return m_nLength; }

private:
    std::unique_ptr<char[]> m_Bytes;
    std::size_t m_nLength;
};

template <ERun RUN>
void ExpectTheSameRuns(const std::string& text) {
    const CReadable readable(text);
    for (std::size_t i = 0; i <= readable.Length(); ++i) {
        bool isAscii = true;
        bool isAsciiSlowly = true;
        char* const end = EndOfRun<RUN>(readable.At(i), isAscii);
        ASSERT_EQ(end, EndOfRunSlowly<RUN>(readable.At(i), isAsciiSlowly));
        ASSERT_EQ(isAscii, isAsciiSlowly);
        ASSERT_LE(end, readable.At(readable.Length()));
    }
}

void ExpectTheSame(const std::string& text) {
    ExpectTheSameRuns<ERun::TEXT>(text);
    ExpectTheSameRuns<ERun::CDATA>(text);
    ExpectTheSameRuns<ERun::VALUE>(text);
}

template <ERun RUN>
std::string EndingBytes() {
    std::string ending;
    for (int byte = 1; byte < 256; ++byte) {
        const CReadable one(std::string(1, static_cast<char>(byte)));
        bool isAscii = true;
        if (EndOfRun<RUN>(one.At(0), isAscii) == one.At(0)) {
            ending += static_cast<char>(byte);
        }
    }
    return ending;
}

TEST(PlainRuns, MasksAreThoseOfSingleBytes) {
    norvask_test::RandomText random(6);
    for (int i = 0; i < 1000; ++i) {
        const std::string text = random.Bytes(BLOCK_BYTES);
        const ByteBlock block = LoadBlock(text.data());
        unsigned int mask = 0;
        for (unsigned int byte = 0; byte < BLOCK_BYTES; ++byte) {
            mask |= (static_cast<unsigned char>(text[byte]) >= 0x80 ? 1U : 0U) << byte;
        }
        ASSERT_EQ(MaskOf(block), mask);
        ASSERT_EQ(MaskOfPlainly(block), mask);
    }
}

const char CONTROLS[] =
    "\x01\x02\x03\x04\x05\x06\x07\x08\x0B\x0C\x0D\x0E\x0F\x10\x11\x12\x13\x14\x15\x16\x17\x18\x19"
    "\x1A\x1B\x1C\x1D\x1E\x1F";

TEST(PlainRuns, EndAtTheBytesThatDoNotStandForThemselves) {
    EXPECT_EQ(EndingBytes<ERun::TEXT>(), CONTROLS + std::string("&<]"));
    EXPECT_EQ(EndingBytes<ERun::CDATA>(), CONTROLS + std::string("]"));
    std::string value(CONTROLS);
    value.insert(8, "\t\n");
    EXPECT_EQ(EndingBytes<ERun::VALUE>(), value + "\"&'<");
}

TEST(PlainRuns, AreTheSameForEachByteAtEachPlaceOfABlock) {
    for (int byte = 1; byte < 256; ++byte) {
        for (std::size_t place = 0; place < 2 * BLOCK_BYTES; ++place) {
            std::string text(2 * BLOCK_BYTES + 3, 'x');
            text[place] = static_cast<char>(byte);
            ExpectTheSame(text);
        }
    }
}

TEST(PlainRuns, AreTheSameForGeneratedBytes) {
    norvask_test::RandomText random(7);
    for (int i = 0; i < 3000; ++i) {
        ExpectTheSame(random.Bytes(random.Number(100)));
    }
}

// What CharsLength finds, character by character.
std::size_t CharsLengthSlowly(const std::string& text) {
    std::size_t i = 0;
    while (i < text.size()) {
        const std::size_t length = Utf8SequenceLength(text.c_str() + i);
        const bool isForbidden =
            text.compare(i, 3, "\xEF\xBF\xBE") == 0 || text.compare(i, 3, "\xEF\xBF\xBF") == 0;
        if (length == 0 || isForbidden) {
            break;
        }
        i += length;
    }
    return i;
}

TEST(PlainRuns, HaveWholeCharactersThatAreNotForbidden) {
    norvask_test::RandomText random(8);
    int forbidden = 0;
    for (int i = 0; i < 20000; ++i) {
        const std::string text = random.Bytes(random.Number(120));
        const std::size_t length = CharsLengthSlowly(text);
        ASSERT_EQ(CharsLength(text.c_str(), text.size(), false), length);
        forbidden += text.compare(length, 2, "\xEF\xBF") == 0 ? 1 : 0;
        if (Utf8Length(text.data(), text.size()) == text.size()) {
            ASSERT_EQ(CharsLength(text.c_str(), text.size(), true), length);
        }
    }
    EXPECT_GT(forbidden, 100);
}

TEST(PlainRuns, OfTextThatIsKnownToBeUtf8EndInFrontOfACharacterThatIsCutOff) {
    for (const std::string character : {"\xC3\xA9", "\xE2\x82\xAC", "\xF0\x9F\x98\x80"}) {
        const std::string text = "x" + character + character;
        for (std::size_t length = 1; length <= text.size(); ++length) {
            const std::string cut = text.substr(0, length);
            EXPECT_EQ(CharsLength(cut.c_str(), cut.size(), true),
                      1 + (length - 1) / character.size() * character.size());
        }
    }
}

}  // namespace
}  // namespace norvask
