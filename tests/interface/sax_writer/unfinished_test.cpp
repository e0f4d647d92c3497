// The file of a streaming writer whose document was not ended: a regular file is removed, and
// nothing else ever is.
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <fstream>
#include <ostream>

#include "support/files.h"
#include "support/testing.h"
#include "support/writing.h"

using namespace norvask_test;

namespace {

void WriteSome(CXMLSaxWriter& writer) {
    writer.StartElement("a", nullptr);
    writer.Characters("text");
}

// A document in the file that is not ended, but something is done; then the writer ends.
void WriteUnfinished(const std::string& name, const Step& step = WriteSome) {
    CXMLSaxWriter writer;
    writer.StartDocument(name.c_str(), true);
    step(writer);
}

}  // namespace

TEST(WriterUnfinished, IsRemovedWhenItsDocumentIsNotEnded) {
    TemporaryFile file;
    WriteUnfinished(file.Name());
    EXPECT_FALSE(Exists(file.Name()));
    std::ofstream(file.Name()) << "an older one";
    WriteUnfinished(file.Name());
    EXPECT_FALSE(Exists(file.Name()));
    WriteUnfinished(file.Name(), [&](CXMLSaxWriter&) {});
    EXPECT_FALSE(Exists(file.Name()));
    // All elements ended are no document ended, and one refusal changes nothing.
    WriteUnfinished(file.Name(), [&](CXMLSaxWriter& writer) {
        writer.StartElement("a", nullptr);
        EXPECT_WRONG_FORMAT(writer.EndDocument(), 8);
        writer.EndElement();
        EXPECT_TRUE(Exists(file.Name()));
    });
    EXPECT_FALSE(Exists(file.Name()));
}

TEST(WriterUnfinished, LeavesAnotherFileThatHasItsNameByNow) {
    CTemporaryDirectory directory;
    const std::string name = directory.Inside("first");
    WriteUnfinished(name, [&](CXMLSaxWriter&) {
        ASSERT_EQ(rename(name.c_str(), directory.Inside("second").c_str()), 0);
        std::ofstream(name) << "another";
    });
    EXPECT_EQ(ReadFile(name), "another");
}

TEST(WriterUnfinished, LeavesAFileThatTookThePlaceOfALink) {
    CTemporaryDirectory directory;
    const std::string name = directory.Inside("first");
    ASSERT_EQ(symlink(directory.Inside("second").c_str(), name.c_str()), 0);
    WriteUnfinished(name, [&](CXMLSaxWriter&) {
        ASSERT_EQ(unlink(name.c_str()), 0);
        std::ofstream(name) << "another";
    });
    EXPECT_EQ(ReadFile(name), "another");
}

TEST(WriterUnfinished, LeavesAFileOfItsRelativeNameInAnotherDirectory) {
    CTemporaryDirectory directory;
    CTemporaryDirectory other;
    std::ofstream(other.Inside("first")) << "another";
    const int before = open(".", O_RDONLY | O_DIRECTORY);
    ASSERT_GE(before, 0);
    {
        CXMLSaxWriter writer;
        ASSERT_EQ(chdir(directory.Name().c_str()), 0);
        writer.StartDocument("first", true);
        ASSERT_EQ(chdir(other.Name().c_str()), 0);
    }
    EXPECT_EQ(fchdir(before), 0);
    close(before);
    EXPECT_EQ(ReadFile(other.Inside("first")), "another");
}

TEST(WriterUnfinished, MayBeGoneOrReplacedWhenItsDocumentIsNotEnded) {
    CTemporaryDirectory directory;
    const std::string name = directory.Inside("first");
    WriteUnfinished(name, [&](CXMLSaxWriter&) { ASSERT_EQ(unlink(name.c_str()), 0); });
    EXPECT_FALSE(Exists(name));
    WriteUnfinished(name, [&](CXMLSaxWriter&) {
        ASSERT_EQ(unlink(name.c_str()), 0);
        ASSERT_EQ(mkdir(name.c_str(), 0700), 0);
    });
    EXPECT_TRUE(IsKind(name, S_IFDIR));
    rmdir(name.c_str());
}

TEST(WriterUnfinished, IsNotRemovedWhenItIsALinkAndNeitherIsItsTarget) {
    CTemporaryDirectory directory;
    const std::string link = directory.Inside("first");
    const std::string target = directory.Inside("second");
    std::ofstream(target) << "old";
    ASSERT_EQ(symlink("second", link.c_str()), 0);
    WriteUnfinished(link);
    EXPECT_TRUE(IsKind(link, S_IFLNK));
    EXPECT_TRUE(IsKind(target, S_IFREG));
    EXPECT_EQ(ReadFile(target), DECLARATION + std::string("\r\n<a>text"));
    // A link to a file that is made by opening it.
    ASSERT_EQ(unlink(target.c_str()), 0);
    WriteUnfinished(link);
    EXPECT_TRUE(IsKind(link, S_IFLNK));
    EXPECT_TRUE(IsKind(target, S_IFREG));
    ASSERT_EQ(unlink(link.c_str()), 0);
    ASSERT_EQ(symlink("/dev/null", link.c_str()), 0);
    WriteUnfinished(link);
    EXPECT_TRUE(IsKind(link, S_IFLNK));
    EXPECT_TRUE(IsKind("/dev/null", S_IFCHR));
}

