// A process that forks while a writer has a document in a file: the file is that of the process
// that opened it. The copy of the writer in the child process neither removes it nor writes to it.
#include <norvask/norvask.h>

#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <ostream>
#include <string>

#include "support/files.h"
#include "support/sanitizers.h"
#include "support/tree.h"
#include "support/vocabulary.h"

using namespace norvask;
using namespace norvask_test;

namespace {

// Keeps the stream that the writer opens, so that what it holds back can be written out.
class CFlushable : public CXMLSaxWriter {
public:
    using CXMLSaxWriter::StartDocument;
    void StartDocument(std::ostream* stream, bool format, bool ownStream) override {
        CXMLSaxWriter::StartDocument(stream, format, ownStream);
        m_pStream = stream;
    }
    void Flush() { m_pStream->flush(); }

private:
    std::ostream* m_pStream = nullptr;
};

enum class EEnd { EXIT, DELETE };

// What a program may well have: a writer that exit() destroys.
std::unique_ptr<CFlushable>& Writer() {
    static std::unique_ptr<CFlushable> writer;
    return writer;
}

// A child process that ends by exit(), or destroys its writer first and itself without exit().
void RunChild(EEnd end) {
    std::fflush(nullptr);
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        if (end == EEnd::EXIT) std::exit(0);
        Writer().reset();
        _exit(0);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status));
    // What the child leaves allocated on purpose, a sanitizer may call a leak at exit().
    if (!IS_SANITIZED) {
        EXPECT_EQ(WEXITSTATUS(status), 0);
    }
}

std::string Begin(const TemporaryFile& file) {
    Writer() = std::make_unique<CFlushable>();
    Writer()->StartDocument(file.Name(), false);
    Writer()->StartElement("a", nullptr);
    Writer()->StartElement("b", nullptr);
    Writer()->Characters("before");
    return std::string(DECLARATION) + "<a><b>before";
}

std::string Finish() {
    Writer()->Characters(" and after");
    Writer()->EndElement();
    Writer()->EndElement();
    Writer()->EndDocument();
    Writer().reset();
    return " and after</b></a>";
}

}  // namespace

TEST(WriterFork, LeavesTheFileToTheProcessThatOpenedIt) {
    for (const EEnd end : {EEnd::EXIT, EEnd::DELETE}) {
        const TemporaryFile file;
        const std::string begun = Begin(file);
        Writer()->Flush();
        RunChild(end);
        EXPECT_EQ(file.Content(), begun);
        const std::string all = begun + Finish();
        EXPECT_EQ(file.Content(), all);
    }
}

// The child's copy of the stream has the same bytes waiting, and the same place in the file.
TEST(WriterFork, LeavesWhatIsHeldBackToTheProcessThatOpenedTheFile) {
    for (const EEnd end : {EEnd::EXIT, EEnd::DELETE}) {
        const TemporaryFile file;
        const std::string begun = Begin(file);
        RunChild(end);
        const std::string all = begun + Finish();
        EXPECT_EQ(file.Content(), all);
    }
}

TEST(WriterFork, LeavesTheFileOverTwoGenerations) {
    const TemporaryFile file;
    const std::string begun = Begin(file);
    Writer()->Flush();
    std::fflush(nullptr);
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        const pid_t grandchild = fork();
        if (grandchild == 0) Writer().reset();
        if (grandchild > 0) waitpid(grandchild, nullptr, 0);
        _exit(0);
    }
    ASSERT_EQ(waitpid(child, nullptr, 0), child);
    EXPECT_EQ(file.Content(), begun);
    const std::string all = begun + Finish();
    EXPECT_EQ(file.Content(), all);
}

TEST(WriterFork, RemovesAFileThatTheChildOpenedItself) {
    const TemporaryFile file;
    const TemporaryFile ofChild;
    const std::string begun = Begin(file);
    Writer()->Flush();
    std::fflush(nullptr);
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        {
            CXMLSaxWriter writer;
            writer.StartDocument(ofChild.Name(), false);
            writer.StartElement("a", nullptr);
        }
        _exit(Exists(ofChild.Name()) ? 1 : 0);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    EXPECT_EQ(file.Content(), begun);
    Writer().reset();  // here the document is unfinished, too
    EXPECT_FALSE(file.Exists());
}
