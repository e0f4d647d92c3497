// What a caller is told when a load fails: sources that cannot be read, parameters, malformed
// documents with their lines, and that nothing of a failure is left for the next load.
#include <unistd.h>

#include "support/testing.h"

using namespace norvask_test;

namespace {

std::string Directory(const std::string& path) { return path.substr(0, path.rfind('/') + 1); }

std::string CurrentDirectory() {
    std::vector<char> path(4096);
    return getcwd(path.data(), path.size()) ? path.data() : "no current directory";
}

}  // namespace

TEST(LoadError, OfAMissingFileNamesItInTheParsersText) {
    EXPECT_LOAD_ERROR(LoadFile("/nonexistent/catalogue.xml"), "", 0,
                      "unable to open primary document entity '/nonexistent/catalogue.xml'");
    EXPECT_LOAD_ERROR(LoadFile("no-such-catalogue.xml"), "", 0,
                      "unable to open primary document entity '" + CurrentDirectory() +
                          "/no-such-catalogue.xml'");
    EXPECT_LOAD_ERROR(LoadFile("file:///nonexistent/catalogue.xml"), "", 0,
                      "unable to open primary document entity 'file:///nonexistent/catalogue.xml'");
    TemporaryFile file(".xml", "<r/>");
    EXPECT_LOAD_ERROR(
        LoadFile(std::string(file.Name()) + "/below"), "", 0,
        std::string("unable to open primary document entity '") + file.Name() + "/below'");
}

TEST(LoadError, OfAnEmptyNameIsThatOfAMissingFile) {
    EXPECT_LOAD_ERROR(LoadFile(""), "", 0, "unable to open primary document entity ''");
}

TEST(LoadError, OfADirectoryIsThatItCannotBeRead) {
    EXPECT_LOAD_ERROR(LoadFile("/"), "", 0, "unable to read data from file");
    EXPECT_LOAD_ERROR(LoadFile(Directory(TemporaryFile().Name())), "", 0,
                      "unable to read data from file");
}

TEST(LoadError, OfAnEmptyFileIsThatThereIsNoDocument) {
    TemporaryFile file(".xml", "");
    EXPECT_LOAD_ERROR(LoadFile(file.Name()), file.Name(), 1, "invalid document structure");
    EXPECT_LOAD_ERROR(LoadFile("/dev/null"), "/dev/null", 1, "invalid document structure");
}

TEST(LoadError, OfNoSourceIsTheParameters) {
    unsigned char bytes[] = {'<', 'r', '/', '>'};
    const char* noName = nullptr;
    unsigned char* noBuffer = nullptr;
    for (const SLoad& how : {SLoad(), SLoad{true, true, {}, true, true}}) {
        EXPECT_INVALID_PARAMETER(LoadFrom(how, noName));
        for (const unsigned length : {0u, 4u, 0xFFFFFFFFu}) {
            EXPECT_INVALID_PARAMETER(LoadFrom(how, noBuffer, length));
        }
        EXPECT_INVALID_PARAMETER(LoadFrom(how, bytes, 0u));
    }
}

TEST(LoadError, NamesTheFileAsTheParserResolvedIt) {
    TemporaryFile file(".xml", "<r>\n<a>\n</r>");
    const std::string name = file.Name();
    const std::string message = "expected end of tag 'a'";
    EXPECT_LOAD_ERROR(LoadFile(name), name, 3, message);
    EXPECT_LOAD_ERROR(LoadFile(Directory(name) + "./" + file.BaseName()), name, 3, message);
    EXPECT_LOAD_ERROR(LoadFile("file://" + name), "file://" + name, 3, message);
}

TEST(LoadError, TellsTheLineFromOne) {
    const std::string crLf = "<r>\r\n\r\n<a>\r\n</r>";
    const std::string cr = "<r>\r\r<a>\r</r>";
    const std::string lf = "<r>\n\n<a>\n</r>";
    for (const std::string& xml : {crLf, cr, lf}) {
        EXPECT_LOAD_ERROR(LoadMemory(xml), "Memfile", 4, "expected end of tag 'a'");
    }
    EXPECT_LOAD_ERROR(LoadMemory(std::string(70000, '\n') + "<r>"), "Memfile", 70001,
                      "input ended before all started tags were ended; last tag started "
                      "is 'r'");
}

TEST(LoadError, TellsWhatIsMissingAroundTheRoot) {
    ExpectErrors({
        {" ", 1, "invalid document structure"},
        {"text", 1, "invalid document structure"},
        {"\n\n<?xml version='1.0'?>\n<r/>", 3,
         "XML or TEXT declaration must start at line 1, column 1"},
        {"<?xml version='1.0'?>", 1, "invalid document structure"},
        {"<!-- only a comment -->", 1, "invalid document structure"},
        {"<r/>\n<r/>", 2, "comment or processing instruction expected"},
        {"<r/>text", 1, "comment or processing instruction expected"},
        {"<r/></r>", 1, "comment or processing instruction expected"},
        {"</r>", 1, "unmatched end tag detected"},
        {"<r>", 1, "input ended before all started tags were ended; last tag started is 'r'"},
        {"<r><a>\n", 2, "input ended before all started tags were ended; last tag started is 'a'"},
        {"\xEF\xBB\xBF", 1, "invalid document structure"},
    });
}

