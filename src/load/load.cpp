// CXMLManager: loading. One function sets up and cleans up, whatever is loaded from where.
#include <memory>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/sax2/SAX2XMLReader.hpp>
#include <xercesc/sax2/XMLReaderFactory.hpp>
#include <xercesc/util/XMLException.hpp>
#include <xercesc/util/XMLUni.hpp>

#include "foundation/dom_string.h"
#include "foundation/errors.h"
#include "foundation/parser_text.h"
#include "load/error_handler.h"
#include "load/sax_handler_adapter.h"
#include "norvask/exception.h"
#include "norvask/manager.h"

namespace norvask {
namespace {

using xercesc::SAX2XMLReader;
using xercesc::XMLUni;

struct SLoadOptions {
    bool validate;
    bool doSchema;
    const char* schemaLocation;
    bool schemaHasNamespace;
    bool calculateSourceOffsets;
};

// Where a document comes from: how the reader is set going, and how the parser's own exceptions are told.
class CFileSource {
public:
    explicit CFileSource(const char* fileName) noexcept : m_pFileName(fileName) {}
    void Parse(SAX2XMLReader& reader) { reader.parse(m_pFileName); }
    [[noreturn]] void ThrowFailed(const char* parserMessage) const {
        ThrowFileLoadFailed(m_pFileName, parserMessage);
    }

private:
    const char* m_pFileName;
};

class CMemorySource {
public:
    CMemorySource(const unsigned char* buffer, unsigned int length)
        : m_Source(buffer, length, "Memfile") {
        // The caller keeps the buffer alive, so the parser can read it where it lies.
        m_Source.setCopyBufToStream(false);
    }
    void Parse(SAX2XMLReader& reader) { reader.parse(m_Source); }
    [[noreturn]] void ThrowFailed(const char* parserMessage) const {
        ThrowMemoryLoadFailed(parserMessage);
    }

private:
    xercesc::MemBufInputSource m_Source;
};

void SetValidation(SAX2XMLReader& reader, const SLoadOptions& options) {
    reader.setFeature(XMLUni::fgSAX2CoreValidation, options.validate);
    if (!options.validate) {
        return;
    }
    reader.setFeature(XMLUni::fgXercesDynamic, true);
    reader.setFeature(XMLUni::fgXercesSchema, options.doSchema);
    if (options.schemaLocation != nullptr) {
        const CParserString location(options.schemaLocation);
        reader.setProperty(options.schemaHasNamespace
                               ? XMLUni::fgXercesSchemaExternalSchemaLocation
                               : XMLUni::fgXercesSchemaExternalNoNameSpaceSchemaLocation,
                           const_cast<XMLCh*>(location.Get()));
    }
}

// Runs a load with this adapter. The objects end in the reverse order: the reader first, then the error
// handler, and the adapter and the source with the caller.
template <typename Source>
void Run(Source& source, CMySAXHandler& adapter, const SLoadOptions& options) {
    CMyErrorHandler errorHandler;
    const std::unique_ptr<SAX2XMLReader> reader(xercesc::XMLReaderFactory::createXMLReader());
    reader->setErrorHandler(&errorHandler);
    reader->setContentHandler(&adapter);
    reader->setLexicalHandler(&adapter);
    reader->setDTDHandler(&adapter);
    reader->setFeature(XMLUni::fgXercesCalculateSrcOfs, options.calculateSourceOffsets);
    SetValidation(*reader, options);
    try {
        source.Parse(*reader);
    } catch (const xercesc::XMLException& exception) {
        source.ThrowFailed(CDOMString(exception.getMessage()).GetString());
    } catch (const xercesc::SAXParseException& exception) {
        source.ThrowFailed(CDOMString(exception.getMessage()).GetString());
    } catch (CXMLException& exception) {
        throw CXMLException(exception);
    }
}

template <typename Source>
CXMLDocument* LoadTree(Source& source, bool keepPrefixes, bool ownConverter,
                       const SLoadOptions& options) {
    CMySAXHandler adapter(keepPrefixes, ownConverter);
    Run(source, adapter, options);
    return adapter.TakeDocument();
}

}  // namespace

CXMLDocument* CXMLManager::LoadDocument(const char* fileName, bool validate, bool doSchema,
                                        const char* schemaLocation, bool schemaHasNamespace,
                                        bool keepPrefixes) {
    if (!m_bInitialized) {
        ThrowParserNotInitialised();
    }
    if (fileName == nullptr) {
        ThrowInvalidParameter();
    }
    CFileSource source(fileName);
    return LoadTree(source, keepPrefixes, sm_TheInstance.HasOwnConverter(),
                    {validate, doSchema, schemaLocation, schemaHasNamespace, false});
}

CXMLDocument* CXMLManager::LoadDocument(unsigned char* buffer, unsigned int length, bool validate,
                                        bool doSchema, const char* schemaLocation,
                                        bool schemaHasNamespace, bool keepPrefixes) {
    if (!m_bInitialized) {
        ThrowParserNotInitialised();
    }
    if (buffer == nullptr || length == 0) {
        ThrowInvalidParameter();
    }
    CMemorySource source(buffer, length);
    return LoadTree(source, keepPrefixes, sm_TheInstance.HasOwnConverter(),
                    {validate, doSchema, schemaLocation, schemaHasNamespace, false});
}

}  // namespace norvask
