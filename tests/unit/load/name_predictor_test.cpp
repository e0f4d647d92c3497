// CNamePredictor: names are found again by what came before them, and kept apart whatever their
// hash.
#include "load/receiver/name_predictor.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <stdexcept>
#include <string>
#include <unordered_map>
#include <utility>

#include "load/parser/parser_name.h"

namespace norvask {
namespace {

using CNames = CNamePredictor<SParserName, std::string>;

// The payload that belongs to a name, made on the first call for it only.
std::string Found(CNames& names, const std::u16string& uri, const std::u16string& name,
                  const std::string& payload) {
    const CNames::SName* const found =
        names.Find({uri.c_str(), name.c_str()}, [&] { return payload; });
    return found == nullptr ? "none" : found->payload;
}

std::uint32_t HashOf(const std::u16string& text) {
    return CNameTable::Hash(reinterpret_cast<const char*>(text.data()),
                            text.size() * sizeof(char16_t));
}

// Two different names with one hash. Among so many there are some, whatever the function.
std::pair<std::u16string, std::u16string> FindCollision() {
    std::unordered_map<std::uint32_t, std::u16string> seen;
    for (unsigned i = 0; i < 2000000; ++i) {
        std::u16string name = u"n";
        for (unsigned rest = i * 2654435761u; rest != 0; rest /= 26)
            name += static_cast<char16_t>('a' + rest % 26);
        const auto place = seen.emplace(HashOf(name), name);
        if (!place.second && place.first->second != name) return {place.first->second, name};
    }
    return {};
}

// A key that counts how often its hash is asked for, which is when a name is not predicted.
struct SCountedName {
    char name;

    static int s_nSearches;
    std::size_t Size() const noexcept { return 1; }
    std::uint32_t Hash() const noexcept {
        ++s_nSearches;
        return 0;  // all names in one place
    }
    struct CKept {
        explicit CKept(const SCountedName& met) : name(met.name) {}
        bool Is(const SCountedName& other) const noexcept { return name == other.name; }
        char name;
    };
};
int SCountedName::s_nSearches = 0;

// Reports names in this order, a '/' for the end of the name before it, and returns how many were
// searched for.
int Searches(CNamePredictor<SCountedName, char>& names, const std::string& order) {
    SCountedName::s_nSearches = 0;
    CNamePredictor<SCountedName, char>::SName* last = nullptr;
    for (const char name : order) {
        if (name == '/') {
            names.Ended(last);
            continue;
        }
        last = names.Find({name}, [&] { return name; });
        EXPECT_EQ(last->payload, name);
    }
    return SCountedName::s_nSearches;
}

}  // namespace

TEST(NamePredictor, KeepsNamesApartThatHaveOneHash) {
    const auto texts = FindCollision();
    ASSERT_FALSE(texts.first.empty());
    CNames names;
    CNames namespaces;
    for (int round = 0; round < 3; ++round) {
        EXPECT_EQ(Found(names, u"", texts.first, round == 0 ? "first" : "again"), "first");
        EXPECT_EQ(Found(names, u"", texts.second, round == 0 ? "second" : "again"), "second");
        EXPECT_EQ(Found(namespaces, texts.first, u"p:a", round == 0 ? "first" : "again"), "first");
        EXPECT_EQ(Found(namespaces, texts.second, u"p:a", round == 0 ? "second" : "again"),
                  "second");
    }
}

TEST(NamePredictor, FindsWhatCameNextTheLastTwoTimesWithoutASearch) {
    CNamePredictor<SCountedName, char> names;
    EXPECT_EQ(Searches(names, "abcd"), 4);
    EXPECT_EQ(Searches(names, "a"), 1);  // behind d for the first time
    EXPECT_EQ(Searches(names, "bcdabcd"), 0);
    EXPECT_EQ(Searches(names, "acad"), 3);  // new behind a, c and a; a behind d is known
    EXPECT_EQ(Searches(names, "acadacad"), 0);
    EXPECT_EQ(Searches(names, "ab"), 1);  // a third one behind a
}

TEST(NamePredictor, TellsWhatComesBehindAStartFromWhatComesBehindAnEnd) {
    CNamePredictor<SCountedName, char> names;
    EXPECT_EQ(Searches(names, "ab/c/d/"), 4);
    EXPECT_EQ(Searches(names, "a"), 1);
    EXPECT_EQ(Searches(names, "b/c/d/ab/c/d/a"), 0);
    EXPECT_EQ(Searches(names, "c"), 1);  // behind the start of a only b came
}

TEST(NamePredictor, KnowsANamespaceWhereverItsNameLies) {
    const std::u16string here = u"urn:a";
    const std::u16string there = here;
    CNames names;
    EXPECT_EQ(Found(names, here, u"p:a", "first"), "first");
    for (const std::u16string& uri : {there, here, there}) {
        EXPECT_EQ(Found(names, uri, u"p:a", "another"), "first");
    }
    EXPECT_EQ(Found(names, u"urn:b", u"p:a", "second"), "second");
    EXPECT_EQ(Found(names, u"urn:b", u"p:b", "third"), "third");
}

TEST(NamePredictor, KeepsNamesUpToItsBounds) {
    CNames few(100);
    CNames small(CNames::NO_BOUND, 1000);
    CNames all;
    int kept[3] = {};
    for (int i = 0; i < 10000; ++i) {
        const std::string text = std::to_string(10000 + i);
        const std::u16string name(text.begin(), text.end());
        int* count = kept;
        for (CNames* const names : {&few, &small, &all}) {
            *count++ += Found(*names, u"u", name, text) == text;
        }
    }
    EXPECT_EQ(kept[0], 100);
    EXPECT_EQ(kept[1], 166);  // of six units each
    EXPECT_EQ(kept[2], 10000);
    EXPECT_EQ(Found(few, u"u", u"10099", "another"), "10099");
    EXPECT_EQ(Found(few, u"u", u"10100", "another"), "none");
    EXPECT_EQ(Found(small, u"u", u"10165", "another"), "10165");
    EXPECT_EQ(Found(small, u"u", u"10166", "another"), "none");
    EXPECT_EQ(Found(small, u"u", std::u16string(10000, 'x'), "another"), "none");
}

TEST(NamePredictor, ForgetsANameThatCannotBeMadeAndAllWhenCleared) {
    CNames names;
    const auto fail = []() -> std::string { throw std::runtime_error("no payload"); };
    EXPECT_EQ(Found(names, u"", u"a", "first"), "first");
    EXPECT_THROW(names.Find({u"", u"b"}, fail), std::runtime_error);
    EXPECT_EQ(Found(names, u"", u"b", "second"), "second");
    EXPECT_EQ(Found(names, u"", u"b", "third"), "second");
    names.Clear();
    EXPECT_EQ(Found(names, u"", u"a", "another"), "another");
    EXPECT_EQ(Found(names, u"", u"b", "another"), "another");
}

}  // namespace norvask
