// CDoctype: doctypedecl, as far as it is plain.
#include "load/plain/doctype.h"

#include "load/plain/content.h"

namespace norvask {
namespace {

// The parser reads the declaration once more when the document turns out not to be plain further
// on, so the document must be longer by so much.
const std::size_t LEAST_SHARE = 16;

}  // namespace

// '<!DOCTYPE' S Name S? '[' intSubset ']' S? '>'
bool CDoctype::Read(CContent& content) {
    CWindow& window = content.Window();
    m_Text.clear();
    window.GoTo(window.At() + std::strlen("<!DOCTYPE"));
    if (!content.ReadS() || !ReadName(content)) {
        return false;
    }
    content.ReadS();
    if (!window.Skip('[') || !ReadSubset(content)) {
        return false;
    }
    content.ReadS();
    m_Text = "<!DOCTYPE " + m_RootName + " [" + m_Text + "]>";
    return window.Skip('>') && content.Window().SourceSize() / LEAST_SHARE >= m_Text.size();
}

bool CDoctype::ReadName(CContent& content) {
    CWindow& window = content.Window();
    bool isAscii = true;
    window.BeginToken();
    if (!content.ReadNCName(isAscii) || (window.Skip(':') && !content.ReadNCName(isAscii))) {
        return false;
    }
    m_RootName.assign(window.Token(), window.InToken(window.At()));
    return true;
}

bool CDoctype::ReadSubset(CContent& content) {
    CWindow& window = content.Window();
    for (;;) {
        if (!content.ReadMisc()) {
            return false;
        }
        if (window.Skip(']')) {
            return true;
        }
        window.BeginToken();
        if ((!content.IsNext("<!ELEMENT", 9) && !content.IsNext("<!ATTLIST", 9)) ||
            !SkipDeclaration(window)) {
            return false;
        }
        m_Text.append(window.Token(), window.InToken(window.At()));
    }
}

// Up to the '>' that is not within quotes. References are not plain, neither those to parameter
// entities nor those in default values.
bool CDoctype::SkipDeclaration(CWindow& window) {
    window.GoTo(window.At() + 2);
    for (char quote = '\0';;) {
        const char next = window.Peek();
        if (next == '\0' || next == '<' || next == '&' || next == '%') {
            return false;
        }
        window.GoTo(window.At() + 1);
        if (next == '>' && quote == '\0') {
            return true;
        }
        if (next == quote) {
            quote = '\0';
        } else if (quote == '\0' && (next == '"' || next == '\'')) {
            quote = next;
        }
    }
}

}  // namespace norvask
