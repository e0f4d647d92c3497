// CDeclarations: lets the parser read the declaration, in front of an empty root.
#include "load/parser/declarations.h"

#include <memory>
#include <utility>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/sax2/DefaultHandler.hpp>
#include <xercesc/sax2/SAX2XMLReader.hpp>
#include <xercesc/sax2/XMLReaderFactory.hpp>
#include <xercesc/util/XMLException.hpp>
#include <xercesc/util/XMLString.hpp>
#include <xercesc/util/XMLUni.hpp>

#include "foundation/utf8.h"
#include "load/parser/dom_string.h"

namespace norvask {

class CDeclarations::CReceiver final : public xercesc::DefaultHandler {
public:
    explicit CReceiver(CDeclarations& declarations) : m_Declarations(declarations) {}

    void attributeDecl(const XMLCh* element, const XMLCh* name, const XMLCh* type, const XMLCh*,
                       const XMLCh* value) override {
        const bool isCDATA = xercesc::XMLString::equals(type, xercesc::XMLUni::fgCDATAString);
        if (isCDATA && value == nullptr) {
            return;
        }
        SDeclaredAttribute declared;
        declared.name = Narrow(name).text;
        declared.isCDATA = isCDATA;
        declared.hasDefault = value != nullptr;
        if (value != nullptr) {
            const SKnownText known = Narrow(value);
            declared.value.assign(known.text, known.length);
            declared.valueKnown = known.known;
        }
        m_Declarations.m_Elements[Narrow(element).text].push_back(std::move(declared));
    }

    void error(const xercesc::SAXParseException& exception) override { throw exception; }
    void fatalError(const xercesc::SAXParseException& exception) override { throw exception; }

private:
    SKnownText Narrow(const XMLCh* text) { return m_Narrow.ConvertByOwn(text, Utf16Length(text)); }

    CDeclarations& m_Declarations;
    CDOMString m_Narrow;
};

bool CDeclarations::Read(const std::string& doctype) {
    const std::string document = doctype + "<root/>";
    const xercesc::MemBufInputSource source(reinterpret_cast<const XMLByte*>(document.data()),
                                            document.size(), "declarations");
    CReceiver receiver(*this);
    const std::unique_ptr<xercesc::SAX2XMLReader> reader(
        xercesc::XMLReaderFactory::createXMLReader());
    reader->setFeature(xercesc::XMLUni::fgSAX2CoreValidation, false);
    reader->setDeclarationHandler(&receiver);
    reader->setErrorHandler(&receiver);
    try {
        reader->parse(source);
        return true;
    } catch (const xercesc::XMLException&) {
        return false;
    } catch (const xercesc::SAXParseException&) {
        return false;
    }
}

}  // namespace norvask
