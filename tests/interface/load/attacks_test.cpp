// Documents of strangers that want something read, or the reader kept busy, or its memory filled:
// each is loaded in a process of its own, and what that costs is measured. A server on this machine
// counts who connects.
#include <fstream>

#include "support/child_process.h"
#include "support/files.h"
#include "support/hostile_documents.h"
#include "support/recording_handler.h"
#include "support/silent_server.h"
#include "support/testing.h"
#include "support/untrusted_loading.h"

using namespace norvask_test;

namespace {

const std::string XSI = " xmlns:x='http://www.w3.org/2001/XMLSchema-instance' ";
// What the fast lane leaves to the parser, in front of a document.
const std::string LATIN1 = "<?xml version='1.0' encoding='ISO-8859-1'?>";

SXMLLoadOptions Strangers() { return SXMLLoadOptions().Untrusted(); }

struct SNamedOptions {
    std::string name;
    SXMLLoadOptions options;
};

// What else may be asked of a load. The schema is the caller's and allows anything as the root "a".
class CSchemaFiles {
public:
    CSchemaFiles()
        : m_Included(".xsd",
                     "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema'>"
                     "<xs:complexType name='any' mixed='true'><xs:sequence>"
                     "<xs:any minOccurs='0' maxOccurs='unbounded' processContents='lax'/>"
                     "</xs:sequence><xs:attribute name='d' default='by the caller'/>"
                     "<xs:anyAttribute processContents='lax'/></xs:complexType></xs:schema>"),
          m_Named(".xsd",
                  "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema'>"
                  "<xs:include schemaLocation='" +
                      m_Included.BaseName() +
                      "'/>"
                      "<xs:element name='a' type='any'/></xs:schema>") {}

