// CTreeBuilder: each report becomes one step of building (tree/tree_building.h).
#include "load/receiver/tree_builder.h"

#include <new>

#include "foundation/base64.h"
#include "foundation/string_converter.h"
#include "tree/document_body.h"
#include "tree/tree_building.h"

namespace norvask {

CTreeBuilder::~CTreeBuilder() {
    if (m_pDocument != nullptr) {
        m_pDocument->Delete();
    }
}

CXMLDocument* CTreeBuilder::TakeDocument() noexcept {
    m_pCurrent = nullptr;
    return std::exchange(m_pDocument, nullptr);
}

void CTreeBuilder::StartDocument() {
    if (m_pDocument != nullptr) {
        m_pDocument->Delete();
        m_pDocument = nullptr;
    }
    m_pCurrent = nullptr;
    // The load returns NULL then, like CreateDocument.
    try {
        m_pDocument = CDocumentAccess::New(nullptr, nullptr);
    } catch (const std::bad_alloc&) {
    }
}

void CTreeBuilder::SetDTDRef(const SKnownText& name, const SKnownText& systemId) {
    m_pDocument->SetDTDRef(name.text, systemId.text);
}

void CTreeBuilder::Declare(const SKnownText& prefix, const SKnownText& uri) {
    std::string name("xmlns:");
    name.append(prefix.text, prefix.length);
    m_Declarations[name].assign(uri.text, uri.length);
}

void CTreeBuilder::StartElement(const SKnownText& name) {
    if (m_pCurrent != nullptr) {
        StartElement(UseValidName(Tree(), name.text));
        return;
    }
    m_pCurrent = m_pDocument->CreateRoot(name.text);
    SetDeclarations();
}

void CTreeBuilder::StartElement(CNameUse name) {
    m_pCurrent = AddElement(m_pCurrent, std::move(name), nullptr);
    SetDeclarations();
}

void CTreeBuilder::SetDeclarations() {
    if (m_Declarations.empty()) {
        return;
    }
    for (const auto& declaration : m_Declarations) {
        m_pCurrent->SetAttribute(declaration.first.c_str(), declaration.second.c_str());
    }
    m_Declarations.clear();
}

void CTreeBuilder::EndElement() { m_pCurrent = CNodeAccess::BodyOf(m_pCurrent)->parent; }

void CTreeBuilder::SetAttribute(const SKnownText& name, const SKnownText& value) {
    CNameUse use = UseValidName(Tree(), name.text);
    SetAttribute(std::move(use), value.Is(KNOWN_UTF8) ? value : JudgeText(value.text));
}

void CTreeBuilder::CharacterData(const SKnownText& text) {
    if (!CStringConverter::IsFormattingWhitespace(text.text, text.length)) {
        AddText(text);
    }
}

bool CTreeBuilder::AddBinary(const SKnownText& content) {
    const CBase64Bytes bytes(content.text, content.length);
    if (bytes.Length() == 0) {
        return false;
    }
    norvask::AddBinary(m_pCurrent)->SetData(bytes.Get(), bytes.Length());
    return true;
}

void CTreeBuilder::AddText(const SKnownText& text) {
    norvask::AddText(m_pCurrent, text.Is(KNOWN_UTF8) ? text : RequireWritable(text.text));
}

}  // namespace norvask
