// Internal. CWatch: looks on while a document is read: limits, progress, and being stopped.
//
// Whoever reads tells of what it has read; the watch says whether it may go on. It throws nothing
// but what the program's own progress function throws. A document may be read twice: by the fast
// lane, which leaves a document that is beyond a limit, and by the parser, whose reading decides.
// Only time and being stopped are decided by either.
#ifndef NORVASK_LOAD_WATCH_WATCH_H
#define NORVASK_LOAD_WATCH_WATCH_H

#include <cstddef>
#include <cstdint>
#include <string>

#include "norvask/load.h"

namespace norvask {

enum class ERefusal { NONE, DTD, BYTES, MARKUP, DEPTH, NAMESPACES, NAMES, TIME, STOPPED };

class CWatch {
public:
    // What the settings ask for; both are used as long as this lives. The time begins now.
    explicit CWatch(const SXMLLoadSettings& settings) noexcept;
    CWatch(const CWatch&) = delete;
    CWatch& operator=(const CWatch&) = delete;

    bool IsUntrusted() const noexcept { return m_bIsUntrusted; }
    // Whether there is anything to watch.
    bool IsAwake() const noexcept { return m_bIsUntrusted || m_Settings.progress != nullptr; }

    // The document is read from its first byte on; `total` is its size, 0 if that is not known.
    ERefusal Begin(std::uint64_t total) noexcept;
    // So many bytes were read. Those of the reads before are used up by now.
    ERefusal Read(std::size_t bytes);
    // All of it was read.
    ERefusal Finish() { return m_nRead > m_nTold ? Tell() : ERefusal::NONE; }

    // Whether the time is used up, or the program has stopped the load: then nobody reads on.
    ERefusal Over() const noexcept { return m_Over; }
    // What was told last lies in front of this byte.
    std::uint64_t Position() const noexcept { return m_nAtEvent; }

    // Something of the document was told.
    ERefusal Event() noexcept {
        m_nAtEvent = m_nRead;
        return IsLookedAt() && !IsInTime() ? ERefusal::TIME : ERefusal::NONE;
    }
    ERefusal StartElement() noexcept {
        ++m_nDepth;
        return m_nDepth > m_nMaxDepth ? ERefusal::DEPTH : Event();
    }
    void EndElement() noexcept { --m_nDepth; }
    ERefusal StartNamespace() noexcept {
        ++m_nNamespaces;
        return m_nNamespaces > m_nMaxNamespaces ? ERefusal::NAMESPACES : Event();
    }
    void EndNamespace() noexcept { --m_nNamespaces; }
    // So much memory is in use for names.
    ERefusal Names(std::uint64_t bytes) const noexcept {
        return bytes > m_nMaxNames ? ERefusal::NAMES : ERefusal::NONE;
    }

    // For a reading that knows where it is: whether so many elements may be open, and so many
    // declarations of namespaces in force; and whether it may go on behind this byte, up to which
    // everything was told.
    bool MayStart(std::size_t depth, std::size_t namespaces) const noexcept {
        return depth <= m_nMaxDepth && namespaces <= m_nMaxNamespaces;
    }
    bool MayGoOn(std::uint64_t position) noexcept {
        if (position - m_nAtEvent > m_nMaxMarkup) {
            return false;
        }
        m_nAtEvent = position;
        return !IsLookedAt() || IsInTime();
    }

    // For a reading that tells nothing of the document.
    bool IsInTime() noexcept;

    // The limit that was passed, in words.
    std::string Words(ERefusal refusal) const;

private:
    static const unsigned int LOOKED_AT = 256;
    // The parser looks for a prefix among all that are in force, for each attribute of a tag. A
    // common declaration takes about so many bytes.
    static const std::uint64_t BYTES_OF_NAMESPACE = 64;
    static constexpr std::uint64_t FEW_NAMESPACES = 64;
    // It keeps each name and namespace that it meets, in memory that is a multiple of their bytes.
    // What it needs for any document, and a schema, is in that.
    static const std::uint64_t NAMES_OF_BYTES = 4;
    static constexpr std::uint64_t FEW_BYTES_OF_NAMES = std::uint64_t{4} << 20;

    bool IsLookedAt() noexcept {
        ++m_nEvents;
        return m_nEvents % LOOKED_AT == 0;
    }
    ERefusal Tell();

    const SXMLLoadSettings& m_Settings;
    bool m_bIsUntrusted;
    std::uint64_t m_nMaxBytes;
    std::uint64_t m_nMaxMarkup;
    std::uint64_t m_nMaxDepth;
    std::uint64_t m_nMaxNamespaces;
    std::uint64_t m_nMaxNames;
    std::uint64_t m_nMaxNanoseconds;  // 0 for no limit
    std::uint64_t m_nBegin;           // of the time
    std::uint64_t m_nUsed = 0;        // when it was asked for last
    std::uint64_t m_nLongest = 0;     // step between two looks
    std::uint64_t m_nLook = 0;        // the last one, by the clock of what passes
    std::uint64_t m_nNotBefore = 0;   // when the limit may be reached, by that clock

    std::uint64_t m_nTotal = 0;
    std::uint64_t m_nRead = 0;
    std::uint64_t m_nTold = 0;  // to the progress function, by any reading
    std::uint64_t m_nAtEvent = 0;
    std::uint64_t m_nDepth = 0;
    std::uint64_t m_nNamespaces = 0;
    unsigned int m_nEvents = 0;
    ERefusal m_Over = ERefusal::NONE;
};

}  // namespace norvask

#endif
