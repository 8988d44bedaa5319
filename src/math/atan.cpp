// atan and atan2, correctly rounded. Fast path: u = min/max of the two
// magnitudes in double-double, atan(u) = atan(i/128) + atan(t) with
// t = (u - i/128) / (1 + u i/128), |t| <= 2^-8, then the quadrant; a
// rounding test, and the 320-bit slow path for what it cannot decide.
#include <cmath>

#include "cr_math.hpp"
#include "trig_rounding.hpp"
#include "trig_reduce.hpp"
#include "trig_slow.hpp"

namespace Mivora::math {
namespace {

using trig::DD;

// atan(u) for 0 <= u <= 1 given with relative error 2^-104: c = i/128 the
// nearest table step, u - c exact in its high part (Sterbenz), 1 + u c with
// an exact product, t = (u - c)/(1 + u c) to 2^-103 by one remainder step,
// |t| <= 2^-8. atan(t) = t + corr, corr = t^3 (-1/3 + t^2/5 - t^4/7 + t^6/9)
// in double from t.hi alone: four roundings, the rounded -1/3 and the
// dropped t.lo (3 * 2^-53) make 2^-50.1 of a term below 2^-17.6 |t|, so
// 2^-67.7 |t|; the series' remainder is below 2^-80 |t|. atan(c) is
// tabulated to 2^-107 and |atan u| >= |t| (for c > 0, atan u >= atan(1/256)
// > |t|): atan(u) within 2^-67.6 relative (largest seen: 2^-68.3).
DD atanUnit(DD u) noexcept {
    const int i = trig::nearestInt(u.hi * trig::kFastSteps);
    const double c = i * (1.0 / trig::kFastSteps);
    const DD num = dd::twoSum(u.hi - c, u.lo);
    const DD uc = dd::twoProd(u.hi, c);
    const DD den = dd::fastTwoSum(1.0, uc.hi);
    const double denLo = den.lo + (uc.lo + u.lo * c);
    const double q1 = num.hi / den.hi;
    const double rem = trig::divisionRemainder(num.hi, q1, den.hi) + (num.lo - q1 * denLo);
    const double tl = rem / den.hi;
    const double z = q1 * q1;
    const double corr = q1 * z * (-1.0 / 3 + z * (1.0 / 5 + z * (-1.0 / 7 + z * (1.0 / 9))));
    if (i == 0) return dd::fastTwoSum(q1, tl + corr);
    const DD s = dd::twoSum(trig::kAtanStep[i][0], q1);
    return dd::fastTwoSum(s.hi, s.lo + (trig::kAtanStep[i][1] + (tl + corr)));
}

// With the quadrant steps (pi/2 - v, pi - v, each to 2^-104 and without
// cancellation since v <= pi/4, or v <= pi/2 before pi - v) the result stays
// within 2^-67.5; the test uses 2^-66, which covers the rounding of lo +- err.
constexpr double kAtanError = 0x1p-66;

constexpr DD kHalfPi{trig::kPiOver2Hi, trig::kPiOver2Lo};
constexpr DD kPiDD{trig::kPiHi, trig::kPiLo};

}  // namespace

double atan(double x) noexcept {
    const double ax = std::fabs(x);
    if (std::isnan(x)) return x + x;
    // |x| < 2^-27: atan x = x (1 - x^2/3 + ...) rounds to x (signed zero kept).
    if (ax < 0x1p-27) return x;
    // |x| >= 2^53 (and inf): pi/2 - atan x < 2^-53, which cannot move pi/2
    // (2^-53.9 above its nearest double) across a halfway point.
    if (ax >= 0x1p53) return std::copysign(trig::kPiOver2Hi, x);
    DD v;
    if (ax <= 1.0) {
        v = atanUnit(DD{ax, 0.0});
    } else {
        const double r = 1.0 / ax;
        const DD u{r, trig::divisionRemainder(1.0, r, ax) / ax};
        v = dd::add(kHalfPi, dd::neg(atanUnit(u)));
    }
    double out = 0.0;
    if (trig::roundsSafely(v, kAtanError, out)) return std::copysign(out, x);
    return trig::slowAtan2(x, 1.0);
}

double atan2(double y, double x) noexcept {
    if (std::isnan(x) || std::isnan(y)) return x + y;
    const bool negX = std::signbit(x);
    const double a = std::fabs(y), b = std::fabs(x);
    // Zeros and infinities, as C's Annex F lists them.
    if (a == 0.0) return std::copysign(negX ? trig::kPiHi : 0.0, y);
    if (b == 0.0 || (std::isinf(a) && !std::isinf(b))) return std::copysign(trig::kPiOver2Hi, y);
    if (std::isinf(a)) return std::copysign(negX ? trig::k3PiOver4 : trig::kPiOver4, y);
    if (std::isinf(b)) return std::copysign(negX ? trig::kPiHi : 0.0, y);

    const bool swap = a > b;
    std::uint64_t mn = 0, md = 0;
    int en = 0, ed = 0;
    trig::decompose(swap ? b : a, mn, en);
    trig::decompose(swap ? a : b, md, ed);
    const int d = en - ed;  // u = min/max = (mn/md) 2^d <= 1
    if (d < -60 && (swap || negX)) {
        // u < 2^-59: pi/2 -+ u and pi - u round as pi/2 and pi do (both lie
        // over 2^-55 from a halfway point).
        return std::copysign(swap ? trig::kPiOver2Hi : trig::kPiHi, y);
    }
    // Below 2^-900 the result may be subnormal: the slow path rounds it.
    if (d < -900) return trig::slowAtan2(y, x);
    const double fn = static_cast<double>(mn) * 0x1p-52, fd = static_cast<double>(md) * 0x1p-52;
    const double qh = fn / fd;
    const double ql = trig::divisionRemainder(fn, qh, fd) / fd;
    const double scale = trig::pow2(d);
    DD v = atanUnit(DD{qh * scale, ql * scale});
    if (swap) v = dd::add(kHalfPi, dd::neg(v));
    if (negX) v = dd::add(kPiDD, dd::neg(v));
    double out = 0.0;
    if (trig::roundsSafely(v, kAtanError, out)) return std::copysign(out, y);
    return trig::slowAtan2(y, x);
}

}  // namespace Mivora::math
