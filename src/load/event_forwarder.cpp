#include "load/event_forwarder.h"

#include <cstring>

#include "foundation/string_converter.h"
#include "load/manager_access.h"
#include "load/reader_link.h"
#include "norvask/sax_handler.h"

namespace norvask {

const char* CEventString::Convert(const XMLCh* text) {
    if (text == nullptr) {
        return nullptr;
    }
    return CManagerAccess::HasOwnConverter() ? m_Own.Convert(text) : Ask(text);
}

const char* CEventString::Convert(const XMLCh* text, XMLSize_t length) {
    return CManagerAccess::HasOwnConverter() ? m_Own.Convert(text, length) : Ask(text);
}

const char* CEventString::Ask(const XMLCh* text) {
    m_Asked.emplace(text);
    const char* const converted = m_Asked->GetString();
    return converted == nullptr ? "" : converted;
}

void CEventForwarder::startDocument() { m_Client.StartDocument(); }

// No flush: there is no text behind the root.
void CEventForwarder::endDocument() { m_Client.EndDocument(); }

// A callback may install another converter, so each event looks which one is in force, after it has given on the
// text before it.
void CEventForwarder::startElement(const XMLCh* uri, const XMLCh* localname, const XMLCh* qname,
                                   const xercesc::Attributes& attributes) {
    FlushText();
    const bool ownConverter = CManagerAccess::HasOwnConverter();
    CXMLSaxAttribut** const shown = m_Attributes.Show(attributes, ownConverter, m_Names);
    const SEventName* name = ownConverter ? m_Names.Find(uri, localname, qname) : nullptr;
    m_Open.push_back(name);
    if (name != nullptr) {
        m_Client.StartElement(name->uri.c_str(), name->localName.c_str(), name->qName.c_str(),
                              shown);
    } else {
        const char* const narrowUri = m_First.Convert(uri);
        const char* const narrowLocalName = m_Second.Convert(localname);
        m_Client.StartElement(narrowUri, narrowLocalName, m_Third.Convert(qname), shown);
    }
}

void CEventForwarder::endElement(const XMLCh* uri, const XMLCh* localname, const XMLCh* qname) {
    FlushText();
    const SEventName* const name = m_Open.back();
    m_Open.pop_back();
    if (name != nullptr && CManagerAccess::HasOwnConverter()) {
        m_Names.Ended(name);
        m_Client.EndElement(name->uri.c_str(), name->localName.c_str(), name->qName.c_str());
    } else {
        const char* const narrowUri = m_First.Convert(uri);
        const char* const narrowLocalName = m_Second.Convert(localname);
        m_Client.EndElement(narrowUri, narrowLocalName, m_Third.Convert(qname));
    }
}

void CEventForwarder::characters(const XMLCh* text, XMLSize_t length) { Gather(text, length); }

void CEventForwarder::GiveText(const XMLCh* text, XMLSize_t length, bool inCDATA) {
    if (CManagerAccess::HasOwnConverter()) {
        // Known before the conversion, which then is not needed.
        if (inCDATA || !CStringConverter::IsFormattingWhitespace(text, length)) {
            m_Client.Characters(m_First.Convert(text, length));
        }
        return;
    }
    const char* const narrow = m_First.Convert(text);
    if (inCDATA || !CStringConverter::IsFormattingWhitespace(narrow, std::strlen(narrow))) {
        m_Client.Characters(narrow);
    }
}

void CEventForwarder::startPrefixMapping(const XMLCh* prefix, const XMLCh* uri) {
    const char* const narrowPrefix = m_First.Convert(prefix);
    m_Client.StartNamespace(narrowPrefix, m_Second.Convert(uri));
}

void CEventForwarder::endPrefixMapping(const XMLCh* prefix) {
    m_Client.EndNamespace(m_First.Convert(prefix));
}

void CEventForwarder::startCDATA() {
    FlushText();
    m_bInCDATA = true;
    m_Client.StartCDATA();
}

void CEventForwarder::endCDATA() {
    FlushText();
    m_bInCDATA = false;
    m_Client.EndCDATA();
}

void CEventForwarder::startDTD(const XMLCh* name, const XMLCh* publicId, const XMLCh* systemId) {
    const char* const narrowName = m_First.Convert(name);
    // The parser reports an empty one for SYSTEM, which has none.
    const bool isPublic = publicId != nullptr && *publicId != 0;
    const char* const narrowPublicId = isPublic ? m_Second.Convert(publicId) : nullptr;
    m_Client.StartDTD(narrowName, narrowPublicId, m_Third.Convert(systemId));
}

void CEventForwarder::startEntity(const XMLCh*) {
    if (m_pLink != nullptr) {
        m_pLink->EnterEntity();
    }
}

void CEventForwarder::endEntity(const XMLCh*) {
    if (m_pLink != nullptr) {
        m_pLink->LeaveEntity();
    }
}

}  // namespace norvask
