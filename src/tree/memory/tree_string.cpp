// Strings outside of any tree: each is a page of its own.
#include "tree/memory/tree_string.h"

#include <new>

namespace norvask {
namespace {

const std::size_t SHORTEST_OUTER = 32;

}  // namespace

// Never written: what is done to a constant string looks at its flag first.
alignas(CTreeString::ALIGNMENT) CTreeString::SEmpty CTreeString::s_Empty = {
    {0, {STRING_STATIC | KNOWN_UTF8 | KNOWN_ASCII}}, ""};

CTreeString NewOuterString(const SKnownText& text) {
    if (text.IsEmpty()) {
        return CTreeString();
    }
    const std::size_t bytes = (StringBytes(text.length) + 7) / 8 * 8;  // as in a tree
    // Room for another short string, which may come in its place.
    SPage* const page = NewPage(bytes < SHORTEST_OUTER ? SHORTEST_OUTER : bytes);
    return WriteString(page + 1, page, text, 0);
}

CTreeString ReplaceOuterString(CTreeString old, const SKnownText& text) {
    if (!old.Is(STRING_STATIC) && !text.IsEmpty()) {
        SPage* const page = old.Page();
        if (page->tree == nullptr && StringBytes(text.length) <= page->bytes &&
            IsRetainedOnce(page)) {
            return WriteString(page + 1, page, text, 0);
        }
    }
    const CTreeString made = NewOuterString(text);
    ReleaseString(old);
    return made;
}

// A string is shown for the first time on the thread of its tree.
void RetainString(CTreeString string) noexcept {
    if (!string.Is(STRING_STATIC)) {
        if (!string.Is(STRING_SHOWN)) {
            string.Add(STRING_SHOWN);
            CountBlocks(string.Page());
        }
        RetainBlock(string.Page(), string.Text());
    }
}

void ReleaseString(CTreeString string) noexcept {
    if (!string.Is(STRING_STATIC)) {
        ReleaseBlock(string.Page(), string.Text());
    }
}

}  // namespace norvask
