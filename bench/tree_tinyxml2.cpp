#include <stdexcept>
#include <vector>

#include "peer_sinks.h"
#include "trees.h"

namespace norvask_bench {

namespace {

void PushChildren(const tinyxml2::XMLElement* element,
                  std::vector<const tinyxml2::XMLElement*>& open) {
    for (const tinyxml2::XMLElement* child = element->FirstChildElement(); child != nullptr;
         child = child->NextSiblingElement()) {
        open.push_back(child);
    }
}

}  // namespace

CTinyXml2Tree::CTinyXml2Tree(const std::string& text) {
    if (m_Document.Parse(text.data(), text.size()) != tinyxml2::XML_SUCCESS) {
        throw std::runtime_error(std::string("TinyXML-2: ") + m_Document.ErrorStr());
    }
}

CTinyXml2Tree::CTinyXml2Tree(const CTinyXml2Tree& source) {
    source.m_Document.DeepCopy(&m_Document);
}

void CTinyXml2Tree::Save(CSink& sink, bool format) const {
    CTinyXml2Sink printer(sink, format);
    m_Document.Print(&printer);
}

std::size_t CTinyXml2Tree::CountElements() const {
    const tinyxml2::XMLElement* root = m_Document.RootElement();
    return root == nullptr ? 0 : CountFrom(root, PushChildren);
}

}  // namespace norvask_bench
