// Strings and blocks handed back to the object that they came from, or to its neighbours: whatever
// the call replaces or releases, it has read its arguments before.
#include "support/derived.h"
#include "support/testing.h"
#include "support/tree_fixture.h"

using namespace norvask_test;

namespace {

// Names and texts of these lengths: strings may be kept in different places by their length.
const std::size_t LENGTHS[] = {1, 7, 15, 16, 31, 40, 300, 5000, 100000};

// Letters that differ from place to place, so that a shifted copy shows; a valid name.
std::string Letters(std::size_t length, int shift = 0) {
    std::string text(length, 'a');
    for (std::size_t i = 0; i < length; ++i)
        text[i] = static_cast<char>('a' + (i * 7 + i / 26 + static_cast<std::size_t>(shift)) % 26);
    return text;
}

class Aliasing : public CTreeFixture, public ::testing::WithParamInterface<std::size_t> {
protected:
    std::string m_S = Letters(GetParam());
    std::string m_T = Letters(GetParam(), 1);
    std::size_t m_nHalf = GetParam() / 2;  // never the terminator
};

INSTANTIATE_TEST_SUITE_P(Lengths, Aliasing, ::testing::ValuesIn(LENGTHS));

}  // namespace

TEST_P(Aliasing, OfATagName) {
    m_Root.SetTagName(m_S.c_str());
    m_Root.SetTagName(m_Root.GetTagName());
    EXPECT_EQ(m_Root.GetTagName(), m_S);
    m_Root.SetTagName(m_Root.GetTagName() + m_nHalf);
    EXPECT_EQ(m_Root.GetTagName(), m_S.substr(m_nHalf));
    CXMLNode* child = m_Root.CreateChild(m_T.c_str(), nullptr);
    child->SetAttribute("a", m_S.c_str());
    child->SetTagName(child->GetAttributeValue("a"));
    m_Root.SetTagName(child->GetTagName());
    EXPECT_EQ(m_Root.GetTagName(), m_S);
    EXPECT_EQ(child->GetTagName(), m_S);
}

TEST_P(Aliasing, OfTheNameOfANewChild) {
    m_Root.SetTagName(m_S.c_str());
    CXMLNode* child = m_Root.CreateChild(m_Root.GetTagName(), nullptr);
    for (int i = 0; i < 10; ++i)
        child = m_Root.CreateChild(child->GetTagName(), child);
    EXPECT_EQ(child->GetTagName(), m_S);
    child->SetAttribute(m_T.c_str(), m_T.c_str());
    EXPECT_EQ(m_Root.CreateChild(child->GetAttributes()[0]->GetName(), nullptr)->GetTagName(), m_T);
    EXPECT_EQ(
        m_Root.CreateChild(child->GetAttributeValue(m_T.c_str()) + m_nHalf, nullptr)->GetTagName(),
        m_T.substr(m_nHalf));
}

TEST_P(Aliasing, OfTheNameOfANewRoot) {
    m_Root.SetTagName(m_S.c_str());
    CXMLNode* root = m_Document->CreateRoot(m_Root.GetTagName());
    EXPECT_EQ(root->GetTagName(), m_S);
    CXMLNode* deep = root->CreateChild("c", nullptr)->CreateChild(m_T.c_str(), nullptr);
    root = m_Document->CreateRoot(deep->GetTagName() + m_nHalf);
    EXPECT_EQ(root->GetTagName(), m_T.substr(m_nHalf));
    root->SetAttribute("a", m_S.c_str());
    root = m_Document->CreateRoot(root->GetAttributeValue("a"));
    EXPECT_EQ(root->GetTagName(), m_S);
    root->CreateChild("c", nullptr)->CreateTextChild(m_T.c_str());
    root = m_Document->CreateRoot(root->GetFirstChild()->GetTextChildValue());
    EXPECT_EQ(root->GetTagName(), m_T);
    EXPECT_EQ(root->GetFirstChild(), nullptr);
}

