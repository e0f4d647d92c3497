// Internal. CEventAttributes: the attributes of the element that is reported, as the array that a
// client receives.
//
// Objects and array are used again for the next element. The attributes show strings that belong to
// whoever reports them, and own none, but for those to which a client has assigned.
#ifndef NORVASK_LOAD_RECEIVER_EVENT_ATTRIBUTES_H
#define NORVASK_LOAD_RECEIVER_EVENT_ATTRIBUTES_H

#include <cstddef>
#include <vector>

#include "load/receiver/event_name.h"
#include "norvask/sax_attribut.h"

namespace norvask {

class CEventAttributes {
public:
    CEventAttributes() = default;
    CEventAttributes(const CEventAttributes&) = delete;
    CEventAttributes& operator=(const CEventAttributes&) = delete;
    ~CEventAttributes();

    // An element with this many attributes, each of which is to be set. Throws std::bad_alloc.
    void Begin(std::size_t count) {
        if (m_Shown.size() <= count) {
            Reserve(count);
        }
        m_Shown[count] = nullptr;
    }
    // The attribute at this index. The strings last until the callback has returned. An object that
    // cannot be made for lack of memory is NULL in the array, until an element needs it again.
    void Set(std::size_t index, const SEventName& name, const char* value) noexcept {
        CXMLSaxAttribut* attribute = m_Objects[index];
        if (attribute == nullptr) {
            attribute = Make(index);
        }
        m_Shown[index] = attribute;
        if (attribute != nullptr) {
            ReleaseStorage(*attribute);
            attribute->m_pUri = name.uri;
            attribute->m_pLocalName = name.localName;
            attribute->m_pQName = name.qName;
            attribute->m_pValue = value;
        }
    }
    // The array, ended by a NULL, valid until the next Begin.
    CXMLSaxAttribut** Array() noexcept { return m_Shown.data(); }

    // Gives an attribute strings of its own, NULL as an empty one; they may be those that it shows.
    // Throws std::bad_alloc, then nothing has changed.
    static void Own(CXMLSaxAttribut& attribute, const char* const (&strings)[4]);

private:
    void Reserve(std::size_t count);
    CXMLSaxAttribut* Make(std::size_t index) noexcept;
    static void ReleaseStorage(CXMLSaxAttribut& attribute) noexcept {
        delete[] attribute.m_pStorage;
        attribute.m_pStorage = nullptr;
    }

    std::vector<CXMLSaxAttribut*> m_Objects;  // NULL for those not made yet
    std::vector<CXMLSaxAttribut*> m_Shown;    // a copy: the client may rearrange it
};

}  // namespace norvask

#endif
