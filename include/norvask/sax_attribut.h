/// @file
/// @class norvask::CXMLSaxAttribut
/// One attribute of an element that is reported to a client (sax_handler.h).
///
/// **Role:** CXMLSaxHandler::StartElement receives an array of these.
///
/// **Owner:** the library makes and ends them. An attribute and its strings last until the callback
/// that received it returns: copy what you keep.
///
/// **Threads:** an attribute belongs to the thread of its load.
#ifndef NORVASK_SAX_ATTRIBUT_H
#define NORVASK_SAX_ATTRIBUT_H

#include "norvask/export.h"

namespace norvask {

class NORVASK_API CXMLSaxAttribut {
public:
    /// Copies have strings of their own, so they outlive their source; an attribute may be assigned
    /// to itself. Only a derived class can make one, since the destructor is protected: what a
    /// client keeps of an attribute is mostly its strings. Throw std::bad_alloc; an assignment that
    /// throws has changed nothing.
    CXMLSaxAttribut(const CXMLSaxAttribut& other);
    CXMLSaxAttribut& operator=(const CXMLSaxAttribut& other);

protected:
    /// Copies the strings; NULL gives an empty one. Throws std::bad_alloc. Protected, as is the
    /// destructor: a class that wants attributes of its own derives from this one.
    CXMLSaxAttribut(const char* uri, const char* localName, const char* qName, const char* value);
    /// Destroys the object.
    virtual ~CXMLSaxAttribut();

public:
    /// The strings; never NULL. Valid until the attribute ends or is assigned to.
    virtual const char* GetUri();        ///< The namespace; empty when the attribute is in none.
    virtual const char* GetLocalName();  ///< The name without its prefix.
    virtual const char* GetQName();      ///< The name as it is written.
    virtual const char* GetValue();

private:
    friend class CEventAttributes;
    // Shows strings that belong to a load.
    CXMLSaxAttribut() noexcept
        : m_pUri(""), m_pLocalName(""), m_pQName(""), m_pValue(""), m_pStorage(nullptr) {}

    const char* m_pUri;
    const char* m_pLocalName;
    const char* m_pQName;
    const char* m_pValue;
    char* m_pStorage;  // of all four; NULL when they belong to the load
};

}  // namespace norvask

#endif
