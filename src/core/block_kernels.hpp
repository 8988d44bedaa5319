// Block and single-sample kernels, written once and compiled once per path
// (kernels_*.cpp) with the lane pair type that path has.
//
// What limits a stream is the feedback of each second-order section:
// y = fma(a2, y2, fma(a1, y1, acc)), two dependent fused multiply-adds per
// sample (one for the first-order section). The kernels keep every state value
// in registers for the whole block and are unrolled so that no register copy
// or memory round trip joins that chain. Sections depend on one another only
// through their inputs, off the chain, so a cascade runs as fast as one
// section if the CPU can overlap them.
#ifndef MIVORA_BLOCK_KERNELS_HPP
#define MIVORA_BLOCK_KERNELS_HPP

#include <utility>

#include "kernel_paths.hpp"
#include "paired_stages.hpp"
#include "section_kernels.hpp"

namespace Mivora::detail {
namespace {  // internal linkage: see section_kernels.hpp

// Order 0: widen and narrow, as the per-sample chain does with no stage.
inline void passThrough(const float* in, float* out, unsigned int count) noexcept {
    for (unsigned int i = 0; i < count; ++i) out[i] = static_cast<float>(static_cast<double>(in[i]));
}

// Stages in sequence, two consecutive samples per turn (paired_stages.hpp).
// In place is safe: both inputs are read before either output is written.
template <class P, class... Stage>
void runPairs(const float* in, float* out, unsigned int count, Stage&... stage) noexcept {
    unsigned int i = 0;
    for (; i + 2 <= count; i += 2) {
        P x = P::load2(in + i);
        ((x = stage.stepPair(x)), ...);
        P::storePair(out + i, x);
    }
    if (i < count) {
        double x = static_cast<double>(in[i]);
        ((x = stage.step(x)), ...);
        out[i] = static_cast<float>(x);
    }
}

// The same with the last stage one pair behind in program order: the
// processor issues the oldest ready operation first, and the last stage's
// work on pair n - 1 becomes ready just as the feedback of pair n does. Left
// in order, it would win the multiply-add units from that feedback, the
// block's critical path, about one cycle in ten. Outputs are written a pair
// behind the inputs: in place works.
template <class P, class Last, class... Stage>
void runPairsTrailing(const float* in, float* out, unsigned int count, Last& last, Stage&... stage) noexcept {
    if (count < 2) return runPairs<P>(in, out, count, stage..., last);  // no pair to hold
    P held = P::load2(in);
    ((held = stage.stepPair(held)), ...);
    unsigned int i = 2;
    for (; i + 2 <= count; i += 2) {
        P x = P::load2(in + i);
        ((x = stage.stepPair(x)), ...);
        P::storePair(out + i - 2, last.stepPair(held));
        held = x;
    }
    P::storePair(out + i - 2, last.stepPair(held));
    if (i < count) {
        double x = static_cast<double>(in[i]);
        ((x = stage.step(x)), ...);
        out[i] = static_cast<float>(last.step(x));
    }
}

// How many samples section 1 trails section 0 in the two-section kernel.
// Section 1 needs section 0's output from kLag samples back. With a lag of 3
// that output (plus the shuffle that puts it in place) has several cycles to
// spare before section 1's feedback needs it; with 2 it would be late every
// sample. Each sample of lag costs one sample's latency per block, as section
// 1 finishes that much after section 0.
constexpr unsigned int kLag = 3;
// Shorter blocks run the sections one after the other (runPairs): the lag's
// start and finish would outweigh what sharing a register saves.
constexpr unsigned int kMinPairedBlock = 16;

// Two consecutive outputs of the second-order sections, through the
// first-order section when it runs, narrowed and stored.
template <bool WithFirst, class P>
void emitPair(PairedFirstOrder<P>& f, float* out, P z) noexcept {
    if constexpr (WithFirst) z = f.stepPair(z);
    else (void)f;
    P::storePair(out, z);
}

// Two second-order sections in the two lanes of a pair P: lane lo runs
// section 0 on sample n while lane hi runs section 1 on sample n - Lag,
// taking section 0's output of that sample from the lo lane of an older
// result. One pair operation thus does the work of two scalar ones, and
// neither lane's feedback waits on the other lane.
//
// Pair names: X(n) = (x[n], y0[n - Lag]) inputs, Y(n) = (y0[n], y1[n - Lag])
// outputs. r[n % Lag] holds Y(n) for the last Lag samples; each new Y(n)
// takes the place of Y(n - Lag), whose lo lane it has just consumed. A turn
// of the loop is unrolled until every name is back in its role, so that the
// register allocator needs no copies.
template <class P, bool WithFirst, unsigned int Lag>
struct PairedCascade {
    static_assert(Lag >= 3, "section 1 must trail by more than its own two-sample feedback");
    static constexpr unsigned int turn = Lag % 2 == 0 ? Lag : 2 * Lag;

