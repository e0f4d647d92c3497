// The streaming writer on streams that fail: full ones, throwing ones, and devices.
#include <unistd.h>

#include <fstream>
#include <ios>
#include <ostream>
#include <stdexcept>

#include "support/streams.h"
#include "support/testing.h"
#include "support/writing.h"

using namespace norvask_test;

namespace {

// Calls that write every kind of token.
const std::vector<Step>& Steps() {
    static const std::vector<Step> steps = {
        [](CXMLSaxWriter& w) {
            w.StartElement("root", CAttributes{{"k", "<&>"}, {"l", "w"}}.Get());
        },
        [](CXMLSaxWriter& w) { w.StartElement("empty", nullptr); },
        [](CXMLSaxWriter& w) { w.EndElement(); },
        [](CXMLSaxWriter& w) { w.StartElement("text", nullptr); },
        [](CXMLSaxWriter& w) { w.Characters("some 'text'\xFF"); },
        [](CXMLSaxWriter& w) { w.Long(42); },
        [](CXMLSaxWriter& w) { w.EndElement(); },
        [](CXMLSaxWriter& w) { w.StartElement("data", nullptr); },
        [](CXMLSaxWriter& w) { WriteData(w, AllByteValues(100), true); },
        [](CXMLSaxWriter& w) { WriteData(w, "x", false); },
        [](CXMLSaxWriter& w) { w.EndElement(); },
        [](CXMLSaxWriter& w) { w.EndElement(); },
    };
    return steps;
}

void WriteSteps(CXMLSaxWriter& writer) {
    for (const Step& step : Steps())
        step(writer);
}

std::string Whole(bool format) { return DECLARATION + Written(WriteSteps, format); }

// Throws what no stream knows.
class CNumberThrower : public std::streambuf {
public:
    explicit CNumberThrower(std::size_t room) : m_nRoom(room) {}

protected:
    int_type overflow(int_type c) override {
        Take(1);
        return c;
    }
    std::streamsize xsputn(const char*, std::streamsize count) override {
        Take(static_cast<std::size_t>(count));
        return count;
    }

private:
    void Take(std::size_t count) {
        if (count > m_nRoom) throw 42;
        m_nRoom -= count;
    }
    std::size_t m_nRoom;
};

// A link, so that nothing is lost should somebody remove the file that the writer was given.
class CLinkToFull {
public:
    CLinkToFull() { EXPECT_EQ(symlink("/dev/full", m_File.Name()), 0); }
    const char* Name() const { return m_File.Name(); }

private:
    TemporaryFile m_File;
};

}  // namespace

TEST(WriterStream, GetsItsFirstBytesAndTheNextCallFails) {
    for (const bool format : {false, true}) {
        const std::string whole = Whole(format);
        for (std::size_t room = 0; room <= whole.size(); ++room) {
            for (const bool throws : {false, true}) {
                CLimitedBuffer buffer(room, throws);
                std::ostream out(&buffer);
                CXMLSaxWriter writer;
                EXPECT_NO_THROW(writer.StartDocument(&out, format, false));
                for (const Step& step : Steps()) {
                    if (out.good()) {
                        EXPECT_NO_THROW(step(writer)) << room;
                    } else {
                        EXPECT_NOT_OPEN(step(writer));
                    }
                }
                EXPECT_EQ(out.good(), room == whole.size());
                if (out.good()) {
                    EXPECT_NO_THROW(writer.EndDocument());
                } else {
                    EXPECT_NOT_OPEN(writer.EndDocument());
                }
                EXPECT_EQ(buffer.Bytes(), whole.substr(0, room));
            }
        }
    }
}

TEST(WriterStream, LetsItsExceptionsThroughOnce) {
    for (const bool format : {false, true}) {
        const std::string whole = Whole(format);
        for (std::size_t room = 0; room < whole.size(); ++room) {
            for (const bool throws : {false, true}) {
                int ends = 0;
                int failures = 0;
                CLimitedBuffer buffer(room, throws);
                {
                    CXMLSaxWriter writer;
                    auto* out = new CMortalBuffered(ends, &buffer);
                    out->exceptions(std::ios::badbit | std::ios::failbit);
                    std::vector<Step> steps = Steps();
                    steps.insert(steps.begin(),
                                 [&](CXMLSaxWriter& w) { w.StartDocument(out, format, true); });
                    for (const Step& step : steps) {
                        if (failures > 0) {
                            EXPECT_NOT_OPEN(step(writer));
                            continue;
                        }
                        try {
                            step(writer);
                        } catch (const std::ios_base::failure&) {
                            ++failures;
                            EXPECT_FALSE(throws);
                        } catch (const std::runtime_error& e) {
                            ++failures;
                            EXPECT_TRUE(throws);
                            EXPECT_STREQ(e.what(), "the buffer is full");
                        }
                    }
                    EXPECT_EQ(failures, 1) << room;
                    EXPECT_NOT_OPEN(writer.EndDocument());
                }
                EXPECT_EQ(ends, 1) << room;
                EXPECT_EQ(buffer.Bytes(), whole.substr(0, room));
            }
        }
    }
}

