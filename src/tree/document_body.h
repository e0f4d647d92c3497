// Internal. What documents hold.
#ifndef NORVASK_TREE_DOCUMENT_BODY_H
#define NORVASK_TREE_DOCUMENT_BODY_H

#include <cstdint>

#include "norvask/document.h"

namespace norvask {

struct SDocumentBody {
    std::uint32_t owners;  // documents that show this body
    CXMLNode* root;        // made by NewRoot, so its memory is the document's; or NULL
    char* dtdName;         // both DTD strings are set and not empty, or both are NULL
    char* dtdPath;
    CXMLNode* result[2];
};

class CDocumentAccess {
public:
    static SDocumentBody* BodyOf(CXMLDocument* document) noexcept { return document->m_pBody; }

    // A document as CXMLManager::CreateDocument makes it. Throws std::bad_alloc.
    static CXMLDocument* New(const char* dtdName, const char* dtdPath) {
        return new CXMLDocument(dtdName, dtdPath);
    }
};

}  // namespace norvask

#endif
