// 256-bit exp and log; see exp_log_slow.hpp.
//
// Why 2^-236 suffices: rounding the result to double goes wrong only if
// the exact value lies within that distance (relative) of a midpoint
// between two doubles. The exhaustive worst-case searches for exp, log and
// their base-10 forms over all doubles find no value closer than about
// 2^-(53+67); exact midpoints only arise for the arguments the callers
// treat exactly (exp(0), log(1), pow's exact powers).
#include "exp_log_slow.hpp"

#include "exp_log_tables.hpp"

namespace Mivora::math::detail {

using wide::Wide;

Wide wideExp(const Wide& t) noexcept {
    // t = k ln2 + r, |r| <= ln2/2 (+ a little); k*ln2 has error below
    // 2^11 * 2^-256 and the subtraction truncates below 2^-244.
    const double kd = static_cast<double>(wide::nearestInt(wide::mul(t, wide::fromDouble(1.4426950408889634))));
    const auto k = static_cast<int>(kd);
    const Wide r = wide::sub(t, wide::mul(wide::fromInt(k), tables::kWideLn2));
    // e^r = (e^s)^256 with s = r/256, |s| < 2^-9.5: Taylor to s^20 leaves
    // a truncation below 2^-265; 20 terms of truncating operations keep the
    // sum within 2^-249, and the eight squarings multiply that by 2^8.
    const Wide s = wide::ldexp(r, -8);
    Wide term = wide::fromInt(1);
    Wide sum = term;
    for (std::uint32_t n = 1; n <= 20; ++n) {
        term = wide::divSmall(wide::mul(term, s), n);
        sum = wide::add(sum, term);
    }
    for (int i = 0; i < 8; ++i) sum = wide::mul(sum, sum);
    return wide::ldexp(sum, k);
}

Wide wideLog(double x) noexcept {
    // x = f * 2^e with f in [1/sqrt2, sqrt2): log x = e ln2 + log f, and
    // log f = 2 atanh(s), s = (f-1)/(f+1), |s| < 0.1716: 55 odd terms leave
    // a truncation below 2^-270 |s|. No cancellation: |log x| >= 0.34 when
    // e != 0.
    Wide f = wide::fromDouble(x);
    int e = f.exp;
    f.exp = 0;  // f in [1/2, 1)
    if (f.m[0] < 0xb504f333f9de6484u) {  // f < 1/sqrt2: use 2f
        f.exp = 1;
        e -= 1;
    }
    const Wide one = wide::fromInt(1);
    const Wide s = wide::div(wide::sub(f, one), wide::add(f, one));
    const Wide s2 = wide::mul(s, s);
    Wide power = s;
    Wide sum = s;
    for (std::uint32_t k = 1; k <= 55; ++k) {
        power = wide::mul(power, s2);
        sum = wide::add(sum, wide::divSmall(power, 2 * k + 1));
    }
    sum = wide::ldexp(sum, 1);
    if (e == 0) return sum;
    return wide::add(wide::mul(wide::fromInt(e), tables::kWideLn2), sum);
}

// Relative error below 2^-228: log x within 2^-245, the product by y
// exact before its truncation, so t = y log x within 2^-244 relative and
// 2^-235.5 absolute (|t| < 746); e^t adds 2^-236.
double powAccurate(double x, double y) noexcept {
    return wide::toDouble(wideExp(wide::mul(wideLog(x), wide::fromDouble(y))));
}

// Relative error below 2^-208: e^ax within 2^-236, and the difference
// loses at most 28 bits for ax >= 2^-26.
double hyperbolicAccurate(double ax, bool difference) noexcept {
    const Wide e = wideExp(wide::fromDouble(ax));
    const Wide inv = wide::div(wide::fromInt(1), e);
    const Wide s = difference ? wide::sub(e, inv) : wide::add(e, inv);
    return wide::toDouble(wide::ldexp(s, -1));
}

}  // namespace Mivora::math::detail
