// The limits of a stranger's document, one by one: what is just within them loads, what is just
// beyond is refused, by whoever reads it and wherever it comes from.
#include <fcntl.h>
#include <unistd.h>

#include <cstring>
#include <ctime>
#include <thread>

#include "support/hostile_documents.h"
#include "support/recording_handler.h"
#include "support/sanitizers.h"
#include "support/testing.h"
#include "support/untrusted_loading.h"

using namespace norvask_test;

namespace {

// In front of a document that the fast lane shall leave to the parser.
const std::string LATIN1 = "<?xml version='1.0' encoding='ISO-8859-1'?>";

// No limits but those that are set.
SXMLUntrusted NoLimits() { return {0, 0, 0, 0}; }
SXMLUntrusted MaxBytes(std::uint64_t bytes) { return {bytes, 0, 0, 0}; }
SXMLUntrusted MaxMarkup(std::uint64_t bytes) { return {0, bytes, 0, 0}; }
SXMLUntrusted MaxDepth(unsigned int depth) { return {0, 0, depth, 0}; }
SXMLUntrusted MaxSeconds(unsigned int seconds) { return {0, 0, 0, seconds}; }

SXMLLoadOptions Within(const SXMLUntrusted& limits) { return SXMLLoadOptions().Untrusted(limits); }

void ExpectInEveryWay(const std::string& xml, const SXMLUntrusted& limits,
                      const SExpected& expected) {
    const TemporaryFile file(".xml", xml);
    for (const SLoadWay& way : EveryWay())
        EXPECT_EQ(LoadsAs(way, xml, file.Name(), Within(limits), {expected}), "");
}
void ExpectForBoth(const std::string& xml, const SXMLUntrusted& limits, const SExpected& expected) {
    ExpectInEveryWay(xml, limits, expected);
    SCOPED_TRACE("for the parser");
    ExpectInEveryWay(LATIN1 + xml, limits, expected);
}

SXMLProblem ProblemOf(const std::string& xml, const SXMLUntrusted& limits) {
    try {
        XMLLoadText(xml, Within(limits));
    } catch (const CXMLError& e) {
        if (!e.Problems().empty()) return e.Problems().front();
    }
    ADD_FAILURE() << "it loads";
    return {};
}

std::string TooDeep(unsigned int depth) {
    return "deeper than " + std::to_string(depth) + (depth == 1 ? " element" : " elements") +
           " (maxDepth)";
}
std::string TooLarge(std::uint64_t bytes) {
    return "larger than " + std::to_string(bytes) + (bytes == 1 ? " byte" : " bytes") +
           " (maxBytes)";
}
std::string TooLong(std::uint64_t bytes) {
    return "a tag, text or other piece of more than " + std::to_string(bytes) +
           " bytes (maxMarkup)";
}

std::string Nested(std::size_t levels, const std::string& inside = "") {
    return Times(levels, "<a>\n") + inside + Times(levels, "</a>");
}

}  // namespace

// --- depth

TEST(Limits, Depth) {
    for (const unsigned int depth : {1U, 2U, 3U, 17U, 256U, 1000U}) {
        SCOPED_TRACE(depth);
        const SXMLUntrusted limits = MaxDepth(depth);
        ExpectForBoth(Nested(depth), limits, Loads());
        ExpectForBoth(Nested(depth, "text"), limits, Loads());
        ExpectForBoth(Nested(depth - 1, "<b/>"), limits, Loads());
        ExpectForBoth(Nested(depth, "<b/>"), limits, Refused(depth + 1, TooDeep(depth)));
        ExpectForBoth(Nested(depth, "<b></b>"), limits, Refused(depth + 1, TooDeep(depth)));
        ExpectForBoth(Nested(depth + 1), limits, Refused(depth + 1, TooDeep(depth)));
        ExpectForBoth(Nested(depth, "<b c='d'/>"), limits, Refused(depth + 1, TooDeep(depth)));
    }
}

