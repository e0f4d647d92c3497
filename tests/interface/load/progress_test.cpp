// Progress, and being stopped: what is told, when, and what comes of it.
#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <stdexcept>

#include "support/heap.h"
#include "support/problems.h"
#include "support/recording_handler.h"
#include "support/sanitizers.h"
#include "support/testing.h"

using namespace norvask_test;

namespace {

struct STold {
    std::uint64_t read;
    std::uint64_t total;
};

// Notes what it is told.
class CNotes {
public:
    auto Noting() {
        return [this](std::uint64_t read, std::uint64_t total) { m_Told.push_back({read, total}); };
    }
    // Values grow to the size; the total is always the same.
    void ExpectWhole(std::uint64_t size, std::uint64_t total) {
        ASSERT_FALSE(m_Told.empty());
        for (std::size_t i = 0; i < m_Told.size(); ++i) {
            EXPECT_GT(m_Told[i].read, i == 0 ? 0 : m_Told[i - 1].read);
            EXPECT_EQ(m_Told[i].total, total);
        }
        EXPECT_EQ(m_Told.back().read, size);
    }
    std::size_t Count() const { return m_Told.size(); }
    void Clear() { m_Told.clear(); }

private:
    std::vector<STold> m_Told;
};

// Plain ones, which are read quickly, and others, which are left to the parser at once, in the
// middle, or at the end.
std::vector<std::string> Documents(std::size_t size) {
    std::string children;
    while (children.size() < size)
        children += "<b k='v'>text</b>\n";
    return {"<a>" + children + "</a>",
            "<?xml version='1.0' encoding='ISO-8859-1'?><a>" + children + "</a>",
            "<!DOCTYPE a [<!ENTITY e 'x'>]><a>" + children + "&e;</a>",
            "<a>" + children + "<c x\xC2\xB7='1'/>" + children + "</a>",
            "<a>" + children + "</a>\n<!--c-->\n"};
}
const std::size_t SIZES[] = {0, 1000, 49140, 65536, IS_SANITIZED ? 100000U : 200000U};

std::string Stopped(const std::string& file, const std::string& line) {
    return "Load error:\nFile: '" + file + "'  Line '" + line + "':\n\n'stopped by the program'";
}

}  // namespace

TEST(LoadProgress, GrowsToTheTotal) {
    for (const std::size_t size : SIZES) {
        for (const std::string& xml : Documents(size)) {
            SCOPED_TRACE(Quoted(xml.substr(0, 60)) + " of " + std::to_string(xml.size()));
            const TemporaryFile file(".xml", xml);
            CNotes notes;
            const SXMLLoadOptions options = SXMLLoadOptions().Progress(notes.Noting());
            CRecordingHandler handler;
            const auto expect = [&](std::uint64_t total, const auto& load) {
                notes.Clear();
                load();
                notes.ExpectWhole(xml.size(), total);
                // Not much less often than the blocks in which documents are read.
                EXPECT_GE(notes.Count(), xml.size() / 300000);
            };
            for (const SXMLLoadOptions& with :
                 {options, options.Untrusted(), options.Validate().CollectProblems(0)}) {
                const auto load = [&](const auto& way) {
                    FailureOf(way);  // those that are invalid are read to their end, too
                };
                if (with.isUntrusted && xml.find("<!DOCTYPE") == 0) continue;
                expect(xml.size(),
                       [&] { load([&] { XMLLoadText(std::string_view(xml), with); }); });
                expect(xml.size(),
                       [&] { load([&] { XMLLoadText(std::string_view(xml), handler, with); }); });
                expect(xml.size(), [&] { load([&] { XMLLoadFile(file.Name(), with); }); });
                expect(xml.size(), [&] { load([&] { XMLLoadFile(file.Name(), handler, with); }); });
                expect(xml.size(), [&] {
                    load([&] { XMLLoadFile(std::filesystem::path(file.Name()), with); });
                });
                // Of these the size is not known.
                expect(0, [&] {
                    load([&] {
                        std::istringstream stream(xml);
                        XMLLoadStream(stream, with);
                    });
                });
                expect(0, [&] {
                    load([&] {
                        std::istringstream stream(xml);
                        XMLLoadStream(stream, handler, with);
                    });
                });
            }
        }
    }
}

