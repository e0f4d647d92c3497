// Internal. How names, attributes and texts are written whose strings tell what is known of them
// (tree_string.h): those of trees, and attributes wherever they are.
#ifndef NORVASK_WRITE_TREE_MARKUP_H
#define NORVASK_WRITE_TREE_MARKUP_H

#include "foundation/known_text.h"
#include "tree/attribute_access.h"
#include "tree/tree_string.h"
#include "write/output.h"

namespace norvask {

// Names of ASCII characters that are known to be names need neither a check nor escaping.
inline bool IsPlainName(const char* name) noexcept {
    const unsigned int PLAIN = STRING_VALID | STRING_ASCII;
    return (FlagsOf(name) & PLAIN) == PLAIN;
}

inline bool IsName(const char* name) {
    return HasFlag(name, STRING_VALID) || JudgeName(name).Is(KNOWN_NAME);
}

// A value or a text.
inline void WriteText(COutput& output, const char* text) {
    if (HasFlag(text, STRING_UTF8)) {
        output.EscapedUtf8(text, LengthOf(text));
    } else {
        output.Escaped(text);
    }
}

// One attribute of a start tag, the blank in front included. Its name must be one.
inline void WriteAttribute(COutput& output, const CXMLAttribut* attribute) {
    const char* name = CAttributeAccess::Name(attribute);
    if (IsPlainName(name)) {
        output.LiteralAndPlain(" ", name, LengthOf(name));
    } else {
        output.Literal(" ");
        output.Escaped(name);
    }
    output.Literal("=\"");
    WriteText(output, CAttributeAccess::Value(attribute));
    output.Literal("\"");
}

}  // namespace norvask

#endif
