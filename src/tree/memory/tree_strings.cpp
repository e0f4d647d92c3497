// Strings of a tree, and those of them that lie idle.
#include "tree/memory/tree_strings.h"

#include <algorithm>
#include <new>

namespace norvask {
namespace {

const std::size_t FIRST_IDLE_LIMIT = 1024;

}  // namespace

CTreeString CTreeStrings::New(const SKnownText& text) {
    if (text.IsEmpty()) {
        return CTreeString();
    }
    SPage* page = nullptr;
    void* const block = m_Arena.AllocatePaged(StringBytes(text.length), page);
    return WriteString(block, page, text, 0);
}

// Without memory to remember the block by, it stays where it is until the tree goes.
void CTreeStrings::LetLieIdle(const SIdleBlock& block) noexcept {
    try {
        if (m_pIdle == nullptr) {
            m_pIdle.reset(new SIdle{{}, 0, FIRST_IDLE_LIMIT});
        }
        m_pIdle->blocks.push_back(block);
    } catch (const std::bad_alloc&) {
        return;
    }
    m_pIdle->bytes += block.bytes + sizeof(SIdleBlock);
    if (m_pIdle->bytes > m_pIdle->limit) {
        FreeIdle();
    }
}

// It looks at all idle blocks, so the next time it waits until half as much has come as it has to
// leave now.
void CTreeStrings::FreeIdle() noexcept {
    std::vector<SIdleBlock>& blocks = m_pIdle->blocks;
    std::size_t left = 0;
    std::size_t bytes = 0;
    for (const SIdleBlock& idle : blocks) {
        if (!MustLieIdle(idle.string)) {
            m_Arena.FreePaged(idle.block, idle.bytes, idle.string.Page());
        } else {
            blocks[left++] = idle;
            bytes += idle.bytes + sizeof(SIdleBlock);
        }
    }
    blocks.resize(left);
    if (blocks.capacity() > 4 * left + FIRST_IDLE_LIMIT / sizeof(SIdleBlock)) {
        blocks.shrink_to_fit();
    }
    m_pIdle->bytes = bytes;
    m_pIdle->limit = bytes + std::max(FIRST_IDLE_LIMIT, bytes / 2);
}

}  // namespace norvask
