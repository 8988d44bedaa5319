// The cost of every design operation and response query. Each entry runs one
// call with a frequency that moves from call to call; adding an operation is
// one line.
#include <benchmark/benchmark.h>

#include <string>

#include "bench_registry.hpp"
#include "bench_support.hpp"

namespace mivora_bench {

namespace {

constexpr double fs = 48000.0;

struct DesignOp {
    const char* name;
    void (*run)(IirProcess& f, double freq);
};

const DesignOp designOps[] = {
    {"setCoefPDFPQ", [](IirProcess& f, double v) { f.setCoefPDFPQ(v, fs, 6.0, 0.7); }},
    {"setCoefPDFCQ", [](IirProcess& f, double v) { f.setCoefPDFCQ(v, fs, -6.0, 0.7); }},
    {"setCoef", [](IirProcess& f, double v) { f.setCoef(v, fs, 3.0, 2.0); }},
    {"power", [](IirProcess& f, double v) { benchmark::DoNotOptimize(f.power(v, fs)); }},
    {"phase", [](IirProcess& f, double v) { benchmark::DoNotOptimize(f.phase(v, fs)); }},
};

void runDesign(benchmark::State& st, const DesignOp* op) {
    IirProcess f = busyFilter(5);
    double freq = 1000.0;
    for (auto _ : st) {
        op->run(f, freq);
        benchmark::DoNotOptimize(&f);
        benchmark::ClobberMemory();
        freq = freq < 20000.0 ? freq * 1.01 : 1000.0;
    }
}

}  // namespace

void registerDesignBenchmarks() {
    for (const DesignOp& op : designOps)
        benchmark::RegisterBenchmark((std::string(kDesign) + op.name).c_str(), runDesign, &op)
            ->Unit(benchmark::kNanosecond);
}

}  // namespace mivora_bench
