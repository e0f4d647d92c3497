// The order of the virtual operations is part of the binary interface. In the Itanium C++ ABI a
// pointer to a virtual member function holds the place of its slot in the virtual table, and a
// virtual destructor takes two slots.
#include <cstdint>
#include <cstring>
#include <set>
#include <type_traits>

#include "support/derived.h"
#include "support/testing.h"

using namespace norvask_test;

namespace {

constexpr std::ptrdiff_t NOT_VIRTUAL = -1;

// The slot that a pointer to a member function names; NOT_VIRTUAL for an ordinary function.
template <typename Function>
std::ptrdiff_t SlotOf(Function function) {
    static_assert(sizeof(function) == 2 * sizeof(std::ptrdiff_t), "no Itanium member pointer");
    std::ptrdiff_t words[2];
    std::memcpy(words, &function, sizeof(words));
#if defined(__arm__) || defined(__aarch64__)
    // Function addresses use every bit there, so the mark stands in the adjustment.
    const bool isVirtual = (words[1] & 1) != 0;
    const std::ptrdiff_t offset = words[0];
#else
    const bool isVirtual = (words[0] & 1) != 0;
    const std::ptrdiff_t offset = words[0] - 1;
#endif
    const std::ptrdiff_t slotSize = sizeof(void*);
    return isVirtual && offset % slotSize == 0 ? offset / slotSize : NOT_VIRTUAL;
}

// The functions have the slots from this one on, in this order.
template <typename... Functions>
void ExpectSlots(std::ptrdiff_t slot, Functions... functions) {
    std::ptrdiff_t expected = slot;
    for (const std::ptrdiff_t actual : {SlotOf(functions)...})
        EXPECT_EQ(actual, expected++) << "function " << expected - slot << " of the list";
}

// The addresses in the first `slots` slots of an object's virtual table.
std::vector<std::uintptr_t> Slots(const void* object, std::size_t slots) {
    const std::uintptr_t* table = nullptr;
    std::memcpy(&table, object, sizeof(table));
    return std::vector<std::uintptr_t>(table, table + slots);
}

// The slots in which two tables differ, without those of the destructor: whether a derived class
// gets a destructor of its own there is up to the compiler.
std::set<std::size_t> Differences(const std::vector<std::uintptr_t>& a,
                                  const std::vector<std::uintptr_t>& b) {
    std::set<std::size_t> places;
    for (std::size_t i = 2; i < a.size(); ++i) {
        if (a[i] != b[i]) places.insert(i);
    }
    return places;
}

// The destructor's two slots and the operations of each class.
constexpr std::size_t NODE_SLOTS = 2 + 20;
constexpr std::size_t TEXT_SLOTS = NODE_SLOTS + 16;
constexpr std::size_t BINARY_SLOTS = NODE_SLOTS + 3;
constexpr std::size_t DOCUMENT_SLOTS = 2 + 10;
constexpr std::size_t HANDLER_SLOTS = 2 + 11;
constexpr std::size_t SAX_ATTRIBUT_SLOTS = 2 + 4;
constexpr std::size_t WRITER_SLOTS = 2 + 13;

// The one private operation: an override of it has its slot.
class CDeletingBinary : public CBinaryProbe {
public:
    void DeleteData() override {}
};

// One operation overridden, nothing else.
class CNamed : public CElementProbe {
public:
    using CElementProbe::CElementProbe;
    const char* GetTagName() override { return "named"; }
};

// The attribute class hides its constructor.
class CSaxAttributProbe : public CXMLSaxAttribut {
public:
    CSaxAttributProbe() : CXMLSaxAttribut("u", "l", "q", "v") {}
};

class CTextHandler : public CXMLSaxHandler {
public:
    void Characters(const char*) override {}
};

class CTextWriter : public CXMLSaxWriter {
public:
    void Characters(const char*) override {}
};

// Keeps the table of an attribute that the library made.
class CAttributTable : public CXMLSaxHandler {
public:
    void StartElement(const char*, const char*, const char*,
                      CXMLSaxAttribut** attributes) override {
        m_Slots = Slots(attributes[0], SAX_ATTRIBUT_SLOTS);
    }
    std::vector<std::uintptr_t> m_Slots;
};

using StartOnStream = void (CXMLSaxWriter::*)(std::ostream*, bool, bool);
using StartInFile = void (CXMLSaxWriter::*)(const char*, bool);
using StreamSave = void (CXMLDocument::*)(std::ostream&, bool);
using FileSave = void (CXMLDocument::*)(const char*, bool);

}  // namespace

