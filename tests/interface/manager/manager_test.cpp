// The manager: the one object, and those of derived classes.
#include "support/testing.h"

using namespace norvask_test;

namespace {

class CManagerProbe : public CXMLManager {
public:
    CManagerProbe() = default;
    CManagerProbe(const CXMLManager& other) : CXMLManager(other) {}
};

}  // namespace

TEST(XmlDocumentManager, IsOneInitializedObject) {
    EXPECT_TRUE(Manager().IsInitialized());
    EXPECT_EQ(&CXMLManager::GetInstance(), &CXMLManager::GetInstance());
}

TEST(XmlDocumentManager, TakesBackItsOwnConverterForNull) {
    Manager().SetWideCharToStringConverter(nullptr);
    const Document document = Load("<r>\xC3\xBC</r>");
    EXPECT_EQ(Children(*document->GetRoot()), "'\xC3\xBC'");
}

TEST(DerivedManager, InitialisesTheParserOnceMoreAndLeavesTheFirstAlone) {
    {
        CManagerProbe manager;
        EXPECT_TRUE(manager.IsInitialized());
        const Document document(manager.CreateDocument(nullptr, nullptr));
        document->CreateRoot("r");
        EXPECT_EQ(SavedBody(*document), "<r/>");
    }
    EXPECT_TRUE(Manager().IsInitialized());
    const Document document = Load("<r>text</r>");
    EXPECT_EQ(SavedBody(*document), "<r>text</r>");
}

TEST(DerivedManager, RefusesEverythingAsACopyWithoutAParser) {
    {
        CManagerProbe manager(CXMLManager::GetInstance());
        EXPECT_FALSE(manager.IsInitialized());
        unsigned char bytes[] = "<r/>";
        const TemporaryFile file(".xml", "<r/>");
        EXPECT_NO_PARSER(manager.CreateDocument(nullptr, nullptr));
        EXPECT_NO_PARSER(manager.CreateDocument("name", "path"));
        EXPECT_NO_PARSER(manager.LoadDocument(file.Name(), false, false, nullptr, false, false));
        EXPECT_NO_PARSER(manager.LoadDocument(bytes, 4, false, false, nullptr, false, false));
        // The parser comes first, whatever else is wrong.
        EXPECT_NO_PARSER(manager.LoadDocument(static_cast<const char*>(nullptr), false, false,
                                              nullptr, false, false));
        EXPECT_NO_PARSER(manager.LoadDocument(static_cast<unsigned char*>(nullptr), 0, false, false,
                                              nullptr, false, false));
    }
    EXPECT_TRUE(Manager().IsInitialized());
    const Document document = Load("<r>text</r>");
    EXPECT_EQ(SavedBody(*document), "<r>text</r>");
}
