// The walk over a tree that is written, and the three operations of nodes that start one.
#include "write/tree_writer.h"

#include "foundation/errors.h"
#include "tree/attribute_array.h"
#include "tree/attribute_strings.h"

namespace norvask {
namespace {

// Throws CXMLException (invalid name).
void CheckName(const SKnownText& name) {
    if (!name.Is(KNOWN_NAME)) {
        RequireName(name.text);
    }
}

}  // namespace

CTreeWriter::CTreeWriter(std::ostream& out, bool format, const char* indent)
    : m_pBuffer(new char[COutput::LARGE]),
      m_Output(out, m_pBuffer.get(), COutput::LARGE),
      m_bFormat(format),
      m_Indent(indent == nullptr ? "" : indent),
      m_ChildIndent(m_Indent) {}

void CTreeWriter::Write(CXMLNode* top) {
    m_Output.FlushAfter([this, top] {
        if (CNodeAccess::ElementOrNull(top) == nullptr) {
            WriteContent(top);
        } else {
            WriteElement(top);
        }
    });
}

void CTreeWriter::WriteContent(CXMLNode* leaf) {
    if (CNodeAccess::BodyOf(leaf)->kind == CXMLNode::NODE_TEXT) {
        m_Output.Text(CNodeAccess::TextOf(leaf)->text.Known());
    } else {
        const SBinaryBody* const body = CNodeAccess::BinaryOf(leaf);
        m_Output.Base64(body->data, body->length, true);
    }
}

// The walk. The pen and the innermost level stay in registers; whatever is called on the way may
// change the tree, so nodes are looked at anew behind every step that may call somebody.
void CTreeWriter::WriteElement(CXMLNode* top) {
    CPen pen(m_Output);
    Walk::SLevel level(nullptr, {true});  // outside of the topmost element
    EObject object = EObject::ELEMENT;    // which is written here whatever its class
    CXMLNode* node = top;
    for (;;) {
        WriteNode(pen, node, object, level);
        while (level.node != nullptr && (node = Walk::ChildOf(level)) == nullptr) {
            const Walk::SLevel done = level;
            m_Walk.Take(level);
            if (!done.own.textSeen) {
                NewLine(pen, m_Walk.Depth());
            }
            EndTag(pen, CNodeAccess::ElementOf(done.node));
        }
        if (level.node == nullptr) {
            break;
        }
        ++level.next;
        object = CNodeAccess::ObjectOf(node);
    }
    pen.Give();
}

// Writes a node of the innermost level; an element with children becomes the innermost itself.
NORVASK_INLINE void CTreeWriter::WriteNode(CPen& pen, CXMLNode* node, EObject object,
                                           Walk::SLevel& level) {
    switch (object) {
        case EObject::ELEMENT:
            break;
        case EObject::TEXT:
            level.own.textSeen = true;
            pen.Text(CNodeAccess::TextOf(node)->text);
            return;
        default:
            pen.Give();
            level.own.textSeen = WriteOther(node, object, level.own.textSeen);
            pen.Take();
            return;
    }
    if (!level.own.textSeen) {
        NewLine(pen, m_Walk.Depth());
    }
    const SElementBody* const body = CNodeAccess::ElementOf(node);
    StartTag(pen, body);
    Walk::SLevel inside(node, {false});
    CXMLNode* const first = Walk::ChildOf(inside);
    if (first == nullptr) {
        pen.Literal("/>");
        return;
    }
    pen.Literal(">");
    // Most elements have one text and nothing else.
    if (CNodeAccess::ObjectOf(first) == EObject::TEXT) {
        inside.own.textSeen = true;
        inside.next = 1;
        pen.Text(CNodeAccess::TextOf(first)->text);
        if (Walk::ChildOf(inside) == nullptr) {
            EndTag(pen, CNodeAccess::ElementOf(node));
            return;
        }
    }
    pen.Give();
    m_Walk.Put(level);
    level = inside;
}

// A binary node, or an object of a derived class. Returns what has become of `textSeen`.
bool CTreeWriter::WriteOther(CXMLNode* node, EObject object, bool textSeen) {
    const bool isContent =
        object != EObject::DERIVED || node->GetNodeType() != CXMLNode::NODE_ELEMENT;
    textSeen = textSeen || isContent;
    if (m_bFormat && !textSeen) {
        m_Output.NewLine(m_Indent.c_str(), m_Walk.Depth());
    }
    if (object == EObject::DERIVED) {
        WriteDerived(node);
    } else {
        WriteContent(node);
    }
    return textSeen;
}

NORVASK_INLINE void CTreeWriter::NewLine(CPen& pen, std::size_t depth) {
    if (!m_bFormat) {
        return;
    }
    if (m_Indent.empty()) {
        pen.NewLine(depth);
        return;
    }
    pen.Give();
    m_Output.NewLine(m_Indent.c_str(), depth);
    pen.Take();
}

NORVASK_INLINE void CTreeWriter::StartTag(CPen& pen, const SElementBody* body) {
    if (!pen.ShortName("<", body->name)) {
        const SKnownText name = body->name.Known();
        pen.Give();
        CheckName(name);
        m_Output.Name("<", name);
        pen.Take();
    }
    if (body->attributes == nullptr) {
        return;
    }
    for (CXMLAttribut** slots = body->attributes->Slots(); *slots != nullptr; ++slots) {
        const CTreeString name = CAttributeAccess::Name(*slots);
        if (!pen.ShortName(" ", name)) {
            const SKnownText known = name.Known();
            pen.Give();
            CheckName(known);
            m_Output.Name(" ", known);
            pen.Take();
        }
        pen.Literal("=\"");
        pen.Text(CAttributeAccess::Value(*slots));
        pen.Literal("\"");
    }
}

NORVASK_INLINE void CTreeWriter::EndTag(CPen& pen, const SElementBody* body) {
    if (!pen.ShortName("</", body->name)) {
        pen.Give();
        m_Output.Name("</", body->name.Known());
        pen.Take();
    }
    pen.Literal(">");
}

// An object of a derived class writes itself. The string for its indentation follows the walk up
// and down, so a level costs no copy of it.
void CTreeWriter::WriteDerived(CXMLNode* node) {
    m_ChildIndent.resize(m_Indent.size() + m_Walk.Depth(), '\t');
    std::ostream& out = m_Output.Suspend();
    CNodeAccess::Save(node, out, m_bFormat, &m_ChildIndent[0]);
    m_Output.Resume();
}

void CXMLNode::Save(std::ostream& out, bool format, char* indent) {
    CTreeWriter(out, format, indent).Write(this);
}

void CXMLTextNode::Save(std::ostream& out, bool format, char* indent) {
    CTreeWriter(out, format, indent).Write(this);
}

void CXMLBinNode::Save(std::ostream& out, bool format, char* indent) {
    CTreeWriter(out, format, indent).Write(this);
}

}  // namespace norvask
