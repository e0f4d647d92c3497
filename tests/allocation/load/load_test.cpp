// Loads with settings in which an allocation of the library fails, for every one of them: what
// comes is std::bad_alloc, or what comes without the failure; nothing is left, and the next load is
// none the worse.
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string_view>

#include "allocation/sample_tree.h"
#include "allocation/sweep.h"
#include "support/sanitizers.h"
#include "support/testing.h"

using namespace norvask_test;

namespace {

// Tells nothing.
class CSilent : public CXMLSaxHandler {
public:
    void StartDocument() override {}
    void EndDocument() override {}
    void StartElement(const char*, const char*, const char*, CXMLSaxAttribut**) override {}
    void EndElement(const char*, const char*, const char*) override {}
    void Characters(const char*) override {}
    void StartCDATA() override {}
    void EndCDATA() override {}
    void StartDTD(const char*, const char*, const char*) override {}
    void StartNamespace(const char*, const char*) override {}
    void EndNamespace(const char*) override {}
};

// A text that a function reads in pieces, without an allocation.
struct SPieces {
    std::string_view text;
    std::size_t piece;
    int error;  // behind its end; 0 for none
    std::size_t at = 0;

    static std::ptrdiff_t Read(void* context, char* to, std::size_t room) {
        SPieces& pieces = *static_cast<SPieces*>(context);
        const std::size_t left = pieces.text.size() - pieces.at;
        const std::size_t count = std::min({room, pieces.piece, left});
        std::memcpy(to, pieces.text.data() + pieces.at, count);
        pieces.at += count;
        return count == 0 && pieces.error != 0 ? -pieces.error : static_cast<std::ptrdiff_t>(count);
    }
};

SXMLSource Memory(const std::string& xml) {
    SXMLSource source;
    source.bytes = xml.data();
    source.length = xml.size();
    return source;
}
SXMLSource File(const char* name) {
    SXMLSource source;
    source.fileName = name;
    return source;
}

SXMLLoadSettings Collecting(unsigned int limit = 0) {
    SXMLLoadSettings settings;
    settings.validate = true;
    settings.problemLimit = limit;
    return settings;
}

struct SResult {
    SAttempt attempt;
    std::string tree;
    long left = 0;
};

// One load, as a tree or as callbacks.
SResult LoadOnce(const SXMLSource& source, const SXMLLoadSettings& settings, bool isTree, long n,
                 Failing failing) {
    SResult result;
    Document document;
    const long before = LiveBlocks();
    auto handler = std::make_unique<CSilent>();  // keeps what it shares with the load
    result.attempt = Attempt(
        [&] {
            if (isTree) {
                document.reset(XMLLoad(source, settings));
            } else {
                XMLLoad(source, settings, *handler);
            }
        },
        n, failing, Callers::Library);
    handler.reset();
    const long held = LiveBlocks();
    if (document) result.tree = TreeText(document);
    const long shown = LiveBlocks();
    document.reset();
    result.left = LiveBlocks() - shown + held - before;
    return result;
}

// Refuses every allocation in turn. Without a refusal it tells `told`, or nothing if that is empty.
// `rewind` makes the source new. So many blocks may be left by the parser where it is interrupted.
template <typename Rewind>
void ExpectEveryFailureTold(const SXMLSource& source, const SXMLLoadSettings& settings,
                            const std::string& told, Rewind rewind, long ofParser = 0) {
    const CLeaksAllowed leaks;
    for (const bool isTree : {true, false}) {
        SCOPED_TRACE(isTree ? "tree" : "callbacks");
        rewind();
        LoadOnce(source, settings, isTree, 0, Failing::One);  // what is made once for the process
        rewind();
        const SResult whole = LoadOnce(source, settings, isTree, 0, Failing::One);
        ASSERT_EQ(whole.attempt.told, told);
        ASSERT_LE(whole.left, ofParser);
        for (const Failing failing : {Failing::One, Failing::AllFromThere}) {
            long refusals = 0;
            for (long n = 1;; ++n) {
                SCOPED_TRACE("allocation " + std::to_string(n));
                rewind();
                const SResult result = LoadOnce(source, settings, isTree, n, failing);
                if (!result.attempt.refused) {
                    EXPECT_EQ(result.attempt.told, told);
                    EXPECT_GT(refusals, 3) << "hardly anything was refused";
                    break;
                }
                if (result.attempt.thrown && result.attempt.told != told) {
                    EXPECT_STREQ(result.attempt.told, "bad_alloc");
                    ++refusals;
                } else if (isTree && told.empty() && result.tree != "") {
                    EXPECT_EQ(result.tree, whole.tree);
                }
                EXPECT_LE(result.left, ofParser);
                EXPECT_GE(result.left, 0);
                if (n % 16 == 0) {
                    rewind();
                    const SResult again = LoadOnce(source, settings, isTree, 0, Failing::One);
                    EXPECT_EQ(again.attempt.told, told);
                    EXPECT_EQ(again.tree, whole.tree);
                }
                if (::testing::Test::HasFailure()) return;  // once is enough
            }
        }
    }
}
void ExpectEveryFailureTold(const SXMLSource& source, const SXMLLoadSettings& settings,
                            const std::string& told, long ofParser = 0) {
    ExpectEveryFailureTold(
        source, settings, told, [] {}, ofParser);
}

const char* const INVALID =
    "<!DOCTYPE r [<!ELEMENT r ANY><!ELEMENT n EMPTY>]>\n<r>\n<a k='v'/>\n<n>text</n>"
    "<b xmlns:p='u' p:k='w'><c/></b></r>";
const char* const SCHEMA =
    "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema'><xs:element name='r'>"
    "<xs:complexType><xs:sequence><xs:element name='n' type='xs:int' maxOccurs='9'/>"
    "</xs:sequence></xs:complexType></xs:element></xs:schema>";

}  // namespace

