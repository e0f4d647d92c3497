// Callback loads in which an allocation of the library fails, for every one of them: the load ends
// with std::bad_alloc behind callbacks that are all right, nothing is left, and the handler serves
// the next load.
//
// An attribute object for which there is no memory is a NULL in the array of its element, which
// then seems to end there: that one element may show fewer attributes.
#include <algorithm>
#include <cstring>
#include <initializer_list>

#include "allocation/sample_tree.h"
#include "allocation/sweep.h"
#include "support/converters.h"
#include "support/source_offsets.h"
#include "support/testing.h"

using namespace norvask_test;

namespace {

// Writes each callback as a line into a block of its own, without an allocation: strings that grow
// do so in the C++ runtime, which counts as the library. A line is the name of the callback and its
// strings, each ended by a "|".
class CBufferHandler : public CXMLSaxHandler {
public:
    CBufferHandler() : m_Buffer(1 << 16) {}

    void Clear() { m_nLength = 0; }
    std::string Transcript() const { return std::string(m_Buffer.data(), m_nLength); }

    void StartDocument() override { Line("StartDocument", {}); }
    void EndDocument() override { Line("EndDocument", {}); }
    void StartElement(const char* uri, const char* localName, const char* qName,
                      CXMLSaxAttribut** attributes) override {
        Add("StartElement ");
        for (const char* text : {uri, localName, qName})
            Part(text);
        for (; *attributes; ++attributes) {
            for (const char* text : {(*attributes)->GetUri(), (*attributes)->GetLocalName(),
                                     (*attributes)->GetQName(), (*attributes)->GetValue()})
                Part(text);
        }
        Add("\n");
    }
    void EndElement(const char* uri, const char* localName, const char* qName) override {
        Line("EndElement ", {uri, localName, qName});
    }
    void Characters(const char* text) override { Line("Characters ", {text}); }
    void StartCDATA() override { Line("StartCDATA", {}); }
    void EndCDATA() override { Line("EndCDATA", {}); }
    void StartDTD(const char* name, const char* publicId, const char* systemId) override {
        Line("StartDTD ", {name, publicId ? publicId : "none", systemId ? systemId : "none"});
    }
    void StartNamespace(const char* prefix, const char* uri) override {
        Line("StartNamespace ", {prefix, uri});
    }
    void EndNamespace(const char* prefix) override { Line("EndNamespace ", {prefix}); }

private:
    void Line(const char* name, std::initializer_list<const char*> strings) {
        Add(name);
        for (const char* text : strings)
            Part(text);
        Add("\n");
    }
    void Part(const char* text) {
        Add(text ? text : "!NULL");
        Add("|");
    }
    void Add(const char* text) {
        const std::size_t length = std::strlen(text);
        if (length > m_Buffer.size() - m_nLength) throw "the buffer is too small";
        std::memcpy(m_Buffer.data() + m_nLength, text, length);
        m_nLength += length;
    }

    std::vector<char> m_Buffer;
    std::size_t m_nLength = 0;
};

struct SOutcome {
    bool failed = false;  // an allocation was refused
    std::string told;     // the exception, or "done"
    std::string transcript;
    long left = 0;  // blocks that are alive behind it and were not before
};

// One load with a handler, which keeps what it shares with the load until it ends or serves
// another.
template <typename Load>
SOutcome Try(Load load, long n, Failing failing) {
    SOutcome outcome;
    SAttempt attempt;
    const long before = LiveBlocks();
    {
        CBufferHandler handler;
        attempt = Attempt([&] { load(handler); }, n, failing, Callers::Library);
        outcome.transcript = handler.Transcript();
        EXPECT_EQ(handler.GetSourceOffset(), 0u);
        if (n != 0 && n % 8 == 0) {
            CBufferHandler fresh;
            handler.Clear();
            for (CBufferHandler* again : {&handler, &fresh}) {
                try {
                    load(*again);
                } catch (CXMLException&) {
                }
            }
            EXPECT_EQ(handler.Transcript(), fresh.Transcript());
        }
    }
    outcome.left = LiveBlocks() - before;
    // A string beyond what fits into the object itself.
    if (outcome.transcript.capacity() > 15) --outcome.left;
    outcome.failed = attempt.refused;
    outcome.told = attempt.thrown ? attempt.told : "done";
    return outcome;
}

// Whether each line is that of the whole transcript, but for one StartElement with fewer
// attributes.
bool IsBeginning(const std::string& told, const std::string& whole, int mostShort) {
    std::size_t at = 0;
    for (std::size_t begin = 0; begin < told.size();) {
        const std::size_t end = told.find('\n', begin);
        const std::size_t lineEnd = whole.find('\n', at);
        if (end == std::string::npos || lineEnd == std::string::npos) return false;
        const std::string line = told.substr(begin, end - begin);
        const std::string expected = whole.substr(at, lineEnd - at);
        if (line != expected) {
            if (line.compare(0, 13, "StartElement ") != 0) return false;
            if (expected.compare(0, line.size(), line) != 0 || mostShort-- == 0) return false;
        }
        begin = end + 1;
        at = lineEnd + 1;
    }
    return true;
}

// Refuses every allocation in turn. What is told without a refusal must be `told`.
template <typename Load>
void ExpectEveryFailureTold(Load load, const std::string& told) {
    Try(load, 0, Failing::One);  // what is made once for the process is made now
    const SOutcome whole = Try(load, 0, Failing::One);
    ASSERT_EQ(whole.told, told);
    ASSERT_EQ(whole.left, 0);
    for (const Failing failing : {Failing::One, Failing::AllFromThere}) {
        long refusals = 0;
        for (long n = 1;; ++n) {
            SCOPED_TRACE("allocation " + std::to_string(n));
            const SOutcome outcome = Try(load, n, failing);
            if (!outcome.failed) {
                EXPECT_GT(refusals, 3) << "hardly anything was refused";
                EXPECT_EQ(outcome.transcript, whole.transcript);
                break;
            }
            if (outcome.told != told) {
                EXPECT_EQ(outcome.told, "bad_alloc");
                ++refusals;
            } else {
                EXPECT_EQ(std::count(outcome.transcript.begin(), outcome.transcript.end(), '\n'),
                          std::count(whole.transcript.begin(), whole.transcript.end(), '\n'));
            }
            const int mostShort = failing == Failing::One ? 1 : 100000;
            EXPECT_TRUE(IsBeginning(outcome.transcript, whole.transcript, mostShort))
                << outcome.told << "\n"
                << outcome.transcript;
            EXPECT_EQ(outcome.left, 0);
            if (::testing::Test::HasFailure()) return;  // once is enough
        }
    }
}

class CProbe : public CXMLSaxAttribut {
public:
    CProbe(const char* uri, const char* localName, const char* qName, const char* value)
        : CXMLSaxAttribut(uri, localName, qName, value) {}
};

}  // namespace

