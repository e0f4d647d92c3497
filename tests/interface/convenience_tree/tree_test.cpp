// Conveniences for trees: what the ranges show, and what a loop may do to the tree meanwhile.
#include <algorithm>

#include "support/derived.h"
#include "support/testing.h"

using namespace norvask_test;

namespace {

std::string Listed(const CXMLNodeRange& range) {
    std::string line;
    for (CXMLNode* node : range) {
        if (!line.empty()) line += ' ';
        line += Described(*node);
    }
    return line;
}

std::string Listed(const CXMLAttributRange& range) {
    std::string line;
    for (CXMLAttribut* attribute : range) {
        if (!line.empty()) line += ' ';
        line += std::string(attribute->GetName()) + "=" + attribute->GetValue();
    }
    return line;
}

// A root with this many children c0, c1, ...
CXMLDocumentPtr Numbered(std::size_t children) {
    CXMLDocumentPtr document = XMLNewDocument("root");
    for (std::size_t i = 0; i < children; ++i)
        document->GetRoot()->CreateChild(("c" + std::to_string(i)).c_str(), nullptr);
    return document;
}

// Around the number that is kept without an allocation, and where arrays grow.
const std::size_t COUNTS[] = {0, 1, 2, 3, 7, 8, 9, 10, 16, 17, 100};

}  // namespace

TEST(ConvenienceTree, RangesShowWhatTheArraysShow) {
    CXMLDocumentPtr document =
        XMLLoadText("<r p='1' q='2'>text<a><b/></a><![CDATA[AAEC]]><c/><a k='v'/>end</r>");
    CXMLNode* root = document->GetRoot();
    EXPECT_EQ(Listed(XMLChildren(root)), Children(*root));
    EXPECT_EQ(Listed(XMLElements(root)), "a c a");
    EXPECT_EQ(Listed(XMLElements(root, "a")), "a a");
    EXPECT_EQ(Listed(XMLElements(root, "b")), "") << "children only";
    EXPECT_EQ(Listed(XMLElements(root, "")), "") << "not the texts, whose name is empty";
    EXPECT_EQ(Listed(XMLAttributes(root)), "p=1 q=2");
    EXPECT_EQ(Listed(XMLQuery(*document, "r/a/b")), "b");
    EXPECT_EQ(Listed(XMLQuery(root, "a")), "a a");
    EXPECT_EQ(Listed(XMLQuery(root, "x")), "");
    EXPECT_EQ(Listed(XMLQuery(root, nullptr)), "");
    EXPECT_TRUE(Same(XMLElements(root, "a")[1], root->GetNodes("a")[1]));
}

TEST(ConvenienceTree, RangesOfEverySize) {
    for (const std::size_t count : COUNTS) {
        SCOPED_TRACE(count);
        CXMLDocumentPtr document = Numbered(count);
        CXMLNode* root = document->GetRoot();
        const CXMLNodeRange children = XMLChildren(root);
        EXPECT_EQ(children.size(), count);
        EXPECT_EQ(children.empty(), count == 0);
        EXPECT_TRUE(std::equal(children.begin(), children.end(), root->GetChildren(),
                               root->GetChildren() + count));
        const CXMLNodeRange copy = children;
        CXMLNodeRange assigned = XMLChildren(Numbered(20)->GetRoot());
        assigned = copy;
        EXPECT_EQ(Listed(copy), Children(*root));
        EXPECT_EQ(Listed(assigned), Children(*root));
        CXMLNodeRange from = children;
        const CXMLNodeRange taken = std::move(from);
        EXPECT_EQ(Listed(taken), Children(*root));
        EXPECT_EQ(Listed(from), Children(*root)) << "a range is not emptied by std::move";
    }
}

TEST(ConvenienceTree, NullAndLeavesHaveNothing) {
    CXMLDocumentPtr document = XMLNewDocument();
    EXPECT_TRUE(XMLChildren(document->GetRoot()).empty());
    EXPECT_TRUE(XMLElements(nullptr).empty());
    EXPECT_TRUE(XMLElements(nullptr, "a").empty());
    EXPECT_TRUE(XMLAttributes(nullptr).empty());
    EXPECT_TRUE(XMLQuery(static_cast<CXMLNode*>(nullptr), "a").empty());
    EXPECT_TRUE(XMLQuery(*document, "a").empty());
    EXPECT_EQ(XMLFirstElement(nullptr), nullptr);
    CXMLNode* text = document->CreateRoot("a")->CreateTextChild("text");
    EXPECT_TRUE(XMLChildren(text).empty());
    EXPECT_TRUE(XMLElements(text).empty());
    EXPECT_TRUE(XMLAttributes(text).empty());
    EXPECT_TRUE(XMLQuery(text, "a").empty());
    EXPECT_EQ(XMLFirstElement(text), nullptr);
}

