// CXMLDocument: its root and its DTD reference, copies and queries.
#include "norvask/document.h"

#include <cstring>
#include <memory>
#include <new>

#include "foundation/parser_state.h"
#include "tree/document_body.h"
#include "tree/node_copy.h"
#include "tree/node_ending.h"
#include "tree/tree_building.h"

namespace norvask {
namespace {

using String = std::unique_ptr<char[]>;

String Copy(const char* text) {
    const std::size_t size = std::strlen(text) + 1;
    String copy(new char[size]);
    std::memcpy(copy.get(), text, size);
    return copy;
}

bool IsNothing(const char* text) noexcept { return text == nullptr || *text == '\0'; }

void ReleaseDocumentBody(SDocumentBody* body) noexcept {
    if (--body->owners != 0) {
        return;
    }
    if (body->root != nullptr) {
        DestroyRoot(body->root);
    }
    delete[] body->dtdName;
    delete[] body->dtdPath;
    delete body;
}

void SetReference(SDocumentBody* body, const char* dtdName, const char* dtdPath) {
    String name;
    String path;
    if (!IsNothing(dtdName) && !IsNothing(dtdPath)) {
        // The arguments may be the stored strings, so those go last.
        name = Copy(dtdName);
        path = Copy(dtdPath);
    }
    delete[] body->dtdName;
    delete[] body->dtdPath;
    body->dtdName = name.release();
    body->dtdPath = path.release();
}

struct SDelete {
    void operator()(CXMLDocument* document) const { document->Delete(); }
};

}  // namespace

CXMLDocument::CXMLDocument(const char* dtdName, const char* dtdPath) : m_pBody(nullptr) {
    std::unique_ptr<SDocumentBody> body(new SDocumentBody());
    body->owners = 1;
    SetReference(body.get(), dtdName, dtdPath);
    m_pBody = body.release();
}

CXMLDocument::CXMLDocument(const CXMLDocument& other) noexcept : m_pBody(other.m_pBody) {
    ++m_pBody->owners;
}

CXMLDocument& CXMLDocument::operator=(const CXMLDocument& other) noexcept {
    ++other.m_pBody->owners;
    ReleaseDocumentBody(m_pBody);
    m_pBody = other.m_pBody;
    return *this;
}

CXMLDocument::~CXMLDocument() { ReleaseDocumentBody(m_pBody); }

void CXMLDocument::Delete() { delete this; }

CXMLNode* CXMLDocument::GetRoot() { return m_pBody->root; }

CXMLNode* CXMLDocument::CreateRoot(const char* name) {
    // The name may lie in the old tree, so that goes last.
    CXMLNode* root = NewRoot(name);
    CXMLNode* old = m_pBody->root;
    m_pBody->root = root;
    m_pBody->result[0] = nullptr;
    if (old != nullptr) {
        DestroyRoot(old);
    }
    return root;
}

CXMLDocument* CXMLDocument::Clone() {
    RequireParserInitialised();
    std::unique_ptr<CXMLDocument, SDelete> clone(
        CDocumentAccess::New(m_pBody->dtdName, m_pBody->dtdPath));
    CXMLNode* root = m_pBody->root;
    if (root != nullptr) {
        CopyContent(root, clone->CreateRoot(root->GetTagName()));
    }
    return clone.release();
}

void CXMLDocument::SetDTDRef(const char* dtdName, const char* dtdPath) {
    SetReference(m_pBody, dtdName, dtdPath);
}

const char* CXMLDocument::GetDTDName() { return m_pBody->dtdName; }

const char* CXMLDocument::GetDTDPath() { return m_pBody->dtdPath; }

CXMLNode** CXMLDocument::GetNodes(const char* path) {
    CXMLNode** result = m_pBody->result;
    result[0] = nullptr;
    CXMLNode* root = m_pBody->root;
    if (root == nullptr || IsNothing(path)) {
        return result;
    }
    const char* separator = std::strchr(path, '/');
    const std::size_t length =
        separator == nullptr ? std::strlen(path) : static_cast<std::size_t>(separator - path);
    const char* name = root->GetTagName();
    if (std::strncmp(name, path, length) != 0 || name[length] != '\0') {
        return result;
    }
    if (separator != nullptr && separator[1] != '\0') {
        return root->GetNodes(separator + 1);
    }
    result[0] = root;
    return result;
}

}  // namespace norvask
