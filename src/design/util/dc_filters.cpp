// One-pole DC filters in the first-order section (order 1). The corner form is
// the coefficient form with alpha = 1 - p, p = exp(-2*pi*freq/fs), so both
// write the same coefficients. Neither touches the first-order state: a
// retune continues from it.
#include <mivora/IirProcess.h>

#include <cmath>

#include "math/cr_math.hpp"

#include "../section_math.hpp"

namespace Mivora {

namespace {

// 1 - p for the pole p = exp(-2*pi*freq/fs); the product is grouped as
// ((freq * -2) * pi) / fs, which the coefficients depend on bit for bit.
double alphaOfCorner(double freq, double fs) noexcept {
    return 1.0 - math::exp(((freq * -2.0) * design::kPi) / fs);
}

}  // namespace

// y = alpha*x + (1 - alpha)*y1: unity gain at DC.
void IirProcess::setDcfLPF(double alpha) noexcept {
    changeOrder(1);
    writeFirstOrder(alpha, 0.0, 1.0 - alpha);
}

void IirProcess::setDcfLPF(double freq, double fs) noexcept { setDcfLPF(alphaOfCorner(freq, fs)); }

// y = g*(x - x1) + g*y1 with g = 1 - alpha/2: the zero at DC removes it
// exactly, the pole sits at g (not at the low-pass pole 1 - alpha).
void IirProcess::setDcfHPF(double alpha) noexcept {
    changeOrder(1);
    const double g = (alpha * -0.5) + 1.0;
    writeFirstOrder(g, -g, g);
}

void IirProcess::setDcfHPF(double freq, double fs) noexcept { setDcfHPF(alphaOfCorner(freq, fs)); }

}  // namespace Mivora
