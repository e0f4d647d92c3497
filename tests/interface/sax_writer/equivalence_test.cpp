// The streaming writer against the tree: what a tree saves and what the writer makes of the same
// elements, byte for byte, wherever both put their line ends in the same places.
#include <random>

#include "support/sanitizers.h"
#include "support/testing.h"
#include "support/writing.h"

using namespace norvask;
using namespace norvask_test;

namespace {

enum class Shape {
    Pure,   // an element has only elements in it, or one text, or one binary node
    Mixed,  // anything in any order
};

// With `faithful` a tree holds nothing that loading merges, drops or normalises.
class CTrees {
public:
    CTrees(unsigned seed, Shape shape, bool faithful)
        : m_Random(seed), m_Shape(shape), m_bFaithful(faithful) {}

    Document Make() {
        Document document = NewDocumentWithRoot(Name());
        Fill(document->GetRoot(), 0);
        return document;
    }

private:
    unsigned Below(unsigned limit) { return static_cast<unsigned>(m_Random() % limit); }

    const char* Name() {
        static const char* const names[] = {
            "a",  "item", "record",    "a-very-long-name.that-fills-a-register",
            "_1", "p:x",  "x\xC3\xA9", "\xE6\x97\xA5\xE6\x9C\xAC"};
        const unsigned count = m_bFaithful ? 5 : 8;
        return names[Below(count)];
    }
    std::string Text() {
        static const char* const pieces[] = {
            "word", " ",  "<",  "&",    "'",    "\"",      "]]>", "\xC3\xA9", "\xF0\x9F\x98\x80",
            "\r",   "\n", "\t", "\x01", "\xFF", "\xE2\x82"};
        std::string text = m_bFaithful ? "." : "";
        for (unsigned count = Below(7); count > 0; --count)
            text += pieces[Below(m_bFaithful ? 9 : 15)];
        if (Below(50) == 0) text += std::string(Below(9000), 'l');
        return text;
    }
    void AddText(CXMLNode& node) { node.CreateTextChild(Text().c_str()); }
    void AddBytes(CXMLNode& node) {
        std::string bytes(Below(200) + (m_bFaithful ? 1 : 0), '\0');
        for (char& byte : bytes)
            byte = static_cast<char>(Below(256));
        SetBytes(*node.CreateBinChild(), bytes);
    }
    void Fill(CXMLNode* node, int depth) {
        for (unsigned count = Below(4); count > 0; --count)
            node->SetAttribute(Name(), Text().c_str());
        const unsigned kind = Below(m_Shape == Shape::Pure ? 5 : 2);
        if (m_Shape == Shape::Pure && kind == 3 && depth > 0) {
            AddText(*node);
        } else if (m_Shape == Shape::Pure && kind == 4 && depth > 0) {
            AddBytes(*node);
        } else if (depth < 14) {
            bool behindText = false;
            for (unsigned count = Below(7); count > 0 && m_nNodes > 0; --count, --m_nNodes) {
                const unsigned child = m_Shape == Shape::Pure ? 0 : Below(4);
                const bool text = child == 2 && !(m_bFaithful && behindText);
                if (text) AddText(*node);
                if (child == 3) AddBytes(*node);
                if (!text && child != 3) Fill(node->CreateChild(Name(), nullptr), depth + 1);
                behindText = text;
            }
        }
    }

    std::mt19937 m_Random;
    const Shape m_Shape;
    const bool m_bFaithful;
    int m_nNodes = 200;  // that may still be made
};

void WriteNode(CXMLSaxWriter& writer, CXMLNode& node) {
    if (auto* text = dynamic_cast<CXMLTextNode*>(&node)) {
        writer.Characters(text->GetText());
    } else if (auto* binary = dynamic_cast<CXMLBinNode*>(&node)) {
        WriteData(writer, Bytes(*binary), true);
    } else {
        writer.StartElement(node.GetTagName(), node.GetAttributes());
        for (CXMLNode** child = node.GetChildren(); *child; ++child)
            WriteNode(writer, **child);
        writer.EndElement();
    }
}

std::string Written(CXMLSaxWriter& writer, CXMLDocument& document, bool format) {
    std::ostringstream out;
    writer.StartDocument(&out, format, false);
    WriteNode(writer, *document.GetRoot());
    writer.EndDocument();
    return out.str();
}

constexpr unsigned kTrees = kIsSanitized ? 40 : 300;

}  // namespace

