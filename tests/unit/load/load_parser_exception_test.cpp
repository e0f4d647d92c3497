// Exceptions of the parser's own types that reach a load otherwise than through its error handler.
//
// No document makes the parser throw one past its error handler, so they are thrown here from where
// a load calls out: an installed converter. It lives with the unit tests because it needs the
// parser's headers.
#include <gtest/gtest.h>
#include <norvask/norvask.h>

#include <cstddef>
#include <functional>
#include <string>
#include <utility>
#include <xercesc/sax/SAXException.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/RuntimeException.hpp>

#include "support/loading.h"
#include "support/vocabulary.h"

using norvask_test::LoadError;
using norvask_test::LoadFile;
using norvask_test::LoadMemory;
using norvask_test::TemporaryFile;

namespace {

// Installed for its lifetime; throws at its first conversions, as often as it is told.
class CThrowingConverter : public norvask::CWideCharToString {
public:
    CThrowingConverter(int times, std::function<void()> fail)
        : m_nTimes(times), m_Throw(std::move(fail)) {
        norvask::CXMLManager::GetInstance().SetWideCharToStringConverter(this);
    }
    CThrowingConverter(const CThrowingConverter&) = delete;
    CThrowingConverter& operator=(const CThrowingConverter&) = delete;
    ~CThrowingConverter() {
        norvask::CXMLManager::GetInstance().SetWideCharToStringConverter(nullptr);
    }

    char* Convert(const char16_t* source, std::size_t length) override {
        if (m_nTimes-- > 0) m_Throw();
        return CWideCharToString::Convert(source, length);
    }

private:
    int m_nTimes;
    std::function<void()> m_Throw;
};

void ThrowXml() { ThrowXML(xercesc::RuntimeException, xercesc::XMLExcepts::Gen_ParseInProgress); }
void ThrowSaxParse() { throw xercesc::SAXParseException(u"a message", u"public", u"system", 7, 8); }
void ThrowSax() { throw xercesc::SAXException(u"a message"); }
void ThrowOutOfMemory() { throw xercesc::OutOfMemoryException(); }

const char* const kXmlMessage = "parsing in progress";

}  // namespace

TEST(LoadParserException, OfAParseIsToldWithTheFileButWithoutALine) {
    TemporaryFile file(".xml", "<r/>");
    CThrowingConverter converter(1, ThrowSaxParse);
    EXPECT_XML_ERROR(LoadFile(file.Name()), 1,
                     std::string("Error loading '") + file.Name() + "':\n\n'a message'");
}

TEST(LoadParserException, OfAParseIsToldWithoutANameForMemory) {
    CThrowingConverter converter(1, ThrowSaxParse);
    EXPECT_XML_ERROR(LoadMemory("<r/>"), 1, "XML parser error\n\n'a message'");
}

// The first goes to the error handler, like everything that goes wrong while the parser reads. If
// that fails too, the exception comes out of the parser.
TEST(LoadParserException, OfAnyKindGoesToTheErrorHandlerFirst) {
    TemporaryFile file(".xml", "<r/>");
    {
        CThrowingConverter converter(1, ThrowXml);
        EXPECT_XML_ERROR(LoadMemory("<r/>"), 2, LoadError("Memfile", 1, kXmlMessage));
    }
    {
        CThrowingConverter converter(1, ThrowXml);
        EXPECT_XML_ERROR(LoadFile(file.Name()), 2, LoadError(file.Name(), 1, kXmlMessage));
    }
    {
        CThrowingConverter converter(2, ThrowXml);
        EXPECT_XML_ERROR(LoadMemory("<r/>"), 1,
                         std::string("XML parser error\n\n'") + kXmlMessage + "'");
    }
    CThrowingConverter converter(2, ThrowXml);
    EXPECT_XML_ERROR(LoadFile(file.Name()), 1,
                     std::string("Error loading '") + file.Name() + "':\n\n'" + kXmlMessage + "'");
}

TEST(LoadParserException, ShowsTheCallersFileNameCutAt255Bytes) {
    TemporaryFile file(".xml", "<r/>");
    std::string name = file.Name();
    const std::size_t slash = name.rfind('/');
    std::string dots;
    for (int i = 0; i < 150; ++i)
        dots += "/.";
    name.insert(slash, dots);
    CThrowingConverter converter(1, ThrowSaxParse);
    EXPECT_XML_ERROR(LoadFile(name), 1,
                     "Error loading '" + name.substr(0, 255) + "':\n\n'a message'");
}

TEST(LoadParserException, LetsTheConverterFailAtTheTextOfTheException) {
    CThrowingConverter converter(2, ThrowSaxParse);
    EXPECT_THROW(LoadMemory("<r/>"), xercesc::SAXParseException);
}

TEST(LoadParserException, OfOtherKindsPassesUnchanged) {
    {
        CThrowingConverter converter(1, ThrowSax);
        EXPECT_THROW(LoadMemory("<r/>"), xercesc::SAXException);
    }
    CThrowingConverter converter(1, ThrowOutOfMemory);
    EXPECT_THROW(LoadMemory("<r/>"), xercesc::OutOfMemoryException);
}
