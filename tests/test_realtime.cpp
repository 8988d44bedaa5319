// Real-time safety: no public operation allocates. Every operation of the
// operation table runs with allocation counting on; the table itself only
// compiles while every operation is noexcept.
//
// Counting: glibc's malloc family and the global operator new/delete are
// replaced by counting forwarders, for this whole binary (so it is one of its
// own). Sanitizer runtimes own those symbols: there the test is skipped.
#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>
#include <cstdlib>
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

namespace {
std::atomic<bool> gArmed{false};
std::atomic<long> gCalls{0};
void countAllocation() noexcept {
    if (gArmed.load(std::memory_order_relaxed)) gCalls.fetch_add(1, std::memory_order_relaxed);
}
}  // namespace

#if !defined(MIVORA_SANITIZER_ALLOCATOR) && defined(__GLIBC__)
// glibc lets a program replace malloc; these forward to glibc's own allocator.
extern "C" {
void* __libc_malloc(std::size_t);
void* __libc_calloc(std::size_t, std::size_t);
void* __libc_realloc(void*, std::size_t);
void* __libc_memalign(std::size_t, std::size_t);
void __libc_free(void*);

void* malloc(std::size_t n) { return countAllocation(), __libc_malloc(n); }
void* calloc(std::size_t n, std::size_t size) { return countAllocation(), __libc_calloc(n, size); }
void* realloc(void* p, std::size_t n) { return countAllocation(), __libc_realloc(p, n); }
void* aligned_alloc(std::size_t align, std::size_t n) { return countAllocation(), __libc_memalign(align, n); }
void* memalign(std::size_t align, std::size_t n) { return countAllocation(), __libc_memalign(align, n); }
int posix_memalign(void** out, std::size_t align, std::size_t n) {
    countAllocation();
    void* p = __libc_memalign(align, n);
    if (p == nullptr) return ENOMEM;
    *out = p;
    return 0;
}
void free(void* p) { __libc_free(p); }
}

// The global operator new counts on its own too, so an allocation is seen even
// where a standard library's operator new does not go through malloc.
void* operator new(std::size_t n) {
    countAllocation();
    void* p = __libc_malloc(n == 0 ? 1 : n);
    if (p == nullptr) std::abort();  // out of memory in a test: stop loudly
    return p;
}
void* operator new[](std::size_t n) { return operator new(n); }
void operator delete(void* p) noexcept { __libc_free(p); }
void operator delete[](void* p) noexcept { __libc_free(p); }
void operator delete(void* p, std::size_t) noexcept { __libc_free(p); }
void operator delete[](void* p, std::size_t) noexcept { __libc_free(p); }
#endif  // otherwise nothing counts, and the counter's self-check below fails

namespace {

using namespace mivora_test;

// The allocations made while fn runs.
template <class F>
long allocationsDuring(F fn) {
    gCalls = 0;
    gArmed = true;
    fn();
    gArmed = false;
    return gCalls.load();
}

// Keeps the compiler from removing an allocation whose result is unused.
void escape(void* p) { asm volatile("" : : "g"(p) : "memory"); }

TEST(RealTime, NoPublicOperationAllocates) {
#ifdef MIVORA_SANITIZER_ALLOCATOR
    GTEST_SKIP() << "the sanitizer runtime owns malloc and operator new";
#endif
    // First the counter itself, so that a broken hook cannot pass vacuously:
    // a malloc and an operator new must both be seen.
    void* (*volatile mallocFn)(std::size_t) = std::malloc;
    const long seen = allocationsDuring([&] {
        void* p = mallocFn(64);
        escape(p);
        std::string s(200, 'x');
        escape(s.data());
        std::free(p);
    });
    EXPECT_GE(seen, 2);
    // Several rounds, so each operation meets several argument sets and
    // follows different predecessors (order changes, odd and even orders).
    TypicalDriver driver;
    IirProcess f(5);
    for (int round = 0; round < 6; ++round)
        for (const Operation<TypicalDriver>& op : kOperations<TypicalDriver>)
            EXPECT_EQ(allocationsDuring([&] { op.run(f, driver); }), 0) << op.name << " allocated, round " << round;
}

}  // namespace
