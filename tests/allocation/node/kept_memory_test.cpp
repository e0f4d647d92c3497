// What a tree keeps stays below twice the most that it ever held live, plus a page, whatever comes
// and goes and in which sizes.
//
// What it keeps is what has been allocated since the document was made. What it holds live is
// measured on a copy of the document, which has never been edited, and on attributes of their own
// with the texts of those that the test holds.
#include <norvask/norvask.h>

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <functional>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "allocation/failing_new.h"
#include "support/tree.h"
#include "support/vocabulary.h"

using namespace norvask;
using namespace norvask_test;

namespace {

const std::size_t PAGE = 32 * 1024;
const int ROUNDS = 200000;
const std::size_t LONGEST = 4000;  // text
const std::size_t MOST = 4000;     // nodes
const std::size_t HELD = 1000;     // copies

class KeptMemory : public ::testing::Test {
protected:
    // Whatever the test itself needs is allocated first.
    KeptMemory() : m_Letters(LONGEST, 'v') {
        m_Texts.reserve(MOST);
        m_Blocks.reserve(MOST);
        m_Elements.reserve(MOST);
        m_Order.reserve(MOST);
        m_Held.reserve(HELD);
        m_Dropped.reserve(HELD);
        m_nBefore = LiveBytes();
        m_Document = NewDocumentWithRoot("r");
        m_pRoot = m_Document->GetRoot();
    }

    // So many letters; nothing is allocated for them.
    const char* Letters(std::size_t length) const { return m_Letters.c_str() + (LONGEST - length); }
    const unsigned char* Data() const {
        return reinterpret_cast<const unsigned char*>(m_Letters.data());
    }
    // The same letters with a number in front, in a place that is used again.
    const char* Numbered(int number, std::size_t length) {
        std::snprintf(m_Numbered, sizeof(m_Numbered), "n%d_%s", number, Letters(length));
        return m_Numbered;
    }
    std::size_t Number(std::size_t below) {
        return std::uniform_int_distribution<std::size_t>(0, below - 1)(m_Random);
    }

    void Look() {
        const std::size_t now = LiveBytes();
        std::size_t live = 0;
        {
            const Document copy(m_Document->Clone());
            std::vector<CXMLAttribut> own;
            own.reserve(m_Held.size());
            for (CXMLAttribut& attribute : m_Held)
                own.emplace_back(attribute.GetName(), attribute.GetValue());
            live = (LiveBytes() - now - m_Held.size() * sizeof(CXMLAttribut)) * m_nBatches;
        }
        const std::size_t kept = now - m_nBefore;
        m_nMostLive = std::max(m_nMostLive, live);
        if (kept > 2 * m_nMostLive + PAGE && kept > m_nWorstKept) {
            m_nWorstKept = kept;
            m_nLiveThen = m_nMostLive;
        }
    }

    // The rounds, with a look from time to time.
    template <typename Work>
    void Repeat(Work work) {
        for (int round = 0; round < ROUNDS; ++round) {
            work(round);
            if (round % 10000 == 0) Look();
        }
    }

    void TearDown() override {
        m_Held.clear();
        m_Dropped.clear();
        m_Document.reset();
        const std::size_t left = LiveBytes() - m_nBefore;  // before a check allocates anything
        EXPECT_EQ(left, 0u);
        EXPECT_GT(m_nMostLive, 0u);
        EXPECT_EQ(m_nWorstKept, 0u)
            << "kept " << m_nWorstKept << " bytes when at most " << m_nLiveThen << " had been live";
    }

    // Each step makes new sizes for many texts, and what is done to them is looked at after each.
    void SetTexts(std::size_t count, std::size_t steps, bool anyOrder,
                  const std::function<std::size_t(std::size_t)>& size) {
        for (std::size_t i = 0; i < count; ++i) {
            m_Order.push_back(i);
            m_Texts.push_back(m_pRoot->CreateTextChild(Letters(size(0))));
        }
        for (std::size_t step = 0; step < steps; ++step) {
            if (anyOrder) std::shuffle(m_Order.begin(), m_Order.end(), m_Random);
            for (const std::size_t i : m_Order)
                m_Texts[i]->SetText(Letters(size(step)));
            Look();
        }
    }

