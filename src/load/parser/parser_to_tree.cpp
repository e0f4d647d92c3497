// CParserToTree: which of the parser's strings are converted, and when.
#include "load/parser/parser_to_tree.h"

#include "tree/tree_building.h"

namespace norvask {

void CParserToTree::startDocument() {
    m_Names.Clear();
    m_Builder.StartDocument();
}

void CParserToTree::startElement(const XMLCh*, const XMLCh* localname, const XMLCh* qname,
                                 const xercesc::Attributes& attributes) {
    if (!m_Builder.HasDocument()) {
        return;
    }
    FlushText();
    const XMLCh* const name = m_bKeepPrefixes ? qname : localname;
    const bool own = CDOMString::IsOwnInForce();
    if (own && m_Builder.IsInElement()) {
        m_Builder.StartElement(Use(name));
    } else {
        m_Builder.StartElement(m_Narrow.Convert(name));
    }
    if (own) {
        SetKeptAttributes(attributes);
    } else {
        SetConvertedAttributes(attributes);
    }
}

void CParserToTree::SetKeptAttributes(const xercesc::Attributes& attributes) {
    const XMLSize_t count = attributes.getLength();
    for (XMLSize_t i = 0; i < count; ++i) {
        CNameUse name = Use(AttributeName(attributes, i));
        m_Builder.SetAttribute(std::move(name), m_Narrow.Convert(attributes.getValue(i)));
    }
}

// Both strings are converted before anything is checked.
void CParserToTree::SetConvertedAttributes(const xercesc::Attributes& attributes) {
    const XMLSize_t count = attributes.getLength();
    for (XMLSize_t i = 0; i < count; ++i) {
        m_Narrow.Clear();
        const std::size_t name = m_Narrow.Append(AttributeName(attributes, i));
        const std::size_t value = m_Narrow.Append(attributes.getValue(i));
        m_Builder.SetAttribute(Unjudged(m_Narrow.At(name)), Unjudged(m_Narrow.At(value)));
    }
}

// One more use of the tree's name for this one.
CNameUse CParserToTree::Use(const XMLCh* name) {
    // Names of trees have no namespaces. For the predictor they are all in the same one.
    static const XMLCh NO_URI[] = {0};
    const auto* const known = m_Names.Find({NO_URI, name}, [&] {
        return UseValidName(m_Builder.Tree(), m_Narrow.Convert(name).text);
    });
    return CNameUse::Another(known->payload.Name());
}

void CParserToTree::endElement(const XMLCh*, const XMLCh*, const XMLCh*) {
    if (m_Builder.IsInElement()) {
        FlushText();
        m_Builder.EndElement();
    }
}

// What stands outside of the root belongs to no element.
void CParserToTree::characters(const XMLCh* text, XMLSize_t units) {
    if (m_Builder.IsInElement()) {
        Gather(text, units);
    }
}

void CParserToTree::GiveText(const XMLCh* text, XMLSize_t units, bool inCDATA) {
    if (!inCDATA) {
        m_Builder.CharacterData(m_Narrow.Convert(text, units));
        return;
    }
    // Base64 is what stands in the document; a client's converter is not asked for it.
    const SKnownText content = m_Narrow.ConvertByOwn(text, units);
    if (!m_Builder.AddBinary(content)) {
        m_Builder.AddText(CDOMString::IsOwnInForce() ? content : m_Narrow.Convert(text, units));
    }
}

void CParserToTree::startPrefixMapping(const XMLCh* prefix, const XMLCh* uri) {
    if (!m_bKeepPrefixes || prefix == nullptr || uri == nullptr) {
        return;
    }
    m_Narrow.Clear();
    const std::size_t narrowPrefix = m_Narrow.Append(prefix);
    const std::size_t narrowUri = m_Narrow.Append(uri);
    m_Builder.Declare(Unjudged(m_Narrow.At(narrowPrefix)), Unjudged(m_Narrow.At(narrowUri)));
}

void CParserToTree::startDTD(const XMLCh* name, const XMLCh*, const XMLCh* systemId) {
    if (!m_Builder.HasDocument()) {
        return;
    }
    m_Narrow.Clear();
    const std::size_t narrowName = m_Narrow.Append(name);
    const std::size_t narrowId = m_Narrow.Append(systemId);
    m_Builder.SetDTDRef(Unjudged(m_Narrow.At(narrowName)), Unjudged(m_Narrow.At(narrowId)));
}

}  // namespace norvask
