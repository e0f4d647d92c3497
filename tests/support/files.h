// What tests of output files share: looking at the file system, a directory, no more file handles.
#ifndef NORVASK_TESTS_SUPPORT_FILES_H
#define NORVASK_TESTS_SUPPORT_FILES_H

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

namespace norvask_test {

inline bool Exists(const std::string& name) {
    struct stat status;
    return lstat(name.c_str(), &status) == 0;
}

// S_IFREG and the like; a link is not followed.
inline bool IsKind(const std::string& name, mode_t kind) {
    struct stat status;
    return lstat(name.c_str(), &status) == 0 && (status.st_mode & S_IFMT) == kind;
}

// A directory that ends with the two names that the tests use in it.
class CTemporaryDirectory {
public:
    CTemporaryDirectory() : m_Name(::testing::TempDir() + "norvask_XXXXXX") {
        if (!mkdtemp(&m_Name[0])) ADD_FAILURE() << "no directory could be made";
    }
    CTemporaryDirectory(const CTemporaryDirectory&) = delete;
    CTemporaryDirectory& operator=(const CTemporaryDirectory&) = delete;
    ~CTemporaryDirectory() {
        unlink(Inside("first").c_str());
        unlink(Inside("second").c_str());
        rmdir(m_Name.c_str());
    }
    const std::string& Name() const { return m_Name; }
    std::string Inside(const char* name) const { return m_Name + "/" + name; }

private:
    std::string m_Name;
};

// No file can be opened while it lives, whoever asks.
class CNoHandles {
public:
    CNoHandles() {
        getrlimit(RLIMIT_NOFILE, &m_Before);
        rlimit none = m_Before;
        none.rlim_cur = 0;
        EXPECT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
    }
    CNoHandles(const CNoHandles&) = delete;
    CNoHandles& operator=(const CNoHandles&) = delete;
    ~CNoHandles() { setrlimit(RLIMIT_NOFILE, &m_Before); }

private:
    rlimit m_Before = {};
};

}  // namespace norvask_test

#endif
