// The converter between the parser's strings and a client's in callback loads: which strings an
// installed one is asked for, what it may answer, and what happens when it comes or goes in the
// middle of a load.
#include "support/converters.h"
#include "support/recording_handler.h"
#include "support/testing.h"
#include "support/thrown.h"

using namespace norvask_test;

namespace {

// Keeps every string of every callback.
class CStrings : public CXMLSaxHandler {
public:
    void StartElement(const char* uri, const char* localName, const char* qName,
                      CXMLSaxAttribut** attributes) override {
        Keep({uri, localName, qName});
        for (; *attributes; ++attributes)
            Keep({(*attributes)->GetUri(), (*attributes)->GetLocalName(), (*attributes)->GetQName(),
                  (*attributes)->GetValue()});
    }
    void EndElement(const char* uri, const char* localName, const char* qName) override {
        Keep({uri, localName, qName});
    }
    void Characters(const char* text) override { Keep({text}); }
    void StartNamespace(const char* prefix, const char* uri) override { Keep({prefix, uri}); }
    void EndNamespace(const char* prefix) override { Keep({prefix}); }

    std::vector<std::string> m_Strings;

private:
    void Keep(std::initializer_list<const char*> strings) {
        m_Strings.insert(m_Strings.end(), strings.begin(), strings.end());
    }
};

const char* const DOCUMENT =
    "<r xmlns:p='u' k='v'>\n<p:a k='v'>x</p:a><p:a k='v'/><![CDATA[y]]></r>";
const std::vector<std::string> CONVERSIONS = {
    "p",  "u",                            // StartNamespace
    "",   "r", "r",   "", "k", "k", "v",  // StartElement with an attribute
    "\n",                                 // layout, to be seen as such
    "u",  "a", "p:a", "", "k", "k", "v",  //
    "x",                                  //
    "u",  "a", "p:a",                     // EndElement
    "u",  "a", "p:a", "", "k", "k", "v",  //
    "u",  "a", "p:a",                     //
    "y",                                  //
    "",   "r", "r",                       //
    "p"};                                 // EndNamespace

}  // namespace

TEST(CallbackConverter, IsAskedForEveryStringEveryTime) {
    const std::string events = EventsOfMemory(DOCUMENT);
    TemporaryFile file(".xml", DOCUMENT);
    CRecordingConverter converter;
    EXPECT_EQ(EventsOfMemory(DOCUMENT), events);
    EXPECT_EQ(converter.Asked(), CRecordingConverter::Sorted(CONVERSIONS));
    EXPECT_EQ(EventsOfFile(file.Name()), events);
    EXPECT_EQ(converter.Count(), 2 * CONVERSIONS.size());
}

TEST(CallbackConverter, IsAskedForRepeatedNamesAsOftenAsTheyCome) {
    std::string xml = "<r>";
    for (int i = 0; i < 1000; ++i)
        xml += "<e k='v'/>";
    CRecordingConverter converter;
    CXMLSaxHandler handler;
    LoadMemory(xml + "</r>", handler);
    EXPECT_EQ(converter.Count(), 6u + 1000 * 10);
}

// A converter may answer differently each time, and each of its answers is used once.
TEST(CallbackConverter, GivesEachOfItsAnswersToOneString) {
    std::vector<std::string> given;
    CRecordingConverter converter([&given](const std::string&) {
        given.push_back("answer " + std::to_string(given.size()));
        return given.back().c_str();
    });
    CStrings handler;
    LoadMemory("<r k='v' l='v'><a k='v'>x</a><a k='v'>x</a><r xmlns='u'/></r>", handler);
    EXPECT_EQ(given.size(), 3u + 8 + 3 + 4 + 1 + 3 + 3 + 4 + 1 + 3 + 2 + 3 + 3 + 1 + 3);
    EXPECT_EQ(CRecordingConverter::Sorted(handler.m_Strings), CRecordingConverter::Sorted(given));
}

TEST(CallbackConverter, IsAskedForTheDocumentTypeDeclaration) {
    TemporaryFile dtd(".dtd", "<!ELEMENT r ANY>");
    const std::string xml = std::string("<!DOCTYPE q PUBLIC 'pub' '") + dtd.Name() + "'><r/>";
    CRecordingConverter converter([](const std::string& source) {
        return source == "r" || source.empty() ? source.c_str() : "other";
    });
    EXPECT_EQ(EventsOfMemory(xml), Whole("StartDTD \"other\" public \"other\" system \"other\"\n"
                                         "StartElement r\nEndElement r\n"));
    EXPECT_EQ(converter.Asked(),
              CRecordingConverter::Sorted({"q", "pub", dtd.Name(), "", "r", "r", "", "r", "r"}));
}

