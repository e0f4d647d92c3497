// The words that the tests share: a document that is deleted at the end of its scope, saving to a
// string, temporary files; and the expectations of exceptions.
#ifndef NORVASK_TESTS_SUPPORT_VOCABULARY_H
#define NORVASK_TESTS_SUPPORT_VOCABULARY_H

#include <gtest/gtest.h>
#include <norvask/norvask.h>

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <memory>
#include <sstream>
#include <string>

#include "support/errors.h"

namespace norvask_test {

inline CXMLManager& Manager() { return CXMLManager::GetInstance(); }

struct SDeleteDocument {
    void operator()(CXMLDocument* document) const { document->Delete(); }
};
using Document = std::unique_ptr<CXMLDocument, SDeleteDocument>;

inline Document NewDocument(const char* dtdName = nullptr, const char* dtdPath = nullptr) {
    return Document(Manager().CreateDocument(dtdName, dtdPath));
}

// A document with a root of this name.
inline Document NewDocumentWithRoot(const char* name) {
    Document document = NewDocument();
    document->CreateRoot(name);
    return document;
}

// Loads from memory without validation.
inline Document Load(const std::string& xml, bool keepPrefixes = false) {
    std::string bytes = xml;
    return Document(Manager().LoadDocument(reinterpret_cast<unsigned char*>(&bytes[0]),
                                           static_cast<unsigned int>(bytes.size()), false, false,
                                           nullptr, false, keepPrefixes));
}

inline std::string Saved(CXMLDocument& document, bool format = false) {
    std::ostringstream out;
    document.Save(out, format);
    return out.str();
}
inline std::string Saved(const Document& document, bool format = false) {
    return Saved(*document, format);
}

inline std::string ReadFile(const std::string& name) {
    std::ifstream in(name, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

// A name for a file that does not exist yet; the file is removed at the end of the scope.
class TemporaryFile {
public:
    explicit TemporaryFile(const std::string& suffix = ".xml") {
        std::string pattern = ::testing::TempDir() + "norvask_XXXXXX" + suffix;
        const int handle = mkstemps(&pattern[0], static_cast<int>(suffix.size()));
        if (handle < 0) {
            std::perror("mkstemps");
            std::abort();
        }
        close(handle);
        std::remove(pattern.c_str());
        m_Name = pattern;
    }
    TemporaryFile(const std::string& suffix, const std::string& content) : TemporaryFile(suffix) {
        std::ofstream(m_Name, std::ios::binary) << content;
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile() { std::remove(m_Name.c_str()); }

    const char* Name() const { return m_Name.c_str(); }
    // The name without its directory.
    std::string BaseName() const { return m_Name.substr(m_Name.rfind('/') + 1); }
    std::string Content() const { return ReadFile(m_Name); }
    bool Exists() const { return std::ifstream(m_Name).good(); }

private:
    std::string m_Name;
};

}  // namespace norvask_test

#endif
