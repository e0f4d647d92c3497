// The errors of the conveniences and those of the plain loads: the same class and the same text for
// each document and each name, as a tree and as callbacks, and the same callbacks in front of it.
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>

#include "support/files.h"
#include "support/problems.h"
#include "support/recording_handler.h"
#include "support/testing.h"
#include "support/unicode.h"

using namespace norvask_test;

namespace {

// Not well-formed, each in another way.
const char* const MALFORMED[] = {
    "x",
    " ",
    "\n\n",
    "<",
    "<a",
    "<a ",
    "<a/",
    "<a>",
    "<a><b>",
    "<a></b>",
    "<a></a",
    "</a>",
    "<a/><b/>",
    "<a/>x",
    "x<a/>",
    "<a/><!",
    "<a/><!-",
    "<a/>&amp;",
    "<1/>",
    "<-a/>",
    "< a/>",
    "<a><></a>",
    "<a b/>",
    "<a b=/>",
    "<a b=c/>",
    "<a b='/>",
    "<a b='c/>",
    "<a b='<'/>",
    "<a b='&'/>",
    "<a b='&x;'/>",
    "<a b='c'd='e'/>",
    "<a b='c' b='d'/>",
    "<a b=\"c'/>",
    "<p:a/>",
    "<a p:b='c'/>",
    "<a xmlns:p='u' xmlns:q='u' p:b='1' q:b='2'/>",
    "<a xmlns:p=''/>",
    "<a xmlns:xmlns='u'/>",
    "<a xmlns:xml='u'/>",
    "<a:b:c/>",
    "<:a/>",
    "<a>&</a>",
    "<a>&;</a>",
    "<a>&amp</a>",
    "<a>&none;</a>",
    "<a>&#;</a>",
    "<a>&#x;</a>",
    "<a>&#0;</a>",
    "<a>&#xD800;</a>",
    "<a>&#x110000;</a>",
    "<a>&#xFFFE;</a>",
    "<a>&#1;</a>",
    "<a>]]></a>",
    "<a><![CDATA[</a>",
    "<a><![CDATA[x]]</a>",
    "<a><![cdata[x]]></a>",
    "<a><!-- -- --></a>",
    "<a><!--</a>",
    "<a><!-></a>",
    "<a><?</a>",
    "<a><?x</a>",
    "<a><?xml ?></a>",
    "<a><?XmL ?></a>",
    "<a>\x01</a>",
    "<a b='\x02'/>",
    "<a\x03/>",
    "<a>\xEF\xBF\xBF</a>",
    "<?xml?><a/>",
    "<?xml version='1.0'",
    "<?xml version='2.0'?><a/>",
    "<?xml version='1.0' encoding='none'?><a/>",
    "<?xml version='1.0' encoding=''?><a/>",
    "<?xml version='1.0' encoding='UTF-16'?><a/>",
    "<?xml version='1.0' standalone='x'?><a/>",
    "<?xml encoding='UTF-8'?><a/>",
    " <?xml version='1.0'?><a/>",
    "<?xml version='1.0'?>",
    "<!DOCTYPE a [<!ENTITY e '&e;'>]><a>&e;</a>",
    "<!DOCTYPE a [<!ENTITY e '<b>'>]><a>&e;</a>",
    "<!DOCTYPE a [<!ELEMENT a>]><a/>",
    "<!DOCTYPE a [",
    "<!DOCTYPE a [<!x>]><a/>",
    "<!DOCTYPE a [%none;]><a/>",
    "<!DOCTYPE a SYSTEM 'no/such.dtd'><a/>",
    "<!DOCTYPE a SYSTEM><a/>",
    "<!DOCTYPE><a/>",
    "<!DOCTYPE a><!DOCTYPE a><a/>",
    "<!DOCTYPE a [<!ENTITY e SYSTEM 'no/such.ent'>]><a>&e;</a>",
    "<a>\n<b>\r\n<c>\r<d></e>",
    "<a>\n  <b x='1'\n     y=2/></a>",
    // A name that the library does not take.
    "<a><b x\xF0\x90\x80\x80='1'/></a>",
    "<\xF0\x90\x80\x80/>",
    "<a>\n<\xF0\x90\x80\x80 b='1'>x</\xF0\x90\x80\x80></a>",
    // Decoding.
    "<a>\xFF</a> and more behind it",
    "<a>caf\xE9 and more</a>",
    "\xFF<a/> and more behind it",
    "<a>\xC0\x80 and more</a>",
    "<a>\xED\xA0\x80 and more</a>",
    "<a>\x80 and more</a>",
    "<a>\xF8\x88\x80\x80\x80 and more</a>",
    "<a>\xF4\x90\x80\x80 and more</a>",
    "<?xml version='1.0' encoding='US-ASCII'?><a>\xE9</a>",
    "<?xml version='1.0' encoding='\xFF'?><a/>",
};

// Well-formed; some are invalid, some are only said to be.
const char* const INVALID[] = {
    "<!DOCTYPE a [<!ELEMENT a EMPTY>]><a>x</a>",
    "<!DOCTYPE a [<!ELEMENT a EMPTY>]>\n<a>\n</a>",
    "<!DOCTYPE a [<!ELEMENT a (b)>]><a><b/></a>",
    "<!DOCTYPE a [<!ELEMENT a (b)><!ELEMENT b EMPTY>]><a/>",
    "<!DOCTYPE a [<!ELEMENT a (b,b)><!ELEMENT b EMPTY>]>\n<a><b/>\n</a>",
    "<!DOCTYPE b [<!ELEMENT a EMPTY>]><a/>",
    "<!DOCTYPE a [<!ELEMENT a EMPTY>]><a k='v'/>",
    "<!DOCTYPE a [<!ELEMENT a EMPTY><!ATTLIST a k (x|y) #REQUIRED>]><a k='z'/>",
    "<!DOCTYPE a [<!ELEMENT a EMPTY><!ATTLIST a k (x|y) #REQUIRED>]><a/>",
    "<!DOCTYPE a [<!ELEMENT a EMPTY><!ATTLIST a k CDATA #FIXED 'x'>]><a k='y'/>",
    "<!DOCTYPE a [<!ELEMENT a ANY><!ATTLIST a i ID #IMPLIED>]><a i='x'><a i='x'/></a>",
    "<!DOCTYPE a [<!ELEMENT a ANY><!ATTLIST a r IDREF #IMPLIED>]>\n<a\nr='x'></a>\n",
    "<!DOCTYPE a [<!ELEMENT a (b)>]><a><![CDATA[x]]><b/></a>",
    "<!DOCTYPE a [<!ELEMENT a ANY>]><a>\n<b p='1'><c/></b><d></a>",
    "<!DOCTYPE a [<!ELEMENT a (b*)><!ELEMENT b EMPTY>]><a xmlns:p='u'><b/><p:c xmlns:q='w'/></a>",
    "<!DOCTYPE a [<!ELEMENT a (b*)><!ENTITY e 'x<b/>'>]><a>&e;</a>",
    "<a/>",
    "<!DOCTYPE a><a/>",
    "<!DOCTYPE a [<!ENTITY e 'x'>]><a>&e;</a>",
};

// Files that the parser opens, or does not.
const char* const NAMES[] = {
    "",
    ".",
    "/",
    "/dev/null",
    "no/such.xml",
    "/no/such.xml",
    "./no.xml",
    "../no such.xml",
    "http:",
    "http://",
    "file:",
    "file://",
    "file:///no/such.xml",
    "file://otherhost/a.xml",
    "file:no.xml",
    "nope://x/y",
    "no:such.xml",
    "C:\\no.xml",
    "no%20such.xml",
    "/no/%zz.xml",
    "file:///no/%zz.xml",
    "n\xC3\xB6.xml",
    "/no/\xFF.xml",
    "no?such#x.xml",
    "-",
    "no\nsuch.xml",
};

const SLoad HOWS[] = {SLoad(), KeepPrefixes(), Validate()};

SXMLLoadOptions Options(const SLoad& how) {
    SXMLLoadOptions options;
    options.validate = how.validate;
    options.doSchema = how.doSchema;
    options.keepPrefixes = how.keepPrefixes;
    return options;
}

// What comes of a load: its error, and the tree or the callbacks.
struct SOutcome {
    SFailure failure;
    std::string made;
};
template <typename LoadTree>
SOutcome OfTree(LoadTree load) {
    SOutcome outcome;
    outcome.failure = FailureOf([&] { outcome.made = TreeText(load()); });
    return outcome;
}
template <typename LoadEvents>
SOutcome OfEvents(LoadEvents load) {
    SOutcome outcome;
    CRecordingHandler handler;
    outcome.failure = FailureOf([&] { load(handler); });
    outcome.made = handler.Take();
    return outcome;
}

void ExpectSame(const SOutcome& plain, const SOutcome& convenient) {
    EXPECT_EQ(convenient.failure.Told(), plain.failure.Told());
    EXPECT_EQ(convenient.made, plain.made);
    EXPECT_EQ(convenient.failure.isError, plain.failure.isThrown);
    if (!plain.failure.isThrown) return;
    // Each failure of a load is a problem, and the first is the one that the text tells, but that a
    // better one may be told of bytes and files that cannot be read.
    ASSERT_EQ(convenient.failure.problems.size(), 1U);
    const SXMLProblem& problem = convenient.failure.problems[0];
    EXPECT_NE(problem.text, "");
    if (convenient.failure.id != 3 && problem.text.find("invalid UTF-8") != 0 &&
        problem.line != 0) {
        EXPECT_EQ(convenient.failure.text,
                  LoadError(problem.file, static_cast<int>(problem.line), problem.text));
    }
}

void ExpectSameOfMemory(const std::string& xml) {
    for (const SLoad& how : HOWS) {
        SCOPED_TRACE(Quoted(xml) + (how.validate ? " validated" : ""));
        const SXMLLoadOptions options = Options(how);
        ExpectSame(OfTree([&] { return LoadMemory(xml, how); }),
                   OfTree([&] { return XMLLoadText(std::string_view(xml), options); }));
        ExpectSame(OfEvents([&](CXMLSaxHandler& handler) { LoadMemory(xml, handler, how); }),
                   OfEvents([&](CXMLSaxHandler& handler) { XMLLoadText(xml, handler, options); }));
    }
}

void ExpectSameOfFile(const std::string& name) {
    for (const SLoad& how : HOWS) {
        SCOPED_TRACE(name + (how.validate ? " validated" : ""));
        const SXMLLoadOptions options = Options(how);
        ExpectSame(OfTree([&] { return LoadFile(name, how); }),
                   OfTree([&] { return XMLLoadFile(name, options); }));
        ExpectSame(OfEvents([&](CXMLSaxHandler& handler) { LoadFile(name, handler, how); }),
                   OfEvents([&](CXMLSaxHandler& handler) { XMLLoadFile(name, handler, options); }));
    }
}

void ExpectSameOfBoth(const std::string& xml) {
    ExpectSameOfMemory(xml);
    const TemporaryFile file(".xml", xml);
    SCOPED_TRACE(Quoted(xml));
    ExpectSameOfFile(file.Name());
}

}  // namespace

