// Second-order high-pass and low-pass with a free Q: s^2 or w^2 over
// s^2 + (w/q)s + w^2, pre-warped so the gain at freq is exactly q.
#include <mivora/IirProcess.h>

#include "../bilinear.hpp"
#include "../section_math.hpp"

namespace Mivora {

void IirProcess::setCoefHPFQfct(double freq, double q, double fs) noexcept {
    changeOrder(2);
    const double t = design::prewarp(freq, fs);
    double c[5];
    HpfCoefToZet(t / q, t * t, c);
    writeSection(0, c);
}

void IirProcess::setCoefLPFQfct(double freq, double q, double fs) noexcept {
    changeOrder(2);
    const double t = design::prewarp(freq, fs);
    const double tt = t * t;
    // Same poles as the high-pass; the t^2 numerator is divided by D once
    // rather than scaling 1/D, which would round differently.
    const design::BilinearDenominator den = design::bilinearDenominator(t / q, tt);
    writeSection(0, tt / den.d, (t * (t + t)) / den.d, tt / den.d, den.a1, den.a2);
}

}  // namespace Mivora
