// CWatch: the limits, one by one.
#include "load/watch/watch.h"

#include <algorithm>
#include <ctime>
#include <limits>

namespace norvask {
namespace {

const std::uint64_t NANOSECONDS = 1000000000;
const std::uint64_t LONG_STEP = NANOSECONDS / 20;
const std::uint64_t NO_LIMIT = std::numeric_limits<std::uint64_t>::max();

std::uint64_t Now(clockid_t clock) noexcept {
    timespec time = {};
    clock_gettime(clock, &time);
    return static_cast<std::uint64_t>(time.tv_sec) * NANOSECONDS +
           static_cast<std::uint64_t>(time.tv_nsec);
}

std::string Counted(std::uint64_t number, const char* what) {
    return std::to_string(number) + ' ' + what + (number == 1 ? "" : "s");
}

std::uint64_t Limit(std::uint64_t field) noexcept { return field == 0 ? NO_LIMIT : field; }

}  // namespace

CWatch::CWatch(const SXMLLoadSettings& settings) noexcept
    : m_Settings(settings),
      m_bIsUntrusted(settings.untrusted != nullptr),
      m_nMaxBytes(NO_LIMIT),
      m_nMaxMarkup(NO_LIMIT),
      m_nMaxDepth(NO_LIMIT),
      m_nMaxNamespaces(NO_LIMIT),
      m_nMaxNames(NO_LIMIT),
      m_nMaxNanoseconds(0),
      m_nBegin(0) {
    if (m_bIsUntrusted) {
        const SXMLUntrusted& limits = *settings.untrusted;
        m_nMaxBytes = Limit(limits.maxBytes);
        m_nMaxMarkup = Limit(limits.maxMarkup);
        m_nMaxDepth = Limit(limits.maxDepth);
        m_nMaxNamespaces = limits.maxMarkup == 0
                               ? NO_LIMIT
                               : std::max(limits.maxMarkup / BYTES_OF_NAMESPACE, FEW_NAMESPACES);
        m_nMaxNames = limits.maxBytes == 0 || limits.maxBytes > NO_LIMIT / (2 * NAMES_OF_BYTES)
                          ? NO_LIMIT
                          : std::max(limits.maxBytes * NAMES_OF_BYTES, FEW_NAMES);
        if (m_nMaxNames != NO_LIMIT && settings.validate && settings.doSchema) {
            m_nMaxNames *= 2;  // keys of elements
        }
        m_nMaxNanoseconds = limits.maxSeconds * NANOSECONDS;
    }
    if (m_nMaxNanoseconds != 0) {
        m_nBegin = Now(CLOCK_THREAD_CPUTIME_ID);
        m_nLook = Now(CLOCK_MONOTONIC);
        m_nNotBefore = m_nLook + m_nMaxNanoseconds;
    }
}

ERefusal CWatch::Begin(std::uint64_t total) noexcept {
    m_nTotal = total;
    m_nRead = 0;
    m_nAtEvent = 0;
    m_nDepth = 0;
    m_nNamespaces = 0;
    m_nMemoryBefore = 0;
    return total > m_nMaxBytes ? ERefusal::BYTES : ERefusal::NONE;
}

ERefusal CWatch::Read(std::size_t bytes) {
    if (m_nRead - m_nAtEvent > m_nMaxMarkup) {
        return ERefusal::MARKUP;
    }
    m_nRead += bytes;
    if (m_nRead > m_nMaxBytes) {
        return ERefusal::BYTES;
    }
    if (!IsInTime()) {
        return ERefusal::TIME;
    }
    // The byte that a window reads ahead is told with those behind it.
    return m_nRead > m_nTold + 1 ? Tell() : ERefusal::NONE;
}

// A thread has no more processor time than passes. Asking for what passes takes a tenth of the time
// that asking for the other takes, which is asked for only when it may have reached the limit, or
// when a step took long: nobody can look while the parser takes one step, so another one as long as
// the longest may pass the limit by a second at most.
bool CWatch::IsInTime() noexcept {
    if (m_nMaxNanoseconds == 0) {
        return true;
    }
    const std::uint64_t now = Now(CLOCK_MONOTONIC);
    const std::uint64_t passed = now - m_nLook;
    m_nLook = now;
    if (now < m_nNotBefore && passed < LONG_STEP) {
        return true;
    }
    const std::uint64_t used = Now(CLOCK_THREAD_CPUTIME_ID) - m_nBegin;
    m_nLongest = std::max(m_nLongest, std::min(passed, used - m_nUsed));
    m_nUsed = used;
    if (used > m_nMaxNanoseconds || used + m_nLongest > m_nMaxNanoseconds + NANOSECONDS) {
        m_Over = ERefusal::TIME;
        return false;
    }
    m_nNotBefore = now + (m_nMaxNanoseconds - used);
    return true;
}

ERefusal CWatch::Tell() {
    m_nTold = m_nRead;
    if (m_Settings.progress != nullptr &&
        !m_Settings.progress(m_Settings.progressContext, m_nRead, m_nTotal)) {
        m_Over = ERefusal::STOPPED;
    }
    return m_Over;
}

std::string CWatch::Words(ERefusal refusal) const {
    switch (refusal) {
        case ERefusal::DTD:
            return "the document type declaration is not allowed";
        case ERefusal::BYTES:
            return "larger than " + Counted(m_nMaxBytes, "byte") + " (maxBytes)";
        case ERefusal::MARKUP:
            return "a tag, text or other piece of more than " + Counted(m_nMaxMarkup, "byte") +
                   " (maxMarkup)";
        case ERefusal::DEPTH:
            return "deeper than " + Counted(m_nMaxDepth, "element") + " (maxDepth)";
        case ERefusal::NAMESPACES:
            return "more than " + Counted(m_nMaxNamespaces, "namespace declaration") +
                   " in force (maxMarkup / 64)";
        case ERefusal::NAMES:
            return "names and keys that take more than " + Counted(m_nMaxNames, "byte") +
                   " of memory (maxBytes)";
        case ERefusal::TIME:
            return "more than " + Counted(m_nMaxNanoseconds / NANOSECONDS, "second") +
                   " of processor time (maxSeconds)";
        default:
            return "stopped by the program";
    }
}

}  // namespace norvask
