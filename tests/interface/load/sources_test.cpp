// Documents from streams, descriptors, functions and paths: the same trees, callbacks and errors as
// from memory.
#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <istream>
#include <stdexcept>
#include <streambuf>
#include <thread>

#include "support/files.h"
#include "support/problems.h"
#include "support/recording_handler.h"
#include "support/testing.h"

using namespace norvask_test;

namespace {

// What comes of a load, in one text: the tree or the callbacks, and the problems by this name.
struct SOutcome {
    std::string tree;
    std::string events;
    std::string failures;
};
template <typename AsTree, typename AsEvents>
SOutcome OutcomeOf(AsTree asTree, AsEvents asEvents) {
    SOutcome outcome;
    const SFailure ofTree = FailureOf([&] { outcome.tree = TreeText(asTree()); });
    CRecordingHandler handler;
    const SFailure ofEvents = FailureOf([&] { asEvents(handler); });
    outcome.events = handler.Take();
    outcome.failures =
        ofTree.Told() + "\n" + ofTree.Lines() + ofEvents.Told() + "\n" + ofEvents.Lines();
    return outcome;
}
void ExpectSame(const SOutcome& outcome, const SOutcome& memory) {
    EXPECT_EQ(outcome.tree, memory.tree);
    EXPECT_EQ(outcome.events, memory.events);
    EXPECT_EQ(outcome.failures, memory.failures);
}

class CDescriptor {
public:
    explicit CDescriptor(int descriptor) : m_nDescriptor(descriptor) {}
    CDescriptor(const CDescriptor&) = delete;
    CDescriptor& operator=(const CDescriptor&) = delete;
    ~CDescriptor() { close(m_nDescriptor); }
    int Get() const { return m_nDescriptor; }

private:
    const int m_nDescriptor;
};

// Reads a text in pieces of this size, and counts how often behind its end.
class CPieces {
public:
    explicit CPieces(std::string text, std::size_t piece = SIZE_MAX)
        : m_Text(std::move(text)), m_nPiece(piece) {}
    std::ptrdiff_t operator()(char* to, std::size_t room) {
        const std::size_t count = std::min({room, m_nPiece, m_Text.size() - m_nAt});
        std::memcpy(to, m_Text.data() + m_nAt, count);
        m_nAt += count;
        m_nEnds += count == 0 ? 1 : 0;
        return static_cast<std::ptrdiff_t>(count);
    }
    int Ends() const { return m_nEnds; }
    std::size_t At() const { return m_nAt; }

private:
    std::string m_Text;
    std::size_t m_nPiece;
    std::size_t m_nAt = 0;
    int m_nEnds = 0;
};

// A pipe that a thread fills in pieces.
class CFilledPipe {
public:
    CFilledPipe(std::string text, std::size_t piece) {
        int ends[2];
        if (pipe(ends) != 0) throw std::runtime_error("no pipe");
        m_nRead = ends[0];
        m_Filler = std::thread([text = std::move(text), piece, to = ends[1]] {
            for (std::size_t at = 0; at < text.size();) {
                const std::size_t count = std::min(piece, text.size() - at);
                const ssize_t written = write(to, text.data() + at, count);
                if (written <= 0) break;
                at += static_cast<std::size_t>(written);
            }
            close(to);
        });
    }
    CFilledPipe(const CFilledPipe&) = delete;
    CFilledPipe& operator=(const CFilledPipe&) = delete;
    ~CFilledPipe() {
        char rest[4096];
        while (read(m_nRead, rest, sizeof rest) > 0) {
        }
        m_Filler.join();
        close(m_nRead);
    }
    int Get() const { return m_nRead; }

private:
    int m_nRead = -1;
    std::thread m_Filler;
};

void ExpectSameFromEverywhere(const std::string& xml, const SXMLLoadOptions& options,
                              const std::vector<std::size_t>& pieces) {
    SCOPED_TRACE(Quoted(xml.substr(0, 100)) + " of " + std::to_string(xml.size()));
    const TemporaryFile file(".xml", xml);
    const SXMLLoadOptions named = options.Name(file.Name());
    const SOutcome memory = OutcomeOf(
        [&] { return XMLLoadText(std::string_view(xml), named); },
        [&](CXMLSaxHandler& handler) { XMLLoadText(std::string_view(xml), handler, named); });
    {
        SCOPED_TRACE("path");
        const std::filesystem::path path(file.Name());
        ExpectSame(OutcomeOf([&] { return XMLLoadFile(path, options); },
                             [&](CXMLSaxHandler& handler) { XMLLoadFile(path, handler, options); }),
                   memory);
    }
    {
        SCOPED_TRACE("file stream");
        std::ifstream first(file.Name(), std::ios::binary);
        std::ifstream second(file.Name(), std::ios::binary);
        ExpectSame(
            OutcomeOf([&] { return XMLLoadStream(first, named); },
                      [&](CXMLSaxHandler& handler) { XMLLoadStream(second, handler, named); }),
            memory);
    }
    {
        SCOPED_TRACE("string stream");
        std::istringstream first(xml);
        std::istringstream second(xml);
        ExpectSame(
            OutcomeOf([&] { return XMLLoadStream(first, named); },
                      [&](CXMLSaxHandler& handler) { XMLLoadStream(second, handler, named); }),
            memory);
    }
    {
        SCOPED_TRACE("descriptor");
        const CDescriptor first(open(file.Name(), O_RDONLY));
        const CDescriptor second(open(file.Name(), O_RDONLY));
        ExpectSame(OutcomeOf([&] { return XMLLoadDescriptor(first.Get(), named); },
                             [&](CXMLSaxHandler& handler) {
                                 XMLLoadDescriptor(second.Get(), handler, named);
                             }),
                   memory);
        EXPECT_NE(fcntl(first.Get(), F_GETFD), -1) << "it was closed";
    }
    for (const std::size_t piece : pieces) {
        SCOPED_TRACE("pieces of " + std::to_string(piece));
        CPieces first(xml, piece);
        CPieces second(xml, piece);
        ExpectSame(OutcomeOf([&] { return XMLLoadReader(std::ref(first), named); },
                             [&](CXMLSaxHandler& handler) {
                                 XMLLoadReader(std::ref(second), handler, named);
                             }),
                   memory);
        // Behind the end nothing is asked for.
        EXPECT_LE(first.Ends(), 1);
        EXPECT_LE(second.Ends(), 1);
    }
}

const std::vector<std::size_t> PIECES = {1, 2, 3, 7, 100, 4096, SIZE_MAX};

const char* const DOCUMENTS[] = {
    "<a/>",
    "<?xml version='1.0'?>\n<!--c--><p:a xmlns:p='u' k='v'>t\xC3\xA4&amp;<b/><![CDATA[x]]></p:a>\n",
    "\xEF\xBB\xBF<a>\r\n</a>",
    "<!DOCTYPE a [<!ELEMENT a ANY><!ENTITY e 'x'>]><a>&e;</a>",
    "<?xml version='1.0' encoding='ISO-8859-1'?><a>\xE4</a>",
    // Failing ones.
    "<a>",
    "<a>\n<b></a>",
    "x",
    " ",
    "<a>\xFF</a> and more",
    "<a>caf\xC3",
    "<!DOCTYPE a [<!ELEMENT a ANY>]><a><b/><c/></a>",
    "<a><b x\xF0\x90\x80\x80='1'/></a>",
};

std::string Failing(int error, const std::string& name = "Stream") {
    return "fatal " + name + ":0:0: " + std::strerror(error) + "\n";
}
std::string FailingText(int error, const std::string& name = "Stream") {
    return "Error loading '" + name + "':\n\n'" + std::strerror(error) + "'";
}

}  // namespace

