#include "load/tree_builder.h"

#include <cstring>
#include <new>
#include <xercesc/sax2/Attributes.hpp>
#include <xercesc/util/Base64.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include "foundation/string_converter.h"
#include "load/dom_string.h"
#include "tree/attribute_array.h"
#include "tree/document_body.h"
#include "tree/tree_building.h"

namespace norvask {
namespace {

const char DECLARATION_PREFIX[] = "xmlns:";

bool IsAscii(const char16_t* text, std::size_t length) noexcept {
    char16_t bits = 0;
    for (std::size_t i = 0; i < length; ++i) {
        bits = static_cast<char16_t>(bits | text[i]);
    }
    return bits < 0x80;
}

// What the parser decoded, released at the end of the scope.
class CDecoded {
public:
    explicit CDecoded(const XMLCh* base64)
        : m_nLength(0), m_pData(xercesc::Base64::decodeToXMLByte(base64, &m_nLength)) {}
    CDecoded(const CDecoded&) = delete;
    CDecoded& operator=(const CDecoded&) = delete;
    ~CDecoded() { ::operator delete(m_pData); }

    const unsigned char* Data() const noexcept { return m_pData; }
    std::size_t Length() const noexcept { return m_pData == nullptr ? 0 : m_nLength; }

private:
    XMLSize_t m_nLength;
    XMLByte* m_pData;
};

}  // namespace

CTreeBuilder::CTreeBuilder(bool keepPrefixes, bool ownConverter)
    : m_pDocument(nullptr),
      m_pCurrent(nullptr),
      m_bKeepPrefixes(keepPrefixes),
      m_bOwnConverter(ownConverter) {}

CTreeBuilder::~CTreeBuilder() {
    m_Names.Clear();
    if (m_pDocument != nullptr) {
        m_pDocument->Delete();
    }
}

CXMLDocument* CTreeBuilder::TakeDocument() noexcept {
    CXMLDocument* document = m_pDocument;
    m_Names.Clear();
    m_pDocument = nullptr;
    m_pCurrent = nullptr;
    return document;
}

void CTreeBuilder::startDocument() {
    if (m_pDocument != nullptr) {
        m_pDocument->Delete();
        m_pDocument = nullptr;
    }
    m_pCurrent = nullptr;
    // Without memory for the document its content is ignored, and the load answers NULL like CreateDocument.
    try {
        m_pDocument = CDocumentAccess::New(nullptr, nullptr);
    } catch (const std::bad_alloc&) {
    }
}

// No flush: what stands behind the root belongs to no element.
void CTreeBuilder::endDocument() {}

void CTreeBuilder::startElement(const XMLCh*, const XMLCh* localname, const XMLCh* qname,
                                const xercesc::Attributes& attributes) {
    if (m_pDocument == nullptr) {
        return;
    }
    FlushText();
    AddElement(m_bKeepPrefixes ? qname : localname);
    if (!m_Declarations.empty()) {
        SetDeclarations();
    }
    const XMLSize_t count = attributes.getLength();
    for (XMLSize_t i = 0; i < count; ++i) {
        SetAttribute(m_bKeepPrefixes ? attributes.getQName(i) : attributes.getLocalName(i),
                     attributes.getValue(i));
    }
}

void CTreeBuilder::endElement(const XMLCh*, const XMLCh*, const XMLCh*) {
    if (m_pCurrent != nullptr) {
        FlushText();
        m_pCurrent = m_pCurrent->GetParentNode();
    }
}

void CTreeBuilder::characters(const XMLCh* text, XMLSize_t length) {
    if (m_pCurrent != nullptr) {
        Gather(text, length);
    }
}

void CTreeBuilder::startPrefixMapping(const XMLCh* prefix, const XMLCh* uri) {
    if (!m_bKeepPrefixes || prefix == nullptr || uri == nullptr) {
        return;
    }
    CDOMString narrowPrefix(prefix);
    CDOMString narrowUri(uri);
    std::string name(DECLARATION_PREFIX);
    if (narrowPrefix.GetString() != nullptr) {
        name += narrowPrefix.GetString();
    }
    m_Declarations[name] = narrowUri.GetString() == nullptr ? "" : narrowUri.GetString();
}

void CTreeBuilder::startCDATA() {
    FlushText();
    m_bInCDATA = true;
}

void CTreeBuilder::endCDATA() {
    FlushText();
    m_bInCDATA = false;
}

void CTreeBuilder::startDTD(const XMLCh* name, const XMLCh*, const XMLCh* systemId) {
    if (m_pDocument != nullptr) {
        CDOMString narrowName(name);
        CDOMString narrowSystemId(systemId);
        m_pDocument->SetDTDRef(narrowName.GetString(), narrowSystemId.GetString());
    }
}

void CTreeBuilder::GiveText(const XMLCh* text, XMLSize_t length, bool inCDATA) {
    if (!inCDATA || !AddBinary(text, length)) {
        AddText(text, length, inCDATA);
    }
}

void CTreeBuilder::AddElement(const XMLCh* name) {
    if (m_bOwnConverter && m_pCurrent != nullptr) {
        CTree& tree = TreeOf(CNodeAccess::BodyOf(m_pCurrent));
        m_pCurrent = norvask::AddElement(m_pCurrent, m_Names.Use(tree, name), nullptr);
        return;
    }
    CDOMString narrow(name);
    m_pCurrent = m_pCurrent == nullptr ? m_pDocument->CreateRoot(narrow.GetString())
                                       : m_pCurrent->CreateChild(narrow.GetString(), nullptr);
}

void CTreeBuilder::SetAttribute(const XMLCh* name, const XMLCh* value) {
    if (!m_bOwnConverter) {
        CDOMString narrowName(name);
        CDOMString narrowValue(value);
        m_pCurrent->SetAttribute(narrowName.GetString(), narrowValue.GetString());
        return;
    }
    SElementBody* body = CNodeAccess::ElementOf(m_pCurrent);
    CNameUse use = m_Names.Use(TreeOf(body), name);
    m_Narrow.Convert(value);
    norvask::SetAttribute(body, std::move(use), m_Narrow.Known());
}

void CTreeBuilder::SetDeclarations() {
    for (const auto& declaration : m_Declarations) {
        m_pCurrent->SetAttribute(declaration.first.c_str(), declaration.second.c_str());
    }
    m_Declarations.clear();
}

// The content of a CDATA section, if it is Base64.
bool CTreeBuilder::AddBinary(const XMLCh* base64, std::size_t length) {
    // The parser's decoder looks at the low byte of each unit only, in a table that does not hold all of
    // them, and nothing beyond ASCII is Base64.
    if (!IsAscii(base64, length)) {
        return false;
    }
    const CDecoded decoded(base64);
    if (decoded.Length() == 0) {
        return false;
    }
    m_pCurrent->CreateBinChild()->SetData(decoded.Data(), decoded.Length());
    return true;
}

void CTreeBuilder::AddText(const XMLCh* text, std::size_t length, bool keepLayout) {
    if (m_bOwnConverter) {
        if (keepLayout || !CStringConverter::IsFormattingWhitespace(text, length)) {
            m_Narrow.Convert(text, length);
            norvask::AddText(m_pCurrent, m_Narrow.Known());
        }
        return;
    }
    CDOMString narrow(text);
    const char* converted = narrow.GetString() == nullptr ? "" : narrow.GetString();
    if (keepLayout ||
        !CStringConverter::IsFormattingWhitespace(converted, std::strlen(converted))) {
        m_pCurrent->CreateTextChild(converted);
    }
}

}  // namespace norvask
