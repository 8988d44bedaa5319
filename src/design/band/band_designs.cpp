// Butterworth, Chebyshev and inverse Chebyshev band-pass and band-eliminate
// filters: a low-pass prototype of protoOrder (clamped into [0, 2]) mapped to
// the band, order 2*protoOrder in all.
#include <mivora/IirProcess.h>

#include "band_sections.hpp"
#include "low_pass_prototype.hpp"

namespace Mivora {

namespace {

using design::BandKind;

design::BandSections band(const design::LowPassPrototype& prototype, BandKind kind, double freqLow, double freqHigh,
                          double fs) noexcept {
    return design::bandSections(prototype, kind, design::bandEdges(freqLow, freqHigh, fs));
}

}  // namespace

// The sections are computed from the arguments alone, so resetting the order
// just before writing them leaves exactly what resetting first would.
void IirProcess::writeBandSections(int count, const double (*sections)[5]) noexcept {
    changeOrder(2 * count);
    for (int k = 0; k < count; ++k) writeSection(k, sections[k]);
}

void IirProcess::setCoefBPF(int protoOrder, double freqLow, double freqHigh, double fs) noexcept {
    const design::LowPassPrototype p = design::butterworthPrototype(protoOrder);
    const design::BandSections s = band(p, BandKind::Pass, freqLow, freqHigh, fs);
    writeBandSections(s.count, s.coef);
}

void IirProcess::setCoefBEF(int protoOrder, double freqLow, double freqHigh, double fs) noexcept {
    const design::LowPassPrototype p = design::butterworthPrototype(protoOrder);
    const design::BandSections s = band(p, BandKind::Eliminate, freqLow, freqHigh, fs);
    writeBandSections(s.count, s.coef);
}

void IirProcess::setCoefBPFChev(int protoOrder, double freqLow, double freqHigh, double ripple, double fs) noexcept {
    const design::LowPassPrototype p = design::chebyshevPrototype(protoOrder, ripple);
    const design::BandSections s = band(p, BandKind::Pass, freqLow, freqHigh, fs);
    writeBandSections(s.count, s.coef);
}

void IirProcess::setCoefBEFChev(int protoOrder, double freqLow, double freqHigh, double ripple, double fs) noexcept {
    const design::LowPassPrototype p = design::chebyshevPrototype(protoOrder, ripple);
    const design::BandSections s = band(p, BandKind::Eliminate, freqLow, freqHigh, fs);
    writeBandSections(s.count, s.coef);
}

void IirProcess::setCoefBPFIChev(int protoOrder, double freqLow, double freqHigh, double stopLevel,
                                 double fs) noexcept {
    const design::LowPassPrototype p = design::inverseChebyshevPrototype(protoOrder, stopLevel);
    const design::BandSections s = band(p, BandKind::Pass, freqLow, freqHigh, fs);
    writeBandSections(s.count, s.coef);
}

void IirProcess::setCoefBEFIChev(int protoOrder, double freqLow, double freqHigh, double stopLevel,
                                 double fs) noexcept {
    const design::LowPassPrototype p = design::inverseChebyshevPrototype(protoOrder, stopLevel);
    const design::BandSections s = band(p, BandKind::Eliminate, freqLow, freqHigh, fs);
    writeBandSections(s.count, s.coef);
}

}  // namespace Mivora