TEST_P(Aliasing, OfAnAttributesStrings) {
    CXMLAttribut attribute(m_S.c_str(), m_T.c_str());
    attribute.SetName(attribute.GetName());
    attribute.SetValue(attribute.GetValue());
    EXPECT_EQ(attribute.GetName(), m_S);
    EXPECT_EQ(attribute.GetValue(), m_T);
    attribute.SetName(attribute.GetName() + m_nHalf);
    attribute.SetValue(attribute.GetValue() + m_nHalf);
    EXPECT_EQ(attribute.GetName(), m_S.substr(m_nHalf));
    EXPECT_EQ(attribute.GetValue(), m_T.substr(m_nHalf));
    attribute.SetValue(attribute.GetName());
    EXPECT_EQ(attribute.GetValue(), m_S.substr(m_nHalf));
    CXMLAttribut copy(attribute);
    copy.SetName(attribute.GetValue());
    attribute.SetValue(copy.GetName());
    attribute.SetValue(attribute.GetValue() + GetParam() - m_nHalf);
    EXPECT_STREQ(attribute.GetValue(), "");
    EXPECT_EQ(copy.GetValue(), m_S.substr(m_nHalf));
}

TEST_P(Aliasing, OfAnElementsAttributes) {
    m_Root.SetAttribute(m_S.c_str(), m_T.c_str());
    CXMLAttribut* first = m_Root.GetAttributes()[0];
    m_Root.SetAttribute(first->GetName(), first->GetValue());
    EXPECT_EQ(Attributes(m_Root), m_S + "=" + m_T);
    m_Root.SetAttribute(first->GetName(), first->GetValue() + m_nHalf);
    EXPECT_EQ(Attributes(m_Root), m_S + "=" + m_T.substr(m_nHalf));
    m_Root.SetAttribute(first->GetName(), first->GetName());
    EXPECT_EQ(Attributes(m_Root), m_S + "=" + m_S);
    first->SetValue(first->GetValue());
    first->SetName(first->GetValue());
    EXPECT_EQ(Attributes(m_Root), m_S + "=" + m_S);
}

TEST_P(Aliasing, OfNewAttributesWithStringsOfTheSameElement) {
    m_Root.SetAttribute("first", m_S.c_str());
    for (int i = 0; i < 20; ++i)
        m_Root.SetAttribute(("n" + std::to_string(i)).c_str(), m_Root.GetAttributeValue("first"));
    for (int i = 0; i < 20; ++i)
        EXPECT_EQ(m_Root.GetAttributeValue(("n" + std::to_string(i)).c_str()), m_S);
    m_Root.SetAttribute("n3", m_Root.GetAttributeValue("n19"));
    m_Root.SetAttribute(m_Root.GetAttributeValue("n3"), m_Root.GetTagName());
    EXPECT_STREQ(m_Root.GetAttributeValue(m_S.c_str()), "r");
}

TEST_P(Aliasing, OfTheNameOfARemovedAttribute) {
    for (const char* nothing : {"", static_cast<const char*>(nullptr)}) {
        m_Root.SetAttribute("first", "1");
        m_Root.SetAttribute(m_S.c_str(), m_T.c_str());
        m_Root.SetAttribute("last", "2");
        m_Root.SetAttribute(m_Root.GetAttributes()[1]->GetName(), nothing);
        EXPECT_EQ(Attributes(m_Root), "first=1 last=2");
        m_Root.SetAttribute(m_Root.GetAttributes()[0]->GetName(), nothing);
        m_Root.SetAttribute(m_Root.GetAttributes()[0]->GetName(), nothing);
        EXPECT_EQ(Attributes(m_Root), "");
    }
    m_Root.SetAttribute("a", m_S.c_str());
    const char* value = m_Root.GetAttributeValue("a");
    m_Root.SetAttribute("a", value + m_S.size());
    EXPECT_EQ(Attributes(m_Root), "");
}

