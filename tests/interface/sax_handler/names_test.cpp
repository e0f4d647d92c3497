// Callbacks for namespaces and document types: declarations, the three forms of a name,
// identifiers, entities, default attributes.
#include "support/recording_handler.h"
#include "support/testing.h"

using namespace norvask_test;

TEST(CallbackNamespaces, AreDeclaredBeforeAndEndedBehindTheirElement) {
    ExpectEvents({
        {"<p:r xmlns:p='u'/>",
         "StartNamespace \"p\"=\"u\"\nStartElement {u}r=p:r\nEndElement {u}r=p:r\n"
         "EndNamespace \"p\"\n"},
        {"<r xmlns='u'/>",
         "StartNamespace \"\"=\"u\"\nStartElement {u}r=r\nEndElement {u}r=r\nEndNamespace \"\"\n"},
        {"<r xmlns:p='u'>x<p:a>y</p:a>z</r>",
         "StartNamespace \"p\"=\"u\"\nStartElement r\nCharacters \"x\"\nStartElement {u}a=p:a\n"
         "Characters \"y\"\nEndElement {u}a=p:a\nCharacters \"z\"\nEndElement r\n"
         "EndNamespace \"p\"\n"},
    });
}

// A text ends where the element starts, and the parser tells the declarations before it starts it.
TEST(CallbackNamespaces, OfAnElementComeBeforeTheTextInFrontOfIt) {
    ExpectEvents({
        {"<r>x<a xmlns='u'>y</a>z</r>",
         "StartElement r\nStartNamespace \"\"=\"u\"\nCharacters \"x\"\nStartElement {u}a=a\n"
         "Characters \"y\"\nEndElement {u}a=a\nEndNamespace \"\"\nCharacters \"z\"\n"
         "EndElement r\n"},
    });
}

TEST(CallbackNamespaces, OfOneElementComeInTheirOrder) {
    ExpectEvents({
        {"<r xmlns:z='1' xmlns='2' xmlns:a='3'/>",
         "StartNamespace \"z\"=\"1\"\nStartNamespace \"\"=\"2\"\nStartNamespace \"a\"=\"3\"\n"
         "StartElement {2}r=r\nEndElement {2}r=r\n"
         "EndNamespace \"a\"\nEndNamespace \"\"\nEndNamespace \"z\"\n"},
    });
}

TEST(CallbackNamespaces, AreNotAmongTheAttributes) {
    ExpectEvents({
        {"<r a='1' xmlns:p='u' p:a='2' xmlns='v' b='3'/>",
         "StartNamespace \"p\"=\"u\"\nStartNamespace \"\"=\"v\"\n"
         "StartElement {v}r=r a=\"1\" {u}a=p:a=\"2\" b=\"3\"\nEndElement {v}r=r\n"
         "EndNamespace \"\"\nEndNamespace \"p\"\n"},
    });
}

TEST(CallbackNamespaces, AreTakenBackByAnEmptyUri) {
    ExpectEvents({
        {"<r xmlns='u'><a xmlns=''><b/></a></r>",
         "StartNamespace \"\"=\"u\"\nStartElement {u}r=r\nStartNamespace \"\"=\"\"\n"
         "StartElement a\nStartElement b\nEndElement b\nEndElement a\nEndNamespace \"\"\n"
         "EndElement {u}r=r\nEndNamespace \"\"\n"},
        {"<?xml version='1.1'?><r xmlns:p='u'><a xmlns:p=''/></r>",
         "StartNamespace \"p\"=\"u\"\nStartElement r\nStartNamespace \"p\"=\"\"\n"
         "StartElement a\nEndElement a\nEndNamespace \"p\"\nEndElement r\nEndNamespace \"p\"\n"},
    });
}

TEST(CallbackNamespaces, MayBeReboundInside) {
    ExpectEvents({
        {"<p:r xmlns:p='1'><p:a xmlns:p='2' p:k='v'><p:b/></p:a><p:c/></p:r>",
         "StartNamespace \"p\"=\"1\"\nStartElement {1}r=p:r\nStartNamespace \"p\"=\"2\"\n"
         "StartElement {2}a=p:a {2}k=p:k=\"v\"\nStartElement {2}b=p:b\nEndElement {2}b=p:b\n"
         "EndElement {2}a=p:a\nEndNamespace \"p\"\nStartElement {1}c=p:c\nEndElement {1}c=p:c\n"
         "EndElement {1}r=p:r\nEndNamespace \"p\"\n"},
        // One URI under two prefixes, and the same names in two namespaces.
        {"<a xmlns:p='1' xmlns:q='1'><p:a/><q:a/><a/><a xmlns='2'/></a>",
         "StartNamespace \"p\"=\"1\"\nStartNamespace \"q\"=\"1\"\nStartElement a\n"
         "StartElement {1}a=p:a\nEndElement {1}a=p:a\nStartElement {1}a=q:a\n"
         "EndElement {1}a=q:a\nStartElement a\nEndElement a\nStartNamespace \"\"=\"2\"\n"
         "StartElement {2}a=a\nEndElement {2}a=a\nEndNamespace \"\"\n"
         "EndElement a\nEndNamespace \"q\"\nEndNamespace \"p\"\n"},
    });
}

