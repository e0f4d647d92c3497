// What a load makes, without the parser: CTreeBuilder and CEventForwarder take a document from
// whoever reports it in narrow texts.
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "load/receiver/event_forwarder.h"
#include "load/receiver/tree_builder.h"
#include "support/recording_handler.h"
#include "support/vocabulary.h"
#include "tree/tree_building.h"

using norvask_test::CRecordingHandler;
using norvask_test::Document;
using norvask_test::TreeText;

namespace norvask {

TEST(Receivers, MakeATreeOfTexts) {
    CTreeBuilder builder;
    EXPECT_FALSE(builder.HasDocument());
    builder.StartDocument();
    builder.SetDTDRef(JudgeText("r"), JudgeText("r.dtd"));
    builder.Declare(JudgeText("q"), JudgeText("v"));
    builder.Declare(JudgeText(""), JudgeText("u"));
    EXPECT_FALSE(builder.IsInElement());
    builder.StartElement(JudgeText("r"));
    builder.SetAttribute(JudgeText("k"), JudgeText("v"));
    builder.SetAttribute(JudgeText("empty"), JudgeText(""));
    builder.CharacterData(JudgeText("\n\t"));
    builder.StartElement(UseValidName(builder.Tree(), "a"));
    builder.SetAttribute(UseValidName(builder.Tree(), "k"), JudgeText("w"));
    builder.CharacterData(JudgeText("  "));
    builder.EndElement();
    EXPECT_FALSE(builder.AddBinary(JudgeText("!")));
    EXPECT_FALSE(builder.AddBinary(JudgeText("")));
    EXPECT_TRUE(builder.AddBinary(JudgeText("QQ==")));
    builder.AddText(JudgeText("\n"));
    builder.AddText(Unjudged("\xC3\xA4"));
    EXPECT_THROW(builder.StartElement(JudgeText("1")), CXMLException);
    EXPECT_THROW(builder.SetAttribute(JudgeText("1"), JudgeText("")), CXMLException);
    builder.EndElement();
    EXPECT_FALSE(builder.IsInElement());
    const Document document(builder.TakeDocument());
    EXPECT_EQ(builder.TakeDocument(), nullptr);
    EXPECT_EQ(
        TreeText(document),
        "r xmlns:=\"u\" xmlns:q=\"v\" k=\"v\"(a k=\"w\"(\"  \"), #41, \"\\n\", \"\xC3\xA4\")");
    EXPECT_STREQ(document->GetDTDPath(), "r.dtd");
}

TEST(Receivers, StartAgainWithEachDocument) {
    CTreeBuilder builder;
    for (const char* name : {"first", "second"}) {
        builder.StartDocument();
        builder.StartElement(JudgeText(name));
    }
    EXPECT_EQ(TreeText(Document(builder.TakeDocument())), "second()");
}

TEST(Receivers, TellAClientOfTexts) {
    CRecordingHandler client;
    CEventForwarder forwarder(client);
    forwarder.StartDocument();
    forwarder.StartDTD("r", nullptr, "r.dtd");
    forwarder.StartNamespace("p", "u");
    forwarder.Attributes().Begin(2);
    forwarder.Attributes().Set(0, {"", "k", "k"}, "v");
    forwarder.Attributes().Set(1, {"u", "k", "p:k"}, "w");
    forwarder.StartElement({"u", "r", "p:r"});
    forwarder.CharacterData(JudgeText("\n\t"));
    forwarder.CharacterData(JudgeText("  "));
    forwarder.Attributes().Begin(0);
    forwarder.StartElement({"", "a", "a"});
    forwarder.EndElement({"", "a", "a"});
    forwarder.StartCDATA();
    forwarder.CDATAContent(JudgeText("\n"));
    forwarder.EndCDATA();
    forwarder.EndElement({"u", "r", "p:r"});
    forwarder.EndNamespace("p");
    forwarder.EndDocument();
    EXPECT_EQ(client.Take(),
              "StartDocument\nStartDTD \"r\" public NULL system \"r.dtd\"\n"
              "StartNamespace \"p\"=\"u\"\n"
              "StartElement {u}r=p:r k=\"v\" {u}k=p:k=\"w\"\nCharacters \"  \"\n"
              "StartElement a\nEndElement a\n"
              "StartCDATA\nCharacters \"\\n\"\nEndCDATA\nEndElement {u}r=p:r\n"
              "EndNamespace \"p\"\nEndDocument\n");
}

}  // namespace norvask
