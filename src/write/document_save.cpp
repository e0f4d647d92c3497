// CXMLDocument: saving.
//
//   document := declaration [line-end] [doctype [line-end]] root       line ends with format only
#include <fstream>

#include "foundation/errors.h"
#include "foundation/text_rules.h"
#include "norvask/document.h"
#include "tree/document_body.h"
#include "tree/node_access.h"
#include "write/output.h"
#include "write/tree_writer.h"

namespace norvask {
namespace {

void WriteProlog(std::ostream& out, const SDocumentBody& document, bool format) {
    char buffer[COutput::SMALL];
    COutput output(out, buffer, sizeof(buffer));
    output.Literal("<?xml version=\"1.0\"?>");
    if (document.m_pDTDName != nullptr) {
        if (!IsXmlName(document.m_pDTDName)) {
            output.Flush();
            ThrowInvalidName(document.m_pDTDName);
        }
        if (format) {
            output.Literal("\r\n");
        }
        output.Literal("<!DOCTYPE ");
        output.Escaped(document.m_pDTDName);
        output.Literal(" SYSTEM \"");
        output.Escaped(document.m_pDTDPath);
        output.Literal("\">");
    }
    if (format) {
        output.Literal("\r\n");
    }
    output.Flush();
}

}  // namespace

void CXMLDocument::Save(std::ostream& out, bool format) {
    if (!out.good()) {
        ThrowSavingFailed("Stream");
    }
    if (m_pBody->m_pRoot == nullptr) {
        ThrowInvalidParameter();
    }
    WriteProlog(out, *m_pBody, format);
    char noIndent[] = "";
    CNodeAccess::Save(m_pBody->m_pRoot, out, format, noIndent);
}

void CXMLDocument::Save(const char* fileName, bool format) {
    if (m_pBody->m_pRoot == nullptr || fileName == nullptr) {
        return;
    }
    std::ofstream out(fileName, std::ios::out | std::ios::trunc | std::ios::binary);
    if (!out.good()) {
        ThrowSavingFailed(fileName);
    }
    Save(out, format);
    out.close();
}

}  // namespace norvask