TEST(LoadError, TellsWhatIsWrongWithTags) {
    ExpectErrors({
        {"<", 1, "element name expected"},
        {"<1/>", 1, "element name expected"},
        {"< r/>", 1, "element name expected"},
        {"<r", 1, "unexpected end of input"},
        {"<r></a>", 1, "expected end of tag 'r'"},
        {"<a><r></a></r>", 1, "expected end of tag 'r'"},
        {"<r k/>", 1, "equal sign expected"},
        {"<r k=/>", 1, "attribute value expected"},
        {"<r k=v/>", 1, "attribute value expected"},
        {"<r\n k='1'\n l='<'/>", 3,
         "'<' character cannot be used in attribute value 'l'; use &lt; instead"},
        {"<r k='1'l='2'/>", 1, "whitespace expected"},
        {"<r k='", 1, "unexpected end of input"},
        {"<r k='&'/>", 1, "expected entity name for reference"},
        {"<r/ >", 1, "unterminated start tag 'r'"},
    });
}

TEST(LoadError, TellsWhatIsWrongWithContent) {
    ExpectErrors({
        {"<r>&</r>", 1, "expected entity name for reference"},
        {"<r>&amp</r>", 1, "unterminated entity reference 'amp'"},
        {"<r>\n&#x;</r>", 2, "invalid character reference"},
        {"<r>]]></r>", 1, "']]>' sequence is not allowed in character data"},
        {"<r><![CDATA[x", 1, "unterminated CDATA section"},
        {"<r><![CDAT[x]]></r>", 1, "expected comment or CDATA section"},
        {"<r><!-- x", 1, "unterminated comment"},
        {"<r><!-- a -- b --></r>", 1, "'--' sequence is illegal in comment"},
        {"<r><?p", 1, "unterminated processing instruction"},
        {"<r><?xml?></r>", 1, "processing instruction cannot start with 'xml'"},
    });
}

TEST(LoadError, TellsWhatIsWrongWithTheDeclaration) {
    ExpectErrors({
        {"<?xml", 1, "processing instruction cannot start with 'xml'"},
        {"<?xml version='2.0'?><r/>", 1, "unsupported XML version '2.0'"},
        {"<?xml version=''?><r/>", 1, "unsupported XML version ''"},
        {"<?xml encoding='UTF-8'?><r/>", 1, "version declaration is required in XML declaration"},
        {"<?xml version='1.0' encoding=''?><r/>", 1, "invalid XML encoding declaration ''"},
        {"<?xml version='1.0' standalone='maybe'?><r/>", 1, "invalid standalone declaration"},
    });
}

TEST(LoadError, CutsEachPartOfTheTextAt255Bytes) {
    const std::string longName(300, 'n');
    EXPECT_LOAD_ERROR(LoadMemory("<" + longName + "></r>"), "Memfile", 1,
                      "expected end of tag '" + std::string(255 - 21, 'n'));
    // A character at the cut stays whole, here by leaving two of its three bytes' room unused.
    const std::string three = "\xE6\x97\xA5";
    std::string wide = "n";
    for (int i = 0; i < 100; ++i)
        wide += three;
    std::string shown = "n";
    while (shown.size() + three.size() <= 255 - 21)
        shown += three;
    ASSERT_EQ(shown.size(), 232u);
    EXPECT_LOAD_ERROR(LoadMemory("<" + wide + "></r>"), "Memfile", 1,
                      "expected end of tag '" + shown);
    const std::string path = "/nonexistent/" + longName;
    EXPECT_LOAD_ERROR(LoadFile(path), "", 0,
                      ("unable to open primary document entity '" + path).substr(0, 255));
}

TEST(LoadError, LeavesNothingForTheNextLoad) {
    for (int i = 0; i < 3; ++i) {
        EXPECT_LOAD_ERROR(LoadMemory("<r xmlns:p='1' xmlns:q='2'>text<p:a"), "Memfile", 1,
                          "unexpected end of input");
        EXPECT_EQ(TreeText(LoadMemory("<r/>", KeepPrefixes())), "r()");
        EXPECT_LOAD_ERROR(LoadMemory("<r xmlns:p='1'>&", KeepPrefixes()), "Memfile", 1,
                          "expected entity name for reference");
        EXPECT_EQ(TreeText(LoadMemory("<r/>", KeepPrefixes())), "r()");
    }
}

TEST(LoadError, IsNotAWarning) {
    // The declared encoding contradicts the bytes; an attribute is declared twice.
    for (const SLoad& how : {SLoad(), Validate()}) {
        EXPECT_EQ(TreeText(LoadMemory("<?xml version='1.0' encoding='UTF-16'?><r/>", how)), "r()");
        EXPECT_EQ(TreeText(LoadMemory("<!DOCTYPE r [<!ELEMENT r ANY>"
                                      "<!ATTLIST r k CDATA '1' k CDATA '2'>]><r/>",
                                      how)),
                  "r k=\"1\"()");
    }
}
