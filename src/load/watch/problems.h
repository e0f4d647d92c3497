// Internal. CProblems: what was found wrong with a document, until the load throws it.
//
// The first problem gives the error its class and text, with one exception: a refusal, which ends
// the load, comes before those that were collected, so that a program can tell it by its class.
#ifndef NORVASK_LOAD_WATCH_PROBLEMS_H
#define NORVASK_LOAD_WATCH_PROBLEMS_H

#include <cstddef>
#include <string>
#include <vector>

#include "norvask/error.h"

namespace norvask {

class CSourcePlaces;

// Ends a load whose problems are complete. No exception of anybody else, so that nobody on the way
// takes it for his own.
struct SLoadEnd {};

// What a fatal error has to do with bytes that cannot be decoded: it may be no more than what came
// of them.
enum class EDecoding { NOTHING, PERHAPS, FAILED };

class CProblems {
public:
    // Holds so many, and so many bytes of them; 0 for all.
    explicit CProblems(unsigned int limit, std::size_t bytes = 0) noexcept
        : m_nLimit(limit), m_nMostBytes(bytes) {}
    CProblems(const CProblems&) = delete;
    CProblems& operator=(const CProblems&) = delete;

    bool IsEmpty() const noexcept { return m_Problems.empty(); }
    // Whether the load ends, since there are so many.
    bool IsFull() const noexcept {
        return (m_nLimit != 0 && m_Problems.size() >= m_nLimit) ||
               (m_nMostBytes != 0 && m_nBytes >= m_nMostBytes);
    }

    // `inDocument` tells whether it lies in the document rather than in another file. The text of
    // the load is that of its first problem, with this class and message 3, or what is told of it.
    void Add(SXMLProblem problem, int id, bool inDocument);
    void Add(SXMLProblem problem, const CXMLException& told, bool inDocument = false);
    void AddRefusal(SXMLProblem problem, bool inDocument);
    // The problem that is added next is fatal: one of a document that is not opened yet, or one
    // that may come from bytes that could not be decoded.
    void SetFatal(bool isOfOpening, EDecoding decoding) noexcept {
        m_bIsOfOpening = isOfOpening;
        m_Decoding = decoding;
    }
    bool IsOfOpening() const noexcept { return m_bIsOfOpening; }
    EDecoding Decoding() const noexcept { return m_Decoding; }
    bool IsRefused() const noexcept { return m_bIsRefused; }
    // One of the last `count`, and the last.
    SXMLProblem& OfLast(std::size_t count, std::size_t number) noexcept {
        return m_Problems[m_Problems.size() - count + number];
    }
    SXMLProblem& Last() noexcept { return m_Problems.back(); }
    const SXMLProblem& Last() const noexcept { return m_Problems.back(); }
    bool IsLastInDocument() const noexcept {
        return !m_InDocument.empty() && m_InDocument.back() == m_Problems.size() - 1;
    }
    void Clear() noexcept {
        m_Problems.clear();
        m_InDocument.clear();
    }

    // Those that lie in the document.
    std::vector<SXMLProblem*> InDocument();
    // The document is no UTF-8 at this place, which is what the last problem comes from.
    void SetIllFormed(const CSourcePlaces& places, const std::string& document);

    [[noreturn]] void Throw();

private:
    void Tell(const CXMLException& told);
    void Keep(SXMLProblem problem, bool inDocument);
    static CXMLError Message(int id, const SXMLProblem& problem);

    const unsigned int m_nLimit;
    const std::size_t m_nMostBytes;
    std::size_t m_nBytes = 0;
    int m_nID = 0;
    bool m_bIsOfOpening = false;
    EDecoding m_Decoding = EDecoding::NOTHING;
    bool m_bIsRefused = false;
    std::string m_Text;
    std::vector<SXMLProblem> m_Problems;
    std::vector<std::size_t> m_InDocument;  // their numbers
};

}  // namespace norvask

#endif
