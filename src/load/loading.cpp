// Loading. A plain document is read by the fast lane; any other, and each load that asks for
// something which only the parser has, by the parser.
#include "load/loading.h"

#include <exception>
#include <memory>
#include <xercesc/framework/XMLErrorCodes.hpp>
#include <xercesc/framework/XMLValidityCodes.hpp>
#include <xercesc/internal/EndOfEntityException.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/sax2/SAX2XMLReader.hpp>
#include <xercesc/sax2/XMLReaderFactory.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLException.hpp>
#include <xercesc/util/XMLUni.hpp>

#include "foundation/parser_state.h"
#include "foundation/parser_text.h"
#include "load/parser/document_source.h"
#include "load/parser/dom_string.h"
#include "load/parser/error_handler.h"
#include "load/parser/parser_to_client.h"
#include "load/parser/parser_to_tree.h"
#include "load/parser/reader_link.h"
#include "load/receiver/event_forwarder.h"
#include "load/receiver/tree_builder.h"
#include "load/watched_load.h"
#include "norvask/exception.h"

namespace norvask {
namespace {

using xercesc::SAX2XMLReader;
using xercesc::XMLException;
using xercesc::XMLUni;

bool IsForParser(const SLoadOptions& options) noexcept {
    return options.watched != nullptr ? options.watched->IsForParser()
                                      : options.validate && options.schemaLocation != nullptr;
}

// The bytes of a document that the fast lane may try; NULL for a load that is the parser's.
CByteSource* BytesForLane(CDocumentSource& source, const SLoadOptions& options) {
    const bool isTried = NORVASK_FAST_LANE != 0 && options.fastLane && LocalEncodingIsUtf8() &&
                         CDOMString::IsOwnInForce() && !options.calculateSourceOffsets &&
                         !IsForParser(options) && !xercesc::XMLPlatformUtils::isNELRecognized();
    return isTried ? source.Bytes() : nullptr;
}

// Whether the lane may take a document with a DOCTYPE, and who watches.
bool TakesDoctype(const SLoadOptions& options) noexcept {
    return options.watched != nullptr ? options.watched->TakesDoctype() : !options.validate;
}
CWatch* WatchOf(const SLoadOptions& options) noexcept {
    return options.watched != nullptr && options.watched->Watch().IsAwake()
               ? &options.watched->Watch()
               : nullptr;
}

void Tell(const SLoadOptions& options, ELane lane) noexcept {
    if (options.lane != nullptr) {
        *options.lane = lane;
    }
}

// An exception of the parser's own ends the load with this text.
void Fail(const CDocumentSource& source, const SLoadOptions& options, const XMLCh* message) {
    CDOMString narrow(message);
    if (options.watched != nullptr) {
        options.watched->AddParserException(narrow.GetString());
        throw SLoadEnd();
    }
    source.ThrowFailed(narrow.GetString());
}

// Reads a document, and translates what is thrown.
template <typename Read>
void Translated(const CDocumentSource& source, const SLoadOptions& options, Read read) {
    try {
        read();
    } catch (const XMLException& exception) {
        Fail(source, options, exception.getMessage());
    } catch (const xercesc::SAXParseException& exception) {
        Fail(source, options, exception.getMessage());
    } catch (const SReadFailure& failure) {
        options.watched->AddReadFailure(failure.error);
        throw SLoadEnd();
    } catch (CXMLException& exception) {
        if (options.watched != nullptr) {
            throw;
        }
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
void Parse(CDocumentSource& source, CMySAXHandler& handler, const SLoadOptions& options,
           CReaderLink* link) {
    if (options.watched != nullptr) {
        options.watched->EndIfOver();
        Translated(source, options,
                   [&] { options.watched->Parse(handler, options.calculateSourceOffsets, link); });
        return;
    }
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
    Translated(source, options, [&] { source.Parse(*reader, nullptr); });
}

// Returns whether the load is done. What was built of a document that is left is deleted before the
// parser begins.
bool TryPlainTree(CByteSource* bytes, bool keepPrefixes, const SLoadOptions& options,
                  CXMLDocument*& document) {
    Tell(options, bytes != nullptr ? ELane::LEFT : ELane::NOT_TRIED);
    if constexpr (NORVASK_FAST_LANE != 0) {
        CTreeBuilder builder;
        if (bytes != nullptr && ReadPlainTree(*bytes, options.window, keepPrefixes, builder,
                                              TakesDoctype(options), WatchOf(options))) {
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
            if (bytes != nullptr && ReadPlainEvents(*bytes, options.window, forwarder,
                                                    TakesDoctype(options), WatchOf(options))) {
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

}  // namespace

CXMLDocument* LoadTree(CDocumentSource& source, bool keepPrefixes, const SLoadOptions& options) {
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

void LoadEvents(CDocumentSource& source, CXMLSaxHandler& client, const SLoadOptions& options) {
    CByteSource* const bytes = BytesForLane(source, options);
    const CReaderScope scope(client, options.calculateSourceOffsets);
    CEventForwarder forwarder(client);
    bool isPlain = false;
    Translated(source, options, [&] { isPlain = TryPlainEvents(bytes, forwarder, options); });
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
        Translated(source, options, [&] { forwarder.ThrowAgain(); });
        throw;
    }
    Translated(source, options, [&] { forwarder.ThrowAgain(); });
    if (forwarder.IsRepeated()) {
        static const XMLCh CHANGED[] = u"the document was changed while it was loaded";
        Fail(source, options, CHANGED);
    }
}

CXMLDocument* LoadTree(const char* fileName, bool keepPrefixes, const SLoadOptions& options) {
    CFileSource source(fileName);
    return LoadTree(source, keepPrefixes, options);
}

CXMLDocument* LoadTree(const unsigned char* buffer, unsigned int length, bool keepPrefixes,
                       const SLoadOptions& options) {
    CMemorySource source(buffer, length);
    return LoadTree(source, keepPrefixes, options);
}

void LoadEvents(const char* fileName, CXMLSaxHandler& client, const SLoadOptions& options) {
    CFileSource source(fileName);
    LoadEvents(source, client, options);
}

void LoadEvents(const unsigned char* buffer, unsigned int length, CXMLSaxHandler& client,
                const SLoadOptions& options) {
    CMemorySource source(buffer, length);
    LoadEvents(source, client, options);
}

}  // namespace norvask
