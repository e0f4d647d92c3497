/// @file
/// Errors that a program can ask: what the conveniences and XMLLoad (load.h) throw.
///
/// **Role:** a CXMLError is a CXMLException, with the same class and text, so whoever catches that
/// goes on as before; it is a std::exception too, so no handler of last resort misses it; and of a
/// load it tells each problem by itself.
///
///     try {
///         XMLLoadFile("orders.xml", SXMLLoadOptions().Validate().CollectProblems());
///     } catch (const CXMLError& e) {
///         for (const SXMLProblem& problem : e.Problems()) {
///             std::cerr << problem.file << ':' << problem.line << ": " << problem.text << '\n';
///         }
///     }
///
/// The operations of the classes throw plain CXMLExceptions, as they always did.
///
/// **Threads:** as std::exception: copies are independent of each other, and may be read on
/// different threads.
#ifndef NORVASK_ERROR_H
#define NORVASK_ERROR_H

#include <cstdint>
#include <exception>
#include <memory>
#include <string>
#include <vector>

#include "norvask/exception.h"
#include "norvask/export.h"

namespace norvask {

/// What a problem means to the load.
enum class EXMLSeverity {
    ERROR,  ///< The document is well-formed but not valid. Reading could go on.
    FATAL   ///< The load could not, or may not, go on.
};

/// One problem of a load. What is not known is 0 or empty; nothing is made up.
struct SXMLProblem {
    /// Whether the load could have gone on.
    EXMLSeverity severity = EXMLSeverity::FATAL;

    /// The file in which it lies, as the parser resolved it, or the name of the source (SXMLSource,
    /// load.h). Whole, however long it is: of GetMessage it is 255 bytes at most.
    std::string file = {};

    /// Counted from 1. The column counts characters, also those beyond U+FFFF as one, and is that
    /// of the place at which the problem was noticed: mostly just behind it. A TAB is one, and so
    /// is the pair of a carriage return and a line feed. 0 where it is not known: for a file that
    /// could not be opened; for the column in a document of an encoding other than UTF-8, UTF-16
    /// and the common ones of one byte a character (US-ASCII, ISO-8859, windows-125x, KOI8), and in
    /// one that has characters beyond U+FFFF and cannot be read twice.
    std::uint64_t line = 0;
    std::uint64_t column = 0;

    /// What is wrong, in the parser's words where it is the parser's finding.
    std::string text = {};

    /// The element in which it lies, by names as they are written and places among the siblings of
    /// that name: "/orders/order[3]"; with the attribute, where it is known which it is:
    /// "/orders/order[3]/@amount". A problem in a start tag that could not be read to its end lies
    /// in the element around it. Empty outside of the root, in files other than the document, for
    /// bytes that the parser could not decode, and for what takes more than 4 KiB. In a document of
    /// more than 4,096 different names, or of very long ones, those that came later have no places:
    /// "name[?]".
    std::string path = {};
};

// Deliberate: the base has no virtual destructor, as its header says.
#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
#endif
/// An error with the problems that it comes from: a CXMLException and a std::exception.
class NORVASK_API CXMLError : public CXMLException, public std::exception {
public:
    /// With a text of its own (NULL is an empty one), and the problems, if there are any. May throw
    /// std::bad_alloc.
    CXMLError(int id, const char* text,
              std::vector<SXMLProblem> problems = std::vector<SXMLProblem>());

    /// Class and text of another exception, and no problems. May not fail.
    explicit CXMLError(const CXMLException& other) noexcept;

    /// Copies share text and problems, so making one cannot fail.
    CXMLError(const CXMLError& other) noexcept;
    CXMLError& operator=(const CXMLError& other) noexcept;
    ~CXMLError() override;

    /// The text, as GetMessage. Valid as long as the exception or a copy of it lives.
    const char* what() const noexcept override;

    /// The same operations as the base has, for an error that is const.
    using CXMLException::GetID;
    using CXMLException::GetMessage;
    const char* GetMessage() const noexcept;
    int GetID() const noexcept;

    /// The problems of a load, in the order in which they were found, but for a refusal (class 9),
    /// which stands in front of those that were found before it. The first is the one that the text
    /// tells. A save that failed has the system's reason as its one problem, if there is one.
    /// Empty for an error of anything else. Valid as long as the exception or a copy of
    /// it lives.
    const std::vector<SXMLProblem>& Problems() const noexcept;

private:
    std::shared_ptr<const std::vector<SXMLProblem>> m_pProblems;  // NULL for none
};
#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

/// For a catch block: throws on what is being handled there, a CXMLException as a CXMLError with
/// the same class and text. One of a class that the program has derived from it, and every other
/// exception, stays what it is. Outside of a catch block it ends the program.
[[noreturn]] NORVASK_API void XMLRethrowAsError();

}  // namespace norvask

#endif
