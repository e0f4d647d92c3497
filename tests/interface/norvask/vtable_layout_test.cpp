// The order of the virtual operations is part of the binary interface. In the Itanium C++ ABI a
// pointer to a virtual member function holds the place of its slot in the virtual table, and a
// virtual destructor takes two slots.
#include <cstdint>
#include <cstring>
#include <set>
#include <type_traits>

#include "support/derived.h"
#include "support/testing.h"

using namespace norvask;
using namespace norvask_test;

namespace {

constexpr std::ptrdiff_t kNotVirtual = -1;

// The slot that a pointer to a member function names; kNotVirtual for an ordinary function.
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
    return isVirtual && offset % slotSize == 0 ? offset / slotSize : kNotVirtual;
}

// The addresses in the first `slots` slots of an object's virtual table.
std::vector<std::uintptr_t> Slots(const void* object, std::size_t slots) {
    const std::uintptr_t* table = nullptr;
    std::memcpy(&table, object, sizeof(table));
    return std::vector<std::uintptr_t>(table, table + slots);
}

// The slots in which two tables differ, without those of the destructor: whether a derived class gets
// a destructor of its own there is up to the compiler.
std::set<std::size_t> Differences(const std::vector<std::uintptr_t>& a,
                                  const std::vector<std::uintptr_t>& b) {
    std::set<std::size_t> places;
    for (std::size_t i = 2; i < a.size(); ++i) {
        if (a[i] != b[i]) places.insert(i);
    }
    return places;
}

// The destructor's two slots and the operations of each class.
constexpr std::size_t kNodeSlots = 2 + 20;
constexpr std::size_t kTextSlots = kNodeSlots + 16;
constexpr std::size_t kBinarySlots = kNodeSlots + 3;
constexpr std::size_t kDocumentSlots = 2 + 10;
constexpr std::size_t kHandlerSlots = 2 + 11;
constexpr std::size_t kSaxAttributSlots = 2 + 4;
constexpr std::size_t kWriterSlots = 2 + 13;

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
    ~CSaxAttributProbe() override = default;
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
        m_Slots = Slots(attributes[0], kSaxAttributSlots);
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
    EXPECT_EQ(SlotOf(&CElementProbe::Save), 2);
    EXPECT_EQ(SlotOf(&CElementProbe::IncQueryResult), 3);
    EXPECT_EQ(SlotOf(&CElementProbe::AddToQueryResult), 4);
    EXPECT_EQ(SlotOf(&CXMLNode::DeleteChild), 5);
    EXPECT_EQ(SlotOf(&CXMLNode::GetTagName), 6);
    EXPECT_EQ(SlotOf(&CXMLNode::SetTagName), 7);
    EXPECT_EQ(SlotOf(&CXMLNode::GetChildren), 8);
    EXPECT_EQ(SlotOf(&CXMLNode::GetFirstChild), 9);
    EXPECT_EQ(SlotOf(&CXMLNode::CreateChild), 10);
    EXPECT_EQ(SlotOf(&CXMLNode::CopyChild), 11);
    EXPECT_EQ(SlotOf(&CXMLNode::CreateTextChild), 12);
    EXPECT_EQ(SlotOf(&CXMLNode::CreateBinChild), 13);
    EXPECT_EQ(SlotOf(&CXMLNode::GetAttributes), 14);
    EXPECT_EQ(SlotOf(&CXMLNode::GetAttributeValue), 15);
    EXPECT_EQ(SlotOf(&CXMLNode::SetAttribute), 16);
    EXPECT_EQ(SlotOf(&CXMLNode::GetNodeType), 17);
    EXPECT_EQ(SlotOf(&CXMLNode::GetTextChildValue), 18);
    EXPECT_EQ(SlotOf(&CXMLNode::SetTextChildValue), 19);
    EXPECT_EQ(SlotOf(&CXMLNode::GetNodes), 20);
    EXPECT_EQ(SlotOf(&CXMLNode::GetParentNode), 21);
}

