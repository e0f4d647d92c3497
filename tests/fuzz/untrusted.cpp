// Loads any bytes as a stranger's document: from memory and from a function that reads odd pieces,
// as a tree and as callbacks. Nothing but a CXMLError or want of memory may come out, and nothing
// may be opened or connected to but the schema that the load names. Where the plain load cannot
// reach anything either, its outcome must be the same.
//
// The first byte of the input chooses the options, the second the limits and the pieces.
#include <dlfcn.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <new>

#include "fuzz/fuzzing.h"
#include "support/recording_handler.h"

using namespace norvask;
using namespace norvask_fuzz;

namespace {

// While a document is loaded: the only file that may be opened.
bool isLoading = false;
std::string schemaName;

template <typename Function>
Function* Next(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

}  // namespace

// What the parser opens files by, and what its network accessor cannot do without. These stand in
// front of the system's.
extern "C" FILE* fopen(const char* name, const char* mode) {
    if (isLoading) Require(name == schemaName, "a file was opened");
    static auto* const next = Next<FILE*(const char*, const char*)>("fopen");
    return next(name, mode);
}
extern "C" FILE* fopen64(const char* name, const char* mode) {
    if (isLoading) Require(name == schemaName, "a file was opened");
    static auto* const next = Next<FILE*(const char*, const char*)>("fopen64");
    return next(name, mode);
}
extern "C" int socket(int domain, int type, int protocol) noexcept {
    Require(!isLoading, "a socket was made");
    static auto* const next = Next<int(int, int, int)>("socket");
    return next(domain, type, protocol);
}

// The parser's known leaks (support/lsan.supp) are told by the functions that allocate, which the
// sanitizer sees only if it unwinds with care.
extern "C" const char* __asan_default_options() {
    return "fast_unwind_on_malloc=0:malloc_context_size=8";
}

namespace {

class CLoading {
public:
    CLoading() { isLoading = true; }
    ~CLoading() { isLoading = false; }
    CLoading(const CLoading&) = delete;
    CLoading& operator=(const CLoading&) = delete;
};

void WriteSchema() {
    char name[] = "/tmp/norvask_fuzz_XXXXXX";
    const int handle = mkstemp(name);
    Require(handle >= 0, "no schema could be written");
    close(handle);
    schemaName = name;
    std::ofstream(schemaName) << R"(<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema">
<xs:element name="a" type="t"/>
<xs:complexType name="t"><xs:choice minOccurs="0" maxOccurs="unbounded">
<xs:element ref="a"/><xs:element name="n" type="xs:int"/><xs:element name="s" type="xs:string"/>
<xs:element name="d" type="xs:decimal"/><xs:element name="t" type="xs:dateTime"/>
<xs:any namespace="##other" processContents="lax"/></xs:choice>
<xs:attribute name="k" type="xs:ID"/><xs:attribute name="r" type="xs:IDREFS"/>
<xs:attribute name="d" default="default"/></xs:complexType></xs:schema>)";
    std::atexit([] { unlink(schemaName.c_str()); });
}

struct SWay {
    bool isTree;
    bool keepPrefixes;
    bool validate;
    bool doSchema;
    bool namesSchema;
    bool collects;
    bool hasLimits;
    bool isSmall;  // the limits
    unsigned int pieces;
};

SWay WayOf(std::uint8_t options, std::uint8_t more) {
    SWay way = {};
    way.isTree = (options & 1) != 0;
    way.keepPrefixes = (options & 2) != 0;
    way.validate = (options & 4) != 0;
    way.doSchema = way.validate && (options & 8) != 0;
    way.namesSchema = way.doSchema && (options & 16) != 0;
    way.collects = (options & 32) != 0;
    way.hasLimits = (options & 64) != 0;
    way.isSmall = way.hasLimits && (options & 128) != 0;
    way.pieces = more;
    return way;
}

// Reads a document in pieces of one to `most` bytes.
struct SPieces {
    const std::string* document;
    unsigned int most;
    std::size_t at;