TEST(SameErrors, OfMalformedDocuments) {
    for (const char* const xml : MALFORMED)
        ExpectSameOfBoth(xml);
    for (const std::string& xml :
         {std::string("<a>\0</a>", 8), std::string("\0", 1), std::string("<a/>\0", 5),
          std::string("\xFF\xFE<\0a\0>\0", 8), std::string("\xFE\xFF\0<\0a\0/", 8),
          std::string("\xEF\xBB\xBF"), std::string("\xEF\xBB\xBF<a>"), std::string("\xFF\xFE")})
        ExpectSameOfBoth(xml);
}

TEST(SameErrors, OfInvalidDocuments) {
    for (const char* const xml : INVALID)
        ExpectSameOfBoth(xml);
}

// The fast lane may have read much when a document turns out to be malformed.
TEST(SameErrors, OfLongDocuments) {
    for (const std::size_t length : {1000U, 49140U, 49152U, 65536U, 200000U}) {
        const std::string text(length, 'x');
        for (const char* const end : {"</b>", "<b></a>", "&none;</a>", "", "\x01</a>", "]]></a>"}) {
            ExpectSameOfMemory("<a>" + text + end);
            ExpectSameOfMemory("<a>" + text + "\n<c/>" + text + end);
        }
    }
}

// Every beginning of a document that uses everything.
TEST(SameErrors, OfDocumentsThatAreCutOff) {
    const std::string xml =
        "<?xml version='1.0'?><!--c--><?p i?>\n<p:a xmlns:p='urn:p' k='v&lt;'>\n"
        "<b>x&amp;&#65;</b><![CDATA[ ]]><c/>t</p:a>\n<!--e-->";
    for (std::size_t length = 1; length < xml.size(); ++length)
        ExpectSameOfMemory(xml.substr(0, length));
}

