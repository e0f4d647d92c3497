// CPlainToTree: what a tree takes of a plain document.
#include "load/plain/plain_to_tree.h"

#include <cstring>

namespace norvask {

bool CPlainToTree::StartNamespace(const SPrefix& prefix) {
    if (m_bKeepPrefixes) {
        m_Builder.Declare(Unjudged(prefix.text), Unjudged(prefix.uri->text));
    }
    return true;
}

// The root makes the tree, so its name is the only one that comes without a use.
bool CPlainToTree::StartElement(SName& name, const SAttribute* attributes, std::size_t count,
                                CContent& content) {
    if (m_Builder.IsInElement()) {
        m_Builder.StartElement(Use(name));
    } else {
        m_Builder.StartElement(Shown(name));
    }
    // Without their prefixes, two attributes may have one name.
    bool areDistinct = true;
    for (std::size_t i = 0; i < count && !m_bKeepPrefixes; ++i) {
        areDistinct = areDistinct && !attributes[i].name->kept.HasPrefix();
    }
    if (areDistinct) {
        m_Builder.ReserveAttributes(count);
    }
    for (std::size_t i = 0; i < count; ++i) {
        const SKnownText value = attributes[i].Value(content);
        if (areDistinct) {
            m_Builder.AppendAttribute(Use(*attributes[i].name), value);
        } else {
            m_Builder.SetAttribute(Use(*attributes[i].name), value);
        }
    }
    return true;
}

CNameUse CPlainToTree::Use(SName& name) {
    std::optional<CNameUse>& use = name.payload.use;
    if (!use.has_value()) {
        use.emplace(m_Builder.Tree(), Shown(name));
    }
    return CNameUse::Another(use->Name());
}

bool CPlainToTree::CDATA(const SKnownText& content) {
    if (!content.IsEmpty() && !m_Builder.AddBinary(content)) {
        m_Builder.AddText(content);
    }
    return true;
}

}  // namespace norvask
