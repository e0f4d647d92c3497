// Collected problems, and documents that must have a grammar.
#include "support/problems.h"
#include "support/recording_handler.h"
#include "support/testing.h"

using namespace norvask_test;

namespace {

// <list> of <n> with a number; each other element is a problem.
const char* const DTD = "<!DOCTYPE list [<!ELEMENT list ANY><!ELEMENT n (#PCDATA)>]>\n";
const char* const SCHEMA =
    "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema'><xs:element name='list'>"
    "<xs:complexType><xs:sequence><xs:element name='n' type='xs:int' maxOccurs='unbounded'/>"
    "</xs:sequence><xs:attribute name='k' type='xs:int'/></xs:complexType></xs:element>"
    "</xs:schema>";

std::string Bad(int count) {
    std::string xml = std::string(DTD) + "<list>";
    for (int i = 0; i < count; ++i)
        xml += "\n<x/>";
    return xml + "\n</list>";
}
std::string LinesOfBad(int count) {
    std::string lines;
    for (int i = 1; i <= count; ++i)
        lines += "error Memfile:" + std::to_string(i + 2) +
                 ":5: no declaration found for element 'x' @ /list/x[" + std::to_string(i) + "]\n";
    return lines;
}

const SXMLLoadOptions VALIDATE = SXMLLoadOptions().Validate();

void ExpectBoth(const std::string& xml, const SXMLLoadOptions& options, const std::string& lines) {
    SCOPED_TRACE(Quoted(xml));
    CRecordingHandler handler;
    EXPECT_PROBLEMS(XMLLoadText(xml, options), 2, lines);
    EXPECT_PROBLEMS(XMLLoadText(xml, handler, options), 2, lines);
}

const char* const NO_GRAMMAR =
    ": no grammar to validate by: the program names none, and the document none that is read";

}  // namespace

TEST(LoadProblems, AllAreThrownTogether) {
    for (const int count : {1, 2, 99})
        ExpectBoth(Bad(count), VALIDATE.CollectProblems(), LinesOfBad(count));
    EXPECT_EQ(TreeText(XMLLoadText(Bad(0), VALIDATE.CollectProblems())), "list()");
}

// The load ends there: what is behind it is not read.
TEST(LoadProblems, TheLimitIsExact) {
    ExpectBoth(Bad(101), VALIDATE.CollectProblems(), LinesOfBad(100));
    ExpectBoth(Bad(100), VALIDATE.CollectProblems(), LinesOfBad(100));
    for (const unsigned int limit : {1U, 2U, 3U, 7U}) {
        const std::string lines = LinesOfBad(static_cast<int>(limit));
        ExpectBoth(Bad(20), VALIDATE.CollectProblems(limit), lines);
        ExpectBoth(Bad(static_cast<int>(limit)) + "<", VALIDATE.CollectProblems(limit), lines);
    }
    ExpectBoth(Bad(1000), VALIDATE.CollectProblems(0), LinesOfBad(1000));
}

TEST(LoadProblems, ALimitOfOneIsAsWithout) {
    const std::string xml = Bad(5);
    CRecordingHandler plain;
    CRecordingHandler limited;
    const SFailure first = FailureOf([&] { XMLLoadText(xml, plain, VALIDATE); });
    const SFailure second =
        FailureOf([&] { XMLLoadText(xml, limited, VALIDATE.CollectProblems(1)); });
    EXPECT_EQ(second.Told(), first.Told());
    EXPECT_EQ(second.Lines(), first.Lines());
    EXPECT_EQ(limited.Take(), plain.Take());
}

// Several problems of one tag, of which the limit lets some pass.
TEST(LoadProblems, TheLimitMayLieWithinATag) {
    const std::string xml = std::string(DTD) + "<list><x a='1' b='2' c='3'/></list>";
    const std::string lines[] = {
        "error Memfile:2:29: no declaration found for element 'x' @ /list/x[1]\n",
        "error Memfile:2:29: attribute 'a' is not declared for element 'x' @ /list/x[1]/@a\n",
        "error Memfile:2:29: attribute 'b' is not declared for element 'x' @ /list/x[1]/@b\n",
        "error Memfile:2:29: attribute 'c' is not declared for element 'x' @ /list/x[1]/@c\n"};
    std::string expected;
    for (unsigned int limit = 1; limit <= 4; ++limit) {
        expected += lines[limit - 1];
        ExpectBoth(xml, VALIDATE.CollectProblems(limit), expected);
    }
    ExpectBoth(xml, VALIDATE.CollectProblems(5), expected);
}

