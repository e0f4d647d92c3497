// A process that is forked from one with a writer: whose the stream and the stored name are, when
// the child goes on with the writer instead of just ending.
#include <norvask/norvask.h>

#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <memory>
#include <sstream>
#include <string>

#include "support/files.h"
#include "support/tree.h"
#include "support/vocabulary.h"

using namespace norvask;
using namespace norvask_test;

namespace {

// Runs the steps in a child process and waits for its end. Nothing but the steps destroys anything
// there.
template <typename Steps>
void InChild(Steps steps) {
    const pid_t child = fork();
    ASSERT_NE(child, -1);
    if (child == 0) {
        steps();
        _exit(0);
    }
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
}

const char BEGINNING[] = "<?xml version=\"1.0\"?>\r\n<a>text";
const char DOCUMENT[] = "<?xml version=\"1.0\"?>\r\n<a>text</a>";

std::unique_ptr<CXMLSaxWriter> Begin(const char* fileName) {
    std::unique_ptr<CXMLSaxWriter> writer(new CXMLSaxWriter);
    writer->StartDocument(fileName, true);
    writer->StartElement("a", nullptr);
    writer->Characters("text");
    return writer;
}

void End(CXMLSaxWriter& writer) {
    writer.EndElement();
    writer.EndDocument();
}

}  // namespace

TEST(WriterForkStreams, AStreamOfTheCallerIsLeftAsItIs) {
    TemporaryFile file;
    std::ofstream out(file.Name());
    std::unique_ptr<CXMLSaxWriter> writer(new CXMLSaxWriter);
    writer->StartDocument(&out, true, false);
    writer->StartElement("a", nullptr);
    writer->Characters("text");
    InChild([&] { delete writer.get(); });
    EXPECT_EQ(file.Content(), "");
    End(*writer);
    EXPECT_EQ(file.Content(), DOCUMENT);
}

TEST(WriterForkStreams, AnOwnedStreamThatIsNoFileIsDeletedInBoth) {
    // Tells the process that deletes it.
    class CTelling : public std::ostringstream {
    public:
        explicit CTelling(const char* told) : m_Told(told) {}
        ~CTelling() override { std::ofstream(m_Told, std::ios::app) << getpid() << ' '; }

    private:
        const char* const m_Told;
    };
    TemporaryFile told;
    std::unique_ptr<CXMLSaxWriter> writer(new CXMLSaxWriter);
    writer->StartDocument(new CTelling(told.Name()), true, true);
    InChild([&] { delete writer.get(); });
    const std::string child = told.Content();
    EXPECT_NE(child, "");
    writer.reset();
    EXPECT_EQ(told.Content(), child + std::to_string(getpid()) + ' ');
}

TEST(WriterForkStreams, AChildMayGoOnWithTheDocument) {
    TemporaryFile file;
    const std::unique_ptr<CXMLSaxWriter> writer = Begin(file.Name());
    InChild([&] { End(*writer); });
    EXPECT_EQ(file.Content(), DOCUMENT);
    // The parent's copy has the same bytes to write once more, and a file to remove.
}

TEST(WriterForkStreams, AChildsOwnDocumentIsItsOwn) {
    TemporaryFile parents;
    TemporaryFile ofChild(".xml", "old");
    const std::unique_ptr<CXMLSaxWriter> writer = Begin(parents.Name());
    InChild([&] { Begin(ofChild.Name()); });
    EXPECT_FALSE(Exists(ofChild.Name()));
    InChild([&] {
        // The parent's writer, with a document that the child begins.
        End(*writer);
        writer->StartDocument(ofChild.Name(), true);
        writer->StartElement("a", nullptr);
        delete writer.get();
    });
    EXPECT_FALSE(Exists(ofChild.Name()));
}

TEST(WriterForkStreams, ANameThatAFailedStartLeftIsTheParentsToo) {
    TemporaryFile file(".xml", "kept");
    std::ostringstream out;
    const std::unique_ptr<CXMLSaxWriter> writer(new CXMLSaxWriter);
    {
        const CUnopenable unopenable(file.Name());
        EXPECT_XML_ERROR(writer->StartDocument(file.Name(), true), 1,
                         std::string("Error saving '") + file.Name() + "'.");
    }
    InChild([&] {
        writer->StartDocument(&out, true, false);
        delete writer.get();
    });
    EXPECT_EQ(file.Content(), "kept");
}

TEST(WriterForkStreams, AFileThatTheChildOpenedForAnotherStreamKeepsItsBytes) {
    // A name that the parent left, and a stream that the child owns: its bytes are the child's.
    TemporaryFile left(".xml", "kept");
    TemporaryFile file;
    const std::unique_ptr<CXMLSaxWriter> writer(new CXMLSaxWriter);
    {
        const CUnopenable unopenable(left.Name());
        EXPECT_XML_ERROR(writer->StartDocument(left.Name(), true), 1,
                         std::string("Error saving '") + left.Name() + "'.");
    }
    InChild([&] {
        writer->StartDocument(new std::ofstream(file.Name()), true, true);
        writer->StartElement("a", nullptr);
        writer->Characters("text");
        delete writer.get();
    });
    EXPECT_EQ(file.Content(), BEGINNING);
    EXPECT_EQ(left.Content(), "kept");
}
