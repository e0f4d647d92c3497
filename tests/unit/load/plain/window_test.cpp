// A document of any size is read in the same memory, whatever it repeats. The window asks its
// source for as much as it has room for, so a window that grows is seen there.
#include "load/plain/window.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>

#include "load/plain/fast_lane.h"
#include "load/receiver/event_forwarder.h"
#include "load/source/byte_source.h"
#include "norvask/norvask.h"

namespace norvask {
namespace {

const std::size_t WINDOW = 4096;

// A front, many times the same, and a back.
class CRepeatedBytes final : public CByteSource {
public:
    CRepeatedBytes(std::string front, const std::string& unit, std::string back)
        : m_Front(std::move(front)), m_Back(std::move(back)) {
        while (m_Unit.size() < WINDOW) {
            m_Unit += unit;
        }
        m_nSize = m_Front.size() + TIMES * m_Unit.size() + m_Back.size();
    }

    std::size_t Size() const noexcept override { return m_nSize; }
    std::size_t Read(char* to, std::size_t room) override {
        m_nMost = std::max(m_nMost, room);
        const std::size_t count = std::min(room, m_nSize - m_nRead);
        for (std::size_t i = 0; i < count; ++i) {
            to[i] = At(m_nRead + i);
        }
        m_nRead += count;
        return count;
    }
    bool IsGood() const noexcept override { return true; }
    const char* Bytes() const noexcept override { return nullptr; }
    bool Rewind() noexcept override {
        m_nRead = 0;
        return true;
    }

    // The most that was asked for at once.
    std::size_t Most() const noexcept { return m_nMost; }

private:
    static const std::size_t TIMES = 50;

    char At(std::size_t place) const noexcept {
        if (place < m_Front.size()) {
            return m_Front[place];
        }
        place -= m_Front.size();
        return place < TIMES * m_Unit.size() ? m_Unit[place % m_Unit.size()]
                                             : m_Back[place - TIMES * m_Unit.size()];
    }

    const std::string m_Front;
    const std::string m_Back;
    std::string m_Unit;
    std::size_t m_nSize = 0;
    std::size_t m_nRead = 0;
    std::size_t m_nMost = 0;
};

std::size_t MostAskedFor(const char* front, const char* unit, const char* back) {
    CXMLSaxHandler client;
    CEventForwarder forwarder(client);
    CRepeatedBytes source(front, unit, back);
    EXPECT_TRUE(ReadPlainEvents(source, WINDOW, forwarder));
    return source.Most();
}

TEST(PlainWindow, StaysAsLargeAsItIs) {
    for (const char* const unit :
         {"<b/>", "<b></b>", "<b k='v'/>", "<b k=\"v\" l='&lt;'></b >", "<p:b xmlns:p='u'/>",
          "<b>t</b>", "t<b/>", "\n<b/>", "<b/>\r\n", "<b><!-- c --></b>", "<?p?><b/>",
          "<![CDATA[c]]>", "<!-- c --><?p i?>", "\xE2\x82\xAC<\xC3\xA9/>"}) {
        EXPECT_LE(MostAskedFor("<a>", unit, "</a>"), WINDOW) << unit;
    }
}

TEST(PlainWindow, StaysAsLargeAsItIsOutsideOfTheRoot) {
    for (const char* const unit : {"<!-- c -->", "<?p i?>", "\r\n<?p?>", "<!-- \xC3\xA9 -->"}) {
        EXPECT_LE(MostAskedFor("", unit, "<a/>"), WINDOW) << unit;
        EXPECT_LE(MostAskedFor("<a/>", unit, ""), WINDOW) << unit;
    }
}

// So that the others would see it.
TEST(PlainWindow, GrowsForALongToken) {
    EXPECT_GT(MostAskedFor("<a k='", "v", "'/>"), WINDOW);
    EXPECT_GT(MostAskedFor("<a>", "t", "</a>"), WINDOW);
}

}  // namespace
}  // namespace norvask
