// Long arrays of children and attributes against a std::vector: what is inserted in front, behind
// and between, deleted, renamed, also to names that others have. The seeds are fixed.
#include <norvask/norvask.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "support/random_text.h"
#include "support/tree.h"
#include "support/vocabulary.h"

using namespace norvask;
using namespace norvask_test;

namespace {

using Pair = std::pair<std::string, std::string>;

// --- Children

class CChildren {
public:
    explicit CChildren(unsigned int seed)
        : m_Random(seed), m_Document(NewDocumentWithRoot("r")), m_pRoot(m_Document->GetRoot()) {}

    // Most of the steps insert and delete where the phase prefers it.
    enum EPlace { FRONT, MIDDLE, BACK, ANYWHERE };
    void Run(std::size_t steps, std::size_t insertions, EPlace inserts, EPlace deletes);
    void Empty(EPlace place);
    void Check();

    std::size_t Size() const { return m_Children.size(); }

private:
    std::size_t Place(EPlace preferred, std::size_t size);
    void Insert(EPlace preferred);
    void Delete(EPlace preferred);
    std::string Name() { return "n" + std::to_string(m_nMade++); }

    RandomText m_Random;
    const Document m_Document;
    CXMLNode* const m_pRoot;
    std::vector<Pair> m_Written;  // each child as it is saved, and its name
    std::vector<CXMLNode*> m_Children;
    std::size_t m_nMade = 0;
};

// Near the place preferred, and sometimes elsewhere. A number from 0 to size.
std::size_t CChildren::Place(EPlace preferred, std::size_t size) {
    const std::size_t near =
        std::min<std::size_t>(m_Random.Number(4) ? 0 : m_Random.Number(6), size);
    if (m_Random.Number(50) == 0) preferred = ANYWHERE;
    switch (preferred) {
        case FRONT:
            return near;
        case MIDDLE:
            return size / 2;
        case BACK:
            return size - near;
        default:
            return m_Random.Number(size + 1);
    }
}

void CChildren::Insert(EPlace preferred) {
    const std::size_t choice = m_Random.Number(20);
    std::size_t place = m_Children.size();
    CXMLNode* made = nullptr;
    std::string written;
    if (choice == 0) {  // texts and binary nodes always come last
        written = Name();
        made = m_pRoot->CreateTextChild(written.c_str());
    } else if (choice == 1) {
        CXMLBinNode* binary = m_pRoot->CreateBinChild();
        SetBytes(*binary, "ABC");
        made = binary;
        written = "<![CDATA[QUJD\n]]>";
    } else {
        const std::string name = Name();
        place = Place(preferred, m_Children.size());
        CXMLNode* before = place == m_Children.size() ? nullptr : m_Children[place];
        if (choice == 2) {  // what is no child here stands for the front
            before = m_pRoot;
            place = 0;
        }
        if (choice == 3 && !m_Children.empty()) {
            CXMLNode* source = m_Children[m_Random.Number(m_Children.size())];
            if (source->GetNodeType() == CXMLNode::NODE_ELEMENT) {
                made = m_pRoot->CopyChild(source, before);
                made->SetTagName(name.c_str());
            }
        }
        if (!made) made = m_pRoot->CreateChild(name.c_str(), before);
        written = "<" + name + "/>";
    }
    m_Children.insert(m_Children.begin() + static_cast<std::ptrdiff_t>(place), made);
    m_Written.insert(m_Written.begin() + static_cast<std::ptrdiff_t>(place),
                     Pair(written, made->GetTagName()));
}

void CChildren::Delete(EPlace preferred) {
    if (m_Random.Number(40) == 0) m_pRoot->DeleteChild(m_pRoot);  // no child: ignored
    if (m_Children.empty()) return;
    const std::size_t place = std::min(Place(preferred, m_Children.size()), m_Children.size() - 1);
    m_pRoot->DeleteChild(m_Children[place]);
    m_Children.erase(m_Children.begin() + static_cast<std::ptrdiff_t>(place));
    m_Written.erase(m_Written.begin() + static_cast<std::ptrdiff_t>(place));
}

void CChildren::Run(std::size_t steps, std::size_t insertions, EPlace inserts, EPlace deletes) {
    for (std::size_t step = 0; step < steps; ++step) {
        if (m_Random.Number(100) < insertions)
            Insert(inserts);
        else
            Delete(deletes);
        ASSERT_EQ(m_pRoot->GetFirstChild(), m_Children.empty() ? nullptr : m_Children[0]);
        if (step % 97 == 0) {
            ASSERT_NO_FATAL_FAILURE(Check());
        }
    }
    Check();
}

void CChildren::Empty(EPlace place) {
    while (m_Children.size() > 3) {
        Delete(place);
        ASSERT_EQ(m_pRoot->GetFirstChild(), m_Children[0]);
    }
    while (!m_Children.empty()) {
        Delete(place);
        ASSERT_NO_FATAL_FAILURE(Check());
    }
}

void CChildren::Check() {
    CXMLNode** children = m_pRoot->GetChildren();
    ASSERT_EQ(Count(children), m_Children.size());
    ASSERT_TRUE(std::equal(m_Children.begin(), m_Children.end(), children));
    std::string expected = m_Written.empty() ? "<r/>" : "<r>";
    for (const Pair& written : m_Written)
        expected += written.first;
    if (!m_Written.empty()) expected += "</r>";
    ASSERT_EQ(SavedBody(*m_Document), expected);
    if (m_Written.empty()) return;
    const std::size_t one = m_Random.Number(m_Written.size());
    const std::string name = m_Written[one].second;
    if (name.empty()) return;
    CXMLNode** found = m_pRoot->GetNodes(name.c_str());
    ASSERT_EQ(found[0], m_Children[one]);
    ASSERT_EQ(found[1], nullptr);
}

// --- Attributes

class CAttributes {
public:
    CAttributes(unsigned int seed, std::size_t names)
        : m_Random(seed), m_nNames(names), m_pRoot(m_Document->GetRoot()) {
        for (int i = 0; i < OTHERS; ++i)
            m_Other->GetRoot()->SetAttribute(("o" + std::to_string(i)).c_str(), "other");
    }

