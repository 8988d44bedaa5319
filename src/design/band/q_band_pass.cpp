// Second-order band-pass from a centre frequency and a Q: the bilinear
// transform of gain*s/(s^2 + (t/q)s + t^2), t the pre-warped centre.
#include <mivora/IirProcess.h>

#include "../bilinear.hpp"
#include "../section_math.hpp"
#include "band_pass_section.hpp"

namespace Mivora {

namespace {

enum class PeakGain { Q, Unity };

// Gain t puts q at the centre; gain t/q puts 1 there. For the unity design
// b2 = (-(t/q))/d, which is bit for bit ((-t)/q)/d since division is
// symmetric in sign.
void qBandPass(PeakGain peak, double freq, double q, double fs, double* c) noexcept {
    const double t = design::prewarp(freq, fs);
    const double r = t / q;
    design::writeBandPassSection(peak == PeakGain::Q ? t : r, design::bilinearDenominator(r, t * t), c);
}

}  // namespace

void IirProcess::setCoefBPFQfct(double freq, double q, double fs) noexcept {
    changeOrder(2);
    double c[5];
    qBandPass(PeakGain::Q, freq, q, fs, c);
    writeSection(0, c);
}

void IirProcess::setCoefBPF_Q(double freq, double q, double fs) noexcept {
    changeOrder(2);
    double c[5];
    qBandPass(PeakGain::Unity, freq, q, fs, c);
    writeSection(0, c);
}

}  // namespace Mivora
