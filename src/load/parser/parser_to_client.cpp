// CParserToClient: which of the parser's strings are converted, and when. The strings of one event
// lie in one block, which may move until the last of them is there, so they are shown only then.
#include "load/parser/parser_to_client.h"

#include <algorithm>
#include <cstring>
#include <xercesc/sax2/Attributes.hpp>

#include "load/parser/reader_link.h"

namespace norvask {

void CParserToClient::startDocument() {
    if (!m_Forwarder.Skip()) {
        m_Forwarder.StartDocument();
    }
}

// No flush: there is no text behind the root.
void CParserToClient::endDocument() {
    if (!m_Forwarder.Skip()) {
        m_Forwarder.EndDocument();
    }
}

// A callback may install another converter, so each event looks which one is in force, after it has
// given on the text before it.
void CParserToClient::startElement(const XMLCh* uri, const XMLCh* localname, const XMLCh* qname,
                                   const xercesc::Attributes& attributes) {
    FlushText();
    if (m_Forwarder.Skip()) {
        m_Open.push_back(nullptr);
        return;
    }
    const bool own = CDOMString::IsOwnInForce();
    BeginEvent();
    const std::size_t count = PlaceAttributes(attributes, own);
    const SPlacedName name = Place(uri, localname, qname, own);
    CEventAttributes& shown = m_Forwarder.Attributes();
    shown.Begin(count);
    for (std::size_t i = 0; i < count; ++i) {
        shown.Set(i, Shown(m_Attributes[i].name), m_Narrow.At(m_Attributes[i].value));
    }
    m_Open.push_back(name.kept);
    m_Forwarder.StartElement(Shown(name));
}

// Returns how many there are.
std::size_t CParserToClient::PlaceAttributes(const xercesc::Attributes& attributes, bool own) {
    const XMLSize_t count = attributes.getLength();
    if (m_Attributes.size() < count) {
        m_Attributes.resize(count);
    }
    for (XMLSize_t i = 0; i < count; ++i) {
        const XMLCh* const uri = attributes.getURI(i);
        const XMLCh* const localname = attributes.getLocalName(i);
        // Without a namespace there is no prefix; the parser would put the name together anew.
        const XMLCh* const qname = *uri == 0 ? localname : attributes.getQName(i);
        m_Attributes[i].name = Place(uri, localname, qname, own);
        m_Attributes[i].value = m_Narrow.Append(attributes.getValue(i));
    }
    return count;
}

CParserToClient::SPlacedName CParserToClient::PlaceUnlikely(const XMLCh* uri,
                                                            const XMLCh* localname,
                                                            const XMLCh* qname, bool own) {
    if (own) {
        CNames::SName* const kept =
            m_Names.Find({uri, qname}, [&] { return Keep(uri, localname, qname); });
        if (kept != nullptr) {
            return {kept, 0, 0};
        }
    }
    return Append(uri, localname, qname);
}

CParserToClient::SPlacedName CParserToClient::Append(const XMLCh* uri, const XMLCh* localname,
                                                     const XMLCh* qname) {
    const std::size_t uriPlace = AppendUri(uri);
    const std::size_t place = m_Narrow.Append(localname);
    m_Narrow.Append(qname);
    return {nullptr, uriPlace, place};
}

// A client's converter is asked for each string each time.
std::size_t CParserToClient::AppendUri(const XMLCh* uri) {
    const std::size_t LONG = 256;
    if (!CDOMString::IsOwnInForce() || Utf16Length(uri) < LONG) {
        return m_Narrow.Append(uri);
    }
    const auto known = std::find_if(m_LongUris.begin(), m_LongUris.end(),
                                    [uri](const auto& other) { return other.first == uri; });
    if (known != m_LongUris.end()) {
        return known->second;
    }
    m_LongUris.emplace_back(uri, m_Narrow.Append(uri));
    return m_LongUris.back().second;
}

SEventName CParserToClient::ShownAt(const char* uri, const char* names) noexcept {
    return {uri, names, names + std::strlen(names) + 1};
}

CParserToClient::SKeptName CParserToClient::Keep(const XMLCh* uri, const XMLCh* localname,
                                                 const XMLCh* qname) {
    CDOMString narrow;
    narrow.Append(uri);
    const std::size_t names = narrow.Append(localname);
    narrow.Append(qname);
    std::unique_ptr<char[]> block(new char[narrow.End()]);
    std::memcpy(block.get(), narrow.At(0), narrow.End());
    const SEventName shown = ShownAt(block.get(), block.get() + names);
    return {std::move(block), shown};
}

void CParserToClient::endElement(const XMLCh* uri, const XMLCh* localname, const XMLCh* qname) {
    FlushText();
    CNames::SName* const kept = m_Open.back();
    m_Open.pop_back();
    if (m_Forwarder.Skip()) {
        return;
    }
    if (kept != nullptr && CDOMString::IsOwnInForce()) {
        m_Names.Ended(kept);
        m_Forwarder.EndElement(kept->payload.shown);
    } else {
        BeginEvent();
        m_Forwarder.EndElement(Shown(Append(uri, localname, qname)));
    }
}

void CParserToClient::characters(const XMLCh* text, XMLSize_t units) { Gather(text, units); }

void CParserToClient::GiveText(const XMLCh* text, XMLSize_t units, bool inCDATA) {
    // A client's converter receives nothing twice.
    if (m_Forwarder.IsRepeated()) {
        if (inCDATA || !CEventForwarder::IsLayout(m_Narrow.ConvertByOwn(text, units))) {
            m_Forwarder.Skip();
        }
        return;
    }
    const SKnownText narrow = m_Narrow.Convert(text, units);
    if (inCDATA) {
        m_Forwarder.CDATAContent(narrow);
    } else {
        m_Forwarder.CharacterData(narrow);
    }
}

void CParserToClient::startPrefixMapping(const XMLCh* prefix, const XMLCh* uri) {
    if (m_Forwarder.Skip()) {
        return;
    }
    m_Narrow.Clear();
    const std::size_t narrowPrefix = m_Narrow.Append(prefix);
    const std::size_t narrowUri = m_Narrow.Append(uri);
    m_Forwarder.StartNamespace(m_Narrow.At(narrowPrefix), m_Narrow.At(narrowUri));
}

void CParserToClient::endPrefixMapping(const XMLCh* prefix) {
    if (!m_Forwarder.Skip()) {
        m_Forwarder.EndNamespace(m_Narrow.Convert(prefix).text);
    }
}

void CParserToClient::startCDATA() {
    CMySAXHandler::startCDATA();
    if (!m_Forwarder.Skip()) {
        m_Forwarder.StartCDATA();
    }
}

void CParserToClient::endCDATA() {
    CMySAXHandler::endCDATA();
    if (!m_Forwarder.Skip()) {
        m_Forwarder.EndCDATA();
    }
}

void CParserToClient::startDTD(const XMLCh* name, const XMLCh* publicId, const XMLCh* systemId) {
    if (m_Forwarder.Skip()) {
        return;
    }
    // The parser reports an empty one for SYSTEM, which has none.
    const bool isPublic = publicId != nullptr && *publicId != 0;
    m_Narrow.Clear();
    const std::size_t narrowName = m_Narrow.Append(name);
    const std::size_t narrowPublicId = isPublic ? m_Narrow.Append(publicId) : 0;
    const std::size_t narrowSystemId = m_Narrow.Append(systemId);
    m_Forwarder.StartDTD(m_Narrow.At(narrowName), isPublic ? m_Narrow.At(narrowPublicId) : nullptr,
                         systemId == nullptr ? nullptr : m_Narrow.At(narrowSystemId));
}

void CParserToClient::startEntity(const XMLCh*) {
    if (m_pLink != nullptr) {
        m_pLink->EnterEntity();
    }
}

void CParserToClient::endEntity(const XMLCh*) {
    if (m_pLink != nullptr) {
        m_pLink->LeaveEntity();
    }
}

}  // namespace norvask
