#include <stdexcept>
#include <vector>

#include "peer_sinks.h"
#include "trees.h"

namespace norvask_bench {

namespace {

void PushChildren(const pugi::xml_node& node, std::vector<pugi::xml_node>& open) {
    for (const pugi::xml_node& child : node.children()) {
        if (child.type() == pugi::node_element) open.push_back(child);
    }
}

}  // namespace

// load_buffer copies the text, since the other libraries leave it alone too.
CPugixmlTree::CPugixmlTree(const std::string& text) {
    const pugi::xml_parse_result result = m_Document.load_buffer(text.data(), text.size());
    if (!result) throw std::runtime_error(std::string("pugixml: ") + result.description());
}

CPugixmlTree::CPugixmlTree(const CPugixmlTree& source) { m_Document.reset(source.m_Document); }

void CPugixmlTree::Save(CSink& sink, bool format) const {
    CPugixmlSink writer(sink);
    m_Document.save(writer, "\t", format ? pugi::format_default : pugi::format_raw,
                    pugi::encoding_utf8);
}

std::size_t CPugixmlTree::CountElements() const {
    return CountFrom(m_Document.document_element(), PushChildren);
}

}  // namespace norvask_bench