TEST(AllocationFailureSettings, OfAPlainDocument) {
    const std::string xml = RichDocument();
    SXMLLoadSettings settings;
    ExpectEveryFailureTold(Memory(xml), settings, "");
    settings.keepPrefixes = true;
    settings.progress = [](void*, std::uint64_t, std::uint64_t) { return true; };
    ExpectEveryFailureTold(Memory(xml), settings, "");
    const TemporaryFile file(".xml", xml);
    ExpectEveryFailureTold(File(file.Name()), settings, "");
    SXMLSource path;
    path.path = file.Name();
    ExpectEveryFailureTold(path, settings, "");
}

TEST(AllocationFailureSettings, OfAMalformedDocument) {
    const std::string xml = "<r k='v'>text\n<a><b/>\xF0\x9F\x98\x80<b></a></r>";
    ExpectEveryFailureTold(Memory(xml), SXMLLoadSettings(),
                           "2 " + LoadError("Memfile", 2, "expected end of tag 'b'"));
    const TemporaryFile file(".xml", xml);
    ExpectEveryFailureTold(File(file.Name()), SXMLLoadSettings(),
                           "2 " + LoadError(file.Name(), 2, "expected end of tag 'b'"));
}

TEST(AllocationFailureSettings, OfInvalidUtf8) {
    const std::string xml = "<r>\n<a>caf\xC3(\xE9 and more</a></r>";
    const SResult plain = LoadOnce(Memory(xml), SXMLLoadSettings(), true, 0, Failing::One);
    ExpectEveryFailureTold(Memory(xml), SXMLLoadSettings(), plain.attempt.told);
    const std::string cut = "<r>\n<a>caf\xC3";
    ExpectEveryFailureTold(Memory(cut), SXMLLoadSettings(),
                           "2 " + LoadError("Memfile", 2, "invalid UTF-8: 0xC3"));
}

TEST(AllocationFailureSettings, OfProblems) {
    const std::string xml = INVALID;
    const std::string told = "2 " + LoadError("Memfile", 3, "no declaration found for element 'a'");
    ExpectEveryFailureTold(Memory(xml), Collecting(), told);
    ExpectEveryFailureTold(Memory(xml), Collecting(1), told);
    ExpectEveryFailureTold(Memory(xml + "<"), Collecting(), told);
}

