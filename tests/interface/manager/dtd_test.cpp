// Document type declarations: the reference that a document keeps, what entities, default
// attributes and external DTDs do to the tree, and validation against a DTD.
#include "support/testing.h"

using namespace norvask_test;

namespace {

std::string Reference(const Document& document) {
    const char* name = document->GetDTDName();
    const char* path = document->GetDTDPath();
    return std::string(name ? name : "NULL") + " " + (path ? path : "NULL");
}

}  // namespace

TEST(LoadDtd, KeepsTheNameAndTheSystemIdentifier) {
    TemporaryFile dtd(".dtd", "<!ELEMENT r ANY>");
    const std::string path = dtd.Name();
    EXPECT_EQ(Reference(LoadMemory("<!DOCTYPE r SYSTEM '" + path + "'><r/>")), "r " + path);
    EXPECT_EQ(Reference(LoadMemory("<!DOCTYPE  r\n PUBLIC '-//x//y' \"" + path + "\" [ ]><r/>")),
              "r " + path);
    EXPECT_EQ(Reference(LoadMemory("<!DOCTYPE p:other SYSTEM '" + path + "'><r/>")),
              "p:other " + path);
}

TEST(LoadDtd, KeepsNoReferenceWithoutASystemIdentifier) {
    EXPECT_EQ(Reference(LoadMemory("<r/>")), "NULL NULL");
    EXPECT_EQ(Reference(LoadMemory("<!DOCTYPE r><r/>")), "NULL NULL");
    EXPECT_EQ(Reference(LoadMemory("<!DOCTYPE r []><r/>")), "NULL NULL");
    EXPECT_EQ(Reference(LoadMemory("<!DOCTYPE r [<!ELEMENT r ANY>]><r/>")), "NULL NULL");
}

TEST(LoadDtd, KeepsTheSystemIdentifierAsWrittenWhenItIsRelative) {
    TemporaryFile dtd(".dtd", "<!ATTLIST r k CDATA 'default'>");
    const std::string xml = "<!DOCTYPE r SYSTEM \"" + dtd.BaseName() + "\"><r/>";
    TemporaryFile file(".xml", xml);
    Document document = LoadFile(file.Name());
    EXPECT_EQ(Reference(document), "r " + dtd.BaseName());
    EXPECT_EQ(TreeText(document), "r k=\"default\"()");
    EXPECT_EQ(Saved(document), "<?xml version=\"1.0\"?><!DOCTYPE r SYSTEM \"" + dtd.BaseName() +
                                   "\"><r k=\"default\"/>");
}

TEST(LoadDtd, WritesAPublicIdentifierAndAnInternalSubsetNoMore) {
    TemporaryFile dtd(".dtd", "<!ELEMENT r ANY>");
    const std::string path = dtd.Name();
    EXPECT_EQ(
        Saved(LoadMemory("<!DOCTYPE r PUBLIC 'p' '" + path + "' [<!ENTITY e 'x'>]><r>&e;</r>")),
        "<?xml version=\"1.0\"?><!DOCTYPE r SYSTEM \"" + path + "\"><r>x</r>");
    EXPECT_EQ(Saved(LoadMemory("<!DOCTYPE r [<!ENTITY e 'x'>]><r>&e;</r>")),
              "<?xml version=\"1.0\"?><r>x</r>");
}

TEST(LoadDtd, ExpandsEntitiesInTextAndElements) {
    ExpectTrees({
        {"<!DOCTYPE r [<!ENTITY e 'text'>]><r>a&e;b</r>", "r(\"atextb\")"},
        {"<!DOCTYPE r [<!ENTITY e ''>]><r>a&e;b</r>", "r(\"ab\")"},
        {"<!DOCTYPE r [<!ENTITY e ''>]><r>&e;</r>", "r()"},
        {"<!DOCTYPE r [<!ENTITY e '<a/>x<b>y</b>'>]><r>1&e;2</r>",
         "r(\"1\", a(), \"x\", b(\"y\"), \"2\")"},
        {"<!DOCTYPE r [<!ENTITY e 'x&#38;y;z'><!ENTITY y '-&#x20AC;-'>]><r>&e;</r>",
         "r(\"x-\xE2\x82\xAC-z\")"},
        {"<!DOCTYPE r [<!ENTITY e '&#10;'>]><r> &e; </r>", "r()"},
        {"<!DOCTYPE r [<!ENTITY e '&#32;'>]><r>&e;</r>", "r(\" \")"},
        {"<!DOCTYPE r [<!ENTITY e '<![CDATA[QQ==]]>'>]><r>a&e;b</r>", "r(\"a\", #41, \"b\")"},
        {"<!DOCTYPE r [<!ENTITY e '<!-- c -->'>]><r>a&e;b</r>", "r(\"ab\")"},
        {"<!DOCTYPE r [<!ENTITY lt '&#38;#60;'>]><r>&lt;</r>", "r(\"<\")"},
        {"<!DOCTYPE r [<!NOTATION n SYSTEM 'n'><!ENTITY u SYSTEM 'u.gif' NDATA n>"
         "<!ATTLIST r k ENTITY #IMPLIED>]><r k='u'/>",
         "r k=\"u\"()"},
    });
}

