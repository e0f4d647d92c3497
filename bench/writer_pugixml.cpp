#include "peer_sinks.h"
#include "writers.h"

namespace norvask_bench {

namespace {

void Build(const std::vector<SRecord>& records, pugi::xml_document& document) {
    pugi::xml_node root = document.append_child("records");
    for (const SRecord& record : records) {
        pugi::xml_node node = root.append_child("record");
        node.append_attribute("id").set_value(record.id.c_str());
        node.append_attribute("kind").set_value(record.kind.c_str());
        node.append_child("name").append_child(pugi::node_pcdata).set_value(record.name.c_str());
        node.append_child("price").append_child(pugi::node_pcdata).set_value(record.price.c_str());
    }
}

void Save(const pugi::xml_document& document, CSink& sink) {
    CPugixmlSink writer(sink);
    document.save(writer, "\t", pugi::format_default, pugi::encoding_utf8);
}

}  // namespace

void CPugixmlWriter::Write(CSink& sink) const {
    pugi::xml_document document;
    Build(m_Records, document);
    Save(document, sink);
}

CPugixmlReadyWriter::CPugixmlReadyWriter(const std::vector<SRecord>& records) {
    Build(records, m_Document);
}

void CPugixmlReadyWriter::Write(CSink& sink) const { Save(m_Document, sink); }

}  // namespace norvask_bench
