// The sweep: an operation runs once for each of its allocations, which fails, and everything is as
// it must be behind each run.
#ifndef NORVASK_TESTS_ALLOCATION_SWEEP_H
#define NORVASK_TESTS_ALLOCATION_SWEEP_H

#include <gtest/gtest.h>
#include <norvask/norvask.h>

#include <cstddef>
#include <cstdio>
#include <ostream>
#include <streambuf>
#include <string>

#include "allocation/failing_new.h"

namespace norvask_test {

struct SAttempt {
    bool refused = false;  // an allocation
    bool thrown = false;
    bool known = true;    // what was thrown is std::bad_alloc, or the parser's own of that meaning
    char told[600] = "";  // "bad_alloc", a class and a text, or the name of a type
};

// Runs the work while its n-th allocation fails. What it throws is written down without one.
template <typename Work>
SAttempt Attempt(const Work& work, long n, Failing failing = Failing::One,
                 Callers callers = Callers::Everything) {
    SAttempt attempt;
    CFailAllocation fail(n, callers, failing);
    try {
        work();
    } catch (norvask::CXMLException& e) {
        attempt.thrown = true;
        attempt.known = false;
        std::snprintf(attempt.told, sizeof attempt.told, "%d %s", e.GetID(), e.GetMessage());
    } catch (...) {
        attempt.thrown = true;
        attempt.known = CaughtBadAlloc() || CaughtOutOfMemory();
        std::snprintf(attempt.told, sizeof attempt.told, "%s",
                      CaughtBadAlloc() ? "bad_alloc" : CaughtType());
    }
    attempt.refused = fail.Failed();
    return attempt;
}

// Calls `round` with 1, 2 and so on until it answers that no allocation was refused, or a check
// fails. No round may leave a block behind. Answers the number of refusals.
template <typename Round>
long Sweep(const Round& round) {
    for (long n = 1;; ++n) {
        SCOPED_TRACE("allocation " + std::to_string(n));
        const long live = LiveBlocks();
        const bool refused = round(n);
        EXPECT_EQ(LiveBlocks(), live);
        if (!refused || ::testing::Test::HasFailure()) return n - 1;  // one failure is enough
    }
}

// The same for work that has nothing to look at behind it.
template <typename Work>
long SweepWork(const Work& work) {
    return Sweep([&](long n) {
        const SAttempt attempt = Attempt(work, n);
        EXPECT_TRUE(attempt.known) << attempt.told;
        return attempt.refused;
    });
}

// Keeps what is written without allocating.
class CFixedBuffer : public std::streambuf {
public:
    std::string Bytes() const { return std::string(m_Bytes, m_nLength); }
    bool IsBeginOf(const std::string& whole) const {
        return m_nLength <= whole.size() && whole.compare(0, m_nLength, m_Bytes, m_nLength) == 0;
    }

protected:
    int_type overflow(int_type c) override {
        const char byte = traits_type::to_char_type(c);
        return xsputn(&byte, 1) == 1 ? c : traits_type::eof();
    }
    std::streamsize xsputn(const char* bytes, std::streamsize count) override {
        for (std::streamsize i = 0; i < count && m_nLength < sizeof m_Bytes; ++i)
            m_Bytes[m_nLength++] = bytes[i];
        return count;
    }

private:
    char m_Bytes[100000];
    std::size_t m_nLength = 0;
};

// Work that writes a document to a stream gives it the beginning, and the whole if nothing is
// refused. Answers the number of refusals.
template <typename Work>
long SweepWriting(const std::string& whole, Failing failing, const Work& work) {
    return Sweep([&](long n) {
        CFixedBuffer buffer;
        std::ostream out(&buffer);
        const SAttempt attempt = Attempt([&] { work(out); }, n, failing);
        EXPECT_EQ(attempt.thrown, attempt.refused);
        EXPECT_TRUE(attempt.known) << attempt.told;
        EXPECT_TRUE(buffer.IsBeginOf(whole));
        EXPECT_EQ(buffer.Bytes() == whole, !attempt.thrown);
        EXPECT_TRUE(out.good());
        return attempt.refused;
    });
}

}  // namespace norvask_test

#endif
