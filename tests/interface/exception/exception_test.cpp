// CXMLException: the message table, filling in the arguments, copying and assigning.
#include <climits>
#include <type_traits>

#include "support/testing.h"

using namespace norvask_test;

namespace {

struct STableRow {
    unsigned int number;
    const char* text;
};

const STableRow TABLE[] = {
    {1, "Error during initialisation of the XML parser"},
    {2, "Error loading '%s':\n\n'%s'"},
    {3, "Load error:\nFile: '%s'  Line '%s':\n\n'%s'"},
    {4, "Error saving '%s'."},
    {5, "The last written document is not closed."},
    {6, "Invalid XML name: '%s'."},
    {7, "The node '%s' does not contain valid text"},
    {8, "The document is not open."},
    {9, "Wrong XML format"},
    {10, "Invalid character in string '%s'."},
    {11, "XML parser error\n\n'%s'"},
    {12, "invalid parameter"},
    {13, "Function is not supported by this node type."},
    {14, "Error during conversion."},
};

const unsigned int OUTSIDE_THE_TABLE[] = {0, 15, 16, 255, 256, 257, 65536, 65537, UINT_MAX};

std::string Replaced(std::string text, const std::string& argument) {
    for (std::size_t at = text.find("%s"); at != std::string::npos; at = text.find("%s", at)) {
        text.replace(at, 2, argument);
        at += argument.size();
    }
    return text;
}

// An exception that may be deleted: the class itself has no virtual destructor.
class CHeapException final : public CXMLException {
public:
    using CXMLException::CXMLException;
};

}  // namespace

TEST(Exception, TakesATableTextAsItStands) {
    for (const STableRow& row : TABLE) {
        CXMLException e(42, row.number);
        EXPECT_STREQ(e.GetMessage(), row.text) << "number " << row.number;
        EXPECT_EQ(e.GetID(), 42) << "number " << row.number;
    }
}

TEST(Exception, FillsEveryPlaceOfEveryTableText) {
    for (const STableRow& row : TABLE) {
        CXMLException e(1, row.number, "argument", "argument", "argument");
        EXPECT_EQ(e.GetMessage(), Replaced(row.text, "argument")) << "number " << row.number;
    }
}

TEST(Exception, FillsThePlacesInOrder) {
    CXMLException one(3, 6, "a b");
    EXPECT_STREQ(one.GetMessage(), "Invalid XML name: 'a b'.");
    EXPECT_EQ(one.GetID(), 3);

    CXMLException two(1, 2, "file.xml", "reason");
    EXPECT_STREQ(two.GetMessage(), "Error loading 'file.xml':\n\n'reason'");

    CXMLException three(2, 3, "f.xml", "12", "msg");
    EXPECT_STREQ(three.GetMessage(), "Load error:\nFile: 'f.xml'  Line '12':\n\n'msg'");
    EXPECT_EQ(three.GetID(), 2);
}

TEST(Exception, IgnoresArgumentsWithoutAPlace) {
    for (const unsigned int number : {1u, 5u, 8u, 9u, 12u, 13u, 14u}) {
        const char* text = TABLE[number - 1].text;
        EXPECT_STREQ(CXMLException(6, number, "x").GetMessage(), text);
        EXPECT_STREQ(CXMLException(6, number, "x", "y").GetMessage(), text);
        EXPECT_STREQ(CXMLException(6, number, "x", "y", "z").GetMessage(), text);
    }
    EXPECT_STREQ(CXMLException(3, 6, "x", "y", "z").GetMessage(), "Invalid XML name: 'x'.");
    EXPECT_STREQ(CXMLException(1, 2, "x", "y", "z").GetMessage(), "Error loading 'x':\n\n'y'");
}

TEST(Exception, PrintsNothingForAPlaceWithoutAnArgument) {
    EXPECT_STREQ(CXMLException(1, 2, "f").GetMessage(), "Error loading 'f':\n\n''");
    EXPECT_STREQ(CXMLException(2, 3, "f").GetMessage(), "Load error:\nFile: 'f'  Line '':\n\n''");
    EXPECT_STREQ(CXMLException(2, 3, "f", "7").GetMessage(),
                 "Load error:\nFile: 'f'  Line '7':\n\n''");
}

TEST(Exception, PrintsNothingForNull) {
    const char* null = nullptr;
    EXPECT_STREQ(CXMLException(3, 6, null).GetMessage(), "Invalid XML name: ''.");
    EXPECT_STREQ(CXMLException(1, 2, null, "b").GetMessage(), "Error loading '':\n\n'b'");
    EXPECT_STREQ(CXMLException(1, 2, "a", null).GetMessage(), "Error loading 'a':\n\n''");
    EXPECT_STREQ(CXMLException(2, 3, null, null, null).GetMessage(),
                 "Load error:\nFile: ''  Line '':\n\n''");
    EXPECT_STREQ(CXMLException(1, null).GetMessage(), "");
}

