// CWatchedReader: the events on their way, and problems.
#include "load/parser/watched_reader.h"

#include <cstdint>
#include <xercesc/framework/XMLValidityCodes.hpp>
#include <xercesc/sax/Locator.hpp>
#include <xercesc/sax2/Attributes.hpp>
#include <xercesc/util/XMLExceptMsgs.hpp>
#include <xercesc/util/XMLString.hpp>
#include <xercesc/util/XMLUni.hpp>
#include <xercesc/validators/schema/SchemaSymbols.hpp>

#include "norvask/exception.h"

namespace norvask {
namespace {

using xercesc::XMLString;
using xercesc::XMLUni;

const char NO_GRAMMAR[] =
    "no grammar to validate by: neither the document nor the program names one";

// What the parser finds in text that is not allowed; it does not tell of such text at all.
bool IsOfText(unsigned int code, const XMLCh* domain) {
    return code == xercesc::XMLValid::NoCharDataInCM &&
           XMLString::equals(domain, XMLUni::fgValidityDomain);
}

bool IsOfOpening(unsigned int code, const XMLCh* domain) {
    return code == xercesc::XMLExcepts::Scan_CouldNotOpenSource_Warning &&
           XMLString::equals(domain, XMLUni::fgExceptDomain);
}

bool IsOfDecoding(unsigned int code, const XMLCh* domain) {
    switch (code) {
        case xercesc::XMLExcepts::Reader_CouldNotDecodeFirstLine:
        case xercesc::XMLExcepts::Trans_BadSrcSeq:
        case xercesc::XMLExcepts::UTF8_FormatError:
        case xercesc::XMLExcepts::UTF8_Invalid_3BytesSeq:
        case xercesc::XMLExcepts::UTF8_Irregular_3BytesSeq:
        case xercesc::XMLExcepts::UTF8_Invalid_4BytesSeq:
        case xercesc::XMLExcepts::UTF8_Exceeds_BytesLimit:
            return XMLString::equals(domain, XMLUni::fgExceptDomain);
        default:
            return false;
    }
}

// Whether the text has this behind the word, in quotes.
bool Names(const std::string& text, const char* word, const char* name) {
    return text.find(std::string(word) + " '" + name + "'") != std::string::npos;
}

bool NamesSchema(const xercesc::Attributes& attributes) {
    const XMLCh* const uri = xercesc::SchemaSymbols::fgURI_XSI;
    return attributes.getIndex(uri, xercesc::SchemaSymbols::fgXSI_SCHEMALOCATION) >= 0 ||
           attributes.getIndex(uri, xercesc::SchemaSymbols::fgXSI_NONAMESPACESCHEMALOCATION) >= 0;
}

}  // namespace

// Every event counts for the limits, those too that no handler of a load wants.
class CWatchedReader::CEvents final : public xercesc::DefaultHandler {
public:
    explicit CEvents(CWatchedReader& reader) : m_Reader(reader), m_Next(reader.m_Handler) {}

