// Damaged documents: one that uses everything, cut at every byte and with every byte changed. Each
// must give a tree or the exception that names the place, and leave nothing behind (which the leak
// sanitizer sees).
#include <cstdlib>
#include <initializer_list>

#include "support/sanitizers.h"
#include "support/testing.h"
#include "support/unicode.h"

using namespace norvask_test;

namespace {

const char* const ROOT_AND_BEFORE =
    "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\r\n"
    "<!-- a lending library's list \xE2\x80\x93 made by hand -->\n"
    "<?sort by='title'?>\n"
    "<!DOCTYPE lib:list [\n"
    "  <!ELEMENT lib:list (lib:book|note)*>\n"
    "  <!ELEMENT lib:book (title,price?,cover?)>\n"
    "  <!ELEMENT title (#PCDATA|em)*>\n"
    "  <!ELEMENT em (#PCDATA)>\n"
    "  <!ELEMENT price (#PCDATA)>\n"
    "  <!ELEMENT cover (#PCDATA)>\n"
    "  <!ELEMENT note ANY>\n"
    "  <!ATTLIST lib:list xmlns:lib CDATA #REQUIRED xmlns CDATA #IMPLIED kept NMTOKENS #IMPLIED>\n"
    "  <!ATTLIST lib:book lib:id ID #REQUIRED lent (yes|no) 'no' due CDATA #IMPLIED>\n"
    "  <!ATTLIST price unit CDATA #FIXED '&#8364;'>\n"
    "  <!ENTITY press 'Nordh\xC3\xA4user &#38;amp; Sons'>\n"
    "  <!ENTITY % hidden '<!ENTITY seen \"&#60;em>see&#60;/em>\">'> %hidden;\n"
    "]>\n"
    "<lib:list xmlns:lib=\"urn:example:library\" xmlns='urn:example:plain' kept='one  two'>\n"
    "\t<lib:book lib:id='b1' lent=\"yes\" due=\"2024-05-17\">\n"
    "\t\t<title>Tides &amp; <em>Stones</em>, \xE6\xBD\xAE\xE3\x81\xA8\xE7\x9F\xB3 "
    "\xF0\x9F\x8C\x8A</title>\n"
    "\t\t<price>12.50</price>\n"
    "\t\t<cover><![CDATA[R0lGODlhAQABAIAAAP///wAAACwAAAAAAQABAAACAkQBADs=\n]]></cover>\n"
    "\t</lib:book>\n"
    "\t<lib:book lib:id='b2'><title>The <![CDATA[<plain>]]> title of &press;</title></lib:book>\n"
    "\t<note>  &seen; &#x1F600;&#10;also<!-- or not -->  <?check twice?></note>\n"
    "</lib:list>";
const char* const COMMENT = "\n<!-- the end -->";

std::string Whole() { return std::string(ROOT_AND_BEFORE) + COMMENT + "\n"; }

// "" if the text is that of a parse error in this file on one of these lines, else what is wrong.
std::string WrongWith(const std::string& text, const std::string& file, long lines) {
    // What the parser finds before it has a first line has no place.
    if (text == LoadError("", 0, "unable to decode first line in entity 'Memfile'")) return "";
    const std::string front = "Load error:\nFile: '" + file + "'  Line '";
    if (text.compare(0, front.size(), front) != 0) return "begins otherwise: " + text;
    char* end = nullptr;
    const long line = std::strtol(text.c_str() + front.size(), &end, 10);
    if (line < 1 || line > lines) return "names another line: " + text;
    const std::string rest = end;
    if (rest.compare(0, 5, "':\n\n'") != 0 || rest.size() < 7 || rest.back() != '\'')
        return "tells nothing: " + text;
    return "";
}

// The number of line ends as the parser counts them, and one.
long Lines(const std::string& text) {
    long lines = 1;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\n' || (text[i] == '\r' && (i + 1 == text.size() || text[i + 1] != '\n')))
            ++lines;
    }
    return lines;
}

// "tree" or the text of the exception, of error class 2 or 3 only.
std::string Outcome(const std::string& xml, const SLoad& how) {
    try {
        return TreeText(LoadMemory(xml, how)).empty() ? "empty" : "tree";
    } catch (CXMLException& e) {
        EXPECT_TRUE(e.GetID() == 2 || e.GetID() == 3) << e.GetID();
        if (e.GetID() == 3) {
            EXPECT_EQ(std::string(e.GetMessage()).compare(0, 19, "Invalid XML name: '"), 0);
            return "name";
        }
        return e.GetMessage();
    }
}

SLoad Options(int combination) {
    SLoad how;
    how.keepPrefixes = (combination & 1) != 0;
    how.validate = (combination & 2) != 0;
    return how;
}

}  // namespace

