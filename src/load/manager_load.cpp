// CXMLManager: the four loads. Each looks at its arguments before anything is made.
#include "foundation/errors.h"
#include "load/loading.h"
#include "load/manager_access.h"
#include "norvask/manager.h"

namespace norvask {
namespace {

void RequireFileName(const char* fileName) {
    if (fileName == nullptr) {
        ThrowInvalidParameter();
    }
}

void RequireBytes(const unsigned char* buffer, unsigned int length) {
    if (buffer == nullptr || length == 0) {
        ThrowInvalidParameter();
    }
}

void RequireClient(const CXMLSaxHandler* client) {
    if (client == nullptr) {
        ThrowInvalidParameter();
    }
}

}  // namespace

CXMLDocument* CXMLManager::LoadDocument(const char* fileName, bool validate, bool doSchema,
                                        const char* schemaLocation, bool schemaHasNamespace,
                                        bool keepPrefixes) {
    CManagerAccess::RequireInitialised(*this);
    RequireFileName(fileName);
    return LoadTree(fileName, keepPrefixes,
                    {validate, doSchema, schemaLocation, schemaHasNamespace});
}

CXMLDocument* CXMLManager::LoadDocument(unsigned char* buffer, unsigned int length, bool validate,
                                        bool doSchema, const char* schemaLocation,
                                        bool schemaHasNamespace, bool keepPrefixes) {
    CManagerAccess::RequireInitialised(*this);
    RequireBytes(buffer, length);
    return LoadTree(buffer, length, keepPrefixes,
                    {validate, doSchema, schemaLocation, schemaHasNamespace});
}

// Callbacks receive all forms of a name, so there are no prefixes to keep or drop.
void CXMLManager::LoadDocument(const char* fileName, CXMLSaxHandler* handler, bool validate,
                               bool doSchema, const char* schemaLocation, bool schemaHasNamespace,
                               bool) {
    CManagerAccess::RequireInitialised(*this);
    RequireFileName(fileName);
    RequireClient(handler);
    LoadEvents(fileName, *handler,
               {validate, doSchema, schemaLocation, schemaHasNamespace, m_bCalculateSourceOffsets});
}

void CXMLManager::LoadDocument(unsigned char* buffer, unsigned int length, CXMLSaxHandler* handler,
                               bool validate, bool doSchema, const char* schemaLocation,
                               bool schemaHasNamespace, bool) {
    CManagerAccess::RequireInitialised(*this);
    RequireBytes(buffer, length);
    RequireClient(handler);
    LoadEvents(buffer, length, *handler,
               {validate, doSchema, schemaLocation, schemaHasNamespace, m_bCalculateSourceOffsets});
}

}  // namespace norvask
