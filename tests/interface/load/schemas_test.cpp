// Schemas that the program names: what they are called, where they are looked for, and what is said
// of those that cannot be used.
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

#include "support/problems.h"
#include "support/recording_handler.h"
#include "support/testing.h"

using namespace norvask_test;

namespace {

// A schema for one element with a number, in this namespace.
std::string SchemaOf(const std::string& element, const std::string& uri = "",
                     const std::string& more = "") {
    return "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema'" +
           (uri.empty() ? "" : " targetNamespace='" + uri + "'") + ">" + more +
           "<xs:element name='" + element + "' type='xs:int'/></xs:schema>";
}

// A folder of the test's own, which is the working directory.
class LoadSchemas : public ::testing::Test {
protected:
    void SetUp() override {
        m_Before = std::filesystem::current_path();
        m_Folder = ::testing::TempDir() + "norvask_XXXXXX";
        ASSERT_NE(mkdtemp(&m_Folder[0]), nullptr);
        std::filesystem::current_path(m_Folder);
        m_Folder = std::filesystem::current_path();
    }
    void TearDown() override {
        std::filesystem::current_path(m_Before);
        std::filesystem::remove_all(m_Folder);
    }
    static void Write(const std::string& name, const std::string& content) {
        std::ofstream(name, std::ios::binary) << content;
    }
    std::string Inside(const std::string& name) const { return m_Folder + "/" + name; }

    // The schema is used: a number passes, and something else does not.
    static void ExpectUsed(const SXMLLoadOptions& options, const std::string& uri = "") {
        const std::string space = uri.empty() ? "" : " xmlns='" + uri + "'";
        EXPECT_EQ(ProblemsOf([&] { XMLLoadText("<a" + space + ">1</a>", options); }), "fine\n");
        const SFailure failure = FailureOf([&] { XMLLoadText("<a" + space + ">x</a>", options); });
        ASSERT_EQ(failure.problems.size(), 1U) << failure.Lines();
        EXPECT_EQ(failure.problems[0].text, NO_INTEGER);
        EXPECT_EQ(failure.problems[0].path, "/a");
    }

    // Nothing of the document is read or told.
    static void ExpectUnreadable(const SXMLLoadOptions& options, const std::string& file,
                                 int error) {
        const std::string lines =
            "fatal " + file + ":0:0: the schema cannot be read: " + std::strerror(error) + "\n";
        for (const SXMLLoadOptions& with :
             {options, options.Untrusted(), options.CollectProblems(), options.RequireGrammar()}) {
            CRecordingHandler handler;
            EXPECT_PROBLEMS(XMLLoadText("not even a document", with), 2, lines);
            EXPECT_PROBLEMS(XMLLoadText("<a>1</a>", handler, with), 2, lines);
            EXPECT_EQ(handler.Take(), "");
            EXPECT_EQ(FailureOf([&] { XMLLoadText("<a/>", with); }).text,
                      LoadError(file.substr(0, 255), 0,
                                std::string("the schema cannot be read: ") + std::strerror(error)));
        }
    }

    std::string m_Folder;
    std::filesystem::path m_Before;
};

const char* const ODD_NAMES[] = {"a.xsd",
                                 "a b.xsd",
                                 " a",
                                 "a ",
                                 "100%.xsd",
                                 "%41.xsd",
                                 "a%20b.xsd",
                                 "a#b.xsd",
                                 "a?b=c.xsd",
                                 "a;b&c",
                                 "a+b=c,d@e!$'()*",
                                 "[x]{y}|^`~",
                                 "\"<>\\",
                                 "a\tb",
                                 "a\nb",
                                 "a..b",
                                 "\xC3\xA4\xE2\x82\xAC.xsd",
                                 "\xF0\x9F\x98\x80 \xC3\xA4.xsd",
                                 "x:y.xsd"};

}  // namespace

