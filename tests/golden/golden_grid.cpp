// The grid over IirProcess. Each design runs on a fresh object at every
// combination of its argument lists; the lists hold typical values and the
// edges (0, negative, tiny and huge frequencies, Nyquist and above, signed
// zero and huge gains, NaN, clamped orders), then at arguments drawn from
// their typical ranges. Each designed filter is read out, queried and run
// through one fixed input.
#include <mivora/IirProcess.h>

#include <cfloat>
#include <climits>
#include <cmath>
#include <cstdint>
#include <vector>

#include "golden_grid.hpp"

namespace mivora_golden {

namespace {

using Mivora::IirProcess;
const double kNaN = std::nan("");

// Everything a design may take; each design reads the fields it needs.
struct Params {
    double freq = 0, fs = 0, gainDb = 0, q = 0, shape = 0, weight = 0, levelDb = 0;
    double low = 0, high = 0, alpha = 0;
    int order = 0;
    short type = 0;
};

using List = std::vector<double>;
const List kFreq = {0.0,     1e-300,  1e-3,    20.0,    440.0,   1000.0, 3333.3,
                     12000.0, 22050.0, 23999.0, 24000.0, 36000.0, 1e300, -1000.0};
// 0 gives NaN designs; 48000 makes 24000 Nyquist, 44100 makes 22050 Nyquist.
const List kFs = {48000.0, 44100.0, 0.0};
const List kGainDb = {-0.0, 0.0, 0.1, -3.0, 6.0, -12.5, 24.0, -60.0, 120.0, -100.0, kNaN};
const List kQ = {0.0, 0.05, 0.7071067811865476, 1.0, 4.5, 100.0, -2.0};
const List kRipple = {0.0, 0.01, 0.5, 1.0, 3.0, -1.0};
const List kStopLevel = {-200.0, 0.0, 120.0, 360.0, 560.0, 959.0, 960.0, 1000.0};
const List kWeight = {0.0, 0.5, 1.0, 1.5, -0.5};
const List kLevelDb = {0.0, -3.0, -100.0, 6.0};
const List kCornerGainDb = {0.0, -0.0, 6.0, -12.5, 40.0, -100.0};
const List kCornerFreq = {0.0, 20.0, 1000.0, 12000.0, 24000.0, -1000.0};
const List kOrder = {-6, -5, -4, -3, -2, -1, 0, 1, 2, 3, 4, 5, 6};
const List kProtoOrder = {-1, 0, 1, 2, 3};
const List kType = {0, 1, 2, -1};
const List kAlpha = {0.0, 0.01, 0.3, 1.0, 1.9999, 2.0, 3.5, 4.0, -0.5};
// Band edges, each low against each high: reversed and degenerate bands too.
const List kBandLow = {0.0, 1e-3, 20.0, 440.0, 5000.0, 12000.0};
const List kBandHigh = {40.0, 441.0, 4000.0, 8000.0, 23999.0, 24000.0};

// One argument: its list of values, the range typical designs draw it
// from (octaves: lo * 2^[0, hi); integers: [lo, hi]), and the field it sets.
enum class Draw { Uniform, Octaves, Integer };
struct Axis {
    const List* values;
    Draw draw;
    double lo, hi;
    void (*set)(Params&, double);
    double random(SplitMix& r) const {
        switch (draw) {
            case Draw::Uniform: return r.uniform(lo, hi);
            case Draw::Octaves: {
                const double octave = static_cast<double>(1ull << (r.next() % static_cast<std::uint64_t>(hi)));
                return r.uniform(lo, 2.0 * lo) * octave;
            }
            case Draw::Integer: return lo + static_cast<double>(r.next() % static_cast<std::uint64_t>(hi - lo + 1.0));
        }
        return lo;
    }
};
#define MIVORA_AXIS(list, draw, lo, hi, field) \
    Axis { &list, Draw::draw, lo, hi, [](Params& p, double v) { p.field = static_cast<decltype(p.field)>(v); } }
const Axis kFreqAxis = MIVORA_AXIS(kFreq, Octaves, 10.0, 11, freq),
           kFsAxis = MIVORA_AXIS(kFs, Uniform, 8000.0, 192000.0, fs),
           kGainAxis = MIVORA_AXIS(kGainDb, Uniform, -30.0, 30.0, gainDb),
           kQAxis = MIVORA_AXIS(kQ, Octaves, 0.1, 7, q),
           kRippleAxis = MIVORA_AXIS(kRipple, Uniform, 0.01, 3.0, shape),
           kStopAxis = MIVORA_AXIS(kStopLevel, Uniform, 0.0, 900.0, shape),
           kWeightAxis = MIVORA_AXIS(kWeight, Uniform, 0.0, 1.0, weight),
           kLevelAxis = MIVORA_AXIS(kLevelDb, Uniform, -20.0, 0.0, levelDb),
           kCornerGainAxis = MIVORA_AXIS(kCornerGainDb, Uniform, -30.0, 30.0, gainDb),
           kCornerFreqAxis = MIVORA_AXIS(kCornerFreq, Octaves, 10.0, 11, freq),
           kOrderAxis = MIVORA_AXIS(kOrder, Integer, 1, 5, order),
           kProtoAxis = MIVORA_AXIS(kProtoOrder, Integer, 1, 2, order),
           kTypeAxis = MIVORA_AXIS(kType, Integer, 0, 1, type),
           kAlphaAxis = MIVORA_AXIS(kAlpha, Uniform, 0.001, 1.5, alpha),
           kLowAxis = MIVORA_AXIS(kBandLow, Octaves, 20.0, 8, low),
           kHighAxis = MIVORA_AXIS(kBandHigh, Octaves, 40.0, 9, high);
#undef MIVORA_AXIS

struct Design {
    const char* name;
    std::vector<Axis> axes;
    void (*run)(IirProcess&, const Params&);
};

#define MIVORA_DESIGN(name, axes, ...) \
    Design { name, axes, [](IirProcess& f, const Params& p) { f.__VA_ARGS__; } }
#define SHELF(m) MIVORA_DESIGN(#m, shelf, m(p.freq, p.gainDb, p.fs))
#define TYPED(m) MIVORA_DESIGN(#m "(type)", typed, m(p.freq, p.gainDb, p.fs, p.type))
#define CORNER(m) MIVORA_DESIGN(#m, corner, m(p.fs, p.freq, p.gainDb, p.weight, p.levelDb))

const std::vector<Design>& designs() {
    // The argument lists, in each design's argument order.
    using Axes = std::vector<Axis>;
    const Axes peak = {kFreqAxis, kFsAxis, kGainAxis, kQAxis}, shelf = {kFreqAxis, kGainAxis, kFsAxis},
               typed = {kFreqAxis, kGainAxis, kFsAxis, kTypeAxis},
               corner = {kFsAxis, kCornerFreqAxis, kCornerGainAxis, kWeightAxis, kLevelAxis},
               freqFs = {kFreqAxis, kFsAxis}, ordered = {kOrderAxis, kFreqAxis, kFsAxis},
               chev = {kOrderAxis, kFreqAxis, kRippleAxis, kFsAxis},
               ichev = {kOrderAxis, kFreqAxis, kStopAxis, kFsAxis}, qfct = {kFreqAxis, kQAxis, kFsAxis},
               band = {kProtoAxis, kLowAxis, kHighAxis, kFsAxis},
               bandChev = {kProtoAxis, kLowAxis, kHighAxis, kRippleAxis, kFsAxis},
               bandIChev = {kProtoAxis, kLowAxis, kHighAxis, kStopAxis, kFsAxis};
    static const std::vector<Design> all = {
        MIVORA_DESIGN("setCoefPDFPQ", peak, setCoefPDFPQ(p.freq, p.fs, p.gainDb, p.q)),
        MIVORA_DESIGN("setCoefPDFCQ", peak, setCoefPDFCQ(p.freq, p.fs, p.gainDb, p.q)),
        MIVORA_DESIGN("setCoef", peak, setCoef(p.freq, p.fs, p.gainDb, p.q)),
        SHELF(setCoefLOWS_A), SHELF(setCoefLOWS_B), SHELF(setCoefLOWS), TYPED(setCoefLOWS),
        SHELF(setCoefHIGS_A), SHELF(setCoefHIGS_B), SHELF(setCoefHIGS), TYPED(setCoefHIGS),
        SHELF(setCoefLOWS_2A), SHELF(setCoefLOWS_2B), SHELF(setCoefLOWS_PM_2A), SHELF(setCoefLOWS_PM_2B),
        SHELF(setCoefHIGS_2A), SHELF(setCoefHIGS_2B), SHELF(setCoefHIGS_PM_2A), SHELF(setCoefHIGS_PM_2B),
        SHELF(setCoefLOWS_2), TYPED(setCoefLOWS_2), SHELF(setCoefHIGS_2), TYPED(setCoefHIGS_2),
        CORNER(setCoefLowShelf_C), CORNER(setCoefHiShelf_C), CORNER(setCoefLowShelf_2C), CORNER(setCoefHiShelf_2C),
        MIVORA_DESIGN("setCoefHPF(order)", ordered, setCoefHPF(p.order, p.freq, p.fs)),
        MIVORA_DESIGN("setCoefLPF(order)", ordered, setCoefLPF(p.order, p.freq, p.fs)),
        MIVORA_DESIGN("setCoefHPF", freqFs, setCoefHPF(p.freq, p.fs)),
        MIVORA_DESIGN("setCoefLPF", freqFs, setCoefLPF(p.freq, p.fs)),
        MIVORA_DESIGN("setCoefHPFChev", chev, setCoefHPFChev(p.order, p.freq, p.shape, p.fs)),
        MIVORA_DESIGN("setCoefLPFChev", chev, setCoefLPFChev(p.order, p.freq, p.shape, p.fs)),
        MIVORA_DESIGN("setCoefHPFIChev", ichev, setCoefHPFIChev(p.order, p.freq, p.shape, p.fs)),
        MIVORA_DESIGN("setCoefLPFIChev", ichev, setCoefLPFIChev(p.order, p.freq, p.shape, p.fs)),
        MIVORA_DESIGN("setCoefHPFQfct", qfct, setCoefHPFQfct(p.freq, p.q, p.fs)),
        MIVORA_DESIGN("setCoefLPFQfct", qfct, setCoefLPFQfct(p.freq, p.q, p.fs)),
        MIVORA_DESIGN("setCoefBPFQfct", qfct, setCoefBPFQfct(p.freq, p.q, p.fs)),
        MIVORA_DESIGN("setCoefBPF_Q", qfct, setCoefBPF_Q(p.freq, p.q, p.fs)),
        MIVORA_DESIGN("setCoefBPF", band, setCoefBPF(p.order, p.low, p.high, p.fs)),
        MIVORA_DESIGN("setCoefBEF", band, setCoefBEF(p.order, p.low, p.high, p.fs)),
        MIVORA_DESIGN("setCoefBPFChev", bandChev, setCoefBPFChev(p.order, p.low, p.high, p.shape, p.fs)),
        MIVORA_DESIGN("setCoefBEFChev", bandChev, setCoefBEFChev(p.order, p.low, p.high, p.shape, p.fs)),
        MIVORA_DESIGN("setCoefBPFIChev", bandIChev, setCoefBPFIChev(p.order, p.low, p.high, p.shape, p.fs)),
        MIVORA_DESIGN("setCoefBEFIChev", bandIChev, setCoefBEFIChev(p.order, p.low, p.high, p.shape, p.fs)),
        MIVORA_DESIGN("setDcfLPF(freq, fs)", freqFs, setDcfLPF(p.freq, p.fs)),
        MIVORA_DESIGN("setDcfLPF(alpha)", Axes{kAlphaAxis}, setDcfLPF(p.alpha)),
        MIVORA_DESIGN("setDcfHPF(freq, fs)", freqFs, setDcfHPF(p.freq, p.fs)),
        MIVORA_DESIGN("setDcfHPF(alpha)", Axes{kAlphaAxis}, setDcfHPF(p.alpha)),
        MIVORA_DESIGN("setAPF1st", freqFs, setAPF1st(p.freq, p.fs)),
        MIVORA_DESIGN("setAPF2nd", freqFs, setAPF2nd(p.freq, p.fs)),
        // A design's effect on a filter that already runs at order 5 with
        // state: the reset (or its absence) shows in the outputs.
        MIVORA_DESIGN("setCoefLOWS_A after order 5", (Axes{kFreqAxis, kGainAxis}),
                      setCoefLPF(5, 1000.0, 48000.0); f.setDelay(0.5); f.setCoefLOWS_A(p.freq, p.gainDb, 48000.0)),
        MIVORA_DESIGN("setOrder after setCoefHPF(5)", Axes{kOrderAxis},
                      setCoefHPF(5, 1000.0, 48000.0); f.setOrder(p.order)),
    };
    return all;
}

#undef MIVORA_DESIGN
#undef SHELF
#undef TYPED
#undef CORNER

// The fixed input: an impulse, noise, then special samples (signed zero, the
// smallest subnormal, the smallest normal, values near the float limit).
constexpr int kBlock = 32;
std::vector<float> input() {
    std::vector<float> in(kBlock, 0.0f);
    in[0] = 1.0f;
    std::uint32_t lcg = 12345u;
    for (int i = 4; i < 24; ++i) {
        lcg = lcg * 1664525u + 1013904223u;
        in[static_cast<std::size_t>(i)] = static_cast<float>(static_cast<std::int32_t>(lcg)) * 0x1p-31f;
    }
    const float special[] = {-0.0f, FLT_TRUE_MIN, -FLT_MIN, 0.25f, 1e30f, -3e38f, 3e38f, 0.5f};
    for (int i = 0; i < 8; ++i) in[static_cast<std::size_t>(24 + i)] = special[i];
    return in;
}

const List kQueryFreq = {0.0, 1e-3, 50.0, 1000.0, 4567.8, 12000.0, 20000.0, 23999.9, 24000.0, 30000.0, -1000.0};

void recordFilter(Recorder& rec, const std::string& name, const IirProcess& designed, const Values& args) {
    Values r;
    double c[IirProcess::maxCoefCount];
    for (double& x : c) x = 1234.5;  // entries getCoef leaves alone keep this
    designed.getCoef(c);
    r.push(c, IirProcess::maxCoefCount);
    r.push(designed.getOrder());
    r.push(designed.getEvenOrder());
    r.push(designed.getOddOrder());
    rec.add(name + " coef", args, r);

    Values pw, ph;
    for (double fq : kQueryFreq) {
        pw.push(designed.power(fq, 48000.0));
        ph.push(designed.phase(fq, 48000.0));
    }
    pw.push(designed.power(1000.0, 0.0));
    ph.push(designed.phase(1000.0, 0.0));
    rec.add(name + " power", args, pw);
    rec.add(name + " phase", args, ph);

    static const std::vector<float> in = input();
    double state[10];
    {
        IirProcess f = designed;
        std::vector<float> out(kBlock + 7, 0.0f);
        std::vector<float> copy = in;
        f.doProcess(copy.data(), out.data(), kBlock);
        f.doProcess(copy.data(), out.data() + kBlock, 7);  // a short block after a long one
        Values r2;
        for (float y : out) r2.push(y);
        f.getDelay(state);
        r2.push(state, 10);
        rec.add(name + " doProcess", args, r2);
    }
    {
        IirProcess f = designed;
        Values r2;
        for (float x : in) r2.push(f.cal(static_cast<double>(x)));
        for (int x : {3, -2, INT_MAX, INT_MIN}) r2.push(f.cal(x));
        for (int order : {-6, -1, 0, 1, 2, 3, 4, 6}) r2.push(f.cal(order, 0.5));
        f.getDelay(state);
        r2.push(state, 10);
        rec.add(name + " cal", args, r2);
    }
}

// Every combination of the design's lists, the first list varying slowest;
// then kDrawn designs with each argument drawn from its typical range.
constexpr int kDrawn = 250;
void walkDesign(Recorder& rec, const Design& d, SplitMix& r) {
    const auto design = [&](const Params& p, const Values& args) {
        IirProcess f;
        d.run(f, p);
        recordFilter(rec, d.name, f, args);
    };
    std::vector<std::size_t> at(d.axes.size(), 0);
    for (std::size_t i = 1; i > 0;) {
        Params p;
        Values args;
        for (std::size_t k = 0; k < d.axes.size(); ++k) {
            const double v = (*d.axes[k].values)[at[k]];
            d.axes[k].set(p, v);
            args.push(v);
        }
        design(p, args);
        i = d.axes.size();
        while (i > 0 && ++at[i - 1] == d.axes[i - 1].values->size()) at[--i] = 0;
    }
    for (int n = 0; n < kDrawn; ++n) {
        Params p;
        Values args;
        for (const Axis& a : d.axes) {
            const double v = a.random(r);
            a.set(p, v);
            args.push(v);
        }
        design(p, args);
    }
}

// A filter with every section running, for the state operations.
IirProcess busyFilter() {
    IirProcess f;
    f.setCoefLPFChev(5, 3000.0, 1.0, 48000.0);
    return f;
}

void walkStateOperations(Recorder& rec) {
    for (double order : kOrder) {
        const int n = static_cast<int>(order);
        const Values args{order};
        const IirProcess made[] = {IirProcess(n), IirProcess(nullptr, n)};
        for (const IirProcess& f : made) recordFilter(rec, "IirProcess(order)", f, args);
    }
    const double setTo[] = {0.0, -0.0, 0.25, -1e300, HUGE_VAL, kNaN};
    for (double v : setTo) {
        const Values args{v};
        IirProcess f = busyFilter();
        f.setDelay(v);
        recordFilter(rec, "setDelay", f, args);
    }
    Values none;
    IirProcess f = busyFilter();
    f.setDelay(0.25);
    f.clearDelay();
    recordFilter(rec, "clearDelay", f, none);
    f = busyFilter();
    f.clear();
    recordFilter(rec, "clear", f, none);
}

const List kLin = {0.0, 1e-200, 0.1, 0.7653668647301796, 1.4142135623730951, 1.8477590650225735, 3.0, 1e200, -1.0};
const List kCst = {0.0, 1e-6, 0.25, 0.5, 1.0, 2.0, 1e6, -1.0};
const List kZero = {0.0, 0.5, 2.5, 4.0, 1e8};
const List kWarped = {0.0, 1e-5, 0.05, 0.2, 0.6, 1.0, 5.0, 1e5};

void walkTransforms(Recorder& rec) {
    using Two = void (*)(double, double, double*);
    using Three = void (*)(double, double, double, double*);
    const std::pair<const char*, Two> two[] = {{"HpfCoefToZet", IirProcess::HpfCoefToZet},
                                               {"LpfCoefToZet", IirProcess::LpfCoefToZet},
                                               {"BpfCoefToZet", IirProcess::BpfCoefToZet}};
    const std::pair<const char*, Three> three[] = {{"IChevHpfCoefToZet", IirProcess::IChevHpfCoefToZet},
                                                   {"IChevLpfCoefToZet", IirProcess::IChevLpfCoefToZet},
                                                   {"BefCoefToZet", IirProcess::BefCoefToZet}};
    double out[5];
    for (double lin : kLin)
        for (double cst : kCst) {
            for (const auto& t : two) {
                t.second(lin, cst, out);
                rec.add(t.first, Values{lin, cst}, Values(out, 5));
            }
            for (double zero : kZero)
                for (const auto& t : three) {
                    t.second(lin, cst, zero, out);
                    rec.add(t.first, Values{lin, cst, zero}, Values(out, 5));
                }
            for (double wLow : kWarped)
                for (double wHigh : kWarped) {
                    IirProcess::BpfCoefTrans(lin, cst, wLow, wHigh, out, out + 1, out + 2, out + 3);
                    rec.add("BpfCoefTrans", Values{lin, cst, wLow, wHigh}, Values(out, 4));
                }
        }
    for (double wLow : kWarped)
        for (double wHigh : kWarped)
            for (double zero : kZero) {
                IirProcess::BuboCoefTrans(wLow, wHigh, zero, out, out + 1);
                rec.add("BuboCoefTrans", Values{wLow, wHigh, zero}, Values(out, 2));
            }
}

}  // namespace

void walkFilterGrid(Recorder& rec) {
    SplitMix r{2024};
    for (const Design& d : designs()) walkDesign(rec, d, r);
    walkStateOperations(rec);
    walkTransforms(rec);
}

}  // namespace mivora_golden
