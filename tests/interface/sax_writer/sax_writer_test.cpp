// The streaming writer: tags, where they stand, and the order of calls.
#include <ios>
#include <type_traits>

#include "support/testing.h"
#include "support/writer_fixture.h"
#include "support/writing.h"

using namespace norvask_test;

namespace {

class Writer : public CWriterFixture {};

// Calls of everything that needs an open document.
void ExpectNotOpen(CXMLSaxWriter& writer) {
    const unsigned char byte = 1;
    EXPECT_NOT_OPEN(writer.EndDocument());
    EXPECT_NOT_OPEN(writer.StartElement("a", nullptr));
    EXPECT_NOT_OPEN(writer.StartElement("not a name", nullptr));
    EXPECT_NOT_OPEN(writer.EndElement());
    EXPECT_NOT_OPEN(writer.Characters("text"));
    EXPECT_NOT_OPEN(writer.Characters(nullptr));
    EXPECT_NOT_OPEN(writer.Data(&byte, 1, true));
    EXPECT_NOT_OPEN(writer.Data(nullptr, 0, false));
    EXPECT_NOT_OPEN(writer.Date(2024, 5, 17));
    EXPECT_NOT_OPEN(writer.DateTime(2024, 5, 17, 10, 30, 0));
    EXPECT_NOT_OPEN(writer.Time(10, 30, 0));
    EXPECT_NOT_OPEN(writer.Double(0.1));
    EXPECT_NOT_OPEN(writer.Long(1));
    EXPECT_NOT_OPEN(writer.Bool(true, true));
}

}  // namespace

TEST_F(Writer, WritesADeclarationAndAnEmptyRoot) {
    for (const bool format : {false, true}) {
        Start(format);
        EXPECT_EQ(Body(), "");
        Element("a");
        EXPECT_EQ(Body(), format ? "\r\n<a/>" : "<a/>");
        m_Writer.EndDocument();
        EXPECT_EQ(Body(), format ? "\r\n<a/>" : "<a/>");
    }
}

TEST_F(Writer, WritesEachTokenAtTheCallThatDecidesIt) {
    Start(true);
    m_Writer.StartElement("r", CAttributes{{"k", "v"}, {"l", ""}}.Get());
    EXPECT_EQ(Body(), "\r\n<r k=\"v\" l=\"\"");
    m_Writer.StartElement("a", nullptr);
    EXPECT_EQ(Body(), "\r\n<r k=\"v\" l=\"\">\r\n\t<a");
    m_Writer.EndElement();
    EXPECT_EQ(Body(), "\r\n<r k=\"v\" l=\"\">\r\n\t<a/>");
    m_Writer.EndElement();
    EXPECT_EQ(Body(), "\r\n<r k=\"v\" l=\"\">\r\n\t<a/>\r\n</r>");
}

TEST_F(Writer, IndentsTagsByTheNumberOfOpenElements) {
    const auto write = [this] {
        m_Writer.StartElement("root", nullptr);
        Element("item");
        Element("name", "a<b & 'c'");
        m_Writer.StartElement("x", nullptr);
        m_Writer.StartElement("y", nullptr);
        Element("z");
        End(3);
    };
    Start(true);
    write();
    EXPECT_EQ(Body(),
              "\r\n<root>\r\n\t<item/>\r\n\t<name>a&#x3c;b &#x26; &#x27;c&#x27;</name>"
              "\r\n\t<x>\r\n\t\t<y>\r\n\t\t\t<z/>\r\n\t\t</y>\r\n\t</x>\r\n</root>");
    Start(false);
    write();
    EXPECT_EQ(Body(),
              "<root><item/><name>a&#x3c;b &#x26; &#x27;c&#x27;</name><x><y><z/></y></x></root>");
}

// A tree that is saved keeps its line ends back to the end of the element.
TEST_F(Writer, LeavesOutExactlyOneLineEndBehindContent) {
    Start(true);
    m_Writer.StartElement("r", nullptr);
    Element("a");
    m_Writer.Characters("1");
    Element("b");
    Element("c");
    m_Writer.Characters("2");
    m_Writer.Characters("3");
    m_Writer.StartElement("d", nullptr);
    Element("e");
    m_Writer.EndElement();
    m_Writer.Characters("4");
    End(1);
    EXPECT_EQ(Body(), "\r\n<r>\r\n\t<a/>1<b/>\r\n\t<c/>23<d>\r\n\t\t<e/>\r\n\t</d>4</r>");
}

