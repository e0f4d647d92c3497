// CXMLSaxHandler: the callbacks that do nothing, the position in the source, and the names under
// which clients reach the readers of typed values.
#include "norvask/sax_handler.h"

#include "foundation/shared_block.h"
#include "foundation/value_text.h"
#include "load/parser/reader_link.h"

namespace norvask {

unsigned char* CXMLSaxHandler::m_pBinBlock = nullptr;
std::size_t CXMLSaxHandler::m_nBinBlockLength = 0;

namespace {

// The library decodes into the members above from its first moment on.
const struct SPlaceOfBlock {
    SPlaceOfBlock() noexcept {
        CSharedBlock::SetPlace(CXMLSaxHandler::m_pBinBlock, CXMLSaxHandler::m_nBinBlockLength);
    }
} PLACE_OF_BLOCK;

}  // namespace

CXMLSaxHandler::CXMLSaxHandler() noexcept : m_pLink(nullptr) {}

CXMLSaxHandler::CXMLSaxHandler(const CXMLSaxHandler& other) noexcept
    : m_pLink(CReaderLink::Retain(other.m_pLink)) {}

CXMLSaxHandler& CXMLSaxHandler::operator=(const CXMLSaxHandler& other) noexcept {
    CReaderLink* link = CReaderLink::Retain(other.m_pLink);
    CReaderLink::Release(m_pLink);
    m_pLink = link;
    return *this;
}

CXMLSaxHandler::~CXMLSaxHandler() {
    CReaderLink::Release(m_pLink);
    CSharedBlock::Release();
}

void CXMLSaxHandler::StartDocument() {}

void CXMLSaxHandler::EndDocument() {}

void CXMLSaxHandler::StartElement(const char*, const char*, const char*, CXMLSaxAttribut**) {}

void CXMLSaxHandler::EndElement(const char*, const char*, const char*) {}

void CXMLSaxHandler::Characters(const char*) {}

void CXMLSaxHandler::StartCDATA() {}

void CXMLSaxHandler::EndCDATA() {}

void CXMLSaxHandler::StartDTD(const char*, const char*, const char*) {}

void CXMLSaxHandler::StartNamespace(const char*, const char*) {}

void CXMLSaxHandler::EndNamespace(const char*) {}

std::uint64_t CXMLSaxHandler::GetSourceOffset() {
    return m_pLink == nullptr ? 0 : m_pLink->Offset();
}

bool CXMLSaxHandler::GetDate(const char* text, int& year, int& month, int& day) {
    return ReadDate(text, year, month, day);
}

bool CXMLSaxHandler::GetDateTime(const char* text, int& year, int& month, int& day, int& hour,
                                 int& minute, int& second) {
    return ReadDateTime(text, year, month, day, hour, minute, second);
}

bool CXMLSaxHandler::GetTime(const char* text, int& hour, int& minute, int& second) {
    return ReadTime(text, hour, minute, second);
}

bool CXMLSaxHandler::GetDouble(const char* text, double& value) { return ReadDouble(text, value); }

bool CXMLSaxHandler::GetLong(const char* text, long& value) { return ReadLong(text, value); }

bool CXMLSaxHandler::GetBool(const char* text, bool& value) { return ReadBool(text, value); }

bool CXMLSaxHandler::GetData(const char* text, unsigned char*& data, std::size_t& length) {
    return CSharedBlock::Decode(text, data, length);
}

}  // namespace norvask