    SectionCoefs<P> c;
    P x1, x2;  // X(n-1), X(n-2)
    P r[Lag];

    // Samples j and j+1 of the turn that starts at in/out (j even).
    template <unsigned int j>
    void twoSamples(const float* in, float* out, PairedFirstOrder<P>& f) noexcept {
        constexpr unsigned int a = j % Lag, b = (j + 1) % Lag;
        constexpr unsigned int back1 = (j + Lag - 1) % Lag, back2 = (j + Lag - 2) % Lag;
        P xa, xb;
        P::loadPair(in + j, r[a], r[b], xa, xb);
        r[a] = sectionOut(c, xa, x1, x2, r[back1], r[back2]);
        r[b] = sectionOut(c, xb, xa, x1, r[a], r[back1]);
        x2 = xa;
        x1 = xb;
        // Outputs run Lag samples behind the inputs, which were read long
        // ago: in place works.
        emitPair<WithFirst>(f, out + j - Lag, P::highs(r[a], r[b]));
    }
    template <unsigned int... k>
    void oneTurn(const float* in, float* out, PairedFirstOrder<P>& f,
                 std::integer_sequence<unsigned int, k...>) noexcept {
        (twoSamples<2 * k>(in, out, f), ...);
    }

    static void run(Biquad& s0, Biquad& s1, PairedFirstOrder<P>& f, const float* in, float* out,
                    unsigned int count) noexcept {
        // Section 0 runs ahead alone for Lag samples.
        double head[Lag];
        for (unsigned int k = 0; k < Lag; ++k) head[k] = s0.step(static_cast<double>(in[k]));

        PairedCascade q;
        q.c = {P::set(s0.c.b0, s1.c.b0), P::set(s0.c.b1, s1.c.b1), P::set(s0.c.b2, s1.c.b2),
               P::set(s0.c.a1, s1.c.a1), P::set(s0.c.a2, s1.c.a2)};
        q.x1 = P::set(s0.x1, s1.x1);
        q.x2 = P::set(s0.x2, s1.x2);
        // Section 1's outputs before the block stand in the hi lanes of the
        // last two; the older hi lanes are never read.
        for (unsigned int k = 0; k + 2 < Lag; ++k) q.r[k] = P::set(head[k], 0.0);
        q.r[Lag - 2] = P::set(head[Lag - 2], s1.y2);
        q.r[Lag - 1] = P::set(head[Lag - 1], s1.y1);

        unsigned int i = Lag;  // a multiple of Lag throughout: r[j % Lag] is Y(i + j)
        for (; i + turn <= count; i += turn)
            q.oneTurn(in + i, out + i, f, std::make_integer_sequence<unsigned int, turn / 2>{});

        // Back to two scalar sections: section 0 takes the last few inputs,
        // then section 1 catches up on everything section 0 produced ahead.
        s0.x1 = q.x1.lo(); s0.x2 = q.x2.lo(); s0.y1 = q.r[Lag - 1].lo(); s0.y2 = q.r[Lag - 2].lo();
        s1.x1 = q.x1.hi(); s1.x2 = q.x2.hi(); s1.y1 = q.r[Lag - 1].hi(); s1.y2 = q.r[Lag - 2].hi();
        double pending[turn];
        unsigned int m = 0;
        for (; i < count; ++i) pending[m++] = s0.step(static_cast<double>(in[i]));
        float* o = out + (count - m - Lag);
        auto tail = [&](double y0) {
            double z = s1.step(y0);
            if constexpr (WithFirst) z = f.step(z);
            *o++ = static_cast<float>(z);
        };
        // Section 0's outputs still in the pair, then the leftover's: the
        // first straight from registers, with no copy through memory.
        for (unsigned int k = 0; k < Lag; ++k) tail(q.r[k].lo());
        for (unsigned int k = 0; k < m; ++k) tail(pending[k]);
    }
};

// One block through a fixed stage set, the state of the stages that run
// loaded into locals and written back at the end. Each stage set gets its own
// function so that it loads and keeps in registers only what it uses.
template <class P, int Sections, bool WithFirst>
void runStages(const StageView& v, const float* in, float* out, unsigned int count) noexcept {
    PairedFirstOrder<P> f(v.coef1st, v.delay1st);
    if constexpr (Sections == 0) {
        runPairs<P>(in, out, count, f);
    } else if constexpr (Sections == 1) {
        PairedSection<P> s0(v.coef, v.delay);
        if constexpr (WithFirst) runPairsTrailing<P>(in, out, count, f, s0);
        else runPairs<P>(in, out, count, s0);
        s0.store(v.delay);
    } else if (count >= kMinPairedBlock) {
        Biquad s0(v.coef, v.delay);
        Biquad s1(v.coef + 5, v.delay + 4);
        PairedCascade<P, WithFirst, kLag>::run(s0, s1, f, in, out, count);
        s0.store(v.delay);
        s1.store(v.delay + 4);
    } else {
        PairedSection<P> s0(v.coef, v.delay);
        PairedSection<P> s1(v.coef + 5, v.delay + 4);
        if constexpr (WithFirst) runPairsTrailing<P>(in, out, count, f, s0, s1);
        else runPairsTrailing<P>(in, out, count, s1, s0);
        s0.store(v.delay);
        s1.store(v.delay + 4);
    }
    if constexpr (WithFirst) f.store(v.delay1st);
}

template <class P>
void runBlock(const StageView& v, const float* in, float* out, unsigned int count) noexcept {
    switch (stageSet(v.sections, v.first)) {
        case 0: passThrough(in, out, count); break;
        case 1: runStages<P, 0, true>(v, in, out, count); break;
        case 2: runStages<P, 1, false>(v, in, out, count); break;
        case 3: runStages<P, 1, true>(v, in, out, count); break;
        case 4: runStages<P, 2, false>(v, in, out, count); break;
        default: runStages<P, 2, true>(v, in, out, count); break;
    }
}

// One sample through a fixed stage set, state read from and written back to
// the object. Each state value goes back with a scalar store: the next call
// reloads y1 and y2 at once, and a load served from part of a wider vector
// store would add latency to that chain (the kernel files are built without
// SLP vectorisation for this reason).
template <int Sections, bool WithFirst>
double sampleStages(double* delay, const double* coef, double* delay1st, const double* coef1st,
                    double x) noexcept {
    if constexpr (Sections >= 1) {
        Biquad s(coef, delay);
        x = s.step(x);
        s.store(delay);
    }
    if constexpr (Sections >= 2) {
        Biquad s(coef + 5, delay + 4);
        x = s.step(x);
        s.store(delay + 4);
    }
    if constexpr (WithFirst) {
        FirstOrder f(coef1st, delay1st);
        x = f.step(x);
        f.store(delay1st);
    }
    return x;
}

// One sample: a single jump to straight-line code for the stage set, as a
// call this short is bounded by its taken branches as much as by its
// arithmetic.
inline double runSample(double* delay, const double* coef, double* delay1st, const double* coef1st, int sections,
                        bool first, double x) noexcept {
    switch (stageSet(sections, first)) {
        case 0: return x;
        case 1: return sampleStages<0, true>(delay, coef, delay1st, coef1st, x);
        case 2: return sampleStages<1, false>(delay, coef, delay1st, coef1st, x);
        case 3: return sampleStages<1, true>(delay, coef, delay1st, coef1st, x);
        case 4: return sampleStages<2, false>(delay, coef, delay1st, coef1st, x);
        default: return sampleStages<2, true>(delay, coef, delay1st, coef1st, x);
    }
}

}  // namespace
}  // namespace Mivora::detail

#endif
