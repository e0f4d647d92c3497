// Real documents from Debian packages, loaded as a stranger's: those without a document type
// declaration stay within the default limits, and give the same tree and the same callbacks as a
// plain load. Those with one are refused for it, and without it they are held to the same; of all
// of them one has a CDATA section for which a limit has to be raised.
#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <iostream>
#include <system_error>

#include "support/recording_handler.h"
#include "support/sanitizers.h"
#include "support/testing.h"
#include "support/untrusted_loading.h"

using namespace norvask_test;
namespace fs = std::filesystem;

namespace {

struct SCorpus {
    const char* name;
    const char* package;
    const char* directory;
    std::size_t plainAtLeast;     // documents without a declaration
    std::size_t declaredAtLeast;  // and with one
    std::size_t longAtMost;       // of the latter, with a piece that is too long
};

void PrintTo(const SCorpus& corpus, std::ostream* out) { *out << corpus.name; }

const SCorpus CORPORA[] = {
    {"Cldr", "unicode-cldr-core", "/usr/share/unicode/cldr", 0, 2000, 1},
    {"KhronosApi", "khronos-api", "/usr/share/khronos-api", 3, 0, 0},
    {"Gir", "libgirepository1.0-dev", "/usr/share/gir-1.0", 10, 0, 0},
    {"SharedMimeInfo", "shared-mime-info", "/usr/share/mime/packages", 0, 1, 0},
};

std::vector<fs::path> Documents(const SCorpus& corpus) {
    std::vector<fs::path> paths;
    std::error_code missing;
    for (fs::recursive_directory_iterator place(corpus.directory, missing), end; place != end;
         ++place) {
        const fs::path extension = place->path().extension();
        if (place->is_regular_file() && (extension == ".xml" || extension == ".gir"))
            paths.push_back(place->path());
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}

// A document whose declaration is cut out.
std::string WithoutDeclaration(const std::string& bytes) {
    const std::size_t begin = bytes.find("<!DOCTYPE");
    if (begin == std::string::npos) return bytes;
    std::size_t end = bytes.find_first_of("[>", begin);
    if (end != std::string::npos && bytes[end] == '[') {
        end = bytes.find("]>", end);
        end = end == std::string::npos ? end : end + 1;
    }
    return end == std::string::npos ? bytes : bytes.substr(0, begin) + bytes.substr(end + 1);
}

class UntrustedCorpus : public ::testing::TestWithParam<SCorpus> {};

// Trees, with prefixes and without, and callbacks, from the text; the tree also from a function.
void ExpectSame(const std::string& text, const SXMLUntrusted& limits = SXMLUntrusted()) {
    const SXMLLoadOptions plain;
    const SXMLLoadOptions untrusted = plain.Untrusted(limits);
    const std::string tree = Saved(*XMLLoadText(text, plain));
    EXPECT_TRUE(Saved(*XMLLoadText(text, untrusted)) == tree);
    EXPECT_TRUE(Saved(*XMLLoadText(text, untrusted.KeepPrefixes())) ==
                Saved(*XMLLoadText(text, plain.KeepPrefixes())));
    std::istringstream stream(text);
    EXPECT_TRUE(Saved(*XMLLoadStream(stream, untrusted)) == tree);
    CRecordingHandler handler;
    XMLLoadText(text, handler, plain);
    const std::string events = handler.Take();
    XMLLoadText(text, handler, untrusted);
    EXPECT_TRUE(handler.Take() == events);
    // By the parser alone: of what cannot be read twice callbacks are told at once.
    std::istringstream again(text);
    XMLLoadStream(again, handler, untrusted);
    EXPECT_TRUE(handler.Take() == events);
}

}  // namespace

TEST_P(UntrustedCorpus, LoadsAsAPlainLoadDoes) {
    const SCorpus& corpus = GetParam();
    const std::vector<fs::path> documents = Documents(corpus);
    const std::size_t step = IS_SANITIZED ? (documents.size() > 1000 ? 40 : 3) : 1;
    std::size_t plain = 0;
    std::size_t declared = 0;
    std::size_t large = 0;
    std::size_t withLong = 0;
    for (std::size_t i = 0; i < documents.size(); i += step) {
        SCOPED_TRACE(documents[i].string());
        const std::string text = ReadFile(documents[i].string());
        if (text.size() > std::size_t{16} << 20) {
            ++large;
            continue;
        }
        const bool isDeclared = text.find("<!DOCTYPE") != std::string::npos;
        ++(isDeclared ? declared : plain);
        if (isDeclared) {
            try {
                XMLLoadFile(documents[i], SXMLLoadOptions().Untrusted());
                ADD_FAILURE() << "it loads";
            } catch (const CXMLError& e) {
                EXPECT_EQ(e.GetID(), 9);
                EXPECT_EQ(e.Problems().front().text, NO_DTD);
                EXPECT_EQ(e.Problems().front().file, documents[i].string());
            }
        }
        try {
            ExpectSame(WithoutDeclaration(text));
        } catch (const CXMLError& e) {
            EXPECT_TRUE(isDeclared) << e.what();
            EXPECT_EQ(e.Problems().front().text, TOO_LONG);
            ++withLong;
            SXMLUntrusted limits;
            limits.maxMarkup *= 8;
            EXPECT_NO_THROW(ExpectSame(WithoutDeclaration(text), limits));
        }
    }
    EXPECT_LE(withLong, corpus.longAtMost);
    std::cout << corpus.name << ": " << plain << " without a declaration, " << declared
              << " with one, " << large << " larger than 16 MB"
              << (step > 1 ? " (not all: this is a sanitizer build)" : "") << '\n';
    EXPECT_GE(plain * step, corpus.plainAtLeast)
        << "install the package " << corpus.package << " for " << corpus.directory;
    EXPECT_GE(declared * step, corpus.declaredAtLeast)
        << "install the package " << corpus.package << " for " << corpus.directory;
}

INSTANTIATE_TEST_SUITE_P(All, UntrustedCorpus, ::testing::ValuesIn(CORPORA),
                         [](const ::testing::TestParamInfo<SCorpus>& corpus) {
                             return std::string(corpus.param.name);
                         });
