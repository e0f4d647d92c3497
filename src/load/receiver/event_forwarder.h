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
//
// A document may be read a second time, by somebody else: then the callbacks of the first time are
// not repeated. Whoever reports asks for each whether it is one of those.
#ifndef NORVASK_LOAD_RECEIVER_EVENT_FORWARDER_H
#define NORVASK_LOAD_RECEIVER_EVENT_FORWARDER_H

#include <cstdint>
#include <exception>
#include <utility>

#include "foundation/known_text.h"
#include "foundation/string_converter.h"
#include "load/receiver/event_attributes.h"
#include "load/receiver/event_name.h"
#include "norvask/sax_handler.h"

namespace norvask {

class CEventForwarder {
public:
    explicit CEventForwarder(CXMLSaxHandler& client) noexcept : m_Client(client) {}

    // The document is going to be reported again from its beginning. The last callback threw this
    // exception, which is thrown again in its place; NULL if it returned.
    void Repeat(std::exception_ptr thrown) noexcept {
        m_nRepeated = std::exchange(m_nTold, 0);
        m_Thrown = std::move(thrown);
    }
    // Whether the next callback is one that has been made.
    bool IsRepeated() const noexcept { return m_nTold < m_nRepeated; }
    // The same, and leaves it out.
    bool Skip() {
        if (!IsRepeated()) {
            return false;
        }
        ++m_nTold;
        if (m_nTold == m_nRepeated) {
            ThrowAgain();
        }
        return true;
    }
    // Throws the exception that waits for its callback, if there is one.
    void ThrowAgain() {
        if (m_Thrown != nullptr) {
            std::rethrow_exception(std::exchange(m_Thrown, nullptr));
        }
    }

    void StartDocument() { Told().StartDocument(); }
    void EndDocument() { Told().EndDocument(); }

    // The attributes of the element that is reported next; to be filled before that.
    CEventAttributes& Attributes() noexcept { return m_Attributes; }
    void StartElement(const SEventName& name) {
        Told().StartElement(name.uri, name.localName, name.qName, m_Attributes.Array());
    }
    void EndElement(const SEventName& name) {
        Told().EndElement(name.uri, name.localName, name.qName);
    }

    // No callback is made for such character data.
    static bool IsLayout(const SKnownText& text) noexcept {
        return CStringConverter::IsFormattingWhitespace(text.text, text.length);
    }
    void CharacterData(const SKnownText& text) {
        if (!IsLayout(text)) {
            Told().Characters(text.text);
        }
    }

    void StartCDATA() { Told().StartCDATA(); }
    void CDATAContent(const SKnownText& text) { Told().Characters(text.text); }
    void EndCDATA() { Told().EndCDATA(); }

    // NULL for no identifier.
    void StartDTD(const char* name, const char* publicId, const char* systemId) {
        Told().StartDTD(name, publicId, systemId);
    }
    void StartNamespace(const char* prefix, const char* uri) { Told().StartNamespace(prefix, uri); }
    void EndNamespace(const char* prefix) { Told().EndNamespace(prefix); }

private:
    // Counted before it is told, since it may throw.
    CXMLSaxHandler& Told() noexcept {
        ++m_nTold;
        return m_Client;
    }

    CXMLSaxHandler& m_Client;
    CEventAttributes m_Attributes;
    std::uint64_t m_nTold = 0;      // callbacks of this time
    std::uint64_t m_nRepeated = 0;  // how many the first of them were made before
    std::exception_ptr m_Thrown;
};

}  // namespace norvask

#endif
