// Where the benchmarks save to: everything is counted and nothing is kept, unless a check asks for
// the text.
#ifndef NORVASK_BENCH_SINK_H
#define NORVASK_BENCH_SINK_H

#include <cstddef>
#include <ostream>
#include <streambuf>
#include <string>

namespace norvask_bench {

class CSink {
public:
    // `text` receives what is written; NULL discards it.
    explicit CSink(std::string* text = nullptr) : m_pText(text) {}

    void Write(const void* data, std::size_t length) {
        m_nBytes += length;
        if (m_pText != nullptr) m_pText->append(static_cast<const char*>(data), length);
    }

    std::size_t Bytes() const { return m_nBytes; }

private:
    std::string* m_pText;
    std::size_t m_nBytes = 0;
};

// A stream buffer without a buffer: each piece goes straight to the sink, so the stream costs as
// little as a stream can.
class CSinkBuffer : public std::streambuf {
public:
    explicit CSinkBuffer(CSink& sink) : m_Sink(sink) {}

protected:
    std::streamsize xsputn(const char* data, std::streamsize length) override {
        m_Sink.Write(data, static_cast<std::size_t>(length));
        return length;
    }

    int_type overflow(int_type character) override {
        if (!traits_type::eq_int_type(character, traits_type::eof())) {
            const char byte = traits_type::to_char_type(character);
            m_Sink.Write(&byte, 1);
        }
        return traits_type::not_eof(character);
    }

private:
    CSink& m_Sink;
};

}  // namespace norvask_bench

#endif
