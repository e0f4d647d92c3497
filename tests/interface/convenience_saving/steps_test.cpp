// XMLSaveSafely: each call of the system that can fail is made to fail, once.
//
// The functions below stand in for the C library's of the same name in this whole program. They do
// what those do, but for the one call that a test has picked.
#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstring>

#include "interface/convenience_saving/saving.h"
#include "support/testing.h"

using namespace norvask_test;

namespace {

// The call that is to fail: so many of this function are to succeed before.
std::atomic<const char*> g_Failing{nullptr};
std::atomic<int> g_Before{0};
std::atomic<int> g_Error{0};

bool MustFail(const char* function) {
    const char* failing = g_Failing.load();
    if (failing == nullptr || std::strcmp(failing, function) != 0) return false;
    if (g_Before-- > 0) return false;
    g_Failing = nullptr;
    errno = g_Error;
    return true;
}

}  // namespace

extern "C" {

int fsync(int handle) {
    return MustFail("fsync") ? -1 : static_cast<int>(syscall(SYS_fsync, handle));
}

// What is closed is closed, also if that reports an error.
int close(int handle) {
    const bool mustFail = MustFail("close");
    const int error = errno;
    const int result = static_cast<int>(syscall(SYS_close, handle));
    if (!mustFail) return result;
    errno = error;
    return -1;
}

int fchmod(int handle, mode_t mode) noexcept {
    return MustFail("fchmod") ? -1 : static_cast<int>(syscall(SYS_fchmod, handle, mode));
}

int rename(const char* from, const char* to) noexcept {
    return MustFail("rename")
               ? -1
               : static_cast<int>(syscall(SYS_renameat2, AT_FDCWD, from, AT_FDCWD, to, 0));
}

}  // extern "C"

namespace norvask_test {

class ConvenienceSavingSteps : public CSavingTest {
protected:
    ~ConvenienceSavingSteps() override { g_Failing = nullptr; }

    void Fail(const char* function, int error, int before = 0) {
        g_Before = before;
        g_Error = error;
        g_Failing = function;
    }
    // Whether the call that was picked has come.
    bool HasFailed() const { return g_Failing == nullptr; }
};

TEST_F(ConvenienceSavingSteps, AFailureOfEachLeavesTheOldFile) {
    const struct {
        const char* function;
        int error;
        int before;
    } steps[] = {
        {"fchmod", EPERM, 0}, {"fsync", EIO, 0},     {"fsync", EINVAL, 0},  {"close", EIO, 1},
        {"close", ENOSPC, 1}, {"rename", EACCES, 0}, {"rename", ENOSPC, 0},
    };
    const std::string name = Inside("list.xml");
    Write(name, OLD);
    for (const auto& step : steps) {
        SCOPED_TRACE(std::string(step.function) + ": " + std::strerror(step.error));
        Fail(step.function, step.error, step.before);
        ExpectRefused(name);
        EXPECT_TRUE(HasFailed());
        EXPECT_EQ(ReadFile(name), OLD);
        EXPECT_EQ(Listed(), "list.xml");
    }
}

// The first close ends the look at the old file, the second the new file, the third the folder.
TEST_F(ConvenienceSavingSteps, WhatCannotLoseTheDocumentIsNoFailure) {
    const struct {
        const char* function;
        int error;
        int before;
    } steps[] = {
        {"close", EIO, 0},    // nothing was written there
        {"close", EINTR, 1},  // closed all the same
        {"fsync", EIO, 1},    // of the folder
        {"close", EIO, 2},
    };
    const std::string name = Inside("list.xml");
    for (const auto& step : steps) {
        SCOPED_TRACE(std::string(step.function) + " after " + std::to_string(step.before));
        Write(name, OLD);
        Fail(step.function, step.error, step.before);
        EXPECT_NO_THROW(XMLSaveSafely(*m_Document, name, false));
        EXPECT_TRUE(HasFailed());
        EXPECT_EQ(ReadFile(name), NEW);
        EXPECT_EQ(Listed(), "list.xml");
    }
}

TEST_F(ConvenienceSavingSteps, ADeviceMayRefuseToWaitButNotToWrite) {
    ASSERT_EQ(mkfifo(Inside("pipe").c_str(), 0600), 0);
    // Both ends, so that nobody waits for anybody.
    const int ends = open(Inside("pipe").c_str(), O_RDWR);
    ASSERT_GE(ends, 0);
    for (const int error : {EINVAL, ENOTSUP}) {
        Fail("fsync", error);
        EXPECT_NO_THROW(XMLSaveSafely(*m_Document, Inside("pipe"), false));
        EXPECT_TRUE(HasFailed());
    }
    Fail("fsync", EIO);
    ExpectRefused(Inside("pipe"));
    Fail("close", EIO);
    ExpectRefused(Inside("pipe"));
    close(ends);
    EXPECT_EQ(Listed(), "pipe");
}

}  // namespace norvask_test
