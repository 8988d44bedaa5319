// Reference loops for the benchmarks, built for hardware FMA so that the
// comparison with the library is about the loop structure, not about a
// library call per multiply-add. Check the bounds with
//   objdump -d --no-show-raw-insn build/release/bench/mivora_bench | less
// (functions boundTwoFma / boundOneFma): their loops must be scalar vfmadd
// with nothing folded away.
#include <cmath>

#include "bench_support.hpp"

#if defined(__x86_64__)
#define MIVORA_BENCH_FMA __attribute__((target("fma"), noinline))
#else
#define MIVORA_BENCH_FMA __attribute__((noinline))
#endif

namespace mivora_bench {

bool referenceLoopsRun() {
#if defined(__x86_64__)
    return __builtin_cpu_supports("fma");
#else
    return true;
#endif
}

// The formula's step, forced inline, takes this function's FMA code.
MIVORA_BENCH_FMA void straightforwardBlock(PlainFilter& f, const float* in, float* out, unsigned int count) {
    for (unsigned int i = 0; i < count; ++i) out[i] = static_cast<float>(f.step(in[i]));
}

// Unrolled by two so that each result takes the register of the value it
// replaces: no copy joins the chain.
MIVORA_BENCH_FMA void boundTwoFma(const double* acc, unsigned int count, double a1, double a2, double* state) {
    double y1 = state[0], y2 = state[1];
    for (unsigned int i = 0; i + 2 <= count; i += 2) {
        y2 = std::fma(a2, y2, std::fma(a1, y1, acc[i]));
        y1 = std::fma(a2, y1, std::fma(a1, y2, acc[i + 1]));
    }
    state[0] = y1;
    state[1] = y2;
}

MIVORA_BENCH_FMA void boundOneFma(const double* acc, unsigned int count, double a1, double* state) {
    double y1 = state[0];
    for (unsigned int i = 0; i < count; ++i) y1 = std::fma(a1, y1, acc[i]);
    state[0] = y1;
}

}  // namespace mivora_bench

namespace mivora_bench {

__attribute__((noinline)) double emptyCall(IirProcess* object, double x) {
    // Keeps the call and its argument alive without doing any work.
    asm volatile("" : : "r"(object) : "memory");
    return x;
}

}  // namespace mivora_bench
