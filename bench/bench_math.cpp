// ns per call of each correctly rounded elementary function beside the C
// library's, over arguments in the ranges the designs use (a table of 1024
// arguments cycled through, so branch prediction sees realistic variety).
//   build/release/bench/mivora_math_bench --benchmark_repetitions=5
//       --benchmark_report_aggregates_only=true
#include <benchmark/benchmark.h>

#include <cmath>
#include <random>
#include <vector>

#include "cr_math.hpp"

namespace {

namespace m = Mivora::math;

std::vector<double> table(double lo, double hi) {
    std::mt19937_64 rng(7);
    std::uniform_real_distribution<double> d(lo, hi);
    std::vector<double> v(1024);
    for (double& x : v) x = d(rng);
    return v;
}

template <class F>
void unary(benchmark::State& state, F f, double lo, double hi) {
    const std::vector<double> xs = table(lo, hi);
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(f(xs[i]));
        i = (i + 1) & 1023;
    }
}

template <class F>
void binary(benchmark::State& state, F f, double xlo, double xhi, double ylo, double yhi) {
    const std::vector<double> xs = table(xlo, xhi), ys = table(ylo, yhi);
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(f(xs[i], ys[(i * 7) & 1023]));
        i = (i + 1) & 1023;
    }
}

#define MIVORA_UNARY(name, lo, hi)                                                                      \
    void name##_ours(benchmark::State& s) { unary(s, [](double x) { return m::name(x); }, lo, hi); }    \
    void name##_libc(benchmark::State& s) { unary(s, [](double x) { return std::name(x); }, lo, hi); } \
    BENCHMARK(name##_ours);                                                                             \
    BENCHMARK(name##_libc);

MIVORA_UNARY(exp, -20.0, 20.0)
MIVORA_UNARY(log, 1.0, 1e6)
MIVORA_UNARY(log10, 1.0, 1e6)
MIVORA_UNARY(sinh, 0.0, 20.0)
MIVORA_UNARY(cosh, 0.0, 20.0)

void exp10_ours(benchmark::State& s) { unary(s, [](double x) { return m::exp10(x); }, -10.0, 10.0); }
void exp10_libc(benchmark::State& s) { unary(s, [](double x) { return std::pow(10.0, x); }, -10.0, 10.0); }
BENCHMARK(exp10_ours);
BENCHMARK(exp10_libc);

void pow_ours(benchmark::State& s) { binary(s, [](double x, double y) { return m::pow(x, y); }, 0.0, 100.0, -1.0, 1.0); }
void pow_libc(benchmark::State& s) { binary(s, [](double x, double y) { return std::pow(x, y); }, 0.0, 100.0, -1.0, 1.0); }
BENCHMARK(pow_ours);
BENCHMARK(pow_libc);
// Results across the range: |y log x| up to about 700.
void powWide_ours(benchmark::State& s) { binary(s, [](double x, double y) { return m::pow(x, y); }, 1e-3, 1e3, -100.0, 100.0); }
void powWide_libc(benchmark::State& s) { binary(s, [](double x, double y) { return std::pow(x, y); }, 1e-3, 1e3, -100.0, 100.0); }
BENCHMARK(powWide_ours);
BENCHMARK(powWide_libc);

// The designs' angles: tan and sin/cos of (freq pi)/fs, atan of gains,
// atan2 of a response in any quadrant.
MIVORA_UNARY(sin, 0.0, 3.141592653589793)
MIVORA_UNARY(cos, 0.0, 3.141592653589793)
MIVORA_UNARY(tan, 0.0, 1.5707963267948966)
MIVORA_UNARY(atan, 0.0, 1e6)

// Both results of one angle (the C library's pair is two calls, or one
// fused call where the compiler merges them).
void sincos_ours(benchmark::State& s) {
    unary(s, [](double x) { const m::SinCos sc = m::sincos(x); return sc.sin + sc.cos; }, 0.0, 3.141592653589793);
}
void sincos_libc(benchmark::State& s) {
    unary(s, [](double x) { return std::sin(x) + std::cos(x); }, 0.0, 3.141592653589793);
}
BENCHMARK(sincos_ours);
BENCHMARK(sincos_libc);
void atan2_ours(benchmark::State& s) { binary(s, [](double y, double x) { return m::atan2(y, x); }, -1e3, 1e3, -1e3, 1e3); }
void atan2_libc(benchmark::State& s) { binary(s, [](double y, double x) { return std::atan2(y, x); }, -1e3, 1e3, -1e3, 1e3); }
BENCHMARK(atan2_ours);
BENCHMARK(atan2_libc);
// Huge arguments: the reduction through the bits of 2/pi.
void sinHuge_ours(benchmark::State& s) { unary(s, [](double x) { return m::sin(x); }, 1e10, 1e300); }
void sinHuge_libc(benchmark::State& s) { unary(s, [](double x) { return std::sin(x); }, 1e10, 1e300); }
BENCHMARK(sinHuge_ours);
BENCHMARK(sinHuge_libc);

}  // namespace

BENCHMARK_MAIN();
