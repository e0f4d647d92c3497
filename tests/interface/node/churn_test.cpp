// A tree that is edited for hours does not grow: whatever an operation replaces or ends is used
// again. Each row does one thing many times; the heap must not be larger after the last thousands
// than after the first.
#include <functional>

#include "support/derived.h"
#include "support/heap.h"
#include "support/sanitizers.h"
#include "support/testing.h"
#include "support/tree_fixture.h"

using namespace norvask_test;

namespace {

constexpr int WARM_UP = 2000;
constexpr int ROUNDS = 20000;

// Lengths that differ from round to round, from a few bytes to more than any small block.
std::string Letters(int round) {
    static const std::size_t lengths[] = {1, 5, 17, 40, 90, 200, 500, 700, 1500, 3000};
    return std::string(lengths[round % 10] + static_cast<std::size_t>(round % 3), 'v');
}

class Churn : public CTreeFixture {
protected:
    void SetUp() override {
        if (IS_SANITIZED) GTEST_SKIP() << "the sanitizer's allocator keeps what is freed";
    }
    void Repeat(const std::function<void(int)>& work) {
        for (int round = 0; round < WARM_UP; ++round)
            work(round);
        const std::size_t before = HeapInUse();
        for (int round = 0; round < ROUNDS; ++round)
            work(WARM_UP + round);
        ExpectHeapAsBefore(before);  // that is, less than four bytes a round
    }
};

}  // namespace

TEST_F(Churn, OfTexts) {
    CXMLTextNode& text = *m_Root.CreateTextChild("");
    Repeat([&](int round) { text.SetText(Letters(round).c_str()); });
}

TEST_F(Churn, OfTypedTexts) {
    CXMLTextNode& text = *m_Root.CreateTextChild("");
    Repeat([&](int round) {
        text.SetLongText(round);
        text.SetDateText(round % 9999, 1, 1);
        text.SetBinaryText(reinterpret_cast<const unsigned char*>("bytes"), round % 6);
        unsigned char* data = nullptr;
        std::size_t length = 0;
        text.GetBinaryText(data, length);
    });
}

TEST_F(Churn, OfBlocks) {
    CXMLBinNode& binary = *m_Root.CreateBinChild();
    Repeat([&](int round) { SetBytes(binary, round % 7 ? Letters(round) : ""); });
}

TEST_F(Churn, OfNames) {
    Repeat([&](int round) { m_Root.SetTagName(("n" + std::to_string(round)).c_str()); });
}

TEST_F(Churn, OfRefusedNames) {
    Repeat([&](int round) {
        const std::string name = std::to_string(round) + Letters(round);
        EXPECT_INVALID_NAME(m_Root.SetTagName(name.c_str()), name.substr(0, 255));
        EXPECT_INVALID_NAME(m_Root.SetAttribute(name.c_str(), "v"), name.substr(0, 255));
        m_Root.SetAttribute(("n" + std::to_string(round)).c_str(), "");
        m_Root.GetAttributeValue(("n" + std::to_string(round)).c_str());
    });
}

TEST_F(Churn, OfAttributeValues) {
    m_Root.SetAttribute("a", "v");
    Repeat([&](int round) {
        m_Root.SetAttribute("a", Letters(round).c_str());
        m_Root.GetAttributes()[0]->SetLongValue(round);
    });
}

TEST_F(Churn, OfAttributesThatComeAndGo) {
    Repeat([&](int round) {
        const std::string name = "n" + std::to_string(round);
        m_Root.SetAttribute(name.c_str(), Letters(round).c_str());
        m_Root.GetAttributes()[0]->SetName(Letters(round).c_str());
        m_Root.SetAttribute(Letters(round).c_str(), "");
    });
    EXPECT_EQ(m_Root.GetAttributes()[0], nullptr);
}

