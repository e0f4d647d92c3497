// Where a problem lies: file, line, column in characters, and the path of the element.
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>

#include "support/files.h"
#include "support/problems.h"
#include "support/recording_handler.h"
#include "support/testing.h"

using namespace norvask_test;

namespace {

// From memory, from a file, and from a function, as a tree and as callbacks. Of the function's only
// `ofFunction` is asked, if it is given: it cannot be read twice.
void ExpectPlaces(const std::string& xml, const std::string& lines,
                  const SXMLLoadOptions& options = SXMLLoadOptions(),
                  const std::string& ofCallbacks = "") {
    SCOPED_TRACE(Quoted(xml.substr(0, 200)));
    const auto named = [&lines](const std::string& name) {
        std::string text = lines;
        for (std::size_t at = 0; (at = text.find("FILE:", at)) != std::string::npos;)
            text.replace(at, 4, name);
        return text;
    };
    const TemporaryFile file(".xml", xml);
    CRecordingHandler handler;
    EXPECT_EQ(ProblemsOf([&] { XMLLoadText(xml, options); }), named("Memfile"));
    EXPECT_EQ(ProblemsOf([&] { XMLLoadFile(file.Name(), options); }), named(file.Name()));
    EXPECT_EQ(ProblemsOf([&] { XMLLoadText(xml, handler, options); }), named("Memfile"));
    EXPECT_EQ(ProblemsOf([&] { XMLLoadFile(file.Name(), handler, options); }), named(file.Name()));
    std::istringstream stream(xml);
    EXPECT_EQ(ProblemsOf([&] { XMLLoadStream(stream, options.Name("s.xml")); }), named("s.xml"));
    std::istringstream again(xml);
    const std::string told =
        ProblemsOf([&] { XMLLoadStream(again, handler, options.Name("s.xml")); });
    EXPECT_EQ(told, ofCallbacks.empty() ? named("s.xml") : ofCallbacks);
}

// The text in other encodings; each character must be one below U+10000 or four bytes of UTF-8.
std::u32string Characters(const std::string& utf8) {
    std::u32string characters;
    for (std::size_t i = 0; i < utf8.size();) {
        const auto first = static_cast<unsigned char>(utf8[i]);
        const std::size_t length = first < 0x80 ? 1 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
        char32_t c = length == 1 ? first : first & (0xFFU >> (length + 1));
        for (std::size_t j = 1; j < length; ++j)
            c = (c << 6) | (static_cast<unsigned char>(utf8[i + j]) & 0x3FU);
        characters += c;
        i += length;
    }
    return characters;
}
std::string Utf16(const std::string& utf8, bool isLittle, bool hasMark) {
    std::string bytes;
    const auto put = [&](char32_t unit) {
        const char low = static_cast<char>(unit & 0xFF);
        const char high = static_cast<char>(unit >> 8);
        bytes += isLittle ? low : high;
        bytes += isLittle ? high : low;
    };
    if (hasMark) put(0xFEFF);
    for (const char32_t c : Characters(utf8)) {
        if (c >= 0x10000) {
            put(0xD800 + ((c - 0x10000) >> 10));
            put(0xDC00 + ((c - 0x10000) & 0x3FF));
        } else {
            put(c);
        }
    }
    return bytes;
}

const char* const END_OF_B = "expected end of tag 'b'";
const char* const SMILE = "\xF0\x9F\x98\x80";

}  // namespace