TEST_F(Writer, TakesAnEmptyContentForContent) {
    static const unsigned char byte = 1;
    const Step steps[] = {
        [](CXMLSaxWriter& w) { w.Characters(""); },
        [](CXMLSaxWriter& w) { w.Characters(nullptr); },
        [](CXMLSaxWriter& w) { w.Characters("\x01\x0c"); },
        [](CXMLSaxWriter& w) { w.Data(&byte, 0, false); },
        [](CXMLSaxWriter& w) { w.Data(&byte, -1, false); },
        [](CXMLSaxWriter& w) { w.Data(nullptr, 5, false); },
        [](CXMLSaxWriter& w) { w.Data(nullptr, 0, false); },
    };
    for (const Step& step : steps) {
        SCOPED_TRACE(&step - steps);
        Start(true);
        m_Writer.StartElement("a", nullptr);
        step(m_Writer);
        m_Writer.StartElement("b", nullptr);
        End(2);
        EXPECT_EQ(Body(), "\r\n<a><b/>\r\n</a>");
        Start(true);
        m_Writer.StartElement("a", nullptr);
        step(m_Writer);
        End(1);
        EXPECT_EQ(Body(), "\r\n<a></a>");
    }
}

TEST_F(Writer, WritesTextOutsideTheRootAsItComes) {
    Start(true);
    m_Writer.Characters("<before>");
    Element("a");
    m_Writer.Characters("between");
    Element("b");
    m_Writer.Long(7);
    m_Writer.EndDocument();
    EXPECT_EQ(Body(), "&#x3c;before&#x3e;<a/>between<b/>7");
    // No tag has followed the text, so the line end is left out in the next document.
    Start(true);
    Element("a");
    Element("b");
    m_Writer.EndDocument();
    EXPECT_EQ(Body(), "<a/>\r\n<b/>");
    Start(true);
    m_Writer.EndDocument();
    EXPECT_EQ(Body(), "");
}

TEST_F(Writer, KeepsNothingOfItsArguments) {
    Start(false);
    std::string name = "name";
    {
        CAttributes attributes = {{"k", "v"}};
        m_Writer.StartElement(name.c_str(), attributes.Get());
        attributes.Get()[0]->SetName("changed");
    }
    name = "gone";
    m_Writer.Characters("");
    End(1);
    EXPECT_EQ(Body(), "<name k=\"v\"></name>");
}

TEST_F(Writer, RefusesToEndAnElementWhenNoneIsOpen) {
    Start(true);
    EXPECT_WRONG_FORMAT(m_Writer.EndElement(), 1);
    Element("a");
    EXPECT_WRONG_FORMAT(m_Writer.EndElement(), 1);
    m_Writer.EndDocument();
    EXPECT_EQ(Body(), "\r\n<a/>");
}

TEST_F(Writer, EndsNoDocumentWithOpenElementsAndGoesOn) {
    Start(true);
    m_Writer.StartElement("a", nullptr);
    EXPECT_WRONG_FORMAT(m_Writer.EndDocument(), 8);
    m_Writer.StartElement("b", nullptr);
    EXPECT_WRONG_FORMAT(m_Writer.EndDocument(), 8);
    m_Writer.EndElement();
    EXPECT_WRONG_FORMAT(m_Writer.EndDocument(), 8);
    EXPECT_EQ(Body(), "\r\n<a>\r\n\t<b/>");
    End(1);
    EXPECT_EQ(Body(), "\r\n<a>\r\n\t<b/>\r\n</a>");
}

TEST_F(Writer, RefusesEverythingWithoutADocument) {
    ExpectNotOpen(m_Writer);
    Start(true);
    Element("a");
    m_Writer.EndDocument();
    ExpectNotOpen(m_Writer);
    EXPECT_EQ(Body(), "\r\n<a/>");
    EXPECT_SAVING_ERROR(m_Writer.StartDocument(nullptr, true, false), "");
    ExpectNotOpen(m_Writer);
}