TEST(LoadSources, AreAllTheSame) {
    for (const char* const xml : DOCUMENTS) {
        ExpectSameFromEverywhere(xml, SXMLLoadOptions(), PIECES);
        ExpectSameFromEverywhere(xml, SXMLLoadOptions().KeepPrefixes().Untrusted(), {3});
        ExpectSameFromEverywhere(xml, SXMLLoadOptions().Validate().CollectProblems(), {5});
        // Columns behind characters of two units are not known of what cannot be read twice.
        if (std::strchr(xml, '\xF0') != nullptr) continue;
        ExpectSameFromEverywhere(xml, SXMLLoadOptions().RequireGrammar(), {11});
        ExpectSameFromEverywhere(xml, SXMLLoadOptions().Progress([](auto, auto) {}), {1, 2, 40});
    }
    std::string utf16;
    for (const char c : std::string("<a>\n<b>x</b></a>")) {
        utf16 += c;
        utf16 += '\0';
    }
    ExpectSameFromEverywhere("\xFF\xFE" + utf16, SXMLLoadOptions(), PIECES);
}

// Around the sizes of the blocks in which documents are read.
TEST(LoadSources, OfEverySizeAreTheSame) {
    for (const std::size_t block : {std::size_t{49152}, std::size_t{65536}}) {
        for (const std::size_t size : {block - 2, block - 1, block, block + 1, 2 * block}) {
            std::string xml = "<a>\n<b>";
            xml += std::string(size - xml.size() - 8, 'x') + "</b></a>";
            ASSERT_EQ(xml.size(), size);
            ExpectSameFromEverywhere(xml, SXMLLoadOptions(), {1000, 49152, 65536, SIZE_MAX});
            xml.replace(xml.size() - 8, 8, "</c></a>");
            ExpectSameFromEverywhere(xml, SXMLLoadOptions(), {1000, SIZE_MAX});
        }
    }
}

