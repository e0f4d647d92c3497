// Callback loads in which an allocation of the library fails, for every one of them: the load ends with
// std::bad_alloc behind callbacks that are all right, nothing is left, and the handler serves the next load.
//
// An attribute object for which there is no memory is a NULL in the array of its element, which then seems to
// end there: that one element may show fewer attributes.
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <initializer_list>
#include <new>

#include "allocation/failing_new.h"
#include "support/testing.h"

using namespace norvask;
using namespace norvask_test;

namespace {

std::string Rich(int items = 60) {
    std::string xml =
        "<!DOCTYPE r [<!ENTITY e 'an entity &#38;amp; more'><!ATTLIST r d CDATA 'default'>]>\n"
        "<r xmlns='urn:default' xmlns:p='urn:p' k='v' p:k='a value that is no short string'>"
        "text<p:a l='1'/>\n\t<b>&e;<![CDATA[AAECAwQF]]><![CDATA[]]></b>"
        "<c \xC3\xA9='\xF0\x9F\x98\x80'>  </c>";
    for (int i = 0; i < items; ++i) {
        xml += "<item id='" + std::to_string(i) + "'><name>number " + std::to_string(i) +
               "</name><n" + std::to_string(i) + "/></item>";
    }
    xml += "<d>" + std::string(5000, 'x') + "</d><d e='" + std::string(700, 'y') + "'/>";
    return xml + "<m a='1' b='2' c='3' d='4' e='5' f='6'/><m a='7' b='8' c='9'/></r>";
}

// Writes each callback as a line into a block of its own, without an allocation: strings that grow do so in
// the C++ runtime, which counts as the library. A line is the name of the callback and its strings, each ended
// by a "|".
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

// One load with a handler, which keeps what it shares with the load until it ends or serves another.
template <typename Load>
SOutcome Try(Load load, long n, Failing failing) {
    SOutcome outcome;
    enum { Nothing, BadAlloc, XmlError, Other } caught = Nothing;
    int id = 0;
    char text[600] = "";
    const long before = LiveBlocks();
    {
        CBufferHandler handler;
        {
            CFailAllocation fail(n, Callers::Library, failing);
            try {
                load(handler);
            } catch (CXMLException& e) {
                caught = XmlError;
                id = e.GetID();
                std::snprintf(text, sizeof text, "%s", e.GetMessage());
            } catch (...) {
                caught = CaughtBadAlloc() ? BadAlloc : Other;
                std::snprintf(text, sizeof text, "%s", CaughtType());
            }
            outcome.failed = fail.Failed();
        }
        outcome.transcript = handler.Transcript();
        EXPECT_EQ(handler.GetSourceOffset(), 0u);
        if (n != 0 && n % 8 == 0) {
            handler.Clear();
            try {
                load(handler);
            } catch (CXMLException&) {
            }
            CBufferHandler fresh;
            try {
                load(fresh);
            } catch (CXMLException&) {
            }
            EXPECT_EQ(handler.Transcript(), fresh.Transcript());
        }
    }
    outcome.told = caught == Nothing    ? "done"
                   : caught == BadAlloc ? "bad_alloc"
                   : caught == XmlError ? std::to_string(id) + " " + text
                                        : text;
    outcome.left = LiveBlocks() - before;
    // Strings beyond what fits into the object itself.
    if (outcome.transcript.capacity() > 15) --outcome.left;
    if (outcome.told.capacity() > 15) --outcome.left;
    return outcome;
}

// Whether each line is that of the whole transcript, but for one StartElement with fewer attributes.
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

void LoadMemory(std::string& bytes, CXMLSaxHandler& handler, bool validate = false) {
    Manager().LoadDocument(reinterpret_cast<unsigned char*>(&bytes[0]),
                           static_cast<unsigned int>(bytes.size()), &handler, validate, false,
                           nullptr, false, false);
}

// Answers the library's own strings through a block of its own, so every conversion allocates.
class CPlainConverter : public CWideCharToString {
public:
    CPlainConverter() { Manager().SetWideCharToStringConverter(this); }
    CPlainConverter(const CPlainConverter&) = delete;
    CPlainConverter& operator=(const CPlainConverter&) = delete;
    ~CPlainConverter() { Manager().SetWideCharToStringConverter(nullptr); }
    char* Convert(const char16_t* source, std::size_t length) override {
        return CWideCharToString::Convert(source, length);
    }
};

class CProbe : public CXMLSaxAttribut {
public:
    CProbe(const char* uri, const char* localName, const char* qName, const char* value)
        : CXMLSaxAttribut(uri, localName, qName, value) {}
    CProbe(const CProbe& other) = default;
    CProbe& operator=(const CProbe& other) = default;
    ~CProbe() override = default;
};

}  // namespace

