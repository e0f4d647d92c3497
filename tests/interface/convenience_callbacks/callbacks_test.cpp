// Conveniences without a tree: the handler made of lambdas, attributes by name, elements in one
// call.
#include <climits>
#include <cstdint>
#include <stdexcept>
#include <type_traits>

#include "support/recording_handler.h"
#include "support/testing.h"
#include "support/writing.h"

using namespace norvask_test;

namespace {

// Every kind of event.
const char* const DOCUMENT =
    "<!DOCTYPE a [<!ATTLIST a d CDATA 'default'>]><a xmlns='urn:a' xmlns:p='urn:p' k='v' p:k='w'>"
    "text<p:b/><![CDATA[x < y]]></a>";

// All lambdas set, each handing on to a handler that writes down what it is told.
CXMLLambdaHandler HandingOnTo(CXMLSaxHandler& to) {
    CXMLLambdaHandler handler;
    handler.onStartDocument = [&to] { to.StartDocument(); };
    handler.onEndDocument = [&to] { to.EndDocument(); };
    handler.onStartElement = [&to](const SXMLStartTag& tag) {
        to.StartElement(tag.uri, tag.localName, tag.qName, tag.attributes);
    };
    handler.onEndElement = [&to](const SXMLEndTag& tag) {
        to.EndElement(tag.uri, tag.localName, tag.qName);
    };
    handler.onCharacters = [&to](const char* text) { to.Characters(text); };
    handler.onStartCDATA = [&to] { to.StartCDATA(); };
    handler.onEndCDATA = [&to] { to.EndCDATA(); };
    handler.onStartDTD = [&to](const char* name, const char* publicId, const char* systemId) {
        to.StartDTD(name, publicId, systemId);
    };
    handler.onStartNamespace = [&to](const char* prefix, const char* uri) {
        to.StartNamespace(prefix, uri);
    };
    handler.onEndNamespace = [&to](const char* prefix) { to.EndNamespace(prefix); };
    return handler;
}

template <typename T>
std::string Value(T value) {
    return Written([&](CXMLSaxWriter& writer) { XMLWriteElement(writer, "e", value); });
}

template <typename T, typename = void>
constexpr bool CAN_BE_WRITTEN = false;
template <typename T>
constexpr bool CAN_BE_WRITTEN<T, std::void_t<decltype(XMLWriteElement(
                                     std::declval<CXMLSaxWriter&>(), "e", std::declval<T>()))>> =
    true;

}  // namespace

TEST(ConvenienceCallbacks, EveryLambdaIsCalledAsTheCallbackWouldBe) {
    CRecordingHandler direct;
    XMLLoadText(DOCUMENT, direct);
    CRecordingHandler behind;
    CXMLLambdaHandler handler = HandingOnTo(behind);
    XMLLoadText(DOCUMENT, handler);
    EXPECT_EQ(behind.Transcript(), direct.Transcript());
    for (const char* event :
         {"StartDocument", "EndDocument", "StartElement", "EndElement", "Characters", "StartCDATA",
          "EndCDATA", "StartDTD", "StartNamespace", "EndNamespace"}) {
        EXPECT_NE(direct.Transcript().find(event), std::string::npos) << event;
    }
}

TEST(ConvenienceCallbacks, NothingNeedBeSet) {
    CXMLLambdaHandler handler;
    EXPECT_NO_THROW(XMLLoadText(DOCUMENT, handler));
}

TEST(ConvenienceCallbacks, CopiesHaveLambdasOfTheirOwn) {
    int calls = 0;
    CXMLLambdaHandler handler;
    handler.onStartElement = [&](const SXMLStartTag&) { ++calls; };
    CXMLLambdaHandler copy = handler;
    handler.onStartElement = nullptr;
    XMLLoadText("<a/>", handler);
    EXPECT_EQ(calls, 0);
    XMLLoadText("<a><b/></a>", copy);
    EXPECT_EQ(calls, 2);
}

