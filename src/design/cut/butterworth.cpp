// Butterworth high-pass and low-pass: one second-order section per conjugate
// pole pair of the prototype, at angle theta from the positive real axis,
// plus the first-order section s + 1 for odd orders.
#include <mivora/IirProcess.h>

#include <cmath>

#include "math/cr_math.hpp"

#include "../cascade.hpp"
#include "../section_math.hpp"
#include "cut_sections.hpp"

namespace Mivora {

namespace {

using design::cut::Pass;

design::Cascade butterworth(Pass pass, int requestedOrder, double freq, double fs) noexcept {
    design::Cascade c(requestedOrder);
    const double n = static_cast<double>(c.order);
    const double t = design::prewarp(freq, fs);
    for (int k = 0; k < c.sections; ++k) {
        // theta runs from just above pi/2 towards pi: pole pair k lies at
        // cos(theta) +- i sin(theta), factor s^2 - 2 cos(theta) s + 1.
        const double theta = (static_cast<double>(c.order + 1 + 2 * k) * design::kPi) / (n + n);
        const double lin = (math::cos(theta) * (-2.0)) * t;
        design::cut::unityCutSection(pass, lin, t * t, c.section[k]);
    }
    if (c.firstOrder) design::cut::firstOrderCutSection(pass, t, c.first);
    return c;
}

}  // namespace

void IirProcess::setCoefHPF(int order, double freq, double fs) noexcept {
    applyDesign(butterworth(Pass::High, order, freq, fs));
}

void IirProcess::setCoefLPF(int order, double freq, double fs) noexcept {
    applyDesign(butterworth(Pass::Low, order, freq, fs));
}

void IirProcess::setCoefHPF(double freq, double fs) noexcept { setCoefHPF(2, freq, fs); }

void IirProcess::setCoefLPF(double freq, double fs) noexcept { setCoefLPF(2, freq, fs); }

}  // namespace Mivora
