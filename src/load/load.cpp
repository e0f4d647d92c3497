// CXMLManager: loading. One function sets up and cleans up, whatever is loaded from where.
#include <memory>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/sax2/SAX2XMLReader.hpp>
#include <xercesc/sax2/XMLReaderFactory.hpp>
#include <xercesc/util/XMLException.hpp>
#include <xercesc/util/XMLUni.hpp>

#include "foundation/errors.h"
#include "foundation/parser_text.h"
#include "load/manager_access.h"
#include "load/parser/dom_string.h"
#include "load/parser/error_handler.h"
#include "load/parser/parser_to_client.h"
#include "load/parser/parser_to_tree.h"
#include "load/parser/reader_link.h"
#include "load/receiver/event_forwarder.h"
#include "load/receiver/tree_builder.h"
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

// Where a document comes from: how the reader is set going, and how the parser's own exceptions are
// told.
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

// Runs a load with this handler of events. `attach` is called with the new reader and returns what
// must last as long as it. The objects are destroyed in the reverse order: that result, the reader,
// the error handler, and by the caller the handler, the receiver and the source.
template <typename Source, typename Attach>
void Run(Source& source, CMySAXHandler& handler, const SLoadOptions& options, Attach attach) {
    CMyErrorHandler errorHandler;
    const std::unique_ptr<SAX2XMLReader> reader(xercesc::XMLReaderFactory::createXMLReader());
    [[maybe_unused]] const auto attached = attach(*reader);
    reader->setErrorHandler(&errorHandler);
    reader->setContentHandler(&handler);
    reader->setLexicalHandler(&handler);
    reader->setDTDHandler(&handler);
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
CXMLDocument* LoadTree(Source& source, bool keepPrefixes, const SLoadOptions& options) {
    CTreeBuilder builder;
    CParserToTree handler(builder, keepPrefixes);
    Run(source, handler, options, [](SAX2XMLReader&) { return nullptr; });
    return builder.TakeDocument();
}

template <typename Source>
void LoadEvents(Source& source, CXMLSaxHandler& client, const SLoadOptions& options) {
    CEventForwarder forwarder(client);
    CParserToClient handler(forwarder);
    Run(source, handler, options, [&](SAX2XMLReader& reader) {
        auto scope = std::make_unique<CReaderScope>(client, reader, options.calculateSourceOffsets);
        handler.SetLink(&scope->Link());
        return scope;
    });
}

// Before anything is made.
void RequireFileName(const char* fileName) {
    if (fileName == nullptr) {
        ThrowInvalidParameter();
    }
}

void RequireBytes(const unsigned char* buffer, unsigned int length) {
    if (buffer == nullptr || length == 0) {
        ThrowInvalidParameter();
    }
}

void RequireClient(const CXMLSaxHandler* client) {
    if (client == nullptr) {
        ThrowInvalidParameter();
    }
}

}  // namespace

CXMLDocument* CXMLManager::LoadDocument(const char* fileName, bool validate, bool doSchema,
                                        const char* schemaLocation, bool schemaHasNamespace,
                                        bool keepPrefixes) {
    CManagerAccess::RequireInitialised(*this);
    RequireFileName(fileName);
    CFileSource source(fileName);
    return LoadTree(source, keepPrefixes,
                    {validate, doSchema, schemaLocation, schemaHasNamespace, false});
}

CXMLDocument* CXMLManager::LoadDocument(unsigned char* buffer, unsigned int length, bool validate,
                                        bool doSchema, const char* schemaLocation,
                                        bool schemaHasNamespace, bool keepPrefixes) {
    CManagerAccess::RequireInitialised(*this);
    RequireBytes(buffer, length);
    CMemorySource source(buffer, length);
    return LoadTree(source, keepPrefixes,
                    {validate, doSchema, schemaLocation, schemaHasNamespace, false});
}

// Callbacks receive all forms of a name, so there are no prefixes to keep or drop.
void CXMLManager::LoadDocument(const char* fileName, CXMLSaxHandler* handler, bool validate,
                               bool doSchema, const char* schemaLocation, bool schemaHasNamespace,
                               bool) {
    CManagerAccess::RequireInitialised(*this);
    RequireFileName(fileName);
    RequireClient(handler);
    CFileSource source(fileName);
    LoadEvents(source, *handler,
               {validate, doSchema, schemaLocation, schemaHasNamespace, m_bCalculateSourceOffsets});
}

void CXMLManager::LoadDocument(unsigned char* buffer, unsigned int length, CXMLSaxHandler* handler,
                               bool validate, bool doSchema, const char* schemaLocation,
                               bool schemaHasNamespace, bool) {
    CManagerAccess::RequireInitialised(*this);
    RequireBytes(buffer, length);
    RequireClient(handler);
    CMemorySource source(buffer, length);
    LoadEvents(source, *handler,
               {validate, doSchema, schemaLocation, schemaHasNamespace, m_bCalculateSourceOffsets});
}

}  // namespace norvask