    void Run(std::size_t steps);

private:
    std::size_t Find(const std::string& name) const {
        std::size_t i = 0;
        while (i < m_Pairs.size() && m_Pairs[i].first != name)
            ++i;
        return i;
    }
    void Set(const std::string& name, const std::string& value);
    void Look(const std::string& name);
    void Step();
    void Check();
    std::string Name() { return "n" + std::to_string(m_Random.Number(m_nNames)); }
    std::string Value() { return "v" + std::to_string(m_Random.Number(1000)); }

    static constexpr int OTHERS = 60;

    RandomText m_Random;
    const std::size_t m_nNames;
    const Document m_Document = NewDocumentWithRoot("r");
    CXMLNode* const m_pRoot;
    const Document m_Other = NewDocumentWithRoot("r");
    std::vector<Pair> m_Pairs;
};

void CAttributes::Set(const std::string& name, const std::string& value) {
    m_pRoot->SetAttribute(name.c_str(), value.c_str());
    const std::size_t i = Find(name);
    if (i == m_Pairs.size()) {
        if (!value.empty()) m_Pairs.emplace_back(name, value);
    } else if (value.empty()) {
        m_Pairs.erase(m_Pairs.begin() + static_cast<std::ptrdiff_t>(i));
    } else {
        m_Pairs[i].second = value;
    }
}

void CAttributes::Look(const std::string& name) {
    const std::size_t i = Find(name);
    ASSERT_EQ(m_pRoot->GetAttributeValue(name.c_str()), i < m_Pairs.size() ? m_Pairs[i].second : "")
        << name;
}

void CAttributes::Step() {
    const std::size_t count = m_Pairs.size();
    const std::size_t choice = m_Random.Number(count == 0 ? 4 : 16);
    if (choice < 6) {
        Set(Name(), Value());
        return;
    }
    const std::size_t i = m_Random.Number(count);
    CXMLAttribut& attribute = *m_pRoot->GetAttributes()[i];
    switch (choice) {
        case 6:
        case 7:
            Set(Name(), "");
            break;
        case 8:
            Set(Pair(m_Pairs[i]).first, "");  // the first of its name
            break;
        case 9:
        case 10:
            m_Pairs[i].first = Name();
            attribute.SetName(m_Pairs[i].first.c_str());
            break;
        case 11:
            m_Pairs[i].first = "same";
            attribute.SetName("same");
            break;
        case 12:
            attribute.SetName(m_Pairs[i].first.c_str());  // its own
            break;
        case 13: {
            const std::size_t j = m_Random.Number(count);
            m_Pairs[i] = Pair(m_Pairs[j]);
            attribute = *m_pRoot->GetAttributes()[j];
            break;
        }
        case 14: {
            // Renames in another document, where attributes have been looked up.
            CXMLAttribut& other = *m_Other->GetRoot()->GetAttributes()[m_Random.Number(OTHERS)];
            m_Other->GetRoot()->GetAttributeValue("o0");
            other.SetName(Name().c_str());
            if (m_Random.Number(4) == 0) {
                m_Pairs[i] = Pair(other.GetName(), other.GetValue());
                attribute = other;
            }
            break;
        }
        default:
            m_Pairs[i].second = Value();
            attribute.SetValue(m_Pairs[i].second.c_str());
    }
}

void CAttributes::Check() {
    CXMLAttribut** attributes = m_pRoot->GetAttributes();
    ASSERT_EQ(Count(attributes), m_Pairs.size());
    std::string expected = "<r";
    for (std::size_t i = 0; i < m_Pairs.size(); ++i) {
        ASSERT_EQ(attributes[i]->GetName(), m_Pairs[i].first);
        ASSERT_EQ(attributes[i]->GetValue(), m_Pairs[i].second);
        expected += " " + m_Pairs[i].first + "=\"" + m_Pairs[i].second + "\"";
    }
    ASSERT_EQ(SavedBody(*m_Document), expected + "/>");
}

void CAttributes::Run(std::size_t steps) {
    for (std::size_t step = 0; step < steps; ++step) {
        Step();
        ASSERT_NO_FATAL_FAILURE(Look(Name())) << "step " << step;
        if (m_Random.Number(8) == 0) {
            ASSERT_NO_FATAL_FAILURE(Look("same")) << "step " << step;
        }
        if (!m_Pairs.empty() && m_Random.Number(4) == 0) {
            const std::string name = m_Pairs[m_Random.Number(m_Pairs.size())].first;
            ASSERT_NO_FATAL_FAILURE(Look(name)) << "step " << step;
        }
        if (step % 89 == 0) {
            ASSERT_NO_FATAL_FAILURE(Check()) << "step " << step;
        }
    }
    Check();
    // Always the first of a name, until none is left.
    while (!m_Pairs.empty()) {
        const std::string name = m_Pairs[m_Random.Number(m_Pairs.size())].first;
        Set(name, "");
        ASSERT_NO_FATAL_FAILURE(Look(name));
        if (m_Pairs.size() % 50 == 0) {
            ASSERT_NO_FATAL_FAILURE(Check());
        }
    }
    Check();
}

}  // namespace

