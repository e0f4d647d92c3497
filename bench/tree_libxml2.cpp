#include <libxml/parser.h>
#include <libxml/xmlsave.h>

#include <stdexcept>
#include <vector>

#include "peer_sinks.h"
#include "trees.h"

namespace norvask_bench {

namespace {

void PushChildren(const xmlNode* node, std::vector<const xmlNode*>& open) {
    for (const xmlNode* child = node->children; child != nullptr; child = child->next) {
        if (child->type == XML_ELEMENT_NODE) open.push_back(child);
    }
}

}  // namespace

// NOBLANKS drops layout, as Norvask, TinyXML-2 and pugixml do; HUGE lifts the limits on sizes;
// COMPACT holds short texts inside their nodes.
CLibxml2Tree::CLibxml2Tree(const std::string& text)
    : m_pDocument(xmlReadMemory(
          text.data(), static_cast<int>(text.size()), "Memfile", nullptr,
          XML_PARSE_NONET | XML_PARSE_NOBLANKS | XML_PARSE_HUGE | XML_PARSE_COMPACT)) {
    if (m_pDocument == nullptr) throw std::runtime_error("libxml2: the document is refused");
}

CLibxml2Tree::CLibxml2Tree(const CLibxml2Tree& source)
    : m_pDocument(xmlCopyDoc(source.m_pDocument, 1)) {
    if (m_pDocument == nullptr) throw std::runtime_error("libxml2: the document cannot be copied");
}

void CLibxml2Tree::Save(CSink& sink, bool format) const {
    xmlSaveCtxtPtr context =
        xmlSaveToIO(WriteToSink, nullptr, &sink, "UTF-8", format ? XML_SAVE_FORMAT : 0);
    const bool saved = context != nullptr && xmlSaveDoc(context, m_pDocument) != -1;
    if (xmlSaveClose(context) == -1 || !saved) {
        throw std::runtime_error("libxml2: the document cannot be saved");
    }
}

std::size_t CLibxml2Tree::CountElements() const {
    return CountFrom<const xmlNode*>(xmlDocGetRootElement(m_pDocument), PushChildren);
}

}  // namespace norvask_bench
