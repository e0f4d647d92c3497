// The converter between the parser's strings and the caller's: the library's own, and one that the
// application installs, which is asked for every string, may answer what it likes, and may throw.
#include <stdexcept>

#include "support/converters.h"
#include "support/testing.h"
#include "support/thrown.h"
#include "support/unicode.h"

using namespace norvask_test;

namespace {

std::string Converted(const std::u16string& source, std::size_t length) {
    CWideCharToString converter;
    char* text = converter.Convert(source.c_str(), length);
    const std::string copy = text;
    delete[] text;
    return copy;
}

const char* const DOCUMENT =
    "<!DOCTYPE r [<!ENTITY e 'en&#116;ity'>]>\n"
    "<r xmlns='d' xmlns:p='u' k='v' p:k='&amp;' m=''>a&e;b<p:c/>\n\t<!-- c --><?p i?>"
    "<![CDATA[QQ==]]><![CDATA[!]]><c>  </c></r>";

}  // namespace

TEST(DefaultConverter, GivesTheUtf8OfEveryCodePoint) {
    std::u16string units;
    std::string bytes;
    for (char32_t c = 1; c <= LAST_CODE_POINT; ++c) {
        if (IsSurrogate(c)) continue;
        AppendUtf16(units, c);
        AppendUtf8(bytes, c);
        if (c % 4096 == 0 || c == LAST_CODE_POINT) {
            EXPECT_TRUE(Converted(units, units.size()) == bytes) << "up to " << std::hex << c;
            units.clear();
            bytes.clear();
        }
    }
}

