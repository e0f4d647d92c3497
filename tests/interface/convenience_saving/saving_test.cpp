// XMLSaveSafely: what it writes, and what it keeps of the file that was there.
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <thread>

#include "interface/convenience_saving/saving.h"
#include "support/testing.h"

using namespace norvask_test;
namespace fs = std::filesystem;

using ConvenienceSaving = CSavingTest;

TEST_F(ConvenienceSaving, MakesAFile) {
    const std::string name = Inside("list.xml");
    XMLSaveSafely(*m_Document, name.c_str(), false);
    EXPECT_EQ(ReadFile(name), NEW);
    EXPECT_EQ(Listed(), "list.xml");
}

TEST_F(ConvenienceSaving, WritesWhatSaveWrites) {
    MakeLarge();
    for (const bool format : {false, true}) {
        XMLSaveSafely(*m_Document, Inside("safely"), format);
        m_Document->Save(Inside("plainly").c_str(), format);
        EXPECT_TRUE(ReadFile(Inside("safely")) == ReadFile(Inside("plainly")));
    }
    EXPECT_GT(fs::file_size(Inside("safely")), 300000U);
}

TEST_F(ConvenienceSaving, ReplacesAFile) {
    const std::string name = Inside("list.xml");
    Write(name, OLD + std::string(100000, 'x'));
    std::ifstream reader(name);  // still reads the old file
    XMLSaveSafely(*m_Document, name, false);
    EXPECT_EQ(ReadFile(name), NEW);
    EXPECT_EQ(Listed(), "list.xml");
    std::string word;
    reader >> word;
    EXPECT_EQ(word, "what");
}

TEST_F(ConvenienceSaving, KeepsThePermissions) {
    const std::string name = Inside("list.xml");
    for (const mode_t mode : {0600U, 0644U, 0664U, 0666U, 0755U, 0777U}) {
        Write(name, OLD);
        ASSERT_EQ(chmod(name.c_str(), mode), 0);
        XMLSaveSafely(*m_Document, name, false);
        EXPECT_EQ(Permissions(name), mode);
    }
}

TEST_F(ConvenienceSaving, ANewFileGetsWhatTheUmaskLeaves) {
    for (const mode_t mask : {mode_t{0022}, mode_t{0077}, mode_t{0}}) {
        const std::string name = Inside("list" + std::to_string(mask));
        const mode_t before = umask(mask);
        XMLSaveSafely(*m_Document, name, false);
        umask(before);
        EXPECT_EQ(Permissions(name), 0666U & ~mask);
    }
}

// What only the administrator can set up is looked at only there.
TEST_F(ConvenienceSaving, KeepsTheOwnerAndTheGroup) {
    const std::string name = Inside("list.xml");
    Write(name, OLD);
    const bool isRoot = geteuid() == 0;
    const uid_t owner = isRoot ? 4711 : geteuid();
    const gid_t group = isRoot ? 4712 : getegid();
    ASSERT_EQ(chown(name.c_str(), owner, group), 0);
    ASSERT_EQ(chmod(name.c_str(), 0660), 0);
    XMLSaveSafely(*m_Document, name, false);
    struct stat status = {};
    ASSERT_EQ(stat(name.c_str(), &status), 0);
    EXPECT_EQ(status.st_uid, owner);
    EXPECT_EQ(status.st_gid, group);
    EXPECT_EQ(Permissions(name), 0660U);
    if (!isRoot) std::cout << "only with this user's own owner and group\n";
}

// Nobody may give a file to a group that he is not in. Its permissions must not go to another
// group.
TEST_F(ConvenienceSaving, APermissionOfALostGroupIsNotGivenToAnother) {
    if (geteuid() != 0) {
        std::cout << "not looked at: it takes an administrator to set this up\n";
        return;
    }
    const std::string name = Inside("list.xml");
    ASSERT_EQ(chown(m_Folder.c_str(), CNobody::ID, CNobody::ID), 0);
    for (const auto& [before, after] : {std::pair{0666U, 0666U}, std::pair{0664U, 0644U},
                                        std::pair{0660U, 0600U}, std::pair{0646U, 0646U}}) {
        Write(name, OLD);
        ASSERT_EQ(chown(name.c_str(), CNobody::ID, 4712), 0);
        ASSERT_EQ(chmod(name.c_str(), before), 0);
        {
            const CNobody nobody;
            XMLSaveSafely(*m_Document, name, false);
        }
        EXPECT_EQ(Permissions(name), after);
        EXPECT_EQ(ReadFile(name), NEW);
        fs::remove(name);
    }
}

TEST_F(ConvenienceSaving, ALinkStaysALink) {
    fs::create_directory(Inside("far"));
    Write(Inside("far/list.xml"), OLD);
    fs::create_symlink("far/list.xml", Inside("first"));        // relative to the link
    fs::create_symlink(Inside("first"), Inside("second"));      // a link to a link
    fs::create_symlink("far/nothing.xml", Inside("dangling"));  // leads to no file yet
    XMLSaveSafely(*m_Document, Inside("second"), false);
    EXPECT_TRUE(IsKind(Inside("first"), S_IFLNK));
    EXPECT_TRUE(IsKind(Inside("second"), S_IFLNK));
    EXPECT_TRUE(IsKind(Inside("far/list.xml"), S_IFREG));
    EXPECT_EQ(ReadFile(Inside("far/list.xml")), NEW);
    XMLSaveSafely(*m_Document, Inside("dangling"), false);
    EXPECT_TRUE(IsKind(Inside("dangling"), S_IFLNK));
    EXPECT_EQ(ReadFile(Inside("far/nothing.xml")), NEW);
    EXPECT_EQ(Listed(), "dangling far first second");
    EXPECT_FALSE(fs::exists(Inside("nothing.xml")));
}

