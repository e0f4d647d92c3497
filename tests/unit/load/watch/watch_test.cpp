// CWatch: each limit at its edge, and progress.
#include "load/watch/watch.h"

#include <gtest/gtest.h>

#include <ctime>
#include <string>
#include <utility>
#include <vector>

namespace norvask {
namespace {

struct STold {
    std::vector<std::pair<std::uint64_t, std::uint64_t>> calls = {};
    std::size_t stopAt = 0;  // the call that returns false; 0 for none

    static bool Tell(void* context, std::uint64_t read, std::uint64_t total) {
        STold& told = *static_cast<STold*>(context);
        told.calls.emplace_back(read, total);
        return told.calls.size() != told.stopAt;
    }
};

class Watch : public ::testing::Test {
protected:
    Watch() {
        m_Limits = {0, 0, 0, 0};
        m_Settings.untrusted = &m_Limits;
        m_Settings.progress = STold::Tell;
        m_Settings.progressContext = &m_Told;
    }
    SXMLUntrusted m_Limits;
    SXMLLoadSettings m_Settings;
    STold m_Told;
};

// All that a thread can do in so much of its time.
void Burn(double seconds) {
    timespec begin = {};
    timespec now = {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &begin);
    do {
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    } while (static_cast<double>(now.tv_sec - begin.tv_sec) +
                 static_cast<double>(now.tv_nsec - begin.tv_nsec) / 1e9 <
             seconds);
}

TEST_F(Watch, NoLimitsAreNone) {
    CWatch watch(m_Settings);
    EXPECT_TRUE(watch.IsUntrusted());
    EXPECT_EQ(watch.Begin(UINT64_MAX), ERefusal::NONE);
    EXPECT_EQ(watch.Read(SIZE_MAX / 2), ERefusal::NONE);
    EXPECT_EQ(watch.Read(1), ERefusal::NONE);
    for (int i = 0; i < 100000; ++i)
        ASSERT_EQ(watch.StartElement(), ERefusal::NONE);
}

TEST_F(Watch, BytesAtTheEdge) {
    m_Limits.maxBytes = 100;
    CWatch watch(m_Settings);
    EXPECT_EQ(watch.Begin(101), ERefusal::BYTES);
    EXPECT_EQ(watch.Begin(100), ERefusal::NONE);
    EXPECT_EQ(watch.Read(99), ERefusal::NONE);
    EXPECT_EQ(watch.Read(1), ERefusal::NONE);
    EXPECT_EQ(watch.Read(0), ERefusal::NONE);
    EXPECT_EQ(watch.Read(1), ERefusal::BYTES);
    EXPECT_EQ(watch.Begin(0), ERefusal::NONE) << "a second reading begins anew";
    EXPECT_EQ(watch.Read(100), ERefusal::NONE);
    EXPECT_EQ(watch.Words(ERefusal::BYTES), "larger than 100 bytes (maxBytes)");
}

TEST_F(Watch, MarkupAtTheEdge) {
    m_Limits.maxMarkup = 100;
    CWatch watch(m_Settings);
    watch.Begin(0);
    EXPECT_EQ(watch.Read(100), ERefusal::NONE);
    EXPECT_EQ(watch.Read(1), ERefusal::NONE) << "these may have ended it";
    EXPECT_EQ(watch.Read(1), ERefusal::MARKUP);
    watch.Begin(0);
    for (int i = 0; i < 10; ++i) {
        EXPECT_EQ(watch.Read(100), ERefusal::NONE);
        EXPECT_EQ(watch.Event(), ERefusal::NONE);
    }
    EXPECT_EQ(watch.Position(), 1000U);
    // The other way to count.
    EXPECT_TRUE(watch.MayGoOn(1100));
    EXPECT_FALSE(watch.MayGoOn(1201));
    EXPECT_EQ(watch.Position(), 1100U);
    EXPECT_TRUE(watch.MayGoOn(1200));
}

TEST_F(Watch, DepthAtTheEdge) {
    m_Limits.maxDepth = 3;
    CWatch watch(m_Settings);
    watch.Begin(0);
    for (int round = 0; round < 3; ++round) {
        EXPECT_EQ(watch.StartElement(), ERefusal::NONE);
        EXPECT_EQ(watch.StartElement(), ERefusal::NONE);
        EXPECT_EQ(watch.StartElement(), ERefusal::NONE);
        for (int i = 0; i < 3; ++i)
            watch.EndElement();
    }
    for (int i = 0; i < 3; ++i)
        watch.StartElement();
    EXPECT_EQ(watch.StartElement(), ERefusal::DEPTH);
    EXPECT_EQ(watch.Over(), ERefusal::NONE) << "another reading decides";
    EXPECT_EQ(watch.Words(ERefusal::DEPTH), "deeper than 3 elements (maxDepth)");
}

TEST_F(Watch, TimeIsThatOfTheThread) {
    m_Limits.maxSeconds = 1;
    CWatch watch(m_Settings);
    watch.Begin(0);
    EXPECT_TRUE(watch.IsInTime());
    timespec pause = {0, 200000000};
    for (int i = 0; i < 6; ++i)
        nanosleep(&pause, nullptr);
    EXPECT_TRUE(watch.IsInTime()) << "it has waited, and not worked";
    EXPECT_EQ(watch.Read(1), ERefusal::NONE);
    Burn(1.1);
    EXPECT_EQ(watch.Read(1), ERefusal::TIME);
    EXPECT_EQ(watch.Over(), ERefusal::TIME);
    EXPECT_FALSE(watch.IsInTime());
    EXPECT_EQ(watch.Words(ERefusal::TIME), "more than 1 second of processor time (maxSeconds)");
    // It is looked at now and then between reads.
    int events = 1;
    while (watch.Event() == ERefusal::NONE && events < 1000)
        ++events;
    EXPECT_LE(events, 256);
}

TEST_F(Watch, ProgressGrowsOverBothReadings) {
    CWatch watch(m_Settings);
    watch.Begin(50);
    watch.Read(10);
    watch.Read(10);
    watch.Begin(50);  // read again
    watch.Read(5);
    watch.Read(10);
    watch.Read(10);
    watch.Read(0);
    watch.Read(25);
    EXPECT_EQ(watch.Finish(), ERefusal::NONE);
    const std::vector<std::pair<std::uint64_t, std::uint64_t>> expected = {
        {10, 50}, {20, 50}, {25, 50}, {50, 50}};
    EXPECT_EQ(m_Told.calls, expected);
}

TEST_F(Watch, StoppedIsStopped) {
    m_Told.stopAt = 2;
    CWatch watch(m_Settings);
    watch.Begin(0);
    EXPECT_EQ(watch.Read(1), ERefusal::NONE);
    EXPECT_EQ(watch.Read(1), ERefusal::STOPPED);
    EXPECT_EQ(watch.Over(), ERefusal::STOPPED);
    EXPECT_EQ(watch.Words(ERefusal::STOPPED), "stopped by the program");
}

TEST_F(Watch, WithoutSettingsNobodyLooks) {
    const SXMLLoadSettings none;
    CWatch watch(none);
    EXPECT_FALSE(watch.IsUntrusted());
    EXPECT_EQ(watch.Begin(UINT64_MAX), ERefusal::NONE);
    for (int i = 0; i < 1000; ++i) {
        EXPECT_EQ(watch.Read(1U << 20), ERefusal::NONE);
        EXPECT_EQ(watch.StartElement(), ERefusal::NONE);
    }
    EXPECT_EQ(watch.Finish(), ERefusal::NONE);
}

}  // namespace
}  // namespace norvask
