// Internal. CWatchedBytes: the bytes of a document, with a watch on how many are read.
//
// A document may be looked through before it is told. Of that only the time counts.
#ifndef NORVASK_LOAD_WATCH_WATCHED_BYTES_H
#define NORVASK_LOAD_WATCH_WATCHED_BYTES_H

#include "load/source/byte_source.h"
#include "load/watch/watch.h"

namespace norvask {

class CWatchedBytes final : public CByteSource {
public:
    CWatchedBytes(CByteSource& bytes, CWatch& watch) noexcept : m_Bytes(bytes), m_Watch(watch) {}

    // From now on the document is told. Returns whether that may be done.
    bool BeginTelling() {
        m_bIsTold = true;
        m_bMayGoOn = m_bMayGoOn && m_Watch.Begin(m_Bytes.Size()) == ERefusal::NONE &&
                     (m_nUntold == 0 || m_Watch.Read(m_nUntold) == ERefusal::NONE);
        return m_bMayGoOn;
    }

    std::size_t Size() const noexcept override { return m_Bytes.Size(); }
    // Nothing, if the watch says so.
    std::size_t Read(char* to, std::size_t room) override {
        if (!m_bMayGoOn) {
            return 0;
        }
        const std::size_t count = m_Bytes.Read(to, room);
        if (m_bIsTold) {
            m_bMayGoOn = m_Watch.Read(count) == ERefusal::NONE;
        } else {
            m_nUntold += count;
            m_bMayGoOn = m_Watch.IsInTime();
        }
        return m_bMayGoOn ? count : 0;
    }
    bool IsGood() const noexcept override { return m_bMayGoOn && m_Bytes.IsGood(); }
    const char* Bytes() const noexcept override { return m_Bytes.Bytes(); }
    bool Rewind() noexcept override {
        m_nUntold = 0;
        return m_Bytes.Rewind();
    }

private:
    CByteSource& m_Bytes;
    CWatch& m_Watch;
    bool m_bIsTold = false;
    bool m_bMayGoOn = true;
    std::size_t m_nUntold = 0;  // since the first byte
};

}  // namespace norvask

#endif
