// XMLNameDefaultNamespaces: what it renames, and that the document then loads again.
#include "support/small_stack.h"
#include "support/testing.h"

using namespace norvask_test;

namespace {

CXMLDocumentPtr WithPrefixes(const std::string& xml) {
    return XMLLoadText(xml, SXMLLoadOptions().KeepPrefixes());
}

}  // namespace

TEST(ConvenienceNamespaces, TheSavedDocumentLoadsAgain) {
    const char* const xml =
        "<list xmlns=\"urn:list\" xmlns:p=\"urn:p\" k=\"v\"><p:a p:k=\"v\"/>text"
        "<b xmlns=\"urn:b\"><c xmlns=\"urn:list\"/></b></list>";
    CXMLDocumentPtr document = WithPrefixes(xml);
    EXPECT_EQ(Attributes(*document->GetRoot()), "xmlns:=urn:list xmlns:p=urn:p k=v");
    EXPECT_LOAD_ERROR(WithPrefixes(XMLToString(*document)), "Memfile", 1,
                      "invalid attribute name 'xmlns:'");

    EXPECT_EQ(XMLNameDefaultNamespaces(*document), 3U);
    EXPECT_EQ(SavedBody(*document), xml);
    CXMLDocumentPtr again = WithPrefixes(XMLToString(*document));
    EXPECT_EQ(Attributes(*again->GetRoot()), "xmlns:=urn:list xmlns:p=urn:p k=v");
    EXPECT_EQ(XMLNameDefaultNamespaces(*again), 3U);
    EXPECT_EQ(SavedBody(*again), xml);
}

TEST(ConvenienceNamespaces, TwiceDoesNothingMore) {
    CXMLDocumentPtr document = WithPrefixes("<a xmlns='urn:a'><b xmlns='urn:b'/></a>");
    EXPECT_EQ(XMLNameDefaultNamespaces(*document), 2U);
    const std::string saved = XMLToString(*document);
    EXPECT_EQ(XMLNameDefaultNamespaces(*document), 0U);
    EXPECT_EQ(XMLToString(*document), saved);
}

TEST(ConvenienceNamespaces, OtherNamesStay) {
    CXMLDocumentPtr document = XMLNewDocument("xmlns:");
    CXMLNode* root = document->GetRoot();
    for (const char* name : {"xmlns:p", "Xmlns:", "xmlns::", "p:xmlns", "xmlns", ":"})
        root->SetAttribute(name, "v");
    const std::string saved = XMLToString(*document);
    EXPECT_EQ(XMLNameDefaultNamespaces(*document), 0U);
    EXPECT_EQ(XMLToString(*document), saved);
}

TEST(ConvenienceNamespaces, NothingToDo) {
    EXPECT_EQ(XMLNameDefaultNamespaces(nullptr), 0U);
    EXPECT_EQ(XMLNameDefaultNamespaces(*XMLNewDocument()), 0U);
    CXMLDocumentPtr document = XMLNewDocument("a");
    EXPECT_EQ(XMLNameDefaultNamespaces(document->GetRoot()->CreateTextChild("xmlns:")), 0U);
    EXPECT_EQ(XMLNameDefaultNamespaces(document->GetRoot()->CreateBinChild()), 0U);
}

TEST(ConvenienceNamespaces, OfAPartOfATree) {
    CXMLDocumentPtr document = WithPrefixes("<a xmlns='urn:a'><b xmlns='urn:b'/></a>");
    EXPECT_EQ(XMLNameDefaultNamespaces(XMLFirstElement(document->GetRoot())), 1U);
    EXPECT_EQ(SavedBody(*document), "<a xmlns:=\"urn:a\"><b xmlns=\"urn:b\"/></a>");
}

// The program's own declaration stays, wherever it stands, and there is one of the name.
TEST(ConvenienceNamespaces, ADeclarationThatTheProgramHasSetStays) {
    CXMLDocumentPtr behind = WithPrefixes("<a xmlns='urn:old' k='v'/>");
    behind->GetRoot()->SetAttribute("xmlns", "urn:new");
    EXPECT_EQ(XMLNameDefaultNamespaces(*behind), 1U);
    EXPECT_EQ(Attributes(*behind->GetRoot()), "k=v xmlns=urn:new");
    EXPECT_NO_THROW(WithPrefixes(XMLToString(*behind)));

    CXMLDocumentPtr before = XMLNewDocument("a");
    before->GetRoot()->SetAttribute("xmlns", "urn:new");
    before->GetRoot()->SetAttribute("xmlns:", "urn:old");
    EXPECT_EQ(XMLNameDefaultNamespaces(*before), 1U);
    EXPECT_EQ(Attributes(*before->GetRoot()), "xmlns=urn:new");
}

TEST(ConvenienceNamespaces, OfSeveralThatWereKeptTheFirstStays) {
    CXMLDocumentPtr document = XMLNewDocument("a");
    CXMLNode* root = document->GetRoot();
    for (const char* name : {"xmlns:", "k", "second", "third"})
        root->SetAttribute(name, name);
    for (const std::size_t i : {2U, 3U})
        root->GetAttributes()[i]->SetName("xmlns:");
    EXPECT_EQ(XMLNameDefaultNamespaces(*document), 3U);
    EXPECT_EQ(Attributes(*root), "xmlns=xmlns: k=k");
}

TEST(ConvenienceNamespaces, AMillionLevelsAndAMillionChildren) {
    constexpr std::size_t MANY = 1000000;
    OnSmallStack([] {
        CXMLDocumentPtr document = XMLNewDocument("n");
        CXMLNode* deepest = document->GetRoot();
        for (std::size_t level = 1; level < MANY; ++level)
            deepest = deepest->CreateChild("n", nullptr);
        deepest->SetAttribute("xmlns:", "urn:n");
        document->GetRoot()->SetAttribute("xmlns:", "urn:n");
        for (std::size_t i = 0; i < MANY; ++i)
            document->GetRoot()->CreateChild("n", nullptr)->SetAttribute("xmlns:", "urn:n");
        EXPECT_EQ(XMLNameDefaultNamespaces(*document), MANY + 2);
        EXPECT_EQ(Attributes(*deepest), "xmlns=urn:n");
        EXPECT_EQ(XMLToString(*document).find("xmlns:"), std::string::npos);
    });
}