// "<b>...</c>": the parser notices behind "</", so at the eighth character if "..." are two.
TEST(ErrorPlaces, TheColumnCountsCharacters) {
    const struct {
        const char* text;
        int characters;
    } rows[] = {
        {"", 0},
        {"xx", 2},
        {"\xC3\xA4", 1},
        {"\xE2\x82\xAC\xE2\x82\xAC", 2},
        {"e\xCC\x81", 2},  // a letter and its accent
        {"\xF0\x9F\x98\x80", 1},
        {"\xF0\x9F\x98\x80\xF0\x9F\x98\x80x\xF0\x9F\x98\x80", 4},
        {"\xF0\x9F\x91\xA9\xE2\x80\x8D\xF0\x9F\x92\xBB", 3},  // joined
        {"\t\t", 2},
        {"&#x1F600;", 9},
        {"<!--\xF0\x9F\x98\x80-->", 8},
        {"<?p \xF0\x9F\x98\x80?>", 7},
        {"<![CDATA[\xF0\x9F\x98\x80]]>", 13},
        {"<x k='\xF0\x9F\x98\x80'/>", 10},
        {"\xEF\xBB\xBF", 1},  // at this place a character
    };
    for (const auto& row : rows) {
        for (const char* const front :
             {"<a>\n", "<a>\r\n", "<a>\r", "<a>\n\r\n \r\r\n", "<a>\xF0\x9F\x98\x80\n",
              "<a>\xF0\x9F\x98\x80\r\n\r\n", "<a>\r\xF0\x9F\x98\x80\n"}) {
            int line = 1;
            for (std::size_t i = 0; i < std::strlen(front); ++i)
                line += front[i] == '\n' || (front[i] == '\r' && front[i + 1] != '\n') ? 1 : 0;
            const std::string xml = std::string(front) + "<b>" + row.text + "</c></a>";
            const std::string place = std::to_string(line) + ":";
            const std::string rest = std::string(": ") + END_OF_B + " @ /a/b[1]\n";
            const std::string whole =
                "fatal FILE:" + place + std::to_string(6 + row.characters) + rest;
            // A stream of callbacks is not kept, and one with pairs has no column.
            const bool hasPairs = xml.find('\xF0') != std::string::npos;
            ExpectPlaces(xml, whole, SXMLLoadOptions(),
                         hasPairs ? "fatal s.xml:" + place + "0" + rest : "");
        }
    }
}

TEST(ErrorPlaces, TheColumnCountsCharactersOfOtherEncodings) {
    const struct {
        std::string text;
        std::string expected;
    } rows[] = {
        {"<a>\n<b>xx</c></a>", "2:8"},
        {std::string("<a>\n<b>") + SMILE + SMILE + "</c></a>", "2:8"},
        {std::string("<a>\r\n") + SMILE + "\r\n<b>\xC3\xA4" + SMILE + "</c></a>", "3:8"},
        {std::string("<a>") + SMILE + "<b></c></a>", "1:10"},
    };
    for (const auto& row : rows) {
        for (const bool isLittle : {false, true}) {
            for (const bool hasMark : {false, true}) {
                SCOPED_TRACE(std::string(isLittle ? "little" : "big") + (hasMark ? " mark" : ""));
                const std::string lines =
                    "fatal FILE:" + row.expected + ": " + END_OF_B + " @ /a/b[1]\n";
                const std::string line = row.expected.substr(0, 2);
                // Without a mark the declaration tells; it stands in the first line.
                const std::string xml =
                    hasMark ? row.text : "<?xml version='1.0' encoding='UTF-16'?>" + row.text;
                if (!hasMark && row.expected[0] == '1') continue;
                ExpectPlaces(Utf16(xml, isLittle, hasMark), lines, SXMLLoadOptions(),
                             row.text.find(SMILE) != std::string::npos
                                 ? "fatal s.xml:" + line + "0: " + END_OF_B + " @ /a/b[1]\n"
                                 : "");
            }
        }
        const std::string marked = "\xEF\xBB\xBF" + row.text;
        EXPECT_EQ(ProblemsOf([&] { XMLLoadText(marked); }),
                  "fatal Memfile:" + row.expected + ": " + END_OF_B + " @ /a/b[1]\n");
    }
    const std::string declaration = "<?xml version='1.0' encoding='";
    ExpectPlaces(declaration + "ISO-8859-1'?>\n<a>\n<b>\xE4\xFF</c></a>",
                 "fatal FILE:3:8: expected end of tag 'b' @ /a/b[1]\n");
    ExpectPlaces(declaration + "windows-1252'?>\n<a><b>\x80</c></a>",
                 "fatal FILE:2:10: expected end of tag 'b' @ /a/b[1]\n");
    ExpectPlaces(declaration + "utf-8'?>\n<a><b>" + SMILE + "</c></a>",
                 "fatal FILE:2:10: expected end of tag 'b' @ /a/b[1]\n", SXMLLoadOptions(),
                 "fatal s.xml:2:0: expected end of tag 'b' @ /a/b[1]\n");
    ExpectPlaces(declaration + "US-ASCII'?>\n<a><b>xx</c></a>",
                 "fatal FILE:2:11: expected end of tag 'b' @ /a/b[1]\n");
}