    static std::ptrdiff_t Read(void* context, char* to, std::size_t room) {
        SPieces& pieces = *static_cast<SPieces*>(context);
        Require(room != 0, "no room to read");
        const std::size_t left = pieces.document->size() - pieces.at;
        const std::size_t wanted = 1 + (pieces.at * 7 + pieces.most) % (pieces.most % 32 + 1);
        const std::size_t count = std::min({left, wanted, room});
        std::memcpy(to, pieces.document->data() + pieces.at, count);
        pieces.at += count;
        return static_cast<std::ptrdiff_t>(count);
    }
};

struct SOutcome {
    int id = 0;  // of the error; 0 for a document that was loaded
    std::string text = {};
    bool isOfDecoding = false;
};

std::string Shown(const SOutcome& outcome) {
    return "class " + std::to_string(outcome.id) + ": " + outcome.text;
}

void Describe(CXMLDocument& document, SOutcome& outcome) {
    outcome.text = Saved(document, false);
    const char* const name = document.GetDTDName();
    outcome.text += std::string("\n") + (name != nullptr ? name : "no DTD");
}

SOutcome LoadUntrusted(const SXMLSource& source, const SWay& way) {
    SXMLUntrusted limits;
    if (!way.hasLimits) limits = {0, 0, 0, 0};
    if (way.isSmall) limits = {600, 100, 4, 1};
    SXMLSchemaName schema;
    schema.location = schemaName.c_str();
    SXMLLoadSettings settings;
    settings.validate = way.validate;
    settings.doSchema = way.doSchema;
    settings.keepPrefixes = way.keepPrefixes;
    settings.schemas = way.namesSchema ? &schema : nullptr;
    settings.schemaCount = way.namesSchema ? 1 : 0;
    settings.problemLimit = way.collects ? way.pieces % 4 : 1;
    settings.untrusted = &limits;
    SOutcome outcome;
    try {
        const CLoading loading;
        if (way.isTree) {
            const Document document(XMLLoad(source, settings));
            Require(document != nullptr, "no document");
            Describe(*document, outcome);
        } else {
            norvask_test::CRecordingHandler handler;
            XMLLoad(source, settings, handler);
            outcome.text = handler.Transcript();
        }
    } catch (const CXMLError& e) {
        Require(*e.what() != '\0', "an error without a message");
        Require(!e.Problems().empty(), "an error without a problem");
        for (const SXMLProblem& problem : e.Problems()) {
            Require(!problem.text.empty(), "a problem without a text");
            Require(problem.line != 0 || problem.column == 0, "a column in no line");
        }
        outcome.id = e.GetID();
        outcome.text = e.what();
        outcome.isOfDecoding = e.Problems().front().text.compare(0, 13, "invalid UTF-8") == 0;
    } catch (const std::bad_alloc&) {
        outcome.id = -1;
    }
    return outcome;
}

SOutcome LoadPlainly(const std::string& xml, const SWay& way) {
    std::vector<unsigned char> bytes(xml.begin(), xml.end());
    const char* const schema = way.namesSchema ? schemaName.c_str() : nullptr;
    CXMLManager& manager = CXMLManager::GetInstance();
    SOutcome outcome;
    try {
        const unsigned int length = static_cast<unsigned int>(bytes.size());
        const CLoading loading;
        if (way.isTree) {
            const Document document(manager.LoadDocument(
                bytes.data(), length, way.validate, way.doSchema, schema, false, way.keepPrefixes));
            Describe(*document, outcome);
        } else {
            norvask_test::CRecordingHandler handler;
            manager.LoadDocument(bytes.data(), length, &handler, way.validate, way.doSchema, schema,
                                 false, way.keepPrefixes);
            outcome.text = handler.Transcript();
        }
    } catch (CXMLException& e) {
        outcome.id = e.GetID();
        outcome.text = e.GetMessage();
    }
    return outcome;
}

// Whether a plain load reads nothing but the document. Other encodings could hide what is looked
// for.
bool IsHarmless(const std::string& xml) {
    const std::size_t known = CountOf(xml, "encoding=\"UTF-8\"") + CountOf(xml, "encoding='utf-8'");
    return xml.find("<!DOCTYPE") == std::string::npos && xml.find("ocation") == std::string::npos &&
           xml.find('\0') == std::string::npos && xml[0] != '\x4C' && xml[0] != '\xFE' &&
           xml[0] != '\xFF' && CountOf(xml, "encoding") == known;
}

// Of two errors in a document that is not UTF-8 throughout, that one comes first that lies in a
// piece which is decoded first; and of such an error it is the untrusted load that tells more.
void RequireSameOutcome(const char* what, const SOutcome& one, const SOutcome& other, bool isUtf8) {
    if (one.id == 9 || one.id == -1 || other.id == 9 || other.id == -1) return;
    if (one.id != other.id) Fail(what, Shown(one), Shown(other));
    if (one.id == 0 || (isUtf8 && !one.isOfDecoding && !other.isOfDecoding))
        RequireSame(what, one.text, other.text);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 3) return 0;
    if (schemaName.empty()) WriteSchema();
    const SWay way = WayOf(data[0], data[1]);
    const std::string xml(reinterpret_cast<const char*>(data) + 2, size - 2);
    const std::vector<char> block(xml.begin(), xml.end());

    SXMLSource memory;
    memory.bytes = block.data();
    memory.length = block.size();
    const SOutcome untrusted = LoadUntrusted(memory, way);

    SPieces pieces = {&xml, way.pieces, 0};
    SXMLSource reader;
    reader.read = SPieces::Read;
    reader.readContext = &pieces;
    reader.name = "Memfile";
    const bool isHarmless = IsHarmless(xml);
    RequireSameOutcome("memory and a reader differ", LoadUntrusted(reader, way), untrusted,
                       isHarmless);

    if (!isHarmless) return 0;
    if (!way.hasLimits) Require(untrusted.id != 9, "a limit without limits");
    RequireSameOutcome("the plain load differs", untrusted, LoadPlainly(xml, way), true);
    return 0;
}
