#include "write/tree_writer.h"

#include "tree/attribute_array.h"
#include "tree/child_array.h"
#include "write/tree_markup.h"

namespace norvask {
CTreeWriter::CTreeWriter(std::ostream& out, bool format, const char* indent)
    : m_pBuffer(new char[COutput::LARGE]),
      m_Output(out, m_pBuffer.get(), COutput::LARGE),
      m_bFormat(format),
      m_Indent(indent == nullptr ? "" : indent),
      m_ChildIndent(m_Indent) {}

void CTreeWriter::Write(CXMLNode* top) {
    m_Output.FlushAfter([this, top] {
        switch (CNodeAccess::BodyOf(top)->m_nKind) {
            case CXMLNode::NODE_TEXT:
                WriteText(m_Output, CNodeAccess::TextOf(top)->m_pText);
                break;
            case CXMLNode::NODE_BINARY: {
                const SBinaryBody* body = CNodeAccess::BinaryOf(top);
                m_Output.Base64(body->m_pData, body->m_nLength, true);
                break;
            }
            default:
                WriteElement(top);
                WriteChildren();
                break;
        }
    });
}

// The start tag; an element with children becomes the innermost level.
void CTreeWriter::WriteElement(CXMLNode* element) {
    WriteStartTag(element);
    if (ChildSlots(CNodeAccess::ElementOf(element))[0] == nullptr) {
        m_Output.Literal("/>");
        return;
    }
    m_Output.Literal(">");
    m_Levels.push_back({element, 0, false});
}

void CTreeWriter::WriteChildren() {
    while (!m_Levels.empty()) {
        SLevel& level = m_Levels.back();
        CXMLNode* child = ChildSlots(CNodeAccess::ElementOf(level.element))[level.next];
        if (child == nullptr) {
            WriteEndTag();
        } else {
            ++level.next;
            WriteChild(child, level);
        }
    }
}

void CTreeWriter::WriteChild(CXMLNode* child, SLevel& level) {
    const EObject object = CNodeAccess::ObjectOf(child);
    const bool isContent = object == EObject::DERIVED
                               ? child->GetNodeType() != CXMLNode::NODE_ELEMENT
                               : object != EObject::ELEMENT;
    if (isContent) {
        level.textSeen = true;
    }
    if (m_bFormat && !level.textSeen) {
        m_Output.NewLine(m_Indent.c_str(), m_Levels.size());
    }
    switch (object) {
        case EObject::ELEMENT:
            WriteElement(child);
            break;
        case EObject::TEXT:
            WriteText(m_Output, CNodeAccess::TextOf(child)->m_pText);
            break;
        case EObject::BINARY: {
            const SBinaryBody* body = CNodeAccess::BinaryOf(child);
            m_Output.Base64(body->m_pData, body->m_nLength, true);
            break;
        }
        default:
            WriteDerived(child);
            break;
    }
}

void CTreeWriter::WriteStartTag(CXMLNode* element) {
    const SElementBody* body = CNodeAccess::ElementOf(element);
    const char* name = body->m_pName;
    if (IsPlainName(name)) {
        m_Output.LiteralAndPlain("<", name, LengthOf(name));
    } else {
        RequireName(name);
        m_Output.Literal("<");
        m_Output.Escaped(name);
    }
    if (body->m_pAttributes != nullptr) {
        for (CXMLAttribut** slots = body->m_pAttributes->Slots(); *slots != nullptr; ++slots) {
            RequireName(CAttributeAccess::Name(*slots));
            WriteAttribute(m_Output, *slots);
        }
    }
}

void CTreeWriter::WriteEndTag() {
    const SLevel level = m_Levels.back();
    m_Levels.pop_back();
    if (m_bFormat && !level.textSeen) {
        m_Output.NewLine(m_Indent.c_str(), m_Levels.size());
    }
    const char* name = CNodeAccess::ElementOf(level.element)->m_pName;
    if (IsPlainName(name)) {
        m_Output.LiteralAndPlain("</", name, LengthOf(name));
    } else {
        m_Output.Literal("</");
        m_Output.Escaped(name);
    }
    m_Output.Literal(">");
}

// An object of a derived class writes itself. The string for its indentation follows the walk up and down, so a
// level costs no copy of it.
void CTreeWriter::WriteDerived(CXMLNode* node) {
    m_ChildIndent.resize(m_Indent.size() + m_Levels.size(), '\t');
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
