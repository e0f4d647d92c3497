#include <stdexcept>
#include <vector>

#include "norvask/norvask.h"
#include "trees.h"

namespace norvask_bench {

namespace {

void PushChildren(norvask::CXMLNode* node, std::vector<norvask::CXMLNode*>& open) {
    for (norvask::CXMLNode** child = node->GetChildren(); *child != nullptr; ++child) {
        if ((*child)->GetNodeType() == norvask::CXMLNode::NODE_ELEMENT) open.push_back(*child);
    }
}

}  // namespace

CNorvaskTree::CNorvaskTree(const std::string& text) {
    // The library only reads the buffer; its parameter is not const.
    unsigned char* bytes = reinterpret_cast<unsigned char*>(const_cast<char*>(text.data()));
    try {
        m_pDocument = norvask::CXMLManager::GetInstance().LoadDocument(
            bytes, static_cast<unsigned int>(text.size()), false, false, nullptr, false, true);
    } catch (norvask::CXMLException& error) {
        throw std::runtime_error(std::string("Norvask: ") + error.GetMessage());
    }
    if (m_pDocument == nullptr) throw std::runtime_error("Norvask: no document");
}

CNorvaskTree::CNorvaskTree(const CNorvaskTree& source) : m_pDocument(source.m_pDocument->Clone()) {}

void CNorvaskTree::Save(CSink& sink, bool format) const {
    CSinkBuffer buffer(sink);
    std::ostream stream(&buffer);
    m_pDocument->Save(stream, format);
}

std::size_t CNorvaskTree::CountElements() const {
    norvask::CXMLNode* root = m_pDocument->GetRoot();
    return root == nullptr ? 0 : CountFrom(root, PushChildren);
}

}  // namespace norvask_bench