// The correction looks at the line of the problem, however long and wherever it is.
TEST(ErrorPlaces, TheColumnIsRightInLongLines) {
    for (const std::size_t length : {16383U, 16384U, 49151U, 49152U, 65535U, 65536U, 200000U}) {
        std::string text;
        for (std::size_t i = 0; i < length; ++i)
            text += SMILE;
        EXPECT_EQ(ProblemsOf([&] { XMLLoadText("<a>\n<b>" + text + "</c></a>"); }),
                  "fatal Memfile:2:" + std::to_string(6 + length) +
                      ": expected end of tag 'b' @ /a/b[1]\n");
        EXPECT_EQ(ProblemsOf([&] { XMLLoadText("<a>" + text + "\n<b></c></a>"); }),
                  "fatal Memfile:2:6: expected end of tag 'b' @ /a/b[1]\n");
    }
}

// Of a name that the library does not take, and of what is invalid, too.
TEST(ErrorPlaces, EveryKindOfProblemHasItsColumn) {
    const std::string smile = SMILE;
    EXPECT_PROBLEMS(XMLLoadText("<a>\n" + smile + "<b x\xF0\x90\x80\x80='1'/></a>"), 3,
                    "fatal Memfile:2:13: Invalid XML name: 'x\xF0\x90\x80\x80'. @ /a/b[1]\n");
    EXPECT_PROBLEMS(
        XMLLoadText("<!DOCTYPE a [<!ELEMENT a ANY>]>\n<a>\n" + smile + "<b/>" + smile + "<c/></a>",
                    SXMLLoadOptions().Validate().CollectProblems()),
        2,
        "error Memfile:3:6: no declaration found for element 'b' @ /a/b[1]\n"
        "error Memfile:3:11: no declaration found for element 'c' @ /a/c[1]\n");
}

TEST(ErrorPlaces, PathsNameElementsAndTheirPlaces) {
    const struct {
        const char* xml;
        const char* lines;
    } rows[] = {
        {"<a></b>", "fatal FILE:1:6: expected end of tag 'a' @ /a\n"},
        {"<a><b/><b/><c></b></a>", "fatal FILE:1:17: expected end of tag 'c' @ /a/c[1]\n"},
        {"<a><b/><c/><b/><c></b></a>", "fatal FILE:1:21: expected end of tag 'c' @ /a/c[2]\n"},
        {"<a><b/><b/><b><b/><b></c></b></a>",
         "fatal FILE:1:24: expected end of tag 'b' @ /a/b[3]/b[2]\n"},
        {"<a><b><c/><c/></b><b><c></b></a>",
         "fatal FILE:1:27: expected end of tag 'c' @ /a/b[2]/c[1]\n"},
        // As they are written; a prefix makes another name.
        {"<p:a xmlns:p='u' xmlns:q='u'><p:b/><q:b/><b/><q:b></b></p:a>",
         "fatal FILE:1:53: expected end of tag 'q:b' @ /p:a/q:b[2]\n"},
        {"<a xmlns='u'><b xmlns='v'/><b></a>",
         "fatal FILE:1:33: expected end of tag 'b' @ /a/b[2]\n"},
        {"<\xC3\xA4><\xE2\x82\xAC/><\xE2\x82\xAC></\xC3\xA4>",
         "fatal FILE:1:13: expected end of tag '\xE2\x82\xAC' @ /\xC3\xA4/\xE2\x82\xAC[2]\n"},
        // What is no element does not count.
        {"<a>x<!--c--><b/>y<![CDATA[z]]><?b?><!--<b>--><b><!----></a>",
         "fatal FILE:1:58: expected end of tag 'b' @ /a/b[2]\n"},
        // A start tag that is not read to its end lies in the element around it.
        {"<a><b/><b x></b></a>", "fatal FILE:1:12: equal sign expected @ /a\n"},
        {"<a x=></a>", "fatal FILE:1:6: attribute value expected\n"},
        {"<a>\n<b></b></a>\n<c/>", "fatal FILE:3:1: comment or processing instruction expected\n"},
        {"<!DOCTYPE a [<!x>]><a/>", "fatal FILE:1:16: markup declaration expected\n"},
    };
    for (const auto& row : rows)
        ExpectPlaces(row.xml, row.lines);
}

