// CMyErrorHandler: an error of the parser as a load error, its two texts by the converter in force.
#include "load/parser/error_handler.h"

#include <cstdint>
#include <cstdio>
#include <xercesc/sax/SAXParseException.hpp>

#include "foundation/errors.h"
#include "load/parser/dom_string.h"

namespace norvask {

void CMyErrorHandler::warning(const xercesc::SAXParseException&) {}

void CMyErrorHandler::error(const xercesc::SAXParseException& exception) {
    char line[16];
    std::snprintf(line, sizeof(line), "%d", static_cast<std::int32_t>(exception.getLineNumber()));
    CDOMString message(exception.getMessage());
    CDOMString source(exception.getSystemId());
    ThrowParseError(source.GetString(), line, message.GetString());
}

void CMyErrorHandler::fatalError(const xercesc::SAXParseException& exception) { error(exception); }

void CMyErrorHandler::resetErrors() {}

}  // namespace norvask
