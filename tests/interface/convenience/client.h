// What client.cpp does for the tests.
#ifndef NORVASK_TESTS_INTERFACE_CONVENIENCE_CLIENT_H
#define NORVASK_TESTS_INTERFACE_CONVENIENCE_CLIENT_H

#include <string>

namespace norvask_test {

// Uses them all, `fileName` for a file that may be overwritten, and answers what they told.
std::string UseConveniences(const char* fileName);

}  // namespace norvask_test

#endif