    std::string Name() const { return m_Named.Name(); }

private:
    const TemporaryFile m_Included;
    const TemporaryFile m_Named;
};

std::vector<SNamedOptions> AllOptions(const CSchemaFiles& schema) {
    return {{"nothing else", Strangers()},
            {"KeepPrefixes", Strangers().KeepPrefixes()},
            {"Validate", Strangers().Validate()},
            {"ValidateBySchema", Strangers().ValidateBySchema()},
            {"the caller's schema", Strangers().ValidateBySchema(schema.Name())},
            {"CollectProblems", Strangers().Validate().CollectProblems(0)},
            {"all", Strangers()
                        .KeepPrefixes()
                        .ValidateBySchema(schema.Name())
                        .RequireGrammar()
                        .CollectProblems()
                        .Progress([](std::uint64_t, std::uint64_t) {})}};
}

struct SAttack {
    const char* name;
    std::string xml;
    std::uint64_t line = 1;
};

// With a document type declaration, which wants `url` or `file` read, or grows.
std::vector<SAttack> Declarations(const std::string& url, const std::string& file) {
    std::vector<SAttack> attacks;
    for (const std::string& where : {url, "'" + file + "'"}) {
        const std::string quoted = where[0] == '\'' ? where : "'" + where + "'";
        attacks.push_back({"DTD", "<!DOCTYPE a SYSTEM " + quoted + "><a/>"});
        attacks.push_back({"public DTD", "<!DOCTYPE a PUBLIC 'p' " + quoted + "><a/>"});
        attacks.push_back({"DTD and subset", "<!DOCTYPE a SYSTEM " + quoted + " []><a/>"});
        attacks.push_back({"DTD by a parameter entity",
                           "<!DOCTYPE a [<!ENTITY % p SYSTEM " + quoted + ">%p;]><a/>"});
        attacks.push_back(
            {"entity in the text", "<!DOCTYPE a [<!ENTITY e SYSTEM " + quoted + ">]><a>&e;</a>"});
        attacks.push_back(
            {"entity that nobody uses", "<!DOCTYPE a [<!ENTITY e SYSTEM " + quoted + ">]><a/>"});
        attacks.push_back({"unparsed entity",
                           "<!DOCTYPE a [<!NOTATION n SYSTEM 'n'><!ENTITY e "
                           "SYSTEM " +
                               quoted + " NDATA n>]><a/>"});
    }
    attacks.push_back({"entities of entities", Laughs(9)});
    attacks.push_back({"one long entity, many times", "<!DOCTYPE a [<!ENTITY e '" +
                                                          std::string(50000, 'x') + "'>]><a>" +
                                                          Times(20000, "&e;") + "</a>"});
    attacks.push_back({"entities in an attribute", "<!DOCTYPE a [<!ENTITY e '" +
                                                       std::string(50000, 'x') + "'>]><a b='" +
                                                       Times(20000, "&e;") + "'/>"});
    attacks.push_back({"attribute defaults", "<!DOCTYPE a [<!ATTLIST b c CDATA '" +
                                                 std::string(50000, 'x') + "'>]><a>" +
                                                 Times(10000, "<b/>") + "</a>"});
    attacks.push_back({"parameter entities of parameter entities", ParameterLaughs(9)});
    attacks.push_back({"one parameter entity, many times", "<!DOCTYPE a [<!ENTITY % p '<!--" +
                                                               std::string(50000, 'x') + "-->'>" +
                                                               Times(20000, "%p;") + "]><a/>"});
    attacks.push_back({"content model", ContentModel(24)});
    attacks.push_back({"nested content models", "<!DOCTYPE a [<!ELEMENT a " +
                                                    std::string(50000, '(') + "b" +
                                                    std::string(50000, ')') + ">]><a/>"});
    attacks.push_back({"an entity of itself", "<!DOCTYPE a [<!ENTITY e '&e;'>]><a>&e;</a>"});
    attacks.push_back(
        {"many declarations", "<!DOCTYPE a [" + Numbered(100000, "<!ENTITY e# 'x'>") + "]><a/>"});
    attacks.push_back({"an empty subset", "<!DOCTYPE a []><a/>"});
    attacks.push_back({"a subset that does not end", "<!DOCTYPE a [" + Times(1000000, " ")});
    attacks.push_back({"blanks and lines",
                       "\n<!-- -->\n<?p?>\n<!DOCTYPE\n a\t SYSTEM\n'" + file + "'\n[\n]\n>\n<a/>",
                       7});
    return attacks;
}

// Each is refused for its declaration. `coded` makes another encoding of it.
void ExpectDeclarationsRefused(const std::function<std::string(const std::string&)>& coded) {
    CSilentServer server;
    const CSchemaFiles schema;
    for (const SAttack& attack : Declarations(server.Url(), "/etc/passwd")) {
        SCOPED_TRACE(attack.name);
        const std::string xml = coded(attack.xml);
        const TemporaryFile file(".xml", xml);
        ExpectCheap(
            [&] {
                std::string report;
                for (const SNamedOptions& how : AllOptions(schema)) {
                    for (const SLoadWay& way : TriedWays()) {
                        const std::string wrong = LoadsAs(way, xml, file.Name(), how.options,
                                                          {Refused(attack.line, NO_DTD)});
                        if (!wrong.empty()) report += how.name + ", " + wrong;
                    }
                }
                return report;
            },
            6, 200, [&server] { server.HangUp(); });
    }
    EXPECT_EQ(server.Connections(), 0U);
}

std::string Unchanged(const std::string& xml) { return xml; }

// Loads the document in each way, each in a process of its own, with what may come of it.
void ExpectAttackEnds(const std::string& xml, const std::vector<SExpected>& expected,
                      const SXMLLoadOptions& options = Strangers(),
                      const std::vector<SLoadWay>& ways = TriedWays()) {
    const TemporaryFile file(".xml", xml);
    for (const SLoadWay& way : ways) {
        SCOPED_TRACE(Shown(way));
        ExpectCheap([&] { return LoadsAs(way, xml, file.Name(), options, expected); });
    }
}

// Both for whoever reads plain documents and for the parser: what it alone takes stands in front,
// or an error behind.
void ExpectAttackEndsForBoth(const std::string& xml, const std::vector<SExpected>& expected,
                             const std::vector<SLoadWay>& ways = TriedWays()) {
    ExpectAttackEnds(xml, expected, Strangers(), ways);
    SCOPED_TRACE("for the parser");
    ExpectAttackEnds(LATIN1 + xml, expected, Strangers(), ways);
}

// A function that reads a beginning, so many blanks, and an end.
class CBlanks {
public:
    CBlanks(std::string begin, std::uint64_t blanks, std::string end)
        : m_Begin(std::move(begin)), m_nBlanks(blanks), m_End(std::move(end)) {}

