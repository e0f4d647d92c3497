/// @file
/// @class norvask::CXMLAttribut
/// One name and value of an element.
///
/// **Role:** elements own their attributes (CXMLNode::SetAttribute, GetAttributes); an application
/// may also make attributes of its own. Names and values are narrow strings
/// (wide_char_to_string.h), stored as given: escaping happens when a document is saved.
///
/// **Owner:** an attribute of an element belongs to that element from the SetAttribute that adds it
/// to the one that removes it or the element's end; never delete it. One that you made is yours.
///
/// **Threads:** an attribute of an element belongs to the document's thread; a copy may go
/// anywhere.
#ifndef NORVASK_ATTRIBUT_H
#define NORVASK_ATTRIBUT_H

#include <cstdint>

#include "norvask/export.h"

namespace norvask {

class NORVASK_API CXMLAttribut {
public:
    /// Copies both strings; NULL gives an empty one. The name is not checked. Throws
    /// std::bad_alloc.
    CXMLAttribut(const char* name, const char* value);

    /// Deliberate: copies share the strings with their source and show the same pointers; they
    /// cannot fail. A string is released when the last attribute that shows it is gone, so a copy
    /// of an element's attribute outlives the document (and keeps up to 32 KiB, or a longer string,
    /// of its memory alive until then). SetName and SetValue give the one object a string of its
    /// own.
    CXMLAttribut(const CXMLAttribut& other) noexcept;
    CXMLAttribut& operator=(const CXMLAttribut& other) noexcept;
    /// Destroys the object.
    ~CXMLAttribut();

    /// The strings; never NULL. Valid until the next SetName or SetValue (assignment included) of
    /// this attribute or its end, whichever comes first.
    const char* GetName();
    const char* GetValue();

    /// Store a copy; NULL gives an empty string, and the argument may be this attribute's own
    /// string. Throw std::bad_alloc, then nothing has changed. Deliberate: SetName takes any text,
    /// since an attribute outside a document has nothing to break; saving refuses an invalid name.
    /// An empty value is possible here but not through CXMLNode::SetAttribute, so copying an
    /// element drops such an attribute.
    void SetName(const char* name);
    void SetValue(const char* value);

    /// The value read as a typed one; the accepted texts and what the outputs hold when the answer
    /// is false are those of CXMLSaxHandler's parsers of the same name. Nothing is thrown.
    bool GetDateValue(int& year, int& month, int& day);
    bool GetDateTimeValue(int& year, int& month, int& day, int& hour, int& minute, int& second);
    bool GetTimeValue(int& hour, int& minute, int& second);
    bool GetDoubleValue(double& value);
    bool GetLongValue(long& value);
    bool GetBoolValue(bool& value);

    /// Store the text form that convert.h describes, with its ranges. A component out of range
    /// throws CXMLException (7, "Error during conversion.") and leaves the value as it was.
    void SetDateValue(int year, int month, int day);
    void SetDateTimeValue(int year, int month, int day, int hour, int minute, int second);
    void SetTimeValue(int hour, int minute, int second);
    void SetDoubleValue(const double& value);
    void SetLongValue(long value);
    void SetBoolValue(bool value, bool numeric);

private:
    friend class CAttributeAccess;
    struct SOwned {};
    CXMLAttribut(SOwned, const char* name, const char* value) noexcept;

    // Pointers to the characters; the low bits say who holds the strings (attribute_access.h).
    std::uintptr_t m_nName;
    std::uintptr_t m_nValue;
};

}  // namespace norvask

#endif
