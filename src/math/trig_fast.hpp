// The trigonometric fast paths' cores, each with its proven error bound:
// sin and cos of a reduced argument, a double-double quotient, and atan on
// [0, 1]. Shared by sin_cos_tan.cpp and atan.cpp, and measured against MPFR
// by the tests, since the rounding tests are only as sound as these bounds.
#ifndef MIVORA_TRIG_FAST_HPP
#define MIVORA_TRIG_FAST_HPP

#include <cmath>

#include "trig_rounding.hpp"
#include "trig_tables.hpp"

namespace Mivora::math::trig {

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
inline void sinCosOfReduced(DD r, bool wantSin, bool wantCos, DD& sOut, DD& cOut) noexcept {
    const bool negative = r.hi < 0;
    const double rh = std::fabs(r.hi), rl = negative ? -r.lo : r.lo;
    const int i = nearestInt(rh * kFastSteps);
    const DD d = dd::twoSum(rh - i * (1.0 / kFastSteps), rl);
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
        const double* t = kSinCosStep[i];
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
inline constexpr double kSinCosError = 0x1p-66;
inline constexpr double kTanError = 0x1p-65;

// n / d to 2^-103: the quotient of the high parts and one correction from
// the exact remainder n.hi - q d.hi.
inline DD quotient(DD n, DD d) noexcept {
    const double q = n.hi / d.hi;
    const double rem = divisionRemainder(n.hi, q, d.hi) + (n.lo - q * d.lo);
    return dd::fastTwoSum(q, rem / d.hi);
}

// atan(u) for 0 <= u <= 1 given with relative error 2^-104: c = i/128 the
// nearest table step, u - c exact in its high part (Sterbenz), 1 + u c with
// an exact product, t = (u - c)/(1 + u c) to 2^-103 by one remainder step,
// |t| <= 2^-8. atan(t) = t + corr, corr = t^3 (-1/3 + t^2/5 - t^4/7 + t^6/9)
// in double from t.hi alone: four roundings, the rounded -1/3 and the
// dropped t.lo (3 * 2^-53) make 2^-50.1 of a term below 2^-17.6 |t|, so
// 2^-67.7 |t|; the series' remainder is below 2^-80 |t|. atan(c) is
// tabulated to 2^-107 and |atan u| >= |t| (for c > 0, atan u >= atan(1/256)
// > |t|): atan(u) within 2^-67.6 relative (largest seen: 2^-68.3).
inline DD atanUnit(DD u) noexcept {
    const int i = nearestInt(u.hi * kFastSteps);
    const double c = i * (1.0 / kFastSteps);
    const DD num = dd::twoSum(u.hi - c, u.lo);
    const DD uc = dd::twoProd(u.hi, c);
    const DD den = dd::fastTwoSum(1.0, uc.hi);
    const double denLo = den.lo + (uc.lo + u.lo * c);
    const double q1 = num.hi / den.hi;
    const double rem = divisionRemainder(num.hi, q1, den.hi) + (num.lo - q1 * denLo);
    const double tl = rem / den.hi;
    const double z = q1 * q1;
    const double corr = q1 * z * (-1.0 / 3 + z * (1.0 / 5 + z * (-1.0 / 7 + z * (1.0 / 9))));
    if (i == 0) return dd::fastTwoSum(q1, tl + corr);
    const DD s = dd::twoSum(kAtanStep[i][0], q1);
    return dd::fastTwoSum(s.hi, s.lo + (kAtanStep[i][1] + (tl + corr)));
}

// With the quadrant steps (pi/2 - v, pi - v, each to 2^-104 and without
// cancellation since v <= pi/4, or v <= pi/2 before pi - v) the result stays
// within 2^-67.5; the test uses 2^-66, which covers the rounding of lo +- err.
inline constexpr double kAtanError = 0x1p-66;

}  // namespace Mivora::math::trig

#endif
