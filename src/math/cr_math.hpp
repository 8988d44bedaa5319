// The elementary functions every design and response query uses, correctly
// rounded (round to nearest, ties to even) for every double argument, so
// that each platform and compiler gives the same bits. Special values follow
// C's Annex F. Internal: not installed, not part of the public interface.
#ifndef MIVORA_CR_MATH_HPP
#define MIVORA_CR_MATH_HPP

namespace Mivora::math {

double exp(double x) noexcept;
double exp10(double x) noexcept;  // 10^x
double log(double x) noexcept;
double log10(double x) noexcept;
double pow(double x, double y) noexcept;
double sinh(double x) noexcept;
double cosh(double x) noexcept;

double sin(double x) noexcept;
double cos(double x) noexcept;
double tan(double x) noexcept;
// sin(x) and cos(x) of one argument, each correctly rounded.
struct SinCos {
    double sin;
    double cos;
};
SinCos sincos(double x) noexcept;
double atan(double x) noexcept;
double atan2(double y, double x) noexcept;

}  // namespace Mivora::math

#endif
