// atan and atan2, correctly rounded. Fast path: u = min/max of the two
// magnitudes in double-double, atan(u) = atan(i/128) + atan(t) with
// t = (u - i/128) / (1 + u i/128), |t| <= 2^-8, then the quadrant; a
// rounding test, and the 320-bit slow path for what it cannot decide.
#include <cmath>

#include "cr_math.hpp"
#include "trig_fast.hpp"
#include "trig_rounding.hpp"
#include "trig_reduce.hpp"
#include "trig_slow.hpp"

namespace Mivora::math {
namespace {

using trig::DD;

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
        v = trig::atanUnit(DD{ax, 0.0});
    } else {
        const double r = 1.0 / ax;
        const DD u{r, trig::divisionRemainder(1.0, r, ax) / ax};
        v = dd::add(kHalfPi, dd::neg(trig::atanUnit(u)));
    }
    double out = 0.0;
    if (dd::roundsUnambiguously(v, trig::kAtanError, &out)) return std::copysign(out, x);
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
    DD v = trig::atanUnit(DD{qh * scale, ql * scale});
    if (swap) v = dd::add(kHalfPi, dd::neg(v));
    if (negX) v = dd::add(kPiDD, dd::neg(v));
    double out = 0.0;
    if (dd::roundsUnambiguously(v, trig::kAtanError, &out)) return std::copysign(out, y);
    return trig::slowAtan2(y, x);
}

}  // namespace Mivora::math
