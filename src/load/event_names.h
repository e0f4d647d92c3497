// Internal. CEventNames: the narrow forms of the names of one callback load.
//
// A document repeats few names very often, and mostly in the same order. Each name is converted once. It then
// remembers the two that came after it most recently, behind its start and behind its end; a name that is
// among them is found without a search.
// What is kept is bounded, so that a document of ever new names takes no more memory than the parser's own for
// them: names beyond the bound are converted each time.
#ifndef NORVASK_LOAD_EVENT_NAMES_H
#define NORVASK_LOAD_EVENT_NAMES_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "load/narrow_text.h"

namespace norvask {

struct SEventName {
    std::string uri;
    std::string localName;
    std::string qName;
};

class CEventNames {
public:
    // The narrow forms of a name. With namespaces, URI and qualified name decide about the local name. Kept
    // as long as this object, or NULL when the bounds are reached. Deliberate: the text of a URI is compared
    // only once for each place where it lies, since the parser keeps its URIs in a pool that does not change
    // during a load. Throws std::bad_alloc.
    const SEventName* Find(const char16_t* uri, const char16_t* localName, const char16_t* qName) {
        SEntry* const likely = m_pNext[0];
        if (likely != nullptr && IsSame(*likely, uri, qName)) {
            m_pNext = likely->afterStart;
            return likely;
        }
        return Search(uri, localName, qName);
    }

    // An element of this name, which is a result of Find, ended.
    void Ended(const SEventName* name) noexcept {
        m_pNext = const_cast<SEntry*>(static_cast<const SEntry*>(name))->afterEnd;
    }

    // The narrow forms of any name.
    void Convert(const char16_t* uri, const char16_t* localName, const char16_t* qName,
                 SEventName& name);

private:
    static const std::size_t MOST_NAMES = 4096;
    static const std::size_t MOST_UNITS = 131072;

    struct SEntry : SEventName {
        std::u16string uri16;
        std::u16string qName16;
        const char16_t* pUri;  // where the parser has the URI
        std::uint32_t hash;
        SEntry* afterStart[2];  // the later one first
        SEntry* afterEnd[2];
    };

    static bool IsSame(SEntry& entry, const char16_t* uri, const char16_t* qName) noexcept {
        if (!IsSame(entry.qName16, qName)) {
            return false;
        }
        if (entry.pUri == uri) {
            return true;
        }
        if (!IsSame(entry.uri16, uri)) {
            return false;
        }
        entry.pUri = uri;
        return true;
    }
    static bool IsSame(const std::u16string& known, const char16_t* text) noexcept {
        const char16_t* p = known.c_str();
        while (*p == *text) {
            if (*p == 0) {
                return true;
            }
            ++p;
            ++text;
        }
        return false;
    }

    const SEventName* Search(const char16_t* uri, const char16_t* localName, const char16_t* qName);
    SEntry* SearchTable(const char16_t* uri, const char16_t* localName, const char16_t* qName);
    SEntry* Add(std::uint32_t hash, const char16_t* uri, const char16_t* localName,
                const char16_t* qName);
    void Grow();

    std::vector<std::unique_ptr<SEntry>> m_Entries;
    std::vector<SEntry*> m_Slots;  // open addressing
    std::size_t m_nUnits = 0;
    SEntry* m_First[2] = {nullptr, nullptr};
    SEntry** m_pNext = m_First;  // what came after the last event
    CNarrowText m_Narrow;
};

}  // namespace norvask

#endif
