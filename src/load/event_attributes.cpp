#include "load/event_attributes.h"

#include <cstring>
#include <new>

#include "load/dom_string.h"

namespace norvask {

CEventAttributes::~CEventAttributes() {
    for (CXMLSaxAttribut* attribute : m_Objects) {
        delete attribute;
    }
}

CXMLSaxAttribut** CEventAttributes::Show(const xercesc::Attributes& attributes, bool ownConverter,
                                         CEventNames& names) {
    const std::size_t count = attributes.getLength();
    if (m_Shown.size() <= count) {
        Reserve(count);
    }
    for (std::size_t i = 0; i < count; ++i) {
        if (m_Objects[i] == nullptr) {
            m_Objects[i] = new (std::nothrow) CXMLSaxAttribut;
        }
        m_Shown[i] = m_Objects[i];
    }
    m_Shown[count] = nullptr;
    if (count == 0) {
        return m_Shown.data();
    }
    if (ownConverter) {
        ShowKept(attributes, names);
    } else {
        ShowConverted(attributes);
    }
    return m_Shown.data();
}

// Room for this many attributes, in everything that is used again. The objects are made when they are needed, one
// that cannot be made for lack of memory when it is needed the next time.
void CEventAttributes::Reserve(std::size_t count) {
    m_Objects.resize(count);
    m_Places.resize(count);
    m_Shown.resize(count + 1);
}

void CEventAttributes::ShowKept(const xercesc::Attributes& attributes, CEventNames& names) {
    const std::size_t count = attributes.getLength();
    if (!m_Unkept.empty()) {
        m_Unkept.clear();
    }
    m_Values.Clear();
    for (std::size_t i = 0; i < count; ++i) {
        const XMLCh* const uri = attributes.getURI(i);
        const XMLCh* const localName = attributes.getLocalName(i);
        // Without a namespace there is no prefix; the parser would put the name together anew.
        const XMLCh* const qName = *uri == 0 ? localName : attributes.getQName(i);
        const SEventName* name = names.Find(uri, localName, qName);
        if (name == nullptr) {
            names.Convert(uri, localName, qName, m_Unkept.emplace_back());
            name = &m_Unkept.back();
        }
        m_Places[i] = m_Values.Append(attributes.getValue(i));
        if (CXMLSaxAttribut* attribute = m_Objects[i]) {
            // The client may have assigned to it.
            delete[] attribute->m_pStorage;
            attribute->m_pStorage = nullptr;
            attribute->m_pUri = name->uri.c_str();
            attribute->m_pLocalName = name->localName.c_str();
            attribute->m_pQName = name->qName.c_str();
        }
    }
    // The values lie still only now.
    for (std::size_t i = 0; i < count; ++i) {
        if (m_Objects[i] != nullptr) {
            m_Objects[i]->m_pValue = m_Values.At(m_Places[i]);
        }
    }
}

void CEventAttributes::ShowConverted(const xercesc::Attributes& attributes) {
    const std::size_t count = attributes.getLength();
    for (std::size_t i = 0; i < count; ++i) {
        CDOMString uri(attributes.getURI(i));
        CDOMString localName(attributes.getLocalName(i));
        CDOMString qName(attributes.getQName(i));
        CDOMString value(attributes.getValue(i));
        if (m_Objects[i] != nullptr) {
            Own(*m_Objects[i],
                {uri.GetString(), localName.GetString(), qName.GetString(), value.GetString()});
        }
    }
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
    delete[] attribute.m_pStorage;
    attribute.m_pStorage = storage;
}

}  // namespace norvask
