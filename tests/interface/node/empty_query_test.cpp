// The array of a query that finds nothing is the node's own, like that of any other, so what a
// derived class adds to the result next is seen through the pointer that the query returned.
#include <norvask/norvask.h>

#include <string>

#include "support/derived.h"
#include "support/tree.h"
#include "support/vocabulary.h"

using namespace norvask;
using namespace norvask_test;

namespace {

// NULL stands for itself; the others are paths that select nothing.
constexpr const char* PATHS[] = {nullptr, "", "none", "none/c", "c/none", "/"};

std::string Shown(const char* path) { return path ? std::string("'") + path + "'" : "NULL"; }

// Selects itself, whatever it is asked for.
class CSelfish : public CElementProbe {
public:
    using CElementProbe::CElementProbe;
    CXMLNode** GetNodes(const char*) override {
        CXMLNode** nodes = CElementProbe::GetNodes(nullptr);
        CElementProbe::AddToQueryResult(this);
        return nodes;
    }
};

}  // namespace

TEST(EmptyQuery, ShowsTheNodeThatADerivedElementAddsNext) {
    for (const char* path : PATHS) {
        SCOPED_TRACE(Shown(path));
        CElementProbe probe("p");
        CXMLNode* child = probe.CreateChild("c", nullptr);
        CXMLNode** nodes = probe.GetNodes(path);
        ASSERT_EQ(nodes[0], nullptr);
        probe.AddToQueryResult(child);
        EXPECT_EQ(Listed(nodes), "c");
    }
}

TEST(EmptyQuery, ShowsTheNodeThatADerivedElementAddsNextAfterAnEarlierQueryToo) {
    for (const char* path : PATHS) {
        SCOPED_TRACE(Shown(path));
        CElementProbe probe("p");
        CXMLNode* child = probe.CreateChild("c", nullptr);
        ASSERT_EQ(Listed(probe.GetNodes("c")), "c");
        CXMLNode** nodes = probe.GetNodes(path);
        ASSERT_EQ(nodes[0], nullptr);
        probe.AddToQueryResult(child);
        EXPECT_EQ(Listed(nodes), "c");
    }
}

TEST(EmptyQuery, ShowsTheNodeThatADerivedTextAddsNext) {
    for (const char* path : PATHS) {
        SCOPED_TRACE(Shown(path));
        CElementProbe other("other");
        CTextProbe probe("text");
        CXMLNode** nodes = probe.GetNodes(path);
        ASSERT_EQ(nodes[0], nullptr);
        probe.AddToQueryResult(&other);
        EXPECT_EQ(Listed(nodes), "other");
    }
}

TEST(EmptyQuery, OfACopyIsTheArrayOfTheNodeItShows) {
    const Document document = Load("<r><p><c/></p></r>");
    CXMLNode* p = document->GetRoot()->GetFirstChild();
    CElementProbe copy(*p);
    CXMLNode** nodes = p->GetNodes("none");
    copy.AddToQueryResult(p->GetFirstChild());
    EXPECT_EQ(Listed(nodes), "c");
}

TEST(EmptyQuery, KeepsTheArrayOfTheNodeForTheNextOne) {
    for (const char* path : PATHS) {
        SCOPED_TRACE(Shown(path));
        const Document document = Load("<r><p/><q/></r>");
        CXMLNode* p = document->GetRoot()->GetChildren()[0];
        CXMLNode* q = document->GetRoot()->GetChildren()[1];
        CXMLNode** nodes = p->GetNodes(path);
        ASSERT_EQ(nodes[0], nullptr);
        EXPECT_NE(q->GetNodes(path), nodes);
        CXMLNode* c = p->CreateChild("c", nullptr);
        ASSERT_EQ(p->GetNodes("c"), nodes);
        EXPECT_EQ(nodes[0], c);
        EXPECT_EQ(nodes[1], nullptr);
    }
}

TEST(EmptyQuery, OfADerivedClassMayBeFilledByIt) {
    const Document document = Load("<r><p/></r>");
    CSelfish selfish("own");
    const CSubstitute substitute(*document->GetRoot(), 0, selfish);
    EXPECT_EQ(Listed(selfish.GetNodes("whatever")), "own");
    EXPECT_EQ(Listed(document->GetRoot()->GetNodes("own/whatever")), "own");
    EXPECT_EQ(Listed(document->GetNodes("r/own/whatever")), "own");
}
