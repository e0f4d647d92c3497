// The fixture of the tests of trees: a document with its root.
#ifndef NORVASK_TESTS_SUPPORT_TREE_FIXTURE_H
#define NORVASK_TESTS_SUPPORT_TREE_FIXTURE_H

#include <gtest/gtest.h>
#include <norvask/norvask.h>

#include <string>
#include <utility>

#include "support/errors.h"
#include "support/tree.h"
#include "support/vocabulary.h"

namespace norvask_test {

class CTreeFixture : public ::testing::Test {
protected:
    explicit CTreeFixture(Document document = NewDocumentWithRoot("r"))
        : m_Document(std::move(document)), m_Root(*m_Document->GetRoot()) {}

    std::string Body() { return SavedBody(*m_Document); }

    Document m_Document;
    CXMLNode& m_Root;
};

// What texts and binary nodes have in common.
inline void ExpectLeaf(CXMLNode& leaf, CXMLNode::NodeType kind, CXMLNode& parent) {
    EXPECT_STREQ(leaf.GetTagName(), "");
    ASSERT_NE(leaf.GetChildren(), nullptr);
    EXPECT_EQ(leaf.GetChildren()[0], nullptr);
    EXPECT_EQ(leaf.GetFirstChild(), nullptr);
    ASSERT_NE(leaf.GetAttributes(), nullptr);
    EXPECT_EQ(leaf.GetAttributes()[0], nullptr);
    EXPECT_STREQ(leaf.GetAttributeValue("a"), "");
    EXPECT_STREQ(leaf.GetAttributeValue(nullptr), "");
    EXPECT_EQ(leaf.GetNodeType(), kind);
    EXPECT_EQ(leaf.GetParentNode(), &parent);
}

// A child of `parent` refuses what only elements can do, and ignores the deletion of children.
inline void ExpectLeafRefusals(CXMLNode& leaf, CXMLNode& parent) {
    const std::string before = Children(parent);
    const auto kind = leaf.GetNodeType();
    for (const char* argument : {"x", "1x", "", static_cast<const char*>(nullptr)}) {
        EXPECT_NOT_SUPPORTED(leaf.SetTagName(argument));
        EXPECT_NOT_SUPPORTED(leaf.CreateChild(argument, nullptr));
        EXPECT_NOT_SUPPORTED(leaf.CreateChild(argument, &parent));
        EXPECT_NOT_SUPPORTED(leaf.CreateTextChild(argument));
        EXPECT_NOT_SUPPORTED(leaf.SetAttribute(argument, "v"));
        EXPECT_NOT_SUPPORTED(leaf.SetAttribute("a", argument));
        EXPECT_NOT_SUPPORTED(leaf.SetTextChildValue(argument));
    }
    EXPECT_NOT_SUPPORTED(leaf.CreateBinChild());
    EXPECT_NOT_SUPPORTED(leaf.GetTextChildValue());
    EXPECT_EQ(Children(parent), before);
    ExpectLeaf(leaf, kind, parent);
}
inline void ExpectLeafDeletesNothing(CXMLNode& leaf, CXMLNode& parent) {
    const std::string before = Children(parent);
    leaf.DeleteChild(nullptr);
    leaf.DeleteChild(&leaf);
    leaf.DeleteChild(&parent);
    EXPECT_EQ(Children(parent), before);
}

}  // namespace norvask_test

#endif
