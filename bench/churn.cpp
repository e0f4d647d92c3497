// Texts and attributes whose sizes change again and again: the time of one change, and what the
// tree keeps.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "edits.h"
#include "heap.h"
#include "norvask/norvask.h"

namespace norvask_bench {

namespace {

using norvask::CXMLAttribut;
using norvask::CXMLDocumentPtr;
using norvask::CXMLNode;
using norvask::CXMLTextNode;
using norvask::XMLNewDocument;

constexpr std::size_t STEPS = 60;
constexpr std::size_t LONGEST = 512;

class CChurnBase {
public:
    CChurnBase() : m_Letters(LONGEST, 'v'), m_pDocument(XMLNewDocument("r")) {}

    // What the document holds live: a copy of it that was never edited.
    CXMLDocumentPtr Copy() const { return CXMLDocumentPtr(m_pDocument->Clone()); }

protected:
    const char* Letters(std::size_t length) const { return m_Letters.c_str() + (LONGEST - length); }
    CXMLNode& Root() const { return *m_pDocument->GetRoot(); }
    std::size_t Number(std::size_t below) { return m_Random() % below; }

private:
    const std::string m_Letters;
    const CXMLDocumentPtr m_pDocument;
    std::minstd_rand m_Random{1};
};

enum ESizes { GROWING, SHRINKING, ANY };

// Every step sets all texts.
template <ESizes Sizes>
class CTexts : public CChurnBase {
public:
    static constexpr std::size_t CHANGES = 4000;

    CTexts() : m_Texts(CHANGES) {
        for (CXMLTextNode*& text : m_Texts) {
            text = Root().CreateTextChild("");
        }
    }
    void Step(std::size_t step) {
        for (CXMLTextNode* text : m_Texts) {
            text->SetText(Letters(Sizes == GROWING     ? 8 * step + 1
                                  : Sizes == SHRINKING ? 8 * (STEPS - step)
                                                       : Number(8 * STEPS)));
        }
    }

private:
    std::vector<CXMLTextNode*> m_Texts;
};

// Attributes come and go while the last hundred copies of them are held.
class CHeldAttributes : public CChurnBase {
public:
    static constexpr std::size_t CHANGES = 4000;

    CHeldAttributes() : m_Held(100, CXMLAttribut("none", "none")) {
        for (int i = 0; i < 4000; ++i) {
            Root().CreateChild("c", nullptr)->SetAttribute("a", "a value of some length");
        }
        for (std::size_t i = 0; i < STEPS * CHANGES; ++i) {
            m_Names.push_back("n" + std::to_string(i));
        }
    }
    void Step(std::size_t step) {
        CXMLNode& node = *Root().GetFirstChild();
        for (std::size_t i = 0; i < CHANGES; ++i) {
            const std::string& name = m_Names[step * CHANGES + i];
            node.SetAttribute(name.c_str(), Letters(1 + Number(60)));
            m_Held[i % m_Held.size()] = *node.GetAttributes()[1];
            node.SetAttribute(name.c_str(), nullptr);
        }
    }

private:
    std::vector<CXMLAttribut> m_Held;
    std::vector<std::string> m_Names;
};

template <class Churn>
void Run(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        auto churn = std::make_unique<Churn>();
        state.ResumeTiming();
        for (std::size_t step = 0; step < STEPS; ++step) {
            churn->Step(step);
        }
        state.PauseTiming();
        churn.reset();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) *
                            static_cast<std::int64_t>(STEPS * Churn::CHANGES));
}

// Everything runs on threads that end before the heap is read, so that no cache hides a block.
template <class Churn>
double Kept() {
    std::unique_ptr<Churn> churn;
    CXMLDocumentPtr copy;
    std::size_t mostKept = 0;
    std::size_t mostLive = 0;
    std::thread([&] { Churn().Copy(); }).join();
    const std::size_t before = HeapInUse();
    std::thread([&] { churn = std::make_unique<Churn>(); }).join();
    std::thread([&] { copy = churn->Copy(); }).join();
    const std::size_t with = HeapInUse();
    std::thread([&] { copy.reset(); }).join();
    std::size_t kept = HeapInUse();
    // What the program itself holds beside the document.
    const std::size_t own = kept - before - (with - kept);
    for (std::size_t step = 0; step < STEPS; ++step) {
        std::thread([&] { churn->Step(step); }).join();
        kept = HeapInUse();
        std::thread([&] { copy = churn->Copy(); }).join();
        mostLive = std::max(mostLive, HeapInUse() - kept);
        std::thread([&] { copy.reset(); }).join();
        mostKept = std::max(mostKept, kept - before - own);
    }
    std::thread([&] { churn.reset(); }).join();
    return static_cast<double>(mostKept) / static_cast<double>(mostLive);
}

template <class Churn>
SChurn Row(const char* name) {
    return {name, &Run<Churn>, &Kept<Churn>};
}

}  // namespace

const std::vector<SChurn>& Churns() {
    static const std::vector<SChurn> churns = {
        Row<CTexts<GROWING>>("growing texts"),
        Row<CTexts<SHRINKING>>("shrinking texts"),
        Row<CTexts<ANY>>("texts of any size"),
        Row<CHeldAttributes>("held attributes"),
    };
    return churns;
}

}  // namespace norvask_bench