TEST(VtableLayout, OfNodes) {
    EXPECT_TRUE(std::has_virtual_destructor<CElementProbe>::value);
    ExpectSlots(2, &CElementProbe::Save, &CElementProbe::IncQueryResult,
                &CElementProbe::AddToQueryResult, &CXMLNode::DeleteChild, &CXMLNode::GetTagName,
                &CXMLNode::SetTagName, &CXMLNode::GetChildren, &CXMLNode::GetFirstChild,
                &CXMLNode::CreateChild, &CXMLNode::CopyChild, &CXMLNode::CreateTextChild,
                &CXMLNode::CreateBinChild, &CXMLNode::GetAttributes, &CXMLNode::GetAttributeValue,
                &CXMLNode::SetAttribute, &CXMLNode::GetNodeType, &CXMLNode::GetTextChildValue,
                &CXMLNode::SetTextChildValue, &CXMLNode::GetNodes, &CXMLNode::GetParentNode);
}

TEST(VtableLayout, OfTextNodesBehindThoseOfNodes) {
    ExpectSlots(
        NODE_SLOTS, &CXMLTextNode::SetText, &CXMLTextNode::SetDateTimeText,
        &CXMLTextNode::SetDateText, &CXMLTextNode::SetTimeText, &CXMLTextNode::SetDoubleText,
        &CXMLTextNode::SetLongText, &CXMLTextNode::SetBoolText, &CXMLTextNode::SetBinaryText,
        &CXMLTextNode::GetText, &CXMLTextNode::GetDateText, &CXMLTextNode::GetDateTimeText,
        &CXMLTextNode::GetTimeText, &CXMLTextNode::GetDoubleText, &CXMLTextNode::GetLongText,
        &CXMLTextNode::GetBoolText, &CXMLTextNode::GetBinaryText);
}

TEST(VtableLayout, OfBinaryNodesBehindThoseOfNodes) {
    ExpectSlots(NODE_SLOTS, &CXMLBinNode::SetData, &CXMLBinNode::GetData,
                &CDeletingBinary::DeleteData);
}

TEST(VtableLayout, OfLeavesInTheSlotsOfTheNodesTheyDeriveFrom) {
    EXPECT_EQ(SlotOf(&CTextProbe::Save), 2);
    EXPECT_EQ(SlotOf(&CBinaryProbe::Save), 2);
    EXPECT_EQ(SlotOf(&CXMLTextNode::SetTagName), 7);
    EXPECT_EQ(SlotOf(&CXMLBinNode::SetTagName), 7);
    EXPECT_EQ(SlotOf(&CXMLTextNode::CreateChild), 10);
    EXPECT_EQ(SlotOf(&CXMLBinNode::CreateChild), 10);
    ExpectSlots(12, &CXMLTextNode::CreateTextChild, &CXMLTextNode::CreateBinChild);
    ExpectSlots(12, &CXMLBinNode::CreateTextChild, &CXMLBinNode::CreateBinChild);
    ExpectSlots(16, &CXMLTextNode::SetAttribute, &CXMLTextNode::GetNodeType,
                &CXMLTextNode::GetTextChildValue, &CXMLTextNode::SetTextChildValue,
                &CXMLTextNode::GetNodes);
    ExpectSlots(16, &CXMLBinNode::SetAttribute, &CXMLBinNode::GetNodeType,
                &CXMLBinNode::GetTextChildValue, &CXMLBinNode::SetTextChildValue,
                &CXMLBinNode::GetNodes);
}

TEST(VtableLayout, OfDocuments) {
    EXPECT_TRUE(std::has_virtual_destructor<CDocumentProbe>::value);
    ExpectSlots(2, &CXMLDocument::Delete, static_cast<StreamSave>(&CXMLDocument::Save),
                static_cast<FileSave>(&CXMLDocument::Save), &CXMLDocument::GetRoot,
                &CXMLDocument::CreateRoot, &CXMLDocument::Clone, &CXMLDocument::SetDTDRef,
                &CXMLDocument::GetDTDName, &CXMLDocument::GetDTDPath, &CXMLDocument::GetNodes);
}

TEST(VtableLayout, OfExceptionsWithoutADestructor) {
    EXPECT_FALSE(std::has_virtual_destructor<CXMLException>::value);
    ExpectSlots(0, &CXMLException::GetMessage, &CXMLException::GetID);
}

TEST(VtableLayout, OfConvertersWithoutADestructor) {
    EXPECT_FALSE(std::has_virtual_destructor<CWideCharToString>::value);
    EXPECT_EQ(SlotOf(&CWideCharToString::Convert), 0);
}

TEST(VtableLayout, OfHandlers) {
    EXPECT_TRUE(std::has_virtual_destructor<CXMLSaxHandler>::value);
    ExpectSlots(2, &CXMLSaxHandler::StartDocument, &CXMLSaxHandler::EndDocument,
                &CXMLSaxHandler::StartElement, &CXMLSaxHandler::EndElement,
                &CXMLSaxHandler::Characters, &CXMLSaxHandler::StartCDATA, &CXMLSaxHandler::EndCDATA,
                &CXMLSaxHandler::StartDTD, &CXMLSaxHandler::StartNamespace,
                &CXMLSaxHandler::EndNamespace, &CXMLSaxHandler::GetSourceOffset);

    CXMLSaxHandler plain;
    CTextHandler text;
    const std::set<std::size_t> overridden = {6};
    EXPECT_EQ(Differences(Slots(&plain, HANDLER_SLOTS), Slots(&text, HANDLER_SLOTS)), overridden);
}

