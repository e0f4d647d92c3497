// Internal. CPlainToTree: reports a plain document to a CTreeBuilder.
//
// A name is kept as one of the tree, whichever part of it the tree shows, and is added there when
// it is first needed.
#ifndef NORVASK_LOAD_PLAIN_PLAIN_TO_TREE_H
#define NORVASK_LOAD_PLAIN_PLAIN_TO_TREE_H

#include <optional>

#include "load/plain/plain_reader.h"
#include "load/receiver/tree_builder.h"

namespace norvask {

class CPlainToTree {
public:
    struct SPayload {
        std::optional<CNameUse> use;
    };
    using SName = CPlainNames<SPayload>::SName;
    using SAttribute = SPlainAttribute<SPayload>;

    // The builder outlives the reader, and its document too: names of its tree are in use there.
    CPlainToTree(CTreeBuilder& builder, bool keepPrefixes) noexcept
        : m_Builder(builder), m_bKeepPrefixes(keepPrefixes) {}

    bool StartDocument() {
        m_bIsStarted = true;
        m_Builder.StartDocument();
        return m_Builder.HasDocument();
    }
    bool StartDTD(const char*) noexcept { return true; }
    bool EndDocument() noexcept { return true; }
    // Without memory for a document there is none, whatever stands in it.
    bool IsWithoutMemory() const noexcept { return m_bIsStarted && !m_Builder.HasDocument(); }

    bool StartNamespace(const SPrefix& prefix);
    bool EndNamespace(const SPrefix&) noexcept { return true; }

    bool Text(const SKnownText& text) {
        m_Builder.CharacterData(text);
        return true;
    }
    bool CDATA(const SKnownText& content);

    bool StartElement(SName& name, const SAttribute* attributes, std::size_t count,
                      CContent& content);
    bool EndElement(const SName&) {
        m_Builder.EndElement();
        return true;
    }

private:
    SKnownText Shown(const SName& name) const noexcept {
        return m_bKeepPrefixes ? name.kept.QName() : name.kept.LocalName();
    }
    CNameUse Use(SName& name);

    CTreeBuilder& m_Builder;
    const bool m_bKeepPrefixes;
    bool m_bIsStarted = false;
};

}  // namespace norvask

#endif
