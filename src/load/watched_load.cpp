// CWatchedLoad: setting up the reader, and completing what is known of problems.
#include "load/watched_load.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <string>
#include <utility>
#include <vector>
#include <xercesc/util/BinInputStream.hpp>
#include <xercesc/util/XMLUni.hpp>

#include "foundation/errors.h"
#include "foundation/parser_text.h"
#include "load/parser/reader_link.h"
#include "load/source/file_access.h"

namespace norvask {
namespace {

using xercesc::XMLUni;

class CPause {
public:
    CPause(CReaderLink* link, CWatchedReader& reader) noexcept : m_pLink(link), m_Reader(reader) {
        if (m_pLink != nullptr) {
            m_pLink->SetReader(nullptr);
        }
    }
    CPause(const CPause&) = delete;
    CPause& operator=(const CPause&) = delete;
    ~CPause() {
        if (m_pLink != nullptr) {
            m_pLink->SetReader(&m_Reader);
        }
    }

private:
    CReaderLink* const m_pLink;
    CWatchedReader& m_Reader;
};

// The bytes on their way to the parser.
class CWatchedStream final : public xercesc::BinInputStream {
public:
    CWatchedStream(std::unique_ptr<xercesc::BinInputStream> stream, CWatchedReader& reader,
                   CReaderLink* link, CWatch& watch, CSourcePlaces* places) noexcept
        : m_pStream(std::move(stream)),
          m_Reader(reader),
          m_pLink(link),
          m_Watch(watch),
          m_pPlaces(places) {}

    // Reads the first block. Deliberate: before the parser makes its reader, which loses two
    // strings when its own first read is ended by an exception.
    void Begin() {
        m_First.resize(FIRST_BLOCK);
        m_First.resize(Read(m_First.data(), m_First.size()));
    }

    XMLFilePos curPos() const override { return m_pStream->curPos() - (m_First.size() - m_nUsed); }
    XMLSize_t readBytes(XMLByte* const to, const XMLSize_t room) override {
        const XMLSize_t count = std::min(room, m_First.size() - m_nUsed);
        if (count == 0) {
            return Read(to, room);
        }
        std::memcpy(to, m_First.data() + m_nUsed, count);
        m_nUsed += count;
        return count;
    }
    const XMLCh* getContentType() const override { return m_pStream->getContentType(); }
    const XMLCh* getEncoding() const override { return m_pStream->getEncoding(); }

private:
    static const std::size_t FIRST_BLOCK = 49152;  // as the parser reads

    // The program's functions are called here, when the parser can tell no position.
    XMLSize_t Read(XMLByte* to, XMLSize_t room) {
        const CPause pause(m_pLink, m_Reader);
        const XMLSize_t count = m_pStream->readBytes(to, room);
        if (m_pPlaces != nullptr) {
            m_pPlaces->Feed(reinterpret_cast<const char*>(to), count);
        }
        m_Reader.Obey(m_Watch.Read(count));
        return count;
    }

    std::vector<XMLByte> m_First;
    std::size_t m_nUsed = 0;  // of the first block
    const std::unique_ptr<xercesc::BinInputStream> m_pStream;
    CWatchedReader& m_Reader;
    CReaderLink* const m_pLink;
    CWatch& m_Watch;
    CSourcePlaces* const m_pPlaces;  // NULL for a source that can be read again
};

class CWatchedInput final : public xercesc::InputSource {
public:
    CWatchedInput(const xercesc::InputSource& source, std::uint64_t size, CWatchedReader& reader,
                  CReaderLink* link, CWatch& watch, CSourcePlaces* places)
        : InputSource(source.getSystemId(), source.getPublicId()),
          m_Source(source),
          m_nSize(size),
          m_Reader(reader),
          m_pLink(link),
          m_Watch(watch),
          m_pPlaces(places) {
        setEncoding(source.getEncoding());
        setIssueFatalErrorIfNotFound(source.getIssueFatalErrorIfNotFound());
    }

