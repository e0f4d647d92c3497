// The same document told in several ways, over generated documents: as callbacks and as a tree,
// from a file and from memory, with the library's own converter and with an installed one that does
// the same.
#include <map>

#include "support/converters.h"
#include "support/random_document.h"
#include "support/recording_handler.h"
#include "support/sanitizers.h"
#include "support/testing.h"

using namespace norvask_test;

namespace {

// Builds from callbacks the tree that a load would.
class CTreeHandler : public CXMLSaxHandler {
public:
    explicit CTreeHandler(bool keepPrefixes) : m_bKeepPrefixes(keepPrefixes) {}

    Document m_Document;

    void StartDocument() override { m_Document = NewDocument(); }
    void StartDTD(const char* name, const char*, const char* systemId) override {
        m_Document->SetDTDRef(name, systemId);
    }
    void StartNamespace(const char* prefix, const char* uri) override {
        m_Declarations[std::string("xmlns:") + prefix] = uri;
    }
    void StartElement(const char*, const char* localName, const char* qName,
                      CXMLSaxAttribut** attributes) override {
        const char* name = m_bKeepPrefixes ? qName : localName;
        m_pCurrent =
            m_pCurrent ? m_pCurrent->CreateChild(name, nullptr) : m_Document->CreateRoot(name);
        if (m_bKeepPrefixes) {
            for (const auto& declaration : m_Declarations)
                m_pCurrent->SetAttribute(declaration.first.c_str(), declaration.second.c_str());
        }
        m_Declarations.clear();
        for (; *attributes; ++attributes) {
            CXMLSaxAttribut& a = **attributes;
            m_pCurrent->SetAttribute(m_bKeepPrefixes ? a.GetQName() : a.GetLocalName(),
                                     a.GetValue());
        }
    }
    void EndElement(const char*, const char* localName, const char* qName) override {
        EXPECT_STREQ(m_pCurrent->GetTagName(), m_bKeepPrefixes ? qName : localName);
        m_pCurrent = m_pCurrent->GetParentNode();
    }
    void Characters(const char* text) override {
        unsigned char* data = nullptr;
        std::size_t length = 0;
        if (m_bInCDATA && GetData(text, data, length)) {
            m_pCurrent->CreateBinChild()->SetData(data, length);
        } else {
            m_pCurrent->CreateTextChild(text);
        }
    }
    void StartCDATA() override { m_bInCDATA = true; }
    void EndCDATA() override { m_bInCDATA = false; }

private:
    const bool m_bKeepPrefixes;
    CXMLNode* m_pCurrent = nullptr;
    bool m_bInCDATA = false;
    std::map<std::string, std::string> m_Declarations;
};

// Instrumented, allocations are slow; what the counts below must exceed is exceeded all the same.
int Times(int plain, int sanitized) { return IS_SANITIZED ? sanitized : plain; }

// Says everything about one document in every way.
void ExpectTheSame(const std::string& xml) {
    TemporaryFile file(".xml", xml);
    const std::string events = EventsOfMemory(xml);
    EXPECT_TRUE(EventsOfFile(file.Name()) == events) << "file and memory";
    {
        const CPlainConverter converter;
        EXPECT_TRUE(EventsOfMemory(xml) == events) << "installed converter";
    }
    for (const bool keepPrefixes : {false, true}) {
        const SLoad how = keepPrefixes ? KeepPrefixes() : SLoad();
        EXPECT_TRUE(EventsOfMemory(xml, how) == events) << "keepPrefixes";
        CTreeHandler handler(keepPrefixes);
        LoadMemory(xml, handler, how);
        const Document loaded = LoadMemory(xml, how);
        EXPECT_TRUE(Saved(handler.m_Document) == Saved(loaded)) << "tree";
        CTreeHandler again(keepPrefixes);
        const CPlainConverter converter;
        LoadFile(file.Name(), again, how);
        EXPECT_TRUE(Saved(again.m_Document) == Saved(loaded)) << "tree from a file";
    }
}

}  // namespace

TEST(CallbackEquivalence, HoldsForGeneratedDocuments) {
    std::size_t bytes = 0;
    const int documents = Times(400, 30);
    for (int seed = 1; seed <= documents; ++seed) {
        const std::string xml = CRandomDocument(static_cast<unsigned>(seed)).Xml();
        bytes += xml.size();
        SCOPED_TRACE("seed " + std::to_string(seed));
        ExpectTheSame(xml);
        if (::testing::Test::HasFailure()) {
            FAIL() << xml;
        }
    }
    EXPECT_GT(bytes, 2500u * static_cast<unsigned>(documents))
        << "the documents are too small to say much";
}

// More names than anybody would keep, so that the plain path and the fast one both come up.
TEST(CallbackEquivalence, HoldsForTensOfThousandsOfNames) {
    const int names = Times(25000, 2500);
    std::string xml = "<r>";
    for (int round = 0; round < 2; ++round) {
        for (int i = 0; i < names; ++i) {
            const std::string n = std::to_string(i);
            xml += "<e" + n + " a" + n + "='" + n + "' k='v'><e" + n + "/></e" + n + ">";
        }
    }
    ExpectTheSame(xml + "</r>");
}

TEST(CallbackEquivalence, HoldsForThousandsOfNamespaces) {
    const int elements = Times(12000, 3000);
    std::string xml = "<r>";
    for (int i = 0; i < elements; ++i) {
        const std::string n = std::to_string(i / 2);
        xml += "<p:e xmlns:p='urn:" + n + "' p:k='" + n + "'><f xmlns='urn:" + n + "'/></p:e>";
    }
    ExpectTheSame(xml + "</r>");
}

TEST(CallbackEquivalence, HoldsForVeryLongNames) {
    std::string xml = "<r>";
    for (std::size_t i = 1; i < 40; ++i) {
        const std::string name(i * 1000, 'n');
        xml += "<" + name + " " + name + "='v' xmlns:" + name + "='" + name + "'><" + name +
               ":e/></" + name + ">";
    }
    ExpectTheSame(xml + "</r>");
}

// Names whose first characters, lengths or hashes agree in part.
TEST(CallbackEquivalence, HoldsForNamesThatResembleEachOther) {
    std::string xml = "<r xmlns:p='ab' xmlns:q='a' xmlns:s='abc' xmlns:ab='u'>";
    for (const std::string name : {"a", "ab", "abc", "p:a", "q:a", "s:a", "p:ab", "ab:a", "q:ab"}) {
        for (const std::string next : {"a", "ab", "p:a", "q:a", "ab:a"})
            xml += "<" + name + " " + next + "='" + name + "'><" + next + "/></" + name + ">";
    }
    ExpectTheSame(xml + "</r>");
}

// No deeper: the parser looks for a namespace through all open elements.
TEST(CallbackEquivalence, HoldsForDeepDocuments) {
    const int deep = Times(4000, 1000);
    std::string xml;
    for (int i = 0; i < deep; ++i)
        xml += "<e" + std::to_string(i % 11) + " k='" + std::to_string(i) + "'>x";
    for (int i = deep - 1; i >= 0; --i)
        xml += "</e" + std::to_string(i % 11) + ">";
    ExpectTheSame(xml);
}
