// Internal. CWatchedLoad: a load with settings: its limits, its schemas, and its problems.
#ifndef NORVASK_LOAD_WATCHED_LOAD_H
#define NORVASK_LOAD_WATCHED_LOAD_H

#include "load/parser/document_source.h"
#include "load/parser/schema_names.h"
#include "load/parser/watched_reader.h"
#include "load/watch/problems.h"
#include "load/watch/source_places.h"
#include "load/watch/watch.h"

namespace norvask {

class CWatchedLoad {
public:
    // Both are used as long as this lives. Throws CXMLException (invalid parameter).
    CWatchedLoad(const SXMLLoadSettings& settings, CDocumentSource& source);
    CWatchedLoad(const CWatchedLoad&) = delete;
    CWatchedLoad& operator=(const CWatchedLoad&) = delete;

    CWatch& Watch() noexcept { return m_Watch; }
    const SXMLLoadSettings& Settings() const noexcept { return m_Settings; }
    // Whether a schema or a grammar is asked for, which only the parser knows.
    bool IsForParser() const noexcept {
        return m_Settings.validate && (m_Settings.requireGrammar || !m_Schemas.IsEmpty());
    }

    // A document type declaration is the parser's in a document that is validated or a stranger's.
    bool TakesDoctype() const noexcept {
        return !m_Settings.validate && m_Settings.untrusted == nullptr;
    }

    // Before anything is read. Throws SLoadEnd.
    void Begin();
    // After the lane left the document: refuses what the parser need not see. Throws SLoadEnd.
    void EndIfOver();
    // Lets the parser read the document. `link` is told of its reader; NULL for nobody. An error
    // that the handler of a tree finds, which has no link, is a problem like others. Throws
    // SLoadEnd, and what the parser and the handler throw.
    void Parse(CMySAXHandler& handler, bool calculatesOffsets, CReaderLink* link);
    // The document was read. Throws SLoadEnd.
    void End();

    // An exception of the parser's own, by its text, or of the function that reads.
    void AddParserException(const char* message);
    void AddReadFailure(int error);

    [[noreturn]] void Throw();

private:
    void SetValidation(xercesc::SAX2XMLReader& reader) const;
    void CompletePlaces();
    void CompleteReason();
    bool MayBeIllFormed() const;

    const SXMLLoadSettings& m_Settings;
    CDocumentSource& m_Source;
    CWatch m_Watch;
    CProblems m_Problems;
    const CSchemaNames m_Schemas;
    CSourcePlaces m_Places;
    CCountingMemory m_Memory;
    bool m_bIsFedWhileRead = false;
};

}  // namespace norvask

#endif
