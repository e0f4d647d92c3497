// What the caller of a callback load is told when it fails: sources that cannot be read,
// parameters, malformed and invalid documents; and which callbacks were made until then.
#include "support/recording_handler.h"
#include "support/testing.h"

using namespace norvask_test;

namespace {

struct SFailing {
    std::string xml;
    int line;
    std::string message;
    std::string events;  // all that arrive
};

// The handler must serve the next load as if nothing had been.
void ExpectUsable(CRecordingHandler& handler) {
    handler.Take();
    EXPECT_EQ(handler.GetSourceOffset(), 0u);
    LoadMemory("<r>x</r>", handler);
    EXPECT_EQ(handler.Take(), Whole("StartElement r\nCharacters \"x\"\nEndElement r\n"));
    EXPECT_EQ(handler.GetSourceOffset(), 0u);
}

// From memory and from a file.
void ExpectFailure(const SFailing& row, const SLoad& how) {
    SCOPED_TRACE(Quoted(row.xml));
    CRecordingHandler handler;
    EXPECT_LOAD_ERROR(LoadMemory(row.xml, handler, how), "Memfile", row.line, row.message);
    EXPECT_EQ(handler.Transcript(), row.events);
    ExpectUsable(handler);
    TemporaryFile file(".xml", row.xml);
    EXPECT_LOAD_ERROR(LoadFile(file.Name(), handler, how), file.Name(), row.line, row.message);
    EXPECT_EQ(handler.Transcript(), row.events);
    ExpectUsable(handler);
}

}  // namespace

TEST(CallbackErrors, OfAMalformedDocumentNameTheFileAndTheLine) {
    const SFailing rows[] = {
        {" ", 1, "invalid document structure", "StartDocument\n"},
        {"text", 1, "invalid document structure", "StartDocument\n"},
        {"<r>\n<a>\n</r>", 3, "expected end of tag 'a'",
         "StartDocument\nStartElement r\nStartElement a\n"},
        {"<r>text<a>more", 1,
         "input ended before all started tags were ended; last tag started is 'a'",
         "StartDocument\nStartElement r\nCharacters \"text\"\nStartElement a\n"},
        {"<r>\n\n<a k='1' k='2'/></r>", 3, "attribute 'k' is already specified for element 'a'",
         "StartDocument\nStartElement r\n"},
        {"<r>x&nothing;</r>", 1, "entity 'nothing' not found", "StartDocument\nStartElement r\n"},
        {"<r>x<![CDATA[y</r>", 1, "unterminated CDATA section", "StartDocument\nStartElement r\n"},
        {"<r/>\n<q/>", 2, "comment or processing instruction expected",
         "StartDocument\nStartElement r\nEndElement r\n"},
        {"<r xmlns:p='u'>\n<p:a></p:b></r>", 2, "expected end of tag 'p:a'",
         "StartDocument\nStartNamespace \"p\"=\"u\"\nStartElement r\nStartElement {u}a=p:a\n"},
    };
    for (const SFailing& row : rows) {
        for (const SLoad& how : {SLoad(), KeepPrefixes(), Validate()})
            ExpectFailure(row, how);
    }
}

TEST(CallbackErrors, OfADtdEndTheLoadAtTheFirstViolation) {
    const std::string start = "StartDocument\nStartDTD \"r\" public NULL system NULL\n";
    const SFailing rows[] = {
        {"<!DOCTYPE r [<!ELEMENT r EMPTY>]>\n<r><a/><b/></r>", 2,
         "no declaration found for element 'a'", start + "StartElement r\n"},
        {"<!DOCTYPE r [<!ELEMENT r ANY><!ATTLIST r i ID #REQUIRED>]>\n\n<r/>", 3,
         "missing required attribute 'i'", start},
        {"<!DOCTYPE r [<!ELEMENT r (a)><!ELEMENT a ANY>]><r>\n</r>", 2,
         "empty content is not valid for content model '(a)'", start + "StartElement r\n"},
    };
    for (const SFailing& row : rows) {
        ExpectFailure(row, Validate());
        CRecordingHandler handler;
        LoadMemory(row.xml, handler);
        EXPECT_NE(handler.Transcript().find("EndDocument"), std::string::npos) << "not validated";
    }
}

