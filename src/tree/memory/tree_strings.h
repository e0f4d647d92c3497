// Internal. CTreeStrings: makes and frees the strings of one tree.
//
// A string that is freed while it is retained outside is still read there. Its block lies idle
// until the page is the tree's alone again, and then serves again.
#ifndef NORVASK_TREE_MEMORY_TREE_STRINGS_H
#define NORVASK_TREE_MEMORY_TREE_STRINGS_H

#include <cstddef>
#include <memory>
#include <vector>

#include "tree/memory/arena.h"
#include "tree/memory/tree_string.h"

namespace norvask {

class CTreeStrings {
public:
    explicit CTreeStrings(CArena& arena) noexcept : m_Arena(arena) {}
    CTreeStrings(const CTreeStrings&) = delete;
    CTreeStrings& operator=(const CTreeStrings&) = delete;

    // A copy in the tree's memory. Throws std::bad_alloc.
    CTreeString New(const SKnownText& text);
    // The same of any string, of a tree or outside. Most are short, and copied by eights.
    CTreeString Copy(CTreeString source) {
        const SKnownText text = source.KnownIfShort();
        if (text.length - 1 >= LONGEST_BY_EIGHTS) {  // or empty
            return New(source.Known());
        }
        SPage* page = nullptr;
        void* const block = m_Arena.AllocatePaged(StringBytes(text.length), page);
        return CopyShortString(block, page, text);
    }

    // A string that New made, or the constant "".
    void Free(CTreeString string) noexcept {
        if (!string.Is(STRING_STATIC)) {
            FreeBlock(string, &string.Header(), StringBytes(string.Length()));
        }
    }

    // A string with something in front of it, in a block of the arena.
    void FreeBlock(CTreeString string, void* block, std::size_t bytes) noexcept {
        if (string.Is(STRING_SHOWN) && MustLieIdle(string)) {
            LetLieIdle({block, bytes, string});
        } else {
            m_Arena.FreePaged(block, bytes, string.Page());
        }
    }

    CArena& Arena() const noexcept { return m_Arena; }

private:
    static const std::size_t LONGEST_BY_EIGHTS = 60;

    struct SIdleBlock {
        void* block;
        std::size_t bytes;
        CTreeString string;
    };
    struct SIdle {
        std::vector<SIdleBlock> blocks;
        std::size_t bytes = 0;  // theirs, and those to remember them by
        std::size_t limit;      // from which somebody looks which of them are still needed
    };

    // A page of one block goes with its block, whoever retains it.
    static bool MustLieIdle(CTreeString string) noexcept {
        SPage* const page = string.Page();
        return !page->isSingle && IsBlockRetained(page, string.Text());
    }
    void LetLieIdle(const SIdleBlock& block) noexcept;
    void FreeIdle() noexcept;

    CArena& m_Arena;
    std::unique_ptr<SIdle> m_pIdle;  // NULL until there was one
};

}  // namespace norvask

#endif
