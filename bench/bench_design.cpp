// The cost of every design operation and response query (the section
// transforms run inside the designs). Each entry runs one call with a
// frequency that moves from call to call; adding an operation is one line.
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

// An analogue section s^2 + lin*s + cst with lin moving from call to call.
void transform(void (*toZ)(double, double, double*) noexcept, double v) {
    double c[5];
    toZ(v / 1e4, 1.0, c);
    benchmark::DoNotOptimize(c);
}
void transformWithZero(void (*toZ)(double, double, double, double*) noexcept, double v) {
    double c[5];
    toZ(v / 1e4, 1.0, 2.0, c);
    benchmark::DoNotOptimize(c);
}

// v is a frequency between 1 kHz and 20 kHz; band edges are v/2 and v.
const DesignOp designOps[] = {
    {"setCoefPDFPQ", [](IirProcess& f, double v) { f.setCoefPDFPQ(v, fs, 6.0, 0.7); }},
    {"setCoefPDFCQ", [](IirProcess& f, double v) { f.setCoefPDFCQ(v, fs, -6.0, 0.7); }},
    {"setCoef", [](IirProcess& f, double v) { f.setCoef(v, fs, 3.0, 2.0); }},
    {"setCoefLOWS_A", [](IirProcess& f, double v) { f.setCoefLOWS_A(v, 6.0, fs); }},
    {"setCoefLOWS_B", [](IirProcess& f, double v) { f.setCoefLOWS_B(v, -6.0, fs); }},
    {"setCoefHIGS_A", [](IirProcess& f, double v) { f.setCoefHIGS_A(v, 6.0, fs); }},
    {"setCoefHIGS_B", [](IirProcess& f, double v) { f.setCoefHIGS_B(v, -6.0, fs); }},
    {"setCoefLOWS_2A", [](IirProcess& f, double v) { f.setCoefLOWS_2A(v, 6.0, fs); }},
    {"setCoefLOWS_2B", [](IirProcess& f, double v) { f.setCoefLOWS_2B(v, -6.0, fs); }},
    {"setCoefLOWS_PM_2A", [](IirProcess& f, double v) { f.setCoefLOWS_PM_2A(v, 6.0, fs); }},
    {"setCoefLOWS_PM_2B", [](IirProcess& f, double v) { f.setCoefLOWS_PM_2B(v, -6.0, fs); }},
    {"setCoefHIGS_2A", [](IirProcess& f, double v) { f.setCoefHIGS_2A(v, 6.0, fs); }},
    {"setCoefHIGS_2B", [](IirProcess& f, double v) { f.setCoefHIGS_2B(v, -6.0, fs); }},
    {"setCoefHIGS_PM_2A", [](IirProcess& f, double v) { f.setCoefHIGS_PM_2A(v, 6.0, fs); }},
    {"setCoefHIGS_PM_2B", [](IirProcess& f, double v) { f.setCoefHIGS_PM_2B(v, -6.0, fs); }},
    {"setCoefLowShelf_C", [](IirProcess& f, double v) { f.setCoefLowShelf_C(fs, v, 6.0, 0.5, -3.0); }},
    {"setCoefHiShelf_C", [](IirProcess& f, double v) { f.setCoefHiShelf_C(fs, v, 6.0, 0.5, -3.0); }},
    {"setCoefLowShelf_2C", [](IirProcess& f, double v) { f.setCoefLowShelf_2C(fs, v, 6.0, 0.5, -3.0); }},
    {"setCoefHiShelf_2C", [](IirProcess& f, double v) { f.setCoefHiShelf_2C(fs, v, 6.0, 0.5, -3.0); }},
    {"setCoefHPF/5", [](IirProcess& f, double v) { f.setCoefHPF(5, v, fs); }},
    {"setCoefLPF/5", [](IirProcess& f, double v) { f.setCoefLPF(5, v, fs); }},
    {"setCoefHPFChev/5", [](IirProcess& f, double v) { f.setCoefHPFChev(5, v, 1.0, fs); }},
    {"setCoefLPFChev/5", [](IirProcess& f, double v) { f.setCoefLPFChev(5, v, 1.0, fs); }},
    {"setCoefHPFIChev/5", [](IirProcess& f, double v) { f.setCoefHPFIChev(5, v, 200.0, fs); }},
    {"setCoefLPFIChev/5", [](IirProcess& f, double v) { f.setCoefLPFIChev(5, v, 200.0, fs); }},
    {"setCoefHPFQfct", [](IirProcess& f, double v) { f.setCoefHPFQfct(v, 0.9, fs); }},
    {"setCoefLPFQfct", [](IirProcess& f, double v) { f.setCoefLPFQfct(v, 0.9, fs); }},
    {"setCoefBPFQfct", [](IirProcess& f, double v) { f.setCoefBPFQfct(v, 4.0, fs); }},
    {"setCoefBPF_Q", [](IirProcess& f, double v) { f.setCoefBPF_Q(v, 4.0, fs); }},
    {"setCoefBPF/2", [](IirProcess& f, double v) { f.setCoefBPF(2, v / 2, v, fs); }},
    {"setCoefBEF/2", [](IirProcess& f, double v) { f.setCoefBEF(2, v / 2, v, fs); }},
    {"setCoefBPFChev/2", [](IirProcess& f, double v) { f.setCoefBPFChev(2, v / 2, v, 1.0, fs); }},
    {"setCoefBEFChev/2", [](IirProcess& f, double v) { f.setCoefBEFChev(2, v / 2, v, 1.0, fs); }},
    {"setCoefBPFIChev/2", [](IirProcess& f, double v) { f.setCoefBPFIChev(2, v / 2, v, 200.0, fs); }},
    {"setCoefBEFIChev/2", [](IirProcess& f, double v) { f.setCoefBEFIChev(2, v / 2, v, 200.0, fs); }},
    {"setDcfLPF", [](IirProcess& f, double v) { f.setDcfLPF(v / 1000.0, fs); }},
    {"setDcfHPF", [](IirProcess& f, double v) { f.setDcfHPF(v / 1000.0, fs); }},
    {"setAPF1st", [](IirProcess& f, double v) { f.setAPF1st(v, fs); }},
    {"setAPF2nd", [](IirProcess& f, double v) { f.setAPF2nd(v, fs); }},
    {"setCoefLOWS", [](IirProcess& f, double v) { f.setCoefLOWS(v, 6.0, fs); }},
    {"setCoefLOWS/type", [](IirProcess& f, double v) { f.setCoefLOWS(v, 6.0, fs, 0); }},
    {"setCoefHIGS", [](IirProcess& f, double v) { f.setCoefHIGS(v, 6.0, fs); }},
    {"setCoefHIGS/type", [](IirProcess& f, double v) { f.setCoefHIGS(v, 6.0, fs, 0); }},
    {"setCoefLOWS_2", [](IirProcess& f, double v) { f.setCoefLOWS_2(v, 6.0, fs); }},
    {"setCoefLOWS_2/type", [](IirProcess& f, double v) { f.setCoefLOWS_2(v, 6.0, fs, 0); }},
    {"setCoefHIGS_2", [](IirProcess& f, double v) { f.setCoefHIGS_2(v, 6.0, fs); }},
    {"setCoefHIGS_2/type", [](IirProcess& f, double v) { f.setCoefHIGS_2(v, 6.0, fs, 0); }},
    {"setCoefHPF/2", [](IirProcess& f, double v) { f.setCoefHPF(v, fs); }},
    {"setCoefLPF/2", [](IirProcess& f, double v) { f.setCoefLPF(v, fs); }},
    {"setDcfLPF/alpha", [](IirProcess& f, double v) { f.setDcfLPF(v / 1e5); }},
    {"setDcfHPF/alpha", [](IirProcess& f, double v) { f.setDcfHPF(v / 1e5); }},
    {"HpfCoefToZet", [](IirProcess&, double v) { transform(IirProcess::HpfCoefToZet, v); }},
    {"LpfCoefToZet", [](IirProcess&, double v) { transform(IirProcess::LpfCoefToZet, v); }},
    {"BpfCoefToZet", [](IirProcess&, double v) { transform(IirProcess::BpfCoefToZet, v); }},
    {"IChevHpfCoefToZet", [](IirProcess&, double v) { transformWithZero(IirProcess::IChevHpfCoefToZet, v); }},
    {"IChevLpfCoefToZet", [](IirProcess&, double v) { transformWithZero(IirProcess::IChevLpfCoefToZet, v); }},
    {"BefCoefToZet", [](IirProcess&, double v) { transformWithZero(IirProcess::BefCoefToZet, v); }},
    {"BpfCoefTrans", [](IirProcess&, double v) {
         double l1, c1, l2, c2;
         IirProcess::BpfCoefTrans(1.4, 1.0, v / 4e4, v / 2e4, &l1, &c1, &l2, &c2);
         benchmark::DoNotOptimize(l1 + c1 + l2 + c2);
     }},
    {"BuboCoefTrans", [](IirProcess&, double v) {
         double high, low;
         IirProcess::BuboCoefTrans(v / 4e4, v / 2e4, 3.0, &high, &low);
         benchmark::DoNotOptimize(high + low);
     }},
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
