// What saving makes of every byte and every character of a text, a value and a path: escapes,
// dropped control characters, and U+FFFD for each invalid sequence of UTF-8.
#include <random>

#include "support/testing.h"
#include "support/unicode.h"

using namespace norvask_test;

namespace {

// What is written for this text, as a text child and as a value, which must be the same.
std::string Written(const std::string& text) {
    Document document = NewDocumentWithRoot("r");
    CXMLNode* root = document->GetRoot();
    root->CreateTextChild(text.c_str());
    std::string bytes = Saved(document);
    const std::string front = "<?xml version=\"1.0\"?><r>";
    EXPECT_EQ(bytes.substr(0, front.size()), front);
    EXPECT_EQ(bytes.substr(bytes.size() - 4), "</r>");
    const std::string written = bytes.substr(front.size(), bytes.size() - front.size() - 4);
    if (!text.empty()) {
        document->CreateRoot("r")->SetAttribute("k", text.c_str());
        EXPECT_TRUE(Saved(document) == "<?xml version=\"1.0\"?><r k=\"" + written + "\"/>")
            << "a value is not written like a text";
        document->SetDTDRef("r", text.c_str());
        EXPECT_TRUE(Saved(document) == "<?xml version=\"1.0\"?><!DOCTYPE r SYSTEM \"" + written +
                                           "\"><r k=\"" + written + "\"/>")
            << "a path is not written like a text";
    }
    return written;
}

}  // namespace

TEST(SaveEscape, WritesMarkupAsHexadecimalReferences) {
    EXPECT_EQ(Written("<"), "&#x3c;");
    EXPECT_EQ(Written(">"), "&#x3e;");
    EXPECT_EQ(Written("&"), "&#x26;");
    EXPECT_EQ(Written("'"), "&#x27;");
    EXPECT_EQ(Written("\""), "&#x22;");
    EXPECT_EQ(Written("a<b & 'c'"), "a&#x3c;b &#x26; &#x27;c&#x27;");
    EXPECT_EQ(Written("&lt;&#x3c;"), "&#x26;lt;&#x26;#x3c;");
    EXPECT_EQ(Written("]]>"), "]]&#x3e;");
    EXPECT_EQ(Written(""), "");
}

TEST(SaveEscape, DropsTheControlCharactersThatXmlCannotHold) {
    for (char c = 1; c < 32; ++c) {
        const bool kept = c == '\t' || c == '\n' || c == '\r';
        const std::string shown = kept ? std::string(1, c) : "";
        EXPECT_EQ(Written(std::string("a") + c + "b"), "a" + shown + "b") << int{c};
        EXPECT_EQ(Written(std::string(1, c)), shown) << int{c};
    }
    EXPECT_EQ(Written("\x01\x02\x03"), "");
    EXPECT_EQ(Written("\x7F"), "\x7F");
    EXPECT_EQ(Written("\xC2\x80\xC2\x85\xC2\x9F"), "\xC2\x80\xC2\x85\xC2\x9F");
}

TEST(SaveEscape, WritesEveryByteValueBetweenOthers) {
    for (int value = 1; value < 256; ++value) {
        const std::string byte(1, static_cast<char>(value));
        EXPECT_EQ(Written("a" + byte + "b"),
                  value < 128 ? Escaped("a" + byte + "b") : std::string("a") + REPLACEMENT + "b")
            << value;
        EXPECT_EQ(Written(byte), value < 128 ? Escaped(byte) : std::string(REPLACEMENT)) << value;
    }
}

TEST(SaveEscape, WritesEveryCodePointAsUtf8) {
    std::string text;
    for (char32_t c = 1; c <= LAST_CODE_POINT; ++c) {
        if (IsSurrogate(c)) continue;
        AppendUtf8(text, c);
        if (c % 8192 == 0 || c == LAST_CODE_POINT) {
            EXPECT_TRUE(Written(text) == Escaped(text)) << "up to U+" << std::hex << c;
            text.clear();
        }
    }
}

TEST(SaveEscape, WritesEveryCodePointOfTheBasicPlaneOnItsOwn) {
    Document document = NewDocumentWithRoot("r");
    CXMLTextNode* node = document->GetRoot()->CreateTextChild("");
    for (char32_t c = 1; c < 0x10000; ++c) {
        if (IsSurrogate(c)) continue;
        const std::string text = Utf8(c);
        node->SetText(text.c_str());
        ASSERT_EQ(Saved(document), "<?xml version=\"1.0\"?><r>" + Escaped(text) + "</r>");
    }
}

