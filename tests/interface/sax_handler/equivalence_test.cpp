// The same document told in several ways, over generated documents: as callbacks and as a tree, from a file and
// from memory, with the library's own converter and with an installed one that does the same.
#include <map>

#include "support/converters.h"
#include "support/names.h"
#include "support/random_text.h"
#include "support/recording_handler.h"
#include "support/sanitizers.h"
#include "support/testing.h"

using namespace norvask;
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
int Times(int plain, int sanitized) { return kIsSanitized ? sanitized : plain; }

// A generated document: well-formed, with everything that a load distinguishes.
class CGenerator {
public:
    explicit CGenerator(unsigned seed) : m_Random(seed) {
        for (const std::string& name : ValidNames()) {
            // Those that are names in UTF-8 too, without a prefix.
            if (name.find(':') == std::string::npos && name.find('\xFF') == std::string::npos &&
                name.substr(0, 3) != "xml" && name != "a\xC3" && name != "a\xED\xA0\x80")
                m_Names.push_back(name);
        }
    }

    std::string Xml() {
        m_Xml = One({"", "<?xml version='1.0'?>\n", "\n", "<!-- c --> "});
        m_Xml += One({"", "<!DOCTYPE r>", "<!DOCTYPE r [ ]>\n"});
        m_Xml += "<r xmlns:p='urn:p' xmlns:q='urn:q'>";
        Content(0);
        m_Xml += "</r>";
        m_Xml += One({"", "\n", " <?p i?>\n"});
        return m_Xml;
    }

private:
    std::string One(const std::vector<std::string>& choices) {
        return choices[m_Random.Number(choices.size())];
    }
    std::string Name() { return m_Names[m_Random.Number(m_Names.size())]; }

    std::string Text() {
        std::string text;
        for (std::size_t n = m_Random.Number(6); n > 0; --n)
            text += One({"text", " ", "\n", "\t", "\r\n", "&amp;", "&lt;", "&#10;", "&#32;",
                         "\xC3\xA9", "&#x20AC;", "\xF0\x9F\x98\x80", "]] ", ">", "<!-- c -->",
                         "<?p i?>", "\xC2\xA0", std::string(m_Random.Number(700), 'x')});
        return text;
    }
    std::string Value() {
        std::string value;
        for (std::size_t n = m_Random.Number(4); n > 0; --n)
            value += One({"v", " ", "\n", "&amp;", "&#9;", "\xC3\xA9", "\"", "&apos;",
                          "\xF0\x9F\x98\x80", std::string(m_Random.Number(300), 'y')});
        return value;
    }
    std::string Section() {
        return "<![CDATA[" +
               One({"", " ", "\n", "QQ==", "AAECAw==", "\nQUJD\n", "text", "a<b&amp;", "]] ",
                    "\xC3\xA9", "QQ=", "AAAA \xE2\x82\xAC",
                    std::string(4 * m_Random.Number(200), 'B')}) +
               "]]>";
    }

    void Element(int depth) {
        const std::string name = One({"", "", "p:", "q:"}) + Name();
        m_Xml += "<" + name;
        m_Xml += One({"", "", "", " xmlns='urn:d'", " xmlns=''", " xmlns:p='urn:other'",
                      " xmlns:s='1' xmlns:t='2'"});
        std::map<std::string, bool> used;
        for (std::size_t n = m_Random.Number(4); n > 0; --n) {
            const std::string attribute = Name();
            if (used.emplace(attribute, true).second)
                m_Xml += " " + One({"", "p:", "q:"}) + attribute + "='" + Value() + "'";
        }
        if (m_Random.Number(4) == 0) {
            m_Xml += "/>";
            return;
        }
        m_Xml += ">";
        Content(depth);
        m_Xml += "</" + name + ">";
    }
    void Content(int depth) {
        for (std::size_t n = m_Random.Number(depth < 2 ? 12 : 6); n > 0; --n) {
            m_Xml += Text();
            if (m_Random.Number(5) == 0) m_Xml += Section();
            if (depth < 6 && m_Random.Number(2) == 0) Element(depth + 1);
        }
    }

    RandomText m_Random;
    std::vector<std::string> m_Names;
    std::string m_Xml;
};

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
        SLoad how;
        how.keepPrefixes = keepPrefixes;
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
        const std::string xml = CGenerator(static_cast<unsigned>(seed)).Xml();
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
