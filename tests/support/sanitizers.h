// Whether this program is instrumented. A sanitized allocator ends the program for a size that is
// out of all bounds, where the plain one throws.
#ifndef NORVASK_TESTS_SUPPORT_SANITIZERS_H
#define NORVASK_TESTS_SUPPORT_SANITIZERS_H

namespace norvask_test {

#if defined(__SANITIZE_ADDRESS__)
inline constexpr bool IS_SANITIZED = true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
inline constexpr bool IS_SANITIZED = true;
#else
inline constexpr bool IS_SANITIZED = false;
#endif
#else
inline constexpr bool IS_SANITIZED = false;
#endif

}  // namespace norvask_test

#endif