TEST(ErrorPlaces, PathsOfWhatIsInvalid) {
    const SXMLLoadOptions all = SXMLLoadOptions().Validate().CollectProblems();
    const struct {
        const char* xml;
        const char* lines;
    } rows[] = {
        {"<!DOCTYPE orders [<!ELEMENT orders (order*)><!ELEMENT order EMPTY>\n"
         "<!ATTLIST order amount NMTOKEN #REQUIRED>]>\n"
         "<orders><order amount='1'/><order amount='2'/><order amount='# #'/><order/></orders>",
         "error FILE:3:68: value '# #' for attribute 'amount' is invalid Name or NMTOKEN value @ "
         "/orders/order[3]/@amount\n"
         "error FILE:3:76: missing required attribute 'amount' @ /orders/order[4]\n"},
        // Of text that is not allowed the parser tells nothing else, so it does not wait for a tag.
        {"<!DOCTYPE a [<!ELEMENT a (b)*><!ELEMENT b EMPTY>]>\n"
         "<a><b/>text<b>more</b>\n<c/></a>",
         "error FILE:2:12: no character data is allowed by content model @ /a\n"
         "error FILE:2:19: no character data is allowed by content model @ /a/b[2]\n"
         "error FILE:3:5: no declaration found for element 'c' @ /a/c[1]\n"
         "error FILE:3:9: element 'c' is not allowed for content model '(b)*' @ /a\n"},
        {"<!DOCTYPE a [<!ELEMENT a (b*)><!ELEMENT b EMPTY>]>\n"
         "<a><!--c--><b/><?p?><c><d/></c>text<!--c--><b/><![CDATA[x]]><b k='v'/></a>",
         "error FILE:2:24: no declaration found for element 'c' @ /a/c[1]\n"
         "error FILE:2:28: no declaration found for element 'd' @ /a/c[1]/d[1]\n"
         "error FILE:2:36: no character data is allowed by content model @ /a\n"
         "error FILE:2:61: no character data is allowed by content model @ /a\n"
         "error FILE:2:71: attribute 'k' is not declared for element 'b' @ /a/b[3]/@k\n"
         "error FILE:2:75: element 'c' is not allowed for content model '(b)*' @ /a\n"},
        // At the end of an element lies what is wrong with its children.
        {"<!DOCTYPE a [<!ELEMENT a (b*)><!ELEMENT b (c)><!ELEMENT c EMPTY>]>\n"
         "<a><b><c/></b><b><c/><c/></b>\n<b></b></a>",
         "error FILE:2:30: element 'c' is not allowed for content model '(c)' @ /a/b[2]\n"
         "error FILE:3:8: empty content is not valid for content model '(c)' @ /a/b[3]\n"},
        // What an entity holds lies where it stands.
        {"<!DOCTYPE a [<!ELEMENT a (b)*><!ELEMENT b EMPTY>"
         "<!ENTITY e '<b k=\"1\"/><b>x</b>'>]>\n<a><b/>&e;</a>",
         "error FILE:2:11: attribute 'k' is not declared for element 'b' @ /a/b[2]/@k\n"
         "error FILE:2:11: no character data is allowed by content model @ /a/b[3]\n"},
        // References are looked at when the root has ended.
        {"<!DOCTYPE a [<!ELEMENT a ANY><!ATTLIST a i ID #IMPLIED r IDREF #IMPLIED>]>\n"
         "<a r='x'><a i='y'/><a i='y'/></a>",
         "error FILE:2:30: ID value 'y' has already been used @ /a/a[2]/@i\n"
         "error FILE:2:34: ID attribute 'x' is referenced but was never declared\n"},
        {"<!DOCTYPE p:a [<!ELEMENT p:a ANY><!ATTLIST p:a xmlns:p CDATA #FIXED 'u'>]>\n"
         "<p:a><p:a k='1'/></p:a>",
         "error FILE:2:18: attribute 'k' is not declared for element 'p:a' @ /p:a/p:a[1]/@k\n"},
        // The same value twice: the text names the attribute.
        {"<!DOCTYPE a [<!ELEMENT a EMPTY><!ATTLIST a k (x) #IMPLIED l (y) #IMPLIED>]>\n"
         "<a k='z' l='z'/>",
         "error FILE:2:17: value 'z' for attribute 'k' does not match its type's defined "
         "enumeration or notation list @ /a/@k\n"
         "error FILE:2:17: value 'z' for attribute 'l' does not match its type's defined "
         "enumeration or notation list @ /a/@l\n"},
        // What is wrong with the declarations is in no element.
        {"<!DOCTYPE b [<!ELEMENT a EMPTY>]>\n<a/>",
         "error FILE:2:5: root element differs from that declared in DOCTYPE @ /a\n"},
        {"<!DOCTYPE a [<!ELEMENT a ANY>]>\n<a><b><c k='v'></b></a>",
         "error FILE:2:7: no declaration found for element 'b' @ /a/b[1]\n"
         "error FILE:2:16: no declaration found for element 'c' @ /a/b[1]/c[1]\n"
         "error FILE:2:16: attribute 'k' is not declared for element 'c' @ /a/b[1]/c[1]/@k\n"
         "fatal FILE:2:18: expected end of tag 'c' @ /a/b[1]/c[1]\n"},
    };
    for (const auto& row : rows)
        ExpectPlaces(row.xml, row.lines, all);
}

