// Documents in several encodings, from a file and from memory, and all characters of Unicode.
#include <clocale>
#include <cstdio>

#include "support/testing.h"
#include "support/unicode.h"

using namespace norvask_test;

namespace {

enum class Order { Little, Big };

// Code points as UTF-16 or UTF-32 bytes.
std::string Wide(const std::u32string& text, Order order, std::size_t unitSize) {
    std::string bytes;
    const auto add = [&](char32_t unit) {
        for (std::size_t i = 0; i < unitSize; ++i) {
            const std::size_t place = order == Order::Little ? i : unitSize - 1 - i;
            bytes += static_cast<char>((unit >> (8 * place)) & 0xFF);
        }
    };
    for (const char32_t c : text) {
        if (unitSize == 4) {
            add(c);
        } else {
            std::u16string units;
            AppendUtf16(units, c);
            for (const char16_t unit : units)
                add(unit);
        }
    }
    return bytes;
}

constexpr const char* TREE = "r k=\"\xC3\xA9\"(\"\xE2\x82\xAC \xF0\x9F\x98\x80\")";
const std::u32string BODY = U"<r k='\u00E9'>\u20AC \U0001F600</r>";

}  // namespace

TEST(LoadEncoding, ReadsUtf8WithAndWithoutAMarkAndADeclaration) {
    const std::string body = "<r k='\xC3\xA9'>\xE2\x82\xAC \xF0\x9F\x98\x80</r>";
    const std::string mark = "\xEF\xBB\xBF";
    ExpectTrees({{body, TREE}});
    ExpectTrees({{mark + body, TREE}});
    ExpectTrees({{"<?xml version='1.0' encoding='UTF-8'?>" + body, TREE}});
    ExpectTrees({{"<?xml version='1.0' encoding='utf-8'?>\n" + body, TREE}});
    ExpectTrees({{mark + "<?xml version='1.0' encoding='UTF-8'?>" + body, TREE}});
    // The bytes contradict the declaration; the parser only warns.
    ExpectTrees({{"<?xml version='1.0' encoding='UTF-16'?>" + body, TREE}});
}

TEST(LoadEncoding, ReadsUtf16InBothOrders) {
    for (const Order order : {Order::Little, Order::Big}) {
        const std::string little = order == Order::Little ? "LE" : "BE";
        SCOPED_TRACE(little);
        const std::u32string mark = U"\uFEFF";
        const std::u32string declared = U"<?xml version='1.0' encoding='UTF-16'?>";
        const std::u32string exact = std::u32string(U"<?xml version='1.0' encoding='UTF-16") +
                                     (order == Order::Little ? U"LE" : U"BE") + U"'?>";
        ExpectTrees({{Wide(mark + BODY, order, 2), TREE}});
        ExpectTrees({{Wide(mark + declared + BODY, order, 2), TREE}});
        ExpectTrees({{Wide(declared + BODY, order, 2), TREE}});
        ExpectTrees({{Wide(exact + BODY, order, 2), TREE}});
    }
}

TEST(LoadEncoding, ReadsUtf32InBothOrders) {
    const std::u32string declared = U"<?xml version='1.0' encoding='ISO-10646-UCS-4'?>";
    ExpectTrees({{Wide(declared + BODY, Order::Little, 4), TREE}});
    ExpectTrees({{Wide(declared + BODY, Order::Big, 4), TREE}});
}

TEST(LoadEncoding, ReadsSingleByteEncodings) {
    ExpectTrees({{"<?xml version='1.0' encoding='ISO-8859-1'?><r k='\xE9'>\xFF\x80</r>",
                  "r k=\"\xC3\xA9\"(\"\xC3\xBF\xC2\x80\")"}});
    ExpectTrees(
        {{"<?xml version='1.0' encoding='iso-8859-15'?><r>\xA4</r>", "r(\"\xE2\x82\xAC\")"}});
    ExpectTrees(
        {{"<?xml version='1.0' encoding='windows-1252'?><r>\x80</r>", "r(\"\xE2\x82\xAC\")"}});
    ExpectTrees({{"<?xml version='1.0' encoding='US-ASCII'?><r>&#233;</r>", "r(\"\xC3\xA9\")"}});
    ExpectTrees({{"<?xml version='1.0' encoding='ISO-8859-1'?><\xE9 \xE8='1'/>",
                  "\xC3\xA9 \xC3\xA8=\"1\"()"}});
}

TEST(LoadEncoding, SavesEveryDocumentAsUtf8) {
    EXPECT_EQ(Saved(LoadMemory("<?xml version='1.0' encoding='ISO-8859-1'?><r k='\xE9'>\xE8</r>")),
              "<?xml version=\"1.0\"?><r k=\"\xC3\xA9\">\xC3\xA8</r>");
}

TEST(LoadEncoding, TellsEncodingsThatItDoesNotKnowAndBytesThatTheirsDoesNotHave) {
    ExpectErrors({{"<?xml version='1.0' encoding='nosuch'?><r/>", 1,
                   "unable to create converter for 'NOSUCH' encoding"}});
    ExpectErrors({{"\n<?xml version='1.0'?><r/>", 2,
                   "XML or TEXT declaration must start at line 1, column 1"}});
    ExpectErrors({{"<?xml version='1.0' encoding='US-ASCII'?><r>\xE9</r>", 1,
                   "char 0xE9 is not representable in 'US-ASCII' encoding"}});
    ExpectErrors({{Wide(U"\uFEFF<r>", Order::Little, 2) + std::string("\x00\xD8", 2) +
                       Wide(U"</r>", Order::Little, 2),
                   1, "leading surrogate character is not followed by a legal second character"}});
}

