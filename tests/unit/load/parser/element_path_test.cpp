// CElementPath against a slow count among siblings.
#include "load/parser/element_path.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "support/random_text.h"

namespace norvask {
namespace {

using norvask_test::RandomText;

std::u16string Wide(const std::string& ascii) { return std::u16string(ascii.begin(), ascii.end()); }

// Remembers everything.
class CSlowPath {
public:
    void StartElement(const std::string& name) {
        const std::uint64_t place = ++m_Children.back()[name];
        m_Open.push_back("/" + name + (m_Open.empty() ? "" : "[" + std::to_string(place) + "]"));
        m_Children.emplace_back();
    }
    void EndElement() {
        m_Open.pop_back();
        m_Children.pop_back();
    }
    std::size_t Depth() const { return m_Open.size(); }
    std::string Text() const {
        std::string text;
        for (const std::string& part : m_Open)
            text += part;
        return text;
    }

private:
    std::vector<std::string> m_Open;
    std::vector<std::map<std::string, std::uint64_t>> m_Children =
        std::vector<std::map<std::string, std::uint64_t>>(1);
};

TEST(ElementPath, IsThatOfASlowCount) {
    for (unsigned int seed = 0; seed < 60; ++seed) {
        SCOPED_TRACE(seed);
        RandomText random(seed);
        CElementPath path;
        CSlowPath slow;
        EXPECT_EQ(path.Text(), "");
        // Few names, so that they are met again, or more than are looked through one by one.
        const std::size_t names = seed % 3 == 0 ? 2 : seed % 3 == 1 ? 20 : 300;
        for (int step = 0; step < 4000; ++step) {
            const bool ends = slow.Depth() > 1 && random.Number(slow.Depth() > 30 ? 4 : 2) != 0;
            if (ends) {
                path.EndElement();
                slow.EndElement();
            } else {
                const std::string name = "n" + std::to_string(random.Number(names));
                path.StartElement(Wide(name).c_str());
                slow.StartElement(name);
            }
            ASSERT_EQ(path.Text(), slow.Text()) << "step " << step;
        }
    }
}

TEST(ElementPath, NamesAreShownAsTheyAre) {
    CElementPath path;
    path.StartElement(u"p:\u00E4");
    path.StartElement(u"\u20AC");
    path.StartElement(u"\U0001F600");
    EXPECT_EQ(path.Text(), "/p:\xC3\xA4/\xE2\x82\xAC[1]/\xF0\x9F\x98\x80[1]");
}

TEST(ElementPath, WhatIsKeptIsBounded) {
    CElementPath path;
    path.StartElement(u"top");
    for (int i = 0; i < 4095; ++i) {
        path.StartElement(Wide("n" + std::to_string(i)).c_str());
        path.EndElement();
    }
    path.StartElement(u"late");
    EXPECT_EQ(path.Text(), "/top/late[?]");
    path.StartElement(u"n4094");
    EXPECT_EQ(path.Text(), "/top/late[?]/n4094[1]");
    path.EndElement();
    path.StartElement(u"later");
    EXPECT_EQ(path.Text(), "/top/late[?]/later[?]");
    path.EndElement();
    path.EndElement();
    path.StartElement(u"n4094");
    EXPECT_EQ(path.Text(), "/top/n4094[2]");
}

// Long names use up what is kept sooner.
TEST(ElementPath, LongNamesAreBoundedToo) {
    CElementPath path;
    path.StartElement(u"top");
    for (int i = 0; i < 200; ++i) {
        path.StartElement(Wide(std::string(1000, 'n') + std::to_string(i)).c_str());
        EXPECT_EQ(path.Text().substr(path.Text().size() - 3), i < 130 ? "[1]" : "[?]") << i;
        path.EndElement();
    }
    path.StartElement(u"short");
    EXPECT_EQ(path.Text(), "/top/short[1]");
}

TEST(ElementPath, ALongPathIsNone) {
    CElementPath path;
    path.StartElement(Wide(std::string(4096, 'n')).c_str());
    EXPECT_EQ(path.Text().size(), 4097U);
    path.StartElement(u"m");
    EXPECT_EQ(path.Text(), "");
    path.EndElement();
    EXPECT_EQ(path.Text().size(), 4097U);
}

}  // namespace
}  // namespace norvask
