// Internal. CDOMString: the way from the parser's strings to narrow ones, by the converter in
// force.
//
// It looks which converter that is for each string, since a callback, or a converter itself, may
// install another in the middle of a load. The library's own converts into a block that is used
// again, and of its results it is known that they are UTF-8. One of a client's is asked for each
// string each time; of its results nothing is known.
#ifndef NORVASK_LOAD_PARSER_DOM_STRING_H
#define NORVASK_LOAD_PARSER_DOM_STRING_H

#include <cstddef>
#include <memory>

#include "foundation/known_text.h"
#include "norvask/manager.h"

namespace norvask {

class CDOMString {
public:
    CDOMString() noexcept
        : m_nCapacity(0), m_nUsed(0), m_nPlace(0), m_nLength(0), m_nKnown(0), m_bIsNull(true) {}
    explicit CDOMString(const char16_t* text) : CDOMString() { Append(text); }
    CDOMString(const CDOMString&) = delete;
    CDOMString& operator=(const CDOMString&) = delete;
    virtual ~CDOMString();

    // Whether the converter in force is the library's own. Nowhere else is that decided.
    static bool IsOwnInForce() noexcept {
        const CXMLManager& manager = CXMLManager::sm_TheInstance;
        return manager.m_pConverter == &manager.m_Converter;
    }

    // One string, valid until the next call. NULL, for which no converter is asked, and a result of
    // NULL give an empty text. Throws std::bad_alloc and what a client's converter throws.
    SKnownText Convert(const char16_t* text) {
        Clear();
        Append(text);
        return Last();
    }
    SKnownText Convert(const char16_t* text, std::size_t units) {
        Clear();
        Append(text, units);
        return Last();
    }
    // The same by the library's own converter, whichever is in force.
    SKnownText ConvertByOwn(const char16_t* text, std::size_t units) {
        Clear();
        AppendByOwn(text, units);
        return Last();
    }

    // Several strings, one behind the other until Clear: each is known by the place that Append
    // returns. What At returns is valid until the next Append.
    void Clear() noexcept { m_nUsed = 0; }
    std::size_t Append(const char16_t* text);
    std::size_t Append(const char16_t* text, std::size_t units);
    const char* At(std::size_t place) const noexcept { return m_pBlock.get() + place; }
    // The place behind all of them.
    std::size_t End() const noexcept { return m_nUsed; }

    // The last string; NULL when it was NULL or became that.
    virtual const char* GetString();

private:
    void Reserve(std::size_t bytes) {
        if (m_nCapacity - m_nUsed < bytes) {
            Grow(bytes);
        }
    }
    void Grow(std::size_t bytes);
    void AppendByOwn(const char16_t* text, std::size_t units);
    void AppendByClients(const char16_t* text, std::size_t units);
    void AppendCopy(const char* text);
    void SetLast(std::size_t length, unsigned int known) noexcept;
    SKnownText Last() const noexcept { return {At(m_nPlace), m_nLength, m_nKnown}; }

    std::unique_ptr<char[]> m_pBlock;
    std::size_t m_nCapacity;
    std::size_t m_nUsed;
    std::size_t m_nPlace;  // this and the next three: of the last string
    std::size_t m_nLength;
    unsigned int m_nKnown;
    bool m_bIsNull;
};

}  // namespace norvask

#endif
