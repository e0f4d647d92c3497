// Random calls of a streaming writer, compared with the model that writes every token on its own:
// bytes, refusals, and what becomes of a width that is pending on the stream.
#include <ios>

#include "support/random_text.h"
#include "support/sanitizers.h"
#include "support/streams.h"
#include "support/testing.h"
#include "support/writer_model.h"
#include "support/writing.h"

using namespace norvask_test;

namespace {

template <typename Call>
std::string Told(Call call) {
    try {
        call();
    } catch (CXMLException& e) {
        return std::to_string(e.GetID()) + " " + e.GetMessage();
    }
    return "";
}

// The writer and the model, each with streams of its own that are treated alike.
class CPair {
public:
    // Streams take `room` bytes.
    CPair(unsigned seed, std::size_t room) : m_Random(seed), m_nRoom(room) { Start(); }

    // One call of both, which must agree.
    void Call() {
        const std::string name = Name();
        switch (m_Random.Number(14)) {
            case 0:
            case 1:
            case 2:
            case 3: {
                const CWriterModel::Attributes attributes = Attributes();
                CAttributes array(attributes);
                CXMLAttribut** pointers =
                    attributes.empty() && m_Random.Number(2) == 0 ? nullptr : array.Get();
                Same("StartElement " + name, m_Model.StartElement(name, attributes),
                     Told([&] { m_Writer.StartElement(name.c_str(), pointers); }));
                break;
            }
            case 4:
            case 5:
            case 6:
            case 7:
                Same("EndElement", m_Model.EndElement(), Told([&] { m_Writer.EndElement(); }));
                break;
            case 8:
            case 9: {
                const std::string text = Text();
                Same("Characters " + text, m_Model.Characters(text),
                     Told([&] { m_Writer.Characters(text.c_str()); }));
                break;
            }
            case 10: {
                const std::string bytes = m_Random.Bytes(m_Random.Number(300));
                const bool cdata = m_Random.Number(2) == 0;
                Same("Data", m_Model.Data(bytes, cdata),
                     Told([&] { WriteData(m_Writer, bytes, cdata); }));
                break;
            }
            case 11: {
                const long value = static_cast<long>(m_Random.Number(1000)) - 500;
                Same("Long", m_Model.Characters(std::to_string(value)),
                     Told([&] { m_Writer.Long(value); }));
                break;
            }
            case 12:
                Same("EndDocument", m_Model.EndDocument(), Told([&] { m_Writer.EndDocument(); }));
                break;
            default:
                if (m_Random.Number(20) == 0 || !Out().good()) Start();
                break;
        }
    }

    // A width, fill and adjustment for both streams.
    void Pad() {
        const auto width = static_cast<std::streamsize>(m_Random.Number(30));
        const char fill = "* <"[m_Random.Number(3)];
        const std::ios::fmtflags adjustment[] = {std::ios::left, std::ios::right,
                                                 std::ios::internal, std::ios::fmtflags()};
        const auto adjusted = adjustment[m_Random.Number(4)];
        for (std::ostream* stream : {&Out(), &ModelOut()}) {
            stream->width(width);
            stream->fill(fill);
            stream->setf(adjusted, std::ios::adjustfield);
        }
    }

    std::size_t Number(std::size_t below) { return m_Random.Number(below); }

    // Whether every byte of every stream is the same.
    void ExpectSameBytes() const {
        for (std::size_t i = 0; i < m_Streams.size(); ++i)
            EXPECT_TRUE(SameBytes(m_Streams[i]->own.Bytes(), m_Streams[i]->model.Bytes()))
                << "stream " << i;
    }
    std::size_t Refusals() const { return m_nRefusals; }

private:
    struct SStreams {
        explicit SStreams(std::size_t room) : own(room), model(room) {}
        CLimitedBuffer own;
        CLimitedBuffer model;
        std::ostream out{&own};
        std::ostream modelOut{&model};
    };

    std::ostream& Out() { return m_Streams.back()->out; }
    std::ostream& ModelOut() { return m_Streams.back()->modelOut; }

    void Start() {
        m_Streams.push_back(std::make_unique<SStreams>(m_nRoom));
        const bool format = m_Random.Number(3) != 0;
        if (m_Random.Number(4) == 0) Pad();
        Same("StartDocument", m_Model.StartDocument(&ModelOut(), format),
             Told([&] { m_Writer.StartDocument(&Out(), format, false); }));
    }
    void Same(const std::string& call, const std::string& expected, const std::string& told) {
        EXPECT_EQ(told, expected) << call;
        EXPECT_EQ(Out().good(), ModelOut().good()) << call;
        if (Out().good()) {
            EXPECT_EQ(Out().width(), ModelOut().width()) << call;
        }
        if (!told.empty()) ++m_nRefusals;
    }

    std::string Name() {
        static const std::vector<std::string> valid = ValidNames();
        static const std::vector<std::string> invalid = InvalidNames();
        if (m_Random.Number(25) == 0) return invalid[m_Random.Number(invalid.size())];
        if (m_Random.Number(5) == 0) return valid[m_Random.Number(valid.size())];
        return std::string(1 + m_Random.Number(12), static_cast<char>('a' + m_Random.Number(26)));
    }
    std::string Text() {
        const std::size_t longest = m_Random.Number(20) == 0 ? 3000 : 40;
        return m_Random.Bytes(m_Random.Number(longest));
    }
    CWriterModel::Attributes Attributes() {
        CWriterModel::Attributes attributes;
        for (std::size_t count = m_Random.Number(4); count > 0; --count)
            attributes.emplace_back(m_Random.Number(8) == 0 ? std::string() : Name(), Text());
        return attributes;
    }

    RandomText m_Random;
    const std::size_t m_nRoom;
    std::vector<std::unique_ptr<SStreams>> m_Streams;
    CWriterModel m_Model;
    CXMLSaxWriter m_Writer;
    std::size_t m_nRefusals = 0;
};

constexpr std::size_t ROOM_FOR_ALL = std::size_t(1) << 40;
constexpr int CALLS = 300;

// Instrumented, the calls cost thirty times as much.
constexpr unsigned SEEDS = IS_SANITIZED ? 30 : 400;

}  // namespace

TEST(WriterModel, AgreesOnRandomCalls) {
    std::size_t refusals = 0;
    for (unsigned seed = 0; seed < SEEDS; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        CPair pair(seed, ROOM_FOR_ALL);
        for (int i = 0; i < CALLS; ++i)
            pair.Call();
        pair.ExpectSameBytes();
        refusals += pair.Refusals();
        if (HasFailure()) return;  // once is enough
    }
    EXPECT_GT(refusals, 3 * SEEDS);
}

TEST(WriterModel, AgreesWithWidthsPendingOnTheStream) {
    for (unsigned seed = 1000; seed < 1000 + SEEDS; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        CPair pair(seed, ROOM_FOR_ALL);
        for (int i = 0; i < CALLS; ++i) {
            if (pair.Number(3) == 0) pair.Pad();
            pair.Call();
        }
        pair.ExpectSameBytes();
        if (HasFailure()) return;
    }
}

TEST(WriterModel, AgreesOnStreamsThatBecomeFull) {
    for (unsigned seed = 2000; seed < 2000 + 2 * SEEDS; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        CPair pair(seed, seed * 37 % 700);
        for (int i = 0; i < CALLS; ++i) {
            if (seed % 2 == 0 && pair.Number(5) == 0) pair.Pad();
            pair.Call();
        }
        pair.ExpectSameBytes();
        if (HasFailure()) return;
    }
}