TEST(LoadProblems, AFatalErrorEndsTheLoadAndIsTheLast) {
    const std::string front = std::string(DTD) + "<list>\n<x/>\n<x/>\n";
    ExpectBoth(front + "<n></list>\n<x/>", VALIDATE.CollectProblems(),
               LinesOfBad(2) + "fatal Memfile:5:6: expected end of tag 'n' @ /list/n[1]\n");
    ExpectBoth(front + "<n>", VALIDATE.CollectProblems(),
               LinesOfBad(2) +
                   "fatal Memfile:5:4: input ended before all started tags were ended; last tag "
                   "started is 'n' @ /list/n[1]\n");
    ExpectBoth(front + "<n></list>", VALIDATE.CollectProblems(2), LinesOfBad(2));
    ExpectBoth(front + "<n></list>", VALIDATE.CollectProblems(3),
               LinesOfBad(2) + "fatal Memfile:5:6: expected end of tag 'n' @ /list/n[1]\n");
}

// The text is that of the first.
TEST(LoadProblems, TheTextTellsTheFirst) {
    const SFailure failure = FailureOf([] {
        XMLLoadText(std::string(DTD) + "<list>\n<x/><n></list>", VALIDATE.CollectProblems());
    });
    EXPECT_EQ(failure.Told(),
              "2 " + LoadError("Memfile", 3, "no declaration found for element 'x'"));
    EXPECT_EQ(failure.problems.size(), 2U);
}

// Without validation there is nothing to collect.
TEST(LoadProblems, WithoutValidationNothingIsCollected) {
    const SXMLLoadOptions options = SXMLLoadOptions().CollectProblems();
    EXPECT_EQ(TreeText(XMLLoadText(Bad(1), options)), "list(x())");
    ExpectBoth("<a><b></a>", options, "fatal Memfile:1:9: expected end of tag 'b' @ /a/b[1]\n");
}

// Callbacks are told of a document that turns out to be invalid, up to where the load ends.
TEST(LoadProblems, CallbacksAreToldInBetween) {
    const std::string xml = std::string(DTD) + "<list><n>1</n><x a='b'>t</x><n>2</n></list>";
    CRecordingHandler handler;
    EXPECT_THROW(XMLLoadText(xml, handler, VALIDATE.CollectProblems()), CXMLError);
    const std::string whole = handler.Take();
    EXPECT_EQ(whole, EventsOfMemory(xml));
    EXPECT_THROW(XMLLoadText(xml, handler, VALIDATE.CollectProblems(2)), CXMLError);
    std::string told = handler.Take();
    EXPECT_EQ(whole.substr(0, told.size()), told);
    EXPECT_EQ(told.find("StartElement x"), std::string::npos);
    EXPECT_NE(told.find("Characters \"1\""), std::string::npos);
    EXPECT_THROW(XMLLoadText(xml, handler, VALIDATE.CollectProblems(3)), CXMLError);
    told = handler.Take();
    EXPECT_EQ(whole.substr(0, told.size()), told);
}

// A callback's own exception is that of the load, whatever was collected.
TEST(LoadProblems, ACallbacksExceptionIsTheOneThatArrives) {
    CRecordingHandler handler([](const std::string& line) {
        if (line == "EndElement list") throw CXMLException(77, "own");
    });
    EXPECT_XML_ERROR(XMLLoadText(Bad(3), handler, VALIDATE.CollectProblems()), 77, "own");
    handler.Do([](const std::string& line) {
        if (line == "EndElement list") throw 42;
    });
    EXPECT_THROW(XMLLoadText(Bad(3), handler, VALIDATE.CollectProblems()), int);
}

