// Internal. CReaderLink: what a client's handler and its copies know of the load under way, for the
// position in the source.
//
// It is shared and counted, so that the end of a load reaches every copy, and a load never touches
// a handler that is destroyed.
#ifndef NORVASK_LOAD_PARSER_READER_LINK_H
#define NORVASK_LOAD_PARSER_READER_LINK_H

#include <atomic>
#include <cstdint>
#include <xercesc/sax2/SAX2XMLReader.hpp>

namespace norvask {

class CXMLSaxHandler;

class CReaderLink {
public:
    CReaderLink(const CReaderLink&) = delete;
    CReaderLink& operator=(const CReaderLink&) = delete;

    // A new link, which `handler` shows from now on, and which the caller has retained. Throws
    // std::bad_alloc.
    static CReaderLink* Attach(CXMLSaxHandler& handler, bool tracksOffsets);
    // NULL is allowed. The last release deletes the link.
    static CReaderLink* Retain(CReaderLink* link) noexcept;
    static void Release(CReaderLink* link) noexcept;

    // From now on the parser reads the document, with this reader, or no longer: NULL.
    void SetReader(xercesc::SAX2XMLReader* reader) noexcept { m_pReader = reader; }
    // The load is over.
    void Detach() noexcept { m_bIsOver = true; }

    // While the parser is inside of an entity.
    void EnterEntity() noexcept { ++m_nEntities; }
    void LeaveEntity() noexcept { --m_nEntities; }

    // The position in the source, 0 after the load. Throws the parser's exception when it does not
    // track positions.
    std::uint64_t Offset();

private:
    explicit CReaderLink(bool tracksOffsets) noexcept
        : m_nUsers(1),
          m_pReader(nullptr),
          m_bTracks(tracksOffsets),
          m_bIsOver(false),
          m_nEntities(0),
          m_nLast(0) {}
    ~CReaderLink() = default;

    std::atomic<unsigned int> m_nUsers;
    xercesc::SAX2XMLReader* m_pReader;  // NULL when it is not the parser that reads
    const bool m_bTracks;
    bool m_bIsOver;
    unsigned int m_nEntities;
    std::uint64_t m_nLast;
};

// Links a handler to a load for the length of a scope.
class CReaderScope {
public:
    CReaderScope(CXMLSaxHandler& handler, bool tracksOffsets)
        : m_pLink(CReaderLink::Attach(handler, tracksOffsets)) {}
    CReaderScope(const CReaderScope&) = delete;
    CReaderScope& operator=(const CReaderScope&) = delete;
    ~CReaderScope() {
        m_pLink->Detach();
        CReaderLink::Release(m_pLink);
    }

    CReaderLink& Link() const noexcept { return *m_pLink; }

private:
    CReaderLink* const m_pLink;
};

}  // namespace norvask

#endif
