// Documents whose DTD declares elements and attributes are the same with the fast lane and by the
// parser alone, and those whose DTD changes nothing are taken.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "load/loading.h"
#include "norvask/norvask.h"
#include "support/recording_handler.h"
#include "support/tree_text.h"

namespace norvask {
namespace {

// The lane reads only what is much longer than its DTD.
const std::string PADDING = "<!--" + std::string(4000, 'x') + "-->";

struct SRead {
    std::string events;
    std::string tree;
    ELane lane;
};

template <typename Load>
std::string ToldBy(Load load) {
    try {
        return load();
    } catch (CXMLException& exception) {
        return std::to_string(exception.GetID()) + " " + exception.GetMessage();
    }
}

SRead Read(const std::string& document, bool fastLane, bool validate = false) {
    SRead read = {};
    SLoadOptions options;
    options.fastLane = fastLane;
    options.validate = validate;
    options.lane = &read.lane;
    const auto* const bytes = reinterpret_cast<const unsigned char*>(document.data());
    const auto length = static_cast<unsigned int>(document.size());
    for (const bool keepPrefixes : {false, true}) {
        read.tree += ToldBy([&] {
            CXMLDocument* const tree = LoadTree(bytes, length, keepPrefixes, options);
            const std::string text = norvask_test::TreeText(*tree);
            tree->Delete();
            return text;
        });
    }
    norvask_test::CRecordingHandler handler;
    const std::string failure = ToldBy([&] {
        LoadEvents(bytes, length, handler, options);
        return std::string();
    });
    read.events = handler.Transcript() + failure;
    return read;
}

const char* const SUBSETS[] = {"<!ELEMENT a ANY>",
                               "<!ELEMENT a (b*)>",
                               "<!ELEMENT a EMPTY>",
                               "<!ELEMENT a (b>",
                               "<!ELEMENT a ANY><!ELEMENT a ANY>",
                               "<!ATTLIST a x CDATA #IMPLIED><!ATTLIST a x CDATA '50'>",
                               "<!ATTLIST a x CDATA '5 0'><!ATTLIST a x CDATA '51'>",
                               "<!ATTLIST a x CDATA ' 5\t\n0 '>",
                               "<!ATTLIST a x CDATA #FIXED 'v'>",
                               "<!ATTLIST a x CDATA ''>",
                               "<!ATTLIST a x CDATA '\xC3\xA9'>",
                               "<!ATTLIST a x CDATA 'a]]>b'>",
                               "<!ATTLIST a x CDATA '>\"'>",
                               "<!ATTLIST a x CDATA '&lt;&#65;'>",
                               "<!ATTLIST a x CDATA 'v' y CDATA 'w'>",
                               "<!ATTLIST a x NMTOKEN 'v'>",
                               "<!ATTLIST a x NMTOKENS #IMPLIED>",
                               "<!ATTLIST a x ID #IMPLIED>",
                               "<!ATTLIST a x (b|c) 'b'>",
                               "<!ATTLIST a p:x CDATA 'v'>",
                               "<!ATTLIST a xmlns CDATA 'u'>",
                               "<!ATTLIST a xmlns CDATA 'v'>",
                               "<!ATTLIST a xmlns:q CDATA ''>",
                               "<!ATTLIST p:a xmlns:p CDATA 'v'>",
                               "<!ATTLIST a xml:space (default|preserve) 'preserve'>",
                               "<!ATTLIST b x CDATA 'v'>",
                               "<!ATTLIST a >",
                               "<!-- ]> --><?pi ]> ?><!ATTLIST a x CDATA 'v'>",
                               "<!NOTATION n SYSTEM 'x'>",
                               "<!ENTITY y 'z'>",
                               "<!ENTITY % y 'z'>",
                               "%y;",
                               "<![INCLUDE[<!ELEMENT a ANY>]]>",
                               " "};
const char* const ROOTS[] = {"<a/>",
                             "<a x='1'/>",
                             "<a x=' b  c '/>",
                             "<a x='bcdefghijk '/>",
                             "<a x='bcdefghij  k'/>",
                             "<a x='b'>  <b/> \n <b x='2'/></a>",
                             "<a y='3' xmlns='u'><a/><a x='b c'/></a>",
                             "<a x='b' x='c'/>",
                             "<a><b>t<![CDATA[eA==]]></b></a>",
                             "<p:a xmlns:p='u' x='1'><a/></p:a>",
                             "<a xmlns:q='l'/>",
                             "<a>&lt;&y;</a>"};

TEST(PlainDoctype, GivesWhatTheParserGives) {
    int taken = 0;
    for (const std::string subset : SUBSETS) {
        for (const std::string root : ROOTS) {
            for (const std::string declaration : {"", "<?xml version='1.0' standalone='yes'?>"}) {
                const std::string document =
                    declaration + "<!DOCTYPE a [" + subset + "] >" + PADDING + root;
                SCOPED_TRACE(subset + " " + root);
                const SRead read = Read(document, true);
                const SRead parsed = Read(document, false);
                EXPECT_EQ(read.events, parsed.events);
                EXPECT_EQ(read.tree, parsed.tree);
                taken += read.lane == ELane::TAKEN ? 1 : 0;
            }
        }
    }
    EXPECT_GT(taken, 200);
}

ELane LaneOf(const std::string& prolog, const std::string& root, bool validate = false) {
    return Read(prolog + PADDING + root, true, validate).lane;
}

TEST(PlainDoctype, IsTakenWhenItChangesNothing) {
    EXPECT_EQ(LaneOf("<!DOCTYPE a [<!ELEMENT a ANY>]>", "<a/>"), ELane::TAKEN);
    EXPECT_EQ(LaneOf("<!DOCTYPE a [<!ATTLIST a x CDATA 'v'>]>", "<a/>"), ELane::TAKEN);
    EXPECT_EQ(LaneOf("<!DOCTYPE a [<!ATTLIST a x (b|c) #REQUIRED>]>", "<a x='b'/>"), ELane::TAKEN);
}

TEST(PlainDoctype, IsLeftToTheParserOtherwise) {
    EXPECT_EQ(LaneOf("<!DOCTYPE a [<!ELEMENT a ANY>]>", "<a/>", true), ELane::LEFT);
    EXPECT_EQ(LaneOf("<!DOCTYPE a SYSTEM 'a.dtd'>", "<a/>"), ELane::LEFT);
    EXPECT_EQ(LaneOf("<!DOCTYPE a [<!ENTITY y 'z'>]>", "<a/>"), ELane::LEFT);
    EXPECT_EQ(LaneOf("<!DOCTYPE a [<!ATTLIST a x (b|c) #REQUIRED>]>", "<a x=' b'/>"), ELane::LEFT);
    EXPECT_EQ(LaneOf("<!DOCTYPE a [<!ATTLIST a x CDATA 'v' y CDATA 'w'>]>", "<a/>"), ELane::LEFT);
}

TEST(PlainDoctype, IsLeftToTheParserWhenItIsMuchOfTheDocument) {
    EXPECT_EQ(Read("<!DOCTYPE a [<!ELEMENT a ANY>]><a/>", true).lane, ELane::LEFT);
}

}  // namespace
}  // namespace norvask
