// Internal. CDeclarations: what a DTD says that changes how a start tag is read.
//
// The parser reads the DTD and decides whether it is one. Of what it tells, nothing matters for a
// document that is not validated but attributes with a default value, and those of other types than
// CDATA, whose white space is normalised further.
#ifndef NORVASK_LOAD_PARSER_DECLARATIONS_H
#define NORVASK_LOAD_PARSER_DECLARATIONS_H

#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

#include "tree/memory/name_table.h"

namespace norvask {

struct SDeclaredAttribute {
    std::string name;  // as it is written
    bool isCDATA;
    bool hasDefault;
    std::string value;            // the default
    unsigned int valueKnown = 0;  // KNOWN_... of it
};

class CDeclarations {
public:
    using Attributes = std::vector<SDeclaredAttribute>;

    // Reads a document type declaration of element and attribute list declarations only. Returns
    // false for one that the parser refuses.
    bool Read(const std::string& doctype);

    // Those of the attributes of an element that matter; NULL if there are none.
    const Attributes* Find(const char* element, std::size_t length) const {
        if (m_Elements.empty()) {
            return nullptr;
        }
        const auto found = m_Elements.find(std::string(element, length));
        return found == m_Elements.end() ? nullptr : &found->second;
    }

private:
    class CReceiver;
    struct SHash {
        std::size_t operator()(const std::string& text) const noexcept {
            return CNameTable::Hash(text.data(), text.size());
        }
    };

    std::unordered_map<std::string, Attributes, SHash> m_Elements;
};

}  // namespace norvask

#endif
