// Internal. CEventAttributes: the attributes of the element that is reported, as the array that a client receives.
//
// Objects, array and the block of the values are used again for the next element. Under the library's own
// converter names belong to CEventNames and values to the block; under a client's converter each attribute owns
// what the converter gave.
#ifndef NORVASK_LOAD_EVENT_ATTRIBUTES_H
#define NORVASK_LOAD_EVENT_ATTRIBUTES_H

#include <cstddef>
#include <deque>
#include <vector>
#include <xercesc/sax2/Attributes.hpp>

#include "load/event_names.h"
#include "norvask/sax_attribut.h"

namespace norvask {

class CEventAttributes {
public:
    CEventAttributes() = default;
    CEventAttributes(const CEventAttributes&) = delete;
    CEventAttributes& operator=(const CEventAttributes&) = delete;
    ~CEventAttributes();

    // The array for these attributes, valid until the next call. `ownConverter` tells which converter is in
    // force. Throws std::bad_alloc and what a client's converter throws.
    CXMLSaxAttribut** Show(const xercesc::Attributes& attributes, bool ownConverter,
                           CEventNames& names);

    // Gives an attribute strings of its own, NULL as an empty one; they may be those that it shows. Throws
    // std::bad_alloc, then nothing has changed.
    static void Own(CXMLSaxAttribut& attribute, const char* const (&strings)[4]);

private:
    void Reserve(std::size_t count);
    void ShowKept(const xercesc::Attributes& attributes, CEventNames& names);
    void ShowConverted(const xercesc::Attributes& attributes);

    std::vector<CXMLSaxAttribut*> m_Objects;  // NULL for those not made yet
    std::vector<CXMLSaxAttribut*> m_Shown;    // a copy: the client may rearrange it
    std::deque<SEventName> m_Unkept;          // the names that CEventNames does not keep
    CNarrowText m_Values;
    std::vector<std::size_t> m_Places;  // of the values
};

}  // namespace norvask

#endif
