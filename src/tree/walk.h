// Internal. CWalk: a way down and up through a tree with a stack of its own, since depth is data.
//
// The levels are the elements that were entered and not left yet. Of the innermost one Next returns
// the children one by one; whoever walks decides which of them to enter, and keeps what it needs to
// know of a level in `Level::own`.
#ifndef NORVASK_TREE_WALK_H
#define NORVASK_TREE_WALK_H

#include <cstddef>
#include <cstdint>
#include <vector>

#include "tree/child_array.h"
#include "tree/node_access.h"

namespace norvask {

template <typename Own>
class CWalk {
public:
    struct SLevel {
        SLevel(CXMLNode* entered, Own of) noexcept : node(entered), next(0), own(of) {}

        CXMLNode* node;
        std::uint32_t next;
        Own own;
    };

    bool IsDone() const noexcept { return m_Levels.empty(); }
    std::size_t Depth() const noexcept { return m_Levels.size(); }
    SLevel& Innermost() noexcept { return m_Levels.back(); }

    // Throws std::bad_alloc.
    void Enter(CXMLNode* node, Own own) { m_Levels.emplace_back(node, own); }
    void Leave() noexcept { m_Levels.pop_back(); }

    // The next child of the innermost element; NULL behind the last. The array is looked at anew
    // each time, since whoever is called on the way may have changed it; a walk that knows better
    // which array it is gives it.
    CXMLNode* Next() { return Next(ChildSlots(CNodeAccess::ElementOf(Innermost().node))); }
    CXMLNode* Next(CXMLNode* const* children) {
        SLevel& level = m_Levels.back();
        CXMLNode* const child = children[level.next];
        if (child != nullptr) {
            ++level.next;
        }
        return child;
    }

private:
    std::vector<SLevel> m_Levels;
};

}  // namespace norvask

#endif
