// Output streams that misbehave in a known way, that count, and that tell when they end.
#ifndef NORVASK_TESTS_SUPPORT_STREAMS_H
#define NORVASK_TESTS_SUPPORT_STREAMS_H

#include <cstddef>
#include <fstream>
#include <ostream>
#include <sstream>
#include <stdexcept>
#include <streambuf>
#include <string>

namespace norvask_test {

// Takes the first `room` bytes and then either refuses all others or throws.
class CLimitedBuffer : public std::streambuf {
public:
    explicit CLimitedBuffer(std::size_t room, bool throws = false)
        : m_nRoom(room), m_bThrows(throws) {}

    const std::string& Bytes() const { return m_Bytes; }

protected:
    int_type overflow(int_type c) override {
        if (traits_type::eq_int_type(c, traits_type::eof())) return traits_type::not_eof(c);
        const char byte = traits_type::to_char_type(c);
        return xsputn(&byte, 1) == 1 ? c : traits_type::eof();
    }
    std::streamsize xsputn(const char* bytes, std::streamsize count) override {
        const std::size_t wanted = static_cast<std::size_t>(count);
        const std::size_t taken = wanted < m_nRoom ? wanted : m_nRoom;
        m_Bytes.append(bytes, taken);
        m_nRoom -= taken;
        if (taken < wanted && m_bThrows) throw std::runtime_error("the buffer is full");
        return static_cast<std::streamsize>(taken);
    }

private:
    std::size_t m_nRoom;
    bool m_bThrows;
    std::string m_Bytes;
};

// Counts bytes and keeps none.
class CCountingBuffer : public std::streambuf {
public:
    std::size_t Count() const { return m_nCount; }

protected:
    int_type overflow(int_type c) override {
        if (!traits_type::eq_int_type(c, traits_type::eof())) ++m_nCount;
        return traits_type::not_eof(c);
    }
    std::streamsize xsputn(const char*, std::streamsize count) override {
        m_nCount += static_cast<std::size_t>(count);
        return count;
    }

private:
    std::size_t m_nCount = 0;
};

// Streams for somebody else to delete. Each end is counted. What a string stream held is kept in
// `bytes`, when that is given.
class CMortalStream : public std::ostringstream {
public:
    explicit CMortalStream(int& ends, std::string* bytes = nullptr)
        : m_nEnds(ends), m_pBytes(bytes) {}
    ~CMortalStream() override {
        ++m_nEnds;
        if (m_pBytes) *m_pBytes = str();
    }

private:
    int& m_nEnds;
    std::string* m_pBytes;
};

class CMortalFile : public std::ofstream {
public:
    CMortalFile(int& ends, const char* name)
        : std::ofstream(name, std::ios::binary), m_nEnds(ends) {}
    ~CMortalFile() override { ++m_nEnds; }

private:
    int& m_nEnds;
};

// On a buffer of the test's.
class CMortalBuffered : public std::ostream {
public:
    CMortalBuffered(int& ends, std::streambuf* buffer) : std::ostream(buffer), m_nEnds(ends) {}
    ~CMortalBuffered() override { ++m_nEnds; }

private:
    int& m_nEnds;
};

}  // namespace norvask_test

#endif
