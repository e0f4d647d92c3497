// What a load fails with, as values and as lines of text, so that tables can hold it.
#ifndef NORVASK_TESTS_SUPPORT_PROBLEMS_H
#define NORVASK_TESTS_SUPPORT_PROBLEMS_H

#include <norvask/norvask.h>

#include <string>
#include <vector>

#include "support/errors.h"

namespace norvask_test {

// "fatal a.xml:3:7: the text @ /a/b[1]"; without a path nothing stands behind the text.
inline std::string ProblemLine(const SXMLProblem& problem) {
    return std::string(problem.severity == EXMLSeverity::FATAL ? "fatal " : "error ") +
           problem.file + ":" + std::to_string(problem.line) + ":" +
           std::to_string(problem.column) + ": " + problem.text +
           (problem.path.empty() ? "" : " @ " + problem.path);
}

struct SFailure {
    bool isThrown = false;
    bool isError = false;  // a CXMLError, and not only a CXMLException
    int id = 0;
    std::string text = {};
    std::vector<SXMLProblem> problems = {};

    // Each problem is a line. "fine" for what did not fail.
    std::string Lines() const {
        if (!isThrown) return "fine\n";
        std::string lines;
        for (const SXMLProblem& problem : problems)
            lines += ProblemLine(problem) + "\n";
        return lines;
    }
    // Class and text; "fine" for what did not fail.
    std::string Told() const { return isThrown ? std::to_string(id) + " " + text : "fine"; }
};

// What the work throws. What is no CXMLException passes.
template <typename Work>
SFailure FailureOf(const Work& work) {
    SFailure failure;
    try {
        work();
    } catch (const CXMLError& e) {
        failure = {true, true, e.GetID(), e.GetMessage(), e.Problems()};
    } catch (CXMLException& e) {
        failure = {true, false, e.GetID(), e.GetMessage(), {}};
    }
    return failure;
}

template <typename Work>
std::string ProblemsOf(const Work& work) {
    return FailureOf(work).Lines();
}

}  // namespace norvask_test

// The statement must throw a CXMLError of this class with these problems, one in a line.
#define EXPECT_PROBLEMS(statement, errorClass, lines)                                       \
    do {                                                                                    \
        const norvask_test::SFailure failure = norvask_test::FailureOf([&] { statement; }); \
        EXPECT_EQ(failure.Lines(), std::string(lines));                                     \
        EXPECT_EQ(failure.id, errorClass) << failure.text;                                  \
        EXPECT_TRUE(failure.isError);                                                       \
    } while (false)

#endif