TEST(LoadDtd, ReadsExternalEntitiesFromWhereTheyAre) {
    TemporaryFile entity(".ent", "<?xml encoding='ISO-8859-1'?><b>\xE9</b>\n");
    const std::string declaration = "[<!ENTITY e SYSTEM '" + entity.BaseName() + "'>]";
    TemporaryFile file(".xml", "<!DOCTYPE r " + declaration + "><r>1&e;2</r>");
    EXPECT_EQ(TreeText(LoadFile(file.Name())), "r(\"1\", b(\"\xC3\xA9\"), \"\\n2\")");
}

TEST(LoadDtd, ReadsAnExternalDtdWhetherItValidatesOrNot) {
    TemporaryFile dtd(".dtd",
                      "<!ELEMENT r (#PCDATA)>\n<!ATTLIST r k CDATA 'default'>\n<!ENTITY e 'x'>\n");
    const std::string xml = std::string("<!DOCTYPE r SYSTEM '") + dtd.Name() + "'><r>&e;</r>";
    EXPECT_EQ(TreeText(LoadMemory(xml)), "r k=\"default\"(\"x\")");
    EXPECT_EQ(TreeText(LoadMemory(xml, Validate())), "r k=\"default\"(\"x\")");
}

// The parser then knows which whitespace is none of the content.
TEST(LoadDtd, DropsWhitespaceInElementContentOnlyWhenItValidates) {
    const std::string xml =
        "<!DOCTYPE r [<!ELEMENT r (a*)><!ELEMENT a (#PCDATA)>]><r> <a> </a>  <a>x</a> </r>";
    EXPECT_EQ(TreeText(LoadMemory(xml)), "r(\" \", a(\" \"), \"  \", a(\"x\"), \" \")");
    EXPECT_EQ(TreeText(LoadMemory(xml, Validate())), "r(a(\" \"), a(\"x\"))");
}

TEST(LoadDtd, ValidatesOnlyDocumentsThatNameAGrammar) {
    EXPECT_EQ(TreeText(LoadMemory("<r><a/></r>", Validate())), "r(a())");
    const std::string invalid = "<!DOCTYPE r [<!ELEMENT r EMPTY>]><r><a/></r>";
    EXPECT_EQ(TreeText(LoadMemory(invalid)), "r(a())");
    EXPECT_LOAD_ERROR(LoadMemory(invalid, Validate()), "Memfile", 1,
                      "no declaration found for element 'a'");
}

TEST(LoadDtd, ReportsTheFirstViolationOfTheDtd) {
    struct {
        const char* dtd;
        const char* body;
        int line;
        const char* message;
    } const rows[] = {
        {"<!ELEMENT r EMPTY>", "<q/>", 2, "no declaration found for element 'q'"},
        {"<!ELEMENT r EMPTY>", "\n<r>x</r>", 3, "no character data is allowed by content model"},
        {"<!ELEMENT r (a)><!ELEMENT a ANY>", "<r>\n</r>", 3,
         "empty content is not valid for content model '(a)'"},
        {"<!ELEMENT r ANY><!ATTLIST r i ID #REQUIRED>", "<r/>", 2,
         "missing required attribute 'i'"},
        {"<!ELEMENT r ANY>", "<r\n\nk='v'/>", 4, "attribute 'k' is not declared for element 'r'"},
        {"<!ELEMENT r ANY>", "<r><x/>\n<y/></r>", 2, "no declaration found for element 'x'"},
    };
    for (const auto& row : rows) {
        const std::string xml = std::string("<!DOCTYPE r [") + row.dtd + "]>\n" + row.body;
        SCOPED_TRACE(xml);
        EXPECT_NE(LoadMemory(xml), nullptr);
        TemporaryFile file(".xml", xml);
        EXPECT_NE(LoadFile(file.Name()), nullptr);
        ExpectErrors({{xml, row.line, row.message}}, {Validate()});
    }
}

