// CDOMString: asks the manager which converter is in force, for every string.
#include "load/dom_string.h"

#include "foundation/utf8.h"
#include "norvask/manager.h"

namespace norvask {

CDOMString::CDOMString(const char16_t* text)
    : m_pText(text == nullptr ? nullptr
                              : CXMLManager::GetInstance().GetWideCharToStringConverter()->Convert(
                                    text, Utf16Length(text))) {}

CDOMString::~CDOMString() { delete[] m_pText; }

const char* CDOMString::GetString() { return m_pText; }

}  // namespace norvask
