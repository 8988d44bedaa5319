// Chebyshev and inverse-Chebyshev prototype pieces that the cut and band
// families share. Each keeps the grouping the coefficients depend on, so do
// not "simplify" them (std::asinh, for one, rounds differently from the
// logarithm used here).
#ifndef MIVORA_CHEBYSHEV_PARAMS_HPP
#define MIVORA_CHEBYSHEV_PARAMS_HPP

#include <cmath>

#include "math/cr_math.hpp"

#include "section_math.hpp"

namespace Mivora::design {

// Pass-band ripple factor eps = sqrt(10^(ripple/10) - 1), ripple in dB (> 0).
inline double rippleEpsilon(double rippleDb) noexcept { return std::sqrt(pow10(rippleDb / 10.0) - 1.0); }

// Stop-band attenuation As = 96 - stopLevel/10 dB; stopLevel counts tenths
// of a dB above -96 dB.
inline double stopAttenuationDb(double stopLevel) noexcept { return 96.0 - stopLevel / 10.0; }

// Stop-band factor eps = 1/sqrt(10^(As/10) - 1) of the inverse Chebyshev
// designs; stopLevel 960 (As = 0) makes it infinite.
inline double stopEpsilon(double stopLevel) noexcept {
    return 1.0 / std::sqrt(pow10(stopAttenuationDb(stopLevel) / 10.0) - 1.0);
}

// mu = asinh(1/eps)/n, through the logarithm. n = 0 gives an infinite mu.
inline double chebyshevMu(double epsilon, int n) noexcept {
    const double u = 1.0 / epsilon;
    return math::log(u + std::sqrt(u * u + 1.0)) / static_cast<double>(n);
}

// Gain that lowers an even-order Chebyshev pass band from [0, ripple] dB above
// its troughs to [-ripple, 0] dB: 1/sqrt(eps^2 + 1) = 10^(-ripple/20).
inline double chebyshevEvenOrderGain(double epsilon) noexcept { return 1.0 / std::sqrt(epsilon * epsilon + 1.0); }

// The order-n prototype: mu and the two hyperbolic values every pole pair
// uses, formed once per design.
struct ChebyshevPrototype {
    int n;
    double mu;
    double negSinhMu;  // -sinh(mu): the pole's real part per unit sin(phi)
    double coshMu;
};

inline ChebyshevPrototype chebyshevPrototype(double epsilon, int n) noexcept {
    const double mu = chebyshevMu(epsilon, n);
    return {n, mu, -math::sinh(mu), math::cosh(mu)};
}

// One conjugate pole pair sigma +- i*omega of the prototype, at the angle
// phi = (2k+1)*pi/(2n) from the imaginary axis. Pair 0 lies nearest the
// axis (highest Q). The inverse Chebyshev prototype puts its zeros at
// +-i/cosPhi and its poles at the reciprocals of these.
struct ChebyshevPair {
    double cosPhi;
    double sigma;  // negative for a stable prototype
    double omega;
    double p2;     // squared magnitude sigma^2 + omega^2
};

inline ChebyshevPair chebyshevPair(const ChebyshevPrototype& proto, int k) noexcept {
    const double phi = (static_cast<double>(2 * k + 1) * kPi) / static_cast<double>(2 * proto.n);
    const math::SinCos sc = math::sincos(phi);
    const double c = sc.cos;
    const double sigma = sc.sin * proto.negSinhMu;
    const double omega = c * proto.coshMu;
    return {c, sigma, omega, sigma * sigma + omega * omega};
}

}  // namespace Mivora::design

#endif