TEST(CallbackNamespaces, KnowTheXmlPrefixWithoutADeclaration) {
    ExpectEvents({
        {"<r xml:lang='en' xml:space='preserve'> \n</r>",
         "StartElement r {http://www.w3.org/XML/1998/namespace}lang=xml:lang=\"en\" "
         "{http://www.w3.org/XML/1998/namespace}space=xml:space=\"preserve\"\nEndElement r\n"},
    });
}

TEST(CallbackNamespaces, MayHaveNamesBeyondAscii) {
    ExpectEvents({
        {"<\xC3\xA9:r xmlns:\xC3\xA9='urn:\xE2\x82\xAC'/>",
         "StartNamespace \"\xC3\xA9\"=\"urn:\xE2\x82\xAC\"\n"
         "StartElement {urn:\xE2\x82\xAC}r=\xC3\xA9:r\n"
         "EndElement {urn:\xE2\x82\xAC}r=\xC3\xA9:r\nEndNamespace \"\xC3\xA9\"\n"},
        {"<r xmlns='" + std::string(5000, 'u') + "'/>",
         "StartNamespace \"\"=\"" + std::string(5000, 'u') + "\"\nStartElement {" +
             std::string(5000, 'u') + "}r=r\nEndElement {" + std::string(5000, 'u') +
             "}r=r\nEndNamespace \"\"\n"},
    });
}

TEST(CallbackNamespaces, ReportAPrefixWithoutADeclaration) {
    CRecordingHandler handler;
    EXPECT_LOAD_ERROR(LoadMemory("<r>\n<p:a/></r>", handler), "Memfile", 2,
                      "prefix 'p' can not be resolved to namespace URI");
    EXPECT_EQ(handler.Transcript(), "StartDocument\nStartElement r\n");
}

TEST(CallbackDtd, TellsTheIdentifiersOrNull) {
    TemporaryFile dtd(".dtd", "<!ELEMENT r ANY>");
    const std::string path = dtd.Name();
    const std::string root = "StartElement r\nEndElement r\n";
    ExpectEvents({
        // The parser reports no declaration that declares nothing.
        {"<!DOCTYPE r><r/>", root},
        {"<!DOCTYPE r []><r/>", "StartDTD \"r\" public NULL system NULL\n" + root},
        {"<!DOCTYPE r [<!ELEMENT r ANY>]><r/>", "StartDTD \"r\" public NULL system NULL\n" + root},
        {"<!DOCTYPE r SYSTEM '" + path + "'><r/>",
         "StartDTD \"r\" public NULL system " + Quoted(path) + "\n" + root},
        {"<!DOCTYPE r SYSTEM '" + path + "' [<!ENTITY e 'x'>]><r/>",
         "StartDTD \"r\" public NULL system " + Quoted(path) + "\n" + root},
        {"<!DOCTYPE r PUBLIC '-//x//y' '" + path + "'><r/>",
         "StartDTD \"r\" public \"-//x//y\" system " + Quoted(path) + "\n" + root},
        // The parser does not tell an empty public identifier from none.
        {"<!DOCTYPE r PUBLIC '' '" + path + "'><r/>",
         "StartDTD \"r\" public NULL system " + Quoted(path) + "\n" + root},
        {"<!DOCTYPE p:other PUBLIC '-//x//y' '" + path + "' [ ]><r/>",
         "StartDTD \"p:other\" public \"-//x//y\" system " + Quoted(path) + "\n" + root},
    });
}

TEST(CallbackDtd, TellsTheSystemIdentifierAsWritten) {
    TemporaryFile dtd(".dtd", "<!ATTLIST r k CDATA 'default'>");
    const std::string name = dtd.BaseName();
    TemporaryFile file(".xml", "<!DOCTYPE r SYSTEM '" + name + "'><r/>");
    EXPECT_EQ(EventsOfFile(file.Name()), Whole("StartDTD \"r\" public NULL system " + Quoted(name) +
                                               "\nStartElement r k=\"default\"\nEndElement r\n"));
}

