// CXMLSaxHandler: the callbacks that do nothing, the position in the source, and the names under
// which clients reach the readers of typed values.
#include "norvask/sax_handler.h"

#include <xercesc/util/RuntimeException.hpp>
#include <xercesc/util/XMLExceptMsgs.hpp>

#include "foundation/shared_block.h"
#include "foundation/value_text.h"
#include "load/reader_link.h"

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

CReaderLink* CReaderLink::Attach(CXMLSaxHandler& handler, xercesc::SAX2XMLReader& reader,
                                 bool tracksOffsets) {
    CReaderLink* link = new CReaderLink(reader, tracksOffsets);
    Release(handler.m_pReader);
    handler.m_pReader = Share(link);
    return link;
}

CReaderLink* CReaderLink::Share(CReaderLink* link) noexcept {
    if (link != nullptr) {
        link->m_nUsers.fetch_add(1, std::memory_order_relaxed);
    }
    return link;
}

void CReaderLink::Release(CReaderLink* link) noexcept {
    if (link != nullptr && link->m_nUsers.fetch_sub(1, std::memory_order_acq_rel) == 1) {
        delete link;
    }
}

std::uint64_t CReaderLink::Offset() {
    if (m_pReader == nullptr) {
        return 0;
    }
    // The parser's own refusal, which it forgets inside of internal entities.
    if (!m_bTracks) {
        throw xercesc::RuntimeException("", 0, xercesc::XMLExcepts::Reader_SrcOfsNotSupported);
    }
    // Inside of an entity the parser counts in the entity.
    if (m_nEntities == 0) {
        const std::uint64_t offset = m_pReader->getSrcOffset();
        m_nLast = offset > m_nLast ? offset : m_nLast;
    }
    return m_nLast;
}

CXMLSaxHandler::CXMLSaxHandler() noexcept : m_pReader(nullptr) {}

CXMLSaxHandler::CXMLSaxHandler(const CXMLSaxHandler& other) noexcept
    : m_pReader(CReaderLink::Share(other.m_pReader)) {}

CXMLSaxHandler& CXMLSaxHandler::operator=(const CXMLSaxHandler& other) noexcept {
    CReaderLink* link = CReaderLink::Share(other.m_pReader);
    CReaderLink::Release(m_pReader);
    m_pReader = link;
    return *this;
}

CXMLSaxHandler::~CXMLSaxHandler() {
    CReaderLink::Release(m_pReader);
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
    return m_pReader == nullptr ? 0 : m_pReader->Offset();
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