TEST(WriterUnfinished, LosesOneOfItsNamesOnlyWhenItHasTwo) {
    CTemporaryDirectory directory;
    std::ofstream(directory.Inside("first")) << "old";
    ASSERT_EQ(link(directory.Inside("first").c_str(), directory.Inside("second").c_str()), 0);
    WriteUnfinished(directory.Inside("first"));
    EXPECT_FALSE(Exists(directory.Inside("first")));
    EXPECT_TRUE(IsKind(directory.Inside("second"), S_IFREG));
}

TEST(WriterUnfinished, IsNotRemovedWhenItIsAPipe) {
    CTemporaryDirectory directory;
    const std::string pipe = directory.Inside("first");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const int reader = open(pipe.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    ASSERT_GE(reader, 0);
    WriteUnfinished(pipe);
    EXPECT_TRUE(IsKind(pipe, S_IFIFO));
    char bytes[100];
    const ssize_t count = read(reader, bytes, sizeof bytes);
    ASSERT_GE(count, 0);
    EXPECT_EQ(std::string(bytes, static_cast<std::size_t>(count)),
              DECLARATION + std::string("\r\n<a>text"));
    close(reader);
}

// The device is made by the test where that is allowed. Where it is not, the system's own stands
// in: whoever may not make a device cannot remove that one either.
TEST(WriterUnfinished, IsNotRemovedWhenItIsADevice) {
    CTemporaryDirectory directory;
    std::string device = directory.Inside("first");
    const bool made = mknod(device.c_str(), S_IFCHR | 0600, makedev(1, 3)) == 0;
    if (!made || !std::ofstream(device).good()) {
        ASSERT_NE(access("/dev", W_OK), 0) << "no device can be made to test with";
        device = "/dev/null";
    }
    WriteUnfinished(device);
    EXPECT_TRUE(IsKind(device, S_IFCHR));
    CXMLSaxWriter writer;
    writer.StartDocument(device.c_str(), true);
    writer.EndDocument();
    EXPECT_TRUE(IsKind(device, S_IFCHR));
}

TEST(WriterUnfinished, IsRemovedThoughItsStreamHasFailed) {
    // The file that the writer opened itself cannot be made to fail, so a derived class spoils it.
    class CSpoiling : public CXMLSaxWriter {
    public:
        using CXMLSaxWriter::StartDocument;
        void StartDocument(std::ostream* stream, bool format, bool ownStream) override {
            CXMLSaxWriter::StartDocument(stream, format, ownStream);
            m_pStream = stream;
        }
        std::ostream* m_pStream = nullptr;
    };
    TemporaryFile file;
    {
        CSpoiling writer;
        writer.StartDocument(file.Name(), true);
        writer.m_pStream->setstate(std::ios::badbit);
        EXPECT_NOT_OPEN(writer.EndDocument());
        EXPECT_TRUE(Exists(file.Name()));
    }
    EXPECT_FALSE(Exists(file.Name()));
}

TEST(WriterUnfinished, OfAFailedStartIsRemovedWithTheNextDocumentThatIsNotEnded) {
    TemporaryFile file(".xml", "kept");
    std::ostringstream out;
    const auto fail = [&](CXMLSaxWriter& writer) {
        const CUnopenable unopenable(file.Name());
        ExpectFileRefused(writer, file.Name());
    };
    {
        // Without a document there is nothing unfinished.
        CXMLSaxWriter writer;
        fail(writer);
    }
    EXPECT_EQ(file.Content(), "kept");
    {
        CXMLSaxWriter writer;
        fail(writer);
        writer.StartDocument(&out, true, false);
        writer.EndDocument();
        writer.StartDocument(&out, true, false);
    }
    EXPECT_EQ(file.Content(), "kept");
    {
        CXMLSaxWriter writer;
        fail(writer);
        writer.StartDocument(&out, true, false);
    }
    EXPECT_FALSE(Exists(file.Name()));
    const std::string directory = ::testing::TempDir();
    {
        CXMLSaxWriter writer;
        ExpectFileRefused(writer, directory);
        writer.StartDocument(&out, true, false);
    }
    EXPECT_TRUE(IsKind(directory + ".", S_IFDIR));
}
