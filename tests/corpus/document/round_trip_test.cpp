// Real documents from Debian packages: what is saved and loaded again saves to the same bytes.
//
// Each document is loaded from where it is installed and saved, once with and once without
// prefixes. The saved document is written into a directory that mirrors the corpus, at the same
// relative place, with the corpus's DTDs linked to where the documents expect them. So the second
// load is one of a file that refers to its DTD as the original does: the reference itself takes the
// round trip, and entities and default attributes are at work in both loads.
//
// The one exception: with keepPrefixes a default namespace is kept as an attribute "xmlns:", which
// no parser reads back. Documents with such an attribute must fail in the second load, with that
// reason and no other; and once XMLNameDefaultNamespaces has renamed it they must take the round
// trip as well, with an edit.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <system_error>

#include "support/testing.h"

using namespace norvask_test;
namespace fs = std::filesystem;

namespace {

struct SCorpus {
    const char* name;
    const char* package;
    const char* directory;
    const char* extension;
    const char* linked;        // a directory of DTDs below `directory`, or NULL
    std::size_t atLeast;       // documents
    bool hasDefaultNamespace;  // whether some document has one
};

void PrintTo(const SCorpus& corpus, std::ostream* out) { *out << corpus.name; }

const SCorpus CORPORA[] = {
    {"Cldr", "unicode-cldr-core", "/usr/share/unicode/cldr", ".xml", "common/dtd", 2000, false},
    {"KhronosApi", "khronos-api", "/usr/share/khronos-api", ".xml", nullptr, 3, false},
    {"Gir", "libgirepository1.0-dev", "/usr/share/gir-1.0", ".gir", nullptr, 10, true},
    {"SharedMimeInfo", "shared-mime-info", "/usr/share/mime/packages", ".xml", nullptr, 1, true},
};

std::vector<fs::path> Documents(const SCorpus& corpus) {
    std::vector<fs::path> paths;
    std::error_code missing;
    for (fs::recursive_directory_iterator place(corpus.directory, missing), end; place != end;
         ++place) {
        if (place->is_regular_file() && place->path().extension() == corpus.extension)
            paths.push_back(place->path());
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}

// 1, or how many documents of a large corpus stand for one. Where every allocation is watched the
// parser is too slow for all of them.
std::size_t Step(std::size_t documents) {
    if (const char* given = std::getenv("NORVASK_CORPUS_STEP")) {
        const int step = std::atoi(given);
        return step < 1 ? 1 : static_cast<std::size_t>(step);
    }
#if defined(__SANITIZE_ADDRESS__)
    return documents > 1000 ? 16 : 1;
#else
    (void)documents;
    return 1;
#endif
}

// A directory with the corpus's shape, removed at the end.
class CMirror {
public:
    explicit CMirror(const SCorpus& corpus) : m_From(corpus.directory) {
        std::string pattern = ::testing::TempDir() + "norvask_corpus_XXXXXX";
        if (!mkdtemp(&pattern[0])) {
            std::perror("mkdtemp");
            std::abort();
        }
        m_To = pattern;
        if (corpus.linked) {
            const fs::path link = m_To / corpus.linked;
            fs::create_directories(link.parent_path());
            fs::create_directory_symlink(m_From / corpus.linked, link);
        }
    }
    CMirror(const CMirror&) = delete;
    CMirror& operator=(const CMirror&) = delete;
    ~CMirror() { fs::remove_all(m_To); }

    // Puts these bytes in place of that document of the corpus.
    std::string Put(const fs::path& original, const std::string& bytes) {
        const fs::path path = m_To / original.lexically_relative(m_From);
        fs::create_directories(path.parent_path());
        std::ofstream(path, std::ios::binary) << bytes;
        return path.string();
    }

private:
    fs::path m_From;
    fs::path m_To;
};

bool ShowsDefaultNamespace(const std::string& saved) {
    // In texts and values a quote is written as a reference, so this is an attribute.
    return saved.find(" xmlns:=\"") != std::string::npos;
}

// "" if the load fails for the reason above, else what happens.
std::string WrongWithFailure(const std::string& path, const SLoad& how) {
    try {
        LoadFile(path, how);
    } catch (CXMLException& e) {
        const std::string text = e.GetMessage();
        const std::string reason = "':\n\n'invalid attribute name 'xmlns:''";
        const bool isReason = e.GetID() == 2 && text.size() > reason.size() &&
                              text.compare(text.size() - reason.size(), reason.size(), reason) == 0;
        return isReason ? "" : text;
    }
    return "it loads";
}

// Edits a document with kept default namespaces and saves it to where one of its kind is, so that
// it can be read back. Whether that gives the same document.
bool ReadsBackOnceNamed(Document& document, const std::string& place, const SLoad& how) {
    document->GetRoot()->CreateChild("edited", nullptr)->SetTextChildValue("here");
    EXPECT_GT(XMLNameDefaultNamespaces(*document), 0U);
    XMLSaveSafely(*document, place, false);
    const std::string saved = Saved(document);
    EXPECT_FALSE(ShowsDefaultNamespace(saved));
    Document again = LoadFile(place, how);
    EXPECT_TRUE(ShowsDefaultNamespace(Saved(again))) << "the declarations are gone";
    XMLNameDefaultNamespaces(*again);
    return Saved(again) == saved;
}

class RoundTripCorpus : public ::testing::TestWithParam<SCorpus> {};

}  // namespace

TEST_P(RoundTripCorpus, SavesToTheSameBytesAgain) {
    const SCorpus& corpus = GetParam();
    const std::vector<fs::path> documents = Documents(corpus);
    ASSERT_GE(documents.size(), corpus.atLeast)
        << "install the package " << corpus.package << " for " << corpus.directory;
    const std::size_t step = Step(documents.size());
    CMirror mirror(corpus);
    std::size_t tested = 0;
    std::size_t same = 0;
    std::size_t notReadBack = 0;
    for (std::size_t i = 0; i < documents.size(); i += step) {
        const fs::path& original = documents[i];
        SCOPED_TRACE(original.string());
        ++tested;
        for (const bool keepPrefixes : {false, true}) {
            SLoad how;
            how.keepPrefixes = keepPrefixes;
            try {
                Document first = LoadFile(original.string(), how);
                const std::string saved = Saved(first);
                const std::string place = mirror.Put(original, saved);
                if (keepPrefixes && ShowsDefaultNamespace(saved)) {
                    EXPECT_EQ(WrongWithFailure(place, how), "");
                    ++notReadBack;
                    EXPECT_TRUE(ReadsBackOnceNamed(first, place, how)) << "named";
                    continue;
                }
                EXPECT_EQ(XMLNameDefaultNamespaces(*first), 0U);
                Document second = LoadFile(place, how);
                EXPECT_TRUE(Saved(second) == saved) << "keepPrefixes " << keepPrefixes;
                ++same;
                if (keepPrefixes) continue;
                Document third = LoadFile(mirror.Put(original, Saved(first, true)), how);
                EXPECT_TRUE(Saved(third) == saved) << "through the formatted document";
            } catch (CXMLException& e) {
                ADD_FAILURE() << "keepPrefixes " << keepPrefixes << ": " << e.GetMessage();
            }
        }
    }
    std::cout << corpus.name << ": " << tested << " of " << documents.size() << " documents";
    if (step > 1) std::cout << " (every " << step << "th; NORVASK_CORPUS_STEP=1 takes all)";
    std::cout << ", " << same << " round trips give the same bytes, " << notReadBack
              << " with a kept default namespace can be read back once it is named\n";
    EXPECT_EQ(same + notReadBack, 2 * tested);
    EXPECT_EQ(notReadBack != 0, corpus.hasDefaultNamespace);
}

INSTANTIATE_TEST_SUITE_P(All, RoundTripCorpus, ::testing::ValuesIn(CORPORA),
                         [](const ::testing::TestParamInfo<SCorpus>& corpus) {
                             return std::string(corpus.param.name);
                         });
