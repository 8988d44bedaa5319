// Argument reduction for sin, cos and tan: x = q * pi/2 + r with |r| <= pi/4
// (plus rounding), exact enough that no argument loses accuracy however large
// it is or however close to a multiple of pi/2 it lies.
#ifndef MIVORA_TRIG_REDUCE_HPP
#define MIVORA_TRIG_REDUCE_HPP

#include "trig_rounding.hpp"
#include "trig_fixed.hpp"

namespace Mivora::math::trig {

// Fast reduction of ax = |x| (finite, > 0): quadrant q mod 4 and r as a
// double-double with absolute error below 2^-103 (and below 2^-100 |r| once
// |r| >= 2^-26), so callers accept it only for |r| >= 2^-25 unless q == 0
// (then r == ax exactly).
struct ReducedFast {
    int quadrant;
    DD r;
};
ReducedFast reduceFastHuge(double ax) noexcept;  // ax >= 2^27

// Below 2^27, Cody-Waite with pi/2 = P1 + P2 + P3 (error 2^-164) and the
// products k P1, k P2 exact: with |k| < 2^27 every term left after the exact
// two-sums is below 2^-53, so the four rounded additions of the low part err
// by under 2^-104, k P3 by 2^-135 and the truncation of pi/2 by 2^-137.
inline ReducedFast reduceFast(double ax) noexcept {
    if (ax <= 0x1.921fb54442d18p-1) return {0, {ax, 0.0}};  // below pi/4: r = x
    if (ax >= 0x1p27) return reduceFastHuge(ax);
    const double t = ax * kTwoOverPiD;
    const double k = (t + 0x1.8p52) - 0x1.8p52;  // nearest integer
    const DD p1 = dd::twoProd(k, kPio2P1);
    const DD s = dd::twoSum(ax, -p1.hi);
    const DD v1 = dd::twoSum(s.hi, -p1.lo);
    const DD p2 = dd::twoProd(k, kPio2P2);
    const DD v2 = dd::twoSum(v1.hi, -p2.hi);
    const double lo = (((s.lo + v1.lo) + v2.lo) - p2.lo) - k * kPio2P3;
    const int q = static_cast<int>(static_cast<std::int64_t>(k) & 3);
    return {q, dd::twoSum(v2.hi, lo)};
}

// Slow reduction: |r| in fixed point with absolute error below 2^-315, its
// sign, and the quadrant. r == ax exactly when ax < pi/4.
struct ReducedWide {
    int quadrant;
    bool negative = false;
    Fixed r;
};
ReducedWide reduceWide(double ax) noexcept;

// ax = m * 2^e with 2^52 <= m < 2^53 (subnormals normalised too); ax > 0.
inline void decompose(double ax, std::uint64_t& m, int& e) noexcept {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &ax, sizeof bits);
    const int biased = static_cast<int>((bits >> 52) & 0x7ff);
    m = bits & ((std::uint64_t{1} << 52) - 1);
    if (biased == 0) {
        e = -1074;
        while (m < (std::uint64_t{1} << 52)) {
            m <<= 1;
            --e;
        }
    } else {
        m |= std::uint64_t{1} << 52;
        e = biased - 1075;
    }
}

// 2^n as a double for -1022 <= n <= 1023.
inline double pow2(int n) noexcept {
    const std::uint64_t bits = static_cast<std::uint64_t>(n + 1023) << 52;
    double r = 0.0;
    std::memcpy(&r, &bits, sizeof r);
    return r;
}

}  // namespace Mivora::math::trig

#endif
