// Internal. CElementPath: where in a document the parser is, by names and places among siblings.
//
// It counts the children of each open element by their names. What it keeps is bounded: a document
// of ever new names has a path all the same, without the places of those that came too late.
#ifndef NORVASK_LOAD_PARSER_ELEMENT_PATH_H
#define NORVASK_LOAD_PARSER_ELEMENT_PATH_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace norvask {

class CElementPath {
public:
    CElementPath() : m_Levels(1) {}

    void StartElement(const char16_t* name);
    void EndElement() noexcept { --m_nDepth; }

    // "/orders/order[3]"; empty outside of the root, and for one of more than 4 KiB.
    std::string Text() const;

private:
    static const std::size_t MOST_NAMES = 4096;
    static const std::size_t MOST_UNITS = 131072;
    static const std::size_t MOST_BYTES = 4096;
    static const std::size_t FEW = 16;
    static const std::uint32_t NO_NAME = static_cast<std::uint32_t>(-1);

    // An element that is open, or for the first one the document. Used again for others.
    struct SLevel {
        std::uint32_t name = NO_NAME;
        std::uint64_t place = 0;  // 0 if it is not known
        std::u16string rare;      // the name, if it is not kept
        std::vector<std::pair<std::uint32_t, std::uint64_t>> children;     // how many of a name
        std::unordered_map<std::uint32_t, std::uint64_t> furtherChildren;  // of other names
    };

    std::uint32_t Find(const char16_t* name);
    static std::uint64_t Count(SLevel& parent, std::uint32_t name);

    std::vector<SLevel> m_Levels;
    std::size_t m_nDepth = 0;
    std::unordered_map<std::u16string, std::uint32_t> m_Numbers;
    std::vector<const std::u16string*> m_Names;
    std::size_t m_nUnits = 0;
    std::u16string m_Key;
};

}  // namespace norvask

#endif
