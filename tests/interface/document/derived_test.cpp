// Classes derived from CXMLDocument.
#include "support/derived.h"
#include "support/testing.h"

using namespace norvask_test;

namespace {

class CFramedDocument : public CDocumentProbe {
public:
    using CDocumentProbe::CDocumentProbe;
    using CDocumentProbe::Save;
    void Save(std::ostream& out, bool format) override {
        ++m_nSaved;
        out << "<!-- before -->";
        CDocumentProbe::Save(out, format);
        out << "<!-- behind -->";
    }
    int m_nSaved = 0;
};

class CCountedDocument : public CDocumentProbe {
public:
    explicit CCountedDocument(int& ended) : m_nEnded(ended) {}
    ~CCountedDocument() override { ++m_nEnded; }

private:
    int& m_nEnded;
};

}  // namespace

TEST(DerivedDocument, WorksByItself) {
    CDocumentProbe document("name", "path");
    EXPECT_STREQ(document.GetDTDName(), "name");
    EXPECT_STREQ(document.GetDTDPath(), "path");
    EXPECT_EQ(document.GetRoot(), nullptr);
    document.CreateRoot("r")->CreateChild("c", nullptr);
    EXPECT_EQ(Listed(document.GetNodes("r/c")), "c");
    EXPECT_EQ(SavedBody(document), "<!DOCTYPE name SYSTEM \"path\"><r><c/></r>");
    document.SetDTDRef("", "");
    EXPECT_EQ(document.GetDTDName(), nullptr);
    const Document clone(document.Clone());
    EXPECT_EQ(SavedBody(*clone), "<r><c/></r>");
}

TEST(DerivedDocument, IsAskedForTheStreamWhenItIsSavedToAFile) {
    CFramedDocument document;
    document.CreateRoot("r");
    const TemporaryFile file;
    document.Save(file.Name(), false);
    EXPECT_EQ(document.m_nSaved, 1);
    EXPECT_EQ(file.Content(), std::string("<!-- before -->") + DECLARATION + "<r/><!-- behind -->");
}

TEST(DerivedDocument, IsNotAskedForTheStreamWithoutARoot) {
    CFramedDocument document;
    const TemporaryFile file;
    document.Save(file.Name(), false);
    EXPECT_EQ(document.m_nSaved, 0);
    EXPECT_FALSE(file.Exists());
}

TEST(DerivedDocument, EndsThroughItsOwnDestructor) {
    int ended = 0;
    CXMLDocument* document = new CCountedDocument(ended);
    document->CreateRoot("r")->CreateChild("c", nullptr);
    document->Delete();
    EXPECT_EQ(ended, 1);
}

TEST(DerivedDocument, MayEndOnTheStack) {
    int ended = 0;
    {
        CCountedDocument document(ended);
        document.CreateRoot("r");
    }
    EXPECT_EQ(ended, 1);
}