TEST(CallbackErrors, NameTheEntityInWhichTheErrorLies) {
    TemporaryFile entity(".ent", "<b>\n\n<c></b>");
    CRecordingHandler handler;
    EXPECT_LOAD_ERROR(LoadMemory(std::string("<!DOCTYPE r [<!ENTITY e SYSTEM '") + entity.Name() +
                                     "'>]>\n<r>&e;</r>",
                                 handler),
                      entity.Name(), 3, "expected end of tag 'c'");
    ExpectUsable(handler);
    EXPECT_LOAD_ERROR(LoadMemory("<!DOCTYPE r SYSTEM '/nonexistent/r.dtd'>\n<r/>", handler),
                      "Memfile", 1, "unable to open DTD document '/nonexistent/r.dtd'");
    EXPECT_EQ(handler.Transcript(),
              "StartDocument\nStartDTD \"r\" public NULL system \"/nonexistent/r.dtd\"\n");
    ExpectUsable(handler);
}

TEST(CallbackErrors, OfASchemaAreThoseOfTheSchemaInForce) {
    TemporaryFile plain(".xsd", Schema(false));
    TemporaryFile named(".xsd", Schema(true));
    const SLoad forPlain = ValidateWithSchema(plain.Name());
    const SLoad forNamed = ValidateWithSchema(std::string("urn:t ") + named.Name(), true);
    ExpectFailure({"<r>\n<n>x</n></r>", 2, NO_INTEGER,
                   "StartDocument\nStartElement r d=\"default\"\nStartElement n\n"},
                  forPlain);
    ExpectFailure({"<t:r xmlns:t='urn:t'>\n\n<t:n>x</t:n></t:r>", 3, NO_INTEGER,
                   "StartDocument\nStartNamespace \"t\"=\"urn:t\"\n"
                   "StartElement {urn:t}r=t:r d=\"default\"\nStartElement {urn:t}n=t:n\n"},
                  forNamed);
    ExpectFailure({"<q/>", 1, "no declaration found for element 'q'", "StartDocument\n"}, forPlain);
    // Each kind of schema knows nothing of the other kind's elements.
    ExpectFailure(
        {"<r xmlns='urn:t'/>", 1, "no declaration found for element 'r'", "StartDocument\n"},
        forPlain);
    ExpectFailure({"<r/>", 1, "no declaration found for element 'r'", "StartDocument\n"}, forNamed);
    SLoad wrongKind = forPlain;
    wrongKind.schemaHasNamespace = true;
    CRecordingHandler handler;
    EXPECT_LOAD_ERROR(LoadMemory("<r><n>1</n></r>", handler, wrongKind), "Memfile", 1,
                      "schemaLocation does not contain namespace-location pairs");
    ExpectUsable(handler);
}

TEST(CallbackErrors, OfASchemaNeedBothSwitches) {
    TemporaryFile schema(".xsd", Schema(false));
    const std::string invalid = "<r><n>x</n></r>";
    const std::string events =
        Whole("StartElement r\nStartElement n\nCharacters \"x\"\nEndElement n\nEndElement r\n");
    for (const bool validate : {false, true}) {
        SLoad how = ValidateWithSchema(schema.Name());
        how.validate = validate;
        how.doSchema = !validate;
        EXPECT_EQ(EventsOfMemory(invalid, how), events);
    }
    EXPECT_EQ(EventsOfMemory(invalid, ValidateWithSchema("")), events);
    EXPECT_EQ(EventsOfMemory("<r><n>1</n></r>", ValidateWithSchema(schema.Name())),
              Whole("StartElement r d=\"default\"\nStartElement n\nCharacters \"1\"\n"
                    "EndElement n\nEndElement r\n"));
}

