// Copies of attributes: they share their strings, and each string goes when the last object that
// shows it goes.
#include <algorithm>
#include <cstdlib>

#include "support/testing.h"
#include "support/tree_fixture.h"
#include "support/writing.h"

using namespace norvask_test;

namespace {

std::string Shown(CXMLAttribut& attribute) {
    return std::string(attribute.GetName()) + "=" + attribute.GetValue();
}

bool Shares(CXMLAttribut& a, CXMLAttribut& b) {
    return Same(a.GetName(), b.GetName()) && Same(a.GetValue(), b.GetValue());
}

// Long enough that no string fits into the object itself, and one that does.
const char* const VALUES[] = {"v", "a value that is a good deal longer than a pointer"};

class AttributeSharing : public CTreeFixture {};

}  // namespace

TEST_F(AttributeSharing, ShowsTheSamePointersInACopy) {
    for (const char* value : VALUES) {
        auto source = std::make_unique<CXMLAttribut>("name", value);
        CXMLAttribut copy(*source);
        CXMLAttribut assigned("other", "other");
        assigned = *source;
        EXPECT_TRUE(Shares(copy, *source));
        EXPECT_TRUE(Shares(assigned, *source));
        source.reset();
        EXPECT_EQ(Shown(copy), std::string("name=") + value);
        EXPECT_EQ(Shown(assigned), std::string("name=") + value);
    }
}

TEST_F(AttributeSharing, GivesTheChangedObjectAStringOfItsOwn) {
    CXMLAttribut source("name", "value");
    CXMLAttribut copy(source);
    copy.SetValue("changed");
    EXPECT_EQ(Shown(source), "name=value");
    EXPECT_EQ(Shown(copy), "name=changed");
    EXPECT_TRUE(Same(copy.GetName(), source.GetName()));
    source.SetName("renamed");
    EXPECT_EQ(Shown(source), "renamed=value");
    EXPECT_EQ(Shown(copy), "name=changed");
}

TEST_F(AttributeSharing, SurvivesAssignmentToItself) {
    CXMLAttribut attribute("name", "value");
    CXMLAttribut& same = attribute;
    attribute = same;
    EXPECT_EQ(Shown(attribute), "name=value");
    CXMLAttribut copy(attribute);
    attribute = copy;
    copy = attribute;
    EXPECT_EQ(Shown(copy), "name=value");
}

TEST_F(AttributeSharing, SurvivesAVectorThatGrowsIsSortedAndShrinks) {
    std::vector<CXMLAttribut> attributes;
    for (int i = 0; i < 1000; ++i) {
        const std::string number = std::to_string((i * 7919) % 1000);
        attributes.emplace_back(("n" + std::string(4 - number.size(), '0') + number).c_str(),
                                (number + VALUES[i % 2]).c_str());
    }
    std::sort(attributes.begin(), attributes.end(), [](CXMLAttribut a, CXMLAttribut b) {
        return std::string(a.GetName()) < b.GetName();
    });
    for (int i = 0; i < 1000; ++i)
        ASSERT_EQ(std::atoi(attributes[static_cast<std::size_t>(i)].GetValue()), i);
    std::reverse(attributes.begin(), attributes.end());
    std::swap(attributes.front(), attributes.back());
    EXPECT_EQ(std::atoi(attributes.front().GetValue()), 0);
    attributes.erase(attributes.begin() + 1, attributes.end() - 1);
    attributes.shrink_to_fit();
    EXPECT_EQ(std::atoi(attributes.back().GetValue()), 999);
    std::vector<CXMLAttribut> others = attributes;
    attributes.clear();
    EXPECT_EQ(std::atoi(others.back().GetValue()), 999);
}

TEST_F(AttributeSharing, OutlivesTheDocument) {
    for (const char* value : VALUES) {
        Document document = Load("<r><c name='" + std::string(value) + "'/></r>");
        CXMLAttribut copy(*document->GetRoot()->GetFirstChild()->GetAttributes()[0]);
        CXMLAttribut assigned("a", "b");
        assigned = *document->GetRoot()->GetFirstChild()->GetAttributes()[0];
        EXPECT_TRUE(Shares(copy, *document->GetRoot()->GetFirstChild()->GetAttributes()[0]));
        document.reset();
        EXPECT_EQ(Shown(copy), "name=" + std::string(value));
        EXPECT_TRUE(Shares(copy, assigned));
        copy.SetValue("own");
        EXPECT_EQ(Shown(assigned), "name=" + std::string(value));
    }
}

TEST_F(AttributeSharing, OutlivesChangesAndRemovalOfTheAttribute) {
    m_Root.SetAttribute("name", VALUES[1]);
    CXMLAttribut copy(*m_Root.GetAttributes()[0]);
    m_Root.SetAttribute("name", "changed");
    EXPECT_EQ(Shown(copy), std::string("name=") + VALUES[1]);
    CXMLAttribut second(*m_Root.GetAttributes()[0]);
    m_Root.SetAttribute("name", "");
    EXPECT_EQ(Shown(second), "name=changed");
    m_Document->CreateRoot("s");
    EXPECT_EQ(Shown(second), "name=changed");
}

