// Writers on several threads at once, each with a stream of its own. Typed values above all: the
// conversions that programs call have one result for the whole process, a writer must not.
#include <atomic>
#include <thread>

#include "support/testing.h"
#include "support/threads.h"
#include "support/writing.h"

using namespace norvask_test;

namespace {

constexpr int ROUNDS = 3000;

// The values differ from thread to thread and from round to round, and all have the same length.
struct SNumbers {
    SNumbers(int thread, int round)
        : year(1000 + thread * 2000 + round % 1000),
          month(1 + (thread + round) % 12),
          day(1 + (thread * 7 + round) % 28),
          hour((thread * 6 + round) % 24),
          minute((thread * 15 + round) % 60),
          second((thread * 11 + round) % 60),
          number(thread * 1000000 + round) {}
    int year, month, day, hour, minute, second;
    long number;
};

std::string TwoDigits(int number) { return (number < 10 ? "0" : "") + std::to_string(number); }

std::string Expected(const SNumbers& n) {
    const std::string date =
        std::to_string(n.year) + "-" + TwoDigits(n.month) + "-" + TwoDigits(n.day);
    const std::string time =
        TwoDigits(n.hour) + ":" + TwoDigits(n.minute) + ":" + TwoDigits(n.second);
    const std::string number = std::to_string(n.number);
    return "<r>" + date + "|" + date + "T" + time + "|" + time + "|" + number + ".5|" + number +
           "|" + (n.number % 2 ? "true" : "false") + "<![CDATA[" + Base64(number) + "]]></r>";
}

// Lets go when all threads have come.
class CMeeting {
public:
    void Meet() {
        const int round = m_nRound;
        if (++m_nCome == THREADS) {
            m_nCome = 0;
            ++m_nRound;
        }
        while (m_nRound == round)
            std::this_thread::yield();
    }

private:
    std::atomic<int> m_nCome{0};
    std::atomic<int> m_nRound{0};
};

// Looks at the text of a typed value only when every thread has made its own.
class CMeetingWriter : public CXMLSaxWriter {
public:
    explicit CMeetingWriter(CMeeting& meeting) : m_Meeting(meeting) {}
    void Characters(const char* text) override {
        m_Meeting.Meet();
        m_Received += text;
        m_Received += '|';
        m_Meeting.Meet();
    }
    std::string m_Received;

private:
    CMeeting& m_Meeting;
};

void Write(CXMLSaxWriter& writer, const SNumbers& n) {
    writer.StartElement("r", nullptr);
    writer.Date(n.year, n.month, n.day);
    writer.Characters("|");
    writer.DateTime(n.year, n.month, n.day, n.hour, n.minute, n.second);
    writer.Characters("|");
    writer.Time(n.hour, n.minute, n.second);
    writer.Characters("|");
    writer.Double(static_cast<double>(n.number) + 0.5);
    writer.Characters("|");
    writer.Long(n.number);
    writer.Characters("|");
    writer.Bool(n.number % 2 != 0, false);
    WriteData(writer, std::to_string(n.number), true);
    writer.EndElement();
}

}  // namespace

TEST(WriterThreads, WriteTypedValuesOfTheirOwn) {
    OnThreads([](int thread) {
        std::ostringstream out;
        CXMLSaxWriter writer;
        for (int round = 0; round < ROUNDS; ++round) {
            out.str("");
            writer.StartDocument(&out, false, false);
            const SNumbers numbers(thread, round);
            Write(writer, numbers);
            writer.EndDocument();
            ASSERT_EQ(out.str(), DECLARATION + Expected(numbers)) << "round " << round;
        }
    });
}

TEST(WriterThreads, HoldTheTextsOfTypedValuesAtTheSameTime) {
    CMeeting meeting;
    std::vector<std::string> received(THREADS);
    OnThreads([&](int thread) {
        CMeetingWriter writer(meeting);
        writer.Date(2000 + thread, -1, -1);
        writer.DateTime(2000 + thread, 1, 2, 3, 4, 5);
        writer.Time(thread, 1, 2);
        writer.Double(thread + 0.5);
        writer.Long(thread);
        received[static_cast<std::size_t>(thread)] = writer.m_Received;
    });
    for (int thread = 0; thread < THREADS; ++thread) {
        const std::string digit = std::to_string(thread);
        EXPECT_EQ(received[static_cast<std::size_t>(thread)],
                  "200" + digit + "|200" + digit + "-01-02T03:04:05|0" + digit + ":01:02|" + digit +
                      ".5|" + digit + "|");
    }
}

TEST(WriterThreads, WriteToFilesAndEndUnfinishedOnes) {
    OnThreads([](int thread) {
        for (int round = 0; round < 100; ++round) {
            TemporaryFile file;
            {
                CXMLSaxWriter writer;
                writer.StartDocument(file.Name(), false);
                const SNumbers numbers(thread, round);
                Write(writer, numbers);
                writer.EndDocument();
                ASSERT_EQ(file.Content(), DECLARATION + Expected(numbers));
                writer.StartDocument(file.Name(), true);
                EXPECT_NO_CONVERSION(writer.Time(24, 0, 0));
                EXPECT_INVALID_NAME(writer.StartElement("1", nullptr), "1");
            }
            ASSERT_FALSE(file.Exists());
        }
    });
}

TEST(WriterThreads, HandAWriterFromOneToTheOther) {
    std::ostringstream out;
    CXMLSaxWriter writer;
    writer.StartDocument(&out, false, false);
    std::string expected = DECLARATION;
    for (int round = 0; round < 20; ++round) {
        const SNumbers numbers(round % THREADS, round);
        std::thread([&] { Write(writer, numbers); }).join();
        expected += Expected(numbers);
    }
    writer.EndDocument();
    EXPECT_EQ(out.str(), expected);
}