    std::ptrdiff_t operator()(char* to, std::size_t room) {
        std::size_t count = 0;
        if (!m_Begin.empty()) {
            count = std::min(room, m_Begin.size());
            std::memcpy(to, m_Begin.data(), count);
            m_Begin.erase(0, count);
        } else if (m_nBlanks != 0) {
            count = static_cast<std::size_t>(std::min<std::uint64_t>(room, m_nBlanks));
            std::memset(to, ' ', count);
            m_nBlanks -= count;
        } else {
            count = std::min(room, m_End.size());
            std::memcpy(to, m_End.data(), count);
            m_End.erase(0, count);
        }
        return static_cast<std::ptrdiff_t>(count);
    }

private:
    std::string m_Begin;
    std::uint64_t m_nBlanks;
    std::string m_End;
};

}  // namespace

// --- what would be fetched or expanded by a declaration

TEST(Attacks, Declarations) { ExpectDeclarationsRefused(Unchanged); }

TEST(Attacks, DeclarationsInUtf7) { ExpectDeclarationsRefused(Utf7); }

TEST(Attacks, DeclarationsInUtf16) {
    for (const bool bigEndian : {false, true}) {
        if (IS_SANITIZED && bigEndian) continue;
        SCOPED_TRACE(bigEndian);
        ExpectDeclarationsRefused(
            [&](const std::string& xml) { return Wide(xml, 2, bigEndian, true); });
    }
}

// Without a mark they are known by their first characters.
TEST(Attacks, DeclarationsInUtf32) {
    for (const bool bigEndian : {false, true}) {
        if (IS_SANITIZED && bigEndian) continue;
        SCOPED_TRACE(bigEndian);
        ExpectDeclarationsRefused([&](const std::string& xml) {
            return Wide("<?xml version='1.0' encoding='UCS-4'?>" + xml, 4, bigEndian, false);
        });
    }
}

TEST(Attacks, DeclarationsInUtf16WithoutAMark) {
    for (const bool bigEndian : {false, true}) {
        if (IS_SANITIZED && bigEndian) continue;
        SCOPED_TRACE(bigEndian);
        ExpectDeclarationsRefused([&](const std::string& xml) {
            return Wide("<?xml version='1.0' encoding='UTF-16'?>" + xml, 2, bigEndian, false);
        });
    }
}

// Nothing is declared by it.
TEST(Attacks, ADeclarationOfANameAlone) {
    for (const char* xml : {"<!DOCTYPE a><a>text</a>", "<!DOCTYPE a ><a/>", "<!DOCTYPE b>\n<a/>"}) {
        ExpectAttackEnds(xml, {Loads()});
        ExpectAttackEnds(LATIN1 + xml, {Loads()});
    }
}

// What is refused above would do harm: the server sees whom a trusting load sends.
TEST(Attacks, TrustingLoadsConnect) {
    const std::string hint = "<a" + XSI + "x:noNamespaceSchemaLocation='";
    for (const std::string kind : {"DTD", "parameter entity", "entity", "schema"}) {
        SCOPED_TRACE(kind);
        CSilentServer server;
        const std::string url = "'" + server.Url() + "'";
        const std::string xml =
            kind == "DTD"                ? "<!DOCTYPE a SYSTEM " + url + "><a/>"
            : kind == "parameter entity" ? "<!DOCTYPE a [<!ENTITY % p SYSTEM " + url + ">%p;]><a/>"
            : kind == "entity"           ? "<!DOCTYPE a [<!ENTITY e SYSTEM " + url + ">]><a>&e;</a>"
                                         : hint + server.Url() + "'/>";
        const SCost cost = InChild(
            [&] {
                const SLoaded loaded = LoadInWay(EveryWay()[0], xml, "", SXMLLoadOptions());
                return "class " + std::to_string(loaded.id);
            },
            30, [&server] { server.HangUp(); });
        EXPECT_EQ(cost.end, "");
        EXPECT_EQ(cost.report, "class 2");  // nobody answered
        EXPECT_GE(server.Connections(), 1U);
    }
}

