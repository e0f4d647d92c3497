// Internal. CEventForwarder: tells a client's CXMLSaxHandler of a document.
//
// It knows nothing of whoever reads the document. That one reports in document order, each string
// narrow and valid until the call returns, and character data as one text between two boundaries:
// the start or the end of an element or of a CDATA section. A text in front of an element is
// reported before the element and, deliberately, behind its namespace declarations.
//
//   element          with all its attributes; its namespace declarations before and after it
//   character data   one callback for each text, unless it is layout
//   CDATA section    one callback for its content, as it stands, between two of its own
//   DTD              with NULL for an identifier that it does not have
#ifndef NORVASK_LOAD_RECEIVER_EVENT_FORWARDER_H
#define NORVASK_LOAD_RECEIVER_EVENT_FORWARDER_H

#include "foundation/known_text.h"
#include "foundation/string_converter.h"
#include "load/receiver/event_attributes.h"
#include "load/receiver/event_name.h"
#include "norvask/sax_handler.h"

namespace norvask {

class CEventForwarder {
public:
    explicit CEventForwarder(CXMLSaxHandler& client) noexcept : m_Client(client) {}

    void StartDocument() { m_Client.StartDocument(); }
    void EndDocument() { m_Client.EndDocument(); }

    // The attributes of the element that is reported next; to be filled before that.
    CEventAttributes& Attributes() noexcept { return m_Attributes; }
    void StartElement(const SEventName& name) {
        m_Client.StartElement(name.uri, name.localName, name.qName, m_Attributes.Array());
    }
    void EndElement(const SEventName& name) {
        m_Client.EndElement(name.uri, name.localName, name.qName);
    }

    void CharacterData(const SKnownText& text) {
        if (!CStringConverter::IsFormattingWhitespace(text.text, text.length)) {
            m_Client.Characters(text.text);
        }
    }

    void StartCDATA() { m_Client.StartCDATA(); }
    void CDATAContent(const SKnownText& text) { m_Client.Characters(text.text); }
    void EndCDATA() { m_Client.EndCDATA(); }

    // NULL for no identifier.
    void StartDTD(const char* name, const char* publicId, const char* systemId) {
        m_Client.StartDTD(name, publicId, systemId);
    }
    void StartNamespace(const char* prefix, const char* uri) {
        m_Client.StartNamespace(prefix, uri);
    }
    void EndNamespace(const char* prefix) { m_Client.EndNamespace(prefix); }

private:
    CXMLSaxHandler& m_Client;
    CEventAttributes m_Attributes;
};

}  // namespace norvask

#endif
