// Internal. CByteSource: where the bytes of a document come from.
#ifndef NORVASK_LOAD_SOURCE_BYTE_SOURCE_H
#define NORVASK_LOAD_SOURCE_BYTE_SOURCE_H

#include <cstddef>
#include <cstring>

namespace norvask {

class CByteSource {
public:
    CByteSource() = default;
    CByteSource(const CByteSource&) = delete;
    CByteSource& operator=(const CByteSource&) = delete;
    virtual ~CByteSource() = default;

    // The number of bytes, as far as it is known.
    virtual std::size_t Size() const noexcept = 0;
    // Reads up to `room` bytes, at least one; fewer than `room` only at the end of the document or
    // where reading fails.
    virtual std::size_t Read(char* to, std::size_t room) = 0;
    // Whether all reading went well so far.
    virtual bool IsGood() const noexcept = 0;
    // All the bytes, which stay what they are; NULL for a source that has to be read.
    virtual const char* Bytes() const noexcept = 0;
    // Begins again at the first byte. Returns whether that went well.
    virtual bool Rewind() noexcept = 0;
};

// A block of the caller's, which outlives this.
class CMemoryBytes final : public CByteSource {
public:
    CMemoryBytes(const unsigned char* bytes, std::size_t length) noexcept
        : m_pBytes(bytes), m_nLength(length), m_nRead(0) {}

    std::size_t Size() const noexcept override { return m_nLength; }
    std::size_t Read(char* to, std::size_t room) override {
        const std::size_t left = m_nLength - m_nRead;
        const std::size_t count = left < room ? left : room;
        std::memcpy(to, m_pBytes + m_nRead, count);
        m_nRead += count;
        return count;
    }
    bool IsGood() const noexcept override { return true; }
    const char* Bytes() const noexcept override { return reinterpret_cast<const char*>(m_pBytes); }
    bool Rewind() noexcept override {
        m_nRead = 0;
        return true;
    }

private:
    const unsigned char* const m_pBytes;
    const std::size_t m_nLength;
    std::size_t m_nRead;
};

}  // namespace norvask

#endif
