// Counts the bytes that go to a stream, also to one that cannot tell its position, such as a pipe.
#ifndef NORVASK_EXAMPLES_COUNTING_BUFFER_H
#define NORVASK_EXAMPLES_COUNTING_BUFFER_H

#include <cstdint>
#include <streambuf>

// Keeps nothing itself: all of it goes on to the other buffer at once.
class CCountingBuffer : public std::streambuf {
public:
    explicit CCountingBuffer(std::streambuf& target) : m_Target(target) {}

    std::uint64_t Bytes() const { return m_Bytes; }

protected:
    int_type overflow(int_type c) override {
        if (traits_type::eq_int_type(c, traits_type::eof())) return traits_type::not_eof(c);
        const int_type put = m_Target.sputc(traits_type::to_char_type(c));
        if (!traits_type::eq_int_type(put, traits_type::eof())) ++m_Bytes;
        return put;
    }

    std::streamsize xsputn(const char* bytes, std::streamsize count) override {
        const std::streamsize put = m_Target.sputn(bytes, count);
        m_Bytes += static_cast<std::uint64_t>(put);
        return put;
    }

    int sync() override { return m_Target.pubsync(); }

private:
    std::streambuf& m_Target;
    std::uint64_t m_Bytes = 0;
};

#endif