// One U+FFFD for each sequence, which ends in front of the first byte that cannot belong to it.
TEST(SaveEscape, ReplacesEachInvalidSequence) {
    struct {
        const char* bytes;
        const char* written;  // with ? for U+FFFD
    } const rows[] = {
        {"\x80", "?"},
        {"\xBF\xBF", "??"},
        {"\xC0\x80", "??"},
        {"\xC1\xBF", "??"},
        {"\xC2", "?"},
        {"\xC2"
         "a",
         "?a"},
        {"\xC2<", "?&#x3c;"},
        {"\xC2\x01", "?"},
        {"\xE2\x82", "?"},
        {"\xE2\x82"
         "a",
         "?a"},
        {"\xE2"
         "a\x82",
         "?a?"},
        {"\xE0\x80\x80", "???"},
        {"\xE0\x9F\xBF", "???"},
        {"\xED\xA0\x80", "???"},
        {"\xED\xBF\xBF", "???"},
        {"\xF0\x9F\x98", "?"},
        {"\xF0\x9F\x98"
         "a",
         "?a"},
        {"\xF0\x80\x80\x80", "????"},
        {"\xF4\x90\x80\x80", "????"},
        {"\xF5\x80\x80\x80", "????"},
        {"\xF8\x88\x80\x80\x80", "?????"},
        {"\xFE\xFF", "??"},
        {"\xE2\x82\xE2\x82\xAC", "?\xE2\x82\xAC"},
        {"\xF0\x9F\xF0\x9F\x98\x80", "?\xF0\x9F\x98\x80"},
    };
    for (const auto& row : rows) {
        std::string expected;
        for (const char c : std::string(row.written)) {
            if (c == '?') {
                expected += REPLACEMENT;
            } else {
                expected += c;
            }
        }
        EXPECT_EQ(Written(row.bytes), expected) << Quoted(row.bytes);
    }
}

TEST(SaveEscape, ReplacesInvalidSequencesInNames) {
    Document document = NewDocumentWithRoot("a\xFF");
    document->GetRoot()->SetAttribute("k\xE2\x82", "v");
    EXPECT_EQ(Saved(document), "<?xml version=\"1.0\"?><a\xEF\xBF\xBD k\xEF\xBF\xBD=\"v\"/>");
    document->GetRoot()->CreateTextChild("t");
    EXPECT_EQ(Saved(document, true),
              "<?xml version=\"1.0\"?>\r\n<a\xEF\xBF\xBD k\xEF\xBF\xBD=\"v\">t</a\xEF\xBF\xBD>");
}

TEST(SaveEscape, WritesRandomBytesAsTheirValidForm) {
    std::mt19937 random(20240517);
    const auto below = [&random](unsigned limit) { return static_cast<int>(random() % limit); };
    for (int round = 0; round < 20000; ++round) {
        std::string text;
        for (int length = 1 + below(40); length > 0; --length) {
            switch (below(8)) {
                case 0:
                    text += static_cast<char>(1 + below(127));
                    break;
                case 1:
                    text += "<>&'\""[below(5)];
                    break;
                case 2:
                    text += static_cast<char>(0xE0 + below(16));
                    break;
                case 3:
                    text += static_cast<char>(0xF0 + below(16));
                    break;
                case 4:
                    text += static_cast<char>(0xC0 + below(32));
                    break;
                case 5:
                    AppendUtf8(text, static_cast<char32_t>(0x80 + below(0xD000)));
                    break;
                default:
                    text += static_cast<char>(0x80 + below(64));
            }
        }
        ASSERT_EQ(Written(text), Escaped(text)) << Quoted(text);
    }
}

// Wherever something that is not copied as it stands may fall in a long text.
TEST(SaveEscape, WritesLongTextsWithAnythingAtAnyPlace) {
    std::vector<std::size_t> lengths;
    for (std::size_t power = 16; power <= 262144; power *= 2) {
        for (std::size_t i = power - 6; i <= power + 6; ++i)
            lengths.push_back(i);
    }
    for (const std::size_t length : lengths) {
        const std::string plain(length, 'a');
        for (const char* tail : {"<", "\xC3\xA9", "\xF0\x9F\x98\x80", "\xE2\x82", "\x01"}) {
            Document document = NewDocumentWithRoot("r");
            document->GetRoot()->CreateTextChild((plain + tail + plain.substr(0, 20)).c_str());
            EXPECT_TRUE(Saved(document) == "<?xml version=\"1.0\"?><r>" + plain + Escaped(tail) +
                                               plain.substr(0, 20) + "</r>")
                << length << " in front of " << Quoted(tail);
        }
    }
    EXPECT_EQ(Written(std::string(10000, '&')).size(), 60000u);
    std::string all;
    std::string escaped;
    for (int i = 0; i < 30000; ++i) {
        all += "\xE6\xBD\xAE<\xFF";
        escaped += std::string("\xE6\xBD\xAE&#x3c;") + REPLACEMENT;
    }
    EXPECT_TRUE(Written(all) == escaped);
}

// The other direction: what was written is read back, but for what XML itself does to line ends.
TEST(SaveEscape, IsReadBackAsItWas) {
    std::string text;
    for (char32_t c = 1; c <= LAST_CODE_POINT; ++c) {
        if (IsXmlCharacter(c) && c != '\r') AppendUtf8(text, c);
    }
    Document document = NewDocumentWithRoot("r");
    document->GetRoot()->CreateTextChild(text.c_str());
    Document loaded = LoadMemory(Saved(document));
    EXPECT_TRUE(loaded->GetRoot()->GetTextChildValue() == text);
    document->CreateRoot("r")->CreateTextChild("a\r\nb\rc\td");
    document->GetRoot()->SetAttribute("k", "a\r\nb\rc\td\ne");
    loaded = LoadMemory(Saved(document));
    EXPECT_STREQ(loaded->GetRoot()->GetTextChildValue(), "a\nb\nc\td");
    EXPECT_STREQ(loaded->GetRoot()->GetAttributeValue("k"), "a b c d e");
}
