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

#include "foundation/errors.h"
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
    // A copy of a leaf in a block shows a body that has no room for a result.
    if (HasFlag(body, BODY_IN_BLOCK)) {
        ThrowNotSupportedByLeaf();
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
    SNodeExtras* extras = ExtrasOrNull(node);
    if (extras == nullptr || extras->m_pResult == nullptr) {
        extras = &MadeResult(node);
    }
    if (IsFull(*extras)) {
        GrowResult(MemoryOf(CNodeAccess::BodyOf(node)), *extras);
    }
    Put(*extras, found);
}

// A step of the path: the name, and the rest, which is NULL behind the last step.
//
// A name of the memory in which the children lie is the same pointer as theirs, so it is looked up once and the
// names of the children are not looked into.
struct SStep {
    explicit SStep(const char* path) noexcept
        : name(path), length(0), rest(nullptr), memory(nullptr), known(nullptr) {
        const char* separator = std::strchr(path, '/');
        length =
            separator == nullptr ? std::strlen(path) : static_cast<std::size_t>(separator - path);
        if (separator != nullptr && separator[1] != '\0') {
            rest = separator + 1;
        }
    }

    void LookUpIn(CTreeMemory& children) noexcept {
        if (memory != &children) {
            memory = &children;
            known = children.Names().Find(name, length);
        }
    }

    bool Names(CXMLNode* node) const {
        switch (CNodeAccess::ObjectOf(node)) {
            case EObject::ELEMENT: {
                const char* tag = CNodeAccess::ElementOf(node)->m_pName;
                return tag == known || (memory->Happened(CTreeMemory::HOLDS_OTHERS) && Equals(tag));
            }
            case EObject::DERIVED:
                return Equals(node->GetTagName());
            default:
                return length == 0;
        }
    }

    const char* name;
    std::size_t length;
    const char* rest;
    CTreeMemory* memory;
    const char* known;

private:
    bool Equals(const char* tag) const noexcept {
        return std::strncmp(tag, name, length) == 0 && tag[length] == '\0';
    }
};

// An element that is being asked, and how far.
struct SAsked {
    CXMLNode* node;
    std::uint32_t next;
};

// The innermost element that is being asked is asked for the step of its depth.
class CQuery {
public:
    CQuery(CXMLNode* top, const char* path);
    void Run();

private:
    void Ask(CXMLNode* node);
    void Look(SAsked& asked, CXMLNode* child);
    void HandUp();
    SStep& Step() noexcept { return m_Steps[m_Stack.size() - 1]; }

    std::vector<SAsked> m_Stack;
    std::vector<SStep> m_Steps;
};

CQuery::CQuery(CXMLNode* top, const char* path) {
    m_Steps.emplace_back(path);
    while (m_Steps.back().rest != nullptr) {
        m_Steps.emplace_back(m_Steps.back().rest);
    }
    Ask(top);
}

void CQuery::Ask(CXMLNode* node) {
    m_Stack.push_back({node, 0});
    Step().LookUpIn(MemoryOf(CNodeAccess::BodyOf(node)));
}

void CQuery::Run() {
    while (!m_Stack.empty()) {
        SAsked& asked = m_Stack.back();
        CXMLNode* child = ChildSlots(CNodeAccess::ElementOf(asked.node))[asked.next];
        if (child == nullptr) {
            HandUp();
        } else {
            ++asked.next;
            if (Step().Names(child)) {
                Look(asked, child);
            }
        }
    }
}

// A child that the step names.
void CQuery::Look(SAsked& asked, CXMLNode* child) {
    const char* rest = Step().rest;
    if (rest == nullptr) {
        AddFound(asked.node, child);
    } else if (CNodeAccess::ObjectOf(child) == EObject::ELEMENT) {
        EmptyResult(child);
        Ask(child);
    } else {
        for (CXMLNode** found = child->GetNodes(rest); *found != nullptr; ++found) {
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
