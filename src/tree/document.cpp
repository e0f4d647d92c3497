#include "norvask/document.h"

#include <cstring>
#include <memory>
#include <new>

#include "norvask/manager.h"
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

void LeaveDocumentBody(SDocumentBody* body) noexcept {
    if (--body->m_nOwners != 0) {
        return;
    }
    if (body->m_pRoot != nullptr) {
        EndRoot(body->m_pRoot);
    }
    delete[] body->m_pDTDName;
    delete[] body->m_pDTDPath;
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
    delete[] body->m_pDTDName;
    delete[] body->m_pDTDPath;
    body->m_pDTDName = name.release();
    body->m_pDTDPath = path.release();
}

struct SDelete {
    void operator()(CXMLDocument* document) const { document->Delete(); }
};

}  // namespace

CXMLDocument::CXMLDocument(const char* dtdName, const char* dtdPath) : m_pBody(nullptr) {
    std::unique_ptr<SDocumentBody> body(new SDocumentBody());
    body->m_nOwners = 1;
    SetReference(body.get(), dtdName, dtdPath);
    m_pBody = body.release();
}

CXMLDocument::CXMLDocument(const CXMLDocument& other) noexcept : m_pBody(other.m_pBody) {
    ++m_pBody->m_nOwners;
}

CXMLDocument& CXMLDocument::operator=(const CXMLDocument& other) noexcept {
    ++other.m_pBody->m_nOwners;
    LeaveDocumentBody(m_pBody);
    m_pBody = other.m_pBody;
    return *this;
}

CXMLDocument::~CXMLDocument() { LeaveDocumentBody(m_pBody); }

void CXMLDocument::Delete() { delete this; }

CXMLNode* CXMLDocument::GetRoot() { return m_pBody->m_pRoot; }

CXMLNode* CXMLDocument::CreateRoot(const char* name) {
    // The name may lie in the old tree, so that goes last.
    CXMLNode* root = NewRoot(name);
    CXMLNode* old = m_pBody->m_pRoot;
    m_pBody->m_pRoot = root;
    m_pBody->m_Result[0] = nullptr;
    if (old != nullptr) {
        EndRoot(old);
    }
    return root;
}

CXMLDocument* CXMLDocument::Clone() {
    std::unique_ptr<CXMLDocument, SDelete> clone(
        CXMLManager::GetInstance().CreateDocument(m_pBody->m_pDTDName, m_pBody->m_pDTDPath));
    if (clone == nullptr) {
        throw std::bad_alloc();
    }
    CXMLNode* root = m_pBody->m_pRoot;
    if (root != nullptr) {
        CopyContent(root, clone->CreateRoot(root->GetTagName()));
    }
    return clone.release();
}

void CXMLDocument::SetDTDRef(const char* dtdName, const char* dtdPath) {
    SetReference(m_pBody, dtdName, dtdPath);
}

const char* CXMLDocument::GetDTDName() { return m_pBody->m_pDTDName; }

const char* CXMLDocument::GetDTDPath() { return m_pBody->m_pDTDPath; }

CXMLNode** CXMLDocument::GetNodes(const char* path) {
    CXMLNode** result = m_pBody->m_Result;
    result[0] = nullptr;
    CXMLNode* root = m_pBody->m_pRoot;
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
