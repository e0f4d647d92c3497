// The names that a callback load keeps: names and namespaces whose hashes are equal stay apart.
#include "load/event_names.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <unordered_map>
#include <utility>

#include "tree/memory/name_table.h"

namespace norvask {
namespace {

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

std::string Narrow(const std::u16string& ascii) { return std::string(ascii.begin(), ascii.end()); }

}  // namespace

TEST(EventNames, KeepsNamesApartThatHaveOneHash) {
    const auto names = FindCollision();
    ASSERT_FALSE(names.first.empty());
    CEventNames kept;
    for (int round = 0; round < 3; ++round) {
        for (const std::u16string& name : {names.first, names.second}) {
            const SEventName* found = kept.Find(u"", name.c_str(), name.c_str());
            ASSERT_NE(found, nullptr);
            EXPECT_EQ(found->qName, Narrow(name));
            EXPECT_EQ(found->localName, Narrow(name));
            EXPECT_EQ(found->uri, "");
        }
    }
}

TEST(EventNames, KeepsNamespacesApartThatHaveOneHash) {
    const auto uris = FindCollision();
    ASSERT_FALSE(uris.first.empty());
    CEventNames kept;
    for (int round = 0; round < 3; ++round) {
        for (const std::u16string& uri : {uris.first, uris.second}) {
            const SEventName* found = kept.Find(uri.c_str(), u"a", u"p:a");
            ASSERT_NE(found, nullptr);
            EXPECT_EQ(found->uri, Narrow(uri));
            EXPECT_EQ(found->qName, "p:a");
        }
    }
}

// Constant memory: from some number on names are converted each time.
TEST(EventNames, AreKeptUpToABound) {
    CEventNames kept;
    int found = 0;
    for (int i = 0; i < 100000; ++i) {
        const std::string text = "name" + std::to_string(i);
        const std::u16string name(text.begin(), text.end());
        const SEventName* event = kept.Find(u"", name.c_str(), name.c_str());
        if (event == nullptr) continue;
        ++found;
        EXPECT_EQ(event->qName, text);
    }
    EXPECT_GT(found, 100);
    EXPECT_LT(found, 50000);
    CEventNames other;
    const std::u16string name(10000000, 'x');
    EXPECT_EQ(other.Find(u"", name.c_str(), name.c_str()), nullptr);
}

}  // namespace norvask
