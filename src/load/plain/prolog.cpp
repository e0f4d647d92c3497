// The byte order mark, XMLDecl, Misc*, doctypedecl, Misc*.
#include "load/plain/prolog.h"

#include <strings.h>

namespace norvask {
namespace {

// The case of a letter counts for all but the name of an encoding; no other value is plain.
bool ReadPseudoAttribute(CContent& content, const char* name, const char* const (&values)[2]) {
    CWindow& window = content.Window();
    if (!window.Skip(name, std::strlen(name))) {
        return false;
    }
    content.ReadS();
    if (!window.Skip('=')) {
        return false;
    }
    content.ReadS();
    const char quote = window.Peek();
    if (quote != '"' && quote != '\'') {
        return false;
    }
    const bool anyCase = *name == 'e';
    for (const char* value : values) {
        const std::size_t length = std::strlen(value);
        if (!window.Has(length + 2)) {
            continue;
        }
        const char* const at = window.At() + 1;
        const bool isValue =
            anyCase ? strncasecmp(at, value, length) == 0 : std::strncmp(at, value, length) == 0;
        if (isValue && at[length] == quote) {
            window.GoTo(window.At() + length + 2);
            return true;
        }
    }
    return false;
}

// In this order, each behind white space.
bool ReadXMLDecl(CContent& content) {
    CWindow& window = content.Window();
    window.GoTo(window.At() + std::strlen("<?xml"));
    if (!content.ReadS() || !ReadPseudoAttribute(content, "version", {"1.0", "1.0"})) {
        return false;
    }
    bool hasSpace = content.ReadS();
    if (hasSpace && window.Peek() == 'e') {
        if (!ReadPseudoAttribute(content, "encoding", {"UTF-8", "UTF-8"})) {
            return false;
        }
        hasSpace = content.ReadS();
    }
    if (hasSpace && window.Peek() == 's') {
        if (!ReadPseudoAttribute(content, "standalone", {"yes", "no"})) {
            return false;
        }
        content.ReadS();
    }
    // The parser looks for the end of it only so far.
    const std::size_t MOST_BYTES = 1024;
    return window.Skip("?>", 2) && window.InToken(window.At()) <= MOST_BYTES;
}

bool IsXMLDeclNext(CContent& content) {
    return content.IsNext("<?xml", 5) && content.Window().Has(6) &&
           IsByte(content.Window().At()[5], BYTE_SPACE);
}

}  // namespace

bool ReadProlog(CContent& content, CDoctype* doctype) {
    content.Window().Skip("\xEF\xBB\xBF", 3);
    content.Window().BeginToken();
    if ((IsXMLDeclNext(content) && !ReadXMLDecl(content)) || !content.ReadMisc()) {
        return false;
    }
    if (doctype != nullptr && content.IsNext("<!DOCTYPE", 9) &&
        (!doctype->Read(content) || !content.ReadMisc())) {
        return false;
    }
    return content.IsNext("<", 1) && !content.IsNext("<!", 2);
}

}  // namespace norvask
