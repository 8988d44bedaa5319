// sinh and cosh, correctly rounded: (e^x -+ e^-x)/2 from the double-double
// exponential, a series for small sinh arguments, the 256-bit path when the
// rounding test cannot decide.
//
// Internal linkage throughout: the portable entry points and the x86-64 FMA3
// build each compile their own copy (entry_points.cpp, entry_points_x86_fma.cpp).
#ifndef MIVORA_HYPERBOLIC_IMPL_HPP
#define MIVORA_HYPERBOLIC_IMPL_HPP

#include <cmath>
#include <limits>

#include "cr_math.hpp"
#include "exp_log_fast.hpp"
#include "exp_log_slow.hpp"

namespace Mivora::math::impl::hyperbolic {
namespace {  // each translation unit that includes this its own copy

constexpr double kInf = std::numeric_limits<double>::infinity();
// Beyond this, e^|x|/2 exceeds the largest double by more than half an ulp.
constexpr double kOverflow = 710.5;
// From here on e^-|x| is below 2^-115 of e^|x|: it cannot move the result.
constexpr double kOneSided = 40.0;

// e^ax / 2 for ax >= kOneSided: relative error 2^-68.2 (expCore) + 2^-115.
inline bool oneSided(double ax, double* out) noexcept {
    const detail::ExpParts p = detail::expCore(ax, 0.0);
    if (!dd::roundsUnambiguously(p.v, 0x1p-67, out)) return false;
    *out = detail::scaleNormal(*out, p.n - 1);
    return true;
}

// e^ax +- e^-ax for 2^-26 <= ax < kOneSided, as a double-double (before
// the halving). e^ax has relative error d < 2^-68.2 and 1/e^ax the same d
// plus 2^-102; the sum keeps d, the difference multiplies it by
// coth(ax) <= 2.17 for ax >= 1/2 (its callers' range).
inline dd::DD twoSided(double ax, bool difference) noexcept {
    const detail::ExpParts p = detail::expCore(ax, 0.0);
    const dd::DD e = dd::scale(p.v, detail::twoPow(p.n));
    // 1/e = q/(1 - r) with q = 1/e.hi and r = 1 - q e (|r| < 2^-51, formed
    // exactly but for 2^-105): q + q r, dropping q r^2.
    const double q = 1.0 / e.hi;
    const dd::DD qe = dd::twoProd(q, e.hi);
    const double r = ((1.0 - qe.hi) - qe.lo) - q * e.lo;
    const dd::DD inv = dd::fastTwoSum(q, q * r);
    // e >= 1 > 1/e: the sum and (for ax >= 1/2, e/(1/e) >= 2.7) the
    // difference cancel little, so the low parts add plainly.
    dd::DD s = dd::twoSum(e.hi, difference ? -inv.hi : inv.hi);
    s.lo += e.lo + (difference ? -inv.lo : inv.lo);
    return dd::fastTwoSum(s.hi, s.lo);
}

// sinh(x) for 2^-26 <= |x| < 1/2: x + x w P(w), w = x^2, P = sum w^k/(2k+3)!
// Terms k >= 3 (below 2^-26.5 of x) in double, the others in double-double.
// Truncation after w^8/19! below 2^-73.8, roundings below 2^-75.
inline dd::DD sinhSeries(double x) noexcept {
    using namespace tables;
    const dd::DD w = dd::twoProd(x, x);
    const double wh = w.hi;
    const double tail = kSinhCoef[0] + wh * (kSinhCoef[1] + wh * (kSinhCoef[2] + wh * (kSinhCoef[3] + wh * kSinhCoef[4])));
    dd::DD acc = dd::add(kSinhCoefDD[2], wh * tail);
    acc = dd::add(dd::mul(acc, w), kSinhCoefDD[1]);
    acc = dd::add(dd::mul(acc, w), kSinhCoefDD[0]);
    acc = dd::mul(acc, w);
    return dd::add(dd::mul(acc, x), x);
}

inline double cosh(double x) noexcept {
    const double ax = std::fabs(x);
    if (!(ax < kOverflow)) return std::isnan(x) ? x + x : kInf;
    // cosh x - 1 < x^2/2 < 2^-53: within half an ulp above 1.
    if (ax < 0x1p-26) return 1.0;
    double r = 0.0;
    if (ax >= kOneSided) {
        if (oneSided(ax, &r)) return r;
    } else {
        // Relative error below 2^-68.2 + 2^-100: margin 2^-67.
        if (dd::roundsUnambiguously(dd::scale(twoSided(ax, false), 0.5), 0x1p-67, &r)) return r;
    }
    return detail::hyperbolicAccurate(ax, false);
}

inline double sinh(double x) noexcept {
    const double ax = std::fabs(x);
    if (!(ax < kOverflow)) return std::isnan(x) ? x + x : (x < 0 ? -kInf : kInf);
    // sinh x = x (1 + d), 0 <= d < x^2/6 < 2^-54: x itself (also +-0).
    if (ax < 0x1p-26) return x;
    double r = 0.0;
    bool done = false;
    if (ax >= kOneSided) {
        done = oneSided(ax, &r);
    } else if (ax >= 0.5) {
        // 2.17 * 2^-68.2 plus the double-double steps: margin 2^-66.
        done = dd::roundsUnambiguously(dd::scale(twoSided(ax, true), 0.5), 0x1p-66, &r);
    } else {
        done = dd::roundsUnambiguously(sinhSeries(ax), 0x1p-72, &r);
    }
    if (!done) r = detail::hyperbolicAccurate(ax, true);
    return x < 0 ? -r : r;
}

}  // namespace
}  // namespace Mivora::math::impl::hyperbolic

#endif
