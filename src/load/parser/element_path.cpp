// CElementPath: counting children by name.
#include "load/parser/element_path.h"

#include <algorithm>

#include "load/parser/dom_string.h"

namespace norvask {

void CElementPath::StartElement(const char16_t* name) {
    const std::uint32_t number = Find(name);
    const std::uint64_t place = number == NO_NAME ? 0 : Count(m_Levels[m_nDepth], number);
    ++m_nDepth;
    if (m_nDepth == m_Levels.size()) {
        m_Levels.emplace_back();
    }
    SLevel& level = m_Levels[m_nDepth];
    level.name = number;
    level.place = place;
    level.children.clear();
    if (!level.furtherChildren.empty()) {  // a table that was large stays so
        level.furtherChildren = {};
    }
    if (number == NO_NAME) {
        level.rare = name;
    }
}

std::uint32_t CElementPath::Find(const char16_t* name) {
    m_Key = name;
    const auto found = m_Numbers.find(m_Key);
    if (found != m_Numbers.end()) {
        return found->second;
    }
    if (m_Names.size() >= MOST_NAMES || m_nUnits + m_Key.size() > MOST_UNITS) {
        return NO_NAME;
    }
    m_Names.reserve(m_Names.size() + 1);
    const auto number = static_cast<std::uint32_t>(m_Names.size());
    m_Names.push_back(&m_Numbers.emplace(m_Key, number).first->first);
    m_nUnits += m_Key.size();
    return number;
}

// One more child of this name; returns how many there are now.
std::uint64_t CElementPath::Count(SLevel& parent, std::uint32_t name) {
    const auto known = std::find_if(parent.children.begin(), parent.children.end(),
                                    [name](const auto& child) { return child.first == name; });
    if (known != parent.children.end()) {
        return ++known->second;
    }
    if (parent.children.size() < FEW) {
        parent.children.emplace_back(name, 1);
        return 1;
    }
    return ++parent.furtherChildren[name];
}

std::string CElementPath::Text() const {
    std::string path;
    CDOMString narrow;
    for (std::size_t i = 1; i <= m_nDepth; ++i) {
        const SLevel& level = m_Levels[i];
        const std::u16string& name = level.name == NO_NAME ? level.rare : *m_Names[level.name];
        if (path.size() + name.size() > MOST_BYTES) {
            return "";
        }
        path += '/';
        path += narrow.ConvertByOwn(name.data(), name.size()).text;
        if (i > 1) {
            path += '[';
            path += level.place == 0 ? "?" : std::to_string(level.place);
            path += ']';
        }
    }
    return path;
}

}  // namespace norvask
