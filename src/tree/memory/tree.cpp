// Beginning and end of a tree, and the strings that it has freed while somebody outside still shows them.
#include "tree/memory/tree.h"

#include <algorithm>
#include <new>

#include "tree/attribute_index.h"

namespace norvask {
namespace {

// The first page is small, since many documents are, and stays below the size from which the general allocator
// starts to tidy up its free blocks.
const std::size_t FIRST_PAGE = 960;

// So many bytes may lie idle before anybody looks which of them are needed outside.
const std::size_t FIRST_IDLE_LIMIT = 4096;

}  // namespace

CTree* CTree::Create() {
    SPage* const page = NewPage(FIRST_PAGE - sizeof(SPage));
    return new (ContentOf(page)) CTree(page);
}

CTree::CTree(SPage* first) noexcept
    : m_nOwners(1), m_nEvents(0), m_Arena(this, first, sizeof(CTree)), m_Names(*this) {}

CTree::SRare::SRare() noexcept : idleLimit(FIRST_IDLE_LIMIT) {}
CTree::SRare::~SRare() = default;

void CTree::Release() noexcept {
    if (--m_nOwners == 0) {
        SPage* const first = m_Arena.FirstPage();
        this->~CTree();
        CArena::ReleasePages(first);
    }
}

CTree::SRare& CTree::Rare() {
    if (m_pRare == nullptr) {
        m_pRare = std::make_unique<SRare>();
    }
    return *m_pRare;
}

CAttributeIndex& CTree::MadeIndex() {
    SRare& rare = Rare();
    if (rare.index == nullptr) {
        rare.index = std::make_unique<CAttributeIndex>();
    }
    return *rare.index;
}

// Without memory to remember the block by, it stays where it is until the tree goes.
void CTree::LetLieIdle(void* block, std::size_t bytes, SPage* page) noexcept {
    try {
        Rare().idle.push_back({block, bytes, page});
    } catch (const std::bad_alloc&) {
        return;
    }
    m_pRare->idleBytes += bytes;
    if (m_pRare->idleBytes > m_pRare->idleLimit) {
        FreeIdle();
    }
}

// Frees the idle blocks that nobody shows any more. It looks at all of them, so it waits until as much has come as
// it had to leave the last time.
void CTree::FreeIdle() noexcept {
    std::vector<SIdle>& idle = m_pRare->idle;
    std::size_t left = 0;
    std::size_t bytes = 0;
    for (const SIdle& one : idle) {
        if (IsRetainedOnce(one.page)) {
            m_Arena.FreeTagged(one.block, one.bytes, one.page);
        } else {
            idle[left++] = one;
            bytes += one.bytes;
        }
    }
    idle.resize(left);
    if (idle.capacity() > 4 * left + FIRST_IDLE_LIMIT / sizeof(SIdle)) {
        idle.shrink_to_fit();
    }
    m_pRare->idleBytes = bytes;
    m_pRare->idleLimit = std::max(FIRST_IDLE_LIMIT, 2 * bytes);
}

}  // namespace norvask
