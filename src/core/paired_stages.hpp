// Stages that take two consecutive samples at once, as the lanes of a pair
// P (lane lo: sample n, lane hi: sample n+1). The feed-forward terms of both
// samples do not depend on the outputs, so each is one pair operation, every
// lane computing exactly its own sample's partial sum; the feedback then runs
// scalar, sample after sample, in the fixed order. Same bits as the plain
// per-sample formula, with fewer operations competing with the feedback
// chain for the multiply-add units.
#ifndef MIVORA_PAIRED_STAGES_HPP
#define MIVORA_PAIRED_STAGES_HPP

#include "section_kernels.hpp"

namespace Mivora::detail {
namespace {  // internal linkage: see section_kernels.hpp

template <class P>
struct PairedSection {
    SectionCoefs<double> c;
    P b0, b1, b2;  // c.b0, c.b1, c.b2 in both lanes
    P xPrev;       // (x2, x1): the two inputs before the pair
    double y1, y2;

    PairedSection(const double* coef, const double* s) noexcept
        : c{coef[0], coef[1], coef[2], coef[3], coef[4]},
          b0(P::set(coef[0], coef[0])),
          b1(P::set(coef[1], coef[1])),
          b2(P::set(coef[2], coef[2])),
          xPrev(P::set(s[1], s[0])),
          y1(s[2]),
          y2(s[3]) {}

    void store(double* s) const noexcept {
        s[0] = xPrev.hi(); s[1] = xPrev.lo(); s[2] = y1; s[3] = y2;
    }
    P stepPair(P x) noexcept {
        // Lane lo: b1*x[n-1], + b0*x[n], + b2*x[n-2]; lane hi one sample on.
        const P acc = mulAdd(b2, xPrev, mulAdd(b0, x, mul(b1, P::shift(xPrev, x))));
        const double ya = mulAdd(c.a2, y2, mulAdd(c.a1, y1, acc.lo()));
        const double yb = mulAdd(c.a2, y1, mulAdd(c.a1, ya, acc.hi()));
        xPrev = x;
        y2 = ya;
        y1 = yb;
        return P::set(ya, yb);
    }
    double step(double x) noexcept {
        const double y = sectionOut(c, x, xPrev.hi(), xPrev.lo(), y1, y2);
        xPrev = P::set(xPrev.hi(), x);
        y2 = y1;
        y1 = y;
        return y;
    }
};

// The first-order section takes a pair one sample after the other: its
// feed-forward in a pair saves one operation per pair but needs four shuffles
// to move values between lanes, and measured slower.
template <class P>
struct PairedFirstOrder {
    FirstOrder s;

    PairedFirstOrder(const double* coef, const double* st) noexcept : s(coef, st) {}

    void store(double* st) const noexcept { s.store(st); }
    P stepPair(P x) noexcept {
        const double ya = s.step(x.lo());
        const double yb = s.step(x.hi());
        return P::set(ya, yb);
    }
    double step(double x) noexcept { return s.step(x); }
};

}  // namespace
}  // namespace Mivora::detail

#endif