TEST(AllocationFailureSettings, OfGrammars) {
    const std::string xml = "<r>\n<n>1</n><n>x</n></r>";
    const TemporaryFile schema(".xsd", SCHEMA);
    SXMLLoadSettings settings = Collecting();
    settings.doSchema = true;
    const SXMLSchemaName name = {nullptr, schema.Name()};
    settings.schemas = &name;
    settings.schemaCount = 1;
    ExpectEveryFailureTold(Memory(xml), settings, "2 " + LoadError("Memfile", 2, NO_INTEGER));
    const SXMLSchemaName missing = {"urn:n", "/no/such.xsd"};
    settings.schemas = &missing;
    ExpectEveryFailureTold(
        Memory(xml), settings,
        "2 " + LoadError("/no/such.xsd", 0,
                         std::string("the schema cannot be read: ") + std::strerror(ENOENT)));
    settings.schemaCount = 0;
    settings.requireGrammar = true;
    ExpectEveryFailureTold(
        Memory(xml), settings,
        "2 " + LoadError("Memfile", 1,
                         "no grammar to validate by: the program names none, and the document "
                         "none that is read"));
}

TEST(AllocationFailureSettings, OfRefusals) {
    SXMLUntrusted limits;
    limits.maxDepth = 3;
    limits.maxBytes = 1000;
    SXMLLoadSettings settings;
    settings.untrusted = &limits;
    ExpectEveryFailureTold(Memory("<r>\n<a><b><c/></b></a></r>"), settings,
                           "9 " + LoadError("Memfile", 2, "deeper than 3 elements (maxDepth)"));
    ExpectEveryFailureTold(
        Memory("<!DOCTYPE r [<!ENTITY e 'x'>]><r/>"), settings,
        "9 " + LoadError("Memfile", 1, "the document type declaration is not allowed"));
    const std::string large = "<r>" + std::string(2000, 'x') + "</r>";
    ExpectEveryFailureTold(Memory(large), settings,
                           "9 " + LoadError("Memfile", 0, "larger than 1000 bytes (maxBytes)"));
    SXMLLoadSettings stopping;
    stopping.progress = [](void*, std::uint64_t, std::uint64_t) { return false; };
    const SResult stopped = LoadOnce(Memory(large), stopping, true, 0, Failing::One);
    EXPECT_NE(std::string(stopped.attempt.told).find("stopped by the program"), std::string::npos);
    // Stopped in its first read, the parser loses a block; the fast lane has none to lose.
    ExpectEveryFailureTold(
        Memory(large), stopping, stopped.attempt.told, [] {}, 1);
}

// A stream is looked at while it is read, or read ahead.
TEST(AllocationFailureSettings, OfStreams) {
    const std::string xml = RichDocument();
    SPieces pieces{xml, 100, 0};
    SXMLSource source;
    source.read = SPieces::Read;
    source.readContext = &pieces;
    const auto rewind = [&pieces] { pieces.at = 0; };
    ExpectEveryFailureTold(source, SXMLLoadSettings(), "", rewind, 1);
    const std::string malformed = "<r k='v'>text\n<a>\xF0\x9F\x98\x80<b></a></r>";
    pieces.text = malformed;
    ExpectEveryFailureTold(source, SXMLLoadSettings(),
                           "2 " + LoadError("Stream", 2, "expected end of tag 'b'"), rewind, 1);
    pieces.text = xml;
    pieces.error = EIO;
    ExpectEveryFailureTold(source, SXMLLoadSettings(),
                           std::string("1 Error loading 'Stream':\n\n'") + std::strerror(EIO) + "'",
                           rewind, 1);
}

TEST(AllocationFailureSettings, OfWhatCannotBeOpened) {
    ExpectEveryFailureTold(File("/no/such.xml"), SXMLLoadSettings(),
                           "2 " + LoadError("", 0,
                                            "unable to open primary document entity "
                                            "'/no/such.xml'"));
    SXMLSource descriptor;
    descriptor.descriptor = 1000000;
    ExpectEveryFailureTold(
        descriptor, SXMLLoadSettings(),
        std::string("1 Error loading 'Stream':\n\n'") + std::strerror(EBADF) + "'");
}

TEST(AllocationFailureError, IsCopiedWithoutAnAllocation) {
    const CXMLError error(2, "text", std::vector<SXMLProblem>(3));
    const SAttempt attempt = Attempt(
        [&error] {
            CXMLError copy(error);
            CXMLError other(copy);
            other = error;
            const CXMLError ofBase(static_cast<const CXMLException&>(copy));
        },
        1);
    EXPECT_FALSE(attempt.refused);
    EXPECT_FALSE(attempt.thrown) << attempt.told;
}

TEST(AllocationFailureError, IsMadeOrNot) {
    const std::vector<SXMLProblem> problems(3);
    EXPECT_GE(SweepWork([&problems] { const CXMLError error(2, "text", problems); }), 3);
}