    const std::string m_Letters;
    char m_Numbered[LONGEST + 20] = {};
    std::mt19937 m_Random{1};
    std::vector<CXMLTextNode*> m_Texts;
    std::vector<CXMLBinNode*> m_Blocks;
    std::vector<CXMLNode*> m_Elements;
    std::vector<std::size_t> m_Order;
    std::vector<CXMLAttribut> m_Held;  // copies of the tree's attributes
    std::vector<CXMLAttribut> m_Dropped;
    std::size_t m_nBatches = 1;  // so many times what is held may be held at once
    std::size_t m_nBefore = 0;
    std::size_t m_nMostLive = 0;
    std::size_t m_nWorstKept = 0;
    std::size_t m_nLiveThen = 0;
    Document m_Document;
    CXMLNode* m_pRoot = nullptr;
};

}  // namespace

// --- Copies of attributes, held while the original is changed or removed

TEST_F(KeptMemory, OfAValueThatChangesWhileACopyIsHeld) {
    Repeat([&](int) {
        m_pRoot->SetAttribute("a", Letters(1 + Number(40)));
        const CXMLAttribut copy(*m_pRoot->GetAttributes()[0]);
        m_pRoot->SetAttribute("a", Letters(1 + Number(40)));
    });
}

TEST_F(KeptMemory, OfAValueThatIsRemovedWhileACopyIsHeld) {
    Repeat([&](int) {
        m_pRoot->SetAttribute("a", Letters(20));
        const CXMLAttribut copy(*m_pRoot->GetAttributes()[0]);
        m_pRoot->SetAttribute("a", "");
    });
}

TEST_F(KeptMemory, OfANameThatChangesWhileACopyIsHeld) {
    m_pRoot->SetAttribute("a", "v");
    Repeat([&](int round) {
        CXMLAttribut& attribute = *m_pRoot->GetAttributes()[0];
        attribute.SetName(Numbered(round, 20));
        const CXMLAttribut copy(attribute);
        attribute.SetName(Numbered(round, 21));
    });
}

TEST_F(KeptMemory, OfANameThatIsRemovedWhileACopyIsHeld) {
    Repeat([&](int round) {
        m_pRoot->SetAttribute(Numbered(round, 20), "v");
        CXMLAttribut copy(*m_pRoot->GetAttributes()[0]);
        m_pRoot->SetAttribute(copy.GetName(), "");
    });
}

TEST_F(KeptMemory, OfNamesAndValuesWhenTheLastThousandCopiesAreHeld) {
    m_Held.assign(HELD, CXMLAttribut("none", "none"));
    Repeat([&](int round) {
        m_pRoot->SetAttribute(Numbered(round, 10), Letters(1 + Number(60)));
        CXMLAttribut& attribute = *m_pRoot->GetAttributes()[0];
        m_Held[static_cast<std::size_t>(round) % HELD] = attribute;
        m_pRoot->SetAttribute(attribute.GetName(), nullptr);
    });
}

TEST_F(KeptMemory, OfNamesAndValuesWhenCopiesAreHeldForAnyTime) {
    m_Held.assign(HELD, CXMLAttribut("none", "none"));
    Repeat([&](int round) {
        m_pRoot->SetAttribute(Numbered(round, 10), Letters(1 + Number(60)));
        CXMLAttribut& attribute = *m_pRoot->GetAttributes()[0];
        m_Held[Number(HELD)] = attribute;
        m_pRoot->SetAttribute(attribute.GetName(), nullptr);
    });
}

// While one thread makes and holds the next copies, another drops the last ones.
TEST_F(KeptMemory, OfCopiesThatThreadsDrop) {
    m_nBatches = 2;  // until the thread has dropped the last one
    for (int round = 0; round < ROUNDS; round += static_cast<int>(HELD)) {
        std::thread thread([this] { m_Dropped.clear(); });
        while (m_Held.size() < HELD) {
            const int number = round + static_cast<int>(m_Held.size());
            m_pRoot->SetAttribute(Numbered(number, 10), Letters(1 + Number(60)));
            CXMLAttribut& attribute = *m_pRoot->GetAttributes()[0];
            m_Held.push_back(attribute);
            attribute.SetName(Numbered(number, 11));
            m_pRoot->SetAttribute(attribute.GetName(), nullptr);
        }
        thread.join();
        Look();
        std::swap(m_Held, m_Dropped);
    }
}

