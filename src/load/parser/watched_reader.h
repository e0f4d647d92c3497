// Internal. CWatchedReader: the parser, for a load with a watch.
//
// It stands on both sides of the parser: what the parser reports passes through here on its way to
// the handler of the load, and what the parser finds wrong is gathered as problems.
//
// The parser reports what is invalid in a start tag before it tells of the element. So a problem
// that does not end the load at once waits for the next event, which tells whose it is; a load that
// ends at the first one ends there, before anybody is told of that event.
#ifndef NORVASK_LOAD_PARSER_WATCHED_READER_H
#define NORVASK_LOAD_PARSER_WATCHED_READER_H

#include <cstddef>
#include <memory>
#include <string>
#include <xercesc/parsers/SAX2XMLReaderImpl.hpp>
#include <xercesc/sax2/DefaultHandler.hpp>

#include "load/parser/counting_memory.h"
#include "load/parser/dom_string.h"
#include "load/parser/element_path.h"
#include "load/parser/my_sax_handler.h"
#include "load/parser/schema_names.h"
#include "load/watch/problems.h"
#include "load/watch/watch.h"

namespace norvask {

class CWatchedReader final : public xercesc::SAX2XMLReaderImpl {
public:
    // All of these outlive the reader. `schemas` is NULL without validation; `name` is what errors
    // call the document before the parser has a name for it. A reader that requires
    // a grammar refuses a document without. If `isTree`, what the handler throws of an element is a
    // problem of the document.
    CWatchedReader(CCountingMemory& memory, CMySAXHandler& handler, CWatch& watch,
                   CProblems& problems, const CSchemaNames* schemas, const std::string& name,
                   bool requiresGrammar, bool isTree);
    ~CWatchedReader() override;

    // The reader reads the schemas that the document names.
    void SetReadsHints() noexcept { m_bReadsHints = true; }

    // The parser has read the document without an exception. Throws SLoadEnd.
    void Finish();

    // The load is refused where the parser is. Throws SLoadEnd.
    [[noreturn]] void Refuse(ERefusal refusal);
    void Obey(ERefusal refusal) {
        if (refusal != ERefusal::NONE) {
            Refuse(refusal);
        }
    }

    // What the parser finds.
    void error(const unsigned int code, const XMLCh* const domain, const ErrTypes type,
               const XMLCh* const text, const XMLCh* const systemId, const XMLCh* const publicId,
               const XMLFileLoc line, const XMLFileLoc column) override;

private:
    class CEvents;

    void StartElement(const xercesc::Attributes& attributes);
    void AddException(CXMLException& exception);
    // The next event is there: a start tag with these attributes, or for NULL none.
    void Settle(const xercesc::Attributes* attributes);
    void PlaceInTag(const xercesc::Attributes& attributes);
    std::string Narrow(const XMLCh* text);
    std::string NarrowByOwn(const XMLCh* text);
    SXMLProblem Place();

    const CCountingMemory& m_Memory;
    CMySAXHandler& m_Handler;
    CWatch& m_Watch;
    CProblems& m_Problems;
    const CSchemaNames* const m_pSchemas;
    const std::string m_Name;
    const bool m_bRequiresGrammar;
    const bool m_bIsTree;
    const std::unique_ptr<CEvents> m_pEvents;
    const xercesc::Locator* m_pLocator = nullptr;
    std::string m_Document;  // what the parser calls it
    CElementPath m_Path;
    CDOMString m_Narrow;
    std::size_t m_nWaiting = 0;  // problems that may lie in the next start tag
    bool m_bIsEnding = false;    // the last problem ends the load
    bool m_bHasGrammar = false;
    bool m_bReadsHints = false;
};

}  // namespace norvask

#endif
