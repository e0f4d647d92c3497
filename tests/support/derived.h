// Classes derived from the tree classes, with what those protect made public.
#ifndef NORVASK_TESTS_SUPPORT_DERIVED_H
#define NORVASK_TESTS_SUPPORT_DERIVED_H

#include <norvask/norvask.h>

#include <cstddef>
#include <sstream>
#include <string>
#include <vector>

namespace norvask_test {

class CElementProbe : public norvask::CXMLNode {
public:
    explicit CElementProbe(const char* name, CXMLNode* parent = nullptr) : CXMLNode(name, parent) {}
    explicit CElementProbe(const CXMLNode& other) : CXMLNode(other) {}

    using CXMLNode::AddToQueryResult;
    using CXMLNode::IncQueryResult;
    using CXMLNode::Save;
};

class CTextProbe : public norvask::CXMLTextNode {
public:
    explicit CTextProbe(const char* text, CXMLNode* parent = nullptr)
        : CXMLTextNode(text, parent) {}
    explicit CTextProbe(const CXMLTextNode& other) : CXMLTextNode(other) {}

    using CXMLNode::AddToQueryResult;
    using CXMLTextNode::Save;
};

class CBinaryProbe : public norvask::CXMLBinNode {
public:
    explicit CBinaryProbe(CXMLNode* parent = nullptr) : CXMLBinNode(parent) {}
    explicit CBinaryProbe(const CXMLBinNode& other) : CXMLBinNode(other) {}

    using CXMLBinNode::Save;
};

class CDocumentProbe : public norvask::CXMLDocument {
public:
    explicit CDocumentProbe(const char* dtdName = nullptr, const char* dtdPath = nullptr)
        : CXMLDocument(dtdName, dtdPath) {}
    explicit CDocumentProbe(const CXMLDocument& other) : CXMLDocument(other) {}
};

// What the protected Save of a probe writes.
template <typename Probe>
std::string SavedNode(Probe& probe, bool format = false, std::string indent = "") {
    std::ostringstream out;
    probe.Save(out, format, &indent[0]);
    return out.str();
}

// Calls of virtual operations, one a line.
using Log = std::vector<std::string>;

inline std::string Joined(const Log& log) {
    std::string lines;
    for (const std::string& line : log)
        lines += line + '\n';
    return lines;
}

// Puts a node of a derived class in the place of a child, which comes back at the end of the scope.
class CSubstitute {
public:
    CSubstitute(norvask::CXMLNode& parent, std::size_t place, norvask::CXMLNode& node)
        : m_Parent(parent), m_nPlace(place), m_pChild(parent.GetChildren()[place]) {
        m_Parent.GetChildren()[m_nPlace] = &node;
    }
    CSubstitute(const CSubstitute&) = delete;
    CSubstitute& operator=(const CSubstitute&) = delete;
    ~CSubstitute() { m_Parent.GetChildren()[m_nPlace] = m_pChild; }

private:
    norvask::CXMLNode& m_Parent;
    std::size_t m_nPlace;
    norvask::CXMLNode* m_pChild;
};

}  // namespace norvask_test

#endif
