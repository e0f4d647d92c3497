// CXMLSaxHandler: the callbacks that do nothing, and the position in the source.
#include "norvask/sax_handler.h"

#include <new>
#include <xercesc/util/RuntimeException.hpp>
#include <xercesc/util/XMLExceptMsgs.hpp>

#include "load/reader_link.h"

namespace norvask {

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

// Handlers may end on several threads at once: only one of them gets the block.
CXMLSaxHandler::~CXMLSaxHandler() {
    CReaderLink::Release(m_pReader);
    unsigned char* block = __atomic_exchange_n(&m_pBinBlock, nullptr, __ATOMIC_ACQ_REL);
    if (block != nullptr) {
        __atomic_store_n(&m_nBinBlockLength, 0, __ATOMIC_RELAXED);
        ::operator delete(block);
    }
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

}  // namespace norvask