// Here the texts differ, and only here: what is cut off is told.
TEST(SameErrors, ButForUtf8ThatIsCutOff) {
    const struct {
        const char* xml;
        int line;
        const char* plain;
        const char* better;
    } rows[] = {
        {"<a>\n<b>caf\xC3", 2,
         "input ended before all started tags were ended; last tag started is 'b'",
         "invalid UTF-8: 0xC3"},
        {"<a>\xE2\x82", 1,
         "input ended before all started tags were ended; last tag started is 'a'",
         "invalid UTF-8: 0xE2 0x82"},
        {"\xFF<a/>", 1, "invalid document structure", "invalid UTF-8: 0xFF"},
        {"<a>\xFF</a>", 1,
         "input ended before all started tags were ended; last tag started is 'a'",
         "invalid UTF-8: 0xFF"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(Quoted(row.xml));
        EXPECT_LOAD_ERROR(LoadMemory(row.xml), "Memfile", row.line, row.plain);
        EXPECT_LOAD_ERROR(XMLLoadText(row.xml), "Memfile", row.line, row.better);
        CRecordingHandler handler;
        EXPECT_LOAD_ERROR(XMLLoadText(row.xml, handler), "Memfile", row.line, row.better);
        const TemporaryFile file(".xml", row.xml);
        EXPECT_LOAD_ERROR(XMLLoadFile(file.Name()), file.Name(), row.line, row.better);
    }
}

TEST(SameErrors, OfFilesThatCannotBeRead) {
    for (const char* const name : NAMES)
        ExpectSameOfFile(name);
}

// A file in this folder, with a name of this kind, that can be opened and is malformed.
TEST(SameErrors, OfNamesOfAllKinds) {
    const CTemporaryDirectory directory;
    char before[4096];
    ASSERT_NE(getcwd(before, sizeof before), nullptr);
    ASSERT_EQ(chdir(directory.Name().c_str()), 0);
    for (const char* const name : {"first",
                                   "./first",
                                   "a b.xml",
                                   " x",
                                   "x ",
                                   "100%.xml",
                                   "%41.xml",
                                   "a%20b.xml",
                                   "a:b.xml",
                                   "C:x",
                                   "#x",
                                   "a#b",
                                   "a?b=c",
                                   "\xC3\xA4\xE2\x82\xAC.xml",
                                   "\xF0\x9F\x98\x80.xml",
                                   "a&b'\".xml",
                                   "a\\b",
                                   "a\tb",
                                   "[x]{y}",
                                   "-",
                                   "~",
                                   "a..b",
                                   "\xFF.xml"}) {
        SCOPED_TRACE(name);
        { std::ofstream(name, std::ios::binary) << "<a>\n<b></a>"; }
        ExpectSameOfFile(name);
        ExpectSameOfFile(directory.Inside(name));
        unlink(name);
    }
    EXPECT_EQ(chdir(before), 0);
}

// A name of the program's that the parser does not take, and arguments that nobody takes.
TEST(SameErrors, OfArguments) {
    EXPECT_INVALID_PARAMETER(XMLLoadText(""));
    EXPECT_INVALID_PARAMETER(XMLLoadText(static_cast<const char*>(nullptr)));
    EXPECT_INVALID_PARAMETER(XMLLoadFile(static_cast<const char*>(nullptr)));
    CRecordingHandler handler;
    EXPECT_INVALID_PARAMETER(XMLLoadText("", handler));
    EXPECT_INVALID_PARAMETER(XMLLoadFile(static_cast<const char*>(nullptr), handler));
    EXPECT_EQ(handler.Take(), "");
    EXPECT_TRUE(FailureOf([] { XMLLoadText(""); }).isError);
    EXPECT_TRUE(FailureOf([] { XMLLoadText(""); }).problems.empty());
    EXPECT_TRUE(FailureOf([] { XMLLoadFile(static_cast<const char*>(nullptr)); }).isError);
}

// What a callback throws of the library's is an error with its class and text, and its problems.
TEST(SameErrors, OfCallbacks) {
    CXMLLambdaHandler handler;
    handler.onStartElement = [](const SXMLStartTag&) {
        throw CXMLException(77, "own %s \xC3\xA9");
    };
    SFailure failure = FailureOf([&] { XMLLoadText("<a/>", handler); });
    EXPECT_TRUE(failure.isError);
    EXPECT_EQ(failure.Told(), "77 own %s \xC3\xA9");
    EXPECT_TRUE(failure.problems.empty());

    SXMLProblem problem;
    problem.text = "of the callback";
    handler.onStartElement = [&](const SXMLStartTag&) { throw CXMLError(78, "own", {problem}); };
    for (const char* const xml : {"<a/>", "<!DOCTYPE a [<!ELEMENT a ANY>]><a/>"}) {
        for (const bool validates : {false, true}) {
            SXMLLoadOptions options;
            options.validate = validates;
            failure = FailureOf([&] { XMLLoadText(xml, handler, options); });
            EXPECT_EQ(failure.Told(), "78 own");
            EXPECT_EQ(failure.Lines(), "fatal :0:0: of the callback\n");
        }
    }
}
