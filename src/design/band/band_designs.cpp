// Butterworth, Chebyshev and inverse Chebyshev band-pass and band-eliminate
// filters: a low-pass prototype of protoOrder (clamped into [0, 2]) mapped to
// the band, order 2*protoOrder in all.
#include <mivora/IirProcess.h>

#include "../cascade.hpp"
#include "band_sections.hpp"
#include "low_pass_prototype.hpp"

namespace Mivora {

namespace {

using design::band::BandKind;

design::Cascade band(const design::band::LowPassPrototype& prototype, BandKind kind, double freqLow, double freqHigh,
                          double fs) noexcept {
    return design::band::bandSections(prototype, kind, design::band::bandEdges(freqLow, freqHigh, fs));
}

}  // namespace

void IirProcess::setCoefBPF(int protoOrder, double freqLow, double freqHigh, double fs) noexcept {
    const design::band::LowPassPrototype p = design::band::butterworthLowPass(protoOrder);
    applyDesign(band(p, BandKind::Pass, freqLow, freqHigh, fs));
}

void IirProcess::setCoefBEF(int protoOrder, double freqLow, double freqHigh, double fs) noexcept {
    const design::band::LowPassPrototype p = design::band::butterworthLowPass(protoOrder);
    applyDesign(band(p, BandKind::Eliminate, freqLow, freqHigh, fs));
}

void IirProcess::setCoefBPFChev(int protoOrder, double freqLow, double freqHigh, double ripple, double fs) noexcept {
    const design::band::LowPassPrototype p = design::band::chebyshevLowPass(protoOrder, ripple);
    applyDesign(band(p, BandKind::Pass, freqLow, freqHigh, fs));
}

void IirProcess::setCoefBEFChev(int protoOrder, double freqLow, double freqHigh, double ripple, double fs) noexcept {
    const design::band::LowPassPrototype p = design::band::chebyshevLowPass(protoOrder, ripple);
    applyDesign(band(p, BandKind::Eliminate, freqLow, freqHigh, fs));
}

void IirProcess::setCoefBPFIChev(int protoOrder, double freqLow, double freqHigh, double stopLevel,
                                 double fs) noexcept {
    const design::band::LowPassPrototype p = design::band::inverseChebyshevLowPass(protoOrder, stopLevel);
    applyDesign(band(p, BandKind::Pass, freqLow, freqHigh, fs));
}

void IirProcess::setCoefBEFIChev(int protoOrder, double freqLow, double freqHigh, double stopLevel,
                                 double fs) noexcept {
    const design::band::LowPassPrototype p = design::band::inverseChebyshevLowPass(protoOrder, stopLevel);
    applyDesign(band(p, BandKind::Eliminate, freqLow, freqHigh, fs));
}

}  // namespace Mivora