TEST(VtableLayout, OfTextNodesBehindThoseOfNodes) {
    const std::ptrdiff_t first = kNodeSlots;
    EXPECT_EQ(SlotOf(&CXMLTextNode::SetText), first);
    EXPECT_EQ(SlotOf(&CXMLTextNode::SetDateTimeText), first + 1);
    EXPECT_EQ(SlotOf(&CXMLTextNode::SetDateText), first + 2);
    EXPECT_EQ(SlotOf(&CXMLTextNode::SetTimeText), first + 3);
    EXPECT_EQ(SlotOf(&CXMLTextNode::SetDoubleText), first + 4);
    EXPECT_EQ(SlotOf(&CXMLTextNode::SetLongText), first + 5);
    EXPECT_EQ(SlotOf(&CXMLTextNode::SetBoolText), first + 6);
    EXPECT_EQ(SlotOf(&CXMLTextNode::SetBinaryText), first + 7);
    EXPECT_EQ(SlotOf(&CXMLTextNode::GetText), first + 8);
    EXPECT_EQ(SlotOf(&CXMLTextNode::GetDateText), first + 9);
    EXPECT_EQ(SlotOf(&CXMLTextNode::GetDateTimeText), first + 10);
    EXPECT_EQ(SlotOf(&CXMLTextNode::GetTimeText), first + 11);
    EXPECT_EQ(SlotOf(&CXMLTextNode::GetDoubleText), first + 12);
    EXPECT_EQ(SlotOf(&CXMLTextNode::GetLongText), first + 13);
    EXPECT_EQ(SlotOf(&CXMLTextNode::GetBoolText), first + 14);
    EXPECT_EQ(SlotOf(&CXMLTextNode::GetBinaryText), first + 15);
}

TEST(VtableLayout, OfBinaryNodesBehindThoseOfNodes) {
    const std::ptrdiff_t first = kNodeSlots;
    EXPECT_EQ(SlotOf(&CXMLBinNode::SetData), first);
    EXPECT_EQ(SlotOf(&CXMLBinNode::GetData), first + 1);
    EXPECT_EQ(SlotOf(&CDeletingBinary::DeleteData), first + 2);
}

TEST(VtableLayout, OfLeavesInTheSlotsOfTheNodesTheyDeriveFrom) {
    EXPECT_EQ(SlotOf(&CTextProbe::Save), 2);
    EXPECT_EQ(SlotOf(&CBinaryProbe::Save), 2);
    EXPECT_EQ(SlotOf(&CXMLTextNode::SetTagName), 7);
    EXPECT_EQ(SlotOf(&CXMLBinNode::SetTagName), 7);
    EXPECT_EQ(SlotOf(&CXMLTextNode::CreateChild), 10);
    EXPECT_EQ(SlotOf(&CXMLBinNode::CreateChild), 10);
    EXPECT_EQ(SlotOf(&CXMLTextNode::CreateTextChild), 12);
    EXPECT_EQ(SlotOf(&CXMLBinNode::CreateTextChild), 12);
    EXPECT_EQ(SlotOf(&CXMLTextNode::CreateBinChild), 13);
    EXPECT_EQ(SlotOf(&CXMLBinNode::CreateBinChild), 13);
    EXPECT_EQ(SlotOf(&CXMLTextNode::SetAttribute), 16);
    EXPECT_EQ(SlotOf(&CXMLBinNode::SetAttribute), 16);
    EXPECT_EQ(SlotOf(&CXMLTextNode::GetNodeType), 17);
    EXPECT_EQ(SlotOf(&CXMLBinNode::GetNodeType), 17);
    EXPECT_EQ(SlotOf(&CXMLTextNode::GetTextChildValue), 18);
    EXPECT_EQ(SlotOf(&CXMLBinNode::GetTextChildValue), 18);
    EXPECT_EQ(SlotOf(&CXMLTextNode::SetTextChildValue), 19);
    EXPECT_EQ(SlotOf(&CXMLBinNode::SetTextChildValue), 19);
    EXPECT_EQ(SlotOf(&CXMLTextNode::GetNodes), 20);
    EXPECT_EQ(SlotOf(&CXMLBinNode::GetNodes), 20);
}