TEST(ConvenienceCallbacks, WhatALambdaThrowsReachesTheCaller) {
    CXMLLambdaHandler handler;
    handler.onCharacters = [](const char* text) { throw std::runtime_error(text); };
    EXPECT_THROW(XMLLoadText("<a>text</a>", handler), std::runtime_error);
    handler.onCharacters = [](const char*) { throw CXMLException(7, "mine"); };
    EXPECT_XML_ERROR(XMLLoadText("<a>text</a>", handler), 7, "mine");
}

TEST(ConvenienceCallbacks, TagsAreAskedByName) {
    CXMLLambdaHandler handler;
    std::string seen;
    handler.onStartElement = [&](const SXMLStartTag& tag) {
        if (tag.Is("p:b")) seen += "q";
        if (tag.Is("urn:p", "b")) seen += "u";
        if (tag.Is("b") || tag.Is("urn:a", "b") || tag.Is("", "b")) seen += "!";
    };
    handler.onEndElement = [&](const SXMLEndTag& tag) {
        if (tag.Is("p:b")) seen += "Q";
        if (tag.Is("urn:p", "b")) seen += "U";
        if (tag.Is("b") || tag.Is("urn:a", "b") || tag.Is("", "b")) seen += "!";
    };
    XMLLoadText(DOCUMENT, handler);
    EXPECT_EQ(seen, "quQU");
}

TEST(ConvenienceCallbacks, AttributesAreFoundByName) {
    CXMLLambdaHandler handler;
    int tags = 0;
    handler.onStartElement = [&](const SXMLStartTag& tag) {
        if (tags++ > 0) {
            EXPECT_STREQ(tag.Value("k"), "") << "no attributes";
            return;
        }
        EXPECT_STREQ(tag.Value("k"), "v");
        EXPECT_STREQ(tag.Value("p:k"), "w");
        EXPECT_STREQ(tag.Value("", "k"), "v");
        EXPECT_STREQ(tag.Value("urn:p", "k"), "w");
        EXPECT_STREQ(tag.Value("d"), "default");
        EXPECT_STREQ(tag.Value("urn:a", "k"), "");
        EXPECT_STREQ(tag.Value("none"), "");
        EXPECT_STREQ(tag.Value(nullptr), "");
        EXPECT_STREQ(XMLAttributeValue(tag.attributes, "p:k"), "w");
        EXPECT_STREQ(XMLAttributeValue(tag.attributes, "urn:p", "k"), "w");
        EXPECT_TRUE(Same(XMLFindAttribute(tag.attributes, "k"), tag.attributes[0]));
        EXPECT_TRUE(Same(XMLFindAttribute(tag.attributes, "", "k"), tag.attributes[0]));
        EXPECT_EQ(XMLFindAttribute(tag.attributes, "none"), nullptr);
        EXPECT_EQ(XMLFindAttribute(tag.attributes, "urn:none", "k"), nullptr);
        EXPECT_EQ(XMLFindAttribute(tag.attributes, nullptr), nullptr);
        EXPECT_EQ(XMLFindAttribute(tag.attributes, nullptr, "k"), nullptr);
        EXPECT_EQ(XMLFindAttribute(tag.attributes, "", nullptr), nullptr);
        EXPECT_EQ(XMLFindAttribute(nullptr, "k"), nullptr);
        EXPECT_EQ(XMLFindAttribute(nullptr, "", "k"), nullptr);
    };
    XMLLoadText(DOCUMENT, handler);
    EXPECT_EQ(tags, 2);
}

TEST(ConvenienceCallbacks, AnEmptyAttributeIsFound) {
    CXMLLambdaHandler handler;
    handler.onStartElement = [](const SXMLStartTag& tag) {
        ASSERT_NE(XMLFindAttribute(tag.attributes, "k"), nullptr);
        EXPECT_STREQ(tag.Value("k"), "");
    };
    XMLLoadText("<a k=''/>", handler);
}

