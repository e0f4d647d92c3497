// Names and files that only the parser can judge are the same with the fast lane and without.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

#include "load/loading.h"
#include "load/parser/parser_file.h"
#include "norvask/norvask.h"
#include "support/tree_text.h"

namespace norvask {
namespace {

namespace fs = std::filesystem;

class PlainFile : public ::testing::Test {
protected:
    PlainFile() : m_Folder((fs::temp_directory_path() / "norvask_files_XXXXXX").string()) {
        if (mkdtemp(&m_Folder[0]) == nullptr) {
            std::abort();
        }
    }
    ~PlainFile() override { fs::remove_all(m_Folder); }

    std::string NameOf(const std::string& name) const { return m_Folder + "/" + name; }
    void Write(const std::string& name, const std::string& content) const {
        std::ofstream(NameOf(name), std::ios::binary) << content;
    }

private:
    std::string m_Folder;
};

std::string Loaded(const std::string& name, bool fastLane, ELane* lane = nullptr) {
    SLoadOptions options;
    options.fastLane = fastLane;
    options.lane = lane;
    try {
        CXMLDocument* const document = LoadTree(name.c_str(), true, options);
        std::string text = norvask_test::TreeText(*document);
        document->Delete();
        return text;
    } catch (CXMLException& exception) {
        return exception.GetMessage();
    }
}

TEST_F(PlainFile, IsTriedUnderAnOrdinaryName) {
    Write("a.xml", "<a/>");
    Write("a b\xC3\xA9#&.xml", "<a/>");
    for (const char* const name : {"a.xml", "a b\xC3\xA9#&.xml"}) {
        ELane lane = ELane::NOT_TRIED;
        EXPECT_EQ(Loaded(NameOf(name), true, &lane), Loaded(NameOf(name), false));
        EXPECT_EQ(lane, ELane::TAKEN) << name;
    }
}

// Each is there, but the parser reads a URL, an escape or no name at all.
TEST_F(PlainFile, IsTheParsersUnderANameThatItReadsInItsOwnWay) {
    Write("aA.xml", "<escaped/>");
    Write("a", "<cut/>");
    for (const char* const name : {"a%41.xml", "a%.xml", "a:b.xml", "a\xFF.xml", "a\xC3"}) {
        SCOPED_TRACE(name);
        Write(name, "<itself/>");
        ELane lane = ELane::TAKEN;
        EXPECT_EQ(Loaded(NameOf(name), true, &lane), Loaded(NameOf(name), false));
        EXPECT_EQ(lane, ELane::NOT_TRIED);
    }
    ELane lane = ELane::TAKEN;
    EXPECT_EQ(Loaded("file://" + NameOf("aA.xml"), true, &lane),
              Loaded("file://" + NameOf("aA.xml"), false));
    EXPECT_EQ(lane, ELane::NOT_TRIED);
}

// What was read of a pipe cannot be read once more.
TEST_F(PlainFile, IsTheParsersWhereItIsAPipe) {
    const std::string document = "<!DOCTYPE a [<!ENTITY e 'x'>]><a>&e;</a>";
    const std::string name = NameOf("pipe.xml");
    ASSERT_EQ(mkfifo(name.c_str(), 0600), 0);
    const auto throughPipe = [&](bool fastLane, ELane* lane) {
        std::thread writer([&] { std::ofstream(name, std::ios::binary) << document; });
        const std::string loaded = Loaded(name, fastLane, lane);
        writer.join();
        return loaded;
    };
    ELane lane = ELane::TAKEN;
    const std::string withLane = throughPipe(true, &lane);
    EXPECT_EQ(lane, ELane::NOT_TRIED);
    EXPECT_EQ(withLane, throughPipe(false, nullptr));
    EXPECT_NE(withLane.find('x'), std::string::npos);
}

// It opens, but does not read.
TEST_F(PlainFile, TellsThatReadingFailed) {
    CParserFile folder(NameOf("").c_str());
    ASSERT_TRUE(folder.IsOpen());
    char byte = '\0';
    EXPECT_EQ(folder.Read(&byte, 1), 0U);
    EXPECT_FALSE(folder.IsGood());
}

}  // namespace
}  // namespace norvask
