// Runs something on a thread whose stack is 1 MiB, where recursion over a deep tree cannot hide.
#ifndef NORVASK_TESTS_SUPPORT_SMALL_STACK_H
#define NORVASK_TESTS_SUPPORT_SMALL_STACK_H

#include <gtest/gtest.h>

#include <pthread.h>

#include <exception>
#include <functional>

namespace norvask_test {

inline void* RunOnSmallStack(void* argument) {
    try {
        (*static_cast<const std::function<void()>*>(argument))();
    } catch (const std::exception& e) {
        ADD_FAILURE() << "the work threw " << e.what();
    } catch (...) {
        ADD_FAILURE() << "the work threw";
    }
    return nullptr;
}

// Returns when the work is done. Failed checks inside it count as everywhere.
inline void OnSmallStack(const std::function<void()>& work) {
    pthread_attr_t attributes;
    ASSERT_EQ(pthread_attr_init(&attributes), 0);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, 1024 * 1024), 0);
    pthread_t thread;
    const int made = pthread_create(&thread, &attributes, &RunOnSmallStack,
                                    const_cast<std::function<void()>*>(&work));
    pthread_attr_destroy(&attributes);
    ASSERT_EQ(made, 0);
    ASSERT_EQ(pthread_join(thread, nullptr), 0);
}

}  // namespace norvask_test

#endif
