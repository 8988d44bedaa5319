// First-order shelves, held in section 0 with b2 = a2 = 0: a pole and a zero
// a factor A apart on the pre-warped axis, one of them at freq. Variant A
// puts freq at the corner on the shelf's side, variant B at the flat side's.
// Each row below is one analogue first-order quotient, written in the
// grouping its coefficients are defined by.
#include <mivora/IirProcess.h>

#include "../section_math.hpp"
#include "bilinear_terms.hpp"
#include "shelf_shapes.hpp"

namespace Mivora {

namespace {

using namespace design;
using namespace design::eq;

// 10^(gainDb/20) from the signed gain: below 1 for a cut.
double signedGain(double gainDb) noexcept { return pow10(gainDb / 20.0); }

// (s + A)/(s + 1) boost, (s + 1)/(s + A) cut: the same two factors swapped.
SectionCoefs lowShelfA(double freq, double gainDb, double fs) noexcept {
    const ShelfGain g = shelfGain(gainDb);
    const double t = prewarp(freq, fs);
    const double at = g.a * t;
    const double n = g.boost ? at : t;
    const double d = g.boost ? t : at;
    return firstOrderSection(factor(1.0, n), factor(1.0, d));
}

// (s + 1)/(s + 1/A) boost, taken as V(s + 1)/(Vs + 1); (s + V)/(s + 1) cut.
SectionCoefs lowShelfB(double freq, double gainDb, double fs) noexcept {
    const double v = signedGain(gainDb);
    const double t = prewarp(freq, fs);
    if (gainDb >= 0.0) return firstOrderSection(scaledFactor(v, t), factor(v, t));
    return firstOrderSection(factor(1.0, v * t), factor(1.0, t));
}

// (Vs + 1)/(s + 1) boost; V(s + 1)/(s + V) cut, which is (s + 1)/(As + 1).
SectionCoefs highShelfA(double freq, double gainDb, double fs) noexcept {
    const double v = signedGain(gainDb);
    const double t = prewarp(freq, fs);
    if (gainDb >= 0.0) return firstOrderSection(factor(v, t), factor(1.0, t));
    return firstOrderSection(scaledFactor(v, t), factor(1.0, v * t));
}

// A(s + 1)/(s + A) boost, (s + A)/(A(s + 1)) cut, with m = A*t. The gains
// m/t and t/m are kept as quotients rather than replaced by A and 1/A, so
// freq = 0 gives NaN here, not a constant gain.
SectionCoefs highShelfB(double freq, double gainDb, double fs) noexcept {
    const ShelfGain g = shelfGain(gainDb);
    const double t = prewarp(freq, fs);
    const double m = g.a * t;
    if (g.boost) return firstOrderSection(scaledFactor(m / t, t), factor(1.0, m));
    return firstOrderSection(scaledFactor(t / m, m), factor(1.0, t));
}

}  // namespace

void IirProcess::setCoefLOWS_A(double freq, double gainDb, double fs) noexcept {
    changeOrder(2);
    writeSection(0, lowShelfA(freq, gainDb, fs).data());
}

void IirProcess::setCoefLOWS_B(double freq, double gainDb, double fs) noexcept {
    changeOrder(2);
    writeSection(0, lowShelfB(freq, gainDb, fs).data());
}

void IirProcess::setCoefHIGS_A(double freq, double gainDb, double fs) noexcept {
    changeOrder(2);
    writeSection(0, highShelfA(freq, gainDb, fs).data());
}

void IirProcess::setCoefHIGS_B(double freq, double gainDb, double fs) noexcept {
    changeOrder(2);
    writeSection(0, highShelfB(freq, gainDb, fs).data());
}

void IirProcess::setCoefLOWS(double freq, double gainDb, double fs) noexcept { setCoefLOWS_B(freq, gainDb, fs); }

void IirProcess::setCoefLOWS(double freq, double gainDb, double fs, short type) noexcept {
    type == 1 ? setCoefLOWS_B(freq, gainDb, fs) : setCoefLOWS_A(freq, gainDb, fs);
}

void IirProcess::setCoefHIGS(double freq, double gainDb, double fs) noexcept { setCoefHIGS_B(freq, gainDb, fs); }

void IirProcess::setCoefHIGS(double freq, double gainDb, double fs, short type) noexcept {
    type == 1 ? setCoefHIGS_B(freq, gainDb, fs) : setCoefHIGS_A(freq, gainDb, fs);
}

}  // namespace Mivora
