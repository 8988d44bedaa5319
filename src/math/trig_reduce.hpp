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
ReducedFast reduceFastHuge(double ax) noexcept;  // ax >= 2^20

// Slow reduction: |r| in fixed point with absolute error below 2^-315, its
// sign, and the quadrant. r == ax exactly when ax < pi/4.
struct ReducedWide {
    int quadrant;
    bool negative = false;
    Fixed r;
};
ReducedWide reduceWide(double ax) noexcept;

namespace {  // internal linkage: see entry_points_x86_fma.cpp

// Below 2^20, Cody-Waite with pi/2 = P1 + P2 + P3 + P4 (error 2^-160), P1 to
// P3 of 33 bits so that k Pj is exact for the quotient k < 2^20. ax - k P1
// is exact (Sterbenz: ax / (k P1) lies in [1/2, 3/2]); the subtractions of
// k P2 and k P3 are exact two-sums. Left: the rounded sum of their two low
// parts (each below 2^-53 of the running value) and k P4 (below 2^-84,
// rounding 2^-137), so r errs by under 2^-104 |r| + 2^-130 absolute.
inline ReducedFast reduceFast(double ax) noexcept {
    if (ax <= 0x1.921fb54442d18p-1) return {0, {ax, 0.0}};  // below pi/4: r = x
    if (ax >= 0x1p20) return reduceFastHuge(ax);
    const double k = (ax * kTwoOverPiD + 0x1.8p52) - 0x1.8p52;  // nearest integer
    const double s = ax - k * kPio2P1;
    const DD v = dd::twoSum(s, -(k * kPio2P2));
    const DD w = dd::twoSum(v.hi, -(k * kPio2P3));
    const double lo = (v.lo + w.lo) - k * kPio2P4;
    const int q = static_cast<int>(static_cast<std::int64_t>(k) & 3);
    return {q, dd::fastTwoSum(w.hi, lo)};
}

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

}  // namespace

}  // namespace Mivora::math::trig

#endif