// A tree's document is read ahead up to this size.
TEST(LoadSources, AboveWhatIsReadAheadAreTheSame) {
    const std::size_t ahead = std::size_t{16} << 20;
    for (const std::size_t size : {ahead - 1, ahead, ahead + 1, ahead + 100000}) {
        SCOPED_TRACE(size);
        std::string xml = "<a>\n";
        const std::string child = "<b>" + std::string(1000, 'x') + "</b>\n";
        while (xml.size() + child.size() + 4 <= size)
            xml += child;
        xml += std::string(size - xml.size() - 4, ' ') + "</a>";
        ASSERT_EQ(xml.size(), size);
        CPieces pieces(xml, 100000);
        EXPECT_EQ(SavedBody(*XMLLoadReader(std::ref(pieces))),
                  SavedBody(*XMLLoadText(std::string_view(xml))));
        xml.replace(xml.size() - 4, 4, "</c>");
        CPieces failing(xml);
        EXPECT_EQ(ProblemsOf([&] { XMLLoadReader(std::ref(failing)); }), ProblemsOf([&] {
                      XMLLoadText(std::string_view(xml), SXMLLoadOptions().Name("Stream"));
                  }));
    }
}

TEST(LoadSources, PipesAreReadAsTheyAreFilled) {
    std::string xml = "<a>";
    for (int i = 0; i < 2000; ++i)
        xml += "<b k='" + std::to_string(i) + "'>text</b>\n";
    xml += "</a>";
    const std::string tree = TreeText(XMLLoadText(xml));
    const std::string events = EventsOfMemory(xml);
    for (const std::size_t piece : {1U, 77U, 4096U, 100000U}) {
        const CFilledPipe first(xml, piece);
        EXPECT_EQ(TreeText(XMLLoadDescriptor(first.Get())), tree);
        const CFilledPipe second(xml, piece);
        CRecordingHandler handler;
        XMLLoadDescriptor(second.Get(), handler);
        EXPECT_EQ(handler.Take(), events);
    }
    const CFilledPipe failing("<a>\n<b></a>", 1);
    EXPECT_PROBLEMS(XMLLoadDescriptor(failing.Get(), SXMLLoadOptions().Name("p")), 2,
                    "fatal p:2:6: expected end of tag 'b' @ /a/b[1]\n");
}

// Callbacks come while the other end still writes.
TEST(LoadSources, CallbacksAreToldAsTheDocumentComesIn) {
    int ends[2];
    ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, ends), 0);
    const CDescriptor in(ends[0]);
    const std::string front = "<a><first/>" + std::string(60000, ' ');
    bool isSent = false;
    std::thread writer([&front, to = ends[1]] {
        for (std::size_t at = 0; at < front.size();)
            at += static_cast<std::size_t>(write(to, front.data() + at, front.size() - at));
    });
    CRecordingHandler handler([&](const std::string& line) {
        if (line == "StartElement first" && !isSent) {
            isSent = true;
            EXPECT_EQ(write(ends[1], "</a>", 4), 4);
            close(ends[1]);
        }
    });
    // The front is more than the parser asks for before it tells anything.
    XMLLoadDescriptor(in.Get(), handler);
    writer.join();
    EXPECT_TRUE(isSent);
}

