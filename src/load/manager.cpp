// CXMLManager: the parser's life and the two settings. Only the one manager of the process tells
// the library below it that the parser is there; one that a client derived speaks for itself alone.
#include "norvask/manager.h"

#include <new>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLException.hpp>
#include <xercesc/util/XMLUni.hpp>

#include "foundation/parser_state.h"
#include "load/manager_access.h"
#include "tree/document_body.h"

namespace norvask {

CXMLManager CXMLManager::sm_TheInstance;

CXMLManager::CXMLManager()
    : m_bInitialized(false),
      m_pConverter(&m_Converter),
      m_bCalculateSourceOffsets(false),
      m_bTerminatesParser(true) {
    try {
        xercesc::XMLPlatformUtils::Initialize(xercesc::XMLUni::fgXercescDefaultLocale);
        ProbeLocalEncoding();
        m_bInitialized = true;
        if (this == &sm_TheInstance) {
            SetParserInitialised(true);
        }
    } catch (const xercesc::XMLException&) {
        // Told by IsInitialized and by everything that needs the parser.
    }
}

CXMLManager::CXMLManager(const CXMLManager&) noexcept
    : m_bInitialized(false),
      m_pConverter(&m_Converter),
      m_bCalculateSourceOffsets(false),
      m_bTerminatesParser(false) {}

CXMLManager::~CXMLManager() {
    if (m_bTerminatesParser) {
        xercesc::XMLPlatformUtils::Terminate();
    }
}

CXMLManager& CXMLManager::GetInstance() { return sm_TheInstance; }

bool CXMLManager::IsInitialized() { return m_bInitialized; }

void CXMLManager::SetCalculateSourceOffsets(bool calculate) {
    m_bCalculateSourceOffsets = calculate;
}

void CXMLManager::SetWideCharToStringConverter(CWideCharToString* converter) {
    m_pConverter = converter == nullptr ? &m_Converter : converter;
}

CWideCharToString* CXMLManager::GetWideCharToStringConverter() { return m_pConverter; }

CXMLDocument* CXMLManager::CreateDocument(const char* dtdName, const char* dtdPath) {
    CManagerAccess::RequireInitialised(*this);
    try {
        return CDocumentAccess::New(dtdName, dtdPath);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

}  // namespace norvask
