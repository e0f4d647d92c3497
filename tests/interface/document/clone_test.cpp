// Real copies of documents: Clone. Those of nodes are in node/copy_test.cpp.
#include "support/testing.h"

using namespace norvask_test;

TEST(Clone, OfADocumentWithoutARootHasNone) {
    const Document document = NewDocument("name", "path");
    const Document clone(document->Clone());
    EXPECT_EQ(clone->GetRoot(), nullptr);
    EXPECT_STREQ(clone->GetDTDName(), "name");
    EXPECT_STREQ(clone->GetDTDPath(), "path");
    EXPECT_FALSE(Same(clone->GetDTDName(), document->GetDTDName()));
}

TEST(Clone, SavesLikeItsSource) {
    const Document document = Load(
        "<r a='1' b='2'>text<e/><![CDATA[AAEC]]>"
        "<d c='3'><deep>x</deep></d>tail</r>");
    document->SetDTDRef("r", "some where/r.dtd");
    const Document clone(document->Clone());
    EXPECT_EQ(Saved(clone), Saved(document));
    EXPECT_EQ(Saved(clone, true), Saved(document, true));
    EXPECT_NE(Saved(clone).find("<!DOCTYPE r SYSTEM \"some where/r.dtd\">"), std::string::npos);
}

TEST(Clone, HasARootWithoutAParentAndChildrenOfItsOwn) {
    const Document document = Load("<r><c/></r>");
    const Document clone(document->Clone());
    ASSERT_NE(clone->GetRoot(), nullptr);
    EXPECT_NE(clone->GetRoot(), document->GetRoot());
    EXPECT_EQ(clone->GetRoot()->GetParentNode(), nullptr);
    EXPECT_NE(clone->GetRoot()->GetFirstChild(), document->GetRoot()->GetFirstChild());
    EXPECT_EQ(clone->GetRoot()->GetFirstChild()->GetParentNode(), clone->GetRoot());
}

TEST(Clone, OutlivesItsSourceAndIsLeftAloneByIt) {
    Document document = Load("<r a='1'>text<c/></r>");
    const Document clone(document->Clone());
    document->GetRoot()->SetAttribute("a", "2");
    document->GetRoot()->DeleteChild(document->GetRoot()->GetFirstChild());
    document->SetDTDRef("n", "p");
    document.reset();
    EXPECT_EQ(Saved(clone), DECLARATION + "<r a=\"1\">text<c/></r>");
    EXPECT_EQ(clone->GetDTDName(), nullptr);
}

TEST(Clone, DropsAttributesWithAnEmptyValue) {
    const Document document = NewDocumentWithRoot("r");
    document->GetRoot()->SetAttribute("a", "1");
    document->GetRoot()->SetAttribute("b", "2");
    document->GetRoot()->GetAttributes()[0]->SetValue("");
    const Document clone(document->Clone());
    EXPECT_EQ(Attributes(*clone->GetRoot()), "b=2");
}

TEST(Clone, ReleasesWhatItBuiltWhenANameIsRefused) {
    const Document document = Load("<r a='1'><p>text</p><q b='2'/></r>");
    CXMLAttribut* deep = document->GetRoot()->GetChildren()[1]->GetAttributes()[0];
    deep->SetName("2b");
    EXPECT_INVALID_NAME(document->Clone(), "2b");
    deep->SetName("b");
    document->GetRoot()->GetAttributes()[0]->SetName("a b");
    EXPECT_INVALID_NAME(document->Clone(), "a b");
}

TEST(Clone, CanBeClonedAgain) {
    Document document = Load("<r a='1'>text<c/></r>");
    const std::string before = Saved(document);
    for (int i = 0; i < 20; ++i)
        document.reset(document->Clone());
    EXPECT_EQ(Saved(document), before);
}