// --- Sizes

TEST_F(KeptMemory, OfTextsThatGrow) {
    SetTexts(4000, 60, false, [](std::size_t step) { return 8 * step + 1; });
}

TEST_F(KeptMemory, OfTextsThatGrowInAnyOrder) {
    SetTexts(4000, 60, true, [](std::size_t step) { return 8 * step + 1; });
}

TEST_F(KeptMemory, OfTextsThatGrowBeyondThePages) {
    SetTexts(300, 60, false, [](std::size_t step) { return 64 * step + 1; });
}

TEST_F(KeptMemory, OfTextsThatShrink) {
    SetTexts(4000, 60, false, [](std::size_t step) { return 8 * (60 - step); });
}

TEST_F(KeptMemory, OfTextsThatShrinkAndGrow) {
    SetTexts(4000, 80, true, [](std::size_t step) {
        const std::size_t phase = step % 20;
        return 1 + 24 * (phase < 10 ? phase : 20 - phase);
    });
}

TEST_F(KeptMemory, OfTextsOfAnySize) {
    SetTexts(4000, 60, true, [this](std::size_t) { return Number(500); });
}

TEST_F(KeptMemory, OfTextsOfAnySizeFromFewBytesToThousands) {
    SetTexts(2000, 60, true,
             [this](std::size_t) { return Number(std::size_t(1) << (1 + Number(11))); });
}

TEST_F(KeptMemory, OfTextsThatGrowOneAfterTheOther) {
    const std::size_t count = 500;
    for (std::size_t i = 0; i < count; ++i)
        m_Texts.push_back(m_pRoot->CreateTextChild(""));
    for (std::size_t i = 0; i < count; ++i) {
        for (std::size_t size = 8; size <= 1200; size += 8)
            m_Texts[i]->SetText(Letters(size));
        if (i % 25 == 0) Look();
    }
}

TEST_F(KeptMemory, OfValuesThatGrow) {
    const std::size_t count = 2000;
    for (std::size_t i = 0; i < count; ++i)
        m_pRoot->CreateChild("c", nullptr)->SetAttribute("a", "v");
    for (std::size_t step = 1; step < 60; ++step) {
        for (CXMLNode** child = m_pRoot->GetChildren(); *child; ++child)
            (*child)->SetAttribute("a", Letters(8 * step));
        Look();
    }
}

TEST_F(KeptMemory, OfNamesThatGrow) {
    const std::size_t count = 1000;
    for (std::size_t i = 0; i < count; ++i)
        m_pRoot->CreateChild("c", nullptr)->SetAttribute("a", "v");
    for (std::size_t step = 1; step < 40; ++step) {
        int number = 0;
        for (CXMLNode** child = m_pRoot->GetChildren(); *child; ++child) {
            (*child)->SetTagName(Numbered(++number, 8 * step));
            (*child)->GetAttributes()[0]->SetName(Numbered(-number, 8 * step));
        }
        Look();
    }
}

TEST_F(KeptMemory, OfNamesOfAnySize) {
    const std::size_t count = 1000;
    for (std::size_t i = 0; i < count; ++i)
        m_pRoot->CreateChild("c", nullptr)->SetAttribute("a", "v");
    for (std::size_t step = 1; step < 60; ++step) {
        for (CXMLNode** child = m_pRoot->GetChildren(); *child; ++child) {
            (*child)->SetTagName(Numbered(static_cast<int>(Number(100000)), Number(300)));
            (*child)->GetAttributes()[0]->SetName(
                Numbered(static_cast<int>(Number(100000)), Number(300)));
        }
        Look();
    }
}

TEST_F(KeptMemory, OfBytesThatGrow) {
    const std::size_t count = 2000;
    for (std::size_t i = 0; i < count; ++i)
        m_Blocks.push_back(m_pRoot->CreateBinChild());
    for (std::size_t step = 1; step < 60; ++step) {
        for (CXMLBinNode* node : m_Blocks)
            node->SetData(Data(), 8 * step);
        Look();
    }
}

