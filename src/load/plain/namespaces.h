// Internal. CNamespaces: the prefixes of a plain document, and to what each is bound at the moment.
//
// A prefix and a URI is kept once, as long as the document is read; so two URIs are equal exactly
// when they are the same object. The parser keeps them as long, too.
#ifndef NORVASK_LOAD_PLAIN_NAMESPACES_H
#define NORVASK_LOAD_PLAIN_NAMESPACES_H

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <unordered_map>
#include <vector>

#include "tree/memory/name_table.h"

namespace norvask {

struct SPrefix;

struct SUri {
    const char* text;
    std::uint32_t number = 0;  // in the order in which they came
    bool isReserved = false;
    // In which start tag an attribute of this namespace was last met, and with which prefix.
    std::uint64_t tag = 0;
    const SPrefix* prefix = nullptr;

    explicit SUri(const char* shown) noexcept : text(shown) {}
};

struct SPrefix {
    const char* text;
    std::size_t length;
    SUri* uri;  // NULL while it is not bound
    bool isReserved = false;

    std::uint64_t tag = 0;  // that declared it last

    SPrefix(const char* shown, std::size_t bytes, SUri* bound) noexcept
        : text(shown), length(bytes), uri(bound) {}
};

class CNamespaces {
public:
    CNamespaces();
    CNamespaces(const CNamespaces&) = delete;
    CNamespaces& operator=(const CNamespaces&) = delete;

    // A prefix of elements or attributes, whether it is bound or not; empty for none. Throw
    // std::bad_alloc, as Declare does.
    SPrefix& OfElement(const char* text, std::size_t length) {
        return length == 0 ? m_Default : Prefix(text, length);
    }
    SPrefix& OfAttribute(const char* text, std::size_t length) {
        return length == 0 ? m_OfAttributes : Prefix(text, length);
    }
    // The prefix that an attribute of this name declares; NULL if it is none that declares.
    SPrefix* Declared(const SPrefix& prefix, const char* local, std::size_t length) {
        if (&prefix == &m_OfDeclarations) {
            return &Prefix(local, length);
        }
        const bool isDefault =
            &prefix == &m_OfAttributes && length == 5 && std::memcmp(local, "xmlns", 5) == 0;
        return isDefault ? &m_Default : nullptr;
    }
    // Whether nothing but a declaration can have this prefix.
    bool IsOfDeclarations(const SPrefix& prefix) const noexcept {
        return &prefix == &m_OfDeclarations;
    }

    // Binds a prefix for the start tag of this number; an empty URI, which only the default can
    // have, is none. Returns false for what a document may not declare, twice included, and for
    // what is left to the parser.
    bool Declare(SPrefix& prefix, const SKnownText& uri, std::uint64_t tag);

    // How many declarations are in force, and going back to that number.
    std::size_t Count() const noexcept { return m_Declarations.size(); }
    const SPrefix& At(std::size_t index) const noexcept { return *m_Declarations[index].prefix; }
    void ReturnTo(std::size_t count) noexcept;

private:
    struct SHash {
        std::size_t operator()(const std::string& text) const noexcept {
            return CNameTable::Hash(text.data(), text.size());
        }
    };
    struct SDeclaration {
        SDeclaration(SPrefix* declared, SUri* boundBefore) noexcept
            : prefix(declared), before(boundBefore) {}
        SPrefix* prefix;
        SUri* before;
    };

    SPrefix& Prefix(const char* text, std::size_t length);
    SPrefix& FindPrefix(const char* text, std::size_t length);
    SUri& Uri(const SKnownText& text);

    SUri m_NoUri;
    SUri m_XmlUri;
    SUri m_DeclarationsUri;
    SPrefix m_Default;
    SPrefix m_OfAttributes;
    SPrefix m_Xml;
    SPrefix m_OfDeclarations;
    std::unordered_map<std::string, SPrefix, SHash> m_Prefixes;  // the others
    std::unordered_map<std::string, SUri, SHash> m_Uris;
    std::vector<SDeclaration> m_Declarations;
    SPrefix* m_pLast;  // the one that was asked for last
};

}  // namespace norvask

#endif
