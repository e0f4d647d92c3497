// Output streams that misbehave in a known way.
#ifndef NORVASK_TESTS_SUPPORT_STREAMS_H
#define NORVASK_TESTS_SUPPORT_STREAMS_H

#include <cstddef>
#include <ostream>
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

}  // namespace norvask_test

#endif
