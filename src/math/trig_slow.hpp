// Slow paths of the trigonometric functions in 320-bit fixed point, for the
// arguments whose fast double-double result is too close to a rounding
// boundary. Absolute error below 2^-312 before rounding: relative 2^-250 for
// sin, cos and tan (|r| >= 2^-62 for every double), 2^-210 for atan2 (results
// from 2^-101 up; smaller ones are rounded by the argument in slowAtan2).
// That is far beyond the 2^-120 .. 2^-130 that the hardest known double
// cases of sin, cos, tan and atan need, and beyond the roughly 2^-170 a
// two-argument atan2 can be expected to need (2^112 distinct quotients).
#ifndef MIVORA_TRIG_SLOW_HPP
#define MIVORA_TRIG_SLOW_HPP

namespace Mivora::math::trig {

enum class TrigKind { Sin, Cos, Tan };

// Correctly rounded sin, cos or tan of a finite x with |x| >= 2^-27.
double slowTrig(double x, TrigKind kind) noexcept;

// Correctly rounded atan2(y, x) for finite, nonzero y and x.
double slowAtan2(double y, double x) noexcept;

}  // namespace Mivora::math::trig

#endif
