#include "trig_slow.hpp"

#include <cmath>

#include "trig_fixed.hpp"
#include "trig_reduce.hpp"

namespace Mivora::math::trig {
namespace {

// Taylor series of sin (first = r, k = 1) and cos (first = 1, k = 0) for
// 0 <= r <= pi/4: term n is term n-1 times r^2 / ((2n + k - 1)(2n + k)),
// with alternating signs, summed until the terms vanish below 2^-320. The
// terms shrink (the factor is below 1), so each carries at most a few units
// of truncation: under 2^-312 in all.
Fixed alternatingSeries(const Fixed& first, const Fixed& r, std::uint32_t k) noexcept {
    const Fixed z = fixedMul(r, r);
    Fixed term = first, pos = first, neg{};
    for (std::uint32_t n = 1;; ++n) {
        term = fixedDivSmall(fixedMul(term, z), (2 * n + k - 1) * (2 * n + k));
        if (fixedIsZero(term)) break;
        if (n & 1u)
            neg = fixedAdd(neg, term);
        else
            pos = fixedAdd(pos, term);
    }
    return fixedSub(pos, neg);
}

Fixed sinSeries(const Fixed& r) noexcept { return alternatingSeries(r, r, 1); }
Fixed cosSeries(const Fixed& r) noexcept { return alternatingSeries(fixedInt(1), r, 0); }

double toDouble(const Fixed& v, int scale, bool negative) noexcept {
    if (fixedIsZero(v)) return negative ? -0.0 : 0.0;
    return fixedToDouble(v, scale, negative);
}

// num / den for 0 < den <= 1 (num, den < 2): den is scaled to [1, 2) first,
// so the quotient keeps den's relative accuracy however small den is.
double quotient(const Fixed& num, const Fixed& den, bool negative) noexcept {
    const int shift = 64 * kFracWords - fixedTopBit(den);
    const Fixed scaled = fixedShiftLeft(den, shift);
    return toDouble(fixedMul(num, fixedReciprocal(scaled)), shift, negative);
}

// atan(u) for 0 <= u <= 1: u = c + (u - c) with c = i/64 the nearest step,
// atan(u) = atan(c) + atan(t), t = (u - c) / (1 + u c), |t| <= 2^-7, whose
// odd series reaches 2^-320 in 23 terms.
Fixed atanUnit(Fixed u) noexcept {
    if (fixedLess(fixedInt(1), u)) u = fixedInt(1);
    const Fixed u64 = fixedMulSmall(u, 64);
    const std::uint64_t i = u64.w[0] + (u64.w[1] >> 63);
    const Fixed c = fixedShiftRight(fixedInt(i), 6);
    bool below = false;
    const Fixed num = fixedAbsDiff(u, c, below);
    const Fixed base = fixedFrom(kFixedAtanStep[i]);
    if (fixedIsZero(num)) return base;
    const Fixed den = fixedAdd(fixedInt(1), fixedShiftRight(fixedMulSmall(u, i), 6));
    const Fixed t = fixedMul(num, fixedReciprocal(den));
    const Fixed z = fixedMul(t, t);
    Fixed p = t, pos = t, neg{};
    for (std::uint32_t k = 1;; ++k) {
        p = fixedMul(p, z);
        const Fixed term = fixedDivSmall(p, 2 * k + 1);
        if (fixedIsZero(term)) break;
        if (k & 1u)
            neg = fixedAdd(neg, term);
        else
            pos = fixedAdd(pos, term);
    }
    const Fixed at = fixedSub(pos, neg);
    return below ? fixedSub(base, at) : fixedAdd(base, at);
}

}  // namespace

double slowTrig(double x, TrigKind kind) noexcept {
    const bool negX = std::signbit(x);
    const ReducedWide w = reduceWide(std::fabs(x));
    const int q = w.quadrant;
    const bool wantSin = kind == TrigKind::Tan || (kind == TrigKind::Sin) == (q % 2 == 0);
    const bool wantCos = kind == TrigKind::Tan || !wantSin;
    const Fixed s = wantSin ? sinSeries(w.r) : Fixed{};
    const Fixed c = wantCos ? cosSeries(w.r) : Fixed{};
    // sin(q pi/2 + r) and cos(q pi/2 + r) from sin r (sign of r) and cos r.
    switch (kind) {
    case TrigKind::Sin: {
        const bool neg = ((q % 2 == 0 ? w.negative : false) != (q >= 2)) != negX;
        return toDouble(q % 2 == 0 ? s : c, 0, neg);
    }
    case TrigKind::Cos: {
        const bool neg = q % 2 == 0 ? (q == 2) : ((q == 1) != w.negative);
        return toDouble(q % 2 == 0 ? c : s, 0, neg);
    }
    case TrigKind::Tan:
    default: {
        // tan = sin r / cos r, or -cos r / sin r in the odd quadrants.
        const bool neg = (q % 2 == 0 ? w.negative : !w.negative) != negX;
        return q % 2 == 0 ? quotient(s, c, neg) : quotient(c, s, neg);
    }
    }
}

double slowAtan2(double y, double x) noexcept {
    const bool negY = std::signbit(y), negX = std::signbit(x);
    const double a = std::fabs(y), b = std::fabs(x);
    const bool swap = a > b;
    std::uint64_t mn = 0, md = 0;
    int en = 0, ed = 0;
    decompose(swap ? b : a, mn, en);
    decompose(swap ? a : b, md, ed);
    const int d = en - ed;  // <= 0
    // mn / md in (1/2, 2), within a few units of 2^-320.
    const Fixed q = fixedMul(fixedFromScaled(mn, -52), fixedReciprocal(fixedFromScaled(md, -52)));
    if (!swap && !negX && d < -100) {
        // atan(u) = u (1 - delta), 0 < delta < 2^-198, u = q 2^d. u is never
        // within 2^-108 (relative) of a rounding boundary unless it lies on
        // one (a subnormal halfway case, or exact); q - 2^-300 is below u by
        // far less and on the same side as atan(u), so both round alike.
        return toDouble(fixedSub(q, fixedFromScaled(1, -300)), d, negY);
    }
    Fixed theta = atanUnit(d < -64 * kFracWords ? Fixed{} : fixedShiftRight(q, -d));
    if (swap) theta = fixedSub(fixedFrom(kFixedPiOver2), theta);
    if (negX) theta = fixedSub(fixedFrom(kFixedPi), theta);
    return toDouble(theta, 0, negY);
}

}  // namespace Mivora::math::trig
