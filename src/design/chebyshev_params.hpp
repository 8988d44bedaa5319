// Ripple factor and pole spread shared by the Chebyshev and inverse Chebyshev
// designs. The groupings are the ones the coefficients depend on bit for bit.
#ifndef MIVORA_CHEBYSHEV_PARAMS_HPP
#define MIVORA_CHEBYSHEV_PARAMS_HPP

#include <cmath>

#include "section_math.hpp"

namespace Mivora::design {

// Pass-band ripple in dB to epsilon: sqrt(10^(ripple/10) - 1).
inline double chebyshevEpsilon(double ripple) noexcept {
    return std::sqrt(pow10(ripple / 10.0) - 1.0);
}

// Stop-band level (tenths of a dB above -96 dB) to epsilon, through the
// attenuation As = 96 - stopLevel/10: 1/sqrt(10^(As/10) - 1).
inline double inverseChebyshevEpsilon(double stopLevel) noexcept {
    const double attenuation = 96.0 - stopLevel / 10.0;
    return 1.0 / std::sqrt(pow10(attenuation / 10.0) - 1.0);
}

// asinh(1/eps)/n, through the logarithm rather than std::asinh so that every
// design gets the same last bit.
inline double chebyshevMu(double eps, int n) noexcept {
    const double u = 1.0 / eps;
    return std::log(u + std::sqrt(u * u + 1.0)) / static_cast<double>(n);
}

}  // namespace Mivora::design

#endif
