// Processing and design costs. Run: build/release/bench/mivora_bench
#include <benchmark/benchmark.h>
#include <mivora/IirProcess.h>

#include <vector>

namespace {

using Mivora::IirProcess;

// A stable filter of the given order with every stage doing real work.
IirProcess filterOfOrder(int order) {
    IirProcess f;
    f.setCoefPDFPQ(1000.0, 48000.0, 6.0, 1.0);
    f.setOrder(order);  // section 1 and the first-order section stay zero
    return f;
}

void BM_doProcess(benchmark::State& state) {
    const int order = static_cast<int>(state.range(0));
    const auto block = static_cast<unsigned>(state.range(1));
    IirProcess f = filterOfOrder(order);
    std::vector<float> buf(block);
    for (unsigned i = 0; i < block; ++i) buf[i] = static_cast<float>((i * 7919u % 2001u)) / 1000.0f - 1.0f;
    for (auto _ : state) {
        f.doProcess(buf.data(), buf.data(), block);
        benchmark::DoNotOptimize(buf.data());
        benchmark::ClobberMemory();
    }
    state.counters["ns/sample"] = benchmark::Counter(static_cast<double>(block),
        benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}
BENCHMARK(BM_doProcess)->ArgsProduct({{0, 1, 2, 3, 4, 5}, {64, 256, 4096}})->ArgNames({"order", "block"});

void BM_calDouble(benchmark::State& state) {
    IirProcess f = filterOfOrder(2);
    double x = 0.5;
    for (auto _ : state) {
        x = f.cal(x) * 0.5 + 0.25;
        benchmark::DoNotOptimize(x);
    }
}
BENCHMARK(BM_calDouble);

void BM_setCoefPDFPQ(benchmark::State& state) {
    IirProcess f;
    double freq = 1000.0;
    for (auto _ : state) {
        f.setCoefPDFPQ(freq, 48000.0, 6.0, 0.7);
        benchmark::DoNotOptimize(&f);
        freq = freq < 20000.0 ? freq + 1.0 : 1000.0;
    }
}
BENCHMARK(BM_setCoefPDFPQ);

}  // namespace

BENCHMARK_MAIN();