TEST(ConvenienceCallbacks, ElementsWithOneValue) {
    EXPECT_EQ(Value("a < b"), "<e>a &#x3c; b</e>");
    EXPECT_EQ(Value(std::string("text")), "<e>text</e>");
    EXPECT_EQ(Value(""), "<e></e>");
    EXPECT_EQ(Value(static_cast<const char*>(nullptr)), "<e></e>");
    EXPECT_EQ(Value(true), "<e>true</e>");
    EXPECT_EQ(Value(false), "<e>false</e>");
    EXPECT_EQ(Value(0.5), "<e>0.5</e>");
    EXPECT_EQ(Value(0.5F), "<e>0.5</e>");
    EXPECT_EQ(Value(short{-3}), "<e>-3</e>");
    EXPECT_EQ(Value(std::uint8_t{200}), "<e>200</e>");
    EXPECT_EQ(Value(std::int8_t{-100}), "<e>-100</e>");
    EXPECT_EQ(Value(42), "<e>42</e>");
    EXPECT_EQ(Value(UINT_MAX), "<e>4294967295</e>");
    EXPECT_EQ(Value(LONG_MIN), "<e>-9223372036854775808</e>");
    EXPECT_EQ(Value(LLONG_MAX), "<e>9223372036854775807</e>");
    EXPECT_EQ(Value(ULONG_MAX), "<e>18446744073709551615</e>");
    EXPECT_EQ(Value(ULLONG_MAX), "<e>18446744073709551615</e>");
}

// A pointer must not become a truth value, nor a character its code.
TEST(ConvenienceCallbacks, WhatIsNoValueIsRefusedByTheCompiler) {
    EXPECT_TRUE(CAN_BE_WRITTEN<int> && CAN_BE_WRITTEN<const char*> && CAN_BE_WRITTEN<std::string>);
    EXPECT_FALSE(CAN_BE_WRITTEN<const void*>);
    EXPECT_FALSE(CAN_BE_WRITTEN<int*>);
    EXPECT_FALSE(CAN_BE_WRITTEN<char>);
    EXPECT_FALSE(CAN_BE_WRITTEN<wchar_t>);
    EXPECT_FALSE(CAN_BE_WRITTEN<char16_t>);
    EXPECT_FALSE(CAN_BE_WRITTEN<const wchar_t*>);
}

TEST(ConvenienceCallbacks, ElementsWithAttributesAndOthersInside) {
    CXMLAttribut unit("unit", "m");
    CXMLAttribut* attributes[] = {&unit, nullptr};
    EXPECT_EQ(Written([&](CXMLSaxWriter& writer) {
                  XMLWriteElement(
                      writer, "row",
                      [&] {
                          XMLWriteElement(writer, "date", [&] { writer.Date(2024, 5, 17); });
                          XMLWriteElement(writer, "level", 2.5, attributes);
                          XMLWriteElement(writer, "name", "x", attributes);
                          XMLWriteElement(writer, "name", std::string("y"), attributes);
                          XMLWriteElement(writer, "empty", [] {});
                      },
                      attributes);
              }),
              "<row unit=\"m\"><date>2024-05-17</date><level unit=\"m\">2.5</level>"
              "<name unit=\"m\">x</name><name unit=\"m\">y</name><empty/></row>");
}

TEST(ConvenienceCallbacks, AFailureInTheMiddleLeavesTheElementOpen) {
    std::ostringstream out;
    CXMLSaxWriter writer;
    writer.StartDocument(&out, false, false);
    EXPECT_INVALID_NAME(XMLWriteElement(writer, "no name", 1), "no name");
    EXPECT_NO_CONVERSION(XMLWriteElement(writer, "date", [&] { writer.Date(2024, 13, 1); }));
    EXPECT_WRONG_FORMAT(writer.EndDocument(), 8);
    writer.EndElement();
    writer.EndDocument();
}