TEST(LoadSources, ADescriptorIsReadFromWhereItIs) {
    const TemporaryFile file(".xml", "not this<a>\n<b/></a>");
    const CDescriptor in(open(file.Name(), O_RDONLY));
    ASSERT_EQ(lseek(in.Get(), 8, SEEK_SET), 8);
    EXPECT_EQ(TreeText(XMLLoadDescriptor(in.Get())), "a(b())");
    EXPECT_EQ(lseek(in.Get(), 0, SEEK_CUR), 20) << "not read to the end";
    // There is nothing more.
    EXPECT_PROBLEMS(XMLLoadDescriptor(in.Get()), 2,
                    "fatal Stream:1:1: invalid document structure\n");
}

TEST(LoadSources, DescriptorsThatCannotBeRead) {
    CRecordingHandler handler;
    const CDescriptor folder(open("/", O_RDONLY | O_DIRECTORY));
    const CDescriptor written(open("/dev/null", O_WRONLY));
    const int closed = dup(0);
    close(closed);
    const struct {
        int descriptor;
        int error;
    } rows[] = {{folder.Get(), EISDIR}, {written.Get(), EBADF}, {closed, EBADF}, {INT_MAX, EBADF}};
    for (const auto& row : rows) {
        EXPECT_PROBLEMS(XMLLoadDescriptor(row.descriptor), 1, Failing(row.error));
        EXPECT_PROBLEMS(XMLLoadDescriptor(row.descriptor, handler), 1, Failing(row.error));
        EXPECT_XML_ERROR(XMLLoadDescriptor(row.descriptor, SXMLLoadOptions().Name("n")), 1,
                         FailingText(row.error, "n"));
    }
    EXPECT_INVALID_PARAMETER(XMLLoadDescriptor(-1));
    EXPECT_INVALID_PARAMETER(XMLLoadDescriptor(INT_MIN));
    EXPECT_INVALID_PARAMETER(XMLLoadDescriptor(-1, handler));
}

// A function that fails after so many bytes.
TEST(LoadSources, AFunctionThatFailsIsAnError) {
    const std::string xml = "<a>" + std::string(200000, 'x') + "</a>";
    for (const std::size_t good : {0U, 1U, 5U, 49151U, 49152U, 49153U, 65536U, 150000U, 200006U}) {
        for (const std::size_t piece : {std::size_t{999}, SIZE_MAX}) {
            SCOPED_TRACE(std::to_string(good) + " in " + std::to_string(piece));
            const auto failing = [&] {
                return [source = CPieces(xml.substr(0, good), piece)](char* to,
                                                                      std::size_t room) mutable {
                    const std::ptrdiff_t count = source(to, room);
                    return count == 0 ? -ETIMEDOUT : count;
                };
            };
            CRecordingHandler handler;
            EXPECT_PROBLEMS(XMLLoadReader(failing()), 1, Failing(ETIMEDOUT));
            EXPECT_PROBLEMS(XMLLoadReader(failing(), handler), 1, Failing(ETIMEDOUT));
            EXPECT_XML_ERROR(XMLLoadReader(failing(), SXMLLoadOptions().Name("s")), 1,
                             FailingText(ETIMEDOUT, "s"));
            EXPECT_XML_ERROR(XMLLoadReader(failing(), SXMLLoadOptions().Untrusted()), 1,
                             FailingText(ETIMEDOUT));
            EXPECT_XML_ERROR(XMLLoadReader(failing(), handler, SXMLLoadOptions().Validate()), 1,
                             FailingText(ETIMEDOUT));
        }
    }
}