// The first problem alone lies where the same one of many does.
TEST(ErrorPlaces, OneProblemHasThePathOfItsElementToo) {
    const SXMLLoadOptions one = SXMLLoadOptions().Validate();
    ExpectPlaces("<!DOCTYPE a [<!ELEMENT a (b)*><!ELEMENT b EMPTY>]>\n<a><b/><b k='v'/></a>",
                 "error FILE:2:18: attribute 'k' is not declared for element 'b' @ /a/b[2]/@k\n",
                 one);
    ExpectPlaces("<!DOCTYPE a [<!ELEMENT a (b)*><!ELEMENT b EMPTY>]>\n<a><b/><c xmlns='u'/></a>",
                 "error FILE:2:22: no declaration found for element 'c' @ /a/c[1]\n", one);
    ExpectPlaces("<!DOCTYPE a [<!ELEMENT a (b)*><!ELEMENT b EMPTY>]>\n<a><b/>x<b/></a>",
                 "error FILE:2:9: no character data is allowed by content model @ /a\n", one);
    ExpectPlaces("<!DOCTYPE a [<!ELEMENT a (b)*><!ELEMENT b EMPTY>]>\n<a><b>x</b></a>",
                 "error FILE:2:8: no character data is allowed by content model @ /a/b[1]\n", one);
}

// The places of names that come too late are not known, and those of the others still are.
TEST(ErrorPlaces, AfterManyNamesPlacesAreUnknown) {
    std::string xml = "<a><a/><late/>";
    for (int i = 0; i < 5000; ++i)
        xml += "<n" + std::to_string(i) + "/>";
    EXPECT_EQ(FailureOf([&] { XMLLoadText(xml + "<n1></a>"); }).problems.at(0).path, "/a/n1[2]");
    EXPECT_EQ(FailureOf([&] { XMLLoadText(xml + "<new></a>"); }).problems.at(0).path, "/a/new[?]");
    EXPECT_EQ(FailureOf([&] { XMLLoadText(xml + "<late><new><a></a>"); }).problems.at(0).path,
              "/a/late[2]/new[?]");
    EXPECT_EQ(FailureOf([&] { XMLLoadText(xml + "<new><late><new></a>"); }).problems.at(0).path,
              "/a/new[?]/late[1]/new[?]");
}

// A path as long as this helps nobody; it is whole up to 64 KiB.
TEST(ErrorPlaces, DeepPathsAreWholeOrAbsent) {
    const auto pathAt = [](std::size_t depth) {
        std::string xml;
        for (std::size_t i = 0; i < depth; ++i)
            xml += "<a>";
        return FailureOf([&] { XMLLoadText(xml + "<a/></b>"); }).problems.at(0).path;
    };
    std::string whole = "/a";
    for (int i = 1; i < 1000; ++i)
        whole += "/a[1]";
    EXPECT_EQ(pathAt(1000), whole);
    EXPECT_GT(pathAt(13000).size(), 64000U);
    EXPECT_EQ(pathAt(14000), "");
    EXPECT_EQ(pathAt(100000), "");
}

TEST(ErrorPlaces, ProblemsOfOtherFilesNameThem) {
    const TemporaryFile entity(".ent", "<b>\n<c></b>");
    const TemporaryFile dtd(".dtd", "<!ELEMENT a EMPTY>\n<!ELEMENT b x>");
    ExpectPlaces("<!DOCTYPE a [<!ENTITY e SYSTEM '" + std::string(entity.Name()) +
                     "'>]>\n<a>\n\n\n\n\n\xF0\x9F\x98\x80&e;</a>",
                 std::string("fatal ") + entity.Name() + ":2:6: expected end of tag 'c'\n");
    ExpectPlaces("<!DOCTYPE a SYSTEM '" + std::string(dtd.Name()) + "'>\n<a/>",
                 std::string("fatal ") + dtd.Name() +
                     ":2:13: expected content specification for element 'b'\n");
}

