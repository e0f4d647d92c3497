// CWatchedReader: the events on their way, and problems.
#include "load/parser/watched_reader.h"

#include <algorithm>
#include <utility>
#include <vector>
#include <xercesc/framework/XMLValidityCodes.hpp>
#include <xercesc/sax/Locator.hpp>
#include <xercesc/sax2/Attributes.hpp>
#include <xercesc/util/XMLExceptMsgs.hpp>
#include <xercesc/util/XMLString.hpp>
#include <xercesc/util/XMLUni.hpp>
#include <xercesc/validators/schema/SchemaSymbols.hpp>

#include "foundation/utf8.h"
#include "norvask/exception.h"

namespace norvask {
namespace {

using xercesc::XMLString;
using xercesc::XMLUni;

const char NO_GRAMMAR[] =
    "no grammar to validate by: the program names none, and the document none that is read";

// What the parser finds in text that is not allowed; it does not tell of such text at all.
bool IsOfText(unsigned int code, const XMLCh* domain) {
    return code == xercesc::XMLValid::NoCharDataInCM &&
           XMLString::equals(domain, XMLUni::fgValidityDomain);
}

bool IsOfOpening(unsigned int code, const XMLCh* domain) {
    return code == xercesc::XMLExcepts::Scan_CouldNotOpenSource_Warning &&
           XMLString::equals(domain, XMLUni::fgExceptDomain);
}

// What a fatal error has to do with bytes that cannot be decoded.
EDecoding DecodingOf(unsigned int code, const XMLCh* domain) {
    if (!XMLString::equals(domain, XMLUni::fgExceptDomain)) {
        return EDecoding::PERHAPS;
    }
    switch (code) {
        case xercesc::XMLExcepts::Reader_CouldNotDecodeFirstLine:
        case xercesc::XMLExcepts::Trans_BadSrcSeq:
        case xercesc::XMLExcepts::UTF8_FormatError:
        case xercesc::XMLExcepts::UTF8_Invalid_3BytesSeq:
        case xercesc::XMLExcepts::UTF8_Irregular_3BytesSeq:
        case xercesc::XMLExcepts::UTF8_Invalid_4BytesSeq:
        case xercesc::XMLExcepts::UTF8_Exceeds_BytesLimit:
            return EDecoding::FAILED;
        case xercesc::XMLExcepts::Gen_UnexpectedEOF:
            return EDecoding::PERHAPS;
        default:
            return EDecoding::NOTHING;
    }
}

bool Begins(const std::string& text, const std::string& beginning) noexcept {
    return text.compare(0, beginning.size(), beginning) == 0;
}

// With what the parser begins a text about an attribute: its name, its value, or both. Further on a
// text has whatever the document put there.
struct SAttributeTexts {
    SAttributeTexts(const std::string& qname, const std::string& uri, const std::string& local,
                    const std::string& value)
        : name(qname),
          written("attribute '" + qname + '\''),
          expanded("attribute '{" + uri + '}' + local + '\''),
          ofValue("value '" + value + '\''),
          ofId("ID " + ofValue),
          ofBoth(ofValue + " for " + written),
          ofType("unable to find validator for simple type of " + written),
          hasQuote(value.find('\'') != std::string::npos) {}

    const std::string name;
    const std::string written;
    const std::string expanded;
    const std::string ofValue;
    const std::string ofId;
    const std::string ofBoth;
    const std::string ofType;
    const bool hasQuote;  // then the value may look like another text
};

// The attribute of which a text tells, if that is beyond doubt.
class CNamedAttribute {
public:
    void Compare(const std::string& text, const SAttributeTexts& attribute) {
        const bool isByName = Begins(text, attribute.written) || Begins(text, attribute.expanded) ||
                              Begins(text, attribute.ofBoth) || Begins(text, attribute.ofType);
        if (!isByName && !Begins(text, attribute.ofValue) && !Begins(text, attribute.ofId)) {
            return;
        }
        ++m_nFound;
        m_bMayBeOther = m_bMayBeOther || attribute.hasQuote;
        m_nByName += isByName ? 1U : 0U;
        if (isByName || m_nByName == 0) {
            m_Name = attribute.name;
        }
    }
    // Empty for none.
    std::string Name() const {
        return m_nFound == 1 || (m_nByName == 1 && !m_bMayBeOther) ? m_Name : "";
    }

private:
    std::string m_Name;
    std::size_t m_nFound = 0;
    std::size_t m_nByName = 0;
    bool m_bMayBeOther = false;
};

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
        m_Reader.m_Document = m_Reader.NarrowByOwn(m_Reader.m_pLocator->getSystemId());
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
        m_Reader.Obey(m_Reader.m_Watch.Memory(m_Reader.m_Memory.InUse()));
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

CWatchedReader::CWatchedReader(CCountingMemory& memory, CMySAXHandler& handler, CWatch& watch,
                               CProblems& problems, const CSchemaNames* schemas,
                               const std::string& name, bool requiresGrammar, bool isTree)
    : SAX2XMLReaderImpl(watch.IsUntrusted() ? &memory : xercesc::XMLPlatformUtils::fgMemoryManager),
      m_Memory(memory),
      m_Handler(handler),
      m_Watch(watch),
      m_Problems(problems),
      m_pSchemas(schemas),
      m_Name(name),
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
        PlaceInTag(*attributes);
    }
    m_nWaiting = 0;
    if (m_bIsEnding) {
        throw SLoadEnd();
    }
}

