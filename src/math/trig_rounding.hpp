// Steps shared by the trigonometric fast paths: the exact remainder of a
// division and the nearest table step.
#ifndef MIVORA_TRIG_ROUNDING_HPP
#define MIVORA_TRIG_ROUNDING_HPP

#include <cmath>

#include "double_double.hpp"

namespace Mivora::math::trig {

using dd::DD;

namespace {  // internal linkage: see entry_points_x86_fma.cpp

// n - q d exactly, for q = n / d rounded (barring underflow): the remainder
// of a correctly rounded quotient is representable, and n - p.hi is exact by
// Sterbenz's lemma since q d lies within a factor two of n.
inline double divisionRemainder(double n, double q, double d) noexcept {
    const DD p = dd::twoProd(q, d);
    return (n - p.hi) - p.lo;
}

// The integer nearest to 0 <= v < 2^51 (ties to even).
inline int nearestInt(double v) noexcept { return static_cast<int>((v + 0x1.8p52) - 0x1.8p52); }

}  // namespace

}  // namespace Mivora::math::trig

#endif
