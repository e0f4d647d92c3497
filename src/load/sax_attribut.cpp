// CXMLSaxAttribut: copies have strings of their own, originals show those of the load.
#include "norvask/sax_attribut.h"

#include "load/receiver/event_attributes.h"

namespace norvask {

CXMLSaxAttribut::CXMLSaxAttribut(const char* uri, const char* localName, const char* qName,
                                 const char* value)
    : CXMLSaxAttribut() {
    CEventAttributes::Own(*this, {uri, localName, qName, value});
}

CXMLSaxAttribut::CXMLSaxAttribut(const CXMLSaxAttribut& other) : CXMLSaxAttribut() {
    CEventAttributes::Own(*this,
                          {other.m_pUri, other.m_pLocalName, other.m_pQName, other.m_pValue});
}

CXMLSaxAttribut& CXMLSaxAttribut::operator=(const CXMLSaxAttribut& other) {
    CEventAttributes::Own(*this,
                          {other.m_pUri, other.m_pLocalName, other.m_pQName, other.m_pValue});
    return *this;
}

CXMLSaxAttribut::~CXMLSaxAttribut() { delete[] m_pStorage; }

const char* CXMLSaxAttribut::GetUri() { return m_pUri; }

const char* CXMLSaxAttribut::GetLocalName() { return m_pLocalName; }

const char* CXMLSaxAttribut::GetQName() { return m_pQName; }

const char* CXMLSaxAttribut::GetValue() { return m_pValue; }

}  // namespace norvask
