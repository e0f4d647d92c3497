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
#include "tree/tree_memory.h"
#include "tree/tree_string.h"
#include "write/string_stack.h"

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
    VALUE("object.bits", CNodeAccess::OBJECT_BITS);

    FIELD("node.kind", SNodeBody, m_nKind);
    FIELD("node.flags", SNodeBody, m_nFlags);
    FIELD("node.owners", SNodeBody, m_nOwners);
    FIELD("node.distance", SNodeBody, m_nDistance);
    VALUE("node.element", CXMLNode::NODE_ELEMENT);
    VALUE("node.text", CXMLNode::NODE_TEXT);
    VALUE("node.binary", CXMLNode::NODE_BINARY);

    FIELD("element.name", SElementBody, m_pName);
    FIELD("element.one_child", SElementBody, m_Children.m_Inline);
    FIELD("element.children", SElementBody, m_Children.m_Heap.m_pSlots);
    FIELD("element.children_used", SElementBody, m_Children.m_Heap.m_nUsed);
    VALUE("element.has_array", BODY_HEAP_CHILDREN);
    FIELD("element.attributes", SElementBody, m_pAttributes);
    FIELD("attributes.used", SAttributeArray, m_nUsed);
    VALUE("attributes.slots", sizeof(SAttributeArray));

    FIELD("text.text", STextBody, m_pText);
    FIELD("binary.data", SBinaryBody, m_pData);
    FIELD("binary.length", SBinaryBody, m_nLength);

    FIELD("attribute.name", CXMLAttribut, m_nName);
    FIELD("attribute.value", CXMLAttribut, m_nValue);
    VALUE("attribute.bits", CAttributeAccess::BITS);

    VALUE("tag.bytes", sizeof(SStringTag));
    FIELD("tag.distance", SStringTag, m_nDistance);
    FIELD("tag.flags", SStringTag, m_nFlags);
    VALUE("tag.constant", STRING_STATIC);

    VALUE("page.unit", TAG_UNIT);
    VALUE("page.header", sizeof(SPage));
    FIELD("page.bytes", SPage, m_nBytes);
    FIELD("page.holders", SPage, m_nHolders);
    FIELD("page.tree", SPage, m_pTree);
    FIELD("tree.owners", CTreeMemory, m_nOwners);
    FIELD("tree.first_page", CTreeMemory, m_pFirst);

    FIELD("document.body", CXMLDocument, m_pBody);
    FIELD("document.owners", SDocumentBody, m_nOwners);
    FIELD("document.root", SDocumentBody, m_pRoot);
    FIELD("document.dtd_name", SDocumentBody, m_pDTDName);
    FIELD("document.dtd_path", SDocumentBody, m_pDTDPath);

    FIELD("exception.id", CXMLException, m_nID);
    FIELD("exception.message", CXMLException, m_pMessage);

    FIELD("event.uri", CXMLSaxAttribut, m_pUri);
    FIELD("event.name", CXMLSaxAttribut, m_pQName);
    FIELD("event.value", CXMLSaxAttribut, m_pValue);

    FIELD("writer.stream", CXMLSaxWriter, m_pStream);
    FIELD("writer.file_name", CXMLSaxWriter, m_pFileName);
    FIELD("writer.open_elements", CXMLSaxWriter, m_pElementStack);
    FIELD("stack.block", CStringStack, m_pBlock);
    FIELD("stack.used", CStringStack, m_nUsed);
    VALUE("stack.length", sizeof(std::size_t));
}

}  // namespace norvask
