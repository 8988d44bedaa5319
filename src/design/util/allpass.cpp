// All-pass sections held in second-order section 0 (order 2): unity magnitude
// everywhere, only the phase is shaped. The first-order one leaves b2 = a2 = 0.
#include <mivora/IirProcess.h>

#include <cmath>

#include "math/cr_math.hpp"

#include "../section_math.hpp"

namespace Mivora {

namespace {

double angular(double freq, double fs) noexcept { return (freq * design::kTwoPi) / fs; }

}  // namespace

// (k + z^-1) / (1 + k z^-1), k = (sin w - 1) / cos w: phase -pi/2 at freq.
void IirProcess::setAPF1st(double freq, double fs) noexcept {
    changeOrder(2);
    const double w = angular(freq, fs);
    const math::SinCos sc = math::sincos(w);
    const double k = (sc.sin - 1.0) / sc.cos;
    writeSection(0, k, 1.0, 0.0, -k, 0.0);
}

// (-a - c(1 - a) z^-1 + z^-2) / (1 - c(1 - a) z^-1 - a z^-2): phase +-pi at
// freq. c = cos w places the centre; a = (t - 1)/(t + 1) on the pre-warped
// axis sets the width and equals setAPF1st's k at the same freq.
void IirProcess::setAPF2nd(double freq, double fs) noexcept {
    changeOrder(2);
    const double c = math::cos(angular(freq, fs));
    const double t = design::prewarp(freq, fs);
    const double a = (t - 1.0) / (t + 1.0);
    const double ca = c * a;
    writeSection(0, -a, ca - c, 1.0, c - ca, a);
}

}  // namespace Mivora
