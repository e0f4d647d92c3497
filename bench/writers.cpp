#include "writers.h"

#include <stdexcept>

#include "measures.h"
#include "peers.h"
#include "trees.h"

namespace norvask_bench {

namespace {

constexpr const char* kFromStrings = "from strings";
constexpr const char* kFromObjects = "from objects";

bool IsRecord(const pugi::xml_node& node, const SRecord& record) {
    const pugi::xml_attribute id = node.first_attribute();
    const pugi::xml_attribute kind = id.next_attribute();
    const pugi::xml_node name = node.first_child();
    const pugi::xml_node price = name.next_sibling();
    return node.name() == std::string("record") && id.name() == std::string("id") &&
           id.value() == record.id && kind.name() == std::string("kind") &&
           kind.value() == record.kind && !kind.next_attribute() &&
           name.name() == std::string("name") && name.child_value() == record.name &&
           price.name() == std::string("price") && price.child_value() == record.price &&
           !price.next_sibling();
}

void CheckText(const std::string& text, const std::vector<SRecord>& records) {
    if (CountReportedElements(text) != CountElements(records)) {
        throw std::runtime_error("it is not the right number of elements");
    }
    pugi::xml_document document;
    if (!document.load_buffer(text.data(), text.size())) {
        throw std::runtime_error("it does not load");
    }
    pugi::xml_node node = document.document_element().first_child();
    for (const SRecord& record : records) {
        if (!IsRecord(node, record)) throw std::runtime_error("record " + record.id + " differs");
        node = node.next_sibling();
    }
    if (text.find("\n\t\t<name>") == std::string::npos &&
        text.find("\n        <name>") == std::string::npos) {
        throw std::runtime_error("it is not formatted");
    }
}

template <class Writer>
void Check(const char* name, const std::vector<SRecord>& records) {
    std::string text;
    CSink sink(&text);
    try {
        Writer(records).Write(sink);
        CheckText(text, records);
    } catch (const std::runtime_error& error) {
        throw std::runtime_error(std::string("writer, ") + name + ": " + error.what());
    }
}

template <class Writer>
void RunWriter(benchmark::State& state, const std::vector<SRecord>& records) {
    const Writer writer(records);
    std::size_t bytes = 0;
    for (auto _ : state) {
        CSink sink;
        writer.Write(sink);
        bytes = sink.Bytes();
    }
    SetBytes(state, bytes);
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) *
                            static_cast<std::int64_t>(CountElements(records)));
}

template <class Writer>
SWriter MakeWriter(const char* input, const char* name) {
    return {input, name, Check<Writer>, RunWriter<Writer>};
}

}  // namespace

const std::vector<SWriter>& Writers() {
    static const std::vector<SWriter> writers = {
        MakeWriter<CNorvaskWriter>(kFromStrings, kNorvask),
        MakeWriter<CLibxml2Writer>(kFromStrings, kLibxml2),
        MakeWriter<CTinyXml2Writer>(kFromStrings, kTinyXml2),
        MakeWriter<CPugixmlWriter>(kFromStrings, kPugixml),
        MakeWriter<CQtWriter>(kFromStrings, kQt),
        MakeWriter<CNorvaskReadyWriter>(kFromObjects, kNorvask),
        MakeWriter<CPugixmlReadyWriter>(kFromObjects, kPugixml),
    };
    return writers;
}

}  // namespace norvask_bench
