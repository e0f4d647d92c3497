// Internal. CDoctype: a document type declaration that leaves the document behind it plain.
//
// That is one with an internal subset of element and attribute list declarations, comments and
// processing instructions, and nothing else: no entities, no parameter entities, nothing that would
// have to be fetched. It is read here only as far as needed to find its end; the parser reads it
// too, and tells what it declares.
#ifndef NORVASK_LOAD_PLAIN_DOCTYPE_H
#define NORVASK_LOAD_PLAIN_DOCTYPE_H

#include <string>

#include "load/parser/declarations.h"
#include "load/plain/window.h"

namespace norvask {

class CContent;

class CDoctype {
public:
    // With the cursor on "<!DOCTYPE"; leaves it behind. Returns false for one that is not plain.
    bool Read(CContent& content);

    // Whether there was one, and the name of the root that it declares.
    bool IsThere() const noexcept { return !m_Text.empty(); }
    const char* RootName() const noexcept { return m_RootName.c_str(); }
    // Lets the parser read it. Returns false for one that it refuses.
    bool Declare() { return m_Declarations.Read(m_Text); }

    // What is declared of the attributes of an element; NULL if nothing is that matters.
    const CDeclarations::Attributes* Of(const char* element, std::size_t length) const {
        return m_Declarations.Find(element, length);
    }

private:
    bool ReadName(CContent& content);
    bool ReadSubset(CContent& content);
    static bool SkipDeclaration(CWindow& window);

    std::string m_RootName;
    std::string m_Text;  // without comments and processing instructions
    CDeclarations m_Declarations;
};

}  // namespace norvask

#endif
