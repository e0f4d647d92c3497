// Allocations that fail on demand.
//
// This program replaces the global operator new and delete. Armed, they count the allocations of
// chosen callers and let the n-th of them fail, or the n-th and all that follow; at any time they
// know how many blocks are alive, and their bytes. Only what calls operator new is seen: neither
// the library nor the parser allocates otherwise, but for exceptions under way, which the
// compiler's runtime takes from malloc.
//
// Callers are told apart by the module in which the call stands. The library's code allocates from
// the library itself and, where a string or a file stream grows, from the C++ runtime; the parser's
// code allocates from the parser alone. How the parser takes a failed allocation of its own in the
// middle of a load is its affair (it may leak, or end the process), so loads are tested with
// Callers::Library. All other operations ask the parser for single conversions only and are tested
// with Callers::Everything.
#ifndef NORVASK_TESTS_ALLOCATION_FAILING_NEW_H
#define NORVASK_TESTS_ALLOCATION_FAILING_NEW_H

#include <cstddef>

namespace norvask_test {

enum class Callers { Library, Everything };
enum class Failing { One, AllFromThere };

// Until the end of the scope, the n-th allocation (from 1) fails. n = 0: none, they are only
// counted.
class CFailAllocation {
public:
    CFailAllocation(long n, Callers callers, Failing failing);
    CFailAllocation(const CFailAllocation&) = delete;
    CFailAllocation& operator=(const CFailAllocation&) = delete;
    ~CFailAllocation();

    // Ends it early.
    void Disarm();

    // The allocations seen while it was armed, and whether one of them failed.
    long Seen() const;
    bool Failed() const;
};

// The number of blocks that are allocated and not released, whoever asked for them.
long LiveBlocks();

// What those blocks have room for, in bytes.
std::size_t LiveBytes();

// The name of the exception's type in a catch block, as typeid gives it.
const char* CaughtType();

// Whether that is std::bad_alloc, or the exception by which the parser reports the same.
bool CaughtBadAlloc();
bool CaughtOutOfMemory();

}  // namespace norvask_test

#endif
