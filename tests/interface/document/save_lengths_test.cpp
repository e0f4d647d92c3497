// Names, values and texts of every length, with what must be escaped at every place in them, as
// they are saved, copied and streamed. Short ones are read and written in pieces of a fixed size,
// and the output is passed on in pieces, so both kinds of edges are met at every place.
#include "support/testing.h"
#include "support/unicode.h"

using namespace norvask_test;

namespace {

const std::size_t LONGEST_NAME = 34;
const std::size_t LONGEST_TEXT = 70;

std::string Letters(std::size_t length) {
    std::string text;
    for (std::size_t i = 0; i < length; ++i) {
        text += static_cast<char>('a' + i % 26);
    }
    return text;
}

struct SItem {
    std::string name;
    std::string text;
};

std::vector<SItem> ItemsOfEveryLength() {
    std::vector<SItem> items;
    for (std::size_t length = 1; length <= LONGEST_NAME; ++length) {
        items.push_back({Letters(length), "x"});
    }
    const std::string specials[] = {"<", ">", "&", "'", "\"", "\x01", "\n", " ", "\xC3\xA9", ""};
    for (std::size_t length = 0; length <= LONGEST_TEXT; ++length) {
        for (const std::string& special : specials) {
            for (std::size_t at = 0; at <= length; ++at) {
                std::string text = Letters(length);
                text.insert(at, special);
                items.push_back({Letters(1 + items.size() % LONGEST_NAME), text});
                if (special.empty() || length > 24) {
                    break;
                }
            }
        }
    }
    return items;
}

// One element for each item, with an attribute and the text, and one with the attribute alone.
Document TreeOf(const std::vector<SItem>& items, const std::string& first) {
    Document document = NewDocument();
    CXMLNode* const root = document->CreateRoot("root");
    root->CreateTextChild(first.c_str());
    for (const SItem& item : items) {
        CXMLNode* const element = root->CreateChild(item.name.c_str(), nullptr);
        element->SetAttribute(item.name.c_str(), item.text.c_str());
        element->CreateTextChild(item.text.c_str());
        root->CreateChild(item.name.c_str(), nullptr)
            ->SetAttribute(item.name.c_str(), item.text.c_str());
    }
    return document;
}

// What a client reads of the copies of the texts goes to their terminators.
void ExpectTexts(Document& document, const std::vector<SItem>& items) {
    CXMLNode** const children = document->GetRoot()->GetChildren();
    for (std::size_t i = 0; i < items.size(); ++i) {
        CXMLNode* const element = children[2 * i + 1];
        ASSERT_EQ(element->GetTextChildValue(), items[i].text);
        if (!items[i].text.empty()) {
            ASSERT_EQ(element->GetAttributes()[0]->GetValue(), items[i].text);
        }
    }
}

std::string ExpectedOf(const std::vector<SItem>& items, const std::string& first) {
    std::string text = std::string(DECLARATION) + "<root>" + Escaped(first);
    for (const SItem& item : items) {
        const std::string value = Escaped(item.text);
        const std::string attribute =
            item.text.empty() ? std::string() : " " + item.name + "=\"" + value + "\"";
        text += "<" + item.name + attribute + ">" + value + "</" + item.name + ">";
        text += "<" + item.name + attribute + "/>";
    }
    return text + "</root>";
}

std::string Streamed(const std::vector<SItem>& items, const std::string& first) {
    std::ostringstream out;
    CXMLSaxWriter writer;
    CXMLAttribut attribute("a", "");
    CXMLAttribut* attributes[] = {&attribute, nullptr};
    writer.StartDocument(&out, false, false);
    writer.StartElement("root", nullptr);
    writer.Characters(first.c_str());
    for (const SItem& item : items) {
        attribute.SetName(item.name.c_str());
        attribute.SetValue(item.text.c_str());
        CXMLAttribut** const given = item.text.empty() ? nullptr : attributes;
        writer.StartElement(item.name.c_str(), given);
        writer.Characters(item.text.c_str());
        writer.EndElement();
        writer.StartElement(item.name.c_str(), given);
        writer.EndElement();
    }
    writer.EndElement();
    writer.EndDocument();
    return out.str();
}

}  // namespace

TEST(SaveLengths, OfTreesAndTheirCopies) {
    const std::vector<SItem> items = ItemsOfEveryLength();
    for (std::size_t shift = 0; shift < 16; ++shift) {
        SCOPED_TRACE(shift);
        const std::string first = Letters(shift + 1);
        Document document = TreeOf(items, first);
        const std::string expected = ExpectedOf(items, first);
        ASSERT_TRUE(Saved(document) == expected);
        Document copy(document->Clone());
        ASSERT_TRUE(Saved(copy) == expected);
        ExpectTexts(copy, items);
    }
}

// Strings of an application's attributes lie outside of any tree.
TEST(SaveLengths, OfAssignedAttributes) {
    const std::vector<SItem> items = ItemsOfEveryLength();
    Document document = TreeOf(items, "first");
    CXMLNode** const children = document->GetRoot()->GetChildren();
    for (std::size_t i = 0; i < items.size(); ++i) {
        const CXMLAttribut assigned(items[i].name.c_str(), items[i].text.c_str());
        for (const std::size_t child : {2 * i + 1, 2 * i + 2}) {
            if (CXMLAttribut* const attribute = children[child]->GetAttributes()[0]) {
                *attribute = assigned;
            }
        }
    }
    const std::string expected = ExpectedOf(items, "first");
    EXPECT_TRUE(Saved(document) == expected);
    Document copy(document->Clone());
    EXPECT_TRUE(Saved(copy) == expected);
}

TEST(SaveLengths, OfStreamedElements) {
    const std::vector<SItem> items = ItemsOfEveryLength();
    EXPECT_TRUE(Streamed(items, "first") == ExpectedOf(items, "first"));
}

TEST(SaveLengths, OfIndentations) {
    Document document = NewDocument();
    CXMLNode* node = document->CreateRoot("root");
    std::string open;
    std::string close;
    for (std::size_t depth = 1; depth <= 200; ++depth) {
        node = node->CreateChild("e", nullptr);
        const std::string tabs(depth, '\t');
        open += "\r\n" + tabs + (depth == 200 ? "<e/>" : "<e>");
        if (depth != 200) {
            close.insert(0, "\r\n" + tabs + "</e>");
        }
    }
    EXPECT_EQ(Saved(document, true),
              std::string(DECLARATION) + "\r\n<root>" + open + close + "\r\n</root>");
}

// The output is passed on in pieces of 8 KiB; the long text moves what is behind it over that edge,
// byte by byte.
TEST(SaveLengths, OfPiecesBeforeTheEdgeOfTheOutput) {
    for (std::size_t length = 8100; length < 8200; ++length) {
        const std::string first = Letters(length);
        Document document = TreeOf({{"e", "t"}}, first);
        ASSERT_TRUE(Saved(document) == ExpectedOf({{"e", "t"}}, first)) << length;
    }
}
