// Every pair of error class and message, through the helper that is named for it.
#include "foundation/errors.h"

#include <gtest/gtest.h>

#include "foundation/messages.h"
#include "support/vocabulary.h"

namespace norvask {
namespace {

TEST(Errors, EachHelperThrowsItsPair) {
    EXPECT_XML_ERROR(ThrowParserNotInitialised(), 4,
                     "Error during initialisation of the XML parser");
    EXPECT_XML_ERROR(ThrowFileLoadFailed("f.xml", "why"), 1, "Error loading 'f.xml':\n\n'why'");
    EXPECT_XML_ERROR(ThrowMemoryLoadFailed("why"), 1, "XML parser error\n\n'why'");
    EXPECT_XML_ERROR(ThrowParseError("f.xml", "12", "msg"), 2,
                     "Load error:\nFile: 'f.xml'  Line '12':\n\n'msg'");
    EXPECT_XML_ERROR(ThrowSavingFailed("f.xml"), 1, "Error saving 'f.xml'.");
    EXPECT_XML_ERROR(ThrowDocumentStillOpen(), 1, "The last written document is not closed.");
    EXPECT_XML_ERROR(ThrowDocumentNotOpen(), 1, "The document is not open.");
    EXPECT_XML_ERROR(ThrowNoElementToEnd(), 1, "Wrong XML format");
    EXPECT_XML_ERROR(ThrowElementsStillOpen(), 8, "Wrong XML format");
    EXPECT_XML_ERROR(ThrowInvalidName("a b"), 3, "Invalid XML name: 'a b'.");
    EXPECT_XML_ERROR(ThrowInvalidName(nullptr), 3, "Invalid XML name: ''.");
    EXPECT_XML_ERROR(ThrowNoValidText("e"), 2, "The node 'e' does not contain valid text");
    EXPECT_XML_ERROR(ThrowTextNotSettable("e"), 6, "Wrong XML format");
    EXPECT_XML_ERROR(ThrowInvalidParameter(), 1, "invalid parameter");
    EXPECT_XML_ERROR(ThrowNotSupportedByLeaf(), 1, "Function is not supported by this node type.");
    EXPECT_XML_ERROR(ThrowConversionFailed(), 7, "Error during conversion.");
}

TEST(Errors, TheTableHasFourteenMessages) {
    EXPECT_EQ(MessageText(0), nullptr);
    for (unsigned int number = 1; number <= 14; ++number) {
        EXPECT_NE(MessageText(number), nullptr) << number;
    }
    EXPECT_EQ(MessageText(15), nullptr);
    EXPECT_STREQ(MessageText(10), "Invalid character in string '%s'.");
}

}  // namespace
}  // namespace norvask
