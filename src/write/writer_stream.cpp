// CWriterStream: what is special about a stream that writes to a file.
#include "write/writer_stream.h"

#include <unistd.h>

#include <fstream>

namespace norvask {
namespace {

// The way to the part of a file's buffer that is not written yet.
class CFileBuffer : public std::filebuf {
public:
    static void Empty(std::filebuf* buffer) noexcept {
        (buffer->*&CFileBuffer::setp)(nullptr, nullptr);
    }
};

}  // namespace

void CWriterStream::Take(std::ostream* stream, bool owned) noexcept {
    if (m_pStream != stream) {
        Drop();
    }
    m_pStream = stream;
    m_bOwned = owned;
    m_nProcess = getpid();
}

void CWriterStream::Drop() noexcept {
    if (m_bOwned) {
        delete m_pStream;
    }
    m_pStream = nullptr;
    m_bOwned = false;
}

void CWriterStream::Close() {
    std::ofstream* const file = dynamic_cast<std::ofstream*>(m_pStream);
    if (file != nullptr && file->good()) {
        file->close();
    }
}

void CWriterStream::Abandon() noexcept {
    if (m_nProcess == getpid()) {
        try {
            Close();
        } catch (...) {  // a stream with exceptions; the document is lost anyway
        }
    } else if (std::ofstream* const file = dynamic_cast<std::ofstream*>(m_pStream)) {
        if (m_bOwned) {
            CFileBuffer::Empty(file->rdbuf());
        }
    }
    Drop();
}

}  // namespace norvask
