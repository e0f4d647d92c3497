// Whether this program is instrumented. A sanitized allocator ends the program for a size that is
// out of all bounds, where the plain one throws.
#ifndef NORVASK_TESTS_SUPPORT_SANITIZERS_H
#define NORVASK_TESTS_SUPPORT_SANITIZERS_H

#if defined(__SANITIZE_ADDRESS__)
#define NORVASK_TESTS_ARE_SANITIZED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define NORVASK_TESTS_ARE_SANITIZED 1
#endif
#endif

#if defined(NORVASK_TESTS_ARE_SANITIZED)
#include <sanitizer/lsan_interface.h>
#endif

namespace norvask_test {

#if defined(NORVASK_TESTS_ARE_SANITIZED)
inline constexpr bool IS_SANITIZED = true;
#else
inline constexpr bool IS_SANITIZED = false;
#endif

// What is allocated while one of these lives is no leak if it is never released: the parser loses
// blocks where one of its own allocations fails.
class CLeaksAllowed {
public:
    CLeaksAllowed() {
#if defined(NORVASK_TESTS_ARE_SANITIZED)
        __lsan_disable();
#endif
    }
    ~CLeaksAllowed() {
#if defined(NORVASK_TESTS_ARE_SANITIZED)
        __lsan_enable();
#endif
    }
    CLeaksAllowed(const CLeaksAllowed&) = delete;
    CLeaksAllowed& operator=(const CLeaksAllowed&) = delete;
};

}  // namespace norvask_test

#endif