// The parser puts the bad bytes themselves into its text, which the converter then replaces.
TEST(LoadEncoding, TellsInvalidUtf8InTextsValuesAndNames) {
    const std::string bad = REPLACEMENT;
    struct {
        const char* bytes;
        std::string message;
    } const rows[] = {
        {"\x80", "invalid byte '" + bad + "' at position 1 of a 1-byte sequence"},
        {"\xC0\x80", "invalid byte '" + bad + "' at position 1 of a 1-byte sequence"},
        {"\xC3(", "invalid byte '(' at position 2 of a 2-byte sequence"},
        {"\xE9t\xE9", "invalid byte 't' at position 2 of a 3-byte sequence"},
        {"\xE2\x82(", "invalid byte '(' at position 3 of a 3-byte sequence"},
        {"\xED\xA0\x80", "irregular bytes '" + bad + "' and '" + bad + "' of a 3-byte sequence"},
        {"\xF4\x90\x80\x80", "invalid bytes '" + bad + "' and '" + bad + "' of a 4-byte sequence"},
        {"\xFF", "invalid byte '" + bad + "' at position 1 of a 6-byte sequence"},
    };
    for (const auto& row : rows) {
        const std::string bytes = row.bytes;
        ExpectErrors({{"<r>" + bytes + "        </r>", 1, row.message}});
        ExpectErrors({{"<r k='" + bytes + "        '/>", 1, row.message}});
        ExpectErrors({{"<r" + bytes + "        />", 1, row.message}});
        ExpectErrors({{"<r><![CDATA[" + bytes + "        ]]></r>", 1, row.message}});
    }
}

TEST(LoadEncoding, TellsCharactersThatNoDocumentMayHold) {
    ExpectErrors({{"<r>\x01</r>", 1, "invalid character 0x1"}});
    ExpectErrors({{"<r>\xEF\xBF\xBE</r>", 1, "invalid character 0xFFFE"}});
    ExpectErrors({{"<r>\n\xEF\xBF\xBF</r>", 2, "invalid character 0xFFFF"}});
    ExpectErrors({{"<r>&#0;</r>", 1, "invalid character reference"}});
    ExpectErrors({{"<r>&#xD800;</r>", 1, "invalid character reference"}});
    ExpectErrors({{"<r>&#xFFFE;</r>", 1, "invalid character reference"}});
    ExpectErrors({{"<r>&#x110000;</r>", 1, "invalid character reference"}});
    ExpectErrors({{"<r k='&#1;'/>", 1, "invalid character reference"}});
    ExpectErrors({{"<?xml version='1.1'?><r>\x01</r>", 1, "invalid character 0x1"}});
}

// Narrow strings are UTF-8 whatever the locale says.
TEST(LoadEncoding, DoesNotDependOnTheLocale) {
    const std::string before = std::setlocale(LC_ALL, nullptr);
    for (const char* locale : {"C", "C.UTF-8", ""}) {
        if (!std::setlocale(LC_ALL, locale)) continue;
        ExpectTrees({{"<\xC3\xA9>\xE2\x82\xAC</\xC3\xA9>", "\xC3\xA9(\"\xE2\x82\xAC\")"}});
    }
    std::setlocale(LC_ALL, before.c_str());
}

TEST(LoadEncoding, CarriesEveryCharacterOfEveryPlaneInTextsAndValues) {
    for (char32_t plane = 0; plane <= LAST_CODE_POINT; plane += 0x10000) {
        std::string raw;
        std::string value;
        std::string text;
        std::string references;
        std::u32string codePoints;
        for (char32_t c = plane; c < plane + 0x10000; ++c) {
            if (!IsXmlCharacter(c)) continue;
            char reference[16];
            std::snprintf(reference, sizeof reference, "&#x%X;", static_cast<unsigned>(c));
            references += reference;
            AppendUtf8(text, c);
            const bool markup =
                c < 0x80 &&
                std::string("<>&\"'\r\n\t").find(static_cast<char>(c)) != std::string::npos;
            raw += markup ? std::string(reference) : Utf8(c);
            if (!markup) codePoints += c;
        }
        const std::string outline = "r k=" + Quoted(text) + "(" + Quoted(text) + ")";
        EXPECT_TRUE(TreeText(LoadMemory("<r k='" + raw + "'>" + raw + "</r>")) == outline)
            << "plane " << (plane >> 16);
        EXPECT_TRUE(TreeText(LoadMemory("<r k='" + references + "'>" + references + "</r>")) ==
                    outline)
            << "plane " << (plane >> 16) << " as references";
        std::string utf8;
        for (const char32_t c : codePoints)
            AppendUtf8(utf8, c);
        Document wide = LoadMemory(Wide(U"\uFEFF<r>" + codePoints + U"</r>", Order::Big, 2));
        EXPECT_TRUE(TreeText(wide) == "r(" + Quoted(utf8) + ")") << "plane " << (plane >> 16);
    }
}