TEST(Attacks, TrustingLoadsReadFiles) {
    const TemporaryFile secret(".txt", "the secret");
    const std::string xml =
        std::string("<!DOCTYPE a [<!ENTITY e SYSTEM '") + secret.Name() + "'>]><a>&e;</a>";
    EXPECT_EQ(std::string(XMLLoadText(xml)->GetRoot()->GetTextChildValue()), "the secret");
    EXPECT_THROW(XMLLoadText(xml, Strangers()), CXMLError);
}

// And the ceilings are ceilings.
TEST(Attacks, TrustingLoadsAreCostly) {
    const SCost slow = InChild([] { return XMLToString(*XMLLoadText(Laughs(9))).substr(0, 1); }, 1);
    EXPECT_NE(slow.end, "");
    if (IS_SANITIZED) return;
    const std::string large = "<!DOCTYPE a [<!ENTITY e '" + std::string(50000, 'x') + "'>]><a>" +
                              Times(2000, "&e;") + "</a>";
    const SCost full = InChild([&large] {
        XMLLoadText(large);
        return std::string();
    });
    EXPECT_GT(full.megabytes, 200);
}

// --- schemas that the document names

TEST(Attacks, SchemaHints) {
    CSilentServer server;
    const CSchemaFiles schema;
    const TemporaryFile hinted(
        ".xsd",
        "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema'><xs:element name='a'>"
        "<xs:complexType><xs:attribute name='added' default='x'/></xs:complexType>"
        "</xs:element></xs:schema>");
    // The automaton of this one would have some thousands of millions of states.
    const TemporaryFile nested(
        ".xsd",
        "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema'><xs:element name='a'>"
        "<xs:complexType><xs:sequence maxOccurs='2000'><xs:sequence maxOccurs='2000'>"
        "<xs:element name='b' maxOccurs='2000'/><xs:element name='c' minOccurs='0'/></xs:sequence>"
        "</xs:sequence></xs:complexType></xs:element></xs:schema>");
    const TemporaryFile malformed(".xsd", "<xs:schema");
    for (const std::string& where :
         {server.Url("a.xsd"), std::string("/etc/passwd"), std::string(hinted.Name()),
          std::string(nested.Name()), std::string(malformed.Name()),
          std::string("/no/such/file.xsd"), std::string("ftp") + server.Url().substr(4)}) {
        for (const std::string& xml :
             {"<a" + XSI + "x:noNamespaceSchemaLocation='" + where + "'><b/></a>",
              "<a" + XSI + "x:schemaLocation='urn:u " + where + "'><b xmlns='urn:u'/></a>",
              "<a><b" + XSI + "x:noNamespaceSchemaLocation='" + where + "'/></a>",
              LATIN1 + "<a" + XSI + "x:noNamespaceSchemaLocation='" + where + "'><b/></a>",
              Wide("<a" + XSI + "x:noNamespaceSchemaLocation='" + where + "'><b/></a>", 2, true,
                   true)}) {
            SCOPED_TRACE(xml);
            const TemporaryFile file(".xml", xml);
            ExpectCheap(
                [&] {
                    std::string report;
                    for (const SNamedOptions& how : AllOptions(schema)) {
                        for (const SLoadWay& way : TriedWays()) {
                            const std::string wrong =
                                LoadsAs(way, xml, file.Name(), how.options, {Loads()});
                            if (!wrong.empty()) report += how.name + ", " + wrong;
                        }
                        if (XMLToString(*XMLLoadText(xml, how.options)).find("added") !=
                            std::string::npos)
                            report += how.name + ": the schema was read";
                    }
                    return report;
                },
                6, 200, [&server] { server.HangUp(); });
        }
    }
    EXPECT_EQ(server.Connections(), 0U);
}