TEST(CallbackConverter, IsAskedForTheParserMessages) {
    CRecordingConverter converter([](const std::string& source) {
        return source == "Memfile" ? "memory" : source.size() > 1 ? "no good" : source.c_str();
    });
    CRecordingHandler handler;
    EXPECT_LOAD_ERROR(LoadMemory("<r>\n</a>", handler), "memory", 2, "no good");
    EXPECT_EQ(converter.Asked(),
              CRecordingConverter::Sorted({"", "r", "r", "Memfile", "expected end of tag 'r'"}));
}

// Latin-1 for strings that have it: callbacks receive what the converter answers, byte for byte.
TEST(CallbackConverter, DecidesTheEncodingOfTheCallbacks) {
    std::string latin;
    CRecordingConverter converter([&latin](const std::string& source) {
        latin = source;
        for (std::size_t at; (at = latin.find("\xC3\xA9")) != std::string::npos;)
            latin.replace(at, 2, "\xE9");
        return latin.c_str();
    });
    EXPECT_EQ(EventsOfMemory("<\xC3\xA9 \xC3\xA9='\xC3\xA9'>\xC3\xA9</\xC3\xA9>"),
              Whole("StartElement \xE9 \xE9=\"\xE9\"\nCharacters \"\xE9\"\nEndElement \xE9\n"));
}

TEST(CallbackConverter, DecidesWhatIsLayout) {
    {
        CRecordingConverter converter(CRecordingConverter::Instead("\n", "line"));
        EXPECT_EQ(EventsOfMemory("<r>\n</r>"),
                  Whole("StartElement r\nCharacters \"line\"\nEndElement r\n"));
    }
    CRecordingConverter converter(CRecordingConverter::Instead("text", "\n\t"));
    EXPECT_EQ(EventsOfMemory("<r>text<![CDATA[text]]></r>"),
              Whole("StartElement r\nStartCDATA\nCharacters \"\\n\\t\"\nEndCDATA\n"
                    "EndElement r\n"));
}

TEST(CallbackConverter, MayAnswerNullWhichIsAnEmptyStringForTheClient) {
    const std::string xml = "<r xmlns:p='u' k='v'>text<![CDATA[text]]></r>";
    const auto events = [](const std::string& prefix, const std::string& uri,
                           const std::string& element, const std::string& attribute,
                           const std::string& text, const std::string& section) {
        return Whole("StartNamespace \"" + prefix + "\"=\"" + uri + "\"\nStartElement " + element +
                     " " + attribute + "\n" + text + "StartCDATA\nCharacters \"" + section +
                     "\"\nEndCDATA\nEndElement " + element + "\nEndNamespace \"" + prefix + "\"\n");
    };
    const std::string text = "Characters \"text\"\n";
    struct {
        const char* source;
        std::string events;
    } const rows[] = {
        {"p", events("", "u", "r", "k=\"v\"", text, "text")},
        {"u", events("p", "", "r", "k=\"v\"", text, "text")},
        {"r", events("p", "u", "", "k=\"v\"", text, "text")},
        {"k", events("p", "u", "r", "=\"v\"", text, "text")},
        {"v", events("p", "u", "r", "k=\"\"", text, "text")},
        {"", events("p", "u", "r", "k=\"v\"", text, "text")},
        // An empty text between tags is layout; a section is always given.
        {"text", events("p", "u", "r", "k=\"v\"", "", "")},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.source);
        CRecordingConverter converter(CRecordingConverter::Instead(row.source, nullptr));
        EXPECT_EQ(EventsOfMemory(xml), row.events);
    }
    CRecordingConverter never([](const std::string&) { return nullptr; });
    EXPECT_EQ(EventsOfMemory(xml), events("", "", "", "=\"\"", "", ""));
}

