// Internal. CTree: what belongs to a whole tree: its memory, its names, who keeps it, and what happened to it.
//
// Every root has one, and so has every object of a derived class. It lies in the first of its own pages. Everything
// here belongs to the thread of the tree.
#ifndef NORVASK_TREE_MEMORY_TREE_H
#define NORVASK_TREE_MEMORY_TREE_H

#include <cstdint>
#include <memory>
#include <vector>

#include "tree/memory/arena.h"
#include "tree/memory/name_table.h"

namespace norvask {

class CAttributeIndex;

class CTree {
public:
    // A new tree; the caller is its one owner. Throws std::bad_alloc.
    static CTree* Create();
    CTree(const CTree&) = delete;
    CTree& operator=(const CTree&) = delete;

    // The owners are what keeps a tree from outside: its document, objects of derived classes, copies of nodes. The
    // last one to release it frees all pages, whatever still lies in them.
    void Retain() noexcept { ++m_nOwners; }
    void Release() noexcept;
    bool HasOneOwner() const noexcept { return m_nOwners == 1; }

    CArena& Arena() noexcept { return m_Arena; }
    CNameTable& Names() noexcept { return m_Names; }

    // Frees the block of a string of this tree, from `block` on. One that is retained from outside is still read
    // there, and lies idle until it is not.
    void FreeString(CTreeString string, void* block, std::size_t bytes) noexcept {
        if (string.Is(STRING_SHOWN) && MustLieIdle(string.Page())) {
            LetLieIdle(block, bytes, string.Page());
        } else {
            m_Arena.FreeTagged(block, bytes, string.Page());
        }
    }

    // What may have happened to the tree that whoever frees or copies it has to look after.
    enum EEvent : unsigned int {
        // A child array was handed out, so it may hold objects that do not come from here.
        CHILDREN_SHOWN = 1,
        // An attribute shows strings, or a node shows content, that lie outside of this tree.
        HOLDS_OTHERS = 2,
        // An attribute was given another name behind its element's back.
        ATTRIBUTE_RENAMED = 4,
    };
    void Note(EEvent event) noexcept { m_nEvents |= event; }
    bool Happened(unsigned int events) const noexcept { return (m_nEvents & events) != 0; }

    // The index of the elements with very many attributes; NULL until there was one. Making it throws
    // std::bad_alloc.
    CAttributeIndex* Index() const noexcept {
        return m_pRare == nullptr ? nullptr : m_pRare->index.get();
    }
    CAttributeIndex& MadeIndex();

private:
    struct SIdle {
        void* block;
        std::size_t bytes;
        SPage* page;
    };
    // What few trees ever need.
    struct SRare {
        SRare() noexcept;
        SRare(const SRare&) = delete;
        SRare& operator=(const SRare&) = delete;
        ~SRare();

        std::vector<SIdle> idle;
        std::size_t idleBytes = 0;
        std::size_t idleLimit;
        std::unique_ptr<CAttributeIndex> index;
    };

    explicit CTree(SPage* first) noexcept;
    ~CTree() = default;

    // A page of one block goes with its block, whoever retains it.
    static bool MustLieIdle(const SPage* page) noexcept {
        return !page->isSingle && !IsRetainedOnce(page);
    }
    void LetLieIdle(void* block, std::size_t bytes, SPage* page) noexcept;
    void FreeIdle() noexcept;
    SRare& Rare();

    std::uint32_t m_nOwners;
    std::uint32_t m_nEvents;
    CArena m_Arena;
    CNameTable m_Names;
    std::unique_ptr<SRare> m_pRare;
};

}  // namespace norvask

#endif
