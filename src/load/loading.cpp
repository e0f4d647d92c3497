// Loading. A plain document is read by the fast lane; any other, and each load that asks for
// something which only the parser has, by the parser.
#include "load/loading.h"

#include <exception>
#include <memory>
#include <optional>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/framework/XMLErrorCodes.hpp>
#include <xercesc/framework/XMLValidityCodes.hpp>
#include <xercesc/internal/EndOfEntityException.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/sax2/SAX2XMLReader.hpp>
#include <xercesc/sax2/XMLReaderFactory.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLException.hpp>
#include <xercesc/util/XMLUni.hpp>

#include "foundation/errors.h"
#include "foundation/parser_state.h"
#include "foundation/parser_text.h"
#include "load/parser/dom_string.h"
#include "load/parser/error_handler.h"
#include "load/parser/parser_file.h"
#include "load/parser/parser_to_client.h"
#include "load/parser/parser_to_tree.h"
#include "load/parser/reader_link.h"
#include "load/receiver/event_forwarder.h"
#include "load/receiver/tree_builder.h"
#include "norvask/exception.h"

namespace norvask {
namespace {

using xercesc::SAX2XMLReader;
using xercesc::XMLException;
using xercesc::XMLUni;

// Where a document comes from: its bytes for the fast lane, how the reader is set going, and how
// the parser's own exceptions are told.
class CFileSource {
public:
    explicit CFileSource(const char* fileName) noexcept : m_pFileName(fileName) {}

    // NULL for what the lane cannot read, or not twice.
    CByteSource* Bytes() {
        if (!CParserFile::IsFileName(m_pFileName)) {
            return nullptr;
        }
        try {
            m_File.emplace(m_pFileName);
        } catch (const XMLException&) {
            return nullptr;  // which the reader will throw once more
        }
        return m_File->HasSize() ? &*m_File : nullptr;
    }
    // A file that is open is not opened again.
    void Parse(SAX2XMLReader& reader) {
        if (m_File.has_value() && m_File->IsOpen() && (!m_File->HasSize() || m_File->Rewind())) {
            reader.parse(*m_File);
        } else {
            reader.parse(m_pFileName);
        }
    }
    [[noreturn]] void ThrowFailed(const char* parserMessage) const {
        ThrowFileLoadFailed(m_pFileName, parserMessage);
    }

private:
    const char* m_pFileName;
    std::optional<CParserFile> m_File;
};

class CMemorySource {
public:
    CMemorySource(const unsigned char* buffer, unsigned int length) noexcept
        : m_pBuffer(buffer), m_nLength(length), m_Bytes(buffer, length) {}

