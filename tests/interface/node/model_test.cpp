// Thousands of random operations, done to the library and to a plain model of it, which must agree
// after every step. The seeds are fixed, so a failure comes back.
#include "support/random_text.h"
#include "support/testing.h"

using namespace norvask_test;

namespace {

// --- Attributes of one element: a list of pairs, searched from the front.

using Pair = std::pair<std::string, std::string>;

struct SAttributeModel {
    std::vector<Pair> pairs;

    std::size_t Find(const std::string& name) const {
        std::size_t i = 0;
        while (i < pairs.size() && pairs[i].first != name)
            ++i;
        return i;
    }
    void Set(const std::string& name, const std::string& value) {
        const std::size_t i = Find(name);
        if (value.empty()) {
            if (i < pairs.size()) pairs.erase(pairs.begin() + static_cast<std::ptrdiff_t>(i));
        } else if (i < pairs.size()) {
            pairs[i].second = value;
        } else {
            pairs.emplace_back(name, value);
        }
    }
    SAttributeModel Copied() const {
        SAttributeModel copy;
        for (const Pair& pair : pairs)
            copy.Set(pair.first, pair.second);
        return copy;
    }
    std::string Listed() const {
        std::string line;
        for (const Pair& pair : pairs)
            line += (line.empty() ? "" : " ") + pair.first + "=" + pair.second;
        return line;
    }
};

// --- A tree: nodes that own their children.

struct SNode {
    CXMLNode::NodeType kind;
    std::string content;  // name, text or bytes
    SNode* parent;
    std::vector<std::unique_ptr<SNode>> children;
    CXMLNode* node;
};

std::unique_ptr<SNode> Copied(const SNode& source, SNode* parent) {
    auto copy = std::make_unique<SNode>();
    copy->kind = source.kind;
    copy->content = source.content;
    copy->parent = parent;
    copy->node = nullptr;
    for (const auto& child : source.children)
        copy->children.push_back(Copied(*child, copy.get()));
    return copy;
}

// Brings the addresses of the library's copy into the model's.
void Bind(SNode& model, CXMLNode* node) {
    model.node = node;
    CXMLNode** children = node->GetChildren();
    ASSERT_EQ(Count(children), model.children.size());
    for (std::size_t i = 0; i < model.children.size(); ++i) {
        ASSERT_EQ(children[i]->GetParentNode(), node);
        Bind(*model.children[i], children[i]);
    }
}

void Collect(SNode& model, std::vector<SNode*>& all) {
    all.push_back(&model);
    for (const auto& child : model.children)
        Collect(*child, all);
}

void Write(const SNode& model, bool format, const std::string& indent, std::string& out) {
    if (model.kind == CXMLNode::NODE_TEXT) {
        out += model.content;
    } else if (model.kind == CXMLNode::NODE_BINARY) {
        out += "<![CDATA[" + std::string(model.content.empty() ? "" : "QUJD\n") + "]]>";
    } else if (model.children.empty()) {
        out += "<" + model.content + "/>";
    } else {
        out += "<" + model.content + ">";
        bool isMixed = false;
        for (const auto& child : model.children) {
            isMixed = isMixed || child->kind != CXMLNode::NODE_ELEMENT;
            if (format && !isMixed) out += "\r\n" + indent + "\t";
            Write(*child, format, indent + "\t", out);
        }
        if (format && !isMixed) out += "\r\n" + indent;
        out += "</" + model.content + ">";
    }
}

void Select(const SNode& model, const std::vector<std::string>& steps, std::size_t step,
            std::vector<CXMLNode*>& found) {
    for (const auto& child : model.children) {
        const bool isElement = child->kind == CXMLNode::NODE_ELEMENT;
        if ((isElement ? child->content : "") != steps[step]) continue;
        if (step + 1 == steps.size())
            found.push_back(child->node);
        else if (isElement)
            Select(*child, steps, step + 1, found);
    }
}

class TreeModel {
public:
    explicit TreeModel(unsigned int seed) : m_Random(seed) { Replace(); }