TEST(LoadProgress, ADocumentThatFailsIsToldAsFarAsItWasRead) {
    const std::string xml = "<a>" + std::string(200000, 'x') + "</b>" + std::string(400000, 'x');
    CNotes notes;
    std::uint64_t last = 0;
    const SXMLLoadOptions options =
        SXMLLoadOptions().Progress([&](std::uint64_t read, std::uint64_t total) {
            EXPECT_GT(read, last);
            EXPECT_EQ(total, xml.size());
            last = read;
        });
    EXPECT_EQ(FailureOf([&] { XMLLoadText(std::string_view(xml), options); }).id, 2);
    EXPECT_GE(last, 200000U);
    EXPECT_LE(last, xml.size());
}

// With the process-wide switch, too, and the callbacks' own positions.
TEST(LoadProgress, TakesNothingFromSourceOffsets) {
    const std::string xml = Documents(200000)[0];
    CNotes notes;
    Manager().SetCalculateSourceOffsets(true);
    std::uint64_t last = 0;
    CXMLLambdaHandler handler;
    XMLLoadText(std::string_view(xml), handler, SXMLLoadOptions().Progress(notes.Noting()));
    CRecordingHandler asking([&](const std::string&) { last = asking.GetSourceOffset(); });
    XMLLoadText(std::string_view(xml), asking, SXMLLoadOptions().Progress(notes.Noting()));
    Manager().SetCalculateSourceOffsets(false);
    EXPECT_GT(last, xml.size() - 10);
}

// At the n-th call, for every n: nothing is left, and the error says so.
TEST(LoadProgress, ALoadIsStoppedAtEveryCall) {
    for (const std::string& xml : Documents(IS_SANITIZED ? 100000 : 150000)) {
        SCOPED_TRACE(Quoted(xml.substr(0, 60)));
        const TemporaryFile file(".xml", xml);
        CRecordingHandler handler;
        const std::string events = EventsOfMemory(xml);
        for (int way = 0; way < 6; ++way) {
            SCOPED_TRACE(way);
            const auto load = [&](const SXMLLoadOptions& options) {
                std::istringstream stream(xml);
                if (way == 0) XMLLoadText(std::string_view(xml), options);
                if (way == 1) XMLLoadText(std::string_view(xml), handler, options);
                if (way == 2) XMLLoadFile(file.Name(), options);
                if (way == 3) XMLLoadFile(file.Name(), handler, options);
                if (way == 4) XMLLoadStream(stream, options.KeepPrefixes());
                if (way == 5) XMLLoadStream(stream, handler, options);
            };
            int calls = 0;
            FailureOf([&] { load(SXMLLoadOptions().Progress([&](auto, auto) { ++calls; })); });
            ASSERT_GE(calls, 2);
            for (int n = 1; n <= calls; ++n) {
                handler.Take();
                int count = 0;
                const auto stopping = [&] { return ++count < n; };
                const SXMLLoadOptions options =
                    n % 2 == 0 ? SXMLLoadOptions().Stop(stopping)
                               : SXMLLoadOptions().Progress(
                                     [&](std::uint64_t, std::uint64_t) { return stopping(); });
                const SFailure failure = FailureOf([&] { load(options); });
                EXPECT_EQ(count, n) << "it was asked again";
                ASSERT_EQ(failure.problems.size(), 1U) << failure.Told();
                EXPECT_EQ(failure.id, 9);
                const SXMLProblem& problem = failure.problems[0];
                EXPECT_EQ(problem.text, "stopped by the program");
                EXPECT_EQ(problem.severity, EXMLSeverity::FATAL);
                const std::string name = way < 2 ? "Memfile" : way < 4 ? file.Name() : "Stream";
                EXPECT_EQ(failure.text, Stopped(name, std::to_string(problem.line)));
                const std::string told = handler.Take();
                EXPECT_EQ(told, events.substr(0, told.size()));
            }
            int count = 0;
            FailureOf([&] { load(SXMLLoadOptions().Stop([&] { return ++count <= calls; })); });
            EXPECT_EQ(count, calls) << "stopped behind the end";
        }
    }
}

TEST(LoadProgress, StoppedLoadsLeaveNothing) {
    const std::string xml = Documents(400000)[0];
    const std::string left = Documents(400000)[3];
    const auto stopAt = [](const std::string& text, int n) {
        int count = 0;
        const SXMLLoadOptions options = SXMLLoadOptions().Stop([&] { return ++count < n; });
        CRecordingHandler handler;
        FailureOf([&] { XMLLoadText(std::string_view(text), options); });
        FailureOf([&] { XMLLoadText(std::string_view(text), handler, options); });
    };
    std::size_t before = 0;
    for (int round = 0; round < 60; ++round) {
        stopAt(xml, 1 + round % 8);
        stopAt(left, 1 + round % 8);
        if (round == 15) before = HeapInUse();
    }
    ExpectHeapAsBefore(before);
}

