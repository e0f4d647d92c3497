#include <memory>
#include <stdexcept>
#include <vector>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/framework/XMLFormatter.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/sax/SAXException.hpp>
#include <xercesc/sax2/DefaultHandler.hpp>
#include <xercesc/sax2/SAX2XMLReader.hpp>
#include <xercesc/sax2/XMLReaderFactory.hpp>
#include <xercesc/util/XMLUni.hpp>

#include "parser_read.h"
#include "trees.h"

namespace norvask_bench {

namespace {

using xercesc::XMLUni;

class CCountingHandler : public xercesc::DefaultHandler {
public:
    void startElement(const XMLCh* const, const XMLCh* const, const XMLCh* const,
                      const xercesc::Attributes&) override {
        ++m_nElements;
    }

    std::size_t m_nElements = 0;
};

class CSinkTarget : public xercesc::XMLFormatTarget {
public:
    explicit CSinkTarget(CSink& sink) : m_Sink(sink) {}

    void writeChars(const XMLByte* const data, const XMLSize_t length,
                    xercesc::XMLFormatter* const) override {
        m_Sink.Write(data, length);
    }

private:
    CSink& m_Sink;
};

struct SRelease {
    template <class Object>
    void operator()(Object* object) const {
        object->release();
    }
};

xercesc::MemBufInputSource Source(const std::string& text) {
    return xercesc::MemBufInputSource(reinterpret_cast<const XMLByte*>(text.data()), text.size(),
                                      "Memfile");
}

void PushChildren(const xercesc::DOMElement* element,
                  std::vector<const xercesc::DOMElement*>& open) {
    for (const xercesc::DOMElement* child = element->getFirstElementChild(); child != nullptr;
         child = child->getNextElementSibling()) {
        open.push_back(child);
    }
}

}  // namespace

// The handler stops the parse at a fatal error.
void ReadByParser(const std::string& text, xercesc::DefaultHandler& handler) {
    try {
        const xercesc::MemBufInputSource source = Source(text);
        const std::unique_ptr<xercesc::SAX2XMLReader> reader(
            xercesc::XMLReaderFactory::createXMLReader());
        reader->setErrorHandler(&handler);
        reader->setContentHandler(&handler);
        reader->setLexicalHandler(&handler);
        reader->setDTDHandler(&handler);
        reader->setFeature(XMLUni::fgXercesCalculateSrcOfs, false);
        reader->setFeature(XMLUni::fgSAX2CoreValidation, false);
        reader->parse(source);
    } catch (const xercesc::SAXException&) {
        throw std::runtime_error("parser alone: the document is refused");
    }
}

CParserAlone::CParserAlone(const std::string& text) {
    xercesc::DefaultHandler handler;
    ReadByParser(text, handler);
}

std::size_t CountReportedElements(const std::string& text) {
    CCountingHandler handler;
    ReadByParser(text, handler);
    return handler.m_nElements;
}

// The reader's settings said in the words of the other parser class; everything else as it comes.
CXercesTree::CXercesTree(const std::string& text) {
    const xercesc::MemBufInputSource source = Source(text);
    xercesc::XercesDOMParser parser;
    parser.setValidationScheme(xercesc::XercesDOMParser::Val_Never);
    parser.setDoNamespaces(true);
    parser.setDoSchema(true);
    parser.setCreateEntityReferenceNodes(false);
    parser.parse(source);
    if (parser.getErrorCount() != 0) {
        throw std::runtime_error("Xerces DOM: the document is refused");
    }
    m_pDocument = parser.adoptDocument();
}

CXercesTree::CXercesTree(const CXercesTree& source)
    : m_pDocument(static_cast<xercesc::DOMDocument*>(source.m_pDocument->cloneNode(true))) {}

void CXercesTree::Save(CSink& sink, bool format) const {
    static const XMLCh kCore[] = {'C', 'o', 'r', 'e', 0};
    xercesc::DOMImplementation* implementation =
        xercesc::DOMImplementationRegistry::getDOMImplementation(kCore);
    const std::unique_ptr<xercesc::DOMLSSerializer, SRelease> serializer(
        implementation->createLSSerializer());
    const std::unique_ptr<xercesc::DOMLSOutput, SRelease> output(implementation->createLSOutput());
    serializer->getDomConfig()->setParameter(XMLUni::fgDOMWRTFormatPrettyPrint, format);
    CSinkTarget target(sink);
    output->setByteStream(&target);
    output->setEncoding(XMLUni::fgUTF8EncodingString);
    if (!serializer->write(m_pDocument, output.get())) {
        throw std::runtime_error("Xerces DOM: the document cannot be saved");
    }
}

std::size_t CXercesTree::CountElements() const {
    return CountFrom<const xercesc::DOMElement*>(m_pDocument->getDocumentElement(), PushChildren);
}

}  // namespace norvask_bench
