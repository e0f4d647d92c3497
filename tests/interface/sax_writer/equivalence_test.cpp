// The streaming writer against the tree: what a tree saves and what the writer makes of the same
// elements, byte for byte, wherever both put their line ends in the same places.
#include "support/random_tree.h"
#include "support/sanitizers.h"
#include "support/testing.h"
#include "support/writing.h"

using namespace norvask_test;

namespace {

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

constexpr unsigned TREES = IS_SANITIZED ? 40 : 300;

}  // namespace

TEST(WriterEquivalence, WithoutFormatForEveryTree) {
    CXMLSaxWriter writer;
    std::size_t bytes = 0;
    for (unsigned seed = 0; seed < TREES; ++seed) {
        for (const Shape shape : {Shape::PURE, Shape::MIXED}) {
            Document document = CRandomTree(seed, Content::UNBOUND, shape).Make();
            const std::string saved = Saved(document, false);
            ASSERT_TRUE(SameBytes(Written(writer, *document, false), saved)) << "seed " << seed;
            bytes += saved.size();
        }
    }
    EXPECT_GT(bytes, 1000u * TREES);
}

TEST(WriterEquivalence, WithFormatWhereTextStandsAlone) {
    CXMLSaxWriter writer;
    std::size_t bytes = 0;
    for (unsigned seed = 0; seed < TREES; ++seed) {
        for (const Content content : {Content::UNBOUND, Content::FAITHFUL}) {
            Document document = CRandomTree(seed, content, Shape::PURE).Make();
            const std::string saved = Saved(document, true);
            ASSERT_TRUE(SameBytes(Written(writer, *document, true), saved)) << "seed " << seed;
            bytes += saved.size();
        }
    }
    EXPECT_GT(bytes, 1000u * TREES);
}

// The writer knows the text that was, but not the text that will come.
TEST(WriterEquivalence, EndsWithFormatBehindTheTextOfAMixedElement) {
    const Document document = Load("<r><a/>text<b/><c/></r>");
    CXMLSaxWriter writer;
    const std::string begin = DECLARATION + "\r\n<r>\r\n\t<a/>text<b/>";
    EXPECT_EQ(Saved(document, true), begin + "<c/></r>");
    EXPECT_EQ(Written(writer, *document, true), begin + "\r\n\t<c/>\r\n</r>");
}

TEST(WriterEquivalence, GivesDocumentsThatLoadToTheSameTree) {
    CXMLSaxWriter writer;
    for (unsigned seed = 0; seed < TREES; ++seed) {
        for (const bool format : {false, true}) {
            const Shape shape = format ? Shape::PURE : Shape::MIXED;
            Document document = CRandomTree(seed, Content::FAITHFUL, shape).Make();
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
        Document document = CRandomTree(seed, Content::UNBOUND, Shape::PURE).Make();
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
    const auto expectSame = [&](const Step& write) {
        EXPECT_EQ(Written(
                      [&](CXMLSaxWriter& w) {
                          w.StartElement("r", nullptr);
                          w.StartElement("v", nullptr);
                          write(w);
                          w.EndElement();
                          w.EndElement();
                      },
                      true),
                  Body(Saved(document, true)));
    };
    for (const long value : {0L, 1L, -1L, 1234567890L, -9876543210L}) {
        text->SetLongText(value);
        expectSame([&](CXMLSaxWriter& w) { w.Long(value); });
        const double number = static_cast<double>(value) / 7;
        text->SetDoubleText(number);
        expectSame([&](CXMLSaxWriter& w) { w.Double(number); });
    }
    text->SetDateText(2024, 5, 17);
    expectSame([&](CXMLSaxWriter& w) { w.Date(2024, 5, 17); });
    text->SetDateTimeText(2024, 5, 17, 10, 30, 0);
    expectSame([&](CXMLSaxWriter& w) { w.DateTime(2024, 5, 17, 10, 30, 0); });
    text->SetTimeText(10, 30, 0);
    expectSame([&](CXMLSaxWriter& w) { w.Time(10, 30, 0); });
    for (const bool numeric : {false, true}) {
        text->SetBoolText(true, numeric);
        expectSame([&](CXMLSaxWriter& w) { w.Bool(true, numeric); });
        text->SetBoolText(false, numeric);
        expectSame([&](CXMLSaxWriter& w) { w.Bool(false, numeric); });
    }
    const std::string bytes = AllByteValues(100);
    text->SetBinaryText(reinterpret_cast<const unsigned char*>(bytes.data()), 100);
    expectSame([&](CXMLSaxWriter& w) { WriteData(w, bytes, false); });
}
