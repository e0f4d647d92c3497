// Bytes that are no UTF-8: the exact place, and the bytes.
#include "support/problems.h"
#include "support/recording_handler.h"
#include "support/testing.h"

using namespace norvask_test;

namespace {

struct SBad {
    const char* bytes;
    const char* told;  // the bytes up to the next that may begin a character
};

// None of these is the beginning of a character, whatever follows.
const SBad BAD[] = {
    {"\x80", "0x80"},  // the middle of one
    {"\xBF\xBF", "0xBF 0xBF"},
    {"\xC0\x80", "0xC0 0x80"},  // too long for what it means
    {"\xC1\xBF", "0xC1 0xBF"},
    {"\xE0\x80\x80", "0xE0 0x80 0x80"},
    {"\xE0\x9F\xBF", "0xE0 0x9F 0xBF"},
    {"\xF0\x80\x80\x80", "0xF0 0x80 0x80 0x80"},
    {"\xF0\x8F\xBF\xBF", "0xF0 0x8F 0xBF 0xBF"},
    {"\xED\xA0\x80", "0xED 0xA0 0x80"},  // half a pair
    {"\xED\xBF\xBF", "0xED 0xBF 0xBF"},
    {"\xF4\x90\x80\x80", "0xF4 0x90 0x80 0x80"},  // beyond U+10FFFF
    {"\xF5\x80\x80\x80", "0xF5 0x80 0x80 0x80"},
    {"\xF8\x88\x80\x80\x80", "0xF8 0x88 0x80 0x80"},  // four are shown
    {"\xFC\x84\x80\x80\x80\x80", "0xFC 0x84 0x80 0x80"},
    {"\xFE", "0xFE"},
    {"\xFF", "0xFF"},
    {"\xC3(", "0xC3"},  // the rest is missing
    {"\xE9 ", "0xE9"},
    {"\xE2\x82 ", "0xE2 0x82"},
    {"\xF0\x9F\x98 ", "0xF0 0x9F 0x98"},
    {"\xF0\x9F\xC3\xA4", "0xF0 0x9F"},
};

// The beginnings of characters that a document may end in.
const SBad CUT_OFF[] = {
    {"\xC3", "0xC3"}, {"\xE2", "0xE2"},          {"\xE2\x82", "0xE2 0x82"},
    {"\xF0", "0xF0"}, {"\xF0\x9F", "0xF0 0x9F"}, {"\xF0\x9F\x98", "0xF0 0x9F 0x98"},
};

void ExpectIllFormed(const std::string& xml, const std::string& place, const std::string& told,
                     const std::string& path = "") {
    SCOPED_TRACE(Quoted(xml.size() < 300 ? xml : xml.substr(xml.size() - 300)));
    const auto lines = [&](const std::string& name) {
        return "fatal " + name + ":" + place + ": invalid UTF-8: " + told +
               (path.empty() ? "" : " @ " + path) + "\n";
    };
    const TemporaryFile file(".xml", xml);
    CRecordingHandler handler;
    EXPECT_PROBLEMS(XMLLoadText(xml), 2, lines("Memfile"));
    EXPECT_PROBLEMS(XMLLoadText(xml, handler), 2, lines("Memfile"));
    EXPECT_PROBLEMS(XMLLoadText(xml, SXMLLoadOptions().Untrusted()), 2, lines("Memfile"));
    EXPECT_PROBLEMS(XMLLoadText(xml, handler, SXMLLoadOptions().Validate()), 2, lines("Memfile"));
    EXPECT_PROBLEMS(XMLLoadFile(file.Name()), 2, lines(file.Name()));
    EXPECT_PROBLEMS(XMLLoadFile(file.Name(), handler), 2, lines(file.Name()));
    std::istringstream stream(xml);
    EXPECT_PROBLEMS(XMLLoadStream(stream, handler), 2, lines("Stream"));
    std::istringstream again(xml);
    EXPECT_PROBLEMS(XMLLoadStream(again), 2, lines("Stream"));
}

std::string Place(std::size_t line, std::size_t column) {
    return std::to_string(line) + ":" + std::to_string(column);
}

}  // namespace

TEST(ErrorIllFormed, EveryKindInEveryPlaceOfADocument) {
    for (const SBad& bad : BAD) {
        const std::string b = bad.bytes;
        ExpectIllFormed("<a>\n<b>x" + b + "</b></a> and more", "2:5", bad.told);
        ExpectIllFormed("<a k='v\xC3\xA4" + b + "'/> and more", "1:9", bad.told);
        ExpectIllFormed("<a>\n<b" + b + "></b></a> and more", "2:3", bad.told);
        ExpectIllFormed("<a>\r\n<!--\xF0\x9F\x98\x80" + b + "--></a> and more", "2:6", bad.told);
        ExpectIllFormed("<a>\r<![CDATA[" + b + "]]></a> and more", "2:10", bad.told);
        ExpectIllFormed("<?p " + b + "?><a/> and more", "1:5", bad.told);
        ExpectIllFormed("<!DOCTYPE a [<!ENTITY e '" + b + "'>]>\n<a/> and more", "1:26", bad.told);
        ExpectIllFormed(b + "<a/> and more", "1:1", bad.told);
        ExpectIllFormed("\xEF\xBB\xBF" + b + "<a/> and more", "1:1", bad.told);
        ExpectIllFormed("<?xml version='1.0'?>\n<a>" + b + " and more</a>", "2:4", bad.told);
    }
}