TEST_F(Churn, OfManyAttributesThatAreRenamed) {
    for (int i = 0; i < 100; ++i)
        m_Root.SetAttribute(("n" + std::to_string(i)).c_str(), "v");
    Repeat([&](int round) {
        if (round % 10) return;
        m_Root.GetAttributes()[round % 100]->SetName(("m" + std::to_string(round)).c_str());
        EXPECT_STREQ(m_Root.GetAttributeValue(("m" + std::to_string(round)).c_str()), "v");
    });
}

TEST_F(Churn, OfAttributeCopies) {
    m_Root.SetAttribute("a", "v");
    CXMLAttribut kept("a", "b");
    Repeat([&](int round) {
        m_Root.SetAttribute("a", Letters(round).c_str());
        CXMLAttribut copy(*m_Root.GetAttributes()[0]);
        kept = copy;
        copy.SetValue(Letters(round + 1).c_str());
        *m_Root.GetAttributes()[0] = copy;
        *m_Root.GetAttributes()[0] = kept;
    });
}

TEST_F(Churn, OfPassingCopiesOfAnAttributeThatChanges) {
    Repeat([&](int round) {
        m_Root.SetAttribute("a", Letters(round).c_str());
        CXMLAttribut copy(*m_Root.GetAttributes()[0]);
        EXPECT_EQ(copy.GetValue(), Letters(round));
    });
}

TEST_F(Churn, OfPassingCopiesOfAttributesThatComeAndGo) {
    Repeat([&](int round) {
        const std::string name = "n" + std::to_string(round);
        m_Root.SetAttribute(name.c_str(), Letters(round).c_str());
        { CXMLAttribut copy(*m_Root.GetAttributes()[0]); }
        m_Root.SetAttribute(name.c_str(), "");
    });
}

TEST_F(Churn, OfChildrenThatComeAndGo) {
    m_Root.CreateChild("first", nullptr);
    Repeat([&](int round) {
        CXMLNode* child = m_Root.CreateChild(("n" + std::to_string(round)).c_str(),
                                             round % 2 ? m_Root.GetFirstChild() : nullptr);
        child->SetAttribute("a", Letters(round).c_str());
        child->CreateTextChild(Letters(round + 1).c_str());
        SetBytes(*child->CreateBinChild(), Letters(round + 2));
        for (int i = 0; i < round % 10; ++i)
            child->CreateChild("below", nullptr);
        m_Root.GetNodes("first");
        child->GetNodes("below");
        m_Root.DeleteChild(child);
    });
    EXPECT_EQ(Children(m_Root), "first");
}

TEST_F(Churn, OfCopiesThatComeAndGo) {
    const Document source = Load("<s a='1' b='2'>text<c><d e='3'/></c><![CDATA[QUJD]]></s>");
    Repeat([&](int round) {
        CXMLNode* copy = m_Root.CopyChild(round % 2 ? source->GetRoot() : &m_Root, nullptr);
        m_Root.DeleteChild(copy);
    });
}

TEST_F(Churn, OfCopiesThatFail) {
    const Document source = Load("<s a='1'>text<c><d e='3'/></c></s>");
    source->GetRoot()->GetChildren()[1]->GetFirstChild()->GetAttributes()[0]->SetName("3e");
    Repeat([&](int) {
        EXPECT_INVALID_NAME(m_Root.CopyChild(source->GetRoot(), nullptr), "3e");
        EXPECT_INVALID_NAME(source->Clone(), "3e");
        m_Root.DeleteChild(m_Root.GetFirstChild());
    });
}

TEST_F(Churn, OfRootsAndReferences) {
    Repeat([&](int round) {
        m_Document->CreateRoot(("n" + std::to_string(round)).c_str())->CreateTextChild("text");
        m_Document->SetDTDRef(Letters(round).c_str(), Letters(round + 1).c_str());
        if (round % 5 == 0) m_Document->SetDTDRef(nullptr, nullptr);
    });
}

TEST_F(Churn, OfDocuments) {
    const Document source = Load("<s a='1' b='2'>text<c><d e='3'/></c><![CDATA[QUJD]]></s>");
    Repeat([&](int round) {
        const Document clone(source->Clone());
        CDocumentProbe copy(*clone);
        *clone = *source;
        if (round % 2) copy.CreateRoot("new");
    });
}

