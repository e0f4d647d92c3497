// CXMLNode: queries.
//
//   path := step ("/" step)*      a trailing "/" adds nothing
//
// A query of an element asks each child that the first step names for the rest, and so on
// downwards; every element that is asked leaves its part of the result in its own array. Objects of
// derived classes are asked through their virtual operations.
#include <cstring>
#include <string>
#include <vector>

#include "norvask/node.h"
#include "tree/node_result.h"
#include "tree/walk.h"

namespace norvask {
namespace {

CArena& ArenaOf(const CXMLNode* node) noexcept { return TreeOf(CNodeAccess::BodyOf(node)).Arena(); }

bool IsFull(const SQueryResult& result) noexcept { return result.used == result.capacity; }

void AddFound(CXMLNode* node, CXMLNode* found) {
    if (CNodeAccess::ObjectOf(node) == EObject::DERIVED) {
        CNodeAccess::AddToQueryResult(node, found);
        return;
    }
    SQueryResult* result = ResultOrNull(node);
    if (result == nullptr) {
        result = &MadeResult(node);
    }
    if (IsFull(*result)) {
        GrowResult(ArenaOf(node), *result);
    }
    PutSlot(result->slots, result->used, found);
}

// A step of the path: the name, and the rest, which is NULL behind the last step.
//
// A name of the tree in which the children lie is the same string as theirs, so it is looked up
// once and the names of the children are not looked into.
class CStep {
public:
    explicit CStep(const char* path) noexcept
        : m_pName(path), m_nLength(0), m_pRest(nullptr), m_pTree(nullptr) {
        const char* const separator = std::strchr(path, '/');
        m_nLength =
            separator == nullptr ? std::strlen(path) : static_cast<std::size_t>(separator - path);
        if (separator != nullptr && separator[1] != '\0') {
            m_pRest = separator + 1;
        }
    }

    const char* Rest() const noexcept { return m_pRest; }

    // What was looked up may no longer be true.
    void Forget() noexcept { m_pTree = nullptr; }
    bool IsForgotten() const noexcept { return m_pTree == nullptr; }

    void LookUpIn(CTree& tree) noexcept {
        if (m_pTree != &tree) {
            m_pTree = &tree;
            m_Known = tree.Names().LookUp(m_pName, m_nLength).name;
        }
    }

    bool Names(CXMLNode* node) const {
        switch (CNodeAccess::ObjectOf(node)) {
            case EObject::ELEMENT: {
                const CTreeString tag = CNodeAccess::ElementOf(node)->name;
                return tag == m_Known ||
                       (m_pTree->Happened(CTree::HOLDS_OTHERS) && tag.Equals(m_pName, m_nLength));
            }
            case EObject::DERIVED: {
                const char* const tag = node->GetTagName();
                return std::strncmp(tag, m_pName, m_nLength) == 0 && tag[m_nLength] == '\0';
            }
            default:
                return m_nLength == 0;
        }
    }

private:
    const char* m_pName;
    std::size_t m_nLength;
    const char* m_pRest;
    CTree* m_pTree;
    CTreeString
        m_Known;  // the constant "", which is no name of a tree, when the tree does not have it
};

// The innermost element of the walk is being asked for the step of its depth.
class CQuery {
public:
    CQuery(CXMLNode* top, const char* path);
    void Run();

private:
    struct SNothing {};

    void Ask(CXMLNode* node);
    bool IsNamed(CXMLNode* child);
    void LookUp() { Step().LookUpIn(TreeOf(CNodeAccess::BodyOf(m_Walk.Innermost().node))); }
    void LookUpAgain();
    void Look(CXMLNode* child);
    void HandUp(CXMLNode* const* found);
    void Leave();
    CStep& Step() noexcept { return m_Steps[m_Walk.Depth() - 1]; }

