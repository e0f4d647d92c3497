// Internal. CTreeWriter: writes an element with everything below it.
//
//   element := "<" name (" " name "=" quoted-value)* ( "/>" | ">" child* "</" name ">" )
//
// With format every child stands on a line of its own, indented by one more TAB than its parent,
// and so does the end tag behind children; from the first text or binary child of an element on, no
// line end is written in it.
#ifndef NORVASK_WRITE_TREE_WRITER_H
#define NORVASK_WRITE_TREE_WRITER_H

#include <memory>
#include <string>

#include "tree/walk.h"
#include "write/output.h"
#include "write/pen.h"

namespace norvask {

class CTreeWriter {
public:
    // `indent` is the indentation of the topmost element. Throws std::bad_alloc.
    CTreeWriter(std::ostream& out, bool format, const char* indent);

    // Writes the node. Whatever is thrown, what came before has been written.
    void Write(CXMLNode* top);

private:
    // What the walk keeps of an open element.
    struct SOpen {
        bool textSeen;
    };

    using Walk = CWalk<SOpen>;

    void WriteContent(CXMLNode* leaf);
    void WriteElement(CXMLNode* top);
    void WriteNode(CPen& pen, CXMLNode* node, EObject object, Walk::SLevel& level);
    bool WriteOther(CXMLNode* node, EObject object, bool textSeen);
    void WriteDerived(CXMLNode* node);

    void NewLine(CPen& pen, std::size_t depth);
    void StartTag(CPen& pen, const SElementBody* body);
    void EndTag(CPen& pen, const SElementBody* body);

    // Not on the stack, where the writers of derived objects nest.
    const std::unique_ptr<char[]> m_pBuffer;
    COutput m_Output;
    const bool m_bFormat;
    const std::string m_Indent;
    std::string m_ChildIndent;
    Walk m_Walk;  // the levels outside of the innermost one
};

}  // namespace norvask

#endif
