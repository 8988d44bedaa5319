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

#include "kernel_paths.hpp"
#include "section_kernels.hpp"

namespace Mivora::detail {
namespace {  // internal linkage: see section_kernels.hpp

// Order 0: widen and narrow, as the per-sample chain does with no stage.
inline void passThrough(const float* in, float* out, unsigned int count) noexcept {
    for (unsigned int i = 0; i < count; ++i) out[i] = static_cast<float>(static_cast<double>(in[i]));
}

// Scalar stages in sequence, two samples per turn. In place is safe: both
// inputs are read before either output is written.
template <class... Stage>
void runScalar(const float* in, float* out, unsigned int count, Stage&... stage) noexcept {
    unsigned int i = 0;
    for (; i + 2 <= count; i += 2) {
        double a = static_cast<double>(in[i]);
        double b = static_cast<double>(in[i + 1]);
        (stage.step2(a, b), ...);
        out[i] = static_cast<float>(a);
        out[i + 1] = static_cast<float>(b);
    }
    if (i < count) {
        double a = static_cast<double>(in[i]);
        ((a = stage.step(a)), ...);
        out[i] = static_cast<float>(a);
    }
}

// How many samples section 1 trails section 0 in the two-section kernel.
// Section 1 needs section 0's output from kLag samples back. With a lag of 3
// that output (plus the shuffle that puts it in place) has several cycles to
// spare before section 1's feedback needs it; with 2 it would be late every
// sample. Each sample of lag costs one sample's latency per block, as section
// 1 finishes that much after section 0.
constexpr unsigned int kLag = 3;
// Shorter blocks run the scalar kernel: the lag's start and finish would
// outweigh what the pair saves.
constexpr unsigned int kMinPairedBlock = 16;

// Two consecutive outputs of the second-order sections, through the
// first-order section when it runs, narrowed and stored.
template <bool WithFirst, class P>
void emitPair(FirstOrder& f, float* out, P z) noexcept {
    if constexpr (WithFirst) {
        const double a = f.step(z.lo());  // in sample order: the steps share state
        z = P::set(a, f.step(z.hi()));
    } else {
        (void)f;
    }
    P::storePair(out, z);
}

template <class P>
SectionCoefs<P> pairCoefs(const Biquad& s0, const Biquad& s1) noexcept {
    return {P::set(s0.c.b0, s1.c.b0), P::set(s0.c.b1, s1.c.b1), P::set(s0.c.b2, s1.c.b2),
            P::set(s0.c.a1, s1.c.a1), P::set(s0.c.a2, s1.c.a2)};
}

// Two second-order sections in the two lanes of a pair P: lane lo runs
// section 0 on sample n while lane hi runs section 1 on sample n - kLag,
// taking section 0's output of that sample from the lo lane of an older
// result. One pair operation thus does the work of two scalar ones, and
// neither lane's feedback waits on the other lane.
//
// Pair names: X(n) = (x[n], y0[n - 3]) inputs, Y(n) = (y0[n], y1[n - 3])
// outputs. At the top of the loop r0, r1, r2 hold Y(i-3), Y(i-2), Y(i-1) and
// x1, x2 hold X(i-1), X(i-2). Each new Y(n) takes the place of Y(n-3), whose
// lo lane it has just consumed; six samples per turn bring every name back
// to its role, so the body needs no copies.
template <class P, bool WithFirst>
void runTwoSectionsPaired(Biquad& s0, Biquad& s1, FirstOrder& f, const float* in, float* out,
                          unsigned int count) noexcept {
    static_assert(kLag == 3, "the unrolled body below assumes three pairs in flight");
    // Section 0 runs ahead alone for kLag samples.
    const double head0 = s0.step(static_cast<double>(in[0]));
    s0.step(static_cast<double>(in[1]));
    s0.step(static_cast<double>(in[2]));

    const SectionCoefs<P> c = pairCoefs<P>(s0, s1);
    P x1 = P::set(s0.x1, s1.x1);
    P x2 = P::set(s0.x2, s1.x2);
    P r0 = P::set(head0, 0.0);    // only the lo lane of Y(i-3) is read
    P r1 = P::set(s0.y2, s1.y2);  // section 0's output of sample 1
    P r2 = P::set(s0.y1, s1.y1);  // and of sample 2

    unsigned int i = kLag;
    for (; i + 6 <= count; i += 6) {
        // Inputs are read before any output at or after them is written, so
        // in place works; outputs run three samples behind.
        P xa, xb, xc, xd, xe, xg;
        P::loadPair(in + i, r0, r1, xa, xb);
        r0 = sectionOut(c, xa, x1, x2, r2, r1);  // Y(i)
        r1 = sectionOut(c, xb, xa, x1, r0, r2);  // Y(i+1)
        P::loadPair(in + i + 2, r2, r0, xc, xd);
        emitPair<WithFirst>(f, out + i - 3, P::highs(r0, r1));
        r2 = sectionOut(c, xc, xb, xa, r1, r0);  // Y(i+2)
        r0 = sectionOut(c, xd, xc, xb, r2, r1);  // Y(i+3)
        P::loadPair(in + i + 4, r1, r2, xe, xg);
        emitPair<WithFirst>(f, out + i - 1, P::highs(r2, r0));
        r1 = sectionOut(c, xe, xd, xc, r0, r2);  // Y(i+4)
        r2 = sectionOut(c, xg, xe, xd, r1, r0);  // Y(i+5)
        emitPair<WithFirst>(f, out + i + 1, P::highs(r1, r2));
        x2 = xe;
        x1 = xg;
    }

    // Back to two scalar sections: section 0 takes the last few inputs, then
    // section 1 catches up on everything section 0 produced ahead of it.
    s0.x1 = x1.lo(); s0.x2 = x2.lo(); s0.y1 = r2.lo(); s0.y2 = r1.lo();
    s1.x1 = x1.hi(); s1.x2 = x2.hi(); s1.y1 = r2.hi(); s1.y2 = r1.hi();
    double pending[kLag + 5] = {r0.lo(), r1.lo(), r2.lo()};
    unsigned int m = kLag;
    for (; i < count; ++i) pending[m++] = s0.step(static_cast<double>(in[i]));
    float* o = out + (count - m);
    for (unsigned int k = 0; k < m; ++k) {
        double z = s1.step(pending[k]);
        if constexpr (WithFirst) z = f.step(z);
        o[k] = static_cast<float>(z);
    }
}

// One block through a fixed stage set, the state of the stages that run
// loaded into locals and written back at the end. Each stage set gets its own
// function so that it loads and keeps in registers only what it uses.
template <class P, int Sections, bool WithFirst>
void runStages(const StageView& v, const float* in, float* out, unsigned int count) noexcept {
    Biquad s0(v.coef, v.delay);
    Biquad s1(v.coef + 5, v.delay + 4);
    FirstOrder f(v.coef1st, v.delay1st);
    if constexpr (Sections == 0) {
        runScalar(in, out, count, f);
    } else if constexpr (Sections == 1) {
        if constexpr (WithFirst) runScalar(in, out, count, s0, f);
        else runScalar(in, out, count, s0);
    } else if (count >= kMinPairedBlock) {
        runTwoSectionsPaired<P, WithFirst>(s0, s1, f, in, out, count);
    } else {
        if constexpr (WithFirst) runScalar(in, out, count, s0, s1, f);
        else runScalar(in, out, count, s0, s1);
    }
    if constexpr (Sections >= 1) s0.store(v.delay);
    if constexpr (Sections >= 2) s1.store(v.delay + 4);
    if constexpr (WithFirst) f.store(v.delay1st);
}

template <class P>
void runBlock(const StageView& v, const float* in, float* out, unsigned int count) noexcept {
    const int sections = v.sections <= 0 ? 0 : v.sections == 1 ? 1 : 2;
    switch (sections * 2 + (v.first ? 1 : 0)) {
        case 0: passThrough(in, out, count); break;
        case 1: runStages<P, 0, true>(v, in, out, count); break;
        case 2: runStages<P, 1, false>(v, in, out, count); break;
        case 3: runStages<P, 1, true>(v, in, out, count); break;
        case 4: runStages<P, 2, false>(v, in, out, count); break;
        default: runStages<P, 2, true>(v, in, out, count); break;
    }
}

// One sample, state read from and written back to the object. Each state
// value goes back with a scalar store: the next call reloads y1 and y2 at
// once, and a load served from part of a wider vector store would add
// latency to that chain (the kernel files are built without SLP
// vectorisation for this reason).
inline double runSample(double* delay, const double* coef, double* delay1st, const double* coef1st, int sections,
                        bool first, double x) noexcept {
    if (sections > 2) sections = 2;
    for (int k = 0; k < sections; ++k) {
        Biquad s(coef + 5 * k, delay + 4 * k);
        x = s.step(x);
        s.store(delay + 4 * k);
    }
    if (first) {
        FirstOrder f(coef1st, delay1st);
        x = f.step(x);
        f.store(delay1st);
    }
    return x;
}

}  // namespace
}  // namespace Mivora::detail

#endif
