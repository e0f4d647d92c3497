#include <stdexcept>

#include "norvask/norvask.h"
#include "writers.h"

namespace norvask_bench {

namespace {

using norvask::CXMLAttribut;
using norvask::CXMLSaxWriter;

// `attributes` answers those of the i-th record.
template <class Attributes>
void WriteRecords(const std::vector<SRecord>& records, CSink& sink, Attributes attributes) {
    CSinkBuffer buffer(sink);
    std::ostream stream(&buffer);
    try {
        CXMLSaxWriter writer;
        writer.StartDocument(&stream, true, false);
        writer.StartElement("records", nullptr);
        for (std::size_t i = 0; i < records.size(); ++i) {
            writer.StartElement("record", attributes(i));
            writer.StartElement("name", nullptr);
            writer.Characters(records[i].name.c_str());
            writer.EndElement();
            writer.StartElement("price", nullptr);
            writer.Characters(records[i].price.c_str());
            writer.EndElement();
            writer.EndElement();
        }
        writer.EndElement();
        writer.EndDocument();
    } catch (norvask::CXMLException& error) {
        throw std::runtime_error(std::string("Norvask, writer: ") + error.GetMessage());
    }
}

}  // namespace

void CNorvaskWriter::Write(CSink& sink) const {
    CXMLAttribut id("id", "");
    CXMLAttribut kind("kind", "");
    CXMLAttribut* attributes[] = {&id, &kind, nullptr};
    WriteRecords(m_Records, sink, [&](std::size_t i) {
        id.SetValue(m_Records[i].id.c_str());
        kind.SetValue(m_Records[i].kind.c_str());
        return attributes;
    });
}

CNorvaskReadyWriter::CNorvaskReadyWriter(const std::vector<SRecord>& records) : m_Records(records) {
    m_Attributes.reserve(records.size());
    for (const SRecord& record : records) {
        m_Attributes.push_back(
            {CXMLAttribut("id", record.id.c_str()), CXMLAttribut("kind", record.kind.c_str())});
    }
}

void CNorvaskReadyWriter::Write(CSink& sink) const {
    CXMLAttribut* attributes[] = {nullptr, nullptr, nullptr};
    WriteRecords(m_Records, sink, [&](std::size_t i) {
        // The writer only reads them; its parameter is not const.
        SAttributes& ready = const_cast<SAttributes&>(m_Attributes[i]);
        attributes[0] = &ready.id;
        attributes[1] = &ready.kind;
        return attributes;
    });
}

}  // namespace norvask_bench