// Those that are closed do not count.
TEST(Limits, DepthIsOfOpenElements) {
    const std::string wide = "<a>" + Times(1000, "<b><c/></b><b></b>") + "</a>";
    ExpectForBoth(wide, MaxDepth(3), Loads());
    ExpectForBoth(wide, MaxDepth(2), Refused(1, TooDeep(2)));
}

TEST(Limits, NoDepth) { ExpectForBoth(Deep(3000), NoLimits(), Loads()); }

TEST(Limits, DepthTellsTheElement) {
    const std::string xml = "<a>\n<b/>\n<b><c/><d/></b></a>";
    for (const std::string& document : {xml, LATIN1 + xml}) {
        const SXMLProblem problem = ProblemOf(document, MaxDepth(2));
        EXPECT_EQ(problem.path, "/a/b[2]/c[1]");
        EXPECT_EQ(problem.line, 3U);
        EXPECT_EQ(problem.column, 8U);
        EXPECT_EQ(problem.severity, EXMLSeverity::FATAL);
        EXPECT_EQ(problem.file, "Memfile");
    }
}

// Of a document that is refused callbacks are told what stands in front.
TEST(Limits, CallbacksBeforeTheRefusal) {
    for (const std::string& start : {std::string(), LATIN1}) {
        CRecordingHandler handler;
        EXPECT_THROW(XMLLoadText(start + "<a>x<b><c/></b></a>", handler, Within(MaxDepth(2))),
                     CXMLError);
        EXPECT_EQ(handler.Transcript(),
                  "StartDocument\nStartElement a\nCharacters \"x\"\nStartElement b\n");
    }
}

// --- bytes

TEST(Limits, Bytes) {
    for (const std::size_t size : {20U, 48U * 1024, 48U * 1024 + 1, 100000U, 200000U}) {
        SCOPED_TRACE(size);
        const std::string xml = "<a>" + std::string(size - 7, 'x') + "</a>";
        ASSERT_EQ(xml.size(), size);
        ExpectInEveryWay(xml, MaxBytes(size), Loads());
        ExpectInEveryWay(xml, MaxBytes(size + 1), Loads());
        ExpectInEveryWay(xml, NoLimits(), Loads());
        // Any line: of a known size nothing is read.
        ExpectInEveryWay(xml, MaxBytes(size - 1), Refused(0, TooLarge(size - 1)));
        ExpectInEveryWay(xml, MaxBytes(1), Refused(0, TooLarge(1)));
        const std::string latin1 = LATIN1 + xml;
        ExpectInEveryWay(latin1, MaxBytes(latin1.size()), Loads());
        ExpectInEveryWay(latin1, MaxBytes(latin1.size() - 1),
                         Refused(0, TooLarge(latin1.size() - 1)));
    }
}

// Of a size that is known beforehand not a byte is read.
TEST(Limits, BytesOfAKnownSize) {
    const std::string xml = "<a>" + std::string(200000, 'x') + "</a>";
    for (const std::string& document : {xml, "this is no document" + xml}) {
        const SXMLProblem problem = ProblemOf(document, MaxBytes(100000));
        EXPECT_EQ(problem.text, TooLarge(100000));
        EXPECT_EQ(problem.line, 0U);
        EXPECT_EQ(problem.file, "Memfile");
        EXPECT_EQ(problem.path, "");
    }
}

// A function is not asked for much more than the limit.
TEST(Limits, BytesOfAReader) {
    for (const std::size_t most : {std::size_t{1}, std::size_t{100}, std::size_t{65536}}) {
        std::size_t told = 0;
        const auto read = [&told, most](char* to, std::size_t room) {
            const std::size_t count = std::min(room, most);
            std::memset(to, ' ', count);
            if (told == 0) *to = '\n';
            told += count;
            return static_cast<std::ptrdiff_t>(count);
        };
        EXPECT_XML_ERROR(XMLLoadReader(read, Within(MaxBytes(150000))), 9,
                         LoadError("Stream", 2, TooLarge(150000)));
        EXPECT_GT(told, 150000U);
        EXPECT_LE(told, 150000U + 65536U);
    }
}