// The parser decodes in blocks of its own; the place is that of the bytes all the same.
TEST(ErrorIllFormed, FarFromTheBeginning) {
    for (const std::size_t length : {1023U, 1024U, 16383U, 16384U, 49149U, 49150U, 49151U, 49152U,
                                     49153U, 65535U, 65536U, 98303U, 98304U, 150000U}) {
        const std::string front = "<a>" + std::string(length - 3, 'x');
        for (const SBad& bad : {BAD[0], BAD[6], BAD[13], BAD[15], BAD[19]}) {
            ExpectIllFormed(front + bad.bytes + " and more </a>", Place(1, length + 1), bad.told);
        }
        ExpectIllFormed(front + "\n\n\xF0\x9F\x98\x80\xE9 and more </a>", "3:2", "0xE9");
    }
}

// The first of several.
TEST(ErrorIllFormed, OnlyTheFirstIsTold) {
    ExpectIllFormed("<a>\n\xFF</a>\n\x80 and \xE9 more", "2:1", "0xFF");
    ExpectIllFormed("<a>" + std::string(100000, 'x') + "\xC3(\n\xFF more </a>", "1:100004", "0xC3");
}

// The parser decodes ahead of what it tells, so the element is not known.
TEST(ErrorIllFormed, NoPathIsMadeUp) {
    ExpectIllFormed("<a>\n<b>" + std::string(20000, 'x') + "</b>\n<c>\xFF and more</c></a>", "3:4",
                    "0xFF");
}

// Here all was told.
TEST(ErrorIllFormed, CutOffAtTheEnd) {
    for (const SBad& bad : CUT_OFF) {
        const std::string b = bad.bytes;
        ExpectIllFormed("<a>\n<b>caf" + b, "2:7", bad.told, "/a/b[1]");
        ExpectIllFormed("<a>\n<b" + b, "2:3", bad.told, "/a");
        ExpectIllFormed("<a k='" + b, "1:7", bad.told);
        ExpectIllFormed("<a><!-- " + b, "1:9", bad.told, "/a");
        ExpectIllFormed("<a><![CDATA[" + b, "1:13", bad.told, "/a");
        ExpectIllFormed(b, "1:1", bad.told);
        for (const std::size_t length : {49149U, 49150U, 49151U, 49152U, 65535U, 65536U, 98304U})
            ExpectIllFormed("<a>" + std::string(length - 3, 'x') + b, Place(1, length + 1),
                            bad.told, "/a");
    }
    // Announced bytes reach beyond the end.
    ExpectIllFormed("<a>\xFF</a>", "1:4", "0xFF", "/a");
    ExpectIllFormed("<a>\n\xFC</a>", "2:1", "0xFC", "/a");
}

// An error in front of it is that error.
TEST(ErrorIllFormed, AnErrorInFrontOfItIsTold) {
    const std::string text(200000, 'x');
    EXPECT_PROBLEMS(XMLLoadText("<a>\n<b></c>" + text + "\xFF and more"), 2,
                    "fatal Memfile:2:6: expected end of tag 'b' @ /a/b[1]\n");
    EXPECT_PROBLEMS(XMLLoadText("<!DOCTYPE a [<!ELEMENT a ANY>]><a>\n<b/>" + text + "\xFF more",
                                SXMLLoadOptions().Validate()),
                    2, "error Memfile:2:5: no declaration found for element 'b' @ /a/b[1]\n");
    const SFailure all = FailureOf([&] {
        XMLLoadText("<!DOCTYPE a [<!ELEMENT a ANY>]><a>\n<b/>" + text + "\xFF more",
                    SXMLLoadOptions().Validate().CollectProblems());
    });
    EXPECT_EQ(all.Lines(),
              "error Memfile:2:5: no declaration found for element 'b' @ /a/b[1]\n"
              "fatal Memfile:2:200005: invalid UTF-8: 0xFF\n");
    EXPECT_EQ(all.text, LoadError("Memfile", 2, "no declaration found for element 'b'"));
}

// What the parser lets pass behind the root passes here, too: the plain loads take it.
TEST(ErrorIllFormed, WhatPassesInThePlainLoadsPasses) {
    for (const char* const xml : {"<a/>\n\xFF", "<a>x</a>\xE9", "<a/>\xF0\x9F\x98"}) {
        SCOPED_TRACE(Quoted(xml));
        EXPECT_EQ(TreeText(XMLLoadText(xml)), TreeText(LoadMemory(xml)));
    }
}

// Other encodings have no such bytes, or others.
TEST(ErrorIllFormed, OtherEncodingsAreNotTakenForUtf8) {
    const std::string latin = "<?xml version='1.0' encoding='ISO-8859-1'?>";
    EXPECT_EQ(TreeText(XMLLoadText(latin + "<a>\xFF</a>")), "a(\"\xC3\xBF\")");
    EXPECT_PROBLEMS(XMLLoadText(latin + "\n<a>\xFF<b></a>"), 2,
                    "fatal Memfile:2:10: expected end of tag 'b' @ /a/b[1]\n");
    EXPECT_EQ(ProblemsOf([] {
                  XMLLoadText("<?xml version='1.0' encoding='US-ASCII'?><a>\xE9</a>");
              }).find("invalid UTF-8"),
              std::string::npos);
    const SFailure declaration =
        FailureOf([] { XMLLoadText("<?xml version='1.0' encoding='\xFF'?><a/>"); });
    EXPECT_EQ(declaration.problems.size(), 1U);
    EXPECT_EQ(declaration.problems.at(0).file, "Memfile");
}
