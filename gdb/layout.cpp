// What the debugger's views read of the structures of src, and where it lies.
//
// norvask_gdb.py knows the fields by the names in this table, and reads it in the library's file:
// the compiler writes it as text into a section of its own, which is not loaded when a program runs
// and stays when debug information is taken out. So views and library always fit each other.
#include <cstddef>

#include "norvask/norvask.h"
#include "tree/attribute_access.h"
#include "tree/document_body.h"
#include "tree/node_access.h"
#include "tree/node_body.h"
#include "write/writer_body.h"

namespace norvask {

#define ENTRY(name, number, size)                                                                  \
    asm(".pushsection .norvask_layout\n.ascii \"norvask-layout " name " %c0 %c1\\n\"\n.popsection" \
        :                                                                                          \
        : "i"(number), "i"(size))
#define FIELD(name, type, member) \
    ENTRY(name, offsetof(type, member), sizeof(static_cast<type*>(nullptr)->member))
#define VALUE(name, number) ENTRY(name, number, 0)

// Never called: the assembler has done it all. A line is a name, an offset or a value, and a size.
void WriteLayout();
void WriteLayout() {
    VALUE("target.pointer", sizeof(void*));
    VALUE("target.big_endian", __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__);

    FIELD("object.body", CXMLNode, m_nBody);
    VALUE("object.bits", CNodeAccess::ALL_BITS);

    FIELD("node.kind", SNodeBody, kind);
    FIELD("node.flags", SNodeBody, flags);
    FIELD("node.owners", SNodeBody, owners);
    FIELD("node.distance", SNodeBody, distance);
    VALUE("node.element", CXMLNode::NODE_ELEMENT);
    VALUE("node.text", CXMLNode::NODE_TEXT);
    VALUE("node.binary", CXMLNode::NODE_BINARY);

    FIELD("element.name", SElementBody, name);
    FIELD("element.one_child", SElementBody, children.few);
    FIELD("element.children", SElementBody, children.many.slots);
    FIELD("element.children_used", SElementBody, children.many.used);
    VALUE("element.has_array", BODY_OUTGROWN);
    FIELD("element.attributes", SElementBody, attributes);
    FIELD("attributes.used", SAttributeArray, used);
    VALUE("attributes.slots", sizeof(SAttributeArray));

    FIELD("text.text", STextBody, text);
    FIELD("binary.data", SBinaryBody, data);
    FIELD("binary.length", SBinaryBody, length);

    FIELD("attribute.name", CXMLAttribut, m_nName);
    FIELD("attribute.value", CXMLAttribut, m_nValue);
    VALUE("attribute.bits", CAttributeAccess::BITS);

    VALUE("string.bytes", sizeof(SStringHeader));
    FIELD("string.distance", SStringHeader, distance);
    FIELD("string.flags", SStringHeader, flags);
    VALUE("string.constant", STRING_STATIC);

    VALUE("page.unit", DISTANCE_UNIT);
    VALUE("page.header", sizeof(SPage));
    FIELD("page.bytes", SPage, bytes);
    FIELD("page.retained", SPage, retained);
    FIELD("page.tree", SPage, tree);
    FIELD("tree.owners", CTree, m_nOwners);
    FIELD("tree.first_page", CTree, m_Arena.m_pFirst);

    FIELD("document.body", CXMLDocument, m_pBody);
    FIELD("document.owners", SDocumentBody, owners);
    FIELD("document.root", SDocumentBody, root);
    FIELD("document.dtd_name", SDocumentBody, dtdName);
    FIELD("document.dtd_path", SDocumentBody, dtdPath);

    FIELD("exception.id", CXMLException, m_nID);
    FIELD("exception.message", CXMLException, m_pMessage);

    FIELD("event.uri", CXMLSaxAttribut, m_pUri);
    FIELD("event.name", CXMLSaxAttribut, m_pQName);
    FIELD("event.value", CXMLSaxAttribut, m_pValue);

    FIELD("writer.body", CXMLSaxWriter, m_pBody);
    FIELD("writer.stream", SWriterBody, stream.m_pStream);
    FIELD("writer.file_name", SWriterBody, file.m_pName);
    FIELD("stack.block", SWriterBody, names.m_pBlock);
    FIELD("stack.used", SWriterBody, names.m_nUsed);
    VALUE("stack.length", sizeof(std::size_t));
    VALUE("stack.overhead", CStringStack::OVERHEAD);
}

}  // namespace norvask
