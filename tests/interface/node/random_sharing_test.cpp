// Random programs over a few small documents: nodes, attributes and documents assigned to each
// other, copied, created, deleted and asked, objects of derived classes among them, which also
// stand in child arrays. Beside the library runs a plain model, which says what each object must
// show, and which objects of derived classes must have been destroyed by now.
//
// Every run does the seeds 1 to 400. Others, by the hundred thousand in a build with sanitizers:
//
//     export NORVASK_SEEDS_FROM=1 NORVASK_SEEDS_TO=100000
//     norvask_interface_tests --gtest_filter='RandomSharing.*'
//
// A report of the sanitizers ends with the seed and the step that were running. In every fifth
// program a node may show what stands above it, directly or through others. Such a ring, when
// nothing else shows it, goes with the memory of its tree only; so those programs have one tree,
// and the others have no rings.
#include <norvask/norvask.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "support/derived.h"
#include "support/random_text.h"
#include "support/sanitizers.h"
#include "support/tree.h"
#include "support/vocabulary.h"

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/common_interface_defs.h>
#endif

using namespace norvask;
using namespace norvask_test;

namespace {

using Pair = std::pair<std::string, std::string>;

const unsigned int LAST_SEED = 400;
const std::size_t STEPS = 150;
const std::size_t MOST_NODES = 50;     // that a program goes on adding to
const std::size_t MOST_WRITTEN = 300;  // nodes that are saved or copied at once

unsigned int s_nSeed = 0;
std::size_t s_nStep = 0;

#if defined(__SANITIZE_ADDRESS__)
void NameTheProgram() {
    std::fprintf(stderr, "RandomSharing: seed %u, step %zu\n", s_nSeed, s_nStep);
}
#endif

// --- The model. An object shows a content, which its copies and assignments share.

struct SContent;

struct SObject {
    CXMLNode* node = nullptr;
    SContent* content = nullptr;  // NULL: the object has been destroyed
    bool isDerived = false;
    bool isDestroyed = false;  // set by the destructor of the object of a derived class
};

struct SContent {
    CXMLNode::NodeType kind = CXMLNode::NODE_ELEMENT;
    std::string text;  // name, text or bytes
    std::vector<SObject*> children;
    std::vector<Pair> attributes;
    std::size_t owners = 1;
    const SObject* parent = nullptr;
    bool isParentKnown = true;  // false: whatever it says will do
    std::size_t visit = 0;
};

// What a deep copy must look like: as the source stood at the call.
struct STree {
    CXMLNode::NodeType kind;
    std::string text;
    std::vector<Pair> attributes;
    std::vector<STree> children;
};

// The tree that documents share.
struct SRoot {
    SObject* object;
};

struct SDocument {
    Document library;  // one of the two
    std::unique_ptr<CDocumentProbe> probe;
    std::shared_ptr<SRoot> root;

