// Which load a handler shows: copies and assigned handlers, handlers that end, and loads that are
// started inside a callback.
#include <cstdint>

#include "support/recording_handler.h"
#include "support/source_offsets.h"
#include "support/testing.h"
#include "support/threads.h"
#include "support/thrown.h"

using namespace norvask_test;

namespace {

// The switch is on during each of these tests.
class CallbackReader : public ::testing::Test {
    const CSourceOffsets m_On;
};

const char* const DOCUMENT = "<r><a/><b/></r>";
const char* const EVENTS =
    "StartElement r\nStartElement a\nEndElement a\nStartElement b\nEndElement b\nEndElement r\n";

}  // namespace

TEST_F(CallbackReader, IsSharedWithACopyThatIsMadeDuringTheLoad) {
    std::unique_ptr<CXMLSaxHandler> copy;
    std::unique_ptr<CXMLSaxHandler> copyOfCopy;
    CRecordingHandler handler([&](const std::string& line) {
        if (line == "StartElement a") {
            copy = std::make_unique<CXMLSaxHandler>(handler);
            EXPECT_EQ(copy->GetSourceOffset(), 7u);
        } else if (line == "StartElement b") {
            EXPECT_EQ(copy->GetSourceOffset(), 11u);
            copyOfCopy = std::make_unique<CXMLSaxHandler>(*copy);
            copy.reset();
            EXPECT_EQ(copyOfCopy->GetSourceOffset(), 11u);
            EXPECT_EQ(handler.GetSourceOffset(), 11u);
        } else if (line == "EndElement r") {
            EXPECT_EQ(copyOfCopy->GetSourceOffset(), 15u);
        }
    });
    LoadMemory(DOCUMENT, handler);
    EXPECT_EQ(handler.Take(), Whole(EVENTS));
    ASSERT_NE(copyOfCopy, nullptr);
    EXPECT_EQ(copyOfCopy->GetSourceOffset(), 0u);
    EXPECT_EQ(handler.GetSourceOffset(), 0u);
}

TEST_F(CallbackReader, IsGoneFromCopiesAfterALoadThatThrew) {
    CXMLSaxHandler assigned;
    std::unique_ptr<CXMLSaxHandler> copy;
    {
        CRecordingHandler handler([&](const std::string& line) {
            if (line != "StartElement a") return;
            copy = std::make_unique<CXMLSaxHandler>(handler);
            assigned = handler;
            EXPECT_EQ(assigned.GetSourceOffset(), 7u);
            throw 42;
        });
        EXPECT_THROW(LoadMemory(DOCUMENT, handler), int);
        EXPECT_EQ(assigned.GetSourceOffset(), 0u);
    }
    EXPECT_EQ(assigned.GetSourceOffset(), 0u);
    EXPECT_EQ(copy->GetSourceOffset(), 0u);
}

// A copy shows the load that its source served when it was made, and no later one.
TEST_F(CallbackReader, OfTheNextLoadIsNoneOfACopyFromBefore) {
    std::unique_ptr<CXMLSaxHandler> copy;
    CRecordingHandler handler([&](const std::string&) {
        if (!copy) copy = std::make_unique<CXMLSaxHandler>(handler);
    });
    LoadMemory(DOCUMENT, handler);
    handler.Do([&](const std::string& line) {
        if (line != "StartElement b") return;
        EXPECT_EQ(handler.GetSourceOffset(), 11u);
        EXPECT_EQ(copy->GetSourceOffset(), 0u);
    });
    LoadMemory(DOCUMENT, handler);
    EXPECT_EQ(handler.Take(), Whole(EVENTS) + Whole(EVENTS));

    CXMLSaxHandler before(handler);
    handler.Do([&](const std::string&) { EXPECT_EQ(before.GetSourceOffset(), 0u); });
    LoadMemory(DOCUMENT, handler);
}