TEST(ConvenienceTree, FirstElement) {
    CXMLDocumentPtr document = XMLLoadText("<r>text<a k='1'/><b/><a k='2'/></r>");
    CXMLNode* root = document->GetRoot();
    EXPECT_TRUE(Same(XMLFirstElement(root), root->GetChildren()[1]));
    EXPECT_TRUE(Same(XMLFirstElement(root, "a"), root->GetChildren()[1]));
    EXPECT_TRUE(Same(XMLFirstElement(root, "b"), root->GetChildren()[2]));
    EXPECT_EQ(XMLFirstElement(root, "c"), nullptr);
}

TEST(ConvenienceTree, CastsAnswerTheNodeOrNull) {
    CXMLDocumentPtr document = XMLNewDocument("r");
    CXMLNode* element = document->GetRoot();
    CXMLNode* text = element->CreateTextChild("text");
    CXMLNode* binary = element->CreateBinChild();
    EXPECT_TRUE(Same(XMLAsText(text), text));
    EXPECT_EQ(std::string(XMLAsText(text)->GetText()), "text");
    EXPECT_EQ(XMLAsText(element), nullptr);
    EXPECT_EQ(XMLAsText(binary), nullptr);
    EXPECT_EQ(XMLAsText(nullptr), nullptr);
    EXPECT_TRUE(Same(XMLAsBinary(binary), binary));
    EXPECT_EQ(XMLAsBinary(element), nullptr);
    EXPECT_EQ(XMLAsBinary(text), nullptr);
    EXPECT_EQ(XMLAsBinary(nullptr), nullptr);
    EXPECT_TRUE(Same(XMLAsElement(element), element));
    EXPECT_EQ(XMLAsElement(text), nullptr);
    EXPECT_EQ(XMLAsElement(binary), nullptr);
    EXPECT_EQ(XMLAsElement(nullptr), nullptr);
}

TEST(ConvenienceTree, TheCurrentChildMayBeDeleted) {
    for (const std::size_t count : COUNTS) {
        for (std::size_t every = 1; every <= 3; ++every) {
            SCOPED_TRACE(std::to_string(count) + ", every " + std::to_string(every));
            CXMLDocumentPtr document = Numbered(count);
            CXMLNode* root = document->GetRoot();
            std::size_t seen = 0;
            std::string kept;
            for (CXMLNode* child : XMLChildren(root)) {
                EXPECT_EQ(child->GetTagName(), "c" + std::to_string(seen));
                if (seen++ % every == 0) {
                    root->DeleteChild(child);
                } else {
                    kept += (kept.empty() ? "" : " ") + std::string(child->GetTagName());
                }
            }
            EXPECT_EQ(seen, count);
            EXPECT_EQ(Children(*root), kept);
        }
    }
}

// The array is moved again and again, and a loop that came to the new ones would not end.
TEST(ConvenienceTree, ChildrenMayBeAddedAnywhere) {
    for (const std::size_t count : COUNTS) {
        SCOPED_TRACE(count);
        CXMLDocumentPtr document = Numbered(count);
        CXMLNode* root = document->GetRoot();
        std::size_t seen = 0;
        for (CXMLNode* child : XMLElements(root)) {
            EXPECT_EQ(child->GetTagName(), "c" + std::to_string(seen++));
            root->CreateChild("behind", nullptr);
            root->CreateChild("first", root->GetFirstChild());
            root->CreateChild("beside", child);
            root->CopyChild(child, nullptr);
        }
        EXPECT_EQ(seen, count);
        EXPECT_EQ(XMLChildren(root).size(), 5 * count);
    }
}

// The new one may well lie where the old one was.
TEST(ConvenienceTree, EachChildMayBeReplaced) {
    CXMLDocumentPtr document = Numbered(20);
    CXMLNode* root = document->GetRoot();
    std::string expected;
    for (CXMLNode* child : XMLChildren(root)) {
        const std::string name = std::string("new_") + child->GetTagName();
        root->CreateChild(name.c_str(), child);
        root->DeleteChild(child);
        expected += (expected.empty() ? "" : " ") + name;
    }
    EXPECT_EQ(Children(*root), expected);

    expected.clear();
    for (CXMLNode* child : XMLChildren(root)) {
        const std::string name = std::string("again_") + child->GetTagName();
        root->DeleteChild(child);
        root->CreateChild(name.c_str(), nullptr);
        expected += (expected.empty() ? "" : " ") + name;
    }
    EXPECT_EQ(Children(*root), expected);
}

