// Exceptions of the parser's own types that a callback throws.
//
// A client may use the parser itself, in a callback too. It lives with the unit tests because it
// needs the parser's headers.
#include <gtest/gtest.h>
#include <norvask/norvask.h>

#include <functional>
#include <string>
#include <xercesc/sax/SAXException.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/RuntimeException.hpp>

#include "support/loading.h"
#include "support/recording_handler.h"
#include "support/vocabulary.h"

using norvask_test::CRecordingHandler;
using norvask_test::LoadError;
using norvask_test::LoadFile;
using norvask_test::LoadMemory;
using norvask_test::TemporaryFile;

namespace {

const char* const kDocument =
    "<!DOCTYPE r [<!ENTITY e 'x'>]>\n"
    "<r xmlns:p='u' k='v'>\ntext<![CDATA[section]]>\n</r>\n";

struct SCallback {
    const char* name;
    int line;  // that the parser has reached
};
const SCallback kCallbacks[] = {{"StartDocument", 1}, {"StartDTD", 1},   {"StartNamespace", 2},
                                {"StartElement", 2},  {"Characters", 3}, {"StartCDATA", 3},
                                {"EndCDATA", 3},      {"EndElement", 4}, {"EndNamespace", 4},
                                {"EndDocument", 5}};

void ThrowXml() { ThrowXML(xercesc::RuntimeException, xercesc::XMLExcepts::Gen_ParseInProgress); }
void ThrowSaxParse() { throw xercesc::SAXParseException(u"a message", u"public", u"system", 7, 8); }
void ThrowSax() { throw xercesc::SAXException(u"a message"); }
void ThrowOutOfMemory() { throw xercesc::OutOfMemoryException(); }

// Throws at the first callback of this name.
void ThrowAt(CRecordingHandler& handler, const std::string& name,
             const std::function<void()>& fail) {
    bool thrown = false;
    handler.Do([=](const std::string& line) mutable {
        if (thrown || line.compare(0, name.size(), name) != 0) return;
        thrown = true;
        fail();
    });
}

void ExpectUsable(CRecordingHandler& handler) {
    EXPECT_EQ(handler.GetSourceOffset(), 0u);
    handler.Do(nullptr);
    handler.Take();
    LoadMemory("<r/>", handler);
    EXPECT_EQ(handler.Take(), norvask_test::Whole("StartElement r\nEndElement r\n"));
}

}  // namespace

// The parser takes its own kind for an error that it met while it reads.
TEST(CallbackParserException, OfTheParserIsReportedLikeAnErrorOfTheDocument) {
    TemporaryFile file(".xml", kDocument);
    for (const SCallback& callback : kCallbacks) {
        SCOPED_TRACE(callback.name);
        CRecordingHandler handler;
        ThrowAt(handler, callback.name, ThrowXml);
        EXPECT_XML_ERROR(LoadMemory(kDocument, handler), 2,
                         LoadError("Memfile", callback.line, "parsing in progress"));
        ExpectUsable(handler);
        ThrowAt(handler, callback.name, ThrowXml);
        EXPECT_XML_ERROR(LoadFile(file.Name(), handler), 2,
                         LoadError(file.Name(), callback.line, "parsing in progress"));
        ExpectUsable(handler);
    }
}

TEST(CallbackParserException, OfAParseIsToldWithoutALine) {
    TemporaryFile file(".xml", kDocument);
    for (const SCallback& callback : kCallbacks) {
        SCOPED_TRACE(callback.name);
        CRecordingHandler handler;
        ThrowAt(handler, callback.name, ThrowSaxParse);
        EXPECT_XML_ERROR(LoadMemory(kDocument, handler), 1, "XML parser error\n\n'a message'");
        ExpectUsable(handler);
        ThrowAt(handler, callback.name, ThrowSaxParse);
        EXPECT_XML_ERROR(LoadFile(file.Name(), handler), 1,
                         std::string("Error loading '") + file.Name() + "':\n\n'a message'");
        ExpectUsable(handler);
    }
}

TEST(CallbackParserException, OfOtherKindsPassesUnchanged) {
    TemporaryFile file(".xml", kDocument);
    for (const SCallback& callback : kCallbacks) {
        SCOPED_TRACE(callback.name);
        CRecordingHandler handler;
        ThrowAt(handler, callback.name, ThrowSax);
        EXPECT_THROW(LoadMemory(kDocument, handler), xercesc::SAXException);
        ExpectUsable(handler);
        ThrowAt(handler, callback.name, ThrowOutOfMemory);
        EXPECT_THROW(LoadFile(file.Name(), handler), xercesc::OutOfMemoryException);
        ExpectUsable(handler);
    }
}