    CXMLDocument& Get() const { return probe ? *probe : *library; }
};

// An object of a derived class that tells the model when it is destroyed.
template <typename Probe>
class CWatched : public Probe {
public:
    template <typename... Arguments>
    explicit CWatched(SObject& object, Arguments&&... arguments)
        : Probe(std::forward<Arguments>(arguments)...), m_Object(object) {}
    CWatched(const CWatched&) = delete;
    CWatched& operator=(const CWatched&) = delete;
    ~CWatched() override { m_Object.isDestroyed = true; }

private:
    SObject& m_Object;
};

std::size_t Find(const std::vector<Pair>& attributes, const std::string& name) {
    std::size_t i = 0;
    while (i < attributes.size() && attributes[i].first != name)
        ++i;
    return i;
}

void Set(std::vector<Pair>& attributes, const std::string& name, const std::string& value) {
    const std::size_t i = Find(attributes, name);
    if (value.empty()) {
        if (i < attributes.size())
            attributes.erase(attributes.begin() + static_cast<std::ptrdiff_t>(i));
    } else if (i < attributes.size()) {
        attributes[i].second = value;
    } else {
        attributes.emplace_back(name, value);
    }
}

STree Snapshot(const SContent& content) {
    STree tree{content.kind, content.text, {}, {}};
    for (const Pair& pair : content.attributes)
        Set(tree.attributes, pair.first, pair.second);
    for (const SObject* child : content.children)
        tree.children.push_back(Snapshot(*child->content));
    return tree;
}

// How many nodes a walk over the content meets, as far as that is no more than `most`.
std::size_t Unfolded(const SContent& content, std::size_t most) {
    std::size_t count = 1;
    for (const SObject* child : content.children) {
        if (count > most) break;
        count += Unfolded(*child->content, most - count);
    }
    return count;
}

// Bytes are "ABC" again and again, and few enough for one line of Base64.
void Write(const SContent& content, std::string& out) {
    if (content.kind == CXMLNode::NODE_TEXT) {
        out += content.text;
        return;
    }
    if (content.kind == CXMLNode::NODE_BINARY) {
        out += "<![CDATA[";
        for (std::size_t i = 0; i < content.text.size(); i += 3)
            out += "QUJD";
        out += content.text.empty() ? "]]>" : "\n]]>";
        return;
    }
    out += "<" + content.text;
    for (const Pair& pair : content.attributes)
        out += " " + pair.first + "=\"" + pair.second + "\"";
    if (content.children.empty()) {
        out += "/>";
        return;
    }
    out += ">";
    for (const SObject* child : content.children)
        Write(*child->content, out);
    out += "</" + content.text + ">";
}

void Select(const SContent& content, const std::vector<std::string>& steps, std::size_t step,
            std::vector<CXMLNode*>& found) {
    for (const SObject* child : content.children) {
        const bool isElement = child->content->kind == CXMLNode::NODE_ELEMENT;
        if ((isElement ? child->content->text : "") != steps[step]) continue;
        if (step + 1 == steps.size())
            found.push_back(child->node);
        else if (isElement)
            Select(*child->content, steps, step + 1, found);
    }
}

class CProgram {
public:
    explicit CProgram(unsigned int seed)
        : m_Random(seed), m_bRings(seed % 5 == 0), m_bLooksAtArrays(seed % 2 == 0) {}

    void Run();

private:
    // What the model keeps; objects stay until the program ends, whatever became of them.
    SObject& NewObject(CXMLNode* node, SContent& content, bool isDerived = false);
    SContent& NewContent(CXMLNode::NodeType kind, const std::string& text, const SObject* parent);
    SObject& Bind(const STree& tree, CXMLNode* node, const SObject* parent);
    void Leave(SContent& content, const SObject& object);
    void Destroy(SObject& object);
    void Assign(SObject& to, SObject& from);
    void SetRoot(SDocument& document, std::shared_ptr<SRoot> root);

    // Choosing.
    bool OneIn(std::size_t number) { return m_Random.Number(number) == 0; }
    template <typename T>
    T& Any(std::vector<T>& all) {
        return all[m_Random.Number(all.size())];
    }
    std::string Name() { return std::string(1, static_cast<char>('a' + m_Random.Number(3))); }
    std::string Text() {
        return std::string(OneIn(3) ? 1 + m_Random.Number(60) : 1 + m_Random.Number(4),
                           static_cast<char>('k' + m_Random.Number(10)));
    }
    std::string Data() {
        std::string bytes;
        for (std::size_t i = m_Random.Number(13); i > 0; --i)
            bytes += "ABC";
        return bytes;
    }
    std::string ContentText(CXMLNode::NodeType kind) {
        return kind == CXMLNode::NODE_ELEMENT ? Name()
               : kind == CXMLNode::NODE_TEXT  ? Text()
                                              : Data();
    }
    std::vector<SObject*> Reachable(const SObject* without = nullptr);
    SObject* AnyElement() {
        std::vector<SObject*> elements;
        for (SObject* object : m_All) {
            if (object->content->kind == CXMLNode::NODE_ELEMENT) elements.push_back(object);
        }
        return elements.empty() ? nullptr : Any(elements);
    }
    static bool Reaches(const SContent& from, const SContent& to);

    // The operations. All choose among what is reachable, which m_All holds.
    void Step();
    void AssignNodes();
    void DeleteNode();
    void AddNode();
    void AddDerivedChild();
    void CopyNode();
    void MakeDerived();
    void DropDerived();
    void ChangeContent();
    void ChangeAttributes();
    void ShareAttributes();
    void ChangeDocuments();
    void AddDocument();

    // What must hold.
    void CheckObject(SObject& object);
    void CheckSaved();
    void CheckQuery();
    void CheckDestroyed();
    void CheckAll();

