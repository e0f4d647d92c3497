// Internal. CParserToTree: reports the parser's events to a CTreeBuilder.
//
// Under the library's own converter each name is converted and checked once a load, and found again
// by what came before it. Under a client's converter all strings go through it each time.
#ifndef NORVASK_LOAD_PARSER_PARSER_TO_TREE_H
#define NORVASK_LOAD_PARSER_PARSER_TO_TREE_H

#include <xercesc/sax2/Attributes.hpp>

#include "load/parser/my_sax_handler.h"
#include "load/parser/parser_name.h"
#include "load/receiver/name_predictor.h"
#include "load/receiver/tree_builder.h"

namespace norvask {

class CParserToTree final : public CMySAXHandler {
public:
    // The builder outlives this object, and its document too: names of its tree are in use here.
    CParserToTree(CTreeBuilder& builder, bool keepPrefixes)
        : m_Builder(builder), m_bKeepPrefixes(keepPrefixes) {}

    void startDocument() override;
    void startElement(const XMLCh* uri, const XMLCh* localname, const XMLCh* qname,
                      const xercesc::Attributes& attributes) override;
    void endElement(const XMLCh* uri, const XMLCh* localname, const XMLCh* qname) override;
    void characters(const XMLCh* text, XMLSize_t units) override;
    void startPrefixMapping(const XMLCh* prefix, const XMLCh* uri) override;
    void startDTD(const XMLCh* name, const XMLCh* publicId, const XMLCh* systemId) override;

private:
    void GiveText(const XMLCh* text, XMLSize_t units, bool inCDATA) override;
    CNameUse Use(const XMLCh* name);
    void SetKeptAttributes(const xercesc::Attributes& attributes);
    void SetConvertedAttributes(const xercesc::Attributes& attributes);
    const XMLCh* AttributeName(const xercesc::Attributes& attributes, XMLSize_t i) const {
        return m_bKeepPrefixes ? attributes.getQName(i) : attributes.getLocalName(i);
    }

    CTreeBuilder& m_Builder;
    const bool m_bKeepPrefixes;
    CNamePredictor<SParserName, CNameUse> m_Names;  // each with one use
};

}  // namespace norvask

#endif
