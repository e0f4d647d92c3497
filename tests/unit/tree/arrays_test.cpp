// The capacities of the arrays of a node: doubling from their fixed beginnings, never shrinking.
#include <gtest/gtest.h>

#include <string>

#include "support/vocabulary.h"
#include "tree/attribute_array.h"
#include "tree/child_array.h"
#include "tree/node_access.h"

namespace norvask {
namespace {

using norvask_test::Document;
using norvask_test::NewDocumentWithRoot;

std::uint32_t PowerOfTwoAbove(std::uint32_t count, std::uint32_t first) {
    std::uint32_t capacity = first;
    while (capacity <= count) {
        capacity *= 2;
    }
    return capacity;
}

TEST(Arrays, ChildrenDoubleFromTwo) {
    const Document document = NewDocumentWithRoot("r");
    SElementBody* body = CNodeAccess::ElementOf(document->GetRoot());
    EXPECT_EQ(ChildCapacity(body), 2U);
    EXPECT_EQ(ChildrenUsed(body), 1U);
    for (std::uint32_t count = 1; count <= 70; ++count) {
        document->GetRoot()->CreateChild("c", nullptr);
        EXPECT_EQ(ChildCapacity(body), PowerOfTwoAbove(count, 2)) << count;
        EXPECT_EQ(ChildrenUsed(body), count + 1);
        EXPECT_EQ(ChildSlots(body)[count], nullptr);
    }
    while (CXMLNode* child = document->GetRoot()->GetFirstChild()) {
        document->GetRoot()->DeleteChild(child);
    }
    EXPECT_EQ(ChildCapacity(body), 128U);
    EXPECT_EQ(ChildrenUsed(body), 1U);
}

TEST(Arrays, AttributesDoubleFromOne) {
    const Document document = NewDocumentWithRoot("r");
    SElementBody* body = CNodeAccess::ElementOf(document->GetRoot());
    EXPECT_EQ(AttributeCount(body), 0U);
    for (std::uint32_t count = 1; count <= 70; ++count) {
        document->GetRoot()->SetAttribute(("a" + std::to_string(count)).c_str(), "v");
        EXPECT_EQ(body->attributes->capacity, PowerOfTwoAbove(count, 1)) << count;
        EXPECT_EQ(body->attributes->used, count + 1);
    }
    for (std::uint32_t count = 70; count > 0; --count) {
        document->GetRoot()->SetAttribute(("a" + std::to_string(count)).c_str(), nullptr);
    }
    EXPECT_EQ(body->attributes->capacity, 128U);
    EXPECT_EQ(AttributeCount(body), 0U);
}

TEST(Arrays, QueryResultsDoubleFromTwoAndKeepTheirRoom) {
    const Document document = NewDocumentWithRoot("r");
    CXMLNode* root = document->GetRoot();
    SElementBody* body = CNodeAccess::ElementOf(root);
    for (std::uint32_t count = 1; count <= 40; ++count) {
        root->CreateChild("c", nullptr);
        root->GetNodes("c");
        EXPECT_EQ(MadeExtras(body).result.capacity, PowerOfTwoAbove(count, 2)) << count;
        EXPECT_EQ(MadeExtras(body).result.used, count + 1);
    }
    CXMLNode** const array = root->GetNodes("nothing");
    EXPECT_EQ(array[0], nullptr);
    EXPECT_EQ(MadeExtras(body).result.capacity, 64U);
    EXPECT_EQ(root->GetNodes("c"), array);
}

TEST(Arrays, ACopyHasTheCapacitiesOfItsSource) {
    const Document document = NewDocumentWithRoot("r");
    for (int i = 0; i < 5; ++i) {
        document->GetRoot()->CreateChild("c", nullptr);
        document->GetRoot()->SetAttribute(("a" + std::to_string(i)).c_str(), "v");
    }
    const Document clone(document->Clone());
    SElementBody* body = CNodeAccess::ElementOf(clone->GetRoot());
    EXPECT_EQ(ChildCapacity(body), 8U);
    EXPECT_EQ(body->attributes->capacity, 8U);
}

// Long arrays keep room in front, which counts as capacity.
TEST(Arrays, ChildrenThatComeInFrontDoubleFromTwoToo) {
    const Document document = NewDocumentWithRoot("r");
    CXMLNode* const root = document->GetRoot();
    SElementBody* const body = CNodeAccess::ElementOf(root);
    for (std::uint32_t count = 1; count <= 3000; ++count) {
        root->CreateChild("c", root->GetFirstChild());
        ASSERT_LE(ChildCapacity(body), 2 * PowerOfTwoAbove(count, 2)) << count;
        ASSERT_GE(ChildCapacity(body), PowerOfTwoAbove(count, 2)) << count;
    }
}

// A pointer to a short array shows the children that are left when one is removed.
TEST(Arrays, AShortArrayStaysInItsPlaceWhenAChildIsRemoved) {
    const Document document = NewDocumentWithRoot("r");
    CXMLNode* const root = document->GetRoot();
    for (int i = 0; i < 60; ++i) {
        root->CreateChild("c", nullptr);
    }
    CXMLNode** const children = root->GetChildren();
    while (children[0] != nullptr) {
        root->DeleteChild(children[0]);
        ASSERT_EQ(root->GetChildren(), children);
    }
}

TEST(Arrays, AllNodesHaveTheSizeThatTheirBlocksAssume) {
    EXPECT_EQ(CNodeAccess::BlockSize(CXMLNode::NODE_ELEMENT), 64U);
    EXPECT_EQ(CNodeAccess::BlockSize(CXMLNode::NODE_TEXT), 40U);
    EXPECT_EQ(CNodeAccess::BlockSize(CXMLNode::NODE_BINARY), 48U);
}

}  // namespace
}  // namespace norvask