TEST(DefaultConverter, ReplacesEveryUnpairedSurrogate) {
    struct {
        std::u16string source;
        const char* bytes;
    } const rows[] = {
        {{0xD800}, "\xEF\xBF\xBD"},
        {{0xDBFF}, "\xEF\xBF\xBD"},
        {{0xDC00}, "\xEF\xBF\xBD"},
        {{0xDFFF}, "\xEF\xBF\xBD"},
        {{'a', 0xD800, 'b'},
         "a\xEF\xBF\xBD"
         "b"},
        {{'a', 0xDC00, 'b'},
         "a\xEF\xBF\xBD"
         "b"},
        {{0xDC00, 0xD800}, "\xEF\xBF\xBD\xEF\xBF\xBD"},
        {{0xD800, 0xD800, 0xDC00}, "\xEF\xBF\xBD\xF0\x90\x80\x80"},
        {{0xD800, 0xDC00, 0xDC00}, "\xF0\x90\x80\x80\xEF\xBF\xBD"},
        {{0xDBFF, 0xDFFF}, "\xF4\x8F\xBF\xBF"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(Converted(row.source, row.source.size()), row.bytes);
    for (char16_t unit = 0xD800; unit <= 0xDFFF; ++unit) {
        EXPECT_EQ(Converted({unit}, 1), REPLACEMENT);
        EXPECT_EQ(Converted({'x', unit, 'y'}, 3), "x\xEF\xBF\xBDy");
    }
}

TEST(DefaultConverter, ReadsToTheTerminatorWhateverTheLength) {
    for (const std::size_t length : {std::size_t{0}, std::size_t{2}, static_cast<std::size_t>(-1)})
        EXPECT_EQ(Converted(u"text", length), "text");
    EXPECT_EQ(Converted(u"", 0), "");
    EXPECT_EQ(CWideCharToString().Convert(nullptr, 0), nullptr);
}

TEST(InstalledConverter, IsAskedForEveryStringOfALoad) {
    CRecordingConverter converter;
    LoadMemory(DOCUMENT);
    EXPECT_EQ(converter.Asked(), "[][\n\t][  ][!][&][aentityb][c][c][k][k][m][r][r][v]");
}

TEST(InstalledConverter, IsAskedForPrefixesAndNamespacesWhenTheyAreKept) {
    CRecordingConverter converter;
    LoadMemory(DOCUMENT, KeepPrefixes());
    EXPECT_EQ(converter.Asked(),
              "[][][\n\t][  ][!][&][aentityb][c][d][k][m][p][p:c][p:k][r][r][u][v]");
}

TEST(InstalledConverter, IsAskedAgainForAStringThatItHasConverted) {
    CRecordingConverter converter;
    LoadMemory("<r><a k='v'/><a k='v'/><a k='v'>x</a><a>x</a></r>");
    EXPECT_EQ(converter.Asked(), "[a][a][a][a][k][k][k][r][v][v][v][x][x]");
}

TEST(InstalledConverter, IsAskedForTheDocumentTypeReference) {
    TemporaryFile dtd(".dtd", "<!ELEMENT r ANY>");
    const std::string xml = std::string("<!DOCTYPE r PUBLIC 'p' '") + dtd.Name() + "'><q/>";
    {
        CRecordingConverter converter;
        LoadMemory(xml);
        EXPECT_EQ(converter.Asked(), std::string("[") + dtd.Name() + "][q][r]");
    }
    CRecordingConverter converter(CRecordingConverter::Instead("r", "other"));
    Document document = LoadMemory(xml);
    EXPECT_STREQ(document->GetDTDName(), "other");
    EXPECT_STREQ(document->GetDTDPath(), dtd.Name());
}

TEST(InstalledConverter, IsAskedForTheFileAndTheTextOfAParserMessage) {
    CRecordingConverter converter([](const std::string& source) {
        return source == "Memfile" ? "memory" : source == "r" ? "r" : "no good";
    });
    EXPECT_LOAD_ERROR(LoadMemory("<r>\n</a>"), "memory", 2, "no good");
    EXPECT_EQ(converter.Asked(), "[Memfile][expected end of tag 'r'][r]");
    EXPECT_LOAD_ERROR(LoadFile("/nonexistent/r.xml"), "no good", 0, "no good");
}

// Latin-1 for strings that have it: what the tree holds is what the converter answers.
TEST(InstalledConverter, DecidesTheEncodingOfTheTree) {
    CRecordingConverter converter([](const std::string& source) {
        static std::string latin;
        latin.clear();
        for (std::size_t i = 0; i < source.size(); ++i) {
            const auto lead = static_cast<unsigned char>(source[i]);
            if (lead == 0xC2 || lead == 0xC3)
                latin += static_cast<char>((lead & 3) << 6 | (source[++i] & 63));
            else if (lead < 0x80)
                latin += source[i];
            else if (lead > 0xC3)
                latin += '?';
        }
        return latin.c_str();
    });
    Document document = LoadMemory(
        "<\xC3\xA9 \xC3\xA8='\xC3\xBC\xE2\x82\xAC'>\xC3\x9F<![CDATA[\xC3\xA4]]></\xC3\xA9>");
    EXPECT_EQ(TreeText(document), "\xE9 \xE8=\"\xFC?\"(\"\xDF\", \"\xE4\")");
    EXPECT_EQ(Saved(document),
              "<?xml version=\"1.0\"?><\xEF\xBF\xBD \xEF\xBF\xBD=\"\xEF\xBF\xBD?\">"
              "\xEF\xBF\xBD\xEF\xBF\xBD</\xEF\xBF\xBD>");
}

TEST(InstalledConverter, DecidesWhatIsLayout) {
    {
        CRecordingConverter converter(CRecordingConverter::Instead("\n", "line"));
        EXPECT_EQ(TreeText(LoadMemory("<r>\n</r>")), "r(\"line\")");
    }
    CRecordingConverter converter(CRecordingConverter::Instead("text", "\n\t"));
    EXPECT_EQ(TreeText(LoadMemory("<r>text</r>")), "r()");
    EXPECT_EQ(TreeText(LoadMemory("<r><![CDATA[text]]></r>")), "r(#b5ec6d)");
    CRecordingConverter other(CRecordingConverter::Instead("text!", "\n\t"));
    EXPECT_EQ(TreeText(LoadMemory("<r><![CDATA[text!]]></r>")), "r(\"\\n\\t\")");
}

TEST(InstalledConverter, MayAnswerNullForAnything) {
    struct {
        const char* source;
        const char* tree;
        const char* keeping;
    } const rows[] = {
        {"text", "r k=\"v\"(#41)", "r xmlns:p=\"u\" k=\"v\"(#41)"},
        {"v", "r(\"text\", #41)", "r xmlns:p=\"u\"(\"text\", #41)"},
        {"u", "r k=\"v\"(\"text\", #41)", "r k=\"v\"(\"text\", #41)"},
        {"p", "r k=\"v\"(\"text\", #41)", "r xmlns:=\"u\" k=\"v\"(\"text\", #41)"},
    };
    const std::string xml = "<r xmlns:p='u' k='v'>text<![CDATA[QQ==]]></r>";
    for (const auto& row : rows) {
        SCOPED_TRACE(row.source);
        CRecordingConverter converter(CRecordingConverter::Instead(row.source, nullptr));
        EXPECT_EQ(TreeText(LoadMemory(xml)), row.tree);
        EXPECT_EQ(TreeText(LoadMemory(xml, KeepPrefixes())), row.keeping);
    }
    for (const char* name : {"r", "k"}) {
        CRecordingConverter converter(CRecordingConverter::Instead(name, nullptr));
        EXPECT_INVALID_NAME(LoadMemory(xml), "");
    }
}

TEST(InstalledConverter, MayAnswerNullForATextInACdataSection) {
    CRecordingConverter converter(CRecordingConverter::Instead("text!", nullptr));
    EXPECT_EQ(TreeText(LoadMemory("<r><![CDATA[text!]]></r>")), "r(\"\")");
    EXPECT_EQ(TreeText(LoadMemory("<r>text!</r>")), "r()");
}

TEST(InstalledConverter, MayAnswerNullForTheParserMessages) {
    CRecordingConverter converter(
        [](const std::string& source) { return source == "r" ? "r" : nullptr; });
    EXPECT_LOAD_ERROR(LoadMemory("<r>\n</a>"), "", 2, "");
}

TEST(InstalledConverter, MayAnswerNamesThatAreNone) {
    for (const char* name : {"", "a b", "1a", "<"}) {
        CRecordingConverter converter(CRecordingConverter::Instead("r", name));
        EXPECT_INVALID_NAME(LoadMemory("<r/>"), name);
        EXPECT_INVALID_NAME(LoadMemory("<x><r/></x>"), name);
        EXPECT_INVALID_NAME(LoadMemory("<x r='v'/>"), name);
    }
}

// Whatever it throws, at whichever string, passes to the caller as it is and leaves nothing behind.
TEST(InstalledConverter, MayThrowAtEveryString) {
    std::size_t strings = 0;
    {
        CRecordingConverter converter;
        LoadMemory(DOCUMENT, KeepPrefixes());
        strings = converter.Count();
    }
    ASSERT_GT(strings, 10u);
    for (std::size_t failing = 0; failing < strings; ++failing) {
        for (const SThrow& thrown : THROWS) {
            std::size_t asked = 0;
            CRecordingConverter converter([&](const std::string& source) {
                if (asked++ == failing) thrown.now();
                return source.c_str();
            });
            EXPECT_EQ(Thrown([&] { LoadMemory(DOCUMENT, KeepPrefixes()); }), thrown.told)
                << "string " << failing;
            EXPECT_EQ(converter.Count(), failing + 1);
        }
    }
    EXPECT_EQ(TreeText(LoadMemory("<r/>")), "r()");
}

TEST(InstalledConverter, MayThrowAtAParserMessageInPlaceOfIt) {
    for (const char* source : {"Memfile", "expected end of tag 'r'"}) {
        CRecordingConverter converter([source](const std::string& asked) {
            if (asked == source) throw std::runtime_error("the converter's own");
            return "r";
        });
        EXPECT_THROW(LoadMemory("<r></a>"), std::runtime_error);
    }
}

TEST(InstalledConverter, IsReplacedByTheLibrarysOwnForNull) {
    {
        CRecordingConverter converter([](const std::string&) { return "always"; });
        EXPECT_EQ(TreeText(LoadMemory("<r k='v'>text</r>")),
                  "always always=\"always\"(\"always\")");
        CPlainConverter::Remove();
        EXPECT_EQ(TreeText(LoadMemory("<r k='v'>text</r>")), "r k=\"v\"(\"text\")");
        EXPECT_EQ(converter.Count(), 4u);
    }
    EXPECT_EQ(TreeText(LoadMemory("<r/>")), "r()");
}

TEST(InstalledConverter, IsNotAskedByAnythingButLoads) {
    CRecordingConverter converter;
    Document document = NewDocument("r", "r.dtd");
    document->CreateRoot("r")->SetAttribute("k", "v");
    document->GetRoot()->CreateTextChild("text");
    EXPECT_INVALID_NAME(document->GetRoot()->SetTagName("1"), "1");
    Document clone(document->Clone());
    Saved(clone, true);
    EXPECT_EQ(converter.Asked(), "");
}

TEST(InstalledConverter, MayLoadAnotherDocumentWhenItIsAsked) {
    bool inside = false;
    std::string inner;
    CRecordingConverter converter([&](const std::string& source) {
        if (inside || source != "v") return source.c_str();
        inside = true;
        inner = TreeText(LoadMemory("<s k='w'>inner<a/></s>"));
        inside = false;
        return inner.c_str();
    });
    const std::string outer = TreeText(LoadMemory("<r><a k='v'/>text<a/></r>"));
    EXPECT_EQ(inner, "s k=\"w\"(\"inner\", a())");
    EXPECT_EQ(outer, "r(a k=" + Quoted(inner) + "(), \"text\", a())");
}

TEST(InstalledConverter, MayAllocateWithNewAndFreeItsOwnBlocks) {
    struct SNewing : CWideCharToString {
        char* Convert(const char16_t* source, std::size_t length) override {
            FreeString(nullptr);
            FreeString(AllocString(100));
            char* text = new char[length + 1];
            for (std::size_t i = 0; i <= length; ++i)
                text[i] = static_cast<char>(source[i]);
            return text;
        }
    } converter;
    Manager().SetWideCharToStringConverter(&converter);
    const std::string tree = TreeText(LoadMemory("<r k='v'>text</r>"));
    Manager().SetWideCharToStringConverter(nullptr);
    EXPECT_EQ(tree, "r k=\"v\"(\"text\")");
}
