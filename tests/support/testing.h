// What nearly every test wants: the library, the words of the tests, and the standard library's
// everyday part. A test file names only what goes beyond this.
#ifndef NORVASK_TESTS_SUPPORT_TESTING_H
#define NORVASK_TESTS_SUPPORT_TESTING_H

#include <gtest/gtest.h>
#include <norvask/norvask.h>

#include <cstddef>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "support/errors.h"
#include "support/loading.h"
#include "support/tree.h"
#include "support/tree_text.h"
#include "support/vocabulary.h"

#endif
