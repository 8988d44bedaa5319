// The trigonometric fast paths' cores, each with its proven error bound:
// sin and cos of a reduced argument, a double-double quotient, and atan of
// a quotient of two doubles. Shared by sin_cos_tan_impl.hpp and
// atan_impl.hpp, and measured against MPFR by the tests, since the rounding
// tests are only as sound as these bounds.
#ifndef MIVORA_TRIG_FAST_HPP
#define MIVORA_TRIG_FAST_HPP

#include <cmath>

#include "trig_rounding.hpp"
#include "trig_tables.hpp"

namespace Mivora::math::trig {

namespace {  // internal linkage: see entry_points_x86_fma.cpp

// sin r and cos r for |r| <= pi/4 (+ rounding), r = rh + rl. With a = i/512
// the nearest table step and d = |r| - a = dh + dl (|dh| <= 2^-10, rh - a
// exact by Sterbenz):
//   sin(a + d) = S + C dh + (C (dl + sm) + S cm),
//   cos(a + d) = C - S dh + (C cm - S (dl + sm)),
// S, C = sin a, cos a (table, hi + lo, error 2^-107), sm = sin d - d and
// cm = cos d - 1. Only C dh and S dh need exact products; everything else
// is below 2^-19.9 of the result R (|S| <= 2R for sin, since a >= 2|d|
// when i > 0; |C| <= 1.42R for cos) and is formed in double:
// - sm = dh^3 (-1/6 + ...) from dh alone: four roundings, the rounded -1/6
//   and the dropped dl (3 * 2^-53) make 2^-50.2 of a term below
//   2^-22.6 |d| <= 2^-22.6 R, so 2^-72.8 R;
// - cm = -zh/2 + (zh^2 (1/24 - zh/720) - dh dl), zh = dh^2 rounded: within
//   2^-52 of a term below 2^-21, and with the product by S (or C) and the
//   dropped Sl cm, Cl cm under 2^-71.2 R;
// - the sums of the small terms and of the low parts: 2^-72.4 R;
// - truncation (d^9/9!, d^8/8!) and the table: below 2^-100 R.
// At i = 0 the same terms with S = 0, C = 1. sin r, cos r within 2^-70 R
// (the largest seen against MPFR: 2^-72.1).
inline void sinCosOfReduced(DD r, bool wantSin, bool wantCos, DD& sOut, DD& cOut) noexcept {
    const bool negative = r.hi < 0;
    const double rh = std::fabs(r.hi), rl = negative ? -r.lo : r.lo;
    const int i = nearestInt(rh * kSinCosSteps);
    const DD d = dd::twoSum(rh - i * (1.0 / kSinCosSteps), rl);
    const double zh = d.hi * d.hi;
    const double sm = d.hi * zh * (-1.0 / 6 + zh * (1.0 / 120 + zh * (-1.0 / 5040)));
    const double cm = -0.5 * zh + (zh * zh * (1.0 / 24 + zh * (-1.0 / 720)) - d.hi * d.lo);
    const double dRest = d.lo + sm;
    if (i == 0) {
        if (wantSin) sOut = dd::fastTwoSum(d.hi, dRest);
        if (wantCos) cOut = dd::fastTwoSum(1.0, cm);
    } else {
        const double* t = kSinCosStep[i];
        const double sh = t[0], sl = t[1], ch = t[2], cl = t[3];
        if (wantSin) {
            const DD cd = dd::twoProd(ch, d.hi);
            const DD u = dd::twoSum(sh, cd.hi);
            const double small = sh * cm + (ch * dRest + (sl + cl * d.hi));
            sOut = dd::fastTwoSum(u.hi, u.lo + (cd.lo + small));
        }
        if (wantCos) {
            const DD sd = dd::twoProd(sh, d.hi);
            const DD u = dd::twoSum(ch, -sd.hi);
            const double small = ch * cm - (sh * dRest + (sl * d.hi - cl));
            cOut = dd::fastTwoSum(u.hi, u.lo + (small - sd.lo));
        }
    }
    if (negative && wantSin) sOut = dd::neg(sOut);
}

// Error bounds of the fast results: reduction 2^-78 and sin r, cos r
// 2^-70 make sin and cos good to 2^-69.9, tan (their quotient, 2^-100
// more) to 2^-69. The tests use 4 times that, covering the rounding of
// lo +- err.
inline constexpr double kSinCosError = 0x1p-68;
inline constexpr double kTanError = 0x1p-67;

// n / d to 2^-103: the quotient of the high parts and one correction from
// the exact remainder n.hi - q d.hi.
inline DD quotient(DD n, DD d) noexcept {
    const double q = n.hi / d.hi;
    const double rem = divisionRemainder(n.hi, q, d.hi) + (n.lo - q * d.lo);
    return dd::fastTwoSum(q, rem / d.hi);
}

// base + sign atan(a/b), for 0 < a <= b with 2^-910 <= a/b and b below
// 2^990 (products stay normal), sign = +-1, and base 0, pi/2 or pi with
// sign = -1 only where the result keeps above pi/4 (no cancellation).
// c = i/512 the step nearest a/b, atan(a/b) = atan c + atan t with
//   t = (a - c b) / (b + c a),  |t| <= 2^-10 (1 + 2^-52).
// c b and c a are exact products; a - (c b).hi is exact by Sterbenz (for
// i > 0 the rounded a/b puts a/b in [c/2, 3c/2]), so the numerator is exact
// as a double-double, the denominator good to 2^-105, t to 2^-102.5 after
// one remainder step. atan t = t + corr, corr = t^3 (-1/3 + t^2/5 - t^4/7)
// in double from t.hi alone: four roundings, the rounded -1/3 and the
// dropped t.lo (3 * 2^-53) make 2^-50.1 of a term below 2^-21.6 |t|, so
// 2^-71.7 |t|; the series' remainder is below 2^-83 |t|. atan c is tabulated
// to 2^-107 and atan(a/b) >= |t| (1 - 2^-21); the sums of the low parts add
// 2^-102. Result within 2^-71.5 relative (largest seen: 2^-72.0).
inline DD atanQuotient(double a, double b, DD base, double sign) noexcept {
    const int i = nearestInt((a / b) * kFastSteps);
    const double c = i * (1.0 / kFastSteps);
    const DD cb = dd::twoProd(c, b);
    const DD num = dd::twoSum(a - cb.hi, -cb.lo);
    const DD ca = dd::twoProd(c, a);
    const DD den = dd::fastTwoSum(b, ca.hi);
    const double denLo = den.lo + ca.lo;
    const double q1 = num.hi / den.hi;
    const double rem = divisionRemainder(num.hi, q1, den.hi) + (num.lo - q1 * denLo);
    const double tl = rem / den.hi;
    const double z = q1 * q1;
    const double corr = q1 * z * (-1.0 / 3 + z * (1.0 / 5 + z * (-1.0 / 7)));
    const double* step = kAtanStep[i];
    const DD s = dd::twoSum(base.hi, sign * step[0]);
    const DD u = dd::twoSum(s.hi, sign * q1);
    return dd::fastTwoSum(u.hi, u.lo + (s.lo + (base.lo + sign * (step[1] + (tl + corr)))));
}

// The fast atan results stay within 2^-71.5; the tests use 2^-69, which
// covers the rounding of lo +- err.
inline constexpr double kAtanError = 0x1p-69;

}  // namespace

}  // namespace Mivora::math::trig

#endif
