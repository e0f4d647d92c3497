// Chains of assignments that let the content of a node hold, further down, the very node in whose
// place in memory that content lies. When the last node that shows it leaves, it is destroyed with
// all that is below it, once. What counts here is as much what the sanitizers say.
#include <norvask/norvask.h>

#include <string>

#include "support/derived.h"
#include "support/tree.h"
#include "support/vocabulary.h"

using namespace norvask;
using namespace norvask_test;

namespace {

// x shows what b was made with, below which y shows what z was made with, below which b stands:
//
//     x -> (b's content) -> y -> (z's content) -> b -> (c's content)
class AssignmentChain : public ::testing::Test {
protected:
    AssignmentChain() {
        m_C.SetAttribute("kept", "yes");
        m_C.CreateChild("d", nullptr)->CreateTextChild("text of d");
    }

    void Assign() {
        m_X = m_B;
        m_B = m_C;
        m_Y = m_Z;
    }

    static constexpr const char* CONTENT_OF_C = "<c kept=\"yes\"><d>text of d</d></c>";

    Document m_Document = Load("<r><z><b><y/>text of b</b>text of z</z><x/><c/></r>");
    CXMLNode& m_Root = *m_Document->GetRoot();
    CXMLNode& m_Z = *m_Root.GetChildren()[0];
    CXMLNode& m_B = *m_Z.GetFirstChild();
    CXMLNode& m_Y = *m_B.GetFirstChild();
    CXMLNode& m_X = *m_Root.GetChildren()[1];
    CXMLNode& m_C = *m_Root.GetChildren()[2];
};

}  // namespace

TEST_F(AssignmentChain, IsDestroyedWhenTheLastNodeThatShowsItIsAssigned) {
    Assign();
    EXPECT_EQ(SavedBody(*m_Document), std::string("<r><z>") + CONTENT_OF_C + "text of z</z><b><z>" +
                                          CONTENT_OF_C + "text of z</z>text of b</b>" +
                                          CONTENT_OF_C + "</r>");
    m_Root.DeleteChild(&m_Z);
    EXPECT_EQ(SavedBody(*m_Document), std::string("<r><b><z>") + CONTENT_OF_C +
                                          "text of z</z>text of b</b>" + CONTENT_OF_C + "</r>");
    m_X = m_C;
    EXPECT_EQ(SavedBody(*m_Document), std::string("<r>") + CONTENT_OF_C + CONTENT_OF_C + "</r>");
    m_X.CreateChild("after", nullptr);
    EXPECT_EQ(Children(m_C), "d after");
}

TEST_F(AssignmentChain, IsDestroyedWhenTheLastNodeThatShowsItIsDeleted) {
    Assign();
    m_Root.DeleteChild(&m_Z);
    m_Root.DeleteChild(&m_X);
    EXPECT_EQ(SavedBody(*m_Document), std::string("<r>") + CONTENT_OF_C + "</r>");
}

TEST_F(AssignmentChain, IsDestroyedWithTheDocument) {
    Assign();
    m_Root.DeleteChild(&m_Z);
    m_Document.reset();
}

TEST_F(AssignmentChain, IsDestroyedWithACopyThatOutlivesTheDocument) {
    Assign();
    m_Root.DeleteChild(&m_Z);
    {
        CElementProbe copy(m_X);
        m_Root.DeleteChild(&m_X);
        m_Document.reset();
        EXPECT_EQ(SavedNode(copy),
                  std::string("<b><z>") + CONTENT_OF_C + "text of z</z>text of b</b>");
    }
}

TEST_F(AssignmentChain, IsDestroyedInAnotherDocument) {
    const Document other = Load("<other><x/></other>");
    CXMLNode& shown = *other->GetRoot()->GetFirstChild();
    shown = m_B;
    Assign();
    m_X = m_C;
    m_Root.DeleteChild(&m_Z);
    EXPECT_EQ(SavedBody(*other),
              std::string("<other><b><z>") + CONTENT_OF_C + "text of z</z>text of b</b></other>");
    shown = *other->GetRoot()->CreateChild("new", nullptr);
    EXPECT_EQ(SavedBody(*other), "<other><new/><new/></other>");
    EXPECT_EQ(SavedBody(*m_Document), std::string("<r>") + CONTENT_OF_C + CONTENT_OF_C + "</r>");
}