    xercesc::BinInputStream* makeStream() const override {
        std::unique_ptr<xercesc::BinInputStream> stream(m_Source.makeStream());
        if (stream == nullptr) {
            return nullptr;
        }
        m_Reader.Obey(m_Watch.Begin(m_nSize));
        std::unique_ptr<CWatchedStream> watched(new (getMemoryManager()) CWatchedStream(
            std::move(stream), m_Reader, m_pLink, m_Watch, m_pPlaces));
        watched->Begin();
        return watched.release();
    }

private:
    const xercesc::InputSource& m_Source;
    const std::uint64_t m_nSize;
    CWatchedReader& m_Reader;
    CReaderLink* const m_pLink;
    CWatch& m_Watch;
    CSourcePlaces* const m_pPlaces;
};

// What the problems of a stranger's document may take, all texts together.
const std::size_t MOST_BYTES_OF_PROBLEMS = std::size_t{4} << 20;

// Without validation there is but one.
unsigned int ProblemLimit(const SXMLLoadSettings& settings) noexcept {
    return settings.validate ? settings.problemLimit : 1;
}

}  // namespace

CWatchedLoad::CWatchedLoad(const SXMLLoadSettings& settings, CDocumentSource& source)
    : m_Settings(settings),
      m_Source(source),
      m_Watch(settings),
      m_Problems(ProblemLimit(settings),
                 settings.untrusted != nullptr ? MOST_BYTES_OF_PROBLEMS : 0),
      m_Schemas(settings) {}

void CWatchedLoad::Begin() {
    SXMLProblem problem;
    if (m_Settings.doSchema && !m_Schemas.AreReadable(problem)) {
        m_Problems.Add(std::move(problem), 2, false);
        throw SLoadEnd();
    }
    if (!m_Watch.IsUntrusted()) {
        return;
    }
    const CByteSource* const bytes = m_Source.Bytes();
    const ERefusal refusal = m_Watch.Begin(bytes == nullptr ? 0 : bytes->Size());
    if (refusal != ERefusal::NONE) {
        problem.file = m_Source.Name();
        problem.text = m_Watch.Words(refusal);
        m_Problems.AddRefusal(std::move(problem), false);
        throw SLoadEnd();
    }
}

void CWatchedLoad::EndIfOver() {
    if (m_Watch.Over() == ERefusal::NONE) {
        return;
    }
    SXMLProblem problem;
    problem.file = m_Source.Name();
    problem.text = m_Watch.Words(m_Watch.Over());
    CByteSource* const bytes = m_Source.Bytes();
    if (bytes != nullptr) {
        CSourcePlaces places;
        places.FeedAll(*bytes, m_Watch.Position());
        problem.line = places.Line();
    }
    m_Problems.AddRefusal(std::move(problem), false);
    throw SLoadEnd();
}

void CWatchedLoad::SetValidation(xercesc::SAX2XMLReader& reader) const {
    reader.setFeature(XMLUni::fgXercesLoadSchema, !m_Watch.IsUntrusted());
    reader.setFeature(XMLUni::fgSAX2CoreValidation, m_Settings.validate);
    if (!m_Settings.validate) {
        return;
    }
    reader.setFeature(XMLUni::fgXercesDynamic, !m_Settings.requireGrammar);
    reader.setFeature(XMLUni::fgXercesSchema, m_Settings.doSchema);
    const auto set = [&reader](const XMLCh* property, const std::string& value) {
        if (!value.empty()) {
            const CParserString wide(value.c_str());
            reader.setProperty(property, const_cast<XMLCh*>(wide.Get()));
        }
    };
    set(XMLUni::fgXercesSchemaExternalSchemaLocation, m_Schemas.Pairs());
    set(XMLUni::fgXercesSchemaExternalNoNameSpaceSchemaLocation, m_Schemas.WithoutNamespace());
}

void CWatchedLoad::Parse(CMySAXHandler& handler, bool calculatesOffsets, CReaderLink* link) {
    CWatchedReader reader(m_Memory, handler, m_Watch, m_Problems,
                          m_Settings.validate ? &m_Schemas : nullptr, m_Source.Name(),
                          m_Settings.validate && m_Settings.requireGrammar, link == nullptr);
    if (link != nullptr) {
        link->SetReader(&reader);
    }
    reader.setFeature(XMLUni::fgXercesCalculateSrcOfs, calculatesOffsets);
    SetValidation(reader);
    if (m_Settings.doSchema && !m_Watch.IsUntrusted()) {
        reader.SetReadsHints();
    }
    m_bIsFedWhileRead = m_Source.Bytes() == nullptr;
    CSourcePlaces* const places = m_bIsFedWhileRead ? &m_Places : nullptr;
    m_Source.Parse(reader, [&](const xercesc::InputSource& source, std::uint64_t size) {
        return std::make_unique<CWatchedInput>(source, size, reader, link, m_Watch, places);
    });
    reader.Finish();
}

void CWatchedLoad::End() {
    if (m_Watch.Finish() != ERefusal::NONE) {
        EndIfOver();
    }
    if (!m_Problems.IsEmpty()) {
        throw SLoadEnd();
    }
}

void CWatchedLoad::AddParserException(const char* message) {
    SXMLProblem problem;
    problem.file = m_Source.Name();
    problem.text = message == nullptr ? "" : message;
    try {
        m_Source.ThrowFailed(message);
    } catch (const CXMLException& told) {
        m_Problems.Add(std::move(problem), told);
    }
}

void CWatchedLoad::AddReadFailure(int error) { AddParserException(WordsOf(error).c_str()); }

void CWatchedLoad::Throw() {
    CompletePlaces();
    CompleteReason();
    m_Problems.Throw();
}

// Where nothing has a place there is nothing to look for.
void CWatchedLoad::CompletePlaces() {
    std::vector<SXMLProblem*> problems = m_Problems.InDocument();
    if (problems.empty() && m_Problems.Decoding() == EDecoding::NOTHING) {
        return;
    }
    CByteSource* const bytes = m_bIsFedWhileRead ? nullptr : m_Source.Bytes();
    if (bytes != nullptr) {
        m_Places.Correct(problems);
        m_Places.FeedNeeded(*bytes, m_Problems.Decoding() == EDecoding::FAILED);
    } else {
        m_Places.End();
        for (SXMLProblem* const problem : problems) {
            problem->column = m_Places.HasPairs() ? 0 : problem->column;
        }
    }
    if (!m_Places.KnowsColumns()) {
        for (SXMLProblem* const problem : problems) {
            problem->column = 0;
        }
    }
    if (m_Places.IsIllFormed() && MayBeIllFormed()) {
        m_Problems.SetIllFormed(m_Places, m_Source.Name());
    }
}

// The parser says so, or found its error at that place or behind it, where nothing means what it
// seems to.
bool CWatchedLoad::MayBeIllFormed() const {
    const SXMLProblem& problem = m_Problems.Last();
    if (problem.severity != EXMLSeverity::FATAL || m_Problems.IsRefused()) {
        return false;
    }
    const auto place = std::make_pair(problem.line, problem.column);
    const auto bad = std::make_pair(m_Places.BadLine(), m_Places.BadColumn());
    return (m_Problems.Decoding() == EDecoding::FAILED &&
            (m_Problems.IsLastInDocument() || m_Problems.IsOfOpening())) ||
           (m_Problems.Decoding() == EDecoding::PERHAPS && m_Problems.IsLastInDocument() &&
            bad <= place);
}

// Of a document that could not be opened or read the parser does not tell the name.
void CWatchedLoad::CompleteReason() {
    SXMLProblem& problem = m_Problems.Last();
    if (m_Problems.IsOfOpening() && problem.file.empty()) {
        problem.file = m_Source.Name();
        const std::string reason = m_Source.WhyNot();
        if (!reason.empty()) {
            problem.text = reason;
        }
    }
}

}  // namespace norvask