    void Step();
    void Check();

private:
    std::string Name() { return std::string(1, static_cast<char>('a' + m_Random.Number(4))); }
    SNode* Any() { return m_All[m_Random.Number(m_All.size())]; }
    SNode* AnyElement() {
        SNode* model = Any();
        while (model->kind != CXMLNode::NODE_ELEMENT)
            model = Any();
        return model;
    }
    void Refresh() {
        m_All.clear();
        Collect(*m_pRoot, m_All);
    }
    void Insert(SNode* parent, std::unique_ptr<SNode> child, const SNode* before);
    void Replace();
    void Add();
    void Copy();
    void Delete();

    RandomText m_Random;
    Document m_Document = NewDocument();
    std::unique_ptr<SNode> m_pRoot;
    std::vector<SNode*> m_All;
};

void TreeModel::Replace() {
    const std::string name = Name();
    m_pRoot.reset(new SNode{CXMLNode::NODE_ELEMENT, name, nullptr, {}, nullptr});
    m_pRoot->node = m_Document->CreateRoot(name.c_str());
    Refresh();
}

// In front of `before`, which when it is no child means in front of all; behind all for nullptr.
void TreeModel::Insert(SNode* parent, std::unique_ptr<SNode> child, const SNode* before) {
    auto place = before ? parent->children.begin() : parent->children.end();
    for (auto i = parent->children.begin(); i != parent->children.end(); ++i) {
        if (before && i->get() == before) place = i;
    }
    parent->children.insert(place, std::move(child));
    Refresh();
}

void TreeModel::Add() {
    SNode* parent = AnyElement();
    auto child = std::make_unique<SNode>();
    child->parent = parent;
    const SNode* before = nullptr;
    switch (m_Random.Number(4)) {
        case 0:
            child->kind = CXMLNode::NODE_TEXT;
            child->content = Name();
            child->node = parent->node->CreateTextChild(child->content.c_str());
            break;
        case 1: {
            child->kind = CXMLNode::NODE_BINARY;
            child->content = m_Random.Number(2) ? "ABC" : "";
            CXMLBinNode* binary = parent->node->CreateBinChild();
            SetBytes(*binary, child->content);
            child->node = binary;
            break;
        }
        default:
            child->kind = CXMLNode::NODE_ELEMENT;
            child->content = Name();
            before = m_Random.Number(2) ? Any() : nullptr;
            child->node =
                parent->node->CreateChild(child->content.c_str(), before ? before->node : nullptr);
    }
    Insert(parent, std::move(child), before);
}

void TreeModel::Copy() {
    const SNode* source = Any();
    SNode* parent = AnyElement();
    const SNode* before =
        source->kind == CXMLNode::NODE_ELEMENT && m_Random.Number(2) ? Any() : nullptr;
    auto copy = Copied(*source, parent);
    SNode& added = *copy;
    CXMLNode* node = parent->node->CopyChild(source->node, before ? before->node : nullptr);
    Insert(parent, std::move(copy), before);
    Bind(added, node);
}

void TreeModel::Delete() {
    SNode* model = Any();
    SNode* parent = model->parent;
    if (!parent) return;
    parent->node->DeleteChild(model->node);
    for (auto i = parent->children.begin(); i != parent->children.end(); ++i) {
        if (i->get() != model) continue;
        parent->children.erase(i);
        break;
    }
    Refresh();
}

void TreeModel::Step() {
    if (m_All.size() > 300 && m_Random.Number(4) == 0) {
        Replace();
        return;
    }
    switch (m_Random.Number(8)) {
        case 0:
            Delete();
            break;
        case 1:
        case 2:
            if (m_All.size() < 300) Copy();
            break;
        case 3: {
            SNode* element = AnyElement();
            element->content = Name();
            element->node->SetTagName(element->content.c_str());
            break;
        }
        case 4:
            if (m_Random.Number(10) == 0) {
                m_Document.reset(m_Document->Clone());
                Bind(*m_pRoot, m_Document->GetRoot());
            }
            break;
        default:
            Add();
    }
}

void TreeModel::Check() {
    for (const bool format : {false, true}) {
        std::string expected = DECLARATION + (format ? "\r\n" : "");
        Write(*m_pRoot, format, "", expected);
        ASSERT_EQ(Saved(m_Document, format), expected);
    }
    std::vector<std::string> steps(1 + m_Random.Number(3));
    std::string path;
    for (std::string& step : steps) {
        if (m_Random.Number(8)) step = Name();
        path += (&step == &steps[0] ? "" : "/") + step;
    }
    if (steps.back().empty())
        path += '/';  // a slash at the end adds nothing, so one more is needed
    const SNode* asked = AnyElement();
    std::vector<CXMLNode*> expected;
    Select(*asked, steps, 0, expected);
    CXMLNode** nodes = asked->node->GetNodes(path.c_str());
    ASSERT_EQ(std::vector<CXMLNode*>(nodes, nodes + Count(nodes)), expected) << path;
}

}  // namespace

