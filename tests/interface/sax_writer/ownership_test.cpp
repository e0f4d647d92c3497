// Which streams a writer closes and deletes: the file streams, and those it was given for its own.
#include <fstream>
#include <ostream>
#include <stdexcept>

#include "support/streams.h"
#include "support/testing.h"
#include "support/writing.h"

using namespace norvask_test;

namespace {

const std::string DOCUMENT = DECLARATION + "<a/>";

void WriteDocument(CXMLSaxWriter& writer) {
    WriteElement(writer, "a");
    writer.EndDocument();
}

}  // namespace

TEST(WriterOwnership, OwnStreamEndsWithTheDocument) {
    int ends = 0;
    std::string bytes;
    {
        CXMLSaxWriter writer;
        writer.StartDocument(new CMortalStream(ends, &bytes), false, true);
        writer.StartElement("a", nullptr);
        EXPECT_WRONG_FORMAT(writer.EndDocument(), 8);
        writer.EndElement();
        EXPECT_EQ(ends, 0);
        writer.EndDocument();
        EXPECT_EQ(ends, 1);
        EXPECT_EQ(bytes, DOCUMENT);
        EXPECT_NOT_OPEN(writer.EndDocument());
        writer.StartDocument(new CMortalStream(ends, &bytes), false, true);
        WriteDocument(writer);
        EXPECT_EQ(ends, 2);
    }
    EXPECT_EQ(ends, 2);
}

TEST(WriterOwnership, OwnStreamEndsWithTheWriter) {
    int ends = 0;
    std::string bytes;
    {
        CXMLSaxWriter writer;
        writer.StartDocument(new CMortalStream(ends, &bytes), false, true);
        writer.StartElement("a", nullptr);
    }
    EXPECT_EQ(ends, 1);
    EXPECT_EQ(bytes, DECLARATION + "<a");
    {
        const std::unique_ptr<CXMLSaxWriter> writer(new CXMLSaxWriter);
        auto* stream = new CMortalStream(ends, &bytes);
        writer->StartDocument(stream, false, true);
        stream->setstate(std::ios::badbit);
        EXPECT_NOT_OPEN(writer->EndDocument());
        EXPECT_EQ(ends, 1);
    }
    EXPECT_EQ(ends, 2);
}

TEST(WriterOwnership, OwnStreamEndsWithAStartThatFails) {
    for (const auto state : {std::ios::badbit, std::ios::failbit, std::ios::eofbit}) {
        int ends = 0;
        std::string bytes;
        {
            CXMLSaxWriter writer;
            auto* stream = new CMortalStream(ends, &bytes);
            stream->setstate(state);
            EXPECT_SAVING_ERROR(writer.StartDocument(stream, true, true), "");
            EXPECT_EQ(ends, 1);
            EXPECT_SAVING_ERROR(writer.StartDocument(nullptr, true, true), "");
        }
        EXPECT_EQ(ends, 1);
        EXPECT_EQ(bytes, "");
    }
}

TEST(WriterOwnership, OwnStreamEndsWhenItThrowsAtTheStart) {
    for (const bool throws : {false, true}) {
        for (std::size_t room = 0; room < DECLARATION.size(); ++room) {
            int ends = 0;
            CLimitedBuffer buffer(room, throws);
            {
                CXMLSaxWriter writer;
                auto* stream = new CMortalBuffered(ends, &buffer);
                stream->exceptions(std::ios::badbit);
                if (throws) {
                    EXPECT_THROW(writer.StartDocument(stream, true, true), std::runtime_error);
                } else {
                    EXPECT_THROW(writer.StartDocument(stream, true, true), std::ios_base::failure);
                }
                EXPECT_EQ(ends, 1);
                EXPECT_NOT_OPEN(writer.EndDocument());
                std::ostringstream out;
                writer.StartDocument(&out, false, false);
                WriteDocument(writer);
                EXPECT_EQ(out.str(), DOCUMENT);
            }
            EXPECT_EQ(ends, 1);
            EXPECT_EQ(buffer.Bytes(), DECLARATION.substr(0, room));
        }
    }
}