// The text has the first 255 bytes of a name, the field all.
TEST(ErrorPlaces, ALongFileNameIsWholeInTheField) {
    const CTemporaryDirectory directory;
    std::string folder = directory.Name();
    std::vector<std::string> folders;
    while (folder.size() < 3800) {
        folder += "/" + std::string(200, 'x');
        ASSERT_EQ(mkdir(folder.c_str(), 0700), 0);
        folders.push_back(folder);
    }
    const std::string name = folder + "/" + std::string(4000 - folder.size() - 1, 'y');
    ASSERT_EQ(name.size(), 4000U);
    { std::ofstream(name, std::ios::binary) << "<a>\n<b></a>"; }
    SFailure failure = FailureOf([&] { XMLLoadFile(name); });
    EXPECT_EQ(failure.Lines(), "fatal " + name + ":2:6: expected end of tag 'b' @ /a/b[1]\n");
    EXPECT_EQ(failure.text, LoadError(name.substr(0, 255), 2, "expected end of tag 'b'"));
    unlink(name.c_str());
    failure = FailureOf([&] { XMLLoadFile(name); });
    EXPECT_EQ(failure.Lines(), "fatal " + name + ":0:0: No such file or directory\n");
    while (!folders.empty()) {
        rmdir(folders.back().c_str());
        folders.pop_back();
    }
    // A long name of a source, and a long text.
    const std::string longName(5000, 'n');
    const std::string tag(5000, 't');
    failure =
        FailureOf([&] { XMLLoadText("<" + tag + "></b>", SXMLLoadOptions().Name(longName)); });
    EXPECT_EQ(failure.problems.at(0).file, longName);
    EXPECT_EQ(failure.problems.at(0).path, "/" + tag);
    EXPECT_EQ(failure.text.find(std::string(256, 'n')), std::string::npos);
}

TEST(ErrorPlaces, AFileThatCannotBeReadHasTheSystemsReason) {
    const CTemporaryDirectory directory;
    const std::string missing = directory.Inside("missing.xml");
    const std::string inFile = directory.Inside("first") + "/x";
    const std::string loop = directory.Inside("second");
    { std::ofstream(directory.Inside("first"), std::ios::binary) << "<a/>"; }
    ASSERT_EQ(symlink(loop.c_str(), loop.c_str()), 0);
    const struct {
        std::string name;
        int error;
    } rows[] = {
        {missing, ENOENT},
        {directory.Name(), EISDIR},
        {inFile, ENOTDIR},
        {loop, ELOOP},
        {directory.Inside(std::string(300, 'x').c_str()), ENAMETOOLONG},
        {directory.Inside("n\xC3\xB6 such?#.xml"), ENOENT},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const std::string lines = "fatal " + row.name + ":0:0: " + std::strerror(row.error) + "\n";
        CRecordingHandler handler;
        EXPECT_PROBLEMS(XMLLoadFile(row.name), 2, lines);
        EXPECT_PROBLEMS(XMLLoadFile(row.name, handler), 2, lines);
        EXPECT_PROBLEMS(XMLLoadFile(row.name, SXMLLoadOptions().Untrusted()), 2, lines);
        EXPECT_PROBLEMS(XMLLoadFile(row.name, SXMLLoadOptions().Validate().CollectProblems()), 2,
                        lines);
    }
}

// A relative name is shown from the root.
TEST(ErrorPlaces, ARelativeFileNameIsMadeAbsolute) {
    const CTemporaryDirectory directory;
    char before[4096];
    ASSERT_NE(getcwd(before, sizeof before), nullptr);
    ASSERT_EQ(chdir(directory.Name().c_str()), 0);
    EXPECT_PROBLEMS(
        XMLLoadFile("no such.xml"), 2,
        "fatal " + directory.Inside("no such.xml") + ":0:0: " + std::strerror(ENOENT) + "\n");
    { std::ofstream("first", std::ios::binary) << "<a>\n<b></a>"; }
    EXPECT_PROBLEMS(
        XMLLoadFile("first"), 2,
        "fatal " + directory.Inside("first") + ":2:6: expected end of tag 'b' @ /a/b[1]\n");
    EXPECT_EQ(chdir(before), 0);
}