    CWalk<SNothing> m_Walk;
    std::vector<CStep> m_Steps;
};

CQuery::CQuery(CXMLNode* top, const char* path) {
    m_Steps.emplace_back(path);
    while (m_Steps.back().Rest() != nullptr) {
        m_Steps.emplace_back(m_Steps.back().Rest());
    }
    Ask(top);
}

void CQuery::Ask(CXMLNode* node) {
    m_Walk.Enter(node, {});
    LookUp();
}

// Somebody else's code has run, and may have given and taken names.
void CQuery::LookUpAgain() {
    for (CStep& step : m_Steps) {
        step.Forget();
    }
    LookUp();
}

bool CQuery::IsNamed(CXMLNode* child) {
    const bool isNamed = Step().Names(child);
    if (CNodeAccess::ObjectOf(child) == EObject::DERIVED) {
        LookUpAgain();
    }
    return isNamed;
}

void CQuery::Run() {
    while (!m_Walk.IsDone()) {
        CXMLNode* const child = m_Walk.Next();
        if (child == nullptr) {
            Leave();
        } else if (IsNamed(child)) {
            Look(child);
        }
    }
}

// A child that the step names.
void CQuery::Look(CXMLNode* child) {
    CXMLNode* const asked = m_Walk.Innermost().node;
    const char* const rest = Step().Rest();
    if (rest == nullptr) {
        AddFound(asked, child);
        if (CNodeAccess::ObjectOf(asked) == EObject::DERIVED) {
            LookUpAgain();
        }
    } else if (CNodeAccess::ObjectOf(child) == EObject::ELEMENT) {
        if (SQueryResult* result = ResultOrNull(child)) {
            StartResult(ArenaOf(child), *result);
        }
        Ask(child);
    } else {
        HandUp(child->GetNodes(rest));
        LookUpAgain();
    }
}

// The innermost element takes over what was found below. In a ring of nodes that show one content
// the two have one array, which has it already.
void CQuery::HandUp(CXMLNode* const* found) {
    CXMLNode* const asked = m_Walk.Innermost().node;
    const SQueryResult* const own = ResultOrNull(asked);
    if (own != nullptr && own->slots == found) {
        return;
    }
    for (; *found != nullptr; ++found) {
        AddFound(asked, *found);
    }
}

// The element has been asked to the end.
void CQuery::Leave() {
    const SQueryResult* const result = ResultOrNull(m_Walk.Innermost().node);
    m_Walk.Leave();
    if (m_Walk.IsDone()) {
        return;
    }
    if (result != nullptr) {
        HandUp(result->slots);
    }
    if (CNodeAccess::ObjectOf(m_Walk.Innermost().node) == EObject::DERIVED) {
        LookUpAgain();
    } else if (Step().IsForgotten()) {
        LookUp();
    }
}

CXMLNode* const NO_RESULT[] = {nullptr};

}  // namespace

// An object that shows the body of a leaf in a block has no array of its own, and cannot find
// anything.
CXMLNode** CXMLNode::GetNodes(const char* path) {
    SNodeBody* const body = CNodeAccess::BodyOf(this);
    if (body->kind != NODE_ELEMENT && HasFlag(body, BODY_IN_BLOCK)) {
        return const_cast<CXMLNode**>(NO_RESULT);
    }
    StartResult(ArenaOf(this), MadeResult(this));
    if (path != nullptr && *path != '\0' && body->kind == NODE_ELEMENT) {
        // A copy: overrides are called on the way, and the path may lie in what they change.
        const std::string copy(path);
        CQuery(this, copy.c_str()).Run();
    }
    return MadeResult(this).slots;
}

void CXMLNode::IncQueryResult() { GrowResult(ArenaOf(this), MadeResult(this)); }

void CXMLNode::AddToQueryResult(CXMLNode* node) {
    if (IsFull(MadeResult(this))) {
        IncQueryResult();
        if (IsFull(MadeResult(this))) {  // an override has not made room
            CXMLNode::IncQueryResult();
        }
    }
    SQueryResult& result = MadeResult(this);
    PutSlot(result.slots, result.used, node);
}

}  // namespace norvask
