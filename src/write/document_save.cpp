// CXMLDocument: saving.
//
//   document := declaration [line-end] [doctype [line-end]] root       line ends with format only
#include <fstream>

#include "foundation/errors.h"
#include "foundation/known_text.h"
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
    if (document.dtdName != nullptr) {
        const SKnownText name = JudgeName(document.dtdName);
        if (!name.Is(KNOWN_NAME)) {
            output.Flush();
            ThrowInvalidName(document.dtdName);
        }
        if (format) {
            output.Literal("\r\n");
        }
        output.Name("<!DOCTYPE ", name);
        output.Literal(" SYSTEM \"");
        output.Text(document.dtdPath);
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
    if (m_pBody->root == nullptr) {
        ThrowInvalidParameter();
    }
    WriteProlog(out, *m_pBody, format);
    char noIndent[] = "";
    CNodeAccess::Save(m_pBody->root, out, format, noIndent);
}

void CXMLDocument::Save(const char* fileName, bool format) {
    if (m_pBody->root == nullptr || fileName == nullptr) {
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
