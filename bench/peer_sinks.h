// The sink of sink.h in the shape that each of the other libraries writes to.
#ifndef NORVASK_BENCH_PEER_SINKS_H
#define NORVASK_BENCH_PEER_SINKS_H

#include <tinyxml2.h>

#include <cstddef>
#include <pugixml.hpp>

#include "sink.h"

namespace norvask_bench {

class CPugixmlSink : public pugi::xml_writer {
public:
    explicit CPugixmlSink(CSink& sink) : m_Sink(sink) {}

    void write(const void* data, std::size_t length) override { m_Sink.Write(data, length); }

private:
    CSink& m_Sink;
};

// Hands on what the printer would gather in memory.
class CTinyXml2Sink : public tinyxml2::XMLPrinter {
public:
    CTinyXml2Sink(CSink& sink, bool format) : XMLPrinter(nullptr, !format), m_Sink(sink) {}

protected:
    void Write(const char* data, std::size_t length) override { m_Sink.Write(data, length); }
    void Putc(char byte) override { m_Sink.Write(&byte, 1); }

private:
    CSink& m_Sink;
};

// A write callback of libxml2.
inline int WriteToSink(void* sink, const char* data, int length) {
    static_cast<CSink*>(sink)->Write(data, static_cast<std::size_t>(length));
    return length;
}

}  // namespace norvask_bench

#endif