TEST(ArrayModel, OfChildrenInsertedAndDeletedAnywhere) {
    using C = CChildren;
    for (unsigned int seed = 1; seed <= 4; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        CChildren children(seed);
        for (int round = 0; round < 2; ++round) {
            for (const C::EPlace inserts : {C::FRONT, C::BACK, C::MIDDLE, C::ANYWHERE}) {
                for (const C::EPlace deletes : {C::FRONT, C::BACK, C::MIDDLE, C::ANYWHERE}) {
                    ASSERT_NO_FATAL_FAILURE(children.Run(120, 75, inserts, deletes));
                    ASSERT_NO_FATAL_FAILURE(children.Run(120, 35, inserts, deletes));
                }
            }
            ASSERT_NO_FATAL_FAILURE(children.Empty(C::ANYWHERE));
        }
    }
}

TEST(ArrayModel, OfThousandsOfChildrenFromOneEnd) {
    using C = CChildren;
    for (const C::EPlace inserts : {C::FRONT, C::BACK, C::MIDDLE}) {
        for (const C::EPlace deletes : {C::FRONT, C::BACK, C::MIDDLE}) {
            SCOPED_TRACE(std::to_string(inserts) + " " + std::to_string(deletes));
            CChildren children(7);
            ASSERT_NO_FATAL_FAILURE(children.Run(3000, 98, inserts, deletes));
            ASSERT_GT(children.Size(), 2500u);
            ASSERT_NO_FATAL_FAILURE(children.Run(1000, 5, inserts, deletes));
            ASSERT_NO_FATAL_FAILURE(children.Empty(deletes));
            ASSERT_NO_FATAL_FAILURE(children.Run(100, 90, deletes, inserts));
        }
    }
}

TEST(ArrayModel, OfChildrenThatPassThroughAsInAQueue) {
    using C = CChildren;
    for (const bool forwards : {true, false}) {
        CChildren children(9);
        const C::EPlace in = forwards ? C::BACK : C::FRONT;
        const C::EPlace out = forwards ? C::FRONT : C::BACK;
        ASSERT_NO_FATAL_FAILURE(children.Run(200, 100, in, out));
        ASSERT_NO_FATAL_FAILURE(children.Run(5000, 50, in, out));
        ASSERT_NO_FATAL_FAILURE(children.Run(2000, 20, in, out));
    }
}

TEST(ArrayModel, OfAttributesWithEqualNames) {
    for (const std::size_t names : {4u, 20u, 40u, 300u, 3000u}) {
        for (unsigned int seed = 1; seed <= 3; ++seed) {
            SCOPED_TRACE(std::to_string(names) + " names, seed " + std::to_string(seed));
            CAttributes attributes(seed, names);
            ASSERT_NO_FATAL_FAILURE(attributes.Run(names < 100 ? 1500 : 4000));
        }
    }
}
