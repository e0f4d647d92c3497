#include "norvask/attribut.h"

#include <atomic>
#include <cstring>

#include "foundation/text_rules.h"
#include "foundation/utf8.h"
#include "foundation/value_text.h"
#include "norvask/sax_handler.h"
#include "tree/attribute_access.h"

namespace norvask {
namespace {

// Names that indexed attributes were given behind their elements' backs.
std::atomic<std::uint64_t> s_nRenames(0);

std::uintptr_t Number(const char* text) noexcept { return reinterpret_cast<std::uintptr_t>(text); }

CTreeMemory& TreeOf(const char* text) noexcept { return *PageOf(text)->m_pTree; }

}  // namespace

void CAttributeAccess::EndName(const char* name, bool held) noexcept {
    if (held) {
        ReleaseHeldString(name);
    } else {
        CTreeMemory& memory = TreeOf(name);
        memory.Names().Release(memory, name);
    }
}

// A value that an element's attribute does not hold may be the constant "", which lies in no tree.
void CAttributeAccess::EndValue(const char* value, bool held) noexcept {
    if (held) {
        ReleaseHeldString(value);
    } else if (!HasFlag(value, STRING_STATIC)) {
        FreeTreeString(TreeOf(value), value);
    }
}

void CAttributeAccess::End(CTreeMemory& memory, CXMLAttribut* attribute) noexcept {
    const bool held = Holds(attribute);
    EndName(Name(attribute), held);
    EndValue(Value(attribute), held);
    memory.FreePlain(attribute, sizeof(CXMLAttribut));
}

void CAttributeAccess::ReleaseHeld(CXMLAttribut* attribute) noexcept {
    if (Holds(attribute)) {
        ReleaseHeldString(Name(attribute));
        ReleaseHeldString(Value(attribute));
    }
}

std::uint64_t CAttributeAccess::RenameCount() noexcept {
    return s_nRenames.load(std::memory_order_relaxed);
}

void CAttributeAccess::ReplaceName(CXMLAttribut* attribute, const char* name, bool holds) noexcept {
    const char* old = Name(attribute);
    const bool held = Holds(attribute);
    if ((attribute->m_nName & ATTRIBUTE_INDEXED) != 0) {
        s_nRenames.fetch_add(1, std::memory_order_relaxed);
    }
    if (!held) {
        TreeOf(old).Note(CTreeMemory::ATTRIBUTE_RENAMED);
        if (holds) {
            TreeOf(old).Note(CTreeMemory::HOLDS_OTHERS);
        }
    }
    attribute->m_nName =
        Number(name) | (attribute->m_nName & ATTRIBUTE_INDEXED) | (holds ? ATTRIBUTE_HOLDS : 0);
    EndName(old, held);
}

void CAttributeAccess::ReplaceValue(CXMLAttribut* attribute, const char* value,
                                    bool held) noexcept {
    const char* old = Value(attribute);
    attribute->m_nValue = Number(value);
    EndValue(old, held);
}

namespace {

const char* NewHeldName(const char* name) {
    const bool plain = name != nullptr && IsAscii(name, std::strlen(name)) && IsXmlName(name);
    return NewHeldString(name, plain ? STRING_VALID | STRING_ASCII | STRING_UTF8 : 0);
}

const char* NewHeldValue(const char* value) {
    return NewHeldString(value, value != nullptr && IsKnownUtf8(value) ? STRING_UTF8 : 0);
}

}  // namespace

CXMLAttribut::CXMLAttribut(const char* name, const char* value) : m_nName(0), m_nValue(0) {
    const char* heldName = NewHeldName(name);
    m_nName = Number(heldName) | CAttributeAccess::ATTRIBUTE_HOLDS;
    try {
        m_nValue = Number(NewHeldValue(value));
    } catch (...) {
        ReleaseHeldString(heldName);
        throw;
    }
}

CXMLAttribut::CXMLAttribut(SOwned, const char* name, const char* value) noexcept
    : m_nName(Number(name)), m_nValue(Number(value)) {}

CXMLAttribut::CXMLAttribut(const CXMLAttribut& other) noexcept
    : m_nName(Number(CAttributeAccess::Name(&other)) | CAttributeAccess::ATTRIBUTE_HOLDS),
      m_nValue(other.m_nValue) {
    HoldString(CAttributeAccess::Name(this));
    HoldString(CAttributeAccess::Value(this));
}

CXMLAttribut& CXMLAttribut::operator=(const CXMLAttribut& other) noexcept {
    const char* name = CAttributeAccess::Name(&other);
    const char* value = CAttributeAccess::Value(&other);
    HoldString(name);
    HoldString(value);
    CAttributeAccess::ReplaceValue(this, value, CAttributeAccess::Holds(this));
    CAttributeAccess::ReplaceName(this, name, true);
    return *this;
}

CXMLAttribut::~CXMLAttribut() { CAttributeAccess::ReleaseHeld(this); }

const char* CXMLAttribut::GetName() { return CAttributeAccess::Name(this); }

const char* CXMLAttribut::GetValue() { return CAttributeAccess::Value(this); }

void CXMLAttribut::SetName(const char* name) {
    const bool holds = CAttributeAccess::Holds(this);
    const char* copy = nullptr;
    if (holds) {
        copy = NewHeldName(name);
    } else {
        const char* text = name == nullptr ? "" : name;
        CTreeMemory& memory = TreeOf(CAttributeAccess::Name(this));
        copy = memory.Names().Acquire(memory, text, std::strlen(text));
    }
    CAttributeAccess::ReplaceName(this, copy, holds);
}

void CXMLAttribut::SetValue(const char* value) {
    const unsigned int flags = value != nullptr && IsKnownUtf8(value) ? STRING_UTF8 : 0;
    if (CAttributeAccess::Holds(this)) {
        m_nValue = Number(ReplaceHeldString(CAttributeAccess::Value(this), value, flags));
        return;
    }
    const char* copy = EmptyString();
    if (value != nullptr && *value != '\0') {
        copy = NewTreeString(TreeOf(CAttributeAccess::Name(this)), value, std::strlen(value),
                             flags != 0);
    }
    CAttributeAccess::ReplaceValue(this, copy, false);
}

bool CXMLAttribut::GetDateValue(int& year, int& month, int& day) {
    return CXMLSaxHandler::GetDate(GetValue(), year, month, day);
}

bool CXMLAttribut::GetDateTimeValue(int& year, int& month, int& day, int& hour, int& minute,
                                    int& second) {
    return CXMLSaxHandler::GetDateTime(GetValue(), year, month, day, hour, minute, second);
}

bool CXMLAttribut::GetTimeValue(int& hour, int& minute, int& second) {
    return CXMLSaxHandler::GetTime(GetValue(), hour, minute, second);
}

bool CXMLAttribut::GetDoubleValue(double& value) {
    return CXMLSaxHandler::GetDouble(GetValue(), value);
}

bool CXMLAttribut::GetLongValue(long& value) { return CXMLSaxHandler::GetLong(GetValue(), value); }

bool CXMLAttribut::GetBoolValue(bool& value) { return CXMLSaxHandler::GetBool(GetValue(), value); }

void CXMLAttribut::SetDateValue(int year, int month, int day) {
    SValueText text;
    SetValue(FormatDate(text, year, month, day));
}

void CXMLAttribut::SetDateTimeValue(int year, int month, int day, int hour, int minute,
                                    int second) {
    SValueText text;
    SetValue(FormatDateTime(text, year, month, day, hour, minute, second));
}

void CXMLAttribut::SetTimeValue(int hour, int minute, int second) {
    SValueText text;
    SetValue(FormatTime(text, hour, minute, second));
}

void CXMLAttribut::SetDoubleValue(const double& value) {
    SValueText text;
    SetValue(FormatDouble(text, value));
}

void CXMLAttribut::SetLongValue(long value) {
    SValueText text;
    SetValue(FormatLong(text, value));
}

void CXMLAttribut::SetBoolValue(bool value, bool numeric) { SetValue(FormatBool(value, numeric)); }

}  // namespace norvask
