// Conveniences for documents: ownership, load options, documents as strings.
#include <climits>
#include <cstdint>
#include <new>
#include <ostream>
#include <stdexcept>
#include <string_view>
#include <type_traits>

#include "interface/convenience/client.h"
#include "support/derived.h"
#include "support/recording_handler.h"
#include "support/testing.h"

using namespace norvask_test;

namespace {

// A document that counts how often Delete is called.
class CDeleted : public CDocumentProbe {
public:
    explicit CDeleted(int& deleted) : m_Deleted(deleted) {}
    void Delete() override { ++m_Deleted; }

private:
    int& m_Deleted;
};

// Writes more than any string can hold; the library's own documents cannot be made as large.
class CEndless : public CDocumentProbe {
public:
    void Save(std::ostream& out, bool) override { out.write("", PTRDIFF_MAX); }
};

const char* const SCHEMA =
    "<xs:schema xmlns:xs=\"http://www.w3.org/2001/XMLSchema\">"
    "<xs:element name=\"a\" type=\"xs:int\"/></xs:schema>";
const char* const NAMESPACE_SCHEMA =
    "<xs:schema xmlns:xs=\"http://www.w3.org/2001/XMLSchema\" targetNamespace=\"urn:a\">"
    "<xs:element name=\"a\" type=\"xs:int\"/></xs:schema>";

// The error class of a load, 0 if it succeeds.
template <typename Work>
int ErrorOf(Work load) {
    try {
        load();
    } catch (CXMLException& e) {
        return e.GetID();
    }
    return 0;
}

}  // namespace

TEST(ConvenienceDocument, AClientUsesThemAll) {
    TemporaryFile file;
    EXPECT_EQ(UseConveniences(file.Name()),
              "1 book data Äpfel xmlns: found 4 15 <?xml version=\"1.0\"?><row><name>Möhlau</name>"
              "<level>2.5</level><count>3</count><alarm>true</alarm></row>");
}

TEST(ConvenienceDocument, ThePointerEndsADocumentWithDelete) {
    int deleted = 0;
    CDeleted document(deleted);
    { CXMLDocumentPtr owner(&document); }
    EXPECT_EQ(deleted, 1);
    {
        CXMLDocumentPtr owner(&document);
        CXMLDocumentPtr next(std::move(owner));
        EXPECT_EQ(owner, nullptr);
        EXPECT_EQ(deleted, 1);
    }
    EXPECT_EQ(deleted, 2);
    EXPECT_EQ(sizeof(CXMLDocumentPtr), sizeof(CXMLDocument*));
}

TEST(ConvenienceDocument, NoMemoryForADocumentIsBadAlloc) {
    EXPECT_THROW(convenience_inside::Own(nullptr), std::bad_alloc);
}

TEST(ConvenienceDocument, NewDocuments) {
    EXPECT_EQ(XMLNewDocument()->GetRoot(), nullptr);
    EXPECT_EQ(SavedBody(*XMLNewDocument("a")), "<a/>");
    EXPECT_EQ(SavedBody(*XMLNewDocument("a", "a", "a.dtd")), "<!DOCTYPE a SYSTEM \"a.dtd\"><a/>");
    EXPECT_INVALID_NAME(XMLNewDocument("no name"), "no name");
    EXPECT_INVALID_NAME(XMLNewDocument(nullptr), "");
}

TEST(ConvenienceDocument, ACloneIsADocumentOfItsOwn) {
    CXMLDocumentPtr source = XMLLoadText("<a k='v'>text</a>");
    CXMLDocumentPtr clone = XMLClone(*source);
    source.reset();
    EXPECT_EQ(SavedBody(*clone), "<a k=\"v\">text</a>");
}