TEST_F(LoadSchemas, NamesMayHoldAnyCharacters) {
    ASSERT_EQ(mkdir("f #%20 \xC3\xB6?", 0700), 0);
    for (const std::string folder : {"", "f #%20 \xC3\xB6?/"}) {
        for (const std::string base : ODD_NAMES) {
            const std::string name = folder + base;
            SCOPED_TRACE(name);
            // What could be a scheme is one; a folder in front makes it a path.
            const std::string relative =
                base.find(':') == 1 || !folder.empty() ? name : "./" + name;
            Write(name, SchemaOf("a"));
            ExpectUsed(SXMLLoadOptions().ValidateBySchema(relative));
            ExpectUsed(SXMLLoadOptions().ValidateBySchema(Inside(name)));
            ExpectUsed(SXMLLoadOptions().Schema("", relative));
            Write(name, SchemaOf("a", "urn:a"));
            ExpectUsed(SXMLLoadOptions().Schema("urn:a", relative), "urn:a");
            ExpectUsed(SXMLLoadOptions().Schema("urn:a", Inside(name)), "urn:a");
            ExpectUsed(SXMLLoadOptions().Schema("urn:a", relative).Untrusted(), "urn:a");
            if (base.find_first_of(" \t\n") == std::string::npos && folder.empty()) {
                ExpectUsed(SXMLLoadOptions().ValidateBySchema("urn:a " + relative, true), "urn:a");
                ExpectUsed(SXMLLoadOptions().ValidateBySchema(" urn:a\t\n" + Inside(name), true),
                           "urn:a");
            }
            unlink(name.c_str());
            ExpectUnreadable(SXMLLoadOptions().Schema("urn:a", Inside(name)), Inside(name), ENOENT);
        }
    }
}

TEST_F(LoadSchemas, UrlsAreTakenAsTheyAre) {
    Write("a b.xsd", SchemaOf("a"));
    ExpectUsed(SXMLLoadOptions().ValidateBySchema("file://" + m_Folder + "/a%20b.xsd"));
    ExpectUsed(SXMLLoadOptions().Schema("", "file://" + m_Folder + "/a%20b.xsd"));
    const SFailure missing = FailureOf([&] {
        XMLLoadText("<a>1</a>",
                    SXMLLoadOptions().ValidateBySchema("file://" + m_Folder + "/no.xsd"));
    });
    EXPECT_EQ(missing.id, 2);
    EXPECT_NE(missing.text.find("/no.xsd"), std::string::npos) << missing.text;
}

// Relative to the working directory, wherever the document is.
TEST_F(LoadSchemas, ARelativeNameIsThatOfTheWorkingDirectory) {
    ASSERT_EQ(mkdir("here", 0700), 0);
    ASSERT_EQ(mkdir("there", 0700), 0);
    Write("here/a.xsd", SchemaOf("a"));
    Write("there/a.xsd", "no schema at all");
    Write("there/good.xml", "<a>1</a>");
    Write("there/bad.xml", "<a>x</a>");
    ASSERT_EQ(chdir("here"), 0);
    const SXMLLoadOptions options = SXMLLoadOptions().ValidateBySchema("a.xsd");
    for (const std::string& folder :
         {std::string("../there/"), Inside("there/"), "file://" + Inside("there/")}) {
        SCOPED_TRACE(folder);
        EXPECT_NO_THROW(XMLLoadFile(folder + "good.xml", options));
        EXPECT_EQ(FailureOf([&] { XMLLoadFile(folder + "bad.xml", options); }).problems.at(0).text,
                  NO_INTEGER);
    }
    ExpectUsed(SXMLLoadOptions().ValidateBySchema("./a.xsd"));
    ExpectUsed(SXMLLoadOptions().ValidateBySchema("../here/a.xsd"));
    ASSERT_EQ(chdir("../there"), 0);
    ExpectUsed(SXMLLoadOptions().ValidateBySchema("../here/a.xsd"));
    ExpectUnreadable(SXMLLoadOptions().ValidateBySchema("b.xsd"), Inside("there/b.xsd"), ENOENT);
    // The name of the document is not that of a folder either.
    ExpectUsed(SXMLLoadOptions().ValidateBySchema("../here/a.xsd").Name("/no/such/folder/x.xml"));
}

// What it includes is relative to itself.
TEST_F(LoadSchemas, IncludesAreRelativeToTheSchema) {
    ASSERT_EQ(mkdir("s %", 0700), 0);
    Write("s %/main.xsd",
          "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema'>"
          "<xs:include schemaLocation='part.xsd'/></xs:schema>");
    Write("s %/part.xsd", SchemaOf("a"));
    ExpectUsed(SXMLLoadOptions().ValidateBySchema("s %/main.xsd"));
    ExpectUsed(SXMLLoadOptions().ValidateBySchema("s %/main.xsd").Untrusted());
}

