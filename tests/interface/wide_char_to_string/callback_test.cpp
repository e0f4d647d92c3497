// The converter between the parser's strings and a client's in callback loads: which strings an installed one
// is asked for, what it may answer, and what happens when it comes or goes in the middle of a load.
#include <algorithm>
#include <cstring>
#include <functional>
#include <new>
#include <stdexcept>

#include "support/recording_handler.h"
#include "support/testing.h"
#include "support/unicode.h"

using namespace norvask;
using namespace norvask_test;
namespace {

// Notes each source that it is asked for. The answer is made from the source by a function, which may
// answer NULL; without one it is what the library gives.
class CAnsweringConverter : public CWideCharToString {
public:
    using Answer = std::function<const char*(const std::string& source)>;

    explicit CAnsweringConverter(Answer answer = nullptr) : m_Answer(std::move(answer)) {}
    CAnsweringConverter(const CAnsweringConverter&) = delete;
    CAnsweringConverter& operator=(const CAnsweringConverter&) = delete;
    ~CAnsweringConverter() { Manager().SetWideCharToStringConverter(nullptr); }

    char* Convert(const char16_t* source, std::size_t length) override {
        EXPECT_NE(source, nullptr);
        const std::u16string units(source);
        EXPECT_EQ(length, units.size());
        m_Asked.push_back(Utf8OfUtf16(units));
        if (!m_Answer) return CWideCharToString::Convert(source, length);
        const char* answer = m_Answer(m_Asked.back());
        if (!answer) return nullptr;
        char* copy = AllocString(std::strlen(answer) + 1);
        std::strcpy(copy, answer);
        return copy;
    }