TEST(LoadSources, WhatAFunctionThrowsArrivesUnchanged) {
    const std::string xml = "<a>" + std::string(200000, 'x') + "</a>";
    for (const std::size_t good : {0U, 1U, 49152U, 65536U, 150000U}) {
        SCOPED_TRACE(good);
        const auto throwing = [&](auto what) {
            return [=, source = CPieces(xml.substr(0, good))](char* to, std::size_t room) mutable {
                const std::ptrdiff_t count = source(to, room);
                if (count == 0) throw what;
                return count;
            };
        };
        CRecordingHandler handler;
        EXPECT_THROW(XMLLoadReader(throwing(42)), int);
        EXPECT_THROW(XMLLoadReader(throwing(42), handler), int);
        EXPECT_THROW(XMLLoadReader(throwing(std::runtime_error("own"))), std::runtime_error);
        EXPECT_THROW(XMLLoadReader(throwing(std::bad_alloc()), handler), std::bad_alloc);
        EXPECT_THROW(XMLLoadReader(throwing(42), SXMLLoadOptions().Validate().CollectProblems()),
                     int);
        EXPECT_XML_ERROR(XMLLoadReader(throwing(CXMLError(77, "own"))), 77, "own");
        EXPECT_XML_ERROR(XMLLoadReader(throwing(CXMLError(77, "own")), handler), 77, "own");
    }
}

// One that claims to have read more than there is room for is believed as far as there is.
TEST(LoadSources, AFunctionThatReadsTooMuchIsCutOff) {
    const auto claiming = [done = false](char* to, std::size_t room) mutable {
        if (done) return std::ptrdiff_t{0};
        done = true;
        std::memset(to, ' ', room);
        std::memcpy(to, "<a/>", 4);
        return static_cast<std::ptrdiff_t>(room) + 1000000;
    };
    CRecordingHandler handler;
    EXPECT_EQ(TreeText(XMLLoadReader(claiming)), "a()");
    XMLLoadReader(claiming, handler);
    EXPECT_EQ(handler.Take(), Whole("StartElement a\nEndElement a\n"));
}

TEST(LoadSources, AreEmptyOrNothing) {
    CRecordingHandler handler;
    const std::string lines = "fatal Stream:1:1: invalid document structure\n";
    const auto nothing = [](char*, std::size_t) { return std::ptrdiff_t{0}; };
    EXPECT_PROBLEMS(XMLLoadReader(nothing), 2, lines);
    EXPECT_PROBLEMS(XMLLoadReader(nothing, handler), 2, lines);
    std::istringstream empty;
    EXPECT_PROBLEMS(XMLLoadStream(empty), 2, lines);
    const CDescriptor null(open("/dev/null", O_RDONLY));
    EXPECT_PROBLEMS(XMLLoadDescriptor(null.Get()), 2, lines);
    EXPECT_INVALID_PARAMETER(XMLLoadReader(nullptr));
    EXPECT_INVALID_PARAMETER(XMLLoadReader(nullptr, handler));
}

namespace {

// Gives a text, and then fails in its way.
class CFailingBuffer : public std::streambuf {
public:
    CFailingBuffer(std::string text, bool throws) : m_Text(std::move(text)), m_bThrows(throws) {
        setg(&m_Text[0], &m_Text[0], &m_Text[0] + m_Text.size());
    }

protected:
    int_type underflow() override {
        if (m_bThrows) throw std::runtime_error("of the buffer");
        return traits_type::eof();
    }

private:
    std::string m_Text;
    bool m_bThrows;
};

}  // namespace

TEST(LoadSources, StreamsThatFail) {
    CRecordingHandler handler;
    // What a buffer throws the stream keeps to itself, if it has no exceptions.
    for (const std::size_t good : {0U, 3U, 60000U, 100000U}) {
        SCOPED_TRACE(good);
        const std::string text = std::string("<a>") + std::string(good, 'x');
        CFailingBuffer first(text, true);
        std::istream silent(&first);
        EXPECT_PROBLEMS(XMLLoadStream(silent), 1, Failing(EIO));
        CFailingBuffer second(text, true);
        std::istream again(&second);
        EXPECT_PROBLEMS(XMLLoadStream(again, handler), 1, Failing(EIO));
        CFailingBuffer third(text, true);
        std::istream loud(&third);
        loud.exceptions(std::ios::badbit);
        EXPECT_THROW(XMLLoadStream(loud), std::runtime_error);
    }
    std::ifstream missing("/no/such.xml");
    EXPECT_PROBLEMS(XMLLoadStream(missing), 1, Failing(EIO));
    EXPECT_XML_ERROR(XMLLoadStream(missing, handler, SXMLLoadOptions().Name("m.xml")), 1,
                     FailingText(EIO, "m.xml"));
    std::istream none(nullptr);
    EXPECT_PROBLEMS(XMLLoadStream(none), 1, Failing(EIO));
    std::istringstream bad("<a/>");
    bad.setstate(std::ios::badbit);
    EXPECT_PROBLEMS(XMLLoadStream(bad), 1, Failing(EIO));
    std::istringstream failed("<a/>");
    failed.setstate(std::ios::failbit);
    EXPECT_PROBLEMS(XMLLoadStream(failed), 1, Failing(EIO));
}

