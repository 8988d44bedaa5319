// Small pieces every design family shares. Each keeps the exact grouping the
// coefficients depend on, so do not "simplify" them.
#ifndef MIVORA_SECTION_MATH_HPP
#define MIVORA_SECTION_MATH_HPP

#include <cmath>

#include "math/cr_math.hpp"

namespace Mivora::design {

inline constexpr double kPi = 3.141592653589793;
inline constexpr double kTwoPi = 6.283185307179586;
inline constexpr double kSqrt2 = 1.4142135623730951;

// Pre-warped frequency tan(freq*pi/fs): the product freq*pi is formed first.
inline double prewarp(double freq, double fs) noexcept { return math::tan((freq * kPi) / fs); }

// 10^(x) with the one power function every design uses.
inline double pow10(double x) noexcept { return math::exp10(x); }

// Linear magnitude of |gainDb| as (10^(|g|/20) - 1) + 1: the subtract-and-add
// is two separate roundings and is kept for exact results.
inline double dbToLinearMagnitude(double gainDb) noexcept {
    return (pow10(std::fabs(gainDb) / 20.0) - 1.0) + 1.0;
}

// Multiplies a section's numerator b0 b1 b2 by g (a gain step or scale).
inline void scaleNumerator(double* c, double g) noexcept {
    c[0] *= g;
    c[1] *= g;
    c[2] *= g;
}

}  // namespace Mivora::design

#endif
