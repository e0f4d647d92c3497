// What generated documents are made of (document_generator.h): for each production how it is
// written, and how it goes wrong.
#ifndef NORVASK_TESTS_SUPPORT_PLAIN_LANE_DOCUMENT_PIECES_H
#define NORVASK_TESTS_SUPPORT_PLAIN_LANE_DOCUMENT_PIECES_H

#include <string_view>

namespace norvask_test {

// The tables are packed, which clang-format would undo.
// clang-format off
namespace pieces {

using namespace std::string_view_literals;
using View = std::string_view;

inline constexpr View BLANKS[] = {
    " "sv, " "sv, " "sv, " "sv, "  "sv, "\n"sv, "\t"sv, "\r"sv, "\r\n"sv, " \n\t\r\n "sv,
    "\n\r "sv};
inline constexpr View BAD_BLANKS[] = {
    ""sv, "\f"sv, "\v"sv, "\xC2\xA0"sv, "\0"sv, "\xC2\x85"sv, "\xE2\x80\xA8"sv, "\b"sv,
    "\xE3\x80\x80"sv};
inline constexpr View LAYOUT[] = {
    "\n"sv, "\n  "sv, "\r\n\t"sv, "\t"sv, " "sv, "   "sv, "\r"sv};

inline constexpr View BAD_MARKS[] = {
    "\xEF\xBB"sv, "\xEF"sv, "\xFE\xFF"sv, "\xFF\xFE"sv, "\xEF\xBB\xBF\xEF\xBB\xBF"sv, " "sv,
    "\n"sv, "\0"sv, "\0\0\xFE\xFF"sv, "\xBF"sv, "\xEF\xBB\xBF "sv, "\x4C\x6F\xA7\x94"sv, "<\0"sv,
    "\0<"sv, "x"sv};

inline constexpr View DECLARATIONS[] = {
    "<?xml version=\"1.0\"?>"sv, "<?xml version='1.0'?>"sv,
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>"sv, "<?xml version='1.0' encoding='utf-8'?>"sv,
    "<?xml version=\"1.0\" encoding='Utf-8' standalone=\"yes\"?>"sv,
    "<?xml version='1.0' standalone='no'?>"sv,
    "<?xml\tversion\n=\r'1.0'\r\nencoding =\t'uTF-8'  standalone\n=\n'yes' ?>"sv,
    "<?xml version = \"1.0\" ?>"sv,
    "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"no\"?>"sv,
    "<?xml version=\"1.0\" encoding=\"UTF-8\"\n?>"sv};
inline constexpr View BAD_DECLARATIONS[] = {
    "<?xml version='1.1'?>"sv, "<?xml version='1.1' encoding='UTF-8'?>"sv,
    "<?xml version='1.2'?>"sv, "<?xml version='2.0'?>"sv, "<?xml version='1.00'?>"sv,
    "<?xml version='1.'?>"sv, "<?xml version='1'?>"sv, "<?xml version=' 1.0'?>"sv,
    "<?xml version='1.0 '?>"sv, "<?xml version=''?>"sv, "<?xml version=1.0?>"sv,
    "<?xml version='1.0\"?>"sv, "<?xml version='1.0'>"sv, "<?xml version='1.0'? >"sv,
    "<?xml version='1.0'?\?>"sv, "<?xml version='1.0'"sv, "<?xml version='1.0"sv,
    "<?xml version"sv, "<?xml?>"sv, "<?xml ?>"sv, "<?xml"sv, "<?xml>"sv,
    "<? xml version='1.0'?>"sv, "<?xml encoding='UTF-8'?>"sv, "<?xml standalone='yes'?>"sv,
    "<?xml encoding='UTF-8' version='1.0'?>"sv,
    "<?xml version='1.0' standalone='yes' encoding='UTF-8'?>"sv,
    "<?xml version='1.0' version='1.0'?>"sv,
    "<?xml version='1.0' encoding='UTF-8' encoding='UTF-8'?>"sv,
    "<?xml version='1.0' standalone='no' standalone='no'?>"sv,
    "<?xml version='1.0'encoding='UTF-8'?>"sv,
    "<?xml version='1.0' encoding='UTF-8'standalone='yes'?>"sv,
    "<?xml version='1.0' standalone='YES'?>"sv, "<?xml version='1.0' standalone='true'?>"sv,
    "<?xml version='1.0' standalone=''?>"sv, "<?xml version='1.0' standalone=' yes'?>"sv,
    "<?xml version='1.0' Encoding='UTF-8'?>"sv, "<?xml VERSION='1.0'?>"sv,
    "<?XML version='1.0'?>"sv, "<?Xml version='1.0'?>"sv, "<?xml version='1.0' foo='bar'?>"sv,
    "<?xml version='1.0' encoding=''?>"sv, "<?xml version='1.0' encoding='UTF8'?>"sv,
    "<?xml version='1.0' encoding='utf8'?>"sv, "<?xml version='1.0' encoding='UTF_8'?>"sv,
    "<?xml version='1.0' encoding='UTF-8 '?>"sv, "<?xml version='1.0' encoding=' UTF-8'?>"sv,
    "<?xml version='1.0' encoding='UTF-16'?>"sv, "<?xml version='1.0' encoding='UTF-16LE'?>"sv,
    "<?xml version='1.0' encoding='UCS-4'?>"sv, "<?xml version='1.0' encoding='US-ASCII'?>"sv,
    "<?xml version='1.0' encoding='ASCII'?>"sv, "<?xml version='1.0' encoding='ISO-8859-1'?>"sv,
    "<?xml version='1.0' encoding='latin1'?>"sv,
    "<?xml version='1.0' encoding='windows-1252'?>"sv,
    "<?xml version='1.0' encoding='EBCDIC-CP-US'?>"sv,
    "<?xml version='1.0' encoding='IBM037'?>"sv, "<?xml version='1.0' encoding='nosuch'?>"sv,
    "<?xml version='1.0' encoding='8UTF'?>"sv, "<?xml version='1.0' encoding='\xC3\xA9'?>"sv,
    "<?xml version='1&#46;0'?>"sv, "<?xml version='1.0' encoding='UTF&#45;8'?>"sv,
    "<?xml\xC2\xA0version='1.0'?>"sv, "<?xml\0version='1.0'?>"sv, "<?xml version='1.0' \0?>"sv,
    "<?xml version='1.0'?><?xml version='1.0'?>"sv, " <?xml version='1.0'?>"sv,
    "\n<?xml version='1.0'?>"sv, "<!-- --><?xml version='1.0'?>"sv, "<?xmlversion='1.0'?>"sv,
    "<?xml-version='1.0'?>"sv, "<?xml:version version='1.0'?>"sv};

inline constexpr View DOCTYPES[] = {
    "<!DOCTYPE r>"sv,
    "<!DOCTYPE r [ ]>"sv,
    "<!DOCTYPE r [<!ENTITY e 'entity'>]>"sv,
    "<!DOCTYPE r [<!ENTITY e '<b>x</b>'><!ATTLIST a k CDATA 'd'>]>"sv,
    "<!DOCTYPE r [<!ELEMENT r ANY><!ATTLIST r k NMTOKENS #IMPLIED>]>"sv,
    "<!DOCTYPE r SYSTEM 'none.dtd'>"sv,
    "<!DOCTYPE r PUBLIC '-//p//' 'none.dtd'>"sv,
    "<!DOCTYPE r [<!NOTATION n SYSTEM 'n'><?p i?><!-- c -->]>"sv,
    "<!doctype r>"sv,
    "<!DOCTYPE>"sv,
    "<!DOCTYPE r"sv,
    "<!DOCTYPE r ["sv,
    "<!DOCTYPE 1>"sv,
    "<!DOC r>"sv,
    "<!>"sv,
    "<!r>"sv};

// What a document type declares, and how it goes wrong or says more than elements and attributes.
inline constexpr View CONTENTS[] = {
    "ANY"sv, "EMPTY"sv, "(#PCDATA)"sv, "(a,b?)"sv, "(a|b)*"sv, "(#PCDATA|a)*"sv, "((a,b)+|r*)"sv,
    "( a , b )"sv, "(a)"sv, "(#PCDATA)*"sv};
inline constexpr View TYPES[] = {
    "CDATA"sv, "CDATA"sv, "CDATA"sv, "NMTOKEN"sv, "NMTOKENS"sv, "ID"sv, "IDREF"sv, "IDREFS"sv,
    "(a|b)"sv, "( v | w )"sv, "ENTITY"sv, "ENTITIES"sv};
inline constexpr View DEFAULTS[] = {
    "#IMPLIED"sv, "#IMPLIED"sv, "#REQUIRED"sv, "'d'"sv, "\"d e\""sv, "' d  e '"sv, "'\td\r\n\n'"sv,
    "#FIXED 'f'"sv, "''"sv, "'u'"sv, "'a'"sv, "'\xC3\xA9'"sv, "'>'"sv, "\"'\""sv, "' '"sv, "']>'"sv,
    "'urn:a'"sv, "'http://www.w3.org/2000/xmlns/'"sv};
inline constexpr View DECLARED_NAMES[] = {
    "xmlns"sv, "xmlns"sv, "xmlns:p"sv, "xmlns:q"sv, "xml:lang"sv, "xml:space"sv, "p:k"sv, "q:a"sv,
    "n1"sv,
    "\xC3\xA9"sv};
inline constexpr View SUBSET_MISC[] = {
    "<!-- c -->"sv, "<!-- ] > ' -->"sv, "<?p i?>"sv, "<?p ]> ' ?>"sv, " "sv, "\n"sv, "\r\n"sv};
inline constexpr View BAD_SUBSETS[] = {
    "<!ENTITY e 'x'>"sv, "<!ENTITY % p ''>"sv, "%p;"sv, "<!NOTATION n SYSTEM 'n'>"sv,
    "<!ATTLIST a k NOTATION (n) 'n'>"sv, "<!ATTLIST a k CDATA '&lt;'>"sv,
    "<!ATTLIST a k CDATA '&#65;'>"sv, "<!ATTLIST a k CDATA '<'>"sv, "<!ATTLIST a k CDATA>"sv,
    "<!ATTLIST a k CDATA 'v>"sv, "<!ATTLIST a k CDATA v>"sv, "<!ATTLIST a k cdata 'v'>"sv,
    "<!ATTLIST a k CDATA #FIXED>"sv, "<!ATTLIST a kCDATA 'v'>"sv, "<!ATTLIST a k (a|a) 'a'>"sv,
    "<!ATTLIST a k () 'a'>"sv, "<!ATTLIST a k (a|b) 'c'>"sv, "<!ATTLIST a k NMTOKEN 'a b'>"sv,
    "<!ATTLIST a k ID 'a'>"sv, "<!ATTLIST a k ID #FIXED 'a'>"sv,
    "<!ATTLIST a xml:space CDATA 'd'>"sv,
    "<!ATTLIST a xml:space (default|preserve) 'preserve'>"sv, "<!ATTLIST a xmlns:p CDATA ''>"sv,
    "<!ATTLIST a xmlns:xml CDATA 'u'>"sv, "<!ATTLIST a xmlns CDATA #FIXED 'u'>"sv,
    "<!ATTLIST a zz:k CDATA 'v'>"sv, "<!ATTLIST a a:b:c CDATA 'v'>"sv, "<!ATTLIST a>"sv,
    "<!ATTLIST>"sv, "<!ATTLIST 1 k CDATA 'v'>"sv, "<!ATTLISTa k CDATA 'v'>"sv,
    "<!ATTLIST a k CDATA '\x01'>"sv, "<!ATTLIST a k CDATA '\xFF'>"sv,
    "<!ATTLIST a k CDATA '\xEF\xBF\xBF'>"sv, "<!ATTLIST a k CDATA 'v' k CDATA 'w'>"sv,
    "<!ATTLIST a xmlns:i CDATA 'http://www.w3.org/2001/XMLSchema-instance'>"sv,
    "<!ATTLIST a i:schemaLocation CDATA 'u none.xsd'>"sv, "<!ELEMENT a>"sv, "<!ELEMENT>"sv,
    "<!ELEMENT a (b>"sv, "<!ELEMENT a (a,b|r)>"sv, "<!ELEMENT a (#PCDATA,b)>"sv,
    "<!ELEMENT a ANY><!ELEMENT a ANY>"sv, "<!ELEMENT a any>"sv, "<!ELEMENT a (b)**>"sv,
    "<!ELEMENT a (b,)>"sv, "<!ELEMENT a(b)>"sv, "<!ELEMENT a ANY"sv, "<![INCLUDE[]]>"sv,
    "<!ELEMENT a ANY -- c -->"sv, "x"sv, "<a/>"sv, "]]>"sv, "<"sv, "&amp;"sv, "<!-- -- -->"sv,
    "<?xml version='1.0'?>"sv, "\0"sv, "\xFF"sv, "<!"sv, "[ "sv};

// Names. Of the letters beyond ASCII some are name characters and some name starts only to one of
// the editions of XML 1.0.
inline constexpr View LOCALS[] = {
    "a"sv, "b"sv, "r"sv, "k"sv, "x"sv, "item"sv, "name"sv, "value"sv, "id"sv, "long-name"sv,
    "A"sv, "_"sv, "_a.b-c"sv, "n1"sv, "type"sv, "nil"sv, "lang"sv, "space"sv, "base"sv,
    "sub.element"sv, "entry"sv, "t0"sv, "Z"sv, "x-"sv, "xm"sv, "ab"sv, "aa"sv, "aaa"sv, "k2"sv,
    "schema"sv, "class"sv, "href"sv};
inline constexpr View FOREIGN_LOCALS[] = {
    "\xC3\xA9"sv,  // U+E9
    "stra\xC3\x9F"
    "e"sv,                         // U+DF
    "\xCE\xB1\xCE\xB2"sv,          // Greek
    "\xD0\x96"sv,                  // Cyrillic
    "\xD7\xA9\xD7\x9C"sv,          // Hebrew
    "\xE0\xA4\x95\xE0\xA4\xBE"sv,  // Devanagari, with a combining mark
    "\xE4\xB8\xAD\xE6\x96\x87"sv,  // ideographs
    "\xEA\xB0\x80"sv,              // Hangul
    "a\xC2\xB7"sv,                 // the middle dot
    "a\xCC\x80"sv,                 // a combining mark
    "a\xE3\x80\xB1"sv,             // U+3031, an extender
    "a\xD9\xA1"sv,                 // an Arabic digit
    "\xE3\x80\x87"sv,              // U+3007
    "a\xE3\x80\xA1"sv};            // U+3021
inline constexpr View BAD_NAMES[] = {
    ""sv, "1"sv, "-"sv, "."sv, "1a"sv, "-a"sv, ".a"sv, " a"sv, ":"sv, ":a"sv, "a:"sv, "a:b:c"sv,
    "a::b"sv, "p:1"sv, "p:-a"sv, "p:\xC2\xB7"sv, "xml"sv, "xmlns"sv, "xml:a"sv, "xmlns:a"sv,
    "XML"sv, "Xml:a"sv, "xmlfoo"sv, "a\xC3\x97"sv, "\xC3\x97"sv, "\xC3\xB7"sv, "a\xC3\xB7"sv,
    "\xC2\xB7"sv, "\xCC\x80"sv, "\xCD\xBE"sv, "\xF0\x90\x80\x80"sv, "a\xF0\x9F\x98\x80"sv,
    "\xF0\xA0\x80\x80"sv, "a\xF3\xB0\x80\x80"sv, "\xE2\x80\x8C"sv, "\xE2\x81\xB0"sv,
    "a\xE2\x80\xBF"sv, "\xE2\x85\xA0"sv, "\xEF\xA4\x80"sv, "\xEF\xBF\xBD"sv, "\xC2\xAA"sv,
    "\xC7\xB1"sv, "\xD0\x8D"sv, "a\xD6\x88"sv, "\xE3\x84\xAD"sv, "\xE9\xBE\xA6"sv,
    "\xED\x9E\xA4"sv, "a\0b"sv, "a\xC3"sv, "a\xFF"sv, "a&amp;"sv, "a;"sv, "a<"sv, "a'"sv, "a\""sv,
    "a/b"sv, "a=b"sv, "a?"sv, "a!"sv, "a$"sv, "a@b"sv, "a[0]"sv, "a\\b"sv, "a^"sv, "a`"sv,
    "a{b}"sv, "a|b"sv, "a~"sv, "a\x7F"sv, "a\x01"sv, "a%b"sv, "a+b"sv, "a,b"sv, "a(b)"sv, "a*"sv,
    "a#b"sv, "q:a"sv, "zz:a"sv, "P:a"sv, "pp:a"sv};

inline constexpr View PREFIXES[] = {
    "p"sv, "q"sv, "r"sv, "ns"sv, "xsi"sv, "a"sv, "P"sv, "_x"sv, "\xC3\xA9"sv, "p-1"sv, "x.y"sv,
    "xm"sv};

inline constexpr View URIS[] = {"u"sv,
                                "v"sv,
                                "urn:a"sv,
                                "urn:b"sv,
                                "http://example.com/ns"sv,
                                "http://example.com/ns/"sv,
                                "http://www.w3.org/2001/XMLSchema-instance"sv,
                                "http://www.w3.org/2001/XMLSchema"sv,
                                "http://www.w3.org/1999/xhtml"sv,
                                "U"sv,
                                "u u"sv,
                                "\xC3\xA9"sv,
                                "p"sv,
                                "xmlns"sv,
                                "urn:&amp;"sv,
                                "&#117;"sv,
                                " "sv,
                                " u "sv};
inline constexpr View BAD_URIS[] = {"http://www.w3.org/XML/1998/namespace"sv,
                                    "http://www.w3.org/2000/xmlns/"sv,
                                    "http://www.w3.org/XML/1998/namespac&#101;"sv,
                                    "http://www.w3.org/2000/xmlns&#x2F;"sv,
                                    "http://www.w3.org/2001/XMLSchema-instanc&#101;"sv,
                                    " http://www.w3.org/2001/XMLSchema-instance"sv,
                                    "http://www.w3.org/XML/1998/namespace "sv,
                                    "http://www.w3.org/XML/1998/Namespace"sv,
                                    ""sv,
                                    "\t"sv,
                                    "&#10;"sv,
                                    "u\nv"sv,
                                    "u\r\nv"sv,
                                    "<"sv,
                                    "&"sv,
                                    "&u;"sv,
                                    "\x01"sv,
                                    "\xFF"sv,
                                    "&#xFFFE;"sv,
                                    "&#0;"sv,
                                    "]]>"sv};

// Whole declarations and attributes whose names are special.
inline constexpr View SPECIAL_ATTRIBUTES[] = {"xml:lang='en'"sv,
                                              "xml:lang=''"sv,
                                              "xml:space='preserve'"sv,
                                              "xml:space='default'"sv,
                                              "xml:base='b'"sv,
                                              "xml:id='i'"sv,
                                              "xml:foo=' a  b '"sv,
                                              "xmlns:xml='http://www.w3.org/XML/1998/namespace'"sv,
                                              "xmlns=''"sv,
                                              "xmlns='u'"sv,
                                              "xmlnsx='1'"sv,
                                              "xmlfoo='1'"sv,
                                              "XMLNS='1'"sv,
                                              "xmln='1'"sv};
inline constexpr View BAD_ATTRIBUTES[] = {
    "xml:space='other'"sv,
    "xml:space=''"sv,
    "xmlns:p=''"sv,
    "xmlns:='u'"sv,
    "xmlns:p:q='u'"sv,
    "xmlns:1='u'"sv,
    "xmlns:xmlns='u'"sv,
    "xmlns:xmlns='http://www.w3.org/2000/xmlns/'"sv,
    "xmlns:xml='u'"sv,
    "xmlns:xml=''"sv,
    "xmlns:p='http://www.w3.org/XML/1998/namespace'"sv,
    "xmlns='http://www.w3.org/XML/1998/namespace'"sv,
    "xmlns:p='http://www.w3.org/2000/xmlns/'"sv,
    "xmlns='http://www.w3.org/2000/xmlns/'"sv,
    "xmlns:xmlfoo='u'"sv,
    "xmlns:XML='u'"sv,
    "xmlns xmlns='u'"sv,
    "xmlns='u' xmlns='u'"sv,
    "xmlns:p='u' xmlns:p='u'"sv,
    "xmlns:p='u' xmlns:q='u' p:k='1' q:k='2'"sv,
    "xmlns:p='u' xmlns='u' p:k='1' k='2'"sv,
    "k='1' k='2'"sv,
    "k='1' k='1'"sv,
    "p:k='1' p:k='2'"sv,
    "q:k='1'"sv,
    ":k='1'"sv,
    "k:='1'"sv,
    "xsi:schemaLocation='u none.xsd'"sv,
    "xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' xsi:schemaLocation='u none.xsd'"sv,
    "xsi:noNamespaceSchemaLocation='none.xsd' "
    "xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance'"sv,
    "xmlns:i='http://www.w3.org/2001/XMLSchema-instance' i:noNamespaceSchemaLocation=''"sv,
    "xmlns:i='http://www.w3.org/2001/XMLSchema-instanc&#101;' i:schemaLocation='u none.xsd'"sv,
    "xmlns:i='http://www.w3.org/2001/XMLSchema-instance' i:schemaLocatio&#110;='u none.xsd'"sv,
    "xmlns:i='http://www.w3.org/2001/XMLSchema-instance' i:nil='true' i:type='p:t'"sv,
    "schemaLocation='u none.xsd' noNamespaceSchemaLocation='none.xsd'"sv,
    "k"sv,
    "k="sv,
    "k=v"sv,
    "k='"sv,
    "k='v"sv,
    "k='v\""sv,
    "k=\"v'"sv,
    "k:'v'"sv,
    "='v'"sv,
    "'v'"sv,
    "k=='v'"sv,
    "k='v''w'"sv,
    "k='v'l='w'"sv,
    "k='v'/"sv,
    "/ k='v'"sv,
    "k='<'"sv,
    "k='a<b/>'"sv,
    "k='&'"sv,
    "k='&amp'"sv,
    "k='& amp;'"sv,
    "k='&e;'"sv,
    "k='&#x;'"sv,
    "k='&#0;'"sv,
    "k='\0'"sv,
    "k='\x01'"sv,
    "k='\x7F'"sv,
    "k='\xC2\x80'"sv,
    "k='\xEF\xBF\xBE'"sv,
    "k='\xEF\xBF\xBF'"sv,
    "k='\xED\xA0\x80'"sv,
    "k='\xED\xA0\xBD\xED\xB8\x80'"sv,
    "k='\xFF'"sv,
    "k='\xC3'"sv,
    "k='\xC3' l='\xA9'"sv,
    "k='\xF4\x90\x80\x80'"sv,
    "k='&#xD800;'"sv,
    "k='&#xFFFF;'"sv,
    "k='&lt;&#60;&#38;#60;'"sv,
    "<"sv,
    ">"sv,
    "&amp;"sv,
    "<!-- -->"sv,
    "<?p?>"sv,
    ","sv,
    ";"sv};

inline constexpr View VALUES[] = {
    "v"sv, "value"sv, " "sv, "  "sv, "\n"sv, "\t"sv, "\r"sv, "\r\n"sv, "\n\r"sv, "\r\r\n"sv,
    "&amp;"sv, "&lt;"sv, "&gt;"sv, "&quot;"sv, "&apos;"sv, "&#9;"sv, "&#10;"sv, "&#13;"sv,
    "&#13;\n"sv, "\r&#10;"sv, "&#32;"sv, "&#x20;"sv, "&#xA;"sv, "&#xD;"sv, ">"sv, "]]>"sv,
    "&#x3C;"sv, "&#38;"sv, "true"sv, "0"sv, "1.5"sv, "a b  c"sv, " a "sv, "&#8364;"sv,
    "&#x1F600;"sv, "&#39;"sv, "&#34;"sv, "/"sv, "/>"sv, "?>"sv, "--"sv, "="sv};
inline constexpr View FOREIGN_TEXTS[] = {
    "\xC3\xA9"sv,          // Latin
    "\xC2\x80"sv,          // the first of two bytes, a control character
    "\xC2\x85"sv,          // a line end of XML 1.1
    "\xC2\xA0"sv,          // no-break space
    "\xDF\xBF"sv,          // the last of two bytes
    "\xE0\xA0\x80"sv,      // the first of three
    "\xE2\x80\xA8"sv,      // a line separator
    "\xE2\x82\xAC"sv,      // the euro
    "\xED\x9F\xBF"sv,      // the last before the surrogates
    "\xEE\x80\x80"sv,      // the first behind them
    "\xEF\xB7\x90"sv,      // U+FDD0, no character but allowed
    "\xEF\xBB\xBF"sv,      // the mark, inside
    "\xEF\xBF\xBC"sv,      // U+FFFC
    "\xEF\xBF\xBD"sv,      // the replacement character
    "\xF0\x90\x80\x80"sv,  // the first of four bytes
    "\xF0\x9F\x98\x80"sv,  // a face
    "\xF0\x9F\xBF\xBE"sv,  // U+1FFFE, no character but allowed
    "\xF4\x8F\xBF\xBF"sv,  // U+10FFFF
    "\xD0\x9F\xD1\x80\xD0\xB8\xD0\xB2\xD0\xB5\xD1\x82"sv,
    "\xE4\xBD\xA0\xE5\xA5\xBD\xEF\xBC\x8C\xE4\xB8\x96\xE7\x95\x8C"sv,
    "\xD9\x85\xD8\xB1\xD8\xAD\xD8\xA8\xD8\xA7 abc \xCE\xB1"sv,
    "e\xCC\x81"sv,
    "\x7F"sv};
inline constexpr View BAD_CHARACTERS[] = {
    "\0"sv, "\x01"sv, "\x02"sv, "\x08"sv, "\x0B"sv, "\x0C"sv, "\x0E"sv, "\x1B"sv, "\x1F"sv,
    "\x80"sv, "\xBF"sv, "\xC0"sv, "\xC0\x80"sv, "\xC0\xAF"sv, "\xC1\xBF"sv, "\xC2"sv, "\xC2 "sv,
    "\xC3("sv, "\xC3\xC3\xA9"sv, "\xDF"sv, "\xE0"sv, "\xE0\x80\x80"sv, "\xE0\x9F\xBF"sv,
    "\xE0\xA0"sv, "\xE2\x82"sv, "\xE2\x82 "sv, "\xE2("sv, "\xE2\x28\xA1"sv, "\xE2\x82\x28"sv,
    "\xED\xA0\x80"sv, "\xED\xAF\xBF"sv, "\xED\xB0\x80"sv, "\xED\xBF\xBF"sv,
    "\xED\xA0\xBD\xED\xB8\x80"sv, "\xEF\xBF\xBE"sv, "\xEF\xBF\xBF"sv, "\xEF\xBF"sv, "\xF0"sv,
    "\xF0\x80\x80\x80"sv, "\xF0\x8F\xBF\xBF"sv, "\xF0\x90"sv, "\xF0\x90\x80"sv, "\xF0\x9F\x98"sv,
    "\xF0\x9F\x98("sv, "\xF0\x28\x8C\xBC"sv, "\xF4\x90\x80\x80"sv, "\xF5\x80\x80\x80"sv,
    "\xF7\xBF\xBF\xBF"sv, "\xF8\x88\x80\x80\x80"sv, "\xFC\x84\x80\x80\x80\x80"sv, "\xFE"sv,
    "\xFF"sv, "\xFE\xFF"sv, "\xFF\xFE"sv, "\xA9\xC3"sv, "\x1A"sv, "\x00\x00"sv};

inline constexpr View REFERENCES[] = {
    "&amp;"sv, "&lt;"sv, "&gt;"sv, "&quot;"sv, "&apos;"sv, "&#9;"sv, "&#10;"sv, "&#13;"sv,
    "&#32;"sv, "&#65;"sv, "&#x41;"sv, "&#x4a;"sv, "&#x4A;"sv, "&#0065;"sv, "&#x000041;"sv,
    "&#128;"sv, "&#xE9;"sv, "&#x7FF;"sv, "&#x800;"sv, "&#x20AC;"sv, "&#xD7FF;"sv, "&#xE000;"sv,
    "&#xFFFD;"sv, "&#x10000;"sv, "&#x1F600;"sv, "&#x10FFFF;"sv, "&#1114111;"sv, "&#127;"sv,
    "&#xfDd0;"sv, "&#60;"sv, "&#38;"sv, "&#62;"sv, "&#93;"sv, "&#x0000000000000000000000000041;"sv};
inline constexpr View BAD_REFERENCES[] = {
    "&"sv, "&;"sv, "& "sv, "&&amp;"sv, "&amp"sv, "&amp amp;"sv, "& amp;"sv, "&AMP;"sv, "&Lt;"sv,
    "&nbsp;"sv, "&e;"sv, "&amp:;"sv, "&amps;"sv, "&am;"sv, "&a;"sv, "&p:a;"sv, "&1;"sv,
    "&\xC3\xA9;"sv, "&#"sv, "&#;"sv, "&# 65;"sv, "&#65"sv, "&#65 ;"sv, "&#6 5;"sv, "&#a;"sv,
    "&#6a;"sv, "&#6b;"sv, "&#1e;"sv,
    "&#-65;"sv, "&#+65;"sv, "&#x"sv, "&#x;"sv, "&#X41;"sv, "&#x 41;"sv, "&#x4g;"sv,
    "&#xG;"sv, "&#x41"sv, "&#x-1;"sv, "&#0;"sv, "&#00;"sv, "&#x0;"sv, "&#1;"sv, "&#8;"sv,
    "&#11;"sv, "&#x1F;"sv, "&#xD800;"sv, "&#xDBFF;"sv, "&#xDC00;"sv, "&#xDFFF;"sv, "&#xFFFE;"sv,
    "&#xFFFF;"sv, "&#x110000;"sv, "&#1114112;"sv, "&#4294967361;"sv, "&#x100000041;"sv,
    "&#99999999999999999999;"sv, "&#x10000000000000041;"sv, "&#x80000041;"sv, "&#x200041;"sv,
    "%amp;"sv, "&#xD83D;&#xDE00;"sv, "&#x1FFFFF;"sv, "&lt"sv, "&\0;"sv, "&#\0;"sv};

inline constexpr View TEXTS[] = {
    "text"sv, "a"sv, "some words"sv, " "sv, "   "sv, "\n"sv, "\t"sv, "\r"sv, "\r\n"sv, "\r\r\n"sv,
    "\n\r"sv, "\n  "sv, " x "sv, ">"sv, "]"sv, "]]"sv, "]] >"sv, "]>"sv, "]]&gt;"sv, "&#93;]>"sv,
    "]&#93;>"sv, "]]&#62;"sv, "'"sv, "\""sv, "--"sv, "?>"sv, "/>"sv, "="sv, "]]<!---->>"sv,
    "]]<?p?>>"sv, "]]<![CDATA[>]]>"sv, "0"sv, "\x7F"sv, ";"sv, "#"sv, "-->"sv};
inline constexpr View BAD_TEXTS[] = {
    "]]>"sv, "]]]>"sv, "]]]]]>"sv, "x]]>y"sv, "\n]]>"sv, "&amp;]]>"sv, "<"sv, "< a/>"sv, "<>"sv,
    "</>"sv, "<1/>"sv, "<-/>"sv, "<&amp;/>"sv, "<!"sv, "<!-"sv, "<!x>"sv, "<!ELEMENT a ANY>"sv,
    "<!DOCTYPE r>"sv, "<?"sv, "<?>"sv, "<%a/>"sv, "</b>"sv, "<a"sv, "<a/"sv, "<a/ >"sv,
    "<a / >"sv, "</a"sv, "<a><b></a></b>"sv, "<![INCLUDE[x]]>"sv, "<<a/>"sv, "]]\0>"sv,
    "<a></a b='c'>"sv, "<a></ a>"sv, "<a></a\n>"sv, "<a></A>"sv, "<a></aa>"sv, "<aa></a>"sv,
    "<\0a/>"sv, "<a/></a>"sv, "]]>]]>"sv};

inline constexpr View SECTIONS[] = {
    ""sv, " "sv, "\n"sv, "\r\n"sv, "\r"sv, "x"sv, "a<b&amp;c>"sv, "]"sv, "]]"sv, "]]]"sv,
    "]] >"sv, "]>"sv, "<![CDATA["sv, "&"sv, "<a>"sv, "QQ=="sv, "QUI="sv, "QUJD"sv, "AAECAw=="sv,
    "\nQUJD\n"sv, " QUJD"sv, "Q UJD"sv, "QUJD QQ=="sv, "QQ ="sv, "QQ="sv, "Q"sv, "QQ==QQ=="sv,
    "QQ==="sv, "=QQ="sv, "QR=="sv, "QUJ="sv, "QU-_"sv, "AAAA \xE2\x82\xAC"sv, "QUJD\tQUJD"sv,
    "QUJD\rQUJD"sv, "QUJD  QUJD"sv, "QUJD\r\nQUJD"sv, "/+A="sv, "abcd"sv, "A A A A"sv, "QUJD "sv,
    "AAAA"sv, "----"sv, "0"sv, "12345678"sv};
inline constexpr View BAD_SECTIONS[] = {
    "<![CDATA["sv, "<![CDATA[]"sv, "<![CDATA[]]"sv, "<![CDATA[x]]&gt;"sv, "<![CDATA]]>"sv,
    "<![cdata[x]]>"sv, "<![CDATA [x]]>"sv, "<! [CDATA[x]]>"sv, "<![ CDATA[x]]>"sv,
    "<![CDATA[x]] >"sv, "<![CDATA[x] ]>"sv, "<![CDAT[x]]>"sv, "<![CDATAx[x]]>"sv, "<!["sv,
    "<![CDATA[\0]]>"sv, "<![CDATA[\x01]]>"sv, "<![CDATA[\xFF]]>"sv, "<![CDATA[\xC3]]>"sv,
    "<![CDATA[\xEF\xBF\xBF]]>"sv, "<![CDATA[\xED\xA0\x80]]>"sv, "<![CDATA[x]]>]]>"sv,
    "<!CDATA[x]]>"sv, "<![CDATA[\xE2\x82]]>"sv, "<![CDATA[QQ==\x02]]>"sv};

inline constexpr View COMMENTS[] = {
    "<!---->"sv, "<!-- -->"sv, "<!-- c -->"sv, "<!--c-->"sv, "<!-- - -->"sv,
    "<!-- <a> & ]]> ?> -->"sv, "<!--\n\r\n\r-->"sv, "<!-- \xC3\xA9\xF0\x9F\x98\x80 -->"sv,
    "<!-- &amp; &e; -->"sv, "<!-->-->"sv, "<!--- -->"sv, "<!--\t-->"sv, "<!-- \x7F -->"sv};
inline constexpr View BAD_COMMENTS[] = {
    "<!-- -- -->"sv, "<!-- --->"sv, "<!----->"sv, "<!--->"sv, "<!-->"sv, "<!--"sv, "<!---"sv,
    "<!----"sv, "<!-- -"sv, "<!-- --"sv, "<!- - -->"sv, "<! -- -->"sv, "<!-- \0 -->"sv,
    "<!-- \x01 -->"sv, "<!-- \xFF -->"sv, "<!-- \xC3 -->"sv, "<!-- \xEF\xBF\xBE -->"sv,
    "<!-- \xED\xA0\x80 -->"sv, "<!--a--b-->"sv, "<!-- -- >"sv, "<!-- \xE2\x82 -->"sv, "<!---- >"sv};

inline constexpr View INSTRUCTIONS[] = {
    "<?p?>"sv, "<?p ?>"sv, "<?p i?>"sv, "<?t ?\?>"sv, "<?p \n\ti\r\n?>"sv,
    "<?p <a> & ]]> -- ?>"sv, "<?p-1.x data?>"sv, "<?xml-stylesheet a='b'?>"sv, "<?xmlfoo?>"sv,
    "<?p \xC3\xA9?>"sv, "<?p \xF0\x9F\x98\x80 ?>"sv, "<?p ? ?>"sv, "<?p ?x?>"sv, "<?_?>"sv,
    "<?\xC3\xA9 x?>"sv, "<?p\r?>"sv, "<?p ??\?>"sv, "<?xm?>"sv, "<?XMLx?>"sv};
inline constexpr View BAD_INSTRUCTIONS[] = {
    "<?xml?>"sv, "<?xml x?>"sv, "<?XML?>"sv, "<?xMl x?>"sv, "<?xml version='1.0'?>"sv,
    "<?p:q?>"sv, "<?p:q x?>"sv, "<?:p?>"sv, "<?1?>"sv, "<? p?>"sv, "<?\?>"sv, "<?p?"sv, "<?p"sv,
    "<?"sv, "<?p >"sv, "<?p i"sv, "<?p i?"sv, "<?p\0?>"sv, "<?p \0?>"sv, "<?p \x01?>"sv,
    "<?p \xFF?>"sv, "<?p \xC3?>"sv, "<?p \xEF\xBF\xBF?>"sv, "<?p\xC3\x97?>"sv,
    "<?p\xF0\x90\x80\x80?>"sv, "<?p/?>"sv, "<?p'x'?>"sv, "<?t?x?>"sv,
    "<?t?\?>"sv, "<?-?>"sv, "<?p i? >"sv,
    "<?p \xED\xA0\x80?>"sv, "<?p: x?>"sv};

inline constexpr View BAD_ENDS[] = {
    "x"sv, "&#32;"sv, "&amp;"sv, "<b/>"sv, "<b></b>"sv, "</a>"sv, "<![CDATA[]]>"sv, "<"sv, "</"sv,
    "<!"sv, "<?"sv, "\0"sv, "\0\0\0"sv, "\x01"sv, "\x1A"sv, "\xC3"sv, "\xE2\x82"sv,
    "\xF0\x9F\x98"sv, "\xFF"sv, "\x80"sv, "\xEF\xBB\xBF"sv, "\xC2\xA0"sv, "<!DOCTYPE r>"sv,
    "<?xml version='1.0'?>"sv, "]]>"sv, "<!--"sv, "<?p"sv, " \xC3"sv, "\n\xE2"sv, " \0"sv,
    "\xEF\xBF\xBE"sv, "\xC0\x80"sv, "\xF0"sv, "\xED\xA0\x80"sv, "-->"sv, "?>"sv, ">"sv, "<a"sv,
    "\n\n\f"sv};

}  // namespace pieces
// clang-format on

}  // namespace norvask_test

#endif