TEST_P(Aliasing, OfAText) {
    CXMLTextNode& text = *m_Root.CreateTextChild(m_S.c_str());
    text.SetText(text.GetText());
    EXPECT_EQ(text.GetText(), m_S);
    text.SetText(text.GetText() + m_nHalf);
    EXPECT_EQ(text.GetText(), m_S.substr(m_nHalf));
    m_Root.SetTextChildValue(m_S.c_str());
    m_Root.SetTextChildValue(m_Root.GetTextChildValue());
    EXPECT_EQ(text.GetText(), m_S);
    m_Root.SetTextChildValue(m_Root.GetTextChildValue() + m_nHalf);
    EXPECT_EQ(text.GetText(), m_S.substr(m_nHalf));
    for (int i = 0; i < 10; ++i)
        EXPECT_EQ(m_Root.CreateTextChild(text.GetText())->GetText(), m_S.substr(m_nHalf));
    text.SetText(text.GetText() + m_S.size() - m_nHalf);
    EXPECT_STREQ(text.GetText(), "");
}

TEST_P(Aliasing, OfATextSharedByACopy) {
    CXMLTextNode& text = *m_Root.CreateTextChild(m_S.c_str());
    CTextProbe copy(text);
    copy.SetText(text.GetText() + m_nHalf);
    EXPECT_EQ(text.GetText(), m_S.substr(m_nHalf));
    text.SetText(copy.GetText());
    EXPECT_EQ(copy.GetText(), m_S.substr(m_nHalf));
}

TEST_P(Aliasing, OfATextAsTheBytesOfItsBase64Form) {
    CXMLTextNode& text = *m_Root.CreateTextChild(m_S.c_str());
    text.SetBinaryText(reinterpret_cast<const unsigned char*>(text.GetText()),
                       static_cast<long>(m_S.size()));
    unsigned char* data = nullptr;
    std::size_t length = 0;
    ASSERT_TRUE(text.GetBinaryText(data, length));
    EXPECT_EQ(std::string(reinterpret_cast<char*>(data), length), m_S);
    text.SetBinaryText(data, static_cast<long>(length));
    ASSERT_TRUE(text.GetBinaryText(data, length));
    EXPECT_EQ(std::string(reinterpret_cast<char*>(data), length), m_S);
}

TEST_P(Aliasing, OfABlock) {
    CXMLBinNode& binary = *m_Root.CreateBinChild();
    SetBytes(binary, m_S);
    const unsigned char* data = nullptr;
    std::size_t length = 0;
    binary.GetData(data, length);
    binary.SetData(data, length);
    EXPECT_EQ(Bytes(binary), m_S);
    binary.GetData(data, length);
    binary.SetData(data + m_nHalf, length - m_nHalf);
    EXPECT_EQ(Bytes(binary), m_S.substr(m_nHalf));
    binary.GetData(data, length);
    binary.SetData(data, 1);
    EXPECT_EQ(Bytes(binary), m_S.substr(m_nHalf, 1));
    binary.GetData(data, length);
    binary.SetData(data, 0);
    EXPECT_EQ(Bytes(binary), "");
}

TEST_P(Aliasing, OfABlockOfANeighbourOrACopy) {
    CXMLBinNode& binary = *m_Root.CreateBinChild();
    CXMLBinNode& other = *m_Root.CreateBinChild();
    SetBytes(binary, m_S);
    const unsigned char* data = nullptr;
    std::size_t length = 0;
    binary.GetData(data, length);
    other.SetData(data, length);
    EXPECT_EQ(Bytes(other), m_S);
    CBinaryProbe copy(binary);
    copy.SetData(data + m_nHalf, length - m_nHalf);
    EXPECT_EQ(Bytes(binary), m_S.substr(m_nHalf));
}

