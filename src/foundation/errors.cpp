// The errors of the library: class and number of the message, side by side.
#include "foundation/errors.h"

#include "norvask/exception.h"

namespace norvask {

void ThrowParserNotInitialised() { throw CXMLException(4, 1); }

void ThrowFileLoadFailed(const char* fileName, const char* parserMessage) {
    throw CXMLException(1, 2, fileName, parserMessage);
}

void ThrowMemoryLoadFailed(const char* parserMessage) { throw CXMLException(1, 11, parserMessage); }

void ThrowParseError(const char* source, const char* line, const char* parserMessage) {
    throw CXMLException(2, 3, source, line, parserMessage);
}

void ThrowSavingFailed(const char* target) { throw CXMLException(1, 4, target); }

void ThrowDocumentStillOpen() { throw CXMLException(1, 5); }

void ThrowDocumentNotOpen() { throw CXMLException(1, 8); }

void ThrowNoElementToEnd() { throw CXMLException(1, 9); }

void ThrowElementsStillOpen() { throw CXMLException(8, 9); }

void ThrowInvalidName(const char* name) { throw CXMLException(3, 6, name); }

void ThrowNoValidText(const char* elementName) { throw CXMLException(2, 7, elementName); }

// The message has no place for the name; it is passed so that a text with a place could show it.
void ThrowTextNotSettable(const char* elementName) { throw CXMLException(6, 9, elementName); }

void ThrowInvalidParameter() { throw CXMLException(1, 12); }

void ThrowNotSupportedByLeaf() { throw CXMLException(1, 13); }

void ThrowConversionFailed() { throw CXMLException(7, 14); }

}  // namespace norvask
