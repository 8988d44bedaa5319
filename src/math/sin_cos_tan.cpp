// sin, cos, sincos and tan, correctly rounded. Fast path: reduction to
// |r| <= pi/4 (trig_reduce), a table of sin and cos at i/128 and short
// polynomials around it, a rounding test; whatever the test cannot decide
// goes to the 320-bit slow path.
#include <cmath>

#include "cr_math.hpp"
#include "trig_rounding.hpp"
#include "trig_reduce.hpp"
#include "trig_slow.hpp"

namespace Mivora::math {
namespace {

using trig::DD;

// sin r and cos r for |r| <= pi/4 (+ rounding), r = rh + rl. With a = i/128
// the nearest table step and d = |r| - a (|d| <= 2^-8, rh - a exact):
//   sin(a + d) = S + (C d + S cm + C sm),  cos(a + d) = C + (C cm - S d - S sm)
// where S, C = sin a, cos a (table, error 2^-107), cm = cos d - 1 and
// sm = sin d - d. The large products C d, S d, S (-d^2/2) and C (-d^2/2) are
// exact; everything else is below 2^-17 of the result. sm = d^3 (-1/6 + ...)
// is formed in double from d.hi alone: four roundings, the rounded -1/6 and
// the dropped d.lo (3 * 2^-53) make 2^-50.1 of a term below 2^-18.6 |d|, so
// under 2^-68.7 |d| <= 2^-68.7 |sin r| (|d| <= |sin r| for i > 0, d ~ sin r
// for i = 0). cm's tail and the terms left out (d^11/11!, d^10/10!) stay
// below 2^-85; the two-sums add 2^-100. sin r, cos r within 2^-68.4 (the
// largest seen against MPFR: 2^-69.5).
void sinCosOfReduced(DD r, bool wantSin, bool wantCos, DD& sOut, DD& cOut) noexcept {
    const bool negative = r.hi < 0;
    const double rh = std::fabs(r.hi), rl = negative ? -r.lo : r.lo;
    const int i = trig::nearestInt(rh * trig::kFastSteps);
    const DD d = dd::twoSum(rh - i * (1.0 / trig::kFastSteps), rl);
    const DD z = dd::twoProd(d.hi, d.hi);
    const double zh = z.hi, zl = z.lo + 2.0 * d.hi * d.lo;
    const double sm = d.hi * zh * (-1.0 / 6 + zh * (1.0 / 120 + zh * (-1.0 / 5040 + zh * (1.0 / 362880))));
    const double cmRest = zh * zh * (1.0 / 24 + zh * (-1.0 / 720 + zh * (1.0 / 40320))) - 0.5 * zl;
    const double cmMain = -0.5 * zh;  // exact
    if (i == 0) {
        if (wantSin) sOut = dd::fastTwoSum(d.hi, d.lo + sm);
        if (wantCos) {
            const DD c = dd::fastTwoSum(1.0, cmMain);
            cOut = dd::fastTwoSum(c.hi, c.lo + cmRest);
        }
    } else {
        const double* t = trig::kSinCosStep[i];
        const double sh = t[0], sl = t[1], ch = t[2], cl = t[3];
        if (wantSin) {
            const DD cd = dd::twoProd(ch, d.hi);
            const DD scm = dd::twoProd(sh, cmMain);
            const double small = ch * (d.lo + sm) + cl * d.hi + sh * cmRest + sl * cmMain;
            const DD u = dd::twoSum(sh, cd.hi);
            const DD v = dd::twoSum(u.hi, scm.hi);
            sOut = dd::fastTwoSum(v.hi, ((u.lo + v.lo) + (sl + cd.lo + scm.lo)) + small);
        }
        if (wantCos) {
            const DD sd = dd::twoProd(sh, d.hi);
            const DD ccm = dd::twoProd(ch, cmMain);
            const double small = ch * cmRest + cl * cmMain - (sh * (d.lo + sm) + sl * d.hi);
            const DD u = dd::twoSum(ch, -sd.hi);
            const DD v = dd::twoSum(u.hi, ccm.hi);
            cOut = dd::fastTwoSum(v.hi, ((u.lo + v.lo) + (cl - sd.lo + ccm.lo)) + small);
        }
    }
    if (negative && wantSin) sOut = dd::neg(sOut);
}

// Error bounds of the fast results: reduction 2^-78 and sin r, cos r
// 2^-68.4 make sin and cos good to 2^-68.3, tan (their quotient, 2^-100
// more) to 2^-67.3. The tests use 4 times that, covering the rounding of
// lo +- err.
constexpr double kSinCosError = 0x1p-66;
constexpr double kTanError = 0x1p-65;

struct Parts {
    int quadrant;
    DD s;  // sin r
    DD c;  // cos r
};

// false when the reduced argument is too small for the fast path's bound.
bool fastParts(double ax, bool wantSin, bool wantCos, Parts& p) noexcept {
    const trig::ReducedFast red = trig::reduceFast(ax);
    if (ax >= 0.7853981633974483 && std::fabs(red.r.hi) < 0x1p-25) return false;
    p.quadrant = red.quadrant;
    // sin(q pi/2 + r) needs sin r for even q, cos r for odd q; cos the other.
    const bool odd = (red.quadrant & 1) != 0;
    sinCosOfReduced(red.r, odd ? wantCos : wantSin, odd ? wantSin : wantCos, p.s, p.c);
    return true;
}

// n / d to 2^-103: the quotient of the high parts and one correction from
// the exact remainder n.hi - q d.hi.
DD quotient(DD n, DD d) noexcept {
    const double q = n.hi / d.hi;
    const double rem = trig::divisionRemainder(n.hi, q, d.hi) + (n.lo - q * d.lo);
    return dd::fastTwoSum(q, rem / d.hi);
}

DD negIf(DD v, bool negative) noexcept { return negative ? dd::neg(v) : v; }

// sin(q pi/2 + r) and cos(q pi/2 + r).
DD sinOf(const Parts& p) noexcept {
    const DD v = p.quadrant % 2 == 0 ? p.s : p.c;
    return negIf(v, p.quadrant >= 2);
}

DD cosOf(const Parts& p) noexcept {
    const DD v = p.quadrant % 2 == 0 ? p.c : p.s;
    return negIf(v, p.quadrant == 1 || p.quadrant == 2);
}

bool isSpecial(double x) noexcept { return !std::isfinite(x); }

}  // namespace

double sin(double x) noexcept {
    const double ax = std::fabs(x);
    if (isSpecial(x)) return x - x;  // NaN for NaN and +-inf
    // |x| < 2^-26: sin x = x (1 - x^2/6 + ...) lies within 2^-54.5 |x| of x,
    // nearer than the halfway points around x; sin(+-0) = +-0.
    if (ax < 0x1p-26) return x;
    Parts p{};
    double out = 0.0;
    if (fastParts(ax, true, false, p) && trig::roundsSafely(negIf(sinOf(p), x < 0), kSinCosError, out)) return out;
    return trig::slowTrig(x, trig::TrigKind::Sin);
}

double cos(double x) noexcept {
    const double ax = std::fabs(x);
    if (isSpecial(x)) return x - x;
    // |x| < 2^-27: 1 - x^2/2 lies above 1 - 2^-55, so it rounds to 1.
    if (ax < 0x1p-27) return 1.0;
    Parts p{};
    double out = 0.0;
    if (fastParts(ax, false, true, p) && trig::roundsSafely(cosOf(p), kSinCosError, out)) return out;
    return trig::slowTrig(x, trig::TrigKind::Cos);
}

SinCos sincos(double x) noexcept {
    const double ax = std::fabs(x);
    if (isSpecial(x)) return {x - x, x - x};
    if (ax < 0x1p-27) return {x, 1.0};
    Parts p{};
    SinCos out{};
    if (fastParts(ax, true, true, p)) {
        const bool sinOk = ax < 0x1p-26 || trig::roundsSafely(negIf(sinOf(p), x < 0), kSinCosError, out.sin);
        if (ax < 0x1p-26) out.sin = x;
        const bool cosOk = trig::roundsSafely(cosOf(p), kSinCosError, out.cos);
        if (!sinOk) out.sin = trig::slowTrig(x, trig::TrigKind::Sin);
        if (!cosOk) out.cos = trig::slowTrig(x, trig::TrigKind::Cos);
        return out;
    }
    return {trig::slowTrig(x, trig::TrigKind::Sin), trig::slowTrig(x, trig::TrigKind::Cos)};
}

double tan(double x) noexcept {
    const double ax = std::fabs(x);
    if (isSpecial(x)) return x - x;
    // |x| < 2^-27: tan x = x (1 + x^2/3 + ...) within 2^-55.5 |x| of x.
    if (ax < 0x1p-27) return x;
    Parts p{};
    if (fastParts(ax, true, true, p)) {
        double out = 0.0;
        // tan = sin r / cos r, or -cos r / sin r in the odd quadrants.
        const bool odd = (p.quadrant & 1) != 0;
        DD t = odd ? quotient(p.c, p.s) : quotient(p.s, p.c);
        if (odd) t = dd::neg(t);
        if (trig::roundsSafely(negIf(t, x < 0), kTanError, out)) return out;
    }
    return trig::slowTrig(x, trig::TrigKind::Tan);
}

}  // namespace Mivora::math
