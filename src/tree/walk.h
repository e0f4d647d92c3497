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
    // each time, since whoever is called on the way may have changed it.
    CXMLNode* Next() {
        SLevel& level = m_Levels.back();
        CXMLNode* const child = ChildOf(level);
        if (child != nullptr) {
            ++level.next;
        }
        return child;
    }

    // A walk that keeps the innermost level itself, in registers, puts it here while it is deeper
    // down, and takes it again, if there is any, on its way up. Put throws std::bad_alloc.
    void Put(const SLevel& level) {
        m_Levels.emplace_back(level.node, level.own);
        m_Levels.back().next = level.next;
    }
    // Member by member, as it was stored: what was stored in parts is slow to load as a whole.
    void Take(SLevel& level) noexcept {
        const SLevel& outer = m_Levels.back();
        level.node = outer.node;
        level.next = outer.next;
        level.own = outer.own;
        m_Levels.pop_back();
    }
    static CXMLNode* ChildOf(const SLevel& level) noexcept {
        return ChildSlots(CNodeAccess::ElementOf(level.node))[level.next];
    }

private:
    std::vector<SLevel> m_Levels;
};

}  // namespace norvask

#endif
