// Internal. The names of a plain document, as keys of CNamePredictor.
#ifndef NORVASK_LOAD_PLAIN_PLAIN_NAME_H
#define NORVASK_LOAD_PLAIN_PLAIN_NAME_H

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

#include "load/plain/characters.h"
#include "load/plain/namespaces.h"
#include "load/receiver/event_name.h"

namespace norvask {

// QName, with the prefix as it is bound at the moment.
struct SPlainName {
    const char* text;
    std::size_t length;
    std::size_t local;  // where the local part begins
    bool isAscii;
    bool isElement;
    SPrefix* prefix = nullptr;
    SPrefix* declares =
        nullptr;          // the prefix that an attribute of this name declares; NULL for all others
    bool isLeft = false;  // to the parser

    std::size_t Size() const noexcept { return length; }
    std::uint32_t Hash() const noexcept {
        return CNameTable::Hash(text, length) + 0x9E3779B1U * prefix->uri->number + isElement;
    }

    class CKept;
};

// What lies at the cursor, if it is the name that is expected.
struct SNameAhead {
    const char* text;
    std::size_t room;  // a zero lies behind so many bytes
    bool isElement;
};

// A name that was met. It is the same name only as long as its prefix is bound as it was then.
class SPlainName::CKept {
public:
    explicit CKept(const SPlainName& met)
        : m_Text(met.text, met.length),
          m_nLocal(met.local),
          m_pPrefix(met.prefix),
          m_pUri(met.prefix->uri),
          m_pDeclares(met.declares),
          m_bIsAscii(met.isAscii),
          m_bIsElement(met.isElement),
          m_bIsLeft(met.isLeft),
          m_nFirst(FirstWord(met.text, met.length)),
          m_nMask(Mask(met.length)) {}

    bool Is(const SPlainName& name) const noexcept {
        return IsText(name.text, name.length) && m_bIsElement == name.isElement &&
               m_pUri == name.prefix->uri;
    }
    // A character that goes on with a name must not follow.
    bool Is(const SNameAhead& ahead) const noexcept {
        return ahead.room > m_Text.size() && m_bIsElement == ahead.isElement && IsAt(ahead.text) &&
               IsByte(ahead.text[m_Text.size()], BYTE_NAME_END) && IsCurrent();
    }
    // Whether the characters at `place`, where there are as many and a word can be read, are these.
    bool IsAt(const char* place) const noexcept {
        return ((Word(place) ^ m_nFirst) & m_nMask) == 0 &&
               (m_Text.size() <= sizeof(m_nFirst) ||
                std::memcmp(place + sizeof(m_nFirst), m_Text.data() + sizeof(m_nFirst),
                            m_Text.size() - sizeof(m_nFirst)) == 0);
    }
    bool IsText(const char* other, std::size_t bytes) const noexcept {
        return m_Text.size() == bytes && std::memcmp(m_Text.data(), other, bytes) == 0;
    }
    bool IsCurrent() const noexcept { return m_pPrefix->uri == m_pUri; }

    SKnownText QName() const noexcept { return {m_Text.c_str(), m_Text.size(), Known()}; }
    SKnownText LocalName() const noexcept {
        return {m_Text.c_str() + m_nLocal, m_Text.size() - m_nLocal, Known()};
    }
    SEventName Shown() const noexcept {
        return {m_pUri->text, m_Text.c_str() + m_nLocal, m_Text.c_str()};
    }
    bool HasPrefix() const noexcept { return m_nLocal != 0; }
    SPrefix* Prefix() const noexcept { return m_pPrefix; }
    SUri* Uri() const noexcept { return m_pUri; }
    SPrefix* Declares() const noexcept { return m_pDeclares; }
    bool IsLeft() const noexcept { return m_bIsLeft; }

    // Returns false if it was met in this start tag before.
    bool Meet(std::uint64_t tag) noexcept {
        const bool isNew = m_nTag != tag;
        m_nTag = tag;
        return isNew;
    }

private:
    unsigned int Known() const noexcept {
        return KNOWN_UTF8 | KNOWN_NAME | (m_bIsAscii ? KNOWN_ASCII : 0);
    }

    static std::uint64_t Word(const char* text) noexcept {
        std::uint64_t word = 0;
        std::memcpy(&word, text, sizeof(word));
        return word;
    }
    // The bits of the first bytes, as many as there are.
    static std::uint64_t FirstWord(const char* text, std::size_t length) noexcept {
        std::uint64_t word = 0;
        std::memcpy(&word, text, length < sizeof(word) ? length : sizeof(word));
        return word;
    }
    static std::uint64_t Mask(std::size_t length) noexcept {
        static const char ALL[] = "\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF";
        return FirstWord(ALL, length);
    }

    const std::string m_Text;
    const std::size_t m_nLocal;
    SPrefix* const m_pPrefix;
    SUri* const m_pUri;
    SPrefix* const m_pDeclares;
    const bool m_bIsAscii;
    const bool m_bIsElement;
    const bool m_bIsLeft;
    const std::uint64_t m_nFirst;  // of the text, and which of its bits count
    const std::uint64_t m_nMask;
    std::uint64_t m_nTag = 0;
};

}  // namespace norvask

#endif
