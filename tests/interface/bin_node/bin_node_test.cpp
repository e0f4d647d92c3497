// Binary nodes: the block, and what a leaf refuses.
#include <cstdint>
#include <new>

#include "support/sanitizers.h"
#include "support/testing.h"
#include "support/tree_fixture.h"

using namespace norvask_test;

namespace {

class BinaryNode : public CTreeFixture {
protected:
    void ExpectEmpty() {
        const unsigned char byte = 0;
        const unsigned char* data = &byte;
        std::size_t length = 77;
        m_Binary.GetData(data, length);
        EXPECT_EQ(data, nullptr);
        EXPECT_EQ(length, 0u);
    }

    CXMLBinNode& m_Binary = *m_Root.CreateBinChild();
};

}  // namespace

TEST_F(BinaryNode, IsEmptyAtFirst) { ExpectEmpty(); }

TEST_F(BinaryNode, CopiesTheBytesItIsGiven) {
    unsigned char bytes[] = {0, 1, 255, 0};
    m_Binary.SetData(bytes, 4);
    bytes[1] = 9;
    EXPECT_EQ(Bytes(m_Binary), std::string("\0\1\xFF\0", 4));
    const unsigned char* data = nullptr;
    std::size_t length = 0;
    m_Binary.GetData(data, length);
    EXPECT_FALSE(Same(data, bytes));
}

TEST_F(BinaryNode, ShowsItsOwnBlock) {
    SetBytes(m_Binary, "bytes");
    const unsigned char* first = nullptr;
    const unsigned char* second = nullptr;
    std::size_t length = 0;
    m_Binary.GetData(first, length);
    m_Binary.GetData(second, length);
    EXPECT_TRUE(Same(first, second));
}

TEST_F(BinaryNode, KeepsBlocksOfEveryLength) {
    for (std::size_t length = 0; length < 600; ++length) {
        const std::string bytes = AllByteValues(length);
        SetBytes(m_Binary, bytes);
        ASSERT_EQ(Bytes(m_Binary), bytes) << "length " << length;
    }
    const std::string large = AllByteValues(3000000);
    SetBytes(m_Binary, large);
    EXPECT_EQ(Bytes(m_Binary), large);
    SetBytes(m_Binary, "small");
    EXPECT_EQ(Bytes(m_Binary), "small");
}

TEST_F(BinaryNode, IsEmptiedByNoBytes) {
    const unsigned char byte = 'A';
    const struct {
        const unsigned char* data;
        std::size_t length;
    } rows[] = {{&byte, 0}, {nullptr, 5}, {nullptr, 0}, {nullptr, static_cast<std::size_t>(-1)}};
    for (const auto& row : rows) {
        SetBytes(m_Binary, "bytes");
        m_Binary.SetData(row.data, row.length);
        ExpectEmpty();
    }
}

TEST_F(BinaryNode, IsEmptyWhenThereIsNoMemoryForTheBytes) {
    if (IS_SANITIZED) GTEST_SKIP() << "the sanitizer ends the program where new would throw";
    const unsigned char byte = 'A';
    for (const std::size_t length : {SIZE_MAX, SIZE_MAX - 7, SIZE_MAX - 100, SIZE_MAX / 2 + 1}) {
        SetBytes(m_Binary, "bytes");
        EXPECT_THROW(m_Binary.SetData(&byte, length), std::bad_alloc) << "length " << length;
        ExpectEmpty();
    }
}

TEST_F(BinaryNode, HasNoNameNoAttributesAndNoChildren) {
    ExpectLeaf(m_Binary, CXMLNode::NODE_BINARY, m_Root);
}

TEST_F(BinaryNode, RefusesWhatOnlyElementsCanDo) {
    SetBytes(m_Binary, "bytes");
    ExpectLeafRefusals(m_Binary, m_Root);
    EXPECT_EQ(Children(m_Root), "[bytes]");
}

TEST_F(BinaryNode, IgnoresTheDeletionOfChildren) {
    ExpectLeafDeletesNothing(m_Binary, m_Root);
    EXPECT_EQ(Children(m_Root), "[]");
}

TEST_F(BinaryNode, IsSavedAsBase64InACdataSection) {
    EXPECT_EQ(Body(), "<r><![CDATA[]]></r>");
    SetBytes(m_Binary, "ABC");
    EXPECT_EQ(Body(), "<r><![CDATA[QUJD\n]]></r>");
    SetBytes(m_Binary, std::string(1, '\0'));
    EXPECT_EQ(Body(), "<r><![CDATA[AA==\n]]></r>");
}
