// The largest texts of a document, of which only the beginnings are kept.
#ifndef NORVASK_EXAMPLES_LARGEST_TEXTS_H
#define NORVASK_EXAMPLES_LARGEST_TEXTS_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

struct SLargeText {
    std::size_t size = 0;  // in bytes
    std::uint64_t offset = 0;
    std::string path;
    std::string beginning;
};

class CLargestTexts {
public:
    explicit CLargestTexts(std::size_t most) : m_Most(most) {}

    // Whether a text of this size is among the largest so far. Of texts of one size the first stay,
    // so a document of a million equal texts is not a million times new.
    bool Takes(std::size_t size) const {
        return m_Texts.size() < m_Most || (m_Most > 0 && size > m_Texts.back().size);
    }

    void Add(std::size_t size, std::uint64_t offset, const std::string& path, const char* text) {
        const auto place =
            std::find_if(m_Texts.begin(), m_Texts.end(),
                         [size](const SLargeText& other) { return other.size < size; });
        m_Texts.insert(place, {size, offset, End(path), Beginning(text, size)});
        if (m_Texts.size() > m_Most) m_Texts.pop_back();
    }

    // The largest first.
    const std::vector<SLargeText>& Texts() const { return m_Texts; }

private:
    static constexpr std::size_t kKept = 1000;

    static bool IsInCharacter(char byte) {
        return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80;
    }

    static std::string Beginning(const char* text, std::size_t size) {
        if (size <= kKept) return {text, size};
        std::size_t kept = kKept;
        while (kept > 0 && IsInCharacter(text[kept])) {
            --kept;
        }
        return std::string(text, kept) + "…";
    }

    static std::string End(const std::string& path) {
        if (path.size() <= kKept) return path;
        std::size_t begin = path.size() - kKept;
        while (begin < path.size() && IsInCharacter(path[begin])) {
            ++begin;
        }
        return "…" + path.substr(begin);
    }

    std::size_t m_Most;
    std::vector<SLargeText> m_Texts;
};

#endif
