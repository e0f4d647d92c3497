// Internal. SParserName: a name as the parser gives it, as a key of CNamePredictor.
#ifndef NORVASK_LOAD_PARSER_PARSER_NAME_H
#define NORVASK_LOAD_PARSER_PARSER_NAME_H

#include <cstddef>
#include <cstdint>
#include <string>

#include "foundation/utf8.h"
#include "tree/memory/name_table.h"

namespace norvask {

struct SParserName {
    const char16_t* uri;
    const char16_t* name;

    std::size_t Size() const noexcept { return Utf16Length(uri) + Utf16Length(name); }
    // Both decide: a document may bind one prefix to ever new namespaces. Of a URI the beginning
    // does: a tag may name a long one in each of its attributes.
    std::uint32_t Hash() const noexcept {
        return HashOf(name, Utf16Length(name)) + 0x9E3779B1U * HashOf(uri, BeginningOf(uri));
    }

    // A name that was met. Deliberate: the text of a URI is compared only once for each place where
    // it lies, since the parser keeps its URIs in a pool that does not change during a load.
    class CKept {
    public:
        explicit CKept(const SParserName& met)
            : m_Uri(met.uri), m_Name(met.name), m_pUri(met.uri) {}

        bool Is(const SParserName& other) noexcept {
            if (!IsSame(m_Name, other.name)) {
                return false;
            }
            if (m_pUri == other.uri) {
                return true;
            }
            if (!IsSame(m_Uri, other.uri)) {
                return false;
            }
            m_pUri = other.uri;
            return true;
        }

    private:
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

        std::u16string m_Uri;
        std::u16string m_Name;
        const char16_t* m_pUri;  // where the parser has the URI
    };

private:
    static std::uint32_t HashOf(const char16_t* text, std::size_t units) noexcept {
        return CNameTable::Hash(reinterpret_cast<const char*>(text), units * sizeof(char16_t));
    }
    static std::size_t BeginningOf(const char16_t* uri) noexcept {
        const std::size_t MOST_UNITS = 256;
        std::size_t units = 0;
        while (units < MOST_UNITS && uri[units] != 0) {
            ++units;
        }
        return units;
    }
};

}  // namespace norvask

#endif
