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

}  // namespace Mivora::math
