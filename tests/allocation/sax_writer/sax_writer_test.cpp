// A document that is written element by element while allocations fail: what stands in the stream
// is the beginning of the document, an operation that failed can be repeated, and nothing is left.
#include <fstream>
#include <functional>
#include <ios>
#include <new>
#include <ostream>
#include <streambuf>

#include "allocation/failing_new.h"
#include "support/testing.h"
#include "support/writing.h"

using namespace norvask;
using namespace norvask_test;

namespace {

// Keeps what is written without allocating.
class CFixedBuffer : public std::streambuf {
public:
    std::string Bytes() const { return std::string(m_Bytes, m_nLength); }

protected:
    int_type overflow(int_type c) override {
        const char byte = traits_type::to_char_type(c);
        return xsputn(&byte, 1) == 1 ? c : traits_type::eof();
    }
    std::streamsize xsputn(const char* bytes, std::streamsize count) override {
        for (std::streamsize i = 0; i < count && m_nLength < sizeof m_Bytes; ++i)
            m_Bytes[m_nLength++] = bytes[i];
        return count;
    }

private:
    char m_Bytes[100000];
    std::size_t m_nLength = 0;
};

using Step = std::function<void(CXMLSaxWriter&)>;

const std::string kLongName(3000, 'n');
const std::string kLongText(2000, '&');

// A document in single calls. What they need is made before, so that only the writer allocates.
class CSteps {
public:
    // What is not plain is converted by the parser while it is written, which allocates.
    explicit CSteps(bool plain) {
        CAttributes& attributes = plain ? m_Plain : m_Foreign;
        Add([&attributes](CXMLSaxWriter& w) { w.StartElement("root", attributes.Get()); });
        for (int i = 0; i < 40; ++i)
            Add([](CXMLSaxWriter& w) { w.StartElement("a-name-of-some-length", nullptr); });
        Add([](CXMLSaxWriter& w) { w.StartElement(kLongName.c_str(), nullptr); });
        Add([](CXMLSaxWriter& w) { w.Characters(kLongText.c_str()); });
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

std::string Whole(const CSteps& steps, bool format) {
    CFixedBuffer buffer;
    std::ostream out(&buffer);
    CXMLSaxWriter writer;
    writer.StartDocument(&out, format, false);
    for (const Step& step : steps.Get())
        step(writer);
    return buffer.Bytes();
}

bool IsBegin(const std::string& part, const std::string& whole) {
    return part.size() <= whole.size() && whole.compare(0, part.size(), part) == 0;
}

bool Known() { return CaughtBadAlloc() || CaughtOutOfMemory(); }

}  // namespace

TEST(AllocationFailureWriter, LeavesTheBeginningOfTheDocument) {
    for (const bool plain : {false, true}) {
        const CSteps steps(plain);
        for (const bool format : {false, true}) {
            const std::string whole = Whole(steps, format);
            for (const Failing failing : {Failing::One, Failing::AllFromThere}) {
                long n = 1;
                for (bool refused = true; refused; ++n) {
                    CFixedBuffer buffer;
                    std::ostream out(&buffer);
                    const long live = LiveBlocks();
                    bool thrown = false;
                    bool known = true;
                    {
                        CFailAllocation fail(n, Callers::Everything, failing);
                        try {
                            CXMLSaxWriter writer;
                            writer.StartDocument(&out, format, false);
                            for (const Step& step : steps.Get())
                                step(writer);
                        } catch (...) {
                            thrown = true;
                            known = Known();
                        }
                        refused = fail.Failed();
                    }
                    EXPECT_EQ(LiveBlocks(), live) << "allocation " << n;
                    EXPECT_EQ(thrown, refused) << "allocation " << n;
                    EXPECT_TRUE(known) << "allocation " << n;
                    EXPECT_TRUE(IsBegin(buffer.Bytes(), whole)) << "allocation " << n;
                    EXPECT_EQ(buffer.Bytes() == whole, !thrown) << "allocation " << n;
                    EXPECT_TRUE(out.good());
                    if (::testing::Test::HasFailure()) return;  // once is enough
                }
                EXPECT_GT(n, 6) << "hardly anything was refused";
            }
        }
    }
}

// What a plain operation allocates, it allocates before it writes anything.
TEST(AllocationFailureWriter, LetsAnOperationThatFailedBeRepeated) {
    const CSteps steps(true);
    for (const bool format : {false, true}) {
        const std::string whole = Whole(steps, format);
        long refusals = 0;
        for (long n = 1;; ++n) {
            CFixedBuffer buffer;
            std::ostream out(&buffer);
            const long live = LiveBlocks();
            bool refused = false;
            {
                CXMLSaxWriter writer;
                writer.StartDocument(&out, format, false);
                CFailAllocation fail(n, Callers::Everything, Failing::One);
                for (const Step& step : steps.Get()) {
                    try {
                        step(writer);
                    } catch (...) {
                        step(writer);
                    }
                }
                refused = fail.Failed();
            }
            EXPECT_EQ(LiveBlocks(), live) << "allocation " << n;
            EXPECT_TRUE(SameBytes(buffer.Bytes(), whole)) << "allocation " << n;
            if (!refused || ::testing::Test::HasFailure()) break;
            ++refusals;
        }
        EXPECT_GT(refusals, 4);
    }
}

// A text that is not well-formed UTF-8 is converted while it is written. What came before is
// written then, and the document goes on behind it.
TEST(AllocationFailureWriter, GoesOnBehindATextThatFailedInTheMiddle) {
    const std::string begin = kDeclaration + "<r>";
    const std::string text = "good \xFF bad";
    long refusals = 0;
    for (long n = 1;; ++n) {
        CFixedBuffer buffer;
        std::ostream out(&buffer);
        const long live = LiveBlocks();
        bool refused = false;
        {
            CXMLSaxWriter writer;
            writer.StartDocument(&out, true, false);
            writer.StartElement("r", nullptr);
            bool thrown = false;
            {
                CFailAllocation fail(n, Callers::Everything, Failing::One);
                try {
                    writer.Characters(text.c_str());
                } catch (...) {
                    thrown = true;
                }
                refused = fail.Failed();
            }
            EXPECT_EQ(thrown, refused);
            const std::string written = buffer.Bytes();
            const std::string element = kDeclaration + "\r\n<r>";
            EXPECT_TRUE(IsBegin(written, element + "good \xEF\xBF\xBD bad"));
            writer.Characters("more");
            writer.EndElement();
            writer.EndDocument();
            const std::string before = written.size() < element.size() ? element : written;
            EXPECT_EQ(buffer.Bytes(), before + "more</r>");
        }
        EXPECT_EQ(LiveBlocks(), live) << "allocation " << n;
        if (!refused || ::testing::Test::HasFailure()) break;
        ++refusals;
    }
    EXPECT_GT(refusals, 1);
}

// Refusals are exceptions with a text of their own, for which there may be no memory either.
TEST(AllocationFailureWriter, LeavesNothingOfARefusal) {
    const std::string name = kLongName + " ";
    for (long n = 1;; ++n) {
        CFixedBuffer buffer;
        std::ostream out(&buffer);
        const long live = LiveBlocks();
        bool refused = false;
        int refusals = 0;
        bool known = true;
        {
            CXMLSaxWriter writer;
            CAttributes attributes = {{name.c_str(), ""}};
            const auto count = [&](const auto& call) {
                try {
                    call();
                } catch (CXMLException&) {
                    ++refusals;
                } catch (...) {
                    ++refusals;
                    known = known && Known();
                }
            };
            CFailAllocation fail(n, Callers::Everything, Failing::One);
            count([&] { writer.EndDocument(); });
            count([&] { writer.StartDocument(nullptr, true, true); });
            count([&] { writer.Date(-1, -1, -1); });
            writer.StartDocument(&out, false, false);
            count([&] { writer.StartDocument("name", false); });
            count([&] { writer.EndElement(); });
            count([&] { writer.StartElement(name.c_str(), nullptr); });
            count([&] { writer.StartElement("a", attributes.Get()); });
            refused = fail.Failed();
        }
        EXPECT_TRUE(known);
        EXPECT_EQ(refusals, 7);
        EXPECT_EQ(LiveBlocks(), live) << "allocation " << n;
        if (!refused) {
            EXPECT_GE(n, 8);  // each refusal has a text
            break;
        }
    }
}

TEST(AllocationFailureWriter, LeavesNothingOfAFileAndStartsAgain) {
    TemporaryFile file;
    for (const bool ended : {false, true}) {
        long refusals = 0;
        for (long n = 1;; ++n) {
            const long live = LiveBlocks();
            bool refused = false;
            bool known = true;
            {
                CXMLSaxWriter writer;
                {
                    CFailAllocation fail(n, Callers::Everything, Failing::One);
                    try {
                        writer.StartDocument(file.Name(), false);
                    } catch (CXMLException& e) {
                        known = e.GetID() == 1;
                    } catch (...) {
                        known = Known();
                    }
                    refused = fail.Failed();
                }
                if (refused) writer.StartDocument(file.Name(), false);
                writer.StartElement("a", nullptr);
                writer.EndElement();
                if (ended) writer.EndDocument();
            }
            EXPECT_TRUE(known) << "allocation " << n;
            EXPECT_EQ(LiveBlocks(), live) << "allocation " << n;
            EXPECT_EQ(std::ifstream(file.Name()).good(), ended);
            if (ended) {
                EXPECT_EQ(file.Content(), kDeclaration + "<a/>");
            }
            if (!refused) break;
            ++refusals;
        }
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