    void Install() { Manager().SetWideCharToStringConverter(this); }
    std::vector<std::string> Asked() const {
        std::vector<std::string> sorted = m_Asked;
        std::sort(sorted.begin(), sorted.end());
        return sorted;
    }
    std::size_t Count() const { return m_Asked.size(); }

private:
    Answer m_Answer;
    std::vector<std::string> m_Asked;
};

class CInstalledConverter : public CAnsweringConverter {
public:
    explicit CInstalledConverter(Answer answer = nullptr) : CAnsweringConverter(std::move(answer)) {
        Install();
    }
};

// The answer `answer` for one source and the source itself for all others.
CAnsweringConverter::Answer Instead(const std::string& source, const char* answer) {
    return [=](const std::string& asked) { return asked == source ? answer : asked.c_str(); };
}

std::vector<std::string> Sorted(std::vector<std::string> strings) {
    std::sort(strings.begin(), strings.end());
    return strings;
}

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

const char* const kDocument =
    "<r xmlns:p='u' k='v'>\n<p:a k='v'>x</p:a><p:a k='v'/><![CDATA[y]]></r>";
const std::vector<std::string> kConversions = {
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
    const std::string events = EventsOfMemory(kDocument);
    TemporaryFile file(".xml", kDocument);
    CInstalledConverter converter;
    EXPECT_EQ(EventsOfMemory(kDocument), events);
    EXPECT_EQ(converter.Asked(), Sorted(kConversions));
    EXPECT_EQ(EventsOfFile(file.Name()), events);
    EXPECT_EQ(converter.Count(), 2 * kConversions.size());
}

TEST(CallbackConverter, IsAskedForRepeatedNamesAsOftenAsTheyCome) {
    std::string xml = "<r>";
    for (int i = 0; i < 1000; ++i)
        xml += "<e k='v'/>";
    CInstalledConverter converter;
    CXMLSaxHandler handler;
    LoadMemory(xml + "</r>", handler);
    EXPECT_EQ(converter.Count(), 6u + 1000 * 10);
}

// A converter may answer differently each time, and each of its answers is used once.
TEST(CallbackConverter, GivesEachOfItsAnswersToOneString) {
    std::vector<std::string> given;
    CInstalledConverter converter([&given](const std::string&) {
        given.push_back("answer " + std::to_string(given.size()));
        return given.back().c_str();
    });
    CStrings handler;
    LoadMemory("<r k='v' l='v'><a k='v'>x</a><a k='v'>x</a><r xmlns='u'/></r>", handler);
    EXPECT_EQ(given.size(), 3u + 8 + 3 + 4 + 1 + 3 + 3 + 4 + 1 + 3 + 2 + 3 + 3 + 1 + 3);
    EXPECT_EQ(Sorted(handler.m_Strings), Sorted(given));
}

TEST(CallbackConverter, IsAskedForTheDocumentTypeDeclaration) {
    TemporaryFile dtd(".dtd", "<!ELEMENT r ANY>");
    const std::string xml = std::string("<!DOCTYPE q PUBLIC 'pub' '") + dtd.Name() + "'><r/>";
    CInstalledConverter converter([](const std::string& source) {
        return source == "r" || source.empty() ? source.c_str() : "other";
    });
    EXPECT_EQ(EventsOfMemory(xml), Whole("StartDTD \"other\" public \"other\" system \"other\"\n"
                                         "StartElement r\nEndElement r\n"));
    EXPECT_EQ(converter.Asked(), Sorted({"q", "pub", dtd.Name(), "", "r", "r", "", "r", "r"}));
}

TEST(CallbackConverter, IsAskedForTheParserMessages) {
    CInstalledConverter converter([](const std::string& source) {
        return source == "Memfile" ? "memory" : source.size() > 1 ? "no good" : source.c_str();
    });
    CRecordingHandler handler;
    EXPECT_LOAD_ERROR(LoadMemory("<r>\n</a>", handler), "memory", 2, "no good");
    EXPECT_EQ(converter.Asked(), Sorted({"", "r", "r", "Memfile", "expected end of tag 'r'"}));
}

// Latin-1 for strings that have it: callbacks receive what the converter answers, byte for byte.
TEST(CallbackConverter, DecidesTheEncodingOfTheCallbacks) {
    std::string latin;
    CInstalledConverter converter([&latin](const std::string& source) {
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
        CInstalledConverter converter(Instead("\n", "line"));
        EXPECT_EQ(EventsOfMemory("<r>\n</r>"),
                  Whole("StartElement r\nCharacters \"line\"\nEndElement r\n"));
    }
    CInstalledConverter converter(Instead("text", "\n\t"));
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
        CInstalledConverter converter(Instead(row.source, nullptr));
        EXPECT_EQ(EventsOfMemory(xml), row.events);
    }
    CInstalledConverter never([](const std::string&) { return nullptr; });
    EXPECT_EQ(EventsOfMemory(xml), events("", "", "", "=\"\"", "", ""));
}

TEST(CallbackConverter, MayAnswerNullForIdentifiersAndMessages) {
    TemporaryFile dtd(".dtd", "<!ELEMENT r ANY>");
    CInstalledConverter converter([](const std::string&) { return nullptr; });
    EXPECT_EQ(EventsOfMemory(std::string("<!DOCTYPE r PUBLIC 'p' '") + dtd.Name() + "'><r/>"),
              Whole("StartDTD \"\" public \"\" system \"\"\nStartElement \nEndElement \n"));
    EXPECT_EQ(EventsOfMemory("<!DOCTYPE r []><r/>"),
              Whole("StartDTD \"\" public NULL system NULL\nStartElement \nEndElement \n"));
    CRecordingHandler handler;
    EXPECT_LOAD_ERROR(LoadMemory("<r>\n</a>", handler), "", 2, "");
}

// Whatever it throws, at whichever string, passes to the caller as it is.
TEST(CallbackConverter, MayThrowAtEveryString) {
    const std::string whole = EventsOfMemory(kDocument);
    for (std::size_t failing = 0; failing < kConversions.size(); ++failing) {
        for (int kind = 0; kind < 4; ++kind) {
            std::size_t asked = 0;
            CInstalledConverter converter([&](const std::string& source) {
                if (asked++ != failing) return source.c_str();
                if (kind == 0) throw std::runtime_error("the converter's own");
                if (kind == 1) throw 42;
                if (kind == 2) throw std::bad_alloc();
                throw CXMLException(77, "the converter's own");
            });
            CRecordingHandler handler;
            std::string caught = "nothing";
            try {
                LoadMemory(kDocument, handler);
            } catch (const std::runtime_error& e) {
                caught = std::string("runtime_error ") + e.what();
            } catch (int number) {
                caught = std::to_string(number);
            } catch (const std::bad_alloc&) {
                caught = "bad_alloc";
            } catch (CXMLException& e) {
                caught = std::to_string(e.GetID()) + " " + e.GetMessage();
            }
            const char* const expected[] = {"runtime_error the converter's own", "42", "bad_alloc",
                                            "77 the converter's own"};
            EXPECT_EQ(caught, expected[kind]) << "string " << failing;
            EXPECT_EQ(converter.Count(), failing + 1);
            const std::string told = handler.Take();
            EXPECT_LT(told.size(), whole.size());
            EXPECT_EQ(told, whole.substr(0, told.size()));
            EXPECT_EQ(handler.GetSourceOffset(), 0u);
            Manager().SetWideCharToStringConverter(nullptr);
            LoadMemory(kDocument, handler);
            EXPECT_EQ(handler.Take(), whole);
        }
    }
}

// From the next callback on, whether the names are new or have come before.
TEST(CallbackConverter, MayBeInstalledByACallback) {
    CAnsweringConverter converter([](const std::string& source) {
        return source.empty() ? "" : source == "a" ? "A" : source == "\n" ? "\n" : "other";
    });
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
    CInstalledConverter converter(
        [](const std::string& source) { return source.empty() ? "" : "other"; });
    int texts = 0;
    CRecordingHandler handler([&](const std::string& line) {
        if (line == "Characters \"other\"" && ++texts == 2)
            Manager().SetWideCharToStringConverter(nullptr);
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
        CAnsweringConverter converter;
        unsigned callbacks = 0;
        CRecordingHandler handler([&](const std::string&) {
            if (++callbacks % period != 0) return;
            if (callbacks / period % 2) {
                converter.Install();
            } else {
                Manager().SetWideCharToStringConverter(nullptr);
            }
        });
        LoadMemory(xml, handler);
        EXPECT_TRUE(handler.Take() == whole) << period;
        EXPECT_GT(converter.Count(), 1000u);
    }
}
