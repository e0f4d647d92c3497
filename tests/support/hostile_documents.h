// Documents that cost whoever reads them far more than who wrote them, or that make the reader read
// something else.
#ifndef NORVASK_TESTS_SUPPORT_HOSTILE_DOCUMENTS_H
#define NORVASK_TESTS_SUPPORT_HOSTILE_DOCUMENTS_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace norvask_test {

inline std::string Times(std::size_t count, const std::string& text) {
    std::string all;
    all.reserve(count * text.size());
    for (std::size_t i = 0; i < count; ++i)
        all += text;
    return all;
}

// So many of these, each with its number in place of "#".
inline std::string Numbered(std::size_t count, const std::string& pattern) {
    const std::size_t at = pattern.find('#');
    std::string all;
    for (std::size_t i = 0; i < count; ++i)
        all += pattern.substr(0, at) + std::to_string(i) + pattern.substr(at + 1);
    return all;
}

// What the parser's tables of names are ordered by, before it is reduced to their size.
inline std::uint64_t ParserHash(const std::string& ascii) {
    std::uint64_t hash = 0;
    for (const char c : ascii)
        hash = hash * 38 + (hash >> 24) + static_cast<unsigned char>(c);
    return hash;
}

// Different names of one hash: a letter more and 38 less behind it is the same. Names of 2 * pairs
// letters; of them there are about 3 to the power of `pairs`.
inline std::vector<std::string> CollidingNames(std::size_t count, std::size_t pairs = 10) {
    static const char* const SAME[] = {"az", "bT", "c."};
    std::vector<std::string> names;
    for (std::size_t number = 0; names.size() < count; ++number) {
        std::string name;
        std::size_t rest = number;
        for (std::size_t i = 0; i < pairs; ++i) {
            name += SAME[rest % 3];
            rest /= 3;
        }
        if (rest != 0) break;
        if (names.empty() || ParserHash(name) == ParserHash(names.front())) names.push_back(name);
    }
    return names;
}

// The names, each between two texts.
inline std::string Around(const std::vector<std::string>& names, const std::string& before,
                          const std::string& behind) {
    std::string all;
    for (const std::string& name : names)
        all += before + name + behind;
    return all;
}

inline std::string Deep(std::size_t levels) { return Times(levels, "<a>") + Times(levels, "</a>"); }

// Each entity is ten of the one before.
inline std::string Laughs(int levels) {
    std::string text = "<!DOCTYPE a [<!ENTITY e0 'lol'>";
    for (int i = 1; i <= levels; ++i)
        text += "<!ENTITY e" + std::to_string(i) + " '" +
                Times(10, "&e" + std::to_string(i - 1) + ";") + "'>";
    return text + "]><a>&e" + std::to_string(levels) + ";</a>";
}

// The same of parameter entities, which are expanded while the declaration is read.
inline std::string ParameterLaughs(int levels) {
    std::string text = "<!DOCTYPE a [<!ENTITY % p0 '<!-- lol -->'>";
    for (int i = 1; i <= levels; ++i)
        text += "<!ENTITY % p" + std::to_string(i) + " '" +
                Times(10, "&#37;p" + std::to_string(i - 1) + ";") + "'>";
    return text + "%p" + std::to_string(levels) + ";]><a/>";
}

// A content model whose automaton has as many states as it has subsets of positions.
inline std::string ContentModel(int choices) {
    return "<!DOCTYPE a [<!ELEMENT a ((b|c)*,b" +
           Times(static_cast<std::size_t>(choices), ",(b|c)") + ")>]><a><b/></a>";
}

// In other encodings. The text is ASCII.
inline std::string Wide(const std::string& ascii, std::size_t width, bool bigEndian, bool mark) {
    std::string bytes;
    const auto add = [&](unsigned int unit) {
        for (std::size_t i = 0; i < width; ++i) {
            const std::size_t byte = bigEndian ? width - 1 - i : i;
            bytes += byte < 2 ? static_cast<char>(unit >> (8 * byte)) : '\0';
        }
    };
    if (mark) add(0xFEFF);
    for (const char c : ascii)
        add(static_cast<unsigned char>(c));
    return bytes;
}

// All markup of the text as UTF-7, behind a declaration that says so.
inline std::string Utf7(const std::string& ascii) {
    static const char DIGITS[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string bytes = "<?xml version='1.0' encoding='UTF-7'?>";
    for (const char c : ascii) {
        if (std::string("<>!&%[]\"';#=*|@").find(c) == std::string::npos) {
            bytes += c;
            continue;
        }
        const unsigned int bits = static_cast<unsigned char>(c) * 4U;  // 16 bits in three digits
        bytes += '+';
        for (int shift = 12; shift >= 0; shift -= 6)
            bytes += DIGITS[bits >> shift & 63];
        bytes += '-';
    }
    return bytes;
}

}  // namespace norvask_test

#endif
