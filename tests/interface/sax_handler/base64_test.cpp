// CXMLSaxHandler::GetData: Base64 and the one block that shows its result.
#include "support/testing.h"

using namespace norvask_test;

namespace {

struct SRow {
    const char* text;
    const char* bytes;  // nullptr: no Base64
};

const SRow ROWS[] = {
    {"QUJD", "ABC"},
    {"QUJDREVG", "ABCDEF"},
    {"QUI=", "AB"},
    {"QQ==", "A"},
    {"ab+/", "\x69\xBF\xBF"},
    // Blanks and line breaks, anywhere.
    {" QUJD", "ABC"},
    {"QUJD ", "ABC"},
    {"Q U J D", "ABC"},
    {"QUJD\nREVG", "ABCDEF"},
    {"QUJD\r\nREVG\r\n", "ABCDEF"},
    {"\t\nQUJD\tREVG\n", "ABCDEF"},
    {"QUJD    REVG", "ABCDEF"},
    {"QQ= =", "A"},
    {"QQ\n==\n", "A"},
    // Not Base64.
    {"", nullptr},
    {" ", nullptr},
    {"\n", nullptr},
    {"Q", nullptr},
    {"QU", nullptr},
    {"QUJ", nullptr},
    {"QUJDR", nullptr},
    {"QUJD=", nullptr},
    {"QUJD====", nullptr},
    {"QQ=", nullptr},
    {"Q===", nullptr},
    {"====", nullptr},
    {"=", nullptr},
    {"Q=QQ", nullptr},
    {"QQ==QUJD", nullptr},
    {"QR==", nullptr},  // bits that belong to no byte
    {"QUJ=", nullptr},
    {"-_-_", nullptr},
    {"QUJD!", nullptr},
    {"####", nullptr},
    {"QUJD\x01", nullptr},
    {"\xC3\xA9\xC3\xA9", nullptr},
    {"\xFF\xFF\xFF\xFF", nullptr},
    {"QUJD\x80", nullptr},
    {"plain text", nullptr},
};

}  // namespace

TEST(Base64Reading, DecodesWhatIsBase64AndRefusesTheRest) {
    for (const SRow& row : ROWS) {
        unsigned char before = 0;
        unsigned char* data = &before;
        std::size_t length = 77;
        const bool answer = CXMLSaxHandler::GetData(row.text, data, length);
        EXPECT_EQ(answer, row.bytes != nullptr) << "text \"" << row.text << '"';
        if (answer && row.bytes) {
            EXPECT_EQ(std::string(reinterpret_cast<char*>(data), length), row.bytes)
                << "text \"" << row.text << '"';
        } else {
            EXPECT_TRUE(Same(data, &before)) << "text \"" << row.text << '"';
            EXPECT_EQ(length, 77u) << "text \"" << row.text << '"';
        }
    }
}

TEST(Base64Reading, ShowsTheBlockInTheStaticMembers) {
    unsigned char* data = nullptr;
    std::size_t length = 0;
    ASSERT_TRUE(CXMLSaxHandler::GetData("QUJDRA==", data, length));
    EXPECT_TRUE(Same(data, CXMLSaxHandler::m_pBinBlock));
    EXPECT_EQ(length, 4u);
    EXPECT_EQ(CXMLSaxHandler::m_nBinBlockLength, 4u);
}

TEST(Base64Reading, HasNoBlockAfterAFailure) {
    for (const char* text : {"not Base64", "", static_cast<const char*>(nullptr), "=="}) {
        unsigned char* data = nullptr;
        std::size_t length = 0;
        ASSERT_TRUE(CXMLSaxHandler::GetData("QUJD", data, length));
        EXPECT_FALSE(CXMLSaxHandler::GetData(text, data, length));
        EXPECT_EQ(CXMLSaxHandler::m_pBinBlock, nullptr);
        EXPECT_EQ(CXMLSaxHandler::m_nBinBlockLength, 0u);
    }
}

TEST(Base64Reading, LeavesTheOutputsAloneForNull) {
    unsigned char before = 0;
    unsigned char* data = &before;
    std::size_t length = 77;
    EXPECT_FALSE(CXMLSaxHandler::GetData(nullptr, data, length));
    EXPECT_TRUE(Same(data, &before));
    EXPECT_EQ(length, 77u);
}

TEST(Base64Reading, ReplacesTheBlockEachTime) {
    unsigned char* data = nullptr;
    std::size_t length = 0;
    for (int round = 0; round < 100; ++round) {
        ASSERT_TRUE(CXMLSaxHandler::GetData("QUJD", data, length));
        ASSERT_EQ(std::string(reinterpret_cast<char*>(data), length), "ABC");
        ASSERT_TRUE(CXMLSaxHandler::GetData("RA==", data, length));
        ASSERT_EQ(std::string(reinterpret_cast<char*>(data), length), "D");
    }
}

TEST(Base64Reading, TakesItsOutputsInTheStaticMembersThemselves) {
    EXPECT_TRUE(CXMLSaxHandler::GetData("QUJD", CXMLSaxHandler::m_pBinBlock,
                                        CXMLSaxHandler::m_nBinBlockLength));
    EXPECT_TRUE(CXMLSaxHandler::GetData("REU=", CXMLSaxHandler::m_pBinBlock,
                                        CXMLSaxHandler::m_nBinBlockLength));
    ASSERT_EQ(CXMLSaxHandler::m_nBinBlockLength, 2u);
    EXPECT_EQ(CXMLSaxHandler::m_pBinBlock[0], 'D');
    EXPECT_EQ(CXMLSaxHandler::m_pBinBlock[1], 'E');
}