TEST_F(KeptMemory, OfBytesOfAnySize) {
    const std::size_t count = 2000;
    for (std::size_t i = 0; i < count; ++i)
        m_Blocks.push_back(m_pRoot->CreateBinChild());
    for (std::size_t step = 1; step < 60; ++step) {
        for (std::size_t i = 0; i < count; ++i)
            m_Blocks[Number(count)]->SetData(Data(), Number(1500));
        Look();
    }
}

// --- Nodes and arrays

TEST_F(KeptMemory, OfElementsThatComeAndGo) {
    for (int step = 0; step < 60; ++step) {
        const std::size_t wanted = 100 + Number(1500);
        while (m_Elements.size() > wanted) {
            const std::size_t i = Number(m_Elements.size());
            m_pRoot->DeleteChild(m_Elements[i]);
            m_Elements[i] = m_Elements.back();
            m_Elements.pop_back();
        }
        while (m_Elements.size() < wanted) {
            CXMLNode* element =
                m_pRoot->CreateChild(Numbered(static_cast<int>(Number(50)), Number(30)), nullptr);
            for (std::size_t i = Number(12); i > 0; --i)
                element->SetAttribute(Numbered(static_cast<int>(i), 3), Letters(1 + Number(50)));
            element->CreateTextChild(Letters(Number(200)));
            element->CreateBinChild()->SetData(Data(), Number(300));
            for (std::size_t i = Number(8); i > 0; --i)
                element->CreateChild("below", nullptr)->CreateTextChild(Letters(Number(20)));
            element->GetNodes("below");
            m_Elements.push_back(element);
        }
        Look();
    }
}

TEST_F(KeptMemory, OfAttributesThatComeAndGo) {
    for (int i = 0; i < 300; ++i)
        m_pRoot->CreateChild("c", nullptr);
    for (int step = 0; step < 60; ++step) {
        const int most = 1 + static_cast<int>(Number(40));
        for (CXMLNode** child = m_pRoot->GetChildren(); *child; ++child) {
            for (int i = 0; i < 40; ++i) {
                (*child)->SetAttribute(Numbered(i, Number(4)),
                                       i < most ? Letters(1 + Number(60)) : nullptr);
            }
            for (int i = most; i < 40; ++i) {
                for (std::size_t length = 0; length < 4; ++length)
                    (*child)->SetAttribute(Numbered(i, length), nullptr);
            }
        }
        Look();
    }
}

TEST_F(KeptMemory, OfChildArraysThatGrowInTurn) {
    for (int i = 0; i < 300; ++i)
        m_pRoot->CreateChild("c", nullptr);
    for (int step = 0; step < 100; ++step) {
        for (CXMLNode** child = m_pRoot->GetChildren(); *child; ++child)
            (*child)->CreateChild("below", nullptr);
        if (step % 5 == 0) Look();
    }
}

TEST_F(KeptMemory, OfAQueueOfChildren) {
    for (int i = 0; i < 200; ++i)
        m_pRoot->CreateChild("c", nullptr);
    Repeat([&](int) {
        m_pRoot->CreateChild("c", nullptr)->CreateTextChild(Letters(Number(30)));
        m_pRoot->DeleteChild(m_pRoot->GetFirstChild());
    });
}

TEST_F(KeptMemory, OfCopiesOfSubtrees) {
    CXMLNode* source = m_pRoot->CreateChild("s", nullptr);
    source->SetAttribute("a", "1");
    CXMLTextNode* text = source->CreateTextChild("");
    source->CreateChild("c", nullptr)->CreateChild("d", nullptr)->SetAttribute("e", "3");
    source->CreateBinChild()->SetData(Data(), 100);
    for (int round = 0; round < 3000; ++round) {
        text->SetText(Letters(Number(2000)));
        m_pRoot->CopyChild(source, nullptr);
        if (Count(m_pRoot->GetChildren()) > 200)
            m_pRoot->DeleteChild(m_pRoot->GetChildren()[1 + Number(200)]);
        if (round % 100 == 0) Look();
    }
}
