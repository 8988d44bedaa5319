#include "low_pass_prototype.hpp"

#include <algorithm>
#include <cmath>

#include "math/cr_math.hpp"

#include "../chebyshev_params.hpp"
#include "../section_math.hpp"

namespace Mivora::design::band {

namespace {

// The pair's factor s^2 - 2*sigma*s + p2.
Quadratic polesOf(const ChebyshevPair& pair) noexcept { return {pair.sigma * (-2.0), pair.p2}; }

// Nothing past the object's two sections: protoOrder 3 or more builds 2.
int clampProtoOrder(int protoOrder) noexcept { return std::clamp(protoOrder, 0, IirProcess::maxProtoOrder); }

int factorCount(const LowPassPrototype& p) noexcept { return p.order / 2; }

}  // namespace

LowPassPrototype butterworthLowPass(int order) noexcept {
    LowPassPrototype p;
    p.order = clampProtoOrder(order);
    for (int k = 0; k < factorCount(p); ++k) {
        const double theta = (static_cast<double>(p.order + 1 + 2 * k) * kPi) / static_cast<double>(2 * p.order);
        p.factors[k] = {{math::cos(theta) * (-2.0), 1.0}, 1.0, false, 0.0};
    }
    p.realPole = 1.0;
    return p;
}

LowPassPrototype chebyshevLowPass(int order, double ripple) noexcept {
    LowPassPrototype p;
    p.order = clampProtoOrder(order);
    if (p.order == 0) return p;
    const double eps = rippleEpsilon(ripple);
    const ChebyshevPrototype proto = chebyshevPrototype(eps, p.order);
    for (int k = 0; k < factorCount(p); ++k) {
        const Quadratic poles = polesOf(chebyshevPair(proto, k));
        // p2/(s^2 + p1*s + p2): unit gain at 0.
        p.factors[k] = {poles, poles.cst, false, 0.0};
    }
    p.realPole = -proto.negSinhMu;
    // Even orders peak at 0 dB before the step; it lowers them to the ripple floor.
    p.hasGainStep = true;
    p.stepGain = chebyshevEvenOrderGain(eps);
    return p;
}

LowPassPrototype inverseChebyshevLowPass(int order, double stopLevel) noexcept {
    LowPassPrototype p;
    p.order = clampProtoOrder(order);
    if (p.order == 0) return p;
    const ChebyshevPrototype proto = chebyshevPrototype(stopEpsilon(stopLevel), p.order);
    for (int k = 0; k < factorCount(p); ++k) {
        const ChebyshevPair pair = chebyshevPair(proto, k);
        const Quadratic poles = polesOf(pair);
        // Zeros at +-j/cos(theta), at or beyond the stop-band edge 1; the gain
        // 1/(z*p2) is the unit-gain-at-0 scale with q2 written as 1/p2.
        const double zero = 1.0 / (pair.cosPhi * pair.cosPhi);
        p.factors[k] = {inverted(poles), 1.0 / (zero * poles.cst), true, zero};
    }
    p.realPole = 1.0 / (-proto.negSinhMu);
    return p;
}

}  // namespace Mivora::design::band
