// What the library knows of the parser below the manager.
#include "foundation/parser_state.h"

#include <gtest/gtest.h>

#include "norvask/manager.h"
#include "support/vocabulary.h"

namespace norvask {
namespace {

class CDerivedManager : public CXMLManager {};

TEST(ParserState, TheManagerOfTheProcessTellsThatTheParserIsThere) {
    EXPECT_TRUE(CXMLManager::GetInstance().IsInitialized());
    EXPECT_NO_THROW(RequireParserInitialised());
    EXPECT_TRUE(LocalEncodingIsUtf8());
}

TEST(ParserState, NoOtherManagerDoes) {
    CXMLDocument* const document = CXMLManager::GetInstance().CreateDocument(nullptr, nullptr);
    SetParserInitialised(false);
    EXPECT_TRUE(CDerivedManager().IsInitialized());
    EXPECT_XML_ERROR(RequireParserInitialised(), 4,
                     "Error during initialisation of the XML parser");
    EXPECT_XML_ERROR(document->Clone(), 4, "Error during initialisation of the XML parser");
    SetParserInitialised(true);
    document->Delete();
    EXPECT_NO_THROW(RequireParserInitialised());
}

}  // namespace
}  // namespace norvask
