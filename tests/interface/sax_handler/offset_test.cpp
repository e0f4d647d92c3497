// CXMLSaxHandler::GetSourceOffset: which loads answer it.
#include <cstdint>

#include "support/recording_handler.h"
#include "support/source_offsets.h"
#include "support/testing.h"

using namespace norvask_test;

TEST(CallbackOffset, IsZeroOutsideOfALoad) {
    CRecordingHandler handler;
    EXPECT_EQ(handler.GetSourceOffset(), 0u);
    const CSourceOffsets on;
    EXPECT_EQ(handler.GetSourceOffset(), 0u);
    TemporaryFile file(".xml", "<r/>");
    LoadMemory("<r/>", handler);
    EXPECT_EQ(handler.GetSourceOffset(), 0u);
    LoadFile(file.Name(), handler);
    EXPECT_EQ(handler.GetSourceOffset(), 0u);
    EXPECT_LOAD_ERROR(LoadMemory("<r>", handler), "Memfile", 1,
                      "input ended before all started tags were ended; last tag "
                      "started is 'r'");
    EXPECT_EQ(handler.GetSourceOffset(), 0u);
    EXPECT_ANY_THROW(LoadFile("/nonexistent/r.xml", handler));
    EXPECT_EQ(handler.GetSourceOffset(), 0u);
    handler.Do([](const std::string&) { throw 42; });
    EXPECT_THROW(LoadMemory("<r/>", handler), int);
    EXPECT_EQ(handler.GetSourceOffset(), 0u);
    EXPECT_THROW(LoadFile(file.Name(), handler), int);
    EXPECT_EQ(handler.GetSourceOffset(), 0u);
}

// The parser reports its refusal like an error of the document, at the line that it has reached.
TEST(CallbackOffset, EndsTheLoadWhereItIsNotTracked) {
    const std::string xml = "<r>\n<a/>x\n\n</r>\n";
    const std::string whole = Whole(
        "StartElement r\nStartElement a\nEndElement a\nCharacters \"x\\n\\n\"\nEndElement r\n");
    const char* const refusal =
        "current transcoding service does not support source offset information";
    struct {
        std::string callback;
        int line;
    } const rows[] = {{"StartDocument", 1},
                      {"StartElement a", 2},
                      {"Characters \"x\\n\\n\"", 4},
                      {"EndElement r", 4},
                      {"EndDocument", 5}};
    TemporaryFile file(".xml", xml);
    for (const auto& row : rows) {
        SCOPED_TRACE(row.callback);
        const std::string until =
            whole.substr(0, whole.find(row.callback + "\n") + row.callback.size() + 1);
        CRecordingHandler handler([&](const std::string& line) {
            if (line == row.callback) handler.GetSourceOffset();
        });
        EXPECT_LOAD_ERROR(LoadMemory(xml, handler), "Memfile", row.line, refusal);
        EXPECT_EQ(handler.Take(), until);
        EXPECT_EQ(handler.GetSourceOffset(), 0u);
        EXPECT_LOAD_ERROR(LoadFile(file.Name(), handler), file.Name(), row.line, refusal);
        EXPECT_EQ(handler.Take(), until);
        EXPECT_EQ(handler.GetSourceOffset(), 0u);
    }
}

TEST(CallbackOffset, IsRefusedInsideOfAnInternalEntityToo) {
    CRecordingHandler handler([&](const std::string& line) {
        if (line == "EndElement k") handler.GetSourceOffset();
    });
    EXPECT_LOAD_ERROR(LoadMemory("<!DOCTYPE r [<!ENTITY e '<k>z</k>'>]><r>&e;</r>", handler),
                      "Memfile", 1,
                      "current transcoding service does not support source offset information");
    EXPECT_EQ(handler.GetSourceOffset(), 0u);
}

TEST(CallbackOffset, IsRefusedInsideOfAnExternalEntityToo) {
    TemporaryFile entity(".ent", "<a/>");
    CRecordingHandler handler([&](const std::string& line) {
        if (line == "StartElement a") handler.GetSourceOffset();
    });
    EXPECT_ANY_THROW(LoadMemory(
        std::string("<!DOCTYPE r [<!ENTITY e SYSTEM '") + entity.Name() + "'>]><r>&e;</r>",
        handler));
    EXPECT_EQ(handler.Take(),
              "StartDocument\nStartDTD \"r\" public NULL system NULL\nStartElement r\n"
              "StartElement a\n");
}

TEST(CallbackOffset, LeavesTheLoadAloneWhereTheCallbackCatchesTheRefusal) {
    int refused = 0;
    CRecordingHandler handler([&](const std::string&) {
        try {
            handler.GetSourceOffset();
        } catch (...) {
            ++refused;
        }
    });
    LoadMemory("<r><a/>x</r>", handler);
    EXPECT_EQ(handler.Take(), Whole("StartElement r\nStartElement a\nEndElement a\n"
                                    "Characters \"x\"\nEndElement r\n"));
    EXPECT_EQ(refused, 7);
    EXPECT_EQ(handler.GetSourceOffset(), 0u);
}

// In one load a handler may have answered from an entity last; the next begins anew.
TEST(CallbackOffset, BeginsAnewWithEachLoad) {
    const CSourceOffsets on;
    COffsetHandler handler;
    LoadMemory("<r>" + std::string(1000, 'x') + "</r>", handler);
    handler.m_Lines.clear();
    LoadMemory("<!DOCTYPE r [<!ENTITY e '<a/>'>]><r>&e;</r>", handler);
    EXPECT_EQ(handler.m_Lines.substr(0, handler.m_Lines.find("StartElement r")),
              "0 StartDocument\n12 StartDTD \"r\" public NULL system NULL\n36 ");
}

TEST(CallbackOffset, IsTrackedByLoadsThatStartWithTheSwitchOn) {
    CXMLManager& manager = CXMLManager::GetInstance();
    COffsetHandler handler;
    EXPECT_ANY_THROW(LoadMemory("<r/>", handler));
    manager.SetCalculateSourceOffsets(true);
    LoadMemory("<r/>", handler);
    manager.SetCalculateSourceOffsets(false);
    EXPECT_ANY_THROW(LoadMemory("<r/>", handler));

    // Turned off inside, it stays on for the load under way; turned on inside, it stays off.
    std::vector<std::uint64_t> offsets;
    CRecordingHandler other([&](const std::string& line) {
        manager.SetCalculateSourceOffsets(line == "EndDocument");
        offsets.push_back(other.GetSourceOffset());
    });
    manager.SetCalculateSourceOffsets(true);
    LoadMemory("<r/>", other);
    EXPECT_EQ(offsets, (std::vector<std::uint64_t>{0, 4, 4, 4}));
    manager.SetCalculateSourceOffsets(false);
    int refused = 0;
    other.Do([&](const std::string&) {
        manager.SetCalculateSourceOffsets(true);
        try {
            other.GetSourceOffset();
        } catch (...) {
            ++refused;
        }
    });
    LoadMemory("<r/>", other);
    EXPECT_EQ(refused, 4);
    manager.SetCalculateSourceOffsets(false);
}

TEST(CallbackOffset, MakesNoDifferenceToTheEventsNorToTrees) {
    const std::string xml = "<!DOCTYPE r [<!ENTITY e '<a/>'>]><r k='v'>&e;text<![CDATA[QQ==]]></r>";
    const std::string events = EventsOfMemory(xml);
    const std::string tree = TreeText(LoadMemory(xml));
    const CSourceOffsets on;
    EXPECT_EQ(EventsOfMemory(xml), events);
    EXPECT_EQ(TreeText(LoadMemory(xml)), tree);
}
