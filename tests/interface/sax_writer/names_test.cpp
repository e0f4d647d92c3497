// The streaming writer's names: those of elements and attributes, and what stands in the stream
// when one is refused.
#include "support/names.h"
#include "support/testing.h"
#include "support/writer_fixture.h"
#include "support/writing.h"

using namespace norvask_test;

namespace {

class WriterNames : public CWriterFixture {};

}  // namespace

TEST_F(WriterNames, WritesAttributesInOrderAndLeavesOutThoseWithoutAName) {
    CAttributes attributes = {{"", "1"},
                              {"b", "<>&'\""},
                              {nullptr, "2"},
                              {"a", ""},
                              {"c", nullptr},
                              {"a", "again"},
                              {"d", "\t\r\n\x01\x0c\x1f "},
                              {"\xC3\xA9", "\xE2\x82\xAC\xFF"},
                              {"", nullptr}};
    const std::string expected =
        " b=\"&#x3c;&#x3e;&#x26;&#x27;&#x22;\" a=\"\" c=\"\" a=\"again\" d=\"\t\r\n \""
        " \xC3\xA9=\"\xE2\x82\xAC\xEF\xBF\xBD\"";
    for (const bool format : {false, true}) {
        Start(format);
        m_Writer.StartElement("r", attributes.Get());
        End(1);
        EXPECT_EQ(Body(), (format ? "\r\n<r" : "<r") + expected + "/>");
    }
    Start(false);
    m_Writer.StartElement("r", CAttributes{{"", "1"}, {"", "2"}}.Get());
    m_Writer.StartElement("s", CAttributes{}.Get());
    m_Writer.StartElement("t", nullptr);
    End(3);
    EXPECT_EQ(Body(), "<r><s><t/></s></r>");
}

TEST_F(WriterNames, WritesTheAttributesOfATree) {
    const Document document = Load("<r b='1' a='&lt;'/>");
    Start(false);
    m_Writer.StartElement(document->GetRoot()->GetTagName(), document->GetRoot()->GetAttributes());
    End(1);
    EXPECT_EQ(Body(), "<r b=\"1\" a=\"&#x3c;\"/>");
}

TEST_F(WriterNames, AcceptsEveryXmlName) {
    for (const std::string& name : ValidNames()) {
        Start(false);
        CAttributes attributes = {{name.c_str(), "v"}};
        m_Writer.StartElement(name.c_str(), attributes.Get());
        m_Writer.Characters("");
        End(1);
        const Document document = NewDocumentWithRoot(name.c_str());
        document->GetRoot()->SetAttribute(name.c_str(), "v");
        document->GetRoot()->CreateTextChild("");
        EXPECT_EQ(Body(), SavedBody(*document)) << name;
    }
}

TEST_F(WriterNames, RefusesAnElementNameBehindTheLineEndAndIndentsTheRestByOneMore) {
    std::vector<std::string> names = InvalidNames();
    names.push_back(std::string());
    for (std::size_t i = 0; i < names.size(); ++i) {
        const char* name = i + 1 < names.size() ? names[i].c_str() : nullptr;
        Start(true);
        m_Writer.StartElement("r", nullptr);
        EXPECT_INVALID_NAME(m_Writer.StartElement(name, CAttributes{{"k", "v"}}.Get()), names[i]);
        EXPECT_EQ(Body(), "\r\n<r>\r\n\t");
        Element("a");
        m_Writer.StartElement("b", nullptr);
        Element("c");
        End(2);
        EXPECT_EQ(Body(),
                  "\r\n<r>\r\n\t\r\n\t\t<a/>\r\n\t\t<b>\r\n\t\t\t<c/>\r\n\t\t</b>\r\n\t</r>");
        Start(true);
        Element("next");
        m_Writer.EndDocument();
        EXPECT_EQ(Body(), "\r\n<next/>");
    }
}

TEST_F(WriterNames, OpensNoElementWithARefusedName) {
    for (const bool format : {false, true}) {
        const std::string line = format ? "\r\n" : "";
        Start(format);
        EXPECT_INVALID_NAME(m_Writer.StartElement("1", nullptr), "1");
        EXPECT_WRONG_FORMAT(m_Writer.EndElement(), 1);
        EXPECT_EQ(Body(), line);
        m_Writer.EndDocument();

        Start(format);
        m_Writer.StartElement("r", nullptr);
        EXPECT_INVALID_NAME(m_Writer.StartElement("1", nullptr), "1");
        // The start tag of the root is closed all the same.
        End(1);
        EXPECT_EQ(Body(), line + "<r>" + (format ? "\r\n\t\r\n\t" : "") + "</r>");
    }
}

TEST_F(WriterNames, RefusesAnElementNameBehindContentWithoutALineEnd) {
    Start(true);
    m_Writer.StartElement("r", nullptr);
    m_Writer.Characters("text");
    for (int i = 0; i < 2; ++i)
        EXPECT_INVALID_NAME(m_Writer.StartElement("", nullptr), "");
    // The text is still the last that was written; the depth is two too high.
    Element("a");
    Element("b");
    End(1);
    EXPECT_EQ(Body(), "\r\n<r>text<a/>\r\n\t\t\t<b/>\r\n\t\t</r>");
}

TEST_F(WriterNames, RefusesAnAttributeNameBehindTheAttributesBeforeIt) {
    for (const std::string& name : InvalidNames()) {
        if (name.empty()) continue;
        for (const bool format : {false, true}) {
            Start(format);
            m_Writer.StartElement("r", nullptr);
            CAttributes attributes = {{"k", "<"}, {"", "none"}, {name.c_str(), "v"}, {"l", "w"}};
            EXPECT_INVALID_NAME(m_Writer.StartElement("a", attributes.Get()), name);
            const std::string begun =
                (format ? "\r\n<r>\r\n\t<a" : "<r><a") + std::string(" k=\"&#x3c;\"");
            EXPECT_EQ(Body(), begun);
            // Neither is a tag open that could be closed, nor is the element.
            Element("b");
            End(1);
            EXPECT_EQ(Body(), begun + (format ? "\r\n\t\t<b/>\r\n\t</r>" : "<b/></r>"));
        }
    }
    Start(true);
    EXPECT_INVALID_NAME(m_Writer.StartElement("r", CAttributes{{"1", "v"}}.Get()), "1");
    EXPECT_WRONG_FORMAT(m_Writer.EndElement(), 1);
    m_Writer.Characters("text");
    m_Writer.EndDocument();
    EXPECT_EQ(Body(), "\r\n<rtext");
}
