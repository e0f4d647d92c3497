// With the library's own converter a load takes short cuts: names are converted once, strings go
// into a buffer that is used again. With any installed converter it does not. Both must build the
// same tree.
#include "support/converters.h"
#include "support/random_document.h"
#include "support/testing.h"

using namespace norvask_test;

namespace {

std::string LoadedPlainly(const std::string& xml, bool keepPrefixes) {
    const CPlainConverter converter;
    return Saved(Load(xml, keepPrefixes));
}

}  // namespace

TEST(LoadPaths, AnInstalledConverterOfTheSameKindChangesNothing) {
    std::size_t bytes = 0;
    for (unsigned int seed = 0; seed < 300; ++seed) {
        const std::string xml = CRandomDocument(seed).Xml();
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

// The parser reports every reference as a run of its own, so a text of many runs must not be copied
// for each.
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