TEST(Limits, BytesOfADescriptor) {
    const std::string xml = "<a>" + std::string(1000, 'x') + "</a>";
    const TemporaryFile file(".xml", xml);
    for (const bool fits : {true, false}) {
        const int descriptor = open(file.Name(), O_RDONLY);
        ASSERT_GE(descriptor, 0);
        const SXMLUntrusted limits = MaxBytes(xml.size() - (fits ? 0 : 1));
        if (fits) {
            EXPECT_EQ(Saved(*XMLLoadDescriptor(descriptor, Within(limits))),
                      Saved(*XMLLoadText(xml)));
        } else {
            EXPECT_THROW(XMLLoadDescriptor(descriptor, Within(limits)), CXMLError);
        }
        close(descriptor);
    }
}

// --- the length of a piece

namespace {

// The pieces that count, so many bytes long, inside of an element.
std::vector<std::string> Pieces(std::size_t length) {
    const auto x = [length](std::size_t less) { return std::string(length - less, 'x'); };
    const auto blanks = [length](std::size_t less) { return std::string(length - less, ' '); };
    return {"<b/>" + x(0) + "<b/>",     "<b/>" + blanks(0) + "<b/>",
            "<!--" + x(7) + "-->",      "<?p " + x(6) + "?>",
            "<" + x(3) + "/>",          "<b " + x(8) + "=''/>",
            "<b c='" + x(9) + "'/>",    "<b" + blanks(4) + "/>",
            "<b></b" + blanks(4) + ">", "<b><![CDATA[" + x(12) + "]]></b>"};
}

}  // namespace

TEST(Limits, MarkupThatIsNoLonger) {
    for (const std::uint64_t most : {100U, 1000U, 48U * 1024 - 1, 48U * 1024, 100000U}) {
        SCOPED_TRACE(most);
        // Up to a block in front, so that the piece begins anywhere in one.
        for (const std::size_t front : {0U, 48U * 1024 - 150, 48U * 1024 - 4, 48U * 1024 - 3}) {
            std::string start = "<a>" + Times(front / 4, "<c/>") + Times(front % 4, "<?q?>");
            for (const std::string& piece : Pieces(most)) {
                SCOPED_TRACE(piece.substr(0, 12));
                for (const std::string& xml :
                     {start + piece + "</a>", LATIN1 + start + piece + "</a>"}) {
                    EXPECT_NO_THROW(XMLLoadText(xml, Within(MaxMarkup(most))));
                    CPieces pieces(xml, front == 0 ? 7 : 4096);
                    CXMLSaxHandler handler;
                    EXPECT_NO_THROW(
                        XMLLoadReader(std::ref(pieces), handler, Within(MaxMarkup(most))));
                }
            }
        }
    }
}

TEST(Limits, MarkupThatIsLonger) {
    for (const std::uint64_t most : {100U, 48U * 1024, 100000U, 3U << 20}) {
        SCOPED_TRACE(most);
        const std::size_t length = most + 2 * 48 * 1024 + 1;
        std::vector<std::string> pieces = Pieces(length);
        // The parser tells a long text in pieces of a million characters.
        if (length > 1000000) pieces.erase(pieces.begin(), pieces.begin() + 2);
        for (const std::string& piece : pieces) {
            SCOPED_TRACE(piece.substr(0, 12));
            ExpectForBoth("<a>" + piece + "</a>", MaxMarkup(most), Refused(1, TooLong(most)));
            EXPECT_NO_THROW(XMLLoadText("<a>" + piece + "</a>", Within(NoLimits())));
        }
    }
}