TEST(ConvenienceTree, ThoseBeforeTheCurrentChildMayBeDeleted) {
    CXMLDocumentPtr document = Numbered(20);
    CXMLNode* root = document->GetRoot();
    std::size_t seen = 0;
    for (CXMLNode* child : XMLChildren(root)) {
        EXPECT_EQ(child->GetTagName(), "c" + std::to_string(seen++));
        while (root->GetFirstChild() != child)
            root->DeleteChild(root->GetFirstChild());
    }
    EXPECT_EQ(seen, 20U);
    EXPECT_EQ(Children(*root), "c19");
}

TEST(ConvenienceTree, ALoopMayLeaveBehindADeletion) {
    CXMLDocumentPtr document = Numbered(20);
    CXMLNode* root = document->GetRoot();
    for (CXMLNode* child : XMLChildren(root)) {
        if (std::string(child->GetTagName()) != "c4") continue;
        while (root->GetFirstChild() != nullptr)
            root->DeleteChild(root->GetFirstChild());
        break;
    }
    EXPECT_EQ(Children(*root), "");
}

TEST(ConvenienceTree, AttributesMayBeRemovedAddedAndRenamed) {
    for (const std::size_t count : COUNTS) {
        SCOPED_TRACE(count);
        CXMLDocumentPtr document = XMLNewDocument("root");
        CXMLNode* root = document->GetRoot();
        for (std::size_t i = 0; i < count; ++i)
            root->SetAttribute(("a" + std::to_string(i)).c_str(), std::to_string(i).c_str());
        std::size_t seen = 0;
        for (CXMLAttribut* attribute : XMLAttributes(root)) {
            const std::string name = attribute->GetName();
            EXPECT_EQ(name, "a" + std::to_string(seen));
            root->SetAttribute(("new" + std::to_string(seen)).c_str(), "1");
            if (seen % 2 == 0) {
                root->SetAttribute(name.c_str(), nullptr);
            } else {
                attribute->SetName(("old" + std::to_string(seen)).c_str());
            }
            ++seen;
        }
        EXPECT_EQ(seen, count);
        EXPECT_EQ(XMLAttributes(root).size(), count + count / 2);
    }
}

TEST(ConvenienceTree, AQueryMayBeAskedInTheLoopOverAnother) {
    CXMLDocumentPtr document =
        XMLLoadText("<r><a><b>1</b><b>2</b></a><a><b>3</b></a><c/><c/><c/></r>");
    CXMLNode* root = document->GetRoot();
    std::string seen;
    for (CXMLNode* outer : XMLQuery(*document, "r/a")) {
        seen += std::to_string(XMLQuery(*document, "r/c").size()) + ":";
        for (CXMLNode* inner : XMLQuery(root, "a/b")) {
            if (inner->GetParentNode() == outer) seen += inner->GetTextChildValue();
            XMLQuery(*document, "r/a/b");
        }
        seen += " ";
    }
    EXPECT_EQ(seen, "3:12 3:3 ");
    for (CXMLNode* found : XMLQuery(*document, "r/a/b"))
        found->GetParentNode()->DeleteChild(found);
    EXPECT_EQ(SavedBody(*document), "<r><a/><a/><c/><c/><c/></r>");
}

TEST(ConvenienceTree, RangesGoToAlgorithms) {
    CXMLDocumentPtr document = XMLLoadText("<r><c/><a/><b/></r>");
    const CXMLNodeRange children = XMLChildren(document->GetRoot());
    std::vector<CXMLNode*> sorted(children.begin(), children.end());
    std::sort(sorted.begin(), sorted.end(), [](CXMLNode* a, CXMLNode* b) {
        return std::string(a->GetTagName()) < b->GetTagName();
    });
    CXMLNodeRange own;
    for (CXMLNode* node : sorted)
        own.Add(node);
    EXPECT_EQ(Listed(own), "a b c");
}

// Overrides of a class of the client's own are asked.
TEST(ConvenienceTree, RangesAskOverrides) {
    class CHiding : public CElementProbe {
    public:
        CHiding() : CElementProbe("e") {}
        CXMLNode** GetChildren() override {
            static CXMLNode* none[] = {nullptr};
            return none;
        }
    };
    CHiding node;
    node.CreateChild("a", nullptr);
    EXPECT_TRUE(XMLChildren(&node).empty());
    EXPECT_TRUE(XMLElements(&node).empty());
    EXPECT_NE(node.GetFirstChild(), nullptr);
}
