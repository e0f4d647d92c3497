// Beginning and end of a tree.
#include "tree/memory/tree.h"

#include <new>

namespace norvask {
namespace {

// The first page is small, since many documents are, and stays below the size from which the
// general allocator starts to tidy up its free blocks.
const std::size_t FIRST_PAGE = 960;

}  // namespace

CTree* CTree::Create() {
    SPage* const page = NewPage(FIRST_PAGE - sizeof(SPage));
    return new (ContentOf(page)) CTree(page);
}

CTree::CTree(SPage* first) noexcept
    : m_nOwners(1),
      m_nEvents(0),
      m_Arena(this, first, sizeof(CTree)),
      m_Strings(m_Arena),
      m_Names(m_Strings) {}

void CTree::Release() noexcept {
    if (--m_nOwners == 0) {
        SPage* const first = m_Arena.FirstPage();
        this->~CTree();
        CArena::ReleasePages(first);
    }
}

}  // namespace norvask