TEST(LoadTruncated, TheWholeDocumentLoads) {
    const std::string tree =
        "list kept=\"one two\"("
        "book id=\"b1\" lent=\"yes\" due=\"2024-05-17\"("
        "title(\"Tides & \", em(\"Stones\"), \", \xE6\xBD\xAE\xE3\x81\xA8\xE7\x9F\xB3 "
        "\xF0\x9F\x8C\x8A\"), "
        "price unit=\"\xE2\x82\xAC\"(\"12.50\"), "
        "cover(#47494638396101000100800000ffffff0000002c00000000010001000002024401003b)), "
        "book id=\"b2\" lent=\"no\"(title(\"The \", \"<plain>\", "
        "\" title of Nordh\xC3\xA4user & Sons\")), "
        "note(\"  \", em(\"see\"), \" \xF0\x9F\x98\x80\\nalso  \"))";
    EXPECT_EQ(TreeText(LoadMemory(Whole())), tree);
    EXPECT_EQ(TreeText(LoadMemory(Whole(), Options(2))), tree);
    EXPECT_EQ(TreeText(LoadMemory(Whole(), Options(1))).substr(0, 103),
              "lib:list xmlns:=\"urn:example:plain\" xmlns:lib=\"urn:example:library\" "
              "kept=\"one two\"(lib:book lib:id=\"b1\"");
}

TEST(LoadTruncated, EveryBeginningOfADocumentIsAParseErrorOrComplete) {
    const std::string whole = Whole();
    const std::size_t root = std::string(ROOT_AND_BEFORE).size();
    const std::size_t comment = root + std::string(COMMENT).size();
    for (int combination = 0; combination < 4; ++combination) {
        for (std::size_t length = 1; length <= whole.size(); ++length) {
            const bool complete = length == root || length == root + 1 || length >= comment;
            const std::string begin = whole.substr(0, length);
            const std::string outcome = Outcome(begin, Options(combination));
            if (complete) {
                EXPECT_EQ(outcome, "tree") << length << " bytes, options " << combination;
            } else {
                EXPECT_EQ(WrongWith(outcome, "Memfile", Lines(begin)), "")
                    << length << " bytes, options " << combination;
            }
        }
    }
}

TEST(LoadTruncated, ABeginningInAFileIsTheSameErrorAsInMemory) {
    const std::string whole = Whole();
    for (std::size_t length = 1; length < whole.size(); length += 7) {
        const std::string begin = whole.substr(0, length);
        TemporaryFile file(".xml", begin);
        std::string fromFile = "tree";
        try {
            LoadFile(file.Name());
        } catch (CXMLException& e) {
            fromFile = e.GetMessage();
        }
        const std::size_t place = fromFile.find(file.Name());
        if (place != std::string::npos)
            fromFile.replace(place, std::string(file.Name()).size(), "Memfile");
        EXPECT_EQ(fromFile, Outcome(begin, SLoad())) << length << " bytes";
    }
}

TEST(LoadTruncated, EveryBeginningInUtf16IsAParseErrorOrComplete) {
    const std::string element =
        "<r k='\xC3\xA4'>\xF0\x9F\x8C\x8A<a>&amp;</a><![CDATA[QQ==]]><!-- c --></r>";
    std::string wide = "\xFF\xFE";
    const std::u16string units =
        u"<r k='\u00E4'>\U0001F30A<a>&amp;</a><![CDATA[QQ==]]><!-- c --></r>";
    for (const char16_t unit : units) {
        wide += static_cast<char>(unit & 0xFF);
        wide += static_cast<char>(unit >> 8);
    }
    EXPECT_EQ(TreeText(LoadMemory(wide)), TreeText(LoadMemory(element)));
    for (std::size_t length = 1; length < wide.size(); ++length) {
        const std::string outcome = Outcome(wide.substr(0, length), SLoad());
        EXPECT_EQ(WrongWith(outcome, "Memfile", 1), "") << length << " bytes";
    }
}

TEST(LoadTruncated, EveryChangedByteGivesATreeOrAnErrorThatNamesThePlace) {
    const std::string whole = Whole();
    const long lines = Lines(whole) + 1;
    std::size_t trees = 0;
    std::size_t errors = 0;
    // Where every allocation is watched the parser takes its time.
    const std::size_t step = IS_SANITIZED ? 3 : 1;
    for (std::size_t place = 0; place < whole.size(); place += step) {
        const char old = whole[place];
        for (const int change :
             std::initializer_list<int>{0x00, 0xFF, '<', '&', ']', '\'', old ^ 1, old ^ 0x80}) {
            std::string damaged = whole;
            damaged[place] = static_cast<char>(change);
            const std::string outcome = Outcome(damaged, Options(place % 2 ? 1 : 2));
            if (outcome == "tree") {
                ++trees;
            } else if (outcome != "name") {
                ++errors;
                EXPECT_EQ(WrongWith(outcome, "Memfile", lines), "")
                    << "byte " << place << " is " << change;
            }
        }
    }
    // Both happen, or this tests nothing.
    EXPECT_GT(trees, whole.size() / step / 2);
    EXPECT_GT(errors, whole.size() / step / 2);
}

TEST(LoadTruncated, EveryMissingByteGivesATreeOrAnErrorThatNamesThePlace) {
    const std::string whole = Whole();
    for (std::size_t place = 0; place < whole.size(); ++place) {
        const std::string outcome = Outcome(std::string(whole).erase(place, 1), Options(1));
        if (outcome != "tree" && outcome != "name") {
            EXPECT_EQ(WrongWith(outcome, "Memfile", Lines(whole)), "") << "without byte " << place;
        }
    }
}
