#include "tree/tree_string.h"

#include <cstring>
#include <new>

namespace norvask {
namespace {

struct SEmptyString {
    SStringTag m_Tag;
    char m_Text[4];
};

// Never written: what is done to a constant string looks at its flag first.
SEmptyString s_EmptyString = {{0, {STRING_STATIC | STRING_UTF8}}, ""};

const std::size_t SHORTEST_HELD = 32;

const char* WriteString(void* block, SPage* page, const char* text, std::size_t length,
                        unsigned int flags) noexcept {
    SStringTag* tag =
        new (block) SStringTag{DistanceTo(page, block), {FlagsWithLength(flags, length)}};
    char* characters = reinterpret_cast<char*>(tag + 1);
    std::memmove(characters, text, length);  // a part of the string that it replaces
    characters[length] = '\0';
    return characters;
}

}  // namespace

const char* EmptyString() noexcept { return s_EmptyString.m_Text; }

const char* NewTreeString(CTreeMemory& memory, const char* text, std::size_t length, bool isUtf8) {
    SPage* page = nullptr;
    void* block = memory.AllocateTagged(sizeof(SStringTag) + length + 1, page);
    return WriteString(block, page, text, length, isUtf8 ? STRING_UTF8 : 0);
}

bool IsReusable(const char* text) noexcept {
    return !HasFlag(text, STRING_SHOWN) || PageOf(text)->m_bSingle ||
           PageOf(text)->m_nHolders.load(std::memory_order_acquire) == 1;
}

void FreeTreeString(CTreeMemory& memory, const char* text) noexcept {
    if (!HasFlag(text, STRING_STATIC) && IsReusable(text)) {
        memory.FreeTagged(&TagOf(text), sizeof(SStringTag) + LengthOf(text) + 1, PageOf(text));
    }
}

const char* NewHeldString(const char* text, unsigned int flags) {
    if (text == nullptr || *text == '\0') {
        return EmptyString();
    }
    const std::size_t length = std::strlen(text);
    const std::size_t bytes = sizeof(SStringTag) + length + 1;
    // Room for another short string, which may come in its place.
    SPage* page = NewPage(bytes < SHORTEST_HELD ? SHORTEST_HELD : bytes);
    return WriteString(page + 1, page, text, length, flags);
}

const char* ReplaceHeldString(const char* old, const char* text, unsigned int flags) {
    if (!HasFlag(old, STRING_STATIC) && text != nullptr && *text != '\0') {
        SPage* page = PageOf(old);
        const std::size_t length = std::strlen(text);
        if (page->m_pTree == nullptr && length < page->m_nBytes - sizeof(SStringTag) &&
            page->m_nHolders.load(std::memory_order_acquire) == 1) {
            return WriteString(page + 1, page, text, length, flags);
        }
    }
    const char* held = NewHeldString(text, flags);
    ReleaseHeldString(old);
    return held;
}

void HoldString(const char* text) noexcept {
    if (!HasFlag(text, STRING_STATIC)) {
        AddFlag(text, STRING_SHOWN);
        HoldPage(PageOf(text));
    }
}

void ReleaseHeldString(const char* text) noexcept {
    if (!HasFlag(text, STRING_STATIC)) {
        ReleasePage(PageOf(text));
    }
}

}  // namespace norvask
