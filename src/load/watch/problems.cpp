// CProblems: gathering, and the error that is thrown in the end.
#include "load/watch/problems.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "load/watch/source_places.h"

namespace norvask {

// Message 3. Lines are counted in 32 bits there.
CXMLError CProblems::Message(int id, const SXMLProblem& problem) {
    const std::string line = std::to_string(static_cast<std::int32_t>(problem.line));
    return CXMLError(
        CXMLException(id, 3, problem.file.c_str(), line.c_str(), problem.text.c_str()));
}

void CProblems::Tell(const CXMLException& told) {
    const CXMLError error(told);
    m_nID = error.GetID();
    m_Text = error.GetMessage();
}

void CProblems::Add(SXMLProblem problem, int id, bool inDocument) {
    if (m_Problems.empty()) {
        Tell(Message(id, problem));
    }
    Keep(std::move(problem), inDocument);
}

void CProblems::Add(SXMLProblem problem, const CXMLException& told, bool inDocument) {
    if (m_Problems.empty()) {
        Tell(told);
    }
    Keep(std::move(problem), inDocument);
}

void CProblems::Keep(SXMLProblem problem, bool inDocument) {
    if (inDocument) {
        m_InDocument.push_back(m_Problems.size());
    }
    m_nBytes += sizeof problem + problem.file.size() + problem.text.size() + problem.path.size();
    m_Problems.push_back(std::move(problem));
}

void CProblems::AddRefusal(SXMLProblem problem, bool inDocument) {
    m_bIsRefused = true;
    Tell(Message(9, problem));
    m_Problems.insert(m_Problems.begin(), std::move(problem));
    std::transform(m_InDocument.begin(), m_InDocument.end(), m_InDocument.begin(),
                   [](std::size_t number) { return number + 1; });
    if (inDocument) {
        m_InDocument.insert(m_InDocument.begin(), 0);
    }
}

std::vector<SXMLProblem*> CProblems::InDocument() {
    std::vector<SXMLProblem*> problems(m_InDocument.size());
    std::transform(m_InDocument.begin(), m_InDocument.end(), problems.begin(),
                   [this](std::size_t number) { return &m_Problems[number]; });
    return problems;
}

// Where the parser stopped says little: it finds out when it decodes a block, elements away from
// the bytes, and at the end of a document it takes what is cut off for the end. Only then its text
// says nothing of it, and another is told.
void CProblems::SetIllFormed(const CSourcePlaces& places, const std::string& document) {
    SXMLProblem& problem = m_Problems.back();
    const bool isOfDecoding = m_Decoding == EDecoding::FAILED;
    if (problem.file.empty()) {
        problem.file = document;
    }
    if (isOfDecoding) {
        problem.path.clear();
    }
    problem.line = places.BadLine();
    problem.column = places.BadColumn();
    problem.text = "invalid UTF-8: " + places.BadBytes();
    if (m_Problems.size() == 1 && !isOfDecoding) {
        Tell(Message(2, problem));
    }
}

void CProblems::Throw() { throw CXMLError(m_nID, m_Text.c_str(), std::move(m_Problems)); }

}  // namespace norvask
