// A document that is written element by element while allocations fail: what stands in the stream
// is the beginning of the document, an operation that failed can be repeated, and nothing is left.
#include <new>

#include "allocation/sweep.h"
#include "support/testing.h"
#include "support/writing.h"

using namespace norvask_test;

namespace {

const std::string LONG_NAME(3000, 'n');
const std::string LONG_TEXT(2000, '&');

// A document in single calls. What they need is made before, so that only the writer allocates.
class CSteps {
public:
    // What is not plain is converted by the parser while it is written, which allocates.
    explicit CSteps(bool plain) {
        CAttributes& attributes = plain ? m_Plain : m_Foreign;
        Add([&attributes](CXMLSaxWriter& w) { w.StartElement("root", attributes.Get()); });
        for (int i = 0; i < 40; ++i)
            Add([](CXMLSaxWriter& w) { w.StartElement("a-name-of-some-length", nullptr); });
        Add([](CXMLSaxWriter& w) { w.StartElement(LONG_NAME.c_str(), nullptr); });
        Add([](CXMLSaxWriter& w) { w.Characters(LONG_TEXT.c_str()); });
        Add([](CXMLSaxWriter& w) { w.Characters("\xC3\xA9"); });
        if (!plain) Add([](CXMLSaxWriter& w) { w.Characters("text \xFF text"); });
        Add([](CXMLSaxWriter& w) { w.EndElement(); });
        const char* const name = plain ? "name" : "\xC3\xA9l\xC3\xA9ment";
        Add([name](CXMLSaxWriter& w) { w.StartElement(name, nullptr); });
        Add([this](CXMLSaxWriter& w) {
            w.Data(reinterpret_cast<const unsigned char*>(m_Bytes.data()), 1000, true);
        });
        Add([this](CXMLSaxWriter& w) {
            w.Data(reinterpret_cast<const unsigned char*>(m_Bytes.data()), 10, false);
        });
        Add([](CXMLSaxWriter& w) { w.Date(2024, 5, 17); });
        Add([](CXMLSaxWriter& w) { w.DateTime(2024, 5, 17, 10, 30, 0); });
        Add([](CXMLSaxWriter& w) { w.Time(10, 30, 0); });
        Add([](CXMLSaxWriter& w) { w.Double(0.1); });
        Add([](CXMLSaxWriter& w) { w.Long(42); });
        Add([](CXMLSaxWriter& w) { w.Bool(true, false); });
        for (int i = 0; i < 42; ++i)
            Add([](CXMLSaxWriter& w) { w.EndElement(); });
        Add([](CXMLSaxWriter& w) { w.EndDocument(); });
    }
    CSteps(const CSteps&) = delete;
    CSteps& operator=(const CSteps&) = delete;

    const std::vector<Step>& Get() const { return m_Steps; }

private:
    void Add(Step step) { m_Steps.push_back(std::move(step)); }

    const std::string m_Bytes = AllByteValues(1000);
    CAttributes m_Plain = {{"k", "v"}, {"", "none"}, {"l", "<&\xC3\xA9>"}};
    CAttributes m_Foreign = {{"k", "v\xFF"}, {"", "none"}, {"\xC3\xA9", "<&>"}};
    std::vector<Step> m_Steps;
};

void Write(const CSteps& steps, std::ostream& out, bool format) {
    CXMLSaxWriter writer;
    writer.StartDocument(&out, format, false);
    for (const Step& step : steps.Get())
        step(writer);
}

std::string Whole(const CSteps& steps, bool format) {
    std::ostringstream out;
    Write(steps, out, format);
    return out.str();
}

}  // namespace

TEST(AllocationFailureWriter, LeavesTheBeginningOfTheDocument) {
    for (const bool plain : {false, true}) {
        const CSteps steps(plain);
        for (const bool format : {false, true}) {
            const std::string whole = Whole(steps, format);
            for (const Failing failing : {Failing::One, Failing::AllFromThere}) {
                const auto write = [&](std::ostream& out) { Write(steps, out, format); };
                EXPECT_GT(SweepWriting(whole, failing, write), 4) << "hardly anything was refused";
            }
        }
    }
}

// What a plain operation allocates, it allocates before it writes anything.
TEST(AllocationFailureWriter, LetsAnOperationThatFailedBeRepeated) {
    const CSteps steps(true);
    for (const bool format : {false, true}) {
        const std::string whole = Whole(steps, format);
        EXPECT_GT(Sweep([&](long n) {
                      CFixedBuffer buffer;
                      std::ostream out(&buffer);
                      CXMLSaxWriter writer;
                      writer.StartDocument(&out, format, false);
                      const auto work = [&] {
                          for (const Step& step : steps.Get()) {
                              try {
                                  step(writer);
                              } catch (...) {
                                  step(writer);
                              }
                          }
                      };
                      const SAttempt attempt = Attempt(work, n);
                      EXPECT_FALSE(attempt.thrown) << attempt.told;
                      EXPECT_TRUE(SameBytes(buffer.Bytes(), whole));
                      return attempt.refused;
                  }),
                  4);
    }
}

