// CXMLAttribut: one name and one value, of an element or of an application.
#include "norvask/attribut.h"

#include <cstring>

#include "foundation/value_text.h"
#include "tree/attribute_strings.h"

namespace norvask {
namespace {

// What can be known of any text that becomes a name without asking the parser, since it need not be
// one.
SKnownText JudgeAnyName(const char* name) {
    const SKnownText judged = JudgeText(name);
    return judged.Is(KNOWN_ASCII) ? JudgeName(judged.text) : judged;
}

}  // namespace

CXMLAttribut::CXMLAttribut(const char* name, const char* value) : m_nName(0), m_nValue(0) {
    const CTreeString outer = NewOuterString(JudgeAnyName(name));
    try {
        CAttributeAccess::SetValue(this, NewOuterString(JudgeText(value)));
    } catch (...) {
        ReleaseString(outer);
        throw;
    }
    CAttributeAccess::SetName(this, outer, true);
}

CXMLAttribut::CXMLAttribut(SOwned, const char* name, const char* value) noexcept
    : m_nName(reinterpret_cast<std::uintptr_t>(name)),
      m_nValue(reinterpret_cast<std::uintptr_t>(value)) {}

CXMLAttribut::CXMLAttribut(const CXMLAttribut& other) noexcept
    : m_nName(0), m_nValue(other.m_nValue) {
    CAttributeAccess::SetName(this, CAttributeAccess::Name(&other), true);
    RetainString(CAttributeAccess::Name(this));
    RetainString(CAttributeAccess::Value(this));
}

CXMLAttribut& CXMLAttribut::operator=(const CXMLAttribut& other) noexcept {
    const CTreeString name = CAttributeAccess::Name(&other);
    const CTreeString value = CAttributeAccess::Value(&other);
    RetainString(name);
    RetainString(value);
    ReplaceValue(this, value, CAttributeAccess::Holds(this));
    ReplaceName(this, name, true);
    return *this;
}

CXMLAttribut::~CXMLAttribut() { ReleaseHeld(this); }

const char* CXMLAttribut::GetName() { return CAttributeAccess::Name(this).Text(); }

const char* CXMLAttribut::GetValue() { return CAttributeAccess::Value(this).Text(); }

void CXMLAttribut::SetName(const char* name) {
    const SKnownText judged = JudgeAnyName(name);
    if (CAttributeAccess::Holds(this)) {
        ReplaceName(this, NewOuterString(judged), true);
    } else {
        CTree& tree = CAttributeAccess::Name(this).Tree();
        ReplaceName(this, CNameUse(tree, judged).Keep(), false);
    }
}

void CXMLAttribut::SetValue(const char* value) { SetAttributeValue(this, JudgeText(value)); }

bool CXMLAttribut::GetDateValue(int& year, int& month, int& day) {
    return ReadDate(GetValue(), year, month, day);
}

bool CXMLAttribut::GetDateTimeValue(int& year, int& month, int& day, int& hour, int& minute,
                                    int& second) {
    return ReadDateTime(GetValue(), year, month, day, hour, minute, second);
}

bool CXMLAttribut::GetTimeValue(int& hour, int& minute, int& second) {
    return ReadTime(GetValue(), hour, minute, second);
}

bool CXMLAttribut::GetDoubleValue(double& value) { return ReadDouble(GetValue(), value); }

bool CXMLAttribut::GetLongValue(long& value) { return ReadLong(GetValue(), value); }

bool CXMLAttribut::GetBoolValue(bool& value) { return ReadBool(GetValue(), value); }

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
