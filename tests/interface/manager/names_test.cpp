// Names and attributes of loaded trees: namespaces with and without their prefixes, attributes that
// lose their difference with the prefix, normalised values, names outside XML 1.0.
#include "support/testing.h"

using namespace norvask_test;

namespace {

struct SRow {
    const char* xml;
    const char* local;   // keepPrefixes false
    const char* prefix;  // keepPrefixes true
};

void ExpectBoth(const std::vector<SRow>& rows) {
    for (const SRow& row : rows) {
        ExpectTrees({{row.xml, row.local}});
        ExpectTrees({{row.xml, row.prefix}}, KeepPrefixes());
    }
}

void ExpectSame(const std::vector<STreeRow>& rows) {
    ExpectTrees(rows);
    ExpectTrees(rows, KeepPrefixes());
}

constexpr const char* LINEAR_B = "\xF0\x90\x80\x80";  // U+10000

}  // namespace

TEST(LoadNames, TakesLocalOrQualifiedNames) {
    ExpectBoth({
        {"<p:r xmlns:p='u' a='1' p:b='2'><p:c/><d/></p:r>", "r a=\"1\" b=\"2\"(c(), d())",
         "p:r xmlns:p=\"u\" a=\"1\" p:b=\"2\"(p:c(), d())"},
        {"<r xml:lang='en' xml:space='preserve'/>", "r lang=\"en\" space=\"preserve\"()",
         "r xml:lang=\"en\" xml:space=\"preserve\"()"},
        {"<xml:r/>", "r()", "xml:r()"},
        {"<r><p:a xmlns:p='1'/><q:a xmlns:q='1'/></r>", "r(a(), a())",
         "r(p:a xmlns:p=\"1\"(), q:a xmlns:q=\"1\"())"},
    });
}

TEST(LoadNames, KeepsDeclarationsInTheOrderOfTheirNamesBeforeTheAttributes) {
    ExpectBoth({
        {"<r xmlns:q='2' xmlns:p='1' k='v'/>", "r k=\"v\"()",
         "r xmlns:p=\"1\" xmlns:q=\"2\" k=\"v\"()"},
        {"<r k='v' xmlns:p='1'/>", "r k=\"v\"()", "r xmlns:p=\"1\" k=\"v\"()"},
        {"<r k='v' xmlns:b='1' l='w' xmlns:a='2' b:m='x'/>", "r k=\"v\" l=\"w\" m=\"x\"()",
         "r xmlns:a=\"2\" xmlns:b=\"1\" k=\"v\" l=\"w\" b:m=\"x\"()"},
        // The order is that of the bytes: capitals, then "_", then small letters, then the rest.
        {"<r xmlns:z='1' xmlns:\xC3\xA9='2' xmlns:_='3' xmlns:Z='4' xmlns:a1='5' xmlns:a-='6'/>",
         "r()",
         "r xmlns:Z=\"4\" xmlns:_=\"3\" xmlns:a-=\"6\" xmlns:a1=\"5\" xmlns:z=\"1\" "
         "xmlns:\xC3\xA9=\"2\"()"},
        {"<r xmlns:ab='1' xmlns:a='2' xmlns:a.b='3'/>", "r()",
         "r xmlns:a=\"2\" xmlns:a.b=\"3\" xmlns:ab=\"1\"()"},
    });
}

TEST(LoadNames, KeepsADefaultNamespaceUnderTheNameXmlnsColon) {
    ExpectBoth({
        {"<r xmlns='d'/>", "r()", "r xmlns:=\"d\"()"},
        {"<r k='v' xmlns:p='1' xmlns='d'/>", "r k=\"v\"()",
         "r xmlns:=\"d\" xmlns:p=\"1\" k=\"v\"()"},
        {"<r xmlns='d'><a/><b xmlns='e'/></r>", "r(a(), b())",
         "r xmlns:=\"d\"(a(), b xmlns:=\"e\"())"},
        {"<r xmlns='d'><a xmlns='d'/></r>", "r(a())", "r xmlns:=\"d\"(a xmlns:=\"d\"())"},
    });
}

TEST(LoadNames, CannotReadASavedDefaultNamespaceBack) {
    const std::string saved = Saved(LoadMemory("<r xmlns='d'/>", KeepPrefixes()));
    EXPECT_EQ(saved, "<?xml version=\"1.0\"?><r xmlns:=\"d\"/>");
    EXPECT_LOAD_ERROR(LoadMemory(saved), "Memfile", 1, "invalid attribute name 'xmlns:'");
    EXPECT_LOAD_ERROR(LoadMemory(saved, KeepPrefixes()), "Memfile", 1,
                      "invalid attribute name 'xmlns:'");
}

