// Internal. CWriterStream: the stream of a streaming writer's document, and who deletes it.
#ifndef NORVASK_WRITE_WRITER_STREAM_H
#define NORVASK_WRITE_WRITER_STREAM_H

#include <sys/types.h>

#include <ostream>

namespace norvask {

class CWriterStream {
public:
    // No stream.
    CWriterStream() noexcept : m_pStream(nullptr), m_bOwned(false), m_nProcess(0) {}
    CWriterStream(const CWriterStream&) = delete;
    CWriterStream& operator=(const CWriterStream&) = delete;
    ~CWriterStream() { Drop(); }

    // A document begins on this stream. Another stream of before is dropped; the same one is owned
    // or not as said now. NULL is no stream.
    void Take(std::ostream* stream, bool owned) noexcept;
    // Deletes an owned stream. There is none afterwards.
    void Drop() noexcept;

    // Whether there is one, and whether there is one that can be written to.
    bool IsThere() const noexcept { return m_pStream != nullptr; }
    bool IsGood() const noexcept { return m_pStream != nullptr && m_pStream->good(); }
    // Not to be asked when there is none.
    std::ostream& Get() const noexcept { return *m_pStream; }

    // Closes a std::ofstream that is good, whoever owns it. Throws what the stream throws.
    void Close();

    // The document is not ended: closes and drops the stream. Deliberate: in a process that was
    // forked since the document began, the bytes that a std::ofstream has not written yet are its
    // parent's, which writes them itself. There an owned one is closed without them, and a stream
    // of the caller is left alone.
    void Abandon() noexcept;

private:
    std::ostream* m_pStream;
    bool m_bOwned;
    pid_t m_nProcess;  // the one in which the document began
};

}  // namespace norvask

#endif