TEST(Attacks, AHintedSchemaIsNoGrammar) {
    const TemporaryFile schema(".xsd", Schema(false));
    const std::string xml =
        "<r" + XSI + "x:noNamespaceSchemaLocation='" + schema.Name() + "'><n>1</n></r>";
    XMLLoadText(xml, SXMLLoadOptions().ValidateBySchema().RequireGrammar());
    ExpectAttackEnds(xml,
                     {Invalid(1,
                              "no grammar to validate by: the program names none, and the document "
                              "none that is read")},
                     Strangers().ValidateBySchema().RequireGrammar());
}

// Nor do other names lead anywhere.
TEST(Attacks, NamesThatNobodyFollows) {
    CSilentServer server;
    const CSchemaFiles schema;
    const std::string url = server.Url();
    const std::string xml =
        "<?xml-stylesheet href='" + url + "' type='text/xsl'?><a xml:base='" + url +
        "' xmlns:i='http://www.w3.org/2001/XInclude' xmlns:l='http://www.w3.org/1999/xlink' "
        "xmlns:u='" +
        url + "' l:href='" + url + "'><i:include href='" + url +
        "'/><u:b/><i:include parse='text' href='/etc/passwd'/></a>";
    for (const SNamedOptions& how : AllOptions(schema)) {
        SCOPED_TRACE(how.name);
        ExpectAttackEnds(xml, {Loads()}, how.options);
    }
    EXPECT_EQ(server.Connections(), 0U);
}

// --- what is long

TEST(Attacks, LongPieces) {
    const std::size_t length = IS_SANITIZED ? 2 << 20 : 10 << 20;
    const std::string x(length, 'x');
    const std::string blanks(length, ' ');
    const std::vector<SAttack> attacks = {
        {"text", "<a>" + x + "</a>"},
        {"comment", "<a><!--" + x + "--></a>"},
        {"comment in front", "<!--" + x + "--><a/>"},
        {"comment that does not end", "<a><!--" + x},
        {"CDATA", "<a><![CDATA[" + x + "]]></a>"},
        {"CDATA that does not end", "<a><![CDATA[" + x},
        {"instruction", "<a><?p " + x + "?></a>"},
        {"name of an instruction", "<a><?" + x + " p?></a>"},
        {"name of an element", "<" + x + "/>"},
        {"name of an element with a prefix", "<" + x.substr(1 << 19) + ":a/>"},
        {"name of an attribute", "<a " + x + "='1'/>"},
        {"name of a prefix", "<a xmlns:" + x + "='u'/>"},
        {"name of a namespace", "<a xmlns='" + x + "'/>"},
        {"value", "<a b='" + x + "'/>"},
        {"name of an entity", "<a>&" + x + ";</a>"},
        {"number of a character", "<a>&#" + std::string(length, '0') + "65;</a>"},
        {"blanks in a tag", "<a" + blanks + "b='1'/>"},
        {"blanks in an end tag", "<a></a" + blanks + ">"},
        {"blanks in front", "<?p?>" + blanks + "<a/>"},
        {"blanks behind", "<a/>" + blanks},
        {"name of a DTD", "<!DOCTYPE " + x + "><a/>"},
        {"public name of a DTD", "<!DOCTYPE a PUBLIC '" + x + "' 's'><a/>"},
        {"no markup", x},
        {"a million attributes", "<a" + Numbered(1000000, " a#=''") + "/>"},
        {"half a million declarations", "<a" + Numbered(500000, " xmlns:a#='u'") + "/>"},
    };
    for (const SAttack& attack : attacks) {
        SCOPED_TRACE(attack.name);
        // Nothing is left to a document that is no document.
        std::vector<SExpected> expected = {Refused(1, TOO_LONG)};
        if (attack.name == std::string("no markup"))
            expected = {Invalid(1, "invalid document structure")};
        ExpectAttackEndsForBoth(attack.xml, expected,
                                {EveryWay()[0], EveryWay()[1], EveryWay()[5]});
    }
}

TEST(Attacks, ALongDeclaration) {
    const std::string blanks(10 << 20, ' ');
    for (const std::string& xml :
         {"<?xml" + blanks + "version='1.0'?><a/>", "<?xml version='1.0'" + blanks + "?><a/>",
          "<?xml version='" + blanks + "'?><a/>"}) {
        const TemporaryFile file(".xml", xml);
        for (const SLoadWay& way : TriedWays()) {
            SCOPED_TRACE(Shown(way));
            ExpectCheap([&] {
                const SLoaded loaded = LoadInWay(way, xml, file.Name(), Strangers());
                return loaded.id == 9 || loaded.id == 2 ? "" : "it loads";
            });
        }
    }
}

