// Real-time safety: no public operation allocates. Every operation of the
// operation table runs with allocation counting on; the table itself only
// compiles while every operation is noexcept.
//
// Counting: in a plain build the global operator new family and glibc's
// malloc family are replaced here by counting forwarders. Sanitizer runtimes
// own those symbols, so there the sanitizer's allocation hook counts instead.
#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <new>
#include <string>

#include "operation_table.hpp"
#include "typical_driver.hpp"

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define MIVORA_SANITIZER_ALLOCATOR 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer) || __has_feature(memory_sanitizer)
#define MIVORA_SANITIZER_ALLOCATOR 1
#endif
#endif

#ifdef MIVORA_SANITIZER_ALLOCATOR
// From <sanitizer/allocator_interface.h>, which not every toolchain installs.
extern "C" int __sanitizer_install_malloc_and_free_hooks(void (*)(const volatile void*, std::size_t),
                                                          void (*)(const volatile void*));
#endif

namespace {

std::atomic<bool> gArmed{false};
std::atomic<long> gNewCalls{0};
std::atomic<long> gMallocCalls{0};

void countMalloc() noexcept {
    if (gArmed.load(std::memory_order_relaxed)) gMallocCalls.fetch_add(1, std::memory_order_relaxed);
}

// Counts allocations made between construction and count().
class AllocationWindow {
public:
    AllocationWindow() noexcept {
        installHooks();
        gNewCalls = 0;
        gMallocCalls = 0;
        gArmed = true;
    }
    ~AllocationWindow() { gArmed = false; }
    AllocationWindow(const AllocationWindow&) = delete;
    AllocationWindow& operator=(const AllocationWindow&) = delete;

    long count() noexcept {
        gArmed = false;
        return gNewCalls + gMallocCalls;
    }

private:
    static void installHooks() noexcept {
#ifdef MIVORA_SANITIZER_ALLOCATOR
        // Both hooks must be given, or the runtime installs neither.
        static const bool installed = __sanitizer_install_malloc_and_free_hooks(
            [](const volatile void*, std::size_t) { countMalloc(); }, [](const volatile void*) {});
        (void)installed;
#endif
    }
};

// Keeps the compiler from removing an allocation whose result is unused.
void escape(void* p) { asm volatile("" : : "g"(p) : "memory"); }

}  // namespace

#ifndef MIVORA_SANITIZER_ALLOCATOR

// ---- Counting replacements (plain builds) ---------------------------------

namespace {
void countNew() noexcept {
    if (gArmed.load(std::memory_order_relaxed)) gNewCalls.fetch_add(1, std::memory_order_relaxed);
}
}  // namespace

void* operator new(std::size_t n) {
    countNew();
    if (void* p = std::malloc(n != 0 ? n : 1)) return p;
    std::abort();  // out of memory in a test binary; works with -fno-exceptions too
}
void* operator new[](std::size_t n) { return ::operator new(n); }
void* operator new(std::size_t n, const std::nothrow_t&) noexcept {
    countNew();
    return std::malloc(n != 0 ? n : 1);
}
void* operator new[](std::size_t n, const std::nothrow_t& t) noexcept { return ::operator new(n, t); }
void* operator new(std::size_t n, std::align_val_t a) {
    countNew();
    const auto align = static_cast<std::size_t>(a);
    if (void* p = std::aligned_alloc(align, (n + align - 1) / align * align)) return p;
    std::abort();
}
void* operator new[](std::size_t n, std::align_val_t a) { return ::operator new(n, a); }
void operator delete(void* p) noexcept { std::free(p); }
void operator delete[](void* p) noexcept { std::free(p); }
void operator delete(void* p, std::size_t) noexcept { std::free(p); }
void operator delete[](void* p, std::size_t) noexcept { std::free(p); }
void operator delete(void* p, std::align_val_t) noexcept { std::free(p); }
void operator delete[](void* p, std::align_val_t) noexcept { std::free(p); }
void operator delete(void* p, std::size_t, std::align_val_t) noexcept { std::free(p); }
void operator delete[](void* p, std::size_t, std::align_val_t) noexcept { std::free(p); }

#if defined(__GLIBC__)
// glibc lets a program replace malloc; these forward to glibc's own allocator.
extern "C" {
void* __libc_malloc(std::size_t);
void* __libc_calloc(std::size_t, std::size_t);
void* __libc_realloc(void*, std::size_t);
void* __libc_memalign(std::size_t, std::size_t);
void __libc_free(void*);

void* malloc(std::size_t n) {
    countMalloc();
    return __libc_malloc(n);
}
void* calloc(std::size_t n, std::size_t size) {
    countMalloc();
    return __libc_calloc(n, size);
}
void* realloc(void* p, std::size_t n) {
    countMalloc();
    return __libc_realloc(p, n);
}
void* aligned_alloc(std::size_t align, std::size_t n) {
    countMalloc();
    return __libc_memalign(align, n);
}
void* memalign(std::size_t align, std::size_t n) {
    countMalloc();
    return __libc_memalign(align, n);
}
int posix_memalign(void** out, std::size_t align, std::size_t n) {
    countMalloc();
    void* p = __libc_memalign(align, n);
    if (p == nullptr) return ENOMEM;
    *out = p;
    return 0;
}
void free(void* p) { __libc_free(p); }
}
#endif

#endif  // !MIVORA_SANITIZER_ALLOCATOR

namespace {

using namespace mivora_test;

TEST(RealTime, AllocationCounterSeesNewAndMalloc) {
    // Without this, a broken hook would make the next test pass vacuously.
    void* (*volatile mallocFn)(std::size_t) = std::malloc;
    {
        AllocationWindow window;
        void* p = mallocFn(64);
        escape(p);
        std::free(p);
        EXPECT_GE(window.count(), 1);
    }
    {
        AllocationWindow window;
        std::string s(200, 'x');
        escape(s.data());
        EXPECT_GE(window.count(), 1);
    }
}

TEST(RealTime, NoPublicOperationAllocates) {
    using D = TypicalDriver;
    TypicalDriver driver;
    IirProcess f(5);
    long perOperation[kOperationCount<D>] = {};
    // Several rounds, so each operation meets several argument sets and
    // follows different predecessors (order changes, odd and even orders).
    for (int round = 0; round < 6; ++round) {
        for (std::size_t i = 0; i < kOperationCount<D>; ++i) {
            AllocationWindow window;
            kOperations<D>[i].run(f, driver);
            perOperation[i] += window.count();
        }
    }
    for (std::size_t i = 0; i < kOperationCount<D>; ++i)
        EXPECT_EQ(perOperation[i], 0) << kOperations<D>[i].name << " allocated";
}

}  // namespace
