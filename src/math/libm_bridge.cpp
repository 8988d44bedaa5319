// Interim bodies over the C library until our own correctly rounded ones
// replace them; the call sites already go through Mivora::math.
#include "cr_math.hpp"

#include <cmath>

namespace Mivora::math {

double exp(double x) noexcept { return std::exp(x); }
double exp10(double x) noexcept { return std::pow(10.0, x); }
double log(double x) noexcept { return std::log(x); }
double log10(double x) noexcept { return std::log10(x); }
double pow(double x, double y) noexcept { return std::pow(x, y); }
double sinh(double x) noexcept { return std::sinh(x); }
double cosh(double x) noexcept { return std::cosh(x); }
double sin(double x) noexcept { return std::sin(x); }
double cos(double x) noexcept { return std::cos(x); }
double tan(double x) noexcept { return std::tan(x); }
SinCos sincos(double x) noexcept { return {std::sin(x), std::cos(x)}; }
double atan(double x) noexcept { return std::atan(x); }
double atan2(double y, double x) noexcept { return std::atan2(y, x); }

}  // namespace Mivora::math