TEST(LoadNames, KeepsNoUndeclarations) {
    ExpectBoth({
        {"<r xmlns=''/>", "r()", "r()"},
        {"<r xmlns='d'><a xmlns=''/></r>", "r(a())", "r xmlns:=\"d\"(a())"},
        {"<?xml version='1.1'?><r xmlns:p='1'><a xmlns:p='' xmlns:q='2'/></r>", "r(a())",
         "r xmlns:p=\"1\"(a xmlns:q=\"2\"())"},
    });
}

TEST(LoadNames, KeepsADeclarationWhereItStandsAndNotBelow) {
    ExpectBoth({
        {"<r xmlns:p='1'><p:a><p:b/></p:a></r>", "r(a(b()))", "r xmlns:p=\"1\"(p:a(p:b()))"},
        {"<r xmlns:p='1'><a xmlns:p='2'/><p:b/></r>", "r(a(), b())",
         "r xmlns:p=\"1\"(a xmlns:p=\"2\"(), p:b())"},
        {"<r><p:a xmlns:p='1'>x</p:a>y</r>", "r(a(\"x\"), \"y\")",
         "r(p:a xmlns:p=\"1\"(\"x\"), \"y\")"},
        {"<r xmlns:xml='http://www.w3.org/XML/1998/namespace'/>", "r()",
         "r xmlns:xml=\"http://www.w3.org/XML/1998/namespace\"()"},
        {"<r xmlns:p='a&amp;b&#x20AC;'/>", "r()", "r xmlns:p=\"a&b\xE2\x82\xAC\"()"},
        {"<!DOCTYPE r [<!ATTLIST r xmlns:p CDATA 'dp' xmlns CDATA #FIXED 'dd'>]><p:r xmlns:p='1'/>",
         "r()", "p:r xmlns:p=\"1\"()"},
        {"<!DOCTYPE r [<!ATTLIST r xmlns:p CDATA 'dp' xmlns CDATA #FIXED 'dd'>]><r/>", "r()",
         "r xmlns:=\"dd\" xmlns:p=\"dp\"()"},
    });
}

TEST(LoadNames, LetsTheLastOfTheAttributesWithOneLocalNameWinInTheFirstOnesPlace) {
    ExpectBoth({
        {"<r xmlns:p='1' xmlns:q='2' p:k='a' z='0' q:k='b' k='c'/>", "r k=\"c\" z=\"0\"()",
         "r xmlns:p=\"1\" xmlns:q=\"2\" p:k=\"a\" z=\"0\" q:k=\"b\" k=\"c\"()"},
        {"<r xmlns:p='1' k='a' p:k='b'/>", "r k=\"b\"()", "r xmlns:p=\"1\" k=\"a\" p:k=\"b\"()"},
        // An empty value removes what an earlier attribute has set.
        {"<r xmlns:p='1' p:k='a' k=''/>", "r()", "r xmlns:p=\"1\" p:k=\"a\"()"},
        {"<r xmlns:p='1' k='' p:k='b'/>", "r k=\"b\"()", "r xmlns:p=\"1\" p:k=\"b\"()"},
        {"<r xmlns:p='1' xmlns:q='2' p:k='a' k='' z='0' q:k='c'/>", "r z=\"0\" k=\"c\"()",
         "r xmlns:p=\"1\" xmlns:q=\"2\" p:k=\"a\" z=\"0\" q:k=\"c\"()"},
    });
}

TEST(LoadNames, DropsAttributesWithoutAValue) {
    ExpectSame({
        {"<r k=''/>", "r()"},
        {"<r a='1' k='' b='2'/>", "r a=\"1\" b=\"2\"()"},
        {"<r k=' '/>", "r k=\" \"()"},
        {"<!DOCTYPE r [<!ENTITY e ''>]><r k='&e;'/>", "r()"},
        {"<!DOCTYPE r [<!ATTLIST r k CDATA ''>]><r/>", "r()"},
        {"<!DOCTYPE r [<!ATTLIST r k NMTOKENS #IMPLIED>]><r k='  '/>", "r()"},
    });
}

TEST(LoadNames, TakesValuesAsTheParserNormalisesThem) {
    ExpectSame({
        {"<r k='a\nb\tc\r\nd'/>", "r k=\"a b c d\"()"},
        {"<r k=' a  b '/>", "r k=\" a  b \"()"},
        {"<r k='&#10;&#9;&#13;'/>", "r k=\"\\n\\t\\r\"()"},
        {"<r k='&lt;&amp;&gt;' l=\"'\" m='\"'/>", "r k=\"<&>\" l=\"'\" m=\"\\\"\"()"},
        {"<r k='&#x1F600;\xC3\xA9>'/>", "r k=\"\xF0\x9F\x98\x80\xC3\xA9>\"()"},
        {"<!DOCTYPE r [<!ATTLIST r k NMTOKENS #IMPLIED>]><r k=' a \n b '/>", "r k=\"a b\"()"},
        {"<!DOCTYPE r [<!ENTITY e 'x&#38;#38;y'>]><r k='1&e;2'/>", "r k=\"1x&y2\"()"},
    });
}