TEST(WriterStream, LetsAnythingThroughThatItsBufferThrows) {
    const std::size_t length = Whole(true).size();
    for (std::size_t room = 0; room < length; room += 3) {
        int ends = 0;
        CNumberThrower buffer(room);
        {
            CXMLSaxWriter writer;
            auto* out = new CMortalBuffered(ends, &buffer);
            out->exceptions(std::ios::badbit);
            int caught = 0;
            try {
                writer.StartDocument(out, true, true);
                WriteSteps(writer);
            } catch (int number) {
                caught = number;
            }
            EXPECT_EQ(caught, 42) << room;
        }
        EXPECT_EQ(ends, 1) << room;
    }
}

TEST(WriterStream, ThrowsNothingWhileItIsGoodWhateverItsExceptions) {
    std::ostringstream out;
    out.exceptions(std::ios::badbit | std::ios::failbit | std::ios::eofbit);
    CXMLSaxWriter writer;
    writer.StartDocument(&out, true, false);
    WriteSteps(writer);
    EXPECT_WRONG_FORMAT(writer.EndElement(), 1);
    EXPECT_INVALID_NAME(writer.StartElement("1", nullptr), "1");
    writer.EndDocument();
    EXPECT_EQ(out.str(), Whole(true) + "\r\n");
}

TEST(WriterStream, SpoiltBehindTheLastByteIsFoundByEndDocument) {
    std::ostringstream out;
    CXMLSaxWriter writer;
    writer.StartDocument(&out, true, false);
    WriteSteps(writer);
    out.setstate(std::ios::eofbit);
    EXPECT_NOT_OPEN(writer.EndDocument());
    out.clear();
    writer.EndDocument();
    EXPECT_EQ(out.str(), Whole(true));
}

TEST(WriterStream, RefusedNameIsToldThoughTheStreamFailsInTheSameCall) {
    const std::string begun = DECLARATION + "\r\n<r";
    CLimitedBuffer buffer(begun.size());
    std::ostream out(&buffer);
    CXMLSaxWriter writer;
    writer.StartDocument(&out, true, false);
    writer.StartElement("r", nullptr);
    EXPECT_TRUE(out.good());
    EXPECT_INVALID_NAME(writer.StartElement("1", nullptr), "1");
    EXPECT_TRUE(out.bad());
    EXPECT_NOT_OPEN(writer.EndDocument());
    EXPECT_EQ(buffer.Bytes(), begun);
}

TEST(WriterStream, FullDeviceShowsWhenTheBufferIsWritten) {
    std::ofstream out("/dev/full", std::ios::binary);
    ASSERT_TRUE(out.good());
    CXMLSaxWriter writer;
    writer.StartDocument(&out, true, false);
    WriteElement(writer, "a");
    EXPECT_TRUE(out.good());
    // Nothing is told here; the owner of the stream sees it.
    writer.EndDocument();
    EXPECT_FALSE(out.good());
    EXPECT_FALSE(out.is_open());
    EXPECT_NOT_OPEN(writer.EndDocument());
}

TEST(WriterStream, FullDeviceIsToldByTheCallBehindTheOneThatWroteToIt) {
    CLinkToFull full;
    const std::string text(100000, 'x');
    {
        std::ofstream out(full.Name(), std::ios::binary);
        CXMLSaxWriter writer;
        writer.StartDocument(&out, true, false);
        writer.StartElement("a", nullptr);
        writer.Characters(text.c_str());
        EXPECT_FALSE(out.good());
        for (int i = 0; i < 2; ++i) {
            EXPECT_NOT_OPEN(writer.Characters("more"));
            EXPECT_NOT_OPEN(writer.EndElement());
            EXPECT_NOT_OPEN(writer.EndDocument());
        }
    }
    {
        CXMLSaxWriter writer;
        writer.StartDocument(full.Name(), true);
        EXPECT_NO_THROW(writer.Characters(text.c_str()));
        EXPECT_NOT_OPEN(writer.EndDocument());
        EXPECT_NOT_CLOSED(writer.StartDocument(full.Name(), true));
    }
    {
        CXMLSaxWriter writer;
        writer.StartDocument(full.Name(), true);
        writer.Characters("text");
        EXPECT_NO_THROW(writer.EndDocument());
    }
    char target[100];
    EXPECT_EQ(readlink(full.Name(), target, sizeof target), 9);
}

TEST(WriterStream, FullDeviceWithExceptionsThrowsThemButNotFromTheDestructor) {
    const auto bits = std::ios::badbit | std::ios::failbit;
    for (const bool owned : {false, true}) {
        for (const bool ended : {false, true}) {
            int ends = 0;
            auto out = std::make_unique<CMortalFile>(ends, "/dev/full");
            ASSERT_TRUE(out->good());
            out->exceptions(bits);
            {
                CXMLSaxWriter writer;
                writer.StartDocument(owned ? out.release() : out.get(), true, owned);
                writer.Characters("text");
                if (ended) {
                    EXPECT_THROW(writer.EndDocument(), std::ios_base::failure);
                    EXPECT_NOT_OPEN(writer.EndDocument());
                    // Whatever is left of it gives way to the next one.
                    std::ostringstream next;
                    writer.StartDocument(&next, false, false);
                    EXPECT_EQ(ends, owned ? 1 : 0);
                    writer.EndDocument();
                    EXPECT_EQ(next.str(), DECLARATION);
                }
            }
            EXPECT_EQ(ends, owned ? 1 : 0);
        }
    }
}
