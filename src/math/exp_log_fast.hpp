// Fast paths of the exp/log family in double-double arithmetic, with their
// proven error bounds, and the rounding test that decides whether such a
// result can be rounded without knowing it better.
//
// Default rounding mode (round to nearest, ties to even) assumed throughout,
// as by every function of Mivora::math.
#ifndef MIVORA_EXP_LOG_FAST_HPP
#define MIVORA_EXP_LOG_FAST_HPP

#include <cfloat>
#include <cstdint>
#include <cstring>

#include "double_double.hpp"
#include "exp_log_tables.hpp"

// Every double operation must round to double once (no x87 extended
// precision), or the error-free transformations are not error-free.
static_assert(FLT_EVAL_METHOD == 0, "double arithmetic must be evaluated in double precision");

namespace Mivora::math::detail {

// e^(xh + xl) = 2^n * v, v.hi in about [0.7, 1.5].
struct ExpParts {
    dd::DD v;
    int n;
};

namespace {  // internal linkage: see entry_points_x86_fma.cpp

inline std::uint64_t bitsOf(double x) noexcept {
    std::uint64_t b = 0;
    std::memcpy(&b, &x, sizeof b);
    return b;
}

inline double fromBits(std::uint64_t b) noexcept {
    double x = 0.0;
    std::memcpy(&x, &b, sizeof x);
    return x;
}

// 2^n for -1022 <= n <= 1023.
inline double twoPow(int n) noexcept { return fromBits(static_cast<std::uint64_t>(n + 1023) << 52); }

// x * 2^n for a result in the normal range, or overflowing to infinity
// (then correctly: x is already rounded to 53 bits). n >= -1022.
inline double scaleNormal(double x, int n) noexcept {
    if (n > 1023) {
        x *= twoPow(1023);
        n -= 1023;
    }
    return x * twoPow(n);
}

// e^(xh + xl) for |xh| <= 746, |xl| <= 2^-40: relative error below 2^-68.2.
//
// Reduction: k = nearest(xh * 128/ln2), r = xh + xl - k*ln2/128, with
// ln2/128 split in three so that k*Hi and k*Mid are exact (|k| < 2^18) and
// both subtractions are error-free sums; |r| <= 0.00271 and r is known to
// within 2^-90 absolute. e^(xh+xl) = 2^(k>>7) * 2^((k&127)/128) * e^r.
// e^r = 1 + rh + (rl + rh*rl + q(rh)), q the Taylor terms of degree 2..6 in
// double: truncation below 2^-71.9, rounding in q below 2^-69.4, in the low
// sums below 2^-70: 2^-68.3 in all relative to e^r >= 0.997. The table
// entry (error 2^-106) and the double-double product (2^-102) add nothing
// visible.
inline ExpParts expCore(double xh, double xl) noexcept {
    using namespace tables;
    constexpr double kShifter = 0x1.8p52;  // rounds to an integer on adding
    const double kd = (xh * k128ByLn2 + kShifter) - kShifter;
    const int k = static_cast<int>(kd);
    const dd::DD a = dd::twoSum(xh, -kd * kLn2By128Hi);
    const dd::DD s = dd::twoSum(a.hi, -kd * kLn2By128Mid);
    const double lo = ((s.lo + a.lo) + xl) - kd * kLn2By128Lo;
    const dd::DD r = dd::twoSum(s.hi, lo);
    const double rh = r.hi;
    const double q = rh * rh *
                     (kExpCoef[0] + rh * (kExpCoef[1] + rh * (kExpCoef[2] + rh * (kExpCoef[3] + rh * kExpCoef[4]))));
    dd::DD e = dd::fastTwoSum(1.0, rh);
    e.lo += (rh * r.lo + r.lo) + q;
    const int j = k & 127;
    const dd::DD v = dd::mul(kExp2Table[j], dd::normalize(e));
    return {v, (k - j) / 128};
}

// log(x) for a positive normal x given as x = 2^e * m, m in [1, 2):
// relative error below 2^-73.5.
//
// log x = e*ln2 - log(r_i) + log1p(z), r_i from the top 8 bits of m with 9
// significant bits, z = m*r_i - 1 exact in double: with m = mh + ml, mh
// the top 44 bits, mh*r_i and ml*r_i are exact, mh*r_i - 1 is exact by
// Sterbenz, and z, a multiple of 2^-61 below 2^-8, is representable.
// |z| < 2^-8.45 except next to 1, where |z| < 2^-8. log1p(z) = z - z^2/2 +
// z^3/3 + z^4 Q(z), Q of degree 5 in double: truncation below 2^-75.3 |z|,
// rounding in the z^4 term below 2^-76.7 |z|, the lower terms in double-
// double: below 2^-74.5 |z| together. Next to 1 (r_i = 1, or r_i = 1/2 with
// e = -1) e*ln2 - log(r_i) is exactly 0 and log x = log1p(z); elsewhere
// |log x| >= 2^-9 while the absolute error stays below 2^-82.9 (2^-74.5
// |z| plus 2^-94 from the table and e*ln2 with ln2 to 2^-96).
inline dd::DD logCore(int e, double m) noexcept {
    using namespace tables;
    const std::uint64_t mb = bitsOf(m);
    const int i = static_cast<int>((mb >> 44) & 255);
    const double ri = kLogRecip[i];
    const double mh = fromBits(mb & ~std::uint64_t{511});
    const double z = (mh * ri - 1.0) + (m - mh) * ri;
    const dd::DD sq = dd::twoProd(z, z);
    const dd::DD third = dd::mul(dd::mul(sq, z), kThird);
    const double z4 = sq.hi * sq.hi;
    const double qz = z4 * (kLog1pCoef[0] + z * (kLog1pCoef[1] + z * (kLog1pCoef[2] +
                           z * (kLog1pCoef[3] + z * (kLog1pCoef[4] + z * kLog1pCoef[5])))));
    // High parts exactly, then the small remainders.
    const dd::DD h1 = dd::fastTwoSum(z, -0.5 * sq.hi);
    const dd::DD h2 = dd::fastTwoSum(h1.hi, third.hi);
    const double rest = h2.lo + ((h1.lo - 0.5 * sq.lo) + (third.lo + qz));
    const dd::DD l1p = dd::fastTwoSum(h2.hi, rest);
    // e*ln2 - log(r_i): e*hi is exact (hi has 42 bits) and not below
    // -log(r_i) in magnitude (or zero), so the high parts add exactly; for
    // e = -1, r_i = 1/2 the table holds the same split and the sum is 0.
    const double ed = static_cast<double>(e);
    const dd::DD& t = kLogMinusLogRecip[i];
    dd::DD c = dd::fastTwoSum(ed * kLn2Split.hi, t.hi);
    c.lo += ed * kLn2Split.lo + t.lo;
    // c + log1p(z): at most a factor 3 of cancellation (|log x| >= 2^-9
    // unless c = 0, |log1p(z)| < 2^-8), so summing the low parts plainly
    // (c.lo up to |e| 2^-44) costs below 2^-94 relative.
    dd::DD s = dd::twoSum(c.hi, l1p.hi);
    s.lo += c.lo + l1p.lo;
    return dd::fastTwoSum(s.hi, s.lo);
}

// Splits a positive finite x into x = 2^e * m, m in [1, 2).
inline void splitPositive(double x, int* e, double* m) noexcept {
    std::uint64_t b = bitsOf(x);
    int biased = static_cast<int>(b >> 52);
    int adjust = 0;
    if (biased == 0) {  // subnormal: scale into the normal range first
        b = bitsOf(x * 0x1p54);
        biased = static_cast<int>(b >> 52);
        adjust = 54;
    }
    *e = biased - 1023 - adjust;
    *m = fromBits((b & ((std::uint64_t{1} << 52) - 1)) | (std::uint64_t{1023} << 52));
}

}  // namespace

}  // namespace Mivora::math::detail

#endif
