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
            WriteChildren();
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

// The start tag; an element with children is entered.
void CTreeWriter::WriteElement(CXMLNode* element) {
    SElementBody* const body = CNodeAccess::ElementOf(element);
    WriteStartTag(body);
    if (ChildSlots(body)[0] == nullptr) {
        m_Output.Literal("/>");
        return;
    }
    m_Output.Literal(">");
    m_Walk.Enter(element, {false});
}

void CTreeWriter::WriteChildren() {
    while (!m_Walk.IsDone()) {
        if (CXMLNode* const child = m_Walk.Next()) {
            WriteChild(child);
        } else {
            WriteEndTag();
        }
    }
}

void CTreeWriter::WriteChild(CXMLNode* child) {
    const EObject object = CNodeAccess::ObjectOf(child);
    const bool isContent = object == EObject::DERIVED
                               ? child->GetNodeType() != CXMLNode::NODE_ELEMENT
                               : object != EObject::ELEMENT;
    bool& textSeen = m_Walk.Innermost().own.textSeen;
    textSeen = textSeen || isContent;
    if (m_bFormat && !textSeen) {
        m_Output.NewLine(m_Indent.c_str(), m_Walk.Depth());
    }
    switch (object) {
        case EObject::ELEMENT:
            WriteElement(child);
            break;
        case EObject::TEXT:
            m_Output.Text(CNodeAccess::TextOf(child)->text.Known());
            break;
        case EObject::BINARY:
            WriteContent(child);
            break;
        default:
            WriteDerived(child);
            break;
    }
}

void CTreeWriter::WriteStartTag(const SElementBody* body) {
    const SKnownText name = body->name.Known();
    CheckName(name);
    m_Output.Name("<", name);
    if (body->attributes != nullptr) {
        for (CXMLAttribut** slots = body->attributes->Slots(); *slots != nullptr; ++slots) {
            const SKnownText attribute = CAttributeAccess::Name(*slots).Known();
            CheckName(attribute);
            m_Output.Attribute(attribute, CAttributeAccess::Value(*slots).Known());
        }
    }
}

void CTreeWriter::WriteEndTag() {
    const auto level = m_Walk.Innermost();
    m_Walk.Leave();
    if (m_bFormat && !level.own.textSeen) {
        m_Output.NewLine(m_Indent.c_str(), m_Walk.Depth());
    }
    m_Output.Name("</", CNodeAccess::ElementOf(level.node)->name.Known());
    m_Output.Literal(">");
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
