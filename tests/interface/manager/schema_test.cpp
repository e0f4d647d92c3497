// Loads with XML Schema: schemas that the caller gives, schemas that the document names, and which
// of the parameters has an effect when.
#include "support/testing.h"

using namespace norvask_test;

namespace {

class LoadSchema : public ::testing::Test {
protected:
    // Both the declaration of the instance namespace and the schema's location.
    std::string Hint() const {
        return std::string(" xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\"") +
               " xsi:noNamespaceSchemaLocation=\"" + m_Plain.Name() + "\"";
    }
    std::string NamespaceHint() const {
        return std::string(" xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\"") +
               " xsi:schemaLocation=\"urn:t " + m_Named.Name() + "\"";
    }

    TemporaryFile m_Plain{".xsd", Schema(false)};
    TemporaryFile m_Named{".xsd", Schema(true)};
};

}  // namespace

TEST_F(LoadSchema, ValidatesAgainstTheCallersSchemaForNoNamespace) {
    const SLoad how = ValidateWithSchema(m_Plain.Name());
    EXPECT_EQ(TreeText(LoadMemory("<r><n>1</n></r>", how)), "r d=\"default\"(n(\"1\"))");
    EXPECT_EQ(TreeText(LoadMemory("<r d='v'> <n>1</n> <n>-2</n> </r>", how)),
              "r d=\"v\"(n(\"1\"), n(\"-2\"))");
    EXPECT_LOAD_ERROR(LoadMemory("<r>\n<n>x</n></r>", how), "Memfile", 2, NO_INTEGER);
    EXPECT_LOAD_ERROR(LoadMemory("<r><m/></r>", how), "Memfile", 1,
                      "no declaration found for element 'm'");
    EXPECT_LOAD_ERROR(LoadMemory("<q/>", how), "Memfile", 1,
                      "no declaration found for element 'q'");
}

TEST_F(LoadSchema, ValidatesAgainstTheCallersSchemaForANamespace) {
    const SLoad how = ValidateWithSchema(std::string("urn:t ") + m_Named.Name(), true);
    EXPECT_EQ(TreeText(LoadMemory("<r xmlns='urn:t'><n>1</n></r>", how)),
              "r d=\"default\"(n(\"1\"))");
    EXPECT_EQ(TreeText(LoadMemory("<t:r xmlns:t='urn:t'><t:n>1</t:n></t:r>", how)),
              "r d=\"default\"(n(\"1\"))");
    EXPECT_LOAD_ERROR(LoadMemory("<r xmlns='urn:t'><n>x</n></r>", how), "Memfile", 1, NO_INTEGER);
    TemporaryFile file(".xml", "<r xmlns='urn:t'>\n<n>x</n></r>");
    EXPECT_LOAD_ERROR(LoadFile(file.Name(), how), file.Name(), 2, NO_INTEGER);
    SLoad keep = how;
    keep.keepPrefixes = true;
    EXPECT_EQ(TreeText(LoadMemory("<t:r xmlns:t='urn:t'><t:n>1</t:n></t:r>", keep)),
              "t:r xmlns:t=\"urn:t\" d=\"default\"(t:n(\"1\"))");
}

TEST_F(LoadSchema, ReadsTheLocationAsTheFlagSays) {
    // A location alone is no list of pairs.
    EXPECT_LOAD_ERROR(LoadMemory("<r><n>1</n></r>", ValidateWithSchema(m_Plain.Name(), true)),
                      "Memfile", 1, "schemaLocation does not contain namespace-location pairs");
    // Each kind of schema knows nothing of the other kind's elements, and says so.
    const std::string unknown = "no declaration found for element 'r'";
    EXPECT_LOAD_ERROR(
        LoadMemory("<r xmlns='urn:t'><n>1</n></r>", ValidateWithSchema(m_Plain.Name())), "Memfile",
        1, unknown);
    EXPECT_LOAD_ERROR(LoadMemory("<r><n>1</n></r>",
                                 ValidateWithSchema(std::string("urn:t ") + m_Named.Name(), true)),
                      "Memfile", 1, unknown);
}

TEST_F(LoadSchema, ValidatesAgainstTheSchemaThatTheDocumentNames) {
    const SLoad how = ValidateWithSchema("");
    EXPECT_EQ(TreeText(LoadMemory("<r" + Hint() + "><n>1</n></r>", how)),
              "r noNamespaceSchemaLocation=" + Quoted(m_Plain.Name()) + " d=\"default\"(n(\"1\"))");
    EXPECT_LOAD_ERROR(LoadMemory("<r" + Hint() + "><n>x</n></r>", how), "Memfile", 1, NO_INTEGER);
    EXPECT_LOAD_ERROR(LoadMemory("<r xmlns='urn:t'" + NamespaceHint() + ">\n\n<n>x</n></r>", how),
                      "Memfile", 3, NO_INTEGER);
}

