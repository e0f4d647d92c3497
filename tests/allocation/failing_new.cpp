#include "allocation/failing_new.h"

#include <cxxabi.h>
#include <link.h>
#include <malloc.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <typeinfo>

namespace {

using norvask_test::Callers;
using norvask_test::Failing;

struct SState {
    bool armed = false;
    long n = 0;
    Callers callers = Callers::Everything;
    Failing failing = Failing::One;
    long seen = 0;
    bool failed = false;
};
SState g_State;
std::atomic<long> g_nLive(0);
std::atomic<std::size_t> g_nLiveBytes(0);

// The addresses at which the library and the C++ runtime are loaded.
struct SModules {
    struct SRange {
        std::uintptr_t begin;
        std::uintptr_t end;
    };
    SRange ranges[16];
    std::size_t count = 0;
    bool library = false;
    bool runtime = false;
};

int AddModule(dl_phdr_info* info, std::size_t, void* data) {
    auto& modules = *static_cast<SModules*>(data);
    const bool library = std::strstr(info->dlpi_name, "libNORVASK1642.so") != nullptr;
    const bool runtime = std::strstr(info->dlpi_name, "libstdc++.so") != nullptr;
    if (!library && !runtime) return 0;
    modules.library |= library;
    modules.runtime |= runtime;
    for (int i = 0; i < info->dlpi_phnum; ++i) {
        const auto& header = info->dlpi_phdr[i];
        if (header.p_type != PT_LOAD || modules.count == 16) continue;
        const std::uintptr_t begin = info->dlpi_addr + header.p_vaddr;
        modules.ranges[modules.count++] = {begin, begin + header.p_memsz};
    }
    return 0;
}

const SModules& Modules() {
    static const SModules modules = [] {
        SModules found;
        dl_iterate_phdr(AddModule, &found);
        if (!found.library || !found.runtime) {
            std::fputs("the library or the C++ runtime is not loaded as a shared library\n",
                       stderr);
            std::abort();
        }
        return found;
    }();
    return modules;
}

bool IsOfLibrary(const void* caller) {
    const SModules& modules = Modules();
    const auto address = reinterpret_cast<std::uintptr_t>(caller);
    for (std::size_t i = 0; i < modules.count; ++i) {
        if (address >= modules.ranges[i].begin && address < modules.ranges[i].end) return true;
    }
    return false;
}

// NULL when it fails.
void* Allocate(std::size_t bytes, std::size_t alignment, const void* caller) {
    if (g_State.armed && (g_State.callers == Callers::Everything || IsOfLibrary(caller))) {
        ++g_State.seen;
        const bool fails =
            g_State.n != 0 && (g_State.failing == Failing::One ? g_State.seen == g_State.n
                                                               : g_State.seen >= g_State.n);
        if (fails) {
            g_State.failed = true;
            return nullptr;
        }
    }
    void* block = nullptr;
    if (alignment <= alignof(std::max_align_t)) {
        block = std::malloc(bytes == 0 ? 1 : bytes);
    } else if (posix_memalign(&block, alignment, bytes) != 0) {
        block = nullptr;
    }
    if (block) {
        ++g_nLive;
        g_nLiveBytes += malloc_usable_size(block);
    }
    return block;
}

void* AllocateOrThrow(std::size_t bytes, std::size_t alignment, const void* caller) {
    void* block = Allocate(bytes, alignment, caller);
    if (!block) throw std::bad_alloc();
    return block;
}

void Release(void* block) noexcept {
    if (block) {
        --g_nLive;
        g_nLiveBytes -= malloc_usable_size(block);
    }
    std::free(block);
}

std::size_t Value(std::align_val_t alignment) { return static_cast<std::size_t>(alignment); }

}  // namespace

namespace norvask_test {

CFailAllocation::CFailAllocation(long n, Callers callers, Failing failing) {
    Modules();
    g_State = SState();
    g_State.n = n;
    g_State.callers = callers;
    g_State.failing = failing;
    g_State.armed = true;
}
CFailAllocation::~CFailAllocation() { Disarm(); }
void CFailAllocation::Disarm() { g_State.armed = false; }
long CFailAllocation::Seen() const { return g_State.seen; }
bool CFailAllocation::Failed() const { return g_State.failed; }

long LiveBlocks() { return g_nLive; }
std::size_t LiveBytes() { return g_nLiveBytes; }

const char* CaughtType() {
    const std::type_info* type = abi::__cxa_current_exception_type();
    return type ? type->name() : "";
}
bool CaughtBadAlloc() { return std::strcmp(CaughtType(), typeid(std::bad_alloc).name()) == 0; }
bool CaughtOutOfMemory() { return std::strstr(CaughtType(), "OutOfMemoryException") != nullptr; }

}  // namespace norvask_test

void* operator new(std::size_t bytes) {
    return AllocateOrThrow(bytes, 0, __builtin_return_address(0));
}
void* operator new[](std::size_t bytes) {
    return AllocateOrThrow(bytes, 0, __builtin_return_address(0));
}
void* operator new(std::size_t bytes, const std::nothrow_t&) noexcept {
    return Allocate(bytes, 0, __builtin_return_address(0));
}
void* operator new[](std::size_t bytes, const std::nothrow_t&) noexcept {
    return Allocate(bytes, 0, __builtin_return_address(0));
}
void* operator new(std::size_t bytes, std::align_val_t alignment) {
    return AllocateOrThrow(bytes, Value(alignment), __builtin_return_address(0));
}
void* operator new[](std::size_t bytes, std::align_val_t alignment) {
    return AllocateOrThrow(bytes, Value(alignment), __builtin_return_address(0));
}
void* operator new(std::size_t bytes, std::align_val_t alignment, const std::nothrow_t&) noexcept {
    return Allocate(bytes, Value(alignment), __builtin_return_address(0));
}
void* operator new[](std::size_t bytes, std::align_val_t alignment,
                     const std::nothrow_t&) noexcept {
    return Allocate(bytes, Value(alignment), __builtin_return_address(0));
}

void operator delete(void* block) noexcept { Release(block); }
void operator delete[](void* block) noexcept { Release(block); }
void operator delete(void* block, std::size_t) noexcept { Release(block); }
void operator delete[](void* block, std::size_t) noexcept { Release(block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { Release(block); }
void operator delete[](void* block, const std::nothrow_t&) noexcept { Release(block); }
void operator delete(void* block, std::align_val_t) noexcept { Release(block); }
void operator delete[](void* block, std::align_val_t) noexcept { Release(block); }
void operator delete(void* block, std::size_t, std::align_val_t) noexcept { Release(block); }
void operator delete[](void* block, std::size_t, std::align_val_t) noexcept { Release(block); }
void operator delete(void* block, std::align_val_t, const std::nothrow_t&) noexcept {
    Release(block);
}
void operator delete[](void* block, std::align_val_t, const std::nothrow_t&) noexcept {
    Release(block);
}
