// With the library's own converter a load takes short cuts: names are converted once, strings go into a buffer
// that is used again. With any installed converter it does not. Both must build the same tree.
#include "support/converters.h"
#include "support/random_text.h"
#include "support/testing.h"

using namespace norvask;
using namespace norvask_test;

namespace {

std::string LoadedPlainly(const std::string& xml, bool keepPrefixes) {
    const CPlainConverter converter;
    return Saved(Load(xml, keepPrefixes));
}

class Generator {
public:
    explicit Generator(unsigned int seed) : m_Random(seed) {}

    std::string Xml() {
        std::string xml = "<?xml version='1.0'?>";
        if (m_Random.Number(3) == 0) {
            xml += "<!DOCTYPE r [<!ENTITY e 'entity \xC3\xA9'>]>";
            m_bHasEntity = true;
        } else {
            m_bHasEntity = false;
        }
        return xml + "<r xmlns='urn:d' xmlns:p='urn:p'>" + Content(4) + "</r>";
    }

private:
    std::string Name() {
        static const char* const NAMES[] = {"a",
                                            "p:a",
                                            "item",
                                            "p:item",
                                            "name-1.2",
                                            "_x",
                                            "\xC3\xA9t\xC3\xA9",
                                            "p:\xD0\xB6",
                                            "a-name-that-is-longer-than-most",
                                            "b"};
        return NAMES[m_Random.Number(sizeof(NAMES) / sizeof(NAMES[0]))];
    }

    std::string Text() {
        static const char* const TEXTS[] = {
            "text",      " ",
            "   ",       "\n\t",
            "&amp;",     "&#x20AC;",
            "&#x1F600;", "\xD1\x82\xD0\xB5",
            "\r\n",      "a longer text with more than sixteen characters",
            "&lt;b&gt;", "\xF0\x9F\x98\x80\xE2\x82\xAC"};
        std::string text;
        for (std::size_t i = m_Random.Number(5); i > 0; --i) {
            text += TEXTS[m_Random.Number(sizeof(TEXTS) / sizeof(TEXTS[0]))];
        }
        return text;
    }

    std::string Attributes() {
        std::string attributes;
        if (m_Random.Number(4) == 0) {
            attributes += " xmlns:q='urn:q" + std::to_string(m_Random.Number(3)) + "'";
        }
        for (const char* name : {"a", "p:a", "b", "long-attribute-name", "\xC3\xA9"}) {
            if (m_Random.Number(2) == 0) {
                attributes += std::string(" ") + name + "=\"" + Text() + "\"";
            }
        }
        return attributes;
    }

    std::string Content(int depth) {
        static const char* const SECTIONS[] = {"<![CDATA[aGVsbG8=]]>", "<![CDATA[no base64!]]>",
                                               "<![CDATA[]]>", "<![CDATA[\xC3\xA9]]>",
                                               "<![CDATA[ \n]]>"};
        std::string content;
        for (std::size_t i = m_Random.Number(6); i > 0; --i) {
            switch (m_Random.Number(7)) {
                case 0:
                    content += SECTIONS[m_Random.Number(5)];
                    break;
                case 1:
                    content += "<!-- comment --><?target data?>";
                    break;
                case 2:
                    content += m_bHasEntity ? "&e;" : Text();
                    break;
                case 3:
                    content += Text();
                    break;
                default: {
                    const std::string name = Name();
                    content += "<" + name + Attributes() + ">" +
                               (depth > 0 ? Content(depth - 1) : "") + "</" + name + ">";
                    break;
                }
            }
        }
        return content;
    }

    RandomText m_Random;
    bool m_bHasEntity = false;
};

TEST(LoadPaths, AnInstalledConverterOfTheSameKindChangesNothing) {
    std::size_t bytes = 0;
    for (unsigned int seed = 0; seed < 300; ++seed) {
        const std::string xml = Generator(seed).Xml();
        for (const bool keepPrefixes : {false, true}) {
            const std::string fast = Saved(Load(xml, keepPrefixes));
            ASSERT_EQ(fast, LoadedPlainly(xml, keepPrefixes)) << xml;
            bytes += fast.size();
        }
    }
    EXPECT_GT(bytes, 100000U);
}

TEST(LoadPaths, ThousandsOfDifferentNamesAreAllKept) {
    std::string xml = "<r>";
    for (int i = 0; i < 3000; ++i) {
        const std::string name = "n" + std::to_string(i * 31);
        xml += "<" + name + " a" + std::to_string(i) + "='v'/>";
    }
    xml += "</r>";
    EXPECT_EQ(Saved(Load(xml)), LoadedPlainly(xml, false));
}

// The parser reports every reference as a run of its own, so a text of many runs must not be copied for each.
TEST(LoadPaths, ATextOfManyReferencesIsOneTextInLinearTime) {
    std::string xml = "<r>";
    std::string expected;
    for (int i = 0; i < 300000; ++i) {
        xml += "&lt;";
        expected += '<';
    }
    xml += "</r>";
    const Document document = Load(xml);
    EXPECT_EQ(std::string(document->GetRoot()->GetTextChildValue()), expected);
}

}  // namespace
