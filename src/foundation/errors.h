// Internal. The one place that knows which error class goes with which message.
//
// Sources never spell such a pair: they call the helper that is named for the situation.
#ifndef NORVASK_FOUNDATION_ERRORS_H
#define NORVASK_FOUNDATION_ERRORS_H

namespace norvask {

[[noreturn]] void ThrowParserNotInitialised();
[[noreturn]] void ThrowFileLoadFailed(const char* fileName, const char* parserMessage);
[[noreturn]] void ThrowMemoryLoadFailed(const char* parserMessage);
[[noreturn]] void ThrowParseError(const char* source, const char* line, const char* parserMessage);
[[noreturn]] void ThrowSavingFailed(const char* target);
[[noreturn]] void ThrowDocumentStillOpen();
[[noreturn]] void ThrowDocumentNotOpen();
[[noreturn]] void ThrowNoElementToEnd();
[[noreturn]] void ThrowElementsStillOpen();
[[noreturn]] void ThrowInvalidName(const char* name);
[[noreturn]] void ThrowNoValidText(const char* elementName);
[[noreturn]] void ThrowTextNotSettable(const char* elementName);
[[noreturn]] void ThrowInvalidParameter();
[[noreturn]] void ThrowNotSupportedByLeaf();
[[noreturn]] void ThrowConversionFailed();

}  // namespace norvask

#endif