TEST(AllocationFailureCallback, FromMemory) {
    const std::string xml = RichDocument();
    ExpectEveryFailureTold([&](CBufferHandler& handler) { LoadMemory(xml, handler); }, "done");
}

TEST(AllocationFailureCallback, OfASmallDocument) {
    const std::string xml = "<r><a k='v'>text</a></r>";
    ExpectEveryFailureTold([&](CBufferHandler& handler) { LoadMemory(xml, handler); }, "done");
}

TEST(AllocationFailureCallback, FromAFile) {
    const TemporaryFile file(".xml", RichDocument());
    const std::string name = file.Name();
    ExpectEveryFailureTold([&](CBufferHandler& handler) { LoadFile(name, handler); }, "done");
}

TEST(AllocationFailureCallback, WithSourceOffsets) {
    const std::string xml = RichDocument();
    const CSourceOffsets on;
    ExpectEveryFailureTold([&](CBufferHandler& handler) { LoadMemory(xml, handler); }, "done");
}

TEST(AllocationFailureCallback, WithAnInstalledConverter) {
    const std::string xml = RichDocument(5);  // every string of it allocates
    const CPlainConverter converter;
    ExpectEveryFailureTold([&](CBufferHandler& handler) { LoadMemory(xml, handler); }, "done");
}

TEST(AllocationFailureCallback, ThatEndsInAnErrorAnyway) {
    const std::string malformed = "<r k='v'>text<a></r>";
    ExpectEveryFailureTold([&](CBufferHandler& handler) { LoadMemory(malformed, handler); },
                           "2 " + LoadError("Memfile", 1, "expected end of tag 'a'"));
    const std::string invalid = "<!DOCTYPE r [<!ELEMENT r EMPTY>]><r><a/></r>";
    ExpectEveryFailureTold(
        [&](CBufferHandler& handler) { LoadMemory(invalid, handler, Validate()); },
        "2 " + LoadError("Memfile", 1, "no declaration found for element 'a'"));
}

TEST(AllocationFailureCallback, OfAnAttributeChangesNothing) {
    const CProbe source("urn:source", "s", "p:s", "a value that is no short string");
    CProbe target("urn:target", "t", "p:t", "another value that is no short string");
    EXPECT_GE(Sweep([&](long n) {
                  const auto work = [&] {
                      CProbe copy(source);
                      const CProbe made("u", "l", "q", "v");
                      target = copy;
                  };
                  const SAttempt attempt = Attempt(work, n);
                  EXPECT_STREQ(attempt.told, attempt.refused ? "bad_alloc" : "");
                  if (!attempt.thrown) return false;
                  EXPECT_STREQ(target.GetUri(), "urn:target");
                  EXPECT_STREQ(target.GetLocalName(), "t");
                  EXPECT_STREQ(target.GetQName(), "p:t");
                  EXPECT_STREQ(target.GetValue(), "another value that is no short string");
                  return true;
              }),
              3);
    EXPECT_STREQ(target.GetValue(), "a value that is no short string");
}
