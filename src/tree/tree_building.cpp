// Everything that adds a node does it here: room in the parent's array first, then the node, so
// that nothing is half done when there is no memory.
#include "tree/tree_building.h"

#include <cstdint>
#include <cstring>
#include <new>

#include "foundation/errors.h"
#include "tree/child_array.h"

namespace norvask {

CNameUse UseValidName(CTree& tree, const char* name) {
    if (name == nullptr) {
        ThrowInvalidName(nullptr);
    }
    const SNameLookUp lookUp = tree.Names().LookUp(name, std::strlen(name));
    return lookUp.IsName() ? CNameUse::Another(lookUp.name)
                           : CNameUse(tree, lookUp, RequireName(name).known);
}

CXMLNode* AddElement(CXMLNode* parent, CNameUse&& name, const CXMLNode* before) {
    SElementBody* const body = CNodeAccess::ElementOf(parent);
    CTree& tree = TreeOf(body);
    CXMLNode* child = nullptr;
    if (before == nullptr) {
        ReserveLastChild(body);
        child = CNodeAccess::NewElement(tree, std::move(name), parent);
        PutLastChild(body, child);
    } else {
        const std::uint32_t used = ChildrenUsed(body);
        const std::uint32_t found = FindSlot(ChildSlots(body), used, before);
        const std::uint32_t index = found == used - 1 ? 0 : found;
        ReserveChildSlowly(body, index);
        child = CNodeAccess::NewElement(tree, std::move(name), parent);
        PutChild(body, index, child);
    }
    CNodeAccess::SetParent(parent);
    return child;
}

CXMLTextNode* AddText(CXMLNode* parent, const SKnownText& text) {
    SElementBody* const body = CNodeAccess::ElementOf(parent);
    ReserveLastChild(body);
    CXMLTextNode* const child = CNodeAccess::NewText(TreeOf(body), text, parent);
    PutLastChild(body, child);
    CNodeAccess::SetParent(parent);
    return child;
}

CXMLBinNode* AddBinary(CXMLNode* parent) {
    SElementBody* const body = CNodeAccess::ElementOf(parent);
    ReserveLastChild(body);
    CXMLBinNode* const child = CNodeAccess::NewBinary(TreeOf(body), parent);
    PutLastChild(body, child);
    CNodeAccess::SetParent(parent);
    return child;
}

CXMLNode* NewRoot(const char* name) {
    CTreePtr tree(CTree::Create());
    CXMLNode* const root = CNodeAccess::NewElement(*tree, UseValidName(*tree, name), nullptr);
    static_cast<void>(tree.release());
    return root;
}

unsigned char* NewDataCopy(CTree& tree, const unsigned char* data, std::size_t length) {
    // Beyond this the sizes below would wrap around.
    if (length > static_cast<std::size_t>(PTRDIFF_MAX)) {
        throw std::bad_alloc();
    }
    unsigned char* const copy = static_cast<unsigned char*>(tree.Arena().AllocatePlain(length));
    std::memcpy(copy, data, length);
    return copy;
}

SElementBody* RequireElement(const CXMLNode* node) {
    SElementBody* const body = CNodeAccess::ElementOrNull(node);
    if (body == nullptr) {
        ThrowNotSupportedByLeaf();
    }
    return body;
}

}  // namespace norvask