TEST(CallbackDtd, PutsDefaultAttributesLast) {
    const std::string dtd = "StartDTD \"r\" public NULL system NULL\n";
    ExpectEvents({
        {"<!DOCTYPE r [<!ATTLIST r d CDATA 'x' e CDATA #FIXED 'y' f CDATA #IMPLIED>]><r z='1'/>",
         dtd + "StartElement r z=\"1\" d=\"x\" e=\"y\"\nEndElement r\n"},
        {"<!DOCTYPE r [<!ATTLIST r d CDATA 'x' e CDATA 'y'>]><r e='own'/>",
         dtd + "StartElement r e=\"own\" d=\"x\"\nEndElement r\n"},
        {"<!DOCTYPE r [<!ATTLIST r xmlns CDATA 'u'>]><r/>",
         dtd + "StartNamespace \"\"=\"u\"\nStartElement {u}r=r\nEndElement {u}r=r\n"
               "EndNamespace \"\"\n"},
    });
}

TEST(CallbackDtd, ExpandsEntitiesWithoutDividingTheText) {
    const std::string dtd = "StartDTD \"r\" public NULL system NULL\nStartElement r\n";
    ExpectEvents({
        {"<!DOCTYPE r [<!ENTITY e 'text'>]><r>a&e;b</r>",
         dtd + "Characters \"atextb\"\nEndElement r\n"},
        {"<!DOCTYPE r [<!ENTITY e ''>]><r>a&e;b&e;</r>", dtd + "Characters \"ab\"\nEndElement r\n"},
        {"<!DOCTYPE r [<!ENTITY e '&#10;'>]><r> &e; </r>", dtd + "EndElement r\n"},
        {"<!DOCTYPE r [<!ENTITY e '<!-- c -->'>]><r>a&e;b</r>",
         dtd + "Characters \"ab\"\nEndElement r\n"},
        {"<!DOCTYPE r [<!ENTITY e 'x<a/>y'>]><r>1&e;2</r>",
         dtd + "Characters \"1x\"\nStartElement a\nEndElement a\nCharacters \"y2\"\n"
               "EndElement r\n"},
        {"<!DOCTYPE r [<!ENTITY e '<![CDATA[QQ==]]>'>]><r>a&e;b</r>",
         dtd + "Characters \"a\"\nStartCDATA\nCharacters \"QQ==\"\nEndCDATA\nCharacters \"b\"\n"
               "EndElement r\n"},
    });
}

TEST(CallbackDtd, ReadsExternalEntities) {
    TemporaryFile entity(".ent", "<?xml encoding='ISO-8859-1'?><b>\xE9</b>\n");
    TemporaryFile file(".xml",
                       "<!DOCTYPE r [<!ENTITY e SYSTEM '" + entity.BaseName() + "'>]><r>1&e;2</r>");
    EXPECT_EQ(EventsOfFile(file.Name()),
              Whole("StartDTD \"r\" public NULL system NULL\nStartElement r\nCharacters \"1\"\n"
                    "StartElement b\nCharacters \"\xC3\xA9\"\nEndElement b\n"
                    "Characters \"\\n2\"\nEndElement r\n"));
}

// The parser then knows which whitespace is none of the content.
TEST(CallbackDtd, DropsWhitespaceInElementContentOnlyWhenItValidates) {
    const std::string xml =
        "<!DOCTYPE r [<!ELEMENT r (a*)><!ELEMENT a (#PCDATA)>]><r> <a> </a>  </r>";
    const std::string dtd = "StartDTD \"r\" public NULL system NULL\nStartElement r\n";
    EXPECT_EQ(EventsOfMemory(xml),
              Whole(dtd + "Characters \" \"\nStartElement a\nCharacters \" \"\nEndElement a\n"
                          "Characters \"  \"\nEndElement r\n"));
    EXPECT_EQ(EventsOfMemory(xml, Validate()),
              Whole(dtd + "StartElement a\nCharacters \" \"\nEndElement a\nEndElement r\n"));
}

TEST(CallbackDtd, LeavesNoTraceOfNotationsAndUnparsedEntities) {
    ExpectEvents({
        {"<!DOCTYPE r [<!NOTATION n SYSTEM 'n'><!ENTITY u SYSTEM 'u.gif' NDATA n>"
         "<!ATTLIST r k ENTITY #IMPLIED><!ELEMENT r EMPTY><?p i?><!-- c -->]><r k='u'/>",
         "StartDTD \"r\" public NULL system NULL\nStartElement r k=\"u\"\nEndElement r\n"},
    });
}
