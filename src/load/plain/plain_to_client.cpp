// CPlainToClient: the events of more than one string.
#include "load/plain/plain_to_client.h"

namespace norvask {

bool CPlainToClient::CDATA(const SKnownText& content) {
    m_Forwarder.StartCDATA();
    if (!content.IsEmpty() && GoesOn()) {
        m_Forwarder.CDATAContent(content);
    }
    if (GoesOn()) {
        m_Forwarder.EndCDATA();
    }
    return GoesOn();
}

bool CPlainToClient::StartElement(const SName& name, const SAttribute* attributes,
                                  std::size_t count, CContent& content) {
    CEventAttributes& shown = m_Forwarder.Attributes();
    shown.Begin(count);
    for (std::size_t i = 0; i < count; ++i) {
        shown.Set(i, attributes[i].name->kept.Shown(), attributes[i].Value(content).text);
    }
    m_Forwarder.StartElement(name.kept.Shown());
    return GoesOn();
}

}  // namespace norvask
