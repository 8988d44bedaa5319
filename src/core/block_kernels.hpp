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
// Section 1 needs section 0's output from kLag samples back; with two
// samples' worth of slack that output is ready before section 1 can use it,
// so neither lane waits on the other.
constexpr unsigned int kLag = 4;
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
// Pair names: X(n) = (x[n], y0[n - kLag]) inputs, Y(n) = (y0[n], y1[n - kLag])
// outputs. In the loop r0..r3 hold Y(i-4)..Y(i-1) and x1, x2 hold X(i-1),
// X(i-2); each new Y(n) takes the place of Y(n-4), whose lo lane it has just
// consumed, so the unrolled body needs no copies.
template <class P, bool WithFirst>
void runTwoSectionsPaired(Biquad& s0, Biquad& s1, FirstOrder& f, const float* in, float* out,
                          unsigned int count) noexcept {
    static_assert(kLag == 4, "the unrolled body below assumes four pairs in flight");
    // Section 0 runs ahead alone for kLag samples.
    double head[kLag];
    for (unsigned int k = 0; k < kLag; ++k) head[k] = s0.step(static_cast<double>(in[k]));

    const SectionCoefs<P> c = pairCoefs<P>(s0, s1);
    P x1 = P::set(s0.x1, s1.x1);
    P x2 = P::set(s0.x2, s1.x2);
    // Only the lo lanes of Y(i-4) and Y(i-3) are ever read.
    P r0 = P::set(head[0], 0.0);
    P r1 = P::set(head[1], 0.0);
    P r2 = P::set(s0.y2, s1.y2);  // s0.y2 is head[2]
    P r3 = P::set(s0.y1, s1.y1);  // s0.y1 is head[3]

    unsigned int i = kLag;
    for (; i + 4 <= count; i += 4) {
        P xa, xb, xc, xd;
        P::loadPair(in + i, r0, r1, xa, xb);
        P::loadPair(in + i + 2, r2, r3, xc, xd);
        r0 = sectionOut(c, xa, x1, x2, r3, r2);
        r1 = sectionOut(c, xb, xa, x1, r0, r3);
        r2 = sectionOut(c, xc, xb, xa, r1, r0);
        r3 = sectionOut(c, xd, xc, xb, r2, r1);
        x2 = xc;
        x1 = xd;
        // Outputs of samples i-4 .. i-1 (their inputs were read long ago).
        emitPair<WithFirst>(f, out + i - kLag, P::highs(r0, r1));
        emitPair<WithFirst>(f, out + i - kLag + 2, P::highs(r2, r3));
    }

    // Back to two scalar sections: section 0 takes the last few inputs, then
    // section 1 catches up on everything section 0 produced ahead of it.
    s0.x1 = x1.lo(); s0.x2 = x2.lo(); s0.y1 = r3.lo(); s0.y2 = r2.lo();
    s1.x1 = x1.hi(); s1.x2 = x2.hi(); s1.y1 = r3.hi(); s1.y2 = r2.hi();
    double pending[kLag + 3] = {r0.lo(), r1.lo(), r2.lo(), r3.lo()};
    unsigned int m = kLag;
    for (; i < count; ++i) pending[m++] = s0.step(static_cast<double>(in[i]));
    float* o = out + (count - m);
    for (unsigned int k = 0; k < m; ++k) {
        double z = s1.step(pending[k]);
        if constexpr (WithFirst) z = f.step(z);
        o[k] = static_cast<float>(z);
    }
}

// One block through the stages of v, the state loaded into locals and written
// back at the end.
template <class P>
void runBlock(const StageView& v, const float* in, float* out, unsigned int count) noexcept {
    if (v.sections <= 0 && !v.first) {
        passThrough(in, out, count);
        return;
    }
    Biquad s0(v.coef, v.delay);
    Biquad s1(v.coef + 5, v.delay + 4);
    FirstOrder f(v.coef1st, v.delay1st);
    const bool paired = v.sections >= 2 && count >= kMinPairedBlock;
    switch ((v.sections <= 0 ? 0 : v.sections == 1 ? 2 : 4) + (v.first ? 1 : 0)) {
        case 1: runScalar(in, out, count, f); break;
        case 2: runScalar(in, out, count, s0); break;
        case 3: runScalar(in, out, count, s0, f); break;
        case 4:
            if (paired) runTwoSectionsPaired<P, false>(s0, s1, f, in, out, count);
            else runScalar(in, out, count, s0, s1);
            break;
        default:
            if (paired) runTwoSectionsPaired<P, true>(s0, s1, f, in, out, count);
            else runScalar(in, out, count, s0, s1, f);
            break;
    }
    if (v.sections >= 1) s0.store(v.delay);
    if (v.sections >= 2) s1.store(v.delay + 4);
    if (v.first) f.store(v.delay1st);
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