TEST(WriterOwnership, OwnStreamEndsWhenAnotherTakesOver) {
    int first = 0;
    int second = 0;
    std::string bytes;
    {
        CXMLSaxWriter writer;
        writer.StartDocument(new CMortalStream(first, &bytes), false, true);
        writer.StartElement("a", nullptr);
        writer.StartDocument(new CMortalStream(second), false, true);
        EXPECT_EQ(first, 1);
        EXPECT_EQ(second, 0);
        EXPECT_EQ(bytes, DECLARATION + "<a");
        std::ostringstream out;
        writer.StartDocument(&out, false, false);
        EXPECT_EQ(second, 1);
        writer.EndElement();
        writer.StartDocument(new CMortalStream(second), false, true);
    }
    EXPECT_EQ(first, 1);
    EXPECT_EQ(second, 2);
}

TEST(WriterOwnership, OwnStreamEndsWhenNothingCanTakeOver) {
    for (int kind = 0; kind < 3; ++kind) {
        int first = 0;
        int second = 0;
        std::ostringstream lent;
        lent.setstate(std::ios::failbit);
        {
            CXMLSaxWriter writer;
            writer.StartDocument(new CMortalStream(first), false, true);
            std::ostream* next = nullptr;
            if (kind == 1) next = &lent;
            if (kind == 2) {
                next = new CMortalStream(second);
                next->setstate(std::ios::badbit);
            }
            EXPECT_SAVING_ERROR(writer.StartDocument(next, false, kind == 2), "");
            EXPECT_NOT_OPEN(writer.EndDocument());
            EXPECT_EQ(second, kind == 2 ? 1 : 0);
        }
        EXPECT_EQ(first, 1);
        EXPECT_EQ(second, kind == 2 ? 1 : 0);
    }
}

TEST(WriterOwnership, OwnStreamThatIsGivenAgainEndsOnce) {
    int ends = 0;
    std::string bytes;
    {
        CXMLSaxWriter writer;
        auto* stream = new CMortalStream(ends, &bytes);
        writer.StartDocument(stream, false, true);
        writer.StartDocument(stream, false, true);
        EXPECT_EQ(ends, 0);
        WriteDocument(writer);
        EXPECT_EQ(ends, 1);
        EXPECT_EQ(bytes, DECLARATION + DOCUMENT);
        stream = new CMortalStream(ends, &bytes);
        writer.StartDocument(stream, false, true);
        writer.StartDocument(stream, false, true);
    }
    EXPECT_EQ(ends, 2);
    {
        CXMLSaxWriter writer;
        auto* stream = new CMortalStream(ends, &bytes);
        writer.StartDocument(stream, false, true);
        stream->setstate(std::ios::badbit);
        EXPECT_SAVING_ERROR(writer.StartDocument(stream, false, true), "");
        EXPECT_EQ(ends, 3);
    }
    EXPECT_EQ(ends, 3);
}

TEST(WriterOwnership, ChangesWithTheLastStart) {
    int ends = 0;
    std::string bytes;
    const std::unique_ptr<CMortalStream> lent(new CMortalStream(ends, &bytes));
    {
        // Given away first, then taken back.
        CXMLSaxWriter writer;
        writer.StartDocument(lent.get(), false, true);
        writer.StartDocument(lent.get(), false, false);
        WriteDocument(writer);
        EXPECT_EQ(lent->str(), DECLARATION + DOCUMENT);
        writer.StartDocument(lent.get(), false, true);
        writer.StartDocument(lent.get(), false, false);
    }
    EXPECT_EQ(ends, 0);
    {
        // Lent first, then given away.
        CXMLSaxWriter writer;
        auto* stream = new CMortalStream(ends, &bytes);
        writer.StartDocument(stream, false, false);
        writer.StartDocument(stream, false, true);
        WriteDocument(writer);
        EXPECT_EQ(ends, 1);
    }
    EXPECT_EQ(ends, 1);
}