TEST(VtableLayout, OfDocuments) {
    EXPECT_TRUE(std::has_virtual_destructor<CDocumentProbe>::value);
    EXPECT_EQ(SlotOf(&CXMLDocument::Delete), 2);
    EXPECT_EQ(SlotOf(static_cast<StreamSave>(&CXMLDocument::Save)), 3);
    EXPECT_EQ(SlotOf(static_cast<FileSave>(&CXMLDocument::Save)), 4);
    EXPECT_EQ(SlotOf(&CXMLDocument::GetRoot), 5);
    EXPECT_EQ(SlotOf(&CXMLDocument::CreateRoot), 6);
    EXPECT_EQ(SlotOf(&CXMLDocument::Clone), 7);
    EXPECT_EQ(SlotOf(&CXMLDocument::SetDTDRef), 8);
    EXPECT_EQ(SlotOf(&CXMLDocument::GetDTDName), 9);
    EXPECT_EQ(SlotOf(&CXMLDocument::GetDTDPath), 10);
    EXPECT_EQ(SlotOf(&CXMLDocument::GetNodes), 11);
}

TEST(VtableLayout, OfExceptionsWithoutADestructor) {
    EXPECT_FALSE(std::has_virtual_destructor<CXMLException>::value);
    EXPECT_EQ(SlotOf(&CXMLException::GetMessage), 0);
    EXPECT_EQ(SlotOf(&CXMLException::GetID), 1);
}

TEST(VtableLayout, OfConvertersWithoutADestructor) {
    EXPECT_FALSE(std::has_virtual_destructor<CWideCharToString>::value);
    EXPECT_EQ(SlotOf(&CWideCharToString::Convert), 0);
}

TEST(VtableLayout, OfHandlers) {
    EXPECT_TRUE(std::has_virtual_destructor<CXMLSaxHandler>::value);
    EXPECT_EQ(SlotOf(&CXMLSaxHandler::StartDocument), 2);
    EXPECT_EQ(SlotOf(&CXMLSaxHandler::EndDocument), 3);
    EXPECT_EQ(SlotOf(&CXMLSaxHandler::StartElement), 4);
    EXPECT_EQ(SlotOf(&CXMLSaxHandler::EndElement), 5);
    EXPECT_EQ(SlotOf(&CXMLSaxHandler::Characters), 6);
    EXPECT_EQ(SlotOf(&CXMLSaxHandler::StartCDATA), 7);
    EXPECT_EQ(SlotOf(&CXMLSaxHandler::EndCDATA), 8);
    EXPECT_EQ(SlotOf(&CXMLSaxHandler::StartDTD), 9);
    EXPECT_EQ(SlotOf(&CXMLSaxHandler::StartNamespace), 10);
    EXPECT_EQ(SlotOf(&CXMLSaxHandler::EndNamespace), 11);
    EXPECT_EQ(SlotOf(&CXMLSaxHandler::GetSourceOffset), 12);

    CXMLSaxHandler plain;
    CTextHandler text;
    const std::set<std::size_t> overridden = {6};
    EXPECT_EQ(Differences(Slots(&plain, kHandlerSlots), Slots(&text, kHandlerSlots)), overridden);
}

TEST(VtableLayout, OfReportedAttributes) {
    EXPECT_TRUE(std::has_virtual_destructor<CSaxAttributProbe>::value);
    EXPECT_EQ(SlotOf(&CXMLSaxAttribut::GetUri), 2);
    EXPECT_EQ(SlotOf(&CXMLSaxAttribut::GetLocalName), 3);
    EXPECT_EQ(SlotOf(&CXMLSaxAttribut::GetQName), 4);
    EXPECT_EQ(SlotOf(&CXMLSaxAttribut::GetValue), 5);

    CAttributTable handler;
    unsigned char xml[] = "<r k='v'/>";
    Manager().LoadDocument(xml, sizeof xml - 1, &handler, false, false, nullptr, false, false);
    ASSERT_EQ(handler.m_Slots.size(), kSaxAttributSlots);
    CSaxAttributProbe probe;
    EXPECT_EQ(Differences(handler.m_Slots, Slots(&probe, kSaxAttributSlots)),
              std::set<std::size_t>());
}