TEST_F(LoadSchema, LoadsADocumentWithoutASchemaUnvalidated) {
    EXPECT_EQ(TreeText(LoadMemory("<r><n>x</n></r>", ValidateWithSchema(""))), "r(n(\"x\"))");
}

TEST_F(LoadSchema, IgnoresTheCallersSchemaWithoutDoSchema) {
    SLoad how = ValidateWithSchema(m_Plain.Name());
    how.doSchema = false;
    EXPECT_EQ(TreeText(LoadMemory("<r><n>x</n></r>", how)), "r(n(\"x\"))");
    EXPECT_EQ(TreeText(LoadMemory("<r" + Hint() + "><n>x</n></r>", how)),
              "r noNamespaceSchemaLocation=" + Quoted(m_Plain.Name()) + "(n(\"x\"))");
}

TEST_F(LoadSchema, IgnoresAllThreeSchemaParametersWithoutValidate) {
    for (const bool doSchema : {false, true}) {
        for (const bool hasNamespace : {false, true}) {
            for (const std::string location : {"", "one", "a b", "/nonexistent.xsd"}) {
                SLoad how =
                    ValidateWithSchema(location.empty() ? m_Plain.Name() : location, hasNamespace);
                how.validate = false;
                how.doSchema = doSchema;
                EXPECT_EQ(TreeText(LoadMemory("<r><n>x</n></r>", how)), "r(n(\"x\"))");
            }
        }
    }
}

// A schema that the document itself names is read like a DTD: for its default attributes, and it
// must be well-formed. Nothing is validated against it.
TEST_F(LoadSchema, ReadsTheDocumentsOwnSchemaEvenWithoutValidate) {
    EXPECT_EQ(TreeText(LoadMemory("<r" + Hint() + "><n>x</n></r>")),
              "r noNamespaceSchemaLocation=" + Quoted(m_Plain.Name()) + " d=\"default\"(n(\"x\"))");
    TemporaryFile broken(".xsd", "<xs:schema");
    EXPECT_LOAD_ERROR(
        LoadMemory(std::string("<r xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' "
                               "xsi:noNamespaceSchemaLocation='") +
                   broken.Name() + "'/>"),
        broken.Name(), 1, "unexpected end of input");
}

// The parser only warns about such a schema, and warnings leave no trace.
TEST_F(LoadSchema, LoadsUnvalidatedWhenTheSchemaCannotBeOpened) {
    EXPECT_EQ(TreeText(LoadMemory("<r><n>x</n></r>", ValidateWithSchema("/nonexistent/s.xsd"))),
              "r(n(\"x\"))");
    EXPECT_EQ(TreeText(LoadMemory("<r xmlns='urn:t'><n>x</n></r>",
                                  ValidateWithSchema("urn:t /nonexistent/s.xsd", true))),
              "r(n(\"x\"))");
    EXPECT_EQ(TreeText(LoadMemory("<r xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' "
                                  "xsi:noNamespaceSchemaLocation='/nonexistent/s.xsd'/>",
                                  ValidateWithSchema(""))),
              "r noNamespaceSchemaLocation=\"/nonexistent/s.xsd\"()");
}

TEST_F(LoadSchema, TakesAnEmptyLocationForOneThatCannotBeOpened) {
    std::string xml = "<r><n>x</n></r>";
    for (const bool hasNamespace : {false, true}) {
        Document document(Manager().LoadDocument(reinterpret_cast<unsigned char*>(&xml[0]),
                                                 static_cast<unsigned int>(xml.size()), true, true,
                                                 "", hasNamespace, false));
        EXPECT_EQ(TreeText(document), "r(n(\"x\"))");
    }
}

TEST_F(LoadSchema, ReportsABrokenSchemaWithItsName) {
    TemporaryFile broken(".xsd", "<xs:schema\n");
    EXPECT_LOAD_ERROR(LoadMemory("<r/>", ValidateWithSchema(broken.Name())), broken.Name(), 2,
                      "unexpected end of input");
}

TEST_F(LoadSchema, FindsARelativeSchemaBesideTheDocument) {
    const std::string name = m_Plain.Name();
    const std::string base = name.substr(name.rfind('/') + 1);
    TemporaryFile file(".xml", "<r><n>x</n></r>");
    EXPECT_LOAD_ERROR(LoadFile(file.Name(), ValidateWithSchema(base)), file.Name(), 1, NO_INTEGER);
}

TEST_F(LoadSchema, ValidatesADtdAlthoughSchemaProcessingIsOn) {
    const std::string invalid = "<!DOCTYPE r [<!ELEMENT r EMPTY>]><r><a/></r>";
    EXPECT_LOAD_ERROR(LoadMemory(invalid, ValidateWithSchema("")), "Memfile", 1,
                      "no declaration found for element 'a'");
}