// A refusal comes first, so that it can be told by its class.
TEST(LoadProblems, ARefusalComesFirst) {
    const TemporaryFile schema(".xsd", SCHEMA);
    SXMLUntrusted limits;
    limits.maxDepth = 2;
    const SXMLLoadOptions options =
        SXMLLoadOptions().ValidateBySchema(schema.Name()).Untrusted(limits).CollectProblems();
    EXPECT_PROBLEMS(XMLLoadText("<list k='x'>\n<n>1</n><n>y</n><n><m/></n></list>", options), 9,
                    "fatal Memfile:2:24: deeper than 2 elements (maxDepth) @ /list/n[3]/m[1]\n"
                    "error Memfile:1:13: value 'x' does not match regular expression facet "
                    "'[+\\-]?[0-9]+' @ /list/@k\n"
                    "error Memfile:2:17: value 'y' does not match regular expression facet "
                    "'[+\\-]?[0-9]+' @ /list/n[2]\n");
}

// A small limit is one of the document, not of what the parser needs for itself and for schemas.
TEST(LoadProblems, SmallLimitsRefuseNoSmallDocument) {
    const TemporaryFile schema(".xsd", SCHEMA);
    SXMLUntrusted limits;
    for (const std::uint64_t most : {100U, 1000U, 20000U, 1000000U}) {
        limits.maxBytes = most;
        const SXMLLoadOptions options = SXMLLoadOptions().Untrusted(limits);
        for (const char* const declaration : {"", "<?xml version='1.0' encoding='ISO-8859-1'?>"}) {
            const std::string xml = declaration + std::string("<list k='1'><n>1</n></list>");
            EXPECT_EQ(ProblemsOf([&] { XMLLoadText(xml, options); }), "fine\n") << most;
            EXPECT_EQ(
                ProblemsOf([&] { XMLLoadText(xml, options.ValidateBySchema(schema.Name())); }),
                "fine\n")
                << most;
        }
    }
}

TEST(LoadProblems, OfASchema) {
    const TemporaryFile schema(".xsd", SCHEMA);
    const SXMLLoadOptions options = SXMLLoadOptions().ValidateBySchema(schema.Name());
    const std::string xml = "<list k='x'>\n<n>1</n>\n<n>y</n>\n<n/>\n<m z='1'/></list>";
    const std::string lines =
        "error Memfile:1:13: value 'x' does not match regular expression facet '[+\\-]?[0-9]+' @ "
        "/list/@k\n"
        "error Memfile:3:9: value 'y' does not match regular expression facet '[+\\-]?[0-9]+' @ "
        "/list/n[2]\n"
        "error Memfile:4:5: value '' does not match regular expression facet '[+\\-]?[0-9]+' @ "
        "/list/n[3]\n"
        "error Memfile:5:11: no declaration found for element 'm' @ /list/m[1]\n"
        "error Memfile:5:11: attribute 'z' is not declared for element 'm' @ /list/m[1]/@z\n"
        "error Memfile:5:18: element 'm' is not allowed for content model '(n+)' @ /list\n";
    ExpectBoth(xml, options.CollectProblems(), lines);
    ExpectBoth(xml, options.CollectProblems(2), lines.substr(0, lines.find("error Memfile:4")));
    ExpectBoth(xml, options, lines.substr(0, lines.find("error Memfile:3")));
    ExpectBoth(xml, options.Untrusted().CollectProblems(), lines);
}

TEST(LoadGrammar, WithoutOneADocumentIsRefused) {
    const std::string lines = std::string("error Memfile:2:4") + NO_GRAMMAR + " @ /a\n";
    for (const char* const xml : {"<!--c-->\n<a><b></a>", "<!--c-->\n<a>\n</a>"}) {
        ExpectBoth(xml, SXMLLoadOptions().RequireGrammar(), lines);
        ExpectBoth(xml, SXMLLoadOptions().RequireGrammar().CollectProblems(), lines);
        ExpectBoth(xml, SXMLLoadOptions().ValidateBySchema().RequireGrammar(), lines);
        ExpectBoth(xml, SXMLLoadOptions().RequireGrammar().Untrusted(), lines);
    }
    // As ever without that.
    EXPECT_EQ(TreeText(XMLLoadText("<a/>", VALIDATE)), "a()");
    EXPECT_EQ(TreeText(XMLLoadText("<a/>", SXMLLoadOptions().ValidateBySchema())), "a()");
    // The parser's own error in front of the root is told.
    ExpectBoth("<!-- -- -->\n<a/>", SXMLLoadOptions().RequireGrammar(),
               "fatal Memfile:1:9: '--' sequence is illegal in comment\n");
}