TEST(WriterOwnership, LentStreamStaysWhateverHappens) {
    int ends = 0;
    {
        CMortalStream lent(ends);
        {
            CXMLSaxWriter writer;
            writer.StartDocument(&lent, false, false);
            WriteDocument(writer);
            writer.StartDocument(&lent, false, false);
            lent.setstate(std::ios::badbit);
            EXPECT_SAVING_ERROR(writer.StartDocument(&lent, false, false), "");
            lent.clear();
            writer.StartDocument(&lent, false, false);
        }
        EXPECT_EQ(ends, 0);
        EXPECT_TRUE(lent.good());
    }
    EXPECT_EQ(ends, 1);
}

TEST(WriterOwnership, FileStreamIsClosedByEndDocument) {
    TemporaryFile file;
    int ends = 0;
    CMortalFile stream(ends, file.Name());
    CXMLSaxWriter writer;
    writer.StartDocument(&stream, false, false);
    writer.StartElement("a", nullptr);
    EXPECT_WRONG_FORMAT(writer.EndDocument(), 8);
    EXPECT_TRUE(stream.is_open());
    writer.EndElement();
    writer.EndDocument();
    EXPECT_FALSE(stream.is_open());
    EXPECT_TRUE(stream.good());
    EXPECT_EQ(ends, 0);
    EXPECT_EQ(file.Content(), DOCUMENT);
}

TEST(WriterOwnership, FileStreamIsClosedByTheDestructorAndItsFileKept) {
    TemporaryFile file;
    std::ofstream stream(file.Name(), std::ios::binary);
    {
        CXMLSaxWriter writer;
        writer.StartDocument(&stream, false, false);
        writer.StartElement("a", nullptr);
    }
    EXPECT_FALSE(stream.is_open());
    EXPECT_EQ(file.Content(), DECLARATION + "<a");
}

TEST(WriterOwnership, FileStreamThatIsNotGoodIsNotClosed) {
    TemporaryFile file;
    std::ofstream stream(file.Name(), std::ios::binary);
    {
        CXMLSaxWriter writer;
        writer.StartDocument(&stream, false, false);
        stream.setstate(std::ios::failbit);
        EXPECT_NOT_OPEN(writer.EndDocument());
        EXPECT_TRUE(stream.is_open());
    }
    EXPECT_TRUE(stream.is_open());
    stream.clear();
    stream.close();
    EXPECT_EQ(file.Content(), DECLARATION);
}

TEST(WriterOwnership, FileStreamOfItsOwnIsClosedAndEnds) {
    TemporaryFile file;
    int ends = 0;
    {
        CXMLSaxWriter writer;
        writer.StartDocument(new CMortalFile(ends, file.Name()), false, true);
        WriteDocument(writer);
        EXPECT_EQ(ends, 1);
        EXPECT_EQ(file.Content(), DOCUMENT);
        writer.StartDocument(new CMortalFile(ends, file.Name()), false, true);
    }
    EXPECT_EQ(ends, 2);
    // The writer did not open the file, so it does not remove it.
    EXPECT_EQ(file.Content(), DECLARATION);
}

TEST(WriterOwnership, StreamForReadingAndWritingIsNotClosed) {
    TemporaryFile file;
    const auto mode = std::ios::in | std::ios::out | std::ios::trunc | std::ios::binary;
    std::fstream stream(file.Name(), mode);
    {
        CXMLSaxWriter writer;
        writer.StartDocument(&stream, false, false);
        WriteDocument(writer);
        EXPECT_TRUE(stream.is_open());
        writer.StartDocument(&stream, false, false);
    }
    EXPECT_TRUE(stream.is_open());
    stream.close();
    EXPECT_EQ(file.Content(), DOCUMENT + DECLARATION);
}

TEST(WriterOwnership, FileOfTheWriterIsTakenOverByAnotherStream) {
    TemporaryFile file;
    std::ostringstream out;
    {
        // The name stays, and with it what becomes of the file.
        CXMLSaxWriter writer;
        writer.StartDocument(file.Name(), false);
        writer.StartDocument(&out, false, false);
        EXPECT_TRUE(file.Exists());
        EXPECT_EQ(file.Content(), DECLARATION);
    }
    EXPECT_FALSE(file.Exists());
    {
        CXMLSaxWriter writer;
        writer.StartDocument(file.Name(), false);
        writer.StartDocument(&out, false, false);
        writer.EndDocument();
    }
    EXPECT_EQ(file.Content(), DECLARATION);
}