TEST(CallbackErrors, OfASourceThatCannotBeReadComeBeforeEveryCallback) {
    CRecordingHandler handler;
    EXPECT_LOAD_ERROR(LoadFile("/nonexistent/catalogue.xml", handler), "", 0,
                      "unable to open primary document entity "
                      "'/nonexistent/catalogue.xml'");
    EXPECT_EQ(handler.Transcript(), "");
    ExpectUsable(handler);
    EXPECT_LOAD_ERROR(LoadFile("", handler), "", 0, "unable to open primary document entity ''");
    EXPECT_EQ(handler.Transcript(), "");
    EXPECT_LOAD_ERROR(LoadFile("/", handler), "", 0, "unable to read data from file");
    EXPECT_EQ(handler.Transcript(), "");
    ExpectUsable(handler);
}

TEST(CallbackErrors, OfNoSourceOrNoHandlerAreTheParameters) {
    unsigned char bytes[] = {'<', 'r', '/', '>'};
    TemporaryFile file(".xml", "<r/>");
    const char* noName = nullptr;
    unsigned char* noBuffer = nullptr;
    CXMLSaxHandler* noHandler = nullptr;
    CRecordingHandler handler;
    for (const SLoad& how : {SLoad(), SLoad{true, true, {}, true, true}}) {
        EXPECT_INVALID_PARAMETER(LoadFrom(how, noName, &handler));
        EXPECT_INVALID_PARAMETER(LoadFrom(how, noName, noHandler));
        EXPECT_INVALID_PARAMETER(LoadFrom(how, file.Name(), noHandler));
        EXPECT_INVALID_PARAMETER(LoadFrom(how, "/nonexistent", noHandler));
        for (const unsigned length : {0u, 4u, 0xFFFFFFFFu}) {
            EXPECT_INVALID_PARAMETER(LoadFrom(how, noBuffer, length, &handler));
        }
        EXPECT_INVALID_PARAMETER(LoadFrom(how, bytes, 0u, &handler));
        EXPECT_INVALID_PARAMETER(LoadFrom(how, bytes, 4u, noHandler));
        EXPECT_INVALID_PARAMETER(LoadFrom(how, noBuffer, 0u, noHandler));
    }
    EXPECT_EQ(handler.Transcript(), "");
    ExpectUsable(handler);
}

TEST(CallbackErrors, OfAManagerThatIsNotInitialisedComeFirst) {
    class CCopy : public CXMLManager {
    public:
        CCopy() : CXMLManager(GetInstance()) {}
    } copy;
    CRecordingHandler handler;
    unsigned char bytes[] = {'<', 'r', '/', '>'};
    unsigned char* noBuffer = nullptr;
    const char* noName = nullptr;
    EXPECT_NO_PARSER(copy.LoadDocument(bytes, 4, &handler, false, false, nullptr, false, false));
    EXPECT_NO_PARSER(copy.LoadDocument("r.xml", &handler, false, false, nullptr, false, false));
    EXPECT_NO_PARSER(copy.LoadDocument(noBuffer, 0, &handler, false, false, nullptr, false, false));
    EXPECT_NO_PARSER(copy.LoadDocument(noName, &handler, false, false, nullptr, false, false));
    EXPECT_EQ(handler.Transcript(), "");
}

TEST(CallbackErrors, LeaveNothingForTheNextLoad) {
    CRecordingHandler handler;
    for (int i = 0; i < 3; ++i) {
        EXPECT_LOAD_ERROR(LoadMemory("<r xmlns:p='1'>text<![CDATA[x]]>pending<p:a", handler),
                          "Memfile", 1, "unexpected end of input");
        ExpectUsable(handler);
        EXPECT_LOAD_ERROR(LoadMemory("<r>x<![CDATA[", handler), "Memfile", 1,
                          "unterminated CDATA section");
        handler.Take();
        LoadMemory("<r>\n</r>", handler);
        EXPECT_EQ(handler.Take(), Whole("StartElement r\nEndElement r\n"));
    }
}

TEST(CallbackErrors, AreNotWarnings) {
    EXPECT_EQ(EventsOfMemory("<?xml version='1.0' encoding='UTF-16'?><r/>"),
              Whole("StartElement r\nEndElement r\n"));
    EXPECT_EQ(EventsOfMemory("<r/>", ValidateWithSchema("/nonexistent/s.xsd")),
              Whole("StartElement r\nEndElement r\n"));
}