TEST(Model, OfAttributesAgreesAfterEveryStep) {
    for (unsigned int seed = 1; seed <= 10; ++seed) {
        RandomText random(seed);
        const Document document = NewDocumentWithRoot("r");
        CXMLNode* root = document->GetRoot();
        SAttributeModel model;
        std::vector<CXMLAttribut> kept;
        std::vector<Pair> keptModel;
        const std::size_t names = seed % 2 ? 6 : 120;  // few attributes, or very many
        const auto name = [&] { return "n" + std::to_string(random.Number(names)); };
        const auto value = [&] {
            return random.Number(4) ? std::string(random.Number(60) + 1, 'v') : std::string();
        };
        for (int step = 0; step < 1000; ++step) {
            CXMLAttribut** attributes = root->GetAttributes();
            const std::size_t count = model.pairs.size();
            const std::size_t i = count ? random.Number(count) : 0;
            const std::size_t action = count ? random.Number(19) : 0;
            if (action < 12) {
                const std::string n = name(), v = value();
                root->SetAttribute(n.c_str(), v.c_str());
                model.Set(n, v);
            } else if (action == 12) {
                model.pairs[i].first = name();
                attributes[i]->SetName(model.pairs[i].first.c_str());
            } else if (action == 13) {
                model.pairs[i].second = value();
                attributes[i]->SetValue(model.pairs[i].second.c_str());
            } else if (action == 14) {
                const std::size_t j = random.Number(count);
                model.pairs[i] = Pair(model.pairs[j]);
                *attributes[i] = *attributes[j];
            } else if (action == 15) {
                kept.push_back(*attributes[i]);
                keptModel.push_back(model.pairs[i]);
            } else if (action == 16 && !kept.empty()) {
                const std::size_t j = random.Number(kept.size());
                model.pairs[i] = keptModel[j];
                *attributes[i] = kept[j];
            } else if (action == 17) {
                const Document clone(document->Clone());
                ASSERT_EQ(Attributes(*clone->GetRoot()), model.Copied().Listed());
            } else {
                root->SetAttribute(attributes[i]->GetName(), nullptr);
                model.Set(Pair(model.pairs[i]).first, "");
            }
            ASSERT_EQ(Attributes(*root), model.Listed()) << "seed " << seed << " step " << step;
            const std::string n = name();
            const std::size_t at = model.Find(n);
            ASSERT_EQ(root->GetAttributeValue(n.c_str()),
                      at < model.pairs.size() ? model.pairs[at].second : "")
                << "seed " << seed << " step " << step << " name " << n;
        }
        for (std::size_t i = 0; i < kept.size(); ++i) {
            ASSERT_EQ(kept[i].GetName(), keptModel[i].first);
            ASSERT_EQ(kept[i].GetValue(), keptModel[i].second);
        }
    }
}

TEST(Model, OfTreesAgreesAfterEveryStep) {
    for (unsigned int seed = 1; seed <= 10; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        TreeModel model(seed);
        for (int step = 0; step < 400 && !HasFailure(); ++step) {
            SCOPED_TRACE("step " + std::to_string(step));
            model.Step();
            model.Check();
        }
    }
}