TEST(LoadNames, KeepsTheOrderOfTheAttributesWithDefaultsBehindThem) {
    ExpectSame({
        {"<r z='1' a='2' m='3'/>", "r z=\"1\" a=\"2\" m=\"3\"()"},
        {"<!DOCTYPE r [<!ATTLIST r b CDATA 'B' a CDATA 'A' i CDATA #IMPLIED f CDATA #FIXED 'F'>]>"
         "<r z='1' a='2'/>",
         "r z=\"1\" a=\"2\" b=\"B\" f=\"F\"()"},
        {"<!DOCTYPE r [<!ATTLIST a e (x|y) 'y'>]><r><a/><a e='x'/></r>",
         "r(a e=\"y\"(), a e=\"x\"())"},
    });
}

TEST(LoadNames, TakesNamesFromTheWholeBasicPlane) {
    ExpectSame({
        {"<\xE6\x97\xA5\xE6\x9C\xAC gr\xC3\xB6\xC3\x9F"
         "e='\xC3\xBC'/>",
         "\xE6\x97\xA5\xE6\x9C\xAC gr\xC3\xB6\xC3\x9F"
         "e=\"\xC3\xBC\"()"},
        {"<_-.1/>", "_-.1()"},
        {"<a\xC2\xB7\xCC\x80/>", "a\xC2\xB7\xCC\x80()"},
        {"<?xml version='1.1'?><\xC8\xA0/>", "\xC8\xA0()"},
    });
}

// The parser takes names with characters beyond U+FFFF, in XML 1.0 and 1.1 documents alike; the
// name test of the tree does not.
TEST(LoadNames, RefusesNamesBeyondTheBasicPlane) {
    const std::string bad = LINEAR_B;
    for (const std::string declaration : {"", "<?xml version='1.0'?>", "<?xml version='1.1'?>"}) {
        SCOPED_TRACE(declaration);
        for (const SLoad& how : {SLoad(), KeepPrefixes()}) {
            EXPECT_INVALID_NAME(LoadMemory(declaration + "<" + bad + "/>", how), bad);
            EXPECT_INVALID_NAME(LoadMemory(declaration + "<r><" + bad + "/></r>", how), bad);
            EXPECT_INVALID_NAME(LoadMemory(declaration + "<r " + bad + "='v'/>", how), bad);
            EXPECT_INVALID_NAME(
                LoadMemory(declaration + "<r>x<a><b " + bad + "='v'/></a></r>", how), bad);
            // Judged even where the empty value would leave no attribute.
            EXPECT_INVALID_NAME(LoadMemory(declaration + "<r " + bad + "=''/>", how), bad);
            EXPECT_INVALID_NAME(LoadMemory(declaration + "<r a" + bad + "='v'/>", how), "a" + bad);
        }
    }
}

TEST(LoadNames, RefusesSuchAPrefixOnlyWhenItIsKept) {
    const std::string bad = LINEAR_B;
    const std::string element = "<" + bad + ":r xmlns:" + bad + "='u'/>";
    EXPECT_EQ(TreeText(LoadMemory(element)), "r()");
    EXPECT_INVALID_NAME(LoadMemory(element, KeepPrefixes()), bad + ":r");
    const std::string declared = "<r xmlns:" + bad + "='u'/>";
    EXPECT_EQ(TreeText(LoadMemory(declared)), "r()");
    EXPECT_INVALID_NAME(LoadMemory(declared, KeepPrefixes()), "xmlns:" + bad);
}

TEST(LoadNames, TellsUnboundPrefixesAndDoubledAttributes) {
    ExpectErrors({
        {"<p:r/>", 1, "prefix 'p' can not be resolved to namespace URI"},
        {"<r p:k='v'/>", 1, "prefix 'p' can not be resolved to namespace URI"},
        {"<r><a xmlns:p='u'/><p:b/></r>", 1, "prefix 'p' can not be resolved to namespace URI"},
        {"<r xmlns:p=''/>", 1, "invalid namespace value in prefix-namespace mapping 'xmlns:p'"},
        {"<r k='1' k='2'/>", 1, "attribute 'k' is already specified for element 'r'"},
        {"<r xmlns:p='u' xmlns:q='u' p:k='1' q:k='2'/>", 1,
         "attribute 'k' is already specified for element 'r'"},
        {"<:r/>", 1, "element name expected"},
        {"<r :k='v'/>", 1, "attribute name expected"},
        {"<a:b:c/>", 1, "attribute name expected"},
        {"<r xmlns:a='u'><a:/></r>", 1, "invalid element name 'a:'"},
    });
}
