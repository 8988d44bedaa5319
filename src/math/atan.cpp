// atan and atan2, correctly rounded. Fast path: u = min/max of the two
// magnitudes in double-double, atan(u) = atan(i/64) + atan(t) with
// t = (u - i/64) / (1 + u i/64), |t| <= 2^-7, then the quadrant; a rounding
// test, and the 320-bit slow path for what it cannot decide.
#include <cmath>

#include "cr_math.hpp"
#include "trig_rounding.hpp"
#include "trig_reduce.hpp"
#include "trig_slow.hpp"

namespace Mivora::math {
namespace {

using trig::DD;

// atan(u) for 0 <= u <= 1 given with relative error 2^-104. t = u - c is
// exact in its high part (Sterbenz) and the quotient errs by 2^-103; the
// series t - t^3/3 + ... - t^11/11 stops below 2^-84 |t|, its leading
// correction t z (-1/3 + z Q(z)) runs in double-double and Q (relative size
// 2^-16) in double: atan(t) within 2^-95 |t|. atan(c) is tabulated to 2^-107,
// and |atan(t)| <= atan(c)/2 for c > 0, so the sum errs by under 2^-94.
DD atanUnit(DD u) noexcept {
    const int i = static_cast<int>(u.hi * 64.0 + 0.5);
    const double c = i * 0x1p-6;
    const DD num = dd::twoSum(u.hi - c, u.lo);
    DD uc = dd::twoProd(u.hi, c);
    uc.lo += u.lo * c;
    DD den = dd::fastTwoSum(1.0, uc.hi);
    den = dd::fastTwoSum(den.hi, den.lo + uc.lo);
    const DD t = dd::div(num, den);
    DD z = dd::twoProd(t.hi, t.hi);
    z = dd::fastTwoSum(z.hi, z.lo + 2.0 * t.hi * t.lo);
    const double zh = z.hi;
    const double q = zh * (0.2 + zh * (-1.0 / 7.0 + zh * (1.0 / 9.0 + zh * (-1.0 / 11.0))));
    const DD w = dd::mul(z, dd::add(DD{-trig::kThirdHi, -trig::kThirdLo}, q));
    const DD at = dd::add(t, dd::mul(t, w));
    if (i == 0) return at;
    return dd::add(DD{trig::kAtanStep[i][0], trig::kAtanStep[i][1]}, at);
}

// With the quadrant steps (pi/2 - v, pi - v, each to 2^-104 and without
// cancellation since v <= pi/4 or v <= pi/2) the result errs by under 2^-92;
// the test uses 2^-80.
constexpr double kAtanError = 0x1p-80;

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
        const DD u{r, std::fma(-r, ax, 1.0) / ax};
        v = dd::add(kHalfPi, dd::neg(atanUnit(u)));
    }
    double out;
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
    std::uint64_t mn, md;
    int en, ed;
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
    const double ql = std::fma(-qh, fd, fn) / fd;
    const double scale = trig::pow2(d);
    DD v = atanUnit(DD{qh * scale, ql * scale});
    if (swap) v = dd::add(kHalfPi, dd::neg(v));
    if (negX) v = dd::add(kPiDD, dd::neg(v));
    double out;
    if (trig::roundsSafely(v, kAtanError, out)) return std::copysign(out, y);
    return trig::slowAtan2(y, x);
}

}  // namespace Mivora::math