TEST(Attacks, AGigabyteOfBlanks) {
    const std::uint64_t gigabyte = std::uint64_t{1} << 30;
    SXMLUntrusted anySize;
    anySize.maxBytes = 0;
    SXMLUntrusted anyMarkup;
    anyMarkup.maxMarkup = 0;
    struct SRow {
        SXMLUntrusted limits;
        const char* begin;
        const char* end;
        const char* text;
    };
    const SRow rows[] = {
        {anySize, "<a>", "</a>", TOO_LONG},         {anySize, "<a/>", "", TOO_LONG},
        {anySize, "<?p?>", "<a/>", TOO_LONG},       {anySize, "<a ", "/>", TOO_LONG},
        {SXMLUntrusted(), "<a>", "</a>", TOO_LONG}, {SXMLUntrusted(), "<a/>", "", TOO_LONG},
        {anyMarkup, "<a>", "</a>", TOO_LARGE},      {anyMarkup, "<a/>", "", TOO_LARGE}};
    for (const SRow& row : rows) {
        for (const bool isTree : {true, false}) {
            SCOPED_TRACE(std::string(row.begin) + row.text + (isTree ? " tree" : " callbacks"));
            ExpectCheap([&] {
                const SXMLLoadOptions options = SXMLLoadOptions().Untrusted(row.limits);
                SLoaded loaded;
                try {
                    CXMLSaxHandler handler;
                    CBlanks blanks(row.begin, gigabyte, row.end);
                    if (isTree) XMLLoadReader(std::ref(blanks), options);
                    if (!isTree) XMLLoadReader(std::ref(blanks), handler, options);
                } catch (const CXMLError& e) {
                    loaded = {e.GetID(), e.what(), e.Problems()};
                }
                return Differences(loaded, Refused(1, row.text), "Stream");
            });
        }
    }
}

// --- what is deep

TEST(Attacks, Depth) {
    for (const std::string& xml :
         {Deep(100000), Times(100000, "<a>"), Deep(100000) + "<", Deep(257), Deep(300) + "<",
          LATIN1 + Deep(100000), "<!DOCTYPE a>" + Deep(100000)}) {
        ExpectAttackEnds(xml, {Refused(1, TOO_DEEP)});
    }
    ExpectAttackEnds(Wide(Deep(100000), 2, false, true), {Refused(1, TOO_DEEP)});
    ExpectAttackEnds(Times(300, "<a>\n") + Times(300, "</a>"), {Refused(257, TOO_DEEP)});
}

// --- names that are the same to the parser's tables

// Loads, or is refused for one of the reasons that the work or its place has.
std::string LoadsOrIsRefused(const SLoadWay& way, const std::string& xml,
                             const SXMLLoadOptions& options, const std::string& rule) {
    const SLoaded loaded = LoadInWay(way, xml, "", options);
    if (loaded.id == 0) return "";
    if (loaded.id != 9) return loaded.text;
    return loaded.problems.front().text.find(rule) != std::string::npos ? "" : loaded.text;
}

TEST(Attacks, CollidingNames) {
    const std::vector<std::string> names = CollidingNames(10500);
    ASSERT_EQ(names.size(), 10500U);
    const std::vector<std::string> few(names.begin(), names.begin() + 4000);
    std::string declared = "<a";
    for (std::size_t i = 0; i < few.size(); ++i)
        declared += " xmlns:p" + std::to_string(i) + "='" + few[i] + "'";
    const std::vector<SAttack> attacks = {
        {"attributes", "<a" + Around(names, " ", "=''") + "/>"},
        {"elements", "<a>" + Around(names, "<", "/>") + "</a>"},
        {"instructions", "<a>" + Around(names, "<?", "?>") + "</a>"},
        {"prefixes", "<a" + Around(few, " xmlns:", "='u'") + "/>"},
        {"namespaces", declared + "/>"},
        {"namespaces of many elements", "<a>" + Around(names, "<b xmlns='", "'/>") + "</a>"}};
    for (const SAttack& attack : attacks) {
        SCOPED_TRACE(attack.name);
        const std::string& xml = attack.xml;
        ExpectCheap([&] { return LoadsOrIsRefused(FewWays()[0], xml, Strangers(), ""); });
        ExpectCheap([&] { return LoadsOrIsRefused(FewWays()[1], LATIN1 + xml, Strangers(), ""); });
    }
}

