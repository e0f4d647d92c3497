// Internal. CTree: what belongs to a whole tree: its memory, its names, who keeps it, and what
// happened to it.
//
// Every root has one, and so has every object of a derived class. It lies in the first of its own
// pages. Everything here belongs to the thread of the tree.
#ifndef NORVASK_TREE_MEMORY_TREE_H
#define NORVASK_TREE_MEMORY_TREE_H

#include <cstdint>
#include <memory>
#include <utility>

#include "tree/memory/arena.h"
#include "tree/memory/name_table.h"

namespace norvask {

// What others keep for a whole tree, destroyed with it.
class CTreeAttachment {
public:
    CTreeAttachment() = default;
    CTreeAttachment(const CTreeAttachment&) = delete;
    CTreeAttachment& operator=(const CTreeAttachment&) = delete;
    virtual ~CTreeAttachment() = default;
};

class CTree {
public:
    // A new tree; the caller is its one owner (CTreePtr). Throws std::bad_alloc.
    static CTree* Create();
    CTree(const CTree&) = delete;
    CTree& operator=(const CTree&) = delete;

    // The owners are what keeps a tree from outside: its document, objects of derived classes,
    // copies of nodes. The last one to release it frees all pages, whatever still lies in them.
    void Retain() noexcept { ++m_nOwners; }
    void Release() noexcept;
    bool HasOneOwner() const noexcept { return m_nOwners == 1; }

    CArena& Arena() noexcept { return m_Arena; }
    CTreeStrings& Strings() noexcept { return m_Strings; }
    CNameTable& Names() noexcept { return m_Names; }

    // What may have happened to the tree that whoever frees or copies it has to look after.
    enum EEvent : unsigned int {
        // A child array was shown to a client, so it may hold objects that do not come from here.
        CHILDREN_SHOWN = 1,
        // An attribute shows strings, or a node shows content, that lie outside of this tree.
        HOLDS_OTHERS = 2,
        // An attribute was given another name behind its element's back.
        ATTRIBUTE_RENAMED = 4,
    };
    void Note(EEvent event) noexcept { m_nEvents |= event; }
    bool Happened(unsigned int events) const noexcept { return (m_nEvents & events) != 0; }

    // There is one kind of attachment (attribute_index.h); NULL for a tree without it.
    CTreeAttachment* Attachment() const noexcept { return m_pAttachment.get(); }
    void Attach(std::unique_ptr<CTreeAttachment> attachment) noexcept {
        m_pAttachment = std::move(attachment);
    }

private:
    explicit CTree(SPage* first) noexcept;
    ~CTree() = default;

    std::uint32_t m_nOwners;
    std::uint32_t m_nEvents;
    CArena m_Arena;
    CTreeStrings m_Strings;
    CNameTable m_Names;
    std::unique_ptr<CTreeAttachment> m_pAttachment;
};

// One owner of a tree.
struct SReleaseTree {
    void operator()(CTree* tree) const noexcept { tree->Release(); }
};
using CTreePtr = std::unique_ptr<CTree, SReleaseTree>;

// Frees a string of a tree, or the constant "", which is of none.
inline void FreeTreeString(CTreeString string) noexcept {
    if (!string.Is(STRING_STATIC)) {
        string.Tree().Strings().Free(string);
    }
}

// A new string of a tree, freed unless somebody keeps it. Throws std::bad_alloc.
class CNewString {
public:
    CNewString(CTree& tree, const SKnownText& text) : m_String(tree.Strings().New(text)) {}
    CNewString(CTree& tree, CTreeString source) : m_String(tree.Strings().Copy(source)) {}
    CNewString(const CNewString&) = delete;
    CNewString& operator=(const CNewString&) = delete;
    ~CNewString() {
        if (m_String != CTreeString()) {
            FreeTreeString(m_String);
        }
    }

    CTreeString Keep() noexcept { return std::exchange(m_String, CTreeString()); }

private:
    CTreeString m_String;
};

}  // namespace norvask

#endif
