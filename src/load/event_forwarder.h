// Internal. CEventForwarder: hands the parser's events to a client's CXMLSaxHandler, all strings narrow.
#ifndef NORVASK_LOAD_EVENT_FORWARDER_H
#define NORVASK_LOAD_EVENT_FORWARDER_H

#include <optional>
#include <vector>

#include "load/dom_string.h"
#include "load/event_attributes.h"
#include "load/event_names.h"
#include "load/narrow_text.h"
#include "load/sax_handler_adapter.h"

namespace norvask {

class CReaderLink;
class CXMLSaxHandler;

// A parser string for one callback, by the converter in force.
class CEventString {
public:
    // NULL gives NULL; a converter that answers NULL gives an empty string. Valid until the next call. Throws
    // std::bad_alloc and what a client's converter throws.
    const char* Convert(const XMLCh* text);
    // The same for a text of this length.
    const char* Convert(const XMLCh* text, XMLSize_t length);

private:
    const char* Ask(const XMLCh* text);

    CNarrowText m_Own;
    std::optional<CDOMString> m_Asked;
};

class CEventForwarder final : public CMySAXHandler {
public:
    explicit CEventForwarder(CXMLSaxHandler& client) : m_Client(client), m_pLink(nullptr) {}

    // Where to tell of entities; NULL for nowhere.
    void SetLink(CReaderLink* link) noexcept { m_pLink = link; }

    void startDocument() override;
    void endDocument() override;
    void startElement(const XMLCh* uri, const XMLCh* localname, const XMLCh* qname,
                      const xercesc::Attributes& attributes) override;
    void endElement(const XMLCh* uri, const XMLCh* localname, const XMLCh* qname) override;
    void characters(const XMLCh* text, XMLSize_t length) override;
    void startPrefixMapping(const XMLCh* prefix, const XMLCh* uri) override;
    void endPrefixMapping(const XMLCh* prefix) override;
    void startCDATA() override;
    void endCDATA() override;
    void startDTD(const XMLCh* name, const XMLCh* publicId, const XMLCh* systemId) override;
    void startEntity(const XMLCh* name) override;
    void endEntity(const XMLCh* name) override;

private:
    void GiveText(const XMLCh* text, XMLSize_t length, bool inCDATA) override;

    CXMLSaxHandler& m_Client;
    CReaderLink* m_pLink;
    CEventNames m_Names;
    std::vector<const SEventName*> m_Open;  // the open elements; NULL for a name that is not kept
    CEventAttributes m_Attributes;
    CEventString m_First;
    CEventString m_Second;
    CEventString m_Third;
};

}  // namespace norvask

#endif
