// Internal. CPlainToClient: reports a plain document to a CEventForwarder.
//
// A callback may install a converter; from then on all strings must go through it, which they do
// only on their way from the parser.
#ifndef NORVASK_LOAD_PLAIN_PLAIN_TO_CLIENT_H
#define NORVASK_LOAD_PLAIN_PLAIN_TO_CLIENT_H

#include "load/parser/dom_string.h"
#include "load/plain/plain_reader.h"
#include "load/receiver/event_forwarder.h"

namespace norvask {

class CPlainToClient {
public:
    struct SPayload {};
    using SName = CPlainNames<SPayload>::SName;
    using SAttribute = SPlainAttribute<SPayload>;

    explicit CPlainToClient(CEventForwarder& forwarder) noexcept : m_Forwarder(forwarder) {}

    bool StartDocument() {
        m_Forwarder.StartDocument();
        return GoesOn();
    }
    bool StartDTD(const char* rootName) {
        m_Forwarder.StartDTD(rootName, nullptr, nullptr);
        return GoesOn();
    }
    bool EndDocument() {
        m_Forwarder.EndDocument();
        return true;
    }
    bool StartNamespace(const SPrefix& prefix) {
        m_Forwarder.StartNamespace(prefix.text, prefix.uri->text);
        return GoesOn();
    }
    bool EndNamespace(const SPrefix& prefix) {
        m_Forwarder.EndNamespace(prefix.text);
        return GoesOn();
    }
    bool Text(const SKnownText& text) {
        m_Forwarder.CharacterData(text);
        return GoesOn();
    }
    bool CDATA(const SKnownText& content);
    bool StartElement(const SName& name, const SAttribute* attributes, std::size_t count,
                      CContent& content);
    bool EndElement(const SName& name) {
        m_Forwarder.EndElement(name.kept.Shown());
        return GoesOn();
    }

private:
    static bool GoesOn() noexcept { return CDOMString::IsOwnInForce(); }

    CEventForwarder& m_Forwarder;
};

}  // namespace norvask

#endif