TEST(Exception, HasAnEmptyTextForANumberOutsideTheTable) {
    for (const unsigned int number : OUTSIDE_THE_TABLE) {
        EXPECT_STREQ(CXMLException(7, number).GetMessage(), "") << "number " << number;
        EXPECT_STREQ(CXMLException(7, number, "a").GetMessage(), "") << "number " << number;
        EXPECT_STREQ(CXMLException(7, number, "a", "b").GetMessage(), "") << "number " << number;
        EXPECT_STREQ(CXMLException(7, number, "a", "b", "c").GetMessage(), "")
            << "number " << number;
        EXPECT_EQ(CXMLException(7, number, "a").GetID(), 7) << "number " << number;
    }
}

TEST(Exception, KeepsAnyID) {
    for (const int id : {0, 1, -1, 5, 14, 1000, INT_MAX, INT_MIN}) {
        EXPECT_EQ(CXMLException(id, 14).GetID(), id);
        EXPECT_EQ(CXMLException(id, "text").GetID(), id);
        EXPECT_STREQ(CXMLException(id, 14).GetMessage(), "Error during conversion.");
    }
}

TEST(Exception, CopiesAReadyMadeTextWholeAndUnformatted) {
    char text[] = "100 %s, %n and %d";
    CXMLException e(9, text);
    text[0] = 'X';
    EXPECT_STREQ(e.GetMessage(), "100 %s, %n and %d");
    EXPECT_EQ(e.GetID(), 9);

    const std::string longText(100000, 'x');
    EXPECT_EQ(CXMLException(1, longText.c_str()).GetMessage(), longText);
    EXPECT_STREQ(CXMLException(1, "").GetMessage(), "");
}

TEST(Exception, DoesNotFormatItsArguments) {
    EXPECT_STREQ(CXMLException(1, 2, "%s%n%100d", "%1$s").GetMessage(),
                 "Error loading '%s%n%100d':\n\n'%1$s'");
}

TEST(Exception, CutsEachArgumentAt255Bytes) {
    for (const std::size_t length : {254u, 255u, 256u, 300u, 100000u}) {
        const std::string argument(length, 'a');
        const std::string kept(length < 255 ? length : 255, 'a');
        CXMLException e(3, 6, argument.c_str());
        EXPECT_EQ(e.GetMessage(), "Invalid XML name: '" + kept + "'.") << "length " << length;
    }
    const std::string a(300, 'a');
    const std::string b(300, 'b');
    const std::string c(300, 'c');
    CXMLException e(2, 3, a.c_str(), b.c_str(), c.c_str());
    EXPECT_EQ(e.GetMessage(), "Load error:\nFile: '" + a.substr(0, 255) + "'  Line '" +
                                  b.substr(0, 255) + "':\n\n'" + c.substr(0, 255) + "'");
}

TEST(Exception, NeverSplitsAUtf8CharacterWhereItCuts) {
    const std::string characters[] = {"\xC3\xBC", "\xE2\x82\xAC", "\xF0\x9F\x98\x80"};
    for (const std::string& character : characters) {
        for (std::size_t blanks = 245; blanks <= 256; ++blanks) {
            std::string argument(blanks, '_');
            for (int i = 0; i < 5; ++i)
                argument += character;

            std::string kept(blanks < 255 ? blanks : 255, '_');
            for (int i = 0; i < 5 && kept.size() + character.size() <= 255; ++i)
                kept += character;

            CXMLException e(3, 6, argument.c_str());
            EXPECT_EQ(e.GetMessage(), "Invalid XML name: '" + kept + "'.")
                << character << " behind " << blanks << " characters";
        }
    }
}

TEST(Exception, CutsInvalidUtf8Too) {
    const std::string argument(300, '\x80');
    const std::string message = CXMLException(3, 6, argument.c_str()).GetMessage();
    const std::string frame = "Invalid XML name: ''.";
    EXPECT_LE(message.size(), frame.size() + 255);
    EXPECT_EQ(message.compare(0, 19, "Invalid XML name: '"), 0);
    EXPECT_EQ(message.substr(message.size() - 2), "'.");
}

TEST(Exception, CopiesIntoATextOfItsOwn) {
    auto source = std::make_unique<CHeapException>(7, 14u);
    CXMLException copy(*source);
    EXPECT_FALSE(Same(copy.GetMessage(), source->GetMessage()));
    source.reset();
    EXPECT_STREQ(copy.GetMessage(), "Error during conversion.");
    EXPECT_EQ(copy.GetID(), 7);
}