TEST_P(Aliasing, OfADTDReference) {
    m_Document->SetDTDRef(m_S.c_str(), m_T.c_str());
    const auto expect = [this](const std::string& name, const std::string& path) {
        EXPECT_EQ(m_Document->GetDTDName(), name);
        EXPECT_EQ(m_Document->GetDTDPath(), path);
    };
    m_Document->SetDTDRef(m_Document->GetDTDName(), m_Document->GetDTDPath());
    expect(m_S, m_T);
    m_Document->SetDTDRef(m_Document->GetDTDPath(), m_Document->GetDTDName());
    expect(m_T, m_S);
    m_Document->SetDTDRef(m_Document->GetDTDPath(), m_Document->GetDTDPath() + m_nHalf);
    expect(m_S, m_S.substr(m_nHalf));
    m_Document->SetDTDRef(m_Document->GetDTDName() + m_nHalf, m_Document->GetDTDName());
    expect(m_S.substr(m_nHalf), m_S);
    m_Document->SetDTDRef("n", "p");
    m_Root.SetTagName(m_S.c_str());
    m_Document->SetDTDRef(m_Root.GetTagName(), m_Root.GetTagName());
    expect(m_S, m_S);
    EXPECT_EQ(m_Document->CreateRoot(m_Document->GetDTDName())->GetTagName(), m_S);
    m_Document->SetDTDRef(m_Document->GetDTDName(), "");
    EXPECT_EQ(m_Document->GetDTDName(), nullptr);
}

TEST_P(Aliasing, OfAPathThatLivesInTheTree) {
    CXMLNode* found = m_Root.CreateChild(m_S.c_str(), nullptr)->CreateChild(m_T.c_str(), nullptr);
    const std::string path = m_S + "/" + m_T;
    CXMLNode* holder = m_Root.CreateChild("holder", nullptr);
    holder->SetAttribute("path", path.c_str());
    holder->SetTextChildValue(path.c_str());
    EXPECT_EQ(m_Root.GetNodes(holder->GetAttributeValue("path"))[0], found);
    EXPECT_EQ(m_Root.GetNodes(holder->GetTextChildValue())[0], found);
    EXPECT_EQ(m_Root.GetNodes(m_Root.GetFirstChild()->GetTagName())[0], m_Root.GetFirstChild());
    EXPECT_EQ(m_Document->GetNodes(m_Root.GetTagName())[0], &m_Root);
}

TEST_P(Aliasing, OfAnExceptionsText) {
    CXMLException e(1, m_S.c_str());
    CXMLException next(2, e.GetMessage());
    e = next;
    CXMLException filled(3, 6, e.GetMessage());
    EXPECT_EQ(e.GetMessage(), m_S);
    EXPECT_EQ(filled.GetMessage(), "Invalid XML name: '" + m_S.substr(0, 255) + "'.");
}

TEST_P(Aliasing, OfTheSharedBuffersOfTheConversions) {
    CXMLTextNode& text = *m_Root.CreateTextChild(XMLConvertLong2Text(1));
    text.SetText(XMLConvertLong2Text(2));
    text.SetLongText(3);
    EXPECT_STREQ(text.GetText(), "3");
    m_Root.SetAttribute("a", XMLConvertLong2Text(4));
    m_Root.GetAttributes()[0]->SetLongValue(5);
    EXPECT_STREQ(m_Root.GetAttributeValue("a"), "5");
    long value = 0;
    EXPECT_TRUE(XMLConvertText2Long(XMLConvertLong2Text(6), value));
    EXPECT_EQ(value, 6);
}

TEST(AliasingOfTheDecodedBlock, IsReadBeforeItIsReplaced) {
    unsigned char* data = nullptr;
    std::size_t length = 0;
    ASSERT_TRUE(CXMLSaxHandler::GetData("UVVKRAA=", data, length));  // "QUJD" and a zero byte
    ASSERT_TRUE(CXMLSaxHandler::GetData(reinterpret_cast<char*>(data), data, length));
    EXPECT_EQ(std::string(reinterpret_cast<char*>(data), length), "ABC");
}