TEST(WriterEquivalence, WithoutFormatForEveryTree) {
    CXMLSaxWriter writer;
    std::size_t bytes = 0;
    for (unsigned seed = 0; seed < kTrees; ++seed) {
        for (const Shape shape : {Shape::Pure, Shape::Mixed}) {
            Document document = CTrees(seed, shape, false).Make();
            const std::string saved = Saved(document, false);
            ASSERT_TRUE(SameBytes(Written(writer, *document, false), saved)) << "seed " << seed;
            bytes += saved.size();
        }
    }
    EXPECT_GT(bytes, 1000u * kTrees);
}

TEST(WriterEquivalence, WithFormatWhereTextStandsAlone) {
    CXMLSaxWriter writer;
    std::size_t bytes = 0;
    for (unsigned seed = 0; seed < kTrees; ++seed) {
        for (const bool faithful : {false, true}) {
            Document document = CTrees(seed, Shape::Pure, faithful).Make();
            const std::string saved = Saved(document, true);
            ASSERT_TRUE(SameBytes(Written(writer, *document, true), saved)) << "seed " << seed;
            bytes += saved.size();
        }
    }
    EXPECT_GT(bytes, 1000u * kTrees);
}

// The writer knows the text that was, but not the text that will come.
TEST(WriterEquivalence, EndsWithFormatBehindTheTextOfAMixedElement) {
    const Document document = Load("<r><a/>text<b/><c/></r>");
    CXMLSaxWriter writer;
    const std::string begin = kDeclaration + "\r\n<r>\r\n\t<a/>text<b/>";
    EXPECT_EQ(Saved(document, true), begin + "<c/></r>");
    EXPECT_EQ(Written(writer, *document, true), begin + "\r\n\t<c/>\r\n</r>");
}

TEST(WriterEquivalence, GivesDocumentsThatLoadToTheSameTree) {
    CXMLSaxWriter writer;
    for (unsigned seed = 0; seed < kTrees; ++seed) {
        for (const bool format : {false, true}) {
            const Shape shape = format ? Shape::Pure : Shape::Mixed;
            Document document = CTrees(seed, shape, true).Make();
            const std::string bytes = Written(writer, *document, format);
            const Document loaded = LoadMemory(bytes);
            ASSERT_TRUE(SameBytes(TreeText(loaded), TreeText(document))) << "seed " << seed;
            ASSERT_TRUE(SameBytes(Written(writer, *loaded, format), bytes)) << "seed " << seed;
        }
    }
}

TEST(WriterEquivalence, GivesTheSameFiles) {
    CXMLSaxWriter writer;
    for (unsigned seed = 0; seed < 40; ++seed) {
        Document document = CTrees(seed, Shape::Pure, false).Make();
        TemporaryFile saved;
        TemporaryFile written;
        document->Save(saved.Name(), seed % 2 == 0);
        writer.StartDocument(written.Name(), seed % 2 == 0);
        WriteNode(writer, *document->GetRoot());
        writer.EndDocument();
        ASSERT_TRUE(SameBytes(written.Content(), saved.Content())) << "seed " << seed;
    }
}

TEST(WriterEquivalence, HoldsForTypedValues) {
    const Document document = NewDocumentWithRoot("r");
    CXMLTextNode* text = document->GetRoot()->CreateChild("v", nullptr)->CreateTextChild("");
    CXMLSaxWriter writer;
    const auto expectSame = [&](const auto& write) {
        std::ostringstream out;
        writer.StartDocument(&out, true, false);
        writer.StartElement("r", nullptr);
        writer.StartElement("v", nullptr);
        write();
        writer.EndElement();
        writer.EndElement();
        writer.EndDocument();
        EXPECT_EQ(out.str(), Saved(document, true));
    };
    for (const long value : {0L, 1L, -1L, 1234567890L, -9876543210L}) {
        text->SetLongText(value);
        expectSame([&] { writer.Long(value); });
        const double number = static_cast<double>(value) / 7;
        text->SetDoubleText(number);
        expectSame([&] { writer.Double(number); });
    }
    text->SetDateText(2024, 5, 17);
    expectSame([&] { writer.Date(2024, 5, 17); });
    text->SetDateTimeText(2024, 5, 17, 10, 30, 0);
    expectSame([&] { writer.DateTime(2024, 5, 17, 10, 30, 0); });
    text->SetTimeText(10, 30, 0);
    expectSame([&] { writer.Time(10, 30, 0); });
    for (const bool numeric : {false, true}) {
        text->SetBoolText(true, numeric);
        expectSame([&] { writer.Bool(true, numeric); });
        text->SetBoolText(false, numeric);
        expectSame([&] { writer.Bool(false, numeric); });
    }
    const std::string bytes = AllByteValues(100);
    text->SetBinaryText(reinterpret_cast<const unsigned char*>(bytes.data()), 100);
    expectSame([&] { WriteData(writer, bytes, false); });
}