// As much of that as fits, with a second less than for others: one step more may be taken.
TEST(Attacks, CollidingNamesInALargeDocument) {
    const std::vector<std::string> names = CollidingNames(550000, 13);
    const std::vector<std::string> some(names.begin(), names.begin() + 8500);
    const std::string tag = "<b" + Around(some, " ", "=''") + "/>";
    const std::vector<std::string> fewer(names.begin(), names.begin() + 400000);
    const std::vector<SAttack> attacks = {
        {"attributes", "<a>" + Times(((16 << 20) - 100) / tag.size(), tag) + "</a>"},
        {"elements", "<a>" + Around(names, "<", "/>") + "</a>"},
        {"namespaces", "<a>" + Around(fewer, "<b xmlns='", "'/>") + "</a>"}};
    SXMLUntrusted limits;
    for (const SAttack& attack : attacks) {
        SCOPED_TRACE(attack.name);
        ASSERT_LT(attack.xml.size(), std::size_t{16 << 20} - 100);
        const bool isDefault = attack.name == std::string("attributes");
        limits.maxSeconds = isDefault ? 5 : 1;
        ExpectCheap(
            [&] {
                return LoadsOrIsRefused({false, EOrigin::READER}, LATIN1 + attack.xml,
                                        SXMLLoadOptions().Untrusted(limits), "(maxSeconds)");
            },
            limits.maxSeconds + 1);
    }
}

// --- namespaces

TEST(Attacks, ManyNamespaces) {
    const std::string one =
        "<a>" + Numbered(IS_SANITIZED ? 100000 : 500000, "<b xmlns:a#='u#'/>") + "</a>";
    ASSERT_LT(one.size(), std::size_t{16 << 20});
    for (const SLoadWay& way : FewWays()) {
        ExpectCheap([&] { return LoadsOrIsRefused(way, one, Strangers(), "max"); });
        ExpectCheap([&] { return LoadsOrIsRefused(way, LATIN1 + one, Strangers(), "max"); });
    }
}

// Each prefix of the innermost tag may have to be looked for among all that are declared.
TEST(Attacks, ManyNamespacesInScope) {
    std::string xml = "<a xmlns:b='u'>";
    int number = 0;
    for (int level = 0; level < 220; ++level) {
        xml += "<a";
        for (int i = 0; i < 4000; ++i)
            xml += " xmlns:p" + std::to_string(number++) + "='u'";
        xml += ">";
    }
    xml += "<a" + Numbered(22000, " b:a#=''") + "/>" + Times(221, "</a>");
    ASSERT_LT(xml.size(), std::size_t{16 << 20});
    const std::string tooMany = "more than 4096 namespace declarations in force (maxMarkup / 64)";
    ExpectAttackEndsForBoth(xml, {Refused(1, tooMany)}, FewWays());
}

// --- where the bytes come from

// As from a peer that sends packets of a byte.
TEST(Attacks, ByteByByte) {
    const std::string xml = "<a>" + Times(IS_SANITIZED ? 400000 : 4000000, "<b/>") + "</a>";
    for (const bool isTree : {true, false}) {
        SCOPED_TRACE(isTree);
        ExpectCheap(
            [&] {
                SLoaded loaded;
                CPieces pieces(xml, 1);
                try {
                    CXMLSaxHandler handler;
                    if (isTree) XMLLoadReader(std::ref(pieces), Strangers());
                    if (!isTree) XMLLoadReader(std::ref(pieces), handler, Strangers());
                } catch (const CXMLError& e) {
                    loaded = {e.GetID(), e.what(), e.Problems()};
                }
                return loaded.id == 0 ? "" : Differences(loaded, Refused(1, TOO_SLOW), "Stream");
            },
            6, 400);  // a tree of four million elements
    }
}

