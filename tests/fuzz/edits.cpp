// Changes a tree as the bytes say, and expects it to save, copy and load as what it is.
#include "fuzz/fuzzing.h"

using namespace norvask;
using namespace norvask_fuzz;

namespace {

const std::size_t MOST_NODES = 2000;

class CEditor {
public:
    CEditor(const std::uint8_t* data, std::size_t size) : m_pData(data), m_pEnd(data + size) {}

    void Run() {
        m_Document.reset(CXMLManager::GetInstance().CreateDocument(nullptr, nullptr));
        m_Document->CreateRoot("root");
        while (m_pData != m_pEnd)
            Edit();
        Check();
    }

private:
    unsigned Next() { return m_pData == m_pEnd ? 0 : *m_pData++; }

    const char* Name() {
        static const char* const names[] = {"a",         "b",    "item", "p:a", "a-b.c", "root",
                                            "x\xC3\xA9", "xml-", "_",    "a b", "",      "1"};
        return names[Next() % 12];
    }
    std::string Text() {
        std::string text;
        for (unsigned length = Next() % 40; length != 0; --length)
            text += static_cast<char>(Next());
        return text.c_str();
    }

    // A node below the root, each step chosen by a byte.
    CXMLNode* Node() {
        CXMLNode* node = m_Document->GetRoot();
        for (unsigned steps = Next() % 6; steps != 0; --steps) {
            CXMLNode** children = node->GetChildren();
            std::size_t count = 0;
            while (children[count])
                ++count;
            if (count == 0) break;
            node = children[Next() % count];
        }
        return node;
    }
    CXMLNode* Child(CXMLNode& node) {
        CXMLNode** children = node.GetChildren();
        for (unsigned steps = Next() % 4; steps != 0 && *children; --steps)
            ++children;
        return *children;
    }

    void Edit() {
        try {
            Apply(Next() % 20);
        } catch (CXMLException& e) {
            Require(e.GetID() >= 1 && e.GetID() <= 7, "another error");
        }
    }

    void Apply(unsigned operation) {
        CXMLNode* node = Node();
        switch (operation) {
            case 0:
            case 1: {
                CXMLNode* before = Child(*node);
                node->CreateChild(Name(), before);
                break;
            }
            case 2:
                node->CreateTextChild(Text().c_str());
                break;
            case 3:
                SetBytes(*node->CreateBinChild());
                break;
            case 4:
                node->DeleteChild(Child(*node));
                break;
            case 5:
                node->SetTagName(Name());
                break;
            case 6:
            case 7: {
                const char* name = Name();
                node->SetAttribute(name, Text().c_str());
                break;
            }
            case 8:
                node->SetAttribute(Name(), nullptr);
                break;
            case 9:
                node->SetTextChildValue(Text().c_str());
                break;
            case 10:
                Query(*node);
                break;
            case 11:
                Copy(*node);
                break;
            case 12:
                SetLeaf(*node);
                break;
            case 13:
                ChangeAttribute(*node);
                break;
            case 14:
                m_Kept.push_back(m_Attribute);
                break;
            case 15:
                m_Document->CreateRoot(Next() % 4 == 0 ? Name() : "root");
                break;
            case 16:
                m_Document.reset(m_Document->Clone());
                break;
            case 17:
                node->SetTextChildValue(node->GetTextChildValue());
                break;
            case 18:
                Rename(*node);
                break;
            default:
                m_Document->SetDTDRef(nullptr, nullptr);
                break;
        }
    }

    void SetBytes(CXMLBinNode& node) {
        const std::string bytes = Text();
        node.SetData(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
    }
    void SetLeaf(CXMLNode& node) {
        if (node.GetNodeType() == CXMLNode::NODE_TEXT) {
            CXMLTextNode& text = static_cast<CXMLTextNode&>(node);
            if (Next() % 2 == 0) {
                text.SetText(Text().c_str());
            } else {
                text.SetText(text.GetText() + (*text.GetText() == '\0' ? 0 : 1));
            }
        } else if (node.GetNodeType() == CXMLNode::NODE_BINARY) {
            SetBytes(static_cast<CXMLBinNode&>(node));
        }
    }
    void Copy(CXMLNode& node) {
        CXMLNode* source = Node();
        if (CountNodes(m_Document->GetRoot()) < MOST_NODES / 2) node.CopyChild(source, Child(node));
    }
    void Query(CXMLNode& node) {
        std::string path = Name();
        while (Next() % 3 == 1)
            path += std::string("/") + Name();
        CXMLNode** found =
            Next() % 2 == 0 ? node.GetNodes(path.c_str()) : m_Document->GetNodes(path.c_str());
        for (; *found; ++found)
            Require((*found)->GetTagName() != nullptr, "a node without a name");
    }
    // Attributes that the element finds again, that others hold, and that are copied about.
    void ChangeAttribute(CXMLNode& node) {
        CXMLAttribut** attributes = node.GetAttributes();
        if (*attributes == nullptr) return;
        switch (Next() % 4) {
            case 0:
                (*attributes)->SetValue(Text().c_str());
                break;
            case 1:
                m_Attribute = **attributes;
                break;
            case 2:
                **attributes = m_Attribute;
                break;
            default:
                (*attributes)->SetValue((*attributes)->GetName());
                break;
        }
    }
    void Rename(CXMLNode& node) {
        CXMLAttribut** attributes = node.GetAttributes();
        if (*attributes != nullptr) (*attributes)->SetName(Name());
    }

    static std::size_t CountNodes(CXMLNode* root) {
        std::size_t count = 0;
        std::vector<CXMLNode*> nodes(1, root);
        while (!nodes.empty()) {
            CXMLNode* node = nodes.back();
            nodes.pop_back();
            ++count;
            for (CXMLNode** child = node->GetChildren(); *child; ++child) {
                Require((*child)->GetParentNode() == node, "a child of another parent");
                nodes.push_back(*child);
            }
        }
        return count;
    }

    void Check() {
        CountNodes(m_Document->GetRoot());
        for (CXMLAttribut& attribute : m_Kept)
            Require(attribute.GetName() != nullptr, "an attribute without a name");
        const std::string saved = Saved(*m_Document, false);
        RequireSame("a second save differs", saved, Saved(*m_Document, false));
        if (IsError(saved)) return;
        Document clone;
        try {
            clone.reset(m_Document->Clone());
        } catch (CXMLException&) {
            Fail("a document that can be saved cannot be copied", saved, "");
        }
        // Attributes without a value are not copied, so the copy of the copy is the one to compare.
        const std::string copied = Saved(*clone, false);
        Document second(clone->Clone());
        RequireSame("a copy of a copy differs", copied, Saved(*second, false));
    }

    const std::uint8_t* m_pData;
    const std::uint8_t* m_pEnd;
    Document m_Document;
    CXMLAttribut m_Attribute{"kept", "value"};
    std::vector<CXMLAttribut> m_Kept;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    CEditor(data, size).Run();
    return 0;
}
