// XMLSaveSafely: a failure at any step is reported and leaves what was there before, and nothing
// else.
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>
#include <filesystem>
#include <new>

#include "interface/convenience_saving/saving.h"
#include "support/files.h"
#include "support/sanitizers.h"
#include "support/testing.h"

using namespace norvask_test;
namespace fs = std::filesystem;

namespace {

// Files cannot grow beyond this size while it lives; the signal that says so is ignored.
class CSizeLimit {
public:
    explicit CSizeLimit(rlim_t size) : m_Handler(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &m_Before);
        rlimit limit = m_Before;
        limit.rlim_cur = size;
        EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
    }
    CSizeLimit(const CSizeLimit&) = delete;
    CSizeLimit& operator=(const CSizeLimit&) = delete;
    ~CSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &m_Before);
        std::signal(SIGXFSZ, m_Handler);
    }

private:
    rlimit m_Before = {};
    void (*m_Handler)(int);
};

// A document whose save ends in its middle.
class CThrowingDocument : public CXMLDocument {
public:
    CThrowingDocument() : CXMLDocument(nullptr, nullptr) {}
    void Save(std::ostream& out, bool) override {
        out << std::string(200000, 'x');
        throw std::bad_alloc();
    }
};

}  // namespace

using ConvenienceSavingFailure = CSavingTest;

TEST_F(ConvenienceSavingFailure, LinksThatLeadNowhereAreRefused) {
    fs::create_symlink("loop", Inside("loop"));
    fs::create_symlink("no/such/folder.xml", Inside("lost"));
    ExpectRefused(Inside("loop"));
    ExpectRefused(Inside("lost"));
    EXPECT_EQ(Listed(), "loop lost");
}

TEST_F(ConvenienceSavingFailure, NoNameIsRefused) {
    EXPECT_SAVING_ERROR(XMLSaveSafely(*m_Document, static_cast<const char*>(nullptr), false), "");
    ExpectRefused("");
}

TEST_F(ConvenienceSavingFailure, ADirectoryIsRefused) {
    fs::create_directory(Inside("folder"));
    ExpectRefused(Inside("folder"));
    ExpectRefused(Inside("folder/"));
    ExpectRefused(Inside("none/"));
    EXPECT_EQ(Listed(), "folder");
    EXPECT_TRUE(fs::is_empty(Inside("folder")));
}

TEST_F(ConvenienceSavingFailure, AMissingDirectoryIsRefused) {
    ExpectRefused(Inside("no/such/folder.xml"));
    EXPECT_EQ(Listed(), "");
}

TEST_F(ConvenienceSavingFailure, ADirectoryThatMayNotBeWrittenIsRefused) {
    const std::string name = Inside("list.xml");
    Write(name, OLD);
    ASSERT_EQ(chmod(name.c_str(), 0666), 0);
    ASSERT_EQ(chmod(m_Folder.c_str(), 0555), 0);
    {
        const CNobody nobody;
        ExpectRefused(name);
        ExpectRefused(Inside("new.xml"));
    }
    EXPECT_EQ(ReadFile(name), OLD);
    EXPECT_EQ(Listed(), "list.xml");
}

// Its directory would allow to replace it.
TEST_F(ConvenienceSavingFailure, AFileThatMayNotBeWrittenIsRefused) {
    const std::string name = Inside("list.xml");
    Write(name, OLD);
    ASSERT_EQ(chmod(name.c_str(), 0444), 0);
    ASSERT_EQ(chmod(m_Folder.c_str(), 0777), 0);
    {
        const CNobody nobody;
        ExpectRefused(name);
    }
    EXPECT_EQ(ReadFile(name), OLD);
    EXPECT_EQ(Permissions(name), 0444U);
    EXPECT_EQ(Listed(), "list.xml");
}

// The limit is met in the first write, in a later one, and by the last bytes.
TEST_F(ConvenienceSavingFailure, ASizeLimitLeavesTheOldFile) {
    const std::string name = Inside("list.xml");
    Write(name, OLD);
    MakeLarge();
    const std::size_t size = XMLToString(*m_Document).size();
    for (const std::size_t room : {std::size_t{0}, std::size_t{1}, std::size_t{70000}, size - 1}) {
        SCOPED_TRACE(room);
        const CSizeLimit limit(room);
        ExpectRefused(name);
        ExpectRefused(Inside("new.xml"));
        EXPECT_EQ(ReadFile(name), OLD);
        EXPECT_EQ(Listed(), "list.xml");
    }
    const CSizeLimit limit(size);
    XMLSaveSafely(*m_Document, name, false);
    EXPECT_EQ(fs::file_size(name), size);
}

// For comparison, and for what document.h says of it.
TEST_F(ConvenienceSavingFailure, ThePlainSaveDoesNotNoticeASizeLimit) {
    const std::string name = Inside("list.xml");
    Write(name, OLD);
    MakeLarge();
    const CSizeLimit limit(70000);
    m_Document->Save(name.c_str(), false);
    EXPECT_EQ(fs::file_size(name), 70000U);
}

TEST_F(ConvenienceSavingFailure, NoHandleLeftIsRefused) {
    if (IS_SANITIZED) GTEST_SKIP() << "a sanitizer needs handles itself, to look at objects";
    const std::string name = Inside("list.xml");
    Write(name, OLD);
    bool isRefused = false;
    {
        const CNoHandles none;
        try {
            XMLSaveSafely(*m_Document, name, false);
        } catch (CXMLException&) {
            isRefused = true;
        }
    }
    EXPECT_TRUE(isRefused);
    EXPECT_EQ(ReadFile(name), OLD);
    EXPECT_EQ(Listed(), "list.xml");
}

TEST_F(ConvenienceSavingFailure, WhatSaveThrowsPassesAndNothingIsLeft) {
    const std::string name = Inside("list.xml");
    Write(name, OLD);
    CThrowingDocument throwing;
    EXPECT_THROW(XMLSaveSafely(throwing, name, false), std::bad_alloc);
    EXPECT_INVALID_PARAMETER(XMLSaveSafely(*XMLNewDocument(), name, false));
    MakeLarge();
    m_Document->GetRoot()->SetAttribute("k", "v");
    CXMLNode* last = m_Document->GetRoot()->CreateChild("last", nullptr);
    last->SetAttribute("k", "v");
    last->GetAttributes()[0]->SetName("no name");
    EXPECT_INVALID_NAME(XMLSaveSafely(*m_Document, name, false), "no name");
    EXPECT_EQ(ReadFile(name), OLD);
    EXPECT_EQ(Listed(), "list.xml");
}

TEST_F(ConvenienceSavingFailure, AFullDeviceIsReported) {
    const CNobody nobody;  // who cannot harm the device, whatever is wrong
    ExpectRefused("/dev/full");
    MakeLarge();
    ExpectRefused("/dev/full");
    EXPECT_TRUE(IsKind("/dev/full", S_IFCHR)) << "a device is not replaced";
}
