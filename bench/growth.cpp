// How the time of edits grows with the size of what is edited.

#include <algorithm>
#include <cstddef>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "cpu_time.h"
#include "edits.h"
#include "norvask/norvask.h"

namespace norvask_bench {

namespace {

using norvask::CXMLAttribut;
using norvask::CXMLDocumentPtr;
using norvask::CXMLNode;
using norvask::XMLNewDocument;

constexpr std::size_t TIMES = 8;

void Require(bool holds, const char* what) {
    if (!holds) throw std::runtime_error(std::string("growth: ") + what);
}

template <class Edit>
double Timed(Edit edit) {
    const double start = CpuSeconds();
    edit();
    return CpuSeconds() - start;
}

std::vector<CXMLNode*> AddChildren(CXMLNode& parent, std::size_t n) {
    std::vector<CXMLNode*> children(n);
    for (CXMLNode*& child : children) {
        child = parent.CreateChild("c", nullptr);
    }
    return children;
}

std::vector<std::string> AddAttributes(CXMLNode& node, std::size_t n) {
    for (std::size_t i = 0; i < n; ++i) {
        node.SetAttribute(("a" + std::to_string(i)).c_str(), "value");
    }
    std::vector<std::string> names(n);
    for (std::size_t i = 0; i < n; ++i) {
        names[i] = "b" + std::to_string(i);
    }
    return names;
}

// --- Attributes

double RenameAndLookUp(std::size_t n) {
    const CXMLDocumentPtr document = XMLNewDocument("r");
    CXMLNode& root = *document->GetRoot();
    const std::vector<std::string> names = AddAttributes(root, n);
    std::size_t found = 0;
    const double time = Timed([&] {
        for (std::size_t i = 0; i < n; ++i) {
            root.GetAttributes()[i]->SetName(names[i].c_str());
            found += *root.GetAttributeValue(names[i].c_str()) == 'v';
        }
    });
    Require(found == n, "a renamed attribute is not found");
    return time;
}

double RenameElsewhereAndLookUp(std::size_t n) {
    const CXMLDocumentPtr document = XMLNewDocument("r");
    const CXMLDocumentPtr other = XMLNewDocument("r");
    CXMLNode& root = *document->GetRoot();
    CXMLNode& otherRoot = *other->GetRoot();
    AddAttributes(root, n);
    const std::vector<std::string> names = AddAttributes(otherRoot, n);
    Require(*otherRoot.GetAttributeValue("a0") == 'v', "an attribute is not found");
    std::size_t found = 0;
    const double time = Timed([&] {
        for (std::size_t i = 0; i < n; ++i) {
            otherRoot.GetAttributes()[i]->SetName(names[i].c_str());
            found += *root.GetAttributeValue("a0") == 'v';
        }
    });
    Require(found == n, "an attribute is not found after renames in another document");
    return time;
}

double RenameToOneNameAndRemove(std::size_t n) {
    const CXMLDocumentPtr document = XMLNewDocument("r");
    CXMLNode& root = *document->GetRoot();
    AddAttributes(root, n);
    const double time = Timed([&] {
        for (std::size_t i = 0; i < n; ++i) {
            root.GetAttributes()[i]->SetName("same");
        }
        for (std::size_t i = 0; i < n; ++i) {
            root.SetAttribute("same", "");
        }
    });
    Require(root.GetAttributes()[0] == nullptr, "attributes are left");
    return time;
}

// --- Copies

class CCopy : public CXMLNode {
public:
    explicit CCopy(const CXMLNode& other) : CXMLNode(other) {}
    ~CCopy() override = default;
};

double DestroyCopies(std::size_t n, bool make) {
    const CXMLDocumentPtr document = XMLNewDocument("r");
    CXMLNode& root = *document->GetRoot();
    AddChildren(root, n);
    std::vector<std::unique_ptr<CCopy>> copies(n);
    const double time = Timed([&] {
        for (std::unique_ptr<CCopy>& copy : copies) {
            copy = std::make_unique<CCopy>(root);
            if (make) copy->CreateChild("made", nullptr);
        }
        copies.clear();
    });
    std::size_t count = 0;
    bool orphans = true;
    for (CXMLNode** child = root.GetChildren(); *child != nullptr; ++child) {
        orphans = orphans && (*child)->GetParentNode() == (count < n ? &root : nullptr);
        ++count;
    }
    Require(count == (make ? 2 * n : n) && orphans,
            "copies that were destroyed have left their traces");
    return time;
}

// --- Children

enum EPlace { FRONT, BACK, MIDDLE };

double DeleteChildren(std::size_t n, EPlace where) {
    const CXMLDocumentPtr document = XMLNewDocument("r");
    CXMLNode& root = *document->GetRoot();
    std::vector<CXMLNode*> children = AddChildren(root, n);
    if (where == BACK) std::reverse(children.begin(), children.end());
    if (where == MIDDLE) {
        std::vector<CXMLNode*> outwards;
        for (std::size_t i = 0; i < n; ++i) {
            outwards.push_back(children[i % 2 != 0 ? n / 2 - 1 - i / 2 : n / 2 + i / 2]);
        }
        children = outwards;
    }
    const double time = Timed([&] {
        for (CXMLNode* child : children) {
            root.DeleteChild(child);
        }
    });
    Require(root.GetFirstChild() == nullptr, "children are left");
    return time;
}

double Empty(std::size_t n) {
    const CXMLDocumentPtr document = XMLNewDocument("r");
    CXMLNode& root = *document->GetRoot();
    AddChildren(root, n);
    return Timed([&] {
        while (CXMLNode* child = root.GetFirstChild()) {
            root.DeleteChild(child);
        }
    });
}

double InsertInFront(std::size_t n) {
    const CXMLDocumentPtr document = XMLNewDocument("r");
    CXMLNode& root = *document->GetRoot();
    const double time = Timed([&] {
        for (std::size_t i = 0; i < n; ++i) {
            root.CreateChild("c", root.GetFirstChild());
        }
    });
    std::size_t count = 0;
    for (CXMLNode** child = root.GetChildren(); *child != nullptr; ++child) {
        ++count;
    }
    Require(count == n, "children are missing");
    return time;
}

// The best of several runs, of which the first two warm up.
double Best(const SGrowth& growth, std::size_t n) {
    double best = growth.time(n);
    double all = best;
    for (int run = 1; run < 3 || (run < 40 && all < 0.5); ++run) {
        const double time = growth.time(n);
        best = std::min(best, time);
        all += time;
    }
    return best;
}

}  // namespace

const std::vector<SGrowth>& Growths() {
    static const std::vector<SGrowth> growths = {
        {GROWTH, "rename, look up", 1000, &RenameAndLookUp},
        {GROWTH, "rename elsewhere", 1000, &RenameElsewhereAndLookUp},
        {GROWTH, "rename to one", 1000, &RenameToOneNameAndRemove},
        {GROWTH, "destroy copies", 1000, [](std::size_t n) { return DestroyCopies(n, false); }},
        {GROWTH, "destroy, child made", 1000, [](std::size_t n) { return DestroyCopies(n, true); }},
        {GROWTH, "delete, front", 5000, [](std::size_t n) { return DeleteChildren(n, FRONT); }},
        {GROWTH, "delete, back", 5000, [](std::size_t n) { return DeleteChildren(n, BACK); }},
        {GROWTH, "empty", 5000, &Empty},
        {GROWTH, "insert, front", 5000, &InsertInFront},
        {GROWTH_INSIDE, "delete, middle", 5000,
         [](std::size_t n) { return DeleteChildren(n, MIDDLE); }},
    };
    return growths;
}

double MeasureGrowth(const SGrowth& growth) {
    const double few = Best(growth, growth.n);
    const double many = Best(growth, TIMES * growth.n);
    std::cerr << "  " << growth.name << ": " << growth.n << " in " << few * 1e3 << " ms, "
              << TIMES * growth.n << " in " << many * 1e3 << " ms\n";
    return many / few / static_cast<double>(TIMES);
}

}  // namespace norvask_bench
