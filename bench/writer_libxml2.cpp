#include <libxml/xmlwriter.h>

#include <memory>
#include <stdexcept>

#include "peer_sinks.h"
#include "writers.h"

namespace norvask_bench {

namespace {

const xmlChar* Bytes(const char* text) { return reinterpret_cast<const xmlChar*>(text); }

const xmlChar* Bytes(const std::string& text) { return Bytes(text.c_str()); }

struct SFree {
    void operator()(xmlTextWriterPtr writer) const { xmlFreeTextWriter(writer); }
};

}  // namespace

void CLibxml2Writer::Write(CSink& sink) const {
    xmlOutputBufferPtr output = xmlOutputBufferCreateIO(WriteToSink, nullptr, &sink, nullptr);
    // The writer owns the output.
    const std::unique_ptr<xmlTextWriter, SFree> owner(xmlNewTextWriter(output));
    xmlTextWriterPtr writer = owner.get();
    if (writer == nullptr) throw std::runtime_error("libxml2, writer: it cannot be made");
    bool failed = xmlTextWriterSetIndent(writer, 1) < 0;
    failed |= xmlTextWriterSetIndentString(writer, Bytes("\t")) < 0;
    failed |= xmlTextWriterStartDocument(writer, nullptr, "UTF-8", nullptr) < 0;
    failed |= xmlTextWriterStartElement(writer, Bytes("records")) < 0;
    for (const SRecord& record : m_Records) {
        failed |= xmlTextWriterStartElement(writer, Bytes("record")) < 0;
        failed |= xmlTextWriterWriteAttribute(writer, Bytes("id"), Bytes(record.id)) < 0;
        failed |= xmlTextWriterWriteAttribute(writer, Bytes("kind"), Bytes(record.kind)) < 0;
        failed |= xmlTextWriterWriteElement(writer, Bytes("name"), Bytes(record.name)) < 0;
        failed |= xmlTextWriterWriteElement(writer, Bytes("price"), Bytes(record.price)) < 0;
        failed |= xmlTextWriterEndElement(writer) < 0;
    }
    failed |= xmlTextWriterEndElement(writer) < 0;
    failed |= xmlTextWriterEndDocument(writer) < 0;
    if (failed) throw std::runtime_error("libxml2, writer: the document cannot be written");
}

}  // namespace norvask_bench