TEST_F(CallbackReader, MayBeAssignedAwayAndBack) {
    CXMLSaxHandler idle;
    CXMLSaxHandler keeper;
    CRecordingHandler handler([&](const std::string& line) {
        CXMLSaxHandler& base = handler;
        CXMLSaxHandler& same = handler;
        if (line == "StartElement a") {
            base = same;
            EXPECT_EQ(handler.GetSourceOffset(), 7u);
            keeper = base;
            base = idle;
            EXPECT_EQ(handler.GetSourceOffset(), 0u);
            EXPECT_EQ(keeper.GetSourceOffset(), 7u);
        } else if (line == "StartElement b") {
            EXPECT_EQ(handler.GetSourceOffset(), 0u);
            base = keeper;
            EXPECT_EQ(handler.GetSourceOffset(), 11u);
        } else if (line == "EndElement r") {
            base = idle;  // and stays away
        }
    });
    LoadMemory(DOCUMENT, handler);
    EXPECT_EQ(handler.Take(), Whole(EVENTS));
    EXPECT_EQ(handler.GetSourceOffset(), 0u);
    EXPECT_EQ(keeper.GetSourceOffset(), 0u);
    handler.Do(nullptr);
    LoadMemory(DOCUMENT, handler);
    EXPECT_EQ(handler.Take(), Whole(EVENTS));
}

TEST_F(CallbackReader, EndsWithAHandlerThatIsDeletedAfterALoad) {
    TemporaryFile file(".xml", DOCUMENT);
    std::unique_ptr<CXMLSaxHandler> copy;
    for (int i = 0; i < 10; ++i) {
        auto handler = std::make_unique<CRecordingHandler>();
        CRecordingHandler* inside = handler.get();
        handler->Do([&](const std::string&) { copy = std::make_unique<CXMLSaxHandler>(*inside); });
        if (i % 2) {
            LoadMemory(DOCUMENT, *handler);
        } else {
            LoadFile(file.Name(), *handler);
        }
        handler.reset();
        EXPECT_EQ(copy->GetSourceOffset(), 0u);
    }
    // A copy serves loads of its own.
    std::uint64_t last = 0;
    LoadMemory(DOCUMENT, *copy);
    EXPECT_EQ(copy->GetSourceOffset(), last);
}

TEST_F(CallbackReader, OfALoadInsideACallbackIsItsOwn) {
    std::string told;
    CRecordingHandler handlers[3];
    const std::string documents[3] = {"<r>12345<a/>6789</r>", "<r><a/></r>", "<r>1<a/>2</r>"};
    const std::uint64_t atA[3] = {12, 7, 8};
    const std::uint64_t atEnd[3] = {20, 11, 13};
    TemporaryFile file(".xml", documents[1]);
    const auto start = [&](int level) {
        if (level == 1) {
            LoadFile(file.Name(), handlers[level]);
        } else {
            LoadMemory(documents[level], handlers[level]);
        }
    };
    for (int level = 0; level < 3; ++level) {
        handlers[level].Do([&, level](const std::string& line) {
            if (line == "StartElement a") {
                EXPECT_EQ(handlers[level].GetSourceOffset(), atA[level]);
                if (level < 2) {
                    EXPECT_EQ(handlers[level + 1].GetSourceOffset(), 0u);
                    start(level + 1);
                    EXPECT_EQ(handlers[level + 1].GetSourceOffset(), 0u);
                }
                for (int open = 0; open <= level; ++open)
                    EXPECT_EQ(handlers[open].GetSourceOffset(), atA[open]) << open;
            } else if (line == "EndElement r") {
                EXPECT_EQ(handlers[level].GetSourceOffset(), atEnd[level]);
                told += std::to_string(level);
            }
        });
    }
    start(0);
    EXPECT_EQ(told, "210");
    for (const CRecordingHandler& handler : handlers)
        EXPECT_NE(handler.Transcript().find("EndDocument"), std::string::npos);
}

