#include "low_pass_prototype.hpp"

#include <algorithm>
#include <cmath>

#include "../chebyshev_params.hpp"
#include "../section_math.hpp"

namespace Mivora::design {

namespace {

// Pole pair i (odd, i < n) of the Chebyshev prototype, sigma +- j*omega with
// theta = i*pi/(2n); i = 1 is the pair nearest the imaginary axis.
struct ChebyshevPair {
    Quadratic poles;
    double cosTheta;
};

ChebyshevPair chebyshevPair(int i, int n, double sinhMu, double coshMu) noexcept {
    const double theta = (static_cast<double>(i) * kPi) / static_cast<double>(2 * n);
    const double cosTheta = std::cos(theta);
    const double sigma = std::sin(theta) * (-sinhMu);
    const double omega = cosTheta * coshMu;
    return {{sigma * (-2.0), sigma * sigma + omega * omega}, cosTheta};
}

// Nothing past the object's two sections: protoOrder 3 or more builds 2.
int clampProtoOrder(int protoOrder) noexcept { return std::clamp(protoOrder, 0, IirProcess::maxProtoOrder); }

int factorCount(const LowPassPrototype& p) noexcept { return p.order / 2; }

}  // namespace

LowPassPrototype butterworthPrototype(int order) noexcept {
    LowPassPrototype p;
    p.order = clampProtoOrder(order);
    for (int k = 0; k < factorCount(p); ++k) {
        const double theta = (static_cast<double>(p.order + 1 + 2 * k) * kPi) / static_cast<double>(2 * p.order);
        p.factors[k] = {{std::cos(theta) * (-2.0), 1.0}, 1.0, false, 0.0};
    }
    p.realPole = 1.0;
    return p;
}

LowPassPrototype chebyshevPrototype(int order, double ripple) noexcept {
    LowPassPrototype p;
    p.order = clampProtoOrder(order);
    if (p.order == 0) return p;
    const double eps = chebyshevEpsilon(ripple);
    const double mu = chebyshevMu(eps, p.order);
    const double sinhMu = std::sinh(mu);
    const double coshMu = std::cosh(mu);
    for (int k = 0; k < factorCount(p); ++k) {
        const Quadratic poles = chebyshevPair(2 * k + 1, p.order, sinhMu, coshMu).poles;
        // p2/(s^2 + p1*s + p2): unit gain at 0.
        p.factors[k] = {poles, poles.cst, false, 0.0};
    }
    p.realPole = sinhMu;
    // Even orders peak at 0 dB before the step; it lowers them to the ripple floor.
    p.hasGainStep = true;
    p.stepGain = 1.0 / std::sqrt(eps * eps + 1.0);
    return p;
}

LowPassPrototype inverseChebyshevPrototype(int order, double stopLevel) noexcept {
    LowPassPrototype p;
    p.order = clampProtoOrder(order);
    if (p.order == 0) return p;
    const double mu = chebyshevMu(inverseChebyshevEpsilon(stopLevel), p.order);
    const double sinhMu = std::sinh(mu);
    const double coshMu = std::cosh(mu);
    for (int k = 0; k < factorCount(p); ++k) {
        const ChebyshevPair pair = chebyshevPair(2 * k + 1, p.order, sinhMu, coshMu);
        // Zeros at +-j/cos(theta), at or beyond the stop-band edge 1; the gain
        // 1/(z*p2) is the unit-gain-at-0 scale with q2 written as 1/p2.
        const double zero = 1.0 / (pair.cosTheta * pair.cosTheta);
        p.factors[k] = {inverted(pair.poles), 1.0 / (zero * pair.poles.cst), true, zero};
    }
    p.realPole = 1.0 / sinhMu;
    return p;
}

}  // namespace Mivora::design