TEST(Limits, MarkupOutsideOfTheRoot) {
    const std::string blanks(200000, ' ');
    ExpectForBoth("<!---->" + blanks + "<a/>", MaxMarkup(1000), Refused(1, TooLong(1000)));
    ExpectForBoth("<a/>" + blanks, MaxMarkup(1000), Refused(1, TooLong(1000)));
    ExpectForBoth("<!---->" + blanks + "<a/>" + blanks, NoLimits(), Loads());
}

TEST(Limits, MarkupTellsTheElementAround) {
    const std::string xml = "<a>\n<b><!--" + std::string(200000, 'x') + "--></b></a>";
    for (const std::string& document : {xml, LATIN1 + xml}) {
        const SXMLProblem problem = ProblemOf(document, MaxMarkup(1000));
        EXPECT_EQ(problem.path, "/a/b[1]");
        EXPECT_EQ(problem.line, 2U);
        EXPECT_EQ(problem.file, "Memfile");
    }
}

// Very many that are short.
TEST(Limits, MarkupBetweenEvents) {
    for (const char* piece :
         {"<b/>", "<!---->", "<?p?>", "x<b/>", "<![CDATA[]]>", " <b/>\n", "x&amp;"}) {
        SCOPED_TRACE(piece);
        ExpectForBoth("<a>" + Times(60000, piece) + "</a>", MaxMarkup(10000), Loads());
    }
}

// --- namespaces

TEST(Limits, NamespacesInForce) {
    SXMLUntrusted limits = NoLimits();
    limits.maxMarkup = 64 * 100;
    const auto nested = [](std::size_t count) {
        std::string xml;
        for (std::size_t i = 0; i < count; ++i)
            xml += "<a xmlns:p" + std::to_string(i) + "='u'>";
        return xml + Times(count, "</a>");
    };
    ExpectForBoth(nested(100), limits, Loads());
    ExpectForBoth(nested(101), limits,
                  Refused(1, "more than 100 namespace declarations in force (maxMarkup / 64)"));
    ExpectForBoth("<a>" + Times(1000, "<b xmlns='u'/>") + "</a>", limits, Loads());
    ExpectForBoth(nested(5000), NoLimits(), Loads());
}

// --- processor time

