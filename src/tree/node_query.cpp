// CXMLNode: queries.
//
//   path := step ("/" step)*      a trailing "/" adds nothing
//
// A query of an element asks each child that the first step names for the rest, and so on downwards; every
// element that is asked leaves its part of the answer in its own result array. The walk keeps its own stack,
// so a path may have as many steps as it likes. Objects of derived classes are asked through their virtual
// operations.
#include <cstring>
#include <string>
#include <vector>

#include "norvask/node.h"
#include "tree/attribute_array.h"
#include "tree/child_array.h"
#include "tree/node_access.h"

namespace norvask {
namespace {

CXMLNode* const NO_RESULT[] = {nullptr};

// Where the extras of a node are kept; NULL for leaves in blocks, which never have any.
SNodeExtras* ExtrasOrNull(const CXMLNode* node) noexcept {
    SNodeBody* body = CNodeAccess::BodyOf(node);
    if (body->m_nKind == CXMLNode::NODE_ELEMENT) {
        const SAttributeArray* attributes = static_cast<SElementBody*>(body)->m_pAttributes;
        return attributes == nullptr ? nullptr : attributes->m_pExtras;
    }
    return HasFlag(body, BODY_IN_BLOCK) ? nullptr
                                        : reinterpret_cast<SDerivedLeafBody*>(body)->m_pExtras;
}

SNodeExtras& MadeExtras(CXMLNode* node) {
    SNodeBody* body = CNodeAccess::BodyOf(node);
    if (body->m_nKind == CXMLNode::NODE_ELEMENT) {
        return ExtrasOf(static_cast<SElementBody*>(body));
    }
    SNodeExtras*& extras = reinterpret_cast<SDerivedLeafBody*>(body)->m_pExtras;
    if (extras == nullptr) {
        extras = NewExtras(MemoryOf(body));
    }
    return *extras;
}

// The extras with a result array, which has its first capacity when it is new.
SNodeExtras& MadeResult(CXMLNode* node) {
    SNodeExtras& extras = MadeExtras(node);
    if (extras.m_pResult == nullptr) {
        MakeResult(MemoryOf(CNodeAccess::BodyOf(node)), extras);
    }
    return extras;
}

CXMLNode** ResultOf(const CXMLNode* node) noexcept {
    const SNodeExtras* extras = ExtrasOrNull(node);
    return extras == nullptr || extras->m_pResult == nullptr ? const_cast<CXMLNode**>(NO_RESULT)
                                                             : extras->m_pResult;
}

void EmptyResult(CXMLNode* node) noexcept {
    SNodeExtras* extras = ExtrasOrNull(node);
    if (extras != nullptr && extras->m_pResult != nullptr) {
        extras->m_pResult[0] = nullptr;
        extras->m_nResultUsed = 1;
    }
}

bool IsFull(const SNodeExtras& extras) noexcept {
    return extras.m_nResultUsed == extras.m_nResultCapacity;
}

void Put(SNodeExtras& extras, CXMLNode* found) noexcept {
    extras.m_pResult[extras.m_nResultUsed - 1] = found;
    extras.m_pResult[extras.m_nResultUsed] = nullptr;
    ++extras.m_nResultUsed;
}

void AddFound(CXMLNode* node, CXMLNode* found) {
    if (CNodeAccess::ObjectOf(node) == EObject::DERIVED) {
        CNodeAccess::AddToQueryResult(node, found);
        return;
    }
    SNodeExtras& extras = MadeResult(node);
    if (IsFull(extras)) {
        GrowResult(MemoryOf(CNodeAccess::BodyOf(node)), extras);
    }
    Put(extras, found);
}

// A step of the path: the name, and where the rest begins; `rest` is NULL behind the last step.
struct SStep {
    explicit SStep(const char* path) noexcept : name(path), rest(nullptr) {
        const char* separator = std::strchr(path, '/');
        length =
            separator == nullptr ? std::strlen(path) : static_cast<std::size_t>(separator - path);
        if (separator != nullptr && separator[1] != '\0') {
            rest = separator + 1;
        }
    }

    bool Names(CXMLNode* node) const {
        const char* tag = NameOf(node);
        return std::strncmp(tag, name, length) == 0 && tag[length] == '\0';
    }

    const char* name;
    std::size_t length;
    const char* rest;

private:
    static const char* NameOf(CXMLNode* node) {
        switch (CNodeAccess::ObjectOf(node)) {
            case EObject::ELEMENT:
                return CNodeAccess::ElementOf(node)->m_pName;
            case EObject::DERIVED:
                return node->GetTagName();
            default:
                return "";
        }
    }
};

// An element that is being asked, how far, and for what.
struct SAsked {
    SAsked(CXMLNode* asked, const char* path) noexcept : node(asked), next(0), step(path) {}

    CXMLNode* node;
    std::uint32_t next;
    SStep step;
};

class CQuery {
public:
    CQuery(CXMLNode* top, const char* path) { m_Stack.emplace_back(top, path); }
    void Run();

private:
    void Look();
    void HandUp();

    std::vector<SAsked> m_Stack;
};

void CQuery::Run() {
    while (!m_Stack.empty()) {
        const SAsked& asked = m_Stack.back();
        if (ChildSlots(CNodeAccess::ElementOf(asked.node))[asked.next] == nullptr) {
            HandUp();
        } else {
            Look();
        }
    }
}

// Looks at the next child of the element that is being asked.
void CQuery::Look() {
    SAsked& asked = m_Stack.back();
    CXMLNode* child = ChildSlots(CNodeAccess::ElementOf(asked.node))[asked.next++];
    if (!asked.step.Names(child)) {
        return;
    }
    if (asked.step.rest == nullptr) {
        AddFound(asked.node, child);
    } else if (CNodeAccess::ObjectOf(child) == EObject::ELEMENT) {
        EmptyResult(child);
        m_Stack.emplace_back(child, asked.step.rest);
    } else {
        for (CXMLNode** found = child->GetNodes(asked.step.rest); *found != nullptr; ++found) {
            AddFound(asked.node, *found);
        }
    }
}

// The element has been asked to the end; the one above it takes over what was found.
void CQuery::HandUp() {
    CXMLNode* done = m_Stack.back().node;
    m_Stack.pop_back();
    if (!m_Stack.empty()) {
        for (CXMLNode** found = ResultOf(done); *found != nullptr; ++found) {
            AddFound(m_Stack.back().node, *found);
        }
    }
}

}  // namespace

CXMLNode** CXMLNode::GetNodes(const char* path) {
    EmptyResult(this);
    if (path != nullptr && *path != '\0' && CNodeAccess::BodyOf(this)->m_nKind == NODE_ELEMENT) {
        // A copy: overrides are called on the way, and the path may lie in what they change.
        const std::string copy(path);
        CQuery(this, copy.c_str()).Run();
    }
    return ResultOf(this);
}

void CXMLNode::IncQueryResult() {
    GrowResult(MemoryOf(CNodeAccess::BodyOf(this)), MadeResult(this));
}

void CXMLNode::AddToQueryResult(CXMLNode* node) {
    if (IsFull(MadeResult(this))) {
        IncQueryResult();
        if (IsFull(MadeResult(this))) {  // an override has not made room
            CXMLNode::IncQueryResult();
        }
    }
    Put(MadeResult(this), node);
}

}  // namespace norvask
