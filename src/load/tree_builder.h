// Internal. CTreeBuilder: turns the parser's events into a tree.
//
//   element          child of the current element, or the root
//   attributes       set in the parser's order, behind the kept namespace declarations
//   character data   one text child for all of it between two tags or CDATA boundaries, unless it is layout
//   CDATA section    one binary child when it is Base64, else one text child; nothing when it is empty
//   DTD              the document's reference, when it has a system identifier
//   anything else    leaves no trace
#ifndef NORVASK_LOAD_TREE_BUILDER_H
#define NORVASK_LOAD_TREE_BUILDER_H

#include <map>
#include <string>

#include "load/name_cache.h"
#include "load/narrow_text.h"
#include "load/sax_handler_adapter.h"
#include "norvask/document.h"

namespace norvask {

class CTreeBuilder final : public CMySAXHandler {
public:
    // With `ownConverter` strings need not go through the manager's converter: it is the library's own.
    CTreeBuilder(bool keepPrefixes, bool ownConverter);
    // Deletes the document that nobody took.
    ~CTreeBuilder() override;

    // The document, which from now on belongs to the caller; NULL when there is none.
    CXMLDocument* TakeDocument() noexcept;

    void startDocument() override;
    void endDocument() override;
    void startElement(const XMLCh* uri, const XMLCh* localname, const XMLCh* qname,
                      const xercesc::Attributes& attributes) override;
    void endElement(const XMLCh* uri, const XMLCh* localname, const XMLCh* qname) override;
    void characters(const XMLCh* text, XMLSize_t length) override;
    void startPrefixMapping(const XMLCh* prefix, const XMLCh* uri) override;
    void startCDATA() override;
    void endCDATA() override;
    void startDTD(const XMLCh* name, const XMLCh* publicId, const XMLCh* systemId) override;

private:
    void GiveText(const XMLCh* text, XMLSize_t length, bool inCDATA) override;
    void AddElement(const XMLCh* name);
    void SetAttribute(const XMLCh* name, const XMLCh* value);
    void SetDeclarations();
    bool AddBinary(const XMLCh* base64, std::size_t length);
    void AddText(const XMLCh* text, std::size_t length, bool keepLayout);

    CXMLDocument* m_pDocument;
    CXMLNode* m_pCurrent;
    const bool m_bKeepPrefixes;
    // "xmlns:prefix" and the URI, of the element that starts next.
    std::map<std::string, std::string> m_Declarations;

    const bool m_bOwnConverter;
    CNameCache m_Names;
    CNarrowText m_Narrow;
};

}  // namespace norvask

#endif
