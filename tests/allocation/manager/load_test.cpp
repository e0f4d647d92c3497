// Loads in which an allocation of the library fails, for every one of them: the exception is
// std::bad_alloc, or the answer is NULL where the document object itself cannot be made; nothing of
// the document is left, and the next load is none the worse.
#include <unistd.h>

#include <string>

#include "allocation/sample_tree.h"
#include "allocation/sweep.h"
#include "support/converters.h"
#include "support/sanitizers.h"
#include "support/testing.h"

using namespace norvask_test;

namespace {

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
    Document document;
    const long before = LiveBlocks();
    const SAttempt attempt = Attempt([&] { document = load(); }, n, failing, Callers::Library);
    const long held = LiveBlocks();
    if (document) outcome.tree = TreeText(document);
    const long shown = LiveBlocks();
    const bool made = document != nullptr;
    document.reset();
    outcome.left = LiveBlocks() - shown + held - before;
    outcome.failed = attempt.refused;
    outcome.told = attempt.thrown ? attempt.told : made ? "a document" : "NULL";
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
                // The document object and its content, for the fast lane and for the parser.
                EXPECT_LE(nulls, 4);
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

}  // namespace

TEST(AllocationFailureLoad, FromMemory) {
    const std::string xml = RichDocument();
    for (const SLoad& how : {SLoad(), KeepPrefixes()})
        ExpectEveryFailureTold([&] { return LoadMemory(xml, how); }, "a document");
}

TEST(AllocationFailureLoad, OfASmallDocument) {
    const std::string xml = "<r><a k='v'>text</a></r>";
    ExpectEveryFailureTold([&] { return LoadMemory(xml); }, "a document");
}

TEST(AllocationFailureLoad, FromAFile) {
    const TemporaryFile file(".xml", RichDocument());
    const std::string name = file.Name();
    ExpectEveryFailureTold([&] { return LoadFile(name, KeepPrefixes()); }, "a document");
}

// It cannot be read twice. The parser's file source tells that by an exception, which needs memory,
// too.
TEST(AllocationFailureLoad, FromAPipeWhoeverAllocates) {
    const std::string xml = "<r><a k='v'>text</a></r>";
    const CLeaksAllowed ofTheParser;
    bool isOver = false;
    for (long n = 1; !isOver; ++n) {
        SCOPED_TRACE("allocation " + std::to_string(n));
        int ends[2];
        ASSERT_EQ(pipe(ends), 0);
        ASSERT_EQ(write(ends[1], xml.data(), xml.size()), static_cast<ssize_t>(xml.size()));
        close(ends[1]);
        const std::string name = "/proc/self/fd/" + std::to_string(ends[0]);
        const SAttempt attempt =
            Attempt([&] { LoadFile(name); }, n, Failing::One, Callers::Everything);
        close(ends[0]);
        EXPECT_TRUE(!attempt.thrown || attempt.known) << attempt.told;
        isOver = !attempt.refused || ::testing::Test::HasFailure();
    }
}

TEST(AllocationFailureLoad, WithAnInstalledConverter) {
    const std::string xml = RichDocument();
    const CPlainConverter converter;
    for (const SLoad& how : {SLoad(), KeepPrefixes()})
        ExpectEveryFailureTold([&] { return LoadMemory(xml, how); }, "a document");
}

TEST(AllocationFailureLoad, ThatEndsInAnErrorAnyway) {
    const std::string malformed = "<r k='v'>text<a></r>";
    ExpectEveryFailureTold([&] { return LoadMemory(malformed); },
                           "2 " + LoadError("Memfile", 1, "expected end of tag 'a'"));
    const std::string invalid = "<!DOCTYPE r [<!ELEMENT r EMPTY>]><r><a/></r>";
    ExpectEveryFailureTold([&] { return LoadMemory(invalid, Validate()); },
                           "2 " + LoadError("Memfile", 1, "no declaration found for element 'a'"));
    const std::string noName = "<r k='v'>text<a \xF0\x90\x80\x80='v'/></r>";
    ExpectEveryFailureTold([&] { return LoadMemory(noName); },
                           "3 Invalid XML name: '\xF0\x90\x80\x80'.");
}