TEST_F(CallbackReader, OfALoadInsideThatThrowsLeavesTheOuterOne) {
    CRecordingHandler inner;
    CRecordingHandler outer;
    int caught = 0;
    inner.Do([](const std::string& line) {
        if (line == "StartElement q") throw 42;
    });
    outer.Do([&](const std::string& line) {
        if (line != "StartElement a" && line != "StartElement b") return;
        try {
            LoadMemory("<q/>", inner);
        } catch (int) {
            ++caught;
        }
        EXPECT_EQ(inner.GetSourceOffset(), 0u);
        EXPECT_EQ(outer.GetSourceOffset(), line == "StartElement a" ? 7u : 11u);
    });
    LoadMemory(DOCUMENT, outer);
    EXPECT_EQ(caught, 2);
    EXPECT_EQ(outer.Take(), Whole(EVENTS));
}

TEST_F(CallbackReader, LetsTreesBeLoadedInsideACallback) {
    CRecordingHandler handler;
    std::string trees;
    handler.Do([&](const std::string& line) {
        if (line != "StartElement a" && line != "Characters \"x\"") return;
        const std::uint64_t before = handler.GetSourceOffset();
        trees += TreeText(LoadMemory("<q k='v'>text</q>"));
        EXPECT_EQ(handler.GetSourceOffset(), before);
    });
    LoadMemory("<r><a/>x</r>", handler);
    EXPECT_EQ(trees, "q k=\"v\"(\"text\")q k=\"v\"(\"text\")");
}

// Callbacks go to the handler that was handed to the load, whatever is assigned to whom.
TEST_F(CallbackReader, DoesNotMoveTheCallbacks) {
    CRecordingHandler other;
    CRecordingHandler handler([&](const std::string& line) {
        if (line != "StartElement r") return;
        static_cast<CXMLSaxHandler&>(other) = handler;
    });
    LoadMemory(DOCUMENT, handler);
    EXPECT_EQ(handler.Take(), Whole(EVENTS));
    EXPECT_EQ(other.Take(), "");
    EXPECT_EQ(other.GetSourceOffset(), 0u);
}

TEST_F(CallbackReader, OfEachThreadIsItsOwn) {
    OnThreads([](int thread) {
        const std::string name = "e" + std::to_string(thread);
        const std::string xml = "<" + name + "><a k='\xC3\xA9'/>text</" + name + ">";
        const std::string whole =
            Whole("StartElement " + name + "\nStartElement a k=\"\xC3\xA9\"\nEndElement a\n" +
                  "Characters \"text\"\nEndElement " + name + "\n");
        for (int round = 0; round < 300; ++round) {
            std::uint64_t last = 0;
            CRecordingHandler handler([&](const std::string&) {
                const CXMLSaxHandler copy(handler);
                last = handler.GetSourceOffset();
                if (round % 3 == 0 && last > 20) throw 42;
            });
            const std::string thrown = Thrown([&] { LoadMemory(xml, handler); });
            if (round % 3 == 0) {
                ASSERT_EQ(thrown, "int 42");
                continue;
            }
            ASSERT_EQ(thrown, "nothing");
            ASSERT_EQ(handler.Take(), whole);
            ASSERT_EQ(last, xml.size());
        }
    });
}

// The end of any handler releases the block of GetData; the end of a load does not.
TEST_F(CallbackReader, AndTheBlockOfGetDataAreIndependent) {
    unsigned char* data = nullptr;
    std::size_t length = 0;
    CRecordingHandler handler([&](const std::string& line) {
        if (line == "Characters \"QUJD\"") {
            EXPECT_TRUE(CXMLSaxHandler::GetData("QUJD", data, length));
        } else if (line == "EndElement r") {
            EXPECT_EQ(std::string(data, data + length), "ABC");
        }
    });
    LoadMemory("<r>QUJD</r>", handler);
    ASSERT_EQ(length, 3u);
    EXPECT_EQ(std::string(data, data + length), "ABC");
    EXPECT_EQ(CXMLSaxHandler::m_pBinBlock, data);
    { CXMLSaxHandler another; }
    EXPECT_EQ(CXMLSaxHandler::m_pBinBlock, nullptr);
    EXPECT_EQ(CXMLSaxHandler::m_nBinBlockLength, 0u);
}