TEST_F(LoadSchemas, OneThatCannotBeReadIsAnErrorThatNamesIt) {
    Write("a.xsd", SchemaOf("a"));
    ASSERT_EQ(mkdir("folder", 0700), 0);
    ASSERT_EQ(symlink("loop", "loop"), 0);
    const struct {
        std::string name;
        int error;
    } rows[] = {{"mistyped.xsd", ENOENT},
                {"no folder/a b.xsd", ENOENT},
                {"folder", EISDIR},
                {"a.xsd/a.xsd", ENOTDIR},
                {"loop", ELOOP},
                {"100%.xsd", ENOENT},
                {std::string(300, 'x'), ENAMETOOLONG}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        ExpectUnreadable(SXMLLoadOptions().ValidateBySchema(row.name), Inside(row.name), row.error);
        ExpectUnreadable(SXMLLoadOptions().ValidateBySchema(Inside(row.name)), Inside(row.name),
                         row.error);
        ExpectUnreadable(SXMLLoadOptions().Schema("", row.name), Inside(row.name), row.error);
        ExpectUnreadable(SXMLLoadOptions().Schema("urn:unused", row.name), Inside(row.name),
                         row.error);
        ExpectUnreadable(SXMLLoadOptions().Schema("", "a.xsd").Schema("urn:b", row.name),
                         Inside(row.name), row.error);
    }
    ExpectUnreadable(SXMLLoadOptions().ValidateBySchema("urn:a a.xsd urn:b no.xsd", true),
                     Inside("no.xsd"), ENOENT);
    // The plain load takes it for valid.
    EXPECT_NO_THROW(LoadMemory("<a>x</a>", ValidateWithSchema(Inside("mistyped.xsd"))));
}

// By the name by which the program knows it, as in the plain loads.
TEST_F(LoadSchemas, OneThatIsNoSchemaIsAnErrorInIt) {
    const struct {
        const char* content;
        const char* problem;
    } rows[] = {{"", "fatal FILE:1:1: invalid document structure\n"},
                {"text", "fatal FILE:1:1: invalid document structure\n"},
                {"<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema'>\n<b></xs:schema>",
                 "fatal FILE:2:6: expected end of tag 'b'\n"},
                {"\n<other/>",
                 "error FILE:2:9: root element name of XML Schema document must be 'schema'\n"}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.content);
        Write("a b.xsd", row.content);
        const std::string name = Inside("a b.xsd");
        const std::string lines = std::string(row.problem).replace(6, 4, name);
        EXPECT_PROBLEMS(XMLLoadText("<a>1</a>", SXMLLoadOptions().ValidateBySchema("a b.xsd")), 2,
                        lines);
        EXPECT_PROBLEMS(XMLLoadText("<a>1</a>", SXMLLoadOptions().Schema("", name)), 2, lines);
        if (lines[0] == 'f') {
            EXPECT_PROBLEMS(XMLLoadText("<a>1</a>", SXMLLoadOptions().Schema("urn:a", "a b.xsd")),
                            2, lines);
        }
        EXPECT_EQ(FailureOf([&] { LoadMemory("<a>1</a>", ValidateWithSchema(name)); }).Told(),
                  FailureOf([&] {
                      XMLLoadText("<a>1</a>", SXMLLoadOptions().ValidateBySchema(name));
                  }).Told());
    }
}

TEST_F(LoadSchemas, MistakesInASchemaAreErrorsInIt) {
    ASSERT_EQ(mkdir("f", 0700), 0);
    ASSERT_EQ(mkdir("f/part #1", 0700), 0);
    Write("f/a.xsd", SchemaOf("a", "",
                              "\n<xs:include schemaLocation='part%20%231/b.xsd'/>"
                              "\n<xs:element name='c' type='nothing'/>\n"));
    Write("f/part #1/b.xsd", SchemaOf("b", "", "\n\n<xs:element name='d' typo='x'/>"));
    const SFailure failure = FailureOf([&] {
        XMLLoadText("<a>x</a>", SXMLLoadOptions().Schema("", "f/a.xsd").CollectProblems());
    });
    ASSERT_EQ(failure.problems.size(), 3U) << failure.Lines();
    EXPECT_EQ(failure.problems[0].file, Inside("f/part #1/b.xsd"));
    EXPECT_EQ(failure.problems[0].line, 3U);
    EXPECT_EQ(failure.problems[1].file, Inside("f/a.xsd"));
    EXPECT_EQ(failure.problems[1].line, 3U);
    EXPECT_EQ(ProblemLine(failure.problems[2]),
              std::string("error Memfile:1:9: ") + NO_INTEGER + " @ /a");
}