TEST(VtableLayout, OfWriters) {
    EXPECT_TRUE(std::has_virtual_destructor<CXMLSaxWriter>::value);
    EXPECT_EQ(SlotOf(static_cast<StartOnStream>(&CXMLSaxWriter::StartDocument)), 2);
    EXPECT_EQ(SlotOf(static_cast<StartInFile>(&CXMLSaxWriter::StartDocument)), 3);
    EXPECT_EQ(SlotOf(&CXMLSaxWriter::EndDocument), 4);
    EXPECT_EQ(SlotOf(&CXMLSaxWriter::StartElement), 5);
    EXPECT_EQ(SlotOf(&CXMLSaxWriter::EndElement), 6);
    EXPECT_EQ(SlotOf(&CXMLSaxWriter::Characters), 7);
    EXPECT_EQ(SlotOf(&CXMLSaxWriter::Data), 8);
    EXPECT_EQ(SlotOf(&CXMLSaxWriter::Date), 9);
    EXPECT_EQ(SlotOf(&CXMLSaxWriter::DateTime), 10);
    EXPECT_EQ(SlotOf(&CXMLSaxWriter::Time), 11);
    EXPECT_EQ(SlotOf(&CXMLSaxWriter::Double), 12);
    EXPECT_EQ(SlotOf(&CXMLSaxWriter::Long), 13);
    EXPECT_EQ(SlotOf(&CXMLSaxWriter::Bool), 14);

    CXMLSaxWriter plain;
    CTextWriter text;
    const std::set<std::size_t> overridden = {7};
    EXPECT_EQ(Differences(Slots(&plain, kWriterSlots), Slots(&text, kWriterSlots)), overridden);
}

TEST(VtableLayout, HasNoPlaceForClassesWithoutVirtualOperations) {
    EXPECT_FALSE(std::is_polymorphic<CXMLAttribut>::value);
    EXPECT_FALSE(std::is_polymorphic<CXMLManager>::value);
    EXPECT_EQ(SlotOf(&CXMLAttribut::GetName), kNotVirtual);
    EXPECT_EQ(SlotOf(&CXMLAttribut::SetValue), kNotVirtual);
    EXPECT_EQ(SlotOf(&CXMLManager::IsInitialized), kNotVirtual);
    EXPECT_EQ(SlotOf(&CXMLManager::CreateDocument), kNotVirtual);
}

TEST(VtableLayout, ShowsAnOverrideInItsSlotOnly) {
    CElementProbe plain("plain");
    CNamed named("named");
    const std::set<std::size_t> expected = {6};
    EXPECT_EQ(Differences(Slots(&plain, kNodeSlots), Slots(&named, kNodeSlots)), expected);

    CBinaryProbe binary;
    CDeletingBinary deleting;
    const std::set<std::size_t> deleted = {kBinarySlots - 1};
    EXPECT_EQ(Differences(Slots(&binary, kBinarySlots), Slots(&deleting, kBinarySlots)), deleted);
}

TEST(VtableLayout, OfTheLibrarysLeavesOverridesWhatLeavesRefuse) {
    const Document document = NewDocumentWithRoot("r");
    CXMLNode* root = document->GetRoot();
    const auto element = Slots(root, kNodeSlots);
    const auto text = Slots(root->CreateTextChild("t"), kNodeSlots);
    const auto binary = Slots(root->CreateBinChild(), kNodeSlots);
    const std::set<std::size_t> overridden = {2, 7, 10, 12, 13, 16, 17, 18, 19, 20};
    EXPECT_EQ(Differences(element, text), overridden);
    EXPECT_EQ(Differences(element, binary), overridden);
}

TEST(VtableLayout, OfTheLibrarysObjectsIsWhatDerivedObjectsInherit) {
    const Document document = NewDocumentWithRoot("r");
    CXMLNode* root = document->GetRoot();
    const std::set<std::size_t> none;
    CElementProbe element("e");
    EXPECT_EQ(Differences(Slots(root, kNodeSlots), Slots(&element, kNodeSlots)), none);
    CTextProbe text("t");
    EXPECT_EQ(Differences(Slots(root->CreateTextChild("t"), kTextSlots), Slots(&text, kTextSlots)),
              none);
    CBinaryProbe binary;
    EXPECT_EQ(
        Differences(Slots(root->CreateBinChild(), kBinarySlots), Slots(&binary, kBinarySlots)),
        none);
    CDocumentProbe probe;
    EXPECT_EQ(Differences(Slots(document.get(), kDocumentSlots), Slots(&probe, kDocumentSlots)),
              none);
}
