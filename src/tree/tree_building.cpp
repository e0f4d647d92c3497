#include "tree/tree_building.h"

#include <cstdint>
#include <cstring>
#include <new>

#include "foundation/errors.h"
#include "foundation/text_rules.h"
#include "tree/child_array.h"
#include "tree/tree_string.h"

namespace norvask {

const char* AcquireValidName(CTreeMemory& memory, const char* name) {
    if (name == nullptr) {
        ThrowInvalidName(nullptr);
    }
    const std::size_t length = std::strlen(name);
    const char* known = memory.Names().Find(name, length);
    if (known != nullptr && HasFlag(known, STRING_VALID)) {
        CNameTable::AddUse(known);
        return known;
    }
    if (!IsXmlName(name)) {
        ThrowInvalidName(name);
    }
    known = memory.Names().Acquire(memory, name, length);
    AddFlag(known, STRING_VALID);
    return known;
}

void RequireValidName(CTreeMemory& memory, const char* name) {
    if (name != nullptr) {
        const char* known = memory.Names().Find(name, std::strlen(name));
        if ((known != nullptr && HasFlag(known, STRING_VALID)) || IsXmlName(name)) {
            return;
        }
    }
    ThrowInvalidName(name);
}

CXMLNode* AddElement(CXMLNode* parent, const char* name, CXMLNode* before) {
    SElementBody* body = CNodeAccess::ElementOf(parent);
    CTreeMemory& memory = MemoryOf(body);
    CXMLNode* child = nullptr;
    try {
        ReserveOneChild(body);
        child = CNodeAccess::NewElement(memory, name, parent);
    } catch (...) {
        memory.Names().Release(memory, name);
        throw;
    }
    if (before == nullptr) {
        AppendReserved(body, child);
    } else {
        InsertReserved(body, child, before);
    }
    return child;
}

CXMLTextNode* AddText(CXMLNode* parent, const char* text, std::size_t length, bool isUtf8) {
    SElementBody* body = CNodeAccess::ElementOf(parent);
    ReserveOneChild(body);
    CXMLTextNode* child = CNodeAccess::NewText(MemoryOf(body), text, length, isUtf8, parent);
    AppendReserved(body, child);
    return child;
}

CXMLBinNode* AddBinary(CXMLNode* parent) {
    SElementBody* body = CNodeAccess::ElementOf(parent);
    ReserveOneChild(body);
    CXMLBinNode* child = CNodeAccess::NewBinary(MemoryOf(body), parent);
    AppendReserved(body, child);
    return child;
}

CXMLNode* NewRoot(const char* name) {
    CTreeMemory* memory = CTreeMemory::Create();
    try {
        return CNodeAccess::NewElement(*memory, AcquireValidName(*memory, name), nullptr);
    } catch (...) {
        memory->ReleaseOwner();
        throw;
    }
}

unsigned char* NewDataCopy(CTreeMemory& memory, const unsigned char* data, std::size_t length) {
    // Beyond this the sizes below would wrap around.
    if (length > static_cast<std::size_t>(PTRDIFF_MAX)) {
        throw std::bad_alloc();
    }
    unsigned char* copy = static_cast<unsigned char*>(memory.AllocatePlain(length));
    std::memcpy(copy, data, length);
    return copy;
}

SElementBody* RequireElement(const CXMLNode* node) {
    if (CNodeAccess::BodyOf(node)->m_nKind != CXMLNode::NODE_ELEMENT) {
        ThrowNotSupportedByLeaf();
    }
    return CNodeAccess::ElementOf(node);
}

}  // namespace norvask