TEST(AllocationFailureCallback, FromMemory) {
    std::string xml = Rich();
    ExpectEveryFailureTold([&](CBufferHandler& handler) { LoadMemory(xml, handler); }, "done");
}

TEST(AllocationFailureCallback, OfASmallDocument) {
    std::string xml = "<r><a k='v'>text</a></r>";
    ExpectEveryFailureTold([&](CBufferHandler& handler) { LoadMemory(xml, handler); }, "done");
}

TEST(AllocationFailureCallback, FromAFile) {
    TemporaryFile file(".xml", Rich());
    ExpectEveryFailureTold(
        [&](CBufferHandler& handler) {
            Manager().LoadDocument(file.Name(), &handler, false, false, nullptr, false, false);
        },
        "done");
}

TEST(AllocationFailureCallback, WithSourceOffsets) {
    std::string xml = Rich();
    Manager().SetCalculateSourceOffsets(true);
    ExpectEveryFailureTold([&](CBufferHandler& handler) { LoadMemory(xml, handler); }, "done");
    Manager().SetCalculateSourceOffsets(false);
}

TEST(AllocationFailureCallback, WithAnInstalledConverter) {
    std::string xml = Rich(5);  // every string of it allocates
    const CPlainConverter converter;
    ExpectEveryFailureTold([&](CBufferHandler& handler) { LoadMemory(xml, handler); }, "done");
}

TEST(AllocationFailureCallback, ThatEndsInAnErrorAnyway) {
    std::string malformed = "<r k='v'>text<a></r>";
    ExpectEveryFailureTold([&](CBufferHandler& handler) { LoadMemory(malformed, handler); },
                           "2 " + LoadError("Memfile", 1, "expected end of tag 'a'"));
    std::string invalid = "<!DOCTYPE r [<!ELEMENT r EMPTY>]><r><a/></r>";
    ExpectEveryFailureTold([&](CBufferHandler& handler) { LoadMemory(invalid, handler, true); },
                           "2 " + LoadError("Memfile", 1, "no declaration found for element 'a'"));
}

TEST(AllocationFailureCallback, OfAnAttributeChangesNothing) {
    const CProbe source("urn:source", "s", "p:s", "a value that is no short string");
    CProbe target("urn:target", "t", "p:t", "another value that is no short string");
    const long before = LiveBlocks();
    long refusals = 0;
    for (long n = 1;; ++n) {
        CFailAllocation fail(n, Callers::Everything, Failing::One);
        bool thrown = false;
        try {
            CProbe copy(source);
            const CProbe made("u", "l", "q", "v");
            target = copy;
        } catch (const std::bad_alloc&) {
            thrown = true;
        }
        fail.Disarm();
        EXPECT_EQ(thrown, fail.Failed());
        EXPECT_EQ(LiveBlocks(), before);
        if (!thrown) break;
        ++refusals;
        EXPECT_STREQ(target.GetUri(), "urn:target");
        EXPECT_STREQ(target.GetLocalName(), "t");
        EXPECT_STREQ(target.GetQName(), "p:t");
        EXPECT_STREQ(target.GetValue(), "another value that is no short string");
    }
    EXPECT_GE(refusals, 3);
    EXPECT_STREQ(target.GetValue(), "a value that is no short string");
}
