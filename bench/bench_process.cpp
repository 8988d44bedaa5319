// Processing figures: doProcess per order and block size, cal per call, the
// straightforward loop they replace, the latency bounds, and processing while
// the state has decayed into subnormal numbers.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cfloat>
#include <cmath>

#include "bench_registry.hpp"
#include "bench_support.hpp"

namespace mivora_bench {

namespace {

void perItem(benchmark::State& st, double items, const char* counter) {
    st.counters[counter] = benchmark::Counter(items, benchmark::Counter::kIsIterationInvariantRate |
                                                         benchmark::Counter::kInvert);
}

int orderArg(const benchmark::State& st) { return static_cast<int>(st.range(0)); }
unsigned blockArg(const benchmark::State& st) { return static_cast<unsigned>(st.range(1)); }

// In place, on fresh input each turn (refiltering its own output would drift
// towards silence or overflow), in a buffer that starts on a cache line. The
// copy costs about 1% at block 64.
template <class Run>
void inPlaceBlocks(benchmark::State& st, const std::vector<float>& src, Run&& run) {
    const unsigned block = static_cast<unsigned>(src.size());
    LineBuffer line(block);
    float* buf = line.data();
    for (auto _ : st) {
        std::copy(src.begin(), src.end(), buf);
        run(buf, block);
        benchmark::DoNotOptimize(buf);
        benchmark::ClobberMemory();
    }
    perItem(st, block, "ns/sample");
}

void processBlock(benchmark::State& st) {
    IirProcess f = busyFilter(orderArg(st));
    inPlaceBlocks(st, noise(blockArg(st), 1), [&f](float* buf, unsigned n) { f.doProcess(buf, buf, n); });
}

void straightforward(benchmark::State& st) {
    PlainFilter f = plainCopy(busyFilter(orderArg(st)));
    inPlaceBlocks(st, noise(blockArg(st), 1), [&f](float* buf, unsigned n) { straightforwardBlock(f, buf, buf, n); });
}

template <class Call>
void perSampleCalls(benchmark::State& st, Call&& call) {
    constexpr unsigned n = 256;
    const std::vector<float> src = noise(n, 2);
    const std::vector<double> in(src.begin(), src.end());
    std::vector<double> out(n);
    for (auto _ : st) {
        for (unsigned i = 0; i < n; ++i) out[i] = call(in[i]);
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
    perItem(st, n, "ns/call");
}

void calDouble(benchmark::State& st) {
    IirProcess f = busyFilter(orderArg(st));
    perSampleCalls(st, [&f](double x) { return f.cal(x); });
}

void callFloor(benchmark::State& st) {
    IirProcess f = busyFilter(2);
    perSampleCalls(st, [&f](double x) { return emptyCall(&f, x); });
}

void bound(benchmark::State& st) {
    constexpr unsigned n = 2048;
    const int fmas = static_cast<int>(st.range(0));
    // Feedback of the benchmark filter's section 0 / first-order section.
    double c[IirProcess::maxCoefCount];
    busyFilter(3).getCoef(c);
    const std::vector<float> src = noise(n, 3);
    std::vector<double> acc(n);
    for (unsigned i = 0; i < n; ++i) acc[i] = 0.1 * src[i];
    double s[2] = {0.0, 0.0};
    for (auto _ : st) {
        if (fmas == 2) boundTwoFma(acc.data(), n, c[3], c[4], s);
        else boundOneFma(acc.data(), n, c[7], s);
        benchmark::DoNotOptimize(s);
        benchmark::ClobberMemory();
    }
    perItem(st, n, "ns/sample");
}

bool allSubnormalOrZero(const IirProcess& f) {
    double s[10];
    f.getDelay(s);
    return std::all_of(s, s + 10, [](double v) { return std::fabs(v) < DBL_MIN; });
}

int subnormalCount(const IirProcess& f) {
    double s[10];
    f.getDelay(s);
    return static_cast<int>(std::count_if(s, s + 10, [](double v) { return std::fpclassify(v) == FP_SUBNORMAL; }));
}

// Noise, then silence until every state value has decayed below the normal
// range. Rounding can then hold a section in a small limit cycle of
// subnormals for ever, which is what the decayed benchmarks measure.
IirProcess decayedFilter(benchmark::State& st) {
    IirProcess f = busyFilter(orderArg(st));
    std::vector<float> buf = noise(4096, 4);
    f.doProcess(buf.data(), buf.data(), 4096);
    double silence = 0;
    while (!allSubnormalOrZero(f) && silence < 1e8) {
        std::fill(buf.begin(), buf.end(), 0.0f);
        f.doProcess(buf.data(), buf.data(), 4096);
        silence += 4096;
    }
    st.counters["silence"] = silence;
    st.counters["subnormals"] = subnormalCount(f);
    return f;
}

void decayed(benchmark::State& st) {
    IirProcess f = decayedFilter(st);
    inPlaceBlocks(st, std::vector<float>(blockArg(st), 0.0f), [&f](float* b, unsigned n) { f.doProcess(b, b, n); });
}

// The straightforward loop from the same state: the arithmetic the formula
// asks for and nothing else, for comparison.
void decayedStraightforward(benchmark::State& st) {
    const IirProcess f = decayedFilter(st);
    PlainFilter p = plainCopy(f);
    inPlaceBlocks(st, std::vector<float>(blockArg(st), 0.0f),
                  [&p](float* b, unsigned n) { straightforwardBlock(p, b, b, n); });
}

}  // namespace

void registerProcessingBenchmarks() {
    const std::vector<int64_t> orders = {0, 1, 2, 3, 4, 5};
    const std::vector<int64_t> blocks = {64, 256, 4096};
    const bool reference = referenceLoopsRun();
    // The bound is measured first and again last: the summary takes the
    // faster of the two, so a busy spell during one of them cannot flatter
    // the ratios.
    if (reference) benchmark::RegisterBenchmark(kBound, bound)->DenseRange(1, 2)->ArgName("fma");
    benchmark::RegisterBenchmark(kProcess, processBlock)->ArgsProduct({orders, blocks})->ArgNames({"order", "block"});
    benchmark::RegisterBenchmark(kCal, calDouble)->DenseRange(0, 5)->ArgName("order");
    benchmark::RegisterBenchmark(kCallFloor, callFloor);
    benchmark::RegisterBenchmark(kDecayed, decayed)->ArgsProduct({{1, 2, 3, 4, 5}, {256}})->ArgNames({"order", "block"});
    if (!reference) return;
    benchmark::RegisterBenchmark(kStraightforward, straightforward)
        ->ArgsProduct({{1, 2, 3, 4, 5}, blocks})
        ->ArgNames({"order", "block"});
    benchmark::RegisterBenchmark(kDecayedStraightforward, decayedStraightforward)
        ->ArgsProduct({{1, 2, 3, 4, 5}, {256}})
        ->ArgNames({"order", "block"});
    benchmark::RegisterBenchmark(kBoundAgain, bound)->DenseRange(1, 2)->ArgName("fma");
}

}  // namespace mivora_bench
