// CEventAttributes: the objects are made when they are needed first.
#include "load/receiver/event_attributes.h"

#include <cstring>
#include <new>

namespace norvask {

CEventAttributes::~CEventAttributes() {
    for (CXMLSaxAttribut* attribute : m_Objects) {
        delete attribute;
    }
}

void CEventAttributes::Reserve(std::size_t count) {
    m_Objects.resize(count);
    m_Shown.resize(count + 1);
}

CXMLSaxAttribut* CEventAttributes::Make(std::size_t index) noexcept {
    m_Objects[index] = new (std::nothrow) CXMLSaxAttribut;
    return m_Objects[index];
}

// All four into one block; they may lie in the present one.
void CEventAttributes::Own(CXMLSaxAttribut& attribute, const char* const (&strings)[4]) {
    std::size_t bytes = 0;
    std::size_t sizes[4];
    for (std::size_t i = 0; i < 4; ++i) {
        sizes[i] = strings[i] == nullptr ? 1 : std::strlen(strings[i]) + 1;
        bytes += sizes[i];
    }
    char* const storage = new char[bytes];
    const char** const members[] = {&attribute.m_pUri, &attribute.m_pLocalName, &attribute.m_pQName,
                                    &attribute.m_pValue};
    char* end = storage;
    for (std::size_t i = 0; i < 4; ++i) {
        std::memcpy(end, strings[i] == nullptr ? "" : strings[i], sizes[i]);
        *members[i] = end;
        end += sizes[i];
    }
    ReleaseStorage(attribute);
    attribute.m_pStorage = storage;
}

}  // namespace norvask
