// The bilinear transform of the factors the EQ sections are made of, on the
// pre-warped axis: each factor is multiplied through by t*(1 + z^-1) (first
// order) or t^2*(1 + z^-1)^2 (second order) and kept as its raw z terms, and a
// section is the quotient of two of them normalised by the denominator's z^0
// term. Every grouping here is what the coefficients' last bits depend on.
#ifndef MIVORA_EQ_BILINEAR_TERMS_HPP
#define MIVORA_EQ_BILINEAR_TERMS_HPP

#include <array>

namespace Mivora::design::eq {

// b0 b1 b2 a1 a2, feedback coefficients with the stored (added) sign.
using SectionCoefs = std::array<double, 5>;

// A first-order factor p*(1 - z^-1) + q*(1 + z^-1): its z^0 term p + q and
// the negated z^-1 term p - q.
struct Factor {
    double sum;
    double diff;
};

inline Factor factor(double p, double q) noexcept { return {p + q, p - q}; }

// The factor g*((1 - z^-1) + x*(1 + z^-1)) with the gain applied after the
// sum and difference are formed, not to each part.
inline Factor scaledFactor(double g, double x) noexcept { return {g * (x + 1.0), g * (1.0 - x)}; }

// num/den as a second-order section with b2 = a2 = 0.
inline SectionCoefs firstOrderSection(Factor num, Factor den) noexcept {
    const double d = den.sum;
    return {num.sum / d, -num.diff / d, 0.0, den.diff / d, 0.0};
}

// A quadratic whose transform has the terms x0, -2*x1, x2 for z^0, z^-1,
// z^-2, from its linear part lin (damping times natural frequency times t)
// and its square part sq (natural frequency squared times t^2). x2neg is -x2
// computed directly, the sign a denominator stores it with.
struct Quadratic {
    double x0;
    double x1;
    double x2;
    double x2neg;
};

inline Quadratic quadratic(double lin, double sq) noexcept {
    return {(lin + 1.0) + sq, 1.0 - sq, (1.0 - lin) + sq, (lin - 1.0) - sq};
}

}  // namespace Mivora::design::eq

#endif