// Without a folder in the name the new file is made in the working directory.
TEST_F(ConvenienceSaving, NamesAreRelativeToTheWorkingDirectory) {
    const fs::path before = fs::current_path();
    fs::current_path(m_Folder);
    Write("list.xml", OLD);
    XMLSaveSafely(*m_Document, "list.xml", false);
    fs::current_path(before);
    EXPECT_EQ(ReadFile(Inside("list.xml")), NEW);
    EXPECT_EQ(Listed(), "list.xml");
}

TEST_F(ConvenienceSaving, ANameMayHaveTheGreatestLength) {
    const std::string name(NAME_MAX, 'n');
    Write(Inside(name), OLD);
    XMLSaveSafely(*m_Document, Inside(name), false);
    EXPECT_EQ(ReadFile(Inside(name)), NEW);
    EXPECT_EQ(Listed(), name);
}

TEST_F(ConvenienceSaving, DevicesAndPipesAreWrittenTo) {
    {
        const CNobody nobody;  // who cannot harm the device, whatever is wrong
        XMLSaveSafely(*m_Document, "/dev/null", false);
    }
    EXPECT_TRUE(IsKind("/dev/null", S_IFCHR));

    ASSERT_EQ(mkfifo(Inside("pipe").c_str(), 0600), 0);
    MakeLarge();
    std::string read;
    std::thread reader([&] { read = ReadFile(Inside("pipe")); });
    XMLSaveSafely(*m_Document, Inside("pipe"), false);
    reader.join();
    EXPECT_TRUE(read == XMLToString(*m_Document));
    EXPECT_TRUE(IsKind(Inside("pipe"), S_IFIFO));
    EXPECT_EQ(Listed(), "pipe");
}

// Files that a program left behind when it was killed have the names that are tried first.
TEST_F(ConvenienceSaving, RemainsOfOthersAreLeftAlone) {
    XMLSaveSafely(*m_Document, Inside("list.xml"), false);
    const std::string begin = ".norvask-" + std::to_string(getpid()) + "-";
    for (int i = 0; i < 500; ++i)
        Write(Inside(begin + std::to_string(i)), OLD);
    XMLSaveSafely(*m_Document, Inside("list.xml"), true);
    for (int i = 0; i < 500; ++i) {
        EXPECT_EQ(ReadFile(Inside(begin + std::to_string(i))), OLD);
        fs::remove(Inside(begin + std::to_string(i)));
    }
    EXPECT_EQ(Listed(), "list.xml");
    EXPECT_EQ(ReadFile(Inside("list.xml")), XMLToString(*m_Document, true));
}

TEST_F(ConvenienceSaving, ThreadsThatSaveToOneFileLeaveAWholeDocument) {
    const std::string name = Inside("list.xml");
    std::vector<std::string> saved;
    std::vector<CXMLDocumentPtr> documents;
    for (int i = 0; i < 4; ++i) {
        documents.push_back(XMLNewDocument("list"));
        for (int row = 0; row < 2000 * (i + 1); ++row)
            documents.back()->GetRoot()->CreateChild("row", nullptr)->SetAttribute("k", "v");
        saved.push_back(XMLToString(*documents.back()));
    }
    std::vector<std::thread> threads;
    for (const CXMLDocumentPtr& document : documents) {
        threads.emplace_back([&] {
            for (int i = 0; i < 10; ++i)
                XMLSaveSafely(*document, name, false);
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(std::count(saved.begin(), saved.end(), ReadFile(name)), 1);
    EXPECT_EQ(Listed(), "list.xml");
}

// As /dev/stdout is when a shell has sent it to a file.
TEST_F(ConvenienceSaving, RefusesAFileThatIsNamedAsAnOpenOneOfAProcess) {
    TemporaryFile file(".xml", "kept");
    const Document document = NewDocumentWithRoot("r");
    const int handle = open(file.Name(), O_WRONLY | O_APPEND);
    ASSERT_GE(handle, 0);
    for (const std::string& name :
         {"/proc/self/fd/" + std::to_string(handle), "/dev/fd/" + std::to_string(handle)}) {
        EXPECT_SAVING_ERROR(XMLSaveSafely(*document, name), name);
        EXPECT_EQ(file.Content(), "kept");
    }
    TemporaryFile link(".link");
    ASSERT_EQ(symlink(("/proc/self/fd/" + std::to_string(handle)).c_str(), link.Name()), 0);
    EXPECT_SAVING_ERROR(XMLSaveSafely(*document, link.Name()), link.Name());
    EXPECT_EQ(file.Content(), "kept");
    ASSERT_EQ(unlink(file.Name()), 0);
    EXPECT_SAVING_ERROR(XMLSaveSafely(*document, link.Name()), link.Name());
    EXPECT_FALSE(std::ifstream(std::string(file.Name()) + " (deleted)").good());
    close(handle);
}