TEST(Exception, CopiesAnEmptyText) {
    CXMLException source(5, 0u);
    CXMLException copy(source);
    EXPECT_STREQ(copy.GetMessage(), "");
    EXPECT_EQ(copy.GetID(), 5);
}

TEST(Exception, IsCopiedFromANamedObjectOnly) {
    static_assert(std::is_constructible<CXMLException, CXMLException&>::value, "");
    static_assert(!std::is_constructible<CXMLException, const CXMLException&>::value, "");
    static_assert(!std::is_constructible<CXMLException, CXMLException&&>::value, "");
    static_assert(std::is_nothrow_assignable<CXMLException&, const CXMLException&>::value, "");
    SUCCEED();
}

TEST(Exception, SharesItsTextWhenAssigned) {
    CXMLException target(1, 12);
    {
        CXMLException source(3, 6, "1a");
        target = source;
        EXPECT_TRUE(Same(target.GetMessage(), source.GetMessage()));
    }
    EXPECT_STREQ(target.GetMessage(), "Invalid XML name: '1a'.");
    EXPECT_EQ(target.GetID(), 3);
}

TEST(Exception, SurvivesAssignmentToItself) {
    CXMLException e(3, 6, "1a");
    CXMLException& same = e;
    const char* before = e.GetMessage();
    e = same;
    EXPECT_TRUE(Same(e.GetMessage(), before));
    EXPECT_STREQ(e.GetMessage(), "Invalid XML name: '1a'.");
    EXPECT_EQ(e.GetID(), 3);
}

TEST(Exception, AnswersTheSamePointerEachTime) {
    CXMLException e(1, "text");
    EXPECT_TRUE(Same(e.GetMessage(), e.GetMessage()));
}

TEST(Exception, IsThrownByValueAndCaughtByReference) {
    try {
        throw CXMLException(2, 7, "node");
    } catch (CXMLException& e) {
        EXPECT_STREQ(e.GetMessage(), "The node 'node' does not contain valid text");
        EXPECT_EQ(e.GetID(), 2);
    }
}

TEST(Exception, PassesThroughARethrow) {
    CXMLException kept(0, "");
    try {
        try {
            throw CXMLException(8, 9);
        } catch (CXMLException& e) {
            CXMLException copy(e);
            kept = copy;
            throw;
        }
    } catch (CXMLException& e) {
        EXPECT_STREQ(e.GetMessage(), "Wrong XML format");
    }
    EXPECT_STREQ(kept.GetMessage(), "Wrong XML format");
    EXPECT_EQ(kept.GetID(), 8);
}

TEST(Exception, IsCaughtAcrossTheLibraryBoundary) {
    const auto document = NewDocument();
    EXPECT_INVALID_NAME(document->CreateRoot("1a"), "1a");
}

TEST(ExceptionSharing, HoldsTheTextUntilTheLastObjectThatShowsIt) {
    CXMLException last(0, "last");
    {
        CXMLException a(1, "a");
        CXMLException b(2, "b");
        CXMLException c(3, "c");
        a = b;
        b = c;
        c = a;
        EXPECT_STREQ(a.GetMessage(), "b");
        EXPECT_STREQ(b.GetMessage(), "c");
        EXPECT_TRUE(Same(c.GetMessage(), a.GetMessage()));
        last = c;
    }
    EXPECT_STREQ(last.GetMessage(), "b");
    EXPECT_EQ(last.GetID(), 2);
}

TEST(ExceptionSharing, CopiesATextThatIsShared) {
    CXMLException first(1, "first");
    CXMLException second(2, "second");
    second = first;
    CXMLException copy(second);
    EXPECT_FALSE(Same(copy.GetMessage(), first.GetMessage()));
    first = copy;
    second = copy;
    EXPECT_STREQ(second.GetMessage(), "first");
    EXPECT_TRUE(Same(second.GetMessage(), first.GetMessage()));
}

TEST(ExceptionSharing, SwapsAndSortsExceptions) {
    CXMLException errors[] = {CXMLException(3, "c"), CXMLException(1, "a"), CXMLException(2, "b")};
    for (int round = 0; round < 3; ++round) {
        for (int i = 0; i < 2; ++i) {
            if (errors[i].GetID() < errors[i + 1].GetID()) continue;
            CXMLException kept(errors[i]);
            errors[i] = errors[i + 1];
            errors[i + 1] = kept;
        }
    }
    EXPECT_STREQ(errors[0].GetMessage(), "a");
    EXPECT_STREQ(errors[1].GetMessage(), "b");
    EXPECT_STREQ(errors[2].GetMessage(), "c");
}