TEST(CallbackConverter, MayAnswerNullForIdentifiersAndMessages) {
    TemporaryFile dtd(".dtd", "<!ELEMENT r ANY>");
    CRecordingConverter converter([](const std::string&) { return nullptr; });
    EXPECT_EQ(EventsOfMemory(std::string("<!DOCTYPE r PUBLIC 'p' '") + dtd.Name() + "'><r/>"),
              Whole("StartDTD \"\" public \"\" system \"\"\nStartElement \nEndElement \n"));
    EXPECT_EQ(EventsOfMemory("<!DOCTYPE r []><r/>"),
              Whole("StartDTD \"\" public NULL system NULL\nStartElement \nEndElement \n"));
    CRecordingHandler handler;
    EXPECT_LOAD_ERROR(LoadMemory("<r>\n</a>", handler), "", 2, "");
}

// Whatever it throws, at whichever string, passes to the caller as it is.
TEST(CallbackConverter, MayThrowAtEveryString) {
    const std::string whole = EventsOfMemory(DOCUMENT);
    for (std::size_t failing = 0; failing < CONVERSIONS.size(); ++failing) {
        for (const SThrow& thrown : THROWS) {
            std::size_t asked = 0;
            CRecordingConverter converter([&](const std::string& source) {
                if (asked++ == failing) thrown.now();
                return source.c_str();
            });
            CRecordingHandler handler;
            EXPECT_EQ(Thrown([&] { LoadMemory(DOCUMENT, handler); }), thrown.told)
                << "string " << failing;
            EXPECT_EQ(converter.Count(), failing + 1);
            const std::string told = handler.Take();
            EXPECT_LT(told.size(), whole.size());
            EXPECT_EQ(told, whole.substr(0, told.size()));
            EXPECT_EQ(handler.GetSourceOffset(), 0u);
            CPlainConverter::Remove();
            LoadMemory(DOCUMENT, handler);
            EXPECT_EQ(handler.Take(), whole);
        }
    }
}

// From the next callback on, whether the names are new or have come before.
TEST(CallbackConverter, MayBeInstalledByACallback) {
    CRecordingConverter converter([](const std::string& source) {
        return source.empty() ? "" : source == "a" ? "A" : source == "\n" ? "\n" : "other";
    });
    CPlainConverter::Remove();
    CRecordingHandler handler([&](const std::string& line) {
        if (line == "Characters \"x\"") converter.Install();
    });
    LoadMemory("<r><a k='v'>x</a>\n<a k='v'/><b/>z</r>", handler);
    EXPECT_EQ(handler.Take(),
              Whole("StartElement r\nStartElement a k=\"v\"\nCharacters \"x\"\nEndElement A\n"
                    "StartElement A other=\"other\"\nEndElement A\nStartElement other\n"
                    "EndElement other\nCharacters \"other\"\nEndElement other\n"));
}

TEST(CallbackConverter, MayBeRemovedByACallback) {
    CRecordingConverter converter(
        [](const std::string& source) { return source.empty() ? "" : "other"; });
    int texts = 0;
    CRecordingHandler handler([&](const std::string& line) {
        if (line == "Characters \"other\"" && ++texts == 2) CPlainConverter::Remove();
    });
    LoadMemory("<r>1<a k='v'>2</a><a k='v'>3</a><b l='w'/></r>", handler);
    EXPECT_EQ(handler.Take(),
              Whole("StartElement other\nCharacters \"other\"\nStartElement other other=\"other\"\n"
                    "Characters \"other\"\nEndElement a\nStartElement a k=\"v\"\n"
                    "Characters \"3\"\nEndElement a\nStartElement b l=\"w\"\nEndElement b\n"
                    "EndElement r\n"));
}

TEST(CallbackConverter, MayComeAndGoWithEveryCallback) {
    std::string xml = "<r>";
    for (std::size_t i = 0; i < 200; ++i)
        xml += "<e k" + std::to_string(i % 7) + "='v' l='" + std::string(i * 11, 'w') + "'>x" +
               std::to_string(i) + "</e><p:f xmlns:p='u'/><![CDATA[y]]>";
    xml += "</r>";
    const std::string whole = EventsOfMemory(xml);
    for (const unsigned period : {1u, 2u, 3u, 5u}) {
        CRecordingConverter converter;
        CPlainConverter::Remove();
        unsigned callbacks = 0;
        CRecordingHandler handler([&](const std::string&) {
            if (++callbacks % period != 0) return;
            if (callbacks / period % 2)
                converter.Install();
            else
                CPlainConverter::Remove();
        });
        LoadMemory(xml, handler);
        EXPECT_TRUE(handler.Take() == whole) << period;
        EXPECT_GT(converter.Count(), 1000u);
    }
}