// Of a tag with more problems than this the others have no attribute: each is compared with all.
void CWatchedReader::PlaceInTag(const xercesc::Attributes& attributes) {
    const std::size_t MOST = 64;
    std::vector<CNamedAttribute> named(std::min(m_nWaiting, MOST));
    for (XMLSize_t i = 0; i < attributes.getLength(); ++i) {
        const SAttributeTexts texts(
            NarrowByOwn(attributes.getQName(i)), NarrowByOwn(attributes.getURI(i)),
            NarrowByOwn(attributes.getLocalName(i)), NarrowByOwn(attributes.getValue(i)));
        for (std::size_t number = 0; number < named.size(); ++number) {
            named[number].Compare(m_Problems.OfLast(m_nWaiting, number).text, texts);
        }
    }
    const std::string path = m_Path.Text();
    for (std::size_t number = 0; number < m_nWaiting; ++number) {
        SXMLProblem& problem = m_Problems.OfLast(m_nWaiting, number);
        const bool isNamed =
            number < named.size() && !path.empty() && !named[number].Name().empty();
        problem.path = isNamed ? path + "/@" + named[number].Name() : path;
    }
}

void CWatchedReader::Finish() { Settle(nullptr); }

std::string CWatchedReader::Narrow(const XMLCh* text) {
    return text == nullptr ? std::string() : std::string(m_Narrow.Convert(text).text);
}

// A client's converter is asked for no more than in a plain load.
std::string CWatchedReader::NarrowByOwn(const XMLCh* text) {
    return text == nullptr ? std::string()
                           : std::string(m_Narrow.ConvertByOwn(text, Utf16Length(text)).text);
}

// Where the parser is; in the document before it has begun.
SXMLProblem CWatchedReader::Place() {
    SXMLProblem problem;
    problem.file = m_Name;
    if (m_pLocator != nullptr) {
        problem.file = NarrowByOwn(m_pLocator->getSystemId());
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
    const bool inDocument = m_pLocator != nullptr && problem.file == m_Document;
    m_Problems.AddRefusal(std::move(problem), inDocument);
    throw SLoadEnd();
}

void CWatchedReader::error(const unsigned int code, const XMLCh* const domain, const ErrTypes type,
                           const XMLCh* const text, const XMLCh* const systemId, const XMLCh* const,
                           const XMLFileLoc line, const XMLFileLoc column) {
    // A schema that cannot be opened: one of the program's, or any where there must be one.
    const std::string schema = m_pSchemas == nullptr ? "" : m_pSchemas->Quoted(NarrowByOwn(text));
    if (type == ErrType_Warning &&
        (!IsOfOpening(code, domain) || (schema.empty() && !m_bRequiresGrammar))) {
        return;
    }
    const bool isFatal = type == ErrType_Fatal || (type == ErrType_Warning && !schema.empty());
    if (m_bIsEnding) {
        if (isFatal) {
            throw SLoadEnd();
        }
        return;
    }
    SXMLProblem problem;
    problem.severity = isFatal ? EXMLSeverity::FATAL : EXMLSeverity::ERROR;
    problem.text = Narrow(text);
    problem.file = Narrow(systemId);
    problem.line = line;
    problem.column = column;
    const bool inDocument = !m_Document.empty() && NarrowByOwn(systemId) == m_Document;
    if (inDocument) {
        problem.path = m_Path.Text();
    } else if (problem.file.empty()) {
        problem.file = schema;
    } else if (m_pSchemas != nullptr) {
        problem.file = m_pSchemas->NameOf(problem.file);
    }
    if (isFatal) {
        m_Problems.SetFatal(m_Document.empty(), DecodingOf(code, domain));
    }
    m_Problems.Add(std::move(problem), 2, inDocument);
    m_bIsEnding = isFatal || m_Problems.IsFull();
    if (isFatal || (m_bIsEnding && (!inDocument || IsOfText(code, domain)))) {
        throw SLoadEnd();
    }
    m_nWaiting = inDocument && !IsOfText(code, domain) ? m_nWaiting + 1 : 0;
}

}  // namespace norvask