// Both are asked, progress first.
TEST(LoadProgress, StopIsAskedAsOftenAsProgressIsTold) {
    const std::string xml = Documents(400000)[0];
    int told = 0;
    int asked = 0;
    XMLLoadText(std::string_view(xml), SXMLLoadOptions()
                                           .Progress([&](auto, auto) {
                                               EXPECT_EQ(told, asked);
                                               ++told;
                                           })
                                           .Stop([&] {
                                               ++asked;
                                               return true;
                                           }));
    EXPECT_EQ(told, asked);
    EXPECT_GT(told, 1);
}

TEST(LoadProgress, WhatTheFunctionThrowsArrivesUnchanged) {
    struct SOwn {
        int number;
    };
    for (const std::string& xml : Documents(400000)) {
        SCOPED_TRACE(Quoted(xml.substr(0, 60)));
        for (int n = 1; n <= 3; ++n) {
            for (const bool untrusted : {false, true}) {
                if (untrusted && xml.find("<!DOCTYPE") == 0) continue;
                const auto throwing = [&](auto what) {
                    SXMLLoadOptions options =
                        SXMLLoadOptions().Progress([what, n, count = 0](auto, auto) mutable {
                            if (++count == n) throw what;
                        });
                    return untrusted ? options.Untrusted() : options;
                };
                CRecordingHandler handler;
                std::istringstream stream(xml);
                EXPECT_THROW(XMLLoadText(std::string_view(xml), throwing(SOwn{7})), SOwn);
                EXPECT_THROW(XMLLoadText(std::string_view(xml), handler, throwing(SOwn{7})), SOwn);
                EXPECT_THROW(XMLLoadStream(stream, throwing(std::runtime_error("own"))),
                             std::runtime_error);
                EXPECT_XML_ERROR(XMLLoadText(std::string_view(xml), throwing(CXMLError(77, "own"))),
                                 77, "own");
                EXPECT_XML_ERROR(
                    XMLLoadText(std::string_view(xml), handler, throwing(CXMLError(78, "own"))), 78,
                    "own");
                EXPECT_THROW(
                    XMLLoadText(std::string_view(xml), handler, throwing(std::bad_alloc())),
                    std::bad_alloc);
            }
        }
    }
}

// What was collected is told behind the refusal.
TEST(LoadProgress, AStoppedLoadTellsWhatItHasFound) {
    std::string xml = "<!DOCTYPE a [<!ELEMENT a ANY>]><a>\n<b/>";
    xml += std::string(300000, ' ') + "</a>";
    int count = 0;
    const SFailure failure = FailureOf([&] {
        XMLLoadText(std::string_view(xml), SXMLLoadOptions().Validate().CollectProblems().Stop(
                                               [&] { return ++count < 4; }));
    });
    ASSERT_EQ(failure.problems.size(), 2U) << failure.Told();
    EXPECT_EQ(failure.id, 9);
    EXPECT_EQ(failure.problems[0].text, "stopped by the program");
    EXPECT_EQ(failure.problems[1].text, "no declaration found for element 'b'");
}

// A schema is no part of the document.
TEST(LoadProgress, OnlyTheDocumentIsCounted) {
    const TemporaryFile schema(".xsd", Schema(false) + std::string(200000, ' '));
    const TemporaryFile dtd(".dtd", "<!ELEMENT r ANY>" + std::string(200000, ' '));
    CNotes notes;
    std::string xml = "<r><n>1</n></r>";
    XMLLoadText(std::string_view(xml),
                SXMLLoadOptions().ValidateBySchema(schema.Name()).Progress(notes.Noting()));
    notes.ExpectWhole(xml.size(), xml.size());
    notes.Clear();
    xml = "<!DOCTYPE r SYSTEM '" + std::string(dtd.Name()) + "'><r/>";
    XMLLoadText(std::string_view(xml), SXMLLoadOptions().Progress(notes.Noting()));
    notes.ExpectWhole(xml.size(), xml.size());
}

// The plain structure, without the conveniences.
TEST(LoadProgress, TheContextIsHandedOn) {
    SXMLLoadSettings settings;
    std::uint64_t read = 0;
    settings.progress = [](void* context, std::uint64_t now, std::uint64_t) {
        *static_cast<std::uint64_t*>(context) = now;
        return true;
    };
    settings.progressContext = &read;
    SXMLSource source;
    source.bytes = "<a/>";
    source.length = 4;
    XMLLoad(source, settings)->Delete();
    EXPECT_EQ(read, 4U);
}