TEST(LoadGrammar, ADtdIsOne) {
    const SXMLLoadOptions options = SXMLLoadOptions().RequireGrammar();
    EXPECT_EQ(TreeText(XMLLoadText(Bad(0), options)), "list()");
    ExpectBoth(Bad(2), options.CollectProblems(), LinesOfBad(2));
    // One that does not declare the root.
    ExpectBoth("<!DOCTYPE a [<!ENTITY e 'x'>]>\n<a/>", options,
               "error Memfile:2:5: no declaration found for element 'a' @ /a\n");
    ExpectBoth("<!DOCTYPE a>\n<a/>", options,
               std::string("error Memfile:2:5") + NO_GRAMMAR + " @ /a\n");
    const TemporaryFile dtd(".dtd", "<!ELEMENT a EMPTY>");
    EXPECT_EQ(
        TreeText(XMLLoadText("<!DOCTYPE a SYSTEM '" + std::string(dtd.Name()) + "'><a/>", options)),
        "a()");
}

TEST(LoadGrammar, ASchemaThatTheDocumentNamesIsOne) {
    const TemporaryFile schema(".xsd", SCHEMA);
    const SXMLLoadOptions options = SXMLLoadOptions().ValidateBySchema().RequireGrammar();
    const std::string root =
        "<list xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' "
        "xsi:noNamespaceSchemaLocation='";
    const std::string whole = root + schema.Name() + "'>";
    EXPECT_EQ(XMLLoadText(whole + "<n>1</n></list>", options)->GetRoot()->GetTagName(),
              std::string("list"));
    EXPECT_EQ(
        FailureOf([&] { XMLLoadText(whole + "<n>x</n></list>", options); }).problems.at(0).path,
        "/list/n[1]");
    // A hint is none if it cannot be opened, if hints are not read, or if schemas are not asked
    // for.
    const SFailure missing =
        FailureOf([&] { XMLLoadText(root + "/no/such.xsd'><n>1</n></list>", options); });
    EXPECT_EQ(missing.id, 2) << missing.Told();
    EXPECT_NE(missing.Lines().find("/no/such.xsd"), std::string::npos) << missing.Lines();
    for (const SXMLLoadOptions& other : {options.Untrusted(), SXMLLoadOptions().RequireGrammar()}) {
        const SFailure unread = FailureOf([&] { XMLLoadText(whole + "<n>1</n></list>", other); });
        EXPECT_NE(unread.Lines().find(NO_GRAMMAR), std::string::npos) << unread.Lines();
        EXPECT_EQ(unread.problems.at(0).path, "/list");
    }
    // Without the requirement a hint that cannot be opened is as in the plain loads.
    EXPECT_NO_THROW(
        XMLLoadText(root + "/no/such.xsd'><n>1</n></list>", SXMLLoadOptions().ValidateBySchema()));
}

TEST(LoadGrammar, TheCallersSchemaIsOneForItsRoot) {
    const TemporaryFile schema(".xsd", SCHEMA);
    const SXMLLoadOptions options =
        SXMLLoadOptions().ValidateBySchema(schema.Name()).RequireGrammar();
    for (const SXMLLoadOptions& with : {options, options.Untrusted()}) {
        EXPECT_EQ(TreeText(XMLLoadText("<list><n>1</n></list>", with)), "list(n(\"1\"))");
        ExpectBoth("<other/>", with,
                   "error Memfile:1:9: no declaration found for element 'other' @ /other\n");
        ExpectBoth("<list xmlns='urn:other'/>", with,
                   "error Memfile:1:26: no declaration found for element 'list' @ /list\n");
    }
}
