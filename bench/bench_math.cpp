// ns per call of each correctly rounded elementary function beside the C
// library's, over arguments in the ranges the designs use (a table of 1024
// arguments cycled through, so branch prediction sees realistic variety).
// "ours" is the entry point (the FMA3 build on an x86-64 CPU that has it),
// "portable" the build without FMA3 that other CPUs run.
//   build/release/bench/mivora_math_bench --benchmark_repetitions=5
//       --benchmark_report_aggregates_only=true
#include <benchmark/benchmark.h>

#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "atan_impl.hpp"
#include "cr_math.hpp"
#include "exp_log_impl.hpp"
#include "hyperbolic_impl.hpp"
#include "pow_impl.hpp"
#include "sin_cos_tan_impl.hpp"

namespace {

namespace m = Mivora::math;
namespace p = Mivora::math::impl;

std::vector<double> table(double lo, double hi) {
    std::mt19937_64 rng(7);
    std::uniform_real_distribution<double> d(lo, hi);
    std::vector<double> v(1024);
    for (double& x : v) x = d(rng);
    return v;
}

using Unary = double (*)(double);
using Binary = double (*)(double, double);

struct UnaryCase {
    const char* name;
    Unary ours, portable, libc;
    double lo, hi;
};

struct BinaryCase {
    const char* name;
    Binary ours, portable, libc;
    double xlo, xhi, ylo, yhi;
};

constexpr double kPi = 3.141592653589793;

// The designs' angles: tan and sin/cos of (freq pi)/fs, atan of gains,
// atan2 of a response in any quadrant. sincos: both results of one angle
// (the C library's pair is two calls, or one fused call where the compiler
// merges them). sinHuge: the reduction through the bits of 2/pi.
const UnaryCase unaryCases[] = {
    {"exp", m::exp, p::explog::exp, [](double x) { return std::exp(x); }, -20.0, 20.0},
    {"exp10", m::exp10, p::explog::exp10, [](double x) { return std::pow(10.0, x); }, -10.0, 10.0},
    {"log", m::log, p::explog::log, [](double x) { return std::log(x); }, 1.0, 1e6},
    {"log10", m::log10, p::explog::log10, [](double x) { return std::log10(x); }, 1.0, 1e6},
    {"sinh", m::sinh, p::hyperbolic::sinh, [](double x) { return std::sinh(x); }, 0.0, 20.0},
    {"cosh", m::cosh, p::hyperbolic::cosh, [](double x) { return std::cosh(x); }, 0.0, 20.0},
    {"sin", m::sin, p::sincostan::sin, [](double x) { return std::sin(x); }, 0.0, kPi},
    {"cos", m::cos, p::sincostan::cos, [](double x) { return std::cos(x); }, 0.0, kPi},
    {"tan", m::tan, p::sincostan::tan, [](double x) { return std::tan(x); }, 0.0, kPi / 2},
    {"sincos",
     [](double x) {
         const m::SinCos sc = m::sincos(x);
         return sc.sin + sc.cos;
     },
     [](double x) {
         const m::SinCos sc = p::sincostan::sincos(x);
         return sc.sin + sc.cos;
     },
     [](double x) { return std::sin(x) + std::cos(x); }, 0.0, kPi},
    {"atan", m::atan, p::arctan::atan, [](double x) { return std::atan(x); }, 0.0, 1e6},
    {"sinHuge", m::sin, p::sincostan::sin, [](double x) { return std::sin(x); }, 1e10, 1e300},
};

// powWide: results across the range, |y log x| up to about 700.
const BinaryCase binaryCases[] = {
    {"pow", m::pow, p::powers::pow, [](double x, double y) { return std::pow(x, y); }, 0.0, 100.0, -1.0, 1.0},
    {"powWide", m::pow, p::powers::pow, [](double x, double y) { return std::pow(x, y); }, 1e-3, 1e3, -100.0, 100.0},
    {"atan2", m::atan2, p::arctan::atan2, [](double y, double x) { return std::atan2(y, x); }, -1e3, 1e3, -1e3, 1e3},
};

void runUnary(benchmark::State& state, Unary f, double lo, double hi) {
    const std::vector<double> xs = table(lo, hi);
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(f(xs[i]));
        i = (i + 1) & 1023;
    }
}

void runBinary(benchmark::State& state, Binary f, const BinaryCase& c) {
    const std::vector<double> xs = table(c.xlo, c.xhi), ys = table(c.ylo, c.yhi);
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(f(xs[i], ys[(i * 7) & 1023]));
        i = (i + 1) & 1023;
    }
}

}  // namespace

int main(int argc, char** argv) {
    for (const UnaryCase& c : unaryCases) {
        const std::pair<const char*, Unary> builds[] = {{"ours", c.ours}, {"portable", c.portable}, {"libc", c.libc}};
        for (const auto& [suffix, f] : builds)
            benchmark::RegisterBenchmark((std::string(c.name) + "_" + suffix).c_str(),
                                         [f = f, &c](benchmark::State& s) { runUnary(s, f, c.lo, c.hi); });
    }
    for (const BinaryCase& c : binaryCases) {
        const std::pair<const char*, Binary> builds[] = {{"ours", c.ours}, {"portable", c.portable}, {"libc", c.libc}};
        for (const auto& [suffix, f] : builds)
            benchmark::RegisterBenchmark((std::string(c.name) + "_" + suffix).c_str(),
                                         [f = f, &c](benchmark::State& s) { runBinary(s, f, c); });
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