TEST(ConvenienceDocument, OptionsByNameAndByChain) {
    const SXMLLoadOptions none;
    EXPECT_FALSE(none.validate || none.doSchema || none.schemaHasNamespace || none.keepPrefixes);
    EXPECT_EQ(none.schemaLocation, "");

    const SXMLLoadOptions all =
        SXMLLoadOptions().KeepPrefixes().ValidateBySchema("urn:a a.xsd", true);
    EXPECT_TRUE(all.validate && all.doSchema && all.schemaHasNamespace && all.keepPrefixes);
    EXPECT_EQ(all.schemaLocation, "urn:a a.xsd");
    EXPECT_TRUE(none.Validate().validate);
    EXPECT_FALSE(none.Validate().doSchema);
    EXPECT_FALSE(none.validate) << "the chain answers copies";
    EXPECT_TRUE(std::is_aggregate_v<SXMLLoadOptions>);
}

// Each option has its effect, in all four loads.
TEST(ConvenienceDocument, OptionsReachTheLoads) {
    const TemporaryFile schema(".xsd", SCHEMA);
    const TemporaryFile spaceSchema(".xsd", NAMESPACE_SCHEMA);
    const SXMLLoadOptions plain;
    const SXMLLoadOptions bySchema = plain.ValidateBySchema(schema.Name());
    const SXMLLoadOptions bySpace =
        plain.ValidateBySchema(std::string("urn:a ") + spaceSchema.Name(), true);
    const struct {
        const char* xml;
        SXMLLoadOptions options;
        int error;
    } rows[] = {
        {"<a>x</a>", plain, 0},
        {"<a>x</a>", bySchema, 2},
        {"<a>1</a>", bySchema, 0},
        {"<a xmlns='urn:a'>x</a>", bySpace, 2},
        {"<a xmlns='urn:a'>1</a>", bySpace, 0},
        {"<!DOCTYPE a [<!ELEMENT a EMPTY>]><a>x</a>", plain, 0},
        {"<!DOCTYPE a [<!ELEMENT a EMPTY>]><a>x</a>", plain.Validate(), 2},
        {"<!DOCTYPE a [<!ELEMENT a EMPTY>]><a/>", plain.Validate(), 0},
        {"<a>", plain, 2},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.xml);
        const TemporaryFile file(".xml", row.xml);
        CXMLSaxHandler handler;
        EXPECT_EQ(ErrorOf([&] { XMLLoadText(row.xml, row.options); }), row.error);
        EXPECT_EQ(ErrorOf([&] { XMLLoadText(row.xml, handler, row.options); }), row.error);
        EXPECT_EQ(ErrorOf([&] { XMLLoadFile(file.Name(), row.options); }), row.error);
        EXPECT_EQ(ErrorOf([&] { XMLLoadFile(file.Name(), handler, row.options); }), row.error);
    }
    const char* const prefixed = "<p:a xmlns:p='urn:a'/>";
    EXPECT_EQ(SavedBody(*XMLLoadText(prefixed)), "<a/>");
    EXPECT_EQ(SavedBody(*XMLLoadText(prefixed, plain.KeepPrefixes())), "<p:a xmlns:p=\"urn:a\"/>");
    const TemporaryFile file(".xml", prefixed);
    EXPECT_EQ(SavedBody(*XMLLoadFile(std::string(file.Name()))), "<a/>");
    EXPECT_EQ(SavedBody(*XMLLoadFile(file.Name(), plain.KeepPrefixes())),
              "<p:a xmlns:p=\"urn:a\"/>");
}

TEST(ConvenienceDocument, CallbackLoadsCallTheHandler) {
    const char* const xml = "<a k='v'>text<b/></a>";
    const TemporaryFile file(".xml", xml);
    CRecordingHandler direct, named, fromString, fromText;
    LoadFrom(SLoad(), file.Name(), &direct);
    XMLLoadFile(file.Name(), named);
    XMLLoadFile(std::string(file.Name()), fromString);
    XMLLoadText(xml, fromText);
    EXPECT_NE(direct.Transcript(), "");
    EXPECT_EQ(named.Transcript(), direct.Transcript());
    EXPECT_EQ(fromString.Transcript(), direct.Transcript());
    EXPECT_EQ(fromText.Transcript(), direct.Transcript());
}

TEST(ConvenienceDocument, ANameThatIsNoNameIsRefusedByTheLoad) {
    CXMLSaxHandler handler;
    EXPECT_INVALID_PARAMETER(XMLLoadFile(static_cast<const char*>(nullptr)));
    EXPECT_INVALID_PARAMETER(XMLLoadFile(static_cast<const char*>(nullptr), handler));
    EXPECT_EQ(ErrorOf([] { XMLLoadFile("/no/such/file.xml"); }), 2);
}

