// The list of the correctly rounded functions with the family that
// implements each, from which both builds of their entry points are written.
#ifndef MIVORA_MATH_ENTRY_POINTS_HPP
#define MIVORA_MATH_ENTRY_POINTS_HPP

#include "cr_math.hpp"

// X(result, name, (parameters), (arguments), family in Mivora::math::impl)
#define MIVORA_MATH_FUNCTIONS(X)                         \
    X(double, exp, (double x), (x), explog)              \
    X(double, exp10, (double x), (x), explog)            \
    X(double, log, (double x), (x), explog)              \
    X(double, log10, (double x), (x), explog)            \
    X(double, pow, (double x, double y), (x, y), powers) \
    X(double, sinh, (double x), (x), hyperbolic)         \
    X(double, cosh, (double x), (x), hyperbolic)         \
    X(double, sin, (double x), (x), sincostan)           \
    X(double, cos, (double x), (x), sincostan)           \
    X(double, tan, (double x), (x), sincostan)           \
    X(SinCos, sincos, (double x), (x), sincostan)        \
    X(double, atan, (double x), (x), arctan)             \
    X(double, atan2, (double y, double x), (y, x), arctan)

#if defined(MIVORA_HAVE_X86_FMA_MATH)
// The same functions built with FMA3 (entry_points_x86_fma.cpp), for CPUs
// that have it: the exact products of the fast paths take one instruction
// there instead of Dekker's splitting. Same results, bit for bit.
namespace Mivora::math::x86fma {
#define MIVORA_MATH_DECLARE(R, name, params, args, family) R name params noexcept;
MIVORA_MATH_FUNCTIONS(MIVORA_MATH_DECLARE)
#undef MIVORA_MATH_DECLARE
}  // namespace Mivora::math::x86fma
#endif

#endif
