#include "norvask/sax_attribut.h"

#include <cstring>
#include <memory>

namespace norvask {

// A constant that needs no storage.
CXMLSaxAttribut::CXMLSaxAttribut() noexcept
    : m_pUri(""), m_pLocalName(""), m_pQName(""), m_pValue(""), m_pStorage(nullptr) {}

CXMLSaxAttribut::CXMLSaxAttribut(const char* uri, const char* localName, const char* qName,
                                 const char* value)
    : CXMLSaxAttribut() {
    Copy({uri, localName, qName, value});
}

CXMLSaxAttribut::CXMLSaxAttribut(const CXMLSaxAttribut& other) : CXMLSaxAttribut() {
    Copy({other.m_pUri, other.m_pLocalName, other.m_pQName, other.m_pValue});
}

CXMLSaxAttribut& CXMLSaxAttribut::operator=(const CXMLSaxAttribut& other) {
    Copy({other.m_pUri, other.m_pLocalName, other.m_pQName, other.m_pValue});
    return *this;
}

CXMLSaxAttribut::~CXMLSaxAttribut() { delete[] m_pStorage; }

// All four into one block; they may lie in the present one.
void CXMLSaxAttribut::Copy(const char* const (&strings)[4]) {
    std::size_t bytes = 0;
    std::size_t sizes[4];
    for (std::size_t i = 0; i < 4; ++i) {
        sizes[i] = strings[i] == nullptr ? 1 : std::strlen(strings[i]) + 1;
        bytes += sizes[i];
    }
    char* const storage = new char[bytes];
    const char** const members[] = {&m_pUri, &m_pLocalName, &m_pQName, &m_pValue};
    char* end = storage;
    for (std::size_t i = 0; i < 4; ++i) {
        std::memcpy(end, strings[i] == nullptr ? "" : strings[i], sizes[i]);
        *members[i] = end;
        end += sizes[i];
    }
    delete[] m_pStorage;
    m_pStorage = storage;
}

const char* CXMLSaxAttribut::GetUri() { return m_pUri; }

const char* CXMLSaxAttribut::GetLocalName() { return m_pLocalName; }

const char* CXMLSaxAttribut::GetQName() { return m_pQName; }

const char* CXMLSaxAttribut::GetValue() { return m_pValue; }

}  // namespace norvask