TEST(VtableLayout, OfReportedAttributes) {
    EXPECT_TRUE(std::has_virtual_destructor<CSaxAttributProbe>::value);
    ExpectSlots(2, &CXMLSaxAttribut::GetUri, &CXMLSaxAttribut::GetLocalName,
                &CXMLSaxAttribut::GetQName, &CXMLSaxAttribut::GetValue);

    CAttributTable handler;
    LoadMemory("<r k='v'/>", handler);
    ASSERT_EQ(handler.m_Slots.size(), SAX_ATTRIBUT_SLOTS);
    CSaxAttributProbe probe;
    EXPECT_EQ(Differences(handler.m_Slots, Slots(&probe, SAX_ATTRIBUT_SLOTS)),
              std::set<std::size_t>());
}

TEST(VtableLayout, OfWriters) {
    EXPECT_TRUE(std::has_virtual_destructor<CXMLSaxWriter>::value);
    ExpectSlots(2, static_cast<StartOnStream>(&CXMLSaxWriter::StartDocument),
                static_cast<StartInFile>(&CXMLSaxWriter::StartDocument),
                &CXMLSaxWriter::EndDocument, &CXMLSaxWriter::StartElement,
                &CXMLSaxWriter::EndElement, &CXMLSaxWriter::Characters, &CXMLSaxWriter::Data,
                &CXMLSaxWriter::Date, &CXMLSaxWriter::DateTime, &CXMLSaxWriter::Time,
                &CXMLSaxWriter::Double, &CXMLSaxWriter::Long, &CXMLSaxWriter::Bool);

    CXMLSaxWriter plain;
    CTextWriter text;
    const std::set<std::size_t> overridden = {7};
    EXPECT_EQ(Differences(Slots(&plain, WRITER_SLOTS), Slots(&text, WRITER_SLOTS)), overridden);
}

TEST(VtableLayout, HasNoPlaceForClassesWithoutVirtualOperations) {
    EXPECT_FALSE(std::is_polymorphic<CXMLAttribut>::value);
    EXPECT_FALSE(std::is_polymorphic<CXMLManager>::value);
    EXPECT_EQ(SlotOf(&CXMLAttribut::GetName), NOT_VIRTUAL);
    EXPECT_EQ(SlotOf(&CXMLAttribut::SetValue), NOT_VIRTUAL);
    EXPECT_EQ(SlotOf(&CXMLManager::IsInitialized), NOT_VIRTUAL);
    EXPECT_EQ(SlotOf(&CXMLManager::CreateDocument), NOT_VIRTUAL);
}

TEST(VtableLayout, ShowsAnOverrideInItsSlotOnly) {
    CElementProbe plain("plain");
    CNamed named("named");
    const std::set<std::size_t> expected = {6};
    EXPECT_EQ(Differences(Slots(&plain, NODE_SLOTS), Slots(&named, NODE_SLOTS)), expected);

    CBinaryProbe binary;
    CDeletingBinary deleting;
    const std::set<std::size_t> deleted = {BINARY_SLOTS - 1};
    EXPECT_EQ(Differences(Slots(&binary, BINARY_SLOTS), Slots(&deleting, BINARY_SLOTS)), deleted);
}

TEST(VtableLayout, OfTheLibrarysLeavesOverridesWhatLeavesRefuse) {
    const Document document = NewDocumentWithRoot("r");
    CXMLNode* root = document->GetRoot();
    const auto element = Slots(root, NODE_SLOTS);
    const auto text = Slots(root->CreateTextChild("t"), NODE_SLOTS);
    const auto binary = Slots(root->CreateBinChild(), NODE_SLOTS);
    const std::set<std::size_t> overridden = {2, 7, 10, 12, 13, 16, 17, 18, 19, 20};
    EXPECT_EQ(Differences(element, text), overridden);
    EXPECT_EQ(Differences(element, binary), overridden);
}

TEST(VtableLayout, OfTheLibrarysObjectsIsWhatDerivedObjectsInherit) {
    const Document document = NewDocumentWithRoot("r");
    CXMLNode* root = document->GetRoot();
    const std::set<std::size_t> none;
    CElementProbe element("e");
    EXPECT_EQ(Differences(Slots(root, NODE_SLOTS), Slots(&element, NODE_SLOTS)), none);
    CTextProbe text("t");
    EXPECT_EQ(Differences(Slots(root->CreateTextChild("t"), TEXT_SLOTS), Slots(&text, TEXT_SLOTS)),
              none);
    CBinaryProbe binary;
    EXPECT_EQ(
        Differences(Slots(root->CreateBinChild(), BINARY_SLOTS), Slots(&binary, BINARY_SLOTS)),
        none);
    CDocumentProbe probe;
    EXPECT_EQ(Differences(Slots(document.get(), DOCUMENT_SLOTS), Slots(&probe, DOCUMENT_SLOTS)),
              none);
}
