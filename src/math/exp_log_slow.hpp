// Accurate paths of the exp/log family in 256-bit arithmetic, for the rare
// arguments the double-double fast paths cannot round with certainty.
#ifndef MIVORA_EXP_LOG_SLOW_HPP
#define MIVORA_EXP_LOG_SLOW_HPP

#include "wide_float.hpp"

namespace Mivora::math::detail {

// e^t for |t| < 750: relative error below 2^-236.
wide::Wide wideExp(const wide::Wide& t) noexcept;

// log(x) for a positive finite double x: relative error below 2^-245.
wide::Wide wideLog(double x) noexcept;

// The accurate paths of pow and sinh/cosh, rounded to double.
// x^y for x > 0 with |y log x| < 746 (not for exact powers: see pow_impl.hpp).
double powAccurate(double x, double y) noexcept;
// (e^ax - e^-ax)/2 (difference) or (e^ax + e^-ax)/2, 2^-26 <= ax < 711.
double hyperbolicAccurate(double ax, bool difference) noexcept;

}  // namespace Mivora::math::detail

#endif
