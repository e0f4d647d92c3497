// Documents: the root, the DTD reference, and ending.
#include "support/names.h"
#include "support/testing.h"

using namespace norvask_test;

namespace {

struct SReferenceRow {
    const char* name;
    const char* path;
    bool isSet;
};

const SReferenceRow REFERENCES[] = {
    {"name", "path", true},    {"1a", "any path <&>", true}, {"n", " ", true},
    {nullptr, nullptr, false}, {"name", nullptr, false},     {nullptr, "path", false},
    {"", "path", false},       {"name", "", false},          {"", "", false},
    {"", nullptr, false},
};

void ExpectReference(CXMLDocument& document, const SReferenceRow& row) {
    if (row.isSet) {
        EXPECT_STREQ(document.GetDTDName(), row.name);
        EXPECT_STREQ(document.GetDTDPath(), row.path);
    } else {
        EXPECT_EQ(document.GetDTDName(), nullptr);
        EXPECT_EQ(document.GetDTDPath(), nullptr);
    }
}

}  // namespace

TEST(XmlDocument, HasNoRootAtFirst) {
    const Document document = NewDocument();
    ASSERT_NE(document, nullptr);
    EXPECT_EQ(document->GetRoot(), nullptr);
    EXPECT_EQ(document->GetDTDName(), nullptr);
    EXPECT_EQ(document->GetDTDPath(), nullptr);
}

TEST(XmlDocument, IsMadeWithAWholeReferenceOrNone) {
    for (const SReferenceRow& row : REFERENCES) {
        const Document document = NewDocument(row.name, row.path);
        ExpectReference(*document, row);
    }
}

TEST(XmlDocument, SetsAWholeReferenceOrRemovesIt) {
    for (const SReferenceRow& before : REFERENCES) {
        for (const SReferenceRow& row : REFERENCES) {
            const Document document = NewDocument(before.name, before.path);
            document->SetDTDRef(row.name, row.path);
            ExpectReference(*document, row);
        }
    }
}

TEST(XmlDocument, CopiesItsReference) {
    char name[] = "name";
    char path[] = "path";
    const Document document = NewDocument(name, path);
    name[0] = path[0] = 'X';
    EXPECT_STREQ(document->GetDTDName(), "name");
    EXPECT_STREQ(document->GetDTDPath(), "path");
    name[0] = 'n';
    path[0] = 'p';
    document->SetDTDRef(name, path);
    name[0] = path[0] = 'X';
    EXPECT_STREQ(document->GetDTDName(), "name");
    EXPECT_STREQ(document->GetDTDPath(), "path");
}

TEST(XmlDocument, WritesTheReferenceWithAnEscapedPath) {
    const Document document = NewDocumentWithRoot("r");
    document->SetDTDRef("name", "a path with <&>'\"");
    EXPECT_EQ(SavedBody(*document),
              "<!DOCTYPE name SYSTEM \"a path with &#x3c;&#x26;&#x3e;&#x27;&#x22;\"><r/>");
    document->SetDTDRef(nullptr, "path");
    EXPECT_EQ(SavedBody(*document), "<r/>");
}

TEST(XmlDocument, ChecksTheNameOfTheReferenceWhenItIsSaved) {
    const Document document = NewDocumentWithRoot("r");
    for (const std::string& name : InvalidNames()) {
        if (name.empty()) continue;
        document->SetDTDRef(name.c_str(), "path");
        std::ostringstream out;
        EXPECT_INVALID_NAME(document->Save(out, true), name);
        EXPECT_EQ(out.str(), DECLARATION);
    }
}

TEST(XmlDocument, CreatesARoot) {
    const Document document = NewDocument();
    CXMLNode* root = document->CreateRoot("r");
    ASSERT_NE(root, nullptr);
    EXPECT_EQ(document->GetRoot(), root);
    EXPECT_STREQ(root->GetTagName(), "r");
    EXPECT_EQ(root->GetParentNode(), nullptr);
    EXPECT_EQ(root->GetNodeType(), CXMLNode::NODE_ELEMENT);
    EXPECT_EQ(root->GetFirstChild(), nullptr);
    EXPECT_EQ(root->GetAttributes()[0], nullptr);
}

TEST(XmlDocument, ReplacesItsRoot) {
    const Document document = Load("<r a='1'>text<c><d/></c><![CDATA[QUJD]]></r>");
    for (const char* name : {"s", "t", "t", "r"}) {
        CXMLNode* root = document->CreateRoot(name);
        EXPECT_EQ(document->GetRoot(), root);
        EXPECT_EQ(SavedBody(*document), "<" + std::string(name) + "/>");
        root->SetAttribute("a", "1");
        root->CreateChild("c", nullptr);
    }
}

TEST(XmlDocument, KeepsItsRootWhenTheNewNameIsInvalid) {
    const Document document = Load("<r a='1'><c/></r>");
    CXMLNode* root = document->GetRoot();
    for (const std::string& name : InvalidNames()) {
        EXPECT_INVALID_NAME(document->CreateRoot(name.c_str()), name);
        EXPECT_EQ(document->GetRoot(), root);
    }
    EXPECT_INVALID_NAME(document->CreateRoot(nullptr), "");
    EXPECT_EQ(document->GetRoot(), root);
    EXPECT_EQ(SavedBody(*document), "<r a=\"1\"><c/></r>");

    const Document empty = NewDocument();
    EXPECT_INVALID_NAME(empty->CreateRoot("1a"), "1a");
    EXPECT_EQ(empty->GetRoot(), nullptr);
}

TEST(XmlDocument, CreatesARootWithEveryName) {
    const Document document = NewDocument();
    for (const std::string& name : ValidNames())
        EXPECT_EQ(document->CreateRoot(name.c_str())->GetTagName(), name);
}

TEST(XmlDocument, IsIndependentOfOtherDocuments) {
    Document first = NewDocumentWithRoot("first");
    const Document second = NewDocumentWithRoot("second");
    first->GetRoot()->CreateChild("same", nullptr);
    second->GetRoot()->CreateChild("same", nullptr);
    first.reset();
    EXPECT_EQ(SavedBody(*second), "<second><same/></second>");
}

TEST(XmlDocument, EndsWithAndWithoutARoot) {
    for (int i = 0; i < 100; ++i) {
        CXMLDocument* document = Manager().CreateDocument("n", "p");
        if (i % 2) document->CreateRoot("r")->CreateTextChild("text");
        document->Delete();
    }
}

TEST(XmlDocument, RefusesToSaveToAStreamWithoutARoot) {
    const Document document = NewDocument("name", "path");
    for (const bool format : {true, false}) {
        std::ostringstream out;
        EXPECT_INVALID_PARAMETER(document->Save(out, format));
        EXPECT_EQ(out.str(), "");
    }
}

TEST(XmlDocument, DoesNothingWhenItIsSavedToAFileWithoutARootOrAName) {
    const Document empty = NewDocument();
    const TemporaryFile file;
    empty->Save(file.Name(), true);
    EXPECT_FALSE(file.Exists());
    empty->Save(static_cast<const char*>(nullptr), true);
    const Document document = NewDocumentWithRoot("r");
    document->Save(static_cast<const char*>(nullptr), true);

    const TemporaryFile full(".xml", "content");
    empty->Save(full.Name(), false);
    EXPECT_EQ(full.Content(), "content");
}
