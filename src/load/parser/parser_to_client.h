// Internal. CParserToClient: reports the parser's events to a CEventForwarder.
//
// Under the library's own converter each name is converted once a load, and found again by what
// came before it. What is kept is bounded, so that a document of ever new names takes no more
// memory than the parser's own for them: names beyond the bounds are converted each time. Under a
// client's converter all strings go through it each time.
#ifndef NORVASK_LOAD_PARSER_PARSER_TO_CLIENT_H
#define NORVASK_LOAD_PARSER_PARSER_TO_CLIENT_H

#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

#include "load/parser/my_sax_handler.h"
#include "load/parser/parser_name.h"
#include "load/receiver/event_forwarder.h"
#include "load/receiver/name_predictor.h"

namespace norvask {

class CReaderLink;

class CParserToClient final : public CMySAXHandler {
public:
    explicit CParserToClient(CEventForwarder& forwarder)
        : m_Forwarder(forwarder), m_pLink(nullptr), m_Names(MOST_NAMES, MOST_UNITS) {}

    // Whom to tell of entities; NULL for nobody.
    void SetLink(CReaderLink* link) noexcept { m_pLink = link; }

    void startDocument() override;
    void endDocument() override;
    void startElement(const XMLCh* uri, const XMLCh* localname, const XMLCh* qname,
                      const xercesc::Attributes& attributes) override;
    void endElement(const XMLCh* uri, const XMLCh* localname, const XMLCh* qname) override;
    void characters(const XMLCh* text, XMLSize_t units) override;
    void startPrefixMapping(const XMLCh* prefix, const XMLCh* uri) override;
    void endPrefixMapping(const XMLCh* prefix) override;
    void startCDATA() override;
    void endCDATA() override;
    void startDTD(const XMLCh* name, const XMLCh* publicId, const XMLCh* systemId) override;
    void startEntity(const XMLCh* name) override;
    void endEntity(const XMLCh* name) override;

private:
    static const std::size_t MOST_NAMES = 4096;
    static const std::size_t MOST_UNITS = 131072;

    // The three strings of a name that is kept.
    struct SKeptName {
        std::unique_ptr<char[]> block;
        SEventName shown;
    };
    using CNames = CNamePredictor<SParserName, SKeptName>;

    // A name of the event under way: kept, or else strings at these places of m_Narrow: the URI,
    // and the other two, one behind the other.
    struct SPlacedName {
        CNames::SName* kept;
        std::size_t uri;
        std::size_t place;
    };
    struct SPlacedAttribute {
        SPlacedName name;
        std::size_t value;
    };

    void GiveText(const XMLCh* text, XMLSize_t units, bool inCDATA) override;
    std::size_t PlaceAttributes(const xercesc::Attributes& attributes, bool own);
    // `own` tells whether the library's own converter is in force. The likeliest name needs no
    // search.
    SPlacedName Place(const XMLCh* uri, const XMLCh* localname, const XMLCh* qname, bool own) {
        CNames::SName* const likely = own ? m_Names.FindLikely(SParserName{uri, qname}) : nullptr;
        return likely != nullptr ? SPlacedName{likely, 0, 0}
                                 : PlaceUnlikely(uri, localname, qname, own);
    }
    SPlacedName PlaceUnlikely(const XMLCh* uri, const XMLCh* localname, const XMLCh* qname,
                              bool own);
    SPlacedName Append(const XMLCh* uri, const XMLCh* localname, const XMLCh* qname);
    std::size_t AppendUri(const XMLCh* uri);
    void BeginEvent() {
        m_Narrow.Clear();
        m_LongUris.clear();
    }
    SKeptName Keep(const XMLCh* uri, const XMLCh* localname, const XMLCh* qname);
    SEventName Shown(const SPlacedName& name) const noexcept {
        return name.kept != nullptr ? name.kept->payload.shown
                                    : ShownAt(m_Narrow.At(name.uri), m_Narrow.At(name.place));
    }
    static SEventName ShownAt(const char* uri, const char* names) noexcept;

    CEventForwarder& m_Forwarder;
    CReaderLink* m_pLink;
    CNames m_Names;
    std::vector<CNames::SName*> m_Open;  // the open elements; NULL for a name that is not kept
    // The long URIs of the event under way, by where the parser has them, and their places: a tag
    // may name one in each of thousands of attributes.
    std::vector<std::pair<const XMLCh*, std::size_t>> m_LongUris;
    std::vector<SPlacedAttribute> m_Attributes;  // of the element under way, and room for more
};

}  // namespace norvask

#endif
