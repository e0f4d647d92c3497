// What the tests of XMLSaveSafely share: a directory for each of them, and a user without
// privileges.
#ifndef NORVASK_TESTS_INTERFACE_CONVENIENCE_SAVING_SAVING_H
#define NORVASK_TESTS_INTERFACE_CONVENIENCE_SAVING_SAVING_H

#include <gtest/gtest.h>
#include <norvask/norvask.h>

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "support/files.h"
#include "support/vocabulary.h"

namespace norvask_test {

inline const std::string OLD = "what was there before";
inline const std::string NEW = "<?xml version=\"1.0\"?><list><book>new</book></list>";

inline void Write(const std::string& name, const std::string& content) {
    std::ofstream(name, std::ios::binary) << content;
}

inline mode_t Permissions(const std::string& name) {
    struct stat status = {};
    EXPECT_EQ(stat(name.c_str(), &status), 0);
    return status.st_mode & 07777U;
}

// A directory of its own for each test, and a document that is to be saved in it.
class CSavingTest : public ::testing::Test {
protected:
    CSavingTest() : m_Folder(::testing::TempDir() + "norvask_save_XXXXXX") {
        if (mkdtemp(&m_Folder[0]) == nullptr) std::abort();
        m_Document = XMLNewDocument("list");
        m_Document->GetRoot()->CreateChild("book", nullptr)->SetTextChildValue("new");
    }
    ~CSavingTest() override {
        chmod(m_Folder.c_str(), 0700);
        std::filesystem::remove_all(m_Folder);
    }

    std::string Inside(const std::string& name) const { return m_Folder + "/" + name; }

    // The names in the directory, in order: nothing else may be left in it.
    std::string Listed() const {
        std::vector<std::string> names;
        for (const std::filesystem::directory_entry& entry :
             std::filesystem::directory_iterator(m_Folder))
            names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        std::string line;
        for (const std::string& name : names)
            line += (line.empty() ? "" : " ") + name;
        return line;
    }

    void MakeLarge(int rows = 20000) {
        for (int i = 0; i < rows; ++i)
            m_Document->GetRoot()->CreateChild("row", nullptr)->SetTextChildValue("some text");
    }

    void ExpectRefused(const std::string& name) {
        EXPECT_XML_ERROR(XMLSaveSafely(*m_Document, name, false), 1, SavingError(name));
    }

    std::string m_Folder;
    CXMLDocumentPtr m_Document;
};

// Everybody but the administrator is bound by permissions; while it lives, so is this process.
class CNobody {
public:
    static constexpr uid_t ID = 65534;

    CNobody() {
        if (geteuid() != 0) return;
        EXPECT_EQ(seteuid(ID), 0);
        m_bChanged = true;
    }
    CNobody(const CNobody&) = delete;
    CNobody& operator=(const CNobody&) = delete;
    ~CNobody() {
        if (m_bChanged) {
            EXPECT_EQ(seteuid(0), 0);
        }
    }

private:
    bool m_bChanged = false;
};

}  // namespace norvask_test

#endif
