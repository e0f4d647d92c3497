// What tests of output files share: looking at the file system, a directory, no more file handles.
#ifndef NORVASK_TESTS_SUPPORT_FILES_H
#define NORVASK_TESTS_SUPPORT_FILES_H

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
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

// A file that nobody can open while this lives, the administrator included: a directory has its
// place.
class CUnopenable {
public:
    explicit CUnopenable(const std::string& name) : m_Name(name), m_Aside(name + ".aside") {
        EXPECT_EQ(rename(m_Name.c_str(), m_Aside.c_str()), 0);
        EXPECT_EQ(mkdir(m_Name.c_str(), 0700), 0);
    }
    CUnopenable(const CUnopenable&) = delete;
    CUnopenable& operator=(const CUnopenable&) = delete;
    ~CUnopenable() {
        rmdir(m_Name.c_str());
        rename(m_Aside.c_str(), m_Name.c_str());
    }

private:
    const std::string m_Name;
    const std::string m_Aside;
};

// No file can be opened while it lives, whoever asks; not even by the sanitizers, so little may
// happen meanwhile.
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