// However it is written.
TEST_F(LoadSchemas, AUrlOfAFileIsNamedByItsPath) {
    for (const char* const scheme : {"file://", "FILE://", "File://"}) {
        const SXMLLoadOptions options =
            SXMLLoadOptions().ValidateBySchema(scheme + m_Folder + "/a%20b.xsd");
        ExpectUnreadable(options, Inside("a b.xsd"), ENOENT);
        Write("a b.xsd", "text");
        EXPECT_PROBLEMS(XMLLoadText("<a>1</a>", options), 2,
                        "fatal " + Inside("a b.xsd") + ":1:1: invalid document structure\n");
        Write("a b.xsd", SchemaOf("a"));
        ExpectUsed(options);
        unlink("a b.xsd");
    }
}

TEST_F(LoadSchemas, SeveralNamespaces) {
    Write("a.xsd", SchemaOf("a", "urn:a"));
    Write("b c.xsd", SchemaOf("a", "urn:b"));
    Write("none.xsd", SchemaOf("a"));
    const SXMLLoadOptions options = SXMLLoadOptions()
                                        .Schema("urn:a", "a.xsd")
                                        .Schema("urn:b", Inside("b c.xsd"))
                                        .Schema("", "none.xsd");
    for (const SXMLLoadOptions& with : {options, options.Untrusted(), options.RequireGrammar()}) {
        ExpectUsed(with, "urn:a");
        ExpectUsed(with, "urn:b");
        ExpectUsed(with);
    }
    ExpectUsed(SXMLLoadOptions()
                   .ValidateBySchema("urn:a a.xsd", true)
                   .Schema("urn:b", "b c.xsd")
                   .Schema("", "none.xsd"),
               "urn:b");
    ExpectUsed(SXMLLoadOptions().ValidateBySchema("none.xsd").Schema("urn:b", "b c.xsd"), "urn:b");
    // One of another namespace than said.
    EXPECT_EQ(
        FailureOf([&] { XMLLoadText("<a>1</a>", SXMLLoadOptions().Schema("urn:b", "a.xsd")); }).id,
        2);
}

TEST_F(LoadSchemas, OneForElementsInNoNamespaceIsAllThereMayBe) {
    Write("a.xsd", SchemaOf("a"));
    CRecordingHandler handler;
    for (const SXMLLoadOptions& options :
         {SXMLLoadOptions().Schema("", "a.xsd").Schema("", "a.xsd"),
          SXMLLoadOptions().ValidateBySchema("a.xsd").Schema("", "a.xsd")}) {
        EXPECT_INVALID_PARAMETER(XMLLoadText("<a>1</a>", options));
        EXPECT_INVALID_PARAMETER(XMLLoadText("<a>1</a>", handler, options));
    }
    SXMLLoadSettings settings;
    settings.validate = settings.doSchema = true;
    const SXMLSchemaName noLocation;
    settings.schemas = &noLocation;
    settings.schemaCount = 1;
    SXMLSource source;
    source.bytes = "<a/>";
    source.length = 4;
    EXPECT_INVALID_PARAMETER(XMLLoad(source, settings));
    settings.validate = false;  // then nobody looks at them
    XMLLoad(source, settings)->Delete();
}

TEST_F(LoadSchemas, ANamespaceWithoutALocationIsRefused) {
    Write("a.xsd", SchemaOf("a", "urn:a"));
    for (const char* const list : {"urn:a a.xsd urn:b", "urn:a", " urn:a "}) {
        EXPECT_INVALID_PARAMETER(
            XMLLoadText("<a/>", SXMLLoadOptions().ValidateBySchema(list, true)));
    }
}
