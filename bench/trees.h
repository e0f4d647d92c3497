// One class for each library that is measured. All have the same shape, so that one template
// (measures.h) measures them all:
//   constructor        loads the document; throws std::runtime_error if the library refuses it
//   copy constructor   the library's own copy of a whole document
//   destructor         deletes the tree, and whatever a load needs besides
//   Save               writes the document, UTF-8, with or without line breaks and indentation
//   CountElements      walks the tree
// CParserAlone, which builds no tree, has only the first and the third.
#ifndef NORVASK_BENCH_TREES_H
#define NORVASK_BENCH_TREES_H

#include <libxml/tree.h>
#include <tinyxml2.h>

#include <cstddef>
#include <pugixml.hpp>
#include <string>
#include <vector>
#include <xercesc/dom/DOM.hpp>

#include "norvask/document.h"
#include "sink.h"

namespace norvask_bench {

// The elements of a tree of any depth, from its root on; `pushChildren` adds those below one.
template <class Element, class PushChildren>
std::size_t CountFrom(Element root, PushChildren pushChildren) {
    std::size_t count = 0;
    std::vector<Element> open = {root};
    while (!open.empty()) {
        const Element element = open.back();
        open.pop_back();
        ++count;
        pushChildren(element, open);
    }
    return count;
}

// Deep copies stand for the measure "clone"; nothing is ever assigned.
#define NORVASK_BENCH_NO_ASSIGNMENT(name) name& operator=(const name&) = delete

class CNorvaskTree {
public:
    explicit CNorvaskTree(const std::string& text);
    CNorvaskTree(const CNorvaskTree& source);
    NORVASK_BENCH_NO_ASSIGNMENT(CNorvaskTree);
    ~CNorvaskTree() { m_pDocument->Delete(); }

    void Save(CSink& sink, bool format) const;
    std::size_t CountElements() const;
    norvask::CXMLDocument& Document() const { return *m_pDocument; }

private:
    norvask::CXMLDocument* m_pDocument;
};

// The parser with a handler that does nothing, and a new reader for every document, as Norvask
// makes one: what a load costs before the first node is made.
class CParserAlone {
public:
    explicit CParserAlone(const std::string& text);
};

// The number of elements that the parser reports: what every tree must hold.
std::size_t CountReportedElements(const std::string& text);

class CXercesTree {
public:
    explicit CXercesTree(const std::string& text);
    CXercesTree(const CXercesTree& source);
    NORVASK_BENCH_NO_ASSIGNMENT(CXercesTree);
    ~CXercesTree() { m_pDocument->release(); }

    void Save(CSink& sink, bool format) const;
    std::size_t CountElements() const;

private:
    xercesc::DOMDocument* m_pDocument;
};

class CLibxml2Tree {
public:
    explicit CLibxml2Tree(const std::string& text);
    CLibxml2Tree(const CLibxml2Tree& source);
    NORVASK_BENCH_NO_ASSIGNMENT(CLibxml2Tree);
    ~CLibxml2Tree() { xmlFreeDoc(m_pDocument); }

    void Save(CSink& sink, bool format) const;
    std::size_t CountElements() const;

private:
    xmlDocPtr m_pDocument;
};

class CTinyXml2Tree {
public:
    explicit CTinyXml2Tree(const std::string& text);
    CTinyXml2Tree(const CTinyXml2Tree& source);
    NORVASK_BENCH_NO_ASSIGNMENT(CTinyXml2Tree);
    ~CTinyXml2Tree() = default;

    void Save(CSink& sink, bool format) const;
    std::size_t CountElements() const;

private:
    tinyxml2::XMLDocument m_Document;
};

class CPugixmlTree {
public:
    explicit CPugixmlTree(const std::string& text);
    CPugixmlTree(const CPugixmlTree& source);
    NORVASK_BENCH_NO_ASSIGNMENT(CPugixmlTree);
    ~CPugixmlTree() = default;

    void Save(CSink& sink, bool format) const;
    std::size_t CountElements() const;

private:
    pugi::xml_document m_Document;
};

#undef NORVASK_BENCH_NO_ASSIGNMENT

}  // namespace norvask_bench

#endif