TEST(ConvenienceDocument, ATextIsTakenByItsLengthNotByItsEnd) {
    const std::string_view xml = "<a/><b/>";
    EXPECT_EQ(SavedBody(*XMLLoadText(xml.substr(0, 4))), "<a/>");
    EXPECT_EQ(SavedBody(*XMLLoadText(xml.substr(4))), "<b/>");
    EXPECT_EQ(SavedBody(*XMLLoadText(std::string("<a>\xC3\xA4</a>"))), "<a>ä</a>");
    EXPECT_EQ(SavedBody(*XMLLoadText("<?xml version='1.0' encoding='ISO-8859-1'?><a>\xE4</a>")),
              "<a>ä</a>");
}

// The length does not fit into the parameter of the load. Cut to that it would be the document's.
TEST(ConvenienceDocument, TextsThatAreEmptyOrTooLongAreRefused) {
    static_assert(sizeof(std::size_t) > sizeof(unsigned int));
    const char* const xml = "<a/>";
    const std::string_view tooLong(xml, (std::size_t{UINT_MAX} + 1) + 4);
    CXMLSaxHandler handler;
    EXPECT_INVALID_PARAMETER(XMLLoadText(tooLong));
    EXPECT_INVALID_PARAMETER(XMLLoadText(tooLong, handler));
    EXPECT_INVALID_PARAMETER(XMLLoadText(""));
    EXPECT_INVALID_PARAMETER(XMLLoadText(std::string_view()));
    EXPECT_INVALID_PARAMETER(XMLLoadText("", handler));
}

TEST(ConvenienceDocument, ADocumentToAStringIsWhatSaveWrites) {
    std::string large = "<a>";
    for (int i = 0; i < 20000; ++i)
        large += "<row number='" + std::to_string(i) + "'>ä &lt; &amp;</row>";
    for (const std::string& xml : {std::string("<a/>"), std::string("<a><b>x</b><c/></a>"),
                                   std::string("<a><![CDATA[AAEC]]></a>"), large + "</a>"}) {
        Document document = Load(xml);
        EXPECT_EQ(XMLToString(*document), Saved(document));
        EXPECT_EQ(XMLToString(*document, true), Saved(document, true));
        EXPECT_EQ(XMLToString(*XMLLoadText(XMLToString(*document))), XMLToString(*document));
    }
}

TEST(ConvenienceDocument, ADocumentToAStringFailsAsSaveDoes) {
    EXPECT_INVALID_PARAMETER(XMLToString(*XMLNewDocument()));
    CXMLDocumentPtr document = XMLNewDocument("a");
    document->GetRoot()->SetAttribute("k", "v");
    document->GetRoot()->GetAttributes()[0]->SetName("no name");
    EXPECT_INVALID_NAME(XMLToString(*document), "no name");
}

// As when memory runs out: a string stream would keep quiet and answer a part of the document.
TEST(ConvenienceDocument, AStringThatCannotGrowIsNotAPartOfTheDocument) {
    CEndless document;
    EXPECT_THROW(XMLToString(document), std::length_error);
}

TEST(ConvenienceDocument, TakesNullForNoTextAndNoSchema) {
    EXPECT_INVALID_PARAMETER(XMLLoadText(nullptr).reset());
    CXMLLambdaHandler handler;
    EXPECT_INVALID_PARAMETER(XMLLoadText(nullptr, handler));
    EXPECT_EQ(SXMLLoadOptions().ValidateBySchema(nullptr).schemaLocation, "");
    const std::string text = "<a/>";
    EXPECT_STREQ(XMLLoadText(text)->GetRoot()->GetTagName(), "a");
    EXPECT_STREQ(XMLLoadText(std::string_view("<a/>junk", 4))->GetRoot()->GetTagName(), "a");
    EXPECT_STREQ(XMLLoadText(text.c_str())->GetRoot()->GetTagName(), "a");
}
