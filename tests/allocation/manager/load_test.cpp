// Loads in which an allocation of the library fails, for every one of them: the exception is
// std::bad_alloc, or the answer is NULL where the document object itself cannot be made; nothing of the
// document is left, and the next load is none the worse.
#include <cstdio>

#include "allocation/failing_new.h"
#include "support/testing.h"

using namespace norvask;
using namespace norvask_test;

namespace {

std::string Rich() {
    std::string xml =
        "<!DOCTYPE r [<!ENTITY e 'an entity &#38;amp; more'><!ATTLIST r d CDATA 'default'>]>\n"
        "<r xmlns='urn:default' xmlns:p='urn:p' k='v' p:k='a value that is no short string'>"
        "text<p:a l='1'/>\n\t<b>&e;<![CDATA[AAECAwQF]]><![CDATA[no Base64!]]></b>"
        "<c \xC3\xA9='\xF0\x9F\x98\x80'>  </c>";
    for (int i = 0; i < 60; ++i) {
        xml += "<item id='" + std::to_string(i) + "'><name>number " + std::to_string(i) +
               "</name><n" + std::to_string(i) + "/></item>";
    }
    xml += "<d>" + std::string(5000, 'x') + "</d><d e='" + std::string(700, 'y') + "'/>";
    return xml + "</r>";
}

struct SOutcome {
    bool failed = false;  // an allocation was refused
    std::string told;     // the exception, or "a document"
    std::string tree;
    long left = 0;  // blocks that are alive behind it and were not before
};

// One load, of which the document ends again.
template <typename Load>
SOutcome Try(Load load, long n, Failing failing) {
    SOutcome outcome;
    CXMLDocument* document = nullptr;
    enum { Nothing, BadAlloc, XmlError, Other } caught = Nothing;
    int id = 0;
    char text[600] = "";
    const long before = LiveBlocks();
    {
        CFailAllocation fail(n, Callers::Library, failing);
        try {
            document = load();
        } catch (CXMLException& e) {
            caught = XmlError;
            id = e.GetID();
            std::snprintf(text, sizeof text, "%s", e.GetMessage());
        } catch (...) {
            caught = CaughtBadAlloc() ? BadAlloc : Other;
            std::snprintf(text, sizeof text, "%s", CaughtType());
        }
        outcome.failed = fail.Failed();
    }
    const long held = LiveBlocks();
    if (document) outcome.tree = TreeText(*document);
    const long shown = LiveBlocks();
    if (document) document->Delete();
    outcome.left = LiveBlocks() - shown + held - before;
    switch (caught) {
        case Nothing:
            outcome.told = document ? "a document" : "NULL";
            break;
        case BadAlloc:
            outcome.told = "bad_alloc";
            break;
        case XmlError:
            outcome.told = std::to_string(id) + " " + text;
            break;
        case Other:
            outcome.told = text;
            break;
    }
    return outcome;
}

// Refuses every allocation in turn. What is told without a refusal must be `told`.
template <typename Load>
void ExpectEveryFailureTold(Load load, const std::string& told) {
    Try(load, 0, Failing::One);  // what is made once for the process is made now
    const SOutcome whole = Try(load, 0, Failing::One);
    ASSERT_EQ(whole.told, told);
    ASSERT_EQ(whole.left, 0);
    for (const Failing failing : {Failing::One, Failing::AllFromThere}) {
        long refusals = 0;
        long nulls = 0;
        for (long n = 1;; ++n) {
            SCOPED_TRACE("allocation " + std::to_string(n));
            const SOutcome outcome = Try(load, n, failing);
            if (!outcome.failed) {
                EXPECT_GT(refusals, 3) << "hardly anything was refused";
                EXPECT_LE(nulls, 2);  // the document object and its content
                if (failing == Failing::One && told == "a document") {
                    EXPECT_GE(nulls, 1);
                }
                break;
            }
            // What only makes something faster may be done without.
            if (outcome.told == told) {
                EXPECT_EQ(outcome.tree, whole.tree);
            } else if (outcome.told == "NULL") {
                ++nulls;
            } else {
                EXPECT_EQ(outcome.told, "bad_alloc");
                ++refusals;
            }
            EXPECT_EQ(outcome.left, 0);
            if (n % 8 == 0) {
                const SOutcome again = Try(load, 0, Failing::One);
                EXPECT_EQ(again.told, told);
                EXPECT_EQ(again.tree, whole.tree);
            }
            if (::testing::Test::HasFailure()) return;  // once is enough
        }
    }
}

template <typename Source>
CXMLDocument* LoadMemory(Source& bytes, bool keepPrefixes, bool validate = false) {
    return Manager().LoadDocument(reinterpret_cast<unsigned char*>(&bytes[0]),
                                  static_cast<unsigned int>(bytes.size()), validate, false, nullptr,
                                  false, keepPrefixes);
}

// Answers the library's own strings through a block of its own, so every conversion allocates.
class CPlainConverter : public CWideCharToString {
public:
    char* Convert(const char16_t* source, std::size_t length) override {
        return CWideCharToString::Convert(source, length);
    }
};

}  // namespace

TEST(AllocationFailureLoad, FromMemory) {
    std::string xml = Rich();
    for (const bool keepPrefixes : {false, true})
        ExpectEveryFailureTold([&] { return LoadMemory(xml, keepPrefixes); }, "a document");
}

TEST(AllocationFailureLoad, OfASmallDocument) {
    std::string xml = "<r><a k='v'>text</a></r>";
    ExpectEveryFailureTold([&] { return LoadMemory(xml, false); }, "a document");
}

TEST(AllocationFailureLoad, FromAFile) {
    TemporaryFile file(".xml", Rich());
    ExpectEveryFailureTold(
        [&] { return Manager().LoadDocument(file.Name(), false, false, nullptr, false, true); },
        "a document");
}

TEST(AllocationFailureLoad, WithAnInstalledConverter) {
    std::string xml = Rich();
    CPlainConverter converter;
    Manager().SetWideCharToStringConverter(&converter);
    for (const bool keepPrefixes : {false, true})
        ExpectEveryFailureTold([&] { return LoadMemory(xml, keepPrefixes); }, "a document");
    Manager().SetWideCharToStringConverter(nullptr);
}

TEST(AllocationFailureLoad, ThatEndsInAnErrorAnyway) {
    std::string malformed = "<r k='v'>text<a></r>";
    ExpectEveryFailureTold([&] { return LoadMemory(malformed, false); },
                           "2 " + LoadError("Memfile", 1, "expected end of tag 'a'"));
    std::string invalid = "<!DOCTYPE r [<!ELEMENT r EMPTY>]><r><a/></r>";
    ExpectEveryFailureTold([&] { return LoadMemory(invalid, false, true); },
                           "2 " + LoadError("Memfile", 1, "no declaration found for element 'a'"));
    std::string noName = "<r k='v'>text<a \xF0\x90\x80\x80='v'/></r>";
    ExpectEveryFailureTold([&] { return LoadMemory(noName, false); },
                           "3 Invalid XML name: '\xF0\x90\x80\x80'.");
}