// A text that is not well-formed UTF-8 is converted while it is written. What came before is
// written then, and the document goes on behind it.
TEST(AllocationFailureWriter, GoesOnBehindATextThatFailedInTheMiddle) {
    const std::string element = DECLARATION + "\r\n<r>";
    EXPECT_GT(Sweep([&](long n) {
                  CFixedBuffer buffer;
                  std::ostream out(&buffer);
                  CXMLSaxWriter writer;
                  writer.StartDocument(&out, true, false);
                  writer.StartElement("r", nullptr);
                  const SAttempt attempt = Attempt([&] { writer.Characters("good \xFF bad"); }, n);
                  EXPECT_EQ(attempt.thrown, attempt.refused);
                  EXPECT_TRUE(buffer.IsBeginOf(element + "good \xEF\xBF\xBD bad"));
                  const std::string written = buffer.Bytes();
                  writer.Characters("more");
                  writer.EndElement();
                  writer.EndDocument();
                  const std::string before = written.size() < element.size() ? element : written;
                  EXPECT_EQ(buffer.Bytes(), before + "more</r>");
                  return attempt.refused;
              }),
              1);
}

// Refusals are exceptions with a text of their own, for which there may be no memory either.
TEST(AllocationFailureWriter, LeavesNothingOfARefusal) {
    const std::string name = LONG_NAME + " ";
    EXPECT_GE(Sweep([&](long n) {
                  CFixedBuffer buffer;
                  std::ostream out(&buffer);
                  CXMLSaxWriter writer;
                  CAttributes attributes = {{name.c_str(), ""}};
                  int refusals = 0;
                  bool known = true;
                  const auto count = [&](const auto& call) {
                      try {
                          call();
                      } catch (CXMLException&) {
                          ++refusals;
                      } catch (...) {
                          ++refusals;
                          known = known && (CaughtBadAlloc() || CaughtOutOfMemory());
                      }
                  };
                  const auto work = [&] {
                      count([&] { writer.EndDocument(); });
                      count([&] { writer.StartDocument(nullptr, true, true); });
                      count([&] { writer.Date(-1, -1, -1); });
                      writer.StartDocument(&out, false, false);
                      count([&] { writer.StartDocument("name", false); });
                      count([&] { writer.EndElement(); });
                      count([&] { writer.StartElement(name.c_str(), nullptr); });
                      count([&] { writer.StartElement("a", attributes.Get()); });
                  };
                  const SAttempt attempt = Attempt(work, n);
                  EXPECT_FALSE(attempt.thrown) << attempt.told;
                  EXPECT_TRUE(known);
                  EXPECT_EQ(refusals, 7);
                  return attempt.refused;
              }),
              7);  // each refusal has a text
}

TEST(AllocationFailureWriter, LeavesNothingOfAFileAndStartsAgain) {
    TemporaryFile file;
    for (const bool ended : {false, true}) {
        const long refusals = Sweep([&](long n) {
            bool refused = false;
            {
                CXMLSaxWriter writer;
                const SAttempt attempt =
                    Attempt([&] { writer.StartDocument(file.Name(), false); }, n);
                EXPECT_TRUE(attempt.known || attempt.told == "1 " + SavingError(file.Name()))
                    << attempt.told;
                refused = attempt.refused;
                if (refused) writer.StartDocument(file.Name(), false);
                writer.StartElement("a", nullptr);
                writer.EndElement();
                if (ended) writer.EndDocument();
            }
            EXPECT_EQ(file.Exists(), ended);
            EXPECT_EQ(file.Content(), ended ? DECLARATION + "<a/>" : "");
            return refused;
        });
        EXPECT_GE(refusals, 3);  // the name, the stream and its buffer
    }
}

// Nothing that ends something may need memory.
TEST(AllocationFailureWriter, DoesNotStopWhatEnds) {
    CFixedBuffer buffer;
    std::ostream out(&buffer);
    TemporaryFile file;
    const long live = LiveBlocks();
    {
        CXMLSaxWriter writer;
        CXMLSaxWriter unfinished;
        unfinished.StartDocument(file.Name(), true);
        writer.StartDocument(&out, true, false);
        for (int i = 0; i < 1000; ++i)
            writer.StartElement("level", nullptr);
        bool thrown = false;
        {
            CFailAllocation fail(1, Callers::Everything, Failing::AllFromThere);
            try {
                for (int i = 0; i < 1000; ++i)
                    writer.EndElement();
                writer.EndDocument();
                unfinished.~CXMLSaxWriter();
            } catch (...) {
                thrown = true;
            }
        }
        EXPECT_FALSE(thrown);
        new (&unfinished) CXMLSaxWriter;
    }
    EXPECT_FALSE(file.Exists());
    EXPECT_GT(buffer.Bytes().size(), 10000u);
    EXPECT_EQ(LiveBlocks(), live);
}
