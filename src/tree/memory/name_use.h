// Internal. CNameUse: one use of a name of a tree.
//
// It is move-only and releases itself, unless it is kept by a node or an attribute, which then
// release it through Adopt.
#ifndef NORVASK_TREE_MEMORY_NAME_USE_H
#define NORVASK_TREE_MEMORY_NAME_USE_H

#include <utility>

#include "tree/memory/tree.h"

namespace norvask {

class CNameUse {
public:
    // No use.
    CNameUse() noexcept = default;
    // A use of a name of the tree, which is added when it is new; what is known of it is
    // remembered. Throw std::bad_alloc.
    CNameUse(CTree& tree, const SNameLookUp& lookUp, unsigned int known)
        : m_Name(tree.Names().Acquire(lookUp, known)) {}
    CNameUse(CTree& tree, const SKnownText& name)
        : CNameUse(tree, tree.Names().LookUp(name.text, name.length), name.known) {}

    CNameUse(CNameUse&& other) noexcept : m_Name(std::exchange(other.m_Name, CTreeString())) {}
    CNameUse& operator=(CNameUse&&) = delete;
    ~CNameUse() {
        if (m_Name != CTreeString()) {
            Release(m_Name);
        }
    }

    // One more use of a name that is in use, and the use that somebody kept.
    static CNameUse Another(CTreeString name) noexcept {
        CNameTable::AddUse(name);
        return CNameUse(name);
    }
    static CNameUse Adopt(CTreeString name) noexcept { return CNameUse(name); }
    static void Release(CTreeString name) noexcept;

    // The name, as long as this is here or it is kept.
    CTreeString Name() const noexcept { return m_Name; }

    // The name, of which the caller keeps the use.
    CTreeString Keep() noexcept { return std::exchange(m_Name, CTreeString()); }

private:
    explicit CNameUse(CTreeString name) noexcept : m_Name(name) {}

    CTreeString m_Name;
};

}  // namespace norvask

#endif
