// Exceptions that callbacks throw: every kind out of every callback, from a file and from memory.
// What reaches the caller, that nothing is told after it, and that the handler serves the next
// load.
#include <exception>

#include "support/recording_handler.h"
#include "support/testing.h"
#include "support/thrown.h"

using namespace norvask_test;

namespace {

// Every callback, some of them with a text pending or attributes alive.
const char* const DOCUMENT =
    "<!DOCTYPE r [<!ENTITY e '<i>in an entity</i>'>]>\n"
    "<r xmlns:p='urn:u' k='v' p:k='w'>text<![CDATA[section]]><p:a xmlns='v'/>&e; more</r>\n";

const char* const CALLBACKS[] = {"StartDocument", "StartDTD",   "StartNamespace", "StartElement",
                                 "Characters",    "StartCDATA", "EndCDATA",       "EndElement",
                                 "EndNamespace",  "EndDocument"};

// The transcript up to the n-th line (from 0) that begins with this, with it; empty if there is
// none.
std::string UpTo(const std::string& transcript, const std::string& callback, int n) {
    for (std::size_t begin = 0; begin < transcript.size();) {
        const std::size_t end = transcript.find('\n', begin) + 1;
        if (transcript.compare(begin, callback.size(), callback) == 0 && n-- == 0)
            return transcript.substr(0, end);
        begin = end;
    }
    return "";
}

}  // namespace

TEST(CallbackExceptions, OfEveryKindLeaveEveryCallback) {
    const std::string whole = EventsOfMemory(DOCUMENT);
    TemporaryFile file(".xml", DOCUMENT);
    int throws = 0;
    for (const std::string callback : CALLBACKS) {
        ASSERT_NE(UpTo(whole, callback, 0), "") << callback << " is not called";
        for (int n = 0; !UpTo(whole, callback, n).empty(); ++n) {
            for (const SThrow& thrown : THROWS) {
                SCOPED_TRACE(callback + " " + std::to_string(n) + " " + thrown.told);
                for (const bool fromFile : {false, true}) {
                    CRecordingHandler handler;
                    int left = n;
                    handler.Do([&](const std::string& line) {
                        if (line.compare(0, callback.size(), callback) == 0 && left-- == 0)
                            thrown.now();
                    });
                    EXPECT_EQ(Thrown([&] {
                                  if (fromFile)
                                      LoadFile(file.Name(), handler);
                                  else
                                      LoadMemory(DOCUMENT, handler);
                              }),
                              thrown.told);
                    ++throws;
                    EXPECT_EQ(handler.Take(), UpTo(whole, callback, n));
                    EXPECT_EQ(handler.GetSourceOffset(), 0u);
                    EXPECT_EQ(std::uncaught_exceptions(), 0);
                    handler.Do(nullptr);
                    LoadMemory(DOCUMENT, handler);
                    EXPECT_EQ(handler.Take(), whole);
                }
            }
        }
    }
    EXPECT_GT(throws, 10 * 7 * 2);
}

TEST(CallbackExceptions, OfTheLibraryArriveAsAnEqualCopy) {
    const std::string longText(100000, 'x');
    for (const std::string& text : {std::string(), std::string("%s"), longText}) {
        const char* thrown = nullptr;
        CXMLException* address = nullptr;
        CRecordingHandler handler([&](const std::string& line) {
            if (line != "StartElement r") return;
            try {
                throw CXMLException(-3, text.c_str());
            } catch (CXMLException& e) {
                thrown = e.GetMessage();
                address = &e;
                throw;
            }
        });
        bool caught = false;
        try {
            LoadMemory("<r/>", handler);
        } catch (CXMLException& e) {
            caught = true;
            EXPECT_EQ(e.GetID(), -3);
            EXPECT_TRUE(e.GetMessage() == text);
            EXPECT_NE(static_cast<const void*>(e.GetMessage()), static_cast<const void*>(thrown));
            EXPECT_NE(&e, address);
        }
        EXPECT_TRUE(caught);
    }
}

// The library's own text of an error in a callback is no different from any other.
TEST(CallbackExceptions, OfOtherOperationsOfTheLibraryPassLikeAnyOther) {
    CRecordingHandler handler([](const std::string& line) {
        if (line == "StartElement r") XMLConvertTime2Text(24, 0, 0);
    });
    EXPECT_NO_CONVERSION(LoadMemory("<r/>", handler));
    CRecordingHandler other([](const std::string& line) {
        if (line == "EndElement r") NewDocument()->CreateRoot("a b");
    });
    EXPECT_INVALID_NAME(LoadMemory("<r/>", other), "a b");
}

TEST(CallbackExceptions, OfALoadInsideACallbackAreTellableApart) {
    CRecordingHandler inner;
    CRecordingHandler outer([&inner](const std::string& line) {
        if (line == "StartElement a") LoadMemory("<q>\n\n<", inner);
    });
    EXPECT_LOAD_ERROR(LoadMemory("<r><a/></r>", outer), "Memfile", 3, "element name expected");
    EXPECT_EQ(inner.Take(), "StartDocument\nStartElement q\n");
    EXPECT_EQ(outer.Take(), "StartDocument\nStartElement r\nStartElement a\n");
    outer.Do([&inner](const std::string& line) {
        if (line == "StartElement a") {
            EXPECT_LOAD_ERROR(LoadMemory("<q>", inner), "Memfile", 1,
                              "input ended before all started tags were ended; last tag "
                              "started is 'q'");
        }
    });
    LoadMemory("<r><a/>x</r>", outer);
    EXPECT_EQ(outer.Take(), Whole("StartElement r\nStartElement a\nEndElement a\n"
                                  "Characters \"x\"\nEndElement r\n"));
}

// A validity error in a callback's way: what the callback throws is not taken for one.
TEST(CallbackExceptions, LeaveValidatedLoadsToo) {
    const std::string xml = "<!DOCTYPE r [<!ELEMENT r (a)><!ELEMENT a EMPTY>]><r><a/></r>";
    for (const std::string callback : {"StartElement a", "EndElement a", "EndElement r"}) {
        for (const SThrow& thrown : THROWS) {
            CRecordingHandler handler([&](const std::string& line) {
                if (line == callback) thrown.now();
            });
            EXPECT_EQ(Thrown([&] { LoadMemory(xml, handler, Validate()); }), thrown.told);
        }
    }
}

TEST(CallbackExceptions, LeaveLargeDocumentsAnywhere) {
    std::string xml = "<r>";
    for (int i = 0; i < 20000; ++i)
        xml += "<item id='" + std::to_string(i) + "'>text</item>\n";
    xml += "</r>";
    TemporaryFile file(".xml", xml);
    CRecordingHandler handler;
    for (const int at : {1, 7, 5000, 40000, 59990}) {
        int events = 0;
        handler.Do([&](const std::string&) {
            if (++events == at) throw at;
        });
        EXPECT_EQ(Thrown([&] { LoadFile(file.Name(), handler); }), "int " + std::to_string(at));
        EXPECT_EQ(events, at);
        handler.Take();
    }
}