namespace {

double ThreadSeconds() {
    timespec time = {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

void Work(double seconds) {
    for (const double end = ThreadSeconds() + seconds; ThreadSeconds() < end;) {
    }
}

const std::string TOO_SLOW_BY_ONE = "more than 1 second of processor time (maxSeconds)";

}  // namespace

TEST(Limits, TimeOfCallbacks) {
    const std::string xml = "<a>" + Times(10000, "<b/>\n") + "</a>";
    for (const std::string& document : {xml, LATIN1 + xml}) {
        CXMLLambdaHandler handler;
        handler.onStartElement = [](const SXMLStartTag&) { Work(0.001); };
        const double begin = ThreadSeconds();
        try {
            XMLLoadText(document, handler, Within(MaxSeconds(1)));
            ADD_FAILURE() << "it loads";
        } catch (const CXMLError& e) {
            EXPECT_EQ(e.GetID(), 9);
            EXPECT_EQ(e.Problems().front().text, TOO_SLOW_BY_ONE);
            EXPECT_EQ(e.Problems().front().file, "Memfile");
            EXPECT_GT(e.Problems().front().line, 1U);
        }
        EXPECT_GT(ThreadSeconds() - begin, 0.5);
        EXPECT_LT(ThreadSeconds() - begin, 2.5);
    }
    CXMLLambdaHandler handler;
    handler.onStartElement = [](const SXMLStartTag&) { Work(0.0002); };
    EXPECT_NO_THROW(XMLLoadText(xml, handler, Within(NoLimits())));
}

TEST(Limits, TimeOfReads) {
    const std::string xml = "<a>" + Times(10000, "<b/>\n") + "</a>";
    for (const bool isTree : {true, false}) {
        CPieces pieces(xml, 10);
        const auto read = [&pieces](char* to, std::size_t room) {
            Work(0.001);
            return pieces(to, room);
        };
        CXMLSaxHandler handler;
        const double begin = ThreadSeconds();
        if (isTree)
            EXPECT_THROW(XMLLoadReader(read, Within(MaxSeconds(1))), CXMLError);
        else
            EXPECT_THROW(XMLLoadReader(read, handler, Within(MaxSeconds(1))), CXMLError);
        EXPECT_LT(ThreadSeconds() - begin, 2.5);
    }
}

// Who waits takes no time.
TEST(Limits, TimeIsNotThatOfTheClock) {
    const std::string xml = "<a>" + Times(10, "<b/>\n") + "</a>";
    for (const std::string& document : {xml, LATIN1 + xml}) {
        CXMLLambdaHandler handler;
        handler.onStartElement = [](const SXMLStartTag&) { usleep(120000); };
        EXPECT_NO_THROW(XMLLoadText(document, handler, Within(MaxSeconds(1))));
    }
}

// And the work of others is not that of the load.
TEST(Limits, TimeIsOfTheThread) {
    std::thread other([] { Work(1.5); });
    CXMLLambdaHandler handler;
    handler.onStartElement = [](const SXMLStartTag&) { usleep(5000); };
    EXPECT_NO_THROW(
        XMLLoadText("<a>" + Times(300, "<b/>") + "</a>", handler, Within(MaxSeconds(1))));
    other.join();
}

// --- schemas of the caller's

TEST(Limits, SchemasOfTheCaller) {
    const TemporaryFile included(".xsd",
                                 "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema'>"
                                 "<xs:simpleType name='t'><xs:restriction base='xs:int'/>"
                                 "</xs:simpleType></xs:schema>");
    const TemporaryFile imported(".xsd",
                                 "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema' "
                                 "targetNamespace='urn:t'><xs:element name='e' type='xs:int'/>"
                                 "</xs:schema>");
    const TemporaryFile schema(
        ".xsd",
        "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema' xmlns:t='urn:t'>"
        "<xs:include schemaLocation='" +
            included.BaseName() +
            "'/>"
            "<xs:import namespace='urn:t' schemaLocation='" +
            imported.BaseName() +
            "'/>"
            "<xs:element name='r'><xs:complexType><xs:sequence>"
            "<xs:element name='n' type='t'/><xs:element ref='t:e'/></xs:sequence>"
            "<xs:attribute name='d' default='x'/></xs:complexType></xs:element></xs:schema>");
    const SXMLLoadOptions options =
        SXMLLoadOptions().Untrusted().ValidateBySchema(schema.Name()).RequireGrammar();
    const CXMLDocumentPtr document = XMLLoadText("<r><n>1</n><e xmlns='urn:t'>2</e></r>", options);
    EXPECT_EQ(Attributes(*document->GetRoot()), "d=x");
    const std::string wrongHere = "<r>\n<n>x</n><e xmlns='urn:t'>2</e></r>";
    const std::string wrongThere = "<r>\n<n>1</n>\n<e xmlns='urn:t'>x</e></r>";
    const TemporaryFile file(".xml", wrongHere);
    for (const SLoadWay& way : EveryWay()) {
        EXPECT_EQ(LoadsAs(way, wrongHere, file.Name(), options, {Invalid(2, NO_INTEGER)}), "");
        if (way.origin == EOrigin::FILE) continue;
        EXPECT_EQ(LoadsAs(way, wrongThere, "", options, {Invalid(3, NO_INTEGER)}), "");
    }
    // Limits are of the document, not of its schemas.
    SXMLUntrusted limits = NoLimits();
    limits.maxBytes = 50;
    limits.maxMarkup = 64;
    limits.maxDepth = 2;
    EXPECT_NO_THROW(XMLLoadText("<r><n>1</n><e xmlns='urn:t'>2</e></r>",
                                Within(limits).ValidateBySchema(schema.Name())));
}
