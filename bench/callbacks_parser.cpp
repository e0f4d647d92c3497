#include <stdexcept>
#include <xercesc/sax2/Attributes.hpp>
#include <xercesc/sax2/DefaultHandler.hpp>

#include "callbacks.h"
#include "parser_read.h"

namespace norvask_bench {

namespace {

std::uint64_t WeightOfUnit(XMLCh unit) { return unit > ' ' ? unit : 0; }

// The weight of the bytes that the unit is in UTF-8. Of a half of a pair they cannot be told; none
// of the documents has one.
std::uint64_t WeightInUtf8(XMLCh unit) {
    if (unit < 0x80) return WeightOfUnit(unit);
    if (unit >= 0xD800 && unit <= 0xDFFF) {
        throw std::runtime_error("callbacks: a document has characters beyond U+FFFF");
    }
    const std::uint64_t last = 0x80U | (unit & 0x3FU);
    if (unit < 0x800) return last + (0xC0U | (unit >> 6U));
    return last + (0x80U | ((unit >> 6U) & 0x3FU)) + (0xE0U | (unit >> 12U));
}

// Every character of every string is read, in the units that the parser has.
template <std::uint64_t (*WEIGHT)(XMLCh)>
class CReadingHandler : public xercesc::DefaultHandler {
public:
    explicit CReadingHandler(SReading& sums) : m_Sums(sums) {}

    void startElement(const XMLCh* const uri, const XMLCh* const localName,
                      const XMLCh* const qName, const xercesc::Attributes& attributes) override {
        ++m_Sums.elements;
        AddName(uri, localName, qName);
        const XMLSize_t count = attributes.getLength();
        for (XMLSize_t i = 0; i < count; ++i) {
            AddName(attributes.getURI(i), attributes.getLocalName(i), attributes.getQName(i));
            m_Sums.values += SumOf(attributes.getValue(i));
        }
    }

    void endElement(const XMLCh* const uri, const XMLCh* const localName,
                    const XMLCh* const qName) override {
        AddName(uri, localName, qName);
    }

    void characters(const XMLCh* const text, const XMLSize_t length) override {
        std::uint64_t sum = 0;
        for (XMLSize_t i = 0; i < length; ++i) {
            sum += WEIGHT(text[i]);
        }
        m_Sums.text += sum;
    }

    void startDTD(const XMLCh* const name, const XMLCh* const publicId,
                  const XMLCh* const systemId) override {
        m_Sums.others += SumOf(name) + SumOf(publicId) + SumOf(systemId);
    }

    void startPrefixMapping(const XMLCh* const prefix, const XMLCh* const uri) override {
        m_Sums.others += SumOf(prefix) + SumOf(uri);
    }

    void endPrefixMapping(const XMLCh* const prefix) override { m_Sums.others += SumOf(prefix); }

private:
    static std::uint64_t SumOf(const XMLCh* text) {
        if (text == nullptr) return 0;
        std::uint64_t sum = 0;
        for (; *text != 0; ++text) {
            sum += WEIGHT(*text);
        }
        return sum;
    }

    void AddName(const XMLCh* uri, const XMLCh* localName, const XMLCh* qName) {
        m_Sums.uris += SumOf(uri);
        m_Sums.localNames += SumOf(localName);
        m_Sums.others += SumOf(qName);
    }

    SReading& m_Sums;
};

}  // namespace

CParserReading::CParserReading(const std::string& text) {
    CReadingHandler<WeightOfUnit> handler(m_Sums);
    ReadByParser(text, handler);
}

SReading ReadByParserInUtf8(const std::string& text) {
    SReading sums;
    CReadingHandler<WeightInUtf8> handler(sums);
    ReadByParser(text, handler);
    return sums;
}

}  // namespace norvask_bench
