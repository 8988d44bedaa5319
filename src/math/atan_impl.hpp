// atan and atan2, correctly rounded. Fast path: with u = min/max of the two
// magnitudes, atan(u) = atan(i/512) + atan(t), t = (u - i/512)/(1 + u i/512)
// formed from the two magnitudes directly, |t| <= 2^-10, and the quadrant
// added in the same sums; a rounding test, and the 320-bit slow path for
// what it cannot decide.
//
// Internal linkage throughout: the portable entry points and the x86-64 FMA3
// build each compile their own copy (entry_points.cpp, entry_points_x86_fma.cpp).
#ifndef MIVORA_ATAN_IMPL_HPP
#define MIVORA_ATAN_IMPL_HPP

#include <cmath>

#include "cr_math.hpp"
#include "trig_fast.hpp"
#include "trig_rounding.hpp"
#include "trig_reduce.hpp"
#include "trig_slow.hpp"

namespace Mivora::math::impl::arctan {
namespace {  // each translation unit that includes this its own copy

using trig::DD;

constexpr DD kZero{0.0, 0.0};
constexpr DD kHalfPi{trig::kPiOver2Hi, trig::kPiOver2Lo};
constexpr DD kPiDD{trig::kPiHi, trig::kPiLo};

inline double atan(double x) noexcept {
    const double ax = std::fabs(x);
    if (std::isnan(x)) return x + x;
    // |x| < 2^-27: atan x = x (1 - x^2/3 + ...) rounds to x (signed zero kept).
    if (ax < 0x1p-27) return x;
    // |x| >= 2^53 (and inf): pi/2 - atan x < 2^-53, which cannot move pi/2
    // (2^-53.9 above its nearest double) across a halfway point.
    if (ax >= 0x1p53) return std::copysign(trig::kPiOver2Hi, x);
    // Above 1: pi/2 - atan(1/x).
    const DD v = ax <= 1.0 ? trig::atanQuotient(ax, 1.0, kZero, 1.0) : trig::atanQuotient(1.0, ax, kHalfPi, -1.0);
    double out = 0.0;
    if (dd::roundsUnambiguously(v, trig::kAtanError, &out)) return std::copysign(out, x);
    return trig::slowAtan2(x, 1.0);
}

inline double atan2(double y, double x) noexcept {
    if (std::isnan(x) || std::isnan(y)) return x + y;
    const bool negX = std::signbit(x);
    const double a = std::fabs(y), b = std::fabs(x);
    // Zeros and infinities, as C's Annex F lists them.
    if (a == 0.0) return std::copysign(negX ? trig::kPiHi : 0.0, y);
    if (b == 0.0 || (std::isinf(a) && !std::isinf(b))) return std::copysign(trig::kPiOver2Hi, y);
    if (std::isinf(a)) return std::copysign(negX ? trig::k3PiOver4 : trig::kPiOver4, y);
    if (std::isinf(b)) return std::copysign(negX ? trig::kPiHi : 0.0, y);

    const bool swap = a > b;
    // pi/2 - u, pi/2 + u and pi - u for u < 2^-59 round as pi/2 and pi do
    // (both lie over 2^-55 from a halfway point).
    const bool offAxis = swap || negX;
    const double axis = swap ? trig::kPiOver2Hi : trig::kPiHi;
    double fn = swap ? b : a, fd = swap ? a : b;  // u = fn / fd <= 1
    if (!(fd < 0x1p450 && fn >= 0x1p-450)) {
        // The smaller magnitude scaled against the larger one's significand
        // in [1, 2): the ratio is kept, and the core's products stay normal.
        std::uint64_t mn = 0, md = 0;
        int en = 0, ed = 0;
        trig::decompose(fn, mn, en);
        trig::decompose(fd, md, ed);
        const int d = en - ed;  // u = (mn/md) 2^d
        // Below 2^-900 the result may be subnormal: the slow path rounds it.
        if (d < -900) return offAxis ? std::copysign(axis, y) : trig::slowAtan2(y, x);
        fn = static_cast<double>(mn) * trig::pow2(d - 52);
        fd = static_cast<double>(md) * 0x1p-52;
    }
    if (offAxis && fn < fd * 0x1p-60) return std::copysign(axis, y);
    // atan u, pi/2 - atan u, pi - atan u, or pi - (pi/2 - atan u).
    const DD base = swap ? kHalfPi : negX ? kPiDD : kZero;
    const DD v = trig::atanQuotient(fn, fd, base, swap == negX ? 1.0 : -1.0);
    double out = 0.0;
    if (dd::roundsUnambiguously(v, trig::kAtanError, &out)) return std::copysign(out, y);
    return trig::slowAtan2(y, x);
}

}  // namespace
}  // namespace Mivora::math::impl::arctan

#endif
