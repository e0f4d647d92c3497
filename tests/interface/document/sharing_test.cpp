// Copies of documents: they show one tree and one reference, which go with the last of them.
#include "support/derived.h"
#include "support/testing.h"

using namespace norvask_test;

namespace {

constexpr const char* XML = "<r a='1'><p>text</p><![CDATA[QUJD]]></r>";
constexpr const char* SAVED = "<r a=\"1\"><p>text</p><![CDATA[QUJD\n]]></r>";

Document LoadWithReference() {
    Document document = Load(XML);
    document->SetDTDRef("name", "path");
    return document;
}

}  // namespace

TEST(DocumentSharing, CopiesShowTheVerySameTreeAndReference) {
    const Document source = LoadWithReference();
    CDocumentProbe copy(*source);
    EXPECT_EQ(copy.GetRoot(), source->GetRoot());
    EXPECT_TRUE(Same(copy.GetDTDName(), source->GetDTDName()));
    EXPECT_TRUE(Same(copy.GetDTDPath(), source->GetDTDPath()));
    EXPECT_EQ(Saved(copy), Saved(source));
    EXPECT_EQ(Listed(copy.GetNodes("r/p")), "p");
}

TEST(DocumentSharing, CopiesShowEachOthersChanges) {
    const Document source = LoadWithReference();
    CDocumentProbe copy(*source);
    CXMLNode* root = copy.CreateRoot("new");
    EXPECT_EQ(source->GetRoot(), root);
    source->SetDTDRef("other", "other path");
    EXPECT_STREQ(copy.GetDTDName(), "other");
    source->SetDTDRef(nullptr, nullptr);
    EXPECT_EQ(copy.GetDTDName(), nullptr);
    EXPECT_EQ(copy.GetDTDPath(), nullptr);
    source->CreateRoot("newer");
    EXPECT_EQ(SavedBody(copy), "<newer/>");
}

TEST(DocumentSharing, CopiesEndInEitherOrder) {
    Document source = Load(XML);
    {
        CDocumentProbe copy(*source);
        CDocumentProbe second(copy);
    }
    EXPECT_EQ(SavedBody(*source), SAVED);
    CDocumentProbe copy(*source);
    source.reset();
    EXPECT_EQ(SavedBody(copy), SAVED);
    copy.GetRoot()->CreateChild("new", nullptr);
    EXPECT_EQ(Listed(copy.GetNodes("r/new")), "new");
    const Document clone(copy.Clone());
    EXPECT_EQ(Saved(clone), Saved(copy));
}

TEST(DocumentSharing, AssignedDocumentsEndInEitherOrder) {
    for (const bool targetFirst : {true, false}) {
        Document source = LoadWithReference();
        Document target = Load("<gone><with>content</with></gone>");
        target->SetDTDRef("gone", "gone");
        *target = *source;
        EXPECT_EQ(target->GetRoot(), source->GetRoot());
        EXPECT_TRUE(Same(target->GetDTDName(), source->GetDTDName()));
        (targetFirst ? target : source).reset();
        const Document& left = targetFirst ? source : target;
        EXPECT_EQ(SavedBody(*left), std::string("<!DOCTYPE name SYSTEM \"path\">") + SAVED);
        left->CreateRoot("end")->CreateTextChild("text");
        left->SetDTDRef("end", "end");
    }
}

TEST(DocumentSharing, DocumentsSurviveAssignmentToThemselves) {
    const Document document = LoadWithReference();
    CXMLDocument& same = *document;
    const std::string before = Saved(document);
    *document = same;
    EXPECT_EQ(Saved(document), before);
    CDocumentProbe copy(*document);
    *document = copy;
    EXPECT_EQ(Saved(document), before);
}

TEST(DocumentSharing, AssignmentInACircleKeepsEveryTree) {
    Document a = NewDocumentWithRoot("a");
    Document b = NewDocumentWithRoot("b");
    Document c = NewDocumentWithRoot("c");
    CDocumentProbe kept(*a);
    *a = *b;
    *b = *c;
    *c = kept;
    EXPECT_EQ(SavedBody(*a), "<b/>");
    EXPECT_EQ(SavedBody(*b), "<c/>");
    EXPECT_EQ(SavedBody(*c), "<a/>");
    a.reset();
    c.reset();
    EXPECT_EQ(SavedBody(kept), "<a/>");
    EXPECT_EQ(SavedBody(*b), "<c/>");
}

TEST(DocumentSharing, DocumentsWithoutARootShareTheNextOne) {
    Document source = NewDocument();
    CDocumentProbe copy(*source);
    source->CreateRoot("r");
    EXPECT_EQ(copy.GetRoot(), source->GetRoot());
    source.reset();
    EXPECT_EQ(SavedBody(copy), "<r/>");
}

TEST(DocumentSharing, NodesAndAttributesOutliveSharedDocuments) {
    Document source = Load(XML);
    auto copy = std::make_unique<CDocumentProbe>(*source);
    CElementProbe root(*source->GetRoot());
    CXMLAttribut attribute(*source->GetRoot()->GetAttributes()[0]);
    source.reset();
    copy->CreateRoot("new");
    copy.reset();
    EXPECT_EQ(SavedNode(root), SAVED);
    EXPECT_STREQ(attribute.GetValue(), "1");
}
