// exp, exp10, log, log10, correctly rounded: the fast double-double paths of
// exp_log_fast.hpp, decided by the rounding test, else the 256-bit paths.
//
// Internal linkage throughout: the portable entry points and the x86-64 FMA3
// build each compile their own copy (entry_points.cpp, entry_points_x86_fma.cpp).
#ifndef MIVORA_EXP_LOG_IMPL_HPP
#define MIVORA_EXP_LOG_IMPL_HPP

#include <cmath>
#include <limits>

#include "cr_math.hpp"
#include "exp_log_fast.hpp"
#include "exp_log_slow.hpp"

namespace Mivora::math::impl::explog {
namespace {  // each translation unit that includes this its own copy

using detail::ExpParts;
constexpr double kInf = std::numeric_limits<double>::infinity();

// The fast paths' test margins: at least twice their proven error bounds
// (2^-68.2 for expCore, 2^-73.5 for logCore, plus 2^-100 for the products
// by ln10 and 1/ln10).
constexpr double kExpMargin = 0x1p-67;
constexpr double kLogMargin = 0x1p-72;

// Results of exp and exp10 below 2^-1022 (arguments below these bounds) go
// to the accurate path, which rounds in the subnormal range; the fast
// rounding test assumes a normal result.
constexpr double kExpSubnormalBelow = -708.3;
constexpr double kExp10SubnormalBelow = -307.6;

// e^x (10^x) within half an ulp of 1: |x| < 2^-54 (|x ln10| < 2^-54).
constexpr double kExpRoundsToOne = 0x1p-54;
constexpr double kExp10RoundsToOne = 0x1p-56;

inline bool roundExp(const ExpParts& p, double* out) noexcept {
    if (!dd::roundsUnambiguously(p.v, kExpMargin, out)) return false;
    *out = detail::scaleNormal(*out, p.n);
    return true;
}

inline wide::Wide timesLn10(double x) noexcept { return wide::mul(wide::fromDouble(x), tables::kWideLn10); }

inline double exp(double x) noexcept {
    if (!(x < 709.8)) return x > 0 ? kInf : x + x;  // overflow, +inf, NaN
    if (x < kExpSubnormalBelow) {
        if (x < -745.2) return 0.0;  // below 2^-1075: rounds to 0
        return wide::toDouble(detail::wideExp(wide::fromDouble(x)));
    }
    if (std::fabs(x) < kExpRoundsToOne) return 1.0;
    double r = 0.0;
    if (roundExp(detail::expCore(x, 0.0), &r)) return r;
    return wide::toDouble(detail::wideExp(wide::fromDouble(x)));
}

inline double exp10(double x) noexcept {
    if (!(x < 308.3)) return x > 0 ? kInf : x + x;
    if (x < kExp10SubnormalBelow) {
        if (x < -323.7) return 0.0;
        return wide::toDouble(detail::wideExp(timesLn10(x)));
    }
    if (std::fabs(x) < kExp10RoundsToOne) return 1.0;
    // x ln10 as a double-double: relative error below 2^-104.
    dd::DD xl = dd::twoProd(x, tables::kLn10.hi);
    xl.lo += x * tables::kLn10.lo;
    double r = 0.0;
    if (roundExp(detail::expCore(xl.hi, xl.lo), &r)) return r;
    return wide::toDouble(detail::wideExp(timesLn10(x)));
}

// Shared by log and log10: special values, or the split of x. Returns true
// with *special set when x is not a positive finite number other than 1.
inline bool logSpecial(double x, double* special, int* e, double* m) noexcept {
    if (!(x > 0.0) || x == kInf || x == 1.0) {
        if (x == 1.0) *special = 0.0;
        else if (x == 0.0) *special = -kInf;
        else if (x > 0.0) *special = x;  // +inf
        else *special = std::numeric_limits<double>::quiet_NaN();  // x < 0 or NaN
        return true;
    }
    detail::splitPositive(x, e, m);
    return false;
}

inline double log(double x) noexcept {
    double r = 0.0;
    int e = 0;
    double m = 1.0;
    if (logSpecial(x, &r, &e, &m)) return r;
    if (dd::roundsUnambiguously(detail::logCore(e, m), kLogMargin, &r)) return r;
    return wide::toDouble(detail::wideLog(x));
}

inline double log10(double x) noexcept {
    double r = 0.0;
    int e = 0;
    double m = 1.0;
    if (logSpecial(x, &r, &e, &m)) return r;
    // Powers of ten up to 10^22 are exact doubles and give exact integers;
    // the rounding test decides them like any other argument.
    const dd::DD v = dd::mul(detail::logCore(e, m), tables::kInvLn10);
    if (dd::roundsUnambiguously(v, kLogMargin, &r)) return r;
    return wide::toDouble(wide::mul(detail::wideLog(x), tables::kWideInvLn10));
}

}  // namespace
}  // namespace Mivora::math::impl::explog

#endif