    void setDocumentLocator(const xercesc::Locator* const locator) override {
        m_Reader.m_pLocator = locator;
    }
    void startDocument() override {
        m_Reader.m_Document = m_Reader.Narrow(m_Reader.m_pLocator->getSystemId());
        Meet();
        m_Next.startDocument();
    }
    // The locator shows nothing any more from here on.
    void endDocument() override {
        Meet();
        m_Next.endDocument();
        m_Reader.m_pLocator = nullptr;
    }
    void startElement(const XMLCh* const uri, const XMLCh* const localname,
                      const XMLCh* const qname, const xercesc::Attributes& attributes) override {
        m_Reader.m_Path.StartElement(qname);
        m_Reader.StartElement(attributes);
        m_Reader.Obey(m_Reader.m_Watch.StartElement());
        try {
            m_Next.startElement(uri, localname, qname, attributes);
        } catch (CXMLException& exception) {
            m_Reader.AddException(exception);
            throw;
        }
    }
    void endElement(const XMLCh* const uri, const XMLCh* const localname,
                    const XMLCh* const qname) override {
        Meet();
        m_Reader.m_Watch.EndElement();
        m_Next.endElement(uri, localname, qname);
        m_Reader.m_Path.EndElement();
    }
    void characters(const XMLCh* const text, const XMLSize_t units) override {
        Meet();
        m_Next.characters(text, units);
    }
    void ignorableWhitespace(const XMLCh* const, const XMLSize_t) override { Meet(); }
    void processingInstruction(const XMLCh* const, const XMLCh* const) override { Meet(); }
    void comment(const XMLCh* const, const XMLSize_t) override { Meet(); }
    // The parser tells these in front of their element, which may be what is wrong.
    void startPrefixMapping(const XMLCh* const prefix, const XMLCh* const uri) override {
        m_Reader.Obey(m_Reader.m_Watch.StartNamespace());
        if (!m_Reader.m_bIsEnding) {
            m_Next.startPrefixMapping(prefix, uri);
        }
    }
    void endPrefixMapping(const XMLCh* const prefix) override {
        Meet();
        m_Reader.m_Watch.EndNamespace();
        m_Next.endPrefixMapping(prefix);
    }
    void startCDATA() override {
        Meet();
        m_Next.startCDATA();
    }
    void endCDATA() override {
        Meet();
        m_Next.endCDATA();
    }
    void startEntity(const XMLCh* const name) override {
        Meet();
        m_Next.startEntity(name);
    }
    void endEntity(const XMLCh* const name) override {
        Meet();
        m_Next.endEntity(name);
    }
    // Nothing of it was read yet.
    void startDTD(const XMLCh* const name, const XMLCh* const publicId,
                  const XMLCh* const systemId) override {
        Meet();
        if (m_Reader.m_Watch.IsUntrusted()) {
            m_Reader.Refuse(ERefusal::DTD);
        }
        m_Reader.m_bHasGrammar = true;
        m_Next.startDTD(name, publicId, systemId);
    }
    void endDTD() override { Meet(); }

private:
    void Meet() {
        m_Reader.Settle(nullptr);
        m_Reader.Obey(m_Reader.m_Watch.Event());
    }

