#include <libxml/parser.h>

#include <stdexcept>

#include "callbacks.h"

namespace norvask_bench {

namespace {

const char* Narrow(const xmlChar* text) { return reinterpret_cast<const char*>(text); }

void IgnoreStart(void*, const xmlChar*, const xmlChar*, const xmlChar*, int, const xmlChar**, int,
                 int, const xmlChar**) {}
void IgnoreEnd(void*, const xmlChar*, const xmlChar*, const xmlChar*) {}
void IgnoreText(void*, const xmlChar*, int) {}
void IgnoreDtd(void*, const xmlChar*, const xmlChar*, const xmlChar*) {}

void AddName(SReading& sums, const xmlChar* localName, const xmlChar* prefix, const xmlChar* uri) {
    sums.localNames += Sum(Narrow(localName));
    sums.others += Sum(Narrow(prefix));
    sums.uris += Sum(Narrow(uri));
}

// Attributes come in fives: local name, prefix, URI, begin and end of the value.
void ReadStart(void* context, const xmlChar* localName, const xmlChar* prefix, const xmlChar* uri,
               int namespaceCount, const xmlChar** namespaces, int attributeCount, int,
               const xmlChar** attributes) {
    SReading& sums = *static_cast<SReading*>(context);
    ++sums.elements;
    AddName(sums, localName, prefix, uri);
    for (int i = 0; i < 2 * namespaceCount; ++i) {
        sums.others += Sum(Narrow(namespaces[i]));
    }
    for (; attributeCount > 0; --attributeCount, attributes += 5) {
        AddName(sums, attributes[0], attributes[1], attributes[2]);
        sums.values += Sum(Narrow(attributes[3]), Narrow(attributes[4]));
    }
}

void ReadEnd(void* context, const xmlChar* localName, const xmlChar* prefix, const xmlChar* uri) {
    AddName(*static_cast<SReading*>(context), localName, prefix, uri);
}

void ReadText(void* context, const xmlChar* text, int length) {
    static_cast<SReading*>(context)->text += Sum(Narrow(text), Narrow(text) + length);
}

void ReadDtd(void* context, const xmlChar* name, const xmlChar* publicId, const xmlChar* systemId) {
    static_cast<SReading*>(context)->others +=
        Sum(Narrow(name)) + Sum(Narrow(publicId)) + Sum(Narrow(systemId));
}

void Read(const std::string& text, xmlSAXHandler& handler, void* context) {
    handler.initialized = XML_SAX2_MAGIC;
    // Without this the values of attributes have "&#38;" where the document means "&". The loads
    // into trees say in their options what they want.
    xmlSubstituteEntitiesDefault(1);
    if (xmlSAXUserParseMemory(&handler, context, text.data(), static_cast<int>(text.size())) != 0) {
        throw std::runtime_error("libxml2, callbacks: the document is refused");
    }
}

}  // namespace

CLibxml2Idle::CLibxml2Idle(const std::string& text) {
    xmlSAXHandler handler = {};
    handler.startElementNs = IgnoreStart;
    handler.endElementNs = IgnoreEnd;
    handler.characters = IgnoreText;
    handler.internalSubset = IgnoreDtd;
    Read(text, handler, nullptr);
}

CLibxml2Reading::CLibxml2Reading(const std::string& text) {
    xmlSAXHandler handler = {};
    handler.startElementNs = ReadStart;
    handler.endElementNs = ReadEnd;
    handler.characters = ReadText;
    handler.internalSubset = ReadDtd;
    Read(text, handler, &m_Sums);
}

}  // namespace norvask_bench