TEST(LoadSources, AStreamWithExceptionsThrowsThem) {
    CRecordingHandler handler;
    std::istringstream bad("<a/>");
    bad.exceptions(std::ios::badbit);
    EXPECT_EQ(TreeText(XMLLoadStream(bad)), "a()");
    for (const std::ios::iostate state : {std::ios::failbit, std::ios::eofbit}) {
        std::istringstream first("<a/>");
        first.exceptions(state);
        EXPECT_THROW(XMLLoadStream(first), std::ios_base::failure);
        std::istringstream second("<a/>");
        second.exceptions(state);
        EXPECT_THROW(XMLLoadStream(second, handler), std::ios_base::failure);
    }
}

TEST(LoadSources, AStreamIsReadFromWhereItIs) {
    std::istringstream in("skip this <a><b/></a>");
    std::string word;
    in >> word >> word;
    in.ignore();
    EXPECT_EQ(TreeText(XMLLoadStream(in)), "a(b())");
    EXPECT_TRUE(in.eof());
    // One that is at its end has no more: an empty document, or none.
    const SFailure failure = FailureOf([&] { XMLLoadStream(in); });
    EXPECT_TRUE(failure.isError);
    std::istringstream noSkip("  <a/>");
    noSkip >> std::noskipws;
    EXPECT_EQ(TreeText(XMLLoadStream(noSkip)), "a()");
}

TEST(LoadSources, PathsMayBeMadeOfAnyCharacters) {
    const std::filesystem::path folder = ::testing::TempDir() + "norvask paths";
    std::filesystem::create_directory(folder);
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(folder);
    for (const char* const name :
         {"a.xml", "a b.xml", "a:b.xml", "http:", "file:x", "C:x", "100%.xml", "%41.xml",
          "a%20b.xml", "#", "?", "\xC3\xA4.xml", "\xF0\x9F\x98\x80", "\xFF.xml", "a\xC3.xml",
          "\xED\xA0\x80", "a\nb", "\x01", "-"}) {
        SCOPED_TRACE(Quoted(name));
        const std::filesystem::path path(name);
        for (const std::filesystem::path& at : {path, folder / path}) {
            CRecordingHandler handler;
            { std::ofstream(at, std::ios::binary) << "<a>\n<b/></a>"; }
            EXPECT_EQ(TreeText(XMLLoadFile(at)), "a(b())");
            XMLLoadFile(at, handler, SXMLLoadOptions().Untrusted());
            EXPECT_EQ(handler.Take(), EventsOfMemory("<a>\n<b/></a>"));
            { std::ofstream(at, std::ios::binary) << "<a>\n<b></a>"; }
            const SFailure failure = FailureOf([&] { XMLLoadFile(at); });
            ASSERT_EQ(failure.problems.size(), 1U) << failure.Told();
            EXPECT_EQ(failure.problems[0].line, 2U);
            EXPECT_EQ(failure.problems[0].path, "/a/b[1]");
            EXPECT_EQ(failure.id, 2);
            unlink(at.c_str());
            // None of them is taken for a URL, and of each the reason is told.
            const SFailure missing = FailureOf([&] { XMLLoadFile(at); });
            ASSERT_EQ(missing.problems.size(), 1U) << missing.Told();
            EXPECT_EQ(missing.problems[0].text, std::strerror(ENOENT));
            EXPECT_EQ(missing.problems[0].line, 0U);
            EXPECT_EQ(FailureOf([&] { XMLLoadFile(at, handler); }).Told(), missing.Told());
        }
    }
    EXPECT_PROBLEMS(XMLLoadFile(folder), 2,
                    "fatal " + folder.string() + ":0:0: " + std::strerror(EISDIR) + "\n");
    std::filesystem::current_path(before);
    std::filesystem::remove_all(folder);
    EXPECT_TRUE(FailureOf([] { XMLLoadFile(std::filesystem::path()); }).isError);
}

