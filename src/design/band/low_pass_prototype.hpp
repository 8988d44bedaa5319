// Analogue low-pass prototypes of the band designs, as the band
// transformation consumes them: one entry per conjugate pole pair, plus the
// real pole of an odd order.
#ifndef MIVORA_LOW_PASS_PROTOTYPE_HPP
#define MIVORA_LOW_PASS_PROTOTYPE_HPP

#include <mivora/IirProcess.h>

namespace Mivora::design::band {

// s^2 + lin*s + cst.
struct Quadratic {
    double lin;
    double cst;
};

// The same factor with s replaced by 1/s (and normalised): its roots are the
// reciprocals of the original ones.
inline Quadratic inverted(Quadratic q) noexcept { return {q.lin / q.cst, 1.0 / q.cst}; }

// One conjugate pole pair with unit gain at 0: gain/(poles), or, when
// hasZeros, gain*(s^2 + zero)/(poles).
struct PrototypeFactor {
    Quadratic poles;
    double gain;
    bool hasZeros;
    double zero;
};

struct LowPassPrototype {
    int order = 0;  // within [0, maxProtoOrder]
    PrototypeFactor factors[IirProcess::maxProtoOrder / 2] = {};  // highest Q first
    double realPole = 0.0;  // odd orders: the factor realPole/(s + realPole)
    // Even orders: section 0's numerator is finally multiplied by stepGain.
    bool hasGainStep = false;
    double stepGain = 1.0;
};

// Each builder clamps order into [0, maxProtoOrder] and fills factors 0 to
// order/2 - 1.
// Butterworth: factor k is s^2 - 2cos(theta)s + 1 with theta = (n+1+2k)pi/(2n).
LowPassPrototype butterworthLowPass(int order) noexcept;
// Chebyshev with pass-band ripple in dB; even orders step down to -ripple dB.
LowPassPrototype chebyshevLowPass(int order, double ripple) noexcept;
// Inverse Chebyshev with stopLevel in tenths of a dB above -96 dB; the poles
// are the reciprocals of the Chebyshev ones, with zeros at +-j/cos(theta).
LowPassPrototype inverseChebyshevLowPass(int order, double stopLevel) noexcept;

}  // namespace Mivora::design::band

#endif