TEST_F(Writer, RefusesEverythingOnAStreamThatIsNotGood) {
    for (const auto state : {std::ios::badbit, std::ios::failbit, std::ios::eofbit}) {
        std::ostringstream out;
        CXMLSaxWriter writer;
        writer.StartDocument(&out, true, false);
        writer.StartElement("a", nullptr);
        out.setstate(state);
        ExpectNotOpen(writer);
        EXPECT_EQ(out.str(), DECLARATION + "\r\n<a");
        EXPECT_EQ(out.rdstate(), state);
        // Repaired, the stream serves on.
        out.clear();
        writer.EndElement();
        out.setstate(state);
        ExpectNotOpen(writer);
        out.clear();
        writer.EndDocument();
        EXPECT_EQ(out.str(), DECLARATION + "\r\n<a/>");
    }
}

TEST_F(Writer, RefusesToStartOnAStreamThatIsNotGood) {
    for (const auto state : {std::ios::badbit, std::ios::failbit, std::ios::eofbit}) {
        std::ostringstream out;
        out.setstate(state);
        EXPECT_SAVING_ERROR(m_Writer.StartDocument(&out, true, false), "");
        EXPECT_EQ(out.str(), "");
        EXPECT_EQ(out.rdstate(), state);
        ExpectNotOpen(m_Writer);
    }
    Start(false);
    Element("a");
    m_Writer.EndDocument();
    EXPECT_EQ(Body(), "<a/>");
}

TEST_F(Writer, WritesSeveralDocumentsToOneStream) {
    m_Out << "before";
    for (const bool format : {true, false}) {
        m_Writer.StartDocument(&m_Out, format, false);
        m_Writer.StartElement("r", nullptr);
        Element("a");
        End(1);
    }
    m_Out << "behind";
    EXPECT_EQ(m_Out.str(), std::string("before") + DECLARATION + "\r\n<r>\r\n\t<a/>\r\n</r>" +
                               DECLARATION + "<r><a/></r>behind");
}

TEST_F(Writer, GoesOnWithAnotherStreamInTheMiddleOfADocument) {
    Start(true);
    m_Writer.StartElement("r", nullptr);
    m_Writer.StartElement("a", nullptr);
    std::ostringstream second;
    m_Writer.StartDocument(&second, true, false);
    // The tag is still open, and so are both elements; the depth begins at none.
    Element("b");
    EXPECT_EQ(second.str(), DECLARATION + ">\r\n<b/>");
    m_Writer.Characters("text");
    std::ostringstream third;
    m_Writer.StartDocument(&third, true, false);
    EXPECT_WRONG_FORMAT(m_Writer.EndDocument(), 8);
    m_Writer.StartElement("c", nullptr);
    End(3);
    EXPECT_EQ(Body(), "\r\n<r>\r\n\t<a");
    EXPECT_EQ(second.str(), DECLARATION + ">\r\n<b/>text");
    EXPECT_EQ(third.str(), DECLARATION + "<c/>\r\n</a>\r\n</r>");
}

TEST_F(Writer, KeepsTheOpenElementsWhenAnotherStartFails) {
    Start(false);
    m_Writer.StartElement("r", nullptr);
    EXPECT_SAVING_ERROR(m_Writer.StartDocument(nullptr, false, true), "");
    ExpectNotOpen(m_Writer);
    Start(false);
    EXPECT_WRONG_FORMAT(m_Writer.EndDocument(), 8);
    End(1);
    EXPECT_EQ(Body(), "/>");
}

TEST_F(Writer, CannotBeCopied) {
    EXPECT_FALSE(std::is_copy_constructible_v<CXMLSaxWriter>);
    EXPECT_FALSE(std::is_copy_assignable_v<CXMLSaxWriter>);
    EXPECT_FALSE(std::is_move_constructible_v<CXMLSaxWriter>);
    EXPECT_TRUE(std::has_virtual_destructor_v<CXMLSaxWriter>);
}