TEST_F(Churn, OfQueriesOfGrowingAndShrinkingResults) {
    for (int i = 0; i < 64; ++i)
        m_Root.CreateChild(i % 2 ? "a" : "b", nullptr);
    Repeat([&](int round) {
        CXMLNode* child = m_Root.GetChildren()[round % 64];
        child->SetTagName(round % 3 ? "a" : "b");
        m_Root.GetNodes("a");
        m_Document->GetNodes("r/b");
    });
}

TEST_F(Churn, OfSharedNodes) {
    CXMLNode* first = m_Root.CreateChild("first", nullptr);
    first->CreateTextChild("text");
    Repeat([&](int round) {
        CXMLNode* second = m_Root.CreateChild("second", nullptr);
        second->CreateTextChild(Letters(round).c_str());
        *first = *second;
        CElementProbe copy(*second);
        CElementProbe own("own");
        own.CreateChild("c", nullptr);
        *second = own;
        m_Root.DeleteChild(second);
    });
    EXPECT_EQ(Children(m_Root), "second");
}

TEST_F(Churn, OfNodesThatShowOthersWhenTheyEnd) {
    CXMLNode* kept = m_Root.CreateChild("kept", nullptr);
    Repeat([&](int round) {
        CElementProbe own("own");
        CXMLNode* child = m_Root.CreateChild("child", nullptr);
        *child = round % 2 ? own : *kept;
        CXMLTextNode* text = m_Root.CreateTextChild(Letters(round).c_str());
        *m_Root.CreateTextChild(Letters(round + 1).c_str()) = *text;
        while (m_Root.GetChildren()[1])
            m_Root.DeleteChild(m_Root.GetChildren()[1]);
    });
    EXPECT_EQ(Children(m_Root), "kept");
}

TEST_F(Churn, OfDocumentsThatShowWhatOthersHold) {
    m_Root.SetAttribute("a", "v");
    m_Root.CreateChild("c", nullptr)->SetTextChildValue("text");
    Repeat([&](int round) {
        const Document other = NewDocumentWithRoot("other");
        CXMLNode* child = other->GetRoot()->CreateChild("x", nullptr);
        child->SetAttribute("x", "x");
        switch (round % 4) {
            case 0:
                *child = m_Root;
                break;
            case 1:
                *child->GetAttributes()[0] = *m_Root.GetAttributes()[0];
                break;
            case 2:
                *child->GetAttributes()[0] = CXMLAttribut("own", "own");
                break;
            default:
                *child->CreateTextChild("x") =
                    static_cast<CXMLTextNode&>(*m_Root.GetFirstChild()->GetFirstChild());
        }
    });
}

TEST_F(Churn, OfBlocksThatAnOverrideLeavesToTheLibrary) {
    class CLazy : public CBinaryProbe {
    public:
        void DeleteData() override {}
    };
    CLazy binary;
    Repeat([&](int round) { SetBytes(binary, round % 7 ? Letters(round) : ""); });
}

TEST_F(Churn, OfExceptions) {
    CXMLException kept(0, "kept");
    Repeat([&](int round) {
        CXMLException e(1, 6, Letters(round).c_str());
        CXMLException copy(e);
        kept = copy;
        e = kept;
        CXMLAttribut attribute(e.GetMessage(), copy.GetMessage());
    });
}

TEST_F(Churn, OfSharedTextsAndBlocks) {
    CXMLTextNode& text = *m_Root.CreateTextChild("text");
    CXMLBinNode& binary = *m_Root.CreateBinChild();
    Repeat([&](int round) {
        CTextProbe ownText(Letters(round).c_str());
        text = ownText;
        CBinaryProbe ownBinary;
        SetBytes(ownBinary, Letters(round));
        binary = ownBinary;
        text.SetText(Letters(round + 1).c_str());
    });
}
