// sin, cos, sincos and tan, correctly rounded. Fast path: reduction to
// |r| <= pi/4 (trig_reduce), a table of sin and cos at i/512 and short
// polynomials around it, a rounding test; whatever the test cannot decide
// goes to the 320-bit slow path.
//
// Internal linkage throughout: the portable entry points and the x86-64 FMA3
// build each compile their own copy (entry_points.cpp, entry_points_x86_fma.cpp).
#ifndef MIVORA_SIN_COS_TAN_IMPL_HPP
#define MIVORA_SIN_COS_TAN_IMPL_HPP

#include <cmath>

#include "cr_math.hpp"
#include "trig_fast.hpp"
#include "trig_rounding.hpp"
#include "trig_reduce.hpp"
#include "trig_slow.hpp"

namespace Mivora::math::impl::sincostan {
namespace {  // each translation unit that includes this its own copy

using trig::DD;

struct Parts {
    int quadrant;
    DD s;  // sin r
    DD c;  // cos r
};

// false when the reduced argument is too small for the fast path's bound.
template <bool wantSin, bool wantCos>
inline bool fastParts(double ax, Parts& p) noexcept {
    const trig::ReducedFast red = trig::reduceFast(ax);
    if (ax >= 0.7853981633974483 && std::fabs(red.r.hi) < 0x1p-25) return false;
    p.quadrant = red.quadrant;
    // sin(q pi/2 + r) needs sin r for even q, cos r for odd q; cos the other.
    const bool odd = (red.quadrant & 1) != 0;
    const bool sinR = (odd && wantCos) || (!odd && wantSin);
    const bool cosR = (odd && wantSin) || (!odd && wantCos);
    trig::sinCosOfReduced(red.r, sinR, cosR, p.s, p.c);
    return true;
}

inline DD negIf(DD v, bool negative) noexcept { return negative ? dd::neg(v) : v; }

// sin(q pi/2 + r) and cos(q pi/2 + r).
inline DD sinOf(const Parts& p) noexcept {
    const DD v = p.quadrant % 2 == 0 ? p.s : p.c;
    return negIf(v, p.quadrant >= 2);
}

inline DD cosOf(const Parts& p) noexcept {
    const DD v = p.quadrant % 2 == 0 ? p.c : p.s;
    return negIf(v, p.quadrant == 1 || p.quadrant == 2);
}

inline bool isSpecial(double x) noexcept { return !std::isfinite(x); }

inline double sin(double x) noexcept {
    const double ax = std::fabs(x);
    if (isSpecial(x)) return x - x;  // NaN for NaN and +-inf
    // |x| < 2^-26: sin x = x (1 - x^2/6 + ...) lies within 2^-54.5 |x| of x,
    // nearer than the halfway points around x; sin(+-0) = +-0.
    if (ax < 0x1p-26) return x;
    Parts p{};
    double out = 0.0;
    if (fastParts<true, false>(ax, p) && dd::roundsUnambiguously(negIf(sinOf(p), x < 0), trig::kSinCosError, &out)) return out;
    return trig::slowTrig(x, trig::TrigKind::Sin);
}

inline double cos(double x) noexcept {
    const double ax = std::fabs(x);
    if (isSpecial(x)) return x - x;
    // |x| < 2^-27: 1 - x^2/2 lies above 1 - 2^-55, so it rounds to 1.
    if (ax < 0x1p-27) return 1.0;
    Parts p{};
    double out = 0.0;
    if (fastParts<false, true>(ax, p) && dd::roundsUnambiguously(cosOf(p), trig::kSinCosError, &out)) return out;
    return trig::slowTrig(x, trig::TrigKind::Cos);
}

inline SinCos sincos(double x) noexcept {
    const double ax = std::fabs(x);
    if (isSpecial(x)) return {x - x, x - x};
    if (ax < 0x1p-27) return {x, 1.0};
    Parts p{};
    SinCos out{};
    if (fastParts<true, true>(ax, p)) {
        const bool sinOk = ax < 0x1p-26 || dd::roundsUnambiguously(negIf(sinOf(p), x < 0), trig::kSinCosError, &out.sin);
        if (ax < 0x1p-26) out.sin = x;
        const bool cosOk = dd::roundsUnambiguously(cosOf(p), trig::kSinCosError, &out.cos);
        if (!sinOk) out.sin = trig::slowTrig(x, trig::TrigKind::Sin);
        if (!cosOk) out.cos = trig::slowTrig(x, trig::TrigKind::Cos);
        return out;
    }
    return {trig::slowTrig(x, trig::TrigKind::Sin), trig::slowTrig(x, trig::TrigKind::Cos)};
}

inline double tan(double x) noexcept {
    const double ax = std::fabs(x);
    if (isSpecial(x)) return x - x;
    // |x| < 2^-27: tan x = x (1 + x^2/3 + ...) within 2^-55.5 |x| of x.
    if (ax < 0x1p-27) return x;
    Parts p{};
    if (fastParts<true, true>(ax, p)) {
        double out = 0.0;
        // tan = sin r / cos r, or -cos r / sin r in the odd quadrants.
        const bool odd = (p.quadrant & 1) != 0;
        DD t = odd ? trig::quotient(p.c, p.s) : trig::quotient(p.s, p.c);
        if (odd) t = dd::neg(t);
        if (dd::roundsUnambiguously(negIf(t, x < 0), trig::kTanError, &out)) return out;
    }
    return trig::slowTrig(x, trig::TrigKind::Tan);
}

}  // namespace
}  // namespace Mivora::math::impl::sincostan

#endif