// What a document is does not depend on the pieces in which it arrives.
TEST(Attacks, PiecesOfAnyEncoding) {
    const std::string events =
        "StartDocument\nStartElement a\nCharacters \"x\"\nEndElement a\nEndDocument\n";
    for (const std::string& xml :
         {std::string("<a>x</a>"), std::string("\xEF\xBB\xBF<a>x</a>"), LATIN1 + "<a>x</a>",
          Wide("<a>x</a>", 2, false, true), Wide("<a>x</a>", 2, true, true),
          Wide("<?xml version='1.0' encoding='UTF-16'?><a>x</a>", 2, true, false),
          Wide("<?xml version='1.0' encoding='UCS-4'?><a>x</a>", 4, false, false)}) {
        for (const std::size_t most : {1U, 2U, 3U, 4U, 5U, 7U, 50U, 65536U}) {
            SCOPED_TRACE(std::to_string(most) + " of " + xml);
            CPieces pieces(xml, most);
            CRecordingHandler handler;
            EXPECT_NO_THROW(XMLLoadReader(std::ref(pieces), handler, Strangers()));
            EXPECT_EQ(handler.Transcript(), events);
        }
    }
}

// --- problems, and validation by the caller's schema

TEST(Attacks, ProblemsByTheMillion) {
    const TemporaryFile schema(
        ".xsd",
        "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema'><xs:element name='a'>"
        "<xs:complexType><xs:sequence><xs:element ref='a' minOccurs='0' maxOccurs='unbounded'/>"
        "<xs:element name='b' type='xs:int' minOccurs='0' maxOccurs='unbounded'/></xs:sequence>"
        "</xs:complexType></xs:element></xs:schema>");
    const std::vector<SAttack> attacks = {
        {"attributes", "<a" + Numbered(20000, " a#=''") + "/>"},
        {"elements", "<a>" + Times(1000000, "<b/>") + "</a>"},
        {"deep elements", Times(250, "<a>") + Times(1000000, "<b/>") + Times(250, "</a>")},
        {"long names", Times(30, "<" + std::string(250000, 'x') + ">")}};
    for (const SAttack& attack : attacks) {
        SCOPED_TRACE(attack.name);
        for (const SLoadWay& way : FewWays()) {
            ExpectCheap([&] {
                const SLoaded loaded =
                    LoadInWay(way, attack.xml, "",
                              Strangers().ValidateBySchema(schema.Name()).CollectProblems());
                if (loaded.id != 2) return "class " + std::to_string(loaded.id) + loaded.text;
                return loaded.problems.size() <= 100 ? "" : std::string("more than 100 problems");
            });
        }
    }
}

// Simple types, whose values are as long as they may be.
TEST(Attacks, LongValuesOfTypes) {
    const std::string types[] = {"int",      "decimal", "double",   "boolean",   "dateTime",
                                 "duration", "ID",      "IDREFS",   "NMTOKENS",  "anyURI",
                                 "QName",    "token",   "language", "hexBinary", "base64Binary"};
    const std::size_t length = IS_SANITIZED ? 50000 : 250000;
    const std::string digits(length, '1');
    const std::string blanks(length, ' ');
    const std::string letters(length, 'a');
    const std::string words = Times(length / 2, "a ");
    for (const std::string& type : types) {
        SCOPED_TRACE(type);
        const TemporaryFile schema(".xsd",
                                   "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema'>"
                                   "<xs:element name='a' type='xs:" +
                                       type + "'/></xs:schema>");
        ExpectCheap([&] {
            for (const std::string& value :
                 {digits, "0." + digits, "-" + digits + "-01-01T00:00:00", "P" + digits + "Y",
                  blanks, letters, words, letters + ":" + letters}) {
                const SLoaded loaded =
                    LoadInWay(EveryWay()[0], "<a>" + value.substr(0, 260000) + "</a>", "",
                              Strangers().ValidateBySchema(schema.Name()));
                if (loaded.id != 0 && loaded.id != 2) return loaded.text;
            }
            return std::string();
        });
    }
}