    CByteSource* Bytes() noexcept { return &m_Bytes; }
    void Parse(SAX2XMLReader& reader) {
        xercesc::MemBufInputSource source(m_pBuffer, m_nLength, "Memfile");
        // The caller keeps the buffer alive, so the parser can read it where it lies.
        source.setCopyBufToStream(false);
        reader.parse(source);
    }
    [[noreturn]] void ThrowFailed(const char* parserMessage) const {
        ThrowMemoryLoadFailed(parserMessage);
    }

private:
    const unsigned char* m_pBuffer;
    unsigned int m_nLength;
    CMemoryBytes m_Bytes;
};

// The bytes of a document that the fast lane may try; NULL for a load that is the parser's.
template <typename Source>
CByteSource* BytesForLane(Source& source, const SLoadOptions& options) {
    const bool isTried = NORVASK_FAST_LANE != 0 && options.fastLane && LocalEncodingIsUtf8() &&
                         CDOMString::IsOwnInForce() && !options.calculateSourceOffsets &&
                         !(options.validate && options.schemaLocation != nullptr) &&
                         !xercesc::XMLPlatformUtils::isNELRecognized();
    return isTried ? source.Bytes() : nullptr;
}

void Tell(const SLoadOptions& options, ELane lane) noexcept {
    if (options.lane != nullptr) {
        *options.lane = lane;
    }
}

// Reads a document, and translates what is thrown.
template <typename Source, typename Read>
void Translated(const Source& source, Read read) {
    try {
        read();
    } catch (const XMLException& exception) {
        source.ThrowFailed(CDOMString(exception.getMessage()).GetString());
    } catch (const xercesc::SAXParseException& exception) {
        source.ThrowFailed(CDOMString(exception.getMessage()).GetString());
    } catch (CXMLException& exception) {
        throw CXMLException(exception);
    }
}

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

// Lets the parser read a document. `link` is told of its reader; NULL for nobody.
template <typename Source>
void Parse(Source& source, CMySAXHandler& handler, const SLoadOptions& options, CReaderLink* link) {
    CMyErrorHandler errorHandler;
    const std::unique_ptr<SAX2XMLReader> reader(xercesc::XMLReaderFactory::createXMLReader());
    if (link != nullptr) {
        link->SetReader(reader.get());
    }
    reader->setErrorHandler(&errorHandler);
    reader->setContentHandler(&handler);
    reader->setLexicalHandler(&handler);
    reader->setDTDHandler(&handler);
    reader->setFeature(XMLUni::fgXercesCalculateSrcOfs, options.calculateSourceOffsets);
    SetValidation(*reader, options);
    Translated(source, [&] { source.Parse(*reader); });
}

// Returns whether the load is done. What was built of a document that is left is deleted before the
// parser begins.
bool TryPlainTree(CByteSource* bytes, bool keepPrefixes, const SLoadOptions& options,
                  CXMLDocument*& document) {
    Tell(options, bytes != nullptr ? ELane::LEFT : ELane::NOT_TRIED);
    if constexpr (NORVASK_FAST_LANE != 0) {
        CTreeBuilder builder;
        if (bytes != nullptr &&
            ReadPlainTree(*bytes, options.window, keepPrefixes, builder, !options.validate)) {
            Tell(options, ELane::TAKEN);
            document = builder.TakeDocument();
            return true;
        }
    }
    return false;
}

// Returns whether the client was told the whole document. If not, the callbacks that it received
// are not repeated. The parser treats some exceptions in ways of its own, by where they come from;
// the parser's reading comes to the same callback, and throws them there.
bool TryPlainEvents(CByteSource* bytes, CEventForwarder& forwarder, const SLoadOptions& options) {
    Tell(options, bytes != nullptr ? ELane::LEFT : ELane::NOT_TRIED);
    if constexpr (NORVASK_FAST_LANE != 0) {
        std::exception_ptr thrown;
        try {
            if (bytes != nullptr &&
                ReadPlainEvents(*bytes, options.window, forwarder, !options.validate)) {
                Tell(options, ELane::TAKEN);
                return true;
            }
        } catch (const XMLException&) {
            thrown = std::current_exception();
        } catch (xercesc::XMLErrs::Codes) {
            thrown = std::current_exception();
        } catch (xercesc::XMLValid::Codes) {
            thrown = std::current_exception();
        } catch (const xercesc::EndOfEntityException&) {
            thrown = std::current_exception();
        }
        forwarder.Repeat(thrown);
    }
    return false;
}

template <typename Source>
CXMLDocument* LoadTreeFrom(Source&& source, bool keepPrefixes, const SLoadOptions& options) {
    CByteSource* const bytes = BytesForLane(source, options);
    CXMLDocument* document = nullptr;
    if (TryPlainTree(bytes, keepPrefixes, options, document)) {
        return document;
    }
    CTreeBuilder builder;
    CParserToTree handler(builder, keepPrefixes);
    Parse(source, handler, options, nullptr);
    return builder.TakeDocument();
}

template <typename Source>
void LoadEventsFrom(Source&& source, CXMLSaxHandler& client, const SLoadOptions& options) {
    CByteSource* const bytes = BytesForLane(source, options);
    const CReaderScope scope(client, options.calculateSourceOffsets);
    CEventForwarder forwarder(client);
    bool isPlain = false;
    Translated(source, [&] { isPlain = TryPlainEvents(bytes, forwarder, options); });
    if (isPlain) {
        return;
    }
    // A file can be changed in place, by a callback too: then the parser may never come to the
    // callbacks that were made. What one of them threw is not lost, and a document of which only
    // the beginning was told does not pass for a whole one.
    CParserToClient handler(forwarder);
    handler.SetLink(&scope.Link());
    try {
        Parse(source, handler, options, &scope.Link());
    } catch (...) {
        Translated(source, [&] { forwarder.ThrowAgain(); });
        throw;
    }
    Translated(source, [&] { forwarder.ThrowAgain(); });
    if (forwarder.IsRepeated()) {
        source.ThrowFailed("the document was changed while it was loaded");
    }
}

}  // namespace

CXMLDocument* LoadTree(const char* fileName, bool keepPrefixes, const SLoadOptions& options) {
    return LoadTreeFrom(CFileSource(fileName), keepPrefixes, options);
}

CXMLDocument* LoadTree(const unsigned char* buffer, unsigned int length, bool keepPrefixes,
                       const SLoadOptions& options) {
    return LoadTreeFrom(CMemorySource(buffer, length), keepPrefixes, options);
}

void LoadEvents(const char* fileName, CXMLSaxHandler& client, const SLoadOptions& options) {
    LoadEventsFrom(CFileSource(fileName), client, options);
}

void LoadEvents(const unsigned char* buffer, unsigned int length, CXMLSaxHandler& client,
                const SLoadOptions& options) {
    LoadEventsFrom(CMemorySource(buffer, length), client, options);
}

}  // namespace norvask
