// CSchemaNames: paths as URLs and back, and lists.
#include "load/parser/schema_names.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "norvask/exception.h"
#include "support/random_text.h"

namespace norvask {
namespace {

using norvask_test::RandomText;

SXMLLoadSettings Validating() {
    SXMLLoadSettings settings;
    settings.validate = settings.doSchema = true;
    return settings;
}

CSchemaNames Names(const std::vector<SXMLSchemaName>& schemas) {
    SXMLLoadSettings settings = Validating();
    settings.schemas = schemas.data();
    settings.schemaCount = schemas.size();
    return CSchemaNames(settings);
}

// By a table that was written for this: what stays as it is.
std::string SlowUrl(const std::string& path) {
    const std::string plain =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789/-._~!$&'()*+,;=:@";
    std::string url = "file://";
    for (const char c : path) {
        const auto byte = static_cast<unsigned char>(c);
        char encoded[4];
        std::snprintf(encoded, sizeof encoded, "%%%02X", static_cast<unsigned>(byte));
        url += byte >= 0x80 || plain.find(c) != std::string::npos ? std::string(1, c) : encoded;
    }
    return url;
}

TEST(SchemaNames, GeneratedPathsAreUrlsAndBack) {
    for (unsigned int seed = 0; seed < 2000; ++seed) {
        RandomText random(seed);
        // Not with two slashes in front, of which an absolute path has one.
        std::string path = "/f" + random.Bytes(1 + random.Number(30));
        path += " %41%";
        SCOPED_TRACE(path);
        const CSchemaNames none = Names({{nullptr, path.c_str()}});
        EXPECT_EQ(none.WithoutNamespace(), SlowUrl(path));
        EXPECT_EQ(none.Pairs(), "");
        EXPECT_EQ(none.NameOf(none.WithoutNamespace()), path);
        const CSchemaNames pair = Names({{"urn:a", path.c_str()}});
        EXPECT_EQ(pair.Pairs(), "urn:a " + SlowUrl(path));
        EXPECT_EQ(pair.WithoutNamespace(), "");
        // A list has no more words than that.
        EXPECT_EQ(pair.Pairs().find_first_of(" \t\r\n", 6), std::string::npos);
    }
}

TEST(SchemaNames, RelativeOnesBeginInTheWorkingDirectory) {
    const std::string here = std::filesystem::current_path().string();
    EXPECT_EQ(Names({{"", "a b"}}).WithoutNamespace(), SlowUrl(here + "/a b"));
    EXPECT_EQ(Names({{"", "C:x"}}).WithoutNamespace(), SlowUrl(here + "/C:x"));
    EXPECT_EQ(Names({{"", ":x"}}).WithoutNamespace(), SlowUrl(here + "/:x"));
    EXPECT_EQ(Names({{"", "a b:x"}}).WithoutNamespace(), SlowUrl(here + "/a b:x"));
    EXPECT_EQ(Names({{"", "1ab:x"}}).WithoutNamespace(), SlowUrl(here + "/1ab:x"));
    for (const char* const url : {"http://x/y%20z", "file://host/a", "x-y.z+1:a", "ab:"})
        EXPECT_EQ(Names({{"", url}}).WithoutNamespace(), url);
    EXPECT_EQ(Names({{"", "http://x/y z"}}).WithoutNamespace(), "http://x/y%20z");
}

TEST(SchemaNames, UrlsOfFilesArePaths) {
    for (const char* const url : {"file:/a%20b", "FILE:///a%20b", "file://LocalHost/a%20b"}) {
        const CSchemaNames names = Names({{"", url}});
        EXPECT_EQ(names.WithoutNamespace(), "file:///a%20b") << url;
        EXPECT_EQ(names.NameOf("file:///a%20b"), "/a b") << url;
    }
}

TEST(SchemaNames, WhatWouldBreakAListIsRefused) {
    EXPECT_THROW(Names({{"urn:a b", "/x"}}), CXMLException);
    EXPECT_THROW(Names({{" ", "/x"}}), CXMLException);
    EXPECT_THROW(Names({{"urn:a", ""}}), CXMLException);
}

TEST(SchemaNames, ListsAreSplitAndJoined) {
    SXMLLoadSettings settings = Validating();
    settings.schemaHasNamespace = true;
    settings.schemaLocation = "  urn:a\t/a.xsd\nurn:b http://b ";
    const SXMLSchemaName more[] = {{"urn:c", "/c d"}, {nullptr, "/none"}};
    settings.schemas = more;
    settings.schemaCount = 2;
    const CSchemaNames names(settings);
    EXPECT_EQ(names.Pairs(), "urn:a file:///a.xsd urn:b http://b urn:c file:///c%20d");
    EXPECT_EQ(names.WithoutNamespace(), "file:///none");
    EXPECT_FALSE(names.IsEmpty());
    EXPECT_EQ(names.Quoted("unable to open 'file:///c%20d'"), "/c d");
    EXPECT_EQ(names.Quoted("'http://b'"), "http://b");
    EXPECT_EQ(names.Quoted("unable to open 'file:///c%20d2'"), "");
    EXPECT_EQ(names.Quoted("file:///none"), "");
}

TEST(SchemaNames, WithoutValidationThereAreNone) {
    SXMLLoadSettings settings;
    settings.schemaLocation = "/a";
    const SXMLSchemaName bad = {nullptr, nullptr};
    settings.schemas = &bad;
    settings.schemaCount = 1;
    const CSchemaNames names(settings);
    EXPECT_TRUE(names.IsEmpty());
    SXMLProblem problem;
    EXPECT_TRUE(names.AreReadable(problem));
}

TEST(SchemaNames, TwoForNoNamespaceAreRefused) {
    const std::vector<SXMLSchemaName> two = {{nullptr, "/a"}, {"", "/b"}};
    EXPECT_THROW(Names(two), CXMLException);
    EXPECT_THROW(Names({{"urn:a", nullptr}}), CXMLException);
}

// Those in the same folder and below are named as the program would; no others.
TEST(SchemaNames, FilesAreNamedAsTheProgramWould) {
    const CSchemaNames names = Names({{nullptr, "/f g/a#.xsd"}, {"urn:u", "http://x/y%20z"}});
    EXPECT_EQ(names.NameOf("file:///f%20g/a%23.xsd"), "/f g/a#.xsd");
    EXPECT_EQ(names.NameOf("file:///f%20g/b/c%25.xsd"), "/f g/b/c%.xsd");
    EXPECT_EQ(names.NameOf("file:///f%20g/%zz%"), "/f g/%zz%");
    for (const char* const other : {"file:///f%20h/a", "/f g/a", "http://x/y%20z", "Memfile", ""})
        EXPECT_EQ(names.NameOf(other), other);
}

}  // namespace
}  // namespace norvask