TEST(LoadSources, NamesAreThoseOfErrorsAndOfWhatIsRelative) {
    const TemporaryFile dtd(".dtd", "<!ELEMENT a EMPTY><!ENTITY e 'entity'>");
    const std::string folder =
        std::string(dtd.Name()).substr(0, std::strlen(dtd.Name()) - dtd.BaseName().size());
    const std::string xml = "<!DOCTYPE a SYSTEM '" + dtd.BaseName() + "'><a>&e;</a>";
    const SXMLLoadOptions options = SXMLLoadOptions().Name(folder + "any name.xml");
    EXPECT_EQ(TreeText(XMLLoadText(xml, options)), "a(\"entity\")");
    CPieces pieces(xml);
    EXPECT_EQ(TreeText(XMLLoadReader(std::ref(pieces), options)), "a(\"entity\")");
    EXPECT_PROBLEMS(XMLLoadText("<a>", SXMLLoadOptions().Name("n\xC3\xA4me \xF0\x9F\x98\x80")), 2,
                    "fatal n\xC3\xA4me \xF0\x9F\x98\x80:1:4: input ended before all started tags "
                    "were ended; last tag started is 'a' @ /a\n");
}

TEST(LoadSources, ASourceHasOneOrigin) {
    const SXMLLoadSettings settings;
    CRecordingHandler handler;
    const auto read = [](void*, char*, std::size_t) { return std::ptrdiff_t{0}; };
    for (unsigned int chosen = 0; chosen < 32; ++chosen) {
        SXMLSource source;
        if (chosen & 1) source.fileName = "/dev/null";
        if (chosen & 2) source.path = "/dev/null";
        if (chosen & 4) source.bytes = "<a/>";
        if (chosen & 4) source.length = 4;
        if (chosen & 8) source.descriptor = 0;
        if (chosen & 16) source.read = read;
        if (chosen != 0 && (chosen & (chosen - 1)) == 0) continue;  // one
        SCOPED_TRACE(chosen);
        EXPECT_INVALID_PARAMETER(XMLLoad(source, settings));
        EXPECT_INVALID_PARAMETER(XMLLoad(source, settings, handler));
        EXPECT_TRUE(FailureOf([&] { XMLLoad(source, settings); }).isError);
    }
    SXMLSource empty;
    empty.bytes = "";
    EXPECT_INVALID_PARAMETER(XMLLoad(empty, settings));
    EXPECT_EQ(handler.Take(), "");
}

// What a program that is older than the library does not know is not read.
TEST(LoadSources, OlderProgramsHaveShorterStructures) {
    SXMLLoadSettings settings;
    settings.progress = [](void*, std::uint64_t, std::uint64_t) { return false; };
    SXMLSource source;
    source.bytes = "<a><b></a>";
    source.length = 10;
    source.name = "name";
    EXPECT_EQ(FailureOf([&] { XMLLoad(source, settings); }).id, 9) << "the field is read";
    settings.size = offsetof(SXMLLoadSettings, progress);
    EXPECT_PROBLEMS(XMLLoad(source, settings), 2,
                    "fatal name:1:9: expected end of tag 'b' @ /a/b[1]\n");
    source.size = offsetof(SXMLSource, name);
    EXPECT_PROBLEMS(XMLLoad(source, settings), 2,
                    "fatal Memfile:1:9: expected end of tag 'b' @ /a/b[1]\n");
    // From a newer one the rest is not known.
    struct SNewer {
        SXMLSource source;
        int more[16];
    } newer = {};
    newer.source.bytes = "<a/>";
    newer.source.length = 4;
    newer.source.size = sizeof newer;
    XMLLoad(newer.source, SXMLLoadSettings())->Delete();
}
