// pow(x, y), correctly rounded: Annex F special values, x^y = e^(y log x)
// with log x and the exponential in double-double (exp_log_fast.hpp), the
// exact powers found by integer arithmetic, and the 256-bit path for the
// rest of the cases the rounding test cannot decide.
//
// Internal linkage throughout: the portable entry points and the x86-64 FMA3
// build each compile their own copy (entry_points.cpp, entry_points_x86_fma.cpp).
#ifndef MIVORA_POW_IMPL_HPP
#define MIVORA_POW_IMPL_HPP

#include <cmath>
#include <limits>

#include "cr_math.hpp"
#include "exp_log_fast.hpp"
#include "exp_log_slow.hpp"

namespace Mivora::math::impl::powers {
namespace {  // each translation unit that includes this its own copy

using u64 = std::uint64_t;
constexpr double kInf = std::numeric_limits<double>::infinity();

// A finite non-zero double as Y * 2^E with Y an odd integer.
struct OddForm {
    u64 odd;
    int exp;
};

inline OddForm oddForm(double v) noexcept {
    const u64 b = detail::bitsOf(v);
    const int biased = static_cast<int>((b >> 52) & 0x7ff);
    u64 mant = b & ((u64{1} << 52) - 1);
    int e = -1074;
    if (biased != 0) {
        mant |= u64{1} << 52;
        e = biased - 1075;
    }
    while ((mant & 1u) == 0) {
        mant >>= 1;
        ++e;
    }
    return {mant, e};
}

enum class IntKind { NotInteger, Odd, Even };

inline IntKind integerKind(double y) noexcept {  // finite y
    const u64 b = detail::bitsOf(y);
    const int biased = static_cast<int>((b >> 52) & 0x7ff);
    if (biased < 1023) return y == 0.0 ? IntKind::Even : IntKind::NotInteger;  // |y| < 1
    const int fractionBits = 1075 - biased;  // mantissa bits below the units
    if (fractionBits < 0) return IntKind::Even;  // |y| >= 2^53
    const u64 mant = (b & ((u64{1} << 52) - 1)) | (u64{1} << 52);
    if ((mant & ((u64{1} << fractionBits) - 1)) != 0) return IntKind::NotInteger;
    return ((mant >> fractionBits) & 1u) ? IntKind::Odd : IntKind::Even;
}

// Whether x^y (x > 0 finite, x != 1, y finite and non-zero) is exactly
// b * 2^q with b odd and b < 2^54 -- every double and every midpoint
// between two doubles is of that form -- and if so that value in *out.
//
// With x = a 2^p and y = c / 2^k (a, c odd or y an integer, k = 0):
// for a = 1, x^y = 2^(p y), exact iff p y is an integer. For a >= 3 an odd
// x^y needs y > 0, a = g^(2^k) and then x^y = g^c 2^(p c / 2^k), so
// b = g^c < 2^54 bounds c <= 34 and k <= 5 (a < 2^53).
inline bool exactPower(double x, double y, wide::Wide* out) noexcept {
    const OddForm xf = oddForm(x), yf = oddForm(y);
    const long long p = xf.exp;
    if (xf.odd == 1) {
        // 2^(p y) with |p y| > 2048 is no finite non-zero double (p != 0).
        if (std::fabs(y) > 2048.0) return false;
        long long q = 0;
        if (yf.exp >= 0) {
            q = p * static_cast<long long>(yf.odd << yf.exp);
        } else {
            if (-yf.exp > 11 || p % (1LL << -yf.exp) != 0) return false;
            q = (p / (1LL << -yf.exp)) * static_cast<long long>(yf.odd);
        }
        if (y < 0.0) q = -q;
        if (q > 2000 || q < -2000) return false;
        *out = wide::ldexp(wide::fromInt(1), static_cast<int>(q));
        return true;
    }
    if (y < 0.0) return false;
    int k = 0;
    u64 c = yf.odd;
    if (yf.exp >= 0) {
        if (yf.exp > 5 || (c << yf.exp) > 34) return false;
        c <<= yf.exp;
    } else {
        k = -yf.exp;
        if (k > 5) return false;
    }
    if (c > 34) return false;
    u64 g = xf.odd;
    for (int i = 0; i < k; ++i) {
        const auto r = static_cast<u64>(std::sqrt(static_cast<double>(g)));  // exact for squares < 2^53
        if (r * r != g) return false;
        g = r;
    }
    u64 b = 1;
    for (u64 i = 0; i < c; ++i) {
        if (b > (u64{1} << 54) / g) return false;
        b *= g;
    }
    const long long pc = p * static_cast<long long>(c);
    if (pc % (1LL << k) != 0) return false;
    const long long q = pc / (1LL << k);
    if (q > 2000 || q < -2000) return false;
    *out = wide::ldexp(wide::fromInt(static_cast<std::int64_t>(b)), static_cast<int>(q));
    return true;
}

// Margin of the fast path's rounding test: at least twice its error bound.
// log x has relative error below 2^-73.5 (so y log x below 2^-73.4 with
// the product), which e^t turns into a relative error below |t| 2^-73.3;
// the exponential adds 2^-68.2.
inline double fastMargin(double t) noexcept { return std::fabs(t) * 0x1p-72 + 0x1p-67; }

// x^y for positive finite x != 1 and finite y not in {0, 1, -1, 2, 1/2}.
inline double positivePow(double x, double y) noexcept {
    int e = 0;
    double m = 1.0;
    detail::splitPositive(x, &e, &m);
    const dd::DD l = detail::logCore(e, m);
    // Far beyond the range first, where y log x may not even be finite.
    const double roughly = l.hi * y;
    if (roughly > 710.0) return kInf;
    if (roughly < -746.0) return 0.0;
    const dd::DD t = dd::mul(l, y);
    if (t.hi > 709.8) return kInf;     // beyond the largest double
    if (t.hi < -745.2) return 0.0;     // below 2^-1075
    if (t.hi >= -708.3) {              // normal result: fast path
        const detail::ExpParts p = detail::expCore(t.hi, t.lo);
        double r = 0.0;
        if (dd::roundsUnambiguously(p.v, fastMargin(t.hi), &r)) return detail::scaleNormal(r, p.n);
    }
    // Exact results and midpoints: no precision decides those.
    wide::Wide exact;
    if (exactPower(x, y, &exact)) return wide::toDouble(exact);
    return detail::powAccurate(x, y);
}

inline double pow(double x, double y) noexcept {
    if (y == 0.0 || x == 1.0) return 1.0;
    if (std::isnan(x) || std::isnan(y)) return x + y;
    const double ax = std::fabs(x);
    if (std::isinf(y)) {
        if (ax == 1.0) return 1.0;  // x == -1
        return (ax < 1.0) == (y < 0.0) ? kInf : 0.0;
    }
    const IntKind kind = integerKind(y);
    const bool odd = kind == IntKind::Odd;
    if (std::isinf(x) || x == 0.0) {
        // x^y is 0 or infinity: infinity when |x| and y are on the same side
        // of 1 and 0; negative x keeps its sign for odd y.
        const double mag = (ax > 1.0) == (y > 0.0) ? kInf : 0.0;
        return odd && std::signbit(x) ? -mag : mag;
    }
    if (x < 0.0 && kind == IntKind::NotInteger) return std::numeric_limits<double>::quiet_NaN();
    // A single correctly rounded operation in these cases.
    if (y == 1.0) return x;
    if (y == 2.0) return x * x;
    if (y == -1.0) return 1.0 / x;
    if (y == 0.5) return std::sqrt(x);  // x > 0 here
    const double r = positivePow(ax, y);
    return x < 0.0 && odd ? -r : r;
}

}  // namespace
}  // namespace Mivora::math::impl::powers

#endif
