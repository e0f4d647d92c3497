// Loads of strangers' documents, as trees and as callbacks, from memory, from a file and from a
// function, and what must come of each.
#ifndef NORVASK_TESTS_SUPPORT_UNTRUSTED_LOADING_H
#define NORVASK_TESTS_SUPPORT_UNTRUSTED_LOADING_H

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "support/sanitizers.h"
#include "support/testing.h"

namespace norvask_test {

enum class EOrigin { MEMORY, FILE, READER };

struct SLoadWay {
    bool isTree;
    EOrigin origin;
};

inline const std::vector<SLoadWay>& EveryWay() {
    static const std::vector<SLoadWay> ways = {{true, EOrigin::MEMORY}, {true, EOrigin::FILE},
                                               {true, EOrigin::READER}, {false, EOrigin::MEMORY},
                                               {false, EOrigin::FILE},  {false, EOrigin::READER}};
    return ways;
}
// Where each load takes long.
inline const std::vector<SLoadWay>& FewWays() {
    static const std::vector<SLoadWay> ways = {{true, EOrigin::MEMORY}, {false, EOrigin::READER}};
    return ways;
}

// In a sanitized process each load takes ten times as long.
inline const std::vector<SLoadWay>& TriedWays() { return IS_SANITIZED ? FewWays() : EveryWay(); }

inline std::string Shown(const SLoadWay& way) {
    const char* const origins[] = {"memory", "a file", "a reader"};
    return std::string(way.isTree ? "a tree from " : "callbacks from ") +
           origins[static_cast<int>(way.origin)];
}

// Reads a document in pieces of at most so many bytes; counts the reads.
class CPieces {
public:
    explicit CPieces(const std::string& document, std::size_t most = 65536)
        : m_Document(document), m_nMost(most) {}

    std::ptrdiff_t operator()(char* to, std::size_t room) {
        ++m_nReads;
        const std::size_t count = std::min({room, m_nMost, m_Document.size() - m_nAt});
        std::memcpy(to, m_Document.data() + m_nAt, count);
        m_nAt += count;
        return static_cast<std::ptrdiff_t>(count);
    }
    std::size_t Reads() const { return m_nReads; }

private:
    const std::string& m_Document;
    const std::size_t m_nMost;
    std::size_t m_nAt = 0;
    std::size_t m_nReads = 0;
};

// What became of a load. `file` is "FILE" where the document is one.
struct SLoaded {
    int id = 0;  // of the error; 0 for none
    std::string text = {};
    std::vector<SXMLProblem> problems = {};
    std::string saved = {};  // the tree
};

// Loads and keeps nothing. The tree, if there is one and it is wanted, is given to `look`.
inline SLoaded LoadInWay(const SLoadWay& way, const std::string& xml, const std::string& fileName,
                         const SXMLLoadOptions& options,
                         const std::function<void(CXMLDocument&)>& look = nullptr) {
    SLoaded loaded;
    CPieces pieces(xml);
    const auto read = [&pieces](char* to, std::size_t room) { return pieces(to, room); };
    try {
        if (way.isTree) {
            const CXMLDocumentPtr document =
                way.origin == EOrigin::MEMORY ? XMLLoadText(xml, options)
                : way.origin == EOrigin::FILE ? XMLLoadFile(fileName, options)
                                              : XMLLoadReader(read, options);
            if (look) look(*document);
        } else {
            CXMLSaxHandler handler;
            if (way.origin == EOrigin::MEMORY) XMLLoadText(xml, handler, options);
            if (way.origin == EOrigin::FILE) XMLLoadFile(fileName, handler, options);
            if (way.origin == EOrigin::READER) XMLLoadReader(read, handler, options);
        }
    } catch (const CXMLError& e) {
        loaded.id = e.GetID();
        loaded.text = e.what();
        loaded.problems = e.Problems();
    }
    return loaded;
}

// One thing that may become of a load.
struct SExpected {
    int id = 0;  // 0: it loads
    std::uint64_t line = 0;
    std::string text = {};  // of the problem
};
inline SExpected Loads() { return {}; }
inline SExpected Refused(std::uint64_t line, const std::string& text) { return {9, line, text}; }
inline SExpected Invalid(std::uint64_t line, const std::string& text) { return {2, line, text}; }

inline constexpr const char* NO_DTD = "the document type declaration is not allowed";
inline constexpr const char* TOO_LONG =
    "a tag, text or other piece of more than 262144 bytes (maxMarkup)";
inline constexpr const char* TOO_DEEP = "deeper than 256 elements (maxDepth)";
inline constexpr const char* TOO_SLOW = "more than 5 seconds of processor time (maxSeconds)";
inline constexpr const char* TOO_LARGE = "larger than 16777216 bytes (maxBytes)";

// "" if that is what came of it, else what did. Where no line is expected, any will do.
inline std::string Differences(const SLoaded& loaded, const SExpected& expected,
                               const std::string& file) {
    std::ostringstream found;
    if (loaded.id != expected.id) {
        found << "class " << loaded.id << " instead of " << expected.id << ": " << loaded.text;
    } else if (loaded.id != 0) {
        if (loaded.problems.empty()) return "an error without a problem";
        const SXMLProblem& problem = loaded.problems.front();
        if (problem.text != expected.text) found << "the problem is [" << problem.text << "] ";
        if (problem.file != file) found << "the file is [" << problem.file << "] ";
        if (expected.line != 0 && problem.line != expected.line)
            found << "the line is " << problem.line << " instead of " << expected.line << ' ';
        const std::string text = LoadError(file, static_cast<int>(problem.line), expected.text);
        if (loaded.text != text) found << "the text is [" << loaded.text << "]";
    }
    return found.str();
}

inline std::string NameOf(const SLoadWay& way, const std::string& fileName) {
    return way.origin == EOrigin::MEMORY ? "Memfile"
           : way.origin == EOrigin::FILE ? fileName
                                         : "Stream";
}

// One of these must become of the document, in this way.
inline std::string LoadsAs(const SLoadWay& way, const std::string& xml, const std::string& fileName,
                           const SXMLLoadOptions& options, const std::vector<SExpected>& expected) {
    const SLoaded loaded = LoadInWay(way, xml, fileName, options);
    std::string report;
    for (const SExpected& one : expected) {
        const std::string difference = Differences(loaded, one, NameOf(way, fileName));
        if (difference.empty()) return "";
        report += difference + "\n";
    }
    return Shown(way) + ": " + report;
}

}  // namespace norvask_test

#endif