TEST_F(AttributeSharing, AssignsBetweenAttributesOfOneElement) {
    m_Root.SetAttribute("a", "1");
    m_Root.SetAttribute("b", "2");
    m_Root.SetAttribute("c", "3");
    CXMLAttribut** attributes = m_Root.GetAttributes();
    *attributes[0] = *attributes[2];
    EXPECT_TRUE(Shares(*attributes[0], *attributes[2]));
    EXPECT_EQ(Attributes(m_Root), "c=3 b=2 c=3");
    EXPECT_STREQ(m_Root.GetAttributeValue("a"), "");
    m_Root.SetAttribute("c", "4");
    EXPECT_EQ(Attributes(m_Root), "c=4 b=2 c=3");
    m_Root.SetAttribute("c", "");
    EXPECT_EQ(Attributes(m_Root), "b=2 c=3");
    std::swap(*m_Root.GetAttributes()[0], *m_Root.GetAttributes()[1]);
    EXPECT_EQ(Attributes(m_Root), "c=3 b=2");
    EXPECT_STREQ(m_Root.GetAttributeValue("b"), "2");
    EXPECT_EQ(Body(), "<r c=\"3\" b=\"2\"/>");
}

TEST_F(AttributeSharing, AssignsAcrossDocumentsThatEndInEitherOrder) {
    for (const bool targetFirst : {true, false}) {
        for (const char* value : VALUES) {
            Document source = NewDocumentWithRoot("s");
            Document target = NewDocumentWithRoot("t");
            source->GetRoot()->SetAttribute("name", value);
            target->GetRoot()->SetAttribute("old", "old");
            *target->GetRoot()->GetAttributes()[0] = *source->GetRoot()->GetAttributes()[0];
            EXPECT_STREQ(target->GetRoot()->GetAttributeValue("name"), value);
            (targetFirst ? target : source).reset();
            const Document& left = targetFirst ? source : target;
            EXPECT_STREQ(left->GetRoot()->GetAttributeValue("name"), value);
            left->GetRoot()->SetAttribute("name", "changed");
            EXPECT_EQ(Attributes(*left->GetRoot()), "name=changed");
        }
    }
}

TEST_F(AttributeSharing, AssignsAClientsAttributeToAnElementsAndBack) {
    const Document document = NewDocumentWithRoot("r");
    document->GetRoot()->SetAttribute("a", "1");
    {
        CXMLAttribut own("own", VALUES[1]);
        *document->GetRoot()->GetAttributes()[0] = own;
        EXPECT_TRUE(Shares(own, *document->GetRoot()->GetAttributes()[0]));
    }
    EXPECT_EQ(Attributes(*document->GetRoot()), std::string("own=") + VALUES[1]);
    CXMLAttribut taken("", "");
    taken = *document->GetRoot()->GetAttributes()[0];
    document->GetRoot()->SetAttribute("own", "");
    EXPECT_EQ(Shown(taken), std::string("own=") + VALUES[1]);
}

TEST_F(AttributeSharing, AValueThatIsSetAgainAndAgainLeavesCopiesAlone) {
    CXMLAttribut attribute("name", "first");
    std::vector<CXMLAttribut> copies;
    std::vector<std::string> expected;
    for (std::size_t i = 0; i < 300; ++i) {
        const std::string value(i * 7 % 61, static_cast<char>('a' + i % 26));
        attribute.SetValue(value.c_str());
        ASSERT_STREQ(attribute.GetValue(), value.c_str());
        if (i % 3 == 0) {
            copies.push_back(attribute);
            expected.push_back(value);
        }
    }
    for (std::size_t i = 0; i < copies.size(); ++i) {
        EXPECT_EQ(copies[i].GetValue(), expected[i]) << i;
        EXPECT_STREQ(copies[i].GetName(), "name");
    }
}

TEST_F(AttributeSharing, AValueCanBeReplacedByAnyPartOfItself) {
    const std::string value = "0123456789012345678901234567890123456789\xC3\xA9";
    for (std::size_t start = 0; start < value.size(); ++start) {
        CXMLAttribut attribute("name", value.c_str());
        attribute.SetValue(attribute.GetValue() + start);
        EXPECT_EQ(attribute.GetValue(), value.substr(start));
        attribute.SetValue(attribute.GetValue());
        EXPECT_EQ(attribute.GetValue(), value.substr(start));
    }
}

TEST_F(AttributeSharing, AValueThatIsSetInPlaceIsWrittenAsItNowIs) {
    const Document document = NewDocumentWithRoot("r");
    CXMLAttribut attribute("a", "plain and long enough");
    const char* values[] = {"\xC3\xA9", "<&>", "plain", "x\xFFy", ""};
    for (const char* value : values) {
        attribute.SetValue(value);
        CXMLAttribut* attributes[] = {&attribute, nullptr};
        const auto write = [&](CXMLSaxWriter& writer) {
            writer.StartElement("r", attributes);
            writer.EndElement();
        };
        document->GetRoot()->SetAttribute("a", value);
        EXPECT_EQ(Written(write), *value == '\0' ? "<r a=\"\"/>" : SavedBody(*document));
    }
}
