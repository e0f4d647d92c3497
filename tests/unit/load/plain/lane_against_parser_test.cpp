// The fast lane against the parser: every outcome is the parser's.
//
// What was found once is a table here, with whether the lane takes it. The rest is a part of what
// tests/differential does at length: small documents cut and changed at every place and read with
// each window, everything on the edges of the parser's buffers, and generated documents.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

#include "support/loading.h"
#include "support/plain_lane/comparison.h"
#include "support/plain_lane/document_generator.h"
#include "support/plain_lane/mutator.h"
#include "support/plain_lane/systematic.h"
#include "support/sanitizers.h"
#include "support/tree_text.h"
#include "support/vocabulary.h"

namespace norvask_test {
namespace {

const std::size_t DEFAULT_WINDOW = SLoadOptions().window;

// Every window up to one that holds the whole document, if that is small; in a sanitized program
// not all of the larger ones.
std::vector<std::size_t> EveryWindow(const std::string& document) {
    std::vector<std::size_t> windows(1, DEFAULT_WINDOW);
    const std::size_t largest = std::min<std::size_t>(document.size() + 2, 200);
    for (std::size_t window = 1; window <= largest; window += IS_SANITIZED && window > 16 ? 7 : 1)
        windows.push_back(window);
    return windows;
}

// The lane alone and loads in all ways, from memory and from a file; in a sanitized program, where
// a load takes long, in fewer.
void ExpectSame(CLaneComparison& comparison, const std::string& document) {
    SCOPED_TRACE(Quoted(document));
    EXPECT_TRUE(comparison.Same(document, EveryWindow(document))) << comparison.Difference();
    SLoadMode mode;
    for (const auto kind : {SLoadMode::EVENTS, SLoadMode::TREE_WITH_PREFIXES, SLoadMode::TREE}) {
        for (const auto validation : {SLoadMode::OFF, SLoadMode::DYNAMIC, SLoadMode::WITH_SCHEMA}) {
            for (const std::size_t window : std::initializer_list<std::size_t>{0, 1, 16}) {
                if (IS_SANITIZED && (window == 1 || validation == SLoadMode::DYNAMIC)) continue;
                mode.kind = kind;
                mode.validation = validation;
                mode.window = window;
                EXPECT_TRUE(comparison.SameLoads(document, mode, false)) << comparison.Difference();
                EXPECT_TRUE(comparison.SameLoads(document, mode, true)) << comparison.Difference();
            }
        }
    }
}

// A client that does something else at each of the events: throws, installs a converter, asks for
// the position, loads another document.
void ExpectSameDeeds(CLaneComparison& comparison, const std::string& document) {
    SCOPED_TRACE(Quoted(document));
    SLoadMode mode;
    for (int deed = 1; deed <= static_cast<int>(EDeed::LAST); ++deed) {
        for (std::size_t event = 0; event < 14; ++event) {
            if (IS_SANITIZED && event > 3 && (event + static_cast<std::size_t>(deed)) % 5 != 0)
                continue;
            mode.deed = static_cast<EDeed>(deed);
            mode.event = event;
            EXPECT_TRUE(comparison.SameLoads(document, mode, false)) << comparison.Difference();
            EXPECT_TRUE(comparison.SameLoads(document, mode, true)) << comparison.Difference();
        }
    }
}

struct SRow {
    std::string document;
    bool isTaken;
};

std::string ManyAttributes(std::size_t count) {
    std::string document = "<a";
    for (std::size_t i = 0; i < count; ++i)
        document += " n" + std::to_string(i) + "='v'";
    return document + "/>";
}

std::string BehindType(const std::string& declarations, const std::string& root) {
    return BehindComment("<!DOCTYPE a [" + declarations + "]>" + root);
}

// Each was a difference once, of the lane or of its trial, or lies next to one.
const SRow FOUND[] = {
    // The parser does not take a target that is followed by "??>" for one.
    {"<a><?t?\?></a>", false},
    {"<a><?t ?\?></a>", true},
    {"<?t?\?><a/>", false},
    // A mapping is told before an unknown prefix is found.
    {"<a><p:b xmlns:q='u'/></a>", false},
    {"<a xmlns:q='u' p:k='v'/>", false},
    // The parser accepts the first bytes of a character at the very end.
    {"<a/>\xC3", false},
    {"<a/>\xE2\x82", false},
    {"<a/>\xF0\x9F\x98", false},
    {"<a/>\n\xF0", false},
    {"<a/>\xFF", false},
    // It looks for attributes that are there twice in another way when there are many.
    {ManyAttributes(63), true},
    {ManyAttributes(64), true},
    {ManyAttributes(65), true},
    {ManyAttributes(500), true},
    {"<a n1='v'" + ManyAttributes(100).substr(2), false},
    // What is reserved.
    {"<a xmlns:p='http://www.w3.org/XML/1998/namespace'/>", false},
    {"<a xmlns:p='http://www.w3.org/2000/xmlns/'/>", false},
    {"<a xmlns='http://www.w3.org/2000/xmlns/'/>", false},
    {"<a xmlns:xml='http://www.w3.org/XML/1998/namespace'/>", false},
    {"<a xmlns:xmlns='u'/>", false},
    {"<a xml:lang='en'/>", true},
    // The URI of schema instances, in which locations of schemas are fetched; not if it is written
    // with a reference.
    {"<a xmlns:i='http://www.w3.org/2001/XMLSchema-instance' i:nil='1'/>", true},
    {"<a xmlns:i='http://www.w3.org/2001/XMLSchema-instance' i:schemaLocation='u none.xsd'/>",
     false},
    {"<a xmlns:i='http://www.w3.org/2001/XMLSchema-instanc&#101;' i:schemaLocation='u none.xsd'/>",
     false},
    // The parser judges a declared namespace even where a tag has another.
    {BehindType("<!ATTLIST b xmlns:q CDATA ''>", "<b xmlns:q='l'/>"), false},
    {BehindType("<!ATTLIST b xmlns:q CDATA 'u'>", "<b xmlns:q='l' q:k=''/>"), false},
    {BehindType("<!ATTLIST b xmlns CDATA 'http://www.w3.org/2000/xmlns/'>", "<b xmlns='l'/>"),
     false},
    {BehindType("<!ATTLIST b xmlns CDATA 'http://www.w3.org/XML/1998/namespace'>",
                "<b xmlns='l'/>"),
     false},
    // It normalises values of other types than CDATA further.
    {BehindType("<!ATTLIST b k CDATA 'v' l NMTOKENS ' a  b '>", "<b l='\tc  d'/>"), false},
    {BehindType("<!ATTLIST b k CDATA 'v' l NMTOKENS ' a  b '>", "<b l='c'/>"), true},
    // A declared name that is one to the parser only.
    {BehindType("<!ATTLIST a \xF0\xA0\x80\x80 CDATA 'v'>", "<a/>"), false},
    // What was told is left out the second time: layout only where it is in a section. The parser
    // accepts what the lane leaves, and tells more.
    {"<a> \n<b/>\n<c> </c>x<d xmlns:xml='http://www.w3.org/XML/1998/namespace'>y</d>z</a>", false},
    {"<a><![CDATA[ ]]><b/><![CDATA[\n]]><![CDATA[]]>x<d "
     "xmlns:xml='http://www.w3.org/XML/1998/namespace'>y</d>z</a>",
     false},
    // Characters of names at the end of what was read, whatever the size of the window.
    {"<\xC3\xA9 \xE4\xB8\xAD='\xF0\x9F\x98\x80'><\xC3\xA9>", false},
    {"<\xD0\x96 xmlns:\xC3\xA9='urn:a'  \xC3\xA9:entry =\"\" \n\t\r\n \xC3\xA9", false},
};

TEST(LaneAgainstParser, GivesTheSameForWhatWasFound) {
    CLaneComparison comparison;
    for (const SRow& row : FOUND) {
        ExpectSame(comparison, row.document);
        comparison.Same(row.document, {DEFAULT_WINDOW});
        EXPECT_EQ(comparison.WasTaken(), row.isTaken) << Quoted(row.document);
    }
}

TEST(LaneAgainstParser, GivesTheSameForSmallDocuments) {
    CLaneComparison comparison;
    for (const std::string& document : SmallDocuments()) {
        ExpectSame(comparison, document);
        ExpectSameDeeds(comparison, document);
        comparison.Same(document, {DEFAULT_WINDOW});
        EXPECT_EQ(comparison.WasTaken(), document.find("<!DOCTYPE") == std::string::npos)
            << Quoted(document);
    }
}

// All of them, but the windows in turn.
TEST(LaneAgainstParser, GivesTheSameForSmallDocumentsCutAndChangedAtEveryPlace) {
    CLaneComparison comparison;
    const std::size_t step = IS_SANITIZED ? 23 : 1;
    std::size_t number = 0;
    const auto compare = [&](const std::string& document) {
        if (++number % step != 0 || ::testing::Test::HasFailure()) return;
        EXPECT_TRUE(comparison.Same(
            document, {DEFAULT_WINDOW, 1 + number % 7, 1 + number % (document.size() + 3)}))
            << Quoted(document) << "\n"
            << comparison.Difference();
        if (number % 11 == 0) {
            EXPECT_TRUE(comparison.SameLoadsInSomeWay(document, number / 11))
                << Quoted(document) << "\n"
                << comparison.Difference();
        }
    };
    for (const std::string& document : SmallDocuments()) {
        ForEachCut(document, compare);
        ForEachGap(document, compare);
        ForEachByte(document, compare);
    }
    EXPECT_GT(comparison.Counts().taken, comparison.Counts().documents / 20);
    EXPECT_GT(comparison.Counts().leftInside, comparison.Counts().documents / 20);
}

// With a window at each place when they are as they are, with one in turn when they are changed.
TEST(LaneAgainstParser, GivesTheSameForSmallTypedDocumentsCutAndChangedAtEveryPlace) {
    CLaneComparison comparison;
    const std::size_t step = IS_SANITIZED ? 197 : 7;
    std::size_t number = 0;
    const auto compare = [&](const std::string& changed) {
        if (++number % step != 0 || ::testing::Test::HasFailure()) return;
        const std::string document = BehindComment(changed);
        EXPECT_TRUE(comparison.Same(document, {DEFAULT_WINDOW, 1 + number % (document.size() + 2)}))
            << Quoted(changed) << "\n"
            << comparison.Difference();
        if (number % (11 * step) == 0) {
            EXPECT_TRUE(comparison.SameLoadsInSomeWay(document, number / 11))
                << Quoted(changed) << "\n"
                << comparison.Difference();
        }
    };
    const auto compareInMany = [&](const std::string& document) {
        std::vector<std::size_t> windows(1, DEFAULT_WINDOW);
        for (std::size_t window = 1; window <= document.size() + 2; window += step)
            windows.push_back(window);
        EXPECT_TRUE(comparison.Same(document, windows)) << Quoted(document) << "\n"
                                                        << comparison.Difference();
        EXPECT_EQ(comparison.WasTaken(), document.find("NMTOKENS 'x'") == std::string::npos)
            << Quoted(document);
    };
    for (const std::string& typed : SmallTypedDocuments()) {
        ForEachPlaceOfComment(typed, compareInMany);
        ForEachCut(typed, compare);
        ForEachGap(typed, compare);
        ForEachByte(typed, compare);
    }
    EXPECT_GT(comparison.Counts().taken, comparison.Counts().documents / 20);
    EXPECT_GT(comparison.Counts().leftInside, comparison.Counts().documents / 40);
}

// The prolog is read before all is known to be UTF-8, and once more after that.
TEST(LaneAgainstParser, GivesTheSameBehindPrologsThatAreLargerThanTheWindow) {
    CLaneComparison comparison;
    const std::size_t step = IS_SANITIZED ? 31 : 3;
    std::size_t number = 0;
    for (const std::string& small : SmallDocuments()) {
        ForEachProlog(small, 40, [&](const std::string& document) {
            if (++number % step != 0) return;
            EXPECT_TRUE(comparison.Same(document, EveryWindow(document)))
                << Quoted(document) << "\n"
                << comparison.Difference();
        });
    }
}

// A part of those for sizes and numbers; all of them where the tokens are small.
TEST(LaneAgainstParser, GivesTheSameForLongTokensAndForManyOfAKind) {
    CLaneComparison comparison;
    const std::size_t step = IS_SANITIZED ? 61 : 5;
    std::size_t number = 0;
    const auto compare = [&](const std::string& document) {
        if (++number % step != 0 || ::testing::Test::HasFailure()) return;
        EXPECT_TRUE(comparison.Same(document, {DEFAULT_WINDOW, 100}))
            << Quoted(document.substr(0, 200)) << ", " << document.size() << " bytes\n"
            << comparison.Difference();
    };
    for (const std::size_t size : TokenSizes())
        ForEachLongToken(size, compare);
    for (const std::size_t count :
         std::initializer_list<std::size_t>{1, 2, 31, 32, 33, 63, 64, 65, 100, 127, 128, 129, 500})
        ForEachCount(count, compare);
}

// Of more names than are kept.
TEST(LaneAgainstParser, GivesTheSameBehindManyNames) {
    CLaneComparison comparison;
    for (const std::string& document : SmallDocuments()) {
        if (document.compare(0, 2, "<?") == 0 || document.compare(0, 2, "<!") == 0) continue;
        for (const bool bySize : {false, true}) {
            const std::string behind = BehindManyNames(bySize, document);
            EXPECT_TRUE(comparison.Same(behind, {DEFAULT_WINDOW, 100})) << Quoted(document) << "\n"
                                                                        << comparison.Difference();
            EXPECT_TRUE(comparison.WasTaken()) << Quoted(document);
        }
        if (IS_SANITIZED) break;
    }
    std::vector<std::string> constructs = Constructs();
    for (const std::string& tag : TagsOfAllAttributes())
        constructs.push_back(tag);
    for (std::size_t i = 0; i < constructs.size(); i += IS_SANITIZED ? 7 : 1) {
        const std::string& construct = constructs[i];
        EXPECT_TRUE(comparison.Same(BehindManyNames(false, construct), {DEFAULT_WINDOW}))
            << Quoted(construct) << "\n"
            << comparison.Difference();
    }
}

// The parser fetches the schema that a document names, and then adds defaults and checks values.
TEST(LaneAgainstParser, GivesTheSameForDocumentsThatNameASchema) {
    CLaneComparison comparison;
    const TemporaryFile plain(".xsd", Schema(false));
    const TemporaryFile named(".xsd", Schema(true));
    const std::string instance = " xmlns:i='http://www.w3.org/2001/XMLSchema-instance' i:";
    const std::string documents[] = {
        "<r" + instance + "noNamespaceSchemaLocation='" + plain.Name() + "'><n>1</n></r>",
        "<r" + instance + "noNamespaceSchemaLocation='" + plain.Name() + "'><n>x</n></r>",
        "<r xmlns='urn:t'" + instance + "schemaLocation='urn:t " + named.Name() + "'><n>1</n></r>",
        "<r xmlns='urn:t'" + instance + "schemaLocation='urn:t " + named.Name() + "'><n>x</n></r>",
    };
    for (const std::string& document : documents) {
        ExpectSame(comparison, document);
        SLoadMode mode;
        mode.validation = SLoadMode::WITH_SCHEMA;
        const CExactBlock block(document.data(), document.size());
        ELane lane = ELane::NOT_TRIED;
        const std::string events = Outcome(block, mode, true, &lane);
        EXPECT_EQ(lane, ELane::LEFT);
        // The schema was found.
        const bool isWrong = document.find(">x<") != std::string::npos;
        EXPECT_NE(events.find(isWrong ? NO_INTEGER : "default"), std::string::npos)
            << Readable(events);
    }
}

TEST(LaneAgainstParser, GivesTheSameOnTheEdgesOfTheParsersBuffers) {
    CLaneComparison comparison;
    const std::size_t step = IS_SANITIZED ? 397 : 23;
    std::size_t number = 0;
    for (const std::size_t edge : ParsersEdges()) {
        for (int padding = 0; padding < PAD_KINDS; ++padding) {
            for (const std::string& construct : Constructs()) {
                for (std::size_t before = edge - construct.size() - 1; before <= edge + 1;
                     ++before) {
                    if (++number % step != 0) continue;
                    const std::string document =
                        PaddedDocument(static_cast<EPadding>(padding), before, construct);
                    ASSERT_TRUE(comparison.Same(document, {DEFAULT_WINDOW, 16384}))
                        << Quoted(construct) << " at " << before << ", padding " << padding << "\n"
                        << comparison.Difference();
                }
            }
        }
    }
}

// Always the same documents, until the time is over.
TEST(LaneAgainstParser, GivesTheSameForGeneratedDocuments) {
    const auto end =
        std::chrono::steady_clock::now() + std::chrono::seconds(IS_SANITIZED ? 15 : 25);
    CLaneComparison comparison;
    CDocumentGenerator generator(1);
    CMutator mutator(2);
    std::string document;
    for (std::uint64_t i = 0; i % 64 != 0 || std::chrono::steady_clock::now() < end; ++i) {
        generator.Make(document);
        if (i % 16 == 0) mutator.Remember(document);
        if (i % 3 == 0) mutator.Mutate(document);
        if (IsOutOfBounds(document)) continue;
        ASSERT_TRUE(comparison.Same(document, {DEFAULT_WINDOW, 1 + i % 97}))
            << Quoted(document) << "\n"
            << comparison.Difference();
        if (i % 16 == 0) {
            ASSERT_TRUE(comparison.SameLoadsInSomeWay(document, i / 16)) << Quoted(document) << "\n"
                                                                         << comparison.Difference();
        }
    }
    EXPECT_GT(comparison.Counts().documents, IS_SANITIZED ? 1000U : 20000U);
    EXPECT_GT(comparison.Counts().taken, comparison.Counts().documents / 4);
    EXPECT_GT(comparison.Counts().leftInside, comparison.Counts().documents / 20);
}

// The harness itself: a generated document with nothing wrong is nearly always one that the parser
// accepts, and the lane takes nearly all of these.
TEST(LaneAgainstParser, TakesNearlyAllGeneratedDocumentsThatAreRight) {
    CLaneComparison comparison;
    CDocumentGenerator generator(3);
    std::string document;
    for (int i = 0; i < 3000; ++i) {
        generator.Make(document, 0);
        EXPECT_TRUE(comparison.Same(document, {DEFAULT_WINDOW})) << comparison.Difference();
    }
    EXPECT_GT(comparison.Counts().taken, comparison.Counts().documents * 90 / 100);
}

}  // namespace
}  // namespace norvask_test