    RandomText m_Random;
    const bool m_bRings;
    // Otherwise the child arrays of many trees are never asked for, and such trees may be destroyed
    // in other ways.
    const bool m_bLooksAtArrays;
    std::vector<std::unique_ptr<SObject>> m_Objects;
    std::vector<std::unique_ptr<SContent>> m_Contents;
    std::vector<SObject*> m_All;
    std::vector<SDocument> m_Documents;
    std::vector<SObject*> m_Derived;  // that stand in no child array
    std::vector<SObject*> m_Watched;  // all of derived classes, destroyed or not
    std::vector<CXMLAttribut> m_Attributes;
    std::vector<Pair> m_AttributeModels;
    std::size_t m_nVisit = 0;
};

// --- What the model keeps

SObject& CProgram::NewObject(CXMLNode* node, SContent& content, bool isDerived) {
    m_Objects.push_back(std::make_unique<SObject>());
    SObject& object = *m_Objects.back();
    object.node = node;
    object.content = &content;
    object.isDerived = isDerived;
    if (isDerived) m_Watched.push_back(&object);
    return object;
}

SContent& CProgram::NewContent(CXMLNode::NodeType kind, const std::string& text,
                               const SObject* parent) {
    m_Contents.push_back(std::make_unique<SContent>());
    SContent& content = *m_Contents.back();
    content.kind = kind;
    content.text = text;
    content.parent = parent;
    return content;
}

// A deep copy that the library has made comes into the model.
SObject& CProgram::Bind(const STree& tree, CXMLNode* node, const SObject* parent) {
    SContent& content = NewContent(tree.kind, tree.text, parent);
    content.attributes = tree.attributes;
    SObject& object = NewObject(node, content);
    if (tree.children.empty()) {
        EXPECT_EQ(node->GetFirstChild(), nullptr);
        return object;
    }
    CXMLNode** children = node->GetChildren();
    EXPECT_EQ(Count(children), tree.children.size());
    for (std::size_t i = 0; i < tree.children.size() && children[i]; ++i)
        content.children.push_back(&Bind(tree.children[i], children[i], &object));
    return object;
}

// The object shows the content no more.
void CProgram::Leave(SContent& content, const SObject& object) {
    if (--content.owners != 0) {
        for (SObject* child : content.children) {
            if (child->content->parent == &object) child->content->parent = nullptr;
        }
        return;
    }
    const std::vector<SObject*> children = std::move(content.children);
    content.children.clear();
    for (SObject* child : children)
        Destroy(*child);
}

void CProgram::Destroy(SObject& object) {
    SContent& content = *object.content;
    object.content = nullptr;
    if (content.owners > 1 && !object.isDerived) {
        // Copies have no parent that has been destroyed. Another parent they may keep or forget.
        if (content.parent && content.parent->content) content.isParentKnown = false;
        content.parent = nullptr;
    }
    Leave(content, object);
}

void CProgram::Assign(SObject& to, SObject& from) {
    SContent& old = *to.content;
    SContent& shown = *from.content;
    if (&old == &shown) return;
    if (old.kind != shown.kind) {
        old.parent = shown.parent;
        old.isParentKnown = shown.isParentKnown;
        return;
    }
    ++shown.owners;
    to.content = &shown;
    Leave(old, to);
}

void CProgram::SetRoot(SDocument& document, std::shared_ptr<SRoot> root) {
    std::shared_ptr<SRoot> old = std::move(document.root);
    document.root = std::move(root);
    if (old && old.use_count() == 1 && old->object) Destroy(*old->object);
}

// --- Choosing

// The objects that stand in a document or below an object that the program holds, in the order in
// which a walk meets them.
std::vector<SObject*> CProgram::Reachable(const SObject* without) {
    ++m_nVisit;
    std::vector<SObject*> all;
    const auto add = [&](SObject* object) {
        if (object && object != without) all.push_back(object);
    };
    for (const SDocument& document : m_Documents) {
        SObject* root = document.root->object;
        if (std::find(all.begin(), all.end(), root) == all.end()) add(root);
    }
    for (SObject* object : m_Derived)
        add(object);
    for (std::size_t i = 0; i < all.size(); ++i) {
        SContent& content = *all[i]->content;
        if (content.visit == m_nVisit) continue;
        content.visit = m_nVisit;
        for (SObject* child : content.children)
            add(child);
    }
    return all;
}

bool CProgram::Reaches(const SContent& from, const SContent& to) {
    if (&from == &to) return true;
    for (const SObject* child : from.children) {
        if (Reaches(*child->content, to)) return true;
    }
    return false;
}

// --- The operations

void CProgram::AssignNodes() {
    SObject* to = Any(m_All);
    SObject* from = Any(m_All);
    for (int i = 0; i < 6 && (from == to || from->content->kind != to->content->kind); ++i)
        from = Any(m_All);
    if (!m_bRings && from->content->kind == to->content->kind) {
        // The content in whose array the target stands must not come below itself.
        for (const SObject* object : m_All) {
            const auto& children = object->content->children;
            if (std::find(children.begin(), children.end(), to) != children.end() &&
                Reaches(*from->content, *object->content))
                return;
        }
    }
    auto* toText = dynamic_cast<CXMLTextNode*>(to->node);
    auto* fromText = dynamic_cast<CXMLTextNode*>(from->node);
    auto* toBinary = dynamic_cast<CXMLBinNode*>(to->node);
    auto* fromBinary = dynamic_cast<CXMLBinNode*>(from->node);
    const bool asTheyAre = OneIn(2);
    if (asTheyAre && toText && fromText)
        *toText = *fromText;
    else if (asTheyAre && toBinary && fromBinary)
        *toBinary = *fromBinary;
    else
        *to->node = *from->node;
    Assign(*to, *from);
}

void CProgram::DeleteNode() {
    SObject* parent = AnyElement();
    if (!parent) return;
    if (parent->content->children.empty() || OneIn(10)) {
        SObject* other = Any(m_All);
        const auto& children = parent->content->children;
        if (std::find(children.begin(), children.end(), other) == children.end())
            parent->node->DeleteChild(other->node);  // no child: ignored
        return;
    }
    const std::size_t place = m_Random.Number(parent->content->children.size());
    SObject* child = parent->content->children[place];
    if (m_bRings) {
        // In a ring destroying a child may destroy the node that is asked to do so.
        const std::vector<SObject*> without = Reachable(child);
        if (std::find(without.begin(), without.end(), parent) == without.end()) return;
    }
    parent->node->DeleteChild(child->node);
    auto& children = parent->content->children;
    children.erase(children.begin() + static_cast<std::ptrdiff_t>(place));
    Destroy(*child);
}

void CProgram::AddNode() {
    SObject* parent = AnyElement();
    if (!parent || m_All.size() > MOST_NODES) return;
    auto& children = parent->content->children;
    const std::size_t choice = m_Random.Number(5);
    if (choice == 0) {
        const std::string text = Text();
        SContent& content = NewContent(CXMLNode::NODE_TEXT, text, parent);
        children.push_back(&NewObject(parent->node->CreateTextChild(text.c_str()), content));
    } else if (choice == 1) {
        CXMLBinNode* binary = parent->node->CreateBinChild();
        SContent& content = NewContent(CXMLNode::NODE_BINARY, Data(), parent);
        SetBytes(*binary, content.text);
        children.push_back(&NewObject(binary, content));
    } else {
        const std::string name = Name();
        std::size_t place = children.size();
        CXMLNode* before = nullptr;
        if (OneIn(2)) {
            SObject* other = OneIn(2) && !children.empty() ? Any(children) : Any(m_All);
            before = other->node;
            const auto found = std::find(children.begin(), children.end(), other);
            place =
                found == children.end() ? 0 : static_cast<std::size_t>(found - children.begin());
        }
        SContent& content = NewContent(CXMLNode::NODE_ELEMENT, name, parent);
        SObject& object = NewObject(parent->node->CreateChild(name.c_str(), before), content);
        children.insert(children.begin() + static_cast<std::ptrdiff_t>(place), &object);
    }
}

// An object of a derived class takes the place of a child that was made for that. The child then is
// in no array, and nobody touches it again.
void CProgram::AddDerivedChild() {
    SObject* parent = AnyElement();
    if (!parent || m_bRings || m_All.size() > MOST_NODES) return;
    MakeDerived();
    if (m_Derived.empty()) return;
    SObject* object = Any(m_Derived);
    if (object == parent || Reaches(*object->content, *parent->content)) return;
    parent->node->CreateTextChild("place");
    parent->node->GetChildren()[parent->content->children.size()] = object->node;
    parent->content->children.push_back(object);
    m_Derived.erase(std::find(m_Derived.begin(), m_Derived.end(), object));
}

void CProgram::CopyNode() {
    SObject* parent = AnyElement();
    SObject* source = Any(m_All);
    if (!parent || m_All.size() > MOST_NODES) return;
    if (Unfolded(*source->content, MOST_WRITTEN) > MOST_WRITTEN / 10) return;
    const STree tree = Snapshot(*source->content);
    auto& children = parent->content->children;
    std::size_t place = children.size();
    CXMLNode* before = nullptr;
    if (tree.kind == CXMLNode::NODE_ELEMENT && OneIn(2)) {
        place = 0;
        if (!children.empty()) place = m_Random.Number(children.size());
        before = children.empty() ? source->node : children[place]->node;
    }
    CXMLNode* copy = parent->node->CopyChild(source->node, before);
    SObject& object = Bind(tree, copy, parent);
    children.insert(children.begin() + static_cast<std::ptrdiff_t>(place), &object);
}

// A copy of a node as an object of a derived class, or such an object by itself, which has a memory
// of its own and so has no place among rings.
void CProgram::MakeDerived() {
    if (m_Derived.size() > 5) return;
    m_Objects.push_back(std::make_unique<SObject>());
    SObject& object = *m_Objects.back();
    object.isDerived = true;
    const bool byItself = m_All.empty() || (!m_bRings && OneIn(3));
    if (byItself) {
        SObject* parent = !m_All.empty() && OneIn(4) ? Any(m_All) : nullptr;
        CXMLNode* parentNode = parent ? parent->node : nullptr;
        const std::size_t choice = m_Random.Number(4);
        const CXMLNode::NodeType kind = choice == 0   ? CXMLNode::NODE_TEXT
                                        : choice == 1 ? CXMLNode::NODE_BINARY
                                                      : CXMLNode::NODE_ELEMENT;
        SContent& content = NewContent(kind, ContentText(kind), parent);
        if (kind == CXMLNode::NODE_TEXT) {
            object.node = new CWatched<CTextProbe>(object, content.text.c_str(), parentNode);
        } else if (kind == CXMLNode::NODE_BINARY) {
            auto* binary = new CWatched<CBinaryProbe>(object, parentNode);
            SetBytes(*binary, content.text);
            object.node = binary;
        } else {
            object.node = new CWatched<CElementProbe>(object, content.text.c_str(), parentNode);
        }
        object.content = &content;
    } else {
        SObject* source = Any(m_All);
        CXMLNode& node = *source->node;
        SContent& shown = *source->content;
        if (shown.kind == CXMLNode::NODE_TEXT && (m_bRings || !OneIn(6))) {
            object.node = new CWatched<CTextProbe>(object, static_cast<const CXMLTextNode&>(node));
        } else if (shown.kind == CXMLNode::NODE_BINARY && (m_bRings || !OneIn(6))) {
            object.node = new CWatched<CBinaryProbe>(object, static_cast<const CXMLBinNode&>(node));
        } else {
            object.node = new CWatched<CElementProbe>(object, static_cast<const CXMLNode&>(node));
        }
        if (shown.kind == CXMLNode::NODE_ELEMENT ||
            object.node->GetNodeType() != CXMLNode::NODE_ELEMENT) {
            ++shown.owners;
            object.content = &shown;
        } else {  // an element copied from a leaf is empty, and without a name
            SContent& content = NewContent(CXMLNode::NODE_ELEMENT, Name(), shown.parent);
            content.isParentKnown = shown.isParentKnown;
            object.node->SetTagName(content.text.c_str());
            object.content = &content;
        }
    }
    m_Watched.push_back(&object);
    m_Derived.push_back(&object);
}

void CProgram::DropDerived() {
    if (m_Derived.empty()) return;
    const std::size_t i = m_Random.Number(m_Derived.size());
    SObject* object = m_Derived[i];
    m_Derived.erase(m_Derived.begin() + static_cast<std::ptrdiff_t>(i));
    // Destructors are protected in the library's classes only.
    if (auto* text = dynamic_cast<CTextProbe*>(object->node))
        delete text;
    else if (auto* binary = dynamic_cast<CBinaryProbe*>(object->node))
        delete binary;
    else
        delete static_cast<CElementProbe*>(object->node);
    Destroy(*object);
}

void CProgram::ChangeContent() {
    SObject* object = Any(m_All);
    SContent& content = *object->content;
    if (content.kind == CXMLNode::NODE_TEXT) {
        content.text = Text();
        static_cast<CXMLTextNode*>(object->node)->SetText(content.text.c_str());
    } else if (content.kind == CXMLNode::NODE_BINARY) {
        content.text = Data();
        SetBytes(*static_cast<CXMLBinNode*>(object->node), content.text);
    } else if (OneIn(2)) {
        content.text = Name();
        object->node->SetTagName(content.text.c_str());
    } else if (content.children.empty()) {
        const std::string text = Text();
        object->node->SetTextChildValue(text.c_str());
        CXMLNode* child = object->node->GetFirstChild();
        ASSERT_NE(child, nullptr);
        content.children.push_back(
            &NewObject(child, NewContent(CXMLNode::NODE_TEXT, text, object)));
    } else if (content.children.size() == 1 &&
               content.children[0]->content->kind == CXMLNode::NODE_TEXT) {
        SContent& child = *content.children[0]->content;
        ASSERT_EQ(object->node->GetTextChildValue(), child.text);
        child.text = Text();
        object->node->SetTextChildValue(child.text.c_str());
    } else {
        EXPECT_XML_ERROR(object->node->SetTextChildValue("text"), 6, "Wrong XML format");
    }
}

void CProgram::ChangeAttributes() {
    SObject* object = AnyElement();
    if (!object) return;
    auto& models = object->content->attributes;
    const std::size_t choice = models.empty() ? 0 : m_Random.Number(6);
    const std::string name = Name();
    const std::string value = OneIn(4) ? std::string() : Text();
    if (choice < 3) {
        object->node->SetAttribute(name.c_str(), value.c_str());
        Set(models, name, value);
        return;
    }
    const std::size_t i = m_Random.Number(models.size());
    CXMLAttribut& attribute = *object->node->GetAttributes()[i];
    if (choice == 3) {
        attribute.SetName(name.c_str());
        models[i].first = name;
    } else if (choice == 4) {
        attribute.SetValue(value.c_str());
        models[i].second = value;
    } else {
        object->node->SetAttribute(attribute.GetName(), nullptr);
        Set(models, Pair(models[i]).first, "");
    }
}

void CProgram::ShareAttributes() {
    if (m_Attributes.size() > 8 || (OneIn(4) && !m_Attributes.empty())) {
        const auto i = static_cast<std::ptrdiff_t>(m_Random.Number(m_Attributes.size()));
        m_Attributes.erase(m_Attributes.begin() + i);
        m_AttributeModels.erase(m_AttributeModels.begin() + i);
        return;
    }
    SObject* object = AnyElement();
    if (!object || object->content->attributes.empty()) return;
    auto& models = object->content->attributes;
    const std::size_t i = m_Random.Number(models.size());
    CXMLAttribut& attribute = *object->node->GetAttributes()[i];
    SObject* other = AnyElement();
    const std::size_t choice = m_Random.Number(4);
    // Strings from elsewhere, kept in a ring, would keep their memory for ever.
    if (choice == 0 && !m_bRings && !other->content->attributes.empty()) {
        const std::size_t j = m_Random.Number(other->content->attributes.size());
        attribute = *other->node->GetAttributes()[j];
        models[i] = Pair(other->content->attributes[j]);
    } else if (choice == 1 && !m_bRings && !m_Attributes.empty()) {
        const std::size_t j = m_Random.Number(m_Attributes.size());
        attribute = m_Attributes[j];
        models[i] = m_AttributeModels[j];
    } else if (choice == 2 && !m_Attributes.empty()) {
        const std::size_t j = m_Random.Number(m_Attributes.size());
        m_Attributes[j] = attribute;
        m_AttributeModels[j] = models[i];
        EXPECT_TRUE(Same(m_Attributes[j].GetValue(), attribute.GetValue()));
    } else if (OneIn(4)) {
        m_AttributeModels.emplace_back(Name(), Text());
        m_Attributes.emplace_back(m_AttributeModels.back().first.c_str(),
                                  m_AttributeModels.back().second.c_str());
    } else {
        m_Attributes.push_back(attribute);
        m_AttributeModels.push_back(models[i]);
    }
}

void CProgram::AddDocument() {
    SDocument document;
    document.library = NewDocumentWithRoot("r");
    SContent& content = NewContent(CXMLNode::NODE_ELEMENT, "r", nullptr);
    SObject& root = NewObject(document.library->GetRoot(), content);
    std::vector<SObject*> elements = {&root};
    for (int i = 0; i < 6; ++i) {
        SObject* parent = Any(elements);
        SContent& child = NewContent(CXMLNode::NODE_ELEMENT, Name(), parent);
        elements.push_back(
            &NewObject(parent->node->CreateChild(child.text.c_str(), nullptr), child));
        parent->content->children.push_back(elements.back());
        Set(child.attributes, "n", std::to_string(i));
        elements.back()->node->SetAttribute("n", std::to_string(i).c_str());
    }
    document.root = std::make_shared<SRoot>(SRoot{&root});
    m_Documents.push_back(std::move(document));
}

// Documents share their tree; the last that does so destroys it.
void CProgram::ChangeDocuments() {
    if (m_bRings) return;
    SDocument& document = Any(m_Documents);
    switch (m_Random.Number(7)) {
        case 0: {
            const std::string name = Name();
            SObject* old = document.root->object;
            CXMLNode* root = document.Get().CreateRoot(name.c_str());
            document.root->object =
                &NewObject(root, NewContent(CXMLNode::NODE_ELEMENT, name, nullptr));
            if (old) Destroy(*old);
            break;
        }
        case 1: {
            SDocument& other = Any(m_Documents);
            document.Get() = other.Get();
            if (document.root != other.root) SetRoot(document, other.root);
            break;
        }
        case 2: {
            if (m_Documents.size() > 4) break;
            SDocument copy;
            copy.probe = std::make_unique<CDocumentProbe>(document.Get());
            copy.root = document.root;
            m_Documents.push_back(std::move(copy));
            break;
        }
        case 3: {
            SObject* root = document.root->object;
            if (m_Documents.size() > 4 || m_All.size() > MOST_NODES || !root ||
                Unfolded(*root->content, MOST_WRITTEN) > MOST_WRITTEN / 5)
                break;
            const STree tree = Snapshot(*root->content);
            SDocument clone;
            clone.library.reset(document.Get().Clone());
            clone.root =
                std::make_shared<SRoot>(SRoot{&Bind(tree, clone.library->GetRoot(), nullptr)});
            m_Documents.push_back(std::move(clone));
            break;
        }
        case 4:
        case 5: {
            if (m_Documents.size() < 2) break;
            std::swap(document, m_Documents.back());
            SDocument& last = m_Documents.back();
            last.library.reset();
            last.probe.reset();
            SetRoot(last, nullptr);
            m_Documents.pop_back();
            break;
        }
        default:
            if (m_Documents.size() < 4) AddDocument();
    }
}

void CProgram::Step() {
    switch (m_Random.Number(24)) {
        case 0:
        case 1:
        case 2:
        case 3:
        case 4:
        case 5:
        case 6:
        case 7:
            AssignNodes();
            break;
        case 8:
        case 9:
        case 10:
            DeleteNode();
            break;
        case 11:
        case 12:
        case 13:
        case 14:
            AddNode();
            break;
        case 15:
            AddDerivedChild();
            break;
        case 16:
            CopyNode();
            break;
        case 17:
            MakeDerived();
            break;
        case 18:
            DropDerived();
            break;
        case 19:
            ChangeContent();
            break;
        case 20:
            ChangeAttributes();
            break;
        case 21:
            ShareAttributes();
            break;
        case 22:
            ChangeDocuments();
            break;
        default:
            CheckQuery();
    }
}

// --- What must hold

void CProgram::CheckObject(SObject& object) {
    const SContent& content = *object.content;
    CXMLNode& node = *object.node;
    ASSERT_EQ(node.GetNodeType(), content.kind);
    if (content.isParentKnown && !content.parent) {
        ASSERT_EQ(node.GetParentNode(), nullptr);
    } else if (content.isParentKnown && content.parent->content) {
        ASSERT_EQ(node.GetParentNode(), content.parent->node);
    }
    if (content.kind == CXMLNode::NODE_TEXT) {
        ASSERT_EQ(static_cast<CXMLTextNode&>(node).GetText(), content.text);
        return;
    }
    if (content.kind == CXMLNode::NODE_BINARY) {
        ASSERT_EQ(Bytes(static_cast<CXMLBinNode&>(node)), content.text);
        return;
    }
    ASSERT_EQ(node.GetTagName(), content.text);
    CXMLAttribut** attributes = node.GetAttributes();
    for (const Pair& pair : content.attributes) {
        ASSERT_NE(*attributes, nullptr);
        ASSERT_EQ((*attributes)->GetName(), pair.first);
        ASSERT_EQ((*attributes)->GetValue(), pair.second);
        ++attributes;
    }
    ASSERT_EQ(*attributes, nullptr);
    const std::string name = Name();
    const std::size_t found = Find(content.attributes, name);
    ASSERT_EQ(node.GetAttributeValue(name.c_str()),
              found < content.attributes.size() ? content.attributes[found].second : "");
    ASSERT_EQ(node.GetFirstChild(), content.children.empty() ? nullptr : content.children[0]->node);
    if (!m_bLooksAtArrays) return;
    CXMLNode** children = node.GetChildren();
    for (const SObject* child : content.children) {
        ASSERT_EQ(*children, child->node);
        ++children;
    }
    ASSERT_EQ(*children, nullptr);
}

void CProgram::CheckSaved() {
    const SDocument& document = Any(m_Documents);
    const SObject* root = document.root->object;
    if (root && Unfolded(*root->content, MOST_WRITTEN) <= MOST_WRITTEN) {
        std::string expected;
        Write(*root->content, expected);
        ASSERT_EQ(SavedBody(document.Get()), expected);
    }
    if (m_Derived.empty()) return;
    const SObject& object = *Any(m_Derived);
    auto* element = dynamic_cast<CElementProbe*>(object.node);
    if (element && Unfolded(*object.content, MOST_WRITTEN) <= MOST_WRITTEN) {
        std::string expected;
        Write(*object.content, expected);
        ASSERT_EQ(SavedNode(*element), expected);
    }
}

// In a ring a node and one below it have one result between them, so a query of several steps may
// find less there, or something twice.
void CProgram::CheckQuery() {
    std::vector<std::string> steps(1 + m_Random.Number(3));
    std::string path;
    for (std::string& step : steps) {
        if (!OneIn(8)) step = Name();
        path += (&step == &steps[0] ? "" : "/") + step;
    }
    if (steps.back().empty())
        path += '/';  // a slash at the end adds nothing, so one more is needed
    SObject* asked = Any(m_All);
    std::vector<CXMLNode*> expected;
    if (asked->content->kind == CXMLNode::NODE_ELEMENT) Select(*asked->content, steps, 0, expected);
    CXMLNode** nodes = asked->node->GetNodes(path.c_str());
    const std::vector<CXMLNode*> found(nodes, nodes + Count(nodes));
    if (!m_bRings || steps.size() == 1) {
        ASSERT_EQ(found, expected) << path;
        return;
    }
    for (CXMLNode* node : found) {
        ASSERT_NE(std::find(expected.begin(), expected.end(), node), expected.end()) << path;
    }
}

void CProgram::CheckDestroyed() {
    for (const SObject* object : m_Watched)
        ASSERT_EQ(object->isDestroyed, object->content == nullptr);
}

void CProgram::CheckAll() {
    m_All = Reachable();
    for (SObject* object : m_All)
        ASSERT_NO_FATAL_FAILURE(CheckObject(*object));
    for (std::size_t i = 0; i < m_Attributes.size(); ++i) {
        ASSERT_EQ(m_Attributes[i].GetName(), m_AttributeModels[i].first);
        ASSERT_EQ(m_Attributes[i].GetValue(), m_AttributeModels[i].second);
    }
}

void CProgram::Run() {
    AddDocument();
    if (!m_bRings) AddDocument();
    for (s_nStep = 0; s_nStep < STEPS && !::testing::Test::HasFailure(); ++s_nStep) {
        m_All = Reachable();
        Step();
        CheckDestroyed();
        m_All = Reachable();
        for (int i = 0; i < 2 && !m_All.empty(); ++i)
            CheckObject(*Any(m_All));
        if (s_nStep % 8 == 0) CheckAll();
        if (s_nStep % 4 == 0) CheckSaved();
    }
    // Everything is destroyed in the end, in any order.
    while (!m_Documents.empty() || !m_Derived.empty()) {
        ++s_nStep;
        if (!m_Derived.empty() && (m_Documents.empty() || OneIn(2))) {
            DropDerived();
        } else {
            std::swap(Any(m_Documents), m_Documents.back());
            SDocument& last = m_Documents.back();
            last.library.reset();
            last.probe.reset();
            SetRoot(last, nullptr);
            m_Documents.pop_back();
        }
        CheckDestroyed();
        CheckAll();
    }
}

unsigned int SeedFrom(const char* variable, unsigned int standard) {
    const char* text = std::getenv(variable);
    return text ? static_cast<unsigned int>(std::strtoul(text, nullptr, 10)) : standard;
}

}  // namespace

TEST(RandomSharing, ShowsWhatTheModelSays) {
#if defined(__SANITIZE_ADDRESS__)
    __sanitizer_set_death_callback(&NameTheProgram);
#endif
    const unsigned int last = SeedFrom("NORVASK_SEEDS_TO", LAST_SEED);
    for (s_nSeed = SeedFrom("NORVASK_SEEDS_FROM", 1); s_nSeed <= last && !HasFailure(); ++s_nSeed) {
        SCOPED_TRACE("seed " + std::to_string(s_nSeed));
        CProgram(s_nSeed).Run();
        if (HasFailure()) ADD_FAILURE() << "step " << s_nStep;
    }
}
