// Internal. CTreeMemory: the memory of one tree.
//
// Nodes, names, values and arrays of a tree come from pages that belong to it, so building is a matter of
// moving a cursor and a whole document ends by giving its pages back. Blocks that end earlier go to free
// lists by size and are used again, so a tree that is edited for hours does not grow.
//
//   page    := header block*        the first page also holds the CTreeMemory itself
//   block   := tagged | plain
//   tagged  := ... tag ...          nodes and strings; the tag tells the distance to the page's header
//   plain   := ...                  arrays and attributes, of which nobody needs to find the page
//
// Blocks above a limit have a page of their own: plain ones above LARGEST_PLAIN, tagged ones above LARGEST_TAGGED,
// and tagged ones above LARGEST_PLAIN already when the current page has no room for them. A string outside of any tree (an attribute that
// an application made) is a page without a tree.
//
// Pages are counted: the tree holds each of its pages, and every string that is shown outside of the tree
// holds the page that it lies in. What holds a page last releases it, on whatever thread. Everything else
// belongs to the thread of the tree.
//
// Under AddressSanitizer, memory that is not handed out is poisoned.
#ifndef NORVASK_TREE_TREE_MEMORY_H
#define NORVASK_TREE_TREE_MEMORY_H

#include <atomic>
#include <cstddef>
#include <cstdint>

#include "tree/name_table.h"

namespace norvask {

class CTreeMemory;

struct SPage {
    CTreeMemory* m_pTree;  // NULL for a page without a tree
    SPage* m_pPrevious;
    SPage* m_pNext;
    std::size_t m_nBytes;
    bool m_bSingle;  // the page of one block
    std::atomic<std::uint32_t> m_nHolders;
};

// Distances in tags are counted in units of four bytes, so that they fit 16 bits.
const std::size_t TAG_UNIT = 4;

inline SPage* PageAt(const void* tag, std::uint16_t distance) noexcept {
    const std::uintptr_t address = reinterpret_cast<std::uintptr_t>(tag);
    return reinterpret_cast<SPage*>(address - distance * TAG_UNIT);
}

inline std::uint16_t DistanceTo(const SPage* page, const void* tag) noexcept {
    const char* from = reinterpret_cast<const char*>(page);
    return static_cast<std::uint16_t>(
        static_cast<std::size_t>(static_cast<const char*>(tag) - from) / TAG_UNIT);
}

// What is not handed out may not be touched, and AddressSanitizer watches over it.
#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define NORVASK_POISONS_MEMORY
#endif
#elif defined(__SANITIZE_ADDRESS__)
#define NORVASK_POISONS_MEMORY
#endif
#if defined(NORVASK_POISONS_MEMORY)
void PoisonMemory(void* memory, std::size_t bytes) noexcept;
void UnpoisonMemory(void* memory, std::size_t bytes) noexcept;
#else
inline void PoisonMemory(void*, std::size_t) noexcept {}
inline void UnpoisonMemory(void*, std::size_t) noexcept {}
#endif

// A page without a tree, with room for `bytes` bytes behind its header; the caller holds it.
SPage* NewPage(std::size_t bytes);
void HoldPage(SPage* page) noexcept;
void ReleasePage(SPage* page) noexcept;

class CTreeMemory {
public:
    // A new memory; the caller is its one owner.
    static CTreeMemory* Create();
    CTreeMemory(const CTreeMemory&) = delete;
    CTreeMemory& operator=(const CTreeMemory&) = delete;

    // The owners are what keeps a tree from outside: its document, objects of derived classes, copies of
    // nodes. The last one to go releases all pages, whatever still lies in them.
    void AddOwner() noexcept { ++m_nOwners; }
    void ReleaseOwner() noexcept;
    bool HasOneOwner() const noexcept { return m_nOwners == 1; }

    // A tagged block; `page` is where it lies. Throw std::bad_alloc.
    void* AllocateTagged(std::size_t bytes, SPage*& page) {
        bytes = TaggedSize(bytes);
        if (FitsCursor(bytes, LARGEST_TAGGED) && !HasFreeTagged(bytes)) {
            page = m_pCurrent;
            return TakeFromCursor(bytes);
        }
        return AllocateTaggedSlowly(bytes, page);
    }
    void* AllocatePlain(std::size_t bytes) {
        bytes = PlainSize(bytes);
        if (FitsCursor(bytes, LARGEST_PLAIN) && !HasFreePlain(bytes)) {
            return TakeFromCursor(bytes);
        }
        return AllocatePlainSlowly(bytes);
    }
    // `bytes` as allocated.
    void FreeTagged(void* block, std::size_t bytes, SPage* page) noexcept;
    void FreePlain(void* block, std::size_t bytes) noexcept;

