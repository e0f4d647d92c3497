// CReaderLink: counting, and the position that the parser tells.
#include "load/parser/reader_link.h"

#include <xercesc/util/RuntimeException.hpp>
#include <xercesc/util/XMLExceptMsgs.hpp>

#include "norvask/sax_handler.h"

namespace norvask {

CReaderLink* CReaderLink::Attach(CXMLSaxHandler& handler, bool tracksOffsets) {
    CReaderLink* link = new CReaderLink(tracksOffsets);
    Release(handler.m_pLink);
    handler.m_pLink = Retain(link);
    return link;
}

CReaderLink* CReaderLink::Retain(CReaderLink* link) noexcept {
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
    if (m_bIsOver) {
        return 0;
    }
    // The parser's own refusal, which it forgets inside of internal entities.
    if (!m_bTracks) {
        throw xercesc::RuntimeException("", 0, xercesc::XMLExcepts::Reader_SrcOfsNotSupported);
    }
    // Inside of an entity the parser counts in the entity.
    if (m_nEntities == 0 && m_pReader != nullptr) {
        const std::uint64_t offset = m_pReader->getSrcOffset();
        m_nLast = offset > m_nLast ? offset : m_nLast;
    }
    return m_nLast;
}

}  // namespace norvask
