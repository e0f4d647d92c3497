// Internal. CTreeBuilder: makes a tree of a document.
//
// It knows nothing of whoever reads the document. That one reports in document order, and character
// data as one text between two boundaries: the start or the end of an element or of a CDATA
// section. Names come as texts, which are checked, or as uses of names of the tree, which are names
// already. Of a text that is not known to be UTF-8, as that of a client's converter, it is found
// out here.
//
//   element          child of the current element, or the root
//   declarations     attributes in the order of their names, in front of the element's own
//   attributes       set in the order in which they are reported
//   character data   one text child, unless it is layout
//   CDATA section    one binary child if its content is Base64, else one text child; nothing if it
//                    is empty
//   DTD              the document's reference, if it has a system identifier
//   anything else    is not reported
#ifndef NORVASK_LOAD_RECEIVER_TREE_BUILDER_H
#define NORVASK_LOAD_RECEIVER_TREE_BUILDER_H

#include <map>
#include <string>
#include <utility>

#include "norvask/document.h"
#include "tree/attribute_array.h"
#include "tree/node_access.h"

namespace norvask {

class CTreeBuilder {
public:
    CTreeBuilder() noexcept : m_pDocument(nullptr), m_pCurrent(nullptr) {}
    CTreeBuilder(const CTreeBuilder&) = delete;
    CTreeBuilder& operator=(const CTreeBuilder&) = delete;
    // Deletes the document that nobody took.
    ~CTreeBuilder();

    // The document, which from now on belongs to the caller; NULL when there is none.
    CXMLDocument* TakeDocument() noexcept;

    // Without memory for the document there is none; then nothing else may be reported.
    void StartDocument();
    bool HasDocument() const noexcept { return m_pDocument != nullptr; }
    void SetDTDRef(const SKnownText& name, const SKnownText& systemId);

    // A namespace declaration of the element that is started next.
    void Declare(const SKnownText& prefix, const SKnownText& uri);

    void StartElement(const SKnownText& name);
    void EndElement();

    // The rest is for an element that is open.
    bool IsInElement() const noexcept { return m_pCurrent != nullptr; }
    CTree& Tree() const noexcept { return TreeOf(CNodeAccess::BodyOf(m_pCurrent)); }
    void StartElement(CNameUse name);
    void SetAttribute(CNameUse name, const SKnownText& value) {
        norvask::SetAttribute(CNodeAccess::ElementOf(m_pCurrent), std::move(name), value);
    }
    void SetAttribute(const SKnownText& name, const SKnownText& value);
    // For attributes with names of their own: makes room for so many, and adds one, unless it is
    // empty.
    void ReserveAttributes(std::size_t count) {
        if (count > 1) {
            SElementBody* const body = CNodeAccess::ElementOf(m_pCurrent);
            norvask::ReserveAttributes(body, AttributeCount(body) + count);
        }
    }
    void AppendAttribute(CNameUse name, const SKnownText& value) {
        if (!value.IsEmpty()) {
            norvask::AppendAttribute(CNodeAccess::ElementOf(m_pCurrent), std::move(name), value);
        }
    }

    void CharacterData(const SKnownText& text);

    // The content of a CDATA section, as it stands in the document: adds a binary child and returns
    // true if it is Base64. If not, it is to be added as a text, in the form that callers see.
    bool AddBinary(const SKnownText& content);
    void AddText(const SKnownText& text);

private:
    void SetDeclarations();

    CXMLDocument* m_pDocument;
    CXMLNode* m_pCurrent;
    std::map<std::string, std::string> m_Declarations;  // "xmlns:prefix" and the URI
};

}  // namespace norvask

#endif