    CNameTable& Names() noexcept { return m_Names; }

    // What may have happened to the tree that its end has to look after.
    enum EEvent : unsigned int {
        // A child array was handed out, so it may hold objects that do not come from here.
        CHILDREN_SHOWN = 1,
        // An attribute shows strings, or a node shows content, that lie outside of this memory.
        HOLDS_OTHERS = 2,
        // An attribute was given another name behind its element's back.
        ATTRIBUTE_RENAMED = 4,
    };
    void Note(EEvent event) noexcept { m_nEvents |= event; }
    bool Happened(unsigned int events) const noexcept { return (m_nEvents & events) != 0; }

private:
    static const std::size_t BLOCK_UNIT = 8;
    static const std::size_t LARGER_UNIT = 128;
    static const std::size_t SMALLEST_TAGGED = 16;  // of SFreeTagged
    static const std::size_t LARGEST_PLAIN = 512;
    static const std::size_t LARGEST_TAGGED = 2048;

    static std::size_t RoundUp(std::size_t bytes, std::size_t unit) noexcept {
        return (bytes + unit - 1) / unit * unit;
    }
    static std::size_t PlainSize(std::size_t bytes) noexcept { return RoundUp(bytes, BLOCK_UNIT); }
    static std::size_t TaggedSize(std::size_t bytes) noexcept {
        if (bytes <= SMALLEST_TAGGED) {
            return SMALLEST_TAGGED;
        }
        return RoundUp(bytes, bytes <= LARGEST_PLAIN ? BLOCK_UNIT : LARGER_UNIT);
    }

    // What a free block holds. Tagged blocks keep their page, so they have at least this size.
    struct SFreeBlock {
        SFreeBlock* m_pNext;
    };
    struct SFreeTagged : SFreeBlock {
        SPage* m_pPage;
    };
    static const std::size_t PLAIN_CLASSES = LARGEST_PLAIN / BLOCK_UNIT + 1;
    static const std::size_t TAGGED_CLASSES =
        PLAIN_CLASSES + (LARGEST_TAGGED - LARGEST_PLAIN) / LARGER_UNIT;
    static std::size_t ClassOf(std::size_t bytes) noexcept {
        return bytes <= LARGEST_PLAIN ? bytes / BLOCK_UNIT
                                      : PLAIN_CLASSES - 1 + (bytes - LARGEST_PLAIN) / LARGER_UNIT;
    }
    bool HasFreeTagged(std::size_t bytes) const noexcept {
        return m_ppFreeTagged != nullptr && m_ppFreeTagged[ClassOf(bytes)] != nullptr;
    }
    bool HasFreePlain(std::size_t bytes) const noexcept {
        return m_ppFreePlain != nullptr && m_ppFreePlain[ClassOf(bytes)] != nullptr;
    }
    bool FitsCursor(std::size_t bytes, std::size_t largest) const noexcept {
        return bytes <= largest && bytes <= static_cast<std::size_t>(m_pEnd - m_pCursor);
    }
    template <typename Block>
    static Block* Take(SFreeBlock*& list, std::size_t bytes) noexcept;
    void* TakeFromCursor(std::size_t bytes) noexcept {
        void* block = m_pCursor;
        m_pCursor += bytes;
        UnpoisonMemory(block, bytes);
        return block;
    }
    void* AllocateTaggedSlowly(std::size_t bytes, SPage*& page);
    void* AllocatePlainSlowly(std::size_t bytes);

    explicit CTreeMemory(SPage* firstPage) noexcept;
    ~CTreeMemory() = default;
    SPage* AddPage(std::size_t bytes);
    void* AllocateFromNewPage(std::size_t bytes, SPage*& page);
    bool MakeFreeLists(SFreeBlock**& lists, std::size_t classes) noexcept;

    std::uint32_t m_nOwners;
    std::uint32_t m_nEvents;
    SPage* const m_pFirst;  // where this object lies
    SPage* m_pLast;         // of the pages, in the order in which they came
    SPage* m_pCurrent;      // the one with the cursor
    char* m_pCursor;
    char* m_pEnd;
    std::size_t m_nNextPage;
    SFreeBlock** m_ppFreeTagged;  // by class of size; NULL until a block has been freed
    SFreeBlock** m_ppFreePlain;
    CNameTable m_Names;
};

}  // namespace norvask

#endif
