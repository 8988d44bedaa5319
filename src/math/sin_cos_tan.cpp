// sin, cos, sincos and tan, correctly rounded. Fast path: reduction to
// |r| <= pi/4 (trig_reduce), Taylor polynomials in double-double, a rounding
// test; whatever the test cannot decide goes to the 320-bit slow path.
#include <cmath>

#include "cr_math.hpp"
#include "trig_rounding.hpp"
#include "trig_reduce.hpp"
#include "trig_slow.hpp"

namespace Mivora::math {
namespace {

using trig::DD;
using trig::kInvFact;

DD coef(int n, bool negative) noexcept {
    return negative ? DD{-kInvFact[n][0], -kInvFact[n][1]} : DD{kInvFact[n][0], kInvFact[n][1]};
}

double c(int n) noexcept { return kInvFact[n][0]; }

// sin r and cos r for |r| <= pi/4 + 2^-40, z = r^2 (z <= 0.617).
// sin r = r + r z S(z): the terms up to r^7/7! run in double-double, the
// rest (relative size below 2^-21) in double, so their rounding costs under
// 2^-72 relative; the series stops at r^21/21!, leaving under 2^-82.
DD sinPoly(DD r, DD z) noexcept {
    const double zh = z.hi;
    const double tail =
        c(9) + zh * (-c(11) + zh * (c(13) + zh * (-c(15) + zh * (c(17) + zh * (-c(19) + zh * c(21))))));
    DD b = dd::add(coef(7, true), zh * tail);
    b = dd::add(coef(5, false), dd::mul(b, z));
    b = dd::add(coef(3, true), dd::mul(b, z));
    return dd::add(r, dd::mul(r, dd::mul(b, z)));
}

// cos r = 1 + z C(z): double-double up to r^8/8!, double beyond (relative
// size below 2^-25), series to r^22/22! (remainder under 2^-87).
DD cosPoly(DD z) noexcept {
    const double zh = z.hi;
    const double tail =
        -c(10) + zh * (c(12) + zh * (-c(14) + zh * (c(16) + zh * (-c(18) + zh * (c(20) - zh * c(22))))));
    DD b = dd::add(coef(8, false), zh * tail);
    b = dd::add(coef(6, true), dd::mul(b, z));
    b = dd::add(coef(4, false), dd::mul(b, z));
    b = dd::add(dd::mul(b, z), -0.5);
    return dd::add(dd::mul(b, z), 1.0);
}

// Error bounds (relative, with the 2^-100 margin of the test): reduction
// 2^-78, polynomials 2^-71, double-double steps 2^-100 each: sin and cos
// within 2^-68; tan, their quotient, within 2^-66.
constexpr double kSinCosError = 0x1p-68;
constexpr double kTanError = 0x1p-66;

struct Parts {
    int quadrant;
    DD s;  // sin r
    DD c;  // cos r
};

// false when the reduced argument is too small for the fast path's bound.
bool fastParts(double ax, Parts& p) noexcept {
    const trig::ReducedFast red = trig::reduceFast(ax);
    if (red.quadrant != 0 || ax >= 0.7853981633974483) {
        if (std::fabs(red.r.hi) < 0x1p-25) return false;
    }
    DD z = dd::twoProd(red.r.hi, red.r.hi);
    z = dd::fastTwoSum(z.hi, z.lo + 2.0 * red.r.hi * red.r.lo);
    p.quadrant = red.quadrant;
    p.s = sinPoly(red.r, z);
    p.c = cosPoly(z);
    return true;
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
    Parts p;
    double out;
    if (fastParts(ax, p) && trig::roundsSafely(negIf(sinOf(p), x < 0), kSinCosError, out)) return out;
    return trig::slowTrig(x, trig::TrigKind::Sin);
}

double cos(double x) noexcept {
    const double ax = std::fabs(x);
    if (isSpecial(x)) return x - x;
    // |x| < 2^-27: 1 - x^2/2 lies above 1 - 2^-55, so it rounds to 1.
    if (ax < 0x1p-27) return 1.0;
    Parts p;
    double out;
    if (fastParts(ax, p) && trig::roundsSafely(cosOf(p), kSinCosError, out)) return out;
    return trig::slowTrig(x, trig::TrigKind::Cos);
}

SinCos sincos(double x) noexcept {
    const double ax = std::fabs(x);
    if (isSpecial(x)) return {x - x, x - x};
    if (ax < 0x1p-27) return {x, 1.0};
    Parts p;
    SinCos out{};
    if (fastParts(ax, p)) {
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
    Parts p;
    double out;
    if (fastParts(ax, p)) {
        // tan = sin r / cos r, or -cos r / sin r in the odd quadrants.
        DD t = p.quadrant % 2 == 0 ? dd::div(p.s, p.c) : dd::neg(dd::div(p.c, p.s));
        if (trig::roundsSafely(negIf(t, x < 0), kTanError, out)) return out;
    }
    return trig::slowTrig(x, trig::TrigKind::Tan);
}

}  // namespace Mivora::math