    CWatchedReader& m_Reader;
    CMySAXHandler& m_Next;
};

CWatchedReader::CWatchedReader(CMySAXHandler& handler, CWatch& watch, CProblems& problems,
                               const CSchemaNames* schemas, bool requiresGrammar, bool isTree)
    : m_Handler(handler),
      m_Watch(watch),
      m_Problems(problems),
      m_pSchemas(schemas),
      m_bRequiresGrammar(requiresGrammar),
      m_bIsTree(isTree),
      m_pEvents(std::make_unique<CEvents>(*this)),
      m_bHasGrammar(schemas != nullptr && !schemas->IsEmpty()) {
    setContentHandler(m_pEvents.get());
    setLexicalHandler(m_pEvents.get());
    setDTDHandler(m_pEvents.get());
    setErrorHandler(m_pEvents.get());  // without one the parser does not even come to error()
}

CWatchedReader::~CWatchedReader() = default;

void CWatchedReader::StartElement(const xercesc::Attributes& attributes) {
    if (m_bRequiresGrammar && !m_bHasGrammar) {
        m_bHasGrammar = m_bReadsHints && NamesSchema(attributes);
        if (!m_bHasGrammar) {
            // The parser has said something of the kind, less clearly.
            SXMLProblem problem = Place();
            problem.severity = EXMLSeverity::ERROR;
            problem.text = NO_GRAMMAR;
            problem.path = m_Path.Text();
            m_Problems.Clear();
            m_Problems.Add(std::move(problem), 2, true);
            throw SLoadEnd();
        }
    }
    Settle(&attributes);
}

void CWatchedReader::Settle(const xercesc::Attributes* attributes) {
    if (m_nWaiting != 0 && attributes != nullptr) {
        m_Problems.ForLast(m_nWaiting, [&](SXMLProblem& problem) {
            problem.path = m_Path.Text();
            NameAttribute(problem, *attributes);
        });
    }
    m_nWaiting = 0;
    if (m_bIsEnding) {
        throw SLoadEnd();
    }
}

// The parser names it, or tells its value, which may be that of one only.
void CWatchedReader::NameAttribute(SXMLProblem& problem, const xercesc::Attributes& attributes) {
    if (problem.path.empty()) {
        return;
    }
    std::string found;
    std::size_t count = 0;
    for (XMLSize_t i = 0; i < attributes.getLength(); ++i) {
        const std::string name = Narrow(attributes.getQName(i));
        if (Names(problem.text, "attribute", name.c_str())) {
            found = name;
            count = 1;
            break;
        }
        if (Names(problem.text, "value", Narrow(attributes.getValue(i)).c_str())) {
            found = name;
            ++count;
        }
    }
    if (count == 1) {
        problem.path += "/@" + found;
    }
}

void CWatchedReader::Finish() { Settle(nullptr); }

std::string CWatchedReader::Narrow(const XMLCh* text) {
    return text == nullptr ? std::string() : std::string(m_Narrow.Convert(text).text);
}

// Where the parser is.
SXMLProblem CWatchedReader::Place() {
    SXMLProblem problem;
    if (m_pLocator != nullptr) {
        problem.file = Narrow(m_pLocator->getSystemId());
        problem.line = m_pLocator->getLineNumber();
        problem.column = m_pLocator->getColumnNumber();
    }
    return problem;
}

// A name that the library does not take is a problem of the document.
void CWatchedReader::AddException(CXMLException& exception) {
    if (m_bIsTree) {
        SXMLProblem problem = Place();
        problem.text = exception.GetMessage();
        problem.path = m_Path.Text();
        m_Problems.Add(std::move(problem), exception, true);
        throw SLoadEnd();
    }
}

void CWatchedReader::Refuse(ERefusal refusal) {
    SXMLProblem problem = Place();
    problem.text = m_Watch.Words(refusal);
    problem.path = m_Path.Text();
    const bool inDocument = problem.file == m_Document;
    m_Problems.AddRefusal(std::move(problem), inDocument);
    throw SLoadEnd();
}

void CWatchedReader::error(const unsigned int code, const XMLCh* const domain, const ErrTypes type,
                           const XMLCh* const text, const XMLCh* const systemId, const XMLCh* const,
                           const XMLFileLoc line, const XMLFileLoc column) {
    const bool isFatal = type == ErrType_Fatal;
    // A schema that cannot be opened: one of the program's, or any where there must be one.
    const bool isOfSchema = type == ErrType_Warning && m_pSchemas != nullptr &&
                            IsOfOpening(code, domain) &&
                            (m_bRequiresGrammar || m_pSchemas->IsQuoted(Narrow(text)));
    if (type == ErrType_Warning && !isOfSchema) {
        return;
    }
    if (m_bIsEnding) {
        if (isFatal) {
            throw SLoadEnd();
        }
        return;
    }
    SXMLProblem problem;
    problem.severity = isFatal ? EXMLSeverity::FATAL : EXMLSeverity::ERROR;
    problem.file = Narrow(systemId);
    problem.line = line;
    problem.column = column;
    problem.text = Narrow(text);
    const bool inDocument = !problem.file.empty() && problem.file == m_Document;
    if (inDocument) {
        problem.path = m_Path.Text();
    } else if (m_pSchemas != nullptr) {
        problem.file = m_pSchemas->NameOf(problem.file);
    }
    if (isFatal && IsOfDecoding(code, domain)) {
        m_Problems.SetOfDecoding();
    }
    m_Problems.Add(std::move(problem), 2, inDocument);
    m_bIsEnding = isFatal || m_Problems.IsFull();
    if (isFatal || (m_bIsEnding && (!inDocument || IsOfText(code, domain)))) {
        throw SLoadEnd();
    }
    m_nWaiting = inDocument && !IsOfText(code, domain) ? m_nWaiting + 1 : 0;
}

}  // namespace norvask
