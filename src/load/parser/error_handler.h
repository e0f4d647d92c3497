// Internal. CMyErrorHandler: turns the first error that the parser reports into a CXMLException.
#ifndef NORVASK_LOAD_PARSER_ERROR_HANDLER_H
#define NORVASK_LOAD_PARSER_ERROR_HANDLER_H

#include <xercesc/sax/ErrorHandler.hpp>

namespace norvask {

class CMyErrorHandler : public xercesc::ErrorHandler {
public:
    // Ignored: the document loads as if there were no warning.
    void warning(const xercesc::SAXParseException& exception) override;

    // Throw the load error with the source, the line and the parser's text; that ends the load.
    void error(const xercesc::SAXParseException& exception) override;
    void fatalError(const xercesc::SAXParseException& exception) override;

    void resetErrors() override;
};

}  // namespace norvask

#endif