TEST(LoadDtd, FailsWithoutTheExternalDtdInEitherMode) {
    const std::string missing = "<!DOCTYPE r SYSTEM '/nonexistent/r.dtd'>\n<r/>";
    for (const auto& how : {SLoad(), Validate()}) {
        EXPECT_LOAD_ERROR(LoadMemory(missing, how), "Memfile", 1,
                          "unable to open DTD document '/nonexistent/r.dtd'");
    }
    // A relative one stands beside the file, but is left as written when there is no file.
    TemporaryFile file(".xml", "<!DOCTYPE r\n SYSTEM 'no-such.dtd'><r/>");
    const std::string name = file.Name();
    const std::string resolved = name.substr(0, name.rfind('/') + 1) + "no-such.dtd";
    EXPECT_LOAD_ERROR(LoadFile(name), name, 2, "unable to open DTD document '" + resolved + "'");
    EXPECT_LOAD_ERROR(LoadMemory("<!DOCTYPE r SYSTEM 'no-such.dtd'><r/>"), "Memfile", 1,
                      "unable to open DTD document 'no-such.dtd'");
    EXPECT_LOAD_ERROR(LoadMemory("<!DOCTYPE r SYSTEM ''><r/>"), "Memfile", 1,
                      "unable to open DTD document ''");
}

TEST(LoadDtd, NamesTheDtdOrTheEntityInWhichTheErrorLies) {
    TemporaryFile dtd(".dtd", "<!ELEMENT r ANY>\n<!ATTLIST r k\n CDATA bad>\n");
    EXPECT_LOAD_ERROR(LoadMemory(std::string("<!DOCTYPE r SYSTEM '") + dtd.Name() + "'><r/>"),
                      dtd.Name(), 3, "default attribute declaration expected");
    TemporaryFile entity(".ent", "<b>\n\n<c></b>");
    EXPECT_LOAD_ERROR(LoadMemory(std::string("<!DOCTYPE r [<!ENTITY e SYSTEM '") + entity.Name() +
                                 "'>]>\n<r>&e;</r>"),
                      entity.Name(), 3, "expected end of tag 'c'");
}

TEST(LoadDtd, TellsWhatIsWrongWithAnEntity) {
    const std::vector<SErrorRow> rows = {
        {"<r>&e;</r>", 1, "entity 'e' not found"},
        {"<r k='&e;'/>", 1, "entity 'e' not found"},
        {"<!DOCTYPE r [<!ENTITY e '&f;'><!ENTITY f '&e;'>]><r>&e;</r>", 1,
         "recursive entity expansion 'e'"},
        {"<!DOCTYPE r [<!ENTITY e SYSTEM '/nonexistent/e'>]><r>&e;</r>", 1,
         "unable to open external entity '/nonexistent/e'"},
        {"<!DOCTYPE r [<!ENTITY e SYSTEM '/nonexistent/e'>]><r k='&e;'/>", 1,
         "external entity cannot be referred to from attribute value"},
        {"<!DOCTYPE r [<!NOTATION n SYSTEM 'n'><!ENTITY e SYSTEM 'x' NDATA n>]><r>&e;</r>", 1,
         "unparsed entity reference 'e' is invalid at this point"},
        {"<!DOCTYPE r [<!ENTITY e '<a>'>]><r>&e;</a></r>", 1,
         "start and the end tags are in different entities"},
        {"<!DOCTYPE r", 1, "system or public id expected"},
        {"<!DOCTYPE r [", 1, "invalid document structure"},
        {"<!DOCTYPE r>", 1, "invalid document structure"},
        {"<r/><!DOCTYPE r>", 1, "comment or processing instruction expected"},
    };
    ExpectErrors(rows, {SLoad(), KeepPrefixes()});
}
