// Files that a callback changes while they are loaded, and that are left to the parser afterwards.
#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include "load/loading.h"
#include "norvask/norvask.h"
#include "support/files.h"
#include "support/recording_handler.h"

namespace norvask {
namespace {

using norvask_test::CRecordingHandler;
using norvask_test::TemporaryFile;

const char* const OTHER = "<a><b>other</b></a>";

void Overwrite(const std::string& name) { std::ofstream(name, std::ios::binary) << OTHER; }

struct STold {
    std::string events;
    std::string failure;
};

// Loads a file with this content, which the third callback overwrites.
template <typename Then>
STold Load(const std::string& content, bool fastLane, Then then) {
    const TemporaryFile file(".xml", content);
    const std::string name = file.Name();
    CRecordingHandler handler;
    int callbacks = 0;
    handler.Do([&](const std::string&) {
        ++callbacks;
        if (callbacks == 3) {
            Overwrite(name);
            then(handler);
        }
    });
    SLoadOptions options;
    options.fastLane = fastLane;
    STold told;
    try {
        LoadEvents(name.c_str(), handler, options);
    } catch (CXMLException& exception) {
        told.failure = exception.GetMessage();
        const std::size_t place = told.failure.find(name);
        if (place != std::string::npos) {
            told.failure.replace(place, name.size(), "FILE");
        }
    }
    told.events = handler.Transcript();
    return told;
}

// Left to the parser at its end: a document may not have it, or the parser alone takes it.
const char* const ENDS[] = {"<c></a>", "<xml:c/></a>\n\xC3",
                            "<c xmlns:xml='http://www.w3.org/XML/1998/namespace'/></a>"};

TEST(PlainChangedFile, IsAsItWasWhenItIsSmall) {
    for (const std::string end : ENDS) {
        const std::string content = "<a><b>settings</b>" + end;
        const auto nothing = [](CRecordingHandler&) {};
        const STold parsed = Load(content, false, nothing);
        const STold read = Load(content, true, nothing);
        EXPECT_EQ(read.events, parsed.events);
        EXPECT_EQ(read.failure, parsed.failure);
    }
}

std::string Large(const std::string& end) {
    std::string content = "<a>";
    while (content.size() < 200000) {
        content += "<b>settings</b>\n";
    }
    return content + end;
}

TEST(PlainChangedFile, IsNotToldForAWholeOneWhenOnlyItsBeginningWas) {
    for (const std::string end : ENDS) {
        const STold read = Load(Large(end), true, [](CRecordingHandler&) {});
        // Which one depends on what of the file is read again.
        EXPECT_NE(read.failure, "") << read.events;
    }
}

TEST(PlainChangedFile, DoesNotLoseWhatACallbackThrew) {
    for (const std::string& content : {std::string("<a><b>settings</b></a>"), Large("</a>")}) {
        const STold read =
            Load(content, true, [](CRecordingHandler& handler) { handler.GetSourceOffset(); });
        EXPECT_NE(read.failure.find("source offset"), std::string::npos) << read.failure;
    }
}

}  // namespace
}  // namespace norvask
