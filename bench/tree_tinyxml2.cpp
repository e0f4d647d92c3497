#include <stdexcept>

#include "trees.h"

namespace norvask_bench {

namespace {

// Hands on what the printer would gather in memory.
class CSinkPrinter : public tinyxml2::XMLPrinter {
public:
    CSinkPrinter(CSink& sink, bool format) : XMLPrinter(nullptr, !format), m_Sink(sink) {}

protected:
    void Write(const char* data, std::size_t length) override { m_Sink.Write(data, length); }
    void Putc(char byte) override { m_Sink.Write(&byte, 1); }

private:
    CSink& m_Sink;
};

std::size_t CountBelow(const tinyxml2::XMLElement& element) {
    std::size_t count = 1;
    for (const tinyxml2::XMLElement* child = element.FirstChildElement(); child != nullptr;
         child = child->NextSiblingElement()) {
        count += CountBelow(*child);
    }
    return count;
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
    CSinkPrinter printer(sink, format);
    m_Document.Print(&printer);
}

std::size_t CTinyXml2Tree::CountElements() const {
    const tinyxml2::XMLElement* root = m_Document.RootElement();
    return root == nullptr ? 0 : CountBelow(*root);
}

}  // namespace norvask_bench
